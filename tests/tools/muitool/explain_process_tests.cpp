// The explanation in processes of many kinds: whatever the parent published, the command line and the
// registry say and the keyboards are, it tells where the list comes from, and chooses the file that the
// library loads. This program does not load the library itself: it is the parent that publishes a record.
#include "arranged_system.h"
#include "locale_choices.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fstream>
#include <optional>
#include <set>

namespace
{

using namespace arvmui_test;
using Json = nlohmann::json;

constexpr int kProcesses = 250;
constexpr int kListsPerProcess = 40;
constexpr DWORD kRecordBytes = 132;
constexpr std::size_t kRecordChars = 64;

// The section in which this process publishes a list for its children.
class PublishedRecord
{
public:
    PublishedRecord(DWORD size, const std::wstring& list)
    {
        const std::wstring name = L"ARVMUI_" + std::to_wstring(::GetCurrentProcessId()) + L".IPC";
        section_ = ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kRecordBytes, name.c_str());
        auto* const view = static_cast<char*>(::MapViewOfFile(section_, FILE_MAP_WRITE, 0, 0, kRecordBytes));
        if (!view) return;
        std::memcpy(view, &size, sizeof(size));
        std::memcpy(view + sizeof(size), list.c_str(), list.size() * sizeof(wchar_t));
        ::UnmapViewOfFile(view);
    }
    ~PublishedRecord() { ::CloseHandle(section_); }
    PublishedRecord(const PublishedRecord&) = delete;
    PublishedRecord& operator=(const PublishedRecord&) = delete;

private:
    HANDLE section_;
};

// What a process finds when it starts. Every list but that of the settings file begins with an item by
// which its place is known.
struct Surroundings
{
    std::optional<std::wstring> option;
    std::optional<std::wstring> parent;
    DWORD recordSize = kRecordBytes;
    std::optional<std::wstring> user;
    std::optional<std::wstring> machine;
    std::optional<std::wstring> settingsFile;
    std::vector<LANGID> keyboards;
    std::vector<LANGID> languages;

    // The first place that has a list; the order is that of a process's start.
    std::string Deciding() const
    {
        if (option) return "option";
        if (parent && recordSize >= kRecordBytes) return "parent";
        if (user) return "registryUser";
        if (machine) return "registryMachine";
        return "";
    }
};

std::optional<std::wstring> MarkedList(LocaleChoices& choices, const wchar_t* mark)
{
    if (choices.Number(2) == 0) return {};
    return mark + (L"," + choices.List(false));
}

Surroundings RandomSurroundings(LocaleChoices& choices)
{
    constexpr std::array kLanguages = {LANGID{0x0407}, LANGID{0x0807}, LANGID{0x0409}, LANGID{0x040C}, LANGID{0x0411},
        LANGID{0x0416}, LANGID{0x0401}, LANGID{0x0804}, LANGID{0x0419}, LANGID{0x7C2E}};
    Surroundings result;
    result.option = MarkedList(choices, L"oo");
    result.parent = MarkedList(choices, L"pp");
    if (result.parent) result.parent = result.parent->substr(0, kRecordChars - 1);
    constexpr std::array kSizes = {DWORD{0}, kRecordBytes - 1, kRecordBytes, kRecordBytes, kRecordBytes + 1};
    result.recordSize = choices.Pick(kSizes);
    result.user = MarkedList(choices, L"uu");
    result.machine = MarkedList(choices, L"mm");
    result.settingsFile = MarkedList(choices, L"kk");
    // A settings file's values end with their last character that is no blank.
    if (result.settingsFile) result.settingsFile->erase(result.settingsFile->find_last_not_of(L' ') + 1);
    for (unsigned count = 1 + choices.Number(5); count > 0; --count)
        result.keyboards.push_back(choices.Pick(kLanguages));
    for (int i = 0; i < 3; ++i) result.languages.push_back(choices.Pick(kLanguages));
    return result;
}

class ExplainedProcess : public testing::Test
{
protected:
    ExplainedProcess()
    {
        WriteResourceImage(Module());
        choices_.ArrangeFolders(folder_.Path(), L"sampleUI.DLL");
    }

    std::filesystem::path Module() const { return folder_.Path() / L"sample.dll"; }

