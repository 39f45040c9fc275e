// Attach and detach with a system that answers as the test wants. This program's name begins like the
// DLL's, so the DLL's resource libraries are found beside it.

#include "resources/locale_record.h"
#include "resources/process_state.h"
#include "support/busy_blocks.h"
#include "support/import_replacement.h"
#include "support/process_resources.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* reserved);

namespace
{

std::vector<unsigned> g_keyboards;  // low words of the layouts
int g_keyboardCountAnswer = -1;     // told to whoever asks for the count; negative for the truth
int g_keyboardFetchAnswer = -1;     // told to whoever fetches them
int g_allocationsLeft = -1;         // negative for any number
bool g_noThreadSlots = false;
std::vector<DWORD> g_freedThreadSlots;
std::wstring g_commandLine;
int g_boxes = 0;

// The functions below keep no static variable of their own: the runtime library guards such variables
// with thread-local slots and memory, and would come back here.

int WINAPI ListKeyboards(int count, HKL* layouts)
{
    const int real = static_cast<int>(g_keyboards.size());
    if (count == 0) return g_keyboardCountAnswer < 0 ? real : g_keyboardCountAnswer;
    for (int i = 0; i < count && i < real; ++i)
        layouts[i] = reinterpret_cast<HKL>(static_cast<ULONG_PTR>(g_keyboards[static_cast<size_t>(i)]) | 0xF0010000u);
    return g_keyboardFetchAnswer < 0 ? std::min(count, real) : g_keyboardFetchAnswer;
}

bool Refuse()
{
    if (g_allocationsLeft < 0) return false;
    if (g_allocationsLeft == 0) return true;
    --g_allocationsLeft;
    return false;
}

LPVOID WINAPI Allocate(HANDLE heap, DWORD flags, SIZE_T size)
{
    const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc);
    return Refuse() ? nullptr : real(heap, flags, size);
}

LPVOID WINAPI Resize(HANDLE heap, DWORD flags, LPVOID block, SIZE_T size)
{
    const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapReAlloc);
    return Refuse() ? nullptr : real(heap, flags, block, size);
}

DWORD WINAPI TakeThreadSlot()
{
    const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", TlsAlloc);
    return g_noThreadSlots ? TLS_OUT_OF_INDEXES : real();
}

BOOL WINAPI FreeThreadSlot(DWORD slot)
{
    const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", TlsFree);
    g_freedThreadSlots.push_back(slot);
    return real(slot);
}

LPWSTR WINAPI TellCommandLine()
{
    return g_commandLine.data();
}

int WINAPI CountBox(HWND, LPCWSTR, LPCWSTR, UINT)
{
    ++g_boxes;
    return IDOK;
}

}  // namespace

ARVMUI_REPLACE_IMPORT(GetKeyboardLayoutList, ListKeyboards)
ARVMUI_REPLACE_IMPORT(HeapAlloc, Allocate)
ARVMUI_REPLACE_IMPORT(HeapReAlloc, Resize)
ARVMUI_REPLACE_IMPORT(TlsAlloc, TakeThreadSlot)
ARVMUI_REPLACE_IMPORT(TlsFree, FreeThreadSlot)
ARVMUI_REPLACE_IMPORT(GetCommandLineW, TellCommandLine)
ARVMUI_REPLACE_IMPORT(MessageBoxW, CountBox)

namespace
{

class Attach : public testing::Test
{
protected:
    Attach()
    {
        g_keyboards = {0x0409};
        g_commandLine = L"test.exe /uilocale:de x";
        g_freedThreadSlots.clear();
        g_boxes = 0;
    }
    ~Attach() override
    {
        g_keyboardCountAnswer = g_keyboardFetchAnswer = g_allocationsLeft = -1;
        g_noThreadSlots = false;
        if (attached_) DetachNow();
    }

    void AttachNow()
    {
        EXPECT_EQ(DllMain(Module(), DLL_PROCESS_ATTACH, nullptr), TRUE);
        attached_ = true;
    }

    void DetachNow()
    {
        EXPECT_EQ(DllMain(Module(), DLL_PROCESS_DETACH, nullptr), TRUE);
        attached_ = false;
    }

    static HMODULE Module() { return ::GetModuleHandleW(nullptr); }
    static LibraryDescriptor& State() { return arvmui::Descriptor(); }

    static std::vector<unsigned> Languages()
    {
        return {State().keyboardLanguages, State().keyboardLanguages + State().keyboardLanguageCount};
    }

