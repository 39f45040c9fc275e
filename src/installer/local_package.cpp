#include "cmdline/argument_escape.h"
#include "foundation/growable_text.h"
#include "foundation/heap.h"
#include "foundation/paths.h"
#include "foundation/process_info.h"
#include "foundation/rundll_launcher.h"
#include "installer/installer_library.h"
#include "installer/package_translation.h"
#include "locale/registry_store.h"
#include "resources/windows_folder.h"

// Translates the installer's cached copy of a package once the product is installed: a deferred
// custom action finds it and waits for a helper process that rewrites it.

namespace arvmui
{
namespace
{

constexpr wchar_t kWithTransforms[] = L"TRANSFORMS";
constexpr wchar_t kWithoutTransforms[] = L"NOTRANSFORM";
constexpr wchar_t kLocalSystemSid[] = L"S-1-5-18";

// What the deferred action needs to know, as owned texts.
struct ActionData
{
    HeapBlock<wchar_t> text;  // one block with all three, or the first of three blocks
    HeapBlock<wchar_t> second;
    HeapBlock<wchar_t> third;
    const wchar_t* locale;
    const wchar_t* productCode;
    const wchar_t* transforms;

    // From "locale,product code,transforms"; the last field keeps its commas.
    bool Split() noexcept
    {
        wchar_t* const first = std::wcschr(text.Get(), L',');
        wchar_t* const other = first ? std::wcschr(first + 1, L',') : nullptr;
        if (!other) return false;
        *first = L'\0';
        *other = L'\0';
        locale = text.Get();
        productCode = first + 1;
        transforms = other + 1;
        return true;
    }

    // An action that is not deferred has the properties themselves.
    bool ReadProperties(MSIHANDLE session) noexcept
    {
        if (GetInstallerProperty(session, L"UILOCALE", text.Slot()) != ERROR_SUCCESS
            || GetInstallerProperty(session, L"ProductCodeFast", second.Slot()) != ERROR_SUCCESS
            || GetInstallerProperty(session, L"TRANSFORMS", third.Slot()) != ERROR_SUCCESS)
            return false;
        locale = text.Get();
        productCode = second.Get();
        transforms = third.Get();
        return *locale && *productCode;
    }

    bool Read(MSIHANDLE session) noexcept
    {
        if (GetInstallerProperty(session, L"CustomActionData", text.Slot()) == ERROR_SUCCESS) return Split();
        return ReadProperties(session);
    }
};

bool ReadPackagePath(const wchar_t* sid, const wchar_t* productCode, PathBuffer<wchar_t>& path) noexcept
{
    HeapBlock<wchar_t> key;
    if (AppendFormat(key.Slot(), -1,
            L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\%s\\Products\\%s\\InstallProperties",
            sid, productCode)
        < 1)
        return false;
    // The installer keeps its data in the 64-bit view.
    const REGSAM access = IsWow64() ? KEY_READ | KEY_WOW64_64KEY : KEY_READ;
    return ReadRegistryString(access, HKEY_LOCAL_MACHINE, key.Get(), L"LocalPackage", path, kMaxPathChars) != 0
           || ReadRegistryString(access, HKEY_LOCAL_MACHINE, key.Get(), L"ManagedLocalPackage", path, kMaxPathChars)
                  != 0;
}

// The cached package of a product that was installed for a user, or for the machine. Without a
// security identifier the user of the process is meant.
bool FindLocalPackage(const wchar_t* sid, const wchar_t* productCode, PathBuffer<wchar_t>& path) noexcept
{
    HeapBlock<wchar_t> ownSid;
    if (!sid && GetUserSidText(nullptr, ownSid.Slot())) sid = ownSid.Get();
    return (sid && ReadPackagePath(sid, productCode, path)) || ReadPackagePath(kLocalSystemSid, productCode, path);
}

// Runs the helper process and waits for its end.
void RunHelper(const wchar_t* locale, const wchar_t* package, const wchar_t* mode) noexcept
{
    const wchar_t* const arguments[] = {locale, package, mode, nullptr};
    STARTUPINFOW startup;
    PROCESS_INFORMATION information;
    if (!LaunchLibraryEntryPoint(
            &startup, &information, nullptr, L"ARVMUI_RUNDLL32_TranslateLocalPackage", ARRAYSIZE(arguments), arguments))
        return;
    const UniqueHandle thread(information.hThread);
    const UniqueHandle process(information.hProcess);
    // Ignored: the helper has no result, and there is nothing else to wait for.
    ::WaitForSingleObject(process.Get(), INFINITE);
}

void TranslateCachedPackage(MSIHANDLE session) noexcept
{
    if (BindLoadedInstallerLibrary() != ERROR_SUCCESS) return;
    HeapBlock<wchar_t> userSid;
    if (GetInstallerProperty(session, L"UserSID", userSid.Slot()) != ERROR_SUCCESS) return;
    ActionData data = {};
    PathBuffer<wchar_t> path;
    if (!data.Read(session) || !FindLocalPackage(userSid.Get(), data.productCode, path)) return;
    RunHelper(data.locale, path, *data.transforms ? kWithTransforms : kWithoutTransforms);
}

// Rewrites the package; nothing is committed unless all of it succeeds.
UINT RewritePackage(const wchar_t* locale, const wchar_t* path, bool withTransforms) noexcept
{
    UniqueInstallerHandle database;
    UINT result = Installer().MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, database.Slot());
    if (result != ERROR_SUCCESS) return result;
    LANGID language = 0;
    result = TranslateLocalPackageTables(database.Get(), locale, withTransforms, &language);
    if (result != ERROR_SUCCESS) return result;
    // Translated text in a database without a code page would be lost.
    const DWORD codePage = ARVMUI_GetACP(language, 0);
    if (codePage == 0) return ERROR_FUNCTION_FAILED;
    result = ImportCodepageIdt(database.Get(), codePage);
    if (result != ERROR_SUCCESS) return result;
    return Installer().MsiDatabaseCommit(database.Get());
}

}  // namespace
}  // namespace arvmui

UINT ARVMUI_CALL ARVMUI_MSI_TranslateLocalPackage(ULONG session)
{
    ARVMUI_SetMessagePopup(FALSE, nullptr);  // a box would interrupt the installation
    arvmui::TranslateCachedPackage(session);
    return ERROR_SUCCESS;
}

void ARVMUI_CALLBACK ARVMUI_RUNDLL32_TranslateLocalPackage(
    HWND /*window*/, HINSTANCE /*instance*/, char* commandLine, int /*show*/)
{
    using namespace arvmui;
    ARVMUI_SetMessagePopup(FALSE, nullptr);
    DWORD count = 0;
    const HeapBlock<wchar_t*> arguments(BuildArgumentVector(commandLine, &count));
    if (!arguments || count != 3) return;

    PathBuffer<wchar_t> path;
    // Ignored: a path that is cut does not load.
    FormatWindowsPath(path, kMaxPathChars, L"\\SYSTEM32\\%hs", "MSI.DLL");
    const UniqueLibrary installer(::LoadLibraryW(path));
    if (BindInstallerLibrary(installer.Get()) != ERROR_SUCCESS) return;
    const wchar_t* const* const argument = arguments.Get();
    // Ignored: there is nobody to tell; what fails leaves the package as it was.
    RewritePackage(argument[0], argument[1], EqualsNoCase(argument[2], kWithTransforms));
}
