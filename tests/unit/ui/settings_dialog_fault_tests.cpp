// The settings dialog when the system fails it: no memory, no dialog, no registry. The system's
// functions are replaced; every block of memory that the library takes is watched.
#include "resources/process_state.h"
#include "settings_dialog_fixture.h"
#include "support/box_window.h"
#include "support/import_replacement.h"

#include <atomic>
#include <mutex>
#include <set>

namespace
{

struct DialogCall
{
    HINSTANCE module;
    const wchar_t* templateName;
    HWND owner;
    bool operator==(const DialogCall&) const = default;
};

// What stands for the system in this program, forwarding unless a test arms it.
struct System
{
    std::mutex mutex;
    std::set<void*> blocks;  // that the library holds
    std::vector<DialogCall> dialogs;
    // Allocations that succeed before one fails; negative: none fails.
    std::atomic<int> allocationsUntilFailure{-1};
    std::atomic<bool> failsForGood{false};  // else just once
    std::atomic<bool> failsFromDialogOn{false};
    std::atomic<bool> hasFailed{false};
    const wchar_t* failingTemplate = nullptr;
    std::atomic<LSTATUS> writeStatus{ERROR_SUCCESS};
    std::atomic<bool> failsDeletion{false};
    std::atomic<LSTATUS> deletionStatus{ERROR_SUCCESS};
};

System g_system;

constexpr DWORD kDialogError = ERROR_NOT_ENOUGH_QUOTA;

bool AllocationFails()
{
    if (g_system.failsFromDialogOn) return false;
    int left = g_system.allocationsUntilFailure;
    if (left < 0) return false;
    if (left == 0)
    {
        if (!g_system.failsForGood) g_system.allocationsUntilFailure = -1;
        g_system.hasFailed = true;
        return true;
    }
    g_system.allocationsUntilFailure = left - 1;
    return false;
}

void* WINAPI Allocate(HANDLE heap, DWORD flags, SIZE_T size)
{
    if (AllocationFails()) return nullptr;
    void* const block = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc)(heap, flags, size);
    const std::lock_guard guard(g_system.mutex);
    g_system.blocks.insert(block);
    return block;
}

void* WINAPI Reallocate(HANDLE heap, DWORD flags, void* old, SIZE_T size)
{
    if (AllocationFails()) return nullptr;
    void* const block = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapReAlloc)(heap, flags, old, size);
    const std::lock_guard guard(g_system.mutex);
    g_system.blocks.erase(old);
    g_system.blocks.insert(block);
    return block;
}

BOOL WINAPI Free(HANDLE heap, DWORD flags, void* block)
{
    {
        const std::lock_guard guard(g_system.mutex);
        g_system.blocks.erase(block);
    }
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapFree)(heap, flags, block);
}

INT_PTR WINAPI ShowDialog(HINSTANCE module, LPCWSTR templateName, HWND owner, DLGPROC procedure, LPARAM parameter)
{
    g_system.dialogs.push_back({module, templateName, owner});
    g_system.failsFromDialogOn = false;
    if (templateName == g_system.failingTemplate)
    {
        ::SetLastError(kDialogError);
        return -1;
    }
    return ARVMUI_REAL_FUNCTION(L"user32.dll", DialogBoxParamW)(module, templateName, owner, procedure, parameter);
}

LSTATUS WINAPI WriteValue(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD bytes)
{
    if (g_system.writeStatus != ERROR_SUCCESS) return g_system.writeStatus;
    return ARVMUI_REAL_FUNCTION(L"advapi32.dll", RegSetValueExW)(key, name, reserved, type, data, bytes);
}

LSTATUS WINAPI DeleteValue(HKEY key, LPCWSTR name)
{
    if (g_system.failsDeletion) return g_system.deletionStatus;
    return ARVMUI_REAL_FUNCTION(L"advapi32.dll", RegDeleteValueW)(key, name);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(HeapAlloc, Allocate)
ARVMUI_REPLACE_IMPORT(HeapReAlloc, Reallocate)
ARVMUI_REPLACE_IMPORT(HeapFree, Free)
ARVMUI_REPLACE_IMPORT(DialogBoxParamW, ShowDialog)
ARVMUI_REPLACE_IMPORT(RegSetValueExW, WriteValue)
ARVMUI_REPLACE_IMPORT(RegDeleteValueW, DeleteValue)

namespace
{

using namespace arvmui_test;

const wchar_t* const kGerman = L"Deutsch";

// When memory begins to run out.
enum class From
{
    kStart,
    kDialog,
};

class SettingsDialogFault : public SettingsDialog
{
protected:
    ~SettingsDialogFault() override
    {
        g_system.allocationsUntilFailure = -1;
        g_system.failsForGood = false;
        g_system.failsFromDialogOn = false;
        g_system.failingTemplate = nullptr;
        g_system.writeStatus = ERROR_SUCCESS;
        g_system.failsDeletion = false;
        g_system.dialogs.clear();
        EXPECT_EQ(HeldBlocks(), size_t{0});
    }

    static size_t HeldBlocks()
    {
        const std::lock_guard guard(g_system.mutex);
        return g_system.blocks.size();
    }

    static void FailAllocation(int succeeding, From from, bool forGood)
    {
        g_system.hasFailed = false;
        g_system.failsForGood = forGood;
        g_system.failsFromDialogOn = from == From::kDialog;
        g_system.allocationsUntilFailure = succeeding;
    }
    static std::wstring AnswerBox(const OpenSettings& settings)
    {
        const HWND box = WaitForOwnedDialog(settings.Window());
        if (!box) return L"<no box>";
        const std::wstring text = ReadBox(box).text;
        PressButton(box, ReadBox(box).buttons.begin()->first);
        return text;
    }
};

// ---- Memory ------------------------------------------------------------------------------------------

TEST_F(SettingsDialogFault, EverythingIsFreedAfterALongUse)
{
    Store(L"x,de-DE,y");
    OpenSettings settings;
    ASSERT_TRUE(settings.Add({0, 2}));
    settings.Select({0, 3});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_DOWN));
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_APPLY));
    EXPECT_GT(HeldBlocks(), size_t{0});
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(HeldBlocks(), size_t{0});
}

