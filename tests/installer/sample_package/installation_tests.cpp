// Sessions of the installer that install the sample in a language and remove it.

#include "installer/sample_package/installation.h"
#include "support/child_process.h"
#include "support/scratch_registry.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>

using namespace arvmui_test;

namespace
{

constexpr DWORD kSuccess = ERROR_SUCCESS;

std::wstring ShortPath(const std::filesystem::path& path)
{
    wchar_t text[MAX_PATH] = {};
    ::GetShortPathNameW(path.c_str(), text, ARRAYSIZE(text));
    return text;
}

// Translates the cached package as the session's deferred action does. An installer that still held the
// file then has let go of it now, and one that did not has nothing left to translate.
std::optional<DWORD> TranslateCachedPackage(const std::filesystem::path& package, const std::wstring& locale)
{
    std::wstring escaped;
    for (const wchar_t c : package.wstring()) escaped += c == L'\\' ? L"\\\\" : std::wstring(1, c);
    ChildSettings settings;
    settings.application = package.parent_path().parent_path() / L"System32" / L"rundll32.exe";
    settings.commandLine = L"rundll32 " + ShortPath(TestProgramFolder() / L"arvmui64.dll")
                           + L",ARVMUI_RUNDLL32_TranslateLocalPackage \"" + locale + L"\" \"" + escaped
                           + L"\" \"NOTRANSFORM\"";
    return ChildProcess(settings).Wait();
}

// The path of an installed file below the product's folder.
std::filesystem::path PlaceOf(const PackageRow& file)
{
    const std::wstring& name = file.at(L"FileName");
    std::filesystem::path place = name.substr(name.find(L'|') + 1);
    std::wstring folder = Sample().Row(L"Component", file.at(L"Component_")).at(L"Directory_");
    while (folder != L"INSTALLDIR")
    {
        const PackageRow& row = Sample().Row(L"Directory", folder);
        place = row.at(L"DefaultDir") / place;
        folder = row.at(L"Directory_Parent");
    }
    return InstalledFolder() / place;
}

std::wstring NameInStartMenu(const std::wstring& locale)
{
    const PackageTable shortcuts = Sample().Localized(L"Shortcut", Sample().Locale(locale));
    const std::wstring& name = shortcuts.FindRow(L"Start")->at(L"Name");
    return name.substr(name.find(L'|') + 1);
}

std::map<std::wstring, PackageRow> RowsByKey(const PackageTable& table)
{
    std::map<std::wstring, PackageRow> rows;
    for (const PackageRow& row : table.rows) rows[table.KeyOf(row)] = row;
    return rows;
}

std::wstring AnsiCodePage(LANGID language)
{
    wchar_t codePage[8] = {};
    ::GetLocaleInfoW(MAKELCID(language, SORT_DEFAULT), LOCALE_IDEFAULTANSICODEPAGE, codePage, ARRAYSIZE(codePage));
    return codePage;
}

std::wstring CodePageOf(const std::filesystem::path& package)
{
    const TemporaryFolder folder;
    const MsiHandle database = OpenMsiDatabase(package);
    ::MsiDatabaseExportW(database.Get(), L"_ForceCodepage", folder.Path().c_str(), L"code_page.idt");
    std::wifstream file(folder.Path() / L"code_page.idt", std::ios::binary);
    std::wstring content{std::istreambuf_iterator<wchar_t>(file), std::istreambuf_iterator<wchar_t>()};
    content.erase(0, content.find_first_not_of(L"\r\n"));
    return content.substr(0, content.find(L'\t'));
}

// The languages that the user prefers in all programs of the family, put back as they were.
class UsersLanguages
{
public:
    explicit UsersLanguages(const std::wstring& list) : before_(StoredText(HKEY_CURRENT_USER, kKey, kName))
    {
        StoreText(HKEY_CURRENT_USER, kKey, kName, list);
    }
    ~UsersLanguages()
    {
        if (before_ == L"<none>")
            ::RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, kName);
        else
            StoreText(HKEY_CURRENT_USER, kKey, kName, before_);
    }
    UsersLanguages(const UsersLanguages&) = delete;
    UsersLanguages& operator=(const UsersLanguages&) = delete;

private:
    static constexpr wchar_t kKey[] = L"SOFTWARE\\Pelkor\\MUI";
    static constexpr wchar_t kName[] = L"UILocale";

    std::wstring before_;
};

// Tables that exist for the choice of a language only.
bool IsOfLanguageChoice(const PackageTable& table)
{
    return table.name == L"ARVUILocale" || table.name == L"ARVUIText";
}

