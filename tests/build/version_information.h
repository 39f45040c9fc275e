// Reads a file's VERSIONINFO through the system.
#pragma once

#include <windows.h>

#include <map>
#include <string>

namespace arvmui::test
{
struct VersionInformation
{
    bool present = false;
    VS_FIXEDFILEINFO fixed{};
    std::map<std::wstring, std::wstring> texts;  // of the first language
};

VersionInformation ReadVersionInformation(const std::wstring& file);
}  // namespace arvmui::test
