// Files that declare their encoding, and narrow answers in it.

#include "settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace arvmui_test
{
namespace
{

using testing::ElementsAre;

struct EncodingCase
{
    const char* name;
    const char* encoding;
    const char* bytes;
    const wchar_t* text;
};

std::ostream& operator<<(std::ostream& stream, const EncodingCase& row)
{
    return stream << row.name;
}

constexpr EncodingCase kEncodings[] = {
    {"Utf8", "UTF-8", "\xE6\x97\xA5\xC3\xA4", L"\x65E5\x00E4"},
    {"ShiftJis", "Shift_JIS", "\x93\xFA\xB1", L"\x65E5\xFF71"},
    {"ByNumber", "cp1251", "\xC4\xE0", L"\x0414\x0430"},
    {"Gbk", "gbk", "\xD6\xD0", L"\x4E2D"},
    {"Latin1", "ISO-8859-1", "\xE4\x80", L"\x00E4\x0080"},
    {"Quoted", "'UTF-8' ; comment", "\xC3\xA4", L"\x00E4"},
};

class DeclaredEncodingTest : public testing::TestWithParam<EncodingCase>
{
protected:
    std::string File() const
    {
        const std::string text = GetParam().bytes;
        return "[Encoding]\r\nInputEncoding = " + std::string(GetParam().encoding) + "\r\n[" + text + "]\r\n" + text
               + "k = " + text + "v\r\n";
    }
};

INSTANTIATE_TEST_SUITE_P(Encodings, DeclaredEncodingTest, testing::ValuesIn(kEncodings),
    [](const auto& information) { return std::string(information.param.name); });

TEST_P(DeclaredEncodingTest, DecodesNamesAndValues)
{
    const SettingsFile file(File());
    const std::wstring text = GetParam().text;
    EXPECT_EQ(file.Value(text.c_str(), (text + L"k").c_str()), text + L"v");
    EXPECT_THAT(file.Sections(), ElementsAre(L"Encoding", text));
    EXPECT_THAT(file.Keys(text.c_str()), ElementsAre(text + L"k"));
}

TEST_P(DeclaredEncodingTest, NarrowFormAsksAndAnswersInIt)
{
    const SettingsFile file(File());
    const std::string text = GetParam().bytes;
    EXPECT_EQ(file.Value(text.c_str(), (text + "k").c_str()), text + "v");
    EXPECT_EQ(file.Value(kAnySectionA, (text + "k").c_str()), text + "v");
    const std::string keys = file.Ask(text.c_str(), nullptr, nullptr, 40).buffer;
    EXPECT_STREQ(keys.c_str(), (text + "k").c_str());
}

TEST(DeclaredEncoding, NameOfSectionAndKeyInAnyCase)
{
    const SettingsFile file("[ENCODING]\ninputencoding=utf-8\n[s]\nk=\xC3\xA4\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"\x00E4");
}

TEST(DeclaredEncoding, CountsInItsSectionOnly)
{
    const SettingsFile file("[Other]\nInputEncoding=UTF-8\n[s]\nk=\xC3\xA4\n");
    std::wstring ansi(4, L'\0');
    ansi.resize(static_cast<size_t>(::MultiByteToWideChar(CP_ACP, 0, "\xC3\xA4", 2, ansi.data(), 4)));
    EXPECT_EQ(file.Value(L"s", L"k"), ansi);
}

TEST(DeclaredEncoding, HoldsFromTheNextLineOn)
{
    const SettingsFile file("[a]\nk=\x93\xFA\n[Encoding]\nInputEncoding=932\n[b]\nk=\x93\xFA\n");
    EXPECT_NE(file.Value(L"a", L"k"), L"\x65E5");
    EXPECT_EQ(file.Value(L"b", L"k"), L"\x65E5");
}

TEST(DeclaredEncoding, MayChangeAgain)
{
    const SettingsFile file(
        "[Encoding]\nInputEncoding=UTF-8\n[a]\nk=\xC3\xA4\n[Encoding]\nInputEncoding=1251\n[b]\nk=\xE4\n");
    EXPECT_EQ(file.Value(L"a", L"k"), L"\x00E4");
    EXPECT_EQ(file.Value(L"b", L"k"), L"\x0434");
    EXPECT_EQ(file.Value("b", "k"), "\xE4");
}

TEST(DeclaredEncoding, UnknownNameReturnsToTheAnsiCodePage)
{
    const SettingsFile file("[Encoding]\nInputEncoding=UTF-8\nInputEncoding=nonsense\n[s]\nk=\xE4\n");
    wchar_t expected[2] = {};
    ::MultiByteToWideChar(CP_ACP, 0, "\xE4", 1, expected, 1);
    EXPECT_EQ(file.Value(L"s", L"k"), expected);
}

TEST(DeclaredEncoding, WantedItselfIsAnOrdinaryValue)
{
    const SettingsFile file("[Encoding]\nInputEncoding=UTF-8\n");
    EXPECT_EQ(file.Value(L"Encoding", L"InputEncoding"), L"UTF-8");
    EXPECT_EQ(file.Value("encoding", "INPUTENCODING"), "UTF-8");
}

// Once the section is found its name is not needed again.
TEST(DeclaredEncoding, KeyIsConvertedAgainInsideTheSection)
{
    const SettingsFile file("[Encoding]\nInputEncoding=UTF-8\n\xC3\xA4=1\n");
    EXPECT_EQ(file.Value("Encoding", "\xC3\xA4"), "1");
}

TEST(DeclaredEncoding, CharactersAreNotSplitAtTheBuffersEnd)
{
    const SettingsFile file("[Encoding]\nInputEncoding=UTF-8\n[s]\n");
    EXPECT_EQ(file.Ask("s", "k", "a\xE6\x97\xA5\xC3\xA4", 7), Filled<char>(6, "a\xE6\x97\xA5\xC3\xA4", 7));
    EXPECT_EQ(file.Ask("s", "k", "a\xE6\x97\xA5\xC3\xA4", 6), Filled<char>(4, "a\xE6\x97\xA5", 6));
    EXPECT_EQ(file.Ask("s", "k", "a\xE6\x97\xA5\xC3\xA4", 5), Filled<char>(4, "a\xE6\x97\xA5", 5));
    EXPECT_EQ(file.Ask("s", "k", "a\xE6\x97\xA5\xC3\xA4", 4), Filled<char>(1, "a", 4));
}

TEST(DeclaredEncoding, DoubleByteDefaultIsNotSplit)
{
    const SettingsFile file("[Encoding]\nInputEncoding=932\n[s]\n");
    EXPECT_EQ(file.Ask("s", "k", "\x93\xFA\x96\x7B", 4), Filled<char>(2, "\x93\xFA", 4));
    EXPECT_EQ(file.Ask("s", "k", "\x93\xFA\x96\x7B", 5), Filled<char>(4, "\x93\xFA\x96\x7B", 5));
    EXPECT_EQ(file.Ask("s", "k", "\x93\xFA\x96", 9), Filled<char>(3, "\x93\xFA\x96", 9)) << "a lone lead byte stays";
}

TEST(DeclaredEncoding, BytesOfAnswersAreCounted)
{
    const SettingsFile file("[Encoding]\nInputEncoding=UTF-8\n[s]\nk=\xE6\x97\xA5\xE6\x9C\xAC\n\xE6\x97\xA5=1\n");
    EXPECT_EQ(file.Ask("s", "k", "", 7), Filled<char>(6, "\xE6\x97\xA5\xE6\x9C\xAC", 7));
    EXPECT_EQ(file.Ask("s", "k", "", 6), Filled<char>(5, "", 6));
    EXPECT_EQ(file.Ask("s", nullptr, nullptr, 7), Filled<char>(6, std::string_view("k\0\xE6\x97\xA5\0", 6), 7));
    EXPECT_EQ(file.Ask("s", nullptr, nullptr, 6), Filled<char>(4, std::string_view("k\0", 2), 6));
}

TEST(DeclaredEncoding, UndecodableBytesTakePartAsReplacementCharacters)
{
    const SettingsFile file("[Encoding]\nInputEncoding=UTF-8\n[s]\nk=a\xFF"
                            "b\xE6\x97\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"a\xFFFD"
                                      L"b\xFFFD\xFFFD");
    EXPECT_EQ(file.Value("s", "k"), "a\xEF\xBF\xBD"
                                    "b\xEF\xBF\xBD\xEF\xBF\xBD");
}

// Undecodable bytes just before what structures a line must not swallow it.
TEST(DeclaredEncoding, UndecodableBytesEndBeforeQuotesAndLineEnds)
{
    const SettingsFile file("[Encoding]\nInputEncoding=UTF-8\n[s\xE6]\na\xE6=1\nb=\"x\xF0\"\nc=y\xC3\nd=2\n");
    EXPECT_THAT(file.Sections(), ElementsAre(L"Encoding", L"s\xFFFD"));
    EXPECT_THAT(file.Keys(L"s\xFFFD"), ElementsAre(L"a\xFFFD", L"b", L"c", L"d"));
    EXPECT_EQ(file.Value(kAnySection, L"b"), L"x\xFFFD");
    EXPECT_EQ(file.Value(kAnySection, L"c"), L"y\xFFFD");
}

TEST(DeclaredEncoding, ByteOrderMarkMakesTheFirstLineMalformed)
{
    const SettingsFile file("\xEF\xBB\xBF[s]\nk=1\n[t]\nk=2\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"<none>");
    EXPECT_EQ(file.Value(L"t", L"k"), L"2");
}

// The system knows no such page, so nothing can be looked for in it.
TEST(DeclaredEncoding, CodePageThatTheSystemDoesNotKnowEndsTheNarrowSearch)
{
    const SettingsFile file("[Encoding]\nInputEncoding=54321\n[s]\nk=1\n");
    EXPECT_EQ(file.Value("s", "k"), "<none>");
    EXPECT_EQ(file.Value(L"s", L"k"), L"1");
    EXPECT_EQ(file.Ask("s", "k", "d\xE4 ", 9), Filled<char>(2, "d\xE4", 9));
}

}  // namespace
}  // namespace arvmui_test
