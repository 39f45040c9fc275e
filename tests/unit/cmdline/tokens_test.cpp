#include "cmdline/tokens.h"
#include "support/guarded_text.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <ostream>
#include <string>
#include <vector>

namespace
{

using arvmui::kTokenChars;
using arvmui::NextCommandLineToken;
using arvmui_test::GuardedText;

struct Token
{
    size_t length;
    std::wstring text;
    std::wstring rest;
};

Token Next(const std::wstring& line, size_t capacity = kTokenChars)
{
    const GuardedText<wchar_t> source(line);
    std::vector<wchar_t> buffer(capacity, L'#');
    const wchar_t* next = source.Get();
    const size_t length = NextCommandLineToken(source.Get(), buffer.data(), capacity, &next);
    return {length, buffer.data(), next};
}

struct TokenCase
{
    const char* name;
    const wchar_t* line;
    const wchar_t* text;
    const wchar_t* rest;
};

std::ostream& operator<<(std::ostream& stream, const TokenCase& row)
{
    return stream << row.name;
}

class TokenRules : public testing::TestWithParam<TokenCase>
{
};

TEST_P(TokenRules, CutTheNextToken)
{
    const TokenCase& row = GetParam();
    const Token token = Next(row.line);
    EXPECT_EQ(token.text, row.text);
    EXPECT_EQ(token.length, std::wstring(row.text).size());
    EXPECT_EQ(token.rest, row.rest);
}

INSTANTIATE_TEST_SUITE_P(Lines, TokenRules,
    testing::Values(TokenCase{"Plain", L"prog.exe /a", L"prog.exe", L" /a"},
        TokenCase{"LastOne", L"prog.exe", L"prog.exe", L""},
        TokenCase{"LeadingBlanks", L" \t\r\n\v\fprog x", L"prog", L" x"}, TokenCase{"EndsAtTab", L"a\tb", L"a", L"\tb"},
        TokenCase{"EndsAtLineFeed", L"a\nb", L"a", L"\nb"}, TokenCase{"EndsAtVerticalTab", L"a\vb", L"a", L"\vb"},
        TokenCase{"Quoted", L"\"a b\" c", L"a b", L" c"}, TokenCase{"QuotedAtTheEnd", L"\"a b\"", L"a b", L""},
        TokenCase{"TextBehindTheClosingQuoteIsTheNextToken", L"\"a b\"c d", L"a b", L"c d"},
        TokenCase{"DoubledQuoteIsAQuote", L"\"a\"\"b\" c", L"a\"b", L" c"},
        TokenCase{"DoubledQuoteAtTheStart", L"\"\"\"a\" c", L"\"a", L" c"},
        TokenCase{"DoubledQuoteAtTheEnd", L"\"a\"\"\" c", L"a\"", L" c"},
        TokenCase{"OnlyAQuote", L"\"\"\"\" c", L"\"", L" c"},
        TokenCase{"QuoteInsideAPlainTokenIsPlain", L"a\"b c\" d", L"a\"b", L" c\" d"},
        TokenCase{"BackslashesArePlain", L"\"a\\\" b", L"a\\", L" b"},
        TokenCase{"NoBreakSpaceIsPlain",
            L"a\x00A0"
            L"b c",
            L"a\x00A0"
            L"b",
            L" c"},
        TokenCase{"LeadingNoBreakSpaceIsPlain", L"\x00A0 c", L"\x00A0", L" c"},
        TokenCase{"IdeographicSpaceIsPlain",
            L"\x3000"
            L"a b",
            L"\x3000"
            L"a",
            L" b"},
        TokenCase{"NextLineControlIsPlain",
            L"a\x0085"
            L"b c",
            L"a\x0085"
            L"b",
            L" c"}),
    [](const testing::TestParamInfo<TokenCase>& row) { return std::string(row.param.name); });

class NoToken : public testing::TestWithParam<const wchar_t*>
{
};

TEST_P(NoToken, GivesAnEmptyText)
{
    const Token token = Next(GetParam());
    EXPECT_EQ(token.length, 0u);
    EXPECT_EQ(token.text, L"");
}

INSTANTIATE_TEST_SUITE_P(Lines, NoToken,
    testing::Values(L"", L" ", L" \t\r\n\v\f", L"\"\"", L" \"\" a", L"\"", L"\"a b", L"\"a\"\"", L" \"a\"\"b c"));

TEST(Tokens, PositionBehindAnEmptyQuotedTokenIsBehindItsQuotes)
{
    EXPECT_EQ(Next(L" \"\" a").rest, L" a");
}

TEST(Tokens, WhiteSpaceIsExactlyWhatTheRuntimeLibraryCallsSpaceBelow128)
{
    for (wchar_t c = 1; c < 0x100; ++c)
    {
        const std::wstring line = std::wstring(1, c) + L"x";
        const bool space = c < 128 && std::iswspace(static_cast<std::wint_t>(c));
        if (c == L'"') continue;
        EXPECT_EQ(Next(line).text, space ? L"x" : line) << "character " << static_cast<unsigned>(c);
    }
}

TEST(Tokens, LongestTokenIsStoredWhole)
{
    const std::wstring longest(511, L'a');
    const Token token = Next(longest + L" b");
    EXPECT_EQ(token.length, 511u);
    EXPECT_EQ(token.text, longest);
    EXPECT_EQ(token.rest, L" b");
}

TEST(Tokens, LongerTokenIsCutAndStillPassedWhole)
{
    for (const size_t length : {size_t{512}, size_t{600}})
    {
        const Token token = Next(std::wstring(510, L'a') + std::wstring(length - 510, L'b') + L" c");
        EXPECT_EQ(token.length, 511u);
        EXPECT_EQ(token.text, std::wstring(510, L'a') + L"b");
        EXPECT_EQ(token.rest, L" c");
    }
}

TEST(Tokens, LongerQuotedTokenIsCutAndStillPassedWhole)
{
    const Token token = Next(L"\"" + std::wstring(600, L'a') + L"\"\"\" c");
    EXPECT_EQ(token.length, 511u);
    EXPECT_EQ(token.rest, L" c");
}

TEST(Tokens, CapacityBoundsTheText)
{
    EXPECT_EQ(Next(L"abc d", 4).text, L"abc");
    EXPECT_EQ(Next(L"abc d", 3).text, L"ab");
    EXPECT_EQ(Next(L"abc d", 3).length, 2u);
    EXPECT_EQ(Next(L"abc d", 3).rest, L" d");
}

TEST(Tokens, PositionIsOptional)
{
    wchar_t buffer[8];
    EXPECT_EQ(NextCommandLineToken(L" abc d", buffer, 8, nullptr), 3u);
    EXPECT_STREQ(buffer, L"abc");
}

}  // namespace
