// The translation as part of an installation: sessions of msiexec that run the actions from the
// package's own copy of the DLL.
#include "installer/package/helper_process.h"
#include "installer/package/translation_package.h"
#include "support/scratch_registry.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <optional>

namespace
{

using arvmui_test::BytesOf;
using arvmui_test::ContentsIn;
using arvmui_test::LanguageOf;
using arvmui_test::OpenMsiDatabase;
using arvmui_test::ReadContents;

constexpr wchar_t kTranslateAction[] = L"ARV_MUI_TranslateLocalPackage.5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17";
constexpr wchar_t kUserDataKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\";

// An identifier in the form that names the product's key in the registry: its first three groups
// written backwards, each pair of digits of the others too.
std::wstring PackedCode(const std::wstring& code)
{
    std::wstring digits;
    for (const wchar_t character : code)
        if (std::iswxdigit(character)) digits += character;
    std::wstring packed;
    size_t start = 0;
    for (const size_t length : {8, 4, 4, 2, 2, 2, 2, 2, 2, 2, 2})
    {
        packed.append(digits.rend() - static_cast<std::ptrdiff_t>(start + length),
            digits.rend() - static_cast<std::ptrdiff_t>(start));
        start += length;
    }
    return packed;
}

// Installed with the locale as the session's; removed at the end.
class InstalledPackage : public testing::Test
{
protected:
    InstalledPackage()
    {
        arvmui_test::MsiPackage package = arvmui_test::TranslationPackage(L"Arvmui Installed " + code, code);
        package.Remove(L"InstallExecuteSequence")
            .Add({L"InstallExecuteSequence", arvmui_test::kSequenceColumns,
                {{L"CostInitialize", {}, 800}, {L"FileCost", {}, 900}, {L"CostFinalize", {}, 1000},
                    {L"InstallValidate", {}, 1400}, {L"InstallInitialize", {}, 1500}, {L"ProcessComponents", {}, 1600},
                    {L"UnpublishFeatures", {}, 1800}, {L"RegisterProduct", {}, 6100}, {L"PublishFeatures", {}, 6300},
                    {L"PublishProduct", {}, 6400}, {L"SetTranslationData", L"NOT Installed", 6450},
                    {kTranslateAction, L"NOT Installed", 6500}, {L"InstallFinalize", {}, 6600}}});
        package.Add({L"CustomAction", arvmui_test::kCustomActionColumns,
            {{L"SetTranslationData", 51, kTranslateAction, L"[UILOCALE],[ProductCodeFast],[TRANSFORMS]"},
                {kTranslateAction, 1 + 1024, L"ArvmuiLibrary", L"ARVMUI_MSI_TranslateLocalPackage"}}});
        package.Add(L"Binary", {{L"ArvmuiLibrary", arvmui_test::FileStream(arvmui_test::LibraryPath())}});
        package.Add(L"Property", {{L"ProductCodeFast", PackedCode(code)}});
        package.Write(file);
    }
    ~InstalledPackage() override { RunInstaller(L"/x " + code + L" /qn"); }

    static std::optional<DWORD> RunInstaller(const std::wstring& arguments)
    {
        wchar_t system[MAX_PATH] = {};
        ::GetSystemDirectoryW(system, MAX_PATH);
        arvmui_test::ChildSettings settings;
        settings.application = std::wstring(system) + L"\\msiexec.exe";
        settings.commandLine = L"msiexec " + arguments;
        return arvmui_test::ChildProcess(settings).Wait();
    }
    void Install(const std::wstring& locale) const
    {
        ASSERT_EQ(RunInstaller(L"/i \"" + file.wstring() + L"\" /qn UILOCALE=" + locale), std::optional<DWORD>(0));
    }

    std::filesystem::path CachedPackage() const
    {
        wchar_t path[MAX_PATH] = {};
        DWORD length = ARRAYSIZE(path);
        ::MsiGetProductInfoW(code.c_str(), INSTALLPROPERTY_LOCALPACKAGE, path, &length);
        return path;
    }

