// The placeholders of translated error texts on their own: right ones, wrong ones and random ones.
#include "ui/placeholder_format.h"

#include "support/busy_blocks.h"

#include <gtest/gtest.h>

#include <climits>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

namespace
{

using arvmui::FillPlaceholders;
using arvmui::HeapBlock;
using arvmui::PlaceholderArgument;
using arvmui::PlaceholderPass;
using Arguments = std::vector<PlaceholderArgument>;

const PlaceholderArgument kText(L"a.dll");
const PlaceholderArgument kOtherText(L"b.txt");
const PlaceholderArgument kNumber(DWORD{1223});

std::wstring Fill(PlaceholderPass pass, const std::wstring& format, const Arguments& arguments)
{
    HeapBlock<wchar_t> result;
    if (!FillPlaceholders(result, pass, format.c_str(), arguments.data(), arguments.size())) return L"(failed)";
    return result.Get();
}

std::wstring FillLast(const std::wstring& format, const Arguments& arguments)
{
    return Fill(PlaceholderPass::kLast, format, arguments);
}

// Both passes of the error box: the caller's text first, then code and system text.
std::wstring FillTwice(const std::wstring& format, const Arguments& first, const Arguments& second)
{
    return FillLast(Fill(PlaceholderPass::kBeforeAnother, format, first), second);
}

struct Row
{
    const char* name;
    std::wstring format;
    Arguments arguments;
    std::wstring expected;
};

TEST(PlaceholderFormat, FillsArgumentsInOrder)
{
    const Row rows[] = {
        {"no placeholder", L"plain", {kText}, L"plain"},
        {"empty", L"", {kText}, L""},
        {"text", L"<%s>", {kText}, L"<a.dll>"},
        {"text with size prefix l", L"<%ls>", {kText}, L"<a.dll>"},
        {"text with size prefix w", L"<%ws>", {kText}, L"<a.dll>"},
        {"two texts", L"%s, %s", {kText, kOtherText}, L"a.dll, b.txt"},
        {"text cut by precision", L"<%.3s>", {kText}, L"<a.d>"},
        {"text in a width", L"<%8s>", {kText}, L"<   a.dll>"},
        {"text on the left of a width", L"<%-8s>", {kText}, L"<a.dll   >"},
        {"unsigned", L"%u", {kNumber}, L"1223"},
        {"unsigned long", L"%lu", {kNumber}, L"1223"},
        {"unsigned above the signed range", L"%lu", {PlaceholderArgument(DWORD{0xFFFFFFFF})}, L"4294967295"},
        {"signed", L"%ld", {PlaceholderArgument(DWORD{0xFFFFFFFF})}, L"-1"},
        {"decimal i", L"%i", {kNumber}, L"1223"},
        {"hexadecimal", L"0x%08lX", {kNumber}, L"0x000004C7"},
        {"hexadecimal in small letters", L"%x", {kNumber}, L"4c7"},
        {"octal", L"%o", {kNumber}, L"2307"},
        {"number then text", L"%lu: %s", {kNumber, kText}, L"1223: a.dll"},
        {"percent sign", L"100%% %s", {kText}, L"100% a.dll"},
        {"escaped placeholder", L"%%s %s", {kText}, L"%s a.dll"},
        {"empty text", L"<%s>", {PlaceholderArgument(L"")}, L"<>"},
        {"number 0", L"<%lu>", {PlaceholderArgument(DWORD{0})}, L"<0>"},
    };
    for (const Row& row : rows) EXPECT_EQ(FillLast(row.format, row.arguments), row.expected) << row.name;
}

TEST(PlaceholderFormat, PlaceholderWithoutItsArgumentStaysAsItIs)
{
    const Row rows[] = {
        {"none given", L"<%s>", {}, L"<%s>"},
        {"one too many", L"%s %s", {kText}, L"a.dll %s"},
        {"number for text", L"<%d>", {kText}, L"<%d>"},
        {"text for number", L"<%s>", {kNumber}, L"<%s>"},
        {"text for number, number later", L"%s %lu", {kNumber}, L"%s 1223"},
        {"write back", L"<%n>", {kNumber}, L"<%n>"},
        {"write back to text", L"<%n>", {kText}, L"<%n>"},
        {"width from an argument", L"<%*s>", {kText}, L"<%*s>"},
        {"precision from an argument", L"<%.*s>", {kNumber, kText}, L"<%.*s>"},
        {"numbered argument", L"<%1$s>", {kText}, L"<%1$s>"},
        {"pointer", L"<%p>", {kNumber}, L"<%p>"},
        {"floating point", L"<%f>", {kNumber}, L"<%f>"},
        {"character", L"<%c>", {kNumber}, L"<%c>"},
        {"narrow text", L"<%S>", {kText}, L"<%S>"},
        {"narrow text by prefix", L"<%hs>", {kText}, L"<%hs>"},
        {"64 bits", L"<%I64u>", {kNumber}, L"<%I64u>"},
        {"64 bits by prefix", L"<%llu>", {kNumber}, L"<%llu>"},
        {"number with prefix w", L"<%wd>", {kNumber}, L"<%wd>"},
        {"end behind the percent sign", L"100%", {kText}, L"100%"},
        {"end behind a flag", L"<%-", {kText}, L"<%-"},
        {"end behind a width", L"<%10", {kText}, L"<%10"},
        {"end behind a dot", L"<%.", {kText}, L"<%."},
        {"end behind a prefix", L"<%l", {kText}, L"<%l"},
        {"percent sign before a blank", L"50 % more: %s", {kText}, L"50 % more: a.dll"},
        {"enormous width", L"<%2000000000s>", {kText}, L"<%2000000000s>"},
        {"enormous precision", L"<%.2000000000d>", {kNumber}, L"<%.2000000000d>"},
        {"four digits", L"<%1000s>", {kText}, L"<%1000s>"},
        {"six flags", L"<%-+ #0-d>", {kNumber}, L"<%-+ #0-d>"},
    };
    for (const Row& row : rows) EXPECT_EQ(FillLast(row.format, row.arguments), row.expected) << row.name;
}

TEST(PlaceholderFormat, WidthIsHeededUpToALimit)
{
    EXPECT_EQ(FillLast(L"%999s", {kText}), std::wstring(994, L' ') + L"a.dll");
    EXPECT_EQ(FillLast(L"%20lu", {kNumber}), std::wstring(16, L' ') + L"1223");
    EXPECT_EQ(FillLast(L"%.20lu", {kNumber}), std::wstring(16, L'0') + L"1223");
    EXPECT_EQ(FillLast(L"%21lu", {kNumber}), L"%21lu");
    EXPECT_EQ(FillLast(L"%5.21lu", {kNumber}), L"%5.21lu");
}

TEST(PlaceholderFormat, PercentSignsOfArgumentsAreJustCharacters)
{
    for (const wchar_t* const name : {L"100%s off.dll", L"%n%n", L"%%", L"%", L"50%", L"%1$s", L"%lu"})
    {
        const Arguments arguments = {PlaceholderArgument(name)};
        const std::wstring expected = L"<" + std::wstring(name) + L"> 1223 a.dll";
        EXPECT_EQ(FillTwice(L"<%s> %%lu %%s", arguments, {kNumber, kText}), expected);
        EXPECT_EQ(FillLast(L"<%s>", arguments), L"<" + std::wstring(name) + L">");
    }
}

TEST(PlaceholderFormat, TwoPassesFillEscapedPlaceholdersSecond)
{
    struct
    {
        const char* name;
        const wchar_t* format;
        const wchar_t* expected;
    } const rows[] = {
        {"usual", L"File %s: error %%lu, %%s", L"File a.dll: error 1223, b.txt"},
        {"hexadecimal code", L"%s %%08lX", L"a.dll 000004C7"},
        {"percent sign for both passes", L"100%%%% %s", L"100% a.dll"},
        {"not escaped", L"%s: %lu", L"a.dll: %lu"},
        {"not escaped, of the first kind", L"%s: %s", L"a.dll: %s"},
        {"wrong kind in the second pass", L"%s %%s %%lu", L"a.dll %s 1223"},
        {"too many in the second pass", L"%s %%lu %%s %%s", L"a.dll 1223 b.txt %s"},
        {"lone percent sign", L"5 % of %s", L"5 % of a.dll"},
        {"percent sign at the end", L"%s 5%", L"a.dll 5%"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(FillTwice(row.format, {kText}, {kNumber, kOtherText}), row.expected) << row.name;
}

TEST(PlaceholderFormat, LongArgumentsAreWhole)
{
    const std::wstring text(20000, L'x');
    EXPECT_EQ(FillLast(L"<%s>", {PlaceholderArgument(text.c_str())}), L"<" + text + L">");
    EXPECT_EQ(FillLast(text, {}), text);
}

TEST(PlaceholderFormat, LeavesNoMemoryBehind)
{
    FillLast(L"%s", {kText});
    const size_t before = arvmui_test::CountBusyBlocks();
    FillTwice(L"%s %%lu %%s %s", {kText}, {kNumber, kText});
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

// What is neither '%' nor part of a placeholder survives, and nothing is read that is not there.
TEST(PlaceholderFormat, RandomFormatsAreHarmless)
{
    constexpr int kRounds = 200000;
    constexpr wchar_t kAlphabet[] = L"%%%%sdulxXoinp*.$-+ #0123456789lwhILSc";
    std::mt19937 random(20240229);  // any fixed seed: a failure must come again
    std::wstring format;
    for (int round = 0; round < kRounds; ++round)
    {
        format.clear();
        for (size_t length = random() % 24; length > 0; --length)
            format += kAlphabet[random() % (std::size(kAlphabet) - 1)];
        const std::wstring framed = L"(" + format + L")";
        const std::wstring result = FillTwice(framed, {kText}, {kNumber, kOtherText});
        ASSERT_GE(result.size(), size_t{2}) << round;
        ASSERT_EQ(result.front(), L'(') << round;
        ASSERT_EQ(result.back(), L')') << round;
    }
    EXPECT_TRUE(::HeapValidate(::GetProcessHeap(), 0, nullptr));
}

}  // namespace
