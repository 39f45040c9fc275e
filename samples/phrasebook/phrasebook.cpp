/*
 * A phrasebook in the language of its user: a program with a window, a menu, a dialog and message
 * boxes, none of which it contains itself.
 *
 *   phrasebook [/uilocale:<list>]
 *
 * Its whole interface lies in resource\<locale>\phraseUI.DLL beside the program, one file for each
 * language; one more folder is one more language, to speak and to translate into. The user's
 * preferred languages are chosen in ARVMUI's own dialog and count from the next start on.
 *
 * Exit code: 0, 1 when there was no window to show.
 */
#include <windows.h>

#include <commctrl.h>

#include <utility>

#include "arvmui.h"
#include "main_window.h"

namespace
{

// Nobody has seen a reason yet where ARVMUI, too, has no texts. No language is known here.
void ReportMissingTexts()
{
    if (ARVMUI_GetDescriptor()->resourceLibrary != nullptr) return;
    ::MessageBoxW(nullptr, L"No phraseUI.DLL was found in any language under the folder \"resource\".", L"phrasebook",
        MB_OK | MB_ICONERROR);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int showCommand)
{
    std::vector<Texts> languages = LoadLanguages();
    if (languages.empty())
    {
        ReportMissingTexts();
        return 1;
    }

    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_BAR_CLASSES | ICC_STANDARD_CLASSES};
    ::InitCommonControlsEx(&controls);
    // Once the common controls are loaded, and before the first of them is shown
    ARVMUI_InitCommonControlsLanguage();

    MainWindow window(std::move(languages));
    if (!window.Create()) return 1;
    window.Show(showCommand);
    window.Run();
    return 0;
}
