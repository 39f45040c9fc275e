// Which language the phrasebook speaks and which it translates into, decided by the folders beside it.
#include "phrasebook_ids.h"
#include "process/samples/phrasebook_fixture.h"
#include "support/box_window.h"
#include "support/child_process.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace arvmui_test
{
namespace
{

using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr UINT kLibraryNotFound = 903;
constexpr DWORD kNoWindow = 1;  // exit code

std::vector<std::wstring> Phrases(const std::wstring& locale)
{
    std::vector<std::wstring> phrases;
    for (UINT id = TEXT_ID_FIRST_PHRASE; !PhrasebookText(locale, id).empty(); ++id)
        phrases.push_back(PhrasebookText(locale, id));
    return phrases;
}

class PhrasebookLanguageTest : public testing::TestWithParam<PhrasebookLanguage>
{
};

INSTANTIATE_TEST_SUITE_P(
    Phrasebook, PhrasebookLanguageTest, testing::ValuesIn(kPhrasebookLanguages), testing::PrintToStringParamName());

TEST_P(PhrasebookLanguageTest, WindowSpeaksIt)
{
    const PhrasebookLanguage& language = GetParam();
    const Phrasebook phrasebook(L"/uilocale:" + std::wstring(language.folder));
    const HWND window = phrasebook.Window();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(WindowText(window), language.title);
    EXPECT_EQ(ListItems(window, CONTROL_ID_PHRASES), Phrases(language.folder));
    EXPECT_EQ(TextOfControl(window, CONTROL_ID_STATUS),
        Filled(PhrasebookText(language.folder, TEXT_ID_STATUS_LANGUAGE), language.tag));
}

// The user's own language is no translation.
TEST_P(PhrasebookLanguageTest, WindowTranslatesIntoAnotherLanguage)
{
    const PhrasebookLanguage& own = GetParam();
    const Phrasebook phrasebook(L"/uilocale:" + std::wstring(own.folder));
    const HWND window = phrasebook.Window();
    ASSERT_NE(window, nullptr);
    const std::wstring label = TextOfControl(window, CONTROL_ID_TRANSLATION_LABEL);
    const std::wstring translation = TextOfControl(window, CONTROL_ID_TRANSLATION);

    int matches = 0;
    for (const PhrasebookLanguage& other : kPhrasebookLanguages)
    {
        if (other.folder == own.folder) continue;
        const std::wstring name = PhrasebookText(other.folder, TEXT_ID_LANGUAGE_NAME);
        if (label == Filled(PhrasebookText(own.folder, TEXT_ID_TRANSLATION_LABEL), name)
            && translation == PhrasebookText(other.folder, TEXT_ID_FIRST_PHRASE))
            ++matches;
    }
    EXPECT_EQ(matches, 1) << Utf8FromWide(label + L" " + translation);
}

// An installation whose folders a test decides about.
class PrivatePhrasebook
{
public:
    PrivatePhrasebook()
    {
        Add(L"phrasebook.exe");
        Add(L"arvmui64.dll");
    }

    void Add(const std::wstring& file) const { folder_.CopyIn(PhrasebookFolder() / file, file); }
    void AddTexts(const std::wstring& locale) const { Add(L"resource\\" + locale + L"\\phraseUI.DLL"); }
    void AddLibraryTexts(const std::wstring& locale) const { Add(L"resource\\" + locale + L"\\arvmuiUI.DLL"); }

    const std::filesystem::path& Path() const { return folder_.Path(); }

private:
    TemporaryFolder folder_;
};

std::vector<std::wstring> Targets(HWND window)
{
    GiveCommand(window, COMMAND_ID_TARGET);
    const HWND dialog = WaitForDialogOf(window);
    return dialog ? ListItems(dialog, CONTROL_ID_TARGETS) : std::vector<std::wstring>();
}

TEST(PhrasebookFolders, EachOneIsALanguageToTranslateInto)
{
    const Phrasebook phrasebook(L"/uilocale:en");
    const HWND window = phrasebook.Window();
    ASSERT_NE(window, nullptr);
    EXPECT_THAT(Targets(window), UnorderedElementsAre(L"Deutsch", L"English", L"Español", L"Français", L"日本語"));
}

TEST(PhrasebookFolders, OneMoreIsOneMoreLanguage)
{
    const PrivatePhrasebook installation;
    installation.AddTexts(L"en");
    WriteResourceImage(installation.Path() / L"resource" / L"eo" / L"phraseUI.DLL",
        {{TEXT_ID_LOCALE_TAG, L"eo"}, {TEXT_ID_LANGUAGE_ID, L"0x1000"}, {TEXT_ID_LANGUAGE_NAME, L"Esperanto"},
            {TEXT_ID_FIRST_PHRASE, L"Bonan matenon!"}});
    const Phrasebook phrasebook(L"/uilocale:en", installation.Path());
    const HWND window = phrasebook.Window();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(TextOfControl(window, CONTROL_ID_TRANSLATION), L"Bonan matenon!");
    EXPECT_THAT(Targets(window), ElementsAre(L"English", L"Esperanto"));
}

TEST(PhrasebookFolders, ThoseOfOtherProgramsAreNoLanguages)
{
    const PrivatePhrasebook installation;
    for (const wchar_t* const locale : {L"en", L"de"}) installation.AddTexts(locale);
    for (const wchar_t* const locale : {L"fr", L"ja"}) installation.AddLibraryTexts(locale);
    const Phrasebook phrasebook(L"/uilocale:de", installation.Path());
    const HWND window = phrasebook.Window();
    ASSERT_NE(window, nullptr);
    EXPECT_THAT(Targets(window), ElementsAre(L"Deutsch", L"English"));
}

// No English to fall back to: the folder of another program leads nowhere, and nobody is told.
TEST(PhrasebookFolders, ThoseOfOtherProgramsAreNoFailures)
{
    const PrivatePhrasebook installation;
    installation.AddTexts(L"de");
    for (const wchar_t* const locale : {L"de", L"fr"}) installation.AddLibraryTexts(locale);
    const Phrasebook phrasebook(L"/uilocale:de", installation.Path());
    const HWND window = phrasebook.Window();
    ASSERT_NE(window, nullptr);
    EXPECT_THAT(VisibleDialogsOfProcess(phrasebook.ProcessId()), testing::IsEmpty());
    EXPECT_EQ(TextOfControl(window, CONTROL_ID_TRANSLATION), PhrasebookText(L"de", TEXT_ID_FIRST_PHRASE));
}

TEST(PhrasebookFolders, WithoutTextsOfItsOwnTheLibraryTellsTheUser)
{
    const PrivatePhrasebook installation;
    installation.AddLibraryTexts(L"fr");
    const Phrasebook phrasebook(L"/uilocale:fr", installation.Path());
    const HWND box = phrasebook.WaitForBox();
    ASSERT_NE(box, nullptr);
    const std::wstring message = LibraryText(L"fr", kLibraryNotFound);
    const std::wstring start = Filled(message.substr(0, message.find(L"%%lu")), L"");
    EXPECT_THAT(ReadBox(box).text, testing::HasSubstr(L"phraseUI.DLL"));
    EXPECT_THAT(ReadBox(box).text, testing::StartsWith(start.substr(0, start.find(L"%s"))));
    ASSERT_TRUE(PressButton(box, ReadBox(box).buttons.begin()->first));
    EXPECT_EQ(phrasebook.ExitCode(), kNoWindow);
}

TEST(PhrasebookFolders, WithoutAnyTextsItTellsTheUserItself)
{
    const PrivatePhrasebook installation;
    const Phrasebook phrasebook(L"/uilocale:fr", installation.Path());
    const HWND box = phrasebook.WaitForBox();
    ASSERT_NE(box, nullptr);
    EXPECT_THAT(ReadBox(box).text, testing::HasSubstr(L"phraseUI.DLL"));
    ASSERT_TRUE(PressButton(box, ReadBox(box).buttons.begin()->first));
    EXPECT_EQ(phrasebook.ExitCode(), kNoWindow);
}

}  // namespace
}  // namespace arvmui_test
