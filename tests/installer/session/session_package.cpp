#include "installer/session/session_package.h"

#include "support/temporary_folder.h"

namespace arvmui_test
{
namespace
{

constexpr wchar_t kMenuColumns[] = L"`Menu` CHAR(72) NOT NULL, `Item` CHAR(72) NOT NULL, `Number` LONG, "
                                   L"`Label` LONGCHAR LOCALIZABLE PRIMARY KEY `Menu`, `Item`";
constexpr wchar_t kStreamColumns[] = L"`Name` CHAR(72) NOT NULL, `Data` OBJECT PRIMARY KEY `Name`";

MsiStream Stream(const char* bytes)
{
    return MsiStream{bytes};
}

void AddLocales(MsiPackage& tables)
{
    // Neither in the order of the tags nor in that of the identifiers.
    tables.Add({L"ARVUILocale", kLocaleColumns,
        {{L"zh-CN", 2052, L"Chinese (PRC)", L"\u7B80\u4F53\u4E2D\u6587", 3}, {L"en", 1033, L"English", L"English", 1},
            {L"de", 1031, L"German", L"Deutsch", 2}}});
}

void AddDialogTexts(MsiPackage& tables, const SessionPackage& package)
{
    tables.Add({L"ARVUIText", kLocaleTextColumns,
        {{L"LanguageSelectionTitle", L"en", package.DialogTitle(L"en")},
            {L"LanguageSelectionDesc", L"en", L"Choose a language:"}, {L"OK", L"en", L"&OK"},
            {L"Cancel", L"en", L"&Cancel"}, {L"LanguageSelectionTitle", L"de", package.DialogTitle(L"de")},
            {L"LanguageSelectionDesc", L"de", L"Sprache ausw\u00E4hlen:"}, {L"OK", L"de", L"&Gut"},
            {L"Cancel", L"de", L"&Abbrechen"}, {L"Help", L"de", L"Hilfe"},
            {L"LanguageSelectionTitle", L"zh-CN", package.DialogTitle(L"zh-CN")}}});
}

void AddProperties(MsiPackage& tables)
{
    tables.Add(L"Property", {{L"GREETING", L"Hello"}, {L"FAREWELL", L"Goodbye"}, {L"UNTRANSLATED", L"Plain"}});
    tables.AddLocalized(
        L"Property", L"en", {{L"GREETING", L"Hello"}, {L"FAREWELL", L"Goodbye"}, {L"UNTRANSLATED", L"Plain"}});
    tables.AddLocalized(L"Property", L"de",
        {{L"GREETING", L"Guten Tag"}, {L"FAREWELL", L"Auf Wiedersehen"}, {L"ONLYGERMAN", L"Zusatz"}});
    tables.AddLocalized(L"Property", L"zh_CN", {{L"GREETING", L"\u4F60\u597D"}});
}

// Keys of both tables, of the base table alone and of the localized table alone.
void AddRows(MsiPackage& tables)
{
    tables.Add({L"UIText", kUITextColumns, {{L"Both", L"Both tables"}, {L"Base", L"Base table"}, {L"None", {}}}})
        .AddLocalized(L"UIText", L"de", {{L"Both", L"Beide Tabellen"}, {L"Extra", L"\u00DCberz\u00E4hlig"}})
        .AddLocalized(L"UIText", L"zh_CN", {{L"None", L"\u65E0"}});
    tables
        .Add({L"Menu", kMenuColumns,
            {{L"File", L"Open", 1, L"Open"}, {L"File", L"Close", 2, L"Close"}, {L"Edit", L"Open", 3, {}},
                {L"Edit", L"Copy", {}, L"Copy"}}})
        .AddLocalized(L"Menu", L"de", {{L"File", L"Open", 11, L"\u00D6ffnen"}, {L"View", L"Open", {}, L"Ansicht"}});
    tables.Add({L"Two_Words", kUITextColumns, {{L"Key", L"Words"}}})
        .AddLocalized(L"Two_Words", L"de", {{L"Key", L"W\u00F6rter"}})
        .AddLocalized(L"Two_Words", L"zh_CN", {{L"Other", L"\u8BCD"}});
    tables.Add({L"Unlocalized", kUITextColumns, {{L"Key", L"Text"}}});
    // No language of the package.
    tables.AddLocalized(L"Unlocalized", L"it", {{L"Key", L"Testo"}});
}

void AddStreams(MsiPackage& tables)
{
    tables.Add({L"Binary", kBinaryColumns, {{L"Banner", Stream("English banner")}, {L"Dialog", Stream("Any dialog")}}})
        .AddLocalized(L"Binary", L"de", {{L"Banner", Stream("German banner")}, {L"Extra", Stream("German extra")}});
}

void ReplaceSequences(MsiPackage& tables)
{
    tables.Remove(L"InstallExecuteSequence")
        .Add({L"InstallExecuteSequence", kSequenceColumns,
            {{L"CostInitialize", {}, 800}, {L"FileCost", {}, 900}, {L"CostFinalize", {}, 1000},
                {L"InstallValidate", {}, 1400}, {L"InstallInitialize", {}, 1500}, {L"InstallFinalize", {}, 6600}}});
}

// Attributes of dialogs and controls.
constexpr int kVisible = 1;
constexpr int kVisibleEnabled = 3;
constexpr int kVisibleModal = 3;

MsiRow WelcomeDialog(const std::wstring& title)
{
    return {L"Welcome", 50, 50, 200, 100, kVisibleModal, title, L"Next", L"Next", L"Next"};
}

MsiRow WelcomeText(const wchar_t* text)
{
    return {L"Welcome", L"Greeting", L"Text", 10, 10, 180, 20, kVisible, {}, text, {}, {}};
}

MsiRow WelcomeButton(const wchar_t* name, int x, const wchar_t* text, const wchar_t* next)
{
    return {L"Welcome", name, L"PushButton", x, 70, 60, 17, kVisibleEnabled, {}, text, next, {}};
}

}  // namespace

SessionPackage::SessionPackage() : productName(L"Arvmui Test " + NewMsiCode()), upgradeCode(NewMsiCode())
{
    tables = InstallablePackage(productName, NewMsiCode(), upgradeCode);
    ReplaceSequences(tables);
    AddLocales(tables);
    AddDialogTexts(tables, *this);
    AddProperties(tables);
    AddRows(tables);
    AddStreams(tables);
}

void SessionPackage::ScheduleActions()
{
    constexpr wchar_t kSetLocale[] = L"ARV_MUI_SetLocale.5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17";
    constexpr int kImmediateFromStream = 1;
    tables
        .Add(L"Binary", {{kLibraryStream, FileStream(TestProgramFolder() / L"arvmui64.dll")},
                            {kProbeStream, FileStream(TestProgramFolder() / L"session_probe.dll")}})
        .Add({L"CustomAction", kCustomActionColumns,
            {{kSetLocale, kImmediateFromStream, kLibraryStream, L"ARVMUI_MSI_SetLocale"},
                {L"Preview", kImmediateFromStream, kLibraryStream, L"ARVMUI_MSI_SelectionDialogBoxPreview"},
                {L"ReportInterface", kImmediateFromStream, kProbeStream, L"ReportInterface"},
                {L"ReportExecution", kImmediateFromStream, kProbeStream, L"ReportExecution"}}});
    for (const wchar_t* sequence : {L"InstallUISequence", L"AdminUISequence"})
        tables.Add(sequence, {{kSetLocale, {}, 100}, {L"ReportInterface", {}, 110}});
    for (const wchar_t* sequence : {L"InstallExecuteSequence", L"AdminExecuteSequence"})
        tables.Add(sequence, {{kSetLocale, {}, 100}, {L"ReportExecution", {}, 110}});
}

void SessionPackage::AddWelcome()
{
    tables.Add({L"Dialog", kDialogColumns, {WelcomeDialog(WelcomeTitle(L"en"))}})
        .AddLocalized(L"Dialog", L"de", {WelcomeDialog(WelcomeTitle(L"de"))});
    tables
        .Add({L"Control", kControlColumns,
            {WelcomeText(L"Welcome"), WelcomeButton(L"Next", 20, L"Next", L"Preview"),
                WelcomeButton(L"Preview", 90, L"Show", L"Next")}})
        .AddLocalized(
            L"Control", L"de", {WelcomeText(L"Willkommen"), WelcomeButton(L"Next", 20, L"Weiter", L"Preview")});
    tables.Add({L"ControlEvent", kControlEventColumns,
        {{L"Welcome", L"Next", L"EndDialog", L"Return", L"1", 1},
            {L"Welcome", L"Preview", L"DoAction", L"Preview", L"1", 1}}});
    tables.Add(L"InstallUISequence", {{L"Welcome", {}, 1200}});
}

std::wstring SessionPackage::WelcomeTitle(const std::wstring& locale) const
{
    return productName + L" welcomes " + locale;
}

std::wstring SessionPackage::DialogTitle(const std::wstring& locale) const
{
    return productName + L" " + locale;
}

TablesOfLanguage EnglishTables()
{
    return {
        {L"UIText", {{L"Base", L"Base table"}, {L"Both", L"Both tables"}, {L"None", L""}}},
        {L"Menu", {{L"Edit", L"Copy", L"", L"Copy"}, {L"Edit", L"Open", L"3", L""}, {L"File", L"Close", L"2", L"Close"},
                      {L"File", L"Open", L"1", L"Open"}}},
        {L"Two_Words", {{L"Key", L"Words"}}},
        {L"Unlocalized", {{L"Key", L"Text"}}},
        {L"Binary", {{L"Banner", L"English banner"}, {L"Dialog", L"Any dialog"}}},
    };
}

TablesOfLanguage GermanTables()
{
    return {
        {L"UIText", {{L"Base", L"Base table"}, {L"Both", L"Beide Tabellen"}, {L"Extra", L"\u00DCberz\u00E4hlig"},
                        {L"None", L""}}},
        {L"Menu", {{L"Edit", L"Copy", L"", L"Copy"}, {L"Edit", L"Open", L"3", L""}, {L"File", L"Close", L"2", L"Close"},
                      {L"File", L"Open", L"11", L"\u00D6ffnen"}, {L"View", L"Open", L"", L"Ansicht"}}},
        {L"Two_Words", {{L"Key", L"W\u00F6rter"}}},
        {L"Unlocalized", {{L"Key", L"Text"}}},
        {L"Binary", {{L"Banner", L"German banner"}, {L"Dialog", L"Any dialog"}, {L"Extra", L"German extra"}}},
    };
}

TablesOfLanguage ChineseTables()
{
    TablesOfLanguage tables = EnglishTables();
    tables[L"UIText"] = {{L"Base", L"Base table"}, {L"Both", L"Both tables"}, {L"None", L"\u65E0"}};
    tables[L"Two_Words"] = {{L"Key", L"Words"}, {L"Other", L"\u8BCD"}};
    return tables;
}

}  // namespace arvmui_test
