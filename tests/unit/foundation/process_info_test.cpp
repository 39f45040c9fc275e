// The parent process, the user's security identifier and the 32-bit question, with the real system
// and with systems that answer differently.
#include "foundation/process_info.h"

#include "foundation/heap.h"
#include "support/busy_blocks.h"
#include "support/import_replacement.h"
#include "support/process_resources.h"

#include <gtest/gtest.h>

#include <sddl.h>

#include <cstring>
#include <ostream>
#include <string>

namespace
{

const char* g_missingFunction = "";
int g_wowAnswer = -1;  // what a replaced IsWow64Process answers; -1: not replaced
bool g_wowFails = false;
bool g_queryFails = false;
DWORD g_openAccess = 0;
BOOL g_openInherit = TRUE;
bool g_userNameFails = false;
DWORD g_userNameSize = 0;
bool g_noMemory = false;

enum class Lookup
{
    kReal,
    kSucceedsAtOnce,
    kNoSuchName,
    kSecondFails,
    kInvalidSid,
};
Lookup g_lookup = Lookup::kReal;
std::wstring g_lookedUp;
bool g_localSystem = false;

BOOL WINAPI FakeIsWow64(HANDLE process, PBOOL answer)
{
    EXPECT_EQ(process, ::GetCurrentProcess());
    EXPECT_EQ(*answer, FALSE);
    if (g_wowFails) return FALSE;
    *answer = g_wowAnswer;
    return TRUE;
}

LONG NTAPI FailingQuery(HANDLE, ULONG, void* information, ULONG size, ULONG*)
{
    EXPECT_EQ(size, 48u);
    std::memset(information, 0x11, size);
    return static_cast<LONG>(0xC0000001);
}

FARPROC WINAPI FakeGetProcAddress(HMODULE module, LPCSTR name)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", GetProcAddress);
    if (std::strcmp(name, g_missingFunction) == 0) return nullptr;
    if (g_wowAnswer >= 0 && std::strcmp(name, "IsWow64Process") == 0)
        return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&FakeIsWow64));
    if (g_queryFails && std::strcmp(name, "NtQueryInformationProcess") == 0)
        return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&FailingQuery));
    return real(module, name);
}

HANDLE WINAPI RecordOpenProcess(DWORD access, BOOL inherit, DWORD id)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", OpenProcess);
    g_openAccess = access;
    g_openInherit = inherit;
    return real(access, inherit, id);
}

BOOL WINAPI FakeGetUserName(LPWSTR buffer, LPDWORD size)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"advapi32.dll", GetUserNameW);
    g_userNameSize = *size;
    if (g_userNameFails)
    {
        ::SetLastError(4711);
        return FALSE;
    }
    return real(buffer, size);
}

BOOL WINAPI FakeLookup(
    LPCWSTR system, LPCWSTR account, PSID sid, LPDWORD sidBytes, LPWSTR domain, LPDWORD domainChars, PSID_NAME_USE use)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"advapi32.dll", LookupAccountNameW);
    g_lookedUp = account;
    g_localSystem = system == nullptr;
    switch (g_lookup)
    {
        case Lookup::kReal: return real(system, account, sid, sidBytes, domain, domainChars, use);
        case Lookup::kSucceedsAtOnce: return TRUE;
        case Lookup::kNoSuchName: ::SetLastError(ERROR_NONE_MAPPED); return FALSE;
        default: break;
    }
    if (!sid)
    {
        *sidBytes = 12;
        *domainChars = 5;
        ::SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, sid), 12u);
    EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, domain), 5 * sizeof(wchar_t));
    std::memset(sid, 0xFF, 12);
    ::SetLastError(4712);
    return g_lookup == Lookup::kInvalidSid;
}

LPVOID WINAPI FailingAlloc(HANDLE heap, DWORD flags, SIZE_T bytes)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc);
    return g_noMemory ? nullptr : real(heap, flags, bytes);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(GetProcAddress, &FakeGetProcAddress)
ARVMUI_REPLACE_IMPORT(OpenProcess, &RecordOpenProcess)
ARVMUI_REPLACE_IMPORT(GetUserNameW, &FakeGetUserName)
ARVMUI_REPLACE_IMPORT(LookupAccountNameW, &FakeLookup)
ARVMUI_REPLACE_IMPORT(HeapAlloc, &FailingAlloc)

