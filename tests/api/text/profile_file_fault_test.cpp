// Files that are not there, cannot be opened or read, or are out of the ordinary.

#include "arvmui.h"
#include "settings_file.h"
#include "support/busy_blocks.h"
#include "support/module_patch.h"
#include "support/process_resources.h"

#include <gtest/gtest.h>

#include <string>

namespace arvmui_test
{
namespace
{

constexpr DWORD kSize = 12;

Wide AskFile(const std::wstring& path, const wchar_t* section, const wchar_t* key, const wchar_t* defaultValue)
{
    Wide answer{0, std::wstring(kSize, L'#')};
    answer.result =
        ARVMUI_GetPrivateProfileStringW(section, key, defaultValue, answer.buffer.data(), kSize, path.c_str());
    return answer;
}

Narrow AskFile(const std::string& path, const char* section, const char* key, const char* defaultValue)
{
    Narrow answer{0, std::string(kSize, '#')};
    answer.result =
        ARVMUI_GetPrivateProfileStringA(section, key, defaultValue, answer.buffer.data(), kSize, path.c_str());
    return answer;
}

void ExpectUnopened(const std::filesystem::path& path, DWORD error)
{
    ::SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(AskFile(path.wstring(), L"s", L"k", L"default  "), Filled<wchar_t>(7, L"default", kSize));
    EXPECT_EQ(::GetLastError(), error);
    EXPECT_EQ(AskFile(path.wstring(), kAnySection, L"k", L"default"), Filled<wchar_t>(7, L"default", kSize));
    EXPECT_EQ(AskFile(path.wstring(), nullptr, L"k", L"default"), Filled<wchar_t>(0, L"", kSize));
    EXPECT_EQ(AskFile(path.wstring(), L"s", nullptr, L"default"), Filled<wchar_t>(0, L"", kSize));
    ::SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(AskFile(path.string(), "s", "k", "default  "), Filled<char>(7, "default", kSize));
    EXPECT_EQ(::GetLastError(), error);
    // Telling the characters of the default apart does not hide the error.
    ::SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(AskFile(path.string(), "s", "k", "caf\xE9"), Filled<char>(4, "caf\xE9", kSize));
    EXPECT_EQ(::GetLastError(), error);
    EXPECT_EQ(AskFile(path.string(), nullptr, "k", "default"), Filled<char>(0, "", kSize));
    EXPECT_EQ(AskFile(path.string(), "s", nullptr, "default"), Filled<char>(0, "", kSize));
}

TEST(ProfileFile, Missing)
{
    const TemporaryFolder folder;
    ExpectUnopened(folder.Path() / L"missing.ini", ERROR_FILE_NOT_FOUND);
}

TEST(ProfileFile, InAMissingFolder)
{
    const TemporaryFolder folder;
    ExpectUnopened(folder.Path() / L"missing" / L"settings.ini", ERROR_PATH_NOT_FOUND);
}

TEST(ProfileFile, ThatIsAFolder)
{
    const TemporaryFolder folder;
    ExpectUnopened(folder.MakeFolder(L"settings.ini"), ERROR_ACCESS_DENIED);
}

TEST(ProfileFile, OpenForWritingElsewhere)
{
    const SettingsFile file("[s]\nk=1\n");
    const HANDLE writer = ::CreateFileW(file.Path().c_str(), GENERIC_READ | GENERIC_WRITE,
        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(writer, INVALID_HANDLE_VALUE);
    ExpectUnopened(file.Path(), ERROR_SHARING_VIOLATION);
    ::CloseHandle(writer);
    EXPECT_EQ(file.Value(L"s", L"k"), L"1");
}

TEST(ProfileFile, Empty)
{
    const SettingsFile file("");
    EXPECT_EQ(file.Ask(L"s", L"k", L"d", 4), Filled<wchar_t>(1, L"d", 4));
    EXPECT_EQ(file.Ask("s", "k", "d", 4), Filled<char>(1, "d", 4));
}

TEST(ProfileFile, OfOneByte)
{
    for (const char* byte : {"[", "=", ";", "\n", "k", "\"", "\xE4"})
    {
        SCOPED_TRACE(byte);
        const SettingsFile file(byte);
        EXPECT_EQ(file.Ask(L"s", L"x", L"d", 4), Filled<wchar_t>(1, L"d", 4));
        EXPECT_EQ(file.Ask("s", "x", "d", 4), Filled<char>(1, "d", 4));
    }
}

TEST(ProfileFile, OfTwentyMegabytes)
{
    std::string bytes = "[s]\n";
    while (bytes.size() < 20000000) bytes += "some_key=some value\n";
    bytes += "k=last\n";
    EXPECT_EQ(SettingsFile(bytes).Value(L"s", L"k"), L"last");
}

TEST(ProfileFile, OfOneLineOfMegabytes)
{
    const SettingsFile file("[s]\na=" + std::string(3000000, 'x') + "\nk=1\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"1");
    EXPECT_EQ(file.Value(L"s", L"a"), std::wstring(270, L'x'));
}

TEST(ProfileFile, IsReadAfreshByEveryCall)
{
    const TemporaryFolder folder;
    const std::wstring path = (folder.Path() / L"settings.ini").wstring();
    ASSERT_TRUE(::WritePrivateProfileStringW(L"s", L"k", L"1", path.c_str()));
    EXPECT_EQ(AskFile(path, L"s", L"k", L""), Filled<wchar_t>(1, L"1", kSize));
    ASSERT_TRUE(::WritePrivateProfileStringW(L"s", L"k", L"2", path.c_str()));
    EXPECT_EQ(AskFile(path, L"s", L"k", L""), Filled<wchar_t>(1, L"2", kSize));
}

TEST(ProfileFile, NarrowNameIsInTheAnsiCodePage)
{
    const TemporaryFolder folder;
    const std::wstring path = (folder.Path()
                               / L"gr\x00FC\x00DF"
                                 L"e.ini")
                                  .wstring();
    char narrow[2 * MAX_PATH] = {};
    BOOL lost = FALSE;
    ::WideCharToMultiByte(CP_ACP, 0, path.c_str(), -1, narrow, sizeof(narrow), nullptr, &lost);
    if (lost) GTEST_SKIP() << "the ANSI code page of this machine has no such letters";
    ASSERT_TRUE(::WritePrivateProfileStringW(L"s", L"k", L"1", path.c_str()));
    EXPECT_EQ(AskFile(std::string(narrow), "s", "k", ""), Filled<char>(1, "1", kSize));
}

int g_readsBeforeFailure = 0;
decltype(&::ReadFile) g_readFile = nullptr;

BOOL WINAPI ReadUntilFailure(HANDLE file, LPVOID target, DWORD capacity, LPDWORD read, LPOVERLAPPED overlapped)
{
    if (g_readsBeforeFailure-- > 0) return g_readFile(file, target, capacity, read, overlapped);
    ::SetLastError(ERROR_CRC);
    return FALSE;
}

TEST(ProfileFile, ReadErrorIsTheEndOfTheFile)
{
    std::string bytes = "[s]\nfirst=1\n";
    bytes += ";" + std::string(1100, '.') + "\nlast=2\n";
    const SettingsFile file(bytes);
    const ImportPatch patch(LibraryUnderTest(), "ReadFile", &ReadUntilFailure);
    g_readFile = patch.Original<decltype(&::ReadFile)>();
    g_readsBeforeFailure = 1;
    EXPECT_EQ(file.Value(L"s", L"first"), L"1");
    g_readsBeforeFailure = 1;
    EXPECT_EQ(file.Value(L"s", L"last"), L"<none>");
    g_readsBeforeFailure = 1;
    EXPECT_EQ(file.Sections(), std::vector<std::wstring>{L"s"});
}

// A pipe hands out its bytes in portions, and its end is an error.
TEST(ProfileFile, PipeIsReadLikeAFile)
{
    const std::wstring name = L"\\\\.\\pipe\\arvmui_settings_" + std::to_wstring(::GetCurrentProcessId());
    const HANDLE server =
        ::CreateNamedPipeW(name.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE | PIPE_WAIT, 1, 4096, 4096, 0, nullptr);
    ASSERT_NE(server, INVALID_HANDLE_VALUE);
    const auto serve = [](void* pipe) -> DWORD
    {
        ::ConnectNamedPipe(pipe, nullptr);
        for (const char* part : {"[Encoding]\nInputEnc", "oding=UTF-8\n[\xE6", "\x97\xA5]\nk=\xE6\x97", "\xA5\n"})
        {
            DWORD written = 0;
            ::WriteFile(pipe, part, static_cast<DWORD>(std::char_traits<char>::length(part)), &written, nullptr);
        }
        ::FlushFileBuffers(pipe);
        ::DisconnectNamedPipe(pipe);
        return 0;
    };
    const HANDLE thread = ::CreateThread(nullptr, 0, serve, server, 0, nullptr);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(AskFile(name, L"\x65E5", L"k", L"<none>"), Filled<wchar_t>(1, L"\x65E5", kSize));
    EXPECT_EQ(::WaitForSingleObject(thread, 20000), WAIT_OBJECT_0);
    ::CloseHandle(thread);
    ::CloseHandle(server);
}

TEST(ProfileFile, TenThousandCallsLeaveNothingBehind)
{
    const SettingsFile file("[Encoding]\nInputEncoding=UTF-8\n[s]\nk=1\n");
    EXPECT_EQ(file.Value(L"s", L"k"), L"1");
    EXPECT_EQ(file.Value("s", "k"), "1");
    const std::wstring path = file.Path();
    const std::string pathA = file.PathA();
    const size_t blocks = CountBusyBlocks();
    const size_t handles = CountHandles();
    wchar_t wide[8];
    char narrow[8];
    for (int i = 0; i < 5000; ++i)
    {
        ASSERT_EQ(ARVMUI_GetPrivateProfileStringW(L"s", L"k", L"", wide, 8, path.c_str()), 1u);
        ASSERT_EQ(ARVMUI_GetPrivateProfileStringA("s", "k", "", narrow, 8, pathA.c_str()), 1u);
    }
    EXPECT_EQ(CountBusyBlocks(), blocks);
    EXPECT_EQ(CountHandles(), handles);
}

}  // namespace
}  // namespace arvmui_test
