#include "commands.h"
#include "console.h"
#include "locale_sources.h"
#include "text_conversion.h"
#include "tool_error.h"

#include <exception>
#include <string>
#include <vector>

namespace
{

constexpr char kDescription[] =
    "Shows and tries what ARVMUI does, and checks translations.\n"
    "An option \"/uilocale:LIST\" anywhere on the line is the library's own: it decides in which language it speaks.";

// The arguments in UTF-8, without the program and without the library's own option; the last one
// first, as the parser takes them.
std::vector<std::string> Arguments(int argc, wchar_t** argv)
{
    std::vector<std::string> arguments;
    for (int i = argc - 1; i > 0; --i)
    {
        if (!IsLocaleOption(argv[i])) arguments.push_back(Utf8(argv[i]));
    }
    return arguments;
}

int ShowHelpOrError(const CLI::App& app, const CLI::ParseError& error)
{
    std::ostringstream output;
    std::ostringstream errors;
    const int code = app.exit(error, output, errors);
    if (!output.str().empty()) Print(output.str());
    if (!errors.str().empty()) Print(errors.str());
    return code == 0 ? kSuccess : kFailure;
}

int Run(int argc, wchar_t** argv)
{
    CLI::App app(kDescription, "muitool");
    app.allow_windows_style_options(false);  // "/" begins paths and the library's own option
    app.require_subcommand(1);
    app.get_formatter()->column_width(34);

    CommandContext context = {app, {argv + 1, argv + argc}, kSuccess};
    AddExplainCommand(context);
    AddCheckCommand(context);
    AddStringsCommand(context);
    AddTranslateCommands(context);
    AddLocaleCommand(context);
    AddFileCommands(context);
    AddBoxCommands(context);
    try
    {
        std::vector<std::string> arguments = Arguments(argc, argv);
        app.parse(arguments);
    }
    catch (const CLI::ParseError& error)
    {
        return ShowHelpOrError(app, error);
    }
    return context.exitCode;
}

}  // namespace

int wmain(int argc, wchar_t** argv)
{
    try
    {
        return Run(argc, argv);
    }
    catch (const std::exception& error)
    {
        PrintError(std::string("muitool: ") + error.what());
        return kFailure;
    }
}
