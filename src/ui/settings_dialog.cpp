#include "foundation/growable_text.h"
#include "foundation/heap.h"
#include "foundation/text_calls.h"
#include "locale/installed_locales.h"
#include "locale/locale_list.h"
#include "locale/registry_store.h"
#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "ui/error_dialog.h"
#include "ui/host_icon.h"
#include "ui/locale_display.h"

// The dialogs in which a user or an administrator orders the preferred languages. Their templates
// and titles come from the resource library, so they are translated like everything else.

namespace arvmui
{
namespace
{

constexpr DWORD kStoredListChars = 256;  // terminator included
constexpr INT_PTR kFailed = 0;           // results of both dialogs
constexpr INT_PTR kDone = 1;

// `chosen` and `available` hold row indices. Together they hold every row once, so the free tail of
// each has room for a selection among the items of the other, and serves for reading it.
struct SettingsDialogContext
{
    DWORD machineScope;
    HICON smallIcon;
    HICON bigIcon;
    DWORD count;  // rows; both index arrays have room for as many
    HeapBlock<ShortLocaleEntry> rows;
    HWND window;
    DWORD chosenCount;
    HeapBlock<DWORD> chosen;  // in the order of preference
    DWORD availableCount;
    HeapBlock<DWORD> available;  // ascending

