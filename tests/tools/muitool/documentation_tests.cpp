// The tool's manual against the tool: each command has a section, each option is described there, and each
// example prints what the manual shows.
#include "arranged_system.h"
#include "muitool_program.h"
#include "support/box_window.h"
#include "support/byte_file.h"
#include "support/dialog_controls.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <shellapi.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

using namespace arvmui_test;
using testing::HasSubstr;

namespace
{

namespace fs = std::filesystem;

constexpr char kExampleFolder[] = "C:\\editor";
constexpr std::string_view kPrompt = "> ";

std::string Manual()
{
    std::ifstream file(TestProgramFolder() / L"muitool.md", std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    std::erase(text, '\r');
    return text;
}

std::vector<std::string> Lines(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

// The names behind a heading of the help, such as "Subcommands:".
std::vector<std::string> NamesBelow(const std::string& help, const std::string& heading)
{
    static const std::regex entry("  ([a-z]+)( .*)?");
    std::vector<std::string> names;
    bool isBelow = false;
    for (const std::string& line : Lines(help))
    {
        std::smatch match;
        if (line == heading)
            isBelow = true;
        else if (isBelow && std::regex_match(line, match, entry))
            names.push_back(match[1]);
    }
    return names;
}

std::vector<std::string> Commands()
{
    return NamesBelow(RunTool({L"--help"}).output, "Subcommands:");
}

// The names in code font in a line.
std::vector<std::string> NamesIn(const std::string& line)
{
    static const std::regex name("`([^`]+)`");
    return {std::sregex_token_iterator(line.begin(), line.end(), name, 1), {}};
}

// The sections of the manual by the commands in their headings.
std::map<std::string, std::string> Sections()
{
    std::map<std::string, std::string> sections;
    std::vector<std::string> current;
    for (const std::string& line : Lines(Manual()))
    {
        if (line.starts_with("## ")) current = NamesIn(line);
        for (const std::string& command : current) sections[command] += line + '\n';
    }
    return sections;
}

// What stands between two lines "```", with the word behind the first.
struct Block
{
    std::string kind;
    std::string text;
};

std::vector<Block> Blocks()
{
    std::vector<Block> blocks;
    bool isInside = false;
    for (const std::string& line : Lines(Manual()))
    {
        if (line.starts_with("```"))
        {
            isInside = !isInside;
            if (isInside) blocks.push_back({line.substr(3), ""});
        }
        else if (isInside)
            blocks.back().text += line + '\n';
    }
    return blocks;
}

std::string BlockOfKind(const std::string& kind)
{
    for (const Block& block : Blocks())
        if (block.kind == kind) return block.text;
    return {};
}

struct Example
{
    std::string command;
    std::string output;
};

std::vector<Example> Examples()
{
    std::vector<Example> examples;
    for (const Block& block : Blocks())
    {
        if (!block.text.starts_with(kPrompt)) continue;
        for (const std::string& line : Lines(block.text))
        {
            if (line.starts_with(kPrompt))
                examples.push_back({line.substr(kPrompt.size()), ""});
            else
                examples.back().output += line + '\n';
        }
    }
    return examples;
}

std::vector<std::wstring> ArgumentsOf(const std::string& command)
{
    int count = 0;
    wchar_t** const arguments = ::CommandLineToArgvW(WideFromUtf8(command).c_str(), &count);
    std::vector<std::wstring> result(arguments + 1, arguments + count);
    ::LocalFree(arguments);
    return result;
}

// The folder that the manual speaks of, on a system of English speakers.
class ManualExamples : public testing::Test
{
protected:
    ManualExamples()
    {
        system_.languages = {0x0409, 0x0409, 0x0409};
        system_.keyboards = {0x0409};
        folder_.CopyIn(TestProgramFolder() / L"muitool_arranged.exe", L"muitool.exe");
        folder_.CopyIn(TestProgramFolder() / L"arvmui64.dll", L"arvmui64.dll");
        for (const wchar_t* const locale : {L"en", L"de", L"fr", L"ar"}) AddLibraryTexts(locale);
        WriteResourceImage(folder_.Path() / L"editor.exe");
        AddTexts(L"en",
            {{1, L"en-US"}, {2, L"0x0409"}, {10, L"&Open ..."}, {11, L"Saved %s, %d pages"}, {12, L"Page %1 of %2"}});
        AddTexts(L"de", {{1, L"de-DE"}, {2, L"0x0407"}, {10, L"\u00D6&ffnen ..."}, {11, L"%d Seiten in %s gespeichert"},
                            {12, L"Seite %1 von %2"}});
        AddTexts(L"fr", {{1, L"fr-FR"}, {2, L"0x040C"}, {10, L"&Ouvrir ..."}, {11, L"%s enregistr\u00E9, %d pages"},
                            {12, L"Page %1 sur %2"}});
        WriteBytes(folder_.Path() / L"resource/de/news.txt", "Gr\xFC\xDF"
                                                             "e\r\n");
        WriteBytes(folder_.Path() / L"editor.ini", BlockOfKind("ini"));
    }

    void AddLibraryTexts(const std::wstring& locale) const
    {
        const std::wstring file = L"resource/" + locale + L"/arvmuiUI.DLL";
        folder_.CopyIn(TestProgramFolder() / file, file);
    }

    void AddTexts(const std::wstring& locale, const Strings& strings) const
    {
        WriteResourceImage(folder_.Path() / L"resource" / locale / L"editorUI.DLL", strings);
    }

    ToolResult Run(const Example& example) const
    {
        const std::vector<std::wstring> arguments = ArgumentsOf(example.command);
        RunningTool tool({.arguments = arguments,
            .folder = folder_.Path().wstring(),
            .program = folder_.Path() / L"muitool.exe",
            .environment = system_.Environment()});
        if (arguments.front() == L"box") Answer(tool, example.output == "yes\n" ? IDYES : 0);
        if (arguments.front() == L"ask") Answer(tool, IDOK);
        if (arguments.front() == L"settings") Answer(tool, IDCANCEL);
        ToolResult result = tool.Result();
        const std::string folder = Utf8FromWide(folder_.Path().wstring());
        for (std::size_t at = result.output.find(folder); at != std::string::npos; at = result.output.find(folder, at))
            result.output.replace(at, folder.size(), kExampleFolder);
        return result;
    }

    static void Answer(const RunningTool& tool, int button)
    {
        const HWND dialog = tool.WaitForDialog();
        ASSERT_NE(dialog, nullptr);
        ASSERT_TRUE(PressButton(dialog, button));
    }

    TemporaryFolder folder_;
    ArrangedSystem system_;
};

// Where the system's own texts are printed, which differ from one to the next.
bool IsPrintedBySystem(const Example& example)
{
    return example.command.starts_with("muitool message ") || example.command.starts_with("muitool encoding ");
}

}  // namespace

TEST(MuitoolManual, HasASectionForEachCommand)
{
    std::vector<std::string> described;
    for (const auto& [command, text] : Sections()) described.push_back(command);
    EXPECT_THAT(described, testing::UnorderedElementsAreArray(Commands()));
}

TEST(MuitoolManual, DescribesEachOptionInTheSectionOfItsCommand)
{
    static const std::regex option("--[a-z]+");
    auto sections = Sections();
    for (const std::string& command : Commands())
    {
        const std::string help = RunTool({WideFromUtf8(command), L"--help"}).output;
        for (std::sregex_iterator found(help.begin(), help.end(), option), end; found != end; ++found)
        {
            if (found->str() == "--help") continue;
            EXPECT_THAT(sections[command], HasSubstr(found->str())) << command;
        }
    }
}

TEST(MuitoolManual, NamesTheCommandsOfCommands)
{
    auto sections = Sections();
    for (const std::string& command : Commands())
        for (const std::string& action : NamesBelow(RunTool({WideFromUtf8(command), L"--help"}).output, "Subcommands:"))
            EXPECT_THAT(sections[command], HasSubstr(command + ' ' + action));
}

TEST(MuitoolManual, ShowsEachCommandAtWork)
{
    std::string commands;
    for (const Example& example : Examples()) commands += example.command + ' ';
    for (const std::string& command : Commands()) EXPECT_THAT(commands, HasSubstr("muitool " + command + ' '));
}

TEST_F(ManualExamples, PrintWhatTheManualShows)
{
    for (const Example& example : Examples())
    {
        const ToolResult result = Run(example);
        if (IsPrintedBySystem(example))
            EXPECT_NE(result.output, "") << example.command;
        else
            EXPECT_EQ(result.output, example.output) << example.command;
    }
    std::ifstream catalogue(folder_.Path() / L"de.po", std::ios::binary);
    EXPECT_THAT((std::string{std::istreambuf_iterator<char>(catalogue), {}}), HasSubstr(BlockOfKind("po")));
}
