// Whether the package's texts are in their languages, complete and storable, and refer to the same things.

#include "installer/sample_package/sample_package.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>
#include <utility>

using namespace arvmui_test;

namespace
{

struct Text
{
    std::wstring place;  // table, key and column
    std::wstring text;
};

bool IsStream(const std::wstring& type)
{
    return type[0] == L'v' || type[0] == L'V';
}

bool IsNumber(const std::wstring& type)
{
    return type[0] == L'i' || type[0] == L'I';
}

void AppendTexts(const PackageTable& table, const std::wstring& name, std::vector<Text>& texts)
{
    for (const PackageRow& row : table.rows)
    {
        for (size_t i = 0; i < table.columns.size(); ++i)
        {
            if (IsStream(table.types[i]) || IsNumber(table.types[i])) continue;
            texts.push_back({name + L"." + table.columns[i] + L" " + table.KeyOf(row), row.at(table.columns[i])});
        }
    }
}

// What the rows of the locale's tables hold; their places are named as in the base tables. For English these
// are all rows that another locale translates.
std::map<std::wstring, std::wstring> TranslatedTexts(const PackageLocale& locale)
{
    std::vector<Text> english;
    std::vector<Text> local;
    std::set<std::wstring> bases;
    for (const PackageTable& table : Sample().Tables())
    {
        if (const auto base = Sample().BaseOf(table)) bases.insert(*base);
    }
    for (const std::wstring& base : bases)
    {
        AppendTexts(Sample().Table(base), base, english);
        AppendTexts(Sample().Localized(base, locale), base, local);
    }

    std::map<std::wstring, std::wstring> texts;
    const bool isEnglish = locale.tag == L"en";
    for (size_t i = 0; i < local.size(); ++i)
    {
        if (isEnglish || local[i].text != english[i].text) texts[local[i].place] = local[i].text;
    }
    return texts;
}

std::map<std::wstring, std::wstring> DialogTexts(const PackageLocale& locale)
{
    std::map<std::wstring, std::wstring> texts;
    for (const PackageRow& row : Sample().Table(L"ARVUIText").rows)
    {
        if (row.at(L"Locale") == locale.tag) texts[L"ARVUIText " + row.at(L"Key")] = row.at(L"Text");
    }
    return texts;
}

std::map<std::wstring, std::wstring> SpokenTexts(const PackageLocale& locale)
{
    std::map<std::wstring, std::wstring> texts = TranslatedTexts(locale);
    texts.merge(DialogTexts(locale));
    return texts;
}

template <typename Check>
void ForEachLocale(const Check& check)
{
    for (const PackageLocale& locale : Sample().Locales())
    {
        SCOPED_TRACE(Narrow(locale.tag));
        check(locale);
    }
}

template <typename Check>
void ForEachTranslation(const Check& check)
{
    ForEachLocale(
        [&check](const PackageLocale& locale)
        {
            if (locale.tag != L"en") check(locale);
        });
}

UINT AnsiCodePage(LANGID language)
{
    DWORD codePage = 0;
    ::GetLocaleInfoW(MAKELCID(language, SORT_DEFAULT), LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
        reinterpret_cast<wchar_t*>(&codePage), sizeof(codePage) / sizeof(wchar_t));
    return codePage;
}

// Back and forth through the code page.
bool FitsInto(UINT codePage, const std::wstring& text)
{
    std::string narrow(text.size() * 4 + 1, '\0');
    const int bytes = ::WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, text.c_str(), -1, narrow.data(),
        static_cast<int>(narrow.size()), nullptr, nullptr);
    std::wstring back(text.size() + 1, L'\0');
    const int characters =
        ::MultiByteToWideChar(codePage, 0, narrow.data(), bytes, back.data(), static_cast<int>(back.size()));
    return characters > 0 && back.c_str() == text;
}

bool IsAscii(const std::wstring& text)
{
    return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c < 0x80; });
}

bool Contains(const std::wstring& text, wchar_t first, wchar_t last)
{
    return std::any_of(text.begin(), text.end(), [=](wchar_t c) { return c >= first && c <= last; });
}

bool HasKana(const std::wstring& text)
{
    return Contains(text, 0x3041, 0x30FE);
}

bool HasHan(const std::wstring& text)
{
    return Contains(text, 0x4E00, 0x9FFF);
}

// A text without what the installer fills in, may leave out or reads as a style: "[Name]", "{ [Name]}", "{\Style}",
// "&".
std::wstring WordsOf(const std::wstring& text)
{
    std::wstring words;
    int depth = 0;
    for (const wchar_t c : text)
    {
        if (c == L'[' || c == L'{') ++depth;
        if (depth == 0 && c != L'&') words += c;
        if (depth > 0 && (c == L']' || c == L'}')) --depth;
    }
    return words;
}

