// The temporary file by which a package gets its code page.
#include "installer/package_translation.h"
#include "support/byte_file.h"
#include "support/environment_variable.h"
#include "support/import_replacement.h"
#include "support/temporary_folder.h"
#include "unit/installer/installer_fixture.h"

#include <cwchar>
#include <iterator>
#include <optional>

namespace
{

namespace fs = std::filesystem;
using arvmui::ImportCodepageIdt;
using arvmui_test::ImportPatch;

std::wstring FileName()
{
    return L"ARVMUI" + std::to_wstring(::GetCurrentProcessId()) + L".IDT";
}

std::string BytesOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

class CodepageFile : public arvmui_test::InstallerTest
{
protected:
    CodepageFile() : variable_(L"TMP", folder_.Path().c_str())
    {
        folder = folder_.Path().wstring() + L"\\";
        file = folder + FileName();
        importCall = L"MsiDatabaseImportW " + folder + L" " + FileName();
        installer.onCall = [this](const std::wstring& call)
        {
            if (call != importCall) return;
            imported = BytesOf(file);
            const HANDLE handle = ARVMUI_REAL_FUNCTION(L"kernel32.dll", CreateFileW)(
                file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
            isClosed = handle != INVALID_HANDLE_VALUE;
            if (isClosed) ::CloseHandle(handle);
        };
    }

    // Nothing may be imported, and no file may be left.
    void ExpectFailureBeforeTheImport(DWORD codePage = 1252)
    {
        EXPECT_EQ(ImportCodepageIdt(database, codePage), static_cast<UINT>(ERROR_FUNCTION_FAILED));
        EXPECT_TRUE(installer.Calls().empty());
        EXPECT_TRUE(fs::is_empty(folder_.Path()));
    }

    std::wstring folder;
    std::wstring file;
    std::wstring importCall;
    std::string imported;
    bool isClosed = false;

private:
    arvmui_test::TemporaryFolder folder_;
    arvmui_test::EnvironmentVariable variable_;
};

TEST_F(CodepageFile, IsImportedFromTheTemporaryFolderUnderItsName)
{
    EXPECT_EQ(ImportCodepageIdt(database, 1252), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(installer.Calls(), std::vector<std::wstring>{importCall});
}

struct CodePageCase
{
    const char* name;
    DWORD codePage;
    const char* bytes;
};

class CodepageFileContent : public CodepageFile, public testing::WithParamInterface<CodePageCase>
{
};

TEST_P(CodepageFileContent, IsTwoEmptyLinesTheNumberAndTheDirective)
{
    ASSERT_EQ(ImportCodepageIdt(database, GetParam().codePage), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(imported, GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(Numbers, CodepageFileContent,
    testing::Values(CodePageCase{"Western", 1252, "\r\n\r\n1252\t_ForceCodepage\r\n"},
        CodePageCase{"Japanese", 932, "\r\n\r\n932\t_ForceCodepage\r\n"},
        CodePageCase{"Neutral", 0, "\r\n\r\n0\t_ForceCodepage\r\n"},
        CodePageCase{"Largest", 0xFFFFFFFF, "\r\n\r\n4294967295\t_ForceCodepage\r\n"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(CodepageFile, IsClosedBeforeItIsImported)
{
    ASSERT_EQ(ImportCodepageIdt(database, 1252), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_TRUE(isClosed);
}

TEST_F(CodepageFile, ReplacesAnOlderFileWhole)
{
    arvmui_test::WriteBytes(file, std::string(5000, 'x'));
    ASSERT_EQ(ImportCodepageIdt(database, 1252), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(imported, "\r\n\r\n1252\t_ForceCodepage\r\n");
}

TEST_F(CodepageFile, IsRemovedAfterTheImport)
{
    ASSERT_EQ(ImportCodepageIdt(database, 1252), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(CodepageFile, IsRemovedWhenTheImportFailsWhoseResultCounts)
{
    installer.Answer(importCall, ERROR_INSTALL_PACKAGE_INVALID);
    EXPECT_EQ(ImportCodepageIdt(database, 1252), static_cast<UINT>(ERROR_INSTALL_PACKAGE_INVALID));
    EXPECT_FALSE(imported.empty());
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(CodepageFile, IsNotMadeOverAFolderOfItsName)
{
    fs::create_directory(file);
    EXPECT_EQ(ImportCodepageIdt(database, 1252), static_cast<UINT>(ERROR_FUNCTION_FAILED));
    EXPECT_TRUE(installer.Calls().empty());
}

// ---- The system's calls, as the library makes them and as they fail.

struct FileCalls
{
    DWORD access = 0;
    DWORD sharing = 0;
    DWORD disposition = 0;
    DWORD attributes = 0;
    std::wstring path;
    bool canCreate = true;
    bool canWrite = true;
    DWORD unwritten = 0;  // bytes that a write leaves out
    std::wstring temporary;
    DWORD temporaryLength = 0;
};

FileCalls g_calls;

HANDLE WINAPI Create(LPCWSTR path, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES security, DWORD disposition,
    DWORD attributes, HANDLE pattern)
{
    g_calls.path = path;
    g_calls.access = access;
    g_calls.sharing = sharing;
    g_calls.disposition = disposition;
    g_calls.attributes = attributes;
    if (!g_calls.canCreate) return INVALID_HANDLE_VALUE;
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", CreateFileW)(
        path, access, sharing, security, disposition, attributes, pattern);
}

BOOL WINAPI Write(HANDLE file, LPCVOID data, DWORD bytes, LPDWORD written, LPOVERLAPPED overlapped)
{
    const BOOL result =
        ARVMUI_REAL_FUNCTION(L"kernel32.dll", WriteFile)(file, data, bytes - g_calls.unwritten, written, overlapped);
    return result && g_calls.canWrite;
}

DWORD WINAPI Temporary(DWORD size, LPWSTR buffer)
{
    EXPECT_EQ(size, 260U);
    if (g_calls.temporary.size() < size) std::wcscpy(buffer, g_calls.temporary.c_str());
    return g_calls.temporaryLength;
}

class CodepageFileCalls : public CodepageFile
{
protected:
    CodepageFileCalls() { g_calls = {}; }

    void AnswerTemporary(const std::wstring& text)
    {
        g_calls.temporary = text;
        g_calls.temporaryLength = static_cast<DWORD>(text.size());
        temporary_.emplace(::GetModuleHandleW(nullptr), "GetTempPathW", &Temporary);
    }

    // A folder below the temporary one so deep that the file's path has the given length.
    std::wstring FolderForPathOf(size_t length) const
    {
        std::wstring path = folder;
        const size_t wanted = length - FileName().size();
        while (wanted - path.size() > 100) path += std::wstring(49, L'd') + L"\\";
        return path + std::wstring(wanted - path.size() - 1, L'e') + L"\\";
    }

private:
    ImportPatch create_{::GetModuleHandleW(nullptr), "CreateFileW", &Create};
    ImportPatch write_{::GetModuleHandleW(nullptr), "WriteFile", &Write};
    std::optional<ImportPatch> temporary_;
};

TEST_F(CodepageFileCalls, CreatesForWritingWithoutSharingReplacingWhatIsThere)
{
    ASSERT_EQ(ImportCodepageIdt(database, 1252), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(g_calls.path, file);
    EXPECT_EQ(g_calls.access, GENERIC_WRITE);
    EXPECT_EQ(g_calls.sharing, 0U);
    EXPECT_EQ(g_calls.disposition, static_cast<DWORD>(CREATE_ALWAYS));
    EXPECT_EQ(g_calls.attributes, static_cast<DWORD>(FILE_ATTRIBUTE_NORMAL));
}

TEST_F(CodepageFileCalls, AFileThatCannotBeCreatedFails)
{
    g_calls.canCreate = false;
    ExpectFailureBeforeTheImport();
}

TEST_F(CodepageFileCalls, AFileThatCannotBeWrittenFailsAndIsRemoved)
{
    g_calls.canWrite = false;
    ExpectFailureBeforeTheImport();
}

TEST_F(CodepageFileCalls, AFileThatIsWrittenInPartFailsAndIsRemoved)
{
    g_calls.unwritten = 1;
    ExpectFailureBeforeTheImport();
}

TEST_F(CodepageFileCalls, NoTemporaryFolderFails)
{
    AnswerTemporary(L"");
    ExpectFailureBeforeTheImport();
    EXPECT_EQ(g_calls.path, L"");
}

TEST_F(CodepageFileCalls, ATemporaryFolderThatDoesNotFitFails)
{
    AnswerTemporary(L"");
    for (const DWORD length : {260UL, 261UL, 1000UL})
    {
        g_calls.temporaryLength = length;  // with that length nothing is stored
        ExpectFailureBeforeTheImport();
        EXPECT_EQ(g_calls.path, L"");
    }
}

TEST_F(CodepageFileCalls, APathOf259CharactersIsUsed)
{
    const std::wstring deep = FolderForPathOf(259);
    fs::create_directories(deep);
    AnswerTemporary(deep);
    EXPECT_EQ(ImportCodepageIdt(database, 1252), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(g_calls.path, deep + FileName());
    EXPECT_EQ(installer.Calls(), std::vector<std::wstring>{L"MsiDatabaseImportW " + deep + L" " + FileName()});
}

TEST_F(CodepageFileCalls, APathOf260CharactersFailsAndMakesNoFile)
{
    const std::wstring deep = FolderForPathOf(260);
    AnswerTemporary(deep);
    EXPECT_EQ(ImportCodepageIdt(database, 1252), static_cast<UINT>(ERROR_FUNCTION_FAILED));
    EXPECT_EQ(g_calls.path, L"");
    EXPECT_TRUE(installer.Calls().empty());
}

}  // namespace
