#include "cmdline/argument_escape.h"

#include "foundation/heap.h"
#include "support/busy_blocks.h"
#include "support/guarded_text.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace
{

using arvmui::AppendEscapedArgument;
using arvmui::AppendUnescapedArgument;
using arvmui_test::GuardedText;

using Append = int (*)(wchar_t**, int, const wchar_t*) noexcept;

struct Appended
{
    int count;
    std::wstring text;
};

// What a function appends to nothing; the block may hold a null character.
Appended FromNothing(Append append, const std::wstring& text)
{
    const GuardedText<wchar_t> source(text);
    arvmui::HeapBlock<wchar_t> block;
    const int count = append(block.Slot(), -1, source.Get());
    return {count, block.Get() ? block.Get() : L"(no block)"};
}

std::wstring Escape(const std::wstring& text)
{
    return FromNothing(AppendEscapedArgument, text).text;
}
std::wstring Unescape(const std::wstring& text)
{
    return FromNothing(AppendUnescapedArgument, text).text;
}

std::wstring FourDigits(unsigned value)
{
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    std::wstring digits;
    for (int shift = 12; shift >= 0; shift -= 4) digits.push_back(kDigits[value >> shift & 0xF]);
    return digits;
}

TEST(Escaping, BackslashIsDoubled)
{
    const Appended result = FromNothing(AppendEscapedArgument, L"\\");
    EXPECT_EQ(result.text, L"\\\\");
    EXPECT_EQ(result.count, 2);
}

TEST(Escaping, PrintableAsciiStandsForItself)
{
    for (wchar_t c = 0x20; c <= 0x7E; ++c)
    {
        if (c == L'"' || c == L'\\') continue;
        EXPECT_EQ(Escape(std::wstring(1, c)), std::wstring(1, c));
    }
}

TEST(Escaping, EverythingElseIsWrittenAsFourHexadecimalDigits)
{
    for (unsigned c = 1; c <= 0xFFFF; ++c)
    {
        if (c >= 0x20 && c <= 0x7E && c != L'"') continue;
        const Appended result = FromNothing(AppendEscapedArgument, std::wstring(1, static_cast<wchar_t>(c)));
        ASSERT_EQ(result.text, L"\\u" + FourDigits(c));
        ASSERT_EQ(result.count, 6);
    }
}

TEST(Escaping, PathWithAQuotedBlank)
{
    EXPECT_EQ(Escape(L"C:\\a \"b\""), L"C:\\\\a \\u0022b\\u0022");
    EXPECT_EQ(Unescape(L"C:\\\\a \\u0022b\\u0022"), L"C:\\a \"b\"");
}

TEST(Escaping, EmptyTextGivesAnEmptyBlock)
{
    const Appended result = FromNothing(AppendEscapedArgument, L"");
    EXPECT_EQ(result.count, 0);
    EXPECT_EQ(result.text, L"");
}

struct UnescapeCase
{
    const char* name;
    const wchar_t* escaped;
    const wchar_t* text;
};

std::ostream& operator<<(std::ostream& stream, const UnescapeCase& row)
{
    return stream << row.name;
}

class Unescaping : public testing::TestWithParam<UnescapeCase>
{
};

TEST_P(Unescaping, Decodes)
{
    const UnescapeCase& row = GetParam();
    const Appended result = FromNothing(AppendUnescapedArgument, row.escaped);
    EXPECT_EQ(result.text, row.text);
    EXPECT_EQ(result.count, static_cast<int>(std::wstring(row.text).size()));
}

INSTANTIATE_TEST_SUITE_P(Rows, Unescaping,
    testing::Values(UnescapeCase{"Plain", L"abc", L"abc"}, UnescapeCase{"Empty", L"", L""},
        UnescapeCase{"TwoBackslashes", L"a\\\\b", L"a\\b"}, UnescapeCase{"FourBackslashes", L"\\\\\\\\", L"\\\\"},
        UnescapeCase{"UpperCaseDigits", L"\\u00E9", L"\x00E9"},
        UnescapeCase{"LowerCaseDigits", L"\\u00e9\\uabcd", L"\x00E9\xABCD"},
        UnescapeCase{"HighestDigitFirst", L"\\u1234", L"\x1234"},
        UnescapeCase{"DigitsBehindTheFourAreText", L"\\u00419", L"A9"},
        UnescapeCase{"SurrogatePair", L"\\uD83D\\uDE00", L"\xD83D\xDE00"},
        UnescapeCase{"RawCharactersStay", L"\x00E9\"\x7F", L"\x00E9\"\x7F"},
        UnescapeCase{"EscapedBackslashBeforeAnX", L"a\\\\x", L"a\\x"},
        UnescapeCase{"BackslashXEndsTheText", L"abc\\xdef", L"abc"},
        UnescapeCase{"BackslashQuoteEndsTheText", L"abc\\\"def", L"abc"},
        UnescapeCase{"LoneBackslashEndsTheText", L"abc\\", L"abc"},
        UnescapeCase{"UpperCaseUEndsTheText", L"a\\U0041b", L"a"}, UnescapeCase{"NoDigits", L"a\\u", L"a"},
        UnescapeCase{"ThreeDigits", L"a\\u004", L"a"}, UnescapeCase{"ThreeDigitsAndText", L"a\\u004g0041", L"a"},
        UnescapeCase{"FirstDigitWrong", L"a\\ug041b", L"a"}, UnescapeCase{"BackslashAtTheStart", L"\\x41", L""}),
    [](const testing::TestParamInfo<UnescapeCase>& row) { return std::string(row.param.name); });

// The runtime library decides what a hexadecimal digit is, and its tables know other scripts.
TEST(UnescapingDigits, OfEveryScriptFollowTheRuntimeLibrary)
{
    for (unsigned c = 1; c <= 0xFFFF; ++c)
    {
        const std::wint_t digit = static_cast<std::wint_t>(c);
        const std::wstring escaped = L"\\u000" + std::wstring(1, static_cast<wchar_t>(c));
        const std::wstring text = Unescape(escaped);
        if (!std::iswctype(digit, _HEX))
        {
            ASSERT_EQ(text, L"") << std::hex << c;
            continue;
        }
        const unsigned value =
            std::iswctype(digit, _DIGIT) ? c - L'0' : static_cast<unsigned>(std::towupper(digit)) - 55;
        // A text's length is the one that was counted, whatever the characters are.
        ASSERT_EQ(text, value == 0 ? std::wstring() : std::wstring(1, static_cast<wchar_t>(value))) << std::hex << c;
    }
}

TEST(UnescapingDigits, FullWidthDigitIsItsCodeLessThatOfAnAsciiZero)
{
    constexpr wchar_t kFullWidthFive = 0xFF15;
    if (!std::iswctype(kFullWidthFive, _HEX)) GTEST_SKIP() << "the runtime library knows ASCII digits only";
    const bool digit = std::iswctype(kFullWidthFive, _DIGIT) != 0;
    const unsigned value = digit ? 0xFF15u - 0x30u : 0xFF15u - 55u;
    EXPECT_EQ(Unescape(L"\\u000\xFF15"), std::wstring(1, static_cast<wchar_t>(value)));
}

TEST(Unescaping, NullCharacterCountsAsOneCharacter)
{
    EXPECT_EQ(FromNothing(AppendUnescapedArgument, L"a\\u0000b").count, 3);
}

std::wstring RandomText(std::mt19937& random, size_t longest)
{
    std::uniform_int_distribution<size_t> length(0, longest);
    std::uniform_int_distribution<unsigned> any(1, 0xFFFF);
    std::uniform_int_distribution<unsigned> ascii(1, 0x7F);
    constexpr wchar_t kSpecial[] = L"\\\"u0aFx ";
    std::uniform_int_distribution<size_t> special(0, std::size(kSpecial) - 2);
    std::wstring text(length(random), L'\0');
    for (wchar_t& c : text)
    {
        switch (any(random) % 3)
        {
            case 0: c = static_cast<wchar_t>(any(random)); break;
            case 1: c = static_cast<wchar_t>(ascii(random)); break;
            default: c = kSpecial[special(random)]; break;
        }
    }
    return text;
}

TEST(Escaping, UnescapingIsItsInverse)
{
    std::mt19937 random(20);
    for (int i = 0; i < 5000; ++i)
    {
        const std::wstring text = RandomText(random, 60);
        const std::wstring escaped = Escape(text);
        ASSERT_EQ(Unescape(escaped), text);
        for (const wchar_t c : escaped)
        {
            ASSERT_GE(c, 0x20);
            ASSERT_LE(c, 0x7E);
            ASSERT_NE(c, L'"');
        }
    }
}

TEST(Escaping, AppendsAtTheEndForANegativePosition)
{
    arvmui::HeapBlock<wchar_t> block;
    EXPECT_EQ(AppendEscapedArgument(block.Slot(), -1, L"a"), 1);
    EXPECT_EQ(AppendEscapedArgument(block.Slot(), -1, L"\""), 6);
    EXPECT_EQ(AppendEscapedArgument(block.Slot(), -7, L"b"), 1);
    EXPECT_STREQ(block.Get(), L"a\\u0022b");
}

TEST(Escaping, WritesOverTheTextFromAPosition)
{
    arvmui::HeapBlock<wchar_t> block;
    ASSERT_EQ(AppendEscapedArgument(block.Slot(), -1, L"abcdef"), 6);
    EXPECT_EQ(AppendEscapedArgument(block.Slot(), 2, L"x"), 1);
    EXPECT_STREQ(block.Get(), L"abx");
    EXPECT_EQ(AppendEscapedArgument(block.Slot(), 0, L"yz"), 2);
    EXPECT_STREQ(block.Get(), L"yz");
}

TEST(Unescaping, AppendsAtTheEndAndWritesFromAPosition)
{
    arvmui::HeapBlock<wchar_t> block;
    ASSERT_EQ(AppendUnescapedArgument(block.Slot(), -1, L"ab"), 2);
    EXPECT_EQ(AppendUnescapedArgument(block.Slot(), -1, L"\\u0063\\\\"), 2);
    EXPECT_STREQ(block.Get(), L"abc\\");
    EXPECT_EQ(AppendUnescapedArgument(block.Slot(), 1, L"x\\y"), 1);
    EXPECT_STREQ(block.Get(), L"ax");
}

// BuildArgumentVector's result, copied, with its block freed.
std::vector<std::wstring> Vector(const char* line, DWORD* count)
{
    const arvmui::HeapBlock<wchar_t*> block(arvmui::BuildArgumentVector(line, count));
    std::vector<std::wstring> arguments;
    if (!block) return {L"(null)"};
    wchar_t** const pointers = block.Get();
    for (DWORD i = 0; i < *count; ++i) arguments.emplace_back(pointers[i]);
    EXPECT_EQ(pointers[*count], nullptr);
    return arguments;
}

struct VectorCase
{
    const char* name;
    const char* line;
    std::vector<std::wstring> arguments;
};

std::ostream& operator<<(std::ostream& stream, const VectorCase& row)
{
    return stream << row.name;
}

class ArgumentVector : public testing::TestWithParam<VectorCase>
{
};

TEST_P(ArgumentVector, HoldsTheUnescapedArguments)
{
    const size_t before = arvmui_test::CountBusyBlocks();
    DWORD count = 99;
    EXPECT_EQ(Vector(GetParam().line, &count), GetParam().arguments);
    EXPECT_EQ(count, GetParam().arguments.size());
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

INSTANTIATE_TEST_SUITE_P(Lines, ArgumentVector,
    testing::Values(VectorCase{"Empty", "", {}}, VectorCase{"Blanks", " \t ", {}}, VectorCase{"One", "a", {L"a"}},
        VectorCase{"LeadingBlanks", "  \t a b", {L"a", L"b"}}, VectorCase{"Quoted", " \"a b\" \"c\"", {L"a b", L"c"}},
        VectorCase{"Escaped", " \"C:\\\\a \\u0022b\\u0022\" \"\\u00E9\\u65E5\"", {L"C:\\a \"b\"", L"\x00E9\x65E5"}},
        VectorCase{"CutAtAWrongEscape", " \"a\\xb\" \"c\"", {L"a", L"c"}},
        VectorCase{"EmptyArgument", " \"a\" \"\" \"b\"", {L"a", L"", L"b"}},
        VectorCase{"AnsiCharacter", " \"\\u0041\" \"b\"", {L"A", L"b"}}),
    [](const testing::TestParamInfo<VectorCase>& row) { return std::string(row.param.name); });

TEST(ArgumentVectors, CountIsOptional)
{
    const arvmui::HeapBlock<wchar_t*> block(arvmui::BuildArgumentVector("a b", nullptr));
    ASSERT_TRUE(block);
    EXPECT_STREQ(block.Get()[1], L"b");
    EXPECT_EQ(block.Get()[2], nullptr);
}

TEST(ArgumentVectors, StringsLieInTheBlockBehindThePointers)
{
    const arvmui::HeapBlock<wchar_t*> block(arvmui::BuildArgumentVector("ab c d", nullptr));
    ASSERT_TRUE(block);
    const wchar_t* const strings = reinterpret_cast<const wchar_t*>(block.Get() + 4);
    EXPECT_EQ(block.Get()[0], strings);
    EXPECT_EQ(block.Get()[1], strings + 3);
    EXPECT_EQ(block.Get()[2], strings + 5);
}

TEST(ArgumentVectors, LineComesThroughTheAnsiCodePage)
{
    const unsigned char line[] = {'a', 0xE9, '\0'};
    wchar_t expected[4] = {};
    ::MultiByteToWideChar(CP_ACP, 0, reinterpret_cast<const char*>(line), -1, expected, 4);
    DWORD count = 0;
    EXPECT_EQ(Vector(reinterpret_cast<const char*>(line), &count), std::vector<std::wstring>{expected});
}

// The closing quote makes the shell's rules halve the two backslashes in front of it, and the one left
// starts no escape. The first argument is split as a program's name is, without such a rule.
TEST(ArgumentVectors, LoseABackslashAtTheEndOfALaterArgument)
{
    DWORD count = 0;
    EXPECT_EQ(Vector(" \"C:\\\\\" \"D:\\\\\" \"b\"", &count), (std::vector<std::wstring>{L"C:\\", L"D:", L"b"}));
}

TEST(ArgumentVectors, GiveBackWhatEscapingWrote)
{
    std::mt19937 random(4);
    for (int i = 0; i < 500; ++i)
    {
        std::vector<std::wstring> arguments;
        std::string line;
        for (int k = 0; k < 4; ++k)
        {
            // The shell's rules halve backslashes before a closing quote.
            arguments.push_back(RandomText(random, 40) + L".");
            line += " \"";
            for (const wchar_t c : Escape(arguments.back())) line.push_back(static_cast<char>(c));
            line += "\"";
        }
        DWORD count = 0;
        ASSERT_EQ(Vector(line.c_str(), &count), arguments);
    }
}

}  // namespace