// The actions that a package of one language does without, where no transform was applied.
std::vector<std::wstring> LanguageActions()
{
    std::vector<std::wstring> actions;
    for (const wchar_t* name : {L"SetLocale", L"StartFontResetter", L"StopFontResetter", L"TranslateLocalPackage"})
        actions.push_back(L"ARV_MUI_" + std::wstring(name) + L".5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17");
    return actions;
}

// What is left of an installation in a language.
void ExpectNothingIsLeft(const SampleInstallation& installation, const wchar_t* locale)
{
    EXPECT_FALSE(std::filesystem::exists(InstalledFolder()));
    EXPECT_EQ(CountStartMenuEntries(NameInStartMenu(locale)), 0);
    EXPECT_EQ(installation.RecordedLocale(), L"<none>");
    EXPECT_EQ(installation.ListedValue(L"DisplayName"), L"<none>");
    EXPECT_EQ(installation.CachedPackage(), L"");
}

// A product installed in the language, which the tests only look at.
class SampleInstalledIn : public testing::TestWithParam<const wchar_t*>
{
protected:
    static void TearDownTestSuite() { shared_.reset(); }

    void SetUp() override
    {
        if (shared_) return;
        shared_ = std::make_unique<SampleInstallation>();
        ASSERT_EQ(shared_->Install(std::wstring(L"UILOCALE=") + Tag()), kSuccess);
    }

    const wchar_t* Tag() const { return GetParam(); }
    const PackageLocale& Locale() const { return Sample().Locale(Tag()); }
    const SampleInstallation& Installation() const { return *shared_; }

private:
    static inline std::unique_ptr<SampleInstallation> shared_;
};

// The same with the cached package translated.
class SampleTranslatedTo : public SampleInstalledIn
{
protected:
    static void TearDownTestSuite()
    {
        original_.reset();
        translated_.reset();
        SampleInstalledIn::TearDownTestSuite();
    }

    void SetUp() override
    {
        SampleInstalledIn::SetUp();
        if (HasFatalFailure() || translated_) return;
        const std::filesystem::path cached = Installation().CachedPackage();
        ASSERT_FALSE(cached.empty());
        ASSERT_TRUE(TranslateCachedPackage(cached, Tag()).has_value());
        original_ = std::make_unique<SamplePackage>(Installation().Package());
        translated_ = std::make_unique<SamplePackage>(cached);
    }

    const SamplePackage& Original() const { return *original_; }
    const SamplePackage& Translated() const { return *translated_; }

private:
    static inline std::unique_ptr<SamplePackage> original_;
    static inline std::unique_ptr<SamplePackage> translated_;
};

// Installed anew by each test, which does something to it.
class SampleSessionsIn : public testing::TestWithParam<const wchar_t*>
{
protected:
    void SetUp() override { ASSERT_EQ(installation_.Install(std::wstring(L"UILOCALE=") + GetParam()), kSuccess); }

    SampleInstallation installation_;
};

}  // namespace

TEST_P(SampleInstalledIn, SessionSpeaksTheLanguage)
{
    EXPECT_EQ(Installation().SessionValue(L"UILOCALE"), Tag());
    for (const wchar_t* property : {L"ProductName", L"ARPCOMMENTS", L"ButtonText_Next", L"ButtonText_OK"})
        EXPECT_EQ(Installation().SessionValue(property), Sample().Property(property, Locale())) << Narrow(property);
}

TEST_P(SampleInstalledIn, SystemListsTheProductInTheLanguage)
{
    EXPECT_EQ(Installation().ListedValue(L"DisplayName"), Sample().Property(L"ProductName", Locale()));
    EXPECT_EQ(Installation().ListedValue(L"Comments"), Sample().Property(L"ARPCOMMENTS", Locale()));
}

TEST_P(SampleInstalledIn, StartMenuNamesTheProductInTheLanguage)
{
    EXPECT_EQ(CountStartMenuEntries(NameInStartMenu(Tag())), 1);
}

TEST_P(SampleInstalledIn, FilesLieWhereTheProgramLooksForThem)
{
    for (const PackageRow& file : Sample().Table(L"File").rows)
    {
        std::error_code error;
        EXPECT_EQ(std::to_wstring(std::filesystem::file_size(PlaceOf(file), error)), file.at(L"FileSize"))
            << Narrow(PlaceOf(file).wstring());
    }
}

TEST_P(SampleInstalledIn, LanguageIsRecordedForTheUpgradeCode)
{
    EXPECT_EQ(Installation().RecordedLocale(), Tag());
}

TEST_P(SampleInstalledIn, SessionKnowsTheProductsKeyInTheInstallersRegistry)
{
    const std::wstring key = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\Products\\"
                             + Installation().SessionValue(L"ProductCodeFast") + L"\\InstallProperties";
    EXPECT_EQ(StoredText(HKEY_LOCAL_MACHINE, key.c_str(), L"LocalPackage"), Installation().CachedPackage().wstring());
}

