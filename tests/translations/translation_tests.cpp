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
    const wchar_t* systemName;  // the system's name of the language
    unsigned ansiCodePage;      // 0: the language has none
};

/** GoogleTest names the tests after this. */
void PrintTo(const Locale& locale, std::ostream* output)
{
    *output << locale.folder;
}

constexpr Locale kLocales[] = {
    {"af", L"af-ZA", 0x0436, L"af-ZA", 1252},
    {"ar", L"ar-SA", 0x0401, L"ar-SA", 1256},
    {"be", L"be-BY", 0x0423, L"be-BY", 1251},
    {"bg", L"bg-BG", 0x0402, L"bg-BG", 1251},
    {"ca", L"ca-ES", 0x0403, L"ca-ES", 1252},
    {"cs", L"cs-CZ", 0x0405, L"cs-CZ", 1250},
    {"da", L"da-DK", 0x0406, L"da-DK", 1252},
    {"de", L"de-DE", 0x0407, L"de-DE", 1252},
    {"el", L"el-GR", 0x0408, L"el-GR", 1253},
    {"en", L"en-US", 0x0409, L"en-US", 1252},
    {"es", L"es-ES", 0x0C0A, L"es-ES", 1252},
    {"et", L"et-EE", 0x0425, L"et-EE", 1257},
    {"eu", L"eu-ES", 0x042D, L"eu-ES", 1252},
    {"fa", L"fa-IR", 0x0429, L"fa-IR", 1256},
    {"fi", L"fi-FI", 0x040B, L"fi-FI", 1252},
    {"fr", L"fr-FR", 0x040C, L"fr-FR", 1252},
    {"gl", L"gl-ES", 0x0456, L"gl-ES", 1252},
    {"he", L"he-IL", 0x040D, L"he-IL", 1255},
    {"hi", L"hi-IN", 0x0439, L"hi-IN", 0},
    {"hr", L"hr-HR", 0x041A, L"hr-HR", 1250},
    {"hu", L"hu-HU", 0x040E, L"hu-HU", 1250},
    {"id", L"id-ID", 0x0421, L"id-ID", 1252},
    {"is", L"is-IS", 0x040F, L"is-IS", 1252},
    {"it", L"it-IT", 0x0410, L"it-IT", 1252},
    {"ja", L"ja-JP", 0x0411, L"ja-JP", 932},
    {"ko", L"ko-KR", 0x0412, L"ko-KR", 949},
    {"lt", L"lt-LT", 0x0427, L"lt-LT", 1257},
    {"lv", L"lv-LV", 0x0426, L"lv-LV", 1257},
    {"mk", L"mk-MK", 0x042F, L"mk-MK", 1251},
    {"ms", L"ms-MY", 0x043E, L"ms-MY", 1252},
    {"nb", L"nb-NO", 0x0414, L"nb-NO", 1252},
    {"nl", L"nl-NL", 0x0413, L"nl-NL", 1252},
    {"nn", L"nn-NO", 0x0414, L"nb-NO", 1252},
    {"pl", L"pl-PL", 0x0415, L"pl-PL", 1250},
    {"pt-BR", L"pt-BR", 0x0416, L"pt-BR", 1252},
    {"pt-PT", L"pt-PT", 0x0816, L"pt-PT", 1252},
    {"ro", L"ro-RO", 0x0418, L"ro-RO", 1250},
    {"ru", L"ru-RU", 0x0419, L"ru-RU", 1251},
    {"sk", L"sk-SK", 0x041B, L"sk-SK", 1250},
    {"sl", L"sl-SI", 0x0424, L"sl-SI", 1250},
    {"sq", L"sq-AL", 0x041C, L"sq-AL", 1250},
    {"sr", L"sr-RS", 0x241A, L"sr-Latn-RS", 1250},
    {"sr-Cyrl-RS", L"sr-Cyrl-RS", 0x281A, L"sr-Cyrl-RS", 1251},
    {"sr-HR", L"sr-HR", 0x041A, L"hr-HR", 1250},
    {"sv", L"sv-SE", 0x041D, L"sv-SE", 1252},
    {"th", L"th-TH", 0x041E, L"th-TH", 874},
    {"tr", L"tr-TR", 0x041F, L"tr-TR", 1254},
    {"uk", L"uk-UA", 0x0422, L"uk-UA", 1251},
    {"vi", L"vi-VN", 0x042A, L"vi-VN", 1258},
    {"zh-CN", L"zh-CN", 0x0804, L"zh-CN", 936},
    {"zh-HK", L"zh-HK", 0x0C04, L"zh-HK", 950},
    {"zh-MO", L"zh-MO", 0x1404, L"zh-MO", 950},
    {"zh-SG", L"zh-SG", 0x1004, L"zh-SG", 936},
    {"zh-TW", L"zh-TW", 0x0404, L"zh-TW", 950},
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

/** The character behind a label's '&', folded as the system does; 0 for a label without access key. */
wchar_t AccessKey(const std::wstring& label)
{
    for (std::size_t at = 0; at + 1 < label.size(); ++at)
    {
        if (label[at] != L'&') continue;
        wchar_t key = label[at + 1];
        if (key != L'&')
        {
            ::CharUpperBuffW(&key, 1);
            return key;
        }
        ++at;
    }
    return 0;
}

/** What the dialogs take for Latin text, readable wherever they are shown. */
bool IsLatin(wchar_t character)
{
    return character < 0x0370 || (character >= 0x1E00 && character <= 0x1EFF);
}

/** The code page of Arabic has the Arabic yeh only, to which the system converts the Persian one. */
std::wstring WithYehOfTheCodePage(std::wstring text, unsigned codePage)
{
    if (codePage == 1256) std::replace(text.begin(), text.end(), L'\x06CC', L'\x064A');
    return text;
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

// One other character, and the dialogs show the English text to whoever lacks the language's keyboard.
TEST_P(Translation, TextsShownWithoutKeyboardAreLatinWhereTheLanguageIs)
{
    constexpr UINT kShown[] = {ARVMUI_STRING_NATIVE_NAME, ARVMUI_STRING_KEYWORD_USER, ARVMUI_STRING_KEYWORD_SYSTEM,
        ARVMUI_STRING_KEYWORD_UILANG, ARVMUI_STRING_KEYWORD_KIV, ARVMUI_STRING_KEYWORD_MSIE, ARVMUI_STRING_BUTTON_OK,
        ARVMUI_STRING_BUTTON_CANCEL, ARVMUI_STRING_LANGUAGE_DIALOG_TITLE, ARVMUI_STRING_LANGUAGE_DIALOG_TEXT};
    if (!IsLatin(Load(ARVMUI_STRING_NATIVE_NAME).front())) return;
    for (const UINT id : kShown)
    {
        const std::wstring text = Load(id);
        EXPECT_TRUE(std::all_of(text.begin(), text.end(), IsLatin)) << "string " << id;
    }
}

TEST_P(Translation, TextsExistInTheLanguagesAnsiCodePage)
{
    wchar_t codePage[8] = {};
    ASSERT_NE(::GetLocaleInfoW(GetParam().language, LOCALE_IDEFAULTANSICODEPAGE, codePage, 8), 0);
    ASSERT_EQ(std::wcstoul(codePage, nullptr, 10), GetParam().ansiCodePage);
    if (GetParam().ansiCodePage == 0) return;

    for (const Text& entry : kTexts)
    {
        const std::wstring text = WithYehOfTheCodePage(Load(entry.id), GetParam().ansiCodePage);
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
    EXPECT_EQ(::LocaleNameToLCID(GetParam().systemName, 0), GetParam().language);
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
    [](const auto& locale)
    {
        std::string name = locale.param.folder;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    });

}  // namespace
