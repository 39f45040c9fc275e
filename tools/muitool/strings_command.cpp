#include "commands.h"
#include "console.h"
#include "resource_library.h"
#include "text_conversion.h"
#include "tool_error.h"

#include <nlohmann/json.hpp>

#include <memory>

namespace
{

// One line a string: what would break the line is written as in C.
std::string Escaped(const std::string& text)
{
    std::string result;
    for (const char character : text)
    {
        switch (character)
        {
            case '\n': result += "\\n"; break;
            case '\r': result += "\\r"; break;
            case '\t': result += "\\t"; break;
            case '\\': result += "\\\\"; break;
            default: result += character;
        }
    }
    return result;
}

int ListStrings(const std::string& path, bool asJson)
{
    const ResourceLibrary library{std::filesystem::path(Wide(path))};
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    for (const auto& [number, text] : library.Strings())
    {
        if (asJson)
            json[std::to_string(number)] = Utf8(text);
        else
            PrintLine(std::to_string(number) + '\t' + Escaped(Utf8(text)));
    }
    if (asJson) PrintLine(json.dump(2));
    return kSuccess;
}

}  // namespace

void AddStringsCommand(CommandContext& context)
{
    struct Options
    {
        std::string file;
        bool json = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = context.app.add_subcommand("strings", "List the strings of a resource library");
    command->add_option("FILE", options->file, "resource library, such as resource\\de\\helloUI.DLL")->required();
    command->add_flag("--json", options->json, "print one JSON object, numbers to texts");
    command->callback([options, &context] { context.exitCode = ListStrings(options->file, options->json); });
}
