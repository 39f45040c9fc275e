// The decoding step alone, without files: against asking the system's converter character by
// character, and against converting the whole in one call.

#include "interleaved.h"

#include "text/character_decoder.h"

#include <algorithm>
#include <string>
#include <vector>

namespace
{

constexpr size_t kBytes = 1'000'000;

std::string Repeat(const char* text)
{
    std::string result;
    while (result.size() < kBytes) result += text;
    return result;
}

// As the reader does it with text that is all well-formed: what is known at once, the rest one by one.
size_t Decode(arvmui::CharacterDecoder& decoder, const std::string& text, std::vector<wchar_t>& units)
{
    const BYTE* const bytes = reinterpret_cast<const BYTE*>(text.data());
    size_t at = 0;
    size_t count = 0;
    while (at < text.size())
    {
        size_t used = 0;
        const size_t written = decoder.DecodeKnown(bytes + at, text.size() - at, units.data() + count, used);
        at += used;
        count += written;
        if (written != 0) continue;
        size_t length = 1;
        while (
            length <= arvmui::CharacterDecoder::kMaxCharacterBytes && !decoder.Decode(bytes + at, length, units[count]))
            ++length;
        at += length;
        ++count;
    }
    return count;
}

size_t DecodeOneByOne(UINT codePage, const std::string& text, std::vector<wchar_t>& units)
{
    const DWORD flags = codePage == CP_UTF8 ? 0 : MB_PRECOMPOSED | MB_ERR_INVALID_CHARS;
    size_t count = 0;
    for (size_t at = 0; at < text.size(); ++count)
    {
        if (static_cast<unsigned char>(text[at]) < 128)
        {
            units[count] = static_cast<unsigned char>(text[at++]);
            continue;
        }
        wchar_t unit[2];
        int length = codePage == CP_UTF8 ? 2 : 1;
        while (::MultiByteToWideChar(codePage, flags, text.data() + at, length, unit, 2) != 1 || unit[0] == 0xFFFD)
            ++length;
        units[count] = unit[0];
        at += static_cast<size_t>(length);
    }
    return count;
}

void Measure(const char* name, UINT codePage, const char* sample, double limitOneByOne)
{
    const std::string text = Repeat(sample);
    std::vector<wchar_t> units(text.size());
    const auto ours = [&]
    {
        arvmui::CharacterDecoder decoder;
        decoder.SetCodePage(codePage);
        Decode(decoder, text, units);
    };
    bench::Report((std::string("decoding ") + name + ", against one by one").c_str(),
        bench::Compare(15, 1, ours, [&] { DecodeOneByOne(codePage, text, units); }), limitOneByOne);
    bench::Report((std::string("decoding ") + name + ", against one call").c_str(),
        bench::Compare(15, 2, ours,
            [&]
            {
                ::MultiByteToWideChar(codePage, 0, text.data(), static_cast<int>(text.size()), units.data(),
                    static_cast<int>(units.size()));
            }),
        1.15);
}

}  // namespace

int main()
{
    Measure("German in 1252", 1252,
        "Gr\xFC\xDF"
        "e aus M\xFCnchen: sch\xF6ne Stra\xDF"
        "en.\r\n",
        1);
    Measure("Japanese in 932", 932,
        "\x93\xFA\x96\x7B\x8C\xEA\x82\xCC\x83\x65\x83\x4C\x83\x58\x83\x67\x82\xF0\x93\xC7\x82\xDD\x8D\x9E\x82\xDE\x81"
        "\x42\r\n",
        1.0 / 15);
    Measure("Japanese in UTF-8", CP_UTF8,
        "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE3\x83\x86\xE3\x82\xAD\xE3\x82\xB9\xE3\x83\x88\r\n",
        1.0 / 15);
    return 0;
}
