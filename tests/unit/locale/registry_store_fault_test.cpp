// The exact registry calls, and what happens when they fail in ways that a real registry does not.
#include "locale/registry_store.h"

#include "support/busy_blocks.h"
#include "support/endless_text.h"
#include "support/import_replacement.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace
{

struct OpenCall
{
    HKEY root;
    std::wstring subkey;
    REGSAM access;
    bool operator==(const OpenCall&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const OpenCall& call)
{
    return stream << "root " << call.root << " access " << call.access << " key "
                  << std::string(call.subkey.begin(), call.subkey.end());
}

constexpr wchar_t kDefaultValue[] = L"<default>";

// The registry that the library sees while a test is running: every open succeeds unless told
// otherwise, and every value is `data`.
struct FakeRegistry
{
    bool armed = false;
    std::vector<OpenCall> opens;
    std::vector<std::wstring> values;
    std::vector<OpenCall> creations;
    int closes = 0;
    int deletions = 0;
    DWORD options = 0;
    bool hadClass = false;
    std::wstring data = L"de";
    bool unterminated = false;
    int writes = 0;
    LSTATUS openStatus = ERROR_SUCCESS;
    LSTATUS sizeStatus = ERROR_SUCCESS;
    LSTATUS readStatus = ERROR_SUCCESS;
    LSTATUS writeStatus = ERROR_SUCCESS;
    LSTATUS deleteStatus = ERROR_SUCCESS;
    LSTATUS closeStatus = ERROR_SUCCESS;
    bool noMemory = false;
    size_t failingAllocation = SIZE_MAX;    // its number
    std::vector<size_t> opensAtAllocation;  // how many keys had been opened before each
};

FakeRegistry g_registry;

const HKEY kOpenedKey = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x1234));

LSTATUS WINAPI FakeOpen(HKEY root, LPCWSTR subkey, DWORD options, REGSAM access, PHKEY key)
{
    if (!g_registry.armed)
        return ARVMUI_REAL_FUNCTION(L"advapi32.dll", RegOpenKeyExW)(root, subkey, options, access, key);
    g_registry.opens.push_back({root, subkey, access});
    if (g_registry.openStatus == ERROR_SUCCESS) *key = kOpenedKey;
    return g_registry.openStatus;
}

LSTATUS WINAPI FakeCreate(HKEY root, LPCWSTR subkey, DWORD reserved, LPWSTR className, DWORD options, REGSAM access,
    LPSECURITY_ATTRIBUTES security, PHKEY key, LPDWORD disposition)
{
    if (!g_registry.armed)
        return ARVMUI_REAL_FUNCTION(L"advapi32.dll", RegCreateKeyExW)(
            root, subkey, reserved, className, options, access, security, key, disposition);
    g_registry.creations.push_back({root, subkey, access});
    g_registry.options = options;
    g_registry.hadClass = className != nullptr;
    if (g_registry.openStatus == ERROR_SUCCESS) *key = kOpenedKey;
    return g_registry.openStatus;
}

LSTATUS WINAPI FakeQuery(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD bytes)
{
    if (!g_registry.armed)
        return ARVMUI_REAL_FUNCTION(L"advapi32.dll", RegQueryValueExW)(key, name, reserved, type, data, bytes);
    if (data)
    {
        if (g_registry.readStatus != ERROR_SUCCESS) return g_registry.readStatus;
        std::memcpy(data, g_registry.data.c_str(), *bytes);
        return ERROR_SUCCESS;
    }
    g_registry.values.push_back(name ? name : kDefaultValue);
    if (type) *type = REG_SZ;
    const size_t chars = g_registry.data.size() + (g_registry.unterminated ? 0 : 1);
    if (bytes) *bytes = static_cast<DWORD>(chars * sizeof(wchar_t));
    return g_registry.sizeStatus;
}

LSTATUS WINAPI FakeSet(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD bytes)
{
    if (!g_registry.armed)
        return ARVMUI_REAL_FUNCTION(L"advapi32.dll", RegSetValueExW)(key, name, reserved, type, data, bytes);
    ++g_registry.writes;
    return g_registry.writeStatus;
}

LSTATUS WINAPI FakeDelete(HKEY key, LPCWSTR name)
{
    if (!g_registry.armed) return ARVMUI_REAL_FUNCTION(L"advapi32.dll", RegDeleteValueW)(key, name);
    ++g_registry.deletions;
    return g_registry.deleteStatus;
}

