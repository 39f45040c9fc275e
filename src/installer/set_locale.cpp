#include "foundation/heap.h"
#include "foundation/text_calls.h"
#include "installer/installer_library.h"
#include "installer/package_locales.h"
#include "installer/session_tables.h"
#include "locale/locale_list.h"
#include "locale/registry_store.h"
#include "resources/process_state.h"
#include "ui/language_dialog.h"

// The custom actions that choose the language of an installation, and that show the choice to the
// author of a package.

namespace arvmui
{
namespace
{

constexpr wchar_t kLocaleProperty[] = L"UILOCALE";
constexpr wchar_t kDefaultSources[] = L"user,system,uilang,en,de,es,fr,ja";
constexpr DWORD kStoredListChars = 64;  // terminator included
constexpr unsigned long kFullInterface = 5;
constexpr WORD kInstallerIcon = 203;  // in "MSI.DLL"

struct InstallerSessionContext
{
    InstallerContext dialog;  // what the language dialog shows; published while the language is chosen
    UINT status;
    MSIHANDLE session;
    MSIHANDLE database;
};

struct SessionProperties
{
    HeapBlock<wchar_t> uiLevel;
    HeapBlock<wchar_t> action;
    HeapBlock<wchar_t> enableDialogs;
    HeapBlock<wchar_t> locale;
    HeapBlock<wchar_t> upgradeCode;
    HeapBlock<wchar_t> localeLocations;

