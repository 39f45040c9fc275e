// Loading a module's resource library and finding one that is loaded.
#include "arvmui.h"
#include "support/busy_blocks.h"
#include "support/error_boxes.h"
#include "support/module_path.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cwchar>
#include <fstream>

namespace
{

using arvmui_test::ErrorBoxes;
using arvmui_test::FunctionPatch;
using arvmui_test::ImportPatch;
using arvmui_test::LibraryUnderTest;
using arvmui_test::LoadedModule;
using arvmui_test::ModulePath;
using testing::ElementsAre;
using testing::IsEmpty;

HMODULE NotWritten()
{
    return reinterpret_cast<HMODULE>(static_cast<ULONG_PTR>(0x5A5A0000));
}

// A module whose folder and name hold placeholders, as any name may.
class ResourceLibraries : public testing::Test
{
protected:
    ResourceLibraries() : module(folder.Path() / L"100%s off%n" / L"a%sb64.dll")
    {
        for (auto& hint : ARVMUI_GetDescriptor()->LocaleHintTable) hint[0] = L'\0';
    }

    std::filesystem::path Root() const { return folder.Path() / L"100%s off%n"; }
    std::filesystem::path File(const std::wstring& locale, const std::wstring& name = L"a%sb64UI.DLL") const
    {
        return Root() / L"resource" / locale / name;
    }
    void Add(const std::wstring& locale, const std::wstring& name = L"a%sb64UI.DLL") const
    {
        arvmui_test::WriteResourceImage(File(locale, name), {{1, locale}});
    }

    // Which library was found, by the folder that its path names; empty for none.
    static std::wstring FolderOf(HMODULE library)
    {
        if (!library) return L"";
        wchar_t path[MAX_PATH] = {};
        ::GetModuleFileNameW(library, path, MAX_PATH);
        return std::filesystem::path(path).parent_path().filename().wstring();
    }

    static std::wstring TagOf(HMODULE library)
    {
        wchar_t tag[64] = {};
        ARVMUI_GetLocaleW(library, tag, 64);
        return tag;
    }

    // Loads, checks what belongs to every success, and frees.
    std::wstring LoadedFor(const wchar_t* locales, const wchar_t* fileName = nullptr) const
    {
        HMODULE library = NotWritten();
        const BOOL loaded = ARVMUI_LoadResourceLibraryW(module.Get(), fileName, locales, &library);
        EXPECT_EQ(loaded != FALSE, library != nullptr);
        if (!library) return L"";
        const std::wstring tag = TagOf(library);
        ::FreeLibrary(library);
        return tag;
    }

