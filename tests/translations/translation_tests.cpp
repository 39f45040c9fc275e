/*
 * The DLL's resource libraries as files: what every locale has to hold so that the code which reads
 * the texts finds them, gets them whole and formats them safely. Reads the copies in resource\
 * beside the test program; the DLL itself is not used.
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <filesystem>
#include <iterator>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "resources/resource_ids.h"

namespace
{

struct Locale
{
    const char* folder;
    const wchar_t* tag;
    LANGID language;
    unsigned ansiCodePage;
};

/** GoogleTest names the tests after this. */
void PrintTo(const Locale& locale, std::ostream* output)
{
    *output << locale.folder;
}

constexpr Locale kLocales[] = {
    {"de", L"de-DE", 0x0407, 1252},
    {"en", L"en-US", 0x0409, 1252},
    {"es", L"es-ES", 0x0C0A, 1252},
    {"fr", L"fr-FR", 0x040C, 1252},
    {"ja", L"ja-JP", 0x0411, 932},
};

struct Text
{
    const char* name;
    UINT id;
    std::size_t room;  // characters the reader of this text has, terminator included
};

constexpr std::size_t kUnbounded = 4096;

constexpr Text kTexts[] = {
    {"locale tag", ARVMUI_STRING_LOCALE_TAG, 64},
    {"language identifier", ARVMUI_STRING_LANGUAGE_ID, 32},
    {"English name", ARVMUI_STRING_ENGLISH_NAME, 64},
    {"native name", ARVMUI_STRING_NATIVE_NAME, 64},
    {"keyword user", ARVMUI_STRING_KEYWORD_USER, 64},
    {"keyword system", ARVMUI_STRING_KEYWORD_SYSTEM, 64},
    {"keyword uilang", ARVMUI_STRING_KEYWORD_UILANG, 64},
    {"keyword kiv", ARVMUI_STRING_KEYWORD_KIV, 64},
    {"keyword msie", ARVMUI_STRING_KEYWORD_MSIE, 64},
    {"OK", ARVMUI_STRING_BUTTON_OK, 32},
    {"Cancel", ARVMUI_STRING_BUTTON_CANCEL, 32},
    {"Abort", ARVMUI_STRING_BUTTON_ABORT, 64},
    {"Retry", ARVMUI_STRING_BUTTON_RETRY, 64},
    {"Ignore", ARVMUI_STRING_BUTTON_IGNORE, 64},
    {"Yes", ARVMUI_STRING_BUTTON_YES, 64},
    {"No", ARVMUI_STRING_BUTTON_NO, 64},
    {"Close", ARVMUI_STRING_BUTTON_CLOSE, 64},
    {"Help", ARVMUI_STRING_BUTTON_HELP, 64},
    {"Try Again", ARVMUI_STRING_BUTTON_TRY_AGAIN, 64},
    {"Continue", ARVMUI_STRING_BUTTON_CONTINUE, 64},
    {"language dialog title", ARVMUI_STRING_LANGUAGE_DIALOG_TITLE, 256},
    {"language dialog text", ARVMUI_STRING_LANGUAGE_DIALOG_TEXT, 256},
    {"settings title, user", ARVMUI_STRING_SETTINGS_TITLE_USER, kUnbounded},
    {"settings title, machine", ARVMUI_STRING_SETTINGS_TITLE_MACHINE, kUnbounded},
    {"error caption", ARVMUI_STRING_ERROR_CAPTION, 64},
    {"out of memory", ARVMUI_STRING_OUT_OF_MEMORY, 64},
    {"path format failed", ARVMUI_STRING_PATH_FORMAT_FAILED, kUnbounded},
    {"library not found", ARVMUI_STRING_LIBRARY_NOT_FOUND, kUnbounded},
    {"library not loaded", ARVMUI_STRING_LIBRARY_NOT_LOADED, kUnbounded},
    {"file not found", ARVMUI_STRING_FILE_NOT_FOUND, kUnbounded},
    {"setting not written", ARVMUI_STRING_SETTING_NOT_WRITTEN, kUnbounded},
    {"setting not removed", ARVMUI_STRING_SETTING_NOT_REMOVED, kUnbounded},
    {"dialog not shown", ARVMUI_STRING_DIALOG_NOT_SHOWN, kUnbounded},
};

struct ErrorText
{
    UINT id;
    bool namesFile;  // the first pass gets a file name
};

constexpr ErrorText kErrors[] = {
    {ARVMUI_STRING_PATH_FORMAT_FAILED, false},
    {ARVMUI_STRING_LIBRARY_NOT_FOUND, true},
    {ARVMUI_STRING_LIBRARY_NOT_LOADED, true},
    {ARVMUI_STRING_FILE_NOT_FOUND, true},
    {ARVMUI_STRING_SETTING_NOT_WRITTEN, false},
    {ARVMUI_STRING_SETTING_NOT_REMOVED, false},
    {ARVMUI_STRING_DIALOG_NOT_SHOWN, false},
};