    UINT Read(MSIHANDLE session) noexcept
    {
        const struct
        {
            const wchar_t* name;
            HeapBlock<wchar_t>& value;
        } properties[] = {
            {L"UILevel", uiLevel},
            {L"ACTION", action},
            {L"ENABLE_DIALOGS", enableDialogs},
            {kLocaleProperty, locale},
            {L"UpgradeCode", upgradeCode},
            {L"ArvInstallUILocaleRegs", localeLocations},
        };
        for (const auto& property : properties)
        {
            const UINT result = GetInstallerProperty(session, property.name, property.value.Slot());
            if (result != ERROR_SUCCESS) return result;
        }
        return ERROR_SUCCESS;
    }
};

bool IsEmpty(const HeapBlock<wchar_t>& text) noexcept
{
    return *text.Get() == L'\0';
}

bool MayAsk(const SessionProperties& properties) noexcept
{
    const wchar_t* const dialogs = properties.enableDialogs.Get();
    if (TextCalls<wchar_t>::ToNumber(properties.uiLevel.Get()) != kFullInterface) return false;
    if (EqualsNoCase(properties.action.Get(), L"ADVERTISE") || EqualsNoCase(dialogs, L"NO")) return false;
    return IsEmpty(properties.enableDialogs) || EqualsNoCase(dialogs, L"YES") || EqualsNoCase(dialogs, L"ALL")
           || std::wcsstr(dialogs, L"Select Language");
}

// The list of sources to try; `stored` holds it where it comes from the registry.
const wchar_t* ChooseSources(const SessionProperties& properties, wchar_t (&stored)[kStoredListChars]) noexcept
{
    if (!IsEmpty(properties.locale)) return properties.locale.Get();
    if (!IsEmpty(properties.upgradeCode)
        && ReadInstallUILocale(properties.upgradeCode.Get(), stored, kStoredListChars) != 0)
        return stored;
    if (!IsEmpty(properties.localeLocations)
        && ReadRegistryList(properties.localeLocations.Get(), stored, kStoredListChars) != 0)
        return stored;
    return MayAsk(properties) ? kKeywordAsk : kDefaultSources;
}

UINT ApplyLocale(const InstallerSessionContext& context, const LocaleEntry& entry) noexcept
{
    // The tables of the package itself are English.
    if (PRIMARYLANGID(entry.LangID) != LANG_ENGLISH)
    {
        const UINT result = TranslateSessionTables(context.session, context.database, entry);
        if (result != ERROR_SUCCESS) return result;
    }
    return Installer().MsiSetPropertyW(context.session, kLocaleProperty, entry.Locale);
}

// Accepts the first locale that the package offers.
DWORD ARVMUI_CALLBACK OfferLocale(const wchar_t* locale, void* context)
{
    InstallerSessionContext& session = *static_cast<InstallerSessionContext*>(context);
    if (!locale)
    {
        session.status = ERROR_INSTALL_USEREXIT;
        return TRUE;
    }
    const LocaleEntry* const entry = FindPackageLocale(session.dialog.locales, session.dialog.localeCount, locale);
    if (!entry) return FALSE;
    session.status = ApplyLocale(session, *entry) == ERROR_SUCCESS ? ERROR_SUCCESS : ERROR_FUNCTION_FAILED;
    return TRUE;
}

// A system without Unicode, which has the installer but none of its Unicode functions.
bool IsLegacySystem() noexcept
{
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof(version);
#ifdef _MSC_VER
#pragma warning(suppress : 4996)  // asked for the platform only, which it tells rightly
#endif
    return ::GetVersionExA(&version) && version.dwPlatformId < VER_PLATFORM_WIN32_NT;
}
static_assert(sizeof(OSVERSIONINFOA) == 148);

// The package's locales and the installer's icon, as the language dialog shows them. The caller frees
// the locales with ARVMUI_free.
UINT PrepareDialog(MSIHANDLE database, HMODULE installer, InstallerContext& dialog, LocaleEntry** entries) noexcept
{
    const UINT result = ReadPackageLocales(database, true, entries, &dialog.localeCount);
    if (result != ERROR_SUCCESS) return result;
    dialog.locales = *entries;
    dialog.smallIcon = ::LoadIconW(installer, MAKEINTRESOURCEW(kInstallerIcon));
    dialog.largeIcon = dialog.smallIcon;
    return ERROR_SUCCESS;
}

UINT ChooseLocale(InstallerSessionContext& context, const SessionProperties& properties) noexcept
{
    LibraryDescriptor& descriptor = Descriptor();
    SetInstallerContext(descriptor, &context.dialog);
    wchar_t stored[kStoredListChars];
    // Ignored: the callback leaves its result in the context.
    ARVMUI_EnumLocalesW(ChooseSources(properties, stored), OfferLocale, &context);
    SetInstallerContext(descriptor, nullptr);
    return context.status;
}

UINT SetLocale(MSIHANDLE session) noexcept
{
    InstallerSessionContext context = {};
    context.status = ERROR_FUNCTION_FAILED;
    context.session = session;

    HMODULE installer = nullptr;
    UINT result = BindLoadedInstallerLibrary(&installer);
    if (result != ERROR_SUCCESS) return result;
    const UniqueInstallerHandle database(Installer().MsiGetActiveDatabase(session));
    if (!database) return ERROR_FUNCTION_FAILED;
    context.database = database.Get();
    if (IsLegacySystem()) return Installer().MsiSetPropertyW(session, kLocaleProperty, L"en");

    HeapBlock<LocaleEntry> entries;
    result = PrepareDialog(context.database, installer, context.dialog, entries.Slot());
    if (result != ERROR_SUCCESS) return result;
    SessionProperties properties;
    result = properties.Read(session);
    return result == ERROR_SUCCESS ? ChooseLocale(context, properties) : result;
}

UINT PreviewSelection(MSIHANDLE session) noexcept
{
    HMODULE installer = nullptr;
    UINT result = BindLoadedInstallerLibrary(&installer);
    if (result != ERROR_SUCCESS) return result;
    const UniqueInstallerHandle database(Installer().MsiGetActiveDatabase(session));
    if (!database) return ERROR_FUNCTION_FAILED;

    InstallerContext dialog = {};
    HeapBlock<LocaleEntry> entries;
    result = PrepareDialog(database.Get(), installer, dialog, entries.Slot());
    if (result != ERROR_SUCCESS) return result;
    const HWND owner = ::FindWindowW(L"MsiDialogCloseClass", nullptr);
    const HICON icons[] = {dialog.smallIcon, dialog.largeIcon};
    // Ignored: nothing is asked, so nothing can be answered.
    ShowLanguageSelectionDialog(owner, icons, dialog.locales, dialog.localeCount, nullptr, 0);
    return ERROR_SUCCESS;
}

}  // namespace
}  // namespace arvmui

UINT ARVMUI_CALL ARVMUI_MSI_SetLocale(ULONG session)
{
    ARVMUI_SetMessagePopup(FALSE, nullptr);  // a box would interrupt the installation
    const UINT result = arvmui::SetLocale(session);
    return result == ERROR_SUCCESS || result == ERROR_INSTALL_USEREXIT ? result : ERROR_FUNCTION_FAILED;
}

UINT ARVMUI_CALL ARVMUI_MSI_SelectionDialogBoxPreview(ULONG session)
{
    ARVMUI_SetMessagePopup(FALSE, nullptr);
    return arvmui::PreviewSelection(session) == ERROR_SUCCESS ? ERROR_SUCCESS : ERROR_FUNCTION_FAILED;
}
