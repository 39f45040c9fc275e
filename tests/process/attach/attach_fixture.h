// Starts the host programs and reads what they report.
#pragma once

#include "support/child_process.h"

#include <windows.h>

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace arvmui_test
{

// What one process reported.
class Report
{
public:
    const std::wstring& Text(const std::string& name) const;
    unsigned long long Number(const std::string& name) const;
    void Set(const std::string& name, const std::wstring& value) { values_[name] = value; }
    bool Empty() const { return values_.empty(); }

private:
    std::map<std::string, std::wstring> values_;
};

// The next report; an empty one when the process ends before.
Report ReadReport(ChildProcess& child);

using Variables = std::vector<std::pair<std::wstring, std::optional<std::wstring>>>;

// "<folder of the test programs>\<name>"
std::wstring ProgramFile(const std::wstring& name);

// Runs the host that the loader attaches the DLL to, with any command line.
ChildSettings HostSettings(const std::wstring& commandLine, const Variables& variables = {});
Report RunHost(const std::wstring& commandLine, const Variables& variables = {});

// Runs the host and, each started by the one before it, one more for each further line.
std::vector<Report> RunGenerations(const std::vector<std::wstring>& commandLines);

// Registry of a test's own, empty at first, in place of the system's for the processes under test.
class ScratchRegistry
{
public:
    ScratchRegistry();
    ~ScratchRegistry();
    ScratchRegistry(const ScratchRegistry&) = delete;
    ScratchRegistry& operator=(const ScratchRegistry&) = delete;

    const std::wstring& Key() const { return key_; }

    // Stores the value "UILocale" of the product's key; `hive` is L"user" or L"machine".
    void SetUILocale(const std::wstring& hive, const std::wstring& list) const;

private:
    std::wstring key_;
};

// What the loader arranges in its process before it loads the DLL.
struct Arrangement
{
    std::wstring commandLine = L"attach_loader.exe";
    std::wstring program;  // another copy of attach_loader.exe
    std::wstring library;  // another copy of the DLL
    LANGID userLanguage = 0x0409;
    LANGID systemLanguage = 0x0409;
    LANGID userUILanguage = 0x0409;
    LANGID systemUILanguage = 0x0409;
    Variables variables;
};

// Runs the loader in a system that has no "UILocale" unless the registry has it.
ChildSettings LoaderSettings(const ScratchRegistry& registry, const Arrangement& arrangement);
Report RunLoader(const ScratchRegistry& registry, const Arrangement& arrangement);

// The tag of a folder under the resource folder, from the path of a resource library.
std::wstring FolderOf(const std::wstring& resourceLibrary);

}  // namespace arvmui_test
