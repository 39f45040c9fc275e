#include "target_dialog.h"

#include "phrasebook_ids.h"

namespace
{

struct Choice
{
    const std::vector<Texts>& languages;
    std::size_t target;
};

// The list is sorted, so each item remembers which language it stands for.
void FillList(HWND list, const Choice& choice)
{
    for (std::size_t i = 0; i < choice.languages.size(); ++i)
    {
        const std::wstring name = choice.languages[i].Get(TEXT_ID_LANGUAGE_NAME);
        const LRESULT item = ::SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
        ::SendMessageW(list, LB_SETITEMDATA, static_cast<WPARAM>(item), static_cast<LPARAM>(i));
    }
    for (WPARAM item = 0; item < choice.languages.size(); ++item)
        if (static_cast<std::size_t>(::SendMessageW(list, LB_GETITEMDATA, item, 0)) == choice.target)
            ::SendMessageW(list, LB_SETCURSEL, item, 0);
}

INT_PTR CALLBACK DialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    const HWND list = ::GetDlgItem(dialog, CONTROL_ID_TARGETS);
    if (message == WM_INITDIALOG)
    {
        ::SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        FillList(list, *reinterpret_cast<const Choice*>(lParam));
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;

    const WORD control = LOWORD(wParam);
    const bool isDoubleClick = control == CONTROL_ID_TARGETS && HIWORD(wParam) == LBN_DBLCLK;
    if (control == IDOK || isDoubleClick)
    {
        auto& choice = *reinterpret_cast<Choice*>(::GetWindowLongPtrW(dialog, DWLP_USER));
        const LRESULT item = ::SendMessageW(list, LB_GETCURSEL, 0, 0);
        if (item != LB_ERR)
            choice.target =
                static_cast<std::size_t>(::SendMessageW(list, LB_GETITEMDATA, static_cast<WPARAM>(item), 0));
        ::EndDialog(dialog, IDOK);
        return TRUE;
    }
    if (control == IDCANCEL) ::EndDialog(dialog, IDCANCEL);
    return control == IDCANCEL;
}

}  // namespace

bool AskForTarget(HWND owner, const std::vector<Texts>& languages, std::size_t& target)
{
    Choice choice = {languages, target};
    const INT_PTR result = ::DialogBoxParamW(languages.front().Library(), MAKEINTRESOURCEW(DIALOG_ID_TARGET), owner,
        DialogProcedure, reinterpret_cast<LPARAM>(&choice));
    if (result == IDOK) target = choice.target;
    return result == IDOK;
}
