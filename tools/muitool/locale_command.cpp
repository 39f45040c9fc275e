#include "commands.h"
#include "console.h"
#include "text_conversion.h"
#include "tool_error.h"

#include <windows.h>

#include <memory>

// The locale list that the library finds in the registry: in the 32-bit view, for the user and for the machine.

namespace
{

constexpr wchar_t kKey[] = L"SOFTWARE\\Pelkor\\MUI";
constexpr wchar_t kValue[] = L"UILocale";

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

class Key
{
public:
    Key() = default;
    ~Key()
    {
        if (key_) ::RegCloseKey(key_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    // Creates it where it is missing.
    void OpenForWriting(const Scope& scope, const char* action)
    {
        const LSTATUS status =
            ::RegCreateKeyExW(scope.Root(), kKey, 0, nullptr, 0, KEY_WRITE | KEY_WOW64_32KEY, nullptr, &key_, nullptr);
        if (status != ERROR_SUCCESS) Refuse(scope, action, status);
    }

    LSTATUS OpenForReading(const Scope& scope)
    {
        return ::RegOpenKeyExW(scope.Root(), kKey, 0, KEY_READ | KEY_WOW64_32KEY, &key_);
    }

    HKEY Get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

int GetList(const Scope& scope)
{
    Key key;
    wchar_t text[256] = L"";
    DWORD size = sizeof(text);
    LSTATUS status = key.OpenForReading(scope);
    if (status == ERROR_SUCCESS)
        status = ::RegGetValueW(key.Get(), nullptr, kValue, RRF_RT_REG_SZ, nullptr, text, &size);
    if (status == ERROR_FILE_NOT_FOUND)
    {
        PrintError("muitool: no list is stored for " + scope.Name());
        return kFindings;
    }
    if (status != ERROR_SUCCESS) Refuse(scope, "read", status);
    PrintLine(Utf8(text));
    return kSuccess;
}

int SetList(const Scope& scope, const std::string& list)
{
    const std::wstring text = Wide(list);
    Key key;
    key.OpenForWriting(scope, "store");
    const LSTATUS status = ::RegSetValueExW(key.Get(), kValue, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    if (status != ERROR_SUCCESS) Refuse(scope, "store", status);
    return kSuccess;
}

int ClearList(const Scope& scope)
{
    Key key;
    key.OpenForWriting(scope, "remove");
    const LSTATUS status = ::RegDeleteValueW(key.Get(), kValue);
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) Refuse(scope, "remove", status);
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
