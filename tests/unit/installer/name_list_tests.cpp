// Packed lists of names and the growth of their block.
#include "installer/name_list.h"

#include "unit/installer/library_heap.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using arvmui::NameList;
using arvmui_test::LibraryHeap;
using Names = std::vector<std::wstring>;

Names NamesOf(const NameList& list)
{
    Names names;
    for (const wchar_t* name = list.First(); name; name = list.Next(name)) names.push_back(name);
    return names;
}

size_t CharsOf(size_t bytes)
{
    return bytes / sizeof(wchar_t);
}

class NameListTest : public testing::Test
{
protected:
    // A name that takes that many characters of the block.
    bool AppendChars(size_t chars) { return list.Append(std::wstring(chars - 1, L'n').c_str()); }

    // The characters that the block had room for, one number for each growth.
    std::vector<size_t> Capacities() const
    {
        std::vector<size_t> capacities;
        for (const size_t bytes : heap.Sizes()) capacities.push_back(CharsOf(bytes));
        return capacities;
    }

    LibraryHeap heap;
    NameList list;
};

TEST_F(NameListTest, IsEmptyAtFirst)
{
    EXPECT_EQ(list.Count(), 0U);
    EXPECT_EQ(list.First(), nullptr);
    EXPECT_TRUE(heap.Sizes().empty());
}

TEST_F(NameListTest, KeepsNamesInTheirOrder)
{
    for (const wchar_t* name : {L"b", L"", L"a", L"b"}) ASSERT_TRUE(list.Append(name));
    EXPECT_EQ(NamesOf(list), (Names{L"b", L"", L"a", L"b"}));
    EXPECT_EQ(list.Count(), 4U);
}

TEST_F(NameListTest, HasRoomFor256CharactersAtFirst)
{
    ASSERT_TRUE(AppendChars(200));
    ASSERT_TRUE(AppendChars(56));
    EXPECT_EQ(Capacities(), std::vector<size_t>{256});
}

TEST_F(NameListTest, GrowsByItsSizeWhenACharacterMoreIsNeeded)
{
    ASSERT_TRUE(AppendChars(200));
    ASSERT_TRUE(AppendChars(57));
    EXPECT_EQ(Capacities(), (std::vector<size_t>{256, 512}));
}

TEST_F(NameListTest, GrowsByItsSizeUpTo65536Characters)
{
    for (int i = 0; i < 1100; ++i) ASSERT_TRUE(AppendChars(256));
    EXPECT_EQ(Capacities(),
        (std::vector<size_t>{256, 512, 1024, 2048, 4096, 8192, 16384, 32768, 65536, 131072, 196608, 262144, 327680}));
}

TEST_F(NameListTest, TakesANameThatIsLongerThanItsBlock)
{
    const std::wstring name(70000, L'n');
    ASSERT_TRUE(list.Append(name.c_str()));
    ASSERT_TRUE(list.Append(L"next"));
    EXPECT_EQ(NamesOf(list), (Names{name, L"next"}));
    EXPECT_EQ(Capacities().back(), 131072U);
}

TEST_F(NameListTest, KeepsManyNamesAcrossAllGrowths)
{
    Names names;
    for (int i = 0; i < 5000; ++i) names.push_back(L"Name" + std::to_wstring(i));
    for (const std::wstring& name : names) ASSERT_TRUE(list.Append(name.c_str()));
    EXPECT_EQ(NamesOf(list), names);
}

TEST_F(NameListTest, StaysAsItWasWithoutMemory)
{
    ASSERT_TRUE(AppendChars(200));
    heap.FailAt(0);
    EXPECT_FALSE(AppendChars(200));
    EXPECT_EQ(NamesOf(list), Names{std::wstring(199, L'n')});
    EXPECT_EQ(list.Count(), 1U);
    EXPECT_TRUE(list.Append(L"next"));
    EXPECT_EQ(NamesOf(list).back(), L"next");
}

TEST_F(NameListTest, FreesItsBlock)
{
    {
        NameList other;
        ASSERT_TRUE(other.Append(L"name"));
        ASSERT_EQ(heap.LiveBlocks(), 1U);
    }
    EXPECT_EQ(heap.LiveBlocks(), 0U);
}

}  // namespace
