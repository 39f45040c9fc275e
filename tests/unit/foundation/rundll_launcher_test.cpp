// How a process for one of the library's entry points is started.
#include "foundation/rundll_launcher.h"

#include "resources/process_state.h"
#include "support/busy_blocks.h"
#include "support/import_replacement.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

constexpr wchar_t kWindows[] = L"Q:\\Win Dir";

struct Start
{
    int count = 0;
    std::wstring line;
    bool plain = false;  // nothing but the line and the two records was given
    STARTUPINFOW startup = {};
    PROCESS_INFORMATION process = {};
};

Start g_start;
BOOL g_startResult = TRUE;
size_t g_allocationsLeft = SIZE_MAX;

BOOL WINAPI FakeCreateProcess(LPCWSTR application, LPWSTR line, LPSECURITY_ATTRIBUTES processSecurity,
    LPSECURITY_ATTRIBUTES threadSecurity, BOOL inherit, DWORD flags, LPVOID environment, LPCWSTR folder,
    LPSTARTUPINFOW startup, LPPROCESS_INFORMATION process)
{
    ++g_start.count;
    g_start.line = line;
    g_start.plain =
        !application && !processSecurity && !threadSecurity && !inherit && flags == 0 && !environment && !folder;
    g_start.startup = *startup;
    g_start.process = *process;
    if (g_startResult)
        process->dwProcessId = 4711;
    else
        ::SetLastError(ERROR_FILE_NOT_FOUND);
    return g_startResult;
}

bool Refuse()
{
    if (g_allocationsLeft == SIZE_MAX) return false;
    if (g_allocationsLeft == 0) return true;
    --g_allocationsLeft;
    return false;
}

LPVOID WINAPI CountedAlloc(HANDLE heap, DWORD flags, SIZE_T bytes)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc);
    return Refuse() ? nullptr : real(heap, flags, bytes);
}

LPVOID WINAPI CountedReAlloc(HANDLE heap, DWORD flags, LPVOID block, SIZE_T bytes)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapReAlloc);
    return Refuse() ? nullptr : real(heap, flags, block, bytes);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(CreateProcessW, &FakeCreateProcess)
ARVMUI_REPLACE_IMPORT(HeapAlloc, &CountedAlloc)
ARVMUI_REPLACE_IMPORT(HeapReAlloc, &CountedReAlloc)

namespace
{

using arvmui::Descriptor;
using arvmui::LaunchLibraryEntryPoint;
namespace fs = std::filesystem;

std::wstring ShortPath(const fs::path& path)
{
    wchar_t buffer[MAX_PATH] = {};
    ::GetShortPathNameW(path.c_str(), buffer, MAX_PATH);
    return buffer;
}

class Launch : public testing::Test
{
protected:
    Launch() : library_(folder_.MakeFolder(L"a folder") / L"a library.dll")
    {
        // Before the first use: the folder is asked for once in a process.
        ::SetEnvironmentVariableW(L"windir", kWindows);
        arvmui_test::WriteResourceImage(library_);
        g_start = {};
        g_startResult = TRUE;
        g_allocationsLeft = SIZE_MAX;
        std::memset(&startup_, 0x55, sizeof(startup_));
        std::memset(&process_, 0x55, sizeof(process_));
    }
    ~Launch() override
    {
        g_allocationsLeft = SIZE_MAX;
        Descriptor().module = nullptr;
    }

    BOOL Run(const std::vector<const wchar_t*>& arguments)
    {
        return LaunchLibraryEntryPoint(
            &startup_, &process_, library_.c_str(), L"Entry", static_cast<DWORD>(arguments.size()), arguments.data());
    }
    std::wstring Line(const std::wstring& arguments) const
    {
        return L"\"Q:\\Win Dir\\SYSTEM32\\RUNDLL32.EXE\" " + ShortPath(library_) + L",Entry" + arguments;
    }

