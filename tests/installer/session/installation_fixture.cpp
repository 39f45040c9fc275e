#include "installer/session/installation_fixture.h"

#include "support/dialog_controls.h"

#include <fstream>
#include <iterator>

namespace arvmui_test
{
namespace
{

std::string BytesOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::filesystem::path InstallerProgram()
{
    wchar_t folder[MAX_PATH] = {};
    ::GetSystemDirectoryW(folder, MAX_PATH);
    return std::filesystem::path(folder) / L"msiexec.exe";
}

}  // namespace

TablesOfLanguage WithoutStreams(TablesOfLanguage tables)
{
    tables.erase(L"Binary");
    return tables;
}

InstallationTest::InstallationTest() : file_(folder.Path() / L"installation.msi")
{
    package.ScheduleActions();
}

void InstallationTest::TearDown()
{
    installer_.reset();
    if (!bytesBefore_.empty())
    {
        EXPECT_TRUE(BytesOf(file_) == bytesBefore_) << "the package has changed";
    }
}

void InstallationTest::Start(const std::wstring& options)
{
    package.tables.Write(file_);
    bytesBefore_ = BytesOf(file_);
    ChildSettings settings;
    settings.application = InstallerProgram();
    settings.commandLine = L"msiexec.exe /i \"" + file_.wstring() + L"\" REPORTFILE=\""
                           + (folder.Path() / L"report").wstring() + L"\" " + options;
    installer_ = std::make_unique<ChildProcess>(settings);
    ASSERT_TRUE(installer_->Started());
}

std::optional<DWORD> InstallationTest::End()
{
    return installer_->Wait();
}

std::filesystem::path InstallationTest::ReportFile(const std::wstring& sequence) const
{
    return folder.Path() / (L"report." + sequence);
}

HWND InstallationTest::WaitForWindow(const std::wstring& title)
{
    HWND window = nullptr;
    WaitUntil(
        [&]
        {
            window = ::FindWindowW(nullptr, title.c_str());
            return window && ::IsWindowVisible(window);
        });
    return window;
}

bool InstallationTest::HasReport(const std::wstring& sequence) const
{
    return std::filesystem::exists(ReportFile(sequence));
}

SessionReport InstallationTest::Report(const std::wstring& sequence) const
{
    return ReadSessionReport(ReportFile(sequence));
}

}  // namespace arvmui_test
