// "muitool ask": the language dialog, answered in every way. The tool runs in a system of the test's own,
// whose user speaks German.
#include "arranged_system.h"
#include "muitool_program.h"
#include "resource_library.h"
#include "support/box_window.h"
#include "support/built_locales.h"
#include "support/dialog_controls.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using arvmui_test::BuiltLocales;
using arvmui_test::BuiltResourceLibrary;
using arvmui_test::ComboItems;
using arvmui_test::ComboSelection;
using arvmui_test::PressButton;
using arvmui_test::PressKey;
using arvmui_test::SelectComboItem;
using arvmui_test::TemporaryFolder;
using arvmui_test::TestProgramFolder;
using arvmui_test::TextOfWindow;

namespace
{

constexpr int kList = 202;
constexpr UINT kTag = 1;
constexpr UINT kLanguage = 2;
constexpr UINT kEnglishName = 3;
constexpr UINT kNativeName = 4;
constexpr UINT kTitle = 210;
constexpr LANGID kGerman = 0x0407;

std::wstring LibraryText(const std::wstring& locale, UINT number)
{
    return ResourceLibrary(BuiltResourceLibrary(locale)).Strings().at(number);
}

HWND ListOf(HWND dialog)
{
    return ::GetDlgItem(dialog, kList);
}

void Choose(HWND dialog, const std::wstring& name)
{
    const std::vector<std::wstring> items = ComboItems(ListOf(dialog));
    const auto found = std::find(items.begin(), items.end(), name);
    ASSERT_NE(found, items.end()) << testing::PrintToString(name);
    SelectComboItem(dialog, kList, static_cast<int>(found - items.begin()));
    EXPECT_TRUE(PressButton(dialog, IDOK));
}

class AskCommand : public testing::Test
{
protected:
    AskCommand()
    {
        system_.languages = {kGerman, kGerman, kGerman};
        system_.keyboards = {kGerman};
    }

    ToolCall Call(const std::vector<std::wstring>& arguments) const
    {
        return {.arguments = arguments,
            .program = TestProgramFolder() / L"muitool_arranged.exe",
            .environment = system_.Environment()};
    }

    ArrangedSystem system_;
};

// Letters that everybody reads: Latin ones, with any accents. Vietnamese has a block of its own.
bool IsLatin(const std::wstring& text)
{
    return std::all_of(text.begin(), text.end(),
        [](wchar_t character) { return character < 0x0370 || (character >= 0x1E00 && character <= 0x1EFF); });
}

}  // namespace

TEST_F(AskCommand, PrintsTheTagOfTheChoice)
{
    for (const wchar_t* const locale : {L"fr", L"de", L"pt-BR"})
    {
        RunningTool tool(Call({L"ask"}));
        const HWND dialog = tool.WaitForDialog();
        ASSERT_NE(dialog, nullptr);
        Choose(dialog, LibraryText(locale, kNativeName));
        const ToolResult result = tool.Result();
        EXPECT_EQ(result.output, arvmui_test::Utf8FromWide(LibraryText(locale, kTag)) + '\n');
        EXPECT_EQ(result.exitCode, 0);
    }
}

TEST_F(AskCommand, BeginsWithTheUsersLanguageAndSpeaksTheSelectedOne)
{
    RunningTool tool(Call({L"ask"}));
    const HWND dialog = tool.WaitForDialog();
    ASSERT_NE(dialog, nullptr);
    const std::vector<std::wstring> items = ComboItems(ListOf(dialog));
    EXPECT_EQ(items.size(), BuiltLocales().size());
    const LRESULT selected = ComboSelection(ListOf(dialog));
    ASSERT_GE(selected, 0);
    EXPECT_EQ(items.at(static_cast<std::size_t>(selected)), LibraryText(L"de", kNativeName));
    EXPECT_EQ(TextOfWindow(dialog), LibraryText(L"de", kTitle));

    const auto french = std::find(items.begin(), items.end(), LibraryText(L"fr", kNativeName));
    ASSERT_NE(french, items.end());
    SelectComboItem(dialog, kList, static_cast<int>(french - items.begin()));
    EXPECT_EQ(TextOfWindow(dialog), LibraryText(L"fr", kTitle));
    EXPECT_TRUE(PressButton(dialog, IDCANCEL));
}

