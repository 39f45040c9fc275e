#include "library_api.h"
#include "locale_tags.h"
#include "text_conversion.h"
#include "text_rooms.h"
#include "translation_checks.h"

#include <algorithm>

namespace
{

void CheckRoom(const Translation& translation, Findings& findings)
{
    for (const auto& [number, text] : translation.strings)
    {
        const std::size_t room = RoomOfString(translation, number);
        if (room != 0 && text.size() > room)
            findings.Add(translation.path, number, "too-long",
                std::to_string(text.size()) + " characters, but there is room for " + std::to_string(room));
    }
}

bool StartsWithTag(const std::wstring& tag, const std::wstring& folder)
{
    return StartsWithName(tag, folder) && (tag.size() == folder.size() || tag[folder.size()] == L'-');
}

struct TagSearch
{
    const std::wstring& tag;
    bool found;
};

DWORD ARVMUI_CALLBACK LookForTag(const WCHAR* locale, void* context)
{
    TagSearch& search = *static_cast<TagSearch*>(context);
    search.found = search.found || (locale && IsSameName(locale, search.tag));
    return search.found;
}

// Whether the library takes users of the identifier to a folder of that name.
bool IsOffered(LANGID language, const std::wstring& folder)
{
    TagSearch search = {folder, false};
    Library().ARVMUI_EnumLocalesW(MAKEINTRESOURCEW(language), LookForTag, &search);
    return search.found;
}

// Whether an identifier stands for the language of a tag, for the system or for the library, whose
// names for a few languages differ. Identifiers that the system does not know are taken on trust.
bool IsLanguageOf(LANGID language, const std::wstring& tag)
{
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = L"";
    if (::LCIDToLocaleName(MAKELCID(language, SORT_DEFAULT), name, LOCALE_NAME_MAX_LENGTH, 0) == 0) return true;
    if (StartsWithTag(name, tag.substr(0, tag.find_first_of(L"-_")))) return true;
    return IsSameName(TagOfLanguage(language), tag);
}

void CheckIdentity(const Translation& translation, Findings& findings)
{
    const std::wstring tag = translation.Tag();
    const LANGID language = translation.Language();
    if (language == 0)
        findings.Add(translation.path, kLanguageString, "language-id", "string 2 holds no language identifier");
    if (tag.empty())
    {
        findings.Add(translation.path, kTagString, "locale-tag", "string 1, the locale's tag, is missing");
        return;
    }
    const bool isOwnLanguage = language != 0 && IsLanguageOf(language, tag);
    // A folder may have the library's name for the language.
    if (!StartsWithTag(tag, translation.folder) && !(isOwnLanguage && IsOffered(language, translation.folder)))
        findings.Add(translation.path, kTagString, "locale-tag",
            "the tag \"" + Utf8(tag) + "\" does not fit the folder \"" + Utf8(translation.folder) + '"');
    if (language != 0 && !isOwnLanguage)
        findings.Add(translation.path, kLanguageString, "language-id",
            "the identifier does not stand for the language of the tag \"" + Utf8(tag) + '"');
}

bool IsRepresentable(std::wstring text, UINT codePage)
{
    // Persian writes another yeh than the code page has; Windows stores the one for the other.
    constexpr UINT kArabic = 1256;
    if (codePage == kArabic) std::replace(text.begin(), text.end(), L'\u06CC', L'\u064A');
    BOOL lost = FALSE;
    ::WideCharToMultiByte(
        codePage, WC_NO_BEST_FIT_CHARS, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, &lost);
    return !lost;
}

void CheckCodePage(const Translation& translation, Findings& findings)
{
    const UINT codePage = Library().ARVMUI_GetACP(translation.Language(), 0);
    if (codePage == 0 || codePage == CP_UTF8) return;  // a language of Unicode only
    const auto check = [&](UINT number, const std::wstring& text)
    {
        if (!IsRepresentable(text, codePage))
            findings.Add(translation.path, number, "code-page",
                "the text does not exist in code page " + std::to_string(codePage) + ": " + Utf8(text));
    };
    for (const auto& [number, text] : translation.strings) check(number, text);
    for (const auto& [number, text] : translation.messages) check(number, text);
    for (const auto& [number, dialog] : translation.dialogs)
    {
        check(number, dialog.title);
        for (const DialogControl& control : dialog.controls) check(number, control.title.text);
    }
}

}  // namespace

void CheckTexts(const Translation& translation, Findings& findings)
{
    CheckRoom(translation, findings);
    CheckIdentity(translation, findings);
    CheckCodePage(translation, findings);
}

void CheckFallback(const Translation& translation, const std::map<std::wstring, LANGID>& folders, Findings& findings)
{
    const LANGID language = translation.Language();
    if (language == 0) return;
    // The last resort, English, is offered to everybody.
    const bool isServed = std::any_of(folders.begin(), folders.end(),
        [language](const auto& folder)
        { return PRIMARYLANGID(folder.second) == PRIMARYLANGID(language) && IsOffered(language, folder.first); });
    if (!isServed)
        findings.Add(translation.path, kLanguageString, "fallback",
            "users of this language are offered no folder; only its name in a locale list leads to \""
                + Utf8(translation.folder) + '"');

    // A folder for all of Chinese serves those badly who write the other script.
    if (!IsSameName(translation.folder, L"zh")) return;
    const bool isSimplified = language == 0x0804 || language == 0x1004 || language == 0x0004;
    const std::wstring other = isSimplified ? L"zh-TW" : L"zh-CN";
    if (!folders.contains(other))
        findings.Add(translation.path, kLanguageString, "fallback",
            "users of " + Utf8(other)
                + " get this folder, which writes the other script; it needs a folder of its own");
}