std::filesystem::path ResourceFolder()
{
    wchar_t program[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    return std::filesystem::path(program).parent_path() / L"resource";
}

std::filesystem::path LibraryPath(const Locale& locale)
{
    return ResourceFolder() / locale.folder / L"arvmuiUI.DLL";
}

/** The placeholders of a printf format, each from '%' to its conversion; "%%" is none. */
std::vector<std::wstring> Placeholders(const std::wstring& format)
{
    std::vector<std::wstring> found;
    for (std::size_t at = format.find(L'%'); at != std::wstring::npos; at = format.find(L'%', at))
    {
        std::size_t end = at + 1;
        while (end < format.size() && std::wcschr(L"0123456789+-# .*hlLqjztIw", format[end]) != nullptr) ++end;
        const std::wstring placeholder = format.substr(at, end + 1 - at);
        if (placeholder != L"%%") found.push_back(placeholder);
        at = std::min(end + 1, format.size());
    }
    return found;
}

/** What formatting without arguments leaves: every "%%" becomes "%". */
std::wstring WithoutEscapes(std::wstring format)
{
    for (std::size_t at = format.find(L"%%"); at != std::wstring::npos; at = format.find(L"%%", at + 1))
        format.erase(at, 1);
    return format;
}

/** The character behind a label's '&', folded; 0 for a label without access key. */
wchar_t AccessKey(const std::wstring& label)
{
    for (std::size_t at = 0; at + 1 < label.size(); ++at)
    {
        if (label[at] != L'&') continue;
        if (label[at + 1] != L'&') return static_cast<wchar_t>(std::towupper(label[at + 1]));
        ++at;
    }
    return 0;
}

class Translation : public testing::TestWithParam<Locale>
{
protected:
    void SetUp() override
    {
        library_ = ::LoadLibraryExW(LibraryPath(GetParam()).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        ASSERT_NE(library_, nullptr) << "error " << ::GetLastError();
    }

    void TearDown() override
    {
        if (library_ != nullptr) ::FreeLibrary(library_);
    }

    std::wstring Load(UINT id) const
    {
        wchar_t text[kUnbounded] = {};
        const int length = ::LoadStringW(library_, id, text, static_cast<int>(std::size(text)));
        return std::wstring(text, static_cast<std::size_t>(std::max(length, 0)));
    }

private:
    HMODULE library_ = nullptr;
};

TEST(Translations, FoldersAreTheLocalesTestedHere)
{
    std::vector<std::string> folders;
    for (const auto& entry : std::filesystem::directory_iterator(ResourceFolder()))
        folders.push_back(entry.path().filename().string());

    std::vector<std::string> expected;
    for (const Locale& locale : kLocales) expected.emplace_back(locale.folder);

    EXPECT_THAT(folders, testing::UnorderedElementsAreArray(expected));
}

TEST(Translations, AllLoadAsModulesAtOnce)
{
    std::set<HMODULE> modules;
    for (const Locale& locale : kLocales) modules.insert(::LoadLibraryW(LibraryPath(locale).c_str()));

    EXPECT_EQ(modules.size(), std::size(kLocales));
    EXPECT_EQ(modules.count(nullptr), 0U);
    for (const HMODULE module : modules)
        if (module != nullptr) ::FreeLibrary(module);
}

TEST_P(Translation, HoldsEveryText)
{
    for (const Text& text : kTexts) EXPECT_FALSE(Load(text.id).empty()) << text.name;
}

TEST_P(Translation, TextsFitTheirReadersBuffers)
{
    for (const Text& text : kTexts) EXPECT_LT(Load(text.id).size(), text.room) << text.name;
}

TEST_P(Translation, TextsHaveNoBlanksAtTheEndsAndNoControlCharactersButLineFeeds)
{
    for (const Text& entry : kTexts)
    {
        const std::wstring text = Load(entry.id);
        ASSERT_FALSE(text.empty()) << entry.name;
        EXPECT_FALSE(std::iswspace(text.front())) << entry.name;
        EXPECT_FALSE(std::iswspace(text.back())) << entry.name;
        EXPECT_TRUE(
            std::none_of(text.begin(), text.end(), [](wchar_t c) { return (c < 0x20 && c != L'\n') || c == 0xFFFD; }))
            << entry.name;
    }
}

TEST_P(Translation, TextsExistInTheLanguagesAnsiCodePage)
{
    wchar_t codePage[8] = {};
    ASSERT_NE(::GetLocaleInfoW(GetParam().language, LOCALE_IDEFAULTANSICODEPAGE, codePage, 8), 0);
    ASSERT_EQ(std::wcstoul(codePage, nullptr, 10), GetParam().ansiCodePage);

    for (const Text& entry : kTexts)
    {
        const std::wstring text = Load(entry.id);
        BOOL replaced = FALSE;
        const int bytes = ::WideCharToMultiByte(GetParam().ansiCodePage, WC_NO_BEST_FIT_CHARS, text.c_str(),
            static_cast<int>(text.size()), nullptr, 0, nullptr, &replaced);
        EXPECT_GT(bytes, 0) << entry.name;
        EXPECT_FALSE(replaced) << entry.name;
    }
}

TEST_P(Translation, TagAndIdentifierNameTheSameLocale)
{
    const std::wstring identifier = Load(ARVMUI_STRING_LANGUAGE_ID);
    wchar_t* end = nullptr;
    const unsigned long language = std::wcstoul(identifier.c_str(), &end, 0);

    EXPECT_EQ(*end, L'\0');
    EXPECT_EQ(language, GetParam().language);
    EXPECT_EQ(Load(ARVMUI_STRING_LOCALE_TAG), GetParam().tag);
    EXPECT_EQ(::LocaleNameToLCID(GetParam().tag, 0), GetParam().language);
}

TEST_P(Translation, TagLeadsBackToTheFolder)
{
    // A search for "de-DE" also tries "de".
    const std::wstring tag = Load(ARVMUI_STRING_LOCALE_TAG);
    const std::string folder = GetParam().folder;
    EXPECT_EQ(tag.substr(0, folder.size()), std::wstring(folder.begin(), folder.end()));
}

TEST_P(Translation, ErrorTextsTakeAFileNameWhereThereIsOne)
{
    for (const ErrorText& error : kErrors)
    {
        const std::vector<std::wstring> expected(error.namesFile ? 1U : 0U, L"%s");
        EXPECT_EQ(Placeholders(Load(error.id)), expected) << error.id;
    }
}

TEST_P(Translation, ErrorTextsTakeCodeAndSystemTextInTheSecondPass)
{
    const std::vector<std::wstring> expected = {L"%lu", L"%s"};
    for (const ErrorText& error : kErrors)
    {
        std::wstring format = Load(error.id);
        if (error.namesFile)
        {
            const std::size_t at = format.find(L"%s");
            ASSERT_NE(at, std::wstring::npos) << error.id;
            format.replace(at, 2, L"file");
        }
        EXPECT_EQ(Placeholders(WithoutEscapes(format)), expected) << error.id;
    }
}

TEST_P(Translation, OtherTextsHoldNoPlaceholders)
{
    for (const Text& entry : kTexts)
    {
        const bool isError = std::any_of(
            std::begin(kErrors), std::end(kErrors), [&](const ErrorText& error) { return error.id == entry.id; });
        if (isError) continue;
        EXPECT_EQ(Load(entry.id).find(L'%'), std::wstring::npos) << entry.name;
    }
}

TEST_P(Translation, ButtonsOfOneBoxHaveDifferentAccessKeys)
{
    const std::vector<std::vector<UINT>> boxes = {
        {ARVMUI_STRING_BUTTON_OK, ARVMUI_STRING_BUTTON_CANCEL, ARVMUI_STRING_BUTTON_HELP},
        {ARVMUI_STRING_BUTTON_YES, ARVMUI_STRING_BUTTON_NO, ARVMUI_STRING_BUTTON_CANCEL, ARVMUI_STRING_BUTTON_HELP},
        {ARVMUI_STRING_BUTTON_ABORT, ARVMUI_STRING_BUTTON_RETRY, ARVMUI_STRING_BUTTON_IGNORE,
            ARVMUI_STRING_BUTTON_HELP},
        {ARVMUI_STRING_BUTTON_RETRY, ARVMUI_STRING_BUTTON_CANCEL, ARVMUI_STRING_BUTTON_HELP},
        {ARVMUI_STRING_BUTTON_CANCEL, ARVMUI_STRING_BUTTON_TRY_AGAIN, ARVMUI_STRING_BUTTON_CONTINUE,
            ARVMUI_STRING_BUTTON_HELP},
    };
    for (const std::vector<UINT>& box : boxes)
    {
        std::set<wchar_t> taken;
        for (const UINT button : box)
        {
            const wchar_t key = AccessKey(Load(button));
            if (key == 0) continue;
            EXPECT_TRUE(taken.insert(key).second) << "string " << button;
        }
    }
}

TEST_P(Translation, OnlyOkCancelAndHelpHaveNoAccessKey)
{
    for (UINT button = ARVMUI_STRING_BUTTON_OK; button <= ARVMUI_STRING_BUTTON_CONTINUE; ++button)
    {
        const bool plain = button == ARVMUI_STRING_BUTTON_OK || button == ARVMUI_STRING_BUTTON_CANCEL
                           || button == ARVMUI_STRING_BUTTON_HELP;
        EXPECT_EQ(AccessKey(Load(button)) == 0, plain) << "string " << button;
    }
}

INSTANTIATE_TEST_SUITE_P(Locales, Translation, testing::ValuesIn(kLocales),
    [](const auto& locale) { return std::string(locale.param.folder); });

}  // namespace
