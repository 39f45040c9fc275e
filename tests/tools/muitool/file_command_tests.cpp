// The commands that read files and ask the system as the library does: what they print, and where.
#include "muitool_program.h"
#include "support/byte_file.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using arvmui_test::ChildProcess;
using arvmui_test::ChildSettings;
using arvmui_test::TemporaryFolder;
using arvmui_test::WriteBytes;
using arvmui_test::WriteResourceImage;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

constexpr wchar_t kNoCode[] = L"536870911";  // 0x1FFFFFFF, of which the system knows no text

class FileCommand : public testing::Test
{
protected:
    std::filesystem::path In(const wchar_t* name) const { return folder_.Path() / name; }

    // A module with a text file in two languages.
    std::wstring ModuleWithTexts() const
    {
        WriteResourceImage(In(L"editor.dll"));
        for (const auto& [locale, language] : {std::pair(L"de", L"0x0407"), std::pair(L"ru", L"0x0419")})
            WriteResourceImage(In(L"resource") / locale / L"editorUI.DLL", {{1, locale}, {2, language}});
        WriteBytes(In(L"resource/de/news.txt"), "Gr\xFC\xDF"
                                                "e\r\n");
        WriteBytes(In(L"resource/ru/news.txt"), "\xC4\xE0\r\n");
        return In(L"editor.dll").wstring();
    }

    TemporaryFolder folder_;
};

}  // namespace

TEST_F(FileCommand, OutputIsUtf8WithTheLineEndsOfWindows)
{
    WriteBytes(In(L"a.ini"), "[Encoding]\r\nInputEncoding=UTF-8\r\n[s]\r\nk=\xE6\x97\xA5\r\n");
    ChildSettings settings;
    settings.application = (BuiltFolder() / L"muitool.exe").wstring();
    settings.commandLine = L"muitool ini \"" + In(L"a.ini").wstring() + L"\" s k";
    ChildProcess child(settings);
    EXPECT_EQ(child.ReadAll(), "\xE6\x97\xA5\r\n");
}

TEST_F(FileCommand, ErrorsGoToStandardError)
{
    const ToolResult result = RunCall({.arguments = {L"message", kNoCode}, .withErrors = false});
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.exitCode, 1);
}

TEST_F(FileCommand, IniReadsNamesOfAnyScript)
{
    const std::filesystem::path file = In(L"\u65E5\U0001F600.ini");
    WriteBytes(file, "[Encoding]\r\nInputEncoding=UTF-8\r\n[\xE6\x97\xA5]\r\n\xD7\xA9=\xD0\xB4\xD0\xB0\r\n");
    EXPECT_EQ(RunTool({L"ini", file.wstring()}).output, "Encoding\n\xE6\x97\xA5\n");
    EXPECT_EQ(RunTool({L"ini", file.wstring(), L"\u65E5"}).output, "\xD7\xA9\n");
    EXPECT_EQ(RunTool({L"ini", file.wstring(), L"\u65E5", L"\u05E9"}).output, "\xD0\xB4\xD0\xB0\n");
}

TEST_F(FileCommand, IniNeedsAFile)
{
    const ToolResult result = RunTool({L"ini"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, HasSubstr("FILE"));
}

TEST_F(FileCommand, IniFailsForASectionThatIsNotThere)
{
    WriteBytes(In(L"a.ini"), "[one]\r\nkey=1\r\n");
    EXPECT_EQ(RunTool({L"ini", In(L"a.ini").wstring(), L"two"}).exitCode, 1);
}

TEST_F(FileCommand, IniCheckAsJsonIsOneArray)
{
    const std::filesystem::path file = WriteBytes(In(L"a.ini"), "[one]\r\nnonsense\r\n");
    const ToolResult result = RunTool({L"ini", L"check", file.wstring(), L"--json"});
    EXPECT_EQ(result.exitCode, 1);
    const auto json = nlohmann::json::parse(result.output);
    ASSERT_EQ(json.size(), 1u);
    EXPECT_EQ(json.at(0).at("file"), arvmui_test::Utf8FromWide(file.wstring()));
    EXPECT_EQ(json.at(0).at("resource"), 2);
    EXPECT_EQ(json.at(0).at("kind"), "malformed");

    WriteBytes(file, "[one]\r\nkey=1\r\n");
    EXPECT_EQ(RunTool({L"ini", L"check", file.wstring(), L"--json"}).output, "[]\n");
}

TEST_F(FileCommand, IniCheckOfAFileThatIsNotThereIsAnError)
{
    const ToolResult result = RunTool({L"ini", L"check", In(L"none.ini").wstring()});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, HasSubstr("none.ini"));
}

