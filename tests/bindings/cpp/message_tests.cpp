// Messages, boxes and dialogs of the C++ layer.
#include "bindings/cpp/translated_module.h"
#include "support/box_window.h"
#include "support/busy_blocks.h"
#include "support/message_table.h"
#include "support/modal_call.h"
#include "support/module_patch.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using arvmui_test::ImportPatch;

// The test program's own calls of the library.
HMODULE Caller()
{
    return ::GetModuleHandleW(nullptr);
}

TEST(CppFormattedText, HasInserts)
{
    const std::wstring name = L"about.txt";

    EXPECT_EQ(arvmui::FormatText(L"%2!d! of %1", {name, 5}).value_or(L""), L"5 of about.txt");
}

TEST(CppFormattedText, TakesAnyTextAndNumberAsInsert)
{
    const std::wstring_view part = std::wstring_view(L"partial").substr(0, 4);

    EXPECT_EQ(arvmui::FormatText(L"%1|%2|%3!d!|%4!I64X!|%5!u!", {L"a", part, -7, 0x123456789ABCDEFull, WORD{65535}})
                  .value_or(L""),
        L"a|part|-7|123456789ABCDEF|65535");
}

TEST(CppFormattedText, HasEmptyTextForInsertsThatAreNotGiven)
{
    EXPECT_EQ(arvmui::FormatText(L"[%1] [%2] [%99]", {L"a"}).value_or(L""), L"[a] [] []");
}

TEST(CppFormattedText, LeavesOutMoreInsertsThanThereCanBe)
{
    const arvmui::Insert x(L"x");
    const arvmui::Inserts hundred = {x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x,
        x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x,
        x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, L"last"};
    ASSERT_EQ(hundred.size(), 100u);

    EXPECT_EQ(arvmui::FormatText(L"%99", hundred).value_or(L""), L"x");
}

TEST(CppFormattedText, MayBeEmpty)
{
    const auto text = arvmui::FormatText(L"%1", {L""});

    ASSERT_TRUE(text);
    EXPECT_EQ(*text, L"");
    EXPECT_TRUE(arvmui::FormatText(L""));
}

