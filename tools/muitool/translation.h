// One resource library as a translation: everything in it that people read.
#pragma once

#include "dialog_template.h"
#include "resource_library.h"

#include <map>
#include <string>

struct Translation
{
    std::filesystem::path path;
    std::wstring folder;  // its locale folder
    std::map<UINT, std::wstring> strings;
    std::map<UINT, DialogTemplate> dialogs;
    std::map<UINT, std::wstring> messages;

    // What strings 1 and 2 say; empty and 0 where they are missing.
    std::wstring Tag() const;
    LANGID Language() const;

    // Whether it holds the library's own texts.
    bool IsLibraryOwn() const;
};

// Numbers of the two strings by which a resource library tells its locale.
constexpr UINT kTagString = 1;
constexpr UINT kLanguageString = 2;

Translation ReadTranslation(const std::filesystem::path& path);
