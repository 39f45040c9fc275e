// Installations with their full user interface, worked as the user does.
#include "installer/session/installation_fixture.h"
#include "support/box_window.h"
#include "support/dialog_controls.h"

namespace
{

using arvmui_test::ComboItems;
using arvmui_test::GermanTables;
using arvmui_test::InstallationTest;
using arvmui_test::PressButton;
using arvmui_test::SelectComboItem;
using arvmui_test::TextOfControl;
using arvmui_test::TextOfWindow;
using arvmui_test::WaitUntil;
using arvmui_test::WithoutStreams;

constexpr int kPrompt = 201;
constexpr int kList = 202;
constexpr int kGerman = 1;  // in the package's order of display

BOOL CALLBACK CollectChild(HWND child, LPARAM context)
{
    reinterpret_cast<std::vector<HWND>*>(context)->push_back(child);
    return TRUE;
}

// The control of an installer's dialog that shows a text; null when there is none.
HWND ControlWithText(HWND dialog, const std::wstring& text)
{
    std::vector<HWND> children;
    ::EnumChildWindows(dialog, CollectChild, reinterpret_cast<LPARAM>(&children));
    for (const HWND child : children)
        if (TextOfWindow(child) == text) return child;
    return nullptr;
}

class InteractiveInstallation : public InstallationTest
{
protected:
    // The dialog opens in a language of the machine's: any of the package's titles is right.
    HWND WaitForLanguageDialog() const
    {
        HWND dialog = nullptr;
        WaitUntil(
            [&]
            {
                for (const wchar_t* locale : {L"en", L"de", L"zh-CN"})
                    if (!dialog) dialog = ::FindWindowW(nullptr, package.DialogTitle(locale).c_str());
                return dialog && ::IsWindowVisible(dialog);
            });
        return dialog;
    }

    // Answers with German.
    void ChooseGerman() const
    {
        const HWND dialog = WaitForLanguageDialog();
        ASSERT_NE(dialog, nullptr);
        SelectComboItem(dialog, kList, kGerman);
        PressButton(dialog, IDOK);
    }
};

TEST_F(InteractiveInstallation, AsksInThePackagesLanguages)
{
    Start(L"");
    const HWND dialog = WaitForLanguageDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(ComboItems(::GetDlgItem(dialog, kList)).size(), 3U);
    SelectComboItem(dialog, kList, kGerman);
    EXPECT_EQ(TextOfWindow(dialog), package.DialogTitle(L"de"));
    EXPECT_EQ(TextOfControl(dialog, kPrompt), L"Sprache ausw\u00E4hlen:");
    EXPECT_EQ(TextOfControl(dialog, IDOK), L"&Gut");
    EXPECT_EQ(TextOfControl(dialog, IDCANCEL), L"&Abbrechen");
    PressButton(dialog, IDCANCEL);
    End();
}

TEST_F(InteractiveInstallation, SpeaksTheChosenLanguageInBothSequences)
{
    Start(L"");
    ChooseGerman();
    ASSERT_EQ(End(), DWORD{ERROR_SUCCESS});
    for (const wchar_t* sequence : {L"interface", L"execution"})
    {
        EXPECT_EQ(Report(sequence).properties.at(L"UILOCALE"), L"de");
        EXPECT_EQ(Report(sequence).properties.at(L"GREETING"), L"Guten Tag");
        EXPECT_EQ(WithoutStreams(Report(sequence).tables), WithoutStreams(GermanTables()));
    }
}

TEST_F(InteractiveInstallation, IsCancelledByTheUser)
{
    Start(L"");
    const HWND dialog = WaitForLanguageDialog();
    ASSERT_NE(dialog, nullptr);
    PressButton(dialog, IDCANCEL);
    EXPECT_EQ(End(), DWORD{ERROR_INSTALL_USEREXIT});
    EXPECT_FALSE(HasReport(L"interface"));
    EXPECT_FALSE(HasReport(L"execution"));
}

TEST_F(InteractiveInstallation, ShowsItsOwnDialogsInTheChosenLanguage)
{
    package.AddWelcome();
    Start(L"");
    ChooseGerman();
    const HWND welcome = WaitForWindow(package.WelcomeTitle(L"de"));
    ASSERT_NE(welcome, nullptr);
    EXPECT_NE(ControlWithText(welcome, L"Willkommen"), nullptr);
    EXPECT_NE(ControlWithText(welcome, L"Show"), nullptr);  // not localized
    const HWND next = ControlWithText(welcome, L"Weiter");
    ASSERT_NE(next, nullptr);
    ::PostMessageW(next, BM_CLICK, 0, 0);
    EXPECT_EQ(End(), DWORD{ERROR_SUCCESS});
}

TEST_F(InteractiveInstallation, AsksNobodyWhereThePackageForbidsIt)
{
    Start(L"ENABLE_DIALOGS=NO");
    EXPECT_EQ(End(), DWORD{ERROR_SUCCESS});
    EXPECT_TRUE(HasReport(L"interface"));
}

TEST_F(InteractiveInstallation, AsksNobodyForALanguageThatIsGiven)
{
    Start(L"UILOCALE=de");
    EXPECT_EQ(End(), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Report(L"interface").properties.at(L"UILOCALE"), L"de");
}

TEST_F(InteractiveInstallation, AsksEvenWithoutAnInterfaceWhenToldTo)
{
    Start(L"/qn UILOCALE=ask");
    ChooseGerman();
    ASSERT_EQ(End(), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Report(L"execution").properties.at(L"UILOCALE"), L"de");
}

// ---- The preview ----------------------------------------------------------------------------------------

TEST_F(InteractiveInstallation, ShowsThePreviewOverItsDialog)
{
    package.AddWelcome();
    Start(L"UILOCALE=de");
    const HWND welcome = WaitForWindow(package.WelcomeTitle(L"de"));
    ASSERT_NE(welcome, nullptr);
    const HWND show = ControlWithText(welcome, L"Show");
    ASSERT_NE(show, nullptr);
    ::PostMessageW(show, BM_CLICK, 0, 0);

    const HWND preview = WaitForLanguageDialog();
    ASSERT_NE(preview, nullptr);
    EXPECT_EQ(::GetWindow(preview, GW_OWNER), welcome);
    EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(preview, IDOK)));
    PressButton(preview, IDCANCEL);
    ASSERT_TRUE(WaitUntil([preview, welcome] { return !::IsWindow(preview) && ::IsWindowEnabled(welcome); }));

    const HWND next = ControlWithText(welcome, L"Weiter");
    ASSERT_NE(next, nullptr);
    ::PostMessageW(next, BM_CLICK, 0, 0);
    EXPECT_EQ(End(), DWORD{ERROR_SUCCESS});
}

}  // namespace
