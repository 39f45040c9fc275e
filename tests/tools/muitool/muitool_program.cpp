#include "muitool_program.h"

#include "support/child_process.h"
#include "support/temporary_folder.h"

#include <algorithm>

using arvmui_test::ChildProcess;
using arvmui_test::ChildSettings;

std::filesystem::path BuiltFolder()
{
    return arvmui_test::TestProgramFolder().parent_path().parent_path() / L"bin";
}

ToolResult RunTool(const std::vector<std::wstring>& arguments, const std::wstring& folder)
{
    ChildSettings settings;
    settings.application = (BuiltFolder() / L"muitool.exe").wstring();
    settings.commandLine = L"muitool.exe";
    for (const std::wstring& argument : arguments) settings.commandLine += L" \"" + argument + L'"';
    settings.folder = folder;
    settings.withErrors = true;
    ChildProcess child(settings);
    child.CloseInput();
    ToolResult result;
    result.output = child.ReadAll();
    std::erase(result.output, '\r');
    result.exitCode = static_cast<int>(child.Wait().value_or(~0u));
    return result;
}
