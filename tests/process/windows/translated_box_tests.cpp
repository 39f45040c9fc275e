// Message boxes of whole programs, read from outside: the option on the command line decides the
// language of the buttons and of the library's own errors.
#include "arvmui.h"
#include "running_host.h"
#include "support/box_window.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace
{

using arvmui_test::BoxContents;
using arvmui_test::RunningHost;
using Labels = std::map<int, std::wstring>;

constexpr UINT kErrorCaption = 900;
constexpr UINT kLibraryNotFound = 903;

RunningHost StartHost(const std::wstring& arguments)
{
    return RunningHost(arvmui_test::TestProgramFolder() / L"box_host.exe", arguments);
}

std::wstring Translation(const wchar_t* locale, UINT id)
{
    const auto file = arvmui_test::TestProgramFolder() / L"resource" / locale / L"arvmuiUI.DLL";
    const HMODULE library = ::LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    wchar_t text[512] = {};
    if (library)
    {
        ::LoadStringW(library, id, text, 512);
        ::FreeLibrary(library);
    }
    return text;
}

TEST(TranslatedBox, SpeaksTheLanguageOfTheCommandLine)
{
    for (const wchar_t* const locale : {L"de", L"ja", L"es"})
    {
        const RunningHost host = StartHost(L"/uilocale:" + std::wstring(locale) + L" box 0x3");
        const HWND box = host.WaitForBox();
        ASSERT_NE(box, nullptr) << locale;
        const BoxContents contents = arvmui_test::ReadBox(box);
        EXPECT_EQ(contents.caption, L"Caption");
        EXPECT_EQ(contents.buttons, (Labels{{IDCANCEL, Translation(locale, 102)}, {IDYES, Translation(locale, 106)},
                                        {IDNO, Translation(locale, 107)}}))
            << locale;
        EXPECT_TRUE(arvmui_test::PressButton(box, IDNO));
        EXPECT_EQ(host.ExitCode(), DWORD{IDNO});
    }
}

TEST(TranslatedBox, WithoutThreadSlotsIsShownUntranslated)
{
    const RunningHost host = StartHost(L"/uilocale:ja no-slot 0x4");
    const HWND box = host.WaitForBox();
    ASSERT_NE(box, nullptr);
    const BoxContents contents = arvmui_test::ReadBox(box);
    EXPECT_EQ(contents.caption, L"Caption");
    ASSERT_EQ(contents.buttons.size(), size_t{2});
    EXPECT_NE(contents.buttons.at(IDYES), Translation(L"ja", 106));
    EXPECT_NE(contents.buttons.at(IDNO), Translation(L"ja", 107));
    EXPECT_TRUE(arvmui_test::PressButton(box, IDYES));
    EXPECT_EQ(host.ExitCode(), DWORD{IDYES});
}

TEST(TranslatedBox, ErrorsOfTheLibrarySpeakTheLanguageToo)
{
    for (const wchar_t* const locale : {L"de", L"fr"})
    {
        const RunningHost host = StartHost(L"/uilocale:" + std::wstring(locale) + L" missing");
        const HWND box = host.WaitForBox();
        ASSERT_NE(box, nullptr) << locale;
        const BoxContents contents = arvmui_test::ReadBox(box);
        EXPECT_EQ(contents.caption, Translation(locale, kErrorCaption));
        const std::wstring message = Translation(locale, kLibraryNotFound);
        const size_t name = message.find(L"%s");
        ASSERT_NE(name, std::wstring::npos);
        EXPECT_EQ(contents.text.substr(0, name), message.substr(0, name));
        EXPECT_EQ(contents.text.substr(name, 13), L"100%s off.dll");
        EXPECT_NE(contents.text.find(L" 126", name), std::wstring::npos) << contents.text;
        EXPECT_EQ(arvmui_test::Labels(contents), std::vector<std::wstring>{Translation(locale, 101)});
        EXPECT_TRUE(arvmui_test::PressButton(box, contents.buttons.begin()->first));
        EXPECT_EQ(host.ExitCode(), DWORD{ERROR_MOD_NOT_FOUND});
    }
}

}  // namespace
