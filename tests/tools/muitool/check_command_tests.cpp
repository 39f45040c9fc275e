// The check of translations: nothing to say about correct ones, one finding for one defect.
#include "dialog_template.h"
#include "muitool_program.h"
#include "resource_writer.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>

using arvmui_test::TemporaryFolder;
using arvmui_test::WriteResourceImage;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

namespace fs = std::filesystem;

constexpr wchar_t kFile[] = L"arvmuiUI.DLL";
constexpr UINT kSettingsDialog = 300;

// The project's German and English texts in a folder of their own, of which the German ones get a defect.
class Check : public testing::Test
{
protected:
    Check()
    {
        for (const wchar_t* locale : {L"en", L"de"})
            folder_.CopyIn(BuiltFolder() / L"resource" / locale / kFile, (fs::path(locale) / kFile).wstring());
    }

    fs::path German() const { return folder_.Path() / L"de" / kFile; }

    void Change(const std::function<void(Translation&)>& change) const
    {
        const Translation original = ReadTranslation(German());
        Translation changed = original;
        change(changed);
        WriteTranslation(original, changed, German());
    }

    // "kind resource" of each finding.
    std::vector<std::string> Findings() const
    {
        const ToolResult result = RunTool({L"check", folder_.Path().wstring(), L"--json"});
        std::vector<std::string> findings;
        for (const auto& finding : nlohmann::json::parse(result.output))
            findings.push_back(
                finding.at("kind").get<std::string>() + ' ' + std::to_string(finding.at("resource").get<int>()));
        EXPECT_EQ(result.exitCode, findings.empty() ? 0 : 1);
        return findings;
    }

    TemporaryFolder folder_;
};

}  // namespace

TEST_F(Check, CorrectTranslationsHaveNoFindings)
{
    EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(Check, TheProjectsOwnTranslationsHaveNoFindings)
{
    const ToolResult result = RunTool({L"check", (BuiltFolder() / L"resource").wstring()});
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.exitCode, 0);
}

TEST_F(Check, LinesNameFileAndNumber)
{
    Change([](Translation& german) { german.strings[906] = L"%%lu"; });
    const ToolResult result = RunTool({L"check", folder_.Path().wstring()});
    EXPECT_THAT(result.output, testing::HasSubstr("arvmuiUI.DLL(906): placeholders: "));
}

TEST_F(Check, ALostPlaceholderOfTheFirstPass)
{
    Change([](Translation& german) { german.strings[905] = L"Die Datei fehlt.\n\nFehler %%lu: %%s"; });
    EXPECT_THAT(Findings(), ElementsAre("placeholders 905"));
}

TEST_F(Check, SwappedPlaceholdersOfTheSecondPass)
{
    Change([](Translation& german) { german.strings[908] = L"Fehler %%s: %%lu"; });
    EXPECT_THAT(Findings(), ElementsAre("placeholders 908"));
}

TEST_F(Check, ATextThatIsTooLongForItsBuffer)
{
    Change([](Translation& german) { german.strings[102] = std::wstring(32, L'x'); });
    EXPECT_THAT(Findings(), ElementsAre("too-long 102"));
}

