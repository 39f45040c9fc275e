// Messages in the language of the first locale with resources. A module in a temporary folder holds the
// messages; which locales have a resource library beside it is each test's choice.
#include "arvmui.h"
#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "support/busy_blocks.h"
#include "support/import_replacement.h"
#include "support/message_table.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

using arvmui_test::TemporaryFolder;

constexpr LANGID kEnglish = 0x0409;
constexpr LANGID kGerman = 0x0407;
constexpr LANGID kFrench = 0x040C;
constexpr LANGID kJapanese = 0x0411;

constexpr DWORD kGreeting = 1;  // in every language, with inserts
constexpr DWORD kFrenchOnly = 2;
constexpr DWORD kShortInFrench = 3;  // long in German
constexpr DWORD kEnglishOnly = 4;    // English is what the system's own order ends with
constexpr DWORD kMissing = 99;

struct Load
{
    std::wstring path;
    DWORD flags;
    HMODULE library;
};

bool g_recording = false;
std::vector<DWORD> g_languages;  // asked for, in order
std::vector<Load> g_loads;
std::vector<HMODULE> g_frees;
DWORD g_errorOfLast = 0;     // last error as FormatMessage left it
DWORD g_errorOnSuccess = 0;  // stored by a successful FormatMessage where not 0

template <typename Format>
DWORD RecordFormat(DWORD language, Format format)
{
    const DWORD length = format();
    if (!g_recording) return length;
    if (length != 0 && g_errorOnSuccess != 0) ::SetLastError(g_errorOnSuccess);
    g_errorOfLast = ::GetLastError();
    g_languages.push_back(language);
    ::SetLastError(g_errorOfLast);
    return length;
}

DWORD WINAPI FormatWide(
    DWORD flags, const void* source, DWORD id, DWORD language, wchar_t* buffer, DWORD size, va_list* arguments)
{
    return RecordFormat(language,
        [=]
        {
            return ARVMUI_REAL_FUNCTION(L"kernel32.dll", FormatMessageW)(
                flags, source, id, language, buffer, size, arguments);
        });
}

DWORD WINAPI FormatNarrow(
    DWORD flags, const void* source, DWORD id, DWORD language, char* buffer, DWORD size, va_list* arguments)
{
    return RecordFormat(language,
        [=]
        {
            return ARVMUI_REAL_FUNCTION(L"kernel32.dll", FormatMessageA)(
                flags, source, id, language, buffer, size, arguments);
        });
}

HMODULE WINAPI LoadFile(const wchar_t* path, HANDLE file, DWORD flags)
{
    const HMODULE library = ARVMUI_REAL_FUNCTION(L"kernel32.dll", LoadLibraryExW)(path, file, flags);
    const DWORD error = ::GetLastError();
    if (g_recording) g_loads.push_back({path, flags, library});
    ::SetLastError(error);
    return library;
}

