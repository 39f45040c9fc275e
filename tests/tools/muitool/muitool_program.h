// muitool.exe, run as from a shell.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

struct ToolResult
{
    int exitCode;
    std::string output;  // standard output and standard error, UTF-8, lines ending with "\n"
};

ToolResult RunTool(const std::vector<std::wstring>& arguments, const std::wstring& folder = {});

// The folder with the built programs, and their resource folder.
std::filesystem::path BuiltFolder();
