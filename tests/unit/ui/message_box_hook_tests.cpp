// The hook and the frames of message boxes, with the system's box replaced by what a test wants to
// happen in its place: a dialog of its own, a nested box, a failure.
#include "arvmui.h"
#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "support/busy_blocks.h"
#include "support/import_replacement.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace
{

using arvmui_test::LoadedModule;
using arvmui_test::TemporaryFolder;
using Labels = std::map<int, std::wstring>;

struct WideBox
{
    HWND owner;
    const wchar_t* text;
    const wchar_t* caption;
    UINT type;
};

struct NarrowBox
{
    HWND owner;
    const char* text;
    const char* caption;
    UINT type;
};

struct Hooking
{
    int id;
    HMODULE module;
    DWORD threadId;
    HHOOK result;
};

// What stands for the system in this program.
std::function<int(const WideBox&)> g_showWide;
std::function<int(const NarrowBox&)> g_showNarrow;
std::vector<Hooking> g_hookings;
std::vector<HHOOK> g_unhookings;
bool g_failHooking = false;
int g_allocationsUntilFailure = -1;  // negative: none fails

int WINAPI ShowWide(HWND owner, const wchar_t* text, const wchar_t* caption, UINT type)
{
    const auto show = g_showWide;  // a copy, because it may put another one in its place
    return show({owner, text, caption, type});
}

int WINAPI ShowNarrow(HWND owner, const char* text, const char* caption, UINT type)
{
    return g_showNarrow({owner, text, caption, type});
}

HHOOK WINAPI Hook(int id, HOOKPROC procedure, HINSTANCE module, DWORD threadId)
{
    const HHOOK hook = g_failHooking
                           ? nullptr
                           : ARVMUI_REAL_FUNCTION(L"user32.dll", SetWindowsHookExW)(id, procedure, module, threadId);
    g_hookings.push_back({id, module, threadId, hook});
    return hook;
}

BOOL WINAPI Unhook(HHOOK hook)
{
    g_unhookings.push_back(hook);
    return ARVMUI_REAL_FUNCTION(L"user32.dll", UnhookWindowsHookEx)(hook);
}

void* WINAPI Allocate(HANDLE heap, DWORD flags, SIZE_T size)
{
    if (g_allocationsUntilFailure == 0) return nullptr;
    if (g_allocationsUntilFailure > 0) --g_allocationsUntilFailure;
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc)(heap, flags, size);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(MessageBoxW, ShowWide)
ARVMUI_REPLACE_IMPORT(MessageBoxA, ShowNarrow)
ARVMUI_REPLACE_IMPORT(SetWindowsHookExW, Hook)
ARVMUI_REPLACE_IMPORT(UnhookWindowsHookEx, Unhook)
ARVMUI_REPLACE_IMPORT(HeapAlloc, Allocate)

namespace
{

// A dialog template in memory with buttons of given numbers.
class DialogTemplate
{
public:
    DialogTemplate(const std::wstring& caption, const std::vector<int>& buttons)
    {
        Add32(WS_POPUP | WS_CAPTION);
        Add32(0);
        Add16(buttons.size());
        for (const size_t value : {0, 0, 100, 100}) Add16(value);
        Add16(0);  // no menu
        Add16(0);  // the dialog's own class
        AddText(caption);
        for (const int id : buttons)
        {
            if (words_.size() % 2 != 0) Add16(0);
            Add32(WS_CHILD | WS_VISIBLE | BS_PUSHBUTTON);
            Add32(0);
            for (const size_t value : {0, 0, 50, 10}) Add16(value);
            Add16(static_cast<size_t>(id));
            Add16(0xFFFF);
            Add16(0x0080);  // button
            AddText(L"System");
            Add16(0);
        }
    }

    const DLGTEMPLATE* Get() const { return reinterpret_cast<const DLGTEMPLATE*>(words_.data()); }

private:
    void Add16(size_t value) { words_.push_back(static_cast<WORD>(value)); }
    void Add32(DWORD value)
    {
        Add16(LOWORD(value));
        Add16(HIWORD(value));
    }
    void AddText(const std::wstring& text)
    {
        for (const wchar_t character : text) Add16(character);
        Add16(0);
    }

    std::vector<WORD> words_;
};

struct SeenDialog
{
    bool isUnicode = false;
    std::wstring caption;
    Labels labels;
};

BOOL CALLBACK ReadLabel(HWND control, LPARAM context)
{
    wchar_t text[128] = {};
    ::InternalGetWindowText(control, text, 128);
    reinterpret_cast<SeenDialog*>(context)->labels[::GetDlgCtrlID(control)] = text;
    return TRUE;
}

// The dialog's own initialisation, behind the hook.
INT_PTR CALLBACK ReadAndEnd(HWND dialog, UINT message, WPARAM, LPARAM parameter)
{
    if (message != WM_INITDIALOG) return FALSE;
    SeenDialog& seen = *reinterpret_cast<SeenDialog*>(parameter);
    seen.isUnicode = ::IsWindowUnicode(dialog) != FALSE;
    wchar_t caption[128] = {};
    ::InternalGetWindowText(dialog, caption, 128);
    seen.caption = caption;
    ::EnumChildWindows(dialog, ReadLabel, parameter);
    ::EndDialog(dialog, 1);
    return TRUE;
}

SeenDialog RunWide(const DialogTemplate& dialog)
{
    SeenDialog seen;
    ::DialogBoxIndirectParamW(
        ::GetModuleHandleW(nullptr), dialog.Get(), nullptr, ReadAndEnd, reinterpret_cast<LPARAM>(&seen));
    return seen;
}

SeenDialog RunNarrow(const DialogTemplate& dialog)
{
    SeenDialog seen;
    ::DialogBoxIndirectParamA(
        ::GetModuleHandleW(nullptr), dialog.Get(), nullptr, ReadAndEnd, reinterpret_cast<LPARAM>(&seen));
    return seen;
}

class MessageBoxHook : public testing::Test
{
protected:
    MessageBoxHook()
    {
        g_hookings.clear();
        g_unhookings.clear();
        arvmui::Descriptor() = {};
        slot_ = ::TlsAlloc();
        arvmui::Descriptor().tlsIndex = slot_;
        arvmui_test::Strings strings = {{100, L"Label 0"}, {112, L"Label 12"}};
        for (unsigned id = 1; id <= 11; ++id) strings[100 + id] = L"Label " + std::to_wstring(id);
        texts_ = std::make_unique<LoadedModule>(folder_.Path() / L"texts.dll", strings);
        arvmui::Descriptor().resourceLibrary = texts_->Get();
    }
    ~MessageBoxHook() override
    {
        ::TlsFree(slot_);
        arvmui::Descriptor() = {};
        g_showWide = nullptr;
        g_showNarrow = nullptr;
    }

    // Runs a dialog in place of the system's box.
    static SeenDialog Show(UINT type, const DialogTemplate& dialog, const wchar_t* caption = L"Caption")
    {
        SeenDialog seen;
        g_showWide = [&](const WideBox&)
        {
            seen = RunWide(dialog);
            return 1;
        };
        ARVMUI_MessageBoxW(nullptr, L"Text", caption, type);
        return seen;
    }

    static SeenDialog ShowNarrowDialog(const DialogTemplate& dialog, const wchar_t* caption)
    {
        SeenDialog seen;
        g_showWide = [&](const WideBox&)
        {
            seen = RunNarrow(dialog);
            return 1;
        };
        ARVMUI_MessageBoxW(nullptr, L"Text", caption, MB_OKCANCEL);
        return seen;
    }

private:
    DWORD slot_ = TLS_OUT_OF_INDEXES;
    TemporaryFolder folder_;
    std::unique_ptr<LoadedModule> texts_;
};

TEST_F(MessageBoxHook, LabelsControlsOneToElevenAndNoOthers)
{
    const DialogTemplate dialog(L"", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 65535});
    Labels expected = {{0, L"System"}, {12, L"System"}, {65535, L"System"}};
    for (int id = 1; id <= 11; ++id) expected[id] = L"Label " + std::to_wstring(id);
    EXPECT_EQ(Show(MB_OKCANCEL, dialog).labels, expected);
}

TEST_F(MessageBoxHook, SingleButtonWithTheNumberOfCancelIsLabelledOk)
{
    EXPECT_EQ(Show(MB_OK, DialogTemplate(L"", {IDCANCEL})).labels, (Labels{{IDCANCEL, L"Label 1"}}));
    EXPECT_EQ(Show(MB_OK | MB_ICONHAND, DialogTemplate(L"", {IDCANCEL})).labels, (Labels{{IDCANCEL, L"Label 1"}}));
    EXPECT_EQ(Show(MB_OK | MB_HELP, DialogTemplate(L"", {IDCANCEL, IDHELP})).labels,
        (Labels{{IDCANCEL, L"Label 1"}, {IDHELP, L"Label 9"}}));
}

TEST_F(MessageBoxHook, CancelKeepsItsLabelBesideOkAndInOtherSets)
{
    const Labels both = {{IDOK, L"Label 1"}, {IDCANCEL, L"Label 2"}};
    EXPECT_EQ(Show(MB_OK, DialogTemplate(L"", {IDOK, IDCANCEL})).labels, both);
    EXPECT_EQ(Show(MB_OKCANCEL, DialogTemplate(L"", {IDOK, IDCANCEL})).labels, both);
    EXPECT_EQ(Show(MB_RETRYCANCEL, DialogTemplate(L"", {IDRETRY, IDCANCEL})).labels,
        (Labels{{IDRETRY, L"Label 4"}, {IDCANCEL, L"Label 2"}}));
}

TEST_F(MessageBoxHook, CaptionLostInANarrowWindowIsRestored)
{
    const DialogTemplate dialog(L"??", {IDOK, IDCANCEL});
    const SeenDialog seen = ShowNarrowDialog(dialog, L"\u65e5\u672c\u8a9e \u0416");
    ASSERT_FALSE(seen.isUnicode);
    EXPECT_EQ(seen.caption, L"\u65e5\u672c\u8a9e \u0416");
    EXPECT_EQ(seen.labels, (Labels{{IDOK, L"Label 1"}, {IDCANCEL, L"Label 2"}}));
}

TEST_F(MessageBoxHook, NarrowWindowKeepsItsCaptionWhereNoneIsGivenAsText)
{
    const DialogTemplate dialog(L"System", {IDOK});
    EXPECT_EQ(ShowNarrowDialog(dialog, nullptr).caption, L"System");
    EXPECT_EQ(ShowNarrowDialog(dialog, MAKEINTRESOURCEW(7)).caption, L"System");
}

TEST_F(MessageBoxHook, CaptionOfANarrowWindowIsRestoredWithoutResourceLibrary)
{
    arvmui::Descriptor().resourceLibrary = nullptr;
    const SeenDialog seen = ShowNarrowDialog(DialogTemplate(L"??", {IDOK}), L"\u0416");
    EXPECT_EQ(seen.caption, L"\u0416");
    EXPECT_EQ(seen.labels, (Labels{{IDOK, L"System"}}));
}

TEST_F(MessageBoxHook, UnicodeWindowKeepsItsCaption)
{
    const SeenDialog seen = Show(MB_OK, DialogTemplate(L"System", {IDOK}), L"Given");
    ASSERT_TRUE(seen.isUnicode);
    EXPECT_EQ(seen.caption, L"System");
}

TEST_F(MessageBoxHook, ArgumentsResultAndLastErrorPassThrough)
{
    const HWND owner = ::GetDesktopWindow();
    WideBox given = {};
    g_showWide = [&](const WideBox& box)
    {
        given = box;
        ::SetLastError(4321);
        return 17;
    };
    const wchar_t text[] = L"Text";
    const wchar_t caption[] = L"Caption";
    EXPECT_EQ(ARVMUI_MessageBoxW(owner, text, caption, MB_YESNO | MB_ICONQUESTION | MB_TASKMODAL), 17);
    EXPECT_EQ(::GetLastError(), DWORD{4321});
    EXPECT_EQ(given.owner, owner);
    EXPECT_EQ(given.text, text);
    EXPECT_EQ(given.caption, caption);
    EXPECT_EQ(given.type, UINT{MB_YESNO | MB_ICONQUESTION | MB_TASKMODAL});
}

TEST_F(MessageBoxHook, IsSetForTheThreadAndRemovedAfterwards)
{
    void* during = nullptr;
    g_showWide = [&](const WideBox&)
    {
        during = arvmui::GetThreadValue(arvmui::Descriptor());
        EXPECT_TRUE(g_unhookings.empty());
        return 1;
    };
    ARVMUI_MessageBoxW(nullptr, L"Text", L"Caption", MB_OK);
    ASSERT_EQ(g_hookings.size(), size_t{1});
    EXPECT_EQ(g_hookings[0].id, WH_CALLWNDPROC);
    EXPECT_EQ(g_hookings[0].module, nullptr);
    EXPECT_EQ(g_hookings[0].threadId, ::GetCurrentThreadId());
    EXPECT_EQ(g_unhookings, std::vector<HHOOK>{g_hookings[0].result});
    EXPECT_NE(during, nullptr);
    EXPECT_EQ(arvmui::GetThreadValue(arvmui::Descriptor()), nullptr);

    const SeenDialog plain = RunWide(DialogTemplate(L"", {IDYES}));
    EXPECT_EQ(plain.labels, (Labels{{IDYES, L"System"}}));
}

TEST_F(MessageBoxHook, NestedBoxSharesTheHookAndHasItsOwnCaption)
{
    const DialogTemplate dialog(L"??", {IDYES});
    SeenDialog inner;
    SeenDialog outer;
    g_showWide = [&](const WideBox& outerBox)
    {
        const std::wstring outerCaption = outerBox.caption;
        g_showWide = [&](const WideBox&)
        {
            inner = RunNarrow(dialog);
            return 2;
        };
        EXPECT_EQ(ARVMUI_MessageBoxW(nullptr, L"Text", L"Inner \u0416", MB_YESNO), 2);
        EXPECT_TRUE(g_unhookings.empty());
        outer = RunNarrow(dialog);
        return 1;
    };
    EXPECT_EQ(ARVMUI_MessageBoxW(nullptr, L"Text", L"Outer \u0416", MB_YESNO), 1);
    EXPECT_EQ(inner.caption, L"Inner \u0416");
    EXPECT_EQ(inner.labels, (Labels{{IDYES, L"Label 6"}}));
    EXPECT_EQ(outer.caption, L"Outer \u0416");
    EXPECT_EQ(outer.labels, (Labels{{IDYES, L"Label 6"}}));
    EXPECT_EQ(g_hookings.size(), size_t{1});
    EXPECT_EQ(g_unhookings.size(), size_t{1});
}

TEST_F(MessageBoxHook, WithoutThreadSlotNoneIsSet)
{
    arvmui::Descriptor().tlsIndex = TLS_OUT_OF_INDEXES;
    SeenDialog outer;
    SeenDialog inner;
    g_showWide = [&](const WideBox&)
    {
        outer = RunWide(DialogTemplate(L"", {IDYES}));
        g_showWide = [&](const WideBox&)
        {
            inner = RunWide(DialogTemplate(L"", {IDNO}));
            return 2;
        };
        return ARVMUI_MessageBoxW(nullptr, L"Text", L"Inner", MB_YESNO);
    };
    EXPECT_EQ(ARVMUI_MessageBoxW(nullptr, L"Text", L"Outer", MB_YESNO), 2);
    EXPECT_EQ(outer.labels, (Labels{{IDYES, L"System"}}));
    EXPECT_EQ(inner.labels, (Labels{{IDNO, L"System"}}));
    EXPECT_TRUE(g_hookings.empty());
    EXPECT_TRUE(g_unhookings.empty());
}

TEST_F(MessageBoxHook, BoxIsShownWhenItCannotBeSet)
{
    g_failHooking = true;
    EXPECT_EQ(Show(MB_YESNO, DialogTemplate(L"", {IDYES})).labels, (Labels{{IDYES, L"System"}}));
    EXPECT_TRUE(g_unhookings.empty());
    g_failHooking = false;
    EXPECT_EQ(Show(MB_YESNO, DialogTemplate(L"", {IDYES})).labels, (Labels{{IDYES, L"Label 6"}}));
}

TEST_F(MessageBoxHook, AHundredBoxesLeaveNoHookBehind)
{
    const DialogTemplate dialog(L"", {IDYES});
    for (int i = 0; i < 100; ++i) ASSERT_EQ(Show(MB_YESNO, dialog).labels, (Labels{{IDYES, L"Label 6"}}));
    ASSERT_EQ(g_hookings.size(), size_t{100});
    ASSERT_EQ(g_unhookings.size(), size_t{100});
    for (size_t i = 0; i < 100; ++i) EXPECT_EQ(g_unhookings[i], g_hookings[i].result);
}

TEST_F(MessageBoxHook, NarrowFormConvertsTextAndCaption)
{
    std::wstring text;
    std::wstring caption;
    g_showWide = [&](const WideBox& box)
    {
        text = box.text;
        caption = box.caption;
        return 5;
    };
    const size_t before = arvmui_test::CountBusyBlocks();
    EXPECT_EQ(ARVMUI_MessageBoxA(nullptr, "Narrow text", "Narrow caption", MB_OK), 5);
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
    EXPECT_EQ(text, L"Narrow text");
    EXPECT_EQ(caption, L"Narrow caption");
}

TEST_F(MessageBoxHook, NarrowFormPassesNumbersOn)
{
    WideBox given = {};
    g_showWide = [&](const WideBox& box)
    {
        given = box;
        return 1;
    };
    ARVMUI_MessageBoxA(nullptr, MAKEINTRESOURCEA(0xFFFF), MAKEINTRESOURCEA(1), MB_OK);
    EXPECT_EQ(given.text, MAKEINTRESOURCEW(0xFFFF));
    EXPECT_EQ(given.caption, MAKEINTRESOURCEW(1));
}

// Whether text or caption is the one that cannot be converted.
TEST_F(MessageBoxHook, NarrowFormShowsTheSystemsBoxWhenMemoryIsLacking)
{
    const HWND owner = ::GetDesktopWindow();
    const char text[] = "Text";
    const char caption[] = "Caption";
    for (const int allocations : {0, 1})
    {
        NarrowBox given = {};
        bool wide = false;
        g_showWide = [&](const WideBox&)
        {
            wide = true;
            return 1;
        };
        g_showNarrow = [&](const NarrowBox& box)
        {
            given = box;
            return 9;
        };
        const size_t before = arvmui_test::CountBusyBlocks();
        g_allocationsUntilFailure = allocations;
        const int result = ARVMUI_MessageBoxA(owner, text, caption, MB_YESNO);
        g_allocationsUntilFailure = -1;
        EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
        EXPECT_EQ(result, 9);
        EXPECT_FALSE(wide);
        EXPECT_EQ(given.owner, owner);
        EXPECT_EQ(given.text, text);
        EXPECT_EQ(given.caption, caption);
        EXPECT_EQ(given.type, UINT{MB_YESNO});
        EXPECT_TRUE(g_hookings.empty());
    }
}

}  // namespace