BOOL WINAPI FreeFile(HMODULE library)
{
    if (g_recording) g_frees.push_back(library);
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", FreeLibrary)(library);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(FormatMessageW, FormatWide)
ARVMUI_REPLACE_IMPORT(FormatMessageA, FormatNarrow)
ARVMUI_REPLACE_IMPORT(LoadLibraryExW, LoadFile)
ARVMUI_REPLACE_IMPORT(FreeLibrary, FreeFile)

namespace
{

using Languages = std::vector<DWORD>;

class MessageFormat : public testing::Test
{
protected:
    MessageFormat() { arvmui::Descriptor() = {}; }
    ~MessageFormat() override
    {
        g_recording = false;
        if (module_) ::FreeLibrary(module_);
        arvmui::Descriptor() = {};
    }

    void SetUp() override { MakeModule(L"app"); }

    // The module whose resources count, in a folder below the test's own.
    void MakeModule(const std::wstring& folder)
    {
        if (module_) ::FreeLibrary(module_);
        const std::filesystem::path file = temporary_.MakeFolder(folder) / L"wordbook.dll";
        folder_ = file.parent_path();
        arvmui_test::WriteResourceImage(file, {{1, L"x"}});
        arvmui_test::WriteMessageTables(file,
            {
                {kEnglish, {{kGreeting, L"Hello %1, %2!u!"}, {kEnglishOnly, L"Only"}}},
                {kGerman, {{kGreeting, L"Gr\u00fc\u00dfe %1, %2!u!"},
                              {kShortInFrench, L"%1 %2!u! und noch vieles mehr, viel zu lang"}}},
                {kFrench,
                    {{kGreeting, L"Bonjour %1, %2!u!"}, {kFrenchOnly, L"Seulement"}, {kShortInFrench, L"%1/%2!u!"}}},
                {kJapanese, {{kGreeting, L"\u3053\u3093\u306b\u3061\u306f %1, %2!u!"}}},
            });
        module_ = ::LoadLibraryW(file.c_str());
        ASSERT_NE(module_, nullptr);
        arvmui::Descriptor().module = module_;
    }

    std::filesystem::path ResourceFile(const std::wstring& locale) const
    {
        return folder_ / L"resource" / locale / L"wordboUI.DLL";
    }
    void AddLocale(const std::wstring& locale, const std::wstring& languageId) const
    {
        arvmui_test::WriteResourceImage(ResourceFile(locale), {{ARVMUI_STRING_LANGUAGE_ID, languageId}});
    }
    static void Prefer(const wchar_t* locales)
    {
        arvmui::SetLocaleHint(arvmui::Descriptor(), HINT_COMMAND_LINE, locales);
    }
    HMODULE Module() const { return module_; }

    // Formats a message of the module with the inserts "X" and 7.
    std::wstring Format(DWORD id, DWORD capacity = 200, DWORD languageId = 0)
    {
        std::vector<wchar_t> buffer(200);
        const wchar_t* const name = L"X";
        const DWORD_PTR inserts[] = {reinterpret_cast<DWORD_PTR>(name), 7};
        const DWORD length = Record(
            [&]
            {
                return ARVMUI_FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_ARGUMENT_ARRAY, module_, id,
                    languageId, buffer.data(), capacity, reinterpret_cast<va_list*>(const_cast<DWORD_PTR*>(inserts)));
            });
        return std::wstring(buffer.data(), length);
    }

    template <typename Call>
    static DWORD Record(Call call)
    {
        g_languages.clear();
        g_loads.clear();
        g_frees.clear();
        g_recording = true;
        const DWORD length = call();
        const DWORD error = ::GetLastError();
        g_recording = false;
        lastError_ = error;
        return length;
    }
    static DWORD LastError() { return lastError_; }

private:
    static inline DWORD lastError_ = 0;
    TemporaryFolder temporary_;
    std::filesystem::path folder_;
    HMODULE module_ = nullptr;
};

TEST_F(MessageFormat, IsInTheLanguageOfTheFirstLocaleWithResources)
{
    AddLocale(L"de", L"0x0407");
    AddLocale(L"fr", L"1036");
    Prefer(L"ja,de,fr");
    EXPECT_EQ(Format(kGreeting), L"Gr\u00fc\u00dfe X, 7");
    EXPECT_EQ(g_languages, Languages{kGerman});
    Prefer(L"fr,de");
    EXPECT_EQ(Format(kGreeting), L"Bonjour X, 7");
    AddLocale(L"ja", L"0x0411");
    Prefer(L"ja,de,fr");
    EXPECT_EQ(Format(kGreeting), L"\u3053\u3093\u306b\u3061\u306f X, 7");
}

TEST_F(MessageFormat, LocaleWithoutTheMessageGivesWayToTheNext)
{
    AddLocale(L"de", L"0x0407");
    AddLocale(L"ja", L"0x0411");
    AddLocale(L"fr", L"0x040C");
    Prefer(L"de,ja,fr");
    EXPECT_EQ(Format(kFrenchOnly), L"Seulement");
    EXPECT_EQ(g_languages, (Languages{kGerman, kJapanese, kFrench}));
}

TEST_F(MessageFormat, SystemsOwnOrderComesLast)
{
    AddLocale(L"de", L"0x0407");
    Prefer(L"de");
    EXPECT_EQ(Format(kEnglishOnly), L"Only");
    EXPECT_EQ(g_languages, (Languages{kGerman, 0}));
}

TEST_F(MessageFormat, WithoutAnyResourcesOnlyTheSystemsOrderIsAsked)
{
    Prefer(L"de,fr");
    Format(kGreeting);
    EXPECT_EQ(g_languages, Languages{0});
}

TEST_F(MessageFormat, MissingMessageFailsWithTheSystemsError)
{
    AddLocale(L"de", L"0x0407");
    Prefer(L"de");
    EXPECT_EQ(Format(kMissing), L"");
    EXPECT_EQ(g_languages, (Languages{kGerman, 0}));
    EXPECT_NE(LastError(), DWORD{0});
    EXPECT_EQ(LastError(), g_errorOfLast);
}

TEST_F(MessageFormat, LastErrorIsAsTheSystemLeftIt)
{
    AddLocale(L"de", L"0x0407");
    Prefer(L"ja,de");
    g_errorOnSuccess = 4321;
    EXPECT_NE(Format(kGreeting), L"");
    EXPECT_EQ(LastError(), DWORD{4321});
    EXPECT_EQ(Format(kEnglishOnly), L"Only");
    EXPECT_EQ(LastError(), DWORD{4321});
    g_errorOnSuccess = 0;
}

TEST_F(MessageFormat, WithoutPathFormatNothingIsFormatted)
{
    AddLocale(L"de", L"0x0407");
    Prefer(L"de");
    arvmui::Descriptor().module = reinterpret_cast<HMODULE>(ULONG_PTR{0x12340000});  // no module
    EXPECT_EQ(Format(kGreeting), L"");
    EXPECT_EQ(g_languages, Languages{});
    char buffer[64] = {};
    EXPECT_EQ(Record(
                  [&]
                  {
                      return ARVMUI_FormatMessageA(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_IGNORE_INSERTS,
                          Module(), kGreeting, 0, buffer, 64, nullptr);
                  }),
        DWORD{0});
    EXPECT_EQ(g_languages, Languages{});
}

TEST_F(MessageFormat, LanguageArgumentIsIgnored)
{
    AddLocale(L"de", L"0x0407");
    Prefer(L"de");
    EXPECT_EQ(Format(kGreeting, 200, kJapanese), L"Gr\u00fc\u00dfe X, 7");
    EXPECT_EQ(g_languages, Languages{kGerman});
    Prefer(L"es");
    Format(kGreeting, 200, kJapanese);
    EXPECT_EQ(g_languages, Languages{0});
}

TEST_F(MessageFormat, LibraryThatNamesLanguageZeroIsPassedOver)
{
    AddLocale(L"xx", L"0");
    AddLocale(L"fr", L"0x040C");
    Prefer(L"xx,fr");
    EXPECT_EQ(Format(kGreeting), L"Bonjour X, 7");
    EXPECT_EQ(g_languages, Languages{kFrench});
}

TEST_F(MessageFormat, LibraryThatNamesNoLanguageCountsAsEnglish)
{
    arvmui_test::WriteResourceImage(ResourceFile(L"xx"), {{ARVMUI_STRING_LOCALE_TAG, L"xx"}});
    Prefer(L"xx");
    EXPECT_EQ(Format(kGreeting), L"Hello X, 7");
    EXPECT_EQ(g_languages, Languages{kEnglish});
}

TEST_F(MessageFormat, FileThatIsNoLibraryIsPassedOver)
{
    std::filesystem::create_directories(ResourceFile(L"de"));  // a folder of that name
    AddLocale(L"fr", L"0x040C");
    Prefer(L"de,fr");
    EXPECT_EQ(Format(kGreeting), L"Bonjour X, 7");
}

TEST_F(MessageFormat, LibrariesAreOpenedAsDataAndReleased)
{
    AddLocale(L"de", L"0x0407");
    AddLocale(L"xx", L"0");
    AddLocale(L"fr", L"0x040C");
    Prefer(L"de,xx,fr");
    EXPECT_EQ(Format(kFrenchOnly), L"Seulement");
    std::vector<HMODULE> opened;
    for (const Load& load : g_loads)
    {
        EXPECT_EQ(load.flags, DWORD{LOAD_LIBRARY_AS_DATAFILE}) << load.path;
        if (load.library) opened.push_back(load.library);
    }
    EXPECT_EQ(opened.size(), size_t{3});
    EXPECT_EQ(g_frees, opened);
}

TEST_F(MessageFormat, PercentSignInTheFolderIsJustACharacter)
{
    MakeModule(L"100%s off %n%d");
    AddLocale(L"de", L"0x0407");
    Prefer(L"de");
    EXPECT_EQ(Format(kGreeting), L"Gr\u00fc\u00dfe X, 7");
}

// A path of 259 characters is the longest that is tried.
TEST_F(MessageFormat, TooLongPathsAreNotTried)
{
    constexpr size_t kTagChars = 10;
    const size_t length = ResourceFile(std::wstring(kTagChars, L'b')).wstring().size();
    ASSERT_LT(length, size_t{259});
    MakeModule(L"app" + std::wstring(259 - length, L'x'));
    const std::wstring fits(kTagChars, L'b');
    const std::wstring tooLong(kTagChars + 1, L'a');
    ASSERT_EQ(ResourceFile(fits).wstring().size(), size_t{259});
    AddLocale(fits, L"0x0407");
    Prefer((tooLong + L"," + fits).c_str());
    EXPECT_EQ(Format(kGreeting), L"Gr\u00fc\u00dfe X, 7");
    ASSERT_FALSE(g_loads.empty());
    EXPECT_EQ(g_loads.front().path, ResourceFile(fits).wstring());
}

// Calls the function under test with a list of arguments.
DWORD FormatWithList(DWORD flags, const void* source, DWORD id, wchar_t* buffer, DWORD size, ...)
{
    va_list arguments;
    va_start(arguments, size);
    const DWORD length = ARVMUI_FormatMessageW(flags, source, id, 0, buffer, size, &arguments);
    va_end(arguments);
    return length;
}

DWORD FormatWithListA(DWORD flags, const void* source, DWORD id, char* buffer, DWORD size, ...)
{
    va_list arguments;
    va_start(arguments, size);
    const DWORD length = ARVMUI_FormatMessageA(flags, source, id, 0, buffer, size, &arguments);
    va_end(arguments);
    return length;
}

TEST_F(MessageFormat, EveryAttemptReadsTheArgumentsFromTheFirstOn)
{
    AddLocale(L"de", L"0x0407");
    AddLocale(L"fr", L"0x040C");
    Prefer(L"de,fr");
    wchar_t buffer[16] = {};
    EXPECT_EQ(Record(
                  [&] {
                      return FormatWithList(
                          FORMAT_MESSAGE_FROM_HMODULE, Module(), kShortInFrench, buffer, 16, L"name", 42u);
                  }),
        DWORD{7});
    EXPECT_STREQ(buffer, L"name/42");
    EXPECT_EQ(g_languages, (Languages{kGerman, kFrench}));

    char narrow[16] = {};
    EXPECT_EQ(Record(
                  [&] {
                      return FormatWithListA(
                          FORMAT_MESSAGE_FROM_HMODULE, Module(), kShortInFrench, narrow, 16, "name", 42u);
                  }),
        DWORD{7});
    EXPECT_STREQ(narrow, "name/42");
}

TEST_F(MessageFormat, ArrayOfArgumentsIsReadByEveryAttempt)
{
    AddLocale(L"de", L"0x0407");
    AddLocale(L"fr", L"0x040C");
    Prefer(L"de,fr");
    EXPECT_EQ(Format(kShortInFrench, 8), L"X/7");
    EXPECT_EQ(g_languages, (Languages{kGerman, kFrench}));
}

TEST_F(MessageFormat, IgnoredInsertsAreNotTouched)
{
    AddLocale(L"de", L"0x0407");
    Prefer(L"de");
    wchar_t buffer[64] = {};
    va_list* const garbage = reinterpret_cast<va_list*>(ULONG_PTR{8});
    EXPECT_NE(Record(
                  [&]
                  {
                      return ARVMUI_FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_IGNORE_INSERTS,
                          Module(), kGreeting, 0, buffer, 64, garbage);
                  }),
        DWORD{0});
    EXPECT_EQ(std::wstring(buffer).substr(0, 8), L"Gr\u00fc\u00dfe %1");
}

