#include "locale/library_identity.h"

#include "locale/locale_list.h"
#include "resources/resource_ids.h"

namespace arvmui
{

bool LoadLanguageId(HMODULE library, LANGID& language) noexcept
{
    constexpr int kNumberChars = 32;  // terminator included
    wchar_t number[kNumberChars];
    if (::LoadStringW(library, ARVMUI_STRING_LANGUAGE_ID, number, kNumberChars) <= 0) return false;
    language = ParseNumericItem(number);
    return true;
}

}  // namespace arvmui
