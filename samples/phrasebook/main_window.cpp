#include "main_window.h"

#include "arvmui.h"
#include "phrasebook_ids.h"
#include "target_dialog.h"

namespace
{

// The class that the window's template names. It belongs to all modules of the process, because it is
// the resource library that Windows takes for the module that creates the window.
bool RegisterWindowClass()
{
    const HINSTANCE program = ::GetModuleHandleW(nullptr);
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_GLOBALCLASS;
    windowClass.lpfnWndProc = ::DefDlgProcW;
    windowClass.cbWndExtra = DLGWINDOWEXTRA;
    windowClass.hInstance = program;
    windowClass.hIcon = ::LoadIconW(program, MAKEINTRESOURCEW(ICON_ID_PROGRAM));
    windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = TEXT(MAIN_WINDOW_CLASS);
    return ::RegisterClassExW(&windowClass) != 0;
}

// The control's own font, half as large again.
HFONT CreateLargeFont(HWND control)
{
    LOGFONTW font = {};
    ::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0)), sizeof font, &font);
    font.lfHeight = ::MulDiv(font.lfHeight, 3, 2);
    return ::CreateFontIndirectW(&font);
}

}  // namespace

MainWindow::MainWindow(std::vector<Texts> languages)
    : languages_(std::move(languages)), target_(languages_.size() > 1 ? 1 : 0)
{
}

MainWindow::~MainWindow()
{
    if (window_ != nullptr) ::DestroyWindow(window_);
    if (largeFont_ != nullptr) ::DeleteObject(largeFont_);
}

bool MainWindow::Create()
{
    return RegisterWindowClass()
           && ::CreateDialogParamW(
                  Own().Library(), MAKEINTRESOURCEW(DIALOG_ID_MAIN), nullptr, Procedure, reinterpret_cast<LPARAM>(this))
                  != nullptr;
}

void MainWindow::Show(int showCommand)
{
    ::ShowWindow(window_, showCommand);
}

void MainWindow::Run()
{
    // Loaded here and never destroyed: the system does that with the resource library.
    const HACCEL accelerators = ::LoadAcceleratorsW(Own().Library(), MAKEINTRESOURCEW(ACCELERATORS_ID_MAIN));
    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        if (::TranslateAcceleratorW(window_, accelerators, &message)) continue;
        if (::IsDialogMessageW(window_, &message)) continue;
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
}

INT_PTR CALLBACK MainWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* const self = reinterpret_cast<MainWindow*>(::GetWindowLongPtrW(window, DWLP_USER));
    switch (message)
    {
        case WM_INITDIALOG:
            ::SetWindowLongPtrW(window, DWLP_USER, lParam);
            reinterpret_cast<MainWindow*>(lParam)->window_ = window;
            reinterpret_cast<MainWindow*>(lParam)->Initialise();
            return TRUE;
        case WM_COMMAND: return self != nullptr && self->HandleCommand(LOWORD(wParam), HIWORD(wParam));
        case WM_CLOSE: ::DestroyWindow(window); return TRUE;
        case WM_DESTROY:
            if (self != nullptr) self->window_ = nullptr;
            ::PostQuitMessage(0);
            return TRUE;
        default: return FALSE;
    }
}

void MainWindow::Initialise()
{
    const HWND list = ::GetDlgItem(window_, CONTROL_ID_PHRASES);
    for (;; ++phraseCount_)
    {
        const std::wstring phrase = Phrase(Own(), phraseCount_);
        if (phrase.empty()) break;
        ::SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(phrase.c_str()));
    }
    ::SendMessageW(list, LB_SETCURSEL, 0, 0);

    const HWND translation = ::GetDlgItem(window_, CONTROL_ID_TRANSLATION);
    largeFont_ = CreateLargeFont(translation);
    ::SendMessageW(translation, WM_SETFONT, reinterpret_cast<WPARAM>(largeFont_), FALSE);
    ShowTranslation();
    ShowStatus(Own().Fill(TEXT_ID_STATUS_LANGUAGE, Own().LocaleTag()));
}

