// Asking the user while the library is being loaded: the dialog of a real process, answered from this one.
#include "process/attach/attach_fixture.h"
#include "process/attach/private_installation.h"
#include "support/box_window.h"
#include "support/dialog_controls.h"

#include <arvmui.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using arvmui_test::Arrangement;
using arvmui_test::ChildProcess;
using arvmui_test::ComboItems;
using arvmui_test::FolderOf;
using arvmui_test::HostSettings;
using arvmui_test::LoaderSettings;
using arvmui_test::PressButton;
using arvmui_test::PressKey;
using arvmui_test::PrivateInstallation;
using arvmui_test::ReadReport;
using arvmui_test::Report;
using arvmui_test::RunLoader;
using arvmui_test::ScratchRegistry;
using arvmui_test::SelectComboItem;
using arvmui_test::TextOfControl;
using arvmui_test::VisibleDialogsOfProcess;
using arvmui_test::WaitUntil;

using Names = std::vector<std::wstring>;

constexpr int kPrompt = 201;
constexpr int kList = 202;

// The dialog that a process shows; null when it ends without one or none appears in a while.
HWND WaitForDialog(const ChildProcess& child)
{
    HWND dialog = nullptr;
    WaitUntil(
        [&]
        {
            const std::vector<HWND> dialogs = VisibleDialogsOfProcess(child.Id());
            if (!dialogs.empty()) dialog = dialogs.front();
            return dialog != nullptr || ::WaitForSingleObject(child.Process(), 0) != WAIT_TIMEOUT;
        });
    return dialog;
}

HWND ListOf(HWND dialog)
{
    return ::GetDlgItem(dialog, kList);
}

void Choose(HWND dialog, const wchar_t* name)
{
    const Names items = ComboItems(ListOf(dialog));
    const auto found = std::find(items.begin(), items.end(), name);
    ASSERT_NE(found, items.end()) << testing::PrintToString(name);
    SelectComboItem(dialog, kList, static_cast<int>(found - items.begin()));
    EXPECT_TRUE(PressButton(dialog, IDOK));
}

constexpr wchar_t kGerman[] = L"Deutsch";
constexpr wchar_t kFrench[] = L"Fran\u00e7ais";
constexpr wchar_t kSpanish[] = L"Espa\u00f1ol";

// A copy of the DLL with three languages, and a system that says nothing about languages.
class AskAtAttach : public testing::Test
{
protected:
    AskAtAttach()
    {
        for (const wchar_t* const locale : {L"de", L"fr", L"es"}) installation_.AddLocale(locale, locale);
    }

    Arrangement With(const wchar_t* commandLine) const
    {
        Arrangement arrangement;
        arrangement.library = installation_.Library();
        arrangement.commandLine = commandLine;
        return arrangement;
    }

    // What the process reports once `answer` has answered its dialog.
    template <typename Answer>
    Report Run(const Arrangement& arrangement, Answer answer) const
    {
        ChildProcess child(LoaderSettings(registry_, arrangement));
        const HWND dialog = WaitForDialog(child);
        EXPECT_NE(dialog, nullptr);
        if (!dialog)
        {
            ::TerminateProcess(child.Process(), 1);
            return {};
        }
        answer(dialog);
        return ReadReport(child);
    }

    static void ExpectSpeaks(const Report& report, const wchar_t* folder, const wchar_t* list, const wchar_t* asked)
    {
        EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), folder);
        EXPECT_EQ(report.Text("commandLineHint"), list);
        EXPECT_EQ(report.Text("published"), list);
        EXPECT_EQ(report.Text("askedHint"), asked);
        EXPECT_EQ(report.Number("popups"), 1u);
    }

    const ScratchRegistry registry_;
    const PrivateInstallation installation_;
};

TEST_F(AskAtAttach, OffersTheLanguagesBesideTheLibrary)
{
    Run(With(L"loader.exe /uilocale:ask"),
        [](HWND dialog)
        {
            EXPECT_EQ(ComboItems(ListOf(dialog)), Names({kGerman, kSpanish, kFrench}));
            EXPECT_TRUE(::IsWindowEnabled(::GetDlgItem(dialog, IDOK)));
            EXPECT_TRUE(PressButton(dialog, IDCANCEL));
        });
}

TEST_F(AskAtAttach, SpeaksTheUsersLanguageUntilAnotherIsSelected)
{
    Arrangement arrangement = With(L"loader.exe /uilocale:ask");
    arrangement.userLanguage = 0x0C0A;
    Run(arrangement,
        [](HWND dialog)
        {
            EXPECT_EQ(arvmui_test::ComboSelection(ListOf(dialog)), 1);
            const std::wstring spanish = TextOfControl(dialog, kPrompt);
            EXPECT_NE(spanish, L"");
            PressKey(ListOf(dialog), VK_HOME);
            EXPECT_TRUE(WaitUntil([=] { return TextOfControl(dialog, kPrompt) != spanish; }));
            PressKey(ListOf(dialog), VK_ESCAPE);
        });
}

