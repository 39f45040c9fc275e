// The language dialog in the hands of the installer's actions: the user's choice, and the preview.
#include "unit/installer/set_locale_fixture.h"

namespace
{

using arvmui_test::AnsweredDialog;
using arvmui_test::SetLocaleTest;
using Texts = std::vector<std::wstring>;

constexpr UINT kCancelled = 1602;
constexpr UINT kFailed = 1627;

Texts TagsOf(const std::vector<LocaleEntry>& entries)
{
    Texts tags;
    for (const LocaleEntry& entry : entries) tags.push_back(entry.Locale);
    return tags;
}

// With the library's own search for locales.
class LocaleChoice : public SetLocaleTest
{
protected:
    LocaleChoice() { installer.properties = {{L"UILevel", L"5"}}; }

    AnsweredDialog dialog_;
};

TEST_F(LocaleChoice, ShowsThePackagesLocalesAndTheInstallersIcon)
{
    dialog_.answer = L"de";
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_EQ(dialog_.timesShown, 1);
    EXPECT_EQ(TagsOf(dialog_.entries), (Texts{L"en", L"de", L"zh-CN"}));
    EXPECT_EQ(std::wstring(dialog_.entries[1].OK), L"Gut");
    EXPECT_EQ(dialog_.icons, (std::vector<HICON>{kIcon, kIcon}));
    EXPECT_EQ(dialog_.owner, nullptr);
}

TEST_F(LocaleChoice, IsApplied)
{
    dialog_.answer = L"zh-CN";
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_EQ(installer.properties[L"UILOCALE"], L"zh-CN");
}

TEST_F(LocaleChoice, MayBeRefused)
{
    EXPECT_EQ(SetLocale(), kCancelled);
    EXPECT_EQ(installer.properties.count(L"UILOCALE"), 0U);
    EXPECT_FALSE(IsContextPublished());
}

TEST_F(LocaleChoice, IsNotNeededForAPresetLocale)
{
    installer.properties[L"UILOCALE"] = L"de";
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_EQ(dialog_.timesShown, 0);
}

TEST_F(LocaleChoice, IsAskedForByThePresetWordInAnySession)
{
    installer.properties = {{L"UILOCALE", L"ask"}, {L"UILevel", L"2"}, {L"ENABLE_DIALOGS", L"NO"}};
    dialog_.answer = L"de";
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_EQ(dialog_.timesShown, 1);
    EXPECT_EQ(installer.properties[L"UILOCALE"], L"de");
}

// The second sequence of an installation finds the choice of the first.
TEST_F(LocaleChoice, IsMadeOnceInAnInstallation)
{
    dialog_.answer = L"de";
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_EQ(SetLocale(), ERROR_SUCCESS);
    EXPECT_EQ(dialog_.timesShown, 1);
}

TEST_F(LocaleChoice, OfALocaleThatThePackageCannotReachFails)
{
    installer.rows[arvmui_test::kLocaleQuery] = {{L"de", L"1031", L"German", L"Deutsch"}};
    installer.properties[L"UILOCALE"] = L"fr";
    EXPECT_EQ(SetLocale(), kFailed);
    EXPECT_EQ(dialog_.timesShown, 0);
}

// ---- The preview ----------------------------------------------------------------------------------------

class LocalePreview : public SetLocaleTest
{
protected:
    AnsweredDialog dialog_;
};

TEST_F(LocalePreview, ShowsThePackagesLocalesWithoutWantingAnAnswer)
{
    EXPECT_EQ(Preview(), ERROR_SUCCESS);
    EXPECT_EQ(dialog_.timesShown, 1);
    EXPECT_EQ(TagsOf(dialog_.entries), (Texts{L"en", L"de", L"zh-CN"}));
    EXPECT_EQ(std::wstring(dialog_.entries[1].OK), L"Gut");
    EXPECT_EQ(dialog_.icons, (std::vector<HICON>{kIcon, kIcon}));
    EXPECT_FALSE(dialog_.hasBuffer);
    EXPECT_EQ(dialog_.answerSize, 0U);
}

TEST_F(LocalePreview, StandsOverTheInstallersWindow)
{
    installerWindow = reinterpret_cast<HWND>(static_cast<ULONG_PTR>(0x5678));
    EXPECT_EQ(Preview(), ERROR_SUCCESS);
    EXPECT_EQ(dialog_.owner, installerWindow);
}

TEST_F(LocalePreview, NeedsNoWindowOfTheInstaller)
{
    EXPECT_EQ(Preview(), ERROR_SUCCESS);
    EXPECT_EQ(dialog_.owner, nullptr);
}

TEST_F(LocalePreview, DoesNotCareHowItEnds)
{
    dialog_.result = FALSE;
    EXPECT_EQ(Preview(), ERROR_SUCCESS);
}

TEST_F(LocalePreview, ChangesNothing)
{
    EXPECT_EQ(Preview(), ERROR_SUCCESS);
    EXPECT_TRUE(installer.properties.empty());
    EXPECT_TRUE(installer.CallsOf(L"MsiGetPropertyW").empty());
    EXPECT_TRUE(installer.CallsOf(L"MsiViewModify").empty());
}

TEST_F(LocalePreview, KeepsTheDatabaseWhileItIsShown)
{
    dialog_.whileOpen = [this] { EXPECT_EQ(installer.CountCalls(L"MsiCloseHandle database"), 0U); };
    EXPECT_EQ(Preview(), ERROR_SUCCESS);
    EXPECT_EQ(installer.Calls().back(), L"MsiCloseHandle database");
}

TEST_F(LocalePreview, PublishesNothing)
{
    dialog_.whileOpen = [] { EXPECT_FALSE(IsContextPublished()); };
    EXPECT_EQ(Preview(), ERROR_SUCCESS);
    EXPECT_FALSE(IsContextPublished());
}

TEST_F(LocalePreview, SwitchesPopupsOff)
{
    ARVMUI_SetMessagePopup(TRUE, nullptr);
    installer.isLoaded = false;
    Preview();
    BOOL popups = TRUE;
    ARVMUI_SetMessagePopup(FALSE, &popups);
    EXPECT_FALSE(popups);
}

TEST_F(LocalePreview, NeedsTheLoadedInstaller)
{
    installer.isLoaded = false;
    EXPECT_EQ(Preview(), kFailed);
    EXPECT_TRUE(installer.LoadedPaths().empty());
}

TEST_F(LocalePreview, NeedsEveryFunctionOfTheInstaller)
{
    installer.missing = {"MsiDatabaseImportW"};
    EXPECT_EQ(Preview(), kFailed);
    EXPECT_TRUE(installer.Calls().empty());
}

TEST_F(LocalePreview, NeedsTheActiveDatabase)
{
    installer.hasActiveDatabase = false;
    EXPECT_EQ(Preview(), kFailed);
    EXPECT_EQ(dialog_.timesShown, 0);
}

TEST_F(LocalePreview, FailsWithOneCodeForEverything)
{
    ExpectEachFailure([] { return Preview(); }, ERROR_INSTALL_USEREXIT, arvmui_test::Always(kFailed));
}

TEST_F(LocalePreview, FailsWithoutMemory)
{
    ExpectEachLackOfMemory([] { return Preview(); }, kFailed);
}

}  // namespace
