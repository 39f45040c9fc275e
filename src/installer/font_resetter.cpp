#include "cmdline/argument_escape.h"
#include "foundation/growable_text.h"
#include "foundation/paths.h"
#include "foundation/process_info.h"
#include "foundation/rundll_launcher.h"
#include "foundation/system_functions.h"
#include "installer/font_watch.h"
#include "installer/installer_library.h"
#include "locale/registry_store.h"
#include "resources/process_state.h"

// The custom actions that keep the texts of an installation's windows readable: Start has a helper
// process watch over them, or watches itself where no helper can be had, until Stop.

namespace arvmui
{
namespace
{

constexpr DWORD kInterval = 100;          // milliseconds, as all that follow
constexpr DWORD kHelperTime = 3600000;    // the helper ends with the process that started it, or then
constexpr DWORD kFallbackTime = 60000;    // how long Start may hold up the installation
constexpr DWORD kHelperStartTime = 1000;  // a helper that lives that long works
constexpr DWORD kDisplayNameChars = 256;  // terminator included

// Meets in Start and Stop, which the installer runs in one process.
bool FormatEventName(PathBuffer<wchar_t>& name) noexcept
{
    return FormatFixed(name, kMaxPathChars, L"ARVMUI_MSI_FontResetter.%u", ::GetCurrentProcessId()) > 0;
}

UINT AddValue(MSIHANDLE, MSIHANDLE, MSIHANDLE record, void* context)
{
    wchar_t* value = nullptr;
    const UINT result = GetRecordString(record, 1, &value);
    static_cast<FontResetterNames*>(context)->Add(value);
    return result;
}

bool AddProperty(MSIHANDLE session, const wchar_t* property, FontResetterNames& names) noexcept
{
    wchar_t* value = nullptr;
    const bool isRead = GetInstallerProperty(session, property, &value) == ERROR_SUCCESS;
    names.Add(value);
    return isRead;
}

// The name under which the product stands in the list of installed programs.
void AddDisplayName(MSIHANDLE session, FontResetterNames& names) noexcept
{
    HeapBlock<wchar_t> productCode;
    HeapBlock<wchar_t> key;
    wchar_t name[kDisplayNameChars];
    if (GetInstallerProperty(session, L"ProductCode", productCode.Slot()) != ERROR_SUCCESS
        || AppendFormat(
               key.Slot(), -1, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\%s", productCode.Get())
               < 1
        || ReadRegistryString(kProductKeyRead, HKEY_LOCAL_MACHINE, key.Get(), L"DisplayName", name, kDisplayNameChars)
               == 0)
        return;
    names.AddCopy(name);
}

// FALSE when the product's name cannot be read: then there is nothing to watch for.
bool CollectNames(MSIHANDLE session, FontResetterNames& names) noexcept
{
    const UniqueInstallerHandle database(Installer().MsiGetActiveDatabase(session));
    // Ignored: a package without English properties has its names in the session only.
    if (database)
        RunQuery(database.Get(),
            L"SELECT `Value` FROM `Property_en` WHERE `Property`='ProductName' OR `Property`='PATCHNAME'", 0, AddValue,
            &names);
    if (!AddProperty(session, L"ProductName", names)) return false;
    // Ignored: only a patch has a name of its own.
    AddProperty(session, L"PATCHNAME", names);
    AddDisplayName(session, names);
    return true;
}

// TRUE when the helper process is at work. It keeps the library's file in use, so the file, which the
// installer has put into a temporary folder, is deleted at the next restart.
bool StartFontResetterProcess(const FontResetterNames& names) noexcept
{
    const auto moveFile = FindSystemFunction<decltype(&::MoveFileExW)>("KERNEL32.DLL", "MoveFileExW");
    PathBuffer<wchar_t> path;
    if (!moveFile || !GetModulePath(Descriptor().module, path)) return false;
    if (!moveFile(path, nullptr, MOVEFILE_DELAY_UNTIL_REBOOT)) return false;

    STARTUPINFOW startup;
    PROCESS_INFORMATION information;
    if (!LaunchLibraryEntryPoint(
            &startup, &information, path, L"ARVMUI_RUNDLL32_FontResetter", names.Count(), names.Items()))
        return false;
    const UniqueHandle thread(information.hThread);
    const UniqueHandle process(information.hProcess);
    return ::WaitForSingleObject(process.Get(), kHelperStartTime) == WAIT_TIMEOUT;
}

void WatchFonts(MSIHANDLE session) noexcept
{
    FontResetterNames names;
    if (!CollectNames(session, names) || StartFontResetterProcess(names)) return;
    PathBuffer<wchar_t> eventName;
    const UniqueHandle stop(FormatEventName(eventName) ? ::CreateEventW(nullptr, TRUE, FALSE, eventName) : nullptr);
    // Ignored: whether Stop ended the watch or the time did.
    RunFontResetterLoop(stop.Get(), kInterval, kFallbackTime, names);
}

// The process that started this one, or null.
HANDLE OpenParentProcess() noexcept
{
    const DWORD id = GetParentProcessId(::GetCurrentProcessId());
    return id == kNoProcess ? nullptr : ::OpenProcess(SYNCHRONIZE, FALSE, id);
}

}  // namespace
}  // namespace arvmui

UINT ARVMUI_CALL ARVMUI_MSI_StartFontResetter(ULONG session)
{
    ARVMUI_SetMessagePopup(FALSE, nullptr);  // a box would interrupt the installation
    if (arvmui::BindLoadedInstallerLibrary() == ERROR_SUCCESS) arvmui::WatchFonts(session);
    return ERROR_SUCCESS;
}

UINT ARVMUI_CALL ARVMUI_MSI_StopFontResetter(ULONG /*session*/)
{
    using namespace arvmui;
    PathBuffer<wchar_t> name;
    if (!FormatEventName(name)) return ERROR_SUCCESS;
    const UniqueHandle stop(::OpenEventW(EVENT_MODIFY_STATE, FALSE, name));
    // Ignored: a watch that cannot be told ends by itself.
    if (stop) ::SetEvent(stop.Get());
    return ERROR_SUCCESS;
}

void ARVMUI_CALLBACK ARVMUI_RUNDLL32_FontResetter(
    HWND /*window*/, HINSTANCE /*instance*/, char* commandLine, int /*show*/)
{
    using namespace arvmui;
    ARVMUI_SetMessagePopup(FALSE, nullptr);
    DWORD count = 0;
    const HeapBlock<wchar_t*> arguments(BuildArgumentVector(commandLine, &count));
    if (!arguments) return;
    FontResetterNames names;
    for (DWORD i = 0; i < count && i < FontResetterNames::kMaxNames; ++i) names.AddCopy(arguments.Get()[i]);

    const UniqueHandle parent(OpenParentProcess());
    // Ignored: the process ends either way.
    RunFontResetterLoop(parent.Get(), kInterval, kHelperTime, names);
}