TEST_F(SettingsDialogFault, WithoutMemoryForTheRowsNothingIsShown)
{
    FailAllocation(0, From::kStart, true);
    OpenSettings settings;
    EXPECT_EQ(settings.Window(), nullptr);
    EXPECT_FALSE(settings.Result());
    EXPECT_EQ(settings.LastError(), DWORD{ERROR_INVALID_DATA});
    EXPECT_TRUE(g_system.dialogs.empty());
}

// Each allocation in turn, and all behind it, fails.
TEST_F(SettingsDialogFault, LackOfMemoryBeforeTheDialogShowsNothing)
{
    int withoutDialog = 0;
    for (;; ++withoutDialog)
    {
        ASSERT_LT(withoutDialog, 100);
        FailAllocation(withoutDialog, From::kStart, true);
        OpenSettings settings;
        g_system.allocationsUntilFailure = -1;
        if (!g_system.dialogs.empty()) break;
        EXPECT_EQ(settings.Window(), nullptr) << withoutDialog;
        EXPECT_FALSE(settings.Result()) << withoutDialog;
        EXPECT_EQ(HeldBlocks(), size_t{0}) << withoutDialog;
    }
    EXPECT_GE(withoutDialog, 3);  // the rows and both arrays
}

// Each allocation of the dialog's initialisation fails alone.
TEST_F(SettingsDialogFault, LackOfMemoryForAStoredItemEndsTheDialog)
{
    Store(L"x,de-DE,y");
    int ended = 0;
    for (int succeeding = 0;; ++succeeding)
    {
        ASSERT_LT(succeeding, 100);
        FailAllocation(succeeding, From::kDialog, false);
        OpenSettings settings;
        if (!settings.Window())
        {
            ++ended;
            EXPECT_FALSE(settings.Result()) << succeeding;
            EXPECT_EQ(HeldBlocks(), size_t{0}) << succeeding;
            continue;
        }
        const bool hasFailed = g_system.hasFailed;
        g_system.allocationsUntilFailure = -1;
        const Names chosen = settings.Chosen();
        // A list that cannot be read is an empty one; parts of a list are never shown.
        const bool isUnread = hasFailed && chosen.empty();
        EXPECT_EQ(chosen, isUnread ? Names{} : (Names{L"x", kGerman, L"y"})) << succeeding;
        ASSERT_TRUE(settings.Click(IDCANCEL));
        EXPECT_TRUE(settings.Result());
        if (!hasFailed) break;
    }
    EXPECT_GE(ended, 6);  // the rows and both arrays, for each of two items
    EXPECT_EQ(Stored(), L"x,de-DE,y");
}

TEST_F(SettingsDialogFault, LackOfMemoryForTheTextEndsTheDialogWithoutAMessage)
{
    for (const int button : {IDOK, ARVMUI_CONTROL_APPLY})
    {
        Store(L"de-DE,fr-FR");
        OpenSettings settings;
        settings.Select({0});
        ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
        FailAllocation(0, From::kStart, false);  // a message would find memory
        settings.Press(button);
        ASSERT_TRUE(settings.Ends()) << button;
        g_system.allocationsUntilFailure = -1;
        EXPECT_FALSE(settings.Result()) << button;
        EXPECT_EQ(Stored(), L"de-DE,fr-FR") << button;
    }
}

TEST_F(SettingsDialogFault, LackOfMemoryForAnItemOfTheTextStoresNothing)
{
    Store(std::wstring(63, L'x') + L"," + std::wstring(63, L'y') + L"," + std::wstring(63, L'z') + L",w");
    const std::wstring before = Stored();
    int ended = 0;
    for (int succeeding = 0;; ++succeeding)
    {
        ASSERT_LT(succeeding, 100);
        OpenSettings settings;
        settings.Select({3});
        ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
        FailAllocation(succeeding, From::kStart, true);
        settings.Press(IDOK);
        ASSERT_TRUE(settings.Ends()) << succeeding;
        const bool hasFailed = g_system.hasFailed;
        g_system.allocationsUntilFailure = -1;
        EXPECT_EQ(settings.Result(), hasFailed ? FALSE : TRUE) << succeeding;
        if (!hasFailed) break;
        EXPECT_EQ(Stored(), before) << succeeding;
        ++ended;
    }
    EXPECT_GE(ended, 1);
    EXPECT_EQ(Stored(), before.substr(0, before.size() - 2));
}

