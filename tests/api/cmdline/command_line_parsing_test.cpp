// Command lines and argument vectors through the exports, as a customer calls them.
#include <arvmui.h>
#include <gtest/gtest.h>

#include <string>

namespace
{

TEST(CommandLineExports, TakeTheOptionOffAWideLine)
{
    wchar_t line[] = L"prog.exe /uilocale:de-DE file.txt";
    EXPECT_EQ(ARVMUI_ParseCommandLineW(line), TRUE);
    EXPECT_STREQ(line, L"prog.exe file.txt");
}

TEST(CommandLineExports, TakeTheOptionOffANarrowLine)
{
    char line[] = "prog.exe \"/uilocale:en, de\" x";
    EXPECT_EQ(ARVMUI_ParseCommandLineA(line), TRUE);
    EXPECT_STREQ(line, "prog.exe x");
}

// Attach has decided already, so a later line changes nothing.
TEST(CommandLineExports, KeepTheListThatAttachDecided)
{
    const std::wstring decided = ARVMUI_GetDescriptor()->LocaleHintTable[HINT_COMMAND_LINE];
    ASSERT_NE(decided, L"");
    wchar_t line[] = L"prog.exe /uilocale:xx";
    ARVMUI_ParseCommandLineW(line);
    EXPECT_EQ(ARVMUI_GetDescriptor()->LocaleHintTable[HINT_COMMAND_LINE], decided);
}

TEST(CommandLineExports, StoreTheFirstValueInAnEmptySlot)
{
    wchar_t* const slot = ARVMUI_GetDescriptor()->LocaleHintTable[HINT_COMMAND_LINE];
    const std::wstring decided = slot;
    slot[0] = L'\0';
    wchar_t line[] = L"prog.exe /uilocale:ja /uilocale:fr";
    ARVMUI_ParseCommandLineW(line);
    EXPECT_STREQ(slot, L"ja");
    ::lstrcpyW(slot, decided.c_str());
}

TEST(CommandLineExports, TakeOptionsOffAWideVector)
{
    wchar_t texts[][20] = {L"a", L"\"/uilocale:x y\"", L"/UILOCALE:z", L"b"};
    wchar_t* argv[] = {texts[0], texts[1], texts[2], texts[3], nullptr};
    int argc = 4;
    EXPECT_EQ(ARVMUI_ParseArgvW(&argc, argv), TRUE);
    EXPECT_EQ(argc, 2);
    EXPECT_EQ(argv[0], texts[0]);
    EXPECT_EQ(argv[1], texts[3]);
    EXPECT_EQ(argv[2], nullptr);
}

TEST(CommandLineExports, TakeOptionsOffANarrowVector)
{
    char texts[][20] = {"a", "\"/uilocale:x y\"", "/UILOCALE:z", "b"};
    char* argv[] = {texts[0], texts[1], texts[2], texts[3], nullptr};
    int argc = 4;
    EXPECT_EQ(ARVMUI_ParseArgvA(&argc, argv), TRUE);
    EXPECT_EQ(argc, 2);
    EXPECT_EQ(argv[1], texts[3]);
    EXPECT_EQ(argv[2], nullptr);
    EXPECT_EQ(ARVMUI_ParseArgvA(&argc, argv), FALSE);
}

TEST(CommandLineExports, GiveTheProcessesOwnLines)
{
    EXPECT_EQ(ARVMUI_GetCommandLineW(), ::GetCommandLineW());
    EXPECT_EQ(ARVMUI_GetCommandLineA(), ::GetCommandLineA());
}

TEST(CommandLineExports, EditTheProcessesOwnLines)
{
    // In place: the line can only be told from one without the option by changing it first.
    wchar_t* const line = ::GetCommandLineW();
    const std::wstring before = line;
    const std::wstring option = L"/uilocale:x";
    ASSERT_GT(before.size(), option.size());
    ::lstrcpyW(line + before.size() - option.size() - 1, (L" " + option).c_str());
    const std::wstring expected = before.substr(0, before.size() - option.size() - 1);
    EXPECT_EQ(ARVMUI_GetCommandLineW(), expected);
    ::lstrcpyW(line, before.c_str());
}

}  // namespace
