#include "ui/language_dialog.h"

#include "foundation/heap.h"
#include "foundation/text_calls.h"
#include "locale/installed_locales.h"
#include "locale/library_identity.h"
#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "ui/error_dialog.h"
#include "ui/host_icon.h"
#include "ui/locale_display.h"

namespace arvmui
{
namespace
{

constexpr INT_PTR kNoChoice = 0;  // a choice ends the dialog with the entry's index plus 1

struct LanguageDialogContext
{
    BOOL previewOnly;
    HICON smallIcon;
    HICON bigIcon;
    DWORD count;
    const LocaleEntry* entries;
};

// Set when a dialog comes up, so that its first notification brings it to the front once. One flag
// for the process: of dialogs on several threads only one is raised.
constinit bool ForegroundPending = false;

const LocaleEntry* FindEntry(const LanguageDialogContext& context, LANGID language) noexcept
{
    for (DWORD i = 0; i < context.count; ++i)
        if (context.entries[i].LangID == language) return &context.entries[i];
    for (DWORD i = 0; i < context.count; ++i)
        if (PRIMARYLANGID(context.entries[i].LangID) == PRIMARYLANGID(language)) return &context.entries[i];
    return nullptr;
}

const LocaleEntry& InitialEntry(const LanguageDialogContext& context) noexcept
{
    const LANGID languages[] = {::GetUserDefaultLangID(), ::GetSystemDefaultLangID(), kDefaultLanguage};
    for (const LANGID language : languages)
        if (const LocaleEntry* const entry = FindEntry(context, language)) return *entry;
    return context.entries[0];
}

// The entry's own text, or the English one where the user could not read it.
template <size_t kChars>
const wchar_t* ReadableText(
    const LanguageDialogContext& context, const LocaleEntry& entry, const wchar_t (LocaleEntry::*text)[kChars]) noexcept
{
    if (IsReadable(entry.LangID, entry.*text)) return entry.*text;
    const LocaleEntry* const english = FindEntry(context, kDefaultLanguage);
    return english ? english->*text : entry.*text;
}

// The dialog speaks the language that is selected in it. Ignored: a text that cannot be set stays as it was.
void SetTexts(HWND dialog, const LanguageDialogContext& context, const LocaleEntry& entry) noexcept
{
    ::SetWindowTextW(dialog, ReadableText(context, entry, &LocaleEntry::LanguageSelectionTitle));
    ::SetDlgItemTextW(
        dialog, ARVMUI_CONTROL_LANGUAGE_PROMPT, ReadableText(context, entry, &LocaleEntry::LanguageSelectionDesc));
    ::SetDlgItemTextW(dialog, IDOK, ReadableText(context, entry, &LocaleEntry::OK));
    ::SetDlgItemTextW(dialog, IDCANCEL, ReadableText(context, entry, &LocaleEntry::Cancel));
}

void FillList(HWND dialog, const LanguageDialogContext& context) noexcept
{
    const HWND list = ::GetDlgItem(dialog, ARVMUI_CONTROL_LANGUAGE_LIST);
    ::SendMessageW(list, CB_RESETCONTENT, 0, 0);
    for (DWORD i = 0; i < context.count; ++i)
    {
        const LocaleEntry& entry = context.entries[i];
        ::SendMessageW(list, CB_ADDSTRING, 0,
            reinterpret_cast<LPARAM>(DisplayName(entry.LangID, entry.NativeName, entry.EnglishName)));
    }
}

// The selected entry, or null.
const LocaleEntry* SelectedEntry(HWND dialog, const LanguageDialogContext& context) noexcept
{
    const LRESULT selection = ::SendDlgItemMessageW(dialog, ARVMUI_CONTROL_LANGUAGE_LIST, CB_GETCURSEL, 0, 0);
    if (selection < 0 || static_cast<ULONG_PTR>(selection) >= context.count) return nullptr;
    return &context.entries[selection];
}

void Initialise(HWND dialog, const LanguageDialogContext& context) noexcept
{
    FillList(dialog, context);
    const LocaleEntry& initial = InitialEntry(context);
    SetTexts(dialog, context, initial);
    ::SendDlgItemMessageW(
        dialog, ARVMUI_CONTROL_LANGUAGE_LIST, CB_SETCURSEL, static_cast<WPARAM>(&initial - context.entries), 0);
    const HICON hostIcon = context.smallIcon && context.bigIcon ? nullptr : FindHostIcon(nullptr);
    SetDialogIcons(dialog, context.smallIcon, context.bigIcon, hostIcon);
    ::EnableWindow(::GetDlgItem(dialog, IDOK), !context.previewOnly);
    ForegroundPending = true;
}

// Windows lets a thread take the foreground only from one whose input it shares.
void BringToForeground(HWND dialog) noexcept
{
    const DWORD self = ::GetCurrentThreadId();
    const DWORD other = ::GetWindowThreadProcessId(::GetForegroundWindow(), nullptr);
    const bool attached = other != self && ::AttachThreadInput(self, other, TRUE);
    // Ignored: where the system refuses, the dialog stays where it is and its button in the task bar blinks.
    ::SetForegroundWindow(dialog);
    ::BringWindowToTop(dialog);
    if (attached) ::AttachThreadInput(self, other, FALSE);
}

bool HandleCommand(HWND dialog, const LanguageDialogContext& context, WORD control, WORD notification) noexcept
{
    switch (control)
    {
        case IDOK:
        {
            const LocaleEntry* const entry = SelectedEntry(dialog, context);
            ::EndDialog(dialog, entry ? entry - context.entries + 1 : kNoChoice);
            return true;
        }
        case IDCANCEL: ::EndDialog(dialog, kNoChoice); return true;
        case ARVMUI_CONTROL_LANGUAGE_LIST:
            if (notification != CBN_SELCHANGE) return false;
            if (const LocaleEntry* const entry = SelectedEntry(dialog, context)) SetTexts(dialog, context, *entry);
            return true;
        default: return false;
    }
}

INT_PTR CALLBACK DialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    const auto* const context =
        reinterpret_cast<const LanguageDialogContext*>(::GetWindowLongPtrW(dialog, GWLP_USERDATA));
    switch (message)
    {
        case WM_INITDIALOG:
            ::SetWindowLongPtrW(dialog, GWLP_USERDATA, lParam);
            Initialise(dialog, *reinterpret_cast<const LanguageDialogContext*>(lParam));
            return TRUE;
        case WM_COMMAND:
            // Before the dialog is initialised there is no context to answer from.
            return context && HandleCommand(dialog, *context, LOWORD(wParam), HIWORD(wParam));
        case WM_NOTIFY:
            if (!ForegroundPending) return TRUE;
            ForegroundPending = false;
            BringToForeground(dialog);
            return TRUE;
        case WM_CLOSE: ::EndDialog(dialog, kNoChoice); return TRUE;
        default: return FALSE;
    }
}

}  // namespace

