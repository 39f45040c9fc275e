// Blocks of the process heap and the guard that owns one. The box that reports lacking memory is
// tested in out_of_memory_box_test.cpp.
#include "foundation/heap.h"

#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "support/import_replacement.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace
{

constexpr SIZE_T kImpossible = 0x7FFFFFFFFFFF0000;

struct HeapCall
{
    HANDLE heap;
    DWORD flags;
    const void* block;
    SIZE_T bytes;
};

bool g_recording = false;
std::vector<HeapCall> g_allocations;
std::vector<HeapCall> g_resizes;
std::vector<HeapCall> g_frees;
bool g_swallowFrees = false;

LPVOID WINAPI RecordAlloc(HANDLE heap, DWORD flags, SIZE_T bytes)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc);
    if (std::exchange(g_recording, false))
    {
        g_allocations.push_back({heap, flags, nullptr, bytes});
        g_recording = true;
    }
    return real(heap, flags, bytes);
}

LPVOID WINAPI RecordReAlloc(HANDLE heap, DWORD flags, LPVOID block, SIZE_T bytes)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapReAlloc);
    if (std::exchange(g_recording, false))
    {
        g_resizes.push_back({heap, flags, block, bytes});
        g_recording = true;
    }
    return real(heap, flags, block, bytes);
}

BOOL WINAPI RecordFree(HANDLE heap, DWORD flags, LPVOID block)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapFree);
    if (std::exchange(g_recording, false))
    {
        g_frees.push_back({heap, flags, block, 0});
        g_recording = true;
    }
    if (g_swallowFrees) return TRUE;
    return real(heap, flags, block);
}

// The box that reports lacking memory, and the texts it takes from the resource library.
struct Box
{
    int shown = 0;
    HWND owner = nullptr;
    std::wstring text;
    std::wstring caption;
    UINT style = 0;
};

struct LoadedString
{
    UINT id;
    int capacity;
    bool operator==(const LoadedString&) const = default;
};

Box g_box;
std::vector<LoadedString> g_loaded;
UINT g_missingString = 0;

const HMODULE kResources = reinterpret_cast<HMODULE>(static_cast<ULONG_PTR>(0x12340000));

int WINAPI FakeLoadString(HINSTANCE module, UINT id, LPWSTR buffer, int capacity)
{
    EXPECT_EQ(module, kResources);
    g_loaded.push_back({id, capacity});
    if (id == g_missingString) return 0;
    const std::wstring text = id == ARVMUI_STRING_ERROR_CAPTION ? L"the caption" : L"the text";
    std::memcpy(buffer, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    return static_cast<int>(text.size());
}

int WINAPI FakeMessageBox(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style)
{
    g_box = {g_box.shown + 1, owner, text, caption, style};
    return IDOK;
}

}  // namespace

ARVMUI_REPLACE_IMPORT(HeapAlloc, &RecordAlloc)
ARVMUI_REPLACE_IMPORT(HeapReAlloc, &RecordReAlloc)
ARVMUI_REPLACE_IMPORT(HeapFree, &RecordFree)
ARVMUI_REPLACE_IMPORT(LoadStringW, &FakeLoadString)
ARVMUI_REPLACE_IMPORT(MessageBoxW, &FakeMessageBox)

namespace
{

using arvmui::Descriptor;
using arvmui::HeapBlock;

class Heap : public testing::Test
{
protected:
    Heap()
    {
        g_allocations.clear();
        g_resizes.clear();
        g_frees.clear();
    }
    ~Heap() override
    {
        g_recording = false;
        g_swallowFrees = false;
    }
};

TEST_F(Heap, NullIsAllocatedOnTheProcessHeapWithoutFlags)
{
    g_recording = true;
    void* const block = ARVMUI_realloc(nullptr, 100);
    g_recording = false;
    ASSERT_NE(block, nullptr);
    ASSERT_EQ(g_allocations.size(), 1u);
    EXPECT_EQ(g_allocations[0].heap, ::GetProcessHeap());
    EXPECT_EQ(g_allocations[0].flags, 0u);
    EXPECT_EQ(g_allocations[0].bytes, 100u);
    EXPECT_TRUE(g_resizes.empty());
    EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, block), 100u);
    ARVMUI_free(block);
}

