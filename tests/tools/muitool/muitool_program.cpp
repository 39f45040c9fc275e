#include "muitool_program.h"

#include "support/box_window.h"
#include "support/dialog_controls.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <thread>

using arvmui_test::ChildSettings;

namespace
{

constexpr DWORD kPatienceMs = 30000;
constexpr UINT kNotEnded = 98;  // exit code

ChildSettings SettingsFor(const ToolCall& call)
{
    // The desktop is there before the tool shows its first window: one that the tool made would inherit its
    // output, which then never ended.
    ::GetDesktopWindow();

    ChildSettings settings;
    settings.application = (call.program.empty() ? BuiltFolder() / L"muitool.exe" : call.program).wstring();
    settings.commandLine = L"muitool.exe";
    for (const std::wstring& argument : call.arguments) settings.commandLine += L" \"" + argument + L'"';
    settings.environment = call.environment;
    settings.folder = call.folder;
    settings.withErrors = call.withErrors;
    return settings;
}

}  // namespace

RunningTool::RunningTool(const ToolCall& call) : child_(SettingsFor(call))
{
    child_.CloseInput();
}

HWND RunningTool::WaitForDialog(HWND known) const
{
    HWND dialog = nullptr;
    arvmui_test::WaitUntil(
        [&]
        {
            for (const HWND found : arvmui_test::VisibleDialogsOfProcess(child_.Id()))
                if (found != known) dialog = found;
            return dialog || ::WaitForSingleObject(child_.Process(), 0) != WAIT_TIMEOUT;
        });
    return dialog;
}

ToolResult RunningTool::Result()
{
    // A box that a test could not answer would be waited for without end.
    std::thread guard(
        [this]
        {
            if (::WaitForSingleObject(child_.Process(), kPatienceMs) == WAIT_TIMEOUT)
                ::TerminateProcess(child_.Process(), kNotEnded);
        });
    ToolResult result;
    result.output = child_.ReadAll();
    guard.join();
    std::erase(result.output, '\r');
    result.exitCode = static_cast<int>(child_.Wait().value_or(~0u));
    return result;
}

ToolResult RunCall(const ToolCall& call)
{
    const ToolResult result = RunningTool(call).Result();
    // Once in several thousand times Wine ends a program before its first line. muitool has other exit codes.
    const bool hasRun = result.exitCode != -1 || !result.output.empty();
    return hasRun ? result : RunningTool(call).Result();
}

ToolResult RunTool(const std::vector<std::wstring>& arguments, const std::wstring& folder)
{
    return RunCall(ToolCall{.arguments = arguments, .folder = folder});
}

std::filesystem::path BuiltFolder()
{
    return arvmui_test::TestProgramFolder().parent_path().parent_path() / L"bin";
}
