// The settings dialog over an installation and a registry of a test's own: four installed languages,
// English texts known to the test, and the dialogs of the built resource library.
#pragma once

#include "support/resource_image.h"
#include "support/scratch_registry.h"
#include "support/settings_window.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace arvmui_test
{

constexpr wchar_t kNoValue[] = L"<none>";

// Names under which the keywords of a locale list are offered.
const Names kKeywordNames = {
    L"User's language", L"System's language", L"Windows' language", L"File's languages", L"Browser's languages"};

class SettingsDialog : public testing::Test
{
protected:
    SettingsDialog();
    ~SettingsDialog() override;

    // A language of the installation; `folder` is its name below the resource folder.
    void Install(const std::wstring& folder, const std::wstring& tag, LANGID language, const std::wstring& englishName,
        const std::wstring& nativeName) const;
    void Uninstall(const std::wstring& folder) const;

    // Texts of the resource library that speaks; a test changes some and uses them.
    static Strings EnglishTexts();
    // Makes a resource library of these texts and dialogs speak.
    void Speak(
        const Strings& texts, const std::vector<WORD>& dialogs = {ARVMUI_DIALOG_SETTINGS, ARVMUI_DIALOG_ADD_LANGUAGES});

    static void Store(const std::wstring& list, HKEY root = HKEY_CURRENT_USER);
    static std::wstring Stored(HKEY root = HKEY_CURRENT_USER);

    // Primary languages of the installed keyboards, ascending.
    void UseKeyboards(const std::vector<WORD>& languages);

    std::filesystem::path Folder() const { return folder_.Path(); }

private:
    TemporaryFolder folder_;
    ScratchRegistry registry_;
    std::unique_ptr<LoadedModule> library_;
    DWORD slot_ = TLS_OUT_OF_INDEXES;
    std::vector<WORD> keyboards_;
    unsigned texts_ = 0;  // resource libraries made so far
    HMODULE speaking_ = nullptr;
};

}  // namespace arvmui_test
