#include "settings_generator.h"

#include <type_traits>

namespace arvmui_test
{
namespace
{

// The same few names in files and questions, so that they meet. Some equal others without regard to
// case, some contain characters that the comparison ignores.
constexpr const char* kNames[] = {"a", "A", "b", "key", "KEY", "b c", "sec", "k-1", "k_1", "k1", "InputEncoding",
    "Encoding",
    "gr\xF6\xDF"
    "e",
    "gr\xC3\xB6\xC3\x9F"
    "e",
    "GR\xD6SSE", "\x93\xFA\x96\x7B", "\xE6\x97\xA5\xE6\x9C\xAC", "\xE1\xE2", "\xB0\xA1", "\xC4\xE3", "\x81", "\xC3",
    "\x8E\xB1", "\xF0\x9F\x98\x80"};

constexpr const wchar_t* kWideNames[] = {L"a", L"A", L"b", L"key", L"KEY", L"b c", L"sec", L"k-1", L"k_1", L"k1",
    L"InputEncoding", L"Encoding",
    L"gr\x00F6\x00DF"
    L"e",
    L"GR\x00D6SSE", L"\x65E5\x672C", L"\x00E1\x00E2", L"\xFFFD", L"\xFFFD\xFFFD", L"", L" a", L"\x0430", L"\x03B1"};

// The system is slow to find out that it does not know these: rarely used.
constexpr const char* kDoubtfulEncodings[] = {"EUC-JP", "GB18030", "UTF-16BE", "12345"};

constexpr const char* kEncodings[] = {"UTF-8", "UTF-8", "utf8", "Shift_JIS", "SJIS", "cp932", "936", "windows-1251",
    "1253", "ms950", "949", "874", "20932", "28591", "1252", "0", "ISO8859_1", "ISO-8859-1", "GBK", "US-ASCII", "65000",
    "nonsense", "", "65536", "-4294966044", "65001 x", " 932"};

constexpr const char* kFragments[] = {"x", "abc", " ", "  ", "\t", "'", "\"", "''", "\"\"", ";", "=", "[", "]", "#",
    "\\", "\r", "\v", "\f", "\xE4", "\xF6\xDF", "\xC3\xA4", "\xE2\x82\xAC", "\xE6\x97\xA5", "\xF0\x9F\x98\x80",
    "\x93\xFA", "\x81\x40", "\x81", "\x82\xA0", "\xB1", "\xB0\xA1", "\x8F\xB0\xA1", "\xA4\x22", "\x8E", "\xE9", "\xC3",
    "\xFF", "\xEF\xBF\xBD", "\xA0", "\x80", "\x01"};

// Text of the wanted length; what lies beyond 270 characters is dropped.
constexpr unsigned kLongLengths[] = {268, 269, 270, 271, 272, 300, 540, 1030};

template <typename Item, size_t kCount>
Item Pick(SettingsGenerator& generator, const Item (&items)[kCount])
{
    return items[generator.Below(static_cast<unsigned>(kCount))];
}

}  // namespace

unsigned SettingsGenerator::Below(unsigned limit)
{
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<unsigned>((state_ >> 33) % limit);
}

std::string SettingsGenerator::Blanks()
{
    static constexpr const char* kBlanks[] = {"", "", "", "", " ", "  ", "\t", " \t ", "\r", "\v", "\f"};
    return Pick(*this, kBlanks);
}

std::string SettingsGenerator::LineEnd()
{
    static constexpr const char* kEnds[] = {
        "\n", "\n", "\n", "\n", "\r\n", "\r\n", "\r\n", "\n\n", "\r\r\n", "\r", " \n"};
    return Pick(*this, kEnds);
}

std::string SettingsGenerator::Name()
{
    if (OneIn(40)) return std::string(Pick(*this, kLongLengths), OneIn(2) ? 'x' : 'y');
    if (OneIn(60)) return std::string("a\0b", 3);
    if (OneIn(30)) return Name() + Pick(*this, kFragments);
    return Pick(*this, kNames);
}

std::string SettingsGenerator::Value()
{
    std::string value;
    if (OneIn(25)) value.assign(Pick(*this, kLongLengths), OneIn(3) ? ' ' : 'v');
    for (unsigned count = Below(6); count != 0; --count) value += Pick(*this, kFragments);
    if (OneIn(40)) value += std::string("\0", 1);
    if (OneIn(3)) value += "plain value";
    if (OneIn(4)) return value;
    const std::string quote(1, OneIn(2) ? '"' : '\'');
    if (OneIn(3)) return quote + value + quote + (OneIn(3) ? " ; note" : "");
    return OneIn(12) ? quote + value : value;
}

std::string SettingsGenerator::Encoding()
{
    const std::string name = OneIn(500) ? Pick(*this, kDoubtfulEncodings) : Pick(*this, kEncodings);
    return OneIn(4) ? "\"" + name + "\"" : name;
}

std::string SettingsGenerator::Line()
{
    const unsigned kind = Below(40);
    if (kind < 16) return Blanks() + Name() + Blanks() + "=" + Blanks() + Value();
    if (kind < 26) return Blanks() + "[" + Name() + (OneIn(20) ? " " : "") + "]" + Blanks();
    if (kind < 29) return Blanks() + ";" + Value();
    if (kind < 31) return Blanks();
    if (kind < 34) return "[Encoding]\n" + Blanks() + "InputEncoding" + Blanks() + "=" + Blanks() + Encoding();
    if (kind < 35) return "InputEncoding=" + Encoding();
    if (kind < 36) return Blanks() + Name();
    if (kind < 37) return "[" + Name();
    if (kind < 38) return "[" + Name() + "]" + Value();
    if (kind < 39) return "=" + Value();
    std::string garbage;
    for (unsigned count = Below(30); count != 0; --count) garbage += static_cast<char>(Below(256));
    return garbage;
}

std::string SettingsGenerator::File()
{
    std::string file;
    if (OneIn(25)) file += "\xEF\xBB\xBF";
    for (unsigned count = Below(14); count != 0; --count) file += Line() + LineEnd();
    if (OneIn(3)) file += Line();
    if (OneIn(30) && !file.empty()) file[Below(static_cast<unsigned>(file.size()))] = static_cast<char>(Below(256));
    if (OneIn(50)) file.insert(0, std::string(1000 + Below(40), ' '));
    return file;
}

DWORD SettingsGenerator::Size()
{
    static constexpr DWORD kSizes[] = {1, 2, 3, 9, 10, 100, 269, 270, 271, 272, 4096, 4096, 4096, 4096};
    return OneIn(4) ? 1 + Below(40) : Pick(*this, kSizes);
}

std::wstring SettingsGenerator::WideName()
{
    if (OneIn(40)) return std::wstring(Pick(*this, kLongLengths), OneIn(2) ? L'x' : L'y');
    return Pick(*this, kWideNames);
}

std::string SettingsGenerator::NarrowName()
{
    if (OneIn(40)) return std::string(Pick(*this, kLongLengths), OneIn(2) ? 'x' : 'y');
    return OneIn(30) ? "" : Pick(*this, kNames);
}

template <typename Char>
ProfileQuery<Char> SettingsGenerator::Query()
{
    using Text = std::basic_string<Char>;
    ProfileQuery<Char> query;
    const auto name = [this]
    {
        if constexpr (std::is_same_v<Char, wchar_t>)
            return WideName();
        else
            return NarrowName();
    };
    query.anySection = OneIn(4);
    if (!query.anySection && !OneIn(6)) query.section = name();
    if (!OneIn(5)) query.key = name();
    if (!OneIn(5))
    {
        // The same bytes in both widths; in the narrow one some of them make characters.
        Text text;
        for (unsigned count = Below(8); count != 0; --count)
        {
            for (const char* byte = Pick(*this, kFragments); *byte; ++byte)
            {
                text.push_back(static_cast<Char>(static_cast<unsigned char>(*byte)));
            }
        }
        if (OneIn(10)) text.append(Pick(*this, kLongLengths), static_cast<Char>('d'));
        if (OneIn(3)) text.append(1 + Below(3), static_cast<Char>(' '));
        query.defaultValue = text;
    }
    query.size = Size();
    return query;
}

ProfileQuery<wchar_t> SettingsGenerator::WideQuery()
{
    return Query<wchar_t>();
}

ProfileQuery<char> SettingsGenerator::NarrowQuery()
{
    return Query<char>();
}

}  // namespace arvmui_test
