// The memory of a text while it grows: which sizes are asked for, and what happens when there is none.

#include "arvmui.h"
#include "support/busy_blocks.h"
#include "support/byte_file.h"
#include "support/module_patch.h"
#include "support/process_resources.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace arvmui_test
{
namespace
{

std::vector<size_t> g_sizes;   // asked for since the file was opened
size_t g_failFrom = SIZE_MAX;  // index into g_sizes of the first request to fail
bool g_watching = false;
bool g_hasSpareMemory = true;  // false fails every request for zeroed memory, which no text needs
decltype(&::HeapAlloc) g_heapAlloc = nullptr;
decltype(&::HeapReAlloc) g_heapReAlloc = nullptr;
decltype(&::CreateFileW) g_createFile = nullptr;

bool MayHave(size_t size)
{
    if (!g_watching) return true;
    g_sizes.push_back(size);
    return g_sizes.size() <= g_failFrom;
}

LPVOID WINAPI Allocate(HANDLE heap, DWORD flags, SIZE_T size)
{
    if (flags & HEAP_ZERO_MEMORY) return g_hasSpareMemory ? g_heapAlloc(heap, flags, size) : nullptr;
    return MayHave(size) ? g_heapAlloc(heap, flags, size) : nullptr;
}

LPVOID WINAPI Reallocate(HANDLE heap, DWORD flags, LPVOID block, SIZE_T size)
{
    return MayHave(size) ? g_heapReAlloc(heap, flags, block, size) : nullptr;
}

HANDLE WINAPI OpenAndWatch(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD disposition,
    DWORD attributes, HANDLE templateFile)
{
    g_watching = true;
    return g_createFile(name, access, share, security, disposition, attributes, templateFile);
}

// The growth rule, character by character.
std::vector<size_t> ExpectedSizes(size_t characters)
{
    std::vector<size_t> sizes;
    size_t capacity = 0;
    for (size_t count = 0; count < characters; ++count)
    {
        if (count + 1 <= capacity) continue;
        capacity += capacity == 0 ? 256 : std::min<size_t>(capacity, 0x100000);
        sizes.push_back(capacity * 2);
    }
    sizes.push_back(characters * 2 + 2);
    return sizes;
}

class TextFileMemoryTest : public testing::Test
{
protected:
    TextFileMemoryTest()
    {
        g_heapAlloc = allocate_.Original<decltype(&::HeapAlloc)>();
        g_heapReAlloc = reallocate_.Original<decltype(&::HeapReAlloc)>();
        g_createFile = open_.Original<decltype(&::CreateFileW)>();
        ARVMUI_SetMessagePopup(FALSE, &popupsBefore_);
    }
    ~TextFileMemoryTest() override { ARVMUI_SetMessagePopup(popupsBefore_, nullptr); }

    BOOL Read(size_t failFrom, WCHAR** text, const wchar_t* locale = L"de") const
    {
        g_sizes.clear();
        g_failFrom = failFrom;
        const BOOL read = ARVMUI_ReadTextFileW(module_.Get(), L"notes.txt", locale, text);
        g_watching = false;
        return read;
    }

    void Write(std::string_view bytes, std::wstring_view locale = L"de") const
    {
        WriteBytes(folder_.Path() / L"resource" / locale / L"notes.txt", bytes);
    }

private:
    TemporaryFolder folder_;
    LoadedModule module_{folder_.Path() / L"program.dll"};
    ImportPatch allocate_{LibraryUnderTest(), "HeapAlloc", &Allocate};
    ImportPatch reallocate_{LibraryUnderTest(), "HeapReAlloc", &Reallocate};
    ImportPatch open_{LibraryUnderTest(), "CreateFileW", &OpenAndWatch};
    BOOL popupsBefore_ = FALSE;
};

class TextGrowthTest : public TextFileMemoryTest, public testing::WithParamInterface<size_t>
{
};

INSTANTIATE_TEST_SUITE_P(Characters, TextGrowthTest,
    testing::Values(0, 1, 255, 256, 257, 511, 512, 513, 1023, 1024, 1025, 2048, 2049, 5000, 65536, 0x100000 - 1,
        0x100000, 0x100001, 0x200000, 0x200001, 0x300000, 0x300001));

TEST_P(TextGrowthTest, DoublesUpToAMegacharacterAndGrowsByThatAfterwards)
{
    Write(std::string(GetParam(), 'a'));
    WCHAR* text = nullptr;
    ASSERT_EQ(Read(SIZE_MAX, &text), TRUE);
    EXPECT_EQ(g_sizes, ExpectedSizes(GetParam()));
    ARVMUI_free(text);
}

TEST_F(TextFileMemoryTest, GrowsWithTheTextAndNotWithTheBytes)
{
    Write(std::string(3000, '\xE4') + std::string(10, '\0'));
    WCHAR* text = nullptr;
    ASSERT_EQ(Read(SIZE_MAX, &text), TRUE);
    EXPECT_EQ(g_sizes, ExpectedSizes(3010));
    ARVMUI_free(text);
}

TEST_F(TextFileMemoryTest, EveryRequestMayFail)
{
    Write(std::string(5000, 'a'));
    const size_t requests = ExpectedSizes(5000).size();
    WCHAR* text = nullptr;
    ASSERT_EQ(Read(SIZE_MAX, &text), TRUE);
    ARVMUI_free(text);
    const size_t blocks = CountBusyBlocks();
    const size_t handles = CountHandles();
    // No SCOPED_TRACE here: GoogleTest starts a thread at its first one.
    for (size_t failFrom = 0; failFrom < requests; ++failFrom)
    {
        text = nullptr;
        EXPECT_EQ(Read(failFrom, &text), FALSE) << failFrom;
        EXPECT_EQ(text, nullptr) << failFrom;
        EXPECT_EQ(g_sizes.size(), failFrom + 1) << "went on after failure " << failFrom;
        EXPECT_EQ(CountBusyBlocks(), blocks) << failFrom;
        EXPECT_EQ(CountHandles(), handles) << failFrom;
    }
}

// Tables that only make decoding fast are not missed.
TEST_F(TextFileMemoryTest, DoubleByteTextIsReadWithoutMemoryToSpare)
{
    Write("\x93\xFA\x96\x7B\xFF\x93\xFA\xB1\x93", L"ja");
    g_hasSpareMemory = false;
    WCHAR* text = nullptr;
    EXPECT_EQ(Read(SIZE_MAX, &text, L"ja"), TRUE);
    g_hasSpareMemory = true;
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text, L"\x65E5\x672C\xFFFD\x65E5\xFF71\xFFFD");
    EXPECT_EQ(g_sizes, ExpectedSizes(6));
    ARVMUI_free(text);
}

TEST_F(TextFileMemoryTest, EmptyTextNeedsMemoryToo)
{
    Write("");
    WCHAR* text = nullptr;
    EXPECT_EQ(Read(0, &text), FALSE);
    EXPECT_EQ(text, nullptr);
}

}  // namespace
}  // namespace arvmui_test
