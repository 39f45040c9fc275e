#include "settings_dialog_fixture.h"

#include "resources/process_state.h"
#include "support/built_locales.h"
#include "support/dialog_resources.h"

#include <stdexcept>
#include <system_error>

namespace arvmui_test
{
namespace
{

constexpr wchar_t kLibraryName[] = L"arvmui64.dll";
constexpr wchar_t kResourceFile[] = L"arvmuiUI.DLL";

}  // namespace

SettingsDialog::SettingsDialog()
{
    if (!registry_.ReplaceRoot(HKEY_CURRENT_USER) || !registry_.ReplaceRoot(HKEY_LOCAL_MACHINE))
        throw std::runtime_error("registry not replaced");
    library_ = std::make_unique<LoadedModule>(folder_.Path() / kLibraryName);
    Install(L"de", L"de-DE", 0x0407, L"German", L"Deutsch");
    Install(L"en", L"en-US", 0x0409, L"English", L"English");
    Install(L"fr", L"fr-FR", 0x040C, L"French", L"Fran\u00e7ais");
    Install(L"ja", L"ja-JP", 0x0411, L"Japanese", L"\u65e5\u672c\u8a9e");

    LibraryDescriptor& descriptor = arvmui::Descriptor();
    descriptor = {};
    slot_ = ::TlsAlloc();
    descriptor.tlsIndex = slot_;
    descriptor.module = library_->Get();
    descriptor.showMessagePopup = TRUE;
    Speak(EnglishTexts());
}

SettingsDialog::~SettingsDialog()
{
    arvmui::Descriptor() = {};
    if (speaking_) ::FreeLibrary(speaking_);
    ::TlsFree(slot_);
}

void SettingsDialog::Install(const std::wstring& folder, const std::wstring& tag, LANGID language,
    const std::wstring& englishName, const std::wstring& nativeName) const
{
    WriteResourceImage(folder_.Path() / L"resource" / folder / kResourceFile,
        {{ARVMUI_STRING_LOCALE_TAG, tag}, {ARVMUI_STRING_LANGUAGE_ID, std::to_wstring(language)},
            {ARVMUI_STRING_ENGLISH_NAME, englishName}, {ARVMUI_STRING_NATIVE_NAME, nativeName}});
}

void SettingsDialog::Uninstall(const std::wstring& folder) const
{
    std::error_code ignored;
    std::filesystem::remove_all(folder_.Path() / L"resource" / folder, ignored);
}

Strings SettingsDialog::EnglishTexts()
{
    return {{ARVMUI_STRING_LOCALE_TAG, L"en-US"}, {ARVMUI_STRING_LANGUAGE_ID, L"1033"},
        {ARVMUI_STRING_KEYWORD_USER, kKeywordNames[0]}, {ARVMUI_STRING_KEYWORD_SYSTEM, kKeywordNames[1]},
        {ARVMUI_STRING_KEYWORD_UILANG, kKeywordNames[2]}, {ARVMUI_STRING_KEYWORD_KIV, kKeywordNames[3]},
        {ARVMUI_STRING_KEYWORD_MSIE, kKeywordNames[4]}, {ARVMUI_STRING_SETTINGS_TITLE_USER, L"Title for the user"},
        {ARVMUI_STRING_SETTINGS_TITLE_MACHINE, L"Title for the machine"}, {ARVMUI_STRING_ERROR_CAPTION, L"Error"},
        {ARVMUI_STRING_SETTING_NOT_WRITTEN, L"906:%%lu"}, {ARVMUI_STRING_SETTING_NOT_REMOVED, L"907:%%lu"},
        {ARVMUI_STRING_DIALOG_NOT_SHOWN, L"908:%%lu"}};
}

void SettingsDialog::Speak(const Strings& texts, const std::vector<WORD>& dialogs)
{
    const std::filesystem::path file = folder_.Path() / (L"texts" + std::to_wstring(texts_++) + L".dll");
    WriteResourceImage(file, texts);
    if (!dialogs.empty()) CopyDialogs(file, BuiltResourceLibrary(L"en"), dialogs);
    const HMODULE library = ::LoadLibraryW(file.c_str());
    if (!library) throw std::runtime_error("resource library not loaded");
    arvmui::Descriptor().resourceLibrary = library;
    if (speaking_) ::FreeLibrary(speaking_);
    speaking_ = library;
}

void SettingsDialog::Store(const std::wstring& list, HKEY root)
{
    StoreText(root, kProductKey, kListValue, list);
}

std::wstring SettingsDialog::Stored(HKEY root)
{
    return StoredText(root, kProductKey, kListValue);
}

void SettingsDialog::UseKeyboards(const std::vector<WORD>& languages)
{
    keyboards_ = languages;
    arvmui::Descriptor().keyboardLanguages = keyboards_.data();
    arvmui::Descriptor().keyboardLanguageCount = static_cast<DWORD>(keyboards_.size());
}

}  // namespace arvmui_test
