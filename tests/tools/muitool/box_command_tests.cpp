// "muitool box" as a script uses it: the box on the screen, and the answer that is printed.
#include "muitool_program.h"
#include "resource_library.h"
#include "support/box_window.h"
#include "support/dialog_controls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

using arvmui_test::BoxContents;
using arvmui_test::Labels;
using arvmui_test::PressButton;
using arvmui_test::PressKey;
using arvmui_test::ReadBox;
using testing::HasSubstr;

namespace
{

struct Answer
{
    const char* printed;
    int button;
};

struct Box
{
    const wchar_t* buttons;  // as on the command line
    std::vector<Answer> answers;
};

std::ostream& operator<<(std::ostream& stream, const Box& box)
{
    return stream << std::filesystem::path(box.buttons).string();
}

class BoxButtons : public testing::TestWithParam<Box>
{
};

INSTANTIATE_TEST_SUITE_P(Boxes, BoxButtons,
    testing::Values(Box{L"okcancel", {{"ok", IDOK}, {"cancel", IDCANCEL}}},
        Box{L"yesno", {{"yes", IDYES}, {"no", IDNO}}},
        Box{L"yesnocancel", {{"yes", IDYES}, {"no", IDNO}, {"cancel", IDCANCEL}}},
        Box{L"retrycancel", {{"retry", IDRETRY}, {"cancel", IDCANCEL}}},
        Box{L"abortretryignore", {{"abort", IDABORT}, {"retry", IDRETRY}, {"ignore", IDIGNORE}}},
        Box{L"canceltrycontinue", {{"cancel", IDCANCEL}, {"tryagain", IDTRYAGAIN}, {"continue", IDCONTINUE}}}),
    testing::PrintToStringParamName());

std::wstring GermanText(UINT number)
{
    const ResourceLibrary library(BuiltFolder() / L"resource" / L"de" / L"arvmuiUI.DLL");
    return library.Strings().at(number);
}

}  // namespace

TEST(BoxCommand, ShowsTextAndCaptionInAnyScript)
{
    // The last character of the text needs two units of UTF-16.
    const std::wstring text = L"Gr\u00FC\u00DFe \u65E5\u672C \u05E9\u05DC\u05D5\u05DD \U0001F600";
    const std::wstring caption = L"\u0413\u043E\u0442\u043E\u0432\u043E";
    RunningTool tool({{L"box", text, L"--caption", caption}});
    const HWND box = tool.WaitForDialog();
    ASSERT_NE(box, nullptr);
    const BoxContents contents = ReadBox(box);
    EXPECT_EQ(contents.text, text);
    EXPECT_EQ(contents.caption, caption);
    EXPECT_TRUE(PressButton(box, contents.buttons.begin()->first));
    EXPECT_EQ(tool.Result().output, "ok\n");
}

TEST(BoxCommand, HasOneButtonAndTheToolsNameUnlessToldOtherwise)
{
    RunningTool tool({{L"box", L"text"}});
    const HWND box = tool.WaitForDialog();
    ASSERT_NE(box, nullptr);
    const BoxContents contents = ReadBox(box);
    EXPECT_EQ(contents.caption, L"muitool");
    ASSERT_EQ(contents.buttons.size(), 1u);
    EXPECT_TRUE(PressButton(box, contents.buttons.begin()->first));
    const ToolResult result = tool.Result();
    EXPECT_EQ(result.output, "ok\n");
    EXPECT_EQ(result.exitCode, 0);
}

TEST_P(BoxButtons, EachAnswerIsPrinted)
{
    for (const Answer& answer : GetParam().answers)
    {
        RunningTool tool({{L"box", L"text", L"--buttons", GetParam().buttons}});
        const HWND box = tool.WaitForDialog();
        ASSERT_NE(box, nullptr) << answer.printed;
        EXPECT_EQ(ReadBox(box).buttons.size(), GetParam().answers.size());
        EXPECT_TRUE(PressButton(box, answer.button)) << answer.printed;
        const ToolResult result = tool.Result();
        EXPECT_EQ(result.output, std::string(answer.printed) + '\n');
        EXPECT_EQ(result.exitCode, 0);
    }
}

TEST(BoxCommand, IsAnsweredByKeyboard)
{
    for (const auto& [key, printed] : {std::pair(VK_RETURN, "yes\n"), std::pair(VK_ESCAPE, "cancel\n")})
    {
        RunningTool tool({{L"box", L"text", L"--buttons", L"yesnocancel"}});
        const HWND box = tool.WaitForDialog();
        ASSERT_NE(box, nullptr);
        PressKey(::GetDlgItem(box, IDYES), static_cast<WORD>(key));
        EXPECT_EQ(tool.Result().output, printed);
    }
}

TEST(BoxCommand, SpeaksTheLanguageOfTheOption)
{
    RunningTool tool({{L"box", L"text", L"--buttons", L"yesno", L"/uilocale:de"}});
    const HWND box = tool.WaitForDialog();
    ASSERT_NE(box, nullptr);
    EXPECT_THAT(Labels(ReadBox(box)), testing::ElementsAre(GermanText(100 + IDYES), GermanText(100 + IDNO)));
    EXPECT_TRUE(PressButton(box, IDNO));
    EXPECT_EQ(tool.Result().output, "no\n");
}

TEST(BoxCommand, TakesTheButtonsInUpperCaseToo)
{
    RunningTool tool({{L"box", L"text", L"--buttons", L"YesNo"}});
    const HWND box = tool.WaitForDialog();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(PressButton(box, IDYES));
    EXPECT_EQ(tool.Result().output, "yes\n");
}

TEST(BoxCommand, RefusesButtonsThatThereAreNot)
{
    for (const wchar_t* const buttons : {L"maybe", L"4"})
    {
        RunningTool tool({{L"box", L"text", L"--buttons", buttons}});
        EXPECT_EQ(tool.WaitForDialog(), nullptr);
        const ToolResult result = tool.Result();
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.output, HasSubstr("yesnocancel"));
    }
}

TEST(BoxCommand, NeedsAText)
{
    const ToolResult result = RunTool({L"box"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, HasSubstr("TEXT"));
}
