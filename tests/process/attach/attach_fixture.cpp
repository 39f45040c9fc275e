#include "process/attach/attach_fixture.h"

#include "support/temporary_folder.h"

#include <cstdlib>

namespace arvmui_test
{

const std::wstring& Report::Text(const std::string& name) const
{
    static const std::wstring kMissing = L"(not reported)";
    const auto found = values_.find(name);
    return found == values_.end() ? kMissing : found->second;
}

unsigned long long Report::Number(const std::string& name) const
{
    wchar_t* end = nullptr;
    const std::wstring& text = Text(name);
    const unsigned long long value = std::wcstoull(text.c_str(), &end, 10);
    return end == text.c_str() ? ~0ull : value;
}

Report ReadReport(ChildProcess& child)
{
    Report report;
    std::string line;
    while (child.ReadLine(line))
    {
        const size_t equals = line.find('=');
        if (equals == std::string::npos) continue;
        const std::string name = line.substr(0, equals);
        if (name == "end") break;
        report.Set(name, WideFromUtf8(line.substr(equals + 1)));
    }
    return report;
}

std::wstring ProgramFile(const std::wstring& name)
{
    return (TestProgramFolder() / name).wstring();
}

ChildSettings HostSettings(const std::wstring& commandLine, const Variables& variables)
{
    ChildSettings settings;
    settings.application = ProgramFile(L"attach_host.exe");
    settings.commandLine = commandLine;
    settings.environment = variables;
    return settings;
}

Report RunHost(const std::wstring& commandLine, const Variables& variables)
{
    ChildProcess child(HostSettings(commandLine, variables));
    return ReadReport(child);
}

std::vector<Report> RunGenerations(const std::vector<std::wstring>& commandLines)
{
    std::wstring children;
    for (size_t i = 1; i < commandLines.size(); ++i) children += (i == 1 ? L"" : L"|") + commandLines[i];

    ChildProcess child(HostSettings(commandLines.front(), {{L"ARVMUI_TEST_CHILDREN", children}}));
    std::vector<Report> reports;
    for (size_t i = 0; i < commandLines.size(); ++i) reports.push_back(ReadReport(child));
    return reports;
}

ScratchRegistry::ScratchRegistry() : key_(L"Software\\arvmui_attach_test_" + std::to_wstring(::GetCurrentProcessId()))
{
    ::RegDeleteTreeW(HKEY_CURRENT_USER, key_.c_str());
}

ScratchRegistry::~ScratchRegistry()
{
    ::RegDeleteTreeW(HKEY_CURRENT_USER, key_.c_str());
}

void ScratchRegistry::SetUILocale(const std::wstring& hive, const std::wstring& list) const
{
    const std::wstring key = key_ + L"\\" + hive + L"\\SOFTWARE\\Pelkor\\MUI";
    ::RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"UILocale", REG_SZ, list.c_str(),
        static_cast<DWORD>((list.size() + 1) * sizeof(wchar_t)));
}

ChildSettings LoaderSettings(const ScratchRegistry& registry, const Arrangement& arrangement)
{
    ChildSettings settings;
    settings.application = arrangement.program.empty() ? ProgramFile(L"attach_loader.exe") : arrangement.program;
    settings.commandLine = arrangement.commandLine;
    settings.environment = arrangement.variables;
    const auto set = [&settings](const wchar_t* name, const std::wstring& value)
    { settings.environment.emplace_back(std::wstring(L"ARVMUI_TEST_") + name, value); };
    set(L"LIBRARY", arrangement.library.empty() ? ProgramFile(L"arvmui64.dll") : arrangement.library);
    set(L"REGISTRY", registry.Key());
    set(L"USER_LANGUAGE", std::to_wstring(arrangement.userLanguage));
    set(L"SYSTEM_LANGUAGE", std::to_wstring(arrangement.systemLanguage));
    set(L"USER_UI_LANGUAGE", std::to_wstring(arrangement.userUILanguage));
    set(L"SYSTEM_UI_LANGUAGE", std::to_wstring(arrangement.systemUILanguage));
    return settings;
}

Report RunLoader(const ScratchRegistry& registry, const Arrangement& arrangement)
{
    ChildProcess child(LoaderSettings(registry, arrangement));
    return ReadReport(child);
}

std::wstring FolderOf(const std::wstring& resourceLibrary)
{
    return std::filesystem::path(resourceLibrary).parent_path().filename().wstring();
}

}  // namespace arvmui_test
