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

    // A folder with the English texts under another locale's name.
    void AddLocale(
        const fs::path& folder, const wchar_t* tag, const wchar_t* language,
        const std::function<void(Translation&)>& change = [](Translation&) {}) const
    {
        const fs::path library = folder_.CopyIn(folder_.Path() / L"en" / kFile, (folder / kFile).wstring());
        const Translation original = ReadTranslation(library);
        Translation changed = original;
        changed.strings[1] = tag;
        changed.strings[2] = language;
        change(changed);
        WriteTranslation(original, changed, library);
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
    // The samples have fewer languages than the library.
    for (const wchar_t* const file : {kFile, L"helloUI.DLL", L"phraseUI.DLL"})
    {
        const ToolResult result = RunTool({L"check", (BuiltFolder() / L"resource").wstring(), L"--file", file});
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.exitCode, 0);
    }
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

TEST_F(Check, AFileMissesInALocaleOfTheProduct)
{
    constexpr wchar_t kOther[] = L"otherUI.DLL";
    for (const wchar_t* locale : {L"en", L"fr"})
    {
        const fs::path hello = BuiltFolder() / L"resource" / locale / L"helloUI.DLL";
        folder_.CopyIn(hello, (fs::path(locale) / kOther).wstring());
    }
    // Only the library speaks German; the product speaks French, where the library's texts are missing.
    EXPECT_THAT(Findings(), ElementsAre("missing-file 0"));
}

TEST_F(Check, OneFileOfSeveral)
{
    const fs::path other = folder_.Path() / L"fr" / L"otherUI.DLL";
    fs::create_directories(other.parent_path());
    std::ofstream(other, std::ios::binary) << "no library";
    const ToolResult whole = RunTool({L"check", folder_.Path().wstring(), L"--file", L"ARVMUIui.dll"});
    EXPECT_EQ(whole.output, "");
    EXPECT_EQ(RunTool({L"check", folder_.Path().wstring(), L"--file", L"otherUI.DLL"}).exitCode, 1);

    const ToolResult absent = RunTool({L"check", folder_.Path().wstring(), L"--file", L"absentUI.DLL"});
    EXPECT_EQ(absent.exitCode, 2);
    EXPECT_THAT(absent.output, testing::HasSubstr("absentUI.DLL"));
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
    AddLocale(L"sr-Latn-RS", L"sr-Latn-RS", L"0x241A");
    EXPECT_THAT(Findings(), testing::Contains("fallback 2"));

    // A folder that only those get who ask for it, because the others have one of their own.
    AddLocale(L"sr", L"sr-RS", L"0x241A");
    EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(Check, TheLibrarysNamesForALanguageAreRight)
{
    AddLocale(L"nn", L"nn-NO", L"0x0414");
    AddLocale(L"nb", L"nb-NO", L"0x0414");
    EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(Check, ThePersianYehExistsInItsCodePage)
{
    AddLocale(L"fa", L"fa-IR", L"0x0429",
        [](Translation& persian) { persian.strings[80] = L"\u0641\u0627\u0631\u0633\u06CC"; });
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
    AddLocale(L"zh", L"zh-CN", L"0x0804");
    EXPECT_THAT(Findings(), testing::Contains("fallback 2"));
}
