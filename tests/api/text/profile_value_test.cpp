// Single values: how lines are read, what is found and what is not, and buffers that are too small.

#include "settings_file.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace arvmui_test
{
namespace
{

std::string Repeat(size_t count, char character)
{
    return std::string(count, character);
}

std::wstring Repeat(size_t count, wchar_t character)
{
    return std::wstring(count, character);
}

// One line in a section [s], asked for its key k in both widths.
struct LineCase
{
    const char* name;
    const char* line;
    const char* value;
};

std::ostream& operator<<(std::ostream& stream, const LineCase& row)
{
    return stream << row.name;
}

constexpr LineCase kLines[] = {
    {"Plain", "k=word", "word"},
    {"BlanksAroundTheEqualsSign", "k = word  ", "word"},
    {"TabsAndFormFeeds", "\t\fk\v=\t word \t", "word"},
    {"BlanksInside", "k=two  words", "two  words"},
    {"Empty", "k=", ""},
    {"OnlyBlanks", "k=  \t ", ""},
    {"EqualsSignsInside", "k=a=b=c", "a=b=c"},
    {"BracketsInside", "k=[x]", "[x]"},
    {"SemicolonInside", "k=word ; no comment", "word ; no comment"},
    {"OnlyASemicolon", "k=;x", ";x"},
    {"HashInside", "k=#x", "#x"},
    {"BackslashInside", "k=a\\nb", "a\\nb"},
    {"DoubleQuotes", "k=\"word\"", "word"},
    {"Apostrophes", "k='word'", "word"},
    {"QuotesKeepBlanks", "k=\"  word  \"", "  word  "},
    {"DoubledQuote", "k=\"a\"\"b\"", "a\"b"},
    {"DoubledApostrophe", "k='a''b'", "a'b"},
    {"OtherQuoteInside", "k=\"it's\"", "it's"},
    {"OnlyADoubledQuote", "k=\"\"\"\"", "\""},
    {"EmptyQuotes", "k=\"\"", ""},
    {"CommentBehindQuotes", "k='word' ; comment", "word"},
    {"TextBehindQuotes", "k='word' more", "word"},
    {"UnterminatedQuotes", "k=\"word  ", "word  "},
    {"UnterminatedQuotesKeepTheCarriageReturn", "k=\"word\r", "word\r"},
    {"UnterminatedBehindADoubledQuote", "k=\"word\"\"", "word\""},
    {"QuoteInsideIsAnOrdinaryCharacter", "k=a\"b\"", "a\"b\""},
    {"CarriageReturnBehind", "k=word\r", "word"},
    {"CarriageReturnInside", "k=a\rb", "a\rb"},
    {"BlanksBeforeTheKey", "   k=word", "word"},
    {"OtherCase", "K=word", "word"},
};

class ProfileLineTest : public testing::TestWithParam<LineCase>
{
};

INSTANTIATE_TEST_SUITE_P(Lines, ProfileLineTest, testing::ValuesIn(kLines),
    [](const auto& information) { return std::string(information.param.name); });

TEST_P(ProfileLineTest, GivesItsValue)
{
    const std::string value = GetParam().value;
    for (const char* const end : {"", "\n", "\nother=1\n"})
    {
        const SettingsFile file("[s]\n" + std::string(GetParam().line) + end);
        EXPECT_EQ(file.Value("s", "k"), value);
        EXPECT_EQ(file.Value(L"s", L"k"), std::wstring(value.begin(), value.end()));
    }
}

TEST(ProfileValue, LinesMayEndInCarriageReturnAndLineFeed)
{
    const SettingsFile file("[s]\r\na=1\r\n\r\n;x\r\nb=2\r\n");
    EXPECT_EQ(file.Value(L"s", L"a"), L"1");
    EXPECT_EQ(file.Value(L"s", L"b"), L"2");
}

TEST(ProfileValue, CarriageReturnAloneEndsNoLine)
{
    const SettingsFile file("[s]\na=1\rb=2\r");
    EXPECT_EQ(file.Value(L"s", L"a"), L"1\rb=2");
    EXPECT_EQ(file.Value(L"s", L"b"), L"<none>");
}

TEST(ProfileValue, KeyMayHoldBlanksInside)
{
    const SettingsFile file("[s]\nmy  key  = 1\n");
    EXPECT_EQ(file.Value(L"s", L"my  key"), L"1");
    EXPECT_EQ(file.Value(L"s", L"my key"), L"<none>");
}

TEST(ProfileValue, CommentsAreSkipped)
{
    const SettingsFile file("; k=0\n[s] ; behind a section\n  ; k=1\nk=2\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"2");
}

TEST(ProfileValue, HashStartsNoComment)
{
    const SettingsFile file("[s]\n#k=1\n");
    EXPECT_EQ(file.Value(L"s", L"#k"), L"1");
}

TEST(ProfileValue, SemicolonInAKeyStartsNoComment)
{
    const SettingsFile file("[s]\nk;x=1\n");
    EXPECT_EQ(file.Value(L"s", L"k;x"), L"1");
}

TEST(ProfileValue, SectionMatchesInAnyCase)
{
    const SettingsFile file("[SeCtIoN]\nk=1\n");
    EXPECT_EQ(file.Value(L"section", L"k"), L"1");
    EXPECT_EQ(file.Value("SECTION", "K"), "1");
}

TEST(ProfileValue, BlanksInSectionBracketsBelongToTheName)
{
    const SettingsFile file("[ s ]\nk=1\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"<none>");
    EXPECT_EQ(file.Value(L" s ", L"k"), L"1");
}

TEST(ProfileValue, SectionWithoutClosingBracketEndsWithItsLine)
{
    const SettingsFile file("[s\nk=1\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"1");
}

TEST(ProfileValue, SectionWithoutClosingBracketKeepsTheCarriageReturn)
{
    const SettingsFile file("[s\r\nk=1\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"<none>");
    EXPECT_EQ(file.Value(L"s\r", L"k"), L"1");
}

TEST(ProfileValue, KeyOfAnotherSectionIsNotFound)
{
    const SettingsFile file("[a]\nk=1\n[b]\nother=2\n");
    EXPECT_EQ(file.Value(L"b", L"k"), L"<none>");
}

TEST(ProfileValue, KeyBeforeAnySectionIsNotFound)
{
    const SettingsFile file("k=1\n[s]\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"<none>");
    EXPECT_EQ(file.Value(L"", L"k"), L"<none>");
}

TEST(ProfileValue, EmptySectionNameIsAName)
{
    const SettingsFile file("[]\nk=1\n");
    EXPECT_EQ(file.Value(L"", L"k"), L"1");
    EXPECT_EQ(file.Value("", "k"), "1");
}

TEST(ProfileValue, FirstOfTwoEqualKeysCounts)
{
    const SettingsFile file("[s]\nk=1\nK=2\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"1");
}

// Deliberate: a second section of the name is never looked at.
TEST(ProfileValue, OnlyTheFirstSectionOfANameIsSearched)
{
    const SettingsFile file("[s]\na=1\n[t]\nb=2\n[s]\nc=3\n");
    EXPECT_EQ(file.Value(L"s", L"c"), L"<none>");
    EXPECT_EQ(file.Value("s", "c"), "<none>");
}

TEST(ProfileValue, AnySectionFindsTheFirstKeyOfTheFile)
{
    const SettingsFile file("[a]\nx=0\n[b]\nk=1\n[c]\nk=2\n");
    EXPECT_EQ(file.Value(kAnySection, L"k"), L"1");
    EXPECT_EQ(file.Value(kAnySectionA, "k"), "1");
}

TEST(ProfileValue, AnySectionFindsAKeyBeforeAllSections)
{
    const SettingsFile file("k=1\n[a]\nk=2\n");
    EXPECT_EQ(file.Value(kAnySection, L"k"), L"1");
}

TEST(ProfileValue, AnySectionGoesThroughSectionsOfOneName)
{
    const SettingsFile file("[a]\n[b]\n[a]\nk=1\n");
    EXPECT_EQ(file.Value(kAnySection, L"k"), L"1");
}

// Deliberate: such a line ends the search even if a later one holds the key with a value.
TEST(ProfileValue, WantedKeyWithoutEqualsSignEndsTheSearch)
{
    const SettingsFile file("[s]\nk\nk=1\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"<none>");
    EXPECT_EQ(file.Value("s", "k"), "<none>");
    EXPECT_EQ(file.Value(kAnySection, L"k"), L"<none>");
}

TEST(ProfileValue, WantedKeyInAnotherSectionDoesNotEndTheSearch)
{
    const SettingsFile file("[a]\nk\n[s]\nk=1\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"1");
}

struct MalformedCase
{
    const char* name;
    const char* line;
};

std::ostream& operator<<(std::ostream& stream, const MalformedCase& row)
{
    return stream << row.name;
}

constexpr MalformedCase kMalformed[] = {
    {"KeyWithoutEqualsSign", "word\n"},
    {"EqualsSignWithoutKey", "=value\n"},
    {"EqualsSignAlone", "=\n"},
    {"TextBehindASection", "[x]y=1\n"},
    {"SectionBehindASection", "[x][y]\n"},
    {"TextBehindAQuotedValue", "x='y' z\n"},
    {"EqualsSignBehindAQuotedValue", "x='y'=z\n"},
};

class MalformedLineTest : public testing::TestWithParam<MalformedCase>
{
};

INSTANTIATE_TEST_SUITE_P(Lines, MalformedLineTest, testing::ValuesIn(kMalformed),
    [](const auto& information) { return std::string(information.param.name); });

TEST_P(MalformedLineTest, IsSkippedTwiceAndEndsTheSearchTheThirdTime)
{
    const std::string line = GetParam().line;
    EXPECT_EQ(SettingsFile(line + "[s]\nk=1\n").Value(L"s", L"k"), L"1");
    EXPECT_EQ(SettingsFile(line + line + "[s]\nk=1\n").Value(L"s", L"k"), L"1");
    EXPECT_EQ(SettingsFile(line + line + line + "[s]\nk=1\n").Value(L"s", L"k"), L"<none>");
    EXPECT_EQ(SettingsFile(line + line + line + "[s]\nk=1\n").Value("s", "k"), "<none>");
}

TEST_P(MalformedLineTest, IsNoMatterBehindTheValue)
{
    const std::string line = GetParam().line;
    EXPECT_EQ(SettingsFile("[s]\nk=1\n" + line + line + line).Value(L"s", L"k"), L"1");
}

TEST(ProfileValue, DifferentMalformedLinesCountTogether)
{
    const SettingsFile file("word\n[s]\n=x\nfound=1\n[t]x\nlost=2\n");
    EXPECT_EQ(file.Value(L"s", L"found"), L"1");
    EXPECT_EQ(file.Value(kAnySection, L"lost"), L"<none>");
}

TEST(ProfileValue, DefaultLosesItsTrailingWhiteSpace)
{
    const SettingsFile file("[s]\n");
    EXPECT_EQ(file.Ask(L"s", L"k", L" a b \t\r\n\v\f ", 10), Filled<wchar_t>(4, L" a b", 10));
    EXPECT_EQ(file.Ask("s", "k", " a b \t\r\n\v\f ", 10), Filled<char>(4, " a b", 10));
}

TEST(ProfileValue, NoBreakSpaceIsNoWhiteSpace)
{
    const SettingsFile file("[s]\nk=a\xA0\n");
    EXPECT_EQ(file.Value("s", "k"), "a\xA0");
    EXPECT_EQ(file.Ask(L"s", L"x", L"a\x00A0\x3000", 10), Filled<wchar_t>(3, L"a\x00A0\x3000", 10));
}

TEST(ProfileValue, DefaultIsCutAtTheBuffersSize)
{
    const SettingsFile file("[s]\n");
    EXPECT_EQ(file.Ask(L"s", L"k", L"abcdef", 7), Filled<wchar_t>(6, L"abcdef", 7));
    EXPECT_EQ(file.Ask(L"s", L"k", L"abcdef", 6), Filled<wchar_t>(5, L"abcde", 6));
    EXPECT_EQ(file.Ask(L"s", L"k", L"abcdef", 1), Filled<wchar_t>(0, L"", 1));
    EXPECT_EQ(file.Ask("s", "k", "abcdef", 7), Filled<char>(6, "abcdef", 7));
    EXPECT_EQ(file.Ask("s", "k", "abcdef", 6), Filled<char>(5, "abcde", 6));
    EXPECT_EQ(file.Ask("s", "k", "abcdef", 1), Filled<char>(0, "", 1));
}

TEST(ProfileValue, WithoutDefaultTheResultIsEmpty)
{
    const SettingsFile file("[s]\n");
    EXPECT_EQ(file.Ask(L"s", L"k", nullptr, 10), Filled<wchar_t>(0, L"", 10));
    EXPECT_EQ(file.Ask("s", "k", nullptr, 10), Filled<char>(0, "", 10));
}

TEST(ProfileValue, FillsTheWholeRestOfTheBuffer)
{
    const SettingsFile file("[s]\nk=abc\n");
    EXPECT_EQ(file.Ask(L"s", L"k", L"", 200), Filled<wchar_t>(3, L"abc", 200));
    EXPECT_EQ(file.Ask("s", "k", "", 200), Filled<char>(3, "abc", 200));
}

TEST(ProfileValue, ThatFitsExactlyIsStoredWhole)
{
    const SettingsFile file("[s]\nk=123456789\n");
    EXPECT_EQ(file.Ask(L"s", L"k", L"", 10), Filled<wchar_t>(9, L"123456789", 10));
    EXPECT_EQ(file.Ask("s", "k", "", 10), Filled<char>(9, "123456789", 10));
}

// Deliberate: the wide form cuts what does not fit, the narrow form stores nothing of it.
TEST(ProfileValue, ThatDoesNotFitIsCutInWideAndLeftOutInNarrow)
{
    const SettingsFile file("[s]\nk=fourteen chars\n");
    EXPECT_EQ(file.Ask(L"s", L"k", L"", 10), Filled<wchar_t>(9, L"fourteen ", 10));
    EXPECT_EQ(file.Ask("s", "k", "", 10), Filled<char>(9, "", 10));
}

TEST(ProfileValue, OfOneCharacterTooMuch)
{
    const SettingsFile file("[s]\nk=1234567890\n");
    EXPECT_EQ(file.Ask(L"s", L"k", L"", 10), Filled<wchar_t>(9, L"123456789", 10));
    EXPECT_EQ(file.Ask("s", "k", "", 10), Filled<char>(9, "", 10));
}

TEST(ProfileValue, BufferForTheTerminatorAlone)
{
    const SettingsFile file("[s]\nk=x\nempty=\n");
    EXPECT_EQ(file.Ask(L"s", L"k", L"", 1), Filled<wchar_t>(0, L"", 1));
    EXPECT_EQ(file.Ask("s", "k", "", 1), Filled<char>(0, "", 1));
    EXPECT_EQ(file.Ask(L"s", L"empty", L"d", 1), Filled<wchar_t>(0, L"", 1));
    EXPECT_EQ(file.Ask("s", "empty", "d", 1), Filled<char>(0, "", 1));
}

TEST(ProfileValue, KeepsTwoHundredSeventyCharacters)
{
    for (const size_t length : {269u, 270u, 271u, 5000u})
    {
        SCOPED_TRACE(length);
        const SettingsFile file("[s]\nk=" + Repeat(length, 'v') + "\nquoted='" + Repeat(length, 'q') + "'\nnext=1\n");
        const size_t kept = length < 270 ? length : 270;
        EXPECT_EQ(file.Value(L"s", L"k"), Repeat(kept, L'v'));
        EXPECT_EQ(file.Value("s", "k"), Repeat(kept, 'v'));
        EXPECT_EQ(file.Value(L"s", L"quoted"), Repeat(kept, L'q'));
        EXPECT_EQ(file.Value(L"s", L"next"), L"1");
    }
}

TEST(ProfileValue, KeyIsComparedByItsFirstTwoHundredSeventyCharacters)
{
    const SettingsFile file(
        "[s]\n" + Repeat(269, 'a') + "=1\n" + Repeat(270, 'b') + "=2\n" + Repeat(271, 'c') + "=3\n");
    EXPECT_EQ(file.Value(L"s", Repeat(269, L'a').c_str()), L"1");
    EXPECT_EQ(file.Value(L"s", Repeat(270, L'b').c_str()), L"2");
    EXPECT_EQ(file.Value(L"s", Repeat(270, L'c').c_str()), L"3");
    EXPECT_EQ(file.Value(L"s", Repeat(271, L'c').c_str()), L"<none>");
}

// Deliberate: the narrow form keeps that much of what it looks for, too.
TEST(ProfileValue, NarrowKeyIsCutToTwoHundredSeventyCharacters)
{
    const SettingsFile file("[" + Repeat(300, 's') + "]\n" + Repeat(271, 'c') + "=3\n");
    EXPECT_EQ(file.Value(Repeat(300, 's').c_str(), Repeat(271, 'c').c_str()), "3");
    EXPECT_EQ(file.Value(Repeat(269, 's').c_str(), Repeat(271, 'c').c_str()), "<none>");
    EXPECT_EQ(file.Value(Repeat(300, L's').c_str(), Repeat(270, L'c').c_str()), L"<none>");
}

TEST(ProfileValue, NulInAValueIsHandedBack)
{
    const SettingsFile file(std::string_view("[s]\nk=a\0b\n", 10));
    EXPECT_EQ(file.Ask(L"s", L"k", L"", 6), Filled<wchar_t>(3, std::wstring_view(L"a\0b", 3), 6));
    EXPECT_EQ(file.Ask("s", "k", "", 6), Filled<char>(3, std::string_view("a\0b", 3), 6));
}

}  // namespace
}  // namespace arvmui_test
