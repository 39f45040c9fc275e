// The steps of the action that chooses the language of an installation, up to the search for locales.
#include "unit/installer/set_locale_fixture.h"

namespace
{

using arvmui_test::OfferedLocales;
using arvmui_test::SetLocaleTest;
using Texts = std::vector<std::wstring>;

constexpr UINT kCancelled = 1602;
constexpr UINT kFailed = 1627;

const Texts kProperties = {
    L"UILevel", L"ACTION", L"ENABLE_DIALOGS", L"UILOCALE", L"UpgradeCode", L"ArvInstallUILocaleRegs"};

class SetLocaleSteps : public SetLocaleTest
{
protected:
    SetLocaleSteps() { locales_.offers = {L"en"}; }

    OfferedLocales locales_;
};

BOOL ArePopupsOn()
{
    BOOL popups = TRUE;
    ARVMUI_SetMessagePopup(FALSE, &popups);
    return popups;
}

// ---- Message popups -------------------------------------------------------------------------------------

TEST_F(SetLocaleSteps, SwitchPopupsOff)
{
    ARVMUI_SetMessagePopup(TRUE, nullptr);
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_FALSE(ArePopupsOn());
}

TEST_F(SetLocaleSteps, SwitchPopupsOffBeforeAnythingCanFail)
{
    ARVMUI_SetMessagePopup(TRUE, nullptr);
    installer.isLoaded = false;
    EXPECT_EQ(SetLocale(), kFailed);
    EXPECT_FALSE(ArePopupsOn());
}

// ---- The installer and its database ---------------------------------------------------------------------

TEST_F(SetLocaleSteps, NeedTheLoadedInstaller)
{
    installer.isLoaded = false;
    EXPECT_EQ(SetLocale(), kFailed);
    EXPECT_TRUE(installer.Calls().empty());
    EXPECT_TRUE(installer.LoadedPaths().empty());
}

TEST_F(SetLocaleSteps, NeedEveryFunctionOfTheInstaller)
{
    for (const char* function : {"MsiCloseHandle", "MsiDatabaseOpenViewW", "MsiGetActiveDatabase", "MsiGetPropertyW",
             "MsiRecordGetInteger", "MsiRecordGetStringW", "MsiSetPropertyW", "MsiViewClose", "MsiViewExecute",
             "MsiViewFetch", "MsiViewModify", "MsiOpenDatabaseW", "MsiDatabaseCommit", "MsiDatabaseImportW"})
    {
        installer.missing = {function};
        EXPECT_EQ(SetLocale(), kFailed) << function;
    }
    EXPECT_TRUE(installer.Calls().empty());
}

TEST_F(SetLocaleSteps, NeedTheActiveDatabase)
{
    installer.hasActiveDatabase = false;
    EXPECT_EQ(SetLocale(), kFailed);
    EXPECT_EQ(installer.Calls(), Texts{L"MsiGetActiveDatabase"});
}

TEST_F(SetLocaleSteps, CloseTheDatabaseLast)
{
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_EQ(installer.Calls().back(), L"MsiCloseHandle database");
    EXPECT_EQ(installer.CountCalls(L"MsiCloseHandle database"), 1U);
}

// ---- The system -----------------------------------------------------------------------------------------

TEST_F(SetLocaleSteps, AskForTheVersionInARecordOf148Bytes)
{
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_EQ(versionRecordSizes, std::vector<DWORD>{148});
}

TEST_F(SetLocaleSteps, ChooseEnglishOnASystemThatIsNotOfTheNTFamily)
{
    for (const DWORD old : {VER_PLATFORM_WIN32s, VER_PLATFORM_WIN32_WINDOWS})
    {
        platform = old;
        installer.ForgetCalls();
        EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
        EXPECT_EQ(installer.Calls(),
            (Texts{L"MsiGetActiveDatabase", L"MsiSetPropertyW UILOCALE=en", L"MsiCloseHandle database"}));
    }
    EXPECT_TRUE(locales_.lists.empty());
}

TEST_F(SetLocaleSteps, GoOnOnAnyOtherSystem)
{
    for (const DWORD family : {2u, 3u})
    {
        platform = family;
        locales_.lists.clear();
        EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
        EXPECT_EQ(locales_.lists.size(), 1U);
    }
}

TEST_F(SetLocaleSteps, FailWhereEnglishCannotBeSet)
{
    platform = VER_PLATFORM_WIN32_WINDOWS;
    installer.Answer(L"MsiSetPropertyW UILOCALE=en", ERROR_ACCESS_DENIED);
    EXPECT_EQ(SetLocale(), kFailed);
}

// That call's result is mapped like any other.
TEST_F(SetLocaleSteps, PassACancellationOnWhereEnglishIsSet)
{
    platform = VER_PLATFORM_WIN32_WINDOWS;
    installer.Answer(L"MsiSetPropertyW UILOCALE=en", kCancelled);
    EXPECT_EQ(SetLocale(), kCancelled);
}

// ---- What is read ---------------------------------------------------------------------------------------

TEST_F(SetLocaleSteps, ReadTheLocalesBeforeTheProperties)
{
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_EQ(installer.Calls()[0], L"MsiGetActiveDatabase");
    EXPECT_EQ(installer.Calls()[1], std::wstring(L"MsiDatabaseOpenViewW ") + arvmui_test::kLocaleQuery);
    bool hasProperty = false;
    for (const std::wstring& call : installer.Calls())
    {
        if (call.starts_with(L"MsiGetPropertyW")) hasProperty = true;
        EXPECT_FALSE(hasProperty && call.starts_with(L"MsiDatabaseOpenViewW")) << "a query behind a property";
    }
}

TEST_F(SetLocaleSteps, NeedTheLocales)
{
    installer.Answer(L"MsiDatabaseOpenViewW " + std::wstring(arvmui_test::kLocaleQuery), ERROR_BAD_QUERY_SYNTAX);
    EXPECT_EQ(SetLocale(), kFailed);
    EXPECT_TRUE(installer.CallsOf(L"MsiGetPropertyW").empty());
    EXPECT_TRUE(locales_.lists.empty());
}

TEST_F(SetLocaleSteps, ReadTheSixPropertiesInTheirOrder)
{
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    Texts expected;
    for (const std::wstring& name : kProperties)
    {
        expected.push_back(L"MsiGetPropertyW " + name + L" size 0");
        expected.push_back(L"MsiGetPropertyW " + name + L" size 32");
    }
    EXPECT_EQ(installer.CallsOf(L"MsiGetPropertyW"), expected);
}

TEST_F(SetLocaleSteps, NeedEachOfTheProperties)
{
    for (const std::wstring& name : kProperties)
    {
        installer.ForgetCalls();
        installer.Answer(L"MsiGetPropertyW " + name + L" size 0", ERROR_INVALID_HANDLE, 1);
        EXPECT_EQ(SetLocale(), kFailed);
        EXPECT_EQ(installer.CallsOf(L"MsiGetPropertyW").back(), L"MsiGetPropertyW " + name + L" size 0");
    }
    EXPECT_TRUE(locales_.lists.empty());
    EXPECT_TRUE(installer.CallsOf(L"MsiSetPropertyW").empty());
}

// ---- What is published ----------------------------------------------------------------------------------

TEST_F(SetLocaleSteps, PublishTheLocalesWithTheirTextsAndTheIconTwice)
{
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_EQ(locales_.published.reserved, nullptr);
    EXPECT_EQ(locales_.published.smallIcon, kIcon);
    EXPECT_EQ(locales_.published.largeIcon, kIcon);
    ASSERT_EQ(locales_.locales.size(), 3U);
    EXPECT_EQ(std::wstring(locales_.locales[0].Locale), L"en");
    EXPECT_EQ(std::wstring(locales_.locales[1].Locale), L"de");
    EXPECT_EQ(std::wstring(locales_.locales[1].OK), L"Gut");
    EXPECT_EQ(std::wstring(locales_.locales[2].Locale), L"zh-CN");
}

TEST_F(SetLocaleSteps, PublishNothingBeforeTheSearchAndAfterIt)
{
    for (const std::optional<std::wstring>& offer : {std::optional<std::wstring>(L"en"), {}, {L"xx"}})
    {
        locales_.offers = {offer};
        bool wasPublished = false;
        installer.onCall = [&wasPublished](const std::wstring& call)
        {
            const bool isInSearch = call.starts_with(L"MsiSetPropertyW");
            if (!isInSearch && IsContextPublished()) wasPublished = true;
        };
        SetLocale();
        EXPECT_FALSE(wasPublished);
        EXPECT_FALSE(IsContextPublished());
    }
}

TEST_F(SetLocaleSteps, KeepTheContextWhileALocaleIsApplied)
{
    bool wasPublished = false;
    installer.onCall = [&wasPublished](const std::wstring& call)
    {
        if (call.starts_with(L"MsiSetPropertyW")) wasPublished = IsContextPublished();
    };
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_TRUE(wasPublished);
}

// ---- Failures of any kind -------------------------------------------------------------------------------

TEST_F(SetLocaleSteps, FailWithOneCodeForEverything)
{
    locales_.offers = {L"de"};
    installer.rows[L"SELECT `Name` FROM `_Tables`"] = {{L"Control_de"}};
    installer.rows[L"SELECT * FROM `Control`"] = {{L"Next", L"&Next"}};
    installer.rows[L"SELECT * FROM `Control_de`"] = {{L"Next", L"&Weiter"}};
    ExpectEachFailure([] { return SetLocale(); }, ERROR_ACCESS_DENIED,
        [](const std::wstring& call)
        {
            const bool isStreams = call.find(L"`Binary_de`") != std::wstring::npos;
            return isStreams ? UINT{ERROR_SUCCESS} : kFailed;
        });
}

TEST_F(SetLocaleSteps, FailWithoutMemory)
{
    ExpectEachLackOfMemory([] { return SetLocale(); }, kFailed);
}

}  // namespace