namespace
{

using namespace arvmui;

class ProcessInfo : public testing::Test
{
protected:
    ~ProcessInfo() override
    {
        g_missingFunction = "";
        g_wowAnswer = -1;
        g_wowFails = false;
        g_queryFails = false;
        g_userNameFails = false;
        g_noMemory = false;
        g_lookup = Lookup::kReal;
    }
};

using Wow64 = ProcessInfo;

TEST_F(Wow64, IsNotTheCaseFor64BitPrograms)
{
    EXPECT_FALSE(IsWow64());
}

TEST_F(Wow64, IsTheSystemsAnswer)
{
    g_wowAnswer = TRUE;
    EXPECT_TRUE(IsWow64());
    g_wowAnswer = FALSE;
    EXPECT_FALSE(IsWow64());
}

TEST_F(Wow64, IsNotTheCaseWhereTheSystemCannotTell)
{
    g_wowAnswer = TRUE;
    g_wowFails = true;
    EXPECT_FALSE(IsWow64());
    g_missingFunction = "IsWow64Process";
    EXPECT_FALSE(IsWow64());
}

using ParentProcess = ProcessInfo;

TEST_F(ParentProcess, OfAChildIsThisProcess)
{
    wchar_t line[] = L"rundll32.exe";
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION child = {};
    ASSERT_TRUE(
        ::CreateProcessW(nullptr, line, nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr, nullptr, &startup, &child));
    EXPECT_EQ(GetParentProcessId(child.dwProcessId), ::GetCurrentProcessId());
    ::TerminateProcess(child.hProcess, 0);
    ::CloseHandle(child.hThread);
    ::CloseHandle(child.hProcess);
}

TEST_F(ParentProcess, IsAskedWithTheLeastAccess)
{
    EXPECT_NE(GetParentProcessId(::GetCurrentProcessId()), 0xFFFFFFFF);
    EXPECT_EQ(g_openAccess, 0x400u);
    EXPECT_EQ(g_openInherit, FALSE);
}

TEST_F(ParentProcess, OfAProcessThatDoesNotExistIsNone)
{
    EXPECT_EQ(GetParentProcessId(0xFFFFFFF0), 0xFFFFFFFF);
}

TEST_F(ParentProcess, IsNoneWhereTheSystemCannotTell)
{
    g_queryFails = true;
    EXPECT_EQ(GetParentProcessId(::GetCurrentProcessId()), 0xFFFFFFFF);
    g_missingFunction = "NtQueryInformationProcess";
    EXPECT_EQ(GetParentProcessId(::GetCurrentProcessId()), 0xFFFFFFFF);
}

TEST_F(ParentProcess, QueryLeavesNoHandleOpen)
{
    GetParentProcessId(::GetCurrentProcessId());
    const size_t before = arvmui_test::CountHandles();
    GetParentProcessId(::GetCurrentProcessId());
    g_queryFails = true;
    GetParentProcessId(::GetCurrentProcessId());
    EXPECT_EQ(arvmui_test::CountHandles(), before);
}

// An identifier with made-up parts.
struct MadeUpSid
{
    const char* name;
    BYTE authority[6];
    BYTE count;
    DWORD parts[15];
    const wchar_t* text;
    friend void PrintTo(const MadeUpSid& entry, std::ostream* stream) { *stream << entry.name; }
};

const MadeUpSid kSids[] = {
    {"User", {0, 0, 0, 0, 0, 5}, 5, {21, 1, 2, 3, 1001}, L"S-1-5-21-1-2-3-1001"},
    {"NoParts", {0, 0, 0, 0, 0, 1}, 0, {}, L"S-1-1"},
    {"PartsAreUnsigned", {0, 0, 0, 0, 0, 5}, 2, {0x80000000, 0xFFFFFFFF}, L"S-1-5-2147483648-4294967295"},
    {"AuthorityIsBigEndian", {0, 0, 0x01, 0x02, 0x03, 0x04}, 1, {7}, L"S-1-16909060-7"},
    {"AuthorityIsUnsigned", {0, 0, 0xFF, 0xFF, 0xFF, 0xFF}, 1, {7}, L"S-1-4294967295-7"},
    {"FirstByteMakesItHexadecimal", {0x0A, 0, 0, 0, 0, 5}, 1, {7}, L"S-1-0x0a0000000005-7"},
    {"SecondByteMakesItHexadecimal", {0, 0x01, 0x02, 0xAB, 0xCD, 0xEF}, 1, {7}, L"S-1-0x000102abcdef-7"},
    {"FifteenParts", {0, 0, 0, 0, 0, 5}, 15, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
        L"S-1-5-1-2-3-4-5-6-7-8-9-10-11-12-13-14-15"},
};

class SidText : public ProcessInfo, public testing::WithParamInterface<MadeUpSid>
{
protected:
    static constexpr size_t kSidBytes = 8 + 15 * sizeof(DWORD);

