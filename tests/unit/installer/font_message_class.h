// A window class of any name, the system's included, whose windows write down the font messages they
// get.
#pragma once

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

namespace arvmui_test
{

struct FontMessage
{
    HWND window;
    UINT message;
    WPARAM wparam;
    LPARAM lparam;
    bool operator==(const FontMessage&) const = default;
};

// Exists in this process only; its windows must be gone before it goes.
class FontMessageClass
{
public:
    // `font` is what its windows say is theirs.
    explicit FontMessageClass(const wchar_t* name, HFONT font = nullptr) : name_(name), font_(font)
    {
        classes_.push_back(this);
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = &Procedure;
        windowClass.hInstance = ::GetModuleHandleW(nullptr);
        windowClass.lpszClassName = name;
        ::RegisterClassW(&windowClass);
    }
    ~FontMessageClass()
    {
        ::UnregisterClassW(name_.c_str(), ::GetModuleHandleW(nullptr));
        classes_.erase(std::find(classes_.begin(), classes_.end(), this));
    }
    FontMessageClass(const FontMessageClass&) = delete;
    FontMessageClass& operator=(const FontMessageClass&) = delete;

    const std::vector<FontMessage>& Messages() const { return messages_; }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
    {
        if (message != WM_SETFONT && message != WM_GETFONT) return ::DefWindowProcW(window, message, wparam, lparam);
        wchar_t name[256] = {};
        ::GetClassNameW(window, name, 256);
        for (FontMessageClass* const one : classes_)
        {
            if (one->name_ != name) continue;
            one->messages_.push_back({window, message, wparam, lparam});
            return reinterpret_cast<LRESULT>(one->font_);
        }
        return 0;
    }

    static inline std::vector<FontMessageClass*> classes_;

    std::wstring name_;
    HFONT font_;
    std::vector<FontMessage> messages_;
};

}  // namespace arvmui_test
