// The table of languages, checked for every language identifier there is.
#include "locale/language_tag.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using arvmui::FormatLanguageTagA;
using arvmui::FormatLanguageTagW;

struct LanguageLine
{
    WORD primary;
    const char* code;
    const char* countries;  // of sublanguages 1, 2, ...
};

const LanguageLine kLanguages[] = {
    {0x01, "ar", "SA IQ EG LY DZ MA TN OM YE SY JO LB KW AE BH QA"},
    {0x02, "bg", "BG"},
    {0x03, "ca", "ES"},
    {0x04, "zh", "TW CN HK SG MO"},
    {0x05, "cs", "CZ"},
    {0x06, "da", "DK"},
    {0x07, "de", "DE CH AT LU LI"},
    {0x08, "el", "GR"},
    {0x09, "en", "US GB AU CA NZ IE ZA JM CB BZ TT ZW PH"},
    {0x0A, "es", "ES MX ES GT CR PA DO VE CO PE AR EC CL UY PY BO SV HN NI PR"},
    {0x0B, "fi", "FI"},
    {0x0C, "fr", "FR BE CA CH LU MC"},
    {0x0D, "he", "IL"},
    {0x0E, "hu", "HU"},
    {0x0F, "is", "IS"},
    {0x10, "it", "IT CH"},
    {0x11, "ja", "JP"},
    {0x12, "ko", "KR"},
    {0x13, "nl", "NL BE"},
    {0x14, "nn", "NO NO"},
    {0x15, "pl", "PL"},
    {0x16, "pt", "BR PT"},
    {0x18, "ro", "RO"},
    {0x19, "ru", "RU"},
    {0x1A, "sr", "HR SP SP"},
    {0x1B, "sk", "SK"},
    {0x1C, "sq", "AL"},
    {0x1D, "sv", "SE FI"},
    {0x1E, "th", "TH"},
    {0x1F, "tr", "TR"},
    {0x20, "ur", "PK"},
    {0x21, "id", "ID"},
    {0x22, "uk", "UA"},
    {0x23, "be", "BY"},
    {0x24, "sl", "SI"},
    {0x25, "et", "EE"},
    {0x26, "lv", "LV"},
    {0x27, "lt", "LT"},
    {0x29, "fa", "IR"},
    {0x2A, "vi", "VN"},
    {0x2B, "hy", "AM"},
    {0x2C, "az", "AZ AZ"},
    {0x2D, "eu", "ES"},
    {0x2F, "mk", "MK"},
    {0x36, "af", "ZA"},
    {0x37, "ka", "GE"},
    {0x38, "fo", "FO"},
    {0x39, "hi", "IN"},
    {0x3E, "ms", "MY BN"},
    {0x3F, "kk", "KZ"},
    {0x40, "ky", "KG"},
    {0x41, "sw", "KE"},
    {0x43, "uz", "UZ UZ"},
    {0x44, "tt", "TA"},
    {0x46, "pa", "IN"},
    {0x47, "gu", "IN"},
    {0x49, "ta", "IN"},
    {0x4A, "te", "IN"},
    {0x4B, "kn", "IN"},
    {0x4E, "mr", "IN"},
    {0x4F, "sa", "IN"},
    {0x50, "mn", "MN"},
    {0x56, "gl", "ES"},
    {0x57, "ko", "IN"},
    {0x5A, "sy", "SY"},
    {0x65, "di", "MV"},
};

constexpr WORD kLastPrimary = 0x65;
constexpr WORD kPrimaries = 0x400;
constexpr WORD kSublanguages = 64;

// The countries through which the sublanguages 1, 2, ... of an identifier without a row run: an
// empty one, then those of all languages in order, each shared one once.
const std::string kCountryRun =
    "SA IQ EG LY DZ MA TN OM YE SY JO LB KW AE BH QA BG ES TW CN HK SG MO CZ DK DE CH AT LU LI GR "
    "US GB AU CA NZ IE ZA JM CB BZ TT ZW PH ES MX ES GT CR PA DO VE CO PE AR EC CL UY PY BO SV HN NI PR";