    HKEY Store() const noexcept { return machineScope == 1 ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

    bool IsChosen(DWORD row) const noexcept
    {
        for (DWORD i = 0; i < chosenCount; ++i)
            if (chosen.Get()[i] == row) return true;
        return false;
    }

    void Choose(DWORD row) noexcept { chosen.Get()[chosenCount++] = row; }

    void RebuildAvailable() noexcept
    {
        availableCount = 0;
        for (DWORD row = 0; row < count; ++row)
            if (!IsChosen(row)) available.Get()[availableCount++] = row;
    }

    const wchar_t* NameOf(DWORD row) const noexcept
    {
        const ShortLocaleEntry& entry = rows.Get()[row];
        return DisplayName(entry.LangID, entry.NativeName, entry.EnglishName);
    }
};

// Found when the main dialog comes up; the add dialog uses it too.
constinit HICON g_hostIcon = nullptr;

struct Selection
{
    const DWORD* items;  // positions in the list box, ascending
    DWORD count;
};

Selection ReadSelection(HWND list, DWORD* items, DWORD capacity) noexcept
{
    const LRESULT count = ::SendMessageW(list, LB_GETSELITEMS, capacity, reinterpret_cast<LPARAM>(items));
    return {items, count > 0 ? static_cast<DWORD>(count) : 0};
}

// The selection of the chosen languages, valid until `available` is rebuilt.
Selection ReadChosenSelection(HWND list, SettingsDialogContext& context) noexcept
{
    return ReadSelection(list, context.available.Get() + context.availableCount, context.chosenCount);
}

// The selection of the available languages, valid until a language is chosen.
Selection ReadAvailableSelection(HWND list, SettingsDialogContext& context) noexcept
{
    return ReadSelection(list, context.chosen.Get() + context.chosenCount, context.availableCount);
}

void AddName(HWND list, const SettingsDialogContext& context, DWORD row) noexcept
{
    ::SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(context.NameOf(row)));
}

void FillList(HWND list, const SettingsDialogContext& context, const DWORD* rows, DWORD count) noexcept
{
    ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
    for (DWORD i = 0; i < count; ++i) AddName(list, context, rows[i]);
}

void SetIcons(HWND dialog, const SettingsDialogContext& context) noexcept
{
    SetDialogIcons(dialog, context.smallIcon, context.bigIcon, g_hostIcon);
}

void ReportError(HWND owner, UINT message) noexcept
{
    ARVMUI_ErrorDialogBoxW(owner, 0, ::GetLastError(), MAKEINTRESOURCEW(message), nullptr, 0);
}

// The stored list ----------------------------------------------------------------------------------

// Adds a row for a stored locale that is not installed, so that saving keeps it.
bool AddRow(SettingsDialogContext& context, const wchar_t* locale) noexcept
{
    const size_t needed = static_cast<size_t>(context.count) + 1;
    if (!context.rows.Resize(needed) || !context.chosen.Resize(needed) || !context.available.Resize(needed))
        return false;
    ShortLocaleEntry& row = context.rows.Get()[context.count];
    row = {};
    row.LocaleLength = static_cast<DWORD>(CopyCut(row.Locale, ARVMUI_TAG_CHARS, locale));
    CopyCut(row.EnglishName, ARVMUI_TAG_CHARS, locale);
    CopyCut(row.NativeName, ARVMUI_TAG_CHARS, locale);
    ++context.count;
    return true;
}

bool ChooseLocale(SettingsDialogContext& context, const wchar_t* locale) noexcept
{
    DWORD row = 0;
    while (row < context.count && !EqualsNoCase(context.rows.Get()[row].Locale, locale)) ++row;
    if (row == context.count && !AddRow(context, locale)) return false;
    if (!context.IsChosen(row)) context.Choose(row);
    return true;
}

bool ReadStoredList(SettingsDialogContext& context) noexcept
{
    wchar_t list[kStoredListChars];
    // Ignored: what cannot be read counts as an empty list.
    ReadUILocale(context.Store(), list, kStoredListChars);
    for (const wchar_t* item = SkipListSeparators(list); *item;)
    {
        const wchar_t* const end = FindListItemEnd(item);
        wchar_t locale[kStoredListChars];
        // Ignored: a part of the list always fits.
        CopyListItem(locale, locale + kStoredListChars, item, end);
        if (!ChooseLocale(context, locale)) return false;
        item = SkipListSeparators(end);
    }
    context.RebuildAvailable();
    return true;
}

// FALSE when memory is lacking.
bool FormatChosenList(const SettingsDialogContext& context, HeapBlock<wchar_t>& text) noexcept
{
    for (DWORD i = 0; i < context.chosenCount; ++i)
    {
        const wchar_t* const locale = context.rows.Get()[context.chosen.Get()[i]].Locale;
        if (AppendFormat(text.Slot(), -1, i == 0 ? L"%s" : L",%s", locale) < 0) return false;
    }
    return true;
}

INT_PTR Save(const SettingsDialogContext& context) noexcept
{
    if (context.chosenCount == 0)
    {
        // Ignored: removing always reports FALSE; the last-error code tells how it went.
        WriteUILocale(context.Store(), nullptr);
        if (::GetLastError() == ERROR_SUCCESS) return kDone;
        ReportError(context.window, ARVMUI_STRING_SETTING_NOT_REMOVED);
        return kFailed;
    }
    HeapBlock<wchar_t> text;
    if (!FormatChosenList(context, text)) return kFailed;
    if (WriteUILocale(context.Store(), text.Get())) return kDone;
    ReportError(context.window, ARVMUI_STRING_SETTING_NOT_WRITTEN);
    return kFailed;
}

// The dialog that adds languages -------------------------------------------------------------------

void UpdateAddButtons(HWND dialog) noexcept
{
    const LRESULT count = ::SendDlgItemMessageW(dialog, ARVMUI_CONTROL_AVAILABLE_LIST, LB_GETSELCOUNT, 0, 0);
    ::EnableWindow(::GetDlgItem(dialog, IDOK), count > 0);
}

// Appends the selected languages to the chosen ones. Those are written over the positions that were
// read, but never past the one that is read next.
void AddSelected(HWND dialog, SettingsDialogContext& context) noexcept
{
    const HWND chosenList = ::GetDlgItem(context.window, ARVMUI_CONTROL_CHOSEN_LIST);
    const Selection selection = ReadAvailableSelection(::GetDlgItem(dialog, ARVMUI_CONTROL_AVAILABLE_LIST), context);
    for (DWORD i = 0; i < selection.count; ++i)
    {
        const DWORD row = context.available.Get()[selection.items[i]];
        context.Choose(row);
        AddName(chosenList, context, row);
    }
    context.RebuildAvailable();
}

INT_PTR CALLBACK AddDialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* const context = reinterpret_cast<SettingsDialogContext*>(::GetWindowLongPtrW(dialog, GWLP_USERDATA));
    switch (message)
    {
        case WM_INITDIALOG:
        {
            ::SetWindowLongPtrW(dialog, GWLP_USERDATA, lParam);
            const auto& shown = *reinterpret_cast<const SettingsDialogContext*>(lParam);
            FillList(::GetDlgItem(dialog, ARVMUI_CONTROL_AVAILABLE_LIST), shown, shown.available.Get(),
                shown.availableCount);
            UpdateAddButtons(dialog);
            SetIcons(dialog, shown);
            return TRUE;
        }
        case WM_COMMAND:
            if (!context) return FALSE;
            switch (LOWORD(wParam))
            {
                case IDOK:
                    AddSelected(dialog, *context);
                    ::EndDialog(dialog, kDone);
                    return TRUE;
                case IDCANCEL: ::EndDialog(dialog, kFailed); return TRUE;
                case ARVMUI_CONTROL_AVAILABLE_LIST:
                    if (HIWORD(wParam) != LBN_SELCHANGE) return FALSE;
                    UpdateAddButtons(dialog);
                    return TRUE;
                default: return FALSE;
            }
        case WM_CLOSE: ::EndDialog(dialog, kFailed); return TRUE;
        default: return FALSE;
    }
}

// The main dialog ----------------------------------------------------------------------------------

void UpdateButtons(SettingsDialogContext& context) noexcept
{
    const HWND list = ::GetDlgItem(context.window, ARVMUI_CONTROL_CHOSEN_LIST);
    const Selection selection = ReadChosenSelection(list, context);
    const bool isSingle = selection.count == 1;
    const auto enable = [&context](int control, bool isEnabled)
    { ::EnableWindow(::GetDlgItem(context.window, control), isEnabled); };
    enable(ARVMUI_CONTROL_UP, isSingle && selection.items[0] > 0);
    enable(ARVMUI_CONTROL_DOWN, isSingle && selection.items[0] + 1 < context.chosenCount);
    enable(ARVMUI_CONTROL_REMOVE, selection.count > 0);
    enable(ARVMUI_CONTROL_ADD, context.availableCount > 0);
    // A control that is disabled while it has the focus takes the keyboard with it.
    if (!::GetFocus()) ::SendMessageW(context.window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(list), TRUE);
}

void SetTitle(const SettingsDialogContext& context) noexcept
{
    HeapBlock<wchar_t> title;
    const UINT id =
        context.machineScope == 1 ? ARVMUI_STRING_SETTINGS_TITLE_MACHINE : ARVMUI_STRING_SETTINGS_TITLE_USER;
    // Ignored: without a title of its own the dialog keeps that of its template.
    if (AppendResourceString(Descriptor().resourceLibrary, id, title.Slot(), -1) > 0)
        ::SetWindowTextW(context.window, title.Get());
}

bool Initialise(SettingsDialogContext& context) noexcept
{
    SetTitle(context);
    if (!ReadStoredList(context)) return false;
    FillList(
        ::GetDlgItem(context.window, ARVMUI_CONTROL_CHOSEN_LIST), context, context.chosen.Get(), context.chosenCount);
    UpdateButtons(context);
    if (!context.smallIcon || !context.bigIcon) g_hostIcon = FindHostIcon(nullptr);
    SetIcons(context.window, context);
    return true;
}

// Moves the one selected language to the place `from + step`.
void MoveSelected(SettingsDialogContext& context, int step) noexcept
{
    const HWND list = ::GetDlgItem(context.window, ARVMUI_CONTROL_CHOSEN_LIST);
    const Selection selection = ReadChosenSelection(list, context);
    if (selection.count != 1) return;
    const DWORD from = selection.items[0];
    const DWORD to = from + static_cast<DWORD>(step);
    if (to >= context.chosenCount) return;  // also for a step up from the first place

    DWORD* const chosen = context.chosen.Get();
    const DWORD row = chosen[from];
    chosen[from] = chosen[to];
    chosen[to] = row;
    ::SendMessageW(list, LB_DELETESTRING, from, 0);
    ::SendMessageW(list, LB_INSERTSTRING, to, reinterpret_cast<LPARAM>(context.NameOf(row)));
    ::SendMessageW(list, LB_SETSEL, TRUE, static_cast<LPARAM>(to));
    UpdateButtons(context);
}

void RemoveSelected(SettingsDialogContext& context) noexcept
{
    const HWND list = ::GetDlgItem(context.window, ARVMUI_CONTROL_CHOSEN_LIST);
    const Selection selection = ReadChosenSelection(list, context);
    for (DWORD i = selection.count; i > 0; --i)  // from the end: the positions before stay right
    {
        const DWORD position = selection.items[i - 1];
        DWORD* const removed = context.chosen.Get() + position;
        std::memmove(removed, removed + 1, (context.chosenCount - position - 1) * sizeof(*removed));
        --context.chosenCount;
        ::SendMessageW(list, LB_DELETESTRING, position, 0);
    }
    context.RebuildAvailable();
    UpdateButtons(context);
}

void ShowAddDialog(SettingsDialogContext& context) noexcept
{
    const INT_PTR result =
        ::DialogBoxParamW(Descriptor().resourceLibrary, MAKEINTRESOURCEW(ARVMUI_DIALOG_ADD_LANGUAGES), context.window,
            AddDialogProcedure, reinterpret_cast<LPARAM>(&context));
    if (result == -1)
    {
        ReportError(context.window, ARVMUI_STRING_DIALOG_NOT_SHOWN);
        ::EndDialog(context.window, kFailed);
        return;
    }
    UpdateButtons(context);
}

bool HandleCommand(SettingsDialogContext& context, WORD control, WORD notification) noexcept
{
    switch (control)
    {
        case IDOK: ::EndDialog(context.window, Save(context)); return true;
        case IDCANCEL: ::EndDialog(context.window, kDone); return true;
        case ARVMUI_CONTROL_APPLY:
            if (Save(context) == kFailed) ::EndDialog(context.window, kFailed);
            return true;
        case ARVMUI_CONTROL_UP: MoveSelected(context, -1); return true;
        case ARVMUI_CONTROL_DOWN: MoveSelected(context, 1); return true;
        case ARVMUI_CONTROL_REMOVE: RemoveSelected(context); return true;
        case ARVMUI_CONTROL_ADD: ShowAddDialog(context); return true;
        case ARVMUI_CONTROL_CHOSEN_LIST:
            if (notification != LBN_SELCHANGE) return false;
            UpdateButtons(context);
            return true;
        default: return false;
    }
}

INT_PTR CALLBACK DialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* const context = reinterpret_cast<SettingsDialogContext*>(::GetWindowLongPtrW(dialog, GWLP_USERDATA));
    switch (message)
    {
        case WM_INITDIALOG:
        {
            ::SetWindowLongPtrW(dialog, GWLP_USERDATA, lParam);
            auto& shown = *reinterpret_cast<SettingsDialogContext*>(lParam);
            shown.window = dialog;
            if (!Initialise(shown)) ::EndDialog(dialog, kFailed);
            return TRUE;
        }
        case WM_COMMAND:
            // Before the dialog is initialised there is no context to answer from.
            return context && HandleCommand(*context, LOWORD(wParam), HIWORD(wParam));
        case WM_CLOSE: ::EndDialog(dialog, kDone); return TRUE;
        default: return FALSE;
    }
}

