// "muitool explain" as its users read it, and as scripts do.
#include "arranged_system.h"
#include "muitool_program.h"
#include "support/box_window.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using arvmui_test::TemporaryFolder;
using arvmui_test::TestProgramFolder;
using arvmui_test::WriteResourceImage;
using testing::HasSubstr;
using Json = nlohmann::json;

namespace
{

// A module with French texts, in a system whose user speaks French, too.
class ExplainCommand : public testing::Test
{
protected:
    ExplainCommand()
    {
        system_.languages = {0x0C0C, 0x0407, 0x0411};
        system_.keyboards = {0x0407};
        WriteResourceImage(Module());
        WriteResourceImage(folder_.Path() / L"resource" / L"fr" / L"editorUI.DLL", {{1, L"fr-FR"}});
    }

    std::filesystem::path Module() const { return folder_.Path() / L"editor.dll"; }

    ToolCall Call(std::vector<std::wstring> arguments) const
    {
        arguments.insert(arguments.begin(), {L"explain", L"--module", Module().wstring()});
        return {.arguments = arguments,
            .program = TestProgramFolder() / L"muitool_arranged.exe",
            .environment = system_.Environment()};
    }
    ToolResult Run(const std::vector<std::wstring>& arguments) const { return RunCall(Call(arguments)); }
    Json RunForJson(std::vector<std::wstring> arguments) const
    {
        arguments.push_back(L"--json");
        return Json::parse(Run(arguments).output);
    }

    ArrangedSystem system_;
    TemporaryFolder folder_;
};

}  // namespace

TEST_F(ExplainCommand, NamesModuleAndFiles)
{
    const Json json = RunForJson({});
    EXPECT_EQ(json.at("module"), arvmui_test::Utf8FromWide(Module().wstring()));
    EXPECT_EQ(json.at("pathFormat"),
        arvmui_test::Utf8FromWide((folder_.Path() / L"resource" / L"%s" / L"editorUI.DLL").wstring()));
    EXPECT_EQ(json.at("candidates").at(0).at("path"),
        arvmui_test::Utf8FromWide((folder_.Path() / L"resource" / L"fr-CA" / L"editorUI.DLL").wstring()));
}

TEST_F(ExplainCommand, TellsTheLanguagesOfTheSystem)
{
    const Json sources = RunForJson({}).at("sources");
    EXPECT_EQ(sources.at("user"), "fr-CA (0x0C0C)");
    EXPECT_EQ(sources.at("system"), "de-DE (0x0407)");
    EXPECT_EQ(sources.at("uilang"), "ja-JP (0x0411)");
    EXPECT_EQ(sources.at("keyboards"), "de (0x0007)");
    EXPECT_EQ(sources.at("option"), Json());
}

TEST_F(ExplainCommand, WithoutAnyWishTheBuiltInListDecides)
{
    const Json json = RunForJson({});
    EXPECT_EQ(json.at("decidedBy"), "built in: kiv,user,system");
    EXPECT_EQ(json.at("chosen"), "fr");
}

TEST_F(ExplainCommand, AGivenListTakesThePlaceOfTheProcesssOwn)
{
    const Json json = RunForJson({L"xx,user", L"/uilocale:de"});
    EXPECT_EQ(json.at("decidedBy"), "given");
    EXPECT_EQ(json.at("list"), "xx,user");
    EXPECT_EQ(json.at("chosen"), "fr");
    EXPECT_EQ(json.at("candidates").at(0).at("item"), "xx");
    EXPECT_EQ(json.at("candidates").at(1).at("item"), "user");
}

