// Names of localized tables.
#include "installer/table_suffix.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace
{

using arvmui::CutLocaleSuffix;
using arvmui::HasLocaleSuffix;
using arvmui::kMeasureSuffix;
using arvmui::LocaleTableSuffix;

LocaleEntry EntryOf(const std::wstring& locale)
{
    LocaleEntry entry = {};
    locale.copy(entry.Locale, ARVMUI_TAG_CHARS - 1);
    entry.LocaleLength = static_cast<DWORD>(locale.size());
    return entry;
}

struct SuffixCase
{
    const char* name;
    const wchar_t* table;
    const wchar_t* suffix;
    bool hasSuffix;
};

void PrintTo(const SuffixCase& value, std::ostream* output)
{
    *output << value.name;
}

class TableName : public testing::TestWithParam<SuffixCase>
{
protected:
    static DWORD Length() { return static_cast<DWORD>(std::wstring(GetParam().suffix).size()); }
};

TEST_P(TableName, IsComparedWithTheSuffix)
{
    EXPECT_EQ(HasLocaleSuffix(GetParam().table, GetParam().suffix, Length()), GetParam().hasSuffix);
}

TEST_P(TableName, IsComparedWithASuffixThatIsToBeMeasured)
{
    EXPECT_EQ(HasLocaleSuffix(GetParam().table, GetParam().suffix, kMeasureSuffix), GetParam().hasSuffix);
}

const SuffixCase kSuffixCases[] = {
    {"Plain", L"Control_de", L"de", true},
    {"LongSuffix", L"Control_zh_CN", L"zh_CN", true},
    {"OtherCaseInTheTable", L"Control_ZH_cn", L"zh_CN", true},
    {"OtherCaseInTheSuffix", L"control_zh_cn", L"ZH_CN", true},
    {"OneCharacterBeforeTheUnderscore", L"C_de", L"de", true},
    {"UnderscoreBeforeTheUnderscore", L"__de", L"de", true},
    {"NothingBeforeTheUnderscore", L"_zh_CN", L"zh_CN", false},
    {"WithoutUnderscore", L"Controlzh_CN", L"zh_CN", false},
    {"OtherCharacterInPlaceOfTheUnderscore", L"Control-de", L"de", false},
    {"OtherSuffix", L"Control_fr", L"de", false},
    {"PartOfTheSuffix", L"Control_CN", L"zh_CN", false},
    {"SuffixWithinTheName", L"Control_de_x", L"de", false},
    {"SuffixOfASuffix", L"Control_zh_CN", L"CN", true},
    {"TheSuffixAlone", L"de", L"de", false},
    {"ShorterThanTheSuffix", L"e", L"de", false},
    {"Empty", L"", L"de", false},
    {"DottedCapitalI", L"Control_\u0130t", L"it", false},
};

INSTANTIATE_TEST_SUITE_P(Names, TableName, testing::ValuesIn(kSuffixCases),
    [](const testing::TestParamInfo<SuffixCase>& parameter) { return std::string(parameter.param.name); });

// The length decides how much of the suffix counts.
TEST(TableSuffix, IsComparedInItsLength)
{
    EXPECT_TRUE(HasLocaleSuffix(L"Control_de", L"deutsch", 2));
    EXPECT_FALSE(HasLocaleSuffix(L"Control_de", L"deutsch", kMeasureSuffix));
}

TEST(TableSuffix, MeasuresForTheAllOnesLength)
{
    EXPECT_EQ(kMeasureSuffix, 0xFFFFFFFFu);
}

TEST(TableSuffix, HasUnderscoresForEachHyphen)
{
    EXPECT_EQ(std::wstring(LocaleTableSuffix(EntryOf(L"zh-Hans-CN")).text), L"zh_Hans_CN");
}

TEST(TableSuffix, KeepsOtherCharacters)
{
    EXPECT_EQ(std::wstring(LocaleTableSuffix(EntryOf(L"x_y.Z+1")).text), L"x_y.Z+1");
}

TEST(TableSuffix, TakesTheLongestLocale)
{
    const std::wstring locale(63, L'-');
    const LocaleTableSuffix suffix(EntryOf(locale));
    EXPECT_EQ(std::wstring(suffix.text), std::wstring(63, L'_'));
    EXPECT_EQ(suffix.length, 63U);
}

// The entry knows it; nothing is measured.
TEST(TableSuffix, HasTheLengthOfTheEntry)
{
    LocaleEntry entry = EntryOf(L"de-DE");
    entry.LocaleLength = 3;
    EXPECT_EQ(LocaleTableSuffix(entry).length, 3U);
}

TEST(TableSuffix, IsCutWithItsUnderscore)
{
    wchar_t name[] = L"Control_Event_zh_CN";
    CutLocaleSuffix(name, 5);
    EXPECT_EQ(std::wstring(name), L"Control_Event");
}

}  // namespace
