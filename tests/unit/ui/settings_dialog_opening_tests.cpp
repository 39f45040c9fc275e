// How the settings dialog opens and ends: what it needs, its title, its scope and its results.
#include "resources/process_state.h"
#include "settings_dialog_fixture.h"
#include "support/box_window.h"
#include "support/built_locales.h"

namespace
{

using namespace arvmui_test;

class SettingsDialogOpening : public SettingsDialog
{
};

TEST_F(SettingsDialogOpening, WithoutResourceLibraryFails)
{
    arvmui::Descriptor().resourceLibrary = nullptr;
    OpenSettings settings;
    EXPECT_EQ(settings.Window(), nullptr);
    EXPECT_FALSE(settings.Result());
    EXPECT_EQ(settings.LastError(), DWORD{ERROR_INVALID_DATA});
}

// Names of the keywords cannot be had without English resources, so there are no rows at all.
TEST_F(SettingsDialogOpening, WithoutRowsFails)
{
    Uninstall(L"en");
    Strings texts = EnglishTexts();
    texts[ARVMUI_STRING_LANGUAGE_ID] = L"1031";
    Speak(texts);
    arvmui::Descriptor().showMessagePopup = FALSE;  // the missing English library has a message of its own
    OpenSettings settings;
    EXPECT_EQ(settings.Window(), nullptr);
    EXPECT_FALSE(settings.Result());
    EXPECT_EQ(settings.LastError(), DWORD{ERROR_INVALID_DATA});
}

TEST_F(SettingsDialogOpening, KeywordsAloneAreRowsEnough)
{
    for (const wchar_t* const folder : {L"de", L"en", L"fr", L"ja"}) Uninstall(folder);
    OpenSettings settings;
    ASSERT_NE(settings.Window(), nullptr);
    const HWND add = settings.OpenAdd();
    EXPECT_EQ(ListItems(add, ARVMUI_CONTROL_AVAILABLE_LIST), kKeywordNames);
}

struct Scope
{
    const char* name;
    DWORD scope;
    bool isMachine;
};

void PrintTo(const Scope& scope, std::ostream* output)
{
    *output << scope.name;
}

class SettingsDialogScope : public SettingsDialogOpening, public testing::WithParamInterface<Scope>
{
};

TEST_P(SettingsDialogScope, DecidesAboutTitleAndStore)
{
    Store(L"de-DE", HKEY_LOCAL_MACHINE);
    Store(L"fr-FR", HKEY_CURRENT_USER);
    OpenSettings settings(GetParam().scope);
    ASSERT_NE(settings.Window(), nullptr);
    const bool isMachine = GetParam().isMachine;
    EXPECT_EQ(WindowText(settings.Window()), isMachine ? L"Title for the machine" : L"Title for the user");
    EXPECT_EQ(settings.Chosen(), Names{isMachine ? L"Deutsch" : L"Fran\u00e7ais"});

    ASSERT_TRUE(settings.Add({0}));  // German for the user, English for the machine
    EXPECT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(HKEY_LOCAL_MACHINE), isMachine ? L"de-DE,en-US" : L"de-DE");
    EXPECT_EQ(Stored(HKEY_CURRENT_USER), isMachine ? L"fr-FR" : L"fr-FR,de-DE");
}

INSTANTIATE_TEST_SUITE_P(Scopes, SettingsDialogScope,
    testing::Values(Scope{"User", 0, false}, Scope{"Machine", 1, true}, Scope{"Two", 2, false},
        Scope{"Largest", 0xFFFFFFFF, false}),
    [](const auto& scope) { return std::string(scope.param.name); });

TEST_F(SettingsDialogOpening, ScopeWithoutListIsEmptyWhateverTheOtherHolds)
{
    Store(L"de-DE", HKEY_LOCAL_MACHINE);
    OpenSettings user(kUserScope);
    EXPECT_EQ(user.Chosen(), Names{});
    user.Click(IDCANCEL);
    EXPECT_TRUE(user.Result());

    Store(L"de-DE", HKEY_CURRENT_USER);
    Store(L"", HKEY_LOCAL_MACHINE);
    OpenSettings machine(kMachineScope);
    EXPECT_EQ(machine.Chosen(), Names{});
}

TEST_F(SettingsDialogOpening, LongTitleIsWhole)
{
    Strings texts = EnglishTexts();
    texts[ARVMUI_STRING_SETTINGS_TITLE_USER] = std::wstring(5000, L't');
    Speak(texts);
    OpenSettings settings;
    EXPECT_EQ(WindowText(settings.Window()), std::wstring(5000, L't'));
}

