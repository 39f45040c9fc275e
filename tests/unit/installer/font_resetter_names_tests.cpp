// The window titles that the font watch looks for.
#include "installer/font_watch.h"
#include "unit/installer/library_heap.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>
#include <vector>

namespace
{

using arvmui::FontResetterNames;

class WatchedNames : public testing::Test
{
protected:
    void TearDown() override
    {
        names.reset();
        EXPECT_EQ(heap.LiveBlocks(), 0U);
    }

    // A block such as the caller of Add hands over.
    static wchar_t* Block(const std::wstring& text)
    {
        wchar_t* const block = static_cast<wchar_t*>(ARVMUI_realloc(nullptr, (text.size() + 1) * sizeof(wchar_t)));
        std::wmemcpy(block, text.c_str(), text.size() + 1);
        return block;
    }
    std::vector<std::wstring> Listed() const { return {names->Items(), names->Items() + names->Count()}; }

    arvmui_test::LibraryHeap heap;
    std::unique_ptr<FontResetterNames> names = std::make_unique<FontResetterNames>();
};

TEST_F(WatchedNames, AreKeptInTheirOrder)
{
    names->Add(Block(L"b"));
    names->AddCopy(L"a");
    names->Add(Block(L"c"));
    EXPECT_EQ(Listed(), (std::vector<std::wstring>{L"b", L"a", L"c"}));
}

TEST_F(WatchedNames, TakeOverTheBlockOrCopyTheText)
{
    wchar_t* const block = Block(L"given");
    names->Add(block);
    wchar_t text[] = L"copied";
    names->AddCopy(text);
    text[0] = L'X';
    EXPECT_EQ(names->Items()[0], block);
    EXPECT_STREQ(names->Items()[1], L"copied");
}

TEST_F(WatchedNames, EndAtTheSixteenth)
{
    std::vector<std::wstring> expected;
    for (int i = 1; i <= 17; ++i)
    {
        const std::wstring name = L"name " + std::to_wstring(i);
        if (i <= 16) expected.push_back(name);
        if (i % 2 == 0)
            names->Add(Block(name));
        else
            names->AddCopy(name.c_str());
    }
    EXPECT_EQ(Listed(), expected);
    EXPECT_EQ(heap.LiveBlocks(), 16U) << "the block of a name that has no place is freed";
}

TEST_F(WatchedNames, AreDistinctWithRegardToCase)
{
    names->AddCopy(L"Name");
    names->AddCopy(L"Name");
    names->Add(Block(L"Name"));
    names->AddCopy(L"name");
    names->AddCopy(L"Name ");
    EXPECT_EQ(Listed(), (std::vector<std::wstring>{L"Name", L"name", L"Name "}));
    EXPECT_EQ(heap.LiveBlocks(), 3U);
}

TEST_F(WatchedNames, AreNeverEmpty)
{
    names->Add(Block(L""));
    names->AddCopy(L"");
    names->Add(nullptr);
    EXPECT_EQ(names->Count(), 0U);
    EXPECT_EQ(heap.LiveBlocks(), 0U);
}

TEST_F(WatchedNames, AreFoundWholeWithRegardToCase)
{
    names->AddCopy(L"Product");
    names->AddCopy(L"Other");
    EXPECT_TRUE(names->Contains(L"Product"));
    EXPECT_TRUE(names->Contains(L"Other"));
    EXPECT_FALSE(names->Contains(L"product"));
    EXPECT_FALSE(names->Contains(L"Produc"));
    EXPECT_FALSE(names->Contains(L"Product 2"));
    EXPECT_FALSE(names->Contains(L""));
}

TEST_F(WatchedNames, DoWithoutACopyThatFindsNoMemory)
{
    heap.FailAt(0);
    names->AddCopy(L"Product");
    EXPECT_EQ(names->Count(), 0U);
}

}  // namespace
