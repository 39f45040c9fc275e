// The steps by which the installer is recognised, with paths as the system might give them: a 32-bit
// process, short names that cannot be had, modules without a path.
#include "foundation/process_info.h"

#include "support/import_replacement.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <optional>
#include <ostream>
#include <string>

namespace
{

constexpr wchar_t kWindows[] = L"Q:\\Win Dir";

bool g_armed = false;
std::optional<std::wstring> g_libraryPath;  // none: the system gives no path
std::optional<std::wstring> g_hostPath;
std::map<std::wstring, std::wstring> g_shortPaths;  // of other paths there are none
bool g_wow64 = false;

const HMODULE kLibrary = reinterpret_cast<HMODULE>(static_cast<ULONG_PTR>(0x10000000));

DWORD WINAPI FakeModuleFileName(HMODULE module, LPWSTR buffer, DWORD capacity)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", GetModuleFileNameW);
    if (!g_armed) return real(module, buffer, capacity);
    EXPECT_EQ(capacity, 260u);
    const std::optional<std::wstring>& path = module == kLibrary ? g_libraryPath : g_hostPath;
    if (!path) return 0;
    std::memcpy(buffer, path->c_str(), (path->size() + 1) * sizeof(wchar_t));
    return static_cast<DWORD>(path->size());
}

DWORD WINAPI FakeShortPathName(LPCWSTR path, LPWSTR buffer, DWORD capacity)
{
    EXPECT_EQ(capacity, 260u);
    const auto found = g_shortPaths.find(path);
    if (found == g_shortPaths.end()) return 0;
    std::memcpy(buffer, found->second.c_str(), (found->second.size() + 1) * sizeof(wchar_t));
    return static_cast<DWORD>(found->second.size());
}

BOOL WINAPI FakeIsWow64(HANDLE, PBOOL answer)
{
    *answer = g_wow64;
    return TRUE;
}

FARPROC WINAPI FakeGetProcAddress(HMODULE module, LPCSTR name)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", GetProcAddress);
    if (g_armed && std::strcmp(name, "IsWow64Process") == 0)
        return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&FakeIsWow64));
    return real(module, name);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(GetModuleFileNameW, &FakeModuleFileName)
ARVMUI_REPLACE_IMPORT(GetShortPathNameW, &FakeShortPathName)
ARVMUI_REPLACE_IMPORT(GetProcAddress, &FakeGetProcAddress)

