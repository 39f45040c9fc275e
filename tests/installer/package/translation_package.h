// A package in five languages, and what its tables hold once it has been translated.
#pragma once

#include "support/msi_database.h"
#include "support/msi_package.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace arvmui_test
{

struct PackageLanguage
{
    const char* name;
    std::wstring locale;
    std::wstring suffix;  // of its tables
    int identifier;
    std::string codePage;
    std::wstring greeting;  // from which all its texts are made
};

const std::vector<PackageLanguage>& TranslatedLanguages();
const PackageLanguage& LanguageOf(const std::wstring& locale);

inline constexpr wchar_t kTestProductCode[] = L"{6B0C3E52-7C0C-4B39-9B5D-1F1F4B0E7A11}";

// English, with a table of each kind for each of the languages. Keys are in both tables, in the base
// table alone or in the localized one alone.
MsiPackage TranslationPackage(const std::wstring& productName, const std::wstring& productCode = kTestProductCode);

// What has to be in the tables named, in the order of the texts.
using TableContents = std::map<std::wstring, MsiRows>;
TableContents EnglishContents();
TableContents ContentsIn(const PackageLanguage& language);
TableContents ReadContents(MSIHANDLE database);

// The names of all tables, in the order of the texts.
std::vector<std::wstring> TableNames(MSIHANDLE database);

// The tables that stay whatever locale is chosen.
std::vector<std::wstring> RemainingTables();

// What the sequences have of the actions that the package schedules beside the installer's own:
// "<sequence>:<action>" in the order of the texts.
std::vector<std::wstring> ScheduledActions(MSIHANDLE database);

// The code page of a package, in decimal.
std::string CodePageOf(MSIHANDLE database);

std::string BytesOf(const std::filesystem::path& file);

}  // namespace arvmui_test
