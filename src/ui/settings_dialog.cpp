#include "foundation/growable_text.h"
#include "foundation/heap.h"
#include "locale/registry_store.h"
#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "ui/error_dialog.h"
#include "ui/host_icon.h"
#include "ui/locale_display.h"
#include "ui/preferred_locales.h"

// The dialogs in which a user or an administrator orders the preferred languages. Their templates
// and titles come from the resource library, so they are translated like everything else.

namespace arvmui
{
namespace
{

constexpr INT_PTR kFailed = 0;  // results of both dialogs
constexpr INT_PTR kDone = 1;

struct SettingsDialogContext
{
    DWORD machineScope;
    HICON smallIcon;
    HICON bigIcon;
    HWND window;
    PreferredLocales locales;

    HKEY Store() const noexcept { return machineScope == 1 ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

    const wchar_t* NameOf(DWORD row) const noexcept
    {
        const ShortLocaleEntry& entry = locales.rows.Get()[row];
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
Selection ReadChosenSelection(HWND list, PreferredLocales& locales) noexcept
{
    return ReadSelection(list, locales.available.Get() + locales.availableCount, locales.chosenCount);
}

// The selection of the available languages, valid until a language is chosen.
Selection ReadAvailableSelection(HWND list, PreferredLocales& locales) noexcept
{
    return ReadSelection(list, locales.chosen.Get() + locales.chosenCount, locales.availableCount);
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

INT_PTR Save(const SettingsDialogContext& context) noexcept
{
    if (context.locales.chosenCount == 0)
    {
        // Ignored: removing always reports FALSE; the last-error code tells how it went.
        WriteUILocale(context.Store(), nullptr);
        if (::GetLastError() == ERROR_SUCCESS) return kDone;
        ReportError(context.window, ARVMUI_STRING_SETTING_NOT_REMOVED);
        return kFailed;
    }
    HeapBlock<wchar_t> text;
    if (!context.locales.FormatChosen(text)) return kFailed;
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
    PreferredLocales& locales = context.locales;
    const Selection selection = ReadAvailableSelection(::GetDlgItem(dialog, ARVMUI_CONTROL_AVAILABLE_LIST), locales);
    for (DWORD i = 0; i < selection.count; ++i)
    {
        const DWORD row = locales.available.Get()[selection.items[i]];
        locales.Choose(row);
        AddName(chosenList, context, row);
    }
    locales.RebuildAvailable();
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
            FillList(::GetDlgItem(dialog, ARVMUI_CONTROL_AVAILABLE_LIST), shown, shown.locales.available.Get(),
                shown.locales.availableCount);
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
    const Selection selection = ReadChosenSelection(list, context.locales);
    const bool isSingle = selection.count == 1;
    const auto enable = [&context](int control, bool isEnabled)
    { ::EnableWindow(::GetDlgItem(context.window, control), isEnabled); };
    enable(ARVMUI_CONTROL_UP, isSingle && selection.items[0] > 0);
    enable(ARVMUI_CONTROL_DOWN, isSingle && selection.items[0] + 1 < context.locales.chosenCount);
    enable(ARVMUI_CONTROL_REMOVE, selection.count > 0);
    enable(ARVMUI_CONTROL_ADD, context.locales.availableCount > 0);
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
    if (!context.locales.ChooseStored(context.Store())) return false;
    FillList(::GetDlgItem(context.window, ARVMUI_CONTROL_CHOSEN_LIST), context, context.locales.chosen.Get(),
        context.locales.chosenCount);
    UpdateButtons(context);
    if (!context.smallIcon || !context.bigIcon) g_hostIcon = FindHostIcon(nullptr);
    SetIcons(context.window, context);
    return true;
}

// Moves the one selected language to the place `from + step`.
void MoveSelected(SettingsDialogContext& context, int step) noexcept
{
    const HWND list = ::GetDlgItem(context.window, ARVMUI_CONTROL_CHOSEN_LIST);
    const Selection selection = ReadChosenSelection(list, context.locales);
    if (selection.count != 1) return;
    const DWORD from = selection.items[0];
    const DWORD to = from + static_cast<DWORD>(step);
    if (to >= context.locales.chosenCount) return;  // also for a step up from the first place

    const DWORD row = context.locales.chosen.Get()[from];
    context.locales.Swap(from, to);
    ::SendMessageW(list, LB_DELETESTRING, from, 0);
    ::SendMessageW(list, LB_INSERTSTRING, to, reinterpret_cast<LPARAM>(context.NameOf(row)));
    ::SendMessageW(list, LB_SETSEL, TRUE, static_cast<LPARAM>(to));
    UpdateButtons(context);
}

void RemoveSelected(SettingsDialogContext& context) noexcept
{
    const HWND list = ::GetDlgItem(context.window, ARVMUI_CONTROL_CHOSEN_LIST);
    const Selection selection = ReadChosenSelection(list, context.locales);
    for (DWORD i = selection.count; i > 0; --i)  // from the end: the positions before stay right
    {
        const DWORD position = selection.items[i - 1];
        context.locales.Remove(position);
        ::SendMessageW(list, LB_DELETESTRING, position, 0);
    }
    context.locales.RebuildAvailable();
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

}  // namespace
}  // namespace arvmui

BOOL ARVMUI_CALL ARVMUI_SettingDialogBoxW(HWND owner, const HICON* icons, void* /*reserved*/, DWORD scope)
{
    using namespace arvmui;
    SettingsDialogContext context = {};
    context.machineScope = scope;
    context.smallIcon = icons ? icons[0] : nullptr;
    context.bigIcon = icons ? icons[1] : nullptr;
    if (!Descriptor().resourceLibrary || !context.locales.ReadInstalled())
    {
        ::SetLastError(ERROR_INVALID_DATA);
        return FALSE;
    }
    if (!context.locales.Reserve())
    {
        ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return FALSE;
    }

    const INT_PTR result = ::DialogBoxParamW(Descriptor().resourceLibrary, MAKEINTRESOURCEW(ARVMUI_DIALOG_SETTINGS),
        owner, DialogProcedure, reinterpret_cast<LPARAM>(&context));
    if (result == -1) ReportError(owner, ARVMUI_STRING_DIALOG_NOT_SHOWN);
    return result > 0;
}
