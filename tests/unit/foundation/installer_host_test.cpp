// Whether the installer hosts the library: programs of any name in any folder, and a Windows folder
// that is the test's own.
#include "support/child_process.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

namespace
{

using arvmui_test::TemporaryFolder;
namespace fs = std::filesystem;

std::wstring ShortPath(const fs::path& path)
{
    wchar_t buffer[MAX_PATH] = {};
    ::GetShortPathNameW(path.c_str(), buffer, MAX_PATH);
    return buffer;
}

class InstallerHost : public testing::Test
{
protected:
    InstallerHost() : windows_(folder_.MakeFolder(L"windows folder").wstring()) {}

    // Copies the host program to a place below the test's folder and runs it there; its exit code.
    std::optional<DWORD> Run(const std::wstring& program, const fs::path& library) const
    {
        return RunAt(folder_.CopyIn(Original(), program), library);
    }
    std::optional<DWORD> RunAt(const fs::path& program, const fs::path& library) const
    {
        arvmui_test::ChildSettings settings;
        settings.application = program.wstring();
        settings.commandLine = L"\"" + program.wstring() + L"\" \"" + library.wstring() + L"\"";
        settings.environment = {{L"windir", windows_}};
        return arvmui_test::ChildProcess(settings).Wait();
    }
    fs::path MakeLibrary(const std::wstring& relative) const
    {
        const fs::path path = folder_.Path() / relative;
        arvmui_test::WriteResourceImage(path);
        return path;
    }
    static fs::path Original() { return arvmui_test::TestProgramFolder() / L"installer_host_program.exe"; }

    TemporaryFolder folder_;
    std::optional<std::wstring> windows_;  // what the child takes for the Windows folder
};

const std::optional<DWORD> kHosted = 1;
const std::optional<DWORD> kNotHosted = 0;

TEST_F(InstallerHost, AnyProgramWithTheLibraryInTheInstallersCacheIsHosted)
{
    EXPECT_EQ(Run(L"app\\editor.exe", MakeLibrary(L"windows folder\\INSTALLER\\MSI1.tmp")), kHosted);
    EXPECT_EQ(Run(L"app\\editor.exe", MakeLibrary(L"windows folder\\Installer\\{x}\\lib.dll")), kHosted);
}

TEST_F(InstallerHost, LibraryElsewhereIsNot)
{
    EXPECT_EQ(Run(L"app\\editor.exe", MakeLibrary(L"app\\lib.dll")), kNotHosted);
    EXPECT_EQ(Run(L"app\\editor.exe", MakeLibrary(L"windows folder\\lib.dll")), kNotHosted);
}

TEST_F(InstallerHost, FolderWhoseNameOnlyBeginsLikeTheCacheIsNot)
{
    folder_.MakeFolder(L"windows folder\\INSTALLER");
    EXPECT_EQ(Run(L"app\\editor.exe", MakeLibrary(L"windows folder\\INSTALLER2\\lib.dll")), kNotHosted);
}

TEST_F(InstallerHost, LibraryLoadedThroughItsShortPathIsHosted)
{
    const fs::path library = MakeLibrary(L"windows folder\\INSTALLER\\lib.dll");
    const std::wstring shortPath = ShortPath(library);
    ASSERT_EQ(shortPath.find(L"windows folder"), std::wstring::npos) << "the file system has no short names";
    EXPECT_EQ(Run(L"app\\editor.exe", shortPath), kHosted);
}

TEST_F(InstallerHost, InstallersProgramInTheSystemFolderIsHosted)
{
    EXPECT_EQ(Run(L"windows folder\\SYSTEM32\\MSIEXEC.EXE", MakeLibrary(L"app\\lib.dll")), kHosted);
}

TEST_F(InstallerHost, InstallersProgramIsRecognisedInAnyCase)
{
    EXPECT_EQ(Run(L"Windows Folder\\system32\\msiexec.exe", MakeLibrary(L"app\\lib.dll")), kHosted);
}

TEST_F(InstallerHost, InstallersProgramStartedThroughItsShortPathIsHosted)
{
    const fs::path program = folder_.CopyIn(Original(), L"windows folder\\SYSTEM32\\msiexec.exe");
    const std::wstring shortPath = ShortPath(program);
    ASSERT_EQ(shortPath.find(L"windows folder"), std::wstring::npos) << "the file system has no short names";
    EXPECT_EQ(RunAt(shortPath, MakeLibrary(L"app\\lib.dll")), kHosted);
}

TEST_F(InstallerHost, ProgramOfThatNameElsewhereIsNot)
{
    folder_.CopyIn(Original(), L"windows folder\\SYSTEM32\\msiexec.exe");
    const fs::path library = MakeLibrary(L"app\\lib.dll");
    EXPECT_EQ(Run(L"app\\msiexec.exe", library), kNotHosted);
    EXPECT_EQ(Run(L"windows folder\\msiexec.exe", library), kNotHosted);
    EXPECT_EQ(Run(L"windows folder\\SYSTEM32\\sub\\msiexec.exe", library), kNotHosted);
}

TEST_F(InstallerHost, ProgramOfThatNameElsewhereIsNotEvenWithoutTheRealOne)
{
    EXPECT_EQ(Run(L"app\\msiexec.exe", MakeLibrary(L"app\\lib.dll")), kNotHosted);
}

// A 64-bit program: the folder of 32-bit programs does not count.
TEST_F(InstallerHost, ProgramInTheFolderOf32BitProgramsIsNot)
{
    EXPECT_EQ(Run(L"windows folder\\SYSWOW64\\msiexec.exe", MakeLibrary(L"app\\lib.dll")), kNotHosted);
}

TEST_F(InstallerHost, OtherProgramsInTheSystemFolderAreNot)
{
    const fs::path library = MakeLibrary(L"app\\lib.dll");
    EXPECT_EQ(Run(L"windows folder\\SYSTEM32\\msiexec2.exe", library), kNotHosted);
    EXPECT_EQ(Run(L"windows folder\\SYSTEM32\\xmsiexec.exe", library), kNotHosted);
}

TEST_F(InstallerHost, WithoutTheVariableTheUsualWindowsFolderCounts)
{
    windows_.reset();
    const fs::path library = MakeLibrary(L"windows folder\\INSTALLER\\lib.dll");
    EXPECT_EQ(Run(L"windows folder\\SYSTEM32\\msiexec.exe", library), kNotHosted);
}

}  // namespace