    // By hand: some systems make no identifiers of more than eight parts.
    static void Make(const MadeUpSid& made, BYTE (&sid)[kSidBytes])
    {
        sid[0] = SID_REVISION;
        sid[1] = made.count;
        std::memcpy(sid + 2, made.authority, sizeof(made.authority));
        std::memcpy(sid + 8, made.parts, sizeof(made.parts));
    }
};

TEST_P(SidText, ListsRevisionAuthorityAndParts)
{
    alignas(DWORD) BYTE sid[kSidBytes];
    Make(GetParam(), sid);
    HeapBlock<wchar_t> text;
    EXPECT_TRUE(AppendSidText(sid, text.Slot()));
    EXPECT_STREQ(text.Get(), GetParam().text);
}

TEST_P(SidText, FailsWithoutMemory)
{
    alignas(DWORD) BYTE sid[kSidBytes];
    Make(GetParam(), sid);
    HeapBlock<wchar_t> text;
    g_noMemory = true;
    const bool built = AppendSidText(sid, text.Slot());
    g_noMemory = false;
    EXPECT_FALSE(built);
}

INSTANTIATE_TEST_SUITE_P(, SidText, testing::ValuesIn(kSids), [](const auto& entry) { return entry.param.name; });

using UserSid = ProcessInfo;

// What the system itself writes for the user of this process.
std::wstring SystemsTextOfTheUser()
{
    HANDLE token = nullptr;
    ::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token);
    BYTE user[512];
    DWORD size = 0;
    ::GetTokenInformation(token, TokenUser, user, sizeof(user), &size);
    ::CloseHandle(token);
    wchar_t* text = nullptr;
    ::ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(user)->User.Sid, &text);
    const std::wstring result = text ? text : L"";
    ::LocalFree(text);
    return result;
}

TEST_F(UserSid, OfNobodyIsThatOfTheCurrentUser)
{
    for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L""})
    {
        wchar_t* text = nullptr;
        EXPECT_TRUE(GetUserSidText(name, &text));
        const HeapBlock<wchar_t> owner(text);
        EXPECT_EQ(std::wstring(text ? text : L""), SystemsTextOfTheUser());
    }
    EXPECT_EQ(g_userNameSize, 257u);
    EXPECT_TRUE(g_localSystem);
}

TEST_F(UserSid, OfANamedUserIsLookedUp)
{
    wchar_t name[257] = {};
    DWORD size = 257;
    ASSERT_TRUE(::GetUserNameW(name, &size));
    wchar_t* text = nullptr;
    EXPECT_TRUE(GetUserSidText(name, &text));
    const HeapBlock<wchar_t> owner(text);
    EXPECT_EQ(g_lookedUp, name);
    EXPECT_EQ(std::wstring(text ? text : L""), SystemsTextOfTheUser());
}

TEST_F(UserSid, FailsWithoutAUserName)
{
    g_userNameFails = true;
    wchar_t* text = nullptr;
    EXPECT_FALSE(GetUserSidText(nullptr, &text));
    EXPECT_EQ(::GetLastError(), 4711u);
    EXPECT_EQ(text, nullptr);
}

TEST_F(UserSid, FailsForUnknownUsersWithTheSystemsError)
{
    g_lookup = Lookup::kNoSuchName;
    wchar_t* text = nullptr;
    EXPECT_FALSE(GetUserSidText(L"nobody", &text));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_NONE_MAPPED});
    EXPECT_EQ(text, nullptr);
}

TEST_F(UserSid, FailsWhereALookupWithoutBuffersSucceeds)
{
    g_lookup = Lookup::kSucceedsAtOnce;
    wchar_t* text = nullptr;
    EXPECT_FALSE(GetUserSidText(L"somebody", &text));
    EXPECT_EQ(text, nullptr);
}

TEST_F(UserSid, FailsWhereTheSecondLookupFails)
{
    g_lookup = Lookup::kSecondFails;
    wchar_t* text = nullptr;
    EXPECT_FALSE(GetUserSidText(L"somebody", &text));
    EXPECT_EQ(::GetLastError(), 4712u);
    EXPECT_EQ(text, nullptr);
}

TEST_F(UserSid, FailsForAnInvalidIdentifier)
{
    g_lookup = Lookup::kInvalidSid;
    wchar_t* text = nullptr;
    EXPECT_FALSE(GetUserSidText(L"somebody", &text));
    EXPECT_EQ(text, nullptr);
}

TEST_F(UserSid, FailsWithoutMemory)
{
    g_lookup = Lookup::kInvalidSid;
    g_noMemory = true;
    wchar_t* text = nullptr;
    const BOOL found = GetUserSidText(L"somebody", &text);
    g_noMemory = false;
    EXPECT_FALSE(found);
    EXPECT_EQ(text, nullptr);
}

TEST_F(UserSid, LeavesNoBlockBehind)
{
    const auto blocksBehind = []
    {
        wchar_t* text = nullptr;
        GetUserSidText(L"somebody", &text);
        ARVMUI_free(text);
        return arvmui_test::CountBusyBlocks();
    };
    for (const Lookup lookup : {Lookup::kSecondFails, Lookup::kInvalidSid, Lookup::kNoSuchName})
    {
        g_lookup = lookup;
        const size_t before = blocksBehind();
        EXPECT_EQ(blocksBehind(), before);
    }
}

}  // namespace
