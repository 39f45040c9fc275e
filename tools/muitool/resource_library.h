// What a resource library holds, read as data: no code of it runs, whatever it is.
#pragma once

#include <windows.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

class ResourceLibrary
{
public:
    // A ToolError when the file cannot be opened.
    explicit ResourceLibrary(const std::filesystem::path& path);
    ~ResourceLibrary();
    ResourceLibrary(const ResourceLibrary&) = delete;
    ResourceLibrary& operator=(const ResourceLibrary&) = delete;

    HMODULE Module() const { return module_; }
    const std::filesystem::path& Path() const { return path_; }

    // All strings by number, those of every language in the file.
    std::map<UINT, std::wstring> Strings() const;

    // The bytes of a resource; empty where there is none.
    std::vector<BYTE> Bytes(const wchar_t* type, const wchar_t* name) const;

    // Numbers of the resources of a type, ascending.
    std::vector<UINT> Numbers(const wchar_t* type) const;

private:
    std::filesystem::path path_;
    HMODULE module_;
};