LSTATUS WINAPI FakeClose(HKEY key)
{
    if (!g_registry.armed) return ARVMUI_REAL_FUNCTION(L"advapi32.dll", RegCloseKey)(key);
    ++g_registry.closes;
    return g_registry.closeStatus;
}

bool RefuseMemory()
{
    if (!g_registry.armed) return false;
    g_registry.armed = false;  // with some runtime libraries the record itself is allocated here
    const size_t number = g_registry.opensAtAllocation.size();
    g_registry.opensAtAllocation.push_back(g_registry.opens.size());
    g_registry.armed = true;
    return g_registry.noMemory || number == g_registry.failingAllocation;
}

// Fills blocks, as a heap that is in use for long does.
LPVOID WINAPI FakeHeapAlloc(HANDLE heap, DWORD flags, SIZE_T bytes)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc);
    void* const block = RefuseMemory() ? nullptr : real(heap, flags, bytes);
    if (block && g_registry.armed) std::memset(block, 'x', bytes);
    return block;
}

LPVOID WINAPI FakeHeapReAlloc(HANDLE heap, DWORD flags, LPVOID block, SIZE_T bytes)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapReAlloc);
    return RefuseMemory() ? nullptr : real(heap, flags, block, bytes);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(RegOpenKeyExW, &FakeOpen)
ARVMUI_REPLACE_IMPORT(RegCreateKeyExW, &FakeCreate)
ARVMUI_REPLACE_IMPORT(RegQueryValueExW, &FakeQuery)
ARVMUI_REPLACE_IMPORT(RegSetValueExW, &FakeSet)
ARVMUI_REPLACE_IMPORT(RegDeleteValueW, &FakeDelete)
ARVMUI_REPLACE_IMPORT(RegCloseKey, &FakeClose)
ARVMUI_REPLACE_IMPORT(HeapAlloc, &FakeHeapAlloc)
ARVMUI_REPLACE_IMPORT(HeapReAlloc, &FakeHeapReAlloc)

namespace
{

using namespace arvmui;

constexpr REGSAM kRead = 0x20219;
constexpr REGSAM kWrite = 0x20206;

class RegistryCalls : public testing::Test
{
protected:
    RegistryCalls()
    {
        g_registry = {};
        g_registry.armed = true;
        ::SetLastError(4711);
    }
    ~RegistryCalls() override { g_registry.armed = false; }

    DWORD Read() { return ReadRegistryString(kRead, HKEY_CURRENT_USER, L"key", L"value", buffer_, kCapacity); }

    static constexpr DWORD kCapacity = 32;
    wchar_t buffer_[kCapacity] = L"before";
};

TEST_F(RegistryCalls, ReadingOpensWithTheGivenAccessAndCloses)
{
    EXPECT_EQ(ReadRegistryString(KEY_READ, HKEY_USERS, L"a\\b", L"v", buffer_, kCapacity), 2u);
    EXPECT_EQ(g_registry.opens, (std::vector<OpenCall>{{HKEY_USERS, L"a\\b", KEY_READ}}));
    EXPECT_EQ(g_registry.values, std::vector<std::wstring>{L"v"});
    EXPECT_EQ(g_registry.closes, 1);
    EXPECT_EQ(::GetLastError(), 0u);
}

TEST_F(RegistryCalls, OpenErrorIsReported)
{
    g_registry.openStatus = ERROR_KEY_DELETED;
    EXPECT_EQ(Read(), 0u);
    EXPECT_STREQ(buffer_, L"");
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_KEY_DELETED});
    EXPECT_EQ(g_registry.closes, 0);
}

TEST_F(RegistryCalls, ReadErrorBehindTheSizeIsReportedAndTheDataFreed)
{
    g_registry.readStatus = ERROR_MORE_DATA;
    const size_t before = arvmui_test::CountBusyBlocks();
    EXPECT_EQ(Read(), 0u);
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
    EXPECT_STREQ(buffer_, L"");
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_MORE_DATA});
    EXPECT_EQ(g_registry.closes, 1);
}

TEST_F(RegistryCalls, UnterminatedDataIsTerminated)
{
    g_registry.unterminated = true;
    EXPECT_EQ(Read(), 2u);
    EXPECT_STREQ(buffer_, L"de");
}

TEST_F(RegistryCalls, WithoutMemoryNothingIsRead)
{
    g_registry.noMemory = true;
    EXPECT_EQ(Read(), 0u);
    EXPECT_STREQ(buffer_, L"");
    EXPECT_EQ(g_registry.closes, 1);
}

