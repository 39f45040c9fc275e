// Text files and settings files of the C++ layer.
#include "bindings/cpp/translated_module.h"
#include "support/busy_blocks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

TEST(CppTextFile, IsReadWhole)
{
    const arvmui_test::TranslatedModule module;
    module.AddFile(L"de", L"about.txt", "first\r\nsecond");

    const auto text = arvmui::ReadTextFile({.module = module.Get(), .fileName = L"about.txt", .locales = L"fr,de"});

    ASSERT_TRUE(text);
    EXPECT_EQ(std::wstring(text->get()), L"first\r\nsecond");
}

TEST(CppTextFile, IsMissingWithAnError)
{
    const arvmui_test::TranslatedModule module;

    const auto text = arvmui::ReadTextFile({.module = module.Get(), .fileName = L"about.txt", .locales = L"de"});

    EXPECT_FALSE(text);
    EXPECT_EQ(text.Error(), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST(CppTextFile, IsFreedOnceAfterMoves)
{
    const arvmui_test::TranslatedModule module;
    module.AddFile(L"de", L"about.txt", "text");
    const arvmui::ResourceQuery query = {.module = module.Get(), .fileName = L"about.txt", .locales = L"de"};
    ASSERT_TRUE(arvmui::ReadTextFile(query));  // the first call may leave something of the system's behind
    const size_t before = arvmui_test::CountBusyBlocks();
    {
        auto text = arvmui::ReadTextFile(query);
        ASSERT_TRUE(text);
        arvmui::Text first = *std::move(text);
        const arvmui::Text second = std::move(first);
        EXPECT_EQ(first.get(), nullptr);
        EXPECT_GT(arvmui_test::CountBusyBlocks(), before);
    }
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

class CppSettingsFile : public testing::Test
{
protected:
    arvmui::SettingsFile Write(std::string_view bytes) const
    {
        return arvmui::SettingsFile(arvmui_test::WriteBytes(folder.Path() / L"settings.ini", bytes).wstring());
    }

    arvmui_test::TemporaryFolder folder;
};

TEST_F(CppSettingsFile, HasValues)
{
    const auto file = Write("[Window]\r\nTitle=Editor\r\n[Other]\r\nTitle=x\r\n");

    EXPECT_EQ(file.Value(L"Window", L"Title"), L"Editor");
    EXPECT_EQ(file.Value(L"Other", L"Title"), L"x");
}

TEST_F(CppSettingsFile, HasDefaultsForMissingValues)
{
    const auto file = Write("[Window]\r\nTitle=Editor\r\n");

    EXPECT_EQ(file.Value(L"Window", L"Width"), L"");
    EXPECT_EQ(file.Value(L"Window", L"Width", L"640 "), L"640");
    EXPECT_EQ(arvmui::SettingsFile(L"no such file.ini").Value(L"Window", L"Width", L"640"), L"640");
}

TEST_F(CppSettingsFile, HasValuesInAnySection)
{
    const auto file = Write("[A]\r\nOne=1\r\n[B]\r\nTwo=2\r\n");

    EXPECT_EQ(file.ValueInAnySection(L"Two"), L"2");
    EXPECT_EQ(file.ValueInAnySection(L"Three", L"3"), L"3");
}

TEST_F(CppSettingsFile, HasValuesInTheEncodingItDeclares)
{
    const auto file = Write("[Encoding]\r\nInputEncoding=UTF-8\r\n[A]\r\nName=\xC3\x96l\r\n");

    EXPECT_EQ(file.Value(L"A", L"Name"), L"\u00D6l");
}

TEST_F(CppSettingsFile, HasDefaultsOfAnyLength)
{
    const std::wstring longText(100000, L'd');

    EXPECT_EQ(Write("").Value(L"A", L"Key", longText), longText);
}

TEST_F(CppSettingsFile, ListsSections)
{
    EXPECT_THAT(Write("[One]\r\na=1\r\n[Two]\r\n").Sections(), ElementsAre(L"One", L"Two"));
}

TEST_F(CppSettingsFile, ListsKeysOfASection)
{
    const auto file = Write("[One]\r\na=1\r\nbc=2\r\n[Two]\r\nd=3\r\n");

    EXPECT_THAT(file.Keys(L"One"), ElementsAre(L"a", L"bc"));
    EXPECT_THAT(file.Keys(L"Three"), IsEmpty());
}

// Lists of every length around those at which a first guess at the room is too small.
TEST_F(CppSettingsFile, ListsAsManyNamesAsThereAre)
{
    for (const size_t length : {507u, 508u, 509u, 510u, 511u, 512u, 513u, 20000u})
    {
        std::string sections = "[Filler]\r\n";
        std::string keys = "[Keys]\r\n";
        std::vector<std::wstring> names;
        for (size_t chars = 0; chars < length; chars += names.back().size() + 1)
        {
            const size_t size = std::min<size_t>(length - chars, 100) - 1;
            const std::wstring name(size != 0 ? size : 1, L'n');
            names.push_back(name);
            keys += std::string(name.begin(), name.end()) + "=1\r\n";
            sections += "[" + std::string(name.begin(), name.end()) + "]\r\n";
        }

        EXPECT_EQ(Write(keys).Keys(L"Keys"), names) << length;
        names.insert(names.begin(), L"Filler");
        EXPECT_EQ(Write(sections).Sections(), names) << length;
    }
}

TEST(CppEncodingName, TellsACodePage)
{
    EXPECT_EQ(arvmui::CodePageOfEncoding(L"UTF-8"), 65001u);
    EXPECT_EQ(arvmui::CodePageOfEncoding(L"no encoding"), 0u);
}

}  // namespace
