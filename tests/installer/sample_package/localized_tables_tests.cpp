// Whether the localized tables fit their base tables and the list of locales.

#include "installer/sample_package/sample_package.h"

#include <gmock/gmock.h>

#include <set>

using namespace arvmui_test;

namespace
{

constexpr LANGID kPrimaryLanguageMask = 0x3FF;

bool IsEnglish(const PackageLocale& locale)
{
    return (locale.language & kPrimaryLanguageMask) == LANG_ENGLISH;
}

// The localized tables with their base tables.
template <typename Check>
void ForEachLocalizedTable(const Check& check)
{
    int tables = 0;
    for (const PackageTable& table : Sample().Tables())
    {
        const std::optional<std::wstring> base = Sample().BaseOf(table);
        if (!base) continue;
        const PackageTable* const baseTable = Sample().Find(*base);
        ASSERT_NE(baseTable, nullptr) << Narrow(table.name);
        ++tables;
        check(table, *baseTable);
    }
    EXPECT_GT(tables, 0);
}

}  // namespace

TEST(SamplePackageLocales, AreTheFiveThatItIsSaidToSpeak)
{
    std::vector<std::pair<std::wstring, LANGID>> locales;
    for (const PackageLocale& locale : Sample().Locales()) locales.emplace_back(locale.tag, locale.language);
    EXPECT_THAT(locales, testing::UnorderedElementsAre(std::pair{L"en", MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US)},
                             std::pair{L"de", MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN)},
                             std::pair{L"fr", MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH)},
                             std::pair{L"ja", MAKELANGID(LANG_JAPANESE, SUBLANG_JAPANESE_JAPAN)},
                             std::pair{L"zh-CN", MAKELANGID(LANG_CHINESE, SUBLANG_CHINESE_SIMPLIFIED)}));
}

TEST(SamplePackageLocales, HaveAnOrderOfTheirOwnEach)
{
    std::set<std::wstring> orders;
    for (const PackageRow& row : Sample().Table(L"ARVUILocale").rows) orders.insert(row.at(L"DisplayOrder"));
    EXPECT_EQ(orders.size(), Sample().Locales().size());
}

TEST(SamplePackageLocales, HaveTheFourTextsOfTheLanguageDialog)
{
    const PackageTable& texts = Sample().Table(L"ARVUIText");
    EXPECT_EQ(texts.rows.size(), 4 * Sample().Locales().size());
    for (const PackageLocale& locale : Sample().Locales())
    {
        for (const wchar_t* key : {L"LanguageSelectionTitle", L"LanguageSelectionDesc", L"OK", L"Cancel"})
        {
            const PackageRow* const row = texts.FindRow(key + std::wstring(1, kKeySeparator) + locale.tag);
            ASSERT_NE(row, nullptr) << Narrow(locale.tag) << ' ' << Narrow(key);
            EXPECT_FALSE(row->at(L"Text").empty()) << Narrow(locale.tag) << ' ' << Narrow(key);
        }
    }
}

TEST(SamplePackageLocales, TheirLanguageDialogTextsFitIntoTheDialogsRoom)
{
    for (const PackageRow& row : Sample().Table(L"ARVUIText").rows)
    {
        const bool isButton = row.at(L"Key") == L"OK" || row.at(L"Key") == L"Cancel";
        EXPECT_LE(row.at(L"Text").size(), isButton ? 31u : 255u) << Narrow(row.at(L"Text"));
    }
    for (const PackageRow& row : Sample().Table(L"ARVUILocale").rows)
    {
        EXPECT_LE(row.at(L"EnglishName").size(), 63u);
        EXPECT_LE(row.at(L"NativeName").size(), 63u);
    }
}

TEST(SamplePackageLocales, HavePropertiesOfTheirOwnEach)
{
    for (const PackageLocale& locale : Sample().Locales())
        EXPECT_NE(Sample().Find(L"Property" + locale.suffix), nullptr) << Narrow(locale.tag);
}

