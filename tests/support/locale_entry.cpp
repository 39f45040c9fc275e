#include "support/locale_entry.h"

namespace arvmui_test
{

LocaleEntry MakeEntry(LANGID language, const std::wstring& tag)
{
    LocaleEntry entry = {};
    entry.LangID = language;
    SetText(entry.Locale, tag);
    entry.LocaleLength = static_cast<DWORD>(tag.size());
    SetText(entry.EnglishName, L"English name " + tag);
    SetText(entry.NativeName, L"Native name " + tag);
    SetText(entry.LanguageSelectionTitle, L"Title " + tag);
    SetText(entry.LanguageSelectionDesc, L"Prompt " + tag);
    SetText(entry.OK, L"OK " + tag);
    SetText(entry.Cancel, L"Cancel " + tag);
    return entry;
}

}  // namespace arvmui_test
