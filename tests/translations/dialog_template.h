// A dialog template of a resource library, taken apart.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace arvmui_test
{

// In dialog units.
struct DialogRect
{
    int x;
    int y;
    int width;
    int height;
    bool operator==(const DialogRect&) const = default;
};

struct DialogControl
{
    std::wstring className;  // the system's name also where the template has its number
    DWORD id;
    DWORD style;
    DWORD extendedStyle;
    DialogRect place;
    std::wstring text;
};

struct DialogTemplate
{
    DWORD style = 0;
    DWORD extendedStyle = 0;
    DialogRect place = {};
    std::wstring title;
    WORD fontPoints = 0;
    std::wstring fontName;
    std::vector<DialogControl> controls;
};

// Throws when the library has no such dialog, or one of another kind than the extended templates with
// a font of their own.
DialogTemplate ReadDialogTemplate(HMODULE library, WORD dialog);

}  // namespace arvmui_test