    std::wstring code = arvmui_test::NewMsiCode();

private:
    arvmui_test::TemporaryFolder folder_;

protected:
    std::filesystem::path file = folder_.Path() / L"installed.msi";
};

// A package that the action finds before the cached one: under the user who installs. The installer
// has the cached package open as long as its session lasts, so that no other process can write it
// everywhere; this one it does not know.
class PackageOfUser
{
public:
    explicit PackageOfUser(const std::wstring& code)
    {
        arvmui_test::TranslationPackage(L"Arvmui of a user").Write(file_);
        // Of any session's user: the property is set by the installer.
        const arvmui_test::MsiHandle session = arvmui_test::OpenMsiSession(file_);
        userKey_ = kUserDataKey + arvmui_test::SessionProperty(session.Get(), L"UserSID");
        key_ = userKey_ + L"\\Products\\" + PackedCode(code);
        arvmui_test::StoreText(
            HKEY_LOCAL_MACHINE, (key_ + L"\\InstallProperties").c_str(), L"LocalPackage", file_.wstring());
    }
    ~PackageOfUser() { ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, key_.c_str()); }
    PackageOfUser(const PackageOfUser&) = delete;
    PackageOfUser& operator=(const PackageOfUser&) = delete;

    const std::filesystem::path& File() const { return file_; }

private:
    arvmui_test::TemporaryFolder folder_;
    std::filesystem::path file_ = folder_.Path() / L"user.msi";
    std::wstring userKey_;
    std::wstring key_;
};

TEST_F(InstalledPackage, HasThePackageTranslatedByItsDeferredAction)
{
    const PackageOfUser package(code);
    Install(L"ja");
    EXPECT_EQ(ReadContents(OpenMsiDatabase(package.File()).Get()), ContentsIn(LanguageOf(L"ja")));
    EXPECT_EQ(arvmui_test::CodePageOf(OpenMsiDatabase(package.File()).Get()), "932");
}

TEST_F(InstalledPackage, LeavesThePackageForALocaleThatItLacks)
{
    const PackageOfUser package(code);
    const std::string bytes = BytesOf(package.File());
    Install(L"es");
    EXPECT_TRUE(BytesOf(package.File()) == bytes);
}

TEST_F(InstalledPackage, LeavesThePackageThatItWasInstalledFrom)
{
    const std::string bytes = BytesOf(file);
    Install(L"de");
    EXPECT_TRUE(BytesOf(file) == bytes);
}

// Whether or not the session itself could write the cached package.
TEST_F(InstalledPackage, SpeaksTheLanguageOnceItsCachedPackageIsTranslated)
{
    Install(L"de");
    ASSERT_FALSE(CachedPackage().empty());
    EXPECT_TRUE(arvmui_test::RunTranslation(L"de", CachedPackage(), L"NOTRANSFORM"));

    arvmui_test::MsiHandle session;
    ::MsiSetInternalUI(INSTALLUILEVEL_NONE, nullptr);
    ASSERT_EQ(::MsiOpenProductW(code.c_str(), session.Slot()), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(arvmui_test::SessionProperty(session.Get(), L"Greeting"), LanguageOf(L"de").greeting);
    EXPECT_EQ(arvmui_test::SessionProperty(session.Get(), L"UILOCALE"), L"de");
}

TEST_F(InstalledPackage, CanBeRepairedAndRemovedFromItsTranslatedPackage)
{
    Install(L"fr");
    EXPECT_TRUE(arvmui_test::RunTranslation(L"fr", CachedPackage(), L"NOTRANSFORM"));
    EXPECT_FALSE(arvmui_test::HasMsiTable(OpenMsiDatabase(CachedPackage()).Get(), L"Property_fr"));
    ::MsiSetInternalUI(INSTALLUILEVEL_NONE, nullptr);
    EXPECT_EQ(::MsiReinstallProductW(code.c_str(), REINSTALLMODE_FILEOLDERVERSION | REINSTALLMODE_MACHINEDATA),
        static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(RunInstaller(L"/x " + code + L" /qn"), std::optional<DWORD>(0));
    EXPECT_EQ(::MsiQueryProductStateW(code.c_str()), INSTALLSTATE_UNKNOWN);
}

}  // namespace
