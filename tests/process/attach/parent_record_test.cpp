// The record that a process publishes for its children: over generations, and written wrongly by a
// parent that is another program. The test itself is such a parent.
#include "process/attach/attach_fixture.h"
#include "process/attach/private_installation.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>

namespace
{

using arvmui_test::Arrangement;
using arvmui_test::FolderOf;
using arvmui_test::Report;
using arvmui_test::RunGenerations;
using arvmui_test::RunHost;
using arvmui_test::RunLoader;
using arvmui_test::ScratchRegistry;

// This process's section; its content is as long as the test says.
class OwnSection
{
public:
    explicit OwnSection(const std::vector<unsigned char>& content)
    {
        const std::wstring name = L"ARVMUI_" + std::to_wstring(::GetCurrentProcessId()) + L".IPC";
        section_ = ::CreateFileMappingW(
            INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, static_cast<DWORD>(content.size()), name.c_str());
        void* const view = ::MapViewOfFile(section_, FILE_MAP_WRITE, 0, 0, content.size());
        if (!view) return;
        std::memcpy(view, content.data(), content.size());
        ::UnmapViewOfFile(view);
    }
    ~OwnSection() { ::CloseHandle(section_); }
    OwnSection(const OwnSection&) = delete;
    OwnSection& operator=(const OwnSection&) = delete;

private:
    HANDLE section_;
};

std::vector<unsigned char> Record(DWORD size, const std::wstring& list, size_t bytes = 132)
{
    std::vector<unsigned char> record(bytes, 0);
    std::memcpy(record.data(), &size, sizeof(size));
    std::memcpy(record.data() + 4, list.data(), list.size() * sizeof(wchar_t));
    return record;
}

TEST(ParentRecord, GoesToTheChildAndTheGrandchild)
{
    const std::vector<Report> reports =
        RunGenerations({L"first.exe /uilocale:de-DE,ja", L"second.exe", L"third.exe x"});
    for (const Report& report : reports)
    {
        EXPECT_EQ(report.Text("commandLineHint"), L"de-DE,ja");
        EXPECT_EQ(report.Text("published"), L"de-DE,ja");
        EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"de");
    }
    EXPECT_NE(reports[0].Number("process"), reports[1].Number("process"));
    EXPECT_NE(reports[1].Number("process"), reports[2].Number("process"));
}

TEST(ParentRecord, GivesWayToTheChildsOwnOption)
{
    const std::vector<Report> reports =
        RunGenerations({L"first.exe /uilocale:de", L"second.exe /uilocale:fr", L"third.exe"});
    EXPECT_EQ(FolderOf(reports[0].Text("resourceLibrary")), L"de");
    EXPECT_EQ(FolderOf(reports[1].Text("resourceLibrary")), L"fr");
    EXPECT_EQ(FolderOf(reports[2].Text("resourceLibrary")), L"fr");
    EXPECT_EQ(reports[2].Text("commandLineHint"), L"fr");
}

TEST(ParentRecord, ComesBeforeTheRegistry)
{
    const ScratchRegistry registry;
    registry.SetUILocale(L"user", L"fr");
    const OwnSection section(Record(132, L"ja,de"));
    EXPECT_EQ(RunLoader(registry, {}).Text("commandLineHint"), L"ja,de");
}

TEST(ParentRecord, OfThisTestReachesItsChild)
{
    const OwnSection section(Record(132, L"es"));
    const Report report = RunHost(L"host.exe");
    EXPECT_EQ(report.Text("commandLineHint"), L"es");
    EXPECT_EQ(report.Text("published"), L"es");
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"es");
}

// The tag with a country counts as the one without it, which is dropped from the list.
TEST(ParentRecord, OfACountryFindsTheFolderOfThatCountry)
{
    const arvmui_test::PrivateInstallation installation;
    installation.AddLocale(L"ja", L"de");
    installation.AddLocale(L"de", L"de-DE");
    const ScratchRegistry registry;
    Arrangement arrangement;
    arrangement.library = installation.Library();
    const OwnSection section(Record(132, L"de-DE,de"));
    const Report report = RunLoader(registry, arrangement);
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"de-DE");
    EXPECT_EQ(report.Text("published"), L"de-DE");
}

TEST(ParentRecord, MayBeLargerThanItNeedsToBe)
{
    const OwnSection section(Record(133, L"es", 9000));
    EXPECT_EQ(RunHost(L"host.exe").Text("commandLineHint"), L"es");
}

TEST(ParentRecord, IsExpandedLikeAnyList)
{
    const ScratchRegistry registry;
    const OwnSection section(Record(132, L"kiv,user"));
    Arrangement arrangement;
    arrangement.userLanguage = 0x0411;
    EXPECT_EQ(RunLoader(registry, arrangement).Text("commandLineHint"), L"kiv,ja-JP");
}

struct IgnoredRecord
{
    const char* name;
    std::vector<unsigned char> bytes;
};

