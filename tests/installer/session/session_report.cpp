#include "installer/session/session_report.h"

#include "support/child_process.h"
#include "support/msi_database.h"

#include <fstream>
#include <stdexcept>

namespace arvmui_test
{
namespace
{

constexpr wchar_t kPropertyMark[] = L"property";
constexpr wchar_t kTableMark[] = L"table";
constexpr wchar_t kRowMark[] = L"row";

const wchar_t* const kReportedProperties[] = {
    L"UILOCALE", L"GREETING", L"FAREWELL", L"UNTRANSLATED", L"ONLYGERMAN", L"UILevel", L"ACTION", L"UpgradeCode"};

using Line = std::vector<std::wstring>;

void WriteLine(std::ofstream& stream, const Line& fields)
{
    std::wstring line;
    for (const std::wstring& field : fields) line += field + L"\t";
    stream << Utf8FromWide(line) << '\n';
}

Line FieldsOf(const std::string& text)
{
    Line fields(1);
    for (const wchar_t character : WideFromUtf8(text))
    {
        if (character == L'\t')
            fields.emplace_back();
        else
            fields.back() += character;
    }
    fields.pop_back();  // behind the last tab
    return fields;
}

// The code of the package's own actions lies among its streams.
bool IsCode(const Line& row)
{
    return row[0] == kLibraryStream || row[0] == kProbeStream;
}

}  // namespace

void WriteSessionReport(MSIHANDLE session, const std::filesystem::path& file)
{
    const std::filesystem::path unfinished = file.wstring() + L".part";
    std::ofstream stream(unfinished, std::ios::binary | std::ios::trunc);
    for (const wchar_t* name : kReportedProperties)
        WriteLine(stream, {kPropertyMark, name, SessionProperty(session, name)});
    const MsiHandle database = ActiveDatabase(session);
    for (const auto& [name, rows] : EnglishTables())
    {
        WriteLine(stream, {kTableMark, name});
        for (const Line& row : SortedMsiRows(database.Get(), L"SELECT * FROM `" + name + L"`"))
        {
            Line line = row;
            line.insert(line.begin(), kRowMark);
            if (!IsCode(row)) WriteLine(stream, line);
        }
    }
    stream.close();
    if (!stream) throw std::runtime_error("cannot write a report");
    std::filesystem::rename(unfinished, file);
}

SessionReport ReadSessionReport(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw std::runtime_error("there is no report");
    SessionReport report;
    std::wstring table;
    for (std::string text; std::getline(stream, text);)
    {
        Line fields = FieldsOf(text);
        if (fields[0] == kPropertyMark) report.properties[fields[1]] = fields[2];
        if (fields[0] == kTableMark) table = fields[1];
        if (fields[0] == kRowMark)
        {
            fields.erase(fields.begin());
            report.tables[table].push_back(fields);
        }
    }
    return report;
}

}  // namespace arvmui_test
