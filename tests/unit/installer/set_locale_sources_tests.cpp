// Which list of locale sources an installation searches.
#include "unit/installer/set_locale_fixture.h"

#include <ostream>

namespace
{

using arvmui_test::OfferedLocales;
using arvmui_test::SetLocaleTest;
using arvmui_test::StoreText;

constexpr wchar_t kDefaultList[] = L"user,system,uilang,en,de,es,fr,ja";
constexpr wchar_t kAsk[] = L"ask";
constexpr wchar_t kProductKey[] = L"SOFTWARE\\Pelkor\\MUI";
constexpr wchar_t kUpgradeCode[] = L"{0A1B2C3D-0000-1111-2222-333344445555}";
constexpr wchar_t kUpgradeKey[] = L"SOFTWARE\\Pelkor\\MUI\\{0A1B2C3D-0000-1111-2222-333344445555}";
constexpr wchar_t kVendorKey[] = L"SOFTWARE\\Arvmui Tests\\Vendor";

class LocaleSources : public SetLocaleTest
{
protected:
    LocaleSources() { locales_.offers = {L"en"}; }

    // The list that the action searches, given the session's properties.
    std::wstring ChooseList()
    {
        locales_.lists.clear();
        EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
        EXPECT_EQ(locales_.lists.size(), 1U);
        return locales_.lists.empty() ? std::wstring() : locales_.lists[0];
    }

    // The next session begins without a locale.
    void Forget() { installer.properties.erase(L"UILOCALE"); }

