// Languages that a test makes up, as the language dialog is offered them.
#pragma once

#include "arvmui.h"

#include <gtest/gtest.h>

#include <string>

namespace arvmui_test
{

// An entry whose texts, all of them Latin, end in its tag: "Title de-DE".
LocaleEntry MakeEntry(LANGID language, const std::wstring& tag);

// Writes a text into a field of an entry.
template <size_t kChars>
void SetText(wchar_t (&field)[kChars], const std::wstring& text)
{
    ASSERT_LT(text.size(), kChars);
    text.copy(field, text.size());
    field[text.size()] = L'\0';
}

}  // namespace arvmui_test
