// Who asks the user for a language, and what the user is offered.
#include "api/locale/ask_fixture.h"
#include "support/box_recorder.h"
#include "support/dialog_controls.h"
#include "support/temporary_folder.h"

#include <algorithm>

namespace
{

using arvmui_test::AnsweredAskTest;
using arvmui_test::AskingSearch;
using arvmui_test::AskTest;
using arvmui_test::BoxRecorder;
using arvmui_test::ComboItems;
using arvmui_test::LibraryUnderTest;
using arvmui_test::MakeEntry;

using Names = std::vector<std::wstring>;

// ---- What the user is offered ---------------------------------------------------------------------------------

TEST_F(AskTest, InstallationOffersItsOwnLanguagesAndIcons)
{
    const HICON smallIcon = ::LoadIconW(nullptr, IDI_QUESTION);
    const HICON largeIcon = ::LoadIconW(nullptr, IDI_HAND);
    Offer({MakeEntry(0x0415, L"pl-PL"), MakeEntry(0x0409, L"en-US")}, smallIcon, largeIcon);
    const AskingSearch search(L"ask");
    const HWND dialog = search.Dialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(ComboItems(search.List()), Names({L"Native name pl-PL", L"Native name en-US"}));
    EXPECT_EQ(arvmui_test::TextOfWindow(dialog), L"Title en-US");
    EXPECT_EQ(reinterpret_cast<HICON>(::SendMessageW(dialog, WM_GETICON, ICON_SMALL, 0)), smallIcon);
    EXPECT_EQ(reinterpret_cast<HICON>(::SendMessageW(dialog, WM_GETICON, ICON_BIG, 0)), largeIcon);
    EXPECT_EQ(::GetWindow(dialog, GW_OWNER), nullptr);
    EXPECT_NE(::IsWindowEnabled(::GetDlgItem(dialog, IDOK)), FALSE);
}

std::wstring LoadText(HMODULE library, UINT id)
{
    wchar_t text[ARVMUI_TAG_CHARS] = {};
    ::LoadStringW(library, id, text, ARVMUI_TAG_CHARS);
    return text;
}

// The names of the resource libraries beside the DLL, in no order.
Names NamesOfResourceLibraries(UINT id)
{
    Names names;
    for (const auto& folder : std::filesystem::directory_iterator(arvmui_test::TestProgramFolder() / L"resource"))
    {
        const std::filesystem::path file = folder.path() / L"arvmuiUI.DLL";
        const HMODULE library = ::LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        if (!library) continue;
        names.push_back(LoadText(library, id));
        ::FreeLibrary(library);
    }
    return names;
}

TEST_F(AskTest, OtherProgramsOfferTheInstalledLanguages)
{
    Offer({});
    const Names english = NamesOfResourceLibraries(3);
    const Names native = NamesOfResourceLibraries(4);
    AskingSearch search(L"ask");
    ASSERT_NE(search.Dialog(), nullptr);
    const Names items = ComboItems(search.List());
    ASSERT_EQ(items.size(), english.size());
    for (size_t i = 0; i < english.size(); ++i)
        EXPECT_TRUE(std::find(items.begin(), items.end(), native[i]) != items.end()
                    || std::find(items.begin(), items.end(), english[i]) != items.end())
            << testing::PrintToString(english[i]);

    const auto french = std::find(items.begin(), items.end(), L"Fran\u00e7ais");
    search.Choose(static_cast<int>(std::min(french - items.begin(), std::ptrdiff_t{0x7FFF})));
    EXPECT_EQ(search.Outcome().offered.substr(0, 6), L"fr-FR|");
}

// ---- Callers that search ----------------------------------------------------------------------------------------

class AskingCallers : public AnsweredAskTest
{
protected:
    AskingCallers() { Answer(0); }

    static HMODULE Module() { return ARVMUI_GetDescriptor()->module; }