    OfferedLocales locales_;
};

// ---- Whether the user may be asked ----------------------------------------------------------------------

struct AskingCase
{
    const char* name;
    const wchar_t* uiLevel;
    const wchar_t* action;
    const wchar_t* dialogs;
    bool asks;
};

void PrintTo(const AskingCase& value, std::ostream* output)
{
    *output << value.name;
}

class Asking : public LocaleSources, public testing::WithParamInterface<AskingCase>
{
};

TEST_P(Asking, DependsOnTheSession)
{
    const AskingCase& parameter = GetParam();
    installer.properties = {
        {L"UILevel", parameter.uiLevel}, {L"ACTION", parameter.action}, {L"ENABLE_DIALOGS", parameter.dialogs}};
    EXPECT_EQ(ChooseList(), parameter.asks ? kAsk : kDefaultList);
}

const AskingCase kAskingCases[] = {
    {"Full", L"5", L"INSTALL", L"", true},
    {"FullWithoutAction", L"5", L"", L"", true},
    {"FullInHexadecimal", L"0x5", L"INSTALL", L"", true},
    {"FullInOctal", L"05", L"INSTALL", L"", true},
    {"None", L"2", L"INSTALL", L"", false},
    {"Basic", L"3", L"INSTALL", L"", false},
    {"Reduced", L"4", L"INSTALL", L"", false},
    {"BeyondFull", L"6", L"INSTALL", L"", false},
    {"FifteenInHexadecimal", L"0x15", L"INSTALL", L"", false},
    {"WithoutLevel", L"", L"INSTALL", L"", false},
    {"LevelThatIsNoNumber", L"full", L"INSTALL", L"", false},
    {"Administrative", L"5", L"ADMIN", L"", true},
    {"Advertised", L"5", L"ADVERTISE", L"", false},
    {"AdvertisedInOtherCase", L"5", L"Advertise", L"", false},
    {"AdvertisedThoughDialogsAreEnabled", L"5", L"ADVERTISE", L"YES", false},
    {"AdvertisedThoughTheDialogIsNamed", L"5", L"ADVERTISE", L"Select Language", false},
    {"ActionThatBeginsAlike", L"5", L"ADVERTISEMENT", L"", true},
    {"DialogsNo", L"5", L"INSTALL", L"NO", false},
    {"DialogsNoInOtherCase", L"5", L"INSTALL", L"no", false},
    {"DialogsNoInMixedCase", L"5", L"INSTALL", L"nO", false},
    {"DialogsYes", L"5", L"INSTALL", L"YES", true},
    {"DialogsYesInOtherCase", L"5", L"INSTALL", L"yes", true},
    {"DialogsAll", L"5", L"INSTALL", L"ALL", true},
    {"DialogsAllInOtherCase", L"5", L"INSTALL", L"All", true},
    {"DialogNamed", L"5", L"INSTALL", L"Select Language", true},
    {"DialogNamedBehindOthers", L"5", L"INSTALL", L"Welcome,Licence,Select Language", true},
    {"DialogNamedAmongOthers", L"5", L"INSTALL", L"NO,Select Language,Exit", true},
    {"DialogNamedInOtherCase", L"5", L"INSTALL", L"SELECT LANGUAGE", false},
    {"DialogNamedInOtherCaseBehindOthers", L"5", L"INSTALL", L"Welcome,select language", false},
    {"DialogNamedInPart", L"5", L"INSTALL", L"Select", false},
    {"OtherDialogNamed", L"5", L"INSTALL", L"Welcome", false},
    {"MoreThanYes", L"5", L"INSTALL", L"YES,Welcome", false},
    {"MoreThanAll", L"5", L"INSTALL", L"ALLOW", false},
    {"DialogsYesWithoutInterface", L"2", L"INSTALL", L"YES", false},
    {"DialogsAllWithoutInterface", L"3", L"INSTALL", L"ALL", false},
    {"DialogNamedWithoutInterface", L"4", L"INSTALL", L"Select Language", false},
    {"NothingSaid", L"", L"", L"", false},
};

INSTANTIATE_TEST_SUITE_P(Sessions, Asking, testing::ValuesIn(kAskingCases),
    [](const testing::TestParamInfo<AskingCase>& parameter) { return std::string(parameter.param.name); });

// ---- A preset locale ------------------------------------------------------------------------------------

TEST_F(LocaleSources, ArePresetByTheProperty)
{
    for (const wchar_t* preset : {L"fr", L"xx,de", L"ask", L"user", L" ", L"1031"})
    {
        installer.properties = {{L"UILOCALE", preset}};
        EXPECT_EQ(ChooseList(), preset);
    }
}

TEST_F(LocaleSources, ArePresetWhateverElseThereIs)
{
    StoreText(HKEY_LOCAL_MACHINE, kUpgradeKey, L"InstallUILocale", L"es");
    StoreText(HKEY_LOCAL_MACHINE, kVendorKey, L"Locale", L"it");
    installer.properties = {{L"UILOCALE", L"fr"}, {L"UpgradeCode", kUpgradeCode},
        {L"ArvInstallUILocaleRegs", L"HKLM\\SOFTWARE\\Arvmui Tests\\Vendor\\Locale"}, {L"UILevel", L"5"}};
    EXPECT_EQ(ChooseList(), L"fr");
}

TEST_F(LocaleSources, ArePresetToAskWhereNobodyMayAsk)
{
    installer.properties = {
        {L"UILOCALE", L"ask"}, {L"UILevel", L"2"}, {L"ENABLE_DIALOGS", L"NO"}, {L"ACTION", L"ADVERTISE"}};
    EXPECT_EQ(ChooseList(), kAsk);
}

// ---- The locale of the upgrade code ---------------------------------------------------------------------

TEST_F(LocaleSources, AreThoseRecordedForTheUpgradeCode)
{
    StoreText(HKEY_LOCAL_MACHINE, kUpgradeKey, L"InstallUILocale", L"es,de");
    installer.properties = {{L"UpgradeCode", kUpgradeCode}, {L"UILevel", L"5"}};
    EXPECT_EQ(ChooseList(), L"es,de");
}

TEST_F(LocaleSources, OfTheUpgradeCodeGoBeforeThoseOfLocations)
{
    StoreText(HKEY_LOCAL_MACHINE, kUpgradeKey, L"InstallUILocale", L"es");
    StoreText(HKEY_LOCAL_MACHINE, kVendorKey, L"Locale", L"it");
    installer.properties = {
        {L"UpgradeCode", kUpgradeCode}, {L"ArvInstallUILocaleRegs", L"HKLM\\SOFTWARE\\Arvmui Tests\\Vendor\\Locale"}};
    EXPECT_EQ(ChooseList(), L"es");
}

TEST_F(LocaleSources, OfTheUpgradeCodeMayBeExpanded)
{
    StoreText(HKEY_LOCAL_MACHINE, kUpgradeKey, L"InstallUILocale", L"%ARVMUI_NO_SUCH_VARIABLE%", REG_EXPAND_SZ);
    installer.properties = {{L"UpgradeCode", kUpgradeCode}};
    EXPECT_EQ(ChooseList(), L"%ARVMUI_NO_SUCH_VARIABLE%");
}

// No list: the rules behind this one decide.
TEST_F(LocaleSources, OfTheUpgradeCodeCountOnlyWhereTheyAre)
{
    StoreText(HKEY_LOCAL_MACHINE, kUpgradeKey, L"InstallUILocale", L"");
    StoreText(HKEY_LOCAL_MACHINE, kUpgradeKey, L"UILocale", L"es");
    StoreText(HKEY_LOCAL_MACHINE, kProductKey, L"InstallUILocale", L"es");
    StoreText(HKEY_CURRENT_USER, kUpgradeKey, L"InstallUILocale", L"es");
    installer.properties = {{L"UpgradeCode", kUpgradeCode}, {L"UILevel", L"5"}};
    EXPECT_EQ(ChooseList(), kAsk);
    Forget();
    installer.properties[L"UpgradeCode"] = L"{FFFFFFFF-0000-1111-2222-333344445555}";
    EXPECT_EQ(ChooseList(), kAsk);
}

// Else the key of all products would be looked at.
TEST_F(LocaleSources, NeedAnUpgradeCode)
{
    StoreText(HKEY_LOCAL_MACHINE, kProductKey, L"InstallUILocale", L"es");
    installer.properties = {{L"UILevel", L"5"}};
    EXPECT_EQ(ChooseList(), kAsk);
}

TEST_F(LocaleSources, OfTheUpgradeCodeHaveAtMostSixtyThreeCharacters)
{
    installer.properties = {{L"UpgradeCode", kUpgradeCode}};
    const std::wstring longest = std::wstring(62, L'x') + L'!';
    StoreText(HKEY_LOCAL_MACHINE, kUpgradeKey, L"InstallUILocale", longest);
    EXPECT_EQ(ChooseList(), longest);
    Forget();
    StoreText(HKEY_LOCAL_MACHINE, kUpgradeKey, L"InstallUILocale", longest + L"more");
    EXPECT_EQ(ChooseList(), longest);
}

// ---- The locations that the package names ---------------------------------------------------------------

TEST_F(LocaleSources, AreThoseOfTheFirstLocationThatHasAny)
{
    StoreText(HKEY_LOCAL_MACHINE, kVendorKey, L"Second", L"it,de");
    installer.properties = {{L"UILevel", L"5"},
        {L"ArvInstallUILocaleRegs",
            L"HKLM\\SOFTWARE\\Arvmui Tests\\Vendor\\First, HKLM\\SOFTWARE\\Arvmui Tests\\Vendor\\Second"}};
    EXPECT_EQ(ChooseList(), L"it,de");
}

TEST_F(LocaleSources, OfLocationsCountWhereTheUpgradeCodeHasNone)
{
    StoreText(HKEY_LOCAL_MACHINE, kVendorKey, L"Locale", L"it");
    installer.properties = {
        {L"UpgradeCode", kUpgradeCode}, {L"ArvInstallUILocaleRegs", L"HKLM\\SOFTWARE\\Arvmui Tests\\Vendor\\Locale"}};
    EXPECT_EQ(ChooseList(), L"it");
}

TEST_F(LocaleSources, OfLocationsMayBeTheUsers)
{
    StoreText(HKEY_CURRENT_USER, kVendorKey, L"Locale", L"it");
    StoreText(HKEY_LOCAL_MACHINE, kVendorKey, L"Locale", L"es");
    installer.properties = {{L"ArvInstallUILocaleRegs", L"SOFTWARE\\Arvmui Tests\\Vendor\\Locale"}};
    EXPECT_EQ(ChooseList(), L"it");
}

TEST_F(LocaleSources, WithoutAValueAtTheLocationsAreAskedFor)
{
    installer.properties = {{L"UILevel", L"5"}, {L"ArvInstallUILocaleRegs", L"HKLM\\SOFTWARE\\Nothing\\Here"}};
    EXPECT_EQ(ChooseList(), kAsk);
}

TEST_F(LocaleSources, OfLocationsHaveAtMostSixtyThreeCharacters)
{
    installer.properties = {{L"ArvInstallUILocaleRegs", L"HKLM\\SOFTWARE\\Arvmui Tests\\Vendor\\Locale"}};
    const std::wstring longest = std::wstring(62, L'x') + L'!';
    StoreText(HKEY_LOCAL_MACHINE, kVendorKey, L"Locale", longest);
    EXPECT_EQ(ChooseList(), longest);
    Forget();
    StoreText(HKEY_LOCAL_MACHINE, kVendorKey, L"Locale", longest + L"m");
    EXPECT_EQ(ChooseList(), longest);
}

// ---- What is read of the registry -----------------------------------------------------------------------

struct OpenedKey
{
    HKEY root;
    std::wstring path;
    REGSAM access;
    bool operator==(const OpenedKey&) const = default;
};

std::vector<OpenedKey> g_openedKeys;

LSTATUS WINAPI NoteOpening(HKEY root, LPCWSTR path, DWORD, REGSAM access, PHKEY)
{
    g_openedKeys.push_back({root, path, access});
    return ERROR_FILE_NOT_FOUND;
}

class RegistryReads : public LocaleSources
{
protected:
    RegistryReads() { g_openedKeys.clear(); }

