#include "text/character_decoder.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>
#include <numeric>

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

// Two bytes, the first of them 128 or above, as an index.
constexpr size_t PairIndex(const BYTE* pair) noexcept
{
    return (pair[0] << 8 | pair[1]) & 0x7FFF;
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

// All bytes from 128 up with one question; FALSE unless each gives one unit.
bool AskForUpperBytes(UINT codePage, wchar_t* units) noexcept
{
    constexpr int kCount = CharacterDecoder::kUpperBytes;
    char bytes[kCount];
    std::iota(bytes, bytes + kCount, static_cast<char>(kCount));
    return ::MultiByteToWideChar(codePage, kStrictFlags, bytes, kCount, units, kCount) == kCount;
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

constexpr ptrdiff_t kBlockBytes = 16;

// As signed bytes: all from 128 up have to be looked up, or only those below A0.
constexpr signed char kAsciiLimit = 0;
constexpr BYTE kFirstLatin = 0xA0;
constexpr signed char kLatinLimit = static_cast<signed char>(kFirstLatin);

// Where the decoding of many bytes stands. There is room for a unit for each byte that is left.
struct Run
{
    const BYTE* next;
    const BYTE* end;
    wchar_t* unit;

    ptrdiff_t Left() const noexcept { return end - next; }
    void Take(wchar_t value, size_t bytes) noexcept
    {
        *unit++ = value;
        next += bytes;
    }
};

// Takes bytes that stand for themselves: all but those from 128 up to `limit`, which is a signed byte.
Run TakeThemselves(Run run, signed char limit) noexcept
{
    const __m128i limits = _mm_set1_epi8(limit);
    const __m128i zero = _mm_setzero_si128();
    while (run.Left() >= kBlockBytes)
    {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(run.next));
        __m128i* const units = reinterpret_cast<__m128i*>(run.unit);
        _mm_storeu_si128(units, _mm_unpacklo_epi8(block, zero));
        _mm_storeu_si128(units + 1, _mm_unpackhi_epi8(block, zero));
        const unsigned others = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmplt_epi8(block, limits)));
        const int taken = others == 0 ? static_cast<int>(kBlockBytes) : std::countr_zero(others);
        run.next += taken;
        run.unit += taken;
        if (others != 0) return run;
    }
    while (run.next != run.end && static_cast<signed char>(*run.next) >= limit) run.Take(*run.next, 1);
    return run;
}

// Whether so many bytes below 128 come next, or so few bytes at all, that TakeThemselves is quicker than
// taking them one by one.
bool StartsAscii(const Run& run) noexcept
{
    std::uint64_t bytes = 0;
    if (run.Left() < static_cast<ptrdiff_t>(sizeof(bytes))) return *run.next < 128;
    std::memcpy(&bytes, run.next, sizeof(bytes));
    return (bytes & 0x8080'8080'8080'8080) == 0;
}

// Decodes by turns: bytes that stand for themselves, and what `takeOthers` takes, from one of the other
// bytes on; that stops by taking nothing.
template <typename TakeOthers>
Run TakeAll(Run run, signed char limit, TakeOthers takeOthers) noexcept
{
    for (;;)
    {
        run = TakeThemselves(run, limit);
        const BYTE* const before = run.next;
        if (before != run.end) run = takeOthers(run);
        if (run.next == before) return run;
    }
}

// Characters of three bytes, two at a time: eight bytes are looked at, six are taken. What begins with
// E0, ED, EE or EF, where not all that looks like a character is one, is left to those who look closer.
Run TakeThreeByteUtf8(Run run) noexcept
{
    constexpr std::uint64_t kKindBits = 0xC0C0'F0C0'C0F0;
    constexpr std::uint64_t kKinds = 0x8080'E080'80E0;
    constexpr unsigned kFirstUnit = 0x1000;
    constexpr unsigned kUnits = 0xC000;
    const auto compose = [](std::uint64_t three)
    { return static_cast<unsigned>((three & 0x0F) << 12 | (three >> 2 & 0x0FC0) | (three >> 16 & 0x3F)); };
    std::uint64_t bytes = 0;
    while (run.Left() >= static_cast<ptrdiff_t>(sizeof(bytes)))
    {
        std::memcpy(&bytes, run.next, sizeof(bytes));
        if ((bytes & kKindBits) != kKinds) break;
        const unsigned first = compose(bytes);
        const unsigned second = compose(bytes >> 24);
        if (first - kFirstUnit >= kUnits || second - kFirstUnit >= kUnits) break;
        run.Take(static_cast<wchar_t>(first), 3);
        run.Take(static_cast<wchar_t>(second), 3);
    }
    return run;
}

Run TakeUtf8(Run run) noexcept
{
    for (;;)
    {
        run = TakeThreeByteUtf8(run);
        if (run.next == run.end || StartsAscii(run)) return run;
        if (*run.next < 128)
        {
            run.Take(*run.next, 1);
            continue;
        }
        const size_t length = WellFormedUtf8(run.next, static_cast<size_t>(run.Left()));
        if (length == 0) return run;
        run.Take(ComposeUtf8(run.next, length), length);
    }
}

// Where every byte is a character by itself; at least one is taken.
Run TakeSingleBytes(Run run, const wchar_t* single) noexcept
{
    do
    {
        const ptrdiff_t count = std::min(run.Left(), kBlockBytes);
        for (ptrdiff_t i = 0; i < count; ++i) run.unit[i] = single[run.next[i]];
        run.next += count;
        run.unit += count;
    } while (run.next != run.end && *run.next >= 128);
    return run;
}

// What has been asked for before. Nothing is remembered of two bytes if the first is a character by itself.
Run TakeRemembered(Run run, const wchar_t* single, const wchar_t* pairs) noexcept
{
    while (run.next != run.end)
    {
        if (*run.next < 128)
        {
            if (StartsAscii(run)) return run;
            run.Take(*run.next, 1);
            continue;
        }
        const wchar_t pair = pairs && run.Left() >= 2 ? pairs[PairIndex(run.next)] : kUnknown;
        if (IsUnit(pair))
            run.Take(pair, 2);
        else if (IsUnit(single[*run.next]))
            run.Take(single[*run.next], 1);
        else
            return run;
    }
    return run;
}

}  // namespace

