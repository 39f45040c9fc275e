// Paths under the Windows folder. What was read once stays for the life of the process, so everything
// about reading it is one test.
#include "resources/windows_folder.h"

#include "support/environment_variable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <string>

namespace
{

using namespace arvmui;
using arvmui_test::EnvironmentVariable;

std::wstring Folder()
{
    wchar_t path[MAX_PATH] = {};
    const DWORD length = FormatWindowsPath(path, MAX_PATH, L"");
    EXPECT_EQ(length, wcslen(path));
    return path;
}

// Runs before the others when all run in one process.
TEST(WindowsFolder, IsReadOnceAndReplacedWhileItIsMissing)
{
    {
        const EnvironmentVariable missing(L"windir", nullptr);
        EXPECT_EQ(Folder(), L"C:\\WINDOWS");
    }
    {
        const EnvironmentVariable empty(L"windir", L"");
        EXPECT_EQ(Folder(), L"C:\\WINDOWS");
    }
    const std::wstring longest = L"D:\\" + std::wstring(256, L'w');  // 259 characters
    {
        const EnvironmentVariable tooLong(L"windir", (longest + L"w").c_str());
        EXPECT_EQ(Folder(), L"C:\\WINDOWS");
    }
    {
        const EnvironmentVariable first(L"windir", longest.c_str());
        EXPECT_EQ(Folder(), longest);
    }
    const EnvironmentVariable second(L"windir", L"E:\\other");
    EXPECT_EQ(Folder(), longest);
    const EnvironmentVariable gone(L"windir", nullptr);
    EXPECT_EQ(Folder(), longest);
}

TEST(WindowsPath, HoldsTheFormattedTextBehindTheFolder)
{
    const std::wstring folder = Folder();
    wchar_t path[600];
    EXPECT_EQ(FormatWindowsPath(path, 600, L"\\INSTALLER\\"), folder.size() + 11);
    EXPECT_EQ(path, folder + L"\\INSTALLER\\");
    FormatWindowsPath(path, 600, L"\\SYSWOW64\\%hs", "100%s.exe");
    EXPECT_EQ(path, folder + L"\\SYSWOW64\\100%s.exe");
    FormatWindowsPath(path, 600, L"\\%s%lu", L"wide", 7ul);
    EXPECT_EQ(path, folder + L"\\wide7");
}

TEST(WindowsPath, IsCutToTheBuffer)
{
    const std::wstring whole = Folder() + L"\\text";
    for (size_t capacity = 1; capacity <= whole.size() + 2; ++capacity)
    {
        std::wstring buffer(whole.size() + 8, L'#');
        const size_t kept = std::min(whole.size(), capacity - 1);
        EXPECT_EQ(FormatWindowsPath(buffer.data(), static_cast<DWORD>(capacity), L"\\%s", L"text"), kept);
        EXPECT_EQ(std::wstring(buffer.c_str()), whole.substr(0, kept));
        EXPECT_EQ(buffer.find_first_not_of(L'#', capacity), std::wstring::npos);
    }
}

}  // namespace
