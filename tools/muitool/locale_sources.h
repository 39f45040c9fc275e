// Where the library looks for the user's wish, and what each place holds for this process.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

struct LocaleSource
{
    std::string id;           // for scripts: "option", "parent" ...
    std::string description;  // for people
    std::optional<std::wstring> value;
};

// Whether an argument is the library's own, which it takes off every command line.
bool IsLocaleOption(const std::wstring& argument);

// What the process was started with; from the arguments as they were before the library saw them.
std::optional<std::wstring> FindLocaleOption(const std::vector<std::wstring>& arguments);

// All places in the order in which they count for the process's own list, then those that its
// keywords stand for.
std::vector<LocaleSource> ReadLocaleSources(const std::optional<std::wstring>& option);

// The place that decided the process's list; null when none did and the built-in list counts.
const LocaleSource* FindDecidingSource(const std::vector<LocaleSource>& sources);
