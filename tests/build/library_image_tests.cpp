// What the built DLL exports, imports and declares about itself.

#include "build/portable_executable.h"
#include "build/version_information.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <string>

using arvmui::test::PortableExecutable;
using arvmui::test::ReadVersionInformation;
using arvmui::test::VersionInformation;

namespace
{
constexpr wchar_t kLibraryFile[] = ARVMUI_LIBRARY_FILE;
constexpr char kDefinitionFile[] = ARVMUI_DEFINITION_FILE;
constexpr char kVersion[] = ARVMUI_VERSION;

// The names after EXPORTS in a module definition file.
std::set<std::string> ReadDefinedExports(const char* file)
{
    std::set<std::string> names;
    std::ifstream stream(file);
    bool inExports = false;
    for (std::string line; std::getline(stream, line);)
    {
        line.erase(std::min(line.find(';'), line.size()));
        const std::size_t begin = line.find_first_not_of(" \t\r");
        if (begin == std::string::npos) continue;
        const std::string word = line.substr(begin, line.find_first_of(" \t\r=", begin) - begin);
        if (word == "EXPORTS")
            inExports = true;
        else if (inExports)
            names.insert(word);
    }
    return names;
}

bool IsAllowedDll(const std::string& name)
{
    static const std::set<std::string> allowed{
        "KERNEL32.DLL", "USER32.DLL", "GDI32.DLL", "ADVAPI32.DLL", "SHELL32.DLL", "MSVCRT.DLL", "UCRTBASE.DLL"};
    return allowed.contains(name) || name.starts_with("API-MS-WIN-CRT-");
}

std::wstring Widen(const std::string& text)
{
    return std::wstring(text.begin(), text.end());
}
}  // namespace

TEST(LibraryImage, ExportsWhatTheDefinitionFileLists)
{
    const std::set<std::string> defined = ReadDefinedExports(kDefinitionFile);
    ASSERT_FALSE(defined.empty());
    EXPECT_EQ(PortableExecutable(kLibraryFile).Exports(), defined);
}

TEST(LibraryImage, ImportsSystemDllsOnly)
{
    const std::set<std::string> imported = PortableExecutable(kLibraryFile).ImportedDlls();
    EXPECT_TRUE(imported.contains("KERNEL32.DLL"));
    for (const std::string& name : imported) EXPECT_TRUE(IsAllowedDll(name)) << name;
}

TEST(LibraryImage, LoadsAtRandomAddressesAndRunsNoData)
{
    const PortableExecutable library(kLibraryFile);
    EXPECT_TRUE(library.IsDll());
    EXPECT_TRUE(library.DllCharacteristics() & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE);
    EXPECT_TRUE(library.DllCharacteristics() & IMAGE_DLLCHARACTERISTICS_NX_COMPAT);
    EXPECT_TRUE(library.DllCharacteristics() & IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA);
    // Without relocations the loader could not move the DLL, whatever the flags promise.
    EXPECT_TRUE(library.IsMovable());
    EXPECT_NE(library.FindSection(".reloc"), nullptr);
    EXPECT_TRUE(library.HasDirectory(IMAGE_DIRECTORY_ENTRY_BASERELOC));
}

TEST(LibraryImage, NoSectionIsWritableAndExecutable)
{
    const PortableExecutable library(kLibraryFile);
    for (const IMAGE_SECTION_HEADER& section : library.Sections())
    {
        const bool writable = (section.Characteristics & IMAGE_SCN_MEM_WRITE) != 0;
        const bool executable = (section.Characteristics & IMAGE_SCN_MEM_EXECUTE) != 0;
        EXPECT_FALSE(writable && executable) << section.Name;
    }
}

TEST(LibraryImage, VersionInformationNamesTheProjectsVersion)
{
    const VersionInformation version = ReadVersionInformation(kLibraryFile);
    ASSERT_TRUE(version.present);
    const std::string number = std::to_string(HIWORD(version.fixed.dwFileVersionMS)) + "."
                               + std::to_string(LOWORD(version.fixed.dwFileVersionMS)) + "."
                               + std::to_string(HIWORD(version.fixed.dwFileVersionLS));
    EXPECT_EQ(number, kVersion);
    EXPECT_EQ(version.fixed.dwFileType, DWORD{VFT_DLL});
    EXPECT_EQ(version.texts.size(), 7u);
    for (const wchar_t* name : {L"FileVersion", L"ProductVersion"})
    {
        const auto text = version.texts.find(name);
        ASSERT_NE(text, version.texts.end()) << name;
        EXPECT_EQ(text->second, Widen(kVersion));
    }
    const auto original = version.texts.find(L"OriginalFilename");
    ASSERT_NE(original, version.texts.end());
    EXPECT_EQ(original->second, L"arvmui64.dll");
}

#ifdef NDEBUG  // other builds carry symbols and checks
TEST(LibraryImage, StaysSmall)
{
    EXPECT_LT(PortableExecutable(kLibraryFile).FileSize(), 128u * 1024u);
}
#endif
