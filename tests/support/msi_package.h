// Installer packages from rows that a test states in its own lines, written with the installer's own
// database functions.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace arvmui_test
{

struct MsiStream
{
    std::string bytes;
};

// Nothing, a text, a number or the bytes of a stream.
using MsiField = std::variant<std::monostate, std::wstring, int, MsiStream>;
using MsiRow = std::vector<MsiField>;

// A whole file as a stream. Throws when it cannot be read.
MsiField FileStream(const std::filesystem::path& file);

struct MsiTable
{
    std::wstring name;
    std::wstring columns;  // as between the parentheses of CREATE TABLE
    std::vector<MsiRow> rows;
};

class MsiPackage
{
public:
    // With an existing name the rows are added to the table, which keeps its columns.
    MsiPackage& Add(const MsiTable& table);

    // Adds rows to a table that exists; throws when it does not.
    MsiPackage& Add(std::wstring_view table, const std::vector<MsiRow>& rows);

    // Adds <base>_<suffix> with the columns of the base table, which must exist.
    MsiPackage& AddLocalized(std::wstring_view base, std::wstring_view suffix, const std::vector<MsiRow>& rows);

    MsiPackage& Remove(std::wstring_view table);

    // Replaces the file; the tables are created in their order here. Throws when the installer refuses
    // anything. `codePage` is the database's; 0 stores the texts of ASCII only.
    void Write(const std::filesystem::path& file, unsigned codePage = 65001) const;

private:
    MsiTable& Find(std::wstring_view name);

    std::vector<MsiTable> tables_;
};

// A new identifier for products, packages and upgrade codes: "{...}" in capital letters.
std::wstring NewMsiCode();

// What a package needs to be installed for all users, without a file: the product's properties, one
// component and feature, and the actions of the standard sequences.
MsiPackage InstallablePackage(
    const std::wstring& productName, const std::wstring& productCode, const std::wstring& upgradeCode);

// Columns of the tables that tests fill, as MsiTable takes them. Keys come first: the installer finds
// rows by others only then.
inline constexpr wchar_t kPropertyColumns[] =
    L"`Property` CHAR(72) NOT NULL, `Value` LONGCHAR NOT NULL LOCALIZABLE PRIMARY KEY `Property`";
inline constexpr wchar_t kBinaryColumns[] = L"`Name` CHAR(72) NOT NULL, `Data` OBJECT NOT NULL PRIMARY KEY `Name`";
inline constexpr wchar_t kLocaleColumns[] =
    L"`Locale` CHAR(255) NOT NULL, `LangID` LONG NOT NULL, `EnglishName` CHAR(255) NOT NULL, "
    L"`NativeName` CHAR(255) NOT NULL LOCALIZABLE, `DisplayOrder` SHORT NOT NULL PRIMARY KEY `Locale`";
inline constexpr wchar_t kLocaleTextColumns[] =
    L"`Key` CHAR(72) NOT NULL, `Locale` CHAR(255) NOT NULL, `Text` LONGCHAR NOT NULL LOCALIZABLE "
    L"PRIMARY KEY `Key`, `Locale`";
inline constexpr wchar_t kUITextColumns[] = L"`Key` CHAR(72) NOT NULL, `Text` CHAR(255) LOCALIZABLE PRIMARY KEY `Key`";
inline constexpr wchar_t kActionTextColumns[] =
    L"`Action` CHAR(72) NOT NULL, `Description` LONGCHAR LOCALIZABLE, `Template` LONGCHAR LOCALIZABLE "
    L"PRIMARY KEY `Action`";
inline constexpr wchar_t kDialogColumns[] =
    L"`Dialog` CHAR(72) NOT NULL, `HCentering` SHORT NOT NULL, `VCentering` SHORT NOT NULL, `Width` SHORT NOT NULL, "
    L"`Height` SHORT NOT NULL, `Attributes` LONG, `Title` CHAR(128) LOCALIZABLE, `Control_First` CHAR(50) NOT NULL, "
    L"`Control_Default` CHAR(50), `Control_Cancel` CHAR(50) PRIMARY KEY `Dialog`";
inline constexpr wchar_t kControlColumns[] =
    L"`Dialog_` CHAR(72) NOT NULL, `Control` CHAR(50) NOT NULL, `Type` CHAR(20) NOT NULL, `X` SHORT NOT NULL, "
    L"`Y` SHORT NOT NULL, `Width` SHORT NOT NULL, `Height` SHORT NOT NULL, `Attributes` LONG, `Property` CHAR(50), "
    L"`Text` LONGCHAR LOCALIZABLE, `Control_Next` CHAR(50), `Help` CHAR(50) LOCALIZABLE "
    L"PRIMARY KEY `Dialog_`, `Control`";
inline constexpr wchar_t kControlEventColumns[] =
    L"`Dialog_` CHAR(72) NOT NULL, `Control_` CHAR(50) NOT NULL, `Event` CHAR(50) NOT NULL, "
    L"`Argument` CHAR(255) NOT NULL, `Condition` CHAR(255), `Ordering` SHORT "
    L"PRIMARY KEY `Dialog_`, `Control_`, `Event`, `Argument`, `Condition`";
inline constexpr wchar_t kCustomActionColumns[] =
    L"`Action` CHAR(72) NOT NULL, `Type` SHORT NOT NULL, `Source` CHAR(72), `Target` CHAR(255) PRIMARY KEY `Action`";
inline constexpr wchar_t kSequenceColumns[] =
    L"`Action` CHAR(72) NOT NULL, `Condition` CHAR(255), `Sequence` SHORT PRIMARY KEY `Action`";
inline constexpr wchar_t kValidationColumns[] =
    L"`Table` CHAR(32) NOT NULL, `Column` CHAR(32) NOT NULL, `Nullable` CHAR(4) NOT NULL, `MinValue` LONG, "
    L"`MaxValue` LONG, `KeyTable` CHAR(255), `KeyColumn` SHORT, `Category` CHAR(32), `Set` CHAR(255), "
    L"`Description` CHAR(255) PRIMARY KEY `Table`, `Column`";

}  // namespace arvmui_test
