#include "texts.h"

#include <array>

#include "arvmui.h"

namespace
{

bool Contains(const std::vector<Texts>& languages, HMODULE library)
{
    for (const Texts& language : languages)
        if (language.Library() == library) return true;
    return false;
}

DWORD CALLBACK AddLanguage(const WCHAR* folder, void* context)
{
    auto& languages = *static_cast<std::vector<Texts>*>(context);
    HMODULE library = nullptr;
    if (!ARVMUI_LoadResourceLibraryW(nullptr, nullptr, folder, &library)) return 0;
    // A folder without texts of this program leads to those in English, and the user's own folder comes
    // again. Windows gives the same handle for the same file.
    Texts texts(library);
    if (!Contains(languages, library)) languages.push_back(std::move(texts));
    return 0;
}

}  // namespace

std::wstring Texts::LocaleTag() const
{
    std::array<wchar_t, ARVMUI_TAG_CHARS> tag = {};
    ARVMUI_GetLocaleW(library_, tag.data(), static_cast<DWORD>(tag.size()));
    return tag.data();
}

std::wstring Texts::Get(UINT id) const
{
    // A size of 0 asks for the text where it lies instead of a copy that might be cut.
    const wchar_t* text = nullptr;
    const int length = ::LoadStringW(library_, id, reinterpret_cast<LPWSTR>(&text), 0);
    return length > 0 ? std::wstring(text, static_cast<std::size_t>(length)) : std::wstring();
}

std::wstring Texts::Fill(UINT id, const std::wstring& first, const std::wstring& second) const
{
    const std::wstring format = Get(id);
    std::array<DWORD_PTR, 2> values = {
        reinterpret_cast<DWORD_PTR>(first.c_str()), reinterpret_cast<DWORD_PTR>(second.c_str())};
    wchar_t* text = nullptr;
    const DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY,
            format.c_str(), 0, 0, reinterpret_cast<LPWSTR>(&text), 0, reinterpret_cast<va_list*>(values.data()));
    const std::wstring filled(text != nullptr ? text : L"", length);
    ::LocalFree(text);
    return filled;
}

std::vector<Texts> LoadLanguages()
{
    std::vector<Texts> languages;
    // The three nulls: this program's texts (not a DLL's), under the usual file name, in the locales of
    // this process.
    HMODULE library = nullptr;
    if (!ARVMUI_LoadResourceLibraryW(nullptr, nullptr, nullptr, &library)) return languages;
    languages.emplace_back(library);

    // Other languages are a matter of luck: nobody need be told which are missing.
    BOOL popups = FALSE;
    ARVMUI_SetMessagePopup(FALSE, &popups);
    ARVMUI_EnumResourceFoldersW(nullptr, AddLanguage, &languages);
    ARVMUI_SetMessagePopup(popups, nullptr);
    return languages;
}
