// FreeLibrary leaves nothing of the library behind. This program loads and unloads it itself.
#include "process/attach/attach_fixture.h"
#include "support/busy_blocks.h"
#include "support/process_resources.h"

#include <arvmui.h>
#include <gtest/gtest.h>

namespace
{

using arvmui_test::CountBusyBlocks;
using arvmui_test::CountFreeThreadSlots;
using arvmui_test::CountHandles;
using arvmui_test::ProgramFile;

struct Held
{
    size_t handles;
    size_t heapBlocks;
    size_t threadSlots;
};

Held Count()
{
    return {CountHandles(), CountBusyBlocks(), CountFreeThreadSlots()};
}

class Unload : public testing::Test
{
protected:
    // The system keeps some things from the first time on.
    static void SetUpTestSuite()
    {
        LoadAndFree();
        LoadAndFree();
    }

    static HMODULE Load() { return ::LoadLibraryW(ProgramFile(L"arvmui64.dll").c_str()); }

    static void LoadAndFree()
    {
        const HMODULE library = Load();
        ASSERT_NE(library, nullptr);
        ASSERT_TRUE(::FreeLibrary(library));
    }

    static bool SectionExists()
    {
        const std::wstring name = L"ARVMUI_" + std::to_wstring(::GetCurrentProcessId()) + L".IPC";
        const HANDLE section = ::OpenFileMappingW(FILE_MAP_READ, FALSE, name.c_str());
        if (section) ::CloseHandle(section);
        return section != nullptr;
    }
};

TEST_F(Unload, LoadedLibraryHoldsWhatTheTestsBelowLookFor)
{
    const Held before = Count();
    const HMODULE library = Load();
    ASSERT_NE(library, nullptr);
    const Held loaded = Count();
    EXPECT_GT(loaded.handles, before.handles);
    EXPECT_GT(loaded.heapBlocks, before.heapBlocks);
    EXPECT_LT(loaded.threadSlots, before.threadSlots);
    EXPECT_TRUE(SectionExists());
    EXPECT_NE(::GetModuleHandleW(L"arvmuiUI.DLL"), nullptr);
    ASSERT_TRUE(::FreeLibrary(library));
}

TEST_F(Unload, LeavesNoModule)
{
    LoadAndFree();
    EXPECT_EQ(::GetModuleHandleW(L"arvmui64.dll"), nullptr);
    EXPECT_EQ(::GetModuleHandleW(L"arvmuiUI.DLL"), nullptr);
}

TEST_F(Unload, LeavesNoSection)
{
    LoadAndFree();
    EXPECT_FALSE(SectionExists());
}

TEST_F(Unload, LeavesNoHandle)
{
    const size_t before = CountHandles();
    ASSERT_NE(before, 0u);
    for (int i = 0; i < 100; ++i) LoadAndFree();
    EXPECT_EQ(CountHandles(), before);
}

TEST_F(Unload, LeavesNoHeapBlock)
{
    const size_t before = CountBusyBlocks();
    for (int i = 0; i < 100; ++i) LoadAndFree();
    EXPECT_EQ(CountBusyBlocks(), before);
}

TEST_F(Unload, LeavesNoThreadLocalSlot)
{
    const size_t before = CountFreeThreadSlots();
    for (int i = 0; i < 100; ++i) LoadAndFree();
    EXPECT_EQ(CountFreeThreadSlots(), before);
}

TEST_F(Unload, TheNextLoadDecidesAnew)
{
    const auto describe = [](HMODULE library)
    {
        const auto function = reinterpret_cast<decltype(&ARVMUI_GetDescriptor)>(
            reinterpret_cast<void*>(::GetProcAddress(library, "ARVMUI_GetDescriptor")));
        return function();
    };
    HMODULE library = Load();
    ASSERT_NE(library, nullptr);
    ::lstrcpyW(describe(library)->LocaleHintTable[HINT_COMMAND_LINE], L"left over");
    ::lstrcpyW(describe(library)->LocaleHintTable[HINT_ASKED], L"left over");
    ASSERT_TRUE(::FreeLibrary(library));

    library = Load();
    ASSERT_NE(library, nullptr);
    EXPECT_STRNE(describe(library)->LocaleHintTable[HINT_COMMAND_LINE], L"left over");
    EXPECT_STRNE(describe(library)->LocaleHintTable[HINT_COMMAND_LINE], L"");
    EXPECT_STREQ(describe(library)->LocaleHintTable[HINT_ASKED], L"");
    ASSERT_TRUE(::FreeLibrary(library));
}

}  // namespace
