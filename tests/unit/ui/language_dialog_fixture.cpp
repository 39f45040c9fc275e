#include "unit/ui/language_dialog_fixture.h"

#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "support/box_window.h"
#include "support/dialog_controls.h"
#include "ui/language_dialog.h"

#include <ostream>

namespace arvmui_test
{
namespace
{

constexpr size_t kCharsBehindAnswer = 8;

HMODULE Program()
{
    return ::GetModuleHandleW(nullptr);
}

}  // namespace

void PrintTo(const DialogTexts& texts, std::ostream* output)
{
    *output << testing::PrintToString(texts.title) << ", " << testing::PrintToString(texts.prompt) << ", "
            << testing::PrintToString(texts.ok) << ", " << testing::PrintToString(texts.cancel);
}

DialogTexts TextsOf(const LocaleEntry& entry)
{
    return {entry.LanguageSelectionTitle, entry.LanguageSelectionDesc, entry.OK, entry.Cancel};
}

DialogTexts ReadTexts(HWND dialog)
{
    return {TextOfWindow(dialog), TextOfControl(dialog, ARVMUI_CONTROL_LANGUAGE_PROMPT), TextOfControl(dialog, IDOK),
        TextOfControl(dialog, IDCANCEL)};
}

DialogOutcome ShowDialog(const DialogRequest& request)
{
    DialogOutcome outcome = {};
    outcome.buffer.assign(request.answerSize + kCharsBehindAnswer, L'#');
    const DWORD count = request.count.value_or(static_cast<DWORD>(request.entries.size()));
    outcome.result = arvmui::ShowLanguageSelectionDialog(request.owner, request.icons, request.entries.data(), count,
        request.hasAnswer ? outcome.buffer.data() : nullptr, request.answerSize);
    outcome.error = ::GetLastError();
    outcome.answer = outcome.buffer.substr(0, outcome.buffer.find(L'\0'));
    return outcome;
}

OpenDialog::OpenDialog(const DialogRequest& request)
    : call_(
        [this, request]
        {
            outcome_ = ShowDialog(request);
            return outcome_.result;
        }),
      window_(call_.WaitForBox())
{
}

HWND OpenDialog::List() const
{
    return ::GetDlgItem(window_, ARVMUI_CONTROL_LANGUAGE_LIST);
}

void OpenDialog::Press(int button) const
{
    EXPECT_TRUE(PressButton(window_, button));
}

void OpenDialog::Select(int index) const
{
    SelectComboItem(window_, ARVMUI_CONTROL_LANGUAGE_LIST, index);
}

const DialogOutcome& OpenDialog::Outcome()
{
    call_.Result();
    return outcome_;
}

LanguageDialogTest::LanguageDialogTest() : languages(Program()), slot_(::TlsAlloc())
{
    arvmui::Descriptor() = {};
    arvmui::Descriptor().module = Program();
    arvmui::Descriptor().tlsIndex = slot_;
}

LanguageDialogTest::~LanguageDialogTest()
{
    ::TlsFree(slot_);
    arvmui::Descriptor() = {};
}

void LanguageDialogTest::InstallKeyboards(std::initializer_list<WORD> primaries)
{
    keyboards_ = primaries;
    arvmui::Descriptor().keyboardLanguages = keyboards_.data();
    arvmui::Descriptor().keyboardLanguageCount = static_cast<DWORD>(keyboards_.size());
}

}  // namespace arvmui_test