TEST_F(MessageFormat, BufferIsAllocatedOnRequest)
{
    AddLocale(L"de", L"0x0407");
    Prefer(L"de");
    wchar_t* text = nullptr;
    const DWORD length = Record(
        [&]
        {
            return FormatWithList(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_ALLOCATE_BUFFER, Module(), kGreeting,
                reinterpret_cast<wchar_t*>(&text), 0, L"Y", 8u);
        });
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::wstring(text), L"Gr\u00fc\u00dfe Y, 8");
    EXPECT_EQ(length, std::wstring(text).size());
    EXPECT_EQ(::LocalFree(text), nullptr);
}

TEST_F(MessageFormat, TextOfTheCallersIsFormattedInAnyLanguage)
{
    AddLocale(L"de", L"0x0407");
    Prefer(L"de");
    wchar_t buffer[64] = {};
    EXPECT_EQ(Record([&] { return FormatWithList(FORMAT_MESSAGE_FROM_STRING, L"%1: %2!u!", 0, buffer, 64, L"a", 5u); }),
        DWORD{4});
    EXPECT_STREQ(buffer, L"a: 5");
    EXPECT_EQ(g_languages, Languages{kGerman});

    Prefer(L"es");
    EXPECT_EQ(
        Record([&] { return FormatWithList(FORMAT_MESSAGE_FROM_STRING, L"<%1>", 0, buffer, 64, L"b"); }), DWORD{3});
    EXPECT_STREQ(buffer, L"<b>");
    EXPECT_EQ(g_languages, Languages{0});
}

