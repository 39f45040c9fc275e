// Conversions between UTF-16 and the ANSI code page.
#include "foundation/code_page.h"

#include "support/busy_blocks.h"
#include "support/import_replacement.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace
{

struct Conversion
{
    UINT codePage;
    DWORD flags;
    int length;
    bool operator==(const Conversion&) const = default;
};

Conversion g_toWide;
Conversion g_toAnsi;
const void* g_defaultCharacter = nullptr;
const void* g_usedDefault = nullptr;
bool g_noMemory = false;

int WINAPI RecordToWide(UINT codePage, DWORD flags, LPCCH text, int length, LPWSTR wide, int size)
{
    g_toWide = {codePage, flags, length};
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", MultiByteToWideChar)(codePage, flags, text, length, wide, size);
}

int WINAPI RecordToAnsi(UINT codePage, DWORD flags, LPCWCH wide, int length, LPSTR text, int size,
    LPCCH defaultCharacter, LPBOOL usedDefault)
{
    g_toAnsi = {codePage, flags, length};
    g_defaultCharacter = defaultCharacter;
    g_usedDefault = usedDefault;
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", WideCharToMultiByte)(
        codePage, flags, wide, length, text, size, defaultCharacter, usedDefault);
}

LPVOID WINAPI FailingAlloc(HANDLE heap, DWORD flags, SIZE_T bytes)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc);
    return g_noMemory ? nullptr : real(heap, flags, bytes);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(MultiByteToWideChar, &RecordToWide)
ARVMUI_REPLACE_IMPORT(WideCharToMultiByte, &RecordToAnsi)
ARVMUI_REPLACE_IMPORT(HeapAlloc, &FailingAlloc)

namespace
{

using namespace arvmui;

TEST(CodePage, WholeTextBecomesWideWithItsTerminator)
{
    const HeapBlock<wchar_t> wide(DupWideFromAnsi("Hello", -1));
    EXPECT_STREQ(wide.Get(), L"Hello");
    EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, wide.Get()), 6 * sizeof(wchar_t));
    EXPECT_EQ(g_toWide, (Conversion{CP_ACP, MB_PRECOMPOSED, -1}));
}

TEST(CodePage, WholeTextBecomesNarrowWithItsTerminator)
{
    const HeapBlock<char> narrow(DupAnsiFromWide(L"Hello", -1));
    EXPECT_STREQ(narrow.Get(), "Hello");
    EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, narrow.Get()), 6u);
    EXPECT_EQ(g_toAnsi, (Conversion{CP_ACP, 0, -1}));
    EXPECT_EQ(g_defaultCharacter, nullptr);
    EXPECT_EQ(g_usedDefault, nullptr);
}

TEST(CodePage, GivenLengthIsConvertedWithoutATerminator)
{
    const HeapBlock<wchar_t> wide(DupWideFromAnsi("Hello", 3));
    ASSERT_EQ(::HeapSize(::GetProcessHeap(), 0, wide.Get()), 3 * sizeof(wchar_t));
    EXPECT_EQ(std::wstring(wide.Get(), 3), L"Hel");
    EXPECT_EQ(g_toWide.length, 3);
    const HeapBlock<char> narrow(DupAnsiFromWide(L"Hello", 2));
    ASSERT_EQ(::HeapSize(::GetProcessHeap(), 0, narrow.Get()), 2u);
    EXPECT_EQ(std::string(narrow.Get(), 2), "He");
    EXPECT_EQ(g_toAnsi.length, 2);
}

TEST(CodePage, EmptyTextIsATerminator)
{
    const HeapBlock<wchar_t> wide(DupWideFromAnsi("", -1));
    const HeapBlock<char> narrow(DupAnsiFromWide(L"", -1));
    EXPECT_STREQ(wide.Get(), L"");
    EXPECT_STREQ(narrow.Get(), "");
}

TEST(CodePage, EveryByteIsConvertedAsTheSystemDoes)
{
    for (int byte = 1; byte < 256; ++byte)
    {
        const char text[] = {static_cast<char>(byte), '\0'};
        wchar_t expectedWide[4] = {};
        char expectedBack[8] = {};
        if (::MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, text, -1, expectedWide, 4) == 0) continue;
        ::WideCharToMultiByte(CP_ACP, 0, expectedWide, -1, expectedBack, 8, nullptr, nullptr);
        const HeapBlock<wchar_t> wide(DupWideFromAnsi(text, -1));
        EXPECT_STREQ(wide.Get(), expectedWide) << byte;
        const HeapBlock<char> back(DupAnsiFromWide(wide.Get(), -1));
        EXPECT_STREQ(back.Get(), expectedBack) << byte;
    }
}

TEST(CodePage, LongTextIsConvertedWhole)
{
    const std::string text(100000, 'x');
    const HeapBlock<wchar_t> wide(DupWideFromAnsi(text.c_str(), -1));
    EXPECT_EQ(std::wstring(wide.Get()), std::wstring(100000, L'x'));
    const HeapBlock<char> back(DupAnsiFromWide(wide.Get(), -1));
    EXPECT_EQ(back.Get(), text);
}

TEST(CodePage, IntegerIdentifiersPassThrough)
{
    for (const ULONG_PTR value : {0u, 1u, 1033u, 0xFFFFu})
    {
        EXPECT_EQ(reinterpret_cast<ULONG_PTR>(DupWideFromAnsi(reinterpret_cast<const char*>(value), -1)), value);
        EXPECT_EQ(reinterpret_cast<ULONG_PTR>(DupAnsiFromWide(reinterpret_cast<const wchar_t*>(value), -1)), value);
    }
}

TEST(CodePage, WithoutMemoryThereIsNoCopy)
{
    g_noMemory = true;
    const wchar_t* const wide = DupWideFromAnsi("Hello", -1);
    const char* const narrow = DupAnsiFromWide(L"Hello", -1);
    const WideArgument argument("Hello");
    g_noMemory = false;
    EXPECT_EQ(wide, nullptr);
    EXPECT_EQ(narrow, nullptr);
    EXPECT_TRUE(argument.Failed());
}

TEST(CodePage, ConversionsLeaveTheLastErrorCode)
{
    ::SetLastError(4711);
    ARVMUI_free(DupWideFromAnsi("Hello", -1));
    ARVMUI_free(DupAnsiFromWide(L"Hello", -1));
    EXPECT_EQ(::GetLastError(), 4711u);
}

TEST(WideArgument, LivesAsLongAsTheGuard)
{
    const size_t before = arvmui_test::CountBusyBlocks();
    {
        const WideArgument argument("de-DE");
        EXPECT_FALSE(argument.Failed());
        EXPECT_STREQ(argument.Get(), L"de-DE");
    }
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

TEST(WideArgument, NullAndIdentifiersAreNoFailure)
{
    const WideArgument none(nullptr);
    EXPECT_FALSE(none.Failed());
    EXPECT_EQ(none.Get(), nullptr);
    const WideArgument identifier(reinterpret_cast<const char*>(static_cast<ULONG_PTR>(1031)));
    EXPECT_FALSE(identifier.Failed());
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(identifier.Get()), 1031u);
}

}  // namespace
