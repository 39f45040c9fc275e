// The array of installed locales, over real folders beside a module that stands for the library.
#include "locale/installed_locales.h"

#include "resources/process_state.h"
#include "support/busy_blocks.h"
#include "support/module_patch.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <vector>

namespace
{

using namespace arvmui;
using arvmui_test::LoadedModule;
using arvmui_test::Strings;

constexpr wchar_t kModule[] = L"100%s off\\a%nb64.dll";
constexpr wchar_t kResourceFile[] = L"a%nb64UI.DLL";

Strings Complete(const std::wstring& tag, const std::wstring& language)
{
    return {{1, tag}, {2, language}, {3, L"English " + tag}, {4, L"Native " + tag}, {210, L"Title " + tag},
        {211, L"Text " + tag}, {101, L"OK " + tag}, {102, L"Cancel " + tag}};
}

Strings Without(Strings strings, unsigned id)
{
    strings.erase(id);
    return strings;
}

// The library's folder with its name, its resource folder and the process's resource library.
class InstalledLocales : public testing::Test
{
protected:
    InstalledLocales() : module(folder.Path() / kModule)
    {
        Descriptor().module = module.Get();
        Descriptor().resourceLibrary = nullptr;
    }
    ~InstalledLocales() override
    {
        Descriptor().module = nullptr;
        Descriptor().resourceLibrary = nullptr;
        ARVMUI_free(entries);
    }

    std::filesystem::path Root() const { return (folder.Path() / kModule).parent_path(); }
    std::filesystem::path File(const std::wstring& locale) const
    {
        return Root() / L"resource" / locale / kResourceFile;
    }
    void Add(const std::wstring& locale, const Strings& strings) const
    {
        arvmui_test::WriteResourceImage(File(locale), strings);
    }

    BOOL Enumerate(size_t bytes)
    {
        elementBytes = bytes;
        return EnumInstalledLocales(bytes, &entries, &count);
    }

    // An element as a whole record; what the element does not hold is zero.
    LocaleEntry Entry(DWORD index) const
    {
        LocaleEntry entry = {};
        std::memcpy(&entry, static_cast<const BYTE*>(entries) + index * elementBytes, elementBytes);
        return entry;
    }

    std::vector<std::wstring> Tags() const
    {
        std::vector<std::wstring> tags;
        for (DWORD i = 0; i < count; ++i) tags.emplace_back(Entry(i).Locale);
        return tags;
    }