void CharacterDecoder::SetCodePage(UINT codePage) noexcept
{
    codePage_ = codePage;
    realCodePage_ = ResolveCodePage(codePage);
    isUnknown_ = false;
    hasLearnt_ = false;
    isComplete_ = false;
    isLatin_ = false;
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
    if (count != 2 || single_[bytes[0]] != kNoCharacter) return nullptr;
    if (!pairs_)
    {
        // Not through ARVMUI_realloc, which tells the user: without this memory all is well, but slow.
        *pairs_.Slot() = static_cast<wchar_t*>(
            ::HeapAlloc(::GetProcessHeap(), HEAP_ZERO_MEMORY, kUpperBytes * kRowLength * sizeof(wchar_t)));
        if (!pairs_) return nullptr;
    }
    return pairs_.Get() + PairIndex(bytes);
}

// Asks for all bytes beforehand where each can only be a character by itself.
void CharacterDecoder::LearnSingleBytes() noexcept
{
    hasLearnt_ = true;
    CPINFO info;
    if (!::GetCPInfo(realCodePage_, &info) || info.MaxCharSize != 1) return;
    for (size_t value = 0; value < kUpperBytes; ++value) single_[value] = static_cast<wchar_t>(value);
    const bool known = AskForUpperBytes(realCodePage_, single_ + kUpperBytes);
    isComplete_ = true;
    isLatin_ = true;
    for (size_t value = kUpperBytes; value < kByteValues; ++value)
    {
        wchar_t& unit = single_[value];
        const BYTE byte = static_cast<BYTE>(value);
        if ((!known && !AskSystem(realCodePage_, &byte, 1, unit)) || !IsUnit(unit))
        {
            unit = kUnknown;  // asked for again when it comes up
            isComplete_ = false;
        }
        if (value >= kFirstLatin && unit != value) isLatin_ = false;
    }
}

size_t CharacterDecoder::DecodeKnown(const BYTE* bytes, size_t count, wchar_t* units, size_t& used) const noexcept
{
    Run run = {bytes, bytes + count, units};
    if (realCodePage_ == CP_UTF8)
        run = TakeAll(run, kAsciiLimit, [](const Run& rest) { return TakeUtf8(rest); });
    else if (isComplete_)
        run = TakeAll(run, isLatin_ ? kLatinLimit : kAsciiLimit,
            [this](const Run& rest) { return TakeSingleBytes(rest, single_); });
    else
        run =
            TakeAll(run, kAsciiLimit, [this](const Run& rest) { return TakeRemembered(rest, single_, pairs_.Get()); });
    used = static_cast<size_t>(run.next - bytes);
    return static_cast<size_t>(run.unit - units);
}

}  // namespace arvmui
