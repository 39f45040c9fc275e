#include "installer/package/translation_package.h"

#include "support/temporary_folder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace arvmui_test
{
namespace
{

constexpr wchar_t kMenuColumns[] = L"`Menu` CHAR(72) NOT NULL, `Item` CHAR(72) NOT NULL, `Number` LONG, "
                                   L"`Label` LONGCHAR LOCALIZABLE PRIMARY KEY `Menu`, `Item`";
constexpr wchar_t kMappingColumns[] = L"`Dialog_` CHAR(72) NOT NULL, `Event` CHAR(72) PRIMARY KEY `Dialog_`";
const wchar_t* const kSequences[] = {
    L"AdminExecuteSequence", L"AdminUISequence", L"InstallExecuteSequence", L"InstallUISequence"};

std::wstring ActionName(const std::wstring& name)
{
    return name + L".5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17";
}

void AddLocales(MsiPackage& package)
{
    int order = 1;
    package.Add({L"ARVUILocale", kLocaleColumns, {{L"en", 1033, L"English", L"English", order}}});
    for (const PackageLanguage& language : TranslatedLanguages())
        package.Add(L"ARVUILocale", {{language.locale, language.identifier, L"Language", language.greeting, ++order}});
    package.Add({L"ARVUIText", kLocaleTextColumns, {{L"OK", L"OK", L"en"}, {L"Cancel", L"Abbrechen", L"de"}}});
}

void AddBaseTables(MsiPackage& package)
{
    package.Add(L"Property", {{L"Greeting", L"Hello"}, {L"Untranslated", L"Plain"}});
    package.Add({L"UIText", kUITextColumns,
        {{L"Both", L"Both tables"}, {L"Base", L"Base table"}, {L"Emptied", L"Text"}, {L"Filled", {}}}});
    package.Add({L"Menu", kMenuColumns,
        {{L"File", L"Open", 1, L"Open"}, {L"File", L"Close", 2, L"Close"}, {L"Edit", L"Open", 3, {}}}});
    package.Add({L"Two_Words", kUITextColumns, {{L"Key", L"Words"}}});
    package.Add({L"Unlocalized", kUITextColumns, {{L"Key", L"Text"}}});
    package.Add({L"Binary", kBinaryColumns, {{L"Banner", MsiStream{"any banner"}}}});
    package.Add({L"ArvDialogMapping", kMappingColumns,
        {{L"Language_Selection_Dialog", L"Next"}, {L"Welcome_Dialog", L"Back"}}});
}

void AddLocalizedTables(MsiPackage& package, const PackageLanguage& language)
{
    const std::wstring& suffix = language.suffix;
    const std::wstring& text = language.greeting;
    package.AddLocalized(L"Property", suffix,
        {{L"Greeting", text}, {L"ProductCode", L"{00000000-0000-0000-0000-000000000000}"}, {L"Added", text + L"1"}});
    package.AddLocalized(
        L"UIText", suffix, {{L"Both", text}, {L"Emptied", {}}, {L"Filled", text + L"2"}, {L"Extra", text + L"3"}});
    package.AddLocalized(L"Menu", suffix, {{L"File", L"Open", 11, text}, {L"View", L"Open", {}, text + L"4"}});
    package.AddLocalized(L"Two_Words", suffix, {{L"Key", text + L"5"}});
    package.AddLocalized(
        L"Binary", suffix, {{L"Extra", MsiStream{"stream " + std::string(suffix.begin(), suffix.end())}}});
}

// Tables of English itself, whose rows differ so that copying them would show, and of no language.
void AddOtherTables(MsiPackage& package)
{
    package.AddLocalized(L"Property", L"en", {{L"Greeting", L"Good day"}, {L"EnglishOnly", L"More"}});
    package.AddLocalized(L"UIText", L"en", {{L"Both", L"Other text"}});
    package.AddLocalized(L"Unlocalized", L"it", {{L"Key", L"Testo"}});
}

// One row for a table: with more, the installer under test here loses rows when it deletes.
void AddValidation(MsiPackage& package)
{
    package.Add({L"_Validation", kValidationColumns, {}});
    std::vector<std::wstring> tables = {
        L"Property", L"UIText", L"Unlocalized_it", L"ARVUILocale", L"ARVUIText", L"Property_en", L"UIText_en"};
    for (const PackageLanguage& language : TranslatedLanguages())
        for (const wchar_t* const base : {L"Property_", L"UIText_", L"Menu_"}) tables.push_back(base + language.suffix);
    for (const std::wstring& table : tables)
        package.Add(L"_Validation", {{table, L"Key", L"N", {}, {}, {}, {}, L"Text", {}, {}}});
}

void AddActions(MsiPackage& package)
{
    for (const wchar_t* const sequence : kSequences)
        package.Add(sequence, {{ActionName(L"ARV_MUI_SetLocale"), L"0", 10}, {L"ARV_MUI_SetLocale", L"0", 11},
                                  {L"OtherAction", L"0", 12}});
    package.Add(L"InstallExecuteSequence",
        {{ActionName(L"ARV_MUI_StartFontResetter"), L"0", 20}, {ActionName(L"ARV_MUI_StopFontResetter"), L"0", 21},
            {ActionName(L"ARV_MUI_TranslateLocalPackage"), L"0", 22}});
}

MsiRows ValidationRows(const std::vector<std::wstring>& tables)
{
    MsiRows rows;
    for (const std::wstring& table : tables) rows.push_back({table});
    std::sort(rows.begin(), rows.end());
    return rows;
}

// The columns and rows that a translation is about.
std::wstring QueryOf(const std::wstring& table)
{
    if (table == L"_Validation") return L"SELECT `Table` FROM `_Validation`";
    // The installer's own properties are left out.
    if (table == L"Property")
        return L"SELECT * FROM `Property` WHERE `Property`='Greeting' OR `Property`='Untranslated' OR "
               L"`Property`='Added' "
               L"OR `Property`='EnglishOnly' OR `Property`='ProductCode' OR `Property`='UILOCALE'";
    return L"SELECT * FROM `" + table + L"`";
}

}  // namespace

const std::vector<PackageLanguage>& TranslatedLanguages()
{
    static const std::vector<PackageLanguage> languages = {
        {"German", L"de", L"de", 1031, "1252", L"Gr\u00FC\u00DF Gott"},
        {"French", L"fr", L"fr", 1036, "1252", L"\u00C9t\u00E9"},
        {"Japanese", L"ja", L"ja", 1041, "932", L"\u3053\u3093\u306B\u3061\u306F"},
        {"Chinese", L"zh-CN", L"zh_CN", 2052, "936", L"\u4F60\u597D"},
    };
    return languages;
}

const PackageLanguage& LanguageOf(const std::wstring& locale)
{
    for (const PackageLanguage& language : TranslatedLanguages())
        if (language.locale == locale) return language;
    throw std::runtime_error("no such language in the package");
}

MsiPackage TranslationPackage(const std::wstring& productName, const std::wstring& productCode)
{
    MsiPackage package = InstallablePackage(productName, productCode, NewMsiCode());
    AddLocales(package);
    AddBaseTables(package);
    for (const PackageLanguage& language : TranslatedLanguages()) AddLocalizedTables(package, language);
    AddOtherTables(package);
    AddValidation(package);
    AddActions(package);
    return package;
}

TableContents EnglishContents()
{
    return {
        {L"Property", {{L"Greeting", L"Hello"}, {L"ProductCode", kTestProductCode}, {L"UILOCALE", L"en"},
                          {L"Untranslated", L"Plain"}}},
        {L"UIText", {{L"Base", L"Base table"}, {L"Both", L"Both tables"}, {L"Emptied", L"Text"}, {L"Filled", L""}}},
        {L"Menu",
            {{L"Edit", L"Open", L"3", L""}, {L"File", L"Close", L"2", L"Close"}, {L"File", L"Open", L"1", L"Open"}}},
        {L"Two_Words", {{L"Key", L"Words"}}},
        {L"Unlocalized", {{L"Key", L"Text"}}},
        {L"Unlocalized_it", {{L"Key", L"Testo"}}},
        {L"Binary", {{L"Banner", L"any banner"}}},
        {L"ArvDialogMapping", {{L"Welcome_Dialog", L"Back"}}},
        {L"_Validation", ValidationRows({L"Property", L"UIText", L"Unlocalized_it"})},
    };
}

TableContents ContentsIn(const PackageLanguage& language)
{
    const std::wstring& text = language.greeting;
    TableContents contents = EnglishContents();
    contents[L"Property"] = {{L"Added", text + L"1"}, {L"Greeting", text}, {L"ProductCode", kTestProductCode},
        {L"UILOCALE", language.locale}, {L"Untranslated", L"Plain"}};
    contents[L"UIText"] = {{L"Base", L"Base table"}, {L"Both", text}, {L"Emptied", L""}, {L"Extra", text + L"3"},
        {L"Filled", text + L"2"}};
    contents[L"Menu"] = {{L"Edit", L"Open", L"3", L""}, {L"File", L"Close", L"2", L"Close"},
        {L"File", L"Open", L"11", text}, {L"View", L"Open", L"", text + L"4"}};
    contents[L"Two_Words"] = {{L"Key", text + L"5"}};
    contents[L"Binary"] = {{L"Banner", L"any banner"}, {L"Extra", L"stream " + language.suffix}};
    return contents;
}

TableContents ReadContents(MSIHANDLE database)
{
    TableContents contents;
    for (const auto& [table, rows] : EnglishContents()) contents[table] = SortedMsiRows(database, QueryOf(table));
    return contents;
}

std::vector<std::wstring> TableNames(MSIHANDLE database)
{
    std::vector<std::wstring> names;
    for (const auto& row : SortedMsiRows(database, L"SELECT `Name` FROM `_Tables`")) names.push_back(row[0]);
    return names;
}

std::vector<std::wstring> RemainingTables()
{
    std::vector<std::wstring> names = {L"AdminExecuteSequence", L"AdminUISequence", L"ArvDialogMapping", L"Binary",
        L"Component", L"Directory", L"Feature", L"FeatureComponents", L"InstallExecuteSequence", L"InstallUISequence",
        L"Menu", L"Property", L"Two_Words", L"UIText", L"Unlocalized", L"Unlocalized_it", L"_Validation"};
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::wstring> ScheduledActions(MSIHANDLE database)
{
    std::vector<std::wstring> actions;
    for (const std::wstring sequence : kSequences)
        for (const auto& row :
            SortedMsiRows(database, L"SELECT `Action` FROM `" + sequence + L"` WHERE `Sequence`<100"))
            actions.push_back(sequence + L":" + row[0]);
    return actions;
}

std::string CodePageOf(MSIHANDLE database)
{
    const TemporaryFolder folder;
    std::wstring path = folder.Path().wstring();
    if (::MsiDatabaseExportW(database, L"_ForceCodepage", path.c_str(), L"codepage.idt") != ERROR_SUCCESS) return {};
    std::ifstream file(folder.Path() / L"codepage.idt");
    std::string word;
    file >> word;
    return word;
}

std::string BytesOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace arvmui_test
