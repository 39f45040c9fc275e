// Names of resource files and lists of locale folders, in both text widths.
#include "arvmui.h"
#include "support/error_boxes.h"
#include "support/module_path.h"
#include "support/process_resources.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <vector>

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

DWORD ARVMUI_CALL RefuseWide(const wchar_t*, ARVMUI_LocaleCallbackW callback, void* context)
{
    return callback(nullptr, context);
}

DWORD ARVMUI_CALL RefuseNarrow(const char*, ARVMUI_LocaleCallbackA callback, void* context)
{
    return callback(nullptr, context);
}

// ---- The two widths under one name ---------------------------------------------------------------------

struct Wide
{
    using Char = wchar_t;
    static std::wstring From(const std::wstring& text) { return text; }
    static constexpr auto Format = ARVMUI_GetResourceFileFormatW;
    static constexpr auto FileName = ARVMUI_GetResourceFileNameW;
    static constexpr auto EnumFolders = ARVMUI_EnumResourceFoldersW;
    static constexpr const char* kAttributes = "GetFileAttributesW";
    static constexpr const char* kFindFirst = "FindFirstFileW";
    static void* Search() { return reinterpret_cast<void*>(ARVMUI_EnumLocalesW); }
    static void* Refuse() { return reinterpret_cast<void*>(RefuseWide); }
};

struct Narrow
{
    using Char = char;
    static std::string From(const std::wstring& text)
    {
        std::string narrow(text.size() * 2 + 1, '\0');
        const int bytes = ::WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
            static_cast<int>(narrow.size()), nullptr, nullptr);
        narrow.resize(static_cast<size_t>(bytes));
        return narrow;
    }
    static constexpr auto Format = ARVMUI_GetResourceFileFormatA;
    static constexpr auto FileName = ARVMUI_GetResourceFileNameA;
    static constexpr auto EnumFolders = ARVMUI_EnumResourceFoldersA;
    static constexpr const char* kAttributes = "GetFileAttributesA";
    static constexpr const char* kFindFirst = "FindFirstFileA";
    static void* Search() { return reinterpret_cast<void*>(ARVMUI_EnumLocalesA); }
    static void* Refuse() { return reinterpret_cast<void*>(RefuseNarrow); }
};

template <typename Api>
class ResourceFiles : public testing::Test
{
protected:
    using Char = typename Api::Char;
    using Text = std::basic_string<Char>;

    ResourceFiles()
    {
        for (auto& hint : ARVMUI_GetDescriptor()->LocaleHintTable) hint[0] = L'\0';
    }

    // Text of both widths in one test: the narrow form of what a test writes wide.
    static Text T(const std::wstring& text) { return Api::From(text); }

    struct Answer
    {
        DWORD length;
        DWORD error;
        Text text;
        bool operator==(const Answer&) const = default;
    };

    // Calls with a buffer of `capacity` elements and checks that those behind it stay as they are.
    template <typename Function>
    static Answer Ask(DWORD capacity, Function function)
    {
        std::vector<Char> buffer(capacity + 8, Char{'#'});
        ::SetLastError(4711);
        Answer answer = {};
        answer.length = function(buffer.data(), capacity);
        answer.error = ::GetLastError();
        if (capacity != 0) answer.text = buffer.data();
        for (size_t i = capacity; i < buffer.size(); ++i) EXPECT_EQ(buffer[i], Char{'#'});
        if (answer.length != 0)
        {
            EXPECT_EQ(answer.length, answer.text.size());
        }
        return answer;
    }

    static Answer Format(HMODULE module, const std::wstring* fileName, DWORD capacity = 260)
    {
        const Text name = fileName ? T(*fileName) : Text();
        return Ask(capacity, [&](Char* buffer, DWORD size)
            { return Api::Format(module, fileName ? name.c_str() : nullptr, buffer, size); });
    }

    static Answer FileName(
        HMODULE module, const std::wstring& locales, const std::wstring* fileName = nullptr, DWORD capacity = 260)
    {
        const Text name = fileName ? T(*fileName) : Text();
        return Ask(capacity, [&](Char* buffer, DWORD size)
            { return Api::FileName(module, fileName ? name.c_str() : nullptr, T(locales).c_str(), buffer, size); });
    }

