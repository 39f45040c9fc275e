// Message boxes as real windows: which labels, captions and texts the user sees. The translated labels
// are read from the resource libraries beside the program.
#include "arvmui.h"
#include "message_box_strings.h"
#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "support/box_window.h"
#include "support/dialog_controls.h"
#include "support/gdi_objects.h"
#include "support/modal_call.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace
{

using arvmui_test::BoxContents;
using arvmui_test::Labels;
using arvmui_test::LoadedModule;
using arvmui_test::ModalCall;
using arvmui_test::PressButton;
using arvmui_test::ReadBox;
using arvmui_test::TemporaryFolder;

using Buttons = std::map<int, std::wstring>;

std::wstring LoadText(HMODULE library, UINT id)
{
    wchar_t text[256] = {};
    ::LoadStringW(library, id, text, 256);
    return text;
}

// The attached state of the library, as far as message boxes look at it.
class MessageBoxWindow : public testing::Test
{
protected:
    MessageBoxWindow()
    {
        arvmui::Descriptor() = {};
        arvmui::Descriptor().tlsIndex = ::TlsAlloc();
        slot_ = arvmui::Descriptor().tlsIndex;
    }
    ~MessageBoxWindow() override
    {
        for (const HMODULE library : libraries_) ::FreeLibrary(library);
        ::TlsFree(slot_);
        arvmui::Descriptor() = {};
    }

    void UseTranslation(const wchar_t* locale)
    {
        const auto file = arvmui_test::TestProgramFolder() / L"resource" / locale / L"arvmuiUI.DLL";
        const HMODULE library = ::LoadLibraryW(file.c_str());
        ASSERT_NE(library, nullptr) << file;
        libraries_.push_back(library);
        arvmui::Descriptor().resourceLibrary = library;
    }

    void UseStrings(const arvmui_test::Strings& strings)
    {
        written_ = std::make_unique<LoadedModule>(folder_.Path() / L"texts.dll", strings);
        arvmui::Descriptor().resourceLibrary = written_->Get();
    }

private:
    DWORD slot_ = TLS_OUT_OF_INDEXES;
    std::vector<HMODULE> libraries_;
    TemporaryFolder folder_;
    std::unique_ptr<LoadedModule> written_;
};

// Shows a box, reads it and presses the button with the lowest number. `result`, if given, receives the box's result.
BoxContents ShowAndRead(std::function<int()> show, int* result = nullptr)
{
    ModalCall call(std::move(show));
    const HWND box = call.WaitForBox();
    EXPECT_NE(box, nullptr);
    if (!box) return {};
    const BoxContents contents = ReadBox(box);
    EXPECT_FALSE(contents.buttons.empty());
    if (contents.buttons.empty()) return contents;
    EXPECT_TRUE(PressButton(box, contents.buttons.begin()->first));
    const int answer = call.Result();
    if (result) *result = answer;
    return contents;
}

BoxContents ShowTranslated(UINT type, int* result = nullptr)
{
    return ShowAndRead([=] { return ARVMUI_MessageBoxW(nullptr, L"Text", L"Caption", type); }, result);
}

BoxContents ShowSystem(UINT type, int* result = nullptr)
{
    return ShowAndRead([=] { return ::MessageBoxW(nullptr, L"Text", L"Caption", type); }, result);
}

// The labels that the resource library in use has for buttons.
Buttons Translations(const std::vector<int>& identifiers)
{
    Buttons buttons;
    for (const int id : identifiers)
        buttons[id] = LoadText(arvmui::Descriptor().resourceLibrary, static_cast<UINT>(ARVMUI_STRING_BUTTON_BASE + id));
    return buttons;
}

struct ButtonSet
{
    const char* name;
    UINT type;
    std::vector<int> buttons;
};

const ButtonSet kButtonSets[] = {
    {"OkCancel", MB_OKCANCEL, {IDOK, IDCANCEL}},
    {"AbortRetryIgnore", MB_ABORTRETRYIGNORE, {IDABORT, IDRETRY, IDIGNORE}},
    {"YesNoCancel", MB_YESNOCANCEL, {IDYES, IDNO, IDCANCEL}},
    {"YesNo", MB_YESNO, {IDYES, IDNO}},
    {"RetryCancel", MB_RETRYCANCEL, {IDRETRY, IDCANCEL}},
    {"CancelTryContinue", MB_CANCELTRYCONTINUE, {IDCANCEL, IDTRYAGAIN, IDCONTINUE}},
    {"OkCancelHelp", MB_OKCANCEL | MB_HELP, {IDOK, IDCANCEL, IDHELP}},
    {"AbortRetryIgnoreHelp", MB_ABORTRETRYIGNORE | MB_HELP, {IDABORT, IDRETRY, IDIGNORE, IDHELP}},
    {"YesNoCancelHelp", MB_YESNOCANCEL | MB_HELP, {IDYES, IDNO, IDCANCEL, IDHELP}},
    {"YesNoHelp", MB_YESNO | MB_HELP, {IDYES, IDNO, IDHELP}},
    {"RetryCancelHelp", MB_RETRYCANCEL | MB_HELP, {IDRETRY, IDCANCEL, IDHELP}},
    {"CancelTryContinueHelp", MB_CANCELTRYCONTINUE | MB_HELP, {IDCANCEL, IDTRYAGAIN, IDCONTINUE, IDHELP}},
    {"YesNoWithIconAndDefault", MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2, {IDYES, IDNO}},
};

// GoogleTest names the set after this in its messages.
void PrintTo(const ButtonSet& set, std::ostream* output)
{
    *output << set.name;
}

class MessageBoxButtons : public MessageBoxWindow, public testing::WithParamInterface<ButtonSet>
{
};

TEST_P(MessageBoxButtons, HaveTheLabelsOfTheResourceLibrary)
{
    for (const wchar_t* const locale : {L"de", L"ja", L"fr"})
    {
        UseTranslation(locale);
        int result = 0;
        const BoxContents box = ShowTranslated(GetParam().type, &result);
        EXPECT_EQ(box.buttons, Translations(GetParam().buttons)) << locale;
        EXPECT_EQ(box.caption, L"Caption");
        EXPECT_EQ(box.text, L"Text");
        EXPECT_EQ(result, *std::min_element(GetParam().buttons.begin(), GetParam().buttons.end()));
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, MessageBoxButtons, testing::ValuesIn(kButtonSets),
    [](const auto& set) { return std::string(set.param.name); });

// The number of a single button is the system's affair, so only labels are compared.
TEST_F(MessageBoxWindow, SingleButtonSaysOk)
{
    UseStrings({{ARVMUI_STRING_BUTTON_OK, L"Einverstanden"}, {ARVMUI_STRING_BUTTON_CANCEL, L"Abbrechen"},
        {ARVMUI_STRING_BUTTON_HELP, L"Hilfe"}});
    int result = 0;
    EXPECT_EQ(Labels(ShowTranslated(MB_OK, &result)), std::vector<std::wstring>{L"Einverstanden"});
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(Labels(ShowTranslated(MB_OK | MB_HELP)), (std::vector<std::wstring>{L"Einverstanden", L"Hilfe"}));
}

TEST_F(MessageBoxWindow, YesAndNoDifferFromTheSystemsInEveryForeignLanguage)
{
    const Buttons system = ShowSystem(MB_YESNO).buttons;
    UseTranslation(L"ja");
    const Buttons japanese = ShowTranslated(MB_YESNO).buttons;
    EXPECT_EQ(japanese, (Buttons{{IDYES, LoadText(arvmui::Descriptor().resourceLibrary, 106)},
                            {IDNO, LoadText(arvmui::Descriptor().resourceLibrary, 107)}}));
    UseTranslation(L"fr");
    EXPECT_NE(ShowTranslated(MB_YESNO).buttons, japanese);
    EXPECT_EQ(ShowSystem(MB_YESNO).buttons, system);
}

TEST_F(MessageBoxWindow, WithoutResourceLibraryHasTheSystemsLabels)
{
    int result = 0;
    const BoxContents box = ShowTranslated(MB_YESNOCANCEL, &result);
    EXPECT_EQ(box.buttons, ShowSystem(MB_YESNOCANCEL).buttons);
    EXPECT_EQ(box.caption, L"Caption");
    EXPECT_EQ(result, IDCANCEL);
}

TEST_F(MessageBoxWindow, MissingLabelsStayTheSystemsAndTheOthersAreTranslated)
{
    const Buttons system = ShowSystem(MB_YESNOCANCEL).buttons;
    UseStrings({{ARVMUI_STRING_BUTTON_YES, L"Tak"}, {ARVMUI_STRING_BUTTON_CANCEL, L"Anuluj"}});
    const Buttons expected = {{IDYES, L"Tak"}, {IDNO, system.at(IDNO)}, {IDCANCEL, L"Anuluj"}};
    EXPECT_EQ(ShowTranslated(MB_YESNOCANCEL).buttons, expected);
}

TEST_F(MessageBoxWindow, LibraryWithoutAnyLabelLeavesTheSystems)
{
    const Buttons system = ShowSystem(MB_ABORTRETRYIGNORE).buttons;
    UseStrings({{ARVMUI_STRING_LOCALE_TAG, L"pl-PL"}});
    EXPECT_EQ(ShowTranslated(MB_ABORTRETRYIGNORE).buttons, system);
}

TEST_F(MessageBoxWindow, LabelsAreCutAt63Characters)
{
    UseStrings({{ARVMUI_STRING_BUTTON_YES, std::wstring(63, L'a')}, {ARVMUI_STRING_BUTTON_NO, std::wstring(64, L'b')},
        {ARVMUI_STRING_BUTTON_CANCEL, std::wstring(100, L'c')}});
    const Buttons expected = {
        {IDYES, std::wstring(63, L'a')}, {IDNO, std::wstring(63, L'b')}, {IDCANCEL, std::wstring(63, L'c')}};
    EXPECT_EQ(ShowTranslated(MB_YESNOCANCEL).buttons, expected);
}

TEST_F(MessageBoxWindow, TextAndCaptionBeyondTheAnsiCodePageAreShown)
{
    UseTranslation(L"de");
    const BoxContents box = ShowAndRead(
        [] { return ARVMUI_MessageBoxW(nullptr, L"\u65e5\u672c\u8a9e \u0395\u03bb", L"\u0416 \U0001F600", MB_OK); });
    EXPECT_EQ(box.caption, L"\u0416 \U0001F600");
    EXPECT_EQ(box.text, L"\u65e5\u672c\u8a9e \u0395\u03bb");
}

TEST_F(MessageBoxWindow, NumbersNameStringsOfTheProgram)
{
    UseTranslation(L"de");
    const BoxContents wide = ShowAndRead(
        []
        {
            return ARVMUI_MessageBoxW(
                nullptr, MAKEINTRESOURCEW(TEST_STRING_TEXT), MAKEINTRESOURCEW(TEST_STRING_CAPTION), MB_YESNO);
        });
    EXPECT_EQ(wide.text, L"Text of the program");
    EXPECT_EQ(wide.caption, L"Caption of the program");
    EXPECT_EQ(wide.buttons, Translations({IDYES, IDNO}));

    const BoxContents narrow = ShowAndRead(
        []
        {
            return ARVMUI_MessageBoxA(
                nullptr, MAKEINTRESOURCEA(TEST_STRING_TEXT), MAKEINTRESOURCEA(TEST_STRING_CAPTION), MB_YESNO);
        });
    EXPECT_EQ(narrow.text, wide.text);
    EXPECT_EQ(narrow.caption, wide.caption);
    EXPECT_EQ(narrow.buttons, wide.buttons);
}

TEST_F(MessageBoxWindow, NullCaptionShowsTheSystemsOwn)
{
    UseTranslation(L"de");
    const BoxContents system = ShowAndRead([] { return ::MessageBoxW(nullptr, L"Text", nullptr, MB_YESNO); });
    const BoxContents wide = ShowAndRead([] { return ARVMUI_MessageBoxW(nullptr, L"Text", nullptr, MB_YESNO); });
    const BoxContents narrow = ShowAndRead([] { return ARVMUI_MessageBoxA(nullptr, "Text", nullptr, MB_YESNO); });
    EXPECT_FALSE(system.caption.empty());
    EXPECT_EQ(wide.caption, system.caption);
    EXPECT_EQ(narrow.caption, system.caption);
    EXPECT_EQ(narrow.buttons, Translations({IDYES, IDNO}));
}

TEST_F(MessageBoxWindow, NullTextShowsNone)
{
    UseTranslation(L"de");
    const BoxContents box = ShowAndRead([] { return ARVMUI_MessageBoxW(nullptr, nullptr, L"Caption", MB_YESNO); });
    EXPECT_EQ(box.text, L"");
    EXPECT_EQ(box.buttons, Translations({IDYES, IDNO}));
}

TEST_F(MessageBoxWindow, NarrowTextIsOfTheAnsiCodePage)
{
    UseTranslation(L"ja");
    constexpr char kText[] = "Gr\xfc\xdf"
                             "e";
    wchar_t expected[16] = {};
    ASSERT_GT(::MultiByteToWideChar(CP_ACP, 0, kText, -1, expected, 16), 0);
    int result = 0;
    const BoxContents box =
        ShowAndRead([&] { return ARVMUI_MessageBoxA(nullptr, kText, kText, MB_RETRYCANCEL); }, &result);
    EXPECT_EQ(box.text, expected);
    EXPECT_EQ(box.caption, expected);
    EXPECT_EQ(box.buttons, Translations({IDRETRY, IDCANCEL}));
    EXPECT_EQ(result, IDCANCEL);  // the button with the lowest number
}

TEST_F(MessageBoxWindow, OwnerIsDisabledWhileTheBoxIsUp)
{
    std::atomic<HWND> owner{nullptr};
    ModalCall call(
        [&]
        {
            const HWND window = ::CreateWindowW(
                L"STATIC", L"Owner", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
            owner = window;
            const int result = ARVMUI_MessageBoxW(window, L"Text", L"Caption", MB_YESNO);
            ::DestroyWindow(window);
            return result;
        });
    const HWND box = call.WaitForBox();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(::GetWindow(box, GW_OWNER), owner.load());
    EXPECT_FALSE(::IsWindowEnabled(owner));
    EXPECT_TRUE(PressButton(box, IDNO));
    EXPECT_EQ(call.Result(), IDNO);
}

TEST_F(MessageBoxWindow, WithoutThreadSlotIsShownUntranslated)
{
    const Buttons system = ShowSystem(MB_YESNO).buttons;
    UseTranslation(L"de");
    arvmui::Descriptor().tlsIndex = TLS_OUT_OF_INDEXES;
    int result = 0;
    const BoxContents box = ShowTranslated(MB_YESNO, &result);
    EXPECT_EQ(box.buttons, system);
    EXPECT_EQ(box.caption, L"Caption");
    EXPECT_EQ(result, IDYES);
}

TEST_F(MessageBoxWindow, PlainBoxOfTheSameThreadStaysTheSystems)
{
    const Buttons system = ShowSystem(MB_YESNO).buttons;
    UseTranslation(L"de");
    void* frame = arvmui::NoThreadSlot();
    ModalCall call(
        [&]
        {
            ARVMUI_MessageBoxW(nullptr, L"Text", L"First", MB_YESNO);
            frame = arvmui::GetThreadValue(arvmui::Descriptor());
            return ::MessageBoxW(nullptr, L"Text", L"Second", MB_YESNO);
        });
    const HWND first = call.WaitForBox();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(ReadBox(first).buttons, Translations({IDYES, IDNO}));
    ASSERT_TRUE(PressButton(first, IDYES));
    HWND second = call.WaitForBox(first);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(ReadBox(second).caption, L"Second");
    EXPECT_EQ(ReadBox(second).buttons, system);
    ASSERT_TRUE(PressButton(second, IDNO));
    EXPECT_EQ(call.Result(), IDNO);
    EXPECT_EQ(frame, nullptr);
}

constexpr UINT kShowInner = WM_APP;
constexpr wchar_t kOpenerClass[] = L"ArvmuiTestOpener";

// A window of the program that opens another box while one is up.
LRESULT CALLBACK OpenerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != kShowInner) return ::DefWindowProcW(window, message, wParam, lParam);
    return ARVMUI_MessageBoxW(nullptr, L"Text", L"Inner", MB_RETRYCANCEL);
}

TEST_F(MessageBoxWindow, NestedBoxesAreAllTranslatedAndTheHookGoesWithTheOutermost)
{
    const Buttons system = ShowSystem(MB_YESNO).buttons;
    UseTranslation(L"de");
    WNDCLASSW openerClass = {};
    openerClass.lpfnWndProc = OpenerProcedure;
    openerClass.lpszClassName = kOpenerClass;
    ASSERT_NE(::RegisterClassW(&openerClass), 0);

    std::atomic<HWND> opener{nullptr};
    ModalCall call(
        [&]
        {
            opener = ::CreateWindowW(kOpenerClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
            ARVMUI_MessageBoxW(nullptr, L"Text", L"Outer", MB_YESNO);
            ::DestroyWindow(opener);
            return ::MessageBoxW(nullptr, L"Text", L"Plain", MB_YESNO);
        });
    const HWND outer = call.WaitForBox();
    ASSERT_NE(outer, nullptr);

    // Twice, because the first inner box must leave the outer one's hook behind.
    for (int round = 0; round < 2; ++round)
    {
        ASSERT_TRUE(::PostMessageW(opener, kShowInner, 0, 0));
        const HWND inner = call.WaitForBox(outer);
        ASSERT_NE(inner, nullptr);
        EXPECT_EQ(ReadBox(inner).caption, L"Inner");
        EXPECT_EQ(ReadBox(inner).buttons, Translations({IDRETRY, IDCANCEL}));
        ASSERT_TRUE(PressButton(inner, IDCANCEL));
        while (::IsWindow(inner)) ::Sleep(1);
    }
    EXPECT_EQ(ReadBox(outer).caption, L"Outer");
    EXPECT_EQ(ReadBox(outer).buttons, Translations({IDYES, IDNO}));
    ASSERT_TRUE(PressButton(outer, IDYES));

    const HWND plain = call.WaitForBox(outer);
    ASSERT_NE(plain, nullptr);
    EXPECT_EQ(ReadBox(plain).caption, L"Plain");
    EXPECT_EQ(ReadBox(plain).buttons, system);
    ASSERT_TRUE(PressButton(plain, IDYES));
    call.Result();
}

TEST_F(MessageBoxWindow, BoxesOfTwoThreadsDoNotInterfere)
{
    UseTranslation(L"ja");
    ModalCall first([] { return ARVMUI_MessageBoxW(nullptr, L"Text", L"First", MB_YESNO); });
    const HWND firstBox = first.WaitForBox();
    ModalCall second([] { return ARVMUI_MessageBoxW(nullptr, L"Text", L"Second", MB_RETRYCANCEL); });
    const HWND secondBox = second.WaitForBox();
    ASSERT_NE(firstBox, nullptr);
    ASSERT_NE(secondBox, nullptr);
    EXPECT_EQ(ReadBox(firstBox).caption, L"First");
    EXPECT_EQ(ReadBox(secondBox).caption, L"Second");

    // The thread that came first goes first; the other's box is not affected.
    ASSERT_TRUE(PressButton(firstBox, IDNO));
    EXPECT_EQ(first.Result(), IDNO);
    ModalCall third([] { return ARVMUI_MessageBoxW(nullptr, L"Text", L"Third", MB_YESNO); });
    const HWND thirdBox = third.WaitForBox();
    ASSERT_NE(thirdBox, nullptr);
    EXPECT_EQ(ReadBox(thirdBox).buttons, Translations({IDYES, IDNO}));
    EXPECT_EQ(ReadBox(secondBox).buttons, Translations({IDRETRY, IDCANCEL}));
    ASSERT_TRUE(PressButton(thirdBox, IDYES));
    ASSERT_TRUE(PressButton(secondBox, IDRETRY));
    EXPECT_EQ(third.Result(), IDYES);
    EXPECT_EQ(second.Result(), IDRETRY);
}

TEST_F(MessageBoxWindow, AHundredBoxesLeaveNoGraphicsObjectsBehind)
{
    UseTranslation(L"de");
    {
        ModalCall call([] { return ARVMUI_MessageBoxW(nullptr, L"Text", L"Caption", MB_YESNO); });
        const HWND box = call.WaitForBox();
        ASSERT_NE(box, nullptr);
        arvmui_test::PaintNow(box);
        ASSERT_TRUE(PressButton(box, IDYES));
    }
    const size_t before = arvmui_test::CountGdiObjects();
    ASSERT_GT(before, size_t{0});
    for (int i = 0; i < 100; ++i) ASSERT_EQ(ShowTranslated(MB_YESNO).buttons.size(), size_t{2});
    EXPECT_LT(arvmui_test::CountGdiObjects(), before + 10);
}

}  // namespace