// "[Name]" and "[1]", in the order of their names: a language may need another order of its sentence.
std::multiset<std::wstring> References(const std::wstring& text)
{
    std::multiset<std::wstring> references;
    for (size_t begin = text.find(L'['); begin != std::wstring::npos; begin = text.find(L'[', begin + 1))
        references.insert(text.substr(begin, text.find(L']', begin) - begin + 1));
    return references;
}

// Words that sentences of one of the languages can hardly do without, and that are rare in the others. A single
// letter is what an apostrophe leaves of an article.
const std::map<std::wstring, std::set<std::wstring>> kFrequentWords = {
    {L"en", {L"the", L"to", L"this", L"that", L"and", L"is", L"was", L"of", L"for", L"you", L"what", L"shall", L"may",
                L"with", L"an", L"please"}},
    {L"de", {L"der", L"die", L"das", L"wird", L"werden", L"wurde", L"und", L"sie", L"auf", L"nicht", L"ist", L"den",
                L"ein", L"eine", L"mit", L"zu", L"bitte", L"sind", L"bereits", L"dem"}},
    {L"fr", {L"le", L"la", L"les", L"du", L"de", L"une", L"sur", L"pour", L"vous", L"ce", L"cette", L"est", L"et",
                L"dans", L"d", L"l", L"des", L"un", L"par", L"que", L"pendant"}},
};

std::wstring LowerCase(std::wstring text)
{
    ::CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

std::vector<std::wstring> Words(const std::wstring& text)
{
    std::vector<std::wstring> words;
    std::wstring word;
    for (const wchar_t c : LowerCase(WordsOf(text)) + L" ")
    {
        if ((c >= L'a' && c <= L'z') || (c >= 0xC0 && c <= 0x24F))
            word += c;
        else if (!word.empty())
            words.push_back(std::exchange(word, {}));
    }
    return words;
}

std::ptrdiff_t CountFrequentWords(const std::vector<std::wstring>& words, const std::wstring& language)
{
    const std::set<std::wstring>& frequent = kFrequentWords.at(language);
    return std::count_if(
        words.begin(), words.end(), [&frequent](const std::wstring& word) { return frequent.contains(word); });
}

bool HasWords(const std::wstring& text)
{
    int letters = 0;
    for (const wchar_t c : WordsOf(text))
    {
        letters = c >= L'a' && c <= L'z' ? letters + 1 : 0;
        if (letters == 3) return true;
    }
    return false;
}

// Not a name of the package's own, such as that of a property.
bool IsSentence(const std::wstring& text)
{
    return text.find(L' ') != std::wstring::npos && HasWords(text);
}

}  // namespace

// The cached package ends up in the code page of one language; what that does not translate must exist in it.
TEST(SamplePackageTexts, BaseTablesAreInAscii)
{
    for (const PackageTable& table : Sample().Tables())
    {
        if (Sample().BaseOf(table) || table.name == L"ARVUILocale" || table.name == L"ARVUIText") continue;
        std::vector<Text> texts;
        AppendTexts(table, table.name, texts);
        for (const Text& text : texts) EXPECT_TRUE(IsAscii(text.text)) << Narrow(text.place + L": " + text.text);
    }
}

TEST(SamplePackageTexts, TranslationsExistInTheirLanguagesCodePage)
{
    ForEachTranslation(
        [](const PackageLocale& locale)
        {
            const UINT codePage = AnsiCodePage(locale.language);
            ASSERT_NE(codePage, 0u);
            for (const auto& [place, text] : TranslatedTexts(locale))
                EXPECT_TRUE(FitsInto(codePage, text)) << Narrow(place + L": " + text);
        });
}

// Such a text is shown in English to whoever has no keyboard of the language.
TEST(SamplePackageTexts, LanguageDialogNeedsNoKeyboardForLatinScripts)
{
    for (const wchar_t* tag : {L"en", L"de", L"fr"})
    {
        std::map<std::wstring, std::wstring> texts = DialogTexts(Sample().Locale(tag));
        texts[L"NativeName"] = Sample().Row(L"ARVUILocale", tag).at(L"NativeName");
        for (const auto& [place, text] : texts)
            EXPECT_FALSE(Contains(text, 0x0370, 0xFFFF)) << Narrow(tag + (L" " + place) + L": " + text);
    }
}

TEST(SamplePackageTexts, EveryEnglishSentenceIsTranslated)
{
    const std::set<std::wstring> names = {L"ARVMUI samples", L"MS Shell Dlg"};
    const auto english = TranslatedTexts(Sample().Locale(L"en"));
    ForEachTranslation(
        [&](const PackageLocale& locale)
        {
            const auto texts = TranslatedTexts(locale);
            for (const auto& [place, text] : english)
            {
                if (IsSentence(text) && !names.contains(text))
                {
                    EXPECT_TRUE(texts.contains(place)) << Narrow(place + L": " + text);
                }
            }
        });
}