TEST_F(Heap, BlockIsResizedOnTheProcessHeapWithoutFlagsAndKeepsItsBytes)
{
    void* block = ARVMUI_realloc(nullptr, 4);
    std::memcpy(block, "abc", 4);
    void* const old = block;
    g_recording = true;
    block = ARVMUI_realloc(block, 100000);
    g_recording = false;
    ASSERT_NE(block, nullptr);
    ASSERT_EQ(g_resizes.size(), 1u);
    EXPECT_EQ(g_resizes[0].heap, ::GetProcessHeap());
    EXPECT_EQ(g_resizes[0].flags, 0u);
    EXPECT_EQ(g_resizes[0].block, old);
    EXPECT_EQ(g_resizes[0].bytes, 100000u);
    EXPECT_TRUE(g_allocations.empty());
    EXPECT_STREQ(static_cast<const char*>(block), "abc");
    ARVMUI_free(block);
}

TEST_F(Heap, NoBytesGiveABlock)
{
    void* const block = ARVMUI_realloc(nullptr, 0);
    EXPECT_NE(block, nullptr);
    ARVMUI_free(block);
}

TEST_F(Heap, FailedAllocationGivesNull)
{
    EXPECT_EQ(ARVMUI_realloc(nullptr, kImpossible), nullptr);
}

TEST_F(Heap, FailedResizeLeavesTheOldBlock)
{
    void* const block = ARVMUI_realloc(nullptr, 4);
    std::memcpy(block, "abc", 4);
    EXPECT_EQ(ARVMUI_realloc(block, kImpossible), nullptr);
    EXPECT_TRUE(::HeapValidate(::GetProcessHeap(), 0, block));
    EXPECT_STREQ(static_cast<const char*>(block), "abc");
    ARVMUI_free(block);
}

TEST_F(Heap, IntegerIdentifiersAreNotFreed)
{
    g_swallowFrees = true;
    g_recording = true;
    for (const ULONG_PTR value : {0u, 1u, 0x1234u, 0xFFFFu}) ARVMUI_free(reinterpret_cast<void*>(value));
    g_recording = false;
    EXPECT_TRUE(g_frees.empty());
}

TEST_F(Heap, FirstAddressIsFreedOnTheProcessHeapWithoutFlags)
{
    void* const block = reinterpret_cast<void*>(static_cast<ULONG_PTR>(0x10000));
    g_swallowFrees = true;
    g_recording = true;
    ARVMUI_free(block);
    g_recording = false;
    ASSERT_EQ(g_frees.size(), 1u);
    EXPECT_EQ(g_frees[0].heap, ::GetProcessHeap());
    EXPECT_EQ(g_frees[0].flags, 0u);
    EXPECT_EQ(g_frees[0].block, block);
}

TEST_F(Heap, FreedBlockIsBusyNoLonger)
{
    void* const block = ARVMUI_realloc(nullptr, 100);
    EXPECT_TRUE(::HeapValidate(::GetProcessHeap(), 0, block));
    ARVMUI_free(block);
    EXPECT_FALSE(::HeapValidate(::GetProcessHeap(), 0, block));
}

TEST_F(Heap, GuardFreesItsBlockAndKeepsTheLastErrorCode)
{
    g_recording = true;
    {
        HeapBlock<char> block;
        EXPECT_FALSE(block);
        EXPECT_TRUE(block.Resize(10));
        EXPECT_TRUE(block);
        EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, block.Get()), 10u);
        ::SetLastError(4711);
    }
    g_recording = false;
    EXPECT_EQ(::GetLastError(), 4711u);
    EXPECT_EQ(g_frees.size(), 1u);
}