TEST_F(ExplainCommand, TextAndJsonTellTheSame)
{
    const Json json = RunForJson({L"/uilocale:de,fr"});
    const std::string text = Run({L"/uilocale:de,fr"}).output;
    EXPECT_THAT(text, HasSubstr("Module      " + json.at("module").get<std::string>() + '\n'));
    EXPECT_THAT(text, HasSubstr("Files       " + json.at("pathFormat").get<std::string>() + '\n'));
    EXPECT_THAT(text, HasSubstr("List        de,fr   (option /uilocale:)\n"));
    EXPECT_THAT(text, HasSubstr("Chosen      fr\n"));
    std::size_t place = text.find("Candidates\n");
    for (const Json& candidate : json.at("candidates"))
    {
        place = text.find("\n  " + candidate.at("locale").get<std::string>() + ' ', place);
        ASSERT_NE(place, std::string::npos) << candidate;
        ++place;
    }
}

TEST_F(ExplainCommand, TakesTheNameOfTheFileWhereItIsNotTheModules)
{
    WriteResourceImage(folder_.Path() / L"resource" / L"de" / L"other.dll", {{1, L"de-DE"}});
    const Json json = RunForJson({L"--file", L"other.dll", L"fr,de"});
    EXPECT_EQ(json.at("chosen"), "de");
    EXPECT_EQ(json.at("candidates").at(0).at("state"), "noFile");
}

TEST_F(ExplainCommand, TellsWhyAFileDoesNotLoad)
{
    const auto file = folder_.Path() / L"resource" / L"de" / L"editorUI.DLL";
    std::filesystem::create_directories(file.parent_path());
    std::filesystem::copy_file(TestProgramFolder() / L"muitool_arranged.exe", file);
    std::filesystem::resize_file(file, 100);
    const Json candidate = RunForJson({L"de"}).at("candidates").at(0);
    EXPECT_EQ(candidate.at("state"), "notLoadable");
    EXPECT_NE(candidate.at("error"), 0);
    EXPECT_THAT(Run({L"de"}).output, HasSubstr("does not load: "));
}

TEST_F(ExplainCommand, TakesFoldersOfAnyScript)
{
    const std::filesystem::path folder = folder_.Path() / L"\u65E5\u672C \U0001F600";
    WriteResourceImage(folder / L"editor.dll");
    WriteResourceImage(folder / L"resource" / L"de" / L"editorUI.DLL", {{1, L"de-DE"}});
    const ToolResult result = RunTool({L"explain", L"--module", (folder / L"editor.dll").wstring(), L"--json", L"de"});
    const Json json = Json::parse(result.output);
    EXPECT_EQ(json.at("module"), arvmui_test::Utf8FromWide((folder / L"editor.dll").wstring()));
    EXPECT_EQ(json.at("chosen"), "de");
}

TEST_F(ExplainCommand, AModuleThatIsNotThereIsAnError)
{
    const ToolResult result = RunTool({L"explain", L"--module", (folder_.Path() / L"none.dll").wstring()});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, testing::StartsWith("muitool: cannot open "));
    EXPECT_THAT(result.output, HasSubstr("none.dll"));
}

TEST_F(ExplainCommand, AnOptionWithoutAListIsNone)
{
    const Json json = RunForJson({L"/UILOCALE:", L"/uilocale:de"});
    EXPECT_EQ(json.at("sources").at("option"), "de");
    EXPECT_EQ(json.at("list"), "de");
}

TEST_F(ExplainCommand, AnAnswerOfTheUserIsTold)
{
    RunningTool tool(Call({L"--json", L"ask"}));
    const HWND dialog = tool.WaitForDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(arvmui_test::PressButton(dialog, IDOK));
    const Json json = Json::parse(tool.Result().output);
    EXPECT_EQ(json.at("sources").at("ask"), "fr-FR");
    EXPECT_EQ(json.at("refused"), false);
    EXPECT_EQ(json.at("chosen"), "fr");
}

TEST_F(ExplainCommand, ARefusalOfTheUserEndsTheSearch)
{
    RunningTool tool(Call({L"ask,fr"}));
    const HWND dialog = tool.WaitForDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(arvmui_test::PressButton(dialog, IDCANCEL));
    const ToolResult result = tool.Result();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("  The user refused to choose a language, which ends the search.\n"));
    EXPECT_THAT(result.output, HasSubstr("Chosen      none"));
}
