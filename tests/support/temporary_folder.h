// A folder of one test's own, removed with everything in it when the test ends.
#pragma once

#include <filesystem>
#include <string_view>

namespace arvmui_test
{

class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

    // Creates a folder below, with the folders above it.
    std::filesystem::path MakeFolder(std::wstring_view relative) const;

    // Copies a file to a place below, creating the folders above it.
    std::filesystem::path CopyIn(const std::filesystem::path& file, std::wstring_view relative) const;

private:
    std::filesystem::path path_;
};

// The folder of the running test program, beside which the built fixtures lie.
std::filesystem::path TestProgramFolder();
std::filesystem::path TestProgramPath();

}  // namespace arvmui_test