    struct Folders
    {
        std::vector<Text> names;
        Text stopAt;
        DWORD result = 0;
    };
    static DWORD ARVMUI_CALLBACK Collect(const Char* name, void* context)
    {
        Folders& folders = *static_cast<Folders*>(context);
        folders.names.emplace_back(name);
        ::SetLastError(4711);
        return folders.stopAt == name ? folders.result : 0;
    }

    static void Touch(const std::filesystem::path& file)
    {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << "text";
    }

    // A module of another name in a folder of its own.
    std::filesystem::path Root(const std::wstring& name) const { return folder.Path() / name; }

    arvmui_test::TemporaryFolder folder;
};

using Widths = testing::Types<Wide, Narrow>;
TYPED_TEST_SUITE(ResourceFiles, Widths);

HMODULE NoModule()
{
    return reinterpret_cast<HMODULE>(static_cast<ULONG_PTR>(0x12340000));
}

// ---- Path format -----------------------------------------------------------------------------------------

struct NameCase
{
    const wchar_t* module;
    const wchar_t* loadedAs;
    const wchar_t* resourceFile;
};

constexpr NameCase kNames[] = {
    {L"ab.dll", L"ab.dll", L"abUI.DLL"},
    {L"sixsix.dll", L"sixsix.dll", L"sixsixUI.DLL"},
    {L"sevenxx.dll", L"sevenxx.dll", L"sevenxUI.DLL"},
    {L"arvmuiext64.dll", L"arvmuiext64.dll", L"arvmuiUI.DLL"},
    {L"a.b.dll", L"a.b.dll", L"a.bUI.DLL"},
    {L"a.b.c.d.e.dll", L"a.b.c.d.e.dll", L"a.b.c.UI.DLL"},
    {L"module.other", L"module.other", L"moduleUI.DLL"},
    {L"plain", L"plain.", L"plainUI.DLL"},
    {L"plainmodule", L"plainmodule.", L"plainmUI.DLL"},
    {L"a%sb.dll", L"a%sb.dll", L"a%sbUI.DLL"},
    {L"%n%n%n%n.dll", L"%n%n%n%n.dll", L"%n%n%nUI.DLL"},
};

TYPED_TEST(ResourceFiles, FormatIsDerivedFromTheModulesPath)
{
    for (const wchar_t* const place : {L"folder", L"100%s off", L"a folder.with dots"})
    {
        for (const NameCase& name : kNames)
        {
            const std::filesystem::path root = this->Root(place);
            const LoadedModule module(root / name.module, {}, root / name.loadedAs);
            EXPECT_EQ(this->Format(module.Get(), nullptr).text,
                this->T(root.wstring() + L"\\resource\\%s\\" + name.resourceFile));
        }
    }
}

TYPED_TEST(ResourceFiles, FormatTakesAnExplicitFileName)
{
    const LoadedModule module(this->Root(L"100%s off") / L"module.dll");
    for (const std::wstring name : {L"texts", L"texts.for.all.txt", L"%s%n.dll", L""})
    {
        EXPECT_EQ(this->Format(module.Get(), &name).text,
            this->T(this->Root(L"100%s off").wstring() + L"\\resource\\%s\\" + name));
    }
}

TYPED_TEST(ResourceFiles, FormatOfNoModuleIsTheProgramsOwn)
{
    const std::filesystem::path program = arvmui_test::TestProgramPath();
    EXPECT_EQ(this->Format(nullptr, nullptr).text, this->T(program.parent_path().wstring() + L"\\resource\\%s\\"
                                                           + program.stem().wstring().substr(0, 6) + L"UI.DLL"));
}

TYPED_TEST(ResourceFiles, FormatThatDoesNotFitIsCutAndFails)
{
    const LoadedModule module(this->Root(L"folder") / L"module.dll");
    const auto whole = this->T(this->Root(L"folder").wstring() + L"\\resource\\%s\\moduleUI.DLL");
    const DWORD length = static_cast<DWORD>(whole.size());
    const std::wstring explicitName = L"moduleUI.DLL";
    for (const std::wstring* const fileName : {static_cast<const std::wstring*>(nullptr), &explicitName})
    {
        EXPECT_EQ(this->Format(module.Get(), fileName, length + 1).length, length);
        for (const DWORD capacity : {length, length - 1, DWORD{2}, DWORD{1}})
        {
            const auto answer = this->Format(module.Get(), fileName, capacity);
            EXPECT_EQ(answer.length, 0u);
            EXPECT_EQ(answer.error, static_cast<DWORD>(ERROR_BUFFER_OVERFLOW));
            EXPECT_EQ(answer.text, whole.substr(0, capacity - 1));
        }
    }
}

