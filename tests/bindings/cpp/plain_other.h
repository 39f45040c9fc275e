// What the other source of the program sees of the layer.
#pragma once

#include "arvmui.hpp"

using FormatFunction = arvmui::Result<std::wstring> (*)(std::wstring_view, arvmui::Inserts);

// Goes through most of the layer: a list, a callable, a settings file, a library and a message.
inline std::wstring FormattedHere()
{
    int candidates = 0;
    arvmui::EnumLocales(L"de",
        [&](std::optional<std::wstring_view> tag)
        {
            if (tag && tag->starts_with(L'd')) candidates += 2;
        });
    const auto library = arvmui::ResourceLibrary::Load({.fileName = L"no such file.dll", .locales = L"de"});
    const auto text = arvmui::ReadTextFile({.fileName = L"no such file.txt"});
    if (library || text || !arvmui::SettingsFile(L"no such file.ini").Sections().empty()) return L"";
    return arvmui::FormatText(L"%1: %2!d!", {L"de", candidates}).value_or(L"");
}

std::wstring FormattedThere();
FormatFunction AddressThere();
