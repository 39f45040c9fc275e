// The names of localized tables: the table's own name, "_" and the locale in its table form.
#pragma once

#include "arvmui.h"

namespace arvmui
{

// A locale as it stands in table names, where "-" is not allowed: "zh_CN" for "zh-CN".
struct LocaleTableSuffix
{
    explicit LocaleTableSuffix(const LocaleEntry& entry) noexcept;

    wchar_t text[ARVMUI_TAG_CHARS];
    DWORD length;
};

constexpr DWORD kMeasureSuffix = 0xFFFFFFFF;

// Whether a table's name consists of something, "_" and the suffix, without regard to case.
bool HasLocaleSuffix(const wchar_t* name, const wchar_t* suffix, DWORD suffixLength) noexcept;

// Cuts "_" and the suffix from a name that has the suffix.
void CutLocaleSuffix(wchar_t* name, DWORD suffixLength) noexcept;

}  // namespace arvmui