TYPED_TEST(ResourceFiles, FormatIsBoundedByTheCapacityAlone)
{
    const std::wstring place = L"C:\\" + std::wstring(250, L'f');
    const ModulePath path(place + L"\\a.dll");
    const auto answer = this->Format(nullptr, nullptr, 400);
    EXPECT_EQ(answer.text, this->T(place + L"\\resource\\%s\\aUI.DLL"));
}

TYPED_TEST(ResourceFiles, FormatNeedsAFolder)
{
    const ModulePath path(L"module.dll");
    EXPECT_EQ(this->Format(nullptr, nullptr).length, 0u);
    EXPECT_EQ(this->Format(nullptr, nullptr).error, static_cast<DWORD>(ERROR_BAD_PATHNAME));
}

TYPED_TEST(ResourceFiles, FormatFailsAsTheSystemDoesWithoutModule)
{
    EXPECT_EQ(this->Format(NoModule(), nullptr).length, 0u);
    EXPECT_EQ(this->Format(NoModule(), nullptr).error, static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
}

TYPED_TEST(ResourceFiles, FormatFailsForAModulePathThatIsCut)
{
    const ModulePath longest(L"C:\\" + std::wstring(252, L'f') + L".dll");  // 259 characters
    EXPECT_NE(this->Format(nullptr, nullptr, 400).length, 0u);
    const ModulePath tooLong(L"C:\\" + std::wstring(253, L'f') + L".dll");
    EXPECT_EQ(this->Format(nullptr, nullptr, 400).length, 0u);
    EXPECT_EQ(this->Format(nullptr, nullptr, 400).error, static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
}

TYPED_TEST(ResourceFiles, BufferIsRequired)
{
    using Element = typename TypeParam::Char;
    Element buffer[1] = {};
    ::SetLastError(0);
    EXPECT_EQ(TypeParam::Format(nullptr, nullptr, nullptr, 260), 0u);
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    ::SetLastError(0);
    EXPECT_EQ(TypeParam::Format(nullptr, nullptr, buffer, 0), 0u);
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_BUFFER_OVERFLOW));
}

// ---- First existing file -----------------------------------------------------------------------------------

TYPED_TEST(ResourceFiles, FirstLocaleWithTheFileIsFound)
{
    for (const wchar_t* const place : {L"folder", L"100%s off%n"})
    {
        const std::filesystem::path root = this->Root(place);
        const LoadedModule module(root / L"a%sb.dll");
        this->Touch(root / L"resource" / L"de" / L"a%sbUI.DLL");
        this->Touch(root / L"resource" / L"fr" / L"other.txt");
        this->Touch(root / L"resource" / L"ja" / L"a%sbUI.DLL");
        const auto german = this->T(root / L"resource" / L"de" / L"a%sbUI.DLL");
        EXPECT_EQ(this->FileName(module.Get(), L"de,ja").text, german);
        EXPECT_EQ(this->FileName(module.Get(), L"fr,it,de-AT,ja").text, german);
        EXPECT_EQ(this->FileName(module.Get(), L"1031").text, german);
        const std::wstring other = L"other.txt";
        EXPECT_EQ(
            this->FileName(module.Get(), L"de,fr,ja", &other).text, this->T(root / L"resource" / L"fr" / L"other.txt"));
    }
}

TYPED_TEST(ResourceFiles, FolderOfTheFilesNameIsFoundToo)
{
    const std::filesystem::path root = this->Root(L"folder");
    const LoadedModule module(root / L"module.dll");
    std::filesystem::create_directories(root / L"resource" / L"de" / L"moduleUI.DLL");
    EXPECT_EQ(this->FileName(module.Get(), L"fr,de").text, this->T(root / L"resource" / L"de" / L"moduleUI.DLL"));
}

TYPED_TEST(ResourceFiles, LastPlacesAreTheModulesFolderAndEnglishBesideTheResources)
{
    const std::filesystem::path root = this->Root(L"folder");
    const LoadedModule module(root / L"module.dll");
    this->Touch(root / L"en" / L"moduleUI.DLL");
    EXPECT_EQ(this->FileName(module.Get(), L"de").text, this->T(root.wstring() + L"\\resource\\..\\en\\moduleUI.DLL"));
    this->Touch(root / L"moduleUI.DLL");
    EXPECT_EQ(this->FileName(module.Get(), L"de").text, this->T(root.wstring() + L"\\resource\\..\\moduleUI.DLL"));
    this->Touch(root / L"resource" / L"en" / L"moduleUI.DLL");
    EXPECT_EQ(this->FileName(module.Get(), L"de").text, this->T(root.wstring() + L"\\resource\\en\\moduleUI.DLL"));
}

