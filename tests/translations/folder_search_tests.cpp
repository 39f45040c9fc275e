/*
 * Which of the resource folders the search finds for users of each language, and that the tag that a
 * resource library names itself by leads to its own folder again.
 */
#include "arvmui.h"
#include "resources/resource_ids.h"
#include "support/built_locales.h"

#include <gtest/gtest.h>

#include <ostream>

namespace
{

using namespace arvmui_test;

/* The first folder found, as the search's callback. */
DWORD ARVMUI_CALL TakeFolder(const WCHAR* tag, void* context)
{
    if (tag == nullptr || !std::filesystem::exists(BuiltResourceLibrary(tag))) return 0;
    *static_cast<std::wstring*>(context) = tag;
    return 1;
}

std::wstring FindFolder(const WCHAR* list)
{
    std::wstring folder;
    ARVMUI_EnumLocalesW(list, TakeFolder, &folder);
    return folder;
}

struct User
{
    const char* name;
    LANGID language;
    const wchar_t* folder;
};

/* GoogleTest names the tests after this. */
void PrintTo(const User& user, std::ostream* output)
{
    *output << user.name;
}

constexpr User kUsers[] = {
    {"Afrikaans", 0x0436, L"af"},
    {"Albanian", 0x041C, L"sq"},
    {"ArabicOfEgypt", 0x0C01, L"ar"},
    {"ArabicOfSaudiArabia", 0x0401, L"ar"},
    {"Basque", 0x042D, L"eu"},
    {"Belarusian", 0x0423, L"be"},
    {"Bosnian", 0x141A, L"sr"},
    {"Bulgarian", 0x0402, L"bg"},
    {"Catalan", 0x0403, L"ca"},
    {"ChineseOfHongKong", 0x0C04, L"zh-HK"},
    {"ChineseOfMacao", 0x1404, L"zh-MO"},
    {"ChineseOfSingapore", 0x1004, L"zh-SG"},
    {"ChineseSimplified", 0x0804, L"zh-CN"},
    {"ChineseTraditional", 0x0404, L"zh-TW"},
    {"Croatian", 0x041A, L"sr-HR"},
    {"Czech", 0x0405, L"cs"},
    {"Danish", 0x0406, L"da"},
    {"Dutch", 0x0413, L"nl"},
    {"DutchOfBelgium", 0x0813, L"nl"},
    {"EnglishOfBritain", 0x0809, L"en"},
    {"Estonian", 0x0425, L"et"},
    {"Finnish", 0x040B, L"fi"},
    {"French", 0x040C, L"fr"},
    {"Galician", 0x0456, L"gl"},
    {"GermanOfSwitzerland", 0x0807, L"de"},
    {"Greek", 0x0408, L"el"},
    {"Hebrew", 0x040D, L"he"},
    {"Hindi", 0x0439, L"hi"},
    {"Hungarian", 0x040E, L"hu"},
    {"Icelandic", 0x040F, L"is"},
    {"Indonesian", 0x0421, L"id"},
    {"Italian", 0x0410, L"it"},
    {"Japanese", 0x0411, L"ja"},
    {"Korean", 0x0412, L"ko"},
    {"Latvian", 0x0426, L"lv"},
    {"Lithuanian", 0x0427, L"lt"},
    {"Macedonian", 0x042F, L"mk"},
    {"Malay", 0x043E, L"ms"},
    {"MalayOfBrunei", 0x083E, L"ms"},
    {"NorwegianBokmal", 0x0414, L"nn"},
    {"NorwegianNynorsk", 0x0814, L"nn"},
    {"Persian", 0x0429, L"fa"},
    {"Polish", 0x0415, L"pl"},
    {"PortugueseOfBrazil", 0x0416, L"pt-BR"},
    {"PortugueseOfPortugal", 0x0816, L"pt-PT"},
    {"Romanian", 0x0418, L"ro"},
    {"Russian", 0x0419, L"ru"},
    {"SerbianCyrillic", 0x281A, L"sr"},
    {"SerbianCyrillicFormer", 0x0C1A, L"sr"},
    {"SerbianLatin", 0x241A, L"sr"},
    {"SerbianLatinFormer", 0x081A, L"sr"},
    {"Slovak", 0x041B, L"sk"},
    {"Slovenian", 0x0424, L"sl"},
    {"SpanishModern", 0x0C0A, L"es"},
    {"SpanishOfMexico", 0x080A, L"es"},
    {"Swedish", 0x041D, L"sv"},
    {"SwedishOfFinland", 0x081D, L"sv"},
    {"Thai", 0x041E, L"th"},
    {"Turkish", 0x041F, L"tr"},
    {"Ukrainian", 0x0422, L"uk"},
    {"Vietnamese", 0x042A, L"vi"},
};

class FolderOfUser : public testing::TestWithParam<User>
{
};

TEST_P(FolderOfUser, IsFoundByTheLanguageIdentifier)
{
    EXPECT_EQ(FindFolder(MAKEINTRESOURCEW(GetParam().language)), GetParam().folder);
}

INSTANTIATE_TEST_SUITE_P(
    Users, FolderOfUser, testing::ValuesIn(kUsers), [](const auto& user) { return std::string(user.param.name); });

struct TagInList
{
    const wchar_t* tag;
    const wchar_t* folder;
};

TEST(FolderOfTag, IsFoundForTheTagsThatPeopleWrite)
{
    constexpr TagInList kTags[] = {{L"nb-NO", L"nb"}, {L"nb", L"nb"}, {L"nn-NO", L"nn"}, {L"hr-HR", L"hr"},
        {L"hr", L"hr"}, {L"sr-RS", L"sr"}, {L"sr-SP", L"sr"}, {L"sr-Cyrl-RS", L"sr-Cyrl-RS"}, {L"zh-TW", L"zh-TW"},
        {L"pt-PT", L"pt-PT"}, {L"es-MX", L"es"}};
    for (const TagInList& row : kTags) EXPECT_EQ(FindFolder(row.tag), row.folder);
}

class FolderOfLibrary : public testing::TestWithParam<std::wstring>
{
};

TEST_P(FolderOfLibrary, IsFoundByTheLibrarysOwnTag)
{
    const HMODULE library =
        ::LoadLibraryExW(BuiltResourceLibrary(GetParam()).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    wchar_t tag[64] = {};
    ::LoadStringW(library, ARVMUI_STRING_LOCALE_TAG, tag, 64);
    ::FreeLibrary(library);

    EXPECT_EQ(FindFolder(tag), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Locales, FolderOfLibrary, testing::ValuesIn(BuiltLocales()), LocaleTestName);

}  // namespace