namespace
{

struct HostCase
{
    const char* name;
    std::optional<std::wstring> libraryPath;
    std::optional<std::wstring> host;
    bool wow64;
    std::map<std::wstring, std::wstring> shortPaths;
    BOOL hosted;
    friend void PrintTo(const HostCase& entry, std::ostream* stream) { *stream << entry.name; }
};

const std::wstring kEditor = L"Q:\\app\\editor.exe";
const std::wstring kElsewhere = L"Q:\\app\\lib.dll";
const std::wstring kCache = L"Q:\\Win Dir\\INSTALLER\\";
const std::wstring kSystem = L"Q:\\Win Dir\\SYSTEM32\\MSIEXEC.EXE";
const std::wstring kSystem32Bit = L"Q:\\Win Dir\\SYSWOW64\\MSIEXEC.EXE";
const std::wstring kOtherName = L"R:\\link\\msiexec.exe";

const HostCase kCases[] = {
    {"LibraryInTheCache", kCache + L"x.dll", kEditor, false, {}, TRUE},
    {"LibraryInTheCacheInOtherCase", L"q:\\WIN dir\\installer\\x.dll", kEditor, false, {}, TRUE},
    {"LibraryInTheCacheAndHostWithoutPath", kCache + L"x.dll", std::nullopt, false, {}, TRUE},
    {"LibraryInTheCacheByShortPaths", kElsewhere, kEditor, false,
        {{kElsewhere, L"Q:\\WINDIR~1\\INSTAL~1\\x.dll"}, {kCache, L"Q:\\windir~1\\instal~1\\"}}, TRUE},
    {"ShortPathOfTheLibraryMissing", kElsewhere, kEditor, false, {{kCache, L"Q:\\"}}, FALSE},
    {"ShortPathOfTheCacheMissing", kElsewhere, kEditor, false, {{kElsewhere, kCache + L"x.dll"}}, FALSE},
    {"ShortPathsDiffer", kElsewhere, kEditor, false, {{kElsewhere, kElsewhere}, {kCache, L"Q:\\W\\I\\"}}, FALSE},
    {"LibraryIsTheCacheFolderWithoutItsEnd", L"Q:\\Win Dir\\INSTALLER", kEditor, false, {}, FALSE},
    {"LibraryWithoutPath", std::nullopt, kEditor, false, {}, FALSE},
    {"LibraryWithoutPathInTheInstaller", std::nullopt, kSystem, false, {}, TRUE},
    {"HostWithoutPath", kElsewhere, std::nullopt, false, {}, FALSE},
    {"HostWithoutFolder", kElsewhere, L"MSIEXEC.EXE", false, {}, FALSE},
    {"HostOfAnotherName", kElsewhere, L"Q:\\Win Dir\\SYSTEM32\\msiexec.exe.exe", false, {}, FALSE},
    {"HostInTheSystemFolder", kElsewhere, kSystem, false, {}, TRUE},
    {"HostInTheSystemFolderInOtherCase", kElsewhere, L"q:\\win dir\\system32\\MsiExec.exe", false, {}, TRUE},
    {"HostInTheSystemFolderByShortPaths", kElsewhere, kOtherName, false,
        {{kOtherName, L"Q:\\S\\m.exe"}, {kSystem, L"q:\\s\\M.EXE"}}, TRUE},
    {"HostElsewhere", kElsewhere, kOtherName, false, {{kOtherName, kOtherName}, {kSystem, kSystem}}, FALSE},
    {"ShortPathOfTheHostMissing", kElsewhere, kOtherName, false, {{kSystem, kSystem}}, FALSE},
    {"ShortPathOfTheSystemsProgramMissing", kElsewhere, kOtherName, false, {{kOtherName, kSystem}}, FALSE},
    {"HostInTheFolderOf32BitPrograms", kElsewhere, kSystem32Bit, false, {}, FALSE},
    {"HostOf32BitsInItsFolder", kElsewhere, kSystem32Bit, true, {}, TRUE},
    {"HostOf32BitsInItsFolderInOtherCase", kElsewhere, L"q:\\win dir\\syswow64\\MsiExec.exe", true, {}, TRUE},
    {"HostOf32BitsByShortPaths", kElsewhere, kOtherName, true,
        {{kOtherName, L"Q:\\S\\m.exe"}, {kSystem32Bit, L"q:\\s\\M.EXE"}}, TRUE},
    {"HostOf32BitsInTheSystemFolder", kElsewhere, kSystem, true, {{kSystem, kSystem}, {kSystem32Bit, kSystem32Bit}},
        TRUE},
    {"HostOf32BitsInTheSystemFolderByShortPaths", kElsewhere, kOtherName, true,
        {{kOtherName, kSystem}, {kSystem32Bit, kSystem32Bit}, {kSystem, kSystem}}, TRUE},
    {"HostOf32BitsElsewhere", kElsewhere, kOtherName, true,
        {{kOtherName, kOtherName}, {kSystem32Bit, kSystem32Bit}, {kSystem, kSystem}}, FALSE},
    // Where the first comparison cannot be made, the second one is not tried.
    {"ShortPathOfThe32BitHostMissing", kElsewhere, kSystem, true, {{kSystem32Bit, kSystem32Bit}}, FALSE},
    {"ShortPathOfThe32BitProgramMissing", kElsewhere, kSystem, true, {{kSystem, kSystem}}, FALSE},
};

class InstallerHostSteps : public testing::TestWithParam<HostCase>
{
protected:
    InstallerHostSteps()
    {
        // Before the first use: the folder is asked for once in a process.
        ::SetEnvironmentVariableW(L"windir", kWindows);
        g_libraryPath = GetParam().libraryPath;
        g_hostPath = GetParam().host;
        g_shortPaths = GetParam().shortPaths;
        g_wow64 = GetParam().wow64;
        g_armed = true;
    }
    ~InstallerHostSteps() override { g_armed = false; }
};

TEST_P(InstallerHostSteps, Decide)
{
    EXPECT_EQ(arvmui::IsHostedByInstaller(kLibrary), GetParam().hosted);
}

INSTANTIATE_TEST_SUITE_P(
    , InstallerHostSteps, testing::ValuesIn(kCases), [](const auto& entry) { return entry.param.name; });

}  // namespace