TYPED_TEST(ResourceFiles, LocalesMayBeAnIdentifierOrTheProcesssList)
{
    using Element = typename TypeParam::Char;
    const std::filesystem::path root = this->Root(L"folder");
    const LoadedModule module(root / L"module.dll");
    this->Touch(root / L"resource" / L"de" / L"moduleUI.DLL");
    const auto expected = this->T(root / L"resource" / L"de" / L"moduleUI.DLL");
    EXPECT_EQ(this->Ask(260,
                      [&](Element* buffer, DWORD size)
                      {
                          return TypeParam::FileName(module.Get(), nullptr,
                              reinterpret_cast<const Element*>(static_cast<ULONG_PTR>(0x0C07)), buffer, size);
                      })
                  .text,
        expected);
    wcscpy_s(ARVMUI_GetDescriptor()->LocaleHintTable[HINT_COMMAND_LINE], L"fr,de");
    EXPECT_EQ(this->Ask(260, [&](Element* buffer, DWORD size)
                      { return TypeParam::FileName(module.Get(), nullptr, nullptr, buffer, size); })
                  .text,
        expected);
}

TYPED_TEST(ResourceFiles, FoundPathIsCutToTheBuffer)
{
    const std::filesystem::path root = this->Root(L"folder");
    const LoadedModule module(root / L"module.dll");
    this->Touch(root / L"resource" / L"de" / L"moduleUI.DLL");
    const auto whole = this->T(root / L"resource" / L"de" / L"moduleUI.DLL");
    const DWORD length = static_cast<DWORD>(whole.size());
    for (const DWORD capacity : {length + 1, length, DWORD{10}, DWORD{1}})
    {
        const auto answer = this->FileName(module.Get(), L"de", nullptr, capacity);
        EXPECT_EQ(answer.length, capacity - 1);
        EXPECT_EQ(answer.text, whole.substr(0, capacity - 1));
    }
}