bool MainWindow::HandleCommand(WORD command, WORD notification)
{
    switch (command)
    {
        case COMMAND_ID_QUESTION: AskQuestion(); return true;
        case COMMAND_ID_EXIT: ::DestroyWindow(window_); return true;
        case COMMAND_ID_TARGET: ChooseTarget(); return true;
        case COMMAND_ID_PREFERRED_LANGUAGES: ChoosePreferredLanguages(); return true;
        case COMMAND_ID_ABOUT: ShowAbout(); return true;
        case CONTROL_ID_PHRASES:
            if (notification == LBN_SELCHANGE) ShowTranslation();
            return true;
        default: return false;
    }
}

// Every other question is a trap: it offers the meaning of the next phrase.
void MainWindow::AskQuestion()
{
    if (phraseCount_ == 0) return;
    const std::size_t asked = questionsAsked_ % phraseCount_;
    const bool isTrap = questionsAsked_ % 2 != 0;
    ++questionsAsked_;

    const std::wstring phrase = Phrase(Target(), asked);
    const std::wstring meaning = Phrase(Own(), asked);
    const std::wstring offered = isTrap ? Phrase(Own(), (asked + 1) % phraseCount_) : meaning;
    // The buttons are in the language of the question, whatever language Windows speaks.
    const int answer = ARVMUI_MessageBoxW(window_, Own().Fill(TEXT_ID_QUESTION, phrase, offered).c_str(),
        Own().Get(TEXT_ID_TITLE).c_str(), MB_YESNO | MB_ICONQUESTION);
    const bool isRight = (answer == IDYES) != isTrap;
    ShowStatus(Own().Fill(isRight ? TEXT_ID_ANSWER_RIGHT : TEXT_ID_ANSWER_WRONG, phrase, meaning));
}

void MainWindow::ShowAbout()
{
    const std::wstring text = Own().Fill(TEXT_ID_ABOUT, Own().Get(TEXT_ID_LANGUAGE_NAME), Own().LocaleTag());
    ARVMUI_MessageBoxW(window_, text.c_str(), Own().Get(TEXT_ID_TITLE).c_str(), MB_OK | MB_ICONINFORMATION);
}

void MainWindow::ChooseTarget()
{
    if (AskForTarget(window_, languages_, target_)) ShowTranslation();
}

void MainWindow::ChoosePreferredLanguages()
{
    // The dialog stores the choice itself and tells the user of failures. A process keeps its language
    // as long as it lives: the next one will speak the new language.
    if (ARVMUI_SettingDialogBoxW(window_, nullptr, nullptr, 0)) ShowStatus(Own().Get(TEXT_ID_STATUS_NEXT_START));
}

void MainWindow::ShowTranslation()
{
    const LRESULT selected = ::SendDlgItemMessageW(window_, CONTROL_ID_PHRASES, LB_GETCURSEL, 0, 0);
    const std::wstring translation = Phrase(Target(), static_cast<std::size_t>(selected));
    ::SetDlgItemTextW(window_, CONTROL_ID_TRANSLATION, translation.c_str());
    const std::wstring label = Own().Fill(TEXT_ID_TRANSLATION_LABEL, Target().Get(TEXT_ID_LANGUAGE_NAME));
    ::SetDlgItemTextW(window_, CONTROL_ID_TRANSLATION_LABEL, label.c_str());
}

void MainWindow::ShowStatus(const std::wstring& text)
{
    ::SetDlgItemTextW(window_, CONTROL_ID_STATUS, text.c_str());
}

std::wstring MainWindow::Phrase(const Texts& language, std::size_t index) const
{
    return language.Get(TEXT_ID_FIRST_PHRASE + static_cast<UINT>(index));
}
