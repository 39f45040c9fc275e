// The package with its user interface: the user chooses a language, and the installer's dialogs speak it.

#include "installer/sample_package/installation.h"
#include "support/child_process.h"
#include "support/dialog_controls.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace arvmui_test;

namespace
{

constexpr int kLanguageList = 202;

struct WindowSearch
{
    std::vector<std::wstring> titles;
    std::vector<HWND> found;
};

BOOL CALLBACK CompareTitle(HWND window, LPARAM context)
{
    WindowSearch& search = *reinterpret_cast<WindowSearch*>(context);
    wchar_t title[256] = {};
    ::GetWindowTextW(window, title, ARRAYSIZE(title));
    if (::IsWindowVisible(window) && std::count(search.titles.begin(), search.titles.end(), title) != 0)
        search.found.push_back(window);
    return TRUE;
}

// The visible top-level windows with one of the titles.
std::vector<HWND> WindowsTitled(const std::vector<std::wstring>& titles)
{
    WindowSearch search{titles, {}};
    ::EnumWindows(CompareTitle, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

// The first of them, waiting for it to appear; null when none does in a while.
HWND WaitForWindow(const std::vector<std::wstring>& titles)
{
    std::vector<HWND> windows;
    WaitUntil(
        [&]
        {
            windows = WindowsTitled(titles);
            return !windows.empty();
        });
    return windows.empty() ? nullptr : windows[0];
}

std::vector<HWND> Children(HWND window)
{
    std::vector<HWND> children;
    ::EnumChildWindows(
        window,
        [](HWND child, LPARAM context)
        {
            reinterpret_cast<std::vector<HWND>*>(context)->push_back(child);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&children));
    return children;
}

HWND FindControl(HWND dialog, const std::wstring& text)
{
    for (const HWND child : Children(dialog))
    {
        if ((::GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) != 0 && TextOfWindow(child) == text) return child;
    }
    return nullptr;
}

// A button's label is shown as it stands in the property.
std::wstring Label(const wchar_t* button, const PackageLocale& locale)
{
    return Sample().Property(std::wstring(L"ButtonText_") + button, locale);
}

// A button in one of the installer's dialogs, which all have the same title, that can be pressed; null when
// there is none.
HWND FindButton(const std::wstring& title, const std::wstring& label)
{
    for (const HWND dialog : WindowsTitled({title}))
    {
        const HWND button = FindControl(dialog, label);
        if (button && ::IsWindowEnabled(dialog) && ::IsWindowEnabled(button)) return button;
    }
    return nullptr;
}

// Waits until the button is there, and clicks it.
bool Press(const std::wstring& title, const std::wstring& label)
{
    HWND button = nullptr;
    WaitUntil(
        [&]
        {
            button = FindButton(title, label);
            return button != nullptr;
        });
    return button && ::PostMessageW(button, BM_CLICK, 0, 0);
}

// Clicks a button until the next one is there: an installer that is still busy with an action of the dialog
// may lose the click.
bool PressUntil(const std::wstring& title, const std::wstring& label, const std::wstring& next)
{
    constexpr ULONGLONG kRetryMs = 2000;
    ULONGLONG lastClick = 0;
    return WaitUntil(
        [&]
        {
            if (FindButton(title, next)) return true;
            const HWND button = FindButton(title, label);
            if (button && ::GetTickCount64() - lastClick > kRetryMs)
            {
                lastClick = ::GetTickCount64();
                ::PostMessageW(button, BM_CLICK, 0, 0);
            }
            return false;
        });
}

// What the installer shows of a text: without its style, and with the product's name.
std::wstring Shown(std::wstring text, const PackageLocale& locale)
{
    if (text.compare(0, 2, L"{\\") == 0) text.erase(0, text.find(L'}') + 1);
    const std::wstring reference = L"[ProductName]";
    for (size_t place = text.find(reference); place != std::wstring::npos; place = text.find(reference))
        text.replace(place, reference.size(), Sample().Property(L"ProductName", locale));
    return text;
}

// The texts that one of the package's dialogs shows in a language, buttons apart.
std::vector<std::wstring> TextsOf(const std::wstring& dialog, const PackageLocale& locale)
{
    std::vector<std::wstring> texts;
    for (const PackageRow& row : Sample().Localized(L"Control", locale).rows)
    {
        if (row.at(L"Dialog_") == dialog && row.at(L"Type") == L"Text") texts.push_back(Shown(row.at(L"Text"), locale));
    }
    return texts;
}

std::wstring DialogTitle(const PackageLocale& locale)
{
    return Shown(Sample().Localized(L"Dialog", locale).FindRow(L"WelcomeDlg")->at(L"Title"), locale);
}

std::wstring LanguageDialogText(const wchar_t* key, const PackageLocale& locale)
{
    return Sample().Row(L"ARVUIText", key + std::wstring(1, kKeySeparator) + locale.tag).at(L"Text");
}

// The place of a locale in the dialog's list.
int PlaceOf(const PackageLocale& locale)
{
    std::vector<PackageRow> rows = Sample().Table(L"ARVUILocale").rows;
    std::sort(rows.begin(), rows.end(),
        [](const PackageRow& one, const PackageRow& other)
        { return std::stoi(one.at(L"DisplayOrder")) < std::stoi(other.at(L"DisplayOrder")); });
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const PackageRow& row) { return row.at(L"Locale") == locale.tag; });
    return static_cast<int>(found - rows.begin());
}

// The language dialog, which opens in the user's language if the package has it.
HWND WaitForLanguageDialog()
{
    std::vector<std::wstring> titles;
    for (const PackageLocale& locale : Sample().Locales())
        titles.push_back(LanguageDialogText(L"LanguageSelectionTitle", locale));
    return WaitForWindow(titles);
}

// The installer with its whole user interface, on a copy of the package.
class InstallerWithWindows : public testing::Test
{
protected:
    InstallerWithWindows() : process_(Settings(installation_.Package())) {}