TYPED_TEST(ResourceFiles, MissingFileIsReported)
{
    const LoadedModule module(this->Root(L"100%s off") / L"a%sb.dll");
    const ErrorBoxes boxes;
    const auto derived = this->FileName(module.Get(), L"de");
    EXPECT_EQ(derived.length, 0u);
    EXPECT_EQ(derived.error, static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    const std::wstring name = L"%d%s.txt";
    EXPECT_EQ(this->FileName(module.Get(), L"de", &name).error, static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_THAT(boxes.Texts(), ElementsAre(L"905:a%sbUI.DLL:2", L"905:%d%s.txt:2"));
}

TYPED_TEST(ResourceFiles, RefusalIsReportedAsCancelled)
{
    const LoadedModule module(this->Root(L"folder") / L"module.dll");
    const ErrorBoxes boxes;
    const FunctionPatch refused(TypeParam::Search(), TypeParam::Refuse());
    const auto answer = this->FileName(module.Get(), L"ask");
    EXPECT_EQ(answer.length, 0u);
    EXPECT_EQ(answer.error, static_cast<DWORD>(ERROR_CANCELLED));
    EXPECT_THAT(boxes.Texts(), ElementsAre(L"905:moduleUI.DLL:1223"));
}

TYPED_TEST(ResourceFiles, FormatThatCannotBeBuiltIsReported)
{
    const ErrorBoxes boxes;
    {
        const ModulePath path(L"C:\\" + std::wstring(240, L'f') + L"\\module.dll");
        EXPECT_EQ(this->FileName(nullptr, L"de").length, 0u);
        EXPECT_EQ(this->FileName(nullptr, L"de").error, static_cast<DWORD>(ERROR_BUFFER_OVERFLOW));
    }
    EXPECT_EQ(this->FileName(NoModule(), L"de").error, static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_THAT(boxes.Texts(), ElementsAre(L"902:111", L"902:111", L"902:126"));
}

TYPED_TEST(ResourceFiles, FormatOf259CharactersIsTheLongest)
{
    const ErrorBoxes boxes;
    {
        const ModulePath path(L"C:\\" + std::wstring(231, L'f') + L"\\module.dll");
        EXPECT_EQ(this->FileName(nullptr, L"de").error, static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    }
    {
        const ModulePath path(L"C:\\" + std::wstring(232, L'f') + L"\\module.dll");
        EXPECT_EQ(this->FileName(nullptr, L"de").error, static_cast<DWORD>(ERROR_BUFFER_OVERFLOW));
    }
    EXPECT_THAT(boxes.Texts(), ElementsAre(L"905:moduleUI.DLL:2", L"902:111"));
}

TYPED_TEST(ResourceFiles, ReportsNothingWhilePopupsAreOff)
{
    const LoadedModule module(this->Root(L"folder") / L"module.dll");
    const ErrorBoxes boxes;
    ARVMUI_SetMessagePopup(FALSE, nullptr);
    EXPECT_EQ(this->FileName(module.Get(), L"de").error, static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_THAT(boxes.Texts(), IsEmpty());
}

std::vector<std::wstring> g_asked;

template <typename Char>
DWORD WINAPI RecordPath(const Char* path)
{
    std::wstring text;
    for (; *path; ++path) text += static_cast<wchar_t>(*path);
    g_asked.push_back(text);
    return INVALID_FILE_ATTRIBUTES;
}

TYPED_TEST(ResourceFiles, PathIsCutAt259CharactersAndAskedFor)
{
    g_asked.clear();
    const std::wstring place = L"C:\\" + std::wstring(100, L'f');
    const ModulePath path(place + L"\\module.dll");
    const ImportPatch attributes(LibraryUnderTest(), TypeParam::kAttributes, &RecordPath<typename TypeParam::Char>);
    ARVMUI_SetMessagePopup(FALSE, nullptr);
    const std::wstring locale(200, L'l');
    EXPECT_EQ(this->FileName(nullptr, locale).length, 0u);
    const std::wstring whole = place + L"\\resource\\" + locale + L"\\moduleUI.DLL";
    EXPECT_THAT(g_asked, ElementsAre(whole.substr(0, 259), place + L"\\resource\\en\\moduleUI.DLL",
                             place + L"\\resource\\..\\moduleUI.DLL", place + L"\\resource\\..\\en\\moduleUI.DLL"));
}

// ---- Locale folders ----------------------------------------------------------------------------------------

TYPED_TEST(ResourceFiles, FoldersAreListedAndFilesPassedOver)
{
    for (const wchar_t* const place : {L"folder", L"100%s off%n"})
    {
        const std::filesystem::path root = this->Root(place);
        const LoadedModule module(root / L"module.dll");
        for (const wchar_t* const locale : {L"de", L"ja-JP", L"50%s"})
            std::filesystem::create_directories(root / L"resource" / locale / L"below");
        this->Touch(root / L"resource" / L"file.txt");
        typename TestFixture::Folders folders;
        EXPECT_EQ(TypeParam::EnumFolders(module.Get(), this->Collect, &folders), 0u);
        EXPECT_THAT(folders.names, testing::UnorderedElementsAre(this->T(L"de"), this->T(L"ja-JP"), this->T(L"50%s")));
    }
}

TYPED_TEST(ResourceFiles, ListingStopsAtTheFirstResultOtherThanZero)
{
    const std::filesystem::path root = this->Root(L"folder");
    const LoadedModule module(root / L"module.dll");
    for (const wchar_t* const locale : {L"a", L"b", L"c"})
        std::filesystem::create_directories(root / L"resource" / locale);
    typename TestFixture::Folders all;
    TypeParam::EnumFolders(module.Get(), this->Collect, &all);
    ASSERT_EQ(all.names.size(), 3u);
    for (size_t i = 0; i < 3; ++i)
    {
        typename TestFixture::Folders folders;
        folders.stopAt = all.names[i];
        folders.result = 0x80000000u + static_cast<DWORD>(i);
        EXPECT_EQ(TypeParam::EnumFolders(module.Get(), this->Collect, &folders), folders.result);
        EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_SUCCESS));
        EXPECT_EQ(folders.names.size(), i + 1);
    }
}

TYPED_TEST(ResourceFiles, ListingLeavesNoHandleBehind)
{
    const std::filesystem::path root = this->Root(L"folder");
    const LoadedModule module(root / L"module.dll");
    std::filesystem::create_directories(root / L"resource" / L"de");
    std::filesystem::create_directories(root / L"resource" / L"fr");
    typename TestFixture::Folders folders;
    TypeParam::EnumFolders(module.Get(), this->Collect, &folders);
    const size_t before = arvmui_test::CountHandles();
    TypeParam::EnumFolders(module.Get(), this->Collect, &folders);
    folders.stopAt = folders.names[0];
    folders.result = 1;
    TypeParam::EnumFolders(module.Get(), this->Collect, &folders);
    EXPECT_EQ(arvmui_test::CountHandles(), before);
}

TYPED_TEST(ResourceFiles, MissingResourceFolderListsNothing)
{
    const LoadedModule module(this->Root(L"folder") / L"module.dll");
    typename TestFixture::Folders folders;
    EXPECT_EQ(TypeParam::EnumFolders(module.Get(), this->Collect, &folders), 0u);
    EXPECT_THAT(folders.names, IsEmpty());
}

TYPED_TEST(ResourceFiles, ListingNeedsAModuleWithAFolder)
{
    typename TestFixture::Folders folders;
    ::SetLastError(0);
    EXPECT_EQ(TypeParam::EnumFolders(NoModule(), this->Collect, &folders), 0u);
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    const ModulePath path(L"module.dll");
    EXPECT_EQ(TypeParam::EnumFolders(nullptr, this->Collect, &folders), 0u);
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_BAD_PATHNAME));
    EXPECT_THAT(folders.names, IsEmpty());
}

template <typename Char, typename Data>
HANDLE WINAPI RecordPattern(const Char* pattern, Data*)
{
    RecordPath(pattern);
    ::SetLastError(ERROR_PATH_NOT_FOUND);
    return INVALID_HANDLE_VALUE;
}

HANDLE(WINAPI* PatternRecorder(wchar_t))(const wchar_t*, WIN32_FIND_DATAW*)
{
    return RecordPattern<wchar_t, WIN32_FIND_DATAW>;
}

HANDLE(WINAPI* PatternRecorder(char))(const char*, WIN32_FIND_DATAA*)
{
    return RecordPattern<char, WIN32_FIND_DATAA>;
}

TYPED_TEST(ResourceFiles, ListingNeedsElevenCharactersBehindTheFolder)
{
    g_asked.clear();
    const ImportPatch find(LibraryUnderTest(), TypeParam::kFindFirst, PatternRecorder(typename TypeParam::Char{}));
    typename TestFixture::Folders folders;
    const std::wstring longest = L"C:\\" + std::wstring(245, L'f');
    {
        const ModulePath path(longest + L"\\a.dll");
        EXPECT_EQ(TypeParam::EnumFolders(nullptr, this->Collect, &folders), 0u);
        EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
        EXPECT_THAT(g_asked, ElementsAre(longest + L"\\resource\\*"));
    }
    {
        const ModulePath path(longest + L"f\\a.dll");
        EXPECT_EQ(TypeParam::EnumFolders(nullptr, this->Collect, &folders), 0u);
        EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_BUFFER_OVERFLOW));
        EXPECT_EQ(g_asked.size(), 1u);
    }
}

// ---- Names beyond ASCII --------------------------------------------------------------------------------------

TYPED_TEST(ResourceFiles, NamesOfTheAnsiCodePageAreKept)
{
    const std::filesystem::path root = this->Root(L"gr\u00FCn");
    const LoadedModule module(root / L"\u00E9\u00E9\u00E9\u00E9\u00E9\u00E9\u00E9.dll");
    this->Touch(root / L"resource" / L"\u00F1" / L"\u00E9\u00E9\u00E9\u00E9\u00E9\u00E9UI.DLL");
    const std::wstring expected = L"\\\u00E9\u00E9\u00E9\u00E9\u00E9\u00E9UI.DLL";
    EXPECT_EQ(this->Format(module.Get(), nullptr).text, this->T(root.wstring() + L"\\resource\\%s" + expected));
    EXPECT_EQ(this->FileName(module.Get(), L"\u00F1").text, this->T(root.wstring() + L"\\resource\\\u00F1" + expected));
    typename TestFixture::Folders folders;
    EXPECT_EQ(TypeParam::EnumFolders(module.Get(), this->Collect, &folders), 0u);
    EXPECT_THAT(folders.names, ElementsAre(this->T(L"\u00F1")));
}

}  // namespace
