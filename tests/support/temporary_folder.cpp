#include "support/temporary_folder.h"

#include <windows.h>

#include <atomic>
#include <string>

namespace arvmui_test
{
namespace
{

// The process identifier alone may be reused while an earlier run's folder is still there.
std::wstring UniqueName()
{
    static std::atomic<unsigned> count{0};
    LARGE_INTEGER ticks = {};
    ::QueryPerformanceCounter(&ticks);
    return L"arvmui_test_" + std::to_wstring(::GetCurrentProcessId()) + L"_" + std::to_wstring(ticks.QuadPart) + L"_"
           + std::to_wstring(count++);
}

}  // namespace

TemporaryFolder::TemporaryFolder() : path_(std::filesystem::temp_directory_path() / UniqueName())
{
    std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TemporaryFolder::MakeFolder(std::wstring_view relative) const
{
    const std::filesystem::path folder = path_ / relative;
    std::filesystem::create_directories(folder);
    return folder;
}

std::filesystem::path TemporaryFolder::CopyIn(const std::filesystem::path& file, std::wstring_view relative) const
{
    const std::filesystem::path target = path_ / relative;
    std::filesystem::create_directories(target.parent_path());
    std::filesystem::copy_file(file, target, std::filesystem::copy_options::overwrite_existing);
    return target;
}

std::filesystem::path TestProgramPath()
{
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

std::filesystem::path TestProgramFolder()
{
    return TestProgramPath().parent_path();
}

}  // namespace arvmui_test
