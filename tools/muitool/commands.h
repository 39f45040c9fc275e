// The commands of the tool. Each function adds its commands and their options; running one sets the
// exit code, or throws a ToolError.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

struct CommandContext
{
    CLI::App& app;
    std::vector<std::wstring> rawArguments;  // with the library's own option
    int exitCode;
};

void AddExplainCommand(CommandContext& context);  // explain

void AddCheckCommand(CommandContext& context);       // check
void AddStringsCommand(CommandContext& context);     // strings
void AddTranslateCommands(CommandContext& context);  // pseudo, export, import
void AddFileCommands(CommandContext& context);       // ini, text, encoding
void AddBoxCommands(CommandContext& context);        // message, box, ask, settings
void AddLocaleCommand(CommandContext& context);      // locale get|set|clear
