// Catches the message boxes that a module would show and keeps their texts.
#pragma once

#include "support/module_patch.h"

#include <string>
#include <vector>

namespace arvmui_test
{

// One at a time. The boxes count as answered with OK.
class BoxRecorder
{
public:
    explicit BoxRecorder(HMODULE importer) : patch_(importer, "MessageBoxW", &Record) { texts_.clear(); }

    const std::vector<std::wstring>& Texts() const { return texts_; }

private:
    static int WINAPI Record(HWND, const wchar_t* text, const wchar_t*, UINT)
    {
        texts_.emplace_back(text ? text : L"");
        return IDOK;
    }

    static inline std::vector<std::wstring> texts_;

    ImportPatch patch_;
};

}  // namespace arvmui_test