TEST(SamplePackageTexts, JapaneseAndChineseAreInTheirScripts)
{
    const std::set<std::wstring> names = {L"MS UI Gothic", L"SimSun"};
    for (const auto& [place, text] : TranslatedTexts(Sample().Locale(L"ja")))
        EXPECT_TRUE(HasKana(text) || HasHan(text) || names.contains(text)) << Narrow(place + L": " + text);
    for (const auto& [place, text] : TranslatedTexts(Sample().Locale(L"zh-CN")))
        EXPECT_TRUE((HasHan(text) && !HasKana(text)) || names.contains(text)) << Narrow(place + L": " + text);
}

TEST(SamplePackageTexts, LongJapaneseTextsHaveKana)
{
    for (const auto& [place, text] : TranslatedTexts(Sample().Locale(L"ja")))
    {
        if (text.size() > 12)
        {
            EXPECT_TRUE(HasKana(text) || !HasHan(text)) << Narrow(place + L": " + text);
        }
    }
}

// Beside those of English. A short text of another language may show by nothing else.
TEST(SamplePackageTexts, EuropeanLanguagesUseTheirOwnLetters)
{
    const std::map<std::wstring, std::wstring> letters = {
        {L"de", L"\u00E4\u00F6\u00FC\u00DF"},
        {L"fr", L"\u00E0\u00E2\u00E7\u00E8\u00E9\u00EA\u00EB\u00EE\u00EF\u00F4\u00F9\u00FB\u0153"},
    };
    for (const auto& [tag, own] : letters)
    {
        for (const auto& [place, text] : SpokenTexts(Sample().Locale(tag)))
        {
            for (const wchar_t c : LowerCase(text))
            {
                const bool isPunctuation = c < 0xC0 || (c >= 0x2000 && c < 0x2100);
                EXPECT_TRUE(isPunctuation || own.find(c) != std::wstring::npos)
                    << Narrow(tag + L": " + place + L": " + text);
            }
        }
    }
}

// One sentence that was left in another language, or got into the wrong file, is enough.
TEST(SamplePackageTexts, EverySentenceUsesTheWordsOfItsLanguage)
{
    constexpr size_t kSentenceWords = 4;
    for (const wchar_t* tag : {L"en", L"de", L"fr"})
    {
        for (const auto& [place, text] : SpokenTexts(Sample().Locale(tag)))
        {
            const std::vector<std::wstring> words = Words(text);
            if (words.size() < kSentenceWords || !IsSentence(text)) continue;
            for (const auto& [other, frequent] : kFrequentWords)
            {
                if (other == tag) continue;
                EXPECT_GT(CountFrequentWords(words, tag), CountFrequentWords(words, other))
                    << Narrow(tag + (L", " + other) + L": " + place + L": " + text);
            }
        }
    }
}

TEST(SamplePackageTexts, NoTwoLanguagesShareASentence)
{
    const std::vector<PackageLocale>& locales = Sample().Locales();
    for (size_t i = 0; i < locales.size(); ++i)
    {
        for (size_t k = 0; k < i; ++k)
        {
            const auto one = TranslatedTexts(locales[i]);
            for (const auto& [place, text] : TranslatedTexts(locales[k]))
            {
                const auto same = one.find(place);
                if (same == one.end() || WordsOf(text).size() < 12) continue;
                EXPECT_NE(same->second, text) << Narrow(locales[i].tag + L", " + locales[k].tag + L": " + place);
            }
        }
    }
}

TEST(SamplePackageTexts, TranslationsReferToWhatTheEnglishTextRefersTo)
{
    const auto english = TranslatedTexts(Sample().Locale(L"en"));
    ForEachTranslation(
        [&english](const PackageLocale& locale)
        {
            for (const auto& [place, text] : TranslatedTexts(locale))
                EXPECT_EQ(References(text), References(english.at(place))) << Narrow(place + L": " + text);
        });
}

TEST(SamplePackageTexts, BracketsAndBracesComeInPairs)
{
    ForEachLocale(
        [](const PackageLocale& locale)
        {
            for (const auto& [place, text] : TranslatedTexts(locale))
            {
                EXPECT_EQ(std::count(text.begin(), text.end(), L'['), std::count(text.begin(), text.end(), L']'))
                    << Narrow(place + L": " + text);
                EXPECT_EQ(std::count(text.begin(), text.end(), L'{'), std::count(text.begin(), text.end(), L'}'))
                    << Narrow(place + L": " + text);
            }
        });
}

TEST(SamplePackageTexts, FileNamesAreFileNames)
{
    ForEachLocale(
        [](const PackageLocale& locale)
        {
            const std::wstring name = Sample().Localized(L"Shortcut", locale).FindRow(L"Start")->at(L"Name");
            const size_t bar = name.find(L'|');
            ASSERT_NE(bar, std::wstring::npos) << Narrow(name);
            EXPECT_LE(bar, 8u) << Narrow(name);
            EXPECT_TRUE(IsAscii(name.substr(0, bar))) << Narrow(name);
            EXPECT_EQ(name.find_first_of(L"\\?|><:/*\"", bar + 1), std::wstring::npos) << Narrow(name);
        });
}
