#include "locale/language_tag.h"

#include "foundation/text_calls.h"

#include <array>
#include <cstdint>

namespace arvmui
{
namespace
{

struct LanguageRow
{
    char code[2];            // zero in an empty row
    std::uint8_t count;      // sublanguages that have a country
    std::uint8_t firstSlot;  // country of sublanguage 1 in CountryCodeString
};

struct Language
{
    std::uint8_t primary;  // primary language, 1 to 101
    LanguageRow row;
};

constexpr std::uint32_t kRowCount = 101;
constexpr std::uint32_t kSlotCount = 124;
constexpr size_t kCodeChars = 2;

// Two characters a slot, without separators. Slot 0 is empty; languages share slots. Peculiar codes
// (SP, CB, TA) are meant: folders of existing products bear these names.
constexpr char CountryCodeString[] = "\0\0"
                                     "SAIQEGLYDZMATNOMYESYJOLBKWAEBHQA"          //   1 Arabic
                                     "BGES"                                      //  17 Bulgarian, Spain
                                     "TWCNHKSGMO"                                //  19 Chinese
                                     "CZDK"                                      //  24 Czech, Danish
                                     "DECHATLULI"                                //  26 German
                                     "GR"                                        //  31 Greek
                                     "USGBAUCANZIEZAJMCBBZTTZWPH"                //  32 English
                                     "ESMXESGTCRPADOVECOPEARECCLUYPYBOSVHNNIPR"  //  45 Spanish
                                     "FI"                                        //  65 Finnish
                                     "FRBECACHLUMC"                              //  66 French
                                     "ILHUIS"                                    //  72 Hebrew, Hungarian, Icelandic
                                     "ITCH"                                      //  75 Italian
                                     "JPKR"                                      //  77 Japanese, Korean
                                     "NLBE"                                      //  79 Dutch
                                     "NONO"                                      //  81 Norwegian
                                     "PL"                                        //  83 Polish
                                     "BRPT"                                      //  84 Portuguese
                                     "RORU"                                      //  86 Romanian, Russian
                                     "HRSPSP"                                    //  88 Croatian, Serbian
                                     "SKAL"                                      //  91 Slovak, Albanian
                                     "SEFI"                                      //  93 Swedish
                                     "THTRPKIDUABYSIEELVLTIRVNAM"                //  95 Thai to Armenian
                                     "AZAZ"                                      // 108 Azeri
                                     "MKGEFOIN"  // 110 Macedonian, Georgian, Faeroese, India
                                     "MYBN"      // 114 Malay
                                     "KZKGKE"    // 116 Kazakh, Kyrgyz, Swahili
                                     "UZUZ"      // 119 Uzbek
                                     "TAMNMV";   // 121 Tatar, Mongolian, Divehi
static_assert(sizeof(CountryCodeString) == kSlotCount * kCodeChars + 1);

constexpr std::uint8_t kArabicSyria = 10;
constexpr std::uint8_t kSpain = 18;
constexpr std::uint8_t kSouthAfrica = 38;
constexpr std::uint8_t kIndia = 113;

constexpr Language kLanguages[] = {
    {0x01, {{'a', 'r'}, 16, 1}},
    {0x02, {{'b', 'g'}, 1, 17}},
    {0x03, {{'c', 'a'}, 1, kSpain}},
    {0x04, {{'z', 'h'}, 5, 19}},
    {0x05, {{'c', 's'}, 1, 24}},
    {0x06, {{'d', 'a'}, 1, 25}},
    {0x07, {{'d', 'e'}, 5, 26}},
    {0x08, {{'e', 'l'}, 1, 31}},
    {0x09, {{'e', 'n'}, 13, 32}},
    {0x0A, {{'e', 's'}, 20, 45}},
    {0x0B, {{'f', 'i'}, 1, 65}},
    {0x0C, {{'f', 'r'}, 6, 66}},
    {0x0D, {{'h', 'e'}, 1, 72}},
    {0x0E, {{'h', 'u'}, 1, 73}},
    {0x0F, {{'i', 's'}, 1, 74}},
    {0x10, {{'i', 't'}, 2, 75}},
    {0x11, {{'j', 'a'}, 1, 77}},
    {0x12, {{'k', 'o'}, 1, 78}},
    {0x13, {{'n', 'l'}, 2, 79}},
    {0x14, {{'n', 'n'}, 2, 81}},
    {0x15, {{'p', 'l'}, 1, 83}},
    {0x16, {{'p', 't'}, 2, 84}},
    {0x18, {{'r', 'o'}, 1, 86}},
    {0x19, {{'r', 'u'}, 1, 87}},
    {0x1A, {{'s', 'r'}, 3, 88}},
    {0x1B, {{'s', 'k'}, 1, 91}},
    {0x1C, {{'s', 'q'}, 1, 92}},
    {0x1D, {{'s', 'v'}, 2, 93}},
    {0x1E, {{'t', 'h'}, 1, 95}},
    {0x1F, {{'t', 'r'}, 1, 96}},
    {0x20, {{'u', 'r'}, 1, 97}},
    {0x21, {{'i', 'd'}, 1, 98}},
    {0x22, {{'u', 'k'}, 1, 99}},
    {0x23, {{'b', 'e'}, 1, 100}},
    {0x24, {{'s', 'l'}, 1, 101}},
    {0x25, {{'e', 't'}, 1, 102}},
    {0x26, {{'l', 'v'}, 1, 103}},
    {0x27, {{'l', 't'}, 1, 104}},
    {0x29, {{'f', 'a'}, 1, 105}},
    {0x2A, {{'v', 'i'}, 1, 106}},
    {0x2B, {{'h', 'y'}, 1, 107}},
    {0x2C, {{'a', 'z'}, 2, 108}},
    {0x2D, {{'e', 'u'}, 1, kSpain}},
    {0x2F, {{'m', 'k'}, 1, 110}},
    {0x36, {{'a', 'f'}, 1, kSouthAfrica}},
    {0x37, {{'k', 'a'}, 1, 111}},
    {0x38, {{'f', 'o'}, 1, 112}},
    {0x39, {{'h', 'i'}, 1, kIndia}},
    {0x3E, {{'m', 's'}, 2, 114}},
    {0x3F, {{'k', 'k'}, 1, 116}},
    {0x40, {{'k', 'y'}, 1, 117}},
    {0x41, {{'s', 'w'}, 1, 118}},
    {0x43, {{'u', 'z'}, 2, 119}},
    {0x44, {{'t', 't'}, 1, 121}},
    {0x46, {{'p', 'a'}, 1, kIndia}},
    {0x47, {{'g', 'u'}, 1, kIndia}},
    {0x49, {{'t', 'a'}, 1, kIndia}},
    {0x4A, {{'t', 'e'}, 1, kIndia}},
    {0x4B, {{'k', 'n'}, 1, kIndia}},
    {0x4E, {{'m', 'r'}, 1, kIndia}},
    {0x4F, {{'s', 'a'}, 1, kIndia}},
    {0x50, {{'m', 'n'}, 1, 122}},
    {0x56, {{'g', 'l'}, 1, kSpain}},
    {0x57, {{'k', 'o'}, 1, kIndia}},
    {0x5A, {{'s', 'y'}, 1, kArabicSyria}},
    {0x65, {{'d', 'i'}, 1, 123}},
};

constexpr std::array<LanguageRow, kRowCount> MakeLanguageTagTable()
{
    std::array<LanguageRow, kRowCount> table{};
    for (const Language& language : kLanguages) table[language.primary - 1u] = language.row;
    return table;
}

// Row = primary language - 1.
constexpr std::array<LanguageRow, kRowCount> LanguageTagTable = MakeLanguageTagTable();

// "%hs" is narrow in both widths, as the table is.
template <typename Char>
BOOL FormatLanguageTag(LANGID id, Char* buffer, size_t capacity) noexcept
{
    const std::uint32_t index = static_cast<std::uint32_t>(PRIMARYLANGID(id)) - 1u;
    if (index >= kRowCount || capacity == 0) return FALSE;

    const LanguageRow& row = LanguageTagTable[index];
    const std::uint32_t sublanguage = SUBLANGID(id);
    // Deliberate: unsigned, so that in an empty row (count 0) every sublanguage passes and runs
    // through the countries from slot 0 on; sublanguage 0 there would lie before them.
    const bool hasCountry = sublanguage - 1u <= row.count - 1u;
    if (hasCountry && sublanguage == 0) return FALSE;

    int length = 0;
    if (hasCountry)
    {
        const char* const country = CountryCodeString + (row.firstSlot + sublanguage - 1u) * kCodeChars;
        length = FormatFixed<Char>(buffer, capacity, ARVMUI_TEXT(Char, "%.2hs-%.2hs"), row.code, country);
    }
    else
    {
        length = FormatFixed<Char>(buffer, capacity, ARVMUI_TEXT(Char, "%.2hs"), row.code);
    }
    return length >= 1;
}

}  // namespace

BOOL FormatLanguageTagW(LANGID id, wchar_t* buffer, size_t capacity) noexcept
{
    return FormatLanguageTag(id, buffer, capacity);
}

BOOL FormatLanguageTagA(LANGID id, char* buffer, size_t capacity) noexcept
{
    return FormatLanguageTag(id, buffer, capacity);
}

}  // namespace arvmui
