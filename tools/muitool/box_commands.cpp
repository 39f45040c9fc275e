#include "commands.h"
#include "console.h"
#include "library_api.h"
#include "text_conversion.h"
#include "tool_error.h"

#include <map>
#include <memory>

// The library's messages and dialogs.

namespace
{

int ShowMessage(DWORD code)
{
    wchar_t* text = nullptr;
    const DWORD length = Library().ARVMUI_FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
        reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    if (length == 0)
    {
        PrintError("muitool: the system has no text for " + std::to_string(code));
        return kFindings;
    }
    Print(Utf8({text, length}));
    ::LocalFree(text);
    return kSuccess;
}

// Prints the button, so that scripts can use the answer.
int ShowBox(const std::string& text, const std::string& caption, UINT type)
{
    static const std::map<int, const char*> names = {{IDOK, "ok"}, {IDCANCEL, "cancel"}, {IDABORT, "abort"},
        {IDRETRY, "retry"}, {IDIGNORE, "ignore"}, {IDYES, "yes"}, {IDNO, "no"}, {IDTRYAGAIN, "tryagain"},
        {IDCONTINUE, "continue"}};
    const int button = Library().ARVMUI_MessageBoxW(nullptr, Wide(text).c_str(), Wide(caption).c_str(), type);
    const auto name = names.find(button);
    if (name == names.end())
        throw ToolError("the message box could not be shown: " + SystemErrorText(::GetLastError()));
    PrintLine(name->second);
    return kSuccess;
}

// The candidates do not matter, only that the user is asked for them. None at all is a refusal.
DWORD ARVMUI_CALLBACK StopAtFirst(const WCHAR* locale, void* context)
{
    if (!locale) *static_cast<bool*>(context) = true;
    return TRUE;
}

int Ask()
{
    constexpr wchar_t kNoAnswer[] = L"\t";
    const wchar_t* const answer = Library().ARVMUI_GetDescriptor()->LocaleHintTable[HINT_ASKED];
    bool isRefused = std::wstring_view(answer) == kNoAnswer;  // when the tool was started
    if (*answer == L'\0') Library().ARVMUI_EnumLocalesW(L"ask", StopAtFirst, &isRefused);
    if (isRefused) return kFindings;
    if (std::wstring_view(answer) == kNoAnswer)
        throw ToolError("the language dialog could not be shown; there may be no languages to choose from");
    PrintLine(Utf8(answer));
    return kSuccess;
}

int EditSettings(bool isMachine)
{
    ::SetLastError(ERROR_SUCCESS);
    if (Library().ARVMUI_SettingDialogBoxW(nullptr, nullptr, nullptr, isMachine ? 1 : 0)) return kSuccess;
    throw ToolError("the settings were not stored: " + SystemErrorText(::GetLastError()));
}

void AddMessageCommand(CommandContext& context)
{
    const auto code = std::make_shared<DWORD>(0);
    CLI::App* const command = context.app.add_subcommand("message", "Print the system's text for an error code");
    command->add_option("CODE", *code, "error code")->required();
    command->callback([code, &context] { context.exitCode = ShowMessage(*code); });
}

void AddBoxCommand(CommandContext& context)
{
    struct Options
    {
        std::string text;
        std::string caption = "muitool";
        std::string buttons = "ok";
    };
    const auto options = std::make_shared<Options>();
    static const std::map<std::string, UINT> types = {{"ok", MB_OK}, {"okcancel", MB_OKCANCEL}, {"yesno", MB_YESNO},
        {"yesnocancel", MB_YESNOCANCEL}, {"retrycancel", MB_RETRYCANCEL}, {"abortretryignore", MB_ABORTRETRYIGNORE},
        {"canceltrycontinue", MB_CANCELTRYCONTINUE}};
    CLI::App* const command = context.app.add_subcommand("box", "Show a message box and print the button pressed");
    command->add_option("TEXT", options->text, "the message")->required();
    command->add_option("--caption", options->caption, "the caption")->capture_default_str();
    command->add_option("--buttons", options->buttons, "which buttons it has")
        ->transform(CLI::IsMember(&types, CLI::ignore_case))
        ->capture_default_str();
    command->callback([options, &context]
        { context.exitCode = ShowBox(options->text, options->caption, types.at(options->buttons)); });
}

}  // namespace

void AddBoxCommands(CommandContext& context)
{
    AddMessageCommand(context);
    AddBoxCommand(context);
    context.app.add_subcommand("ask", "Show the language dialog and print the choice; exit code 1 when it was refused")
        ->callback([&context] { context.exitCode = Ask(); });

    const auto isMachine = std::make_shared<bool>(false);
    CLI::App* const settings = context.app.add_subcommand("settings", "Show the dialog of preferred languages");
    settings->add_flag("--machine", *isMachine, "the list of the machine instead of the user's");
    settings->callback([isMachine, &context] { context.exitCode = EditSettings(*isMachine); });
}
