// The statements with which a cached package is translated: which, in which order, for which tables.
#include "unit/installer/package_translation_fixture.h"

namespace
{

using arvmui_test::FinalStatements;
using arvmui_test::kLocaleQuery;
using arvmui_test::kTableQuery;
using arvmui_test::Statements;

using PackageTranslation = arvmui_test::PackageTranslationTest;

// What becomes of a table whose rows are folded into its base table, or only of the table.
Statements Fold(const std::wstring& base, const std::wstring& suffix)
{
    return {L"SELECT * FROM `" + base + L"`", L"SELECT * FROM `" + base + L"_" + suffix + L"`",
        L"DROP TABLE `" + base + L"_" + suffix + L"`",
        L"DELETE FROM `_Validation` WHERE `Table`='" + base + L"_" + suffix + L"'"};
}
Statements Drop(const std::wstring& name)
{
    return {L"DROP TABLE `" + name + L"`", L"DELETE FROM `_Validation` WHERE `Table`='" + name + L"'"};
}

Statements operator+(Statements left, const Statements& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

TEST_F(PackageTranslation, AsksForLocalesThenTablesThenRemovesTheChoiceOfLanguage)
{
    EXPECT_EQ(Translate(L"de"), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements(), (Statements{kLocaleQuery, kTableQuery} + FinalStatements(L"de", false)));
}

TEST_F(PackageTranslation, KeepsTheFontActionsOfAPackageWithTransforms)
{
    EXPECT_EQ(Translate(L"de", true), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements(), (Statements{kLocaleQuery, kTableQuery} + FinalStatements(L"de", true)));
}

TEST_F(PackageTranslation, ExecutesEveryFinalStatementWithoutFetching)
{
    EXPECT_EQ(Translate(L"de"), ERROR_SUCCESS);
    for (const std::wstring& statement : FinalStatements(L"de", false))
    {
        EXPECT_EQ(installer.CountCalls(L"MsiViewExecute " + statement), 1U);
        EXPECT_EQ(installer.CountCalls(L"MsiViewFetch " + statement), 0U);
        EXPECT_EQ(installer.CountCalls(L"MsiViewClose " + statement), 1U);
        EXPECT_EQ(installer.CountCalls(L"MsiCloseHandle view " + statement), 1U);
    }
}

TEST_F(PackageTranslation, FoldsATableOfTheLocaleIntoItsBase)
{
    SetTables({L"Control_de"});
    EXPECT_EQ(TranslateTables(L"de"), Fold(L"Control", L"de"));
}

TEST_F(PackageTranslation, WritesDashesInTableNamesAsUnderscores)
{
    SetTables({L"Control_zh_CN", L"Control_zh-CN"});
    EXPECT_EQ(TranslateTables(L"zh-CN"), Fold(L"Control", L"zh_CN"));
}

TEST_F(PackageTranslation, LeavesTheProductCodeOutOfTheLocalizedProperties)
{
    SetTables({L"Property_de"});
    const Statements expected = {L"SELECT * FROM `Property`",
        L"SELECT * FROM `Property_de` WHERE `Property`<>'ProductCode'", L"DROP TABLE `Property_de`",
        L"DELETE FROM `_Validation` WHERE `Table`='Property_de'"};
    EXPECT_EQ(TranslateTables(L"de"), expected);
}

TEST_F(PackageTranslation, TellsTheTablePropertyByCase)
{
    SetTables({L"PROPERTY_de", L"property_de"});
    EXPECT_EQ(TranslateTables(L"de"), Fold(L"PROPERTY", L"de") + Fold(L"property", L"de"));
}

TEST_F(PackageTranslation, OverwritesRowsOfTheBaseTableWhileItsViewIsOpen)
{
    SetTables({L"UIText_de"});
    const std::wstring base = L"SELECT * FROM `UIText`";
    const std::wstring localized = L"SELECT * FROM `UIText_de`";
    installer.rows[base] = {{L"bytes", L"Bytes"}};
    installer.rows[localized] = {{L"bytes", L"Byte"}, {L"GB", L"GByte"}};
    TranslateTables(L"de");

    const Statements calls = installer.Calls();
    const auto first = std::find(calls.begin(), calls.end(), L"MsiDatabaseOpenViewW " + base);
    const auto last = std::find(first, calls.end(), L"MsiCloseHandle view " + base);
    ASSERT_NE(last, calls.end());
    const Statements expected = {
        L"MsiDatabaseOpenViewW " + base,
        L"MsiViewExecute " + base,
        L"MsiDatabaseOpenViewW " + localized,
        L"MsiViewExecute " + localized,
        L"MsiViewFetch " + localized,
        L"MsiViewModify 3 bytes|Byte into " + base,
        L"MsiCloseHandle record bytes|Byte",
        L"MsiViewFetch " + localized,
        L"MsiViewModify 3 GB|GByte into " + base,
        L"MsiCloseHandle record GB|GByte",
        L"MsiViewFetch " + localized,
        L"MsiViewClose " + localized,
        L"MsiCloseHandle view " + localized,
        L"MsiViewClose " + base,
        L"MsiCloseHandle view " + base,
    };
    EXPECT_EQ(Statements(first, last + 1), expected);
}

TEST_F(PackageTranslation, OnlyDropsTablesWhenEnglishIsChosen)
{
    SetTables({L"Property_en", L"Control_de", L"Control_en", L"Property_zh_CN"});
    EXPECT_EQ(TranslateTables(L"en"),
        Drop(L"Property_en") + Drop(L"Control_de") + Drop(L"Control_en") + Drop(L"Property_zh_CN"));
}

TEST_F(PackageTranslation, DropsTablesOfTheOtherLocalesInTheOrderOfTheTables)
{
    SetTables({L"Control_fr", L"Control", L"Control_de", L"Property_zh_CN", L"Property_en", L"Binary_fr"});
    EXPECT_EQ(TranslateTables(L"de"), Drop(L"Control_fr") + Fold(L"Control", L"de") + Drop(L"Property_zh_CN")
                                          + Drop(L"Property_en") + Drop(L"Binary_fr"));
}

TEST_F(PackageTranslation, LeavesTablesOfNoLocaleAlone)
{
    SetTables({L"Property", L"Control_es", L"My_Table", L"_de", L"_fr", L"Controlde", L"Controlfr", L"de",
        L"Control_CN", L"Control_de_old", L"Control_de_fra"});
    EXPECT_EQ(TranslateTables(L"de"), Statements{});
}

TEST_F(PackageTranslation, IgnoresTheCaseOfASuffix)
{
    SetTables({L"Control_DE", L"Control_Fr"});
    EXPECT_EQ(TranslateTables(L"de"), Fold(L"Control", L"de") + Drop(L"Control_Fr"));
}

TEST_F(PackageTranslation, TakesTheChosenLocaleBeforeALongerOneOfThePackage)
{
    SetLocales({{L"zh-CN", L"2052"}, {L"CN", L"1031"}});
    SetTables({L"Control_zh_CN"});
    EXPECT_EQ(TranslateTables(L"CN"), Fold(L"Control_zh", L"CN"));
}

TEST_F(PackageTranslation, DropsATableOnceThoughTwoLocalesClaimIt)
{
    SetLocales({{L"de", L"1031"}, {L"zh-CN", L"2052"}, {L"CN", L"2052"}});
    SetTables({L"Control_zh_CN"});
    EXPECT_EQ(TranslateTables(L"de"), Drop(L"Control_zh_CN"));
}

struct LanguageCase
{
    const char* name;
    const wchar_t* tag;
    const wchar_t* number;
    LANGID language;
    bool isEnglish;
};

class PackageLanguage : public PackageTranslation, public testing::WithParamInterface<LanguageCase>
{
};

TEST_P(PackageLanguage, DecidesByThePrimaryLanguageOfTheIdentifier)
{
    const LanguageCase& row = GetParam();
    SetLocales({{row.tag, row.number}});
    SetTables({L"Control_" + std::wstring(row.tag)});
    const Statements expected = row.isEnglish ? Drop(L"Control_" + std::wstring(row.tag)) : Fold(L"Control", row.tag);
    EXPECT_EQ(TranslateTables(row.tag), expected);
    EXPECT_EQ(language, row.language);
}

INSTANTIATE_TEST_SUITE_P(Identifiers, PackageLanguage,
    testing::Values(LanguageCase{"UnitedStates", L"xx", L"1033", 0x0409, true},
        LanguageCase{"UnitedKingdom", L"xx", L"2057", 0x0809, true},
        LanguageCase{"PrimaryAlone", L"xx", L"9", 0x0009, true},
        LanguageCase{"GermanUnderAnEnglishTag", L"en", L"1031", 0x0407, false},
        LanguageCase{"LowByteOfEnglishInAnotherLanguage", L"xx", L"265", 0x0109, false},
        LanguageCase{"Chinese", L"xx", L"2052", 0x0804, false},
        LanguageCase{"MoreThanSixteenBits", L"xx", L"66567", 0x0407, false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(PackageTranslation, FindsTheLocaleWithoutRegardToCaseAndKeepsItsSpelling)
{
    SetTables({L"Control_zh_CN"});
    EXPECT_EQ(TranslateTables(L"ZH-cn"), Fold(L"Control", L"zh_CN"));
    EXPECT_EQ(language, 2052);
}

TEST_F(PackageTranslation, TakesTheFirstOfTwoEntriesOfALocale)
{
    SetLocales({{L"de", L"1031"}, {L"DE", L"3079"}});
    TranslateTables(L"DE");
    EXPECT_EQ(language, 1031);
}

TEST_F(PackageTranslation, DoesNothingForALocaleThatThePackageLacks)
{
    SetTables({L"Control_de"});
    for (const wchar_t* const locale : {L"es", L"", L"d", L"de-DE", L"zh_CN"})
    {
        EXPECT_EQ(Translate(locale), static_cast<UINT>(ERROR_FUNCTION_FAILED));
        EXPECT_EQ(installer.Statements(), Statements{kLocaleQuery});
    }
}

TEST_F(PackageTranslation, DoesNothingWithoutLocales)
{
    SetLocales({});
    EXPECT_EQ(Translate(L"de"), static_cast<UINT>(ERROR_FUNCTION_FAILED));
    EXPECT_EQ(installer.Statements(), Statements{kLocaleQuery});
}

TEST_F(PackageTranslation, DoesNothingWhenTheLocalesCannotBeRead)
{
    installer.Answer(std::wstring(L"MsiDatabaseOpenViewW ") + kLocaleQuery, ERROR_BAD_QUERY_SYNTAX);
    EXPECT_EQ(Translate(L"de"), static_cast<UINT>(ERROR_BAD_QUERY_SYNTAX));
    EXPECT_EQ(installer.Statements(), Statements{kLocaleQuery});
}

TEST_F(PackageTranslation, ReadsNoTextsOfTheLanguageDialog)
{
    EXPECT_EQ(Translate(L"de"), ERROR_SUCCESS);
    for (const std::wstring& statement : installer.Statements())
        EXPECT_EQ(statement.find(L"FROM `ARVUIText` WHERE `Locale`"), std::wstring::npos);
}

TEST_F(PackageTranslation, ManyTablesAreAllTreated)
{
    std::vector<std::wstring> names;
    Statements expected;
    for (int i = 0; i < 300; ++i)
    {
        const std::wstring base = L"A_table_of_a_rather_long_name_" + std::to_wstring(i);
        names.push_back(base + L"_de");
        expected = std::move(expected) + Fold(base, L"de");
    }
    SetTables(names);
    EXPECT_EQ(TranslateTables(L"de"), expected);
}

}  // namespace
