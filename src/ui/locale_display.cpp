#include "ui/locale_display.h"

#include "foundation/text.h"
#include "resources/process_state.h"

namespace arvmui
{

bool IsReadable(LANGID language, const wchar_t* text) noexcept
{
    return IsLatinText(text, -1) || HasKeyboardLanguage(Descriptor(), language, nullptr);
}

const wchar_t* DisplayName(LANGID language, const wchar_t* nativeName, const wchar_t* englishName) noexcept
{
    return IsReadable(language, nativeName) ? nativeName : englishName;
}

}  // namespace arvmui