BOOL ShowLanguageSelectionDialog(
    HWND owner, const HICON* icons, const LocaleEntry* entries, DWORD count, wchar_t* answer, DWORD answerSize) noexcept
{
    LanguageDialogContext context = {
        answerSize == 0, icons ? icons[0] : nullptr, icons ? icons[1] : nullptr, count, entries};

    void* list = nullptr;
    // Ignored: what fails stores nothing, and the count stays 0.
    if (count == 0) EnumInstalledLocales(kFullEntryBytes, &list, &context.count);
    const HeapBlock<LocaleEntry> installed(static_cast<LocaleEntry*>(list));
    if (count == 0) context.entries = installed.Get();
    if (context.count == 0)
    {
        ::SetLastError(ERROR_INVALID_DATA);
        return FALSE;
    }

    const INT_PTR result = ::DialogBoxParamW(Descriptor().module, MAKEINTRESOURCEW(ARVMUI_DIALOG_LANGUAGE), owner,
        DialogProcedure, reinterpret_cast<LPARAM>(&context));
    if (result < kNoChoice || static_cast<ULONG_PTR>(result) > context.count)
    {
        ARVMUI_ErrorDialogBoxW(
            owner, 0, ::GetLastError(), MAKEINTRESOURCEW(ARVMUI_STRING_DIALOG_NOT_SHOWN), nullptr, 0);
        return FALSE;
    }
    if (answer && answerSize != 0)
        CopyCut(answer, answerSize, result == kNoChoice ? L"" : context.entries[result - 1].Locale);
    return TRUE;
}

}  // namespace arvmui
