#include "foundation/process_info.h"

#include "foundation/growable_text.h"
#include "foundation/handles.h"
#include "foundation/heap.h"
#include "foundation/paths.h"
#include "foundation/system_functions.h"
#include "resources/windows_folder.h"

#include <cwchar>

namespace arvmui
{
namespace
{

constexpr char kInstallerProgram[] = "MSIEXEC.EXE";
constexpr wchar_t kInstallerProgramName[] = L"MSIEXEC.EXE";
constexpr DWORD kUserNameChars = 257;  // longest user name and its terminator
constexpr unsigned kSidRevision = 1;

bool LiesInFolder(const wchar_t* path, const wchar_t* folder) noexcept
{
    return HasPrefixNoCase(path, folder, WideLength(folder));
}

// kUnknown: the paths differ and a short form of one cannot be had.
enum class PathMatch
{
    kSame,
    kOther,
    kUnknown
};

PathMatch MatchPaths(const wchar_t* path, const wchar_t* other) noexcept
{
    if (CompareTextNoCase(path, other) == 0) return PathMatch::kSame;
    PathBuffer<wchar_t> shortPath;
    PathBuffer<wchar_t> otherShortPath;
    if (!GetShortPath(path, shortPath) || !GetShortPath(other, otherShortPath)) return PathMatch::kUnknown;
    return CompareTextNoCase(shortPath, otherShortPath) == 0 ? PathMatch::kSame : PathMatch::kOther;
}

bool LiesInInstallerCache(HMODULE library) noexcept
{
    PathBuffer<wchar_t> path;
    if (!GetModulePath(library, path)) return false;

    PathBuffer<wchar_t> folder;
    FormatWindowsPath(folder, kMaxPathChars, L"\\INSTALLER\\");
    if (LiesInFolder(path, folder)) return true;

    PathBuffer<wchar_t> shortPath;
    PathBuffer<wchar_t> shortFolder;
    return GetShortPath(path, shortPath) && GetShortPath(folder, shortFolder) && LiesInFolder(shortPath, shortFolder);
}

// The host against the installer's program in one system folder.
PathMatch MatchInstallerProgram(const wchar_t* host, const wchar_t* programFormat) noexcept
{
    PathBuffer<wchar_t> program;
    FormatWindowsPath(program, kMaxPathChars, programFormat, kInstallerProgram);
    return MatchPaths(host, program);
}

// What NtQueryInformationProcess stores for class 0 in a 64-bit process.
struct BasicInformation
{
    LONG exitStatus;
    void* environment;
    ULONG_PTR affinity;
    LONG priority;
    ULONG_PTR processId;
    ULONG_PTR parentProcessId;
};
static_assert(sizeof(BasicInformation) == 48);

}  // namespace

BOOL IsHostedByInstaller(HMODULE library) noexcept
{
    if (LiesInInstallerCache(library)) return TRUE;

    PathBuffer<wchar_t> host;
    if (!GetModulePath(nullptr, host)) return FALSE;
    const wchar_t* const name = std::wcsrchr(host, L'\\');
    if (!name || CompareTextNoCase(name + 1, kInstallerProgramName) != 0) return FALSE;

    if (IsWow64())
    {
        const PathMatch match = MatchInstallerProgram(host, L"\\SYSWOW64\\%hs");
        if (match != PathMatch::kOther) return match == PathMatch::kSame;
    }
    return MatchInstallerProgram(host, L"\\SYSTEM32\\%hs") == PathMatch::kSame;
}

BOOL IsWow64() noexcept
{
    using Function = BOOL(WINAPI*)(HANDLE, BOOL*);
    BOOL answer = FALSE;
    const Function function = FindSystemFunction<Function>("KERNEL32.DLL", "IsWow64Process");
    // Ignored: where the system cannot tell, the answer stays FALSE.
    if (function) function(::GetCurrentProcess(), &answer);
    return answer;
}

DWORD GetParentProcessId(DWORD processId) noexcept
{
    using Function = LONG(NTAPI*)(HANDLE, ULONG, void*, ULONG, ULONG*);
    constexpr ULONG kBasicInformationClass = 0;

    const Function query = FindSystemFunction<Function>("NTDLL.DLL", "NtQueryInformationProcess");
    if (!query) return kNoProcess;
    const UniqueHandle process(::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, processId));
    if (!process) return kNoProcess;

    BasicInformation information = {};
    const LONG status = query(process.Get(), kBasicInformationClass, &information, sizeof(information), nullptr);
    return status == 0 ? static_cast<DWORD>(information.parentProcessId) : kNoProcess;
}

bool AppendSidText(PSID sid, wchar_t** text) noexcept
{
    if (AppendFormat(text, -1, L"S-%u-", kSidRevision) < 1) return false;

    const BYTE* const authority = ::GetSidIdentifierAuthority(sid)->Value;
    if (authority[0] != 0 || authority[1] != 0)
    {
        if (AppendFormat(text, -1, L"0x%02hx%02hx%02hx%02hx%02hx%02hx", authority[0], authority[1], authority[2],
                authority[3], authority[4], authority[5])
            < 1)
            return false;
    }
    else
    {
        unsigned long value = 0;
        for (int i = 2; i < 6; ++i) value = value << 8 | authority[i];
        if (AppendFormat(text, -1, L"%lu", value) < 1) return false;
    }

    const BYTE count = *::GetSidSubAuthorityCount(sid);
    for (BYTE i = 0; i < count; ++i)
    {
        if (AppendFormat(text, -1, L"-%lu", *::GetSidSubAuthority(sid, i)) < 1) return false;
    }
    return true;
}

BOOL GetUserSidText(const wchar_t* userName, wchar_t** text) noexcept
{
    wchar_t currentUser[kUserNameChars];
    if (!userName || *userName == L'\0')
    {
        DWORD length = kUserNameChars;
        if (!::GetUserNameW(currentUser, &length)) return FALSE;
        userName = currentUser;
    }

    DWORD sidBytes = 0;
    DWORD domainChars = 0;
    SID_NAME_USE use = SidTypeUnknown;
    if (::LookupAccountNameW(nullptr, userName, nullptr, &sidBytes, nullptr, &domainChars, &use)) return FALSE;
    if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER) return FALSE;

    HeapBlock<BYTE> sid;
    HeapBlock<wchar_t> domain;
    if (!sid.Resize(sidBytes) || !domain.Resize(domainChars)) return FALSE;
    if (!::LookupAccountNameW(nullptr, userName, sid.Get(), &sidBytes, domain.Get(), &domainChars, &use)) return FALSE;
    if (!::IsValidSid(sid.Get())) return FALSE;

    HeapBlock<wchar_t> built;
    if (!AppendSidText(sid.Get(), built.Slot())) return FALSE;
    *text = built.Release();
    return TRUE;
}

}  // namespace arvmui
