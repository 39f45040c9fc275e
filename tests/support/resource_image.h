// Writes DLLs of nothing but string resources, so that a test says in its own lines what a resource
// library holds, and needs no build target for each. They also serve as the modules of whose
// translated resources a test speaks: copies with any name in any folder.
#pragma once

#include <windows.h>

#include <filesystem>
#include <map>
#include <string>

namespace arvmui_test
{

using Strings = std::map<unsigned, std::wstring>;

// Creates the folders above the file. Throws when it cannot be written.
void WriteResourceImage(const std::filesystem::path& path, const Strings& strings = {});

// As above, for paths beyond the length that ordinary calls accept; the folder must exist.
void WriteResourceImageAtLongPath(const std::wstring& path, const Strings& strings = {});

// A path in the form that has no length limit.
std::wstring LongPath(const std::wstring& path);

// A module that is loaded as long as the object lives.
class LoadedModule
{
public:
    // Writes the image and loads it. `loadedAs` is the spelling handed to the system ("plain." loads
    // a file without extension); the path itself if it is empty.
    explicit LoadedModule(
        const std::filesystem::path& path, const Strings& strings = {}, const std::filesystem::path& loadedAs = {});
    ~LoadedModule();
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    HMODULE Get() const { return module_; }

private:
    HMODULE module_;
};

}  // namespace arvmui_test