TEST_F(MessageFormat, NarrowFormIsInTheSameLanguage)
{
    AddLocale(L"de", L"0x0407");
    AddLocale(L"fr", L"0x040C");
    Prefer(L"de,fr");
    char buffer[64] = {};
    wchar_t wide[64] = {};
    const DWORD length =
        Record([&] { return FormatWithListA(FORMAT_MESSAGE_FROM_HMODULE, Module(), kGreeting, buffer, 64, "Z", 3u); });
    EXPECT_EQ(length, std::string(buffer).size());
    EXPECT_EQ(g_languages, Languages{kGerman});
    ASSERT_GT(::MultiByteToWideChar(CP_ACP, 0, buffer, -1, wide, 64), 0);
    EXPECT_EQ(std::wstring(wide).substr(wcslen(wide) - 5), L" Z, 3");
    EXPECT_NE(std::string(buffer).substr(0, 5), "Hello");

    EXPECT_NE(Record(
                  [&] {
                      return ARVMUI_FormatMessageA(
                          FORMAT_MESSAGE_FROM_HMODULE, Module(), kFrenchOnly, 0, buffer, 64, nullptr);
                  }),
        DWORD{0});
    EXPECT_STREQ(buffer, "Seulement");
    EXPECT_EQ(g_languages, (Languages{kGerman, kFrench}));
}

