// Where a session finds its language, and which of the package's it takes.
#include "installer/session/session_fixture.h"
#include "support/module_patch.h"
#include "support/scratch_registry.h"

namespace
{

using arvmui_test::EnglishTables;
using arvmui_test::GermanTables;
using arvmui_test::kLocaleColumns;
using arvmui_test::SessionTest;
using arvmui_test::StoreText;

constexpr UINT kFailed = 1627;
constexpr wchar_t kVendorKey[] = L"SOFTWARE\\Arvmui Tests\\Vendor";

class SessionLocale : public SessionTest
{
protected:
    // With the roots of the registry replaced, which the installer has no more use for.
    void Open()
    {
        SessionTest::Open();
        ASSERT_TRUE(registry.ReplaceRoot(HKEY_LOCAL_MACHINE));
        ASSERT_TRUE(registry.ReplaceRoot(HKEY_CURRENT_USER));
    }

    void ReplaceLocales(const std::vector<arvmui_test::MsiRow>& rows)
    {
        package.tables.Remove(L"ARVUILocale").Add({L"ARVUILocale", kLocaleColumns, rows});
    }

    void StoreInstallLocale(const std::wstring& list)
    {
        StoreText(
            HKEY_LOCAL_MACHINE, (L"SOFTWARE\\Pelkor\\MUI\\" + package.upgradeCode).c_str(), L"InstallUILocale", list);
    }

    arvmui_test::ScratchRegistry registry;
};

TEST_F(SessionLocale, IsThePresetOne)
{
    Open();
    StoreInstallLocale(L"zh-CN");
    Set(L"UILOCALE", L"de");
    EXPECT_EQ(SetLocale(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"de");
}

TEST_F(SessionLocale, IsTheFirstOfThePresetListThatThePackageHas)
{
    Open();
    Set(L"UILOCALE", L"fr, zh-cn ,de");
    EXPECT_EQ(SetLocale(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"zh-CN");
}

TEST_F(SessionLocale, MayBeALanguageOfAPresetTag)
{
    Open();
    Set(L"UILOCALE", L"de-AT");
    EXPECT_EQ(SetLocale(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"de");
}

TEST_F(SessionLocale, MayBePresetAsANumber)
{
    Open();
    Set(L"UILOCALE", L"1031");
    EXPECT_EQ(SetLocale(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"de");
}

TEST_F(SessionLocale, HasToBeInThePackage)
{
    ReplaceLocales({{L"de", 1031, L"German", L"Deutsch", 1}});
    Open();
    Set(L"UILOCALE", L"fr");
    EXPECT_EQ(SetLocale(), kFailed);
    EXPECT_EQ(Get(L"UILOCALE"), L"fr");
    EXPECT_EQ(Tables(), EnglishTables());
}

TEST_F(SessionLocale, IsTheOneRecordedForTheUpgradeCode)
{
    Open();
    StoreInstallLocale(L"de");
    Set(L"UILevel", L"5");
    EXPECT_EQ(SetLocale(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"de");
    EXPECT_EQ(Tables(), GermanTables());
}

TEST_F(SessionLocale, IsTheOneAtTheLocationsOfThePackage)
{
    Open();
    StoreText(HKEY_CURRENT_USER, kVendorKey, L"Language", L"de");
    Set(L"ArvInstallUILocaleRegs",
        L"HKLM\\SOFTWARE\\Arvmui Tests\\Vendor\\Language,SOFTWARE\\Arvmui Tests\\Vendor\\Language");
    EXPECT_EQ(SetLocale(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"de");
}

TEST_F(SessionLocale, OfTheUpgradeCodeGoesBeforeThatOfTheLocations)
{
    Open();
    StoreInstallLocale(L"zh-CN");
    StoreText(HKEY_LOCAL_MACHINE, kVendorKey, L"Language", L"de");
    Set(L"ArvInstallUILocaleRegs", L"HKLM\\SOFTWARE\\Arvmui Tests\\Vendor\\Language");
    EXPECT_EQ(SetLocale(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"zh-CN");
}

// The last of the default list: whatever the languages of the machine, the package has no other.
TEST_F(SessionLocale, MayBeTheLastOfTheDefaultList)
{
    ReplaceLocales({{L"ja", 1041, L"Japanese", L"Japanese", 1}});
    Open();
    EXPECT_EQ(SetLocale(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"ja");
}

TEST_F(SessionLocale, CannotBeFoundInAPackageThatTheDefaultListDoesNotReach)
{
    ReplaceLocales({{L"x-none", 1024, L"None", L"None", 1}});
    Open();
    EXPECT_EQ(SetLocale(), kFailed);
    EXPECT_EQ(Get(L"UILOCALE"), L"");
}

TEST_F(SessionLocale, NeedsTheTableOfLocales)
{
    package.tables.Remove(L"ARVUILocale");
    Open();
    Set(L"UILOCALE", L"en");
    EXPECT_EQ(SetLocale(), kFailed);
}

TEST_F(SessionLocale, NeedsTheTableOfTexts)
{
    package.tables.Remove(L"ARVUIText");
    Open();
    Set(L"UILOCALE", L"en");
    EXPECT_EQ(SetLocale(), kFailed);
}

TEST_F(SessionLocale, NeedsASession)
{
    EXPECT_EQ(ARVMUI_MSI_SetLocale(0), kFailed);
    EXPECT_EQ(ARVMUI_MSI_SelectionDialogBoxPreview(0), kFailed);
}

// ---- Systems of old -------------------------------------------------------------------------------------

BOOL WINAPI TellOldVersion(OSVERSIONINFOA* version)
{
    version->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
    return version->dwOSVersionInfoSize == 148;
}

TEST_F(SessionLocale, IsEnglishOnASystemThatIsNotOfTheNTFamily)
{
    ReplaceLocales({{L"de", 1031, L"German", L"Deutsch", 1}});
    Open();
    Set(L"UILOCALE", L"de");
    const arvmui_test::ImportPatch version(arvmui_test::LibraryUnderTest(), "GetVersionExA", &TellOldVersion);
    EXPECT_EQ(SetLocale(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"en");
    EXPECT_EQ(Tables(), EnglishTables());
}

}  // namespace