bool ReadInstalledRows(SettingsDialogContext& context) noexcept
{
    void* rows = nullptr;
    // Ignored: what fails stores nothing, and the count stays 0.
    EnumInstalledLocales(kShortEntryBytes, &rows, &context.count);
    *context.rows.Slot() = static_cast<ShortLocaleEntry*>(rows);
    return context.count != 0;
}

}  // namespace
}  // namespace arvmui

BOOL ARVMUI_CALL ARVMUI_SettingDialogBoxW(HWND owner, const HICON* icons, void* /*reserved*/, DWORD scope)
{
    using namespace arvmui;
    SettingsDialogContext context = {};
    context.machineScope = scope;
    context.smallIcon = icons ? icons[0] : nullptr;
    context.bigIcon = icons ? icons[1] : nullptr;
    if (!Descriptor().resourceLibrary || !ReadInstalledRows(context))
    {
        ::SetLastError(ERROR_INVALID_DATA);
        return FALSE;
    }
    if (!context.chosen.Resize(context.count) || !context.available.Resize(context.count))
    {
        ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return FALSE;
    }

    const INT_PTR result = ::DialogBoxParamW(Descriptor().resourceLibrary, MAKEINTRESOURCEW(ARVMUI_DIALOG_SETTINGS),
        owner, DialogProcedure, reinterpret_cast<LPARAM>(&context));
    if (result == -1) ReportError(owner, ARVMUI_STRING_DIALOG_NOT_SHOWN);
    return result > 0;
}
