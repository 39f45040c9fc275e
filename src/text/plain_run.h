// Finds the end of plain text in bytes, and tells plain words, many bytes at a time.
#pragma once

#include "foundation/plain_characters.h"

#include <windows.h>

#include <bit>
#include <cstddef>
#include <emmintrin.h>

namespace arvmui
{

// The first byte from `begin` on that is a line feed, `stop` or 128 or above; `end` if there is none.
inline const BYTE* FindPlainRunEnd(const BYTE* begin, const BYTE* end, char stop) noexcept
{
    constexpr ptrdiff_t kBlockBytes = 16;
    const __m128i stops = _mm_set1_epi8(stop);
    const __m128i lineFeeds = _mm_set1_epi8('\n');
    for (; end - begin >= kBlockBytes; begin += kBlockBytes)
    {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(begin));
        const __m128i found = _mm_or_si128(_mm_cmpeq_epi8(block, stops), _mm_cmpeq_epi8(block, lineFeeds));
        const unsigned bits = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(found, block)));
        if (bits != 0) return begin + std::countr_zero(bits);
    }
    while (begin != end && *begin < 128 && *begin != static_cast<BYTE>(stop) && *begin != '\n') ++begin;
    return begin;
}

// Bits, the first byte's lowest, of those of 16 bytes that PlainCharacter gives 0 for.
inline unsigned FindUnplain(__m128i block) noexcept
{
    // Whether a byte is one of the `count` from `first` on.
    const auto isIn = [](__m128i bytes, char first, char count)
    {
        const __m128i distance = _mm_sub_epi8(bytes, _mm_set1_epi8(first));
        return _mm_cmpeq_epi8(_mm_min_epu8(distance, _mm_set1_epi8(static_cast<char>(count - 1))), distance);
    };
    const __m128i letters = isIn(_mm_or_si128(block, _mm_set1_epi8(0x20)), 'a', 26);
    const __m128i digits = isIn(block, '0', 10);
    const __m128i hyphenOrDot = isIn(block, '-', 2);
    const __m128i blankOrLine =
        _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8(' ')), _mm_cmpeq_epi8(block, _mm_set1_epi8('_')));
    const __m128i plain = _mm_or_si128(_mm_or_si128(letters, digits), _mm_or_si128(hyphenOrDot, blankOrLine));
    return ~static_cast<unsigned>(_mm_movemask_epi8(plain)) & 0xFFFF;
}

// Whether all bytes from `begin` to `end` are plain characters. Up to `limit` there are more bytes that may be looked at.
inline bool IsPlainWord(const BYTE* begin, const BYTE* end, const BYTE* limit) noexcept
{
    constexpr ptrdiff_t kBlockBytes = 16;
    for (; begin < end && limit - begin >= kBlockBytes; begin += kBlockBytes)
    {
        unsigned unplain = FindUnplain(_mm_loadu_si128(reinterpret_cast<const __m128i*>(begin)));
        if (end - begin < kBlockBytes) unplain &= (1u << (end - begin)) - 1;
        if (unplain != 0) return false;
    }
    while (begin < end && PlainCharacter(*begin) != '\0') ++begin;
    return begin >= end;
}

}  // namespace arvmui