TEST(CppFormattedText, LeavesNoBlockBehind)
{
    ASSERT_TRUE(arvmui::FormatText(L"%1", {L"a"}));
    const size_t before = arvmui_test::CountBusyBlocks();

    ASSERT_TRUE(arvmui::FormatText(L"%1", {L"a"}));

    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

class CppMessage : public testing::Test
{
protected:
    static constexpr DWORD kGreeting = 1;

    CppMessage()
    {
        const std::filesystem::path file = module.Folder() / L"messages.dll";
        arvmui_test::WriteResourceImage(file, {{1, L"x"}});
        arvmui_test::WriteMessageTables(
            file, {{0x0407, {{kGreeting, L"Hallo %1"}}}, {0x040C, {{kGreeting, L"Bonjour %1"}}}});
        messages = arvmui::ResourceLibrary(::LoadLibraryW(file.c_str()));
    }

    arvmui_test::TranslatedModule module;
    arvmui::ResourceLibrary messages;
};

TEST_F(CppMessage, IsInTheLanguageOfTheProcess)
{
    std::wstring commandLine = L"program /uilocale:fr";
    arvmui::ParseCommandLine(commandLine);

    EXPECT_EQ(arvmui::ModuleMessage(messages.Get(), kGreeting, {L"Ada"}).value_or(L""), L"Bonjour Ada");
}

TEST_F(CppMessage, OfAModuleIsMissingWithAnError)
{
    const auto message = arvmui::ModuleMessage(messages.Get(), 77);

    EXPECT_FALSE(message);
    EXPECT_EQ(message.Error(), DWORD{ERROR_MR_MID_NOT_FOUND});
}

TEST_F(CppMessage, OfTheSystemIsWhatTheSystemSays)
{
    const auto message = arvmui::SystemMessage(ERROR_FILE_NOT_FOUND);

    ASSERT_TRUE(message);
    EXPECT_GT(message->size(), 2u);
    EXPECT_EQ(message->substr(message->size() - 2), L"\r\n");
}

TEST_F(CppMessage, OfTheSystemIsMissingWithAnError)
{
    constexpr DWORD kCustomersBit = 0x20000000;  // the system has no messages of these codes

    EXPECT_EQ(arvmui::SystemMessage(kCustomersBit | 77).Error(), DWORD{ERROR_MR_MID_NOT_FOUND});
}

TEST(CppMessageBox, IsAnswered)
{
    arvmui_test::ModalCall call([] { return arvmui::ShowMessage(nullptr, L"Text", L"Caption", MB_YESNO).value_or(0); });
    const HWND box = call.WaitForBox();
    ASSERT_NE(box, nullptr);

    const auto contents = arvmui_test::ReadBox(box);
    EXPECT_EQ(contents.text, L"Text");
    EXPECT_EQ(contents.caption, L"Caption");
    EXPECT_EQ(contents.buttons.size(), 2u);

    ASSERT_TRUE(arvmui_test::PressButton(box, IDNO));
    EXPECT_EQ(call.Result(), IDNO);
}

int ARVMUI_CALL ShowNoBox(HWND, const WCHAR*, const WCHAR*, UINT)
{
    ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return 0;
}

TEST(CppMessageBox, IsMissingWithAnError)
{
    const ImportPatch patch(Caller(), "ARVMUI_MessageBoxW", &ShowNoBox);

    const auto button = arvmui::ShowMessage(nullptr, L"Text");

    EXPECT_FALSE(button);
    EXPECT_EQ(button.Error(), DWORD{ERROR_NOT_ENOUGH_MEMORY});
}

struct BoxCall
{
    HWND owner;
    std::vector<const wchar_t*> texts;
    UINT type;
} g_box;

int ARVMUI_CALL RecordBox(HWND owner, const WCHAR* text, const WCHAR* caption, UINT type)
{
    g_box = {owner, {text, caption}, type};
    return IDOK;
}

TEST(CppMessageBox, TakesIdentifiersForTexts)
{
    const ImportPatch patch(Caller(), "ARVMUI_MessageBoxW", &RecordBox);
    const HWND owner = ::GetDesktopWindow();

    ASSERT_TRUE(arvmui::ShowMessage(owner, WORD{40}, WORD{41}, MB_ICONHAND));

    EXPECT_EQ(g_box.owner, owner);
    EXPECT_EQ(g_box.texts, (std::vector<const wchar_t*>{MAKEINTRESOURCEW(40), MAKEINTRESOURCEW(41)}));
    EXPECT_EQ(g_box.type, UINT{MB_ICONHAND});
}

TEST(CppMessageBox, LeavesTheCaptionToTheSystem)
{
    const ImportPatch patch(Caller(), "ARVMUI_MessageBoxW", &RecordBox);

    ASSERT_TRUE(arvmui::ShowMessage(nullptr, L"Text"));

    EXPECT_EQ(g_box.texts.back(), nullptr);
    EXPECT_EQ(g_box.type, UINT{MB_OK});
}

struct DialogCall
{
    HWND owner;
    const HICON* icons;
    DWORD scope;
} g_dialog;

BOOL ARVMUI_CALL RecordDialog(HWND owner, const HICON* icons, void*, DWORD scope)
{
    g_dialog = {owner, icons, scope};
    return scope == 1;
}

TEST(CppSettingsDialog, TakesScopeAndIcons)
{
    const ImportPatch patch(Caller(), "ARVMUI_SettingDialogBoxW", &RecordDialog);
    const HICON icons[2] = {};

    EXPECT_TRUE(arvmui::ShowSettingsDialog(nullptr, arvmui::SettingsScope::Machine, &icons));
    EXPECT_EQ(g_dialog.icons, &icons[0]);

    EXPECT_FALSE(arvmui::ShowSettingsDialog(::GetDesktopWindow()));
    EXPECT_EQ(g_dialog.owner, ::GetDesktopWindow());
    EXPECT_EQ(g_dialog.icons, nullptr);
    EXPECT_EQ(g_dialog.scope, 0u);
}

LANGID ARVMUI_CALL KnowGerman(void)
{
    return 0x0407;
}

LANGID ARVMUI_CALL KnowNoLanguage(void)
{
    ::SetLastError(ERROR_PROC_NOT_FOUND);
    return 0;
}

TEST(CppCommonControls, TellTheirLanguage)
{
    const ImportPatch patch(Caller(), "ARVMUI_InitCommonControlsLanguage", &KnowGerman);

    EXPECT_EQ(arvmui::InitCommonControlsLanguage().value_or(LANGID{0}), 0x0407);
}

TEST(CppCommonControls, MayKnowNoLanguage)
{
    const ImportPatch patch(Caller(), "ARVMUI_InitCommonControlsLanguage", &KnowNoLanguage);

    const auto language = arvmui::InitCommonControlsLanguage();

    EXPECT_FALSE(language);
    EXPECT_EQ(language.Error(), DWORD{ERROR_PROC_NOT_FOUND});
}

TEST(CppMessagePopups, AreSwitchedForALifetime)
{
    const BOOL& enabled = arvmui::Descriptor().showMessagePopup;
    const BOOL before = enabled;
    {
        const arvmui::MessagePopups off(false);
        EXPECT_FALSE(enabled);
        {
            const arvmui::MessagePopups on(true);
            EXPECT_TRUE(enabled);
            {
                const arvmui::MessagePopups offAgain(false);
            }
            EXPECT_TRUE(enabled);
        }
        EXPECT_FALSE(enabled);
    }
    EXPECT_EQ(enabled, before);
}

}  // namespace