// ---- Dialogs -----------------------------------------------------------------------------------------

TEST_F(SettingsDialogFault, DialogsComeFromTheResourceLibrary)
{
    OpenSettings settings;
    const HWND add = settings.OpenAdd();
    ASSERT_NE(add, nullptr);
    ASSERT_TRUE(ClickButton(add, IDCANCEL));
    ASSERT_TRUE(WaitUntilGone(add, settings.Window()));
    ASSERT_TRUE(settings.Click(IDCANCEL));
    settings.Result();
    const HMODULE library = arvmui::Descriptor().resourceLibrary;
    EXPECT_EQ(g_system.dialogs, (std::vector<DialogCall>{{library, MAKEINTRESOURCEW(300), nullptr},
                                    {library, MAKEINTRESOURCEW(310), settings.Window()}}));
}

TEST_F(SettingsDialogFault, DialogThatCannotBeMadeIsReported)
{
    g_system.failingTemplate = MAKEINTRESOURCEW(300);
    OpenSettings settings;
    const HWND box = settings.Window();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(ReadBox(box).text, L"908:" + std::to_wstring(kDialogError));
    PressButton(box, ReadBox(box).buttons.begin()->first);
    EXPECT_FALSE(settings.Result());
    EXPECT_EQ(settings.LastError(), kDialogError);
}

TEST_F(SettingsDialogFault, AddDialogThatCannotBeMadeIsReportedAndEndsTheSettings)
{
    Store(L"de-DE");
    g_system.failingTemplate = MAKEINTRESOURCEW(310);
    OpenSettings settings;
    settings.Press(ARVMUI_CONTROL_ADD);
    EXPECT_EQ(AnswerBox(settings), L"908:" + std::to_wstring(kDialogError));
    ASSERT_TRUE(settings.Ends());
    EXPECT_FALSE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE");
}

// ---- Registry ----------------------------------------------------------------------------------------

TEST_F(SettingsDialogFault, WriteFailureIsReportedWithItsCode)
{
    for (const int button : {IDOK, ARVMUI_CONTROL_APPLY})
    {
        Store(L"de-DE");
        g_system.writeStatus = ERROR_NO_SYSTEM_RESOURCES;
        OpenSettings settings;
        ASSERT_TRUE(settings.Add({0}));
        settings.Press(button);
        EXPECT_EQ(AnswerBox(settings), L"906:" + std::to_wstring(ERROR_NO_SYSTEM_RESOURCES));
        ASSERT_TRUE(settings.Ends());
        EXPECT_FALSE(settings.Result());
        EXPECT_EQ(Stored(), L"de-DE");
        g_system.writeStatus = ERROR_SUCCESS;
    }
}

TEST_F(SettingsDialogFault, WriteFailureIsNotReportedWhilePopupsAreOff)
{
    arvmui::Descriptor().showMessagePopup = FALSE;
    Store(L"de-DE");
    g_system.writeStatus = ERROR_NO_SYSTEM_RESOURCES;
    OpenSettings settings;
    settings.Press(IDOK);
    ASSERT_TRUE(settings.Ends());
    EXPECT_FALSE(settings.Result());
}

TEST_F(SettingsDialogFault, RemovalFailureIsReportedWithItsCode)
{
    for (const int button : {IDOK, ARVMUI_CONTROL_APPLY})
    {
        Store(L"de-DE");
        g_system.failsDeletion = true;
        g_system.deletionStatus = ERROR_KEY_DELETED;
        OpenSettings settings;
        settings.Select({0});
        ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
        settings.Press(button);
        EXPECT_EQ(AnswerBox(settings), L"907:" + std::to_wstring(ERROR_KEY_DELETED));
        ASSERT_TRUE(settings.Ends());
        EXPECT_FALSE(settings.Result());
        EXPECT_EQ(Stored(), L"de-DE");
    }
}

TEST_F(SettingsDialogFault, RemovalOfWhatIsNotThereSucceeds)
{
    g_system.failsDeletion = true;
    g_system.deletionStatus = ERROR_FILE_NOT_FOUND;
    OpenSettings settings;
    settings.Press(IDOK);
    ASSERT_TRUE(settings.Ends());
    EXPECT_TRUE(settings.Result());
}

// A failure of one store goes unnoticed by the next.
TEST_F(SettingsDialogFault, SuccessAfterAFailureIsOne)
{
    g_system.failsDeletion = true;
    g_system.deletionStatus = ERROR_ACCESS_DENIED;
    {
        OpenSettings settings;
        settings.Press(IDOK);
        AnswerBox(settings);
        EXPECT_FALSE(settings.Result());
    }
    g_system.failsDeletion = false;
    OpenSettings settings;
    settings.Press(IDOK);
    ASSERT_TRUE(settings.Ends());
    EXPECT_TRUE(settings.Result());
}

}  // namespace