TEST_F(Check, ATextThatJustFitsIsNoFinding)
{
    Change([](Translation& german) { german.strings[102] = std::wstring(31, L'x'); });
    EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(Check, ATagOfAnotherLanguage)
{
    Change([](Translation& german) { german.strings[1] = L"da-DK"; });
    EXPECT_THAT(Findings(), ElementsAre("locale-tag 1", "language-id 2"));
}

TEST_F(Check, AnIdentifierOfAnotherLanguage)
{
    Change([](Translation& german) { german.strings[2] = L"0x0406"; });
    EXPECT_THAT(Findings(), ElementsAre("language-id 2", "fallback 2"));
}

TEST_F(Check, ACharacterOutsideTheCodePage)
{
    Change([](Translation& german) { german.strings[80] = L"\u65E5"; });
    EXPECT_THAT(Findings(), ElementsAre("code-page 80"));
}

TEST_F(Check, AccessKeysThatCollide)
{
    Change([](Translation& german) { german.dialogs[kSettingsDialog].controls[2].title.text = L"&Entfernen"; });
    EXPECT_THAT(Findings(), ElementsAre("access-keys 300"));
}

TEST_F(Check, ATextThatIsLargerThanItsControl)
{
    Change(
        [](Translation& german) { german.dialogs[kSettingsDialog].controls[2].title.text = std::wstring(80, L'W'); });
    EXPECT_THAT(Findings(), ElementsAre("does-not-fit 300"));
}

TEST_F(Check, AControlWithAnotherNumber)
{
    Change([](Translation& german) { german.dialogs[kSettingsDialog].controls[2].id = 999; });
    EXPECT_THAT(Findings(), ElementsAre("controls 300", "controls 300"));
}

TEST_F(Check, AMissingStringAndASuperfluousOne)
{
    fs::remove(German());
    WriteResourceImage(German(), {{1, L"de-DE"}, {2, L"0x0407"}, {5000, L"mehr"}});
    const std::vector<std::string> findings = Findings();
    EXPECT_THAT(findings, testing::Contains("missing-string 101"));
    EXPECT_THAT(findings, testing::Contains("extra-string 5000"));
    EXPECT_THAT(findings, testing::Contains("missing-dialog 300"));
}

TEST_F(Check, AFileThatIsNotTranslated)
{
    fs::remove(German());
    EXPECT_THAT(Findings(), ElementsAre("missing-file 0"));
}

TEST_F(Check, AFileThatIsNoLibrary)
{
    fs::remove(German());
    std::ofstream(German(), std::ios::binary) << "text";
    EXPECT_THAT(Findings(), ElementsAre("image 0", "unreadable 0"));
}

TEST_F(Check, AMissingReference)
{
    fs::remove_all(folder_.Path() / L"en");
    EXPECT_THAT(Findings(), ElementsAre("missing-reference 0"));
}

TEST_F(Check, AProgramInPlaceOfALibraryHasCode)
{
    fs::copy_file(BuiltFolder() / L"hello.exe", German(), fs::copy_options::overwrite_existing);
    EXPECT_THAT(Findings(), testing::Contains("image 0"));
}

TEST_F(Check, AFolderThatItsLanguageNeverReaches)
{
    const fs::path latin = folder_.Path() / L"sr-Latn-RS" / kFile;
    fs::create_directories(latin.parent_path());
    fs::copy_file(folder_.Path() / L"en" / kFile, latin);
    const Translation original = ReadTranslation(latin);
    Translation changed = original;
    changed.strings[1] = L"sr-Latn-RS";
    changed.strings[2] = L"0x241A";
    WriteTranslation(original, changed, latin);
    EXPECT_THAT(Findings(), testing::Contains("fallback 2"));
}

TEST_F(Check, TheLibrarysNamesForALanguageAreRight)
{
    for (const auto& [folder, tag] : {std::pair(L"nn", L"nn-NO"), std::pair(L"nb", L"nb-NO")})
    {
        const fs::path library = folder_.Path() / folder / kFile;
        fs::create_directories(library.parent_path());
        fs::copy_file(folder_.Path() / L"en" / kFile, library);
        const Translation original = ReadTranslation(library);
        Translation changed = original;
        changed.strings[1] = tag;
        changed.strings[2] = L"0x0414";
        WriteTranslation(original, changed, library);
    }
    EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(Check, ThePersianYehExistsInItsCodePage)
{
    const fs::path library = folder_.Path() / L"fa" / kFile;
    fs::create_directories(library.parent_path());
    fs::copy_file(folder_.Path() / L"en" / kFile, library);
    const Translation original = ReadTranslation(library);
    Translation changed = original;
    changed.strings[1] = L"fa-IR";
    changed.strings[2] = L"0x0429";
    changed.strings[80] = L"\u0641\u0627\u0631\u0633\u06CC";
    WriteTranslation(original, changed, library);
    EXPECT_THAT(Findings(), testing::Not(testing::Contains("code-page 80")));
}

TEST_F(Check, AFindingIsOneLine)
{
    Change([](Translation& german) { german.strings[908] += L"\n\u65E5"; });
    const ToolResult result = RunTool({L"check", folder_.Path().wstring()});
    EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 1) << result.output;
}

TEST_F(Check, OneChineseFolderServesHalfOfItsReaders)
{
    const fs::path chinese = folder_.Path() / L"zh" / kFile;
    fs::create_directories(chinese.parent_path());
    fs::copy_file(folder_.Path() / L"en" / kFile, chinese);
    const Translation original = ReadTranslation(chinese);
    Translation changed = original;
    changed.strings[1] = L"zh-CN";
    changed.strings[2] = L"0x0804";
    WriteTranslation(original, changed, chinese);
    EXPECT_THAT(Findings(), testing::Contains("fallback 2"));
}