    static ChildSettings Settings(const std::filesystem::path& package)
    {
        ChildSettings settings;
        settings.application = InstallerProgram();
        settings.commandLine = L"msiexec /i \"" + package.wstring() + L"\"";
        return settings;
    }

    // Chooses a language; false when the dialog does not come.
    static bool Choose(const PackageLocale& locale)
    {
        const HWND dialog = WaitForLanguageDialog();
        if (!dialog) return false;
        SelectComboItem(dialog, kLanguageList, PlaceOf(locale));
        return ::PostMessageW(::GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0) != FALSE;
    }

    SampleInstallation installation_;
    ChildProcess process_;
};

}  // namespace

TEST_F(InstallerWithWindows, UserIsOfferedThePackagesLanguagesInTheirOrder)
{
    const HWND dialog = WaitForLanguageDialog();
    ASSERT_NE(dialog, nullptr);
    const std::vector<std::wstring> items = ComboItems(::GetDlgItem(dialog, kLanguageList));
    ::PostMessageW(::GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);

    ASSERT_EQ(items.size(), Sample().Locales().size());
    for (const PackageRow& row : Sample().Table(L"ARVUILocale").rows)
    {
        // Which of the names is shown depends on the keyboards.
        EXPECT_THAT(items.at(static_cast<size_t>(PlaceOf(Sample().Locale(row.at(L"Locale"))))),
            testing::AnyOf(row.at(L"NativeName"), row.at(L"EnglishName")));
    }
    const PackageLocale& english = Sample().Locale(L"en");
    EXPECT_TRUE(Press(DialogTitle(english), Label(L"Finish", english)));
}