TEST_F(RegistryCalls, CloseErrorIsReportedWhereNothingElseFailed)
{
    g_registry.closeStatus = ERROR_INVALID_HANDLE;
    EXPECT_EQ(Read(), 2u);
    EXPECT_STREQ(buffer_, L"de");
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(RegistryCalls, CloseErrorDoesNotHideAReadError)
{
    g_registry.sizeStatus = ERROR_FILE_NOT_FOUND;
    g_registry.closeStatus = ERROR_INVALID_HANDLE;
    EXPECT_EQ(Read(), 0u);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(RegistryCalls, WritingMakesAPlainKeyThatStays)
{
    EXPECT_TRUE(WriteRegistryString(kWrite, HKEY_USERS, L"a\\b", L"v", L"de"));
    EXPECT_EQ(g_registry.creations, (std::vector<OpenCall>{{HKEY_USERS, L"a\\b", kWrite}}));
    EXPECT_EQ(g_registry.options, DWORD{REG_OPTION_NON_VOLATILE});
    EXPECT_FALSE(g_registry.hadClass);
    EXPECT_EQ(g_registry.closes, 1);
    EXPECT_EQ(::GetLastError(), 0u);
}

TEST_F(RegistryCalls, WriteErrorIsReportedWhateverClosingSays)
{
    g_registry.writeStatus = ERROR_NO_SYSTEM_RESOURCES;
    g_registry.closeStatus = ERROR_INVALID_HANDLE;
    EXPECT_FALSE(WriteRegistryString(kWrite, HKEY_CURRENT_USER, L"key", L"v", L"de"));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_NO_SYSTEM_RESOURCES});
    EXPECT_EQ(g_registry.closes, 1);
}

TEST_F(RegistryCalls, CloseErrorBehindAWriteIsReported)
{
    g_registry.closeStatus = ERROR_INVALID_HANDLE;
    EXPECT_TRUE(WriteRegistryString(kWrite, HKEY_CURRENT_USER, L"key", L"v", L"de"));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

// Deliberate: callers rely on the last-error code, which closing might change.
TEST_F(RegistryCalls, DeletingLeavesTheKeyOpen)
{
    for (const LSTATUS status : {ERROR_SUCCESS, ERROR_FILE_NOT_FOUND})
    {
        SCOPED_TRACE(status);
        g_registry.deleteStatus = status;
        ::SetLastError(4711);
        EXPECT_FALSE(WriteRegistryString(kWrite, HKEY_CURRENT_USER, L"key", L"v", nullptr));
        EXPECT_EQ(::GetLastError(), 0u);
    }
    EXPECT_EQ(g_registry.deletions, 2);
    EXPECT_EQ(g_registry.closes, 0);
}

TEST_F(RegistryCalls, DeletionErrorIsReported)
{
    g_registry.deleteStatus = ERROR_ACCESS_DENIED;
    EXPECT_FALSE(WriteRegistryString(kWrite, HKEY_CURRENT_USER, L"key", L"v", nullptr));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(g_registry.closes, 0);
}

// Deliberate: as for a deletion.
TEST_F(RegistryCalls, TextWithoutEndIsNotWrittenAndLeavesTheKeyOpen)
{
    const arvmui_test::EndlessText text(false);
    ASSERT_NE(text.Get(), nullptr);
    EXPECT_FALSE(WriteRegistryString(kWrite, HKEY_CURRENT_USER, L"key", L"v", static_cast<const wchar_t*>(text.Get())));
    EXPECT_EQ(g_registry.creations.size(), 1u);
    EXPECT_EQ(g_registry.writes, 0);
    EXPECT_EQ(g_registry.closes, 0);
}

TEST_F(RegistryCalls, CreationErrorIsReported)
{
    g_registry.openStatus = ERROR_ACCESS_DENIED;
    EXPECT_FALSE(WriteRegistryString(kWrite, HKEY_CURRENT_USER, L"key", L"v", L"de"));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_ACCESS_DENIED});
}

