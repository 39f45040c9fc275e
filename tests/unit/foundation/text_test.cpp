// Lengths, character tests, searches, and what the debugger hears about text without an end.
#include "foundation/text.h"

#include "support/endless_text.h"
#include "support/import_replacement.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace
{

std::vector<std::string> g_debugTexts;

void WINAPI RecordDebugText(LPCSTR text)
{
    g_debugTexts.emplace_back(text);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(OutputDebugStringA, &RecordDebugText)

namespace
{

using namespace arvmui;
using arvmui_test::EndlessText;

const std::vector<std::string> kInvalidLength = {"Invalid parameter for ARV_wcsnlen_s()"};

class DebuggedText : public testing::Test
{
protected:
    DebuggedText() { g_debugTexts.clear(); }
};

using TextLength = DebuggedText;

TEST_F(TextLength, IsTheNumberOfElementsBeforeTheTerminator)
{
    EXPECT_EQ(WideLength(L""), 0u);
    EXPECT_EQ(WideLength(L"ab\x0440"), 3u);
    EXPECT_EQ(NarrowLength(""), 0u);
    EXPECT_EQ(NarrowLength("ab\xFF"), 3u);
    EXPECT_TRUE(g_debugTexts.empty());
}

TEST_F(TextLength, OfWideTextWithoutEndIsTheLimitAndReported)
{
    const EndlessText text(false);
    ASSERT_NE(text.Get(), nullptr);
    EXPECT_EQ(WideLength(static_cast<const wchar_t*>(text.Get())), 0x7FFFFFFFu);
    EXPECT_EQ(g_debugTexts, kInvalidLength);
}

TEST_F(TextLength, OfNarrowTextWithoutEndIsTheLimitAndNotReported)
{
    const EndlessText text(true);
    ASSERT_NE(text.Get(), nullptr);
    EXPECT_EQ(NarrowLength(static_cast<const char*>(text.Get())), 0x7FFFFFFFu);
    EXPECT_TRUE(g_debugTexts.empty());
}

using LatinText = DebuggedText;

TEST_F(LatinText, IsDecidedByEachCharacter)
{
    for (unsigned c = 1; c <= 0xFFFF; ++c)
    {
        const wchar_t text[] = {L'a', static_cast<wchar_t>(c), L'z', L'\0'};
        const bool latin = c < 0x0370 || (c >= 0x1E00 && c <= 0x1EFF);
        EXPECT_EQ(IsLatinText(text, -1) != FALSE, latin) << "character " << c;
    }
    EXPECT_TRUE(g_debugTexts.empty());
}

TEST_F(LatinText, EmptyTextIsLatin)
{
    EXPECT_TRUE(IsLatinText(L"", -1));
}

TEST_F(LatinText, EveryNegativeCountMeansTheWholeText)
{
    EXPECT_FALSE(IsLatinText(L"abc\x0440", -2));
    EXPECT_TRUE(IsLatinText(L"abc\x01FF", -0x7FFFFFFF));
}

TEST_F(LatinText, CountHasToCoverTheTerminator)
{
    EXPECT_FALSE(IsLatinText(L"abc", 3));
    EXPECT_EQ(g_debugTexts, kInvalidLength);
    g_debugTexts.clear();
    EXPECT_TRUE(IsLatinText(L"abc", 4));
    EXPECT_TRUE(g_debugTexts.empty());
}

TEST_F(LatinText, CountOfZeroCoversNothing)
{
    EXPECT_FALSE(IsLatinText(L"", 0));
    EXPECT_EQ(g_debugTexts, kInvalidLength);
}

TEST_F(LatinText, CharactersBehindTheTerminatorCountToo)
{
    const wchar_t text[] = L"ab\0\x0440";
    EXPECT_TRUE(IsLatinText(text, -1));
    EXPECT_TRUE(IsLatinText(text, 3));
    EXPECT_FALSE(IsLatinText(text, 4));
    EXPECT_TRUE(g_debugTexts.empty());
}

TEST(FileNameChar, RefusesControlCharactersAndSevenOthers)
{
    const std::wstring_view refused = L"\"/:<>\\|";
    for (unsigned c = 0; c <= 0xFFFF; ++c)
    {
        const wchar_t character = static_cast<wchar_t>(c);
        const bool bad = c < 32 || refused.find(character) != std::wstring_view::npos;
        EXPECT_EQ(IsFileNameChar(character) == FALSE, bad) << "character " << c;
    }
}

// Deliberate: wildcards name no file, but they are let through.
TEST(FileNameChar, AcceptsWildcards)
{
    EXPECT_TRUE(IsFileNameChar(L'*'));
    EXPECT_TRUE(IsFileNameChar(L'?'));
}

TEST(FileNameChar, RefusesTheTab)
{
    EXPECT_FALSE(IsFileNameChar(L'\t'));
}

TEST(AsciiSpace, IsTheSixAsciiCharacters)
{
    for (unsigned c = 0; c <= 0xFFFF; ++c)
        EXPECT_EQ(IsAsciiSpace(static_cast<wchar_t>(c)), c == 32 || (c >= 9 && c <= 13)) << "character " << c;
}

TEST(Dots, AreTheNamesOfAFolderAndOfItsParent)
{
    EXPECT_TRUE(IsDots(L"."));
    EXPECT_TRUE(IsDots(L".."));
    EXPECT_TRUE(IsDots("."));
    EXPECT_TRUE(IsDots(".."));
    for (const wchar_t* name : {L"", L"...", L".a", L"a.", L"..a", L"a"}) EXPECT_FALSE(IsDots(name)) << name;
    for (const char* name : {"", "...", ".a", "a.", "..a", "a"}) EXPECT_FALSE(IsDots(name)) << name;
}

TEST(FindCharN, FindsTheFirstOccurrence)
{
    const wchar_t text[] = L"abcabc";
    EXPECT_EQ(FindCharN(text, L'b', 6), text + 1);
    EXPECT_EQ(FindCharN(text, L'a', 6), text);
    EXPECT_EQ(FindCharN(text, L'x', 6), nullptr);
}

TEST(FindCharN, LooksAtTheFirstCharactersOnly)
{
    const wchar_t text[] = L"abc";
    EXPECT_EQ(FindCharN(text, L'c', 2), nullptr);
    EXPECT_EQ(FindCharN(text, L'c', 3), text + 2);
    EXPECT_EQ(FindCharN(text, L'a', 0), nullptr);
}

TEST(FindCharN, FindsCharactersBeyondAscii)
{
    const wchar_t text[] = L"a\x3000\x65E5";
    EXPECT_EQ(FindCharN(text, L'\x65E5', 3), text + 2);
}

TEST(PrefixNoCase, IsFoundInAnyCase)
{
    EXPECT_TRUE(HasPrefixNoCase(L"/UILocale:de", L"/uilocale:", 10));
    EXPECT_TRUE(HasPrefixNoCase("/UILocale:de", "/uilocale:", 10));
    EXPECT_TRUE(HasPrefixNoCase(L"/uilocale:", L"/UILOCALE:", 10));
    EXPECT_TRUE(HasPrefixNoCase("/uilocale:", "/UILOCALE:", 10));
    EXPECT_FALSE(HasPrefixNoCase(L"/uilocalx:de", L"/uilocale:", 10));
    EXPECT_FALSE(HasPrefixNoCase("/uilocalx:de", "/uilocale:", 10));
}

TEST(PrefixNoCase, IsNotInShorterText)
{
    EXPECT_FALSE(HasPrefixNoCase(L"/uiloc", L"/uilocale:", 10));
    EXPECT_FALSE(HasPrefixNoCase("/uiloc", "/uilocale:", 10));
    EXPECT_FALSE(HasPrefixNoCase(L"", L"/", 1));
    EXPECT_FALSE(HasPrefixNoCase("", "/", 1));
}

}  // namespace
