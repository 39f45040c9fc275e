// "muitool settings": the dialog of preferred languages, worked from outside, and what is stored then.
#include "arranged_system.h"
#include "muitool_program.h"
#include "resource_library.h"
#include "resources/resource_ids.h"
#include "support/box_window.h"
#include "support/built_locales.h"
#include "support/dialog_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace arvmui_test;

namespace
{

constexpr int kChosen = ARVMUI_CONTROL_CHOSEN_LIST;
constexpr int kAvailable = ARVMUI_CONTROL_AVAILABLE_LIST;

std::wstring LibraryText(const std::wstring& locale, UINT number)
{
    return ResourceLibrary(BuiltResourceLibrary(locale)).Strings().at(number);
}

// A system with a registry of the test's own.
class SettingsCommand : public testing::Test
{
protected:
    ToolCall Call(const std::vector<std::wstring>& arguments) const { return CallIn(system_, arguments); }

    static ToolCall CallIn(const ArrangedSystem& system, const std::vector<std::wstring>& arguments)
    {
        return {.arguments = arguments,
            .program = TestProgramFolder() / L"muitool_arranged.exe",
            .environment = system.Environment()};
    }

    ArrangedSystem system_;
};

void RemoveFirst(HWND dialog)
{
    SelectItems(dialog, kChosen, {0});
    ASSERT_TRUE(ClickButton(dialog, ARVMUI_CONTROL_REMOVE));
}

}  // namespace

TEST_F(SettingsCommand, StoresTheUsersList)
{
    system_.Store(L"user", L"xx-YY,zz-ZZ,vv-VV");
    system_.Store(L"machine", L"mm-MM");
    RunningTool tool(Call({L"settings", L"/uilocale:en"}));
    const HWND dialog = tool.WaitForDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(WindowText(dialog), LibraryText(L"en", ARVMUI_STRING_SETTINGS_TITLE_USER));
    EXPECT_THAT(ListItems(dialog, kChosen), testing::ElementsAre(L"xx-YY", L"zz-ZZ", L"vv-VV"));
    RemoveFirst(dialog);
    EXPECT_TRUE(ClickButton(dialog, IDOK));
    const ToolResult result = tool.Result();
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(system_.Stored(L"user"), L"zz-ZZ,vv-VV");
    EXPECT_EQ(system_.Stored(L"machine"), L"mm-MM");
}

TEST_F(SettingsCommand, StoresTheMachinesList)
{
    system_.Store(L"user", L"uu-UU");
    system_.Store(L"machine", L"xx-YY,zz-ZZ");
    RunningTool tool(Call({L"settings", L"--machine", L"/uilocale:de"}));
    const HWND dialog = tool.WaitForDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(WindowText(dialog), LibraryText(L"de", ARVMUI_STRING_SETTINGS_TITLE_MACHINE));
    RemoveFirst(dialog);
    EXPECT_TRUE(ClickButton(dialog, IDOK));
    EXPECT_EQ(tool.Result().exitCode, 0);
    EXPECT_EQ(system_.Stored(L"user"), L"uu-UU");
    EXPECT_EQ(system_.Stored(L"machine"), L"zz-ZZ");
}

TEST_F(SettingsCommand, WhatItStoredIsReadByTheOtherCommands)
{
    RunningTool tool(Call({L"settings", L"/uilocale:en"}));
    const HWND dialog = tool.WaitForDialog();
    ASSERT_NE(dialog, nullptr);
    ::PostMessageW(::GetDlgItem(dialog, ARVMUI_CONTROL_ADD), BM_CLICK, 0, 0);
    const HWND add = tool.WaitForDialog(dialog);
    ASSERT_NE(add, nullptr);
    const std::vector<std::wstring> items = ListItems(add, kAvailable);
    const auto german = std::find(items.begin(), items.end(), LibraryText(L"de", ARVMUI_STRING_NATIVE_NAME));
    ASSERT_NE(german, items.end());
    SelectItems(add, kAvailable, {static_cast<int>(german - items.begin())});
    ASSERT_TRUE(ClickButton(add, IDOK));
    ASSERT_TRUE(WaitUntilGone(add, dialog));
    ASSERT_TRUE(ClickButton(dialog, IDOK));
    ASSERT_EQ(tool.Result().exitCode, 0);

    EXPECT_EQ(RunCall(Call({L"locale", L"get"})).output, "de-DE\n");
    EXPECT_THAT(RunCall(Call({L"explain"})).output, testing::HasSubstr("List        de-DE   (registry, user)"));
}

