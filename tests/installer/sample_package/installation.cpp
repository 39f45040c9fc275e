#include "installer/sample_package/installation.h"

#include "support/child_process.h"
#include "support/scratch_registry.h"

#include <shlobj.h>

#include <stdexcept>

namespace arvmui_test
{
namespace
{

void Require(UINT result, const char* what)
{
    if (result != ERROR_SUCCESS) throw std::runtime_error(std::string(what) + " failed with " + std::to_string(result));
}

void Execute(MSIHANDLE database, const std::wstring& sql)
{
    MsiHandle view;
    Require(::MsiDatabaseOpenViewW(database, sql.c_str(), view.Slot()), "MsiDatabaseOpenViewW");
    Require(::MsiViewExecute(view.Get(), 0), "MsiViewExecute");
}

std::filesystem::path ShellFolder(int folder)
{
    wchar_t path[MAX_PATH] = {};
    ::SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path);
    return path;
}

std::wstring ProductProperty(const wchar_t* name)
{
    return Sample().Row(L"Property", name).at(L"Value");
}

bool IsInstalled()
{
    return ::MsiQueryProductStateW(ProductProperty(L"ProductCode").c_str()) == INSTALLSTATE_DEFAULT;
}

}  // namespace

std::filesystem::path InstallerProgram()
{
    return ShellFolder(CSIDL_SYSTEM) / L"msiexec.exe";
}

std::optional<DWORD> RunInstaller(const std::wstring& arguments)
{
    ChildSettings settings;
    settings.application = InstallerProgram();
    settings.commandLine = L"msiexec " + arguments;
    return ChildProcess(settings).Wait();
}

SampleInstallation::SampleInstallation()
    : package_(folder_.CopyIn(SamplePackagePath(), L"phrasebook.msi")),
      valuesKey_(L"Software\\arvmui_sample_session_" + std::to_wstring(::GetCurrentProcessId()))
{
    if (IsInstalled()) Remove();
    AddSessionValues();
}

SampleInstallation::~SampleInstallation()
{
    if (IsInstalled()) Remove();
}

void SampleInstallation::AddSessionValues() const
{
    MsiHandle database;
    Require(::MsiOpenDatabaseW(package_.c_str(), MSIDBOPEN_TRANSACT, database.Slot()), "MsiOpenDatabaseW");
    for (const std::wstring property : kSessionProperties)
    {
        Execute(database.Get(),
            L"INSERT INTO `Registry` (`Registry`,`Root`,`Key`,`Name`,`Value`,`Component_`) VALUES ('" + property
                + L"_value',1,'" + valuesKey_ + L"','" + property + L"','[" + property + L"]','InstallLanguage')");
    }
    Require(::MsiDatabaseCommit(database.Get()), "MsiDatabaseCommit");
}

std::optional<DWORD> SampleInstallation::Install(const std::wstring& properties) const
{
    return RunInstaller(L"/i \"" + package_.wstring() + L"\" /qn " + properties);
}

std::optional<DWORD> SampleInstallation::Remove() const
{
    return RunInstaller(L"/x " + ProductProperty(L"ProductCode") + L" /qn");
}

std::wstring SampleInstallation::SessionValue(const std::wstring& property) const
{
    return StoredText(HKEY_CURRENT_USER, valuesKey_.c_str(), property.c_str());
}

void SampleInstallation::ForgetSessionValues() const
{
    ::RegDeleteTreeW(HKEY_CURRENT_USER, valuesKey_.c_str());
}

std::wstring SampleInstallation::ListedValue(const wchar_t* name) const
{
    const std::wstring key =
        L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + ProductProperty(L"ProductCode");
    return StoredText(HKEY_LOCAL_MACHINE, key.c_str(), name);
}

std::wstring SampleInstallation::RecordedLocale() const
{
    const std::wstring key = L"SOFTWARE\\Pelkor\\MUI\\" + ProductProperty(L"UpgradeCode");
    return StoredText(HKEY_LOCAL_MACHINE, key.c_str(), L"InstallUILocale", KEY_WOW64_32KEY);
}

std::filesystem::path SampleInstallation::CachedPackage() const
{
    wchar_t path[MAX_PATH] = {};
    DWORD length = ARRAYSIZE(path);
    ::MsiGetProductInfoW(ProductProperty(L"ProductCode").c_str(), INSTALLPROPERTY_LOCALPACKAGE, path, &length);
    return path;
}

std::filesystem::path InstalledFolder()
{
    return ShellFolder(CSIDL_PROGRAM_FILES) / L"Phrasebook";
}

int CountStartMenuEntries(const std::wstring& name)
{
    int count = 0;
    for (const int folder : {CSIDL_PROGRAMS, CSIDL_COMMON_PROGRAMS})
        count += std::filesystem::exists(ShellFolder(folder) / (name + L".lnk")) ? 1 : 0;
    return count;
}

}  // namespace arvmui_test
