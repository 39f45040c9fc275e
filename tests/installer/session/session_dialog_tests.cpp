// The language dialog of a session, worked as its user does.
#include "installer/session/session_fixture.h"
#include "support/box_window.h"
#include "support/dialog_controls.h"
#include "support/modal_call.h"
#include "support/module_patch.h"

#include <optional>

namespace
{

using arvmui_test::ComboItems;
using arvmui_test::GermanTables;
using arvmui_test::ImportPatch;
using arvmui_test::IsContextPublished;
using arvmui_test::LibraryUnderTest;
using arvmui_test::ModalCall;
using arvmui_test::PressButton;
using arvmui_test::SelectComboItem;
using arvmui_test::SessionTest;
using arvmui_test::TextOfControl;
using arvmui_test::TextOfWindow;

constexpr UINT kCancelled = 1602;
constexpr int kPrompt = 201;
constexpr int kList = 202;

// Places in the list, which has the package's order of display.
enum Language
{
    kEnglish,
    kGerman,
    kChinese
};

class SessionDialog : public SessionTest
{
protected:
    SessionDialog()
    {
        LibraryDescriptor* const descriptor = ARVMUI_GetDescriptor();
        keyboards_ = descriptor->keyboardLanguageCount;
        descriptor->keyboardLanguageCount = 0;  // so that texts in Latin letters are the readable ones
    }
    ~SessionDialog() override { ARVMUI_GetDescriptor()->keyboardLanguageCount = keyboards_; }

    void TearDown() override
    {
        call_.reset();  // closes what the action still shows
        SessionTest::TearDown();
    }

    // Starts the action and waits for its dialog; null when the action ends without one.
    HWND Ask()
    {
        call_.emplace([this] { return static_cast<int>(SetLocale()); });
        return call_->WaitForBox();
    }

    UINT Result() { return static_cast<UINT>(call_->Result()); }

