// Every command as a user runs it: arguments, output, exit code.
#include "muitool_program.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

using arvmui_test::TemporaryFolder;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

void WriteBytes(const std::filesystem::path& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

std::wstring GermanLibrary()
{
    return (BuiltFolder() / L"resource" / L"de" / L"arvmuiUI.DLL").wstring();
}

}  // namespace

TEST(Muitool, HelpNamesEveryCommand)
{
    const ToolResult result = RunTool({L"--help"});
    EXPECT_EQ(result.exitCode, 0);
    for (const char* command : {"explain", "check", "strings", "pseudo", "export", "import", "ini", "text", "encoding",
             "message", "box", "ask", "settings", "locale"})
        EXPECT_THAT(result.output, HasSubstr(std::string("\n  ") + command + ' ')) << command;
}

TEST(Muitool, AnUnknownCommandIsAnErrorOfUse)
{
    EXPECT_EQ(RunTool({L"frobnicate"}).exitCode, 2);
    EXPECT_EQ(RunTool({}).exitCode, 2);
}

TEST(Muitool, AMissingArgumentIsAnErrorOfUse)
{
    const ToolResult result = RunTool({L"strings"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, HasSubstr("FILE"));
}

TEST(Muitool, StringsAreListedByNumberInUtf8)
{
    const ToolResult result = RunTool({L"strings", GermanLibrary()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, StartsWith("1\tde-DE\n2\t0x0407\n"));
    EXPECT_THAT(result.output, HasSubstr("\n108\t&Schlie\xC3\x9F"
                                         "en\n"));
}

TEST(Muitool, StringsAsJsonKeepLineEnds)
{
    const ToolResult result = RunTool({L"strings", GermanLibrary(), L"--json"});
    const auto json = nlohmann::json::parse(result.output);
    EXPECT_EQ(json.at("4"), "Deutsch");
    EXPECT_THAT(json.at("908").get<std::string>(), HasSubstr("\n"));
}

TEST(Muitool, AFileThatIsNoLibraryIsNamedInTheError)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.Path() / L"no.dll";
    WriteBytes(file, "text");
    const ToolResult result = RunTool({L"strings", file.wstring()});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, StartsWith("muitool: cannot open "));
    EXPECT_THAT(result.output, HasSubstr("no.dll"));
}

TEST(Muitool, IniListsSectionsAndKeysAndPrintsValues)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.Path() / L"a.ini";
    WriteBytes(file, "[Encoding]\r\nInputEncoding=UTF-8\r\n[one]\r\nkey = Gr\xC3\xBC\xC3\x9F"
                     "e\r\nother=2\r\n");
    EXPECT_EQ(RunTool({L"ini", file.wstring()}).output, "Encoding\none\n");
    EXPECT_EQ(RunTool({L"ini", file.wstring(), L"one"}).output, "key\nother\n");
    const ToolResult value = RunTool({L"ini", file.wstring(), L"one", L"key"});
    EXPECT_EQ(value.output, "Gr\xC3\xBC\xC3\x9F"
                            "e\n");
    EXPECT_EQ(value.exitCode, 0);
    EXPECT_EQ(RunTool({L"ini", file.wstring(), L"one", L"none"}).exitCode, 1);
}

TEST(Muitool, IniListsWhatNeedsALargeBuffer)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.Path() / L"a.ini";
    std::string keys;
    for (int i = 0; i < 1000; ++i) keys += "key" + std::to_string(i) + "=1\r\n";
    WriteBytes(file, "[one]\r\n" + keys);
    const ToolResult result = RunTool({L"ini", file.wstring(), L"one"});
    EXPECT_THAT(result.output, HasSubstr("\nkey999\n"));
}