TEST(SamplePackageLocales, EnglishPropertiesAreThoseOfTheBaseTable)
{
    for (const PackageRow& row : Sample().Table(L"Property_en").rows)
        EXPECT_EQ(row, Sample().Row(L"Property", row.at(L"Property")));
}

TEST(SamplePackageLocales, EveryTranslatedPropertyIsAmongTheEnglishOnes)
{
    for (const PackageLocale& locale : Sample().Locales())
    {
        for (const PackageRow& row : Sample().Table(L"Property" + locale.suffix).rows)
            EXPECT_NE(Sample().Table(L"Property_en").FindRow(row.at(L"Property")), nullptr)
                << Narrow(locale.tag + L" " + row.at(L"Property"));
    }
}

TEST(SamplePackageLocales, NoLocaleTranslatesWhatIdentifiesTheProduct)
{
    for (const PackageLocale& locale : Sample().Locales())
    {
        for (const wchar_t* name :
            {L"ProductCode", L"ProductCodeFast", L"UpgradeCode", L"ProductVersion", L"SecureCustomProperties"})
            EXPECT_EQ(Sample().Table(L"Property" + locale.suffix).FindRow(name), nullptr)
                << Narrow(locale.tag + L" " + name);
    }
}

TEST(SamplePackageLocales, LocalizedTablesHaveTheirBaseTablesColumns)
{
    ForEachLocalizedTable(
        [](const PackageTable& table, const PackageTable& base)
        {
            EXPECT_EQ(table.columns, base.columns) << Narrow(table.name);
            EXPECT_EQ(table.types, base.types) << Narrow(table.name);
            EXPECT_EQ(table.keys, base.keys) << Narrow(table.name);
        });
}

TEST(SamplePackageLocales, LocalizedRowsReplaceRowsThatExist)
{
    ForEachLocalizedTable(
        [](const PackageTable& table, const PackageTable& base)
        {
            EXPECT_FALSE(table.rows.empty()) << Narrow(table.name);
            for (const PackageRow& row : table.rows)
                EXPECT_NE(base.FindRow(base.KeyOf(row)), nullptr) << Narrow(table.name + L": " + base.KeyOf(row));
        });
}

TEST(SamplePackageLocales, LocalizedRowsDifferFromEnglishOnes)
{
    for (const PackageLocale& locale : Sample().Locales())
    {
        if (IsEnglish(locale)) continue;
        ForEachLocalizedTable(
            [&locale](const PackageTable& table, const PackageTable& base)
            {
                if (table.name != base.name + locale.suffix) return;
                for (const PackageRow& row : table.rows)
                    EXPECT_NE(row, *base.FindRow(base.KeyOf(row))) << Narrow(table.name + L": " + base.KeyOf(row));
            });
    }
}

TEST(SamplePackageLocales, LocalizedRowsDifferInTextsAndFontsOnly)
{
    const std::set<std::wstring> mayDiffer = {
        L"Text", L"Title", L"Value", L"Description", L"Message", L"Name", L"Data", L"FaceName", L"Size"};
    ForEachLocalizedTable(
        [&mayDiffer](const PackageTable& table, const PackageTable& base)
        {
            for (const PackageRow& row : table.rows)
            {
                const PackageRow& english = *base.FindRow(base.KeyOf(row));
                for (const auto& [column, value] : row)
                    EXPECT_TRUE(value == english.at(column) || mayDiffer.contains(column))
                        << Narrow(table.name + L": " + base.KeyOf(row) + L": " + column);
            }
        });
}

TEST(SamplePackageLocales, EveryLanguageButEnglishHasAPictureOfItsOwn)
{
    std::set<std::wstring> pictures;
    for (const PackageLocale& locale : Sample().Locales())
        pictures.insert(Sample().Localized(L"Binary", locale).FindRow(L"Greeting")->at(L"Data"));
    EXPECT_EQ(pictures.size(), Sample().Locales().size());
}