TEST_F(Heap, ReleasedBlockIsTheCallers)
{
    g_recording = true;
    wchar_t* text = nullptr;
    {
        HeapBlock<wchar_t> block;
        EXPECT_TRUE(block.Resize(10));
        text = block.Release();
        EXPECT_FALSE(block);
    }
    g_recording = false;
    EXPECT_TRUE(g_frees.empty());
    EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, text), 10 * sizeof(wchar_t));
    ARVMUI_free(text);
}

TEST_F(Heap, GuardRefusesSizesBeyondTheAddressSpaceAndKeepsItsBlock)
{
    HeapBlock<wchar_t> block;
    EXPECT_TRUE(block.Resize(2));
    wchar_t* const old = block.Get();
    EXPECT_FALSE(block.Resize(SIZE_MAX / sizeof(wchar_t) + 1));
    EXPECT_FALSE(block.Resize(kImpossible / sizeof(wchar_t)));
    EXPECT_EQ(block.Get(), old);
}

class OutOfMemoryBox : public testing::Test
{
protected:
    OutOfMemoryBox()
    {
        g_box = {};
        g_loaded.clear();
        g_missingString = 0;
        Descriptor().resourceLibrary = kResources;
        ARVMUI_SetMessagePopup(TRUE, nullptr);
    }
    ~OutOfMemoryBox() override
    {
        Descriptor().resourceLibrary = nullptr;
        ARVMUI_SetMessagePopup(FALSE, nullptr);
    }
};

TEST_F(OutOfMemoryBox, ShowsTheTwoTextsOfTheResourceLibrary)
{
    EXPECT_EQ(ARVMUI_realloc(nullptr, kImpossible), nullptr);
    EXPECT_EQ(g_box.shown, 1);
    EXPECT_EQ(g_box.owner, nullptr);
    EXPECT_EQ(g_box.text, L"the text");
    EXPECT_EQ(g_box.caption, L"the caption");
    EXPECT_EQ(g_box.style, 0x10u);
    EXPECT_EQ(g_loaded, (std::vector<LoadedString>{{900, 64}, {901, 64}}));
}

TEST_F(OutOfMemoryBox, IsShownForAFailedResizeToo)
{
    void* const block = ARVMUI_realloc(nullptr, 4);
    EXPECT_EQ(ARVMUI_realloc(block, kImpossible), nullptr);
    EXPECT_EQ(g_box.shown, 1);
    ARVMUI_free(block);
}

TEST_F(OutOfMemoryBox, IsNotShownForSuccess)
{
    ARVMUI_free(ARVMUI_realloc(nullptr, 4));
    EXPECT_EQ(g_box.shown, 0);
}

TEST_F(OutOfMemoryBox, IsNotShownWhilePopupsAreOff)
{
    ARVMUI_SetMessagePopup(FALSE, nullptr);
    EXPECT_EQ(ARVMUI_realloc(nullptr, kImpossible), nullptr);
    EXPECT_EQ(g_box.shown, 0);
    EXPECT_TRUE(g_loaded.empty());
}

TEST_F(OutOfMemoryBox, IsNotShownWithoutAResourceLibrary)
{
    Descriptor().resourceLibrary = nullptr;
    EXPECT_EQ(ARVMUI_realloc(nullptr, kImpossible), nullptr);
    EXPECT_EQ(g_box.shown, 0);
    EXPECT_TRUE(g_loaded.empty());
}

TEST_F(OutOfMemoryBox, IsNotShownWithoutItsCaption)
{
    g_missingString = 900;
    EXPECT_EQ(ARVMUI_realloc(nullptr, kImpossible), nullptr);
    EXPECT_EQ(g_box.shown, 0);
}

TEST_F(OutOfMemoryBox, IsNotShownWithoutItsText)
{
    g_missingString = 901;
    EXPECT_EQ(ARVMUI_realloc(nullptr, kImpossible), nullptr);
    EXPECT_EQ(g_box.shown, 0);
}

}  // namespace
