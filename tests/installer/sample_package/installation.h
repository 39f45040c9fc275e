// Installs the sample's package in this system, with additions that show what a session holds, and removes it.
#pragma once

#include "installer/sample_package/sample_package.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <optional>
#include <string>

namespace arvmui_test
{

std::filesystem::path InstallerProgram();

// Runs the installer to its end; its exit code, or nothing when it does not end.
std::optional<DWORD> RunInstaller(const std::wstring& arguments);

class SampleInstallation
{
public:
    // A copy of the package, which also stores the values of some properties in the registry when it is
    // installed. What an earlier run may have left installed is removed. Throws when the copy fails.
    SampleInstallation();
    ~SampleInstallation();
    SampleInstallation(const SampleInstallation&) = delete;
    SampleInstallation& operator=(const SampleInstallation&) = delete;

    const std::filesystem::path& Package() const { return package_; }

    // Installs without user interface; `properties` as on the installer's command line.
    std::optional<DWORD> Install(const std::wstring& properties) const;
    std::optional<DWORD> Remove() const;

    // The value that a property had in the session that installed or repaired last.
    std::wstring SessionValue(const std::wstring& property) const;
    void ForgetSessionValues() const;

    // What the system's list of programs says about the product: "DisplayName", "Comments".
    std::wstring ListedValue(const wchar_t* name) const;

    // The locale recorded for the product's upgrade code.
    std::wstring RecordedLocale() const;

    // Where the installer keeps its copy of the package; empty when nothing is installed.
    std::filesystem::path CachedPackage() const;

private:
    void AddSessionValues() const;

    TemporaryFolder folder_;
    std::filesystem::path package_;
    std::wstring valuesKey_;
};

// Where the package puts its files.
std::filesystem::path InstalledFolder();

// The entries of this name in the Start menu of the user or of all users.
int CountStartMenuEntries(const std::wstring& name);

// Properties whose values a session stores.
inline constexpr const wchar_t* kSessionProperties[] = {
    L"UILOCALE", L"ProductName", L"ARPCOMMENTS", L"ButtonText_Next", L"ButtonText_OK", L"ProductCodeFast"};

}  // namespace arvmui_test