TEST(Muitool, IniRefusesAFileThatIsNotThere)
{
    const ToolResult result = RunTool({L"ini", L"Z:\\no such folder\\a.ini"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, HasSubstr("a.ini"));
}

TEST(Muitool, IniCheckReportsPlacesAndFails)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.Path() / L"a.ini";
    WriteBytes(file, "[one]\r\nnonsense\r\n");
    const ToolResult result = RunTool({L"ini", L"check", file.wstring()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("a.ini(2): malformed: "));
    WriteBytes(file, "[one]\r\nkey=1\r\n");
    EXPECT_EQ(RunTool({L"ini", L"check", file.wstring()}).exitCode, 0);
}

TEST(Muitool, EncodingPrintsItsCodePage)
{
    EXPECT_THAT(RunTool({L"encoding", L"Shift_JIS"}).output, StartsWith("932"));
    EXPECT_EQ(RunTool({L"encoding", L"utf-8"}).output.substr(0, 5), "65001");
}

TEST(Muitool, TextIsFoundBesideTheModuleAndDecoded)
{
    const ToolResult result =
        RunTool({L"text", L"hello.txt", L"--module", (BuiltFolder() / L"hello.exe").wstring(), L"--locales", L"ja"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("Unicode \xE3\x82\x92\xE5\x8F\x97\xE3\x81\x91"));
}

TEST(Muitool, MessageSpeaksTheLanguageOfTheProcess)
{
    const ToolResult german = RunTool({L"message", L"5", L"/uilocale:de"});
    const ToolResult english = RunTool({L"message", L"5", L"/uilocale:en"});
    EXPECT_EQ(german.exitCode, 0);
    EXPECT_NE(german.output, english.output);
}

TEST(Muitool, ExplainNamesTheOptionAndTheFileChosen)
{
    const ToolResult result =
        RunTool({L"explain", L"--module", (BuiltFolder() / L"hello.exe").wstring(), L"--json", L"/uilocale:fr-CA,de"});
    EXPECT_EQ(result.exitCode, 0);
    const auto json = nlohmann::json::parse(result.output);
    EXPECT_EQ(json.at("sources").at("option"), "fr-CA,de");
    EXPECT_EQ(json.at("decidedBy"), "option /uilocale:");
    EXPECT_EQ(json.at("chosen"), "fr");
    EXPECT_EQ(json.at("candidates").at(0).at("state"), "noFolder");
    EXPECT_EQ(json.at("candidates").at(1).at("item"), "fr-CA");
    EXPECT_EQ(json.at("candidates").at(2).at("state"), "notTried");
}

TEST(Muitool, ExplainFailsWhereNothingLoads)
{
    const ToolResult result = RunTool({L"explain", L"--file", L"nobodyUI.DLL", L"de"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("Chosen      none"));
    EXPECT_THAT(result.output, HasSubstr("the folder lacks the file"));
}

TEST(Muitool, ExportAndImportGiveTheSameFile)
{
    const TemporaryFolder folder;
    const std::wstring po = (folder.Path() / L"de.po").wstring();
    const std::filesystem::path copy = folder.Path() / L"copy.dll";
    const std::wstring english = (BuiltFolder() / L"resource" / L"en" / L"arvmuiUI.DLL").wstring();
    ASSERT_EQ(RunTool({L"export", GermanLibrary(), po, L"--reference", english}).exitCode, 0);
    ASSERT_EQ(RunTool({L"import", po, GermanLibrary(), copy.wstring()}).exitCode, 0);

    const auto read = [](const std::filesystem::path& path)
    {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    EXPECT_EQ(read(copy), read(GermanLibrary()));
}

TEST(Muitool, ImportIntoTheEnglishFileGivesTheGermanTexts)
{
    const TemporaryFolder folder;
    const std::wstring po = (folder.Path() / L"de.po").wstring();
    const std::wstring german = (folder.Path() / L"german.dll").wstring();
    const std::wstring english = (BuiltFolder() / L"resource" / L"en" / L"arvmuiUI.DLL").wstring();
    ASSERT_EQ(RunTool({L"export", GermanLibrary(), po, L"--reference", english}).exitCode, 0);
    ASSERT_EQ(RunTool({L"import", po, english, german}).exitCode, 0);
    auto expected = nlohmann::json::parse(RunTool({L"strings", GermanLibrary(), L"--json"}).output);
    auto found = nlohmann::json::parse(RunTool({L"strings", german, L"--json"}).output);
    for (const char* identity : {"1", "2"})  // stay those of the file
    {
        expected.erase(identity);
        found.erase(identity);
    }
    EXPECT_EQ(found, expected);
}

TEST(Muitool, ImportNamesTheLineOfABrokenCatalogue)
{
    const TemporaryFolder folder;
    const std::filesystem::path po = folder.Path() / L"a.po";
    WriteBytes(po, "msgid \"\"\nmsgstr \"\"\n\nnonsense\n");
    const ToolResult result = RunTool({L"import", po.wstring(), GermanLibrary(), (folder.Path() / L"b.dll").wstring()});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, HasSubstr("line 4"));
    EXPECT_FALSE(std::filesystem::exists(folder.Path() / L"b.dll"));
}

TEST(Muitool, PseudoTextsKeepThePlaceholders)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.Path() / L"pseudo.dll";
    const std::wstring english = (BuiltFolder() / L"resource" / L"en" / L"arvmuiUI.DLL").wstring();
    ASSERT_EQ(RunTool({L"pseudo", english, file.wstring()}).exitCode, 0);
    const auto json = nlohmann::json::parse(RunTool({L"strings", file.wstring(), L"--json"}).output);
    EXPECT_EQ(json.at("1"), "en-US");
    EXPECT_THAT(json.at("903").get<std::string>(), HasSubstr("%%lu: %%s"));
    EXPECT_THAT(json.at("106").get<std::string>(), StartsWith("[&Y"));
}
