// Resource libraries hold resources and nothing else.

#include "build/portable_executable.h"
#include "build/version_information.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

using arvmui::test::PortableExecutable;
using arvmui::test::ReadVersionInformation;

namespace
{
constexpr wchar_t kResourceFolder[] = ARVMUI_RESOURCE_FOLDER;
constexpr std::ptrdiff_t kTranslationCount = ARVMUI_TRANSLATION_COUNT;

std::vector<std::filesystem::path> ResourceLibraries()
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kResourceFolder))
        // Text files may lie beside the libraries.
        if (entry.is_regular_file() && entry.path().extension() != L".txt") files.push_back(entry.path());
    return files;
}

// The languages of all resources in a file by resource type.
using LanguagesByType = std::map<WORD, std::set<WORD>>;

BOOL CALLBACK AddLanguage(HMODULE, LPCWSTR type, LPCWSTR, WORD language, LONG_PTR languages)
{
    (*reinterpret_cast<LanguagesByType*>(languages))[LOWORD(reinterpret_cast<ULONG_PTR>(type))].insert(language);
    return TRUE;
}

BOOL CALLBACK AddLanguagesOfName(HMODULE module, LPCWSTR type, LPWSTR name, LONG_PTR languages)
{
    return ::EnumResourceLanguagesW(module, type, name, AddLanguage, languages);
}

BOOL CALLBACK AddLanguagesOfType(HMODULE module, LPWSTR type, LONG_PTR languages)
{
    return ::EnumResourceNamesW(module, type, AddLanguagesOfName, languages);
}

LanguagesByType ReadLanguages(const std::filesystem::path& file)
{
    LanguagesByType languages;
    const HMODULE module = ::LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (module == nullptr) return languages;
    ::EnumResourceTypesW(module, AddLanguagesOfType, reinterpret_cast<LONG_PTR>(&languages));
    ::FreeLibrary(module);
    return languages;
}
}  // namespace

TEST(ResourceImage, EveryTranslationIsBuilt)
{
    const std::vector<std::filesystem::path> files = ResourceLibraries();
    EXPECT_GT(kTranslationCount, 0);
    EXPECT_EQ(std::count_if(files.begin(), files.end(),
                  [](const std::filesystem::path& file) { return file.filename() == L"arvmuiUI.DLL"; }),
        kTranslationCount);
}

TEST(ResourceImage, HasNoEntryPoint)
{
    for (const std::filesystem::path& file : ResourceLibraries())
    {
        const PortableExecutable library(file.wstring());
        EXPECT_TRUE(library.IsDll()) << file;
        EXPECT_EQ(library.EntryPoint(), 0u) << file;
    }
}

TEST(ResourceImage, HasNoImportsAndNoExports)
{
    for (const std::filesystem::path& file : ResourceLibraries())
    {
        const PortableExecutable library(file.wstring());
        EXPECT_TRUE(library.ImportedDlls().empty()) << file;
        EXPECT_TRUE(library.Exports().empty()) << file;
    }
}

TEST(ResourceImage, HasNoCode)
{
    for (const std::filesystem::path& file : ResourceLibraries())
    {
        const PortableExecutable library(file.wstring());
        for (const IMAGE_SECTION_HEADER& section : library.Sections())
            EXPECT_FALSE(section.Characteristics & (IMAGE_SCN_CNT_CODE | IMAGE_SCN_MEM_EXECUTE)) << file;
    }
}

// All of them are linked for the same address, and a process may load several.
TEST(ResourceImage, IsMovable)
{
    for (const std::filesystem::path& file : ResourceLibraries())
        EXPECT_TRUE(PortableExecutable(file.wstring()).IsMovable()) << file;
}

// The folder says which language a file speaks: whatever language Windows prefers, it finds the texts.
TEST(ResourceImage, ResourcesAreLanguageNeutral)
{
    const std::set<WORD> neutral{MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL)};
    for (const std::filesystem::path& file : ResourceLibraries())
    {
        const LanguagesByType languages = ReadLanguages(file);
        EXPECT_TRUE(languages.contains(LOWORD(reinterpret_cast<ULONG_PTR>(RT_STRING)))) << file;
        for (const auto& [type, found] : languages) EXPECT_EQ(found, neutral) << file << " type " << type;
    }
}

TEST(ResourceImage, HasVersionInformation)
{
    for (const std::filesystem::path& file : ResourceLibraries())
    {
        const auto version = ReadVersionInformation(file.wstring());
        EXPECT_TRUE(version.present) << file;
        EXPECT_EQ(version.fixed.dwFileType, DWORD{VFT_DLL}) << file;
        const auto original = version.texts.find(L"OriginalFilename");
        ASSERT_NE(original, version.texts.end()) << file;
        EXPECT_EQ(original->second, file.filename().wstring());
    }
}
