// The language dialog that builds its list itself, and the one that cannot be shown.
#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "support/box_recorder.h"
#include "support/busy_blocks.h"
#include "support/dialog_controls.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"
#include "unit/ui/language_dialog_fixture.h"

#include <memory>

namespace
{

using arvmui_test::BoxRecorder;
using arvmui_test::ComboItems;
using arvmui_test::DialogOutcome;
using arvmui_test::DialogRequest;
using arvmui_test::DialogTexts;
using arvmui_test::ImportPatch;
using arvmui_test::LanguageDialogTest;
using arvmui_test::LoadedModule;
using arvmui_test::MakeEntry;
using arvmui_test::OpenDialog;
using arvmui_test::ReadTexts;
using arvmui_test::ShowDialog;
using arvmui_test::TemporaryFolder;

using Names = std::vector<std::wstring>;

HMODULE Program()
{
    return ::GetModuleHandleW(nullptr);
}

// How the dialog was asked for, and how the system answers.
struct Asked
{
    int calls = 0;
    HMODULE module = nullptr;
    const wchar_t* name = nullptr;
    HWND owner = nullptr;
    INT_PTR result = 0;
    DWORD error = 0;
};
Asked g_asked;

INT_PTR WINAPI AnswerAtOnce(HINSTANCE module, const wchar_t* name, HWND owner, DLGPROC, LPARAM)
{
    ++g_asked.calls;
    g_asked.module = module;
    g_asked.name = name;
    g_asked.owner = owner;
    ::SetLastError(g_asked.error);
    return g_asked.result;
}

// Modules that play the library are files of strings only: the template comes from the program.
INT_PTR WINAPI ShowOwnTemplate(HINSTANCE, const wchar_t* name, HWND owner, DLGPROC procedure, LPARAM context)
{
    const HGLOBAL resource = ::LoadResource(Program(), ::FindResourceW(Program(), name, RT_DIALOG));
    const auto* const dialogTemplate = static_cast<const DLGTEMPLATE*>(::LockResource(resource));
    return ::DialogBoxIndirectParamW(Program(), dialogTemplate, owner, procedure, context);
}

// ---- The list of installed languages ----------------------------------------------------------------------

class InstalledLanguages : public LanguageDialogTest
{
protected:
    InstalledLanguages() : module_(folder_.Path() / L"listed64.dll") { arvmui::Descriptor().module = module_.Get(); }

    void Install(const LocaleEntry& entry) const
    {
        const auto file = folder_.Path() / L"resource" / entry.Locale / L"listedUI.DLL";
        arvmui_test::WriteResourceImage(
            file, {{ARVMUI_STRING_LOCALE_TAG, entry.Locale}, {ARVMUI_STRING_LANGUAGE_ID, std::to_wstring(entry.LangID)},
                      {ARVMUI_STRING_ENGLISH_NAME, entry.EnglishName}, {ARVMUI_STRING_NATIVE_NAME, entry.NativeName},
                      {ARVMUI_STRING_LANGUAGE_DIALOG_TITLE, entry.LanguageSelectionTitle},
                      {ARVMUI_STRING_LANGUAGE_DIALOG_TEXT, entry.LanguageSelectionDesc},
                      {ARVMUI_STRING_BUTTON_OK, entry.OK}, {ARVMUI_STRING_BUTTON_CANCEL, entry.Cancel}});
    }

    static DialogRequest Request()
    {
        DialogRequest request = {{}};
        request.count = 0;
        return request;
    }

    static size_t BusyBlocksBehind(const DialogRequest& request)
    {
        const size_t before = arvmui_test::CountBusyBlocks();
        ShowDialog(request);
        return arvmui_test::CountBusyBlocks() - before;
    }