TEST_F(AskCommand, ARefusalPrintsNothingAndFails)
{
    RunningTool tool(Call({L"ask"}));
    const HWND dialog = tool.WaitForDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(PressButton(dialog, IDCANCEL));
    const ToolResult result = tool.Result();
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.exitCode, 1);
}

TEST_F(AskCommand, IsAnsweredByKeyboard)
{
    RunningTool chosen(Call({L"ask"}));
    const HWND dialog = chosen.WaitForDialog();
    ASSERT_NE(dialog, nullptr);
    PressKey(ListOf(dialog), VK_RETURN);
    EXPECT_EQ(chosen.Result().output, "de-DE\n");

    RunningTool refused(Call({L"ask"}));
    const HWND next = refused.WaitForDialog();
    ASSERT_NE(next, nullptr);
    PressKey(ListOf(next), VK_ESCAPE);
    EXPECT_EQ(refused.Result().exitCode, 1);
}

// Asked by the option the user is not asked again.
TEST_F(AskCommand, PrintsAnAnswerThatWasGivenWhenItStarted)
{
    RunningTool tool(Call({L"ask", L"/uilocale:ask"}));
    const HWND dialog = tool.WaitForDialog();
    ASSERT_NE(dialog, nullptr);
    Choose(dialog, LibraryText(L"es", kNativeName));
    EXPECT_EQ(tool.WaitForDialog(dialog), nullptr);
    const ToolResult result = tool.Result();
    EXPECT_EQ(result.output, "es-ES\n");
    EXPECT_EQ(result.exitCode, 0);
}

TEST_F(AskCommand, WithoutLanguagesIsAnError)
{
    const TemporaryFolder folder;
    for (const wchar_t* const file : {L"muitool_arranged.exe", L"arvmui64.dll"})
        folder.CopyIn(TestProgramFolder() / file, file);
    ToolCall call = Call({L"ask"});
    call.program = folder.Path() / L"muitool_arranged.exe";
    RunningTool tool(call);
    EXPECT_EQ(tool.WaitForDialog(), nullptr);
    const ToolResult result = tool.Result();
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, testing::StartsWith("muitool: the language dialog could not be shown"));
}

// What "explain" tells about the keyboards decides by which name the dialog shows a language.
TEST_F(AskCommand, NamesLanguagesByTheKeyboardsThatExplainTells)
{
    const std::vector<std::vector<LANGID>> arrangements = {{0x0409}, {0x0411}, {0x0401, 0x0419, 0x0809}, {0x0C04},
        {0x040D, 0x0422, 0x0408, 0x0412}, {0x041E, 0x0439, 0x0429, 0x0402, 0x0423, 0x0C1A, 0x042F}};
    for (const std::vector<LANGID>& keyboards : arrangements)
    {
        system_.keyboards = keyboards;
        const auto json = nlohmann::json::parse(RunCall(Call({L"explain", L"--json"})).output);
        const std::string told = json.at("sources").at("keyboards");

        std::vector<std::wstring> expected;
        for (const std::wstring& locale : BuiltLocales())
        {
            const std::wstring name = LibraryText(locale, kNativeName);
            const auto language = static_cast<LANGID>(std::stoul(LibraryText(locale, kLanguage), nullptr, 0));
            wchar_t number[16];
            ::wsprintfW(number, L"(0x%04X)", PRIMARYLANGID(language));
            const bool isReadable = IsLatin(name) || told.find(arvmui_test::Utf8FromWide(number)) != std::string::npos;
            expected.push_back(isReadable ? name : LibraryText(locale, kEnglishName));
        }

        RunningTool tool(Call({L"ask"}));
        const HWND dialog = tool.WaitForDialog();
        ASSERT_NE(dialog, nullptr);
        EXPECT_THAT(ComboItems(ListOf(dialog)), testing::UnorderedElementsAreArray(expected)) << told;
        EXPECT_TRUE(PressButton(dialog, IDCANCEL));
    }
}
