// A session in which a language is chosen: a package of three locales, with the search for locales, the
// dialog and what the system tells in the test's hands.
#pragma once

#include "resources/process_state.h"
#include "support/module_patch.h"
#include "support/scratch_registry.h"
#include "unit/installer/installer_fixture.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace arvmui_test
{

// Stands for the search for locales: offers what a test lists, until an offer is accepted.
class OfferedLocales
{
public:
    OfferedLocales();
    OfferedLocales(const OfferedLocales&) = delete;
    OfferedLocales& operator=(const OfferedLocales&) = delete;

    std::vector<std::optional<std::wstring>> offers;  // none for a choice that the user refused

    std::vector<std::wstring> lists;          // the list of each search
    std::vector<DWORD> answers;               // what the action said to each offer
    arvmui::InstallerContext published = {};  // during the last search
    std::vector<LocaleEntry> locales;         // those of the published context

private:
    static DWORD Search(const wchar_t* list, ARVMUI_LocaleCallbackW consumer, void* context);

    static OfferedLocales* current_;

    FunctionPatch patch_;
};

// Stands for the language dialog.
class AnsweredDialog
{
public:
    AnsweredDialog();
    AnsweredDialog(const AnsweredDialog&) = delete;
    AnsweredDialog& operator=(const AnsweredDialog&) = delete;

    std::wstring answer;  // empty for a refusal
    BOOL result = TRUE;
    std::function<void()> whileOpen;

    int timesShown = 0;
    HWND owner = nullptr;
    std::optional<std::vector<HICON>> icons;
    std::vector<LocaleEntry> entries;
    bool hasBuffer = false;
    DWORD answerSize = 0;

private:
    static BOOL Show(HWND owner, const HICON* icons, const LocaleEntry* entries, DWORD count, wchar_t* answer,
        DWORD answerSize) noexcept;

    static AnsweredDialog* current_;

    FunctionPatch patch_;
};

inline constexpr wchar_t kLocaleQuery[] =
    L"SELECT `Locale`,`LangID`,`EnglishName`,`NativeName` FROM `ARVUILocale` ORDER BY `DisplayOrder`";

class SetLocaleTest : public InstallerTest
{
protected:
    SetLocaleTest();
    ~SetLocaleTest() override;

    static UINT SetLocale() { return ARVMUI_MSI_SetLocale(StandInInstaller::kSession); }
    static UINT Preview() { return ARVMUI_MSI_SelectionDialogBoxPreview(StandInInstaller::kSession); }

    static bool IsContextPublished();

    static inline const HICON kIcon = reinterpret_cast<HICON>(static_cast<ULONG_PTR>(0x203));

    // What the library sees of the system; an icon for number 203 of "MSI.DLL" only.
    ScratchRegistry registry;
    DWORD platform = VER_PLATFORM_WIN32_NT;
    std::vector<DWORD> versionRecordSizes;  // one for each question for the version
    HWND installerWindow = nullptr;

private:
    static HICON WINAPI LoadIconOf(HINSTANCE module, LPCWSTR name);
    static BOOL WINAPI Version(OSVERSIONINFOA* version);
    static HWND WINAPI FindInstallerWindow(LPCWSTR className, LPCWSTR title);

    static SetLocaleTest* current_;

    ImportPatch loadIcon_;
    ImportPatch version_;
    ImportPatch findWindow_;
};

}  // namespace arvmui_test
