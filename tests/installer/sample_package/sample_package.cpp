#include "installer/sample_package/sample_package.h"

#include "support/child_process.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <stdexcept>

namespace arvmui_test
{
namespace
{

std::vector<std::wstring> RecordTexts(MSIHANDLE record)
{
    std::vector<std::wstring> texts;
    for (UINT field = 1; field <= ::MsiRecordGetFieldCount(record); ++field)
    {
        wchar_t text[256];
        DWORD length = ARRAYSIZE(text);
        if (::MsiRecordGetStringW(record, field, text, &length) != ERROR_SUCCESS)
            throw std::runtime_error("a field cannot be read");
        texts.emplace_back(text, length);
    }
    return texts;
}

std::vector<std::wstring> ColumnInfo(MSIHANDLE view, MSICOLINFO what)
{
    MsiHandle record;
    if (::MsiViewGetColumnInfo(view, what, record.Slot()) != ERROR_SUCCESS)
        throw std::runtime_error("the columns of a table cannot be read");
    return RecordTexts(record.Get());
}

PackageTable ReadTable(MSIHANDLE database, const std::wstring& name)
{
    const std::wstring query = L"SELECT * FROM `" + name + L"`";
    PackageTable table;
    table.name = name;

    MsiHandle view;
    if (::MsiDatabaseOpenViewW(database, query.c_str(), view.Slot()) != ERROR_SUCCESS)
        throw std::runtime_error("no table " + Narrow(name));
    table.columns = ColumnInfo(view.Get(), MSICOLINFO_NAMES);
    table.types = ColumnInfo(view.Get(), MSICOLINFO_TYPES);

    MsiHandle keys;
    if (::MsiDatabaseGetPrimaryKeysW(database, name.c_str(), keys.Slot()) != ERROR_SUCCESS)
        throw std::runtime_error("no keys of the table " + Narrow(name));
    table.keys = RecordTexts(keys.Get());

    for (const std::vector<std::wstring>& fields : ReadMsiRows(database, query))
    {
        PackageRow row;
        for (size_t i = 0; i < fields.size(); ++i) row[table.columns[i]] = fields[i];
        table.rows.push_back(row);
    }
    return table;
}

bool EndsWith(const std::wstring& text, const std::wstring& end)
{
    return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

std::filesystem::path SamplePackagePath()
{
    return TestProgramFolder() / L"phrasebook.msi";
}

std::wstring PackageTable::KeyOf(const PackageRow& row) const
{
    std::wstring key;
    for (const std::wstring& column : keys)
        key += (key.empty() ? L"" : std::wstring(1, kKeySeparator)) + row.at(column);
    return key;
}

const PackageRow* PackageTable::FindRow(const std::wstring& key) const
{
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const PackageRow& row) { return KeyOf(row) == key; });
    return found == rows.end() ? nullptr : &*found;
}

SamplePackage::SamplePackage(const std::filesystem::path& file) : database_(OpenMsiDatabase(file))
{
    for (const std::vector<std::wstring>& row : ReadMsiRows(database_.Get(), L"SELECT `Name` FROM `_Tables`"))
        tables_.push_back(ReadTable(database_.Get(), row[0]));
    const PackageTable* const locales = Find(L"ARVUILocale");
    if (!locales) return;
    for (const PackageRow& row : locales->rows)
    {
        std::wstring suffix = L"_" + row.at(L"Locale");
        std::replace(suffix.begin(), suffix.end(), L'-', L'_');
        locales_.push_back({row.at(L"Locale"), static_cast<LANGID>(std::stoul(row.at(L"LangID"))), suffix});
    }
}

const PackageTable* SamplePackage::Find(const std::wstring& name) const
{
    const auto found =
        std::find_if(tables_.begin(), tables_.end(), [&](const PackageTable& table) { return table.name == name; });
    return found == tables_.end() ? nullptr : &*found;
}

const PackageTable& SamplePackage::Table(const std::wstring& name) const
{
    const PackageTable* const table = Find(name);
    if (!table) throw std::runtime_error("no table " + Narrow(name));
    return *table;
}

const PackageRow& SamplePackage::Row(const std::wstring& table, const std::wstring& key) const
{
    const PackageRow* const row = Table(table).FindRow(key);
    if (!row) throw std::runtime_error("no row " + Narrow(key) + " in the table " + Narrow(table));
    return *row;
}

const PackageLocale& SamplePackage::Locale(const std::wstring& tag) const
{
    const auto found =
        std::find_if(locales_.begin(), locales_.end(), [&](const PackageLocale& locale) { return locale.tag == tag; });
    if (found == locales_.end()) throw std::runtime_error("no locale " + Narrow(tag));
    return *found;
}

std::optional<std::wstring> SamplePackage::BaseOf(const PackageTable& table) const
{
    for (const PackageLocale& locale : locales_)
    {
        if (EndsWith(table.name, locale.suffix)) return table.name.substr(0, table.name.size() - locale.suffix.size());
    }
    return std::nullopt;
}

PackageTable SamplePackage::Localized(const std::wstring& base, const PackageLocale& locale) const
{
    PackageTable merged = Table(base);
    const PackageTable* const own = Find(base + locale.suffix);
    if (!own) return merged;
    for (PackageRow& row : merged.rows)
    {
        if (const PackageRow* const translated = own->FindRow(merged.KeyOf(row))) row = *translated;
    }
    return merged;
}

std::wstring SamplePackage::Property(const std::wstring& name, const PackageLocale& locale) const
{
    const PackageTable merged = Localized(L"Property", locale);
    const PackageRow* const row = merged.FindRow(name);
    if (!row) throw std::runtime_error("no property " + Narrow(name));
    return row->at(L"Value");
}

const SamplePackage& Sample()
{
    static const SamplePackage package;
    return package;
}

std::string Narrow(const std::wstring& text)
{
    return Utf8FromWide(text);
}

}  // namespace arvmui_test
