// Which code page a text file is decoded in: that of the language of the library's own resources for
// the same locales, not of the folder the file lies in.

#include "text_language_fixture.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace arvmui_test
{
namespace
{

struct LanguageCase
{
    const char* name;
    const wchar_t* tag;
    LANGID language;
    const char* bytes;
    const wchar_t* text;
};

std::ostream& operator<<(std::ostream& stream, const LanguageCase& row)
{
    return stream << row.name;
}

constexpr LanguageCase kLanguages[] = {
    {"German", L"de", 0x0407, "\xE4\x80", L"\x00E4\x20AC"},
    {"Polish", L"pl", 0x0415, "\xB3\xF3", L"\x0142\x00F3"},
    {"Russian", L"ru", 0x0419, "\xC4\xE0", L"\x0414\x0430"},
    {"Greek", L"el", 0x0408, "\xE1\xAA", L"\x03B1\xFFFD"},
    {"Turkish", L"tr", 0x041F, "\xFD\xDD", L"\x0131\x0130"},
    {"Thai", L"th", 0x041E, "\xA1\xD2", L"\x0E01\x0E32"},
    {"Japanese", L"ja", 0x0411, "\x93\xFA\xB1", L"\x65E5\xFF71"},
    {"SimplifiedChinese", L"zh-CN", 0x0804, "\xD6\xD0", L"\x4E2D"},
    {"TraditionalChinese", L"zh-TW", 0x0404, "\xA4\xA4", L"\x4E2D"},
    {"Korean", L"ko", 0x0412, "\xC7\xD1", L"\xD55C"},
};

class TextOfLanguageTest : public TextLanguageTest, public testing::WithParamInterface<LanguageCase>
{
};

INSTANTIATE_TEST_SUITE_P(Languages, TextOfLanguageTest, testing::ValuesIn(kLanguages),
    [](const auto& information) { return std::string(information.param.name); });

TEST_P(TextOfLanguageTest, IsDecodedInItsAnsiCodePage)
{
    AddLanguage(GetParam().tag, GetParam().language);
    WriteText(GetParam().tag, GetParam().bytes);
    EXPECT_EQ(Read(GetParam().tag), GetParam().text);
}

TEST_F(TextLanguageTest, FirstLocaleWithResourcesOfTheLibraryDecides)
{
    AddLanguage(L"ja", 0x0411);
    AddLanguage(L"ru", 0x0419);
    WriteText(L"ru", "\xC4\xE0");
    EXPECT_EQ(Read(L"ja,ru"), L"\xFF84\xFFFD");
    EXPECT_EQ(Read(L"ru,ja"), L"\x0414\x0430");
}

TEST_F(TextLanguageTest, LocaleWithoutResourcesOfTheLibraryLeavesTheChoiceToTheNext)
{
    AddLanguage(L"ru", 0x0419);
    WriteText(L"bg", "\xC4\xE0");
    EXPECT_EQ(Read(L"bg,ru"), L"\x0414\x0430");
}

TEST_F(TextLanguageTest, FallsBackToEnglishResourcesOfTheLibrary)
{
    AddLanguage(L"en", 0x0409);
    AddLanguage(L"ja", 0x0411);
    WriteText(L"bg", "\xC4\xE0");
    EXPECT_EQ(Read(L"bg"), L"\x00C4\x00E0");
}

// Western when the library has no resources at all: the language is then English.
TEST_F(TextLanguageTest, WithoutAnyResourcesTheLanguageIsEnglish)
{
    WriteText(L"bg", "\xC4\xE0\x80");
    EXPECT_EQ(Read(L"bg"), L"\x00C4\x00E0\x20AC");
}

TEST_F(TextLanguageTest, LanguageWithoutAnAnsiCodePageUsesTheSystems)
{
    AddLanguage(L"hi", 0x0439);
    WriteText(L"hi", "\xE4");
    wchar_t expected[2] = {};
    ::MultiByteToWideChar(CP_ACP, 0, "\xE4", 1, expected, 1);
    EXPECT_EQ(Read(L"hi"), expected);
}

TEST_F(TextLanguageTest, ResourcesOfTheLibraryAreGivenBack)
{
    AddLanguage(L"ru", 0x0419);
    WriteText(L"ru", "\xC4\xE0");
    const LibraryCopy library(folder_);
    const LoadedModule module(folder_.Path() / L"program.dll");
    ASSERT_EQ(library.Read(module.Get(), L"ru"), L"\x0414\x0430");
    const auto resources = folder_.Path() / L"resource" / L"ru" / L"copiedUI.DLL";
    EXPECT_EQ(::GetModuleHandleW(resources.c_str()), nullptr);
}

}  // namespace
}  // namespace arvmui_test
