// Whether the package's tables are well-formed, by what its own table _Validation says about them.

#include "installer/sample_package/sample_package.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

using namespace arvmui_test;

namespace
{

std::vector<std::wstring> Split(const std::wstring& text, wchar_t separator)
{
    std::vector<std::wstring> parts;
    std::wistringstream stream(text);
    for (std::wstring part; std::getline(stream, part, separator);) parts.push_back(part);
    return parts;
}

// Everything in a column, empty fields apart.
std::set<std::wstring> ValuesOf(const PackageTable& table, const std::wstring& column)
{
    std::set<std::wstring> values;
    for (const PackageRow& row : table.rows)
    {
        if (!row.at(column).empty()) values.insert(row.at(column));
    }
    return values;
}

bool IsInList(const std::wstring& value, const std::wstring& list)
{
    const std::vector<std::wstring> parts = Split(list, L';');
    return std::find(parts.begin(), parts.end(), value) != parts.end();
}

// The values that the columns allow to which a foreign key points.
std::set<std::wstring> KeyValues(const std::wstring& tables, const std::wstring& column)
{
    std::set<std::wstring> values;
    for (const std::wstring& name : Split(tables, L';'))
    {
        const PackageTable& table = Sample().Table(name);
        values.merge(ValuesOf(table, table.columns.at(std::stoul(column) - 1)));
    }
    return values;
}

// The rows of _Validation with the tables that they are about.
template <typename Check>
void ForEachColumn(const Check& check)
{
    for (const PackageRow& rule : Sample().Table(L"_Validation").rows)
    {
        const PackageTable* const table = Sample().Find(rule.at(L"Table"));
        if (!table) continue;
        for (const PackageRow& row : table->rows)
        {
            const auto field = row.find(rule.at(L"Column"));
            if (field == row.end()) continue;
            check(rule, field->second,
                Narrow(table->name + L"." + field->first + L" of " + table->KeyOf(row) + L": " + field->second));
        }
    }
}

}  // namespace

TEST(SamplePackageTables, EveryColumnIsDescribedOnceAndNothingElseIs)
{
    std::multiset<std::wstring> columns;
    for (const PackageTable& table : Sample().Tables())
    {
        for (const std::wstring& column : table.columns) columns.insert(table.name + L"." + column);
    }
    std::multiset<std::wstring> described;
    for (const PackageRow& row : Sample().Table(L"_Validation").rows)
        described.insert(row.at(L"Table") + L"." + row.at(L"Column"));
    EXPECT_EQ(described, columns);
}

TEST(SamplePackageTables, ColumnsThatMayNotBeEmptyAreFilled)
{
    ForEachColumn([](const PackageRow& rule, const std::wstring& value, const std::string& where)
        { EXPECT_TRUE(rule.at(L"Nullable") == L"Y" || !value.empty()) << where; });
}

TEST(SamplePackageTables, ColumnsThatMayBeEmptyCanBe)
{
    for (const PackageRow& rule : Sample().Table(L"_Validation").rows)
    {
        const PackageTable& table = Sample().Table(rule.at(L"Table"));
        for (size_t i = 0; i < table.columns.size(); ++i)
        {
            if (table.columns[i] != rule.at(L"Column")) continue;
            const bool typeIsNullable = ::IsCharUpperW(table.types[i][0]) != 0;
            // The type may allow more than is wanted, never less.
            EXPECT_TRUE(typeIsNullable || rule.at(L"Nullable") == L"N") << Narrow(table.name + L"." + table.columns[i]);
        }
    }
}

TEST(SamplePackageTables, NumbersLieInTheirRanges)
{
    ForEachColumn(
        [](const PackageRow& rule, const std::wstring& value, const std::string& where)
        {
            if (value.empty() || rule.at(L"MinValue").empty()) return;
            EXPECT_GE(std::stol(value), std::stol(rule.at(L"MinValue"))) << where;
            EXPECT_LE(std::stol(value), std::stol(rule.at(L"MaxValue"))) << where;
        });
}

TEST(SamplePackageTables, ValuesAreAmongThoseAllowed)
{
    ForEachColumn(
        [](const PackageRow& rule, const std::wstring& value, const std::string& where)
        {
            if (value.empty() || rule.at(L"Set").empty()) return;
            EXPECT_TRUE(IsInList(value, rule.at(L"Set"))) << where;
        });
}

TEST(SamplePackageTables, ForeignKeysExist)
{
    int keys = 0;
    for (const PackageRow& rule : Sample().Table(L"_Validation").rows)
    {
        if (rule.at(L"KeyTable").empty()) continue;
        const std::set<std::wstring> known = KeyValues(rule.at(L"KeyTable"), rule.at(L"KeyColumn"));
        for (const std::wstring& value : ValuesOf(Sample().Table(rule.at(L"Table")), rule.at(L"Column")))
        {
            ++keys;
            EXPECT_TRUE(known.contains(value))
                << Narrow(rule.at(L"Table") + L"." + rule.at(L"Column") + L" names " + value);
        }
    }
    EXPECT_GT(keys, 0);
}

TEST(SamplePackageTables, KeysAreTheFirstColumns)
{
    for (const PackageTable& table : Sample().Tables())
    {
        ASSERT_GE(table.columns.size(), table.keys.size()) << Narrow(table.name);
        EXPECT_TRUE(std::equal(table.keys.begin(), table.keys.end(), table.columns.begin())) << Narrow(table.name);
    }
}

TEST(SamplePackageTables, TheDatabaseIsInUtf8)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::MsiDatabaseExportW(Sample().Database(), L"_ForceCodepage", folder.Path().c_str(), L"code_page.idt"),
        static_cast<UINT>(ERROR_SUCCESS));
    std::ifstream file(folder.Path() / L"code_page.idt", std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    EXPECT_EQ(content, "\r\n\r\n65001\t_ForceCodepage\r\n");
}
