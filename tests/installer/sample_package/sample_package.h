// The sample's installer package as the tests look at it: its tables, and which of them belong to a locale.
#pragma once

#include "support/msi_database.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace arvmui_test
{

std::filesystem::path SamplePackagePath();

using PackageRow = std::map<std::wstring, std::wstring>;  // column to text

struct PackageTable
{
    std::wstring name;
    std::vector<std::wstring> columns;
    std::vector<std::wstring> types;  // as the installer writes them: "s72", "L0", "i2", ...
    std::vector<std::wstring> keys;   // the primary key's columns
    std::vector<PackageRow> rows;

    std::wstring KeyOf(const PackageRow& row) const;
    const PackageRow* FindRow(const std::wstring& key) const;
};

// What separates the parts of a key; no text of a package holds it.
inline constexpr wchar_t kKeySeparator = L'\x1F';

// A locale that the package lists, and a table of it.
struct PackageLocale
{
    std::wstring tag;
    LANGID language;
    std::wstring suffix;  // of its tables, with the underscore
};

class SamplePackage
{
public:
    // Throws when the package cannot be read. A package that was translated lists no locales.
    explicit SamplePackage(const std::filesystem::path& file = SamplePackagePath());

    const std::vector<PackageTable>& Tables() const { return tables_; }
    const PackageTable* Find(const std::wstring& name) const;

    // Throws when there is no such table or row.
    const PackageTable& Table(const std::wstring& name) const;
    const PackageRow& Row(const std::wstring& table, const std::wstring& key) const;

    const std::vector<PackageLocale>& Locales() const { return locales_; }
    const PackageLocale& Locale(const std::wstring& tag) const;

    // The name of the base table that a localized table belongs to; nothing for any other table.
    std::optional<std::wstring> BaseOf(const PackageTable& table) const;

    // A table as it is in a session of the locale: the locale's rows and, where it has none, the base rows.
    PackageTable Localized(const std::wstring& base, const PackageLocale& locale) const;

    // The value of a property in a session of the locale.
    std::wstring Property(const std::wstring& name, const PackageLocale& locale) const;

    MSIHANDLE Database() const { return database_.Get(); }

private:
    MsiHandle database_;
    std::vector<PackageTable> tables_;
    std::vector<PackageLocale> locales_;
};

// The one package that a test program reads.
const SamplePackage& Sample();

// For messages of assertions.
std::string Narrow(const std::wstring& text);

}  // namespace arvmui_test
