#include "foundation/code_page.h"
#include "foundation/text_calls.h"
#include "locale/library_identity.h"
#include "locale/locale_search.h"
#include "resources/process_state.h"
#include "resources/resource_ids.h"

#include <climits>

// The exported questions about locales. They never fail: where a resource library does not answer,
// English (United States) stands for it.

namespace arvmui
{
namespace
{

constexpr int kCodePageChars = 16;  // text of a code page, terminator included

HMODULE GivenOrOwn(HMODULE library) noexcept
{
    return library ? library : Descriptor().resourceLibrary;
}

// Tag of a resource library, or the default cut to fit.
template <typename Char>
DWORD GetLocale(HMODULE library, Char* buffer, DWORD capacity) noexcept
{
    if (!buffer || capacity == 0) return 0;  // the system takes a capacity of 0 for another question
    library = GivenOrOwn(library);
    if (library)
    {
        const int limit = capacity < INT_MAX ? static_cast<int>(capacity) : INT_MAX;
        const int length = TextCalls<Char>::LoadText(library, ARVMUI_STRING_LOCALE_TAG, buffer, limit);
        if (length >= 1 && length < limit) return static_cast<DWORD>(length);
    }
    return static_cast<DWORD>(CopyCut(buffer, capacity, ARVMUI_TEXT(Char, "en-US")));
}

// Hands the candidates of a search to a narrow callback.
struct NarrowCallback
{
    ARVMUI_LocaleCallbackA callback;
    void* context;
};

DWORD ARVMUI_CALLBACK CallNarrow(const wchar_t* locale, void* context)
{
    if (!locale) return 0;
    const HeapBlock<char> narrow(DupAnsiFromWide(locale, -1));
    if (!narrow) return 0;
    const NarrowCallback& target = *static_cast<const NarrowCallback*>(context);
    return target.callback(narrow.Get(), target.context);
}

}  // namespace
}  // namespace arvmui

DWORD ARVMUI_CALL ARVMUI_EnumLocalesW(const WCHAR* locales, ARVMUI_LocaleCallbackW callback, void* context)
{
    if (!callback) return 0;
    return arvmui::SearchLocales(locales, callback, context, 0);
}

DWORD ARVMUI_CALL ARVMUI_EnumLocalesA(const char* locales, ARVMUI_LocaleCallbackA callback, void* context)
{
    if (!callback) return 0;
    const arvmui::WideArgument wideLocales(locales);
    if (wideLocales.Failed()) return 0;
    arvmui::NarrowCallback narrow = {callback, context};
    return ARVMUI_EnumLocalesW(wideLocales.Get(), arvmui::CallNarrow, &narrow);
}

LANGID ARVMUI_CALL ARVMUI_GetLangID(HMODULE library)
{
    library = arvmui::GivenOrOwn(library);
    LANGID language = arvmui::kDefaultLanguage;
    return library && arvmui::LoadLanguageId(library, language) ? language : arvmui::kDefaultLanguage;
}

DWORD ARVMUI_CALL ARVMUI_GetLocaleW(HMODULE library, WCHAR* buffer, DWORD capacity)
{
    return arvmui::GetLocale(library, buffer, capacity);
}

DWORD ARVMUI_CALL ARVMUI_GetLocaleA(HMODULE library, char* buffer, DWORD capacity)
{
    return arvmui::GetLocale(library, buffer, capacity);
}

DWORD ARVMUI_CALL ARVMUI_GetACP(LANGID language, WORD sortId)
{
    char codePage[arvmui::kCodePageChars];
    const LCID locale = static_cast<LCID>(sortId) << 16 | language;
    if (::GetLocaleInfoA(locale, LOCALE_IDEFAULTANSICODEPAGE, codePage, arvmui::kCodePageChars) <= 0) return 0;
    return arvmui::TextCalls<char>::ToNumber(codePage);
}
