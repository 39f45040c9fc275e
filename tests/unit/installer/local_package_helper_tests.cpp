// The helper's entry point, which rewrites a cached package: its command line, the steps and what
// each failing one keeps from happening.
#include "arvmui.h"
#include "support/environment_variable.h"
#include "support/temporary_folder.h"
#include "unit/installer/package_translation_fixture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace
{

using arvmui_test::FinalStatements;
using arvmui_test::kLocaleQuery;
using arvmui_test::kTableQuery;

constexpr UINT kError = ERROR_INVALID_DATA;
constexpr char kGerman[] = "\"de\" \"C:\\\\a package.msi\" \"NOTRANSFORM\"";
constexpr wchar_t kOpen[] = L"MsiOpenDatabaseW C:\\a package.msi mode 1";

class LocalPackageHelper : public arvmui_test::PackageTranslationTest
{
protected:
    LocalPackageHelper() : variable_(L"TMP", folder_.Path().c_str())
    {
        installer.isLoaded = false;  // the process has not loaded the installer by itself
        import = L"MsiDatabaseImportW " + folder_.Path().wstring() + L"\\ ARVMUI"
                 + std::to_wstring(::GetCurrentProcessId()) + L".IDT";
        installer.onCall = [this](const std::wstring& call)
        {
            if (call != import) return;
            for (const auto& entry : std::filesystem::directory_iterator(folder_.Path()))
            {
                std::ifstream file(entry.path(), std::ios::binary);
                imported.assign(std::istreambuf_iterator<char>(file), {});
            }
        };
    }
    void TearDown() override
    {
        EXPECT_EQ(installer.Loads(), 0) << "the installer is still loaded";
        EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
        PackageTranslationTest::TearDown();
    }

    void Run(const std::string& commandLine)
    {
        installer.ForgetCalls();
        std::string line = commandLine;
        ARVMUI_RUNDLL32_TranslateLocalPackage(nullptr, nullptr, line.data(), SW_SHOWNORMAL);
    }

    std::wstring import;
    std::string imported;  // the file at the moment of its import

private:
    arvmui_test::TemporaryFolder folder_;
    arvmui_test::EnvironmentVariable variable_;
};

TEST_F(LocalPackageHelper, OpensTranslatesSetsTheCodePageAndCommits)
{
    Run(kGerman);
    const std::vector<std::wstring>& calls = installer.Calls();
    ASSERT_GE(calls.size(), 4U);
    EXPECT_EQ(calls.front(), kOpen);
    EXPECT_EQ(calls[1], std::wstring(L"MsiDatabaseOpenViewW ") + kLocaleQuery);
    const std::wstring lastStatement = FinalStatements(L"de", false).back();
    const std::vector<std::wstring> end = {
        L"MsiCloseHandle view " + lastStatement, import, L"MsiDatabaseCommit", L"MsiCloseHandle database"};
    EXPECT_EQ(std::vector<std::wstring>(calls.end() - 4, calls.end()), end);
}

TEST_F(LocalPackageHelper, LoadsTheInstallerOfTheSystemFolder)
{
    wchar_t windows[MAX_PATH] = {};
    ::GetEnvironmentVariableW(L"windir", windows, MAX_PATH);
    Run(kGerman);
    EXPECT_EQ(installer.LoadedPaths(), std::vector<std::wstring>{std::wstring(windows) + L"\\SYSTEM32\\MSI.DLL"});
}

TEST_F(LocalPackageHelper, BindsTheInstallerThatItLoaded)
{
    const size_t before = installer.LookedUp().size();
    Run(kGerman);
    EXPECT_EQ(installer.LookedUp().size(), before + 14);
}

struct CodePageCase
{
    const char* name;
    const wchar_t* language;
    const char* file;
};

class LocalPackageCodePage : public LocalPackageHelper, public testing::WithParamInterface<CodePageCase>
{
};

TEST_P(LocalPackageCodePage, IsThatOfTheChosenLanguage)
{
    SetLocales({{L"en", L"1033"}, {L"de", GetParam().language}});
    Run(kGerman);
    EXPECT_EQ(imported, GetParam().file);
    EXPECT_EQ(installer.CountCalls(L"MsiDatabaseCommit"), 1U);
}

INSTANTIATE_TEST_SUITE_P(Languages, LocalPackageCodePage,
    testing::Values(CodePageCase{"German", L"1031", "\r\n\r\n1252\t_ForceCodepage\r\n"},
        CodePageCase{"Japanese", L"1041", "\r\n\r\n932\t_ForceCodepage\r\n"},
        CodePageCase{"SimplifiedChinese", L"2052", "\r\n\r\n936\t_ForceCodepage\r\n"},
        CodePageCase{"TraditionalChinese", L"1028", "\r\n\r\n950\t_ForceCodepage\r\n"},
        CodePageCase{"Russian", L"1049", "\r\n\r\n1251\t_ForceCodepage\r\n"}),
    [](const auto& row) { return std::string(row.param.name); });

// ---- The command line.

TEST_F(LocalPackageHelper, UnescapesItsArguments)
{
    SetLocales({{L"d\x00E9", L"1031"}});
    Run("  \"d\\u00E9\"   C:\\\\\\u65E5\\u672C\\\\p.msi NOTRANSFORM ");
    ASSERT_FALSE(installer.Calls().empty());
    EXPECT_EQ(installer.Calls().front(), L"MsiOpenDatabaseW C:\\\x65E5\x672C\\p.msi mode 1");
    EXPECT_EQ(installer.Statements().back(), FinalStatements(L"d\x00E9", false).back());
}

struct ModeCase
{
    const char* name;
    const char* mode;
    bool withTransforms;
};

class LocalPackageMode : public LocalPackageHelper, public testing::WithParamInterface<ModeCase>
{
};

TEST_P(LocalPackageMode, IsToldByItsWord)
{
    Run(std::string("\"de\" \"p.msi\" ") + GetParam().mode);
    arvmui_test::Statements expected = {kLocaleQuery, kTableQuery};
    for (const std::wstring& statement : FinalStatements(L"de", GetParam().withTransforms))
        expected.push_back(statement);
    EXPECT_EQ(installer.Statements(), expected);
}

INSTANTIATE_TEST_SUITE_P(Words, LocalPackageMode,
    testing::Values(ModeCase{"Transforms", "\"TRANSFORMS\"", true}, ModeCase{"LowerCase", "\"transforms\"", true},
        ModeCase{"MixedCase", "Transforms", true}, ModeCase{"NoTransform", "\"NOTRANSFORM\"", false},
        ModeCase{"Singular", "\"TRANSFORM\"", false}, ModeCase{"Longer", "\"TRANSFORMS1\"", false},
        ModeCase{"WithABlank", "\"TRANSFORMS \"", false}, ModeCase{"Empty", "\"\"", false},
        ModeCase{"Other", "\"x\"", false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(LocalPackageHelper, DoesNothingUnlessThereAreThreeArguments)
{
    for (const char* const line : {"", " ", "de", "\"de\" \"p.msi\"", "\"de\" \"p.msi\" \"NOTRANSFORM\" \"x\"",
             "\"de\" \"p.msi\" \"NOTRANSFORM\" \"\"", "\"de\" \"p.msi NOTRANSFORM\"", "\"de p.msi NOTRANSFORM",
             "\"de\" \"p.msi\" NO TRANSFORM"})
    {
        Run(line);
        EXPECT_TRUE(installer.Calls().empty()) << line;
        EXPECT_TRUE(installer.LoadedPaths().empty()) << line;
    }
}

TEST_F(LocalPackageHelper, SwitchesMessageBoxesOffWhateverItsArguments)
{
    ARVMUI_SetMessagePopup(TRUE, nullptr);
    Run("");
    BOOL previous = TRUE;
    ARVMUI_SetMessagePopup(FALSE, &previous);
    EXPECT_FALSE(previous);
}

// ---- Failures: nothing is committed.

TEST_F(LocalPackageHelper, OpensNothingWithoutTheInstaller)
{
    installer.canBeLoaded = false;
    Run(kGerman);
    EXPECT_EQ(installer.LoadedPaths().size(), 1U);
    EXPECT_TRUE(installer.Calls().empty());
}

TEST_F(LocalPackageHelper, OpensNothingWhenTheInstallerLacksAFunction)
{
    installer.missing = {"MsiDatabaseCommit"};
    Run(kGerman);
    EXPECT_EQ(installer.LoadedPaths().size(), 1U);
    EXPECT_TRUE(installer.Calls().empty());
}

TEST_F(LocalPackageHelper, EndsWhenThePackageCannotBeOpened)
{
    installer.Answer(kOpen, ERROR_OPEN_FAILED);
    Run(kGerman);
    EXPECT_EQ(installer.Calls(), std::vector<std::wstring>{kOpen});
}

TEST_F(LocalPackageHelper, CommitsNothingForALocaleThatThePackageLacks)
{
    Run("\"es\" \"C:\\\\a package.msi\" \"NOTRANSFORM\"");
    EXPECT_EQ(installer.Statements(), arvmui_test::Statements{kLocaleQuery});
    EXPECT_EQ(installer.CountCalls(import), 0U);
    EXPECT_EQ(installer.CountCalls(L"MsiDatabaseCommit"), 0U);
}

TEST_F(LocalPackageHelper, CommitsNothingForALanguageThatTheSystemDoesNotKnow)
{
    SetLocales({{L"de", L"1023"}});  // primary language 1023 belongs to nobody
    Run(kGerman);
    EXPECT_EQ(installer.CountCalls(import), 0U);
    EXPECT_EQ(installer.CountCalls(L"MsiDatabaseCommit"), 0U);
}

TEST_F(LocalPackageHelper, CommitsNothingWhenTheCodePageCannotBeSet)
{
    installer.Answer(import, kError);
    Run(kGerman);
    EXPECT_EQ(installer.CountCalls(import), 1U);
    EXPECT_EQ(installer.CountCalls(L"MsiDatabaseCommit"), 0U);
}

TEST_F(LocalPackageHelper, ClosesEverythingWhenTheCommitFails)
{
    installer.Answer(L"MsiDatabaseCommit", kError);
    Run(kGerman);
    EXPECT_EQ(installer.CountCalls(L"MsiDatabaseCommit"), 1U);
    EXPECT_EQ(installer.Calls().back(), L"MsiCloseHandle database");
}

TEST_F(LocalPackageHelper, TablesThatCannotBeTreatedKeepNothingFromBeingCommitted)
{
    SetTables({L"Control_de"});
    installer.Answer(L"MsiDatabaseOpenViewW SELECT * FROM `Control`", ERROR_BAD_QUERY_SYNTAX);
    Run(kGerman);
    EXPECT_EQ(installer.CountCalls(L"MsiDatabaseCommit"), 1U);
}

TEST_F(LocalPackageHelper, LeavesNothingBehindWhicheverCallFails)
{
    SetTables({L"Control_de", L"Control_fr"});
    installer.rows[L"SELECT * FROM `Control_de`"] = {{L"key", L"text"}};
    ExpectEachFailure(
        [this]
        {
            std::string line = kGerman;
            ARVMUI_RUNDLL32_TranslateLocalPackage(nullptr, nullptr, line.data(), SW_SHOWNORMAL);
            EXPECT_EQ(installer.Loads(), 0);
            return static_cast<UINT>(ERROR_SUCCESS);
        },
        kError, arvmui_test::Always(ERROR_SUCCESS));
}

TEST_F(LocalPackageHelper, LeavesNothingBehindWithoutMemory)
{
    SetTables({L"Control_de", L"Control_fr"});
    ExpectEachLackOfMemory(
        [this]
        {
            std::string line = kGerman;
            ARVMUI_RUNDLL32_TranslateLocalPackage(nullptr, nullptr, line.data(), SW_SHOWNORMAL);
            EXPECT_EQ(installer.Loads(), 0);
            return static_cast<UINT>(ERROR_SUCCESS);
        },
        ERROR_SUCCESS);
}

}  // namespace