    arvmui_test::ImportPatch open_{::GetModuleHandleW(nullptr), "RegOpenKeyExW", &NoteOpening};
};

TEST_F(RegistryReads, AreMadeInThe32BitView)
{
    installer.properties = {
        {L"UpgradeCode", kUpgradeCode}, {L"ArvInstallUILocaleRegs", L"HKLM\\SOFTWARE\\Arvmui Tests\\Vendor\\Locale"}};
    EXPECT_EQ(ChooseList(), kDefaultList);
    EXPECT_EQ(g_openedKeys, (std::vector<OpenedKey>{{HKEY_LOCAL_MACHINE, kUpgradeKey, 0x20219},
                                {HKEY_LOCAL_MACHINE, kVendorKey, 0x20219}}));
}

TEST_F(RegistryReads, AreNotMadeForAPresetLocale)
{
    installer.properties = {{L"UILOCALE", L"fr"}, {L"UpgradeCode", kUpgradeCode},
        {L"ArvInstallUILocaleRegs", L"HKLM\\SOFTWARE\\Arvmui Tests\\Vendor\\Locale"}};
    EXPECT_EQ(ChooseList(), L"fr");
    EXPECT_TRUE(g_openedKeys.empty());
}

TEST_F(RegistryReads, AreNotMadeWithoutUpgradeCodeAndLocations)
{
    EXPECT_EQ(ChooseList(), kDefaultList);
    EXPECT_TRUE(g_openedKeys.empty());
}

}  // namespace