std::vector<std::string> Words(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

// The tag that an identifier is to have; empty for none.
std::string ExpectedTag(WORD primary, WORD sublanguage)
{
    if (primary == 0 || primary > kLastPrimary) return "";
    for (const LanguageLine& line : kLanguages)
    {
        if (line.primary != primary) continue;
        const std::vector<std::string> countries = Words(line.countries);
        if (sublanguage == 0 || sublanguage > countries.size()) return line.code;
        return std::string(line.code) + "-" + countries[sublanguage - 1u];
    }
    // A language without a row of its own.
    static const std::vector<std::string> run = Words("- " + kCountryRun);
    if (sublanguage == 0) return "";
    return sublanguage == 1 ? "-" : "-" + run[sublanguage - 1u];
}

LANGID MakeId(WORD primary, WORD sublanguage)
{
    return static_cast<LANGID>(sublanguage << 10 | primary);
}

std::string WideTag(LANGID id)
{
    wchar_t buffer[16];
    std::wmemset(buffer, L'?', 16);
    if (!FormatLanguageTagW(id, buffer, 16)) return "";
    const std::wstring tag(buffer);
    return std::string(tag.begin(), tag.end());
}

std::string NarrowTag(LANGID id)
{
    char buffer[16];
    std::memset(buffer, '?', 16);
    return FormatLanguageTagA(id, buffer, 16) ? buffer : "";
}

TEST(LanguageTag, EveryIdentifierHasTheTagOfTheTableInWideText)
{
    for (WORD primary = 0; primary < kPrimaries; ++primary)
    {
        for (WORD sublanguage = 0; sublanguage < kSublanguages; ++sublanguage)
        {
            EXPECT_EQ(WideTag(MakeId(primary, sublanguage)), ExpectedTag(primary, sublanguage))
                << "primary " << primary << ", sublanguage " << sublanguage;
        }
    }
}

TEST(LanguageTag, EveryIdentifierHasTheTagOfTheTableInNarrowText)
{
    for (WORD primary = 0; primary < kPrimaries; ++primary)
    {
        for (WORD sublanguage = 0; sublanguage < kSublanguages; ++sublanguage)
        {
            EXPECT_EQ(NarrowTag(MakeId(primary, sublanguage)), ExpectedTag(primary, sublanguage))
                << "primary " << primary << ", sublanguage " << sublanguage;
        }
    }
}

struct NamedTag
{
    const char* name;
    LANGID id;
    const char* tag;  // empty: none
    friend void PrintTo(const NamedTag& entry, std::ostream* stream) { *stream << entry.name; }
};

const NamedTag kNamedTags[] = {
    {"AmericanEnglish", 0x0409, "en-US"},
    {"BritishEnglish", 0x0809, "en-GB"},
    {"CaribbeanEnglishKeepsItsOldCode", 0x2409, "en-CB"},
    {"ModernSpanishIsSpainToo", 0x0C0A, "es-ES"},
    {"TraditionalSpanish", 0x040A, "es-ES"},
    {"FirstNorwegian", 0x0414, "nn-NO"},
    {"SecondNorwegian", 0x0814, "nn-NO"},
    {"CroatianSharesTheSerbianRow", 0x041A, "sr-HR"},
    {"SerbianLatin", 0x081A, "sr-SP"},
    {"SerbianCyrillic", 0x0C1A, "sr-SP"},
    {"SimplifiedChinese", 0x0804, "zh-CN"},
    {"Konkani", 0x0457, "ko-IN"},
    {"Syriac", 0x045A, "sy-SY"},
    {"Divehi", 0x0465, "di-MV"},
    {"NoSublanguage", 0x0009, "en"},
    {"SublanguageBeyondTheRow", 0x3C09, "en"},
    {"NoLanguage", 0x0000, ""},
    {"PrimaryBehindTheTable", 0x0066, ""},
    {"NoPrimary", 0x0400, ""},
    {"EmptyRowFirstSublanguage", 0x0417, "-"},
    {"EmptyRowSecondSublanguage", 0x0817, "-SA"},
    {"EmptyRowWithoutSublanguage", 0x0017, ""},
};

class NamedLanguageTag : public testing::TestWithParam<NamedTag>
{
};

TEST_P(NamedLanguageTag, IsTheSameInBothWidths)
{
    EXPECT_EQ(WideTag(GetParam().id), GetParam().tag);
    EXPECT_EQ(NarrowTag(GetParam().id), GetParam().tag);
}

INSTANTIATE_TEST_SUITE_P(
    , NamedLanguageTag, testing::ValuesIn(kNamedTags), [](const auto& entry) { return entry.param.name; });

struct CapacityCase
{
    LANGID id;
    size_t capacity;
    BOOL result;
    const char* text;  // what the buffer holds
};

// A tag of five characters needs six, a bare language three, a lone hyphen two.
const CapacityCase kCapacities[] = {
    {0x0409, 6, TRUE, "en-US"},
    {0x0409, 5, FALSE, "en-U"},
    {0x0409, 3, FALSE, "en"},
    {0x0409, 1, FALSE, ""},
    {0x0009, 3, TRUE, "en"},
    {0x0009, 2, FALSE, "e"},
    {0x0417, 2, TRUE, "-"},
    {0x0417, 1, FALSE, ""},
};

TEST(LanguageTag, WideTagThatDoesNotFitIsCutTerminatedAndRefused)
{
    for (const CapacityCase& entry : kCapacities)
    {
        SCOPED_TRACE(testing::Message() << entry.id << " in " << entry.capacity);
        wchar_t buffer[8];
        std::wmemset(buffer, L'?', 8);
        EXPECT_EQ(FormatLanguageTagW(entry.id, buffer, entry.capacity), entry.result);
        EXPECT_EQ(std::wstring(buffer), std::wstring(entry.text, entry.text + std::strlen(entry.text)));
        EXPECT_EQ(buffer[entry.capacity], L'?') << "written behind the buffer";
    }
}

TEST(LanguageTag, NarrowTagThatDoesNotFitIsCutTerminatedAndRefused)
{
    for (const CapacityCase& entry : kCapacities)
    {
        SCOPED_TRACE(testing::Message() << entry.id << " in " << entry.capacity);
        char buffer[8];
        std::memset(buffer, '?', 8);
        EXPECT_EQ(FormatLanguageTagA(entry.id, buffer, entry.capacity), entry.result);
        EXPECT_STREQ(buffer, entry.text);
        EXPECT_EQ(buffer[entry.capacity], '?') << "written behind the buffer";
    }
}

TEST(LanguageTag, FailureLeavesTheLastErrorCode)
{
    wchar_t buffer[4];
    ::SetLastError(4711);
    EXPECT_FALSE(FormatLanguageTagW(0x0000, buffer, 4));
    EXPECT_FALSE(FormatLanguageTagW(0x0409, buffer, 4));
    EXPECT_EQ(::GetLastError(), 4711u);
}

}  // namespace
