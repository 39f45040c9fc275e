#include "commands.h"
#include "console.h"
#include "file_bytes.h"
#include "finding_output.h"
#include "library_api.h"
#include "settings_check.h"
#include "text_conversion.h"
#include "tool_error.h"

#include <memory>
#include <optional>
#include <vector>

// Settings files, text files and encodings, read as the library reads them.

namespace
{

void RequireReadable(const std::wstring& path)
{
    const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_READ,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        throw ToolError("cannot open " + Utf8(path) + ": " + SystemErrorText(::GetLastError()));
    ::CloseHandle(file);
}

// A null pointer for an argument that was not given.
const wchar_t* TextOrNull(const std::optional<std::wstring>& text)
{
    return text ? text->c_str() : nullptr;
}

// A value, the keys of a section or the sections of a file. Grows until nothing is cut.
std::vector<std::wstring> ReadSettings(
    const std::wstring& path, const std::optional<std::wstring>& section, const std::optional<std::wstring>& key)
{
    const bool isList = !section || !key;
    const DWORD missing = isList ? 2 : 1;
    for (std::vector<wchar_t> buffer(1024);; buffer.resize(buffer.size() * 2))
    {
        const DWORD size = static_cast<DWORD>(buffer.size());
        const DWORD length = Library().ARVMUI_GetPrivateProfileStringW(
            TextOrNull(section), TextOrNull(key), nullptr, buffer.data(), size, path.c_str());
        if (length >= size - missing && size < 0x1000000) continue;
        if (!isList) return {buffer.data()};
        std::vector<std::wstring> names;
        for (const wchar_t* name = buffer.data(); *name; name += names.back().size() + 1) names.emplace_back(name);
        return names;
    }
}

int ShowSettings(
    const std::string& file, const std::optional<std::wstring>& section, const std::optional<std::wstring>& key)
{
    const std::wstring path = Wide(file);
    RequireReadable(path);
    const std::vector<std::wstring> texts = ReadSettings(path, section, key);
    for (const std::wstring& text : texts)
        if (!text.empty()) PrintLine(Utf8(text));
    return texts.empty() || texts.front().empty() ? kFindings : kSuccess;
}

// The file's own folder stands for the module's: a text file lies in a locale folder of a module.
int ShowText(const std::string& name, const std::string& module, const std::string& locales)
{
    HMODULE loaded = nullptr;
    if (!module.empty())
    {
        loaded = ::LoadLibraryExW(Wide(module).c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
        if (!loaded) throw ToolError("cannot open " + module + ": " + SystemErrorText(::GetLastError()));
    }
    const std::wstring list = Wide(locales);
    Library().ARVMUI_SetMessagePopup(FALSE, nullptr);  // what fails is told below, not in a box
    wchar_t* text = nullptr;
    if (!Library().ARVMUI_ReadTextFileW(loaded, Wide(name).c_str(), locales.empty() ? nullptr : list.c_str(), &text))
    {
        PrintError("muitool: no locale folder has " + name + ": " + SystemErrorText(::GetLastError()));
        return kFindings;
    }
    Print(Utf8(text));
    Library().ARVMUI_free(text);
    return kSuccess;
}

int ShowEncoding(const std::string& name)
{
    const DWORD codePage = Library().ARVMUI_TextEncodingToCodePageW(Wide(name).c_str());
    CPINFOEXW info = {};
    const bool isKnown = ::GetCPInfoExW(codePage, 0, &info) != 0;
    PrintLine(std::to_string(codePage) + (isKnown ? "\t" + Utf8(info.CodePageName) : ""));
    return isKnown ? kSuccess : kFindings;
}

void AddIniCheckCommand(CommandContext& context, CLI::App& ini)
{
    struct Options
    {
        std::string file;
        bool json = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = ini.add_subcommand(
        "check", "Check a settings file for what is passed over in silence; exit code 1 when something is wrong");
    command->add_option("FILE", options->file, "settings file")->required();
    command->add_flag("--json", options->json, "print one JSON array");
    command->callback(
        [options, &context]
        {
            Findings findings;
            const std::filesystem::path file = Wide(options->file);
            CheckSettings(file, ReadFileBytes(file), findings);
            context.exitCode = ReportFindings(findings, options->json);
        });
}

void AddIniCommand(CommandContext& context)
{
    struct Options
    {
        std::string file;
        std::string section;
        std::string key;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        context.app.add_subcommand("ini", "Read a settings file: its sections, the keys of one, or a value");
    CLI::Option* const file = command->add_option("FILE", options->file, "settings file");
    CLI::Option* const section = command->add_option("SECTION", options->section, "list the keys of this section");
    CLI::Option* const key = command->add_option("KEY", options->key, "print the value of this key");
    AddIniCheckCommand(context, *command);
    command->callback(
        [options, command, file, section, key, &context]
        {
            if (!command->get_subcommands().empty()) return;
            if (file->count() == 0) throw CLI::RequiredError("FILE");
            const auto given = [](const CLI::Option* option, const std::string& text)
            { return option->count() != 0 ? std::optional<std::wstring>(Wide(text)) : std::nullopt; };
            context.exitCode = ShowSettings(options->file, given(section, options->section), given(key, options->key));
        });
}

void AddTextCommand(CommandContext& context)
{
    struct Options
    {
        std::string name;
        std::string module;
        std::string locales;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        context.app.add_subcommand("text", "Print a translated text file, decoded as its language is");
    command->add_option("NAME", options->name, "name of the file in the locale folders")->required();
    command->add_option("--module", options->module, "program or DLL beside whose resource folder the file lies");
    command->add_option("--locales", options->locales, "locale list; the process's own where it is not given");
    command->callback(
        [options, &context] { context.exitCode = ShowText(options->name, options->module, options->locales); });
}

void AddEncodingCommand(CommandContext& context)
{
    const auto name = std::make_shared<std::string>();
    CLI::App* const command = context.app.add_subcommand("encoding", "Print the code page of an encoding");
    command->add_option("NAME", *name, "name as in a settings file: UTF-8, Shift_JIS, cp1252")->required();
    command->callback([name, &context] { context.exitCode = ShowEncoding(*name); });
}

}  // namespace

void AddFileCommands(CommandContext& context)
{
    AddIniCommand(context);
    AddTextCommand(context);
    AddEncodingCommand(context);
}