TEST_F(InstallerWithWindows, LanguageDialogSpeaksTheLanguageThatIsSelected)
{
    const HWND dialog = WaitForLanguageDialog();
    ASSERT_NE(dialog, nullptr);
    const PackageLocale& french = Sample().Locale(L"fr");
    SelectComboItem(dialog, kLanguageList, PlaceOf(french));
    EXPECT_TRUE(
        WaitUntil([&] { return TextOfWindow(dialog) == LanguageDialogText(L"LanguageSelectionTitle", french); }));
    EXPECT_EQ(TextOfControl(dialog, IDCANCEL), LanguageDialogText(L"Cancel", french));
    ::PostMessageW(::GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);

    const PackageLocale& english = Sample().Locale(L"en");
    EXPECT_TRUE(Press(DialogTitle(english), Label(L"Finish", english)));
}

TEST_F(InstallerWithWindows, CancellingTheChoiceEndsTheInstallationInEnglish)
{
    const HWND dialog = WaitForLanguageDialog();
    ASSERT_NE(dialog, nullptr);
    ::PostMessageW(::GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);

    const PackageLocale& english = Sample().Locale(L"en");
    ASSERT_TRUE(Press(DialogTitle(english), Label(L"Finish", english)));
    EXPECT_EQ(process_.Wait(), static_cast<DWORD>(ERROR_INSTALL_USEREXIT));
    EXPECT_EQ(installation_.CachedPackage(), L"");
}

TEST_F(InstallerWithWindows, DialogsSpeakTheChosenLanguage)
{
    const PackageLocale& german = Sample().Locale(L"de");
    ASSERT_TRUE(Choose(german));
    const HWND welcome = WaitForWindow({DialogTitle(german)});
    ASSERT_NE(welcome, nullptr);
    for (const std::wstring& text : TextsOf(L"WelcomeDlg", german))
        EXPECT_TRUE(WaitUntil([&] { return FindControl(welcome, text) != nullptr; })) << Narrow(text);
    for (const wchar_t* button : {L"Back", L"Next", L"Cancel"})
        EXPECT_NE(FindControl(welcome, Label(button, german)), nullptr) << Narrow(button);

    EXPECT_TRUE(Press(DialogTitle(german), Label(L"Cancel", german)));
    EXPECT_TRUE(Press(DialogTitle(german), Label(L"Yes", german)));
    EXPECT_TRUE(Press(DialogTitle(german), Label(L"Finish", german)));
}

TEST_F(InstallerWithWindows, DialogsLeadToAnInstalledProduct)
{
    const PackageLocale& german = Sample().Locale(L"de");
    ASSERT_TRUE(Choose(german));
    for (const wchar_t* button : {L"Next", L"Install", L"Finish"})
        ASSERT_TRUE(Press(DialogTitle(german), Label(button, german))) << Narrow(button);
    EXPECT_EQ(process_.Wait(), static_cast<DWORD>(ERROR_SUCCESS));
    EXPECT_EQ(installation_.SessionValue(L"UILOCALE"), L"de");
    EXPECT_EQ(installation_.ListedValue(L"DisplayName"), Sample().Property(L"ProductName", german));
}

// The button for the package's author, who wants to see the dialog in every language.
TEST_F(InstallerWithWindows, PreviewOfTheLanguageDialogChangesNothing)
{
    const PackageLocale& german = Sample().Locale(L"de");
    ASSERT_TRUE(Choose(german));
    const std::wstring label = Sample()
                                   .Localized(L"Control", german)
                                   .FindRow(std::wstring(L"WelcomeDlg") + kKeySeparator + L"Languages")
                                   ->at(L"Text");
    ASSERT_TRUE(Press(DialogTitle(german), label));
    const HWND dialog = WaitForLanguageDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(dialog, IDOK)));
    ::PostMessageW(::GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);

    EXPECT_TRUE(WaitUntil([dialog] { return !::IsWindow(dialog); }));
    EXPECT_TRUE(PressUntil(DialogTitle(german), Label(L"Cancel", german), Label(L"Yes", german)));
    EXPECT_TRUE(Press(DialogTitle(german), Label(L"Yes", german)));
    EXPECT_TRUE(Press(DialogTitle(german), Label(L"Finish", german)));
}