TEST_F(AskAtAttach, AnswerDecidesAndIsHandedOn)
{
    const Report report = Run(With(L"loader.exe /uilocale:ask,de x"), [](HWND dialog) { Choose(dialog, kFrench); });
    ExpectSpeaks(report, L"fr", L"fr-FR,de", L"fr-FR");
    EXPECT_EQ(report.Text("commandLine"), L"loader.exe x");
}

TEST_F(AskAtAttach, AnswerByKeyboardDecides)
{
    const Report report = Run(With(L"loader.exe /uilocale:de-AT,ask"),
        [](HWND dialog)
        {
            PressKey(ListOf(dialog), VK_END);
            PressKey(ListOf(dialog), VK_RETURN);
        });
    ExpectSpeaks(report, L"de", L"de-AT,fr-FR", L"fr-FR");
}

TEST_F(AskAtAttach, RefusalLeavesTheRestOfTheList)
{
    const Report report =
        Run(With(L"loader.exe /uilocale:ask,es"), [](HWND dialog) { EXPECT_TRUE(PressButton(dialog, IDCANCEL)); });
    ExpectSpeaks(report, L"es", L"es", L"\t");
}

// With nothing decided the list of last resort counts, whose first is the user's language.
TEST_F(AskAtAttach, RefusalOfTheOnlyItemDecidesNothing)
{
    Arrangement arrangement = With(L"loader.exe /uilocale:ask");
    arrangement.userLanguage = 0x040C;
    const Report report = Run(arrangement, [](HWND dialog) { ::PostMessageW(dialog, WM_CLOSE, 0, 0); });
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"fr");
    EXPECT_EQ(report.Text("commandLineHint"), L"ask");
    EXPECT_EQ(report.Text("published"), L"(none)");
    EXPECT_EQ(report.Text("askedHint"), L"\t");
}

TEST_F(AskAtAttach, RegistryMayAsk)
{
    registry_.SetUILocale(L"user", L"ask,de");
    const Report report = Run(With(L"loader.exe"), [](HWND dialog) { Choose(dialog, kSpanish); });
    ExpectSpeaks(report, L"es", L"es-ES,de", L"es-ES");
}

TEST_F(AskAtAttach, OnlyAListThatGetsThereAsks)
{
    const Report report = RunLoader(registry_, With(L"loader.exe /uilocale:de"));
    EXPECT_EQ(report.Number("windows"), 0u);
    EXPECT_EQ(report.Text("askedHint"), L"");
}

// Every item of a list is expanded, so one behind a language that exists asks too.
TEST_F(AskAtAttach, ItemBehindAnInstalledLanguageAsksToo)
{
    const Report report = Run(With(L"loader.exe /uilocale:de,ask"), [](HWND dialog) { Choose(dialog, kSpanish); });
    ExpectSpeaks(report, L"de", L"de,es-ES", L"es-ES");
}

TEST(AskAtAttachWithoutLanguages, EndsItsListWithoutAnyWindow)
{
    const ScratchRegistry registry;
    const PrivateInstallation installation;
    Arrangement arrangement;
    arrangement.library = installation.Library();
    arrangement.commandLine = L"loader.exe /uilocale:nl,ask,de";
    const Report report = RunLoader(registry, arrangement);
    EXPECT_EQ(report.Text("commandLineHint"), L"nl");
    EXPECT_EQ(report.Text("published"), L"nl");
    EXPECT_EQ(report.Text("askedHint"), L"\t");
    EXPECT_EQ(report.Text("resourceLibrary"), L"");
    EXPECT_EQ(report.Number("windows"), 0u);
}

TEST(AskInsideInstaller, IsLeftToThePackage)
{
    const ScratchRegistry registry;
    const PrivateInstallation installation(L"Installer");
    installation.AddLocale(L"de", L"de");
    Arrangement arrangement;
    arrangement.library = installation.Library();
    arrangement.commandLine = L"msiexec.exe /uilocale:ask";
    arrangement.variables = {{L"windir", installation.Root().wstring()}};
    const Report report = RunLoader(registry, arrangement);
    EXPECT_EQ(report.Text("commandLineHint"), L"ask");
    EXPECT_EQ(report.Text("askedHint"), L"");
    EXPECT_EQ(report.Number("windows"), 0u);
}

// The loader of the program attaches the library here, before the program runs.
TEST(AskBeforeTheProgramRuns, AnswerIsInheritedByChildren)
{
    ChildProcess child(HostSettings(L"host.exe /uilocale:ask", {{L"ARVMUI_TEST_CHILDREN", L"child.exe"}}));
    const HWND dialog = WaitForDialog(child);
    ASSERT_NE(dialog, nullptr);
    Choose(dialog, kFrench);
    const Report parent = ReadReport(child);
    EXPECT_EQ(FolderOf(parent.Text("resourceLibrary")), L"fr");
    EXPECT_EQ(parent.Text("askedHint"), L"fr-FR");
    const Report grandchild = ReadReport(child);
    EXPECT_EQ(FolderOf(grandchild.Text("resourceLibrary")), L"fr");
    EXPECT_EQ(grandchild.Text("commandLineHint"), L"fr-FR");
    EXPECT_EQ(grandchild.Text("askedHint"), L"");
}

}  // namespace
