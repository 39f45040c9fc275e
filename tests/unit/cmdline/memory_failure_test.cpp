// What becomes of command lines and arguments when there is no memory.

#include "cmdline/argument_escape.h"
#include "foundation/heap.h"
#include "resources/process_state.h"
#include "support/busy_blocks.h"
#include "support/import_replacement.h"

#include <gtest/gtest.h>

#include <shellapi.h>

#include <string>
#include <vector>

namespace
{

// Allocations of either kind that still succeed; negative for any number.
int g_allocationsLeft = -1;
bool g_splittingFails = false;

bool Refuse()
{
    if (g_allocationsLeft < 0) return false;
    if (g_allocationsLeft == 0) return true;
    --g_allocationsLeft;
    return false;
}

LPVOID WINAPI AllocateUnlessArmed(HANDLE heap, DWORD flags, SIZE_T size)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc);
    return Refuse() ? nullptr : real(heap, flags, size);
}

LPVOID WINAPI ResizeUnlessArmed(HANDLE heap, DWORD flags, LPVOID block, SIZE_T size)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapReAlloc);
    return Refuse() ? nullptr : real(heap, flags, block, size);
}

LPWSTR* WINAPI SplitUnlessArmed(LPCWSTR line, int* count)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"shell32.dll", CommandLineToArgvW);
    return g_splittingFails ? nullptr : real(line, count);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(HeapAlloc, AllocateUnlessArmed)
ARVMUI_REPLACE_IMPORT(HeapReAlloc, ResizeUnlessArmed)
ARVMUI_REPLACE_IMPORT(CommandLineToArgvW, SplitUnlessArmed)

namespace
{

class WithoutMemory : public testing::Test
{
protected:
    // Nothing else in this program imports from it.
    static void SetUpTestSuite() { ASSERT_NE(::LoadLibraryW(L"shell32.dll"), nullptr); }

    ~WithoutMemory() override
    {
        g_allocationsLeft = -1;
        g_splittingFails = false;
    }

    static wchar_t** BuildWith(int allocations, const char* line, DWORD* count)
    {
        g_allocationsLeft = allocations;
        wchar_t** const vector = arvmui::BuildArgumentVector(line, count);
        g_allocationsLeft = -1;
        return vector;
    }
};

constexpr char kFourArguments[] = "\"a\" \"b b\" \"c\" \"d\"";

TEST_F(WithoutMemory, ArgumentVectorOfALineThatCannotBeConvertedIsNull)
{
    DWORD count = 99;
    EXPECT_EQ(BuildWith(0, kFourArguments, &count), nullptr);
    EXPECT_EQ(count, 0u);
}

TEST_F(WithoutMemory, ArgumentVectorWithoutABlockIsNull)
{
    const size_t before = arvmui_test::CountBusyBlocks();
    DWORD count = 99;
    EXPECT_EQ(BuildWith(1, kFourArguments, &count), nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

TEST_F(WithoutMemory, ArgumentVectorKeepsTheArgumentsBeforeTheOneThatDoesNotFit)
{
    const std::vector<std::wstring> all = {L"a", L"b b", L"c", L"d"};
    const size_t before = arvmui_test::CountBusyBlocks();
    for (int kept = 0; kept <= 4; ++kept)
    {
        DWORD count = 99;
        // One allocation is the wide line, one the pointer table, then one for each argument.
        arvmui::HeapBlock<wchar_t*> vector(BuildWith(2 + kept, kFourArguments, &count));
        ASSERT_TRUE(vector);
        ASSERT_EQ(count, static_cast<DWORD>(kept));
        for (int i = 0; i < kept; ++i) EXPECT_EQ(vector.Get()[i], all[static_cast<size_t>(i)]);
        EXPECT_EQ(vector.Get()[kept], nullptr);
    }
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

TEST_F(WithoutMemory, ArgumentVectorOfALineThatCannotBeSplitIsNull)
{
    const size_t before = arvmui_test::CountBusyBlocks();
    g_splittingFails = true;
    DWORD count = 99;
    EXPECT_EQ(arvmui::BuildArgumentVector("a b", &count), nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

TEST_F(WithoutMemory, EmptyLineIsNotSplit)
{
    g_splittingFails = true;  // the shell would take the program's own name for an empty line
    DWORD count = 99;
    const arvmui::HeapBlock<wchar_t*> vector(arvmui::BuildArgumentVector("  ", &count));
    ASSERT_TRUE(vector);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(vector.Get()[0], nullptr);
}

TEST_F(WithoutMemory, AppendingLeavesTheOldBlockToItsOwner)
{
    using Append = int (*)(wchar_t**, int, const wchar_t*) noexcept;
    for (const Append append : {Append{arvmui::AppendEscapedArgument}, Append{arvmui::AppendUnescapedArgument}})
    {
        arvmui::HeapBlock<wchar_t> block;
        ASSERT_EQ(append(block.Slot(), -1, L"abc"), 3);
        wchar_t* const old = block.Get();
        g_allocationsLeft = 0;
        EXPECT_EQ(append(block.Slot(), -1, L"def"), -1);
        g_allocationsLeft = -1;
        EXPECT_EQ(block.Get(), old);
        EXPECT_STREQ(block.Get(), L"abc");

        wchar_t* none = nullptr;
        g_allocationsLeft = 0;
        EXPECT_EQ(append(&none, -1, L"def"), -1);
        g_allocationsLeft = -1;
        EXPECT_EQ(none, nullptr);
    }
}

TEST_F(WithoutMemory, NarrowLineStaysUnchanged)
{
    char line[] = "p /uilocale:de x";
    arvmui::SetLocaleHint(arvmui::Descriptor(), HINT_COMMAND_LINE, nullptr);
    g_allocationsLeft = 0;
    EXPECT_EQ(ARVMUI_ParseCommandLineA(line), FALSE);
    g_allocationsLeft = -1;
    EXPECT_STREQ(line, "p /uilocale:de x");
    EXPECT_STREQ(arvmui::GetLocaleHint(arvmui::Descriptor(), HINT_COMMAND_LINE), L"");
}

TEST_F(WithoutMemory, WideLineNeedsNone)
{
    wchar_t line[] = L"p /uilocale:de x";
    g_allocationsLeft = 0;
    EXPECT_EQ(ARVMUI_ParseCommandLineW(line), TRUE);
    g_allocationsLeft = -1;
    EXPECT_STREQ(line, L"p x");
}

TEST_F(WithoutMemory, ArgumentsNeedNone)
{
    char option[] = "/uilocale:de";
    wchar_t wideOption[] = L"/uilocale:de";
    char* argv[] = {option, nullptr};
    wchar_t* wideArgv[] = {wideOption, nullptr};
    int argc = 1;
    int wideArgc = 1;
    g_allocationsLeft = 0;
    const BOOL removed = ARVMUI_ParseArgvA(&argc, argv);
    const BOOL wideRemoved = ARVMUI_ParseArgvW(&wideArgc, wideArgv);
    g_allocationsLeft = -1;
    EXPECT_EQ(removed, TRUE);
    EXPECT_EQ(wideRemoved, TRUE);
    EXPECT_EQ(argc, 0);
    EXPECT_EQ(wideArgc, 0);
}

}  // namespace
