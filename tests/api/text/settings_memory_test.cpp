// Settings read while memory runs out: every request of a call may be the one that fails.

#include "arvmui.h"
#include "settings_file.h"
#include "support/busy_blocks.h"
#include "support/module_patch.h"
#include "support/process_resources.h"

#include <gtest/gtest.h>

#include <climits>

namespace arvmui_test
{
namespace
{

int g_requestsLeft = INT_MAX;  // until all further ones fail
int g_requests = 0;
decltype(&::HeapAlloc) g_heapAlloc = nullptr;
decltype(&::HeapReAlloc) g_heapReAlloc = nullptr;

bool MayHave()
{
    ++g_requests;
    return g_requestsLeft-- > 0;
}

LPVOID WINAPI Allocate(HANDLE heap, DWORD flags, SIZE_T size)
{
    return MayHave() ? g_heapAlloc(heap, flags, size) : nullptr;
}

LPVOID WINAPI Reallocate(HANDLE heap, DWORD flags, LPVOID block, SIZE_T size)
{
    return MayHave() ? g_heapReAlloc(heap, flags, block, size) : nullptr;
}

class MemoryLimit
{
public:
    explicit MemoryLimit(int requests)
    {
        g_requests = 0;
        g_requestsLeft = requests;
    }
    ~MemoryLimit() { g_requestsLeft = INT_MAX; }
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;
};

class SettingsMemoryTest : public testing::Test
{
protected:
    SettingsMemoryTest()
    {
        g_heapAlloc = allocate_.Original<decltype(&::HeapAlloc)>();
        g_heapReAlloc = reallocate_.Original<decltype(&::HeapReAlloc)>();
        ARVMUI_SetMessagePopup(FALSE, &popupsBefore_);
    }
    ~SettingsMemoryTest() override { ARVMUI_SetMessagePopup(popupsBefore_, nullptr); }

    const SettingsFile file_{"[Encoding]\nInputEncoding=SJIS\n[\x93\xFA]\n\x96\x7B=\xB1\x93\xFA\n"};

private:
    ImportPatch allocate_{LibraryUnderTest(), "HeapAlloc", &Allocate};
    ImportPatch reallocate_{LibraryUnderTest(), "HeapReAlloc", &Reallocate};
    BOOL popupsBefore_ = FALSE;
};

// Tables that only make decoding fast are not missed.
TEST_F(SettingsMemoryTest, WideFormNeedsNone)
{
    const MemoryLimit none(0);
    EXPECT_EQ(file_.Ask(L"\x65E5", L"\x672C", L"d", 9), Filled<wchar_t>(2, L"\xFF71\x65E5", 9));
    EXPECT_EQ(file_.Ask(L"\x65E5", nullptr, L"d", 9), Filled<wchar_t>(2, std::wstring_view(L"\x672C\0", 2), 9));
}

// Without its file's name, section or key in wide text a call has nothing to look for.
TEST_F(SettingsMemoryTest, NarrowFormWithoutItsNamesGivesTheDefault)
{
    // The file's name, section and key, and both names again in the declared encoding.
    constexpr int kNames = 5;
    const size_t blocks = CountBusyBlocks();
    const size_t handles = CountHandles();
    for (int granted = 0; granted < kNames; ++granted)
    {
        Narrow answer;
        {
            const MemoryLimit limit(granted);
            answer = file_.Ask("\x93\xFA", "\x96\x7B", "default", 9);
        }
        EXPECT_EQ(answer, Filled<char>(7, "default", 9)) << granted;
        EXPECT_EQ(CountBusyBlocks(), blocks) << granted;
        EXPECT_EQ(CountHandles(), handles) << granted;
    }
}

TEST_F(SettingsMemoryTest, NarrowFormGetsItsValueWithAllItAsksFor)
{
    const MemoryLimit unlimited(INT_MAX);
    EXPECT_EQ(file_.Ask("\x93\xFA", "\x96\x7B", "default", 9), Filled<char>(3, "\xB1\x93\xFA", 9));
    EXPECT_GE(g_requests, 5);
}

TEST_F(SettingsMemoryTest, NarrowNameOfAnEncodingIsUnknownWithoutMemory)
{
    EXPECT_EQ(ARVMUI_TextEncodingToCodePageA("sjis"), 932u);
    const MemoryLimit none(0);
    EXPECT_EQ(ARVMUI_TextEncodingToCodePageA("sjis"), 0u);
}

}  // namespace
}  // namespace arvmui_test