    // One box for each failure.
    BoxRecorder boxes_{LibraryUnderTest()};
};

TEST_F(AskingCallers, LoadingFailsAsCancelledWhenTheUserRefuses)
{
    HMODULE library = ::GetModuleHandleW(nullptr);
    EXPECT_FALSE(ARVMUI_LoadResourceLibraryW(Module(), nullptr, L"ask,de", &library));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_CANCELLED});
    EXPECT_EQ(library, nullptr);
    EXPECT_EQ(boxes_.Texts().size(), size_t{1});
}

TEST_F(AskingCallers, NarrowLoadingFailsAsCancelledWhenTheUserRefuses)
{
    HMODULE library = ::GetModuleHandleW(nullptr);
    EXPECT_FALSE(ARVMUI_LoadResourceLibraryA(Module(), nullptr, "ask,de", &library));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_CANCELLED});
    EXPECT_EQ(library, nullptr);
}

TEST_F(AskingCallers, FindingALoadedLibraryFailsAsCancelledWhenTheUserRefuses)
{
    HMODULE library = ::GetModuleHandleW(nullptr);
    EXPECT_FALSE(ARVMUI_GetResourceHandleW(Module(), nullptr, L"ask", &library));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_CANCELLED});
    EXPECT_EQ(library, nullptr);
}

TEST_F(AskingCallers, FindingAFileFailsAsCancelledWhenTheUserRefuses)
{
    wchar_t path[MAX_PATH] = {};
    EXPECT_EQ(ARVMUI_GetResourceFileNameW(Module(), nullptr, L"ask,de", path, MAX_PATH), 0u);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_CANCELLED});
}

// The narrow search passes over a refusal.
TEST_F(AskingCallers, NarrowFindingOfAFileGoesOnWhenTheUserRefuses)
{
    char path[MAX_PATH] = {};
    EXPECT_NE(ARVMUI_GetResourceFileNameA(Module(), nullptr, "ask,de", path, MAX_PATH), 0u);
    EXPECT_NE(std::string(path).find("\\de\\"), std::string::npos) << path;
}

TEST_F(AskingCallers, NextLoadingGoesOnWithoutAsking)
{
    HMODULE library = nullptr;
    EXPECT_FALSE(ARVMUI_LoadResourceLibraryW(Module(), nullptr, L"ask,de", &library));
    ASSERT_TRUE(ARVMUI_LoadResourceLibraryW(Module(), nullptr, L"ask,de", &library));
    wchar_t tag[ARVMUI_TAG_CHARS] = {};
    ARVMUI_GetLocaleW(library, tag, ARVMUI_TAG_CHARS);
    EXPECT_STREQ(tag, L"de-DE");
    ::FreeLibrary(library);
    EXPECT_EQ(Dialogs(), 1);
}

TEST_F(AskingCallers, LoadingTakesTheAnswer)
{
    Answer(3);
    HMODULE library = nullptr;
    ASSERT_TRUE(ARVMUI_LoadResourceLibraryW(Module(), nullptr, L"ask,de", &library));
    wchar_t tag[ARVMUI_TAG_CHARS] = {};
    ARVMUI_GetLocaleW(library, tag, ARVMUI_TAG_CHARS);
    EXPECT_STREQ(tag, L"fr-FR");
    ::FreeLibrary(library);
}

std::wstring SystemText()
{
    wchar_t text[256] = {};
    ARVMUI_FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, ERROR_MOD_NOT_FOUND, 0,
        text, 256, nullptr);
    return text;
}

TEST_F(AskingCallers, MessagesGoOnWhenTheUserRefuses)
{
    SetHint(HINT_COMMAND_LINE, L"de");
    const std::wstring german = SystemText();
    EXPECT_NE(german, L"");
    SetHint(HINT_COMMAND_LINE, L"ask,de");
    EXPECT_EQ(SystemText(), german);
    EXPECT_EQ(Dialogs(), 1);
}

}  // namespace
