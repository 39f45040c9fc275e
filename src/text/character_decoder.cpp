#include "text/character_decoder.h"

#include <bit>
#include <cstring>
#include <emmintrin.h>

namespace arvmui
{
namespace
{

constexpr DWORD kStrictFlags = MB_PRECOMPOSED | MB_ERR_INVALID_CHARS;
constexpr UINT kGb18030 = 54936;
constexpr size_t kRowLength = 256;

// What is remembered in place of a unit. Characters that take one of these units are not remembered.
constexpr wchar_t kUnknown = 0;
constexpr wchar_t kNoCharacter = 0xFFFF;

constexpr bool IsUnit(wchar_t remembered) noexcept
{
    return remembered != kUnknown && remembered != kNoCharacter;
}

bool IsContinuation(BYTE byte) noexcept
{
    return (byte & 0xC0) == 0x80;
}

// Bytes of the well-formed character of two or three bytes that starts here; 0 when there is none.
size_t WellFormedUtf8(const BYTE* bytes, size_t count) noexcept
{
    const BYTE lead = bytes[0];
    if (lead >= 0xC2 && lead <= 0xDF) return count >= 2 && IsContinuation(bytes[1]) ? 2 : 0;
    if (lead < 0xE0 || lead > 0xEF) return 0;
    if (count < 3 || !IsContinuation(bytes[1]) || !IsContinuation(bytes[2])) return 0;
    if (lead == 0xE0 && bytes[1] < 0xA0) return 0;  // overlong
    if (lead == 0xED && bytes[1] > 0x9F) return 0;  // surrogate
    return 3;
}

wchar_t ComposeUtf8(const BYTE* bytes, size_t length) noexcept
{
    if (length == 2) return static_cast<wchar_t>((bytes[0] & 0x1F) << 6 | (bytes[1] & 0x3F));
    return static_cast<wchar_t>((bytes[0] & 0x0F) << 12 | (bytes[1] & 0x3F) << 6 | (bytes[2] & 0x3F));
}

// This code page refuses the strict flags and then accepts the beginnings of its characters.
bool IsGb18030Beginning(const BYTE* bytes, size_t count) noexcept
{
    const auto isLead = [](BYTE byte) { return byte >= 0x81 && byte <= 0xFE; };
    const auto isDigit = [](BYTE byte) { return byte >= 0x30 && byte <= 0x39; };
    if (!isLead(bytes[0])) return false;
    if (count == 1) return true;
    if (!isDigit(bytes[1])) return false;
    return count == 2 || (count == 3 && isLead(bytes[2]));
}

// FALSE leaves the reason in the last-error code, 0 for bytes that are no one unit.
bool AskSystem(UINT codePage, const BYTE* bytes, size_t count, wchar_t& unit) noexcept
{
    ::SetLastError(ERROR_SUCCESS);
    if (codePage == kGb18030 && IsGb18030Beginning(bytes, count)) return false;

    // Room for two: with room for one some systems hand out half of a surrogate pair.
    wchar_t units[2];
    const char* const text = reinterpret_cast<const char*>(bytes);
    int converted = ::MultiByteToWideChar(codePage, kStrictFlags, text, static_cast<int>(count), units, 2);
    if (converted == 0 && ::GetLastError() == ERROR_INVALID_FLAGS)
        converted = ::MultiByteToWideChar(codePage, 0, text, static_cast<int>(count), units, 2);
    if (converted != 1) return false;
    unit = units[0];
    return true;
}

// Several of the system's settings may be UTF-8.
UINT ResolveCodePage(UINT codePage) noexcept
{
    switch (codePage)
    {
        case CP_ACP: return ::GetACP();
        case CP_OEMCP: return ::GetOEMCP();
        case CP_MACCP:
        case CP_THREAD_ACP:
        {
            CPINFOEXW info;
            return ::GetCPInfoExW(codePage, 0, &info) ? info.CodePage : codePage;
        }
        default: return codePage;
    }
}

constexpr size_t kBlockBytes = 16;

// Widens a whole block of bytes and returns how many of them, from the first on, are below 128.
size_t WidenAsciiBlock(const BYTE* bytes, wchar_t* units) noexcept
{
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    const __m128i zero = _mm_setzero_si128();
    _mm_storeu_si128(reinterpret_cast<__m128i*>(units), _mm_unpacklo_epi8(block, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(units + kBlockBytes / 2), _mm_unpackhi_epi8(block, zero));
    const unsigned upper = static_cast<unsigned>(_mm_movemask_epi8(block));
    return upper == 0 ? kBlockBytes : static_cast<size_t>(std::countr_zero(upper));
}

// Decodes `count` bytes by `next`, which gives the bytes of one character from 128 up, 0 to stop. The
// bytes decoded; `written` receives the units.
template <typename NextCharacter>
size_t DecodeWith(const BYTE* bytes, size_t count, wchar_t* units, size_t& written, NextCharacter next) noexcept
{
    size_t i = 0;
    size_t w = 0;
    while (i < count)
    {
        if (bytes[i] >= 128)
        {
            const size_t length = next(bytes + i, count - i, units[w]);
            if (length == 0) break;
            i += length;
            ++w;
        }
        else if (count - i >= kBlockBytes)
        {
            const size_t ascii = WidenAsciiBlock(bytes + i, units + w);  // w <= i, so there is room
            i += ascii;
            w += ascii;
        }
        else
        {
            units[w++] = bytes[i++];
        }
    }
    written = w;
    return i;
}

}  // namespace

void CharacterDecoder::SetCodePage(UINT codePage) noexcept
{
    codePage_ = codePage;
    realCodePage_ = ResolveCodePage(codePage);
    isUnknown_ = false;
    hasLearnt_ = false;
    isComplete_ = false;
    std::memset(single_, 0, sizeof(single_));
    if (pairs_) std::memset(pairs_.Get(), 0, kUpperBytes * kRowLength * sizeof(wchar_t));
}

bool CharacterDecoder::Decode(const BYTE* bytes, size_t count, wchar_t& unit) noexcept
{
    if (realCodePage_ == CP_UTF8)
    {
        if (WellFormedUtf8(bytes, count) != count) return false;
        unit = ComposeUtf8(bytes, count);
        return true;
    }

    if (!hasLearnt_) LearnSingleBytes();
    wchar_t* const remembered = Remembered(bytes, count);
    if (remembered && *remembered != kUnknown)
    {
        unit = *remembered;
        return unit != kNoCharacter;
    }
    if (isUnknown_) return false;
    const bool decoded = AskSystem(realCodePage_, bytes, count, unit);
    // Each further question about a code page that does not exist would cost a search for it.
    if (!decoded && ::GetLastError() == ERROR_INVALID_PARAMETER)
    {
        isUnknown_ = true;
        return false;
    }
    if (remembered && !(decoded && unit == kNoCharacter)) *remembered = decoded ? unit : kNoCharacter;
    return decoded;
}

// Where the answer about these bytes is kept; null where it is not.
wchar_t* CharacterDecoder::Remembered(const BYTE* bytes, size_t count) noexcept
{
    if (count == 1) return single_ + bytes[0];
    if (count != 2) return nullptr;
    if (!pairs_)
    {
        // Not through ARVMUI_realloc, which tells the user: without this memory all is well, but slow.
        *pairs_.Slot() = static_cast<wchar_t*>(
            ::HeapAlloc(::GetProcessHeap(), HEAP_ZERO_MEMORY, kUpperBytes * kRowLength * sizeof(wchar_t)));
        if (!pairs_) return nullptr;
    }
    return pairs_.Get() + (bytes[0] - kUpperBytes) * kRowLength + bytes[1];
}

// Asks for all bytes at once where each can only be a character by itself.
void CharacterDecoder::LearnSingleBytes() noexcept
{
    hasLearnt_ = true;
    CPINFO info;
    if (!::GetCPInfo(realCodePage_, &info) || info.MaxCharSize != 1) return;
    for (size_t value = 0; value < kUpperBytes; ++value) single_[value] = static_cast<wchar_t>(value);
    isComplete_ = true;
    for (size_t value = kUpperBytes; value < kByteValues; ++value)
    {
        const BYTE byte = static_cast<BYTE>(value);
        if (!AskSystem(realCodePage_, &byte, 1, single_[value]) || !IsUnit(single_[value]))
        {
            single_[value] = kUnknown;  // asked for again when it comes up
            isComplete_ = false;
        }
    }
}

size_t CharacterDecoder::DecodeKnown(const BYTE* bytes, size_t count, wchar_t* units, size_t& used) const noexcept
{
    size_t written = 0;
    if (realCodePage_ == CP_UTF8)
    {
        used = DecodeWith(bytes, count, units, written,
            [](const BYTE* character, size_t room, wchar_t& unit)
            {
                const size_t length = WellFormedUtf8(character, room);
                if (length != 0) unit = ComposeUtf8(character, length);
                return length;
            });
        return written;
    }

    if (isComplete_)
    {
        for (size_t i = 0; i < count; ++i) units[i] = single_[bytes[i]];
        used = count;
        return count;
    }

    const wchar_t* const single = single_;
    const wchar_t* const pairs = pairs_.Get();
    used = DecodeWith(bytes, count, units, written,
        [single, pairs](const BYTE* character, size_t room, wchar_t& unit) -> size_t
        {
            unit = single[character[0]];
            if (IsUnit(unit)) return 1;
            if (unit == kUnknown || room < 2 || !pairs) return 0;
            unit = pairs[(character[0] - kUpperBytes) * kRowLength + character[1]];
            return IsUnit(unit) ? 2 : 0;
        });
    return written;
}

}  // namespace arvmui