    static bool IsZero()
    {
        const LibraryDescriptor zero = {};
        return std::memcmp(&State(), &zero, sizeof(zero)) == 0;
    }

private:
    bool attached_ = false;
};

using Set = std::vector<unsigned>;

TEST_F(Attach, ZeroesWhatTheDescriptorHeld)
{
    std::memset(static_cast<void*>(&State()), 0xAB, sizeof(LibraryDescriptor));
    AttachNow();
    EXPECT_STREQ(State().LocaleHintTable[HINT_SETTINGS_FILE], L"");
    EXPECT_STREQ(State().LocaleHintTable[HINT_BROWSER], L"");
    EXPECT_STREQ(State().LocaleHintTable[HINT_ASKED], L"");
    for (const BYTE byte : State().installerContext) EXPECT_EQ(byte, 0);
}

TEST_F(Attach, StoresTheModuleAndAThreadSlotThatHoldsNull)
{
    AttachNow();
    EXPECT_EQ(State().module, Module());
    ASSERT_NE(State().tlsIndex, TLS_OUT_OF_INDEXES);
    EXPECT_EQ(::TlsGetValue(State().tlsIndex), nullptr);
}

TEST_F(Attach, LoadsResourcesPublishesAndTurnsPopupsOn)
{
    AttachNow();
    EXPECT_NE(State().resourceLibrary, nullptr);
    EXPECT_NE(State().localeMapping, nullptr);
    EXPECT_EQ(State().showMessagePopup, TRUE);
    EXPECT_STREQ(State().LocaleHintTable[HINT_COMMAND_LINE], L"de");
    EXPECT_EQ(g_commandLine.c_str(), std::wstring(L"test.exe x"));
    EXPECT_EQ(ARVMUI_GetLangID(nullptr), 0x0407);
}

TEST_F(Attach, KeepsKeyboardLanguagesOnceEachAndAscending)
{
    g_keyboards = {0x0411, 0x0407, 0x0409, 0x0807, 0x0411, 0x0401, 0x0C0A, 0xFC09};
    AttachNow();
    EXPECT_EQ(Languages(), (Set{0x01, 0x07, 0x09, 0x0A, 0x11}));
}

TEST_F(Attach, KeepsNoKeyboardLanguageWhereThereIsNoKeyboard)
{
    g_keyboards = {};
    AttachNow();
    EXPECT_EQ(Languages(), Set{});
    EXPECT_EQ(State().keyboardLanguages, nullptr);
    EXPECT_NE(State().resourceLibrary, nullptr);
}

TEST_F(Attach, KeepsNoKeyboardLanguageWhereTheyCannotBeFetched)
{
    g_keyboardFetchAnswer = 0;
    AttachNow();
    EXPECT_EQ(Languages(), Set{});
}

TEST_F(Attach, UsesTheSmallerOfTheTwoKeyboardCounts)
{
    g_keyboards = {0x0411, 0x0407, 0x0409};
    g_keyboardFetchAnswer = 2;
    AttachNow();
    EXPECT_EQ(Languages(), (Set{0x07, 0x11}));
    DetachNow();

    // More than was asked for: what lies behind the block is not read.
    g_keyboardFetchAnswer = 500;
    AttachNow();
    EXPECT_EQ(Languages(), (Set{0x07, 0x09, 0x11}));
    DetachNow();

    g_keyboardFetchAnswer = -1;
    g_keyboardCountAnswer = 1;
    AttachNow();
    EXPECT_EQ(Languages(), Set{0x11});
}

TEST_F(Attach, KeepsTheKeyboardLanguagesForWhichThereWasMemory)
{
    g_keyboards = {0x0411, 0x0407, 0x0409};
    const Set expected[] = {{}, {}, {0x11}, {0x07, 0x11}};
    for (int allocations = 0; allocations < 4; ++allocations)
    {
        // The first allocation is the list of layouts, then one for each language.
        g_allocationsLeft = allocations;
        AttachNow();
        g_allocationsLeft = -1;
        EXPECT_EQ(Languages(), expected[allocations]) << allocations;
        DetachNow();
    }
    EXPECT_EQ(g_boxes, 0);
}

TEST_F(Attach, SucceedsWithoutAnyMemory)
{
    g_allocationsLeft = 0;
    AttachNow();
    EXPECT_STREQ(State().LocaleHintTable[HINT_COMMAND_LINE], L"de");
    EXPECT_EQ(State().localeMapping, nullptr);  // the list could not be expanded
    EXPECT_NE(State().resourceLibrary, nullptr);
    EXPECT_EQ(g_boxes, 0);
}

TEST_F(Attach, ShowsNoBoxWithoutResources)
{
    g_commandLine = L"test.exe /uilocale:de";
    const arvmui_test::TemporaryFolder folder;
    const auto copy = folder.CopyIn(arvmui_test::TestProgramPath(), L"arvmui_copy.dll");
    const HMODULE elsewhere = ::LoadLibraryExW(copy.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
    ASSERT_NE(elsewhere, nullptr);
    EXPECT_EQ(DllMain(elsewhere, DLL_PROCESS_ATTACH, nullptr), TRUE);
    EXPECT_EQ(State().module, elsewhere);
    EXPECT_EQ(State().resourceLibrary, nullptr);
    EXPECT_EQ(State().showMessagePopup, FALSE);
    EXPECT_NE(State().localeMapping, nullptr);
    EXPECT_EQ(g_boxes, 0);
    EXPECT_EQ(DllMain(elsewhere, DLL_PROCESS_DETACH, nullptr), TRUE);
    ::FreeLibrary(elsewhere);
}

TEST_F(Attach, SucceedsWithoutAThreadSlot)
{
    g_noThreadSlots = true;
    AttachNow();
    EXPECT_EQ(State().tlsIndex, TLS_OUT_OF_INDEXES);
    EXPECT_NE(State().resourceLibrary, nullptr);
    DetachNow();
    EXPECT_TRUE(g_freedThreadSlots.empty());
}

TEST_F(Attach, ReadsItsOwnOptionBeforeTheParentsRecord)
{
    g_commandLine = L"test.exe /uilocale:fr /uilocale:ja";
    AttachNow();
    EXPECT_STREQ(State().LocaleHintTable[HINT_COMMAND_LINE], L"fr");
    EXPECT_EQ(g_commandLine.c_str(), std::wstring(L"test.exe"));
}

TEST_F(Attach, ANewThreadStartsWithNull)
{
    AttachNow();
    int value = 0;
    ASSERT_TRUE(arvmui::SetThreadValue(State(), &value));
    EXPECT_EQ(DllMain(Module(), DLL_THREAD_ATTACH, nullptr), TRUE);
    EXPECT_EQ(arvmui::GetThreadValue(State()), nullptr);
}

TEST_F(Attach, AThreadThatEndsChangesNothing)
{
    AttachNow();
    const LibraryDescriptor before = State();
    int value = 0;
    ASSERT_TRUE(arvmui::SetThreadValue(State(), &value));
    EXPECT_EQ(DllMain(Module(), DLL_THREAD_DETACH, nullptr), TRUE);
    EXPECT_EQ(arvmui::GetThreadValue(State()), &value);
    EXPECT_EQ(std::memcmp(&before, &State(), sizeof(before)), 0);
    ASSERT_TRUE(arvmui::SetThreadValue(State(), nullptr));
}

TEST_F(Attach, ThreadsComeAndGoWithoutASlot)
{
    g_noThreadSlots = true;
    AttachNow();
    EXPECT_EQ(DllMain(Module(), DLL_THREAD_ATTACH, nullptr), TRUE);
    EXPECT_EQ(DllMain(Module(), DLL_THREAD_DETACH, nullptr), TRUE);
    EXPECT_EQ(arvmui::GetThreadValue(State()), arvmui::NoThreadSlot());
}

TEST_F(Attach, DetachGivesEverythingBack)
{
    AttachNow();
    DetachNow();  // what the system keeps from the first time on
    const size_t blocks = arvmui_test::CountBusyBlocks();
    const size_t handles = arvmui_test::CountHandles();
    g_freedThreadSlots.clear();
    g_commandLine = L"test.exe /uilocale:de";

    AttachNow();
    const DWORD slot = State().tlsIndex;
    EXPECT_NE(::GetModuleHandleW(L"arvmuiUI.DLL"), nullptr);
    DetachNow();
    EXPECT_TRUE(IsZero());
    EXPECT_EQ(::GetModuleHandleW(L"arvmuiUI.DLL"), nullptr);
    EXPECT_EQ(g_freedThreadSlots, std::vector<DWORD>{slot});
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), blocks);
    EXPECT_EQ(arvmui_test::CountHandles(), handles);
}

TEST_F(Attach, DetachGoesOnWhenSomethingDoesNotClose)
{
    AttachNow();
    const HANDLE mapping = State().localeMapping;
    const HMODULE library = State().resourceLibrary;
    const DWORD slot = State().tlsIndex;
    State().localeMapping = reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(0xFFFFFF0));
    State().resourceLibrary = reinterpret_cast<HMODULE>(static_cast<ULONG_PTR>(0x10000));
    DetachNow();
    EXPECT_TRUE(IsZero());
    EXPECT_EQ(g_freedThreadSlots, std::vector<DWORD>{slot});
    ::CloseHandle(mapping);
    ::FreeLibrary(library);
}

TEST_F(Attach, OtherReasonsChangeNothing)
{
    AttachNow();
    const LibraryDescriptor before = State();
    EXPECT_EQ(DllMain(Module(), 99, nullptr), TRUE);
    EXPECT_EQ(std::memcmp(&before, &State(), sizeof(before)), 0);
}

}  // namespace
