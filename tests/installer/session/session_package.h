// The package of the session tests: English, German and Chinese, with a localized table of each kind.
// It registers nothing, so that an installation leaves nothing behind.
#pragma once

#include "support/msi_package.h"

#include <map>
#include <string>

namespace arvmui_test
{

class SessionPackage
{
public:
    SessionPackage();

    MsiPackage tables;
    std::wstring productName;  // like the codes, a new one for each package
    std::wstring upgradeCode;

    // Schedules the choice of the language in the four sequences, and behind it a probe that reports the
    // session ("interface" and "execution", see the probe).
    void ScheduleActions();

    // Adds a dialog of the package's own, English and German, behind the choice of the language.
    void AddWelcome();
    std::wstring WelcomeTitle(const std::wstring& locale) const;

    // The title of the language dialog while a language is selected in it; no other window has it.
    std::wstring DialogTitle(const std::wstring& locale) const;
};

// The streams in the table Binary that hold the code of the actions.
inline constexpr wchar_t kLibraryStream[] = L"ArvmuiLibrary";
inline constexpr wchar_t kProbeStream[] = L"SessionProbe";

// What the tables hold in each language, in the order of their texts.
using TableRows = std::vector<std::vector<std::wstring>>;
using TablesOfLanguage = std::map<std::wstring, TableRows>;

TablesOfLanguage EnglishTables();
TablesOfLanguage GermanTables();
TablesOfLanguage ChineseTables();

}  // namespace arvmui_test
