// All texts of a resource library under names that stay the same from build to build, for tools that
// work on texts alone.
#pragma once

#include "translation.h"

#include <map>
#include <string>
#include <vector>

struct CatalogText
{
    std::string name;  // "string 101", "dialog 300", "dialog 300 control 2", "message 7"
    std::wstring text;
    std::size_t room;  // characters that the reader of the text takes; 0 where that is not known
    std::string note;  // for the translator; may be empty
};

// In the order of the file. Texts that are no language (locale tag, language identifier) are left out.
std::vector<CatalogText> ListTexts(const Translation& translation);

// The translation with those of its texts replaced that `texts` names.
Translation ReplaceTexts(const Translation& translation, const std::map<std::string, std::wstring>& texts);
