// The switch for the library's own message boxes, and the call that has no effect.
#include "arvmui.h"

#include "resources/process_state.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstring>

namespace
{

using arvmui::Descriptor;

TEST(MessagePopupSwitch, GivesTheOldSettingAndTakesTheNewOne)
{
    BOOL previous = 4711;
    ARVMUI_SetMessagePopup(TRUE, &previous);
    EXPECT_EQ(previous, FALSE);
    EXPECT_EQ(Descriptor().showMessagePopup, TRUE);
    ARVMUI_SetMessagePopup(FALSE, &previous);
    EXPECT_EQ(previous, TRUE);
    EXPECT_EQ(Descriptor().showMessagePopup, FALSE);
    ARVMUI_SetMessagePopup(FALSE, &previous);
    EXPECT_EQ(previous, FALSE);
}

TEST(MessagePopupSwitch, AnythingButZeroIsOn)
{
    BOOL previous = 4711;
    ARVMUI_SetMessagePopup(-2, nullptr);
    EXPECT_EQ(Descriptor().showMessagePopup, TRUE);
    ARVMUI_SetMessagePopup(FALSE, &previous);
    EXPECT_EQ(previous, TRUE);
}

TEST(MessagePopupSwitch, NeedsNoPlaceForTheOldSetting)
{
    ARVMUI_SetMessagePopup(TRUE, nullptr);
    EXPECT_EQ(Descriptor().showMessagePopup, TRUE);
    ARVMUI_SetMessagePopup(FALSE, nullptr);
    EXPECT_EQ(Descriptor().showMessagePopup, FALSE);
}

// The DLL itself, attached in a folder with or without translated resources.
BOOL SettingAfterAttach(bool withResources)
{
    const arvmui_test::TemporaryFolder folder;
    const std::filesystem::path programs = arvmui_test::TestProgramFolder();
    const std::filesystem::path dll = folder.CopyIn(programs / L"arvmui64.dll", L"arvmui64.dll");
    if (withResources) folder.CopyIn(programs / L"resource" / L"en" / L"arvmuiUI.DLL", L"resource\\en\\arvmuiUI.DLL");

    const HMODULE module = ::LoadLibraryW(dll.c_str());
    EXPECT_NE(module, nullptr);
    if (!module) return -1;
    const auto set = reinterpret_cast<decltype(&ARVMUI_SetMessagePopup)>(
        reinterpret_cast<void*>(::GetProcAddress(module, "ARVMUI_SetMessagePopup")));
    BOOL previous = 4711;
    set(FALSE, &previous);
    ::FreeLibrary(module);
    return previous;
}

TEST(MessagePopupSwitch, IsOffAfterAttachWithoutResources)
{
    EXPECT_EQ(SettingAfterAttach(false), FALSE);
}

TEST(MessagePopupSwitch, IsOnAfterAttachWithResources)
{
    EXPECT_EQ(SettingAfterAttach(true), TRUE);
}

TEST(LogSetCallTable, HasNoEffect)
{
    LibraryDescriptor before;
    std::memcpy(&before, &Descriptor(), sizeof(before));
    int table[4] = {1, 2, 3, 4};
    ::SetLastError(4711);
    ARVMUI_LogSetCallTable(nullptr);
    ARVMUI_LogSetCallTable(table);
    ARVMUI_LogSetCallTable(reinterpret_cast<void*>(static_cast<ULONG_PTR>(1)));
    EXPECT_EQ(::GetLastError(), 4711u);
    EXPECT_EQ(std::memcmp(&before, &Descriptor(), sizeof(before)), 0);
    EXPECT_EQ(table[0] + table[1] + table[2] + table[3], 10);
}

}  // namespace