    Json Run(const Surroundings& surroundings, unsigned seed, int lists) const
    {
        ArrangedSystem system;
        if (surroundings.user) system.Store(L"user", *surroundings.user);
        if (surroundings.machine) system.Store(L"machine", *surroundings.machine);
        system.keyboards = surroundings.keyboards;
        system.languages = surroundings.languages;
        std::optional<PublishedRecord> record;
        if (surroundings.parent) record.emplace(surroundings.recordSize, *surroundings.parent);

        ChildSettings settings;
        settings.application = (TestProgramFolder() / L"explain_host.exe").wstring();
        settings.commandLine = L"explain_host.exe";
        if (surroundings.settingsFile) settings.commandLine += L' ' + WriteSettingsFile(*surroundings.settingsFile);
        if (surroundings.option) settings.commandLine += L" \"/uilocale:" + *surroundings.option + L'"';
        settings.environment = system.Environment();
        settings.environment.emplace_back(L"MUITOOL_TEST_MODULE", Module().wstring());
        settings.environment.emplace_back(L"MUITOOL_TEST_SEED", std::to_wstring(seed));
        settings.environment.emplace_back(L"MUITOOL_TEST_COUNT", std::to_wstring(lists));
        ChildProcess child(settings);
        child.CloseInput();
        return Json::parse(child.ReadAll(), nullptr, false);
    }

    std::wstring WriteSettingsFile(const std::wstring& list) const
    {
        const std::filesystem::path path = folder_.Path() / L"sample.ini";
        std::ofstream(path, std::ios::binary) << "[Settings]\r\nUILocale=" << Utf8FromWide(list) << "\r\n";
        return path.wstring();
    }

    TemporaryFolder folder_;
    LocaleChoices choices_{20260611};
};

Json TextOrNull(const std::optional<std::wstring>& text)
{
    return text ? Json(Utf8FromWide(*text)) : Json();
}

void ExpectSources(const Json& report, const Surroundings& surroundings)
{
    const std::string deciding = surroundings.Deciding();
    EXPECT_EQ(report.at("decidedBy"), deciding.empty() ? Json() : Json(deciding));
    const Json& sources = report.at("sources");
    EXPECT_EQ(sources.at("option"), TextOrNull(surroundings.option));
    EXPECT_EQ(sources.at("parent"), surroundings.recordSize >= kRecordBytes ? TextOrNull(surroundings.parent) : Json());
    EXPECT_EQ(sources.at("registryUser"), TextOrNull(surroundings.user));
    EXPECT_EQ(sources.at("registryMachine"), TextOrNull(surroundings.machine));
    EXPECT_EQ(sources.at("kiv"), TextOrNull(surroundings.settingsFile));

    // The list that the library decided on begins as that of the place which is said to have decided.
    const std::string list = report.at("list");
    const std::string value =
        deciding.empty() ? surroundings.settingsFile ? "kk" : "" : sources.at(deciding).get<std::string>();
    EXPECT_EQ(list.substr(0, std::min<std::size_t>(2, value.size())), value.substr(0, 2));
}

// "0x0007, 0x0009": the primary languages, each once, in the order of their numbers.
void ExpectKeyboards(const Json& report, const Surroundings& surroundings)
{
    std::set<LANGID> expected;
    for (const LANGID keyboard : surroundings.keyboards) expected.insert(PRIMARYLANGID(keyboard));
    std::vector<LANGID> found;
    const std::string text = report.at("sources").at("keyboards");
    for (std::size_t at = text.find("(0x"); at != std::string::npos; at = text.find("(0x", at + 1))
        found.push_back(static_cast<LANGID>(std::stoul(text.substr(at + 3, 4), nullptr, 16)));
    EXPECT_EQ(found, std::vector<LANGID>(expected.begin(), expected.end()));
}

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
        [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return text;
}

}  // namespace

TEST_F(ExplainedProcess, AgreesWithTheLibraryInIt)
{
    for (int i = 0; i < kProcesses; ++i)
    {
        SCOPED_TRACE(i);
        if (i % 10 == 0) choices_.ArrangeFolders(folder_.Path(), L"sampleUI.DLL");
        const Surroundings surroundings = RandomSurroundings(choices_);
        const Json report = Run(surroundings, static_cast<unsigned>(i), kListsPerProcess);
        ASSERT_TRUE(report.is_object());
        ASSERT_EQ(report.at("explanations").size(), static_cast<std::size_t>(kListsPerProcess));
        for (const Json& explanation : report.at("explanations"))
            ASSERT_EQ(Lower(explanation.at("explained")), Lower(explanation.at("loaded"))) << explanation.dump();
        ExpectSources(report, surroundings);
        ExpectKeyboards(report, surroundings);
        if (HasFailure()) return;
    }
}

// A list of the parent that fills its record leaves no room for the terminator.
TEST_F(ExplainedProcess, TakesNoMoreOfTheParentsListThanTheLibrary)
{
    Surroundings surroundings;
    surroundings.parent = std::wstring(kRecordChars, L'x');
    const Json report = Run(surroundings, 0, 0);
    ASSERT_TRUE(report.is_object());
    EXPECT_EQ(report.at("sources").at("parent"), std::string(kRecordChars - 1, 'x'));
    EXPECT_EQ(report.at("list"), std::string(kRecordChars - 1, 'x'));
}