TEST_F(MessageFormat, BufferThatIsTooSmallForEveryLanguageFails)
{
    AddLocale(L"de", L"0x0407");
    Prefer(L"de");
    EXPECT_EQ(Format(kGreeting, 4), L"");
    EXPECT_EQ(LastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

struct SystemLanguage
{
    const wchar_t* locale;
    const wchar_t* languageId;
    LANGID language;
};

TEST_F(MessageFormat, SystemMessagesAreInTheChosenLanguage)
{
    constexpr SystemLanguage kLanguages[] = {
        {L"de", L"0x0407", kGerman}, {L"fr", L"0x040C", kFrench}, {L"ja", L"0x0411", kJapanese}};
    unsigned compared = 0;
    for (const SystemLanguage& entry : kLanguages)
    {
        wchar_t expected[256] = {};
        wchar_t buffer[256] = {};
        constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
        if (::FormatMessageW(kFlags, nullptr, ERROR_FILE_NOT_FOUND, entry.language, expected, 256, nullptr) == 0)
            continue;
        ++compared;
        AddLocale(entry.locale, entry.languageId);
        Prefer(entry.locale);
        EXPECT_EQ(ARVMUI_FormatMessageW(kFlags, nullptr, ERROR_FILE_NOT_FOUND, 0, buffer, 256, nullptr),
            std::wstring(expected).size());
        EXPECT_STREQ(buffer, expected);
    }
    if (compared == 0) GTEST_SKIP() << "this system has messages in none of the languages";
}

TEST_F(MessageFormat, LeavesNoMemoryBehind)
{
    AddLocale(L"de", L"0x0407");
    Prefer(L"ja,de");
    Format(kGreeting);
    const size_t before = arvmui_test::CountBusyBlocks();
    Format(kGreeting);
    Format(kMissing);
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

}  // namespace