// Whichever of the texts of a walk cannot be built: no location behind it is read.
TEST_F(RegistryCalls, ListWalkEndsWhereMemoryDoes)
{
    constexpr wchar_t kList[] = L"HKCU\\a\\b,c\\d,e,HKLM\\f";
    g_registry.sizeStatus = ERROR_FILE_NOT_FOUND;  // nothing is found, so the walk goes on to the end
    EXPECT_EQ(ReadRegistryList(kList, buffer_, kCapacity), 0u);
    EXPECT_EQ(g_registry.opens.size(), 6u);
    const std::vector<size_t> opensAt = g_registry.opensAtAllocation;
    ASSERT_GE(opensAt.size(), 6u);
    for (size_t i = 0; i < opensAt.size(); ++i)
    {
        SCOPED_TRACE(i);
        g_registry.opens.clear();
        g_registry.opensAtAllocation.clear();
        g_registry.failingAllocation = i;
        EXPECT_EQ(ReadRegistryList(kList, buffer_, kCapacity), 0u);
        EXPECT_EQ(g_registry.opens.size(), opensAt[i]);
    }
}

TEST_F(RegistryCalls, ListLeavesNoBlockBehind)
{
    g_registry.sizeStatus = ERROR_FILE_NOT_FOUND;
    const auto blocksBehindAWalk = [&]
    {
        EXPECT_EQ(ReadRegistryList(L"HKCU\\a\\b,c\\d,e", buffer_, kCapacity), 0u);
        g_registry.opens.clear();
        g_registry.values.clear();
        g_registry.opensAtAllocation.clear();
        return arvmui_test::CountBusyBlocks();
    };
    const size_t before = blocksBehindAWalk();
    EXPECT_EQ(blocksBehindAWalk(), before);
}

TEST_F(RegistryCalls, ListReadsInThe32BitView)
{
    g_registry.data.clear();
    EXPECT_EQ(ReadRegistryList(L"HKCR\\UILocale,HKLM\\S\\X\\Y,P\\V,W", buffer_, kCapacity), 0u);
    EXPECT_EQ(g_registry.opens, (std::vector<OpenCall>{
                                    {HKEY_CLASSES_ROOT, L"SOFTWARE\\Pelkor\\MUI", kRead},
                                    {HKEY_LOCAL_MACHINE, L"S\\X", kRead},
                                    {HKEY_CURRENT_USER, L"P", kRead},
                                    {HKEY_LOCAL_MACHINE, L"P", kRead},
                                    {HKEY_CURRENT_USER, L"SOFTWARE\\Pelkor\\MUI", kRead},
                                    {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Pelkor\\MUI", kRead},
                                }));
    EXPECT_EQ(g_registry.values, (std::vector<std::wstring>{L"UILocale", L"Y", L"V", L"V", L"W", L"W"}));
}

TEST_F(RegistryCalls, ListStopsAtTheFirstText)
{
    EXPECT_EQ(ReadRegistryList(L"P\\V,HKLM\\W", buffer_, kCapacity), 2u);
    EXPECT_EQ(g_registry.opens, (std::vector<OpenCall>{{HKEY_CURRENT_USER, L"P", kRead}}));
}

TEST_F(RegistryCalls, FixedReadersReadTheirPlacesInThe32BitView)
{
    EXPECT_EQ(ReadUILocale(HKEY_LOCAL_MACHINE, buffer_, kCapacity), 2u);
    EXPECT_EQ(ReadInstallUILocale(L"P", buffer_, kCapacity), 2u);
    EXPECT_EQ(ReadBrowserLanguages(buffer_, kCapacity), 2u);
    EXPECT_EQ(ReadBrowserCacheFolder(buffer_, kCapacity), 2u);
    EXPECT_EQ(ReadPackageOpenCommand(buffer_, kCapacity), 2u);
    EXPECT_EQ(g_registry.opens,
        (std::vector<OpenCall>{
            {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Pelkor\\MUI", kRead},
            {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Pelkor\\MUI\\P", kRead},
            {HKEY_CURRENT_USER, L"Software\\Microsoft\\Internet Explorer\\International", kRead},
            {HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", kRead},
            {HKEY_CLASSES_ROOT, L"Msi.Package\\shell\\Open\\command", kRead},
        }));
    EXPECT_EQ(g_registry.values,
        (std::vector<std::wstring>{L"UILocale", L"InstallUILocale", L"AcceptLanguage", L"Cache", kDefaultValue}));
}

TEST_F(RegistryCalls, FixedWriterWritesInThe32BitView)
{
    EXPECT_TRUE(WriteUILocale(HKEY_LOCAL_MACHINE, L"de"));
    EXPECT_EQ(g_registry.creations, (std::vector<OpenCall>{{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Pelkor\\MUI", kWrite}}));
}

}  // namespace