    arvmui_test::TemporaryFolder folder;
    LoadedModule module;
    size_t elementBytes = 0;
    void* entries = nullptr;
    DWORD count = 0;
};

using Tag = std::vector<std::wstring>;

// ---- What an element holds ---------------------------------------------------------------------------

struct ElementCase
{
    const char* name;
    size_t bytes;
    unsigned fields;  // that fit, in the order of the record
};

void PrintTo(const ElementCase& value, std::ostream* out)
{
    *out << value.name;
}

class InstalledLocaleElement : public InstalledLocales, public testing::WithParamInterface<ElementCase>
{
};

TEST_P(InstalledLocaleElement, HoldsTheFieldsThatFit)
{
    Add(L"one", Complete(L"de-DE", L"0x0407"));
    Add(L"two", Complete(L"fr-FR", L"1036"));
    ASSERT_TRUE(Enumerate(GetParam().bytes));
    ASSERT_EQ(count, 2u);

    for (DWORD i = 0; i < 2; ++i)
    {
        const LocaleEntry entry = Entry(i);
        const std::wstring tag = i == 0 ? L"de-DE" : L"fr-FR";
        const auto expected = [&](unsigned field, const wchar_t* prefix)
        { return GetParam().fields >= field ? prefix + tag : std::wstring(); };
        EXPECT_EQ(entry.LangID, i == 0 ? 0x0407 : 0x040C);
        EXPECT_EQ(entry.Locale, expected(2, L""));
        EXPECT_EQ(entry.LocaleLength, GetParam().fields >= 3 ? 5u : 0u);
        EXPECT_EQ(entry.EnglishName, expected(4, L"English "));
        EXPECT_EQ(entry.NativeName, expected(5, L"Native "));
        EXPECT_EQ(entry.LanguageSelectionTitle, expected(6, L"Title "));
        EXPECT_EQ(entry.LanguageSelectionDesc, expected(7, L"Text "));
        EXPECT_EQ(entry.OK, expected(8, L"OK "));
        EXPECT_EQ(entry.Cancel, expected(9, L"Cancel "));
    }
}

// 392 bytes are left to the tests of the keywords.
INSTANTIATE_TEST_SUITE_P(Sizes, InstalledLocaleElement,
    testing::Values(ElementCase{"LanguageOnly", 2, 1}, ElementCase{"OneByteTooFewForTheTag", 129, 1},
        ElementCase{"Tag", 130, 2}, ElementCase{"OneByteTooFewForTheTagsLength", 135, 2},
        ElementCase{"TagsLength", 136, 3}, ElementCase{"OneByteTooFewForTheEnglishName", 263, 3},
        ElementCase{"EnglishName", 264, 4}, ElementCase{"OneByteTooFewForTheNativeName", 391, 4},
        ElementCase{"NativeNameAndMore", 393, 5}, ElementCase{"OneByteTooFewForTheTitle", 903, 5},
        ElementCase{"Title", 904, 6}, ElementCase{"OneByteTooFewForTheText", 1415, 6}, ElementCase{"Text", 1416, 7},
        ElementCase{"OneByteTooFewForOK", 1479, 7}, ElementCase{"OK", 1480, 8},
        ElementCase{"OneByteTooFewForCancel", 1543, 8}, ElementCase{"Whole", 1544, 9}),
    [](const testing::TestParamInfo<ElementCase>& parameter) { return std::string(parameter.param.name); });

TEST_F(InstalledLocales, TextsAreCutAtTheirFields)
{
    const std::wstring text(300, L'x');
    Add(L"de", {{1, text}, {2, L"7"}, {3, text}, {4, text}, {210, text}, {211, text}, {101, text}, {102, text}});
    ASSERT_TRUE(Enumerate(kFullEntryBytes));
    ASSERT_EQ(count, 1u);
    const LocaleEntry entry = Entry(0);
    EXPECT_EQ(entry.Locale, text.substr(0, 63));
    EXPECT_EQ(entry.LocaleLength, 63u);
    EXPECT_EQ(entry.EnglishName, text.substr(0, 63));
    EXPECT_EQ(entry.NativeName, text.substr(0, 63));
    EXPECT_EQ(entry.LanguageSelectionTitle, text.substr(0, 255));
    EXPECT_EQ(entry.LanguageSelectionDesc, text.substr(0, 255));
    EXPECT_EQ(entry.OK, text.substr(0, 31));
    EXPECT_EQ(entry.Cancel, text.substr(0, 31));
}

TEST_F(InstalledLocales, StringsOfFieldsThatDoNotFitMayBeMissing)
{
    Add(L"de", {{1, L"de"}, {2, L"7"}});
    ASSERT_TRUE(Enumerate(130));
    EXPECT_EQ(Tags(), Tag({L"de"}));
}

// ---- Order ---------------------------------------------------------------------------------------------

TEST_F(InstalledLocales, AreOrderedByLanguageThenCountry)
{
    Add(L"a", Complete(L"fr-CA", L"0x0C0C"));
    Add(L"b", Complete(L"de-CH", L"0x0807"));
    Add(L"c", Complete(L"de-DE", L"0x0407"));
    Add(L"d", Complete(L"ar-SA", L"0x0401"));
    Add(L"e", Complete(L"de", L"0x0007"));
    Add(L"f", Complete(L"fr-FR", L"0x040C"));
    ASSERT_TRUE(Enumerate(kFullEntryBytes));
    EXPECT_EQ(Tags(), Tag({L"ar-SA", L"de", L"de-DE", L"de-CH", L"fr-FR", L"fr-CA"}));
}

TEST_F(InstalledLocales, OfOneLanguageKeepTheOrderOfTheFolders)
{
    for (const wchar_t* const locale : {L"one", L"two", L"three", L"four"}) Add(locale, Complete(locale, L"0x0407"));
    Add(L"zero", Complete(L"ar", L"1"));
    Tag expected;
    const auto collect = [](const wchar_t* name, void* context) -> DWORD
    {
        if (std::wcscmp(name, L"zero") != 0) static_cast<Tag*>(context)->emplace_back(name);
        return 0;
    };
    ARVMUI_EnumResourceFoldersW(module.Get(), collect, &expected);
    ASSERT_EQ(expected.size(), 4u);
    expected.insert(expected.begin(), L"ar");
    ASSERT_TRUE(Enumerate(kFullEntryBytes));
    EXPECT_EQ(Tags(), expected);
}

TEST_F(InstalledLocales, LanguageMayBeWrittenInAnyBase)
{
    Add(L"a", Complete(L"a", L"02007"));
    Add(L"b", Complete(L"b", L"0x10409"));
    Add(L"c", Complete(L"c", L"none"));
    ASSERT_TRUE(Enumerate(kFullEntryBytes));
    ASSERT_EQ(Tags(), Tag({L"c", L"a", L"b"}));
    EXPECT_EQ(Entry(0).LangID, 0);
    EXPECT_EQ(Entry(1).LangID, 1031);
    EXPECT_EQ(Entry(2).LangID, 1033);
}

// ---- Folders that are left out ---------------------------------------------------------------------------

TEST_F(InstalledLocales, FoldersWithoutReadableLibraryAreLeftOut)
{
    Add(L"good", Complete(L"de", L"7"));
    std::filesystem::create_directories(Root() / L"resource" / L"empty");
    Add(L"without language", Without(Complete(L"fr", L"12"), 2));
    std::filesystem::create_directories(File(L"folder"));
    arvmui_test::WriteResourceImage(Root() / L"resource" / kResourceFile, Complete(L"file", L"1"));
    ASSERT_TRUE(Enumerate(kFullEntryBytes));
    EXPECT_EQ(Tags(), Tag({L"de"}));
}

TEST_F(InstalledLocales, FolderWhoseFileNameWouldBeTooLongIsLeftOut)
{
    const std::wstring resources = (Root() / L"resource").wstring();
    const size_t behind = 1 + wcslen(kResourceFile);
    // The longest path of 259 characters, and one of 260.
    const std::wstring fits(259 - resources.size() - 1 - behind, L'f');
    const std::wstring tooLong(260 - resources.size() - 1 - behind, L't');
    std::filesystem::create_directories(resources);
    std::vector<std::wstring> created;
    for (const std::wstring& name : {fits, tooLong})
    {
        const std::wstring locale = resources + L"\\" + name;
        ASSERT_TRUE(::CreateDirectoryW(arvmui_test::LongPath(locale).c_str(), nullptr));
        const std::wstring file = locale + L"\\" + kResourceFile;
        arvmui_test::WriteResourceImageAtLongPath(file, Complete(name.substr(0, 1), L"7"));
        created.push_back(locale);
        // What the path would name if it were cut.
        if (name == tooLong) arvmui_test::WriteResourceImageAtLongPath(file.substr(0, 259), Complete(L"cut", L"7"));
    }
    ASSERT_TRUE(Enumerate(kFullEntryBytes));
    EXPECT_EQ(Tags(), Tag({L"f"}));
    for (const std::wstring& locale : created)
    {
        const std::wstring file = locale + L"\\" + kResourceFile;
        ::DeleteFileW(arvmui_test::LongPath(file).c_str());
        ::DeleteFileW(arvmui_test::LongPath(file.substr(0, 259)).c_str());
        ::RemoveDirectoryW(arvmui_test::LongPath(locale).c_str());
    }
}

TEST_F(InstalledLocales, NoResourceFolderMeansNoEntries)
{
    ASSERT_TRUE(Enumerate(kFullEntryBytes));
    EXPECT_EQ(count, 0u);
}

TEST_F(InstalledLocales, LibrariesAreClosedAgain)
{
    Add(L"de", Complete(L"de", L"7"));
    Add(L"fr", Without(Complete(L"fr", L"12"), 102));
    ASSERT_TRUE(Enumerate(kFullEntryBytes));
    // A file that is in use could not be removed.
    EXPECT_TRUE(::DeleteFileW(File(L"de").c_str()));
    EXPECT_TRUE(::DeleteFileW(File(L"fr").c_str()));
}

// ---- Entries that lack a string ---------------------------------------------------------------------------

TEST_F(InstalledLocales, EntryThatLacksAStringStaysInPlaceOfTheLastOne)
{
    Add(L"1", Complete(L"de", L"0x0007"));
    Add(L"2", Complete(L"it", L"0x0010"));
    Add(L"3", Without(Complete(L"fr", L"0x000C"), 210));
    ASSERT_TRUE(Enumerate(kFullEntryBytes));
    EXPECT_EQ(Tags(), Tag({L"de", L"fr"}));
    const LocaleEntry partial = Entry(1);
    EXPECT_EQ(partial.LangID, 0x000C);
    EXPECT_STREQ(partial.EnglishName, L"English fr");
    EXPECT_STREQ(partial.NativeName, L"Native fr");
    EXPECT_STREQ(partial.LanguageSelectionTitle, L"");
    EXPECT_STREQ(partial.LanguageSelectionDesc, L"");
    EXPECT_STREQ(partial.OK, L"");
    EXPECT_STREQ(partial.Cancel, L"");
}

TEST_F(InstalledLocales, EntryThatLacksAStringAndComesLastIsNotCounted)
{
    Add(L"1", Complete(L"de", L"0x0007"));
    Add(L"2", Without(Complete(L"fr", L"0x000C"), 1));
    ASSERT_TRUE(Enumerate(kFullEntryBytes));
    EXPECT_EQ(Tags(), Tag({L"de"}));
}

TEST_F(InstalledLocales, EntryAfterOneThatLacksAStringTakesThePlaceBehindTheCount)
{
    Add(L"1", Complete(L"it", L"0x0010"));
    Add(L"2", Without(Complete(L"fr", L"0x000C"), 102));
    Add(L"3", Complete(L"ja", L"0x0011"));
    ASSERT_TRUE(Enumerate(kFullEntryBytes));
    EXPECT_EQ(Tags(), Tag({L"fr", L"ja"}));
}

// ---- Keywords ---------------------------------------------------------------------------------------------

Strings WithKeywords(Strings strings, const std::wstring& prefix)
{
    for (unsigned id = 80; id <= 84; ++id) strings[id] = prefix + std::to_wstring(id);
    return strings;
}

class InstalledLocalesWithKeywords : public InstalledLocales
{
protected:
    void ExpectKeywords(DWORD first, LANGID language, const std::wstring& native, const std::wstring& english) const
    {
        static constexpr const wchar_t* kKeywords[] = {L"user", L"system", L"uilang", L"kiv", L"msie"};
        ASSERT_EQ(count, first + 5);
        for (DWORD i = 0; i < 5; ++i)
        {
            const LocaleEntry entry = Entry(first + i);
            const std::wstring number = std::to_wstring(80 + i);
            EXPECT_EQ(entry.LangID, language);
            EXPECT_STREQ(entry.Locale, kKeywords[i]);
            EXPECT_EQ(entry.LocaleLength, wcslen(kKeywords[i]));
            EXPECT_EQ(entry.NativeName, native.empty() ? kKeywords[i] : native + number);
            EXPECT_EQ(entry.EnglishName, english.empty() ? kKeywords[i] : english + number);
        }
    }

