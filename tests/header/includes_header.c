/* The public header on its own, in the dialect that the build asks for. */
#include "arvmui.h"

static DWORD ARVMUI_CALLBACK CountLocale(const WCHAR* locale, void* context)
{
    if (locale != NULL) ++*(DWORD*)context;
    return 0;
}

/* Records, a callback and an identifier in place of a list, as a program would use them. */
DWORD CountCandidates(LocaleEntry* first);
DWORD CountCandidates(LocaleEntry* first)
{
    DWORD count = 0;
    LibraryDescriptor* descriptor = ARVMUI_GetDescriptor();
    LocaleRecord record;
    record.size = (DWORD)sizeof(record);
    record.locales[0] = 0;
    first->LangID = ARVMUI_GetLangID(descriptor->module);
    ARVMUI_EnumLocalesW(record.locales, CountLocale, &count);
    ARVMUI_EnumLocalesW(MAKEINTRESOURCEW(0x0407), CountLocale, &count);
    return count;
}
