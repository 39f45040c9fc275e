// Finds the end of plain text in bytes, many bytes at a time.
#pragma once

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

}  // namespace arvmui