    TemporaryFolder folder_;
    LoadedModule module_;
};

TEST_F(InstalledLanguages, AreListedWithTheirTextsWhereTheCallerGivesNone)
{
    const ImportPatch show(Program(), "DialogBoxParamW", &ShowOwnTemplate);
    const LocaleEntry french = MakeEntry(0x040C, L"fr-FR");
    const LocaleEntry english = MakeEntry(0x0409, L"en-US");
    Install(french);
    Install(english);
    OpenDialog dialog(Request());
    EXPECT_EQ(ComboItems(dialog.List()), Names({english.NativeName, french.NativeName}));
    EXPECT_EQ(ReadTexts(dialog.Window()), arvmui_test::TextsOf(english));
    dialog.Select(1);
    EXPECT_EQ(ReadTexts(dialog.Window()), arvmui_test::TextsOf(french));
    dialog.Press(IDOK);
    EXPECT_EQ(dialog.Outcome().result, TRUE);
    EXPECT_EQ(dialog.Outcome().answer, L"fr-FR");
}

TEST_F(InstalledLanguages, StandInForEntriesThatAreNotCounted)
{
    const ImportPatch show(Program(), "DialogBoxParamW", &ShowOwnTemplate);
    const LocaleEntry french = MakeEntry(0x040C, L"fr-FR");
    Install(french);
    DialogRequest request = {{MakeEntry(0x0407, L"de-DE")}};
    request.count = 0;
    const OpenDialog dialog(request);
    EXPECT_EQ(ComboItems(dialog.List()), Names({french.NativeName}));
}

TEST_F(InstalledLanguages, HaveNoKeywordsAmongThem)
{
    const ImportPatch show(Program(), "DialogBoxParamW", &ShowOwnTemplate);
    Install(MakeEntry(0x0409, L"en-US"));
    const OpenDialog dialog(Request());
    EXPECT_EQ(ComboItems(dialog.List()).size(), size_t{1});
}

TEST_F(InstalledLanguages, AreNotLookedForWhereTheCallerGivesSome)
{
    const ImportPatch show(Program(), "DialogBoxParamW", &ShowOwnTemplate);
    Install(MakeEntry(0x040C, L"fr-FR"));
    const LocaleEntry german = MakeEntry(0x0407, L"de-DE");
    const OpenDialog dialog(DialogRequest{{german}});
    EXPECT_EQ(ComboItems(dialog.List()), Names({german.NativeName}));
}

TEST_F(InstalledLanguages, AreFreedHoweverTheDialogEnds)
{
    const ImportPatch show(Program(), "DialogBoxParamW", &AnswerAtOnce);
    Install(MakeEntry(0x0409, L"en-US"));
    Install(MakeEntry(0x040C, L"fr-FR"));
    ShowDialog(Request());
    for (const INT_PTR result : {0, 1, 2, 3, -1})
    {
        g_asked = {};
        g_asked.result = result;
        EXPECT_EQ(BusyBlocksBehind(Request()), size_t{0}) << result;
        EXPECT_EQ(g_asked.calls, 1);
    }
}

TEST_F(InstalledLanguages, NoneAreInvalidDataAndNoDialog)
{
    const ImportPatch show(Program(), "DialogBoxParamW", &AnswerAtOnce);
    g_asked = {};
    DialogOutcome outcome = ShowDialog(Request());
    EXPECT_EQ(outcome.result, FALSE);
    EXPECT_EQ(outcome.error, DWORD{ERROR_INVALID_DATA});

    // One that lacks a text is not counted.
    arvmui_test::WriteResourceImage(folder_.Path() / L"resource" / L"de" / L"listedUI.DLL",
        {{ARVMUI_STRING_LOCALE_TAG, L"de-DE"}, {ARVMUI_STRING_LANGUAGE_ID, L"1031"}});
    outcome = ShowDialog(Request());
    EXPECT_EQ(outcome.result, FALSE);
    EXPECT_EQ(outcome.error, DWORD{ERROR_INVALID_DATA});
    EXPECT_EQ(BusyBlocksBehind(Request()), size_t{0});
    EXPECT_EQ(g_asked.calls, 0);
}

DWORD WINAPI FindNoModule(HMODULE, wchar_t*, DWORD)
{
    ::SetLastError(ERROR_INVALID_HANDLE);
    return 0;
}

TEST_F(InstalledLanguages, ThatCannotBeFoundOutAreInvalidData)
{
    const ImportPatch show(Program(), "DialogBoxParamW", &AnswerAtOnce);
    g_asked = {};
    Install(MakeEntry(0x0409, L"en-US"));
    const ImportPatch find(Program(), "GetModuleFileNameW", &FindNoModule);
    const DialogOutcome outcome = ShowDialog(Request());
    EXPECT_EQ(outcome.result, FALSE);
    EXPECT_EQ(outcome.error, DWORD{ERROR_INVALID_DATA});
    EXPECT_EQ(g_asked.calls, 0);
}

// ---- What the system is asked for ----------------------------------------------------------------------------

class RecordedDialog : public LanguageDialogTest
{
protected:
    RecordedDialog() : texts_(folder_.Path() / L"texts.dll", {{900, L"Error"}, {908, L"908:%%lu"}})
    {
        g_asked = {};
        arvmui::Descriptor().resourceLibrary = texts_.Get();
        arvmui::Descriptor().showMessagePopup = TRUE;
    }

