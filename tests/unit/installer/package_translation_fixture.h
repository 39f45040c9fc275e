// A package as the stand-in for the installer presents it to the translation of cached packages, and
// the statements that the translation makes of it.
#pragma once

#include "installer/package_translation.h"
#include "unit/installer/installer_fixture.h"

#include <string>
#include <vector>

namespace arvmui_test
{

using Statements = std::vector<std::wstring>;

inline constexpr wchar_t kLocaleQuery[] =
    L"SELECT `Locale`,`LangID`,`EnglishName`,`NativeName` FROM `ARVUILocale` ORDER BY `DisplayOrder`";
inline constexpr wchar_t kTableQuery[] = L"SELECT `Name` FROM `_Tables`";

// What removes the choice of the language, whatever tables there are.
inline Statements FinalStatements(const std::wstring& locale, bool withTransforms)
{
    const std::wstring id = L".5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17'";
    const std::wstring setLocale = L" WHERE `Action`='ARV_MUI_SetLocale" + id;
    Statements statements = {
        L"DELETE FROM `AdminExecuteSequence`" + setLocale,
        L"DELETE FROM `AdminUISequence`" + setLocale,
        L"DELETE FROM `InstallExecuteSequence`" + setLocale,
    };
    if (!withTransforms)
    {
        statements.push_back(L"DELETE FROM `InstallExecuteSequence` WHERE `Action`='ARV_MUI_StartFontResetter" + id);
        statements.push_back(L"DELETE FROM `InstallExecuteSequence` WHERE `Action`='ARV_MUI_StopFontResetter" + id);
    }
    const Statements rest = {
        L"DELETE FROM `InstallExecuteSequence` WHERE `Action`='ARV_MUI_TranslateLocalPackage" + id,
        L"DELETE FROM `InstallUISequence`" + setLocale,
        L"DELETE FROM `_Validation` WHERE `Table`='ARVUILocale'",
        L"DELETE FROM `_Validation` WHERE `Table`='ARVUIText'",
        L"DROP TABLE `ARVUILocale`",
        L"DROP TABLE `ARVUIText`",
        L"DELETE FROM `ArvDialogMapping` WHERE `Dialog_`='Language_Selection_Dialog'",
        L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('UILOCALE','" + locale + L"')",
    };
    statements.insert(statements.end(), rest.begin(), rest.end());
    return statements;
}

class PackageTranslationTest : public InstallerTest
{
protected:
    PackageTranslationTest()
    {
        SetLocales({{L"en", L"1033"}, {L"de", L"1031"}, {L"fr", L"1036"}, {L"zh-CN", L"2052"}});
    }

    struct LocaleRow
    {
        std::wstring tag;
        std::wstring language;
    };
    void SetLocales(const std::vector<LocaleRow>& locales)
    {
        installer.rows[kLocaleQuery].clear();
        for (const LocaleRow& locale : locales)
            installer.rows[kLocaleQuery].push_back({locale.tag, locale.language, L"English name", L"native name"});
    }

    void SetTables(const std::vector<std::wstring>& names)
    {
        installer.rows[kTableQuery].clear();
        for (const std::wstring& name : names) installer.rows[kTableQuery].push_back({name});
    }

    UINT Translate(const std::wstring& locale, bool withTransforms = false)
    {
        installer.ForgetCalls();
        return arvmui::TranslateLocalPackageTables(database, locale.c_str(), withTransforms, &language);
    }

    // The statements about the package's tables: those between the two queries that begin every
    // translation and the final statements, both of which are checked.
    Statements TranslateTables(const std::wstring& locale)
    {
        EXPECT_EQ(Translate(locale), ERROR_SUCCESS);
        Statements all = installer.Statements();
        const Statements last = FinalStatements(locale, false);
        if (all.size() < 2 + last.size())
        {
            ADD_FAILURE() << "statements are missing";
            return {};
        }
        EXPECT_EQ(Statements(all.begin(), all.begin() + 2), (Statements{kLocaleQuery, kTableQuery}));
        const auto end = all.end() - static_cast<std::ptrdiff_t>(last.size());
        EXPECT_EQ(Statements(end, all.end()), last);
        return Statements(all.begin() + 2, end);
    }

    LANGID language = 0;
};

}  // namespace arvmui_test
