#include "commands.h"
#include "console.h"
#include "stored_locale_list.h"
#include "text_conversion.h"
#include "tool_error.h"

#include <windows.h>

#include <memory>

namespace
{

struct Scope
{
    bool isMachine = false;

    HKEY Root() const { return isMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }
    std::string Name() const { return isMachine ? "the machine" : "the user"; }
};

[[noreturn]] void Refuse(const Scope& scope, const char* action, LSTATUS status)
{
    std::string text = "cannot " + std::string(action) + " the list of " + scope.Name() + ": "
                       + SystemErrorText(static_cast<DWORD>(status));
    if (status == ERROR_ACCESS_DENIED && scope.isMachine) text += "; an administrator can";
    throw ToolError(text);
}

int GetList(const Scope& scope)
{
    std::wstring list;
    const LSTATUS status = ReadStoredLocaleList(scope.Root(), list);
    if (status == ERROR_FILE_NOT_FOUND)
    {
        PrintError("muitool: no list is stored for " + scope.Name());
        return kFindings;
    }
    if (status != ERROR_SUCCESS) Refuse(scope, "read", status);
    PrintLine(Utf8(list));
    return kSuccess;
}

int SetList(const Scope& scope, const std::string& list)
{
    const LSTATUS status = StoreLocaleList(scope.Root(), Wide(list));
    if (status != ERROR_SUCCESS) Refuse(scope, "store", status);
    return kSuccess;
}

int ClearList(const Scope& scope)
{
    const LSTATUS status = RemoveStoredLocaleList(scope.Root());
    if (status != ERROR_SUCCESS) Refuse(scope, "remove", status);
    return kSuccess;
}

}  // namespace

void AddLocaleCommand(CommandContext& context)
{
    struct Options
    {
        Scope scope;
        std::string list;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        context.app.add_subcommand("locale", "Read or change the list of preferred locales in the registry");
    command->require_subcommand(1);

    const auto add = [&](const char* name, const char* description)
    {
        CLI::App* const action = command->add_subcommand(name, description);
        action->add_flag("--machine", options->scope.isMachine, "the list of the machine instead of the user's");
        return action;
    };
    add("get", "Print the stored list; exit code 1 when there is none")
        ->callback([options, &context] { context.exitCode = GetList(options->scope); });
    CLI::App* const set = add("set", "Store a list");
    set->add_option("LIST", options->list, "locales and keywords in order of preference, such as de,en")->required();
    set->callback([options, &context] { context.exitCode = SetList(options->scope, options->list); });
    add("clear", "Remove the stored list")
        ->callback([options, &context] { context.exitCode = ClearList(options->scope); });
}
