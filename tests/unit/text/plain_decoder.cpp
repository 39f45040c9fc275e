#include "plain_decoder.h"

namespace arvmui_test
{
namespace
{

constexpr size_t kMaxCharacterBytes = 4;

unsigned ByteAt(std::string_view bytes, size_t index)
{
    return static_cast<unsigned char>(bytes[index]);
}

// How long the sequence is that a byte begins in UTF-8; 1 for bytes that begin none.
size_t AnnouncedLength(unsigned byte)
{
    if (byte >= 0xC2 && byte <= 0xDF) return 2;
    if (byte >= 0xE0 && byte <= 0xEF) return 3;
    if (byte >= 0xF0 && byte <= 0xF4) return 4;
    return 1;
}

bool ConvertsToOneUnit(UINT codePage, std::string_view character, wchar_t& unit)
{
    // With flags 0 the converter turns the mere beginning of a sequence into U+FFFD.
    if (codePage == CP_UTF8 && character.size() < AnnouncedLength(ByteAt(character, 0))) return false;

    const DWORD flags = codePage == CP_UTF8 ? 0 : MB_PRECOMPOSED | MB_ERR_INVALID_CHARS;
    const int size = static_cast<int>(character.size());
    wchar_t units[8] = {};
    int count = ::MultiByteToWideChar(codePage, flags, character.data(), size, units, 8);
    if (count == 0 && flags != 0 && ::GetLastError() == ERROR_INVALID_FLAGS)
    {
        count = ::MultiByteToWideChar(codePage, 0, character.data(), size, units, 8);
    }
    unit = units[0];
    return count == 1;
}

struct Utf8Row
{
    unsigned firstLow, firstHigh, secondLow, secondHigh;
    size_t length;
};

// Those of the well-formed sequences that make one UTF-16 unit.
constexpr Utf8Row kUtf8Rows[] = {
    {0x00, 0x7F, 0x00, 0x00, 1},
    {0xC2, 0xDF, 0x80, 0xBF, 2},
    {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3},
    {0xED, 0xED, 0x80, 0x9F, 3},
    {0xEE, 0xEF, 0x80, 0xBF, 3},
};

size_t WellFormedLength(std::string_view bytes)
{
    for (const Utf8Row& row : kUtf8Rows)
    {
        if (ByteAt(bytes, 0) < row.firstLow || ByteAt(bytes, 0) > row.firstHigh) continue;
        if (bytes.size() < row.length) return 0;
        if (row.length > 1 && (ByteAt(bytes, 1) < row.secondLow || ByteAt(bytes, 1) > row.secondHigh)) return 0;
        if (row.length > 2 && (ByteAt(bytes, 2) < 0x80 || ByteAt(bytes, 2) > 0xBF)) return 0;
        return row.length;
    }
    return 0;
}

}  // namespace

std::uint32_t PlainDecoder::Next(UINT codePage)
{
    const size_t left = bytes_.size() - position_;
    if (left == 0) return kEnd;
    const unsigned first = ByteAt(bytes_, position_);
    if (first < 128)
    {
        ++position_;
        return first;
    }
    for (size_t count = 1; count <= kMaxCharacterBytes; ++count)
    {
        wchar_t unit = L'\0';
        if (count > left) break;
        if (ConvertsToOneUnit(codePage, bytes_.substr(position_, count), unit))
        {
            position_ += count;
            return unit;
        }
    }
    ++position_;
    return kUndecodable;
}

std::wstring DecodePlainly(std::string_view bytes, UINT codePage)
{
    std::wstring text;
    PlainDecoder decoder(bytes);
    for (std::uint32_t unit = decoder.Next(codePage); unit != PlainDecoder::kEnd; unit = decoder.Next(codePage))
    {
        text.push_back(static_cast<wchar_t>(unit));
    }
    return text;
}

std::wstring DecodeUtf8ByTable(std::string_view bytes)
{
    std::wstring text;
    size_t position = 0;
    while (position < bytes.size())
    {
        const size_t length = WellFormedLength(bytes.substr(position));
        const unsigned first = ByteAt(bytes, position);
        unsigned unit = PlainDecoder::kUndecodable;
        if (length == 1) unit = first;
        if (length == 2) unit = (first & 0x1F) << 6 | (ByteAt(bytes, position + 1) & 0x3F);
        if (length == 3)
        {
            unit =
                (first & 0x0F) << 12 | (ByteAt(bytes, position + 1) & 0x3F) << 6 | (ByteAt(bytes, position + 2) & 0x3F);
        }
        text.push_back(static_cast<wchar_t>(unit));
        position += length == 0 ? 1 : length;
    }
    return text;
}

}  // namespace arvmui_test
