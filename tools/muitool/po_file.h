// The catalogues of gettext, which translators' editors read and write.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

struct PoEntry
{
    std::vector<std::string> comments;  // for the translator
    bool isFormat = false;              // holds placeholders
    std::string context;
    std::string original;
    std::string translation;
};

// UTF-8, lines ending with "\n".
std::string WritePo(const std::string& language, const std::vector<PoEntry>& entries);

// Translations by context, without the empty ones and those marked as doubtful. A ToolError that names
// the line for text that is no catalogue.
std::map<std::string, std::string> ReadPo(std::string_view text);