TEST_F(FileCommand, TextIsDecodedAsItsLanguageIs)
{
    const std::wstring module = ModuleWithTexts();
    EXPECT_EQ(RunTool({L"text", L"news.txt", L"--module", module, L"--locales", L"de"}).output, "Gr\xC3\xBC\xC3\x9F"
                                                                                                "e\n");
    EXPECT_EQ(RunTool({L"text", L"news.txt", L"--module", module, L"--locales", L"ru"}).output, "\xD0\x94\xD0\xB0\n");
}

TEST_F(FileCommand, TextFollowsTheProcesssOwnListWhereNoneIsGiven)
{
    const std::wstring module = ModuleWithTexts();
    EXPECT_EQ(RunTool({L"text", L"news.txt", L"--module", module, L"/uilocale:ru"}).output, "\xD0\x94\xD0\xB0\n");
}

TEST_F(FileCommand, TextThatNoFolderHasIsToldOnStandardError)
{
    const std::wstring module = ModuleWithTexts();
    const std::vector<std::wstring> arguments = {L"text", L"none.txt", L"--module", module, L"--locales", L"de"};
    const ToolResult result = RunTool(arguments);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, StartsWith("muitool: no locale folder has none.txt: "));
    EXPECT_EQ(RunCall({.arguments = arguments, .withErrors = false}).output, "");
}

TEST_F(FileCommand, TextBesideAModuleThatIsNotThereIsAnError)
{
    const ToolResult result = RunTool({L"text", L"news.txt", L"--module", In(L"none.dll").wstring()});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, HasSubstr("none.dll"));
}

// 0 stands for the system's code page, which is what the library takes for a name that it does not know.
TEST_F(FileCommand, EncodingOfAnUnknownNameIsTheSystems)
{
    EXPECT_THAT(RunTool({L"encoding", L"nonsense"}).output, StartsWith("0\t"));
    EXPECT_THAT(RunTool({L"encoding", L"US-ASCII"}).output, StartsWith("0\t"));
}

TEST_F(FileCommand, EncodingThatTheSystemLacksFails)
{
    const ToolResult result = RunTool({L"encoding", L"cp999"});
    EXPECT_EQ(result.output, "999\n");
    EXPECT_EQ(result.exitCode, 1);
}

TEST_F(FileCommand, MessageTakesHexadecimalCodes)
{
    const ToolResult decimal = RunTool({L"message", L"50", L"/uilocale:en"});
    EXPECT_EQ(decimal.exitCode, 0);
    EXPECT_THAT(decimal.output, testing::EndsWith("\n"));
    EXPECT_EQ(RunTool({L"message", L"0x32", L"/uilocale:en"}).output, decimal.output);
}

TEST_F(FileCommand, MessageOfACodeWithoutTextIsTold)
{
    EXPECT_EQ(RunTool({L"message", kNoCode}).output, "muitool: the system has no text for 536870911\n");
}

TEST_F(FileCommand, MessageRefusesWhatIsNoCode)
{
    for (const wchar_t* const code : {L"five", L"4294967296", L"-1"})
        EXPECT_EQ(RunTool({L"message", code}).exitCode, 2) << std::filesystem::path(code);
}

TEST_F(FileCommand, AnEmptyLocaleOptionIsTakenOffLikeAnyOther)
{
    const ToolResult result = RunTool({L"message", L"50", L"/uilocale:", L"/UILocale:en"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, RunTool({L"message", L"50", L"/uilocale:en"}).output);
}