TEST_F(SettingsCommand, CancellingLeavesTheList)
{
    system_.Store(L"user", L"xx-YY,zz-ZZ");
    for (const bool byKeyboard : {false, true})
    {
        RunningTool tool(Call({L"settings", L"/uilocale:en"}));
        const HWND dialog = tool.WaitForDialog();
        ASSERT_NE(dialog, nullptr);
        RemoveFirst(dialog);
        if (byKeyboard)
            PressKey(::GetDlgItem(dialog, kChosen), VK_ESCAPE);
        else
            EXPECT_TRUE(ClickButton(dialog, IDCANCEL));
        EXPECT_EQ(tool.Result().exitCode, 0);
        EXPECT_EQ(system_.Stored(L"user"), L"xx-YY,zz-ZZ");
    }
}

TEST_F(SettingsCommand, AListThatCannotBeStoredIsAnError)
{
    const ArrangedSystem system(REG_OPTION_VOLATILE);
    RunningTool tool(CallIn(system, {L"settings", L"/uilocale:en"}));
    const HWND dialog = tool.WaitForDialog();
    ASSERT_NE(dialog, nullptr);
    ::PostMessageW(::GetDlgItem(dialog, ARVMUI_CONTROL_ADD), BM_CLICK, 0, 0);
    const HWND add = tool.WaitForDialog(dialog);
    ASSERT_NE(add, nullptr);
    SelectItems(add, kAvailable, {0});
    ASSERT_TRUE(ClickButton(add, IDOK));
    ASSERT_TRUE(WaitUntilGone(add, dialog));
    ::PostMessageW(::GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    const HWND box = tool.WaitForDialog(dialog);
    ASSERT_NE(box, nullptr);
    ASSERT_TRUE(PressButton(box, ReadBox(box).buttons.begin()->first));
    const ToolResult result = tool.Result();
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, testing::StartsWith("muitool: the settings were not stored: "));
}

TEST_F(SettingsCommand, WithoutTextsIsAnError)
{
    const TemporaryFolder folder;
    for (const wchar_t* const file : {L"muitool_arranged.exe", L"arvmui64.dll"})
        folder.CopyIn(TestProgramFolder() / file, file);
    ToolCall call = Call({L"settings"});
    call.program = folder.Path() / L"muitool_arranged.exe";
    RunningTool tool(call);
    EXPECT_EQ(tool.WaitForDialog(), nullptr);
    EXPECT_EQ(tool.Result().exitCode, 2);
}

// The tool that is shipped, and the registry of the system.
TEST(SettingsCommandInRealRegistry, StoresWhereTheLibraryLooks)
{
    constexpr wchar_t kKey[] = L"SOFTWARE\\Pelkor\\MUI";
    constexpr wchar_t kValue[] = L"UILocale";
    constexpr wchar_t kNone[] = L"<none>";
    const auto store = [&](const std::wstring& list)
    {
        StoreValue(HKEY_CURRENT_USER, kKey, kValue, REG_SZ, list.c_str(),
            static_cast<DWORD>((list.size() + 1) * sizeof(wchar_t)), KEY_WOW64_32KEY);
    };
    const std::wstring before = StoredText(HKEY_CURRENT_USER, kKey, kValue, KEY_WOW64_32KEY);
    store(L"xx-YY,zz-ZZ");

    RunningTool tool({{L"settings", L"/uilocale:en"}});
    const HWND dialog = tool.WaitForDialog();
    EXPECT_NE(dialog, nullptr);
    if (dialog)
    {
        SelectItems(dialog, kChosen, {1});
        EXPECT_TRUE(ClickButton(dialog, ARVMUI_CONTROL_UP));
        EXPECT_TRUE(ClickButton(dialog, IDOK));
    }
    EXPECT_EQ(tool.Result().exitCode, 0);
    EXPECT_EQ(StoredText(HKEY_CURRENT_USER, kKey, kValue, KEY_WOW64_32KEY), L"zz-ZZ,xx-YY");
    EXPECT_EQ(RunTool({L"locale", L"get"}).output, "zz-ZZ,xx-YY\n");

    if (before == kNone)
        ::RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, kValue);
    else
        store(before);
}