    static DialogRequest Request() { return {{MakeEntry(0x0409, L"en-US"), MakeEntry(0x0407, L"de-DE")}}; }

    TemporaryFolder folder_;
    LoadedModule texts_;
    BoxRecorder boxes_{Program()};
};

TEST_F(RecordedDialog, IsTheTemplateOfTheLibraryForTheOwner)
{
    const ImportPatch show(Program(), "DialogBoxParamW", &AnswerAtOnce);
    const LoadedModule library(folder_.Path() / L"other.dll");
    arvmui::Descriptor().module = library.Get();
    DialogRequest request = Request();
    request.owner = ::GetDesktopWindow();
    ShowDialog(request);
    EXPECT_EQ(g_asked.calls, 1);
    EXPECT_EQ(g_asked.module, library.Get());
    EXPECT_EQ(g_asked.name, MAKEINTRESOURCEW(200));
    EXPECT_EQ(g_asked.owner, request.owner);
}

// ---- Failures --------------------------------------------------------------------------------------------------

TEST_F(RecordedDialog, FailureIsReportedWithItsCode)
{
    const ImportPatch show(Program(), "DialogBoxParamW", &AnswerAtOnce);
    g_asked.error = 1234;
    constexpr INT_PTR kLowBits = INT_PTR{1} << 32;  // an entry's number, were it cut to 32 bits
    for (const INT_PTR result : {INT_PTR{-1}, INT_PTR{3}, kLowBits, kLowBits + 1, -kLowBits + 1})
    {
        g_asked.result = result;
        const size_t before = boxes_.Texts().size();
        const DialogOutcome outcome = ShowDialog(Request());
        EXPECT_EQ(outcome.result, FALSE) << result;
        EXPECT_EQ(outcome.error, DWORD{1234}) << result;
        ASSERT_EQ(boxes_.Texts().size(), before + 1) << result;
        EXPECT_EQ(boxes_.Texts().back(), L"908:1234");
    }
}

TEST_F(RecordedDialog, FailureIsNotReportedWhilePopupsAreOff)
{
    const ImportPatch show(Program(), "DialogBoxParamW", &AnswerAtOnce);
    arvmui::Descriptor().showMessagePopup = FALSE;
    g_asked.error = 1234;
    g_asked.result = -1;
    const DialogOutcome outcome = ShowDialog(Request());
    EXPECT_EQ(outcome.result, FALSE);
    EXPECT_EQ(outcome.error, DWORD{1234});
    EXPECT_EQ(boxes_.Texts(), Names());
}

TEST_F(RecordedDialog, AnswersAndRefusalsAreNotReported)
{
    const ImportPatch show(Program(), "DialogBoxParamW", &AnswerAtOnce);
    for (const INT_PTR result : {0, 1, 2})
    {
        g_asked.result = result;
        EXPECT_EQ(ShowDialog(Request()).result, TRUE) << result;
    }
    EXPECT_EQ(boxes_.Texts(), Names());
}

TEST_F(RecordedDialog, MissingLanguagesAreNotReported)
{
    const LoadedModule library(folder_.Path() / L"lonely.dll");
    arvmui::Descriptor().module = library.Get();
    DialogRequest request = Request();
    request.count = 0;
    EXPECT_EQ(ShowDialog(request).error, DWORD{ERROR_INVALID_DATA});
    EXPECT_EQ(boxes_.Texts(), Names());
}

// A library from which the template has been cut out.
TEST_F(RecordedDialog, MissingTemplateIsAFailure)
{
    const LoadedModule library(folder_.Path() / L"bare.dll", {{1, L"x"}});
    arvmui::Descriptor().module = library.Get();
    const DialogOutcome outcome = ShowDialog(Request());
    EXPECT_EQ(outcome.result, FALSE);
    EXPECT_NE(outcome.error, DWORD{0});
    EXPECT_EQ(boxes_.Texts(), Names({L"908:" + std::to_wstring(outcome.error)}));
}

TEST_F(RecordedDialog, EndFromOutsideWithAWrongNumberIsReported)
{
    OpenDialog dialog(Request());
    ::EndDialog(dialog.Window(), 3);
    EXPECT_EQ(dialog.Outcome().result, FALSE);
    EXPECT_EQ(boxes_.Texts(), Names({L"908:" + std::to_wstring(dialog.Outcome().error)}));
}

}  // namespace
