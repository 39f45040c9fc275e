// The main window: phrases in the user's language on the left, the translation of one on the right.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

#include "texts.h"

class MainWindow
{
public:
    // The first of the languages is the user's; there is at least that one.
    explicit MainWindow(std::vector<Texts> languages);
    ~MainWindow();
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    bool Create();
    void Show(int showCommand);

    // Handles the thread's messages until the window is closed.
    void Run();

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    void Initialise();
    bool HandleCommand(WORD command, WORD notification);
    void AskQuestion();
    void ShowAbout();
    void ChooseTarget();
    void ChoosePreferredLanguages();
    void ShowTranslation();
    void ShowStatus(const std::wstring& text);

    std::wstring Phrase(const Texts& language, std::size_t index) const;
    const Texts& Own() const { return languages_.front(); }
    const Texts& Target() const { return languages_[target_]; }

    std::vector<Texts> languages_;
    std::size_t target_;  // language translated into
    std::size_t phraseCount_ = 0;
    std::size_t questionsAsked_ = 0;
    HWND window_ = nullptr;
    HFONT largeFont_ = nullptr;
};