    void OpenInteractive()
    {
        Open();
        Set(L"UILevel", L"5");
    }

private:
    DWORD keyboards_;
    std::optional<ModalCall> call_;
};

TEST_F(SessionDialog, ListsThePackagesLanguages)
{
    OpenInteractive();
    const HWND dialog = Ask();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(
        ComboItems(::GetDlgItem(dialog, kList)), (std::vector<std::wstring>{L"English", L"Deutsch", L"Chinese (PRC)"}));
}

TEST_F(SessionDialog, SpeaksWithThePackagesTexts)
{
    OpenInteractive();
    const HWND dialog = Ask();
    ASSERT_NE(dialog, nullptr);
    SelectComboItem(dialog, kList, kGerman);
    EXPECT_EQ(TextOfWindow(dialog), package.DialogTitle(L"de"));
    EXPECT_EQ(TextOfControl(dialog, kPrompt), L"Sprache ausw\u00E4hlen:");
    EXPECT_EQ(TextOfControl(dialog, IDOK), L"&Gut");
    EXPECT_EQ(TextOfControl(dialog, IDCANCEL), L"&Abbrechen");
}

TEST_F(SessionDialog, AppliesTheChoice)
{
    OpenInteractive();
    const HWND dialog = Ask();
    ASSERT_NE(dialog, nullptr);
    SelectComboItem(dialog, kList, kGerman);
    PressButton(dialog, IDOK);
    EXPECT_EQ(Result(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"de");
    EXPECT_EQ(Get(L"GREETING"), L"Guten Tag");
    EXPECT_EQ(Tables(), GermanTables());
}

TEST_F(SessionDialog, AppliesEnglishWithoutTouchingATable)
{
    OpenInteractive();
    const HWND dialog = Ask();
    ASSERT_NE(dialog, nullptr);
    SelectComboItem(dialog, kList, kEnglish);
    PressButton(dialog, IDOK);
    EXPECT_EQ(Result(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"en");
    EXPECT_EQ(Tables(), arvmui_test::EnglishTables());
}

TEST_F(SessionDialog, CancelsTheInstallation)
{
    OpenInteractive();
    const HWND dialog = Ask();
    ASSERT_NE(dialog, nullptr);
    SelectComboItem(dialog, kList, kGerman);
    PressButton(dialog, IDCANCEL);
    EXPECT_EQ(Result(), kCancelled);
    EXPECT_EQ(Get(L"UILOCALE"), L"");
    EXPECT_EQ(Tables(), arvmui_test::EnglishTables());
}

TEST_F(SessionDialog, CancelsTheInstallationWhenItIsClosed)
{
    OpenInteractive();
    const HWND dialog = Ask();
    ASSERT_NE(dialog, nullptr);
    ::PostMessageW(dialog, WM_CLOSE, 0, 0);
    EXPECT_EQ(Result(), kCancelled);
}

TEST_F(SessionDialog, AppearsOnceInAnInstallation)
{
    OpenInteractive();
    const HWND dialog = Ask();
    ASSERT_NE(dialog, nullptr);
    SelectComboItem(dialog, kList, kChinese);
    PressButton(dialog, IDOK);
    ASSERT_EQ(Result(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Ask(), nullptr);
    EXPECT_EQ(Result(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"zh-CN");
}

TEST_F(SessionDialog, AppearsForThePresetWordWhateverTheSession)
{
    Open();
    Set(L"UILOCALE", L"ask");
    Set(L"UILevel", L"2");
    Set(L"ENABLE_DIALOGS", L"NO");
    Set(L"ACTION", L"ADVERTISE");
    const HWND dialog = Ask();
    ASSERT_NE(dialog, nullptr);
    SelectComboItem(dialog, kList, kGerman);
    PressButton(dialog, IDOK);
    EXPECT_EQ(Result(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"UILOCALE"), L"de");
}

TEST_F(SessionDialog, AppearsWhereItIsNamedAmongTheEnabledOnes)
{
    OpenInteractive();
    Set(L"ENABLE_DIALOGS", L"Welcome;Select Language;Exit");
    EXPECT_NE(Ask(), nullptr);
}

struct SilentCase
{
    const char* name;
    const wchar_t* property;
    const wchar_t* value;
};

void PrintTo(const SilentCase& value, std::ostream* output)
{
    *output << value.name;
}

class SilentSession : public SessionDialog, public testing::WithParamInterface<SilentCase>
{
};

TEST_P(SilentSession, AsksNobody)
{
    OpenInteractive();
    Set(GetParam().property, GetParam().value);
    EXPECT_EQ(Ask(), nullptr);
    EXPECT_EQ(Result(), UINT{ERROR_SUCCESS});
}

const SilentCase kSilentCases[] = {
    {"WithoutInterface", L"UILevel", L"2"},
    {"Advertised", L"ACTION", L"ADVERTISE"},
    {"WithoutDialogs", L"ENABLE_DIALOGS", L"no"},
    {"WithOtherDialogs", L"ENABLE_DIALOGS", L"Welcome"},
    {"WithALocale", L"UILOCALE", L"de"},
};

INSTANTIATE_TEST_SUITE_P(Sessions, SilentSession, testing::ValuesIn(kSilentCases),
    [](const testing::TestParamInfo<SilentCase>& parameter) { return std::string(parameter.param.name); });

// ---- The published context and the icon -----------------------------------------------------------------

TEST_F(SessionDialog, IsToldWhatToShowWhileItIsOpen)
{
    OpenInteractive();
    const HWND dialog = Ask();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(IsContextPublished());
    PressButton(dialog, IDCANCEL);
    Result();
    EXPECT_FALSE(IsContextPublished());
}

HICON g_installerIcon = nullptr;

// The system's own installer may have no icon of that number.
HICON WINAPI LoadInstallerIcon(HINSTANCE module, LPCWSTR name)
{
    const bool isInstallers = module == ::GetModuleHandleW(L"MSI.DLL") && name == MAKEINTRESOURCEW(203);
    return isInstallers ? g_installerIcon : nullptr;
}

TEST_F(SessionDialog, HasTheInstallersIcon)
{
    g_installerIcon = ::CreateIcon(nullptr, 16, 16, 1, 1, std::vector<BYTE>(32).data(), std::vector<BYTE>(32).data());
    const ImportPatch loadIcon(LibraryUnderTest(), "LoadIconW", &LoadInstallerIcon);
    OpenInteractive();
    const HWND dialog = Ask();
    ASSERT_NE(dialog, nullptr);
    for (const WPARAM kind : {ICON_SMALL, ICON_BIG})
        EXPECT_EQ(reinterpret_cast<HICON>(::SendMessageW(dialog, WM_GETICON, kind, 0)), g_installerIcon);
    PressButton(dialog, IDCANCEL);
    Result();
    ::DestroyIcon(g_installerIcon);
}

}  // namespace
