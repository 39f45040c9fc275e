// A library's entry point in a real process of RUNDLL32, whose arguments arrive as they were given.
#include "foundation/rundll_launcher.h"

#include "cmdline/argument_escape.h"
#include "foundation/heap.h"
#include "foundation/process_info.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace
{

namespace fs = std::filesystem;

constexpr DWORD kTimeoutMs = 30000;

// What the entry point wrote; the file bears the short or the long name of the library.
std::string RecordedText(const fs::path& folder)
{
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
    {
        if (entry.path().extension() != L".txt") continue;
        std::ifstream file(entry.path(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
    return "<no file>";
}

TEST(RealLaunch, ArgumentsArriveAsTheyWereGiven)
{
    const arvmui_test::TemporaryFolder folder;
    const fs::path library =
        folder.CopyIn(arvmui_test::TestProgramFolder() / L"argument_recorder.dll", L"a folder\\a recorder.dll");
    const std::vector<const wchar_t*> arguments = {
        L"plain", L"", L"two words", L"C:\\folder\\file", L"say \"hi\"", L"\x65E5\x672C, 100%s", L"\\u0041"};

    STARTUPINFOW startup;
    PROCESS_INFORMATION process;
    ASSERT_TRUE(arvmui::LaunchLibraryEntryPoint(&startup, &process, library.c_str(), L"RecordArguments",
        static_cast<DWORD>(arguments.size()), arguments.data()));
    EXPECT_EQ(arvmui::GetParentProcessId(process.dwProcessId), ::GetCurrentProcessId());
    EXPECT_EQ(::WaitForSingleObject(process.hProcess, kTimeoutMs), WAIT_OBJECT_0);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);

    const std::string text = RecordedText(library.parent_path());
    DWORD count = 0;
    wchar_t** const arrived = arvmui::BuildArgumentVector(text.c_str(), &count);
    ASSERT_NE(arrived, nullptr);
    EXPECT_EQ(std::vector<std::wstring>(arrived, arrived + count),
        std::vector<std::wstring>(arguments.begin(), arguments.end()));
    ARVMUI_free(arrived);
}

}  // namespace