    arvmui_test::TemporaryFolder folder;
    LoadedModule module;
    ErrorBoxes boxes;
};

// ---- Loading -------------------------------------------------------------------------------------------------

TEST_F(ResourceLibraries, FirstLocaleOfTheListThatExistsIsLoaded)
{
    Add(L"de");
    Add(L"ja-JP");
    EXPECT_EQ(LoadedFor(L"de,ja-JP"), L"de");
    EXPECT_EQ(LoadedFor(L"ja-JP,de"), L"ja-JP");
    EXPECT_EQ(LoadedFor(L"fr,de-AT,ja-JP"), L"de");
    EXPECT_THAT(boxes.Texts(), IsEmpty());
}

TEST_F(ResourceLibraries, LocalesMayBeAnIdentifierOrTheProcesssList)
{
    Add(L"de");
    Add(L"ja-JP");
    EXPECT_EQ(LoadedFor(reinterpret_cast<const wchar_t*>(static_cast<ULONG_PTR>(0x0411))), L"ja-JP");
    EXPECT_EQ(LoadedFor(L"0x0407"), L"de");
    wcscpy_s(ARVMUI_GetDescriptor()->LocaleHintTable[HINT_COMMAND_LINE], L"fr,ja-JP");
    EXPECT_EQ(LoadedFor(nullptr), L"ja-JP");
}

TEST_F(ResourceLibraries, LastPlacesAreEnglishTheModulesFolderAndEnglishBesideTheResources)
{
    arvmui_test::WriteResourceImage(Root() / L"en" / L"a%sb64UI.DLL", {{1, L"beside"}});
    std::filesystem::create_directories(Root() / L"resource");
    EXPECT_EQ(LoadedFor(L"fr"), L"beside");
    arvmui_test::WriteResourceImage(Root() / L"a%sb64UI.DLL", {{1, L"module"}});
    EXPECT_EQ(LoadedFor(L"fr"), L"module");
    Add(L"en");
    EXPECT_EQ(LoadedFor(L"fr"), L"en");
}

TEST_F(ResourceLibraries, ExplicitFileNameReplacesTheDerivedOne)
{
    Add(L"de");
    Add(L"fr", L"%s texts%d.dll");
    EXPECT_EQ(LoadedFor(L"de,fr", L"%s texts%d.dll"), L"fr");
}

TEST_F(ResourceLibraries, FileThatIsNoLibraryIsPassedOver)
{
    std::filesystem::create_directories(File(L"fr").parent_path());
    std::ofstream(File(L"fr")) << "no library";
    std::filesystem::create_directories(File(L"it"));
    Add(L"de");
    EXPECT_EQ(LoadedFor(L"fr,it,de"), L"de");
}

TEST_F(ResourceLibraries, CallerOwnsOneReference)
{
    Add(L"de");
    HMODULE library = nullptr;
    ASSERT_TRUE(ARVMUI_LoadResourceLibraryW(module.Get(), nullptr, L"de", &library));
    EXPECT_EQ(::GetModuleHandleW(File(L"de").c_str()), library);
    EXPECT_TRUE(::FreeLibrary(library));
    EXPECT_EQ(::GetModuleHandleW(File(L"de").c_str()), nullptr);
}

TEST_F(ResourceLibraries, LoadWithoutPlaceForTheHandleLoadsAllTheSame)
{
    Add(L"de");
    EXPECT_TRUE(ARVMUI_LoadResourceLibraryW(module.Get(), nullptr, L"de", nullptr));
    const HMODULE library = ::GetModuleHandleW(File(L"de").c_str());
    EXPECT_NE(library, nullptr);
    ::FreeLibrary(library);
    EXPECT_FALSE(ARVMUI_LoadResourceLibraryW(module.Get(), L"missing.dll", L"de", nullptr));
}

TEST_F(ResourceLibraries, MissingLibraryIsReported)
{
    HMODULE library = NotWritten();
    ::SetLastError(0);
    EXPECT_FALSE(ARVMUI_LoadResourceLibraryW(module.Get(), nullptr, L"de", &library));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_EQ(library, nullptr);
    EXPECT_FALSE(ARVMUI_LoadResourceLibraryW(module.Get(), L"%n.dll", L"de", &library));
    EXPECT_THAT(boxes.Texts(), ElementsAre(L"903:a%sb64UI.DLL:126", L"903:%n.dll:126"));
}

TEST_F(ResourceLibraries, IdentifierWithoutTagFindsNothing)
{
    Add(L"en");
    EXPECT_EQ(LoadedFor(reinterpret_cast<const wchar_t*>(static_cast<ULONG_PTR>(0x0066))), L"");
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
}

TEST_F(ResourceLibraries, NothingIsReportedWhilePopupsAreOff)
{
    ARVMUI_SetMessagePopup(FALSE, nullptr);
    EXPECT_FALSE(ARVMUI_LoadResourceLibraryW(module.Get(), nullptr, L"de", nullptr));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_FALSE(ARVMUI_GetResourceHandleW(module.Get(), nullptr, L"de", nullptr));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_THAT(boxes.Texts(), IsEmpty());
}

TEST_F(ResourceLibraries, PathOf259CharactersIsTheLongest)
{
    const std::wstring resources = (Root() / L"resource").wstring();
    std::filesystem::create_directories(resources);
    const std::wstring name = L"\\a%sb64UI.DLL";
    // Cut off at 259, the path of 263 would lose its extension only, which the system would add again.
    for (const size_t length : {size_t{259}, size_t{260}, size_t{263}})
    {
        const std::wstring locale(length - resources.size() - 1 - name.size(), L'l');
        const std::wstring place = resources + L"\\" + locale;
        ASSERT_TRUE(::CreateDirectoryW(arvmui_test::LongPath(place).c_str(), nullptr));
        arvmui_test::WriteResourceImageAtLongPath(place + name, {{1, L"long"}});
        EXPECT_EQ(LoadedFor(locale.c_str()), length == 259 ? L"long" : L"");
        ::DeleteFileW(arvmui_test::LongPath(place + name).c_str());
        ::RemoveDirectoryW(arvmui_test::LongPath(place).c_str());
    }
}

// ---- Finding what is loaded -------------------------------------------------------------------------------------

TEST_F(ResourceLibraries, HandleOfALoadedLibraryIsFoundWithoutAReference)
{
    Add(L"de");
    Add(L"fr");
    HMODULE loaded = nullptr;
    ASSERT_TRUE(ARVMUI_LoadResourceLibraryW(module.Get(), nullptr, L"de", &loaded));
    HMODULE found = NotWritten();
    EXPECT_TRUE(ARVMUI_GetResourceHandleW(module.Get(), nullptr, L"fr,de", &found));
    EXPECT_EQ(found, loaded);
    EXPECT_TRUE(ARVMUI_GetResourceHandleW(module.Get(), nullptr, L"de", nullptr));
    ::FreeLibrary(loaded);
    EXPECT_EQ(::GetModuleHandleW(File(L"de").c_str()), nullptr);
}

TEST_F(ResourceLibraries, HandleOfALibraryThatIsNotLoadedIsReportedMissing)
{
    Add(L"de");
    HMODULE found = NotWritten();
    EXPECT_FALSE(ARVMUI_GetResourceHandleW(module.Get(), nullptr, L"de", &found));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(::GetModuleHandleW(File(L"de").c_str()), nullptr);
    EXPECT_FALSE(ARVMUI_GetResourceHandleW(module.Get(), L"%s.dll", L"de", nullptr));
    EXPECT_THAT(boxes.Texts(), ElementsAre(L"904:a%sb64UI.DLL:126", L"904:%s.dll:126"));
}

TEST_F(ResourceLibraries, HandleUnderAnExplicitFileName)
{
    const LoadedModule texts(File(L"de", L"texts.dll"));
    HMODULE found = nullptr;
    EXPECT_TRUE(ARVMUI_GetResourceHandleW(module.Get(), L"texts.dll", L"de", &found));
    EXPECT_EQ(found, texts.Get());
}

// ---- Failures before and instead of the search -------------------------------------------------------------------

DWORD ARVMUI_CALL Refuse(const wchar_t*, ARVMUI_LocaleCallbackW callback, void* context)
{
    return callback(nullptr, context);
}

TEST_F(ResourceLibraries, RefusalIsReportedAsCancelled)
{
    Add(L"de");
    HMODULE library = NotWritten();
    DWORD loadError = 0;
    DWORD handleError = 0;
    {
        const FunctionPatch refused(reinterpret_cast<void*>(ARVMUI_EnumLocalesW), reinterpret_cast<void*>(Refuse));
        EXPECT_FALSE(ARVMUI_LoadResourceLibraryW(module.Get(), nullptr, L"ask", &library));
        loadError = ::GetLastError();
        EXPECT_EQ(library, nullptr);
        library = NotWritten();
        EXPECT_FALSE(ARVMUI_GetResourceHandleW(module.Get(), nullptr, L"ask", &library));
        handleError = ::GetLastError();
        EXPECT_EQ(library, nullptr);
    }
    EXPECT_EQ(loadError, static_cast<DWORD>(ERROR_CANCELLED));
    EXPECT_EQ(handleError, static_cast<DWORD>(ERROR_CANCELLED));
    EXPECT_THAT(boxes.Texts(), ElementsAre(L"903:a%sb64UI.DLL:1223", L"904:a%sb64UI.DLL:1223"));
}

struct Failure
{
    BOOL result;
    DWORD error;
    HMODULE library;
    bool operator==(const Failure&) const = default;
};

template <typename Function>
Failure Call(Function function, HMODULE module)
{
    Failure failure = {TRUE, 0, NotWritten()};
    ::SetLastError(0);
    failure.result = function(module, nullptr, nullptr, &failure.library);
    failure.error = ::GetLastError();
    return failure;
}

TEST_F(ResourceLibraries, FormatThatCannotBeBuiltIsReported)
{
    const HMODULE none = reinterpret_cast<HMODULE>(static_cast<ULONG_PTR>(0x12340000));
    const Failure unknown = {FALSE, ERROR_MOD_NOT_FOUND, nullptr};
    EXPECT_EQ(Call(ARVMUI_LoadResourceLibraryW, none), unknown);
    EXPECT_EQ(Call(ARVMUI_GetResourceHandleW, none), unknown);
    EXPECT_THAT(boxes.Texts(), ElementsAre(L"902:126", L"902:126"));

    const ModulePath path(L"C:\\" + std::wstring(240, L'f') + L"\\module.dll");
    const Failure tooLong = {FALSE, ERROR_BUFFER_OVERFLOW, nullptr};
    EXPECT_EQ(Call(ARVMUI_LoadResourceLibraryW, module.Get()), tooLong);
    EXPECT_EQ(Call(ARVMUI_GetResourceHandleW, module.Get()), tooLong);
}

TEST_F(ResourceLibraries, ModuleWithoutFolderIsRefused)
{
    const ModulePath path(L"module.dll");
    const Failure badPath = {FALSE, ERROR_BAD_PATHNAME, nullptr};
    EXPECT_EQ(Call(ARVMUI_LoadResourceLibraryW, module.Get()), badPath);
    EXPECT_EQ(Call(ARVMUI_GetResourceHandleW, module.Get()), badPath);
}

// ---- The narrow forms ----------------------------------------------------------------------------------------------

TEST_F(ResourceLibraries, NarrowFormsLoadAndFindTheSame)
{
    Add(L"de");
    Add(L"fr", L"texts.dll");
    HMODULE german = nullptr;
    HMODULE french = nullptr;
    ASSERT_TRUE(ARVMUI_LoadResourceLibraryA(module.Get(), nullptr, "it,de-AT", &german));
    ASSERT_TRUE(ARVMUI_LoadResourceLibraryA(module.Get(), "texts.dll", "de,fr", &french));
    EXPECT_EQ(FolderOf(german), L"de");
    EXPECT_EQ(FolderOf(french), L"fr");
    HMODULE found = nullptr;
    EXPECT_TRUE(ARVMUI_GetResourceHandleA(module.Get(), nullptr, "fr,de", &found));
    EXPECT_EQ(found, german);
    EXPECT_TRUE(ARVMUI_GetResourceHandleA(module.Get(), "texts.dll", "de,fr", &found));
    EXPECT_EQ(found, french);
    ::FreeLibrary(german);
    ::FreeLibrary(french);
}

TEST_F(ResourceLibraries, NarrowFormsTakeAnIdentifierOrTheProcesssList)
{
    Add(L"de");
    const char* const identifier = reinterpret_cast<const char*>(static_cast<ULONG_PTR>(0x0407));
    HMODULE library = nullptr;
    ASSERT_TRUE(ARVMUI_LoadResourceLibraryA(module.Get(), nullptr, identifier, &library));
    HMODULE found = nullptr;
    EXPECT_TRUE(ARVMUI_GetResourceHandleA(module.Get(), nullptr, identifier, &found));
    EXPECT_EQ(found, library);
    wcscpy_s(ARVMUI_GetDescriptor()->LocaleHintTable[HINT_COMMAND_LINE], L"de");
    found = nullptr;
    EXPECT_TRUE(ARVMUI_GetResourceHandleA(module.Get(), nullptr, nullptr, &found));
    EXPECT_EQ(found, library);
    ::FreeLibrary(library);
}

TEST_F(ResourceLibraries, NarrowFormsFailAsTheWideOnesDo)
{
    HMODULE library = NotWritten();
    EXPECT_FALSE(ARVMUI_LoadResourceLibraryA(module.Get(), nullptr, "de", &library));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_EQ(library, nullptr);
    library = NotWritten();
    EXPECT_FALSE(ARVMUI_GetResourceHandleA(module.Get(), "texts%s.dll", "de", &library));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_EQ(library, nullptr);
    EXPECT_THAT(boxes.Texts(), ElementsAre(L"903:a%sb64UI.DLL:126", L"904:texts%s.dll:126"));
}

int WINAPI ConvertAllButQuestionMark(UINT codePage, DWORD flags, const char* text, int length, wchar_t* wide, int size)
{
    if (text[0] == '?') return 0;
    return ::MultiByteToWideChar(codePage, flags, text, length, wide, size);
}

TEST_F(ResourceLibraries, NarrowTextThatCannotBeConvertedFailsWithoutAnAnswer)
{
    Add(L"de");
    const LoadedModule loaded(File(L"fr"));
    const ImportPatch patch(LibraryUnderTest(), "MultiByteToWideChar", &ConvertAllButQuestionMark);
    HMODULE library = NotWritten();
    EXPECT_FALSE(ARVMUI_LoadResourceLibraryA(module.Get(), "?", "de", &library));
    EXPECT_FALSE(ARVMUI_LoadResourceLibraryA(module.Get(), nullptr, "?", &library));
    EXPECT_FALSE(ARVMUI_GetResourceHandleA(module.Get(), "?", "fr", &library));
    EXPECT_FALSE(ARVMUI_GetResourceHandleA(module.Get(), nullptr, "?", &library));
    EXPECT_EQ(library, NotWritten());
    EXPECT_THAT(boxes.Texts(), IsEmpty());
}

TEST_F(ResourceLibraries, NarrowFormsLeaveNoMemoryBehind)
{
    ARVMUI_SetMessagePopup(FALSE, nullptr);
    ARVMUI_LoadResourceLibraryA(module.Get(), "texts.dll", "de", nullptr);
    ARVMUI_GetResourceHandleA(module.Get(), "texts.dll", "de", nullptr);
    const size_t before = arvmui_test::CountBusyBlocks();
    ARVMUI_LoadResourceLibraryA(module.Get(), "texts.dll", "de", nullptr);
    ARVMUI_GetResourceHandleA(module.Get(), "texts.dll", "de", nullptr);
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

}  // namespace
