// The names of encodings, as people write them.

#include "arvmui.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace arvmui_test
{
namespace
{

struct NameCase
{
    const char* test;
    const char* name;
    DWORD codePage;
};

std::ostream& operator<<(std::ostream& stream, const NameCase& row)
{
    return stream << row.test;
}

constexpr NameCase kNames[] = {
    {"EucJp", "EUC-JP", 51932},
    {"EucJpLower", "euc-jp", 51932},
    {"Iso8859Underscore", "ISO8859_1", 0},
    {"Sjis", "SJIS", 932},
    {"SjisLower", "sjis", 932},
    {"Utf8Short", "UTF8", 65001},
    {"Utf8ShortMixed", "Utf8", 65001},
    {"Gb18030", "GB18030", 54936},
    {"Gb18030Lower", "gb18030", 54936},
    {"Gbk", "GBK", 936},
    {"GbkLower", "gbk", 936},
    {"Iso88591", "ISO-8859-1", 28591},
    {"Iso88591Lower", "iso-8859-1", 28591},
    {"ShiftJis", "Shift_JIS", 932},
    {"ShiftJisUpper", "SHIFT_JIS", 932},
    {"UsAscii", "US-ASCII", 0},
    {"Utf16Be", "UTF-16BE", 1201},
    {"Utf16BeLower", "utf-16be", 1201},
    {"Utf8", "UTF-8", 65001},
    {"Utf8Lower", "utf-8", 65001},
    {"Utf16", "UTF-16", 0},
    {"Utf16Le", "UTF-16LE", 0},
    {"Iso885915", "ISO-8859-15", 0},
    {"Utf8WithUnderscore", "UTF_8", 0},
    {"ShiftJisWithHyphen", "Shift-JIS", 0},
    {"NameWithBlankBehind", "UTF-8 ", 0},
    {"NameWithBlankBefore", " UTF-8", 0},
    {"CpPrefix", "CP1252", 1252},
    {"CpPrefixLower", "cp1252", 1252},
    {"MsPrefix", "MS932", 932},
    {"MsPrefixMixed", "mS932", 932},
    {"WindowsPrefix", "windows-1251", 1251},
    {"WindowsPrefixMixed", "Windows-1251", 1251},
    {"WindowsPrefixUpper", "WINDOWS-1251", 1251},
    {"WindowsWithoutHyphen", "windows1251", 0},
    {"TwoPrefixes", "CPMS932", 0},
    {"BareNumber", "1252", 1252},
    {"SmallestNumber", "1", 1},
    {"LargestNumber", "65535", 65535},
    {"TooLargeByOne", "65536", 0},
    {"WindowsUtf8", "windows-65001", 65001},
    {"WindowsTooLarge", "windows-65536", 0},
    {"Zero", "0", 0},
    {"CpZero", "CP0", 0},
    {"FarTooLarge", "99999999999999999999", 0},
    {"Negative", "-1", 0},
    {"NegativeThatWrapsAround", "-4294966044", 1252},
    {"PlusSign", "+1252", 1252},
    {"PlusSignBehindPrefix", "CP+1252", 1252},
    {"BlankBeforeNumber", " 1252", 1252},
    {"TabBeforeNumber", "\t1252", 1252},
    {"BlankBehindPrefix", "CP 1252", 1252},
    {"BlankBehindNumber", "1252 ", 0},
    {"LetterBehindNumber", "1252x", 0},
    {"LetterBeforeNumber", "x1252", 0},
    {"HexadecimalNumber", "0x4E4", 0},
    {"LeadingZeros", "0001252", 1252},
    {"LeadingZeroIsNotOctal", "010", 10},
    {"CpAlone", "CP", 0},
    {"MsAlone", "MS", 0},
    {"WindowsAlone", "windows-", 0},
    {"SignAlone", "-", 0},
    {"BlankAlone", " ", 0},
    {"Empty", "", 0},
};

class EncodingNameTest : public testing::TestWithParam<NameCase>
{
};

INSTANTIATE_TEST_SUITE_P(Names, EncodingNameTest, testing::ValuesIn(kNames),
    [](const auto& information) { return std::string(information.param.test); });

TEST_P(EncodingNameTest, GivesItsCodePageInBothWidths)
{
    const std::string narrow = GetParam().name;
    const std::wstring wide(narrow.begin(), narrow.end());
    EXPECT_EQ(ARVMUI_TextEncodingToCodePageW(wide.c_str()), GetParam().codePage);
    EXPECT_EQ(ARVMUI_TextEncodingToCodePageA(narrow.c_str()), GetParam().codePage);
}

TEST(EncodingName, MissingNameIsUnknown)
{
    EXPECT_EQ(ARVMUI_TextEncodingToCodePageW(nullptr), 0u);
    EXPECT_EQ(ARVMUI_TextEncodingToCodePageA(nullptr), 0u);
}

// The comparison takes case and nothing else for equal.
TEST(EncodingName, FullWidthLettersAreOtherLetters)
{
    EXPECT_EQ(ARVMUI_TextEncodingToCodePageW(L"\xFF35\xFF34\xFF26"
                                             L"8"),
        0u);
}

TEST(EncodingName, LongNameIsUnknown)
{
    EXPECT_EQ(ARVMUI_TextEncodingToCodePageW(std::wstring(10000, L'x').c_str()), 0u);
    EXPECT_EQ(ARVMUI_TextEncodingToCodePageA(std::string(10000, 'x').c_str()), 0u);
}

}  // namespace
}  // namespace arvmui_test
