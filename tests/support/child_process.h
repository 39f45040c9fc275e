// A program that a test starts in a process of its own. Its output comes through a pipe, and it
// sees the end of its input when the test closes it.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace arvmui_test
{

struct ChildSettings
{
    std::wstring application;  // full path, so that the command line may have any shape
    std::wstring commandLine;
    // Variables that differ from this process's; no value removes the variable.
    std::vector<std::pair<std::wstring, std::optional<std::wstring>>> environment;
    std::wstring folder;      // current folder; empty for this process's
    DWORD flags = 0;          // further creation flags
    bool withErrors = false;  // standard error comes through the pipe too
};

class ChildProcess
{
public:
    explicit ChildProcess(const ChildSettings& settings);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool Started() const { return process_ != nullptr; }
    HANDLE Process() const { return process_; }
    DWORD Id() const { return id_; }

    // Up to the next line end, which is left out; false at the end of the output.
    bool ReadLine(std::string& line);
    std::string ReadAll();

    void CloseInput();
    // The exit code; empty when the process does not end within a minute.
    std::optional<DWORD> Wait();

private:
    HANDLE process_ = nullptr;
    DWORD id_ = 0;
    HANDLE input_ = nullptr;
    HANDLE output_ = nullptr;
};

// Text of a child's output, and back.
std::wstring WideFromUtf8(const std::string& text);
std::string Utf8FromWide(const std::wstring& text);

}  // namespace arvmui_test
