// A dialog template, taken apart and put together again.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

// A class, title or menu: text, or the number of a resource or built-in class.
struct NameOrNumber
{
    bool isNumber = false;
    WORD number = 0;
    std::wstring text;

    bool operator==(const NameOrNumber&) const = default;
};

// In dialog units.
struct DialogBox
{
    short x = 0;
    short y = 0;
    short width = 0;
    short height = 0;
};

struct DialogControl
{
    DWORD helpId = 0;
    DWORD extendedStyle = 0;
    DWORD style = 0;
    DialogBox box;
    DWORD id = 0;
    NameOrNumber windowClass;
    NameOrNumber title;
    std::vector<BYTE> data;
};

struct DialogFont
{
    WORD size = 0;
    WORD weight = 0;
    BYTE italic = 0;
    BYTE charset = 0;
    std::wstring face;
};

struct DialogTemplate
{
    bool isExtended = false;  // DIALOGEX
    DWORD helpId = 0;
    DWORD extendedStyle = 0;
    DWORD style = 0;
    DialogBox box;
    NameOrNumber menu;
    NameOrNumber windowClass;
    std::wstring title;
    DialogFont font;
    std::vector<DialogControl> controls;
};

// Number of the built-in class "button" in templates.
constexpr WORD kButtonClass = 0x0080;
constexpr WORD kStaticClass = 0x0082;

// A ToolError for bytes that are no template.
DialogTemplate ParseDialogTemplate(const std::vector<BYTE>& bytes);
std::vector<BYTE> WriteDialogTemplate(const DialogTemplate& dialog);

bool IsButton(const DialogControl& control);
bool IsStaticText(const DialogControl& control);