TEST_P(SampleTranslatedTo, CachedPackageHasTheTablesOfAPackageOfOneLanguage)
{
    std::set<std::wstring> names;
    for (const PackageTable& table : Translated().Tables()) names.insert(table.name);

    std::set<std::wstring> expected;
    for (const PackageTable& table : Original().Tables())
    {
        if (!Original().BaseOf(table) && !IsOfLanguageChoice(table)) expected.insert(table.name);
    }
    EXPECT_EQ(names, expected);
}

TEST_P(SampleTranslatedTo, CachedPackageSpeaksTheLanguage)
{
    for (const PackageTable& table : Translated().Tables())
    {
        // Not every installer changes these two as it is told and saves the change.
        if (table.name == L"_Validation" || table.name == L"Binary") continue;
        auto rows = RowsByKey(Original().Localized(table.name, Locale()));
        if (table.name.find(L"Sequence") != std::wstring::npos)
        {
            for (const std::wstring& action : LanguageActions()) rows.erase(action);
        }
        if (table.name == L"Property") rows[L"UILOCALE"] = {{L"Property", L"UILOCALE"}, {L"Value", Tag()}};
        EXPECT_EQ(RowsByKey(table), rows) << Narrow(table.name);
    }
}

TEST_P(SampleTranslatedTo, CachedPackageIsInTheLanguagesCodePage)
{
    EXPECT_EQ(CodePageOf(Installation().CachedPackage()), AnsiCodePage(Locale().language));
}

TEST_P(SampleSessionsIn, RemovalLeavesNothing)
{
    ASSERT_EQ(installation_.Remove(), kSuccess);
    ExpectNothingIsLeft(installation_, GetParam());
}

TEST_P(SampleSessionsIn, RemovalByTheTranslatedPackageLeavesNothing)
{
    ASSERT_TRUE(TranslateCachedPackage(installation_.CachedPackage(), GetParam()).has_value());
    ASSERT_EQ(installation_.Remove(), kSuccess);
    ExpectNothingIsLeft(installation_, GetParam());
}

// A session without a choice of its own takes the language that was recorded.
TEST_P(SampleSessionsIn, SecondSessionSpeaksTheFirstOnesLanguage)
{
    installation_.ForgetSessionValues();
    ASSERT_EQ(installation_.Install(L"REINSTALL=ALL REINSTALLMODE=ecmus"), kSuccess);
    EXPECT_EQ(installation_.SessionValue(L"UILOCALE"), GetParam());
    EXPECT_EQ(
        installation_.SessionValue(L"ProductName"), Sample().Property(L"ProductName", Sample().Locale(GetParam())));
}

// One suite for each language, so that the tests of one share its installation.
INSTANTIATE_TEST_SUITE_P(German, SampleInstalledIn, testing::Values(L"de"));
INSTANTIATE_TEST_SUITE_P(Japanese, SampleInstalledIn, testing::Values(L"ja"));
INSTANTIATE_TEST_SUITE_P(German, SampleTranslatedTo, testing::Values(L"de"));
INSTANTIATE_TEST_SUITE_P(Japanese, SampleTranslatedTo, testing::Values(L"ja"));
INSTANTIATE_TEST_SUITE_P(German, SampleSessionsIn, testing::Values(L"de"));
INSTANTIATE_TEST_SUITE_P(Japanese, SampleSessionsIn, testing::Values(L"ja"));

TEST(SampleInstallations, APropertyThatTheUserSetsIsNotTranslated)
{
    const SampleInstallation installation;
    ASSERT_EQ(installation.Install(L"UILOCALE=fr ARPCOMMENTS=mine"), kSuccess);
    EXPECT_EQ(installation.ListedValue(L"Comments"), L"mine");
    EXPECT_EQ(installation.ListedValue(L"DisplayName"), Sample().Property(L"ProductName", Sample().Locale(L"fr")));
}

TEST(SampleInstallations, FirstLanguageOfTheListThatThePackageHasIsTaken)
{
    const SampleInstallation installation;
    ASSERT_EQ(installation.Install(L"UILOCALE=es,zh-CN,de"), kSuccess);
    EXPECT_EQ(installation.SessionValue(L"UILOCALE"), L"zh-CN");
}

TEST(SampleInstallations, TheFamilysLanguageIsTakenWhereNothingElseIsSaid)
{
    const UsersLanguages setting(L"ja");
    const SampleInstallation installation;
    ASSERT_EQ(installation.Install(L""), kSuccess);
    EXPECT_EQ(installation.SessionValue(L"UILOCALE"), L"ja");
}
