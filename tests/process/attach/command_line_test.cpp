// The process's own command line after the library was attached.
#include "process/attach/attach_fixture.h"

#include <gtest/gtest.h>

#include <ostream>

namespace
{

using arvmui_test::Report;
using arvmui_test::RunHost;

struct LineCase
{
    const char* name;
    const wchar_t* before;
    const wchar_t* after;
    const wchar_t* hint;  // null where something other than the option decides
};

std::ostream& operator<<(std::ostream& stream, const LineCase& row)
{
    return stream << row.name;
}

class ProcessCommandLine : public testing::TestWithParam<LineCase>
{
};

TEST_P(ProcessCommandLine, HasLostTheOption)
{
    const LineCase& row = GetParam();
    const Report report = RunHost(row.before);
    EXPECT_EQ(report.Text("commandLine"), row.after);
    EXPECT_EQ(report.Text("narrowCommandLine"), row.after);
    if (row.hint)
    {
        EXPECT_EQ(report.Text("commandLineHint"), row.hint);
    }
}

INSTANTIATE_TEST_SUITE_P(Lines, ProcessCommandLine,
    testing::Values(LineCase{"InTheMiddle", L"prog.exe /uilocale:de-DE file.txt", L"prog.exe file.txt", L"de-DE"},
        LineCase{"First", L"/UILOCALE:fr x", L"x", L"fr"},
        LineCase{"FirstBehindBlanks", L"  /UILOCALE:fr   x", L"x", L"fr"},
        LineCase{"Last", L"prog.exe /uilocale:de", L"prog.exe", L"de"},
        LineCase{"Quoted", L"prog.exe \"/uilocale:en, de\" x", L"prog.exe x", L"en,de"},
        LineCase{"Twice", L"prog.exe /uilocale:de /uilocale:fr", L"prog.exe", L"de"},
        LineCase{"EmptyQuotes", L"prog.exe \"\" /uilocale:de", L"prog.exe \"\" /uilocale:de", nullptr},
        LineCase{"OpenQuote", L"prog.exe \"abc /uilocale:de", L"prog.exe \"abc /uilocale:de", nullptr},
        LineCase{"OnlyTheOption", L"/uilocale:ja", L"", L"ja"},
        LineCase{"Tabs", L"prog.exe\t/uilocale:ja\tx", L"prog.exe\tx", L"ja"},
        LineCase{"GluedText", L"prog.exe \"/uilocale:ja\"x", L"prog.exex", L"ja"},
        LineCase{"NoOption", L"  prog.exe  \"a b\" /x ", L"  prog.exe  \"a b\" /x ", nullptr}),
    [](const testing::TestParamInfo<LineCase>& row) { return std::string(row.param.name); });

TEST(ProcessCommandLineBounds, ValuesAreCutAt255CharactersOnTheirWayIntoTheList)
{
    // A single item of 255 characters leaves no room for its terminator behind it in the search, so
    // a list is used whose last item is cut.
    const std::wstring list = L"de," + std::wstring(600, L',') + L"fr";
    const Report report = RunHost(L"prog.exe /uilocale:" + list + L" x");
    EXPECT_EQ(report.Text("commandLine"), L"prog.exe x");
    EXPECT_EQ(report.Text("commandLineHint"), L"de");
}

TEST(ProcessCommandLineBounds, LineOfManyThousandCharacters)
{
    const std::wstring argument(20000, L'a');
    const Report report = RunHost(L"prog.exe " + argument + L" /uilocale:de");
    EXPECT_EQ(report.Text("commandLineHint"), L"de");
}

}  // namespace
