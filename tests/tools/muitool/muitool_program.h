// muitool.exe, run as from a shell.
#pragma once

#include "support/child_process.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

struct ToolResult
{
    int exitCode;
    std::string output;  // standard output and standard error, UTF-8, lines ending with "\n"
};

// A start of the tool.
struct ToolCall
{
    std::vector<std::wstring> arguments;
    std::wstring folder = {};            // the current folder; empty for this process's
    std::filesystem::path program = {};  // the built tool where it is empty
    std::vector<std::pair<std::wstring, std::optional<std::wstring>>> environment = {};
    bool withErrors = true;  // standard error belongs to the output
};

// The tool while it runs, to which a test may show a window.
class RunningTool
{
public:
    explicit RunningTool(const ToolCall& call);

    // The dialog or box that it shows, other than `known`; null when it ends without one or none appears
    // in a while.
    HWND WaitForDialog(HWND known = nullptr) const;

    // Waits for its end, which comes after a while in any case.
    ToolResult Result();

    DWORD ProcessId() const { return child_.Id(); }

private:
    arvmui_test::ChildProcess child_;
};

ToolResult RunCall(const ToolCall& call);
ToolResult RunTool(const std::vector<std::wstring>& arguments, const std::wstring& folder = {});

// The folder with the built programs, and their resource folder.
std::filesystem::path BuiltFolder();