    bool IsLoaded(const std::wstring& locale) const { return ::GetModuleHandleW(File(locale).c_str()) != nullptr; }
};

TEST_F(InstalledLocalesWithKeywords, EnglishLibraryOfTheProcessServesForBothNames)
{
    const LoadedModule own(folder.Path() / L"own.dll", WithKeywords({{1, L"en-US"}, {2, L"1033"}}, L"own "));
    Descriptor().resourceLibrary = own.Get();
    Add(L"de", Complete(L"de", L"7"));
    ASSERT_TRUE(Enumerate(kShortEntryBytes));
    ExpectKeywords(1, 1033, L"own ", L"own ");
    EXPECT_STREQ(Entry(0).NativeName, L"Native de");
}

TEST_F(InstalledLocalesWithKeywords, EnglishLibraryIsLoadedForAProcessOfAnotherLanguageAndFreed)
{
    const LoadedModule own(folder.Path() / L"own.dll", WithKeywords({{1, L"de-DE"}, {2, L"0x0407"}}, L"own "));
    Descriptor().resourceLibrary = own.Get();
    Add(L"en", WithKeywords(Complete(L"en-US", L"1033"), L"English "));
    ASSERT_TRUE(Enumerate(kShortEntryBytes));
    ExpectKeywords(1, 0x0407, L"own ", L"English ");
    EXPECT_FALSE(IsLoaded(L"en"));
}

TEST_F(InstalledLocalesWithKeywords, EnglishLibraryStandsInForAMissingOneOfTheProcess)
{
    Add(L"en-US", WithKeywords(Complete(L"en-US", L"1033"), L"English "));
    ASSERT_TRUE(Enumerate(kShortEntryBytes));
    ExpectKeywords(1, 1033, L"English ", L"English ");
    EXPECT_FALSE(IsLoaded(L"en-US"));
}

TEST_F(InstalledLocalesWithKeywords, KeywordItselfStandsInForMissingStrings)
{
    const LoadedModule own(folder.Path() / L"own.dll", {{1, L"de-DE"}, {2, L"0x0407"}});
    Descriptor().resourceLibrary = own.Get();
    Add(L"en", Complete(L"en", L"9"));
    ASSERT_TRUE(Enumerate(kShortEntryBytes));
    ExpectKeywords(1, 0x0407, L"", L"");
}

TEST_F(InstalledLocalesWithKeywords, NamesAreCutAtTheirFields)
{
    const std::wstring name(100, L'n');
    const LoadedModule own(folder.Path() / L"own.dll", {{2, L"1033"}, {80, name}});
    Descriptor().resourceLibrary = own.Get();
    ASSERT_TRUE(Enumerate(kShortEntryBytes));
    ASSERT_EQ(count, 5u);
    EXPECT_EQ(Entry(0).NativeName, name.substr(0, 63));
    EXPECT_EQ(Entry(0).EnglishName, name.substr(0, 63));
}

TEST_F(InstalledLocalesWithKeywords, WithoutEnglishLibraryAllFails)
{
    const LoadedModule own(folder.Path() / L"own.dll", WithKeywords({{2, L"0x0407"}}, L"own "));
    Descriptor().resourceLibrary = own.Get();
    Add(L"de", Complete(L"de", L"7"));
    EXPECT_FALSE(Enumerate(kShortEntryBytes));
    const size_t before = arvmui_test::CountBusyBlocks();
    EXPECT_FALSE(Enumerate(kShortEntryBytes));
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
    EXPECT_EQ(entries, nullptr);
}

TEST_F(InstalledLocalesWithKeywords, OtherElementSizesHaveNone)
{
    const LoadedModule own(folder.Path() / L"own.dll", WithKeywords({{2, L"1033"}}, L"own "));
    Descriptor().resourceLibrary = own.Get();
    Add(L"de", Complete(L"de", L"7"));
    for (const size_t bytes : {size_t{2}, size_t{391}, size_t{393}, size_t{1544}})
    {
        ASSERT_TRUE(Enumerate(bytes));
        EXPECT_EQ(count, 1u);
        ARVMUI_free(entries);
        entries = nullptr;
    }
}

// ---- Failures -----------------------------------------------------------------------------------------------

TEST_F(InstalledLocales, FailWithoutPathOfTheLibrary)
{
    Descriptor().module = reinterpret_cast<HMODULE>(static_cast<ULONG_PTR>(0x12340000));
    EXPECT_FALSE(Enumerate(kFullEntryBytes));
    EXPECT_EQ(entries, nullptr);
}

using Reallocate = void*(WINAPI*)(HANDLE, DWORD, void*, SIZE_T);
Reallocate g_reallocate = nullptr;
SIZE_T g_largestBlock = SIZE_MAX;

void* WINAPI ReallocateSmallBlocks(HANDLE heap, DWORD flags, void* block, SIZE_T bytes)
{
    return bytes > g_largestBlock ? nullptr : g_reallocate(heap, flags, block, bytes);
}

TEST_F(InstalledLocalesWithKeywords, FailWithoutMemoryForTheKeywords)
{
    const LoadedModule own(folder.Path() / L"own.dll", WithKeywords({{2, L"1033"}}, L"own "));
    Descriptor().resourceLibrary = own.Get();
    Add(L"de", Complete(L"de", L"7"));
    const arvmui_test::ImportPatch patch(::GetModuleHandleW(nullptr), "HeapReAlloc", &ReallocateSmallBlocks);
    g_reallocate = patch.Original<Reallocate>();
    g_largestBlock = 2 * kShortEntryBytes;
    EXPECT_FALSE(Enumerate(kShortEntryBytes));
    g_largestBlock = SIZE_MAX;
    EXPECT_TRUE(Enumerate(kShortEntryBytes));
}

}  // namespace