TEST_F(SettingsDialogOpening, MissingTitleLeavesTheTemplates)
{
    wchar_t title[256] = {};
    const HMODULE built = ::LoadLibraryExW(BuiltResourceLibrary(L"en").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(built, nullptr);
    const HRSRC place = ::FindResourceW(built, MAKEINTRESOURCEW(ARVMUI_DIALOG_SETTINGS), RT_DIALOG);
    ASSERT_NE(::LoadStringW(built, ARVMUI_STRING_SETTINGS_TITLE_USER, title, 256), 0);
    ASSERT_NE(place, nullptr);
    ::FreeLibrary(built);

    Strings texts = EnglishTexts();
    texts.erase(ARVMUI_STRING_SETTINGS_TITLE_USER);
    texts.erase(ARVMUI_STRING_SETTINGS_TITLE_MACHINE);
    Speak(texts);
    for (const DWORD scope : {kUserScope, kMachineScope})
    {
        OpenSettings settings(scope);
        ASSERT_NE(settings.Window(), nullptr) << scope;
        EXPECT_EQ(WindowText(settings.Window()), title) << scope;
    }
}

TEST_F(SettingsDialogOpening, ReservedArgumentIsIgnored)
{
    Store(L"de-DE");
    ModalCall call([] { return ARVMUI_SettingDialogBoxW(nullptr, nullptr, ::GetModuleHandleW(nullptr), kUserScope); });
    const HWND dialog = call.WaitForBox();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(ListItems(dialog, ARVMUI_CONTROL_CHOSEN_LIST), Names{L"Deutsch"});
    ASSERT_TRUE(ClickButton(dialog, IDOK));
    EXPECT_TRUE(call.Result());
}

TEST_F(SettingsDialogOpening, ProgramWithoutIconGivesTheDialogNone)
{
    const OpenSettings settings;
    ASSERT_NE(settings.Window(), nullptr);
    for (const WPARAM kind : {ICON_SMALL, ICON_BIG})
        EXPECT_EQ(::SendMessageW(settings.Window(), WM_GETICON, kind, 0), 0) << kind;
}

// ---- Failing to be shown -----------------------------------------------------------------------------

TEST_F(SettingsDialogOpening, MissingTemplateIsReported)
{
    Speak(EnglishTexts(), {ARVMUI_DIALOG_ADD_LANGUAGES});
    Store(L"de-DE");
    OpenSettings settings;
    const HWND box = settings.Window();
    ASSERT_NE(box, nullptr);
    const BoxContents contents = ReadBox(box);
    EXPECT_EQ(contents.caption, L"Error");
    EXPECT_EQ(contents.text, L"908:" + std::to_wstring(ERROR_RESOURCE_NAME_NOT_FOUND));
    ASSERT_TRUE(PressButton(box, contents.buttons.begin()->first));
    EXPECT_FALSE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE");
}

TEST_F(SettingsDialogOpening, MissingTemplateIsNotReportedWhilePopupsAreOff)
{
    Speak(EnglishTexts(), {ARVMUI_DIALOG_ADD_LANGUAGES});
    arvmui::Descriptor().showMessagePopup = FALSE;
    OpenSettings settings;
    EXPECT_EQ(settings.Window(), nullptr);
    EXPECT_FALSE(settings.Result());
}

TEST_F(SettingsDialogOpening, LibraryWithoutAnyResourcesOfTheDialogIsReported)
{
    Speak(EnglishTexts(), {});
    OpenSettings settings;
    ASSERT_NE(settings.Window(), nullptr);
    EXPECT_EQ(ReadBox(settings.Window()).text.substr(0, 4), L"908:");
}

TEST_F(SettingsDialogOpening, OwnerThatIsNoWindowFails)
{
    constexpr ULONG_PTR kNoWindow = 0x7FFF1234;
    OpenSettings settings(kUserScope, nullptr, reinterpret_cast<HWND>(kNoWindow));
    EXPECT_EQ(settings.Window(), nullptr);
    EXPECT_FALSE(settings.Result());
}

// ---- Ending ------------------------------------------------------------------------------------------

TEST_F(SettingsDialogOpening, CancelSucceedsAndStoresNothing)
{
    Store(L"de-DE,fr-FR");
    OpenSettings settings;
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    ASSERT_TRUE(settings.Click(IDCANCEL));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE,fr-FR");
}

TEST_F(SettingsDialogOpening, ClosingTheWindowSucceedsAndStoresNothing)
{
    Store(L"de-DE,fr-FR");
    OpenSettings settings;
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_DOWN));
    ::PostMessageW(settings.Window(), WM_SYSCOMMAND, SC_CLOSE, 0);
    ASSERT_TRUE(settings.Ends());
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE,fr-FR");
}

TEST_F(SettingsDialogOpening, EndedFromOutsideGivesThatResult)
{
    const struct
    {
        INT_PTR result;
        BOOL expected;
    } rows[] = {{1, TRUE}, {2, TRUE}, {0x7FFFFFFF, TRUE}, {0, FALSE}, {-2, FALSE}};
    for (const auto& row : rows)
    {
        OpenSettings settings;
        ASSERT_NE(settings.Window(), nullptr);
        ::EndDialog(settings.Window(), row.result);
        ::PostMessageW(settings.Window(), WM_NULL, 0, 0);  // wakes the dialog's loop
        ASSERT_TRUE(settings.Ends()) << row.result;
        EXPECT_EQ(settings.Result(), row.expected) << row.result;
    }
}

// The same number as that of a dialog that could not be made.
TEST_F(SettingsDialogOpening, EndedFromOutsideWithMinusOneIsReported)
{
    OpenSettings settings;
    const HWND dialog = settings.Window();
    ASSERT_NE(dialog, nullptr);
    const DWORD thread = ::GetWindowThreadProcessId(dialog, nullptr);  // while the dialog is there to ask
    ::EndDialog(dialog, -1);
    ::PostMessageW(dialog, WM_NULL, 0, 0);
    HWND box = nullptr;
    ASSERT_TRUE(WaitUntil(
        [&]
        {
            for (const HWND shown : VisibleDialogsOfThread(thread))
                if (shown != dialog) box = shown;
            return box != nullptr;
        }));
    EXPECT_EQ(ReadBox(box).text.substr(0, 4), L"908:");
    ASSERT_TRUE(PressButton(box, ReadBox(box).buttons.begin()->first));
    EXPECT_FALSE(settings.Result());
}

TEST_F(SettingsDialogOpening, FirstOfTwoEndingsCounts)
{
    Store(L"de-DE");
    OpenSettings settings;
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    ::PostMessageW(settings.Window(), WM_COMMAND, IDCANCEL, 0);
    ::PostMessageW(settings.Window(), WM_CLOSE, 0, 0);
    ::PostMessageW(settings.Window(), WM_COMMAND, IDOK, 0);
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"de-DE");
}

}  // namespace
