#include "locale_tags.h"

#include "library_api.h"

namespace
{

DWORD ARVMUI_CALLBACK TakeFirst(const WCHAR* locale, void* context)
{
    if (locale) *static_cast<std::wstring*>(context) = locale;
    return TRUE;
}

}  // namespace

std::wstring TagOfLanguage(LANGID language)
{
    std::wstring tag;
    Library().ARVMUI_EnumLocalesW(MAKEINTRESOURCEW(language), TakeFirst, &tag);
    return tag;
}