std::ostream& operator<<(std::ostream& stream, const IgnoredRecord& row)
{
    return stream << row.name;
}

class IgnoredParentRecord : public testing::TestWithParam<IgnoredRecord>
{
};

TEST_P(IgnoredParentRecord, LeavesTheChoiceToTheRegistry)
{
    const ScratchRegistry registry;
    registry.SetUILocale(L"user", L"fr");
    const OwnSection section(GetParam().bytes);
    const Report report = RunLoader(registry, {});
    EXPECT_EQ(report.Text("commandLineHint"), L"fr");
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"fr");
}

INSTANTIATE_TEST_SUITE_P(Records, IgnoredParentRecord,
    testing::Values(IgnoredRecord{"SizeBelow132", Record(131, L"ja")}, IgnoredRecord{"SizeZero", Record(0, L"ja")},
        IgnoredRecord{"EmptyList", Record(132, L"")},
        IgnoredRecord{"SectionOfFourBytes", std::vector<unsigned char>{0x83, 0, 0, 0}}),
    [](const testing::TestParamInfo<IgnoredRecord>& row) { return std::string(row.param.name); });

TEST(ParentRecord, WithoutTerminatorIsTakenWithinItsBounds)
{
    std::vector<unsigned char> record = Record(132, std::wstring(64, L'x'), 4096);
    for (size_t i = 132; i < record.size(); ++i) record[i] = 'y';
    const OwnSection section(record);
    const Report report = RunHost(L"host.exe");
    EXPECT_EQ(report.Text("commandLineHint"), std::wstring(63, L'x'));
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"en");
}

TEST(ParentRecord, OfGarbageGivesNoOrOddCandidatesOnly)
{
    std::vector<unsigned char> record(132);
    for (size_t i = 0; i < record.size(); ++i) record[i] = static_cast<unsigned char>(i * 37 + 11);
    const OwnSection section(record);  // its size is far above 132
    const Report report = RunHost(L"host.exe");
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"en");
    EXPECT_EQ(report.Number("popups"), 1u);
}

// Its pages exist in name only.
TEST(ParentRecord, OfReservedMemoryIsNone)
{
    const ScratchRegistry registry;
    registry.SetUILocale(L"user", L"fr");
    const std::wstring name = L"ARVMUI_" + std::to_wstring(::GetCurrentProcessId()) + L".IPC";
    const HANDLE section =
        ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE | SEC_RESERVE, 0, 4096, name.c_str());
    ASSERT_NE(section, nullptr);
    EXPECT_EQ(RunLoader(registry, {}).Text("commandLineHint"), L"fr");
    ::CloseHandle(section);
}

TEST(ParentRecord, OfPathsAndFormatsReachesNoOtherFolder)
{
    const OwnSection section(Record(132, L"..\\..\\x,%s%n%s,a/b,C:\\,de"));
    const Report report = RunHost(L"host.exe");
    EXPECT_EQ(report.Text("commandLineHint"), L".._.._x,%s%n%s,a_b,C__,de");
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"de");
}

TEST(PublishedRecord, WritesOverASectionThatExists)
{
    const ScratchRegistry registry;
    Arrangement arrangement;
    arrangement.commandLine = L"loader.exe /uilocale:ja";
    arrangement.variables = {{L"ARVMUI_TEST_OWN_SECTION", L"garbage"}};
    const Report report = RunLoader(registry, arrangement);
    EXPECT_EQ(report.Text("published"), L"ja");
    EXPECT_EQ(report.Number("hasMapping"), 1u);
}

TEST(PublishedRecord, IsMissingWhereTheNameIsTakenByAnotherObject)
{
    const ScratchRegistry registry;
    Arrangement arrangement;
    arrangement.commandLine = L"loader.exe /uilocale:ja";
    arrangement.variables = {{L"ARVMUI_TEST_OWN_SECTION", L"event"}};
    const Report report = RunLoader(registry, arrangement);
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"ja");
    EXPECT_EQ(report.Text("published"), L"(none)");
    EXPECT_EQ(report.Number("hasMapping"), 0u);
}

// 63 characters are kept, whatever that cuts off.
TEST(PublishedRecord, HoldsAtMost63CharactersAndSoDoesTheHint)
{
    const std::wstring longest = L"aa-AA,bb-BB,cc-CC,dd-DD,ee-EE,ff-FF,gg-GG,hh-HH,ii-II,jj-JJ,kkk";
    ASSERT_EQ(longest.size(), 63u);
    for (const wchar_t* const more : {L"", L"k", L"k,ll-LL,de"})
    {
        const std::vector<Report> reports = RunGenerations({L"first.exe /uilocale:" + longest + more, L"second.exe"});
        for (const Report& report : reports)
        {
            EXPECT_EQ(report.Text("commandLineHint"), longest);
            EXPECT_EQ(report.Text("published"), longest);
            EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"en");
        }
    }
}

}  // namespace