    arvmui_test::TemporaryFolder folder_;
    fs::path library_;
    STARTUPINFOW startup_;
    PROCESS_INFORMATION process_;
};

TEST_F(Launch, NamesTheLauncherTheShortLibraryPathAndTheEntryPoint)
{
    ASSERT_EQ(ShortPath(library_).find(L' '), std::wstring::npos) << "the file system has no short names";
    EXPECT_TRUE(Run({}));
    EXPECT_EQ(g_start.line, Line(L""));
}

TEST_F(Launch, QuotesAndEscapesEveryArgument)
{
    EXPECT_TRUE(Run({L"one", L"", L"two words", L"C:\\x\\", L"say \"hi\"", L"\x65E5\x672C%s"}));
    EXPECT_EQ(g_start.line,
        Line(L" \"one\" \"\" \"two words\" \"C:\\\\x\\\\\" \"say \\u0022hi\\u0022\" \"\\u65E5\\u672C%s\""));
}

TEST_F(Launch, ArgumentsEndAtTheCount)
{
    const wchar_t* const arguments[] = {L"one", L"two", L"three"};
    EXPECT_TRUE(LaunchLibraryEntryPoint(&startup_, &process_, library_.c_str(), L"Entry", 2, arguments));
    EXPECT_EQ(g_start.line, Line(L" \"one\" \"two\""));
}

TEST_F(Launch, ArgumentsEndAtANull)
{
    EXPECT_TRUE(Run({L"one", nullptr, L"three"}));
    EXPECT_EQ(g_start.line, Line(L" \"one\""));
}

TEST_F(Launch, NeedsNoArgumentsWithoutACount)
{
    EXPECT_TRUE(LaunchLibraryEntryPoint(&startup_, &process_, library_.c_str(), L"Entry", 0, nullptr));
    EXPECT_EQ(g_start.line, Line(L""));
}

TEST_F(Launch, LongLinesAreWhole)
{
    const std::wstring argument(5000, L'a');
    EXPECT_TRUE(Run({argument.c_str(), L"end"}));
    EXPECT_EQ(g_start.line, Line(L" \"" + argument + L"\" \"end\""));
}

TEST_F(Launch, GivesTheSystemTheLineAndClearedRecordsOnly)
{
    EXPECT_TRUE(Run({L"one"}));
    EXPECT_TRUE(g_start.plain);
    STARTUPINFOW startup = {};
    startup.cb = 104;
    EXPECT_EQ(std::memcmp(&g_start.startup, &startup, sizeof(startup)), 0);
    const PROCESS_INFORMATION process = {};
    EXPECT_EQ(std::memcmp(&g_start.process, &process, sizeof(process)), 0);
    EXPECT_EQ(process_.dwProcessId, 4711u);
}

TEST_F(Launch, FailureOfTheSystemIsReported)
{
    g_startResult = FALSE;
    EXPECT_FALSE(Run({L"one"}));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(Launch, WithoutALibraryPathTheLibraryItselfIsMeant)
{
    const arvmui_test::LoadedModule module(folder_.Path() / L"own library.dll");
    Descriptor().module = module.Get();
    EXPECT_TRUE(LaunchLibraryEntryPoint(&startup_, &process_, nullptr, L"Entry", 0, nullptr));
    EXPECT_EQ(g_start.line,
        L"\"Q:\\Win Dir\\SYSTEM32\\RUNDLL32.EXE\" " + ShortPath(folder_.Path() / L"own library.dll") + L",Entry");
}

TEST_F(Launch, FailsWithoutAPathOfTheLibraryItself)
{
    Descriptor().module = reinterpret_cast<HMODULE>(static_cast<ULONG_PTR>(0x12340000));
    EXPECT_FALSE(LaunchLibraryEntryPoint(&startup_, &process_, nullptr, L"Entry", 0, nullptr));
    EXPECT_EQ(g_start.count, 0);
}

TEST_F(Launch, FailsForALibraryThatDoesNotExist)
{
    library_ = folder_.Path() / L"missing.dll";
    EXPECT_FALSE(Run({L"one"}));
    EXPECT_EQ(g_start.count, 0);
}

// One attempt for each allocation that can fail: the line, and three pieces of each argument.
TEST_F(Launch, FailsWithoutMemoryAndFreesTheLine)
{
    const std::vector<const wchar_t*> arguments = {L"one", L"two"};
    const wchar_t* const path = library_.c_str();
    const auto blocksBehindAnAttempt = [&](size_t allocations)
    {
        g_allocationsLeft = allocations;
        const BOOL started = LaunchLibraryEntryPoint(&startup_, &process_, path, L"Entry", 2, arguments.data());
        g_allocationsLeft = SIZE_MAX;
        EXPECT_FALSE(started);
        return arvmui_test::CountBusyBlocks();
    };
    const size_t before = blocksBehindAnAttempt(0);
    for (size_t allocations = 0; allocations < 7; ++allocations)
        EXPECT_EQ(blocksBehindAnAttempt(allocations), before) << allocations;
    EXPECT_EQ(g_start.count, 0);
}

TEST_F(Launch, FreesTheLineOnSuccessAndFailure)
{
    g_start.line.reserve(2000);
    for (const BOOL result : {TRUE, FALSE})
    {
        g_startResult = result;
        Run({L"one"});
        const size_t before = arvmui_test::CountBusyBlocks();
        Run({L"one"});
        EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
    }
}

}  // namespace
