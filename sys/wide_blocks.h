// Runs of ASCII between bytes and wide text, sixteen characters at a time: what most of every text is made
// of.
#pragma once

#include <bit>
#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace sys {

// Widens the ASCII at the front of the bytes and tells how much there is. Of `out`, which has room for as
// many units as there are bytes, what lies behind the result may be written too.
inline std::size_t widen_ascii(const unsigned char* const begin, const unsigned char* const end,
                               wchar_t* const out) {
    const unsigned char* at = begin;
    wchar_t* to = out;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    for (; end - at >= 16; at += 16, to += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const __m128i low = _mm_unpacklo_epi8(bytes, zero);
        const __m128i high = _mm_unpackhi_epi8(bytes, zero);
        const auto store = [to](int i, __m128i units) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to) + i, units);
        };
        if constexpr (sizeof(wchar_t) == 2) {
            store(0, low);
            store(1, high);
        } else {
            store(0, _mm_unpacklo_epi16(low, zero));
            store(1, _mm_unpackhi_epi16(low, zero));
            store(2, _mm_unpacklo_epi16(high, zero));
            store(3, _mm_unpackhi_epi16(high, zero));
        }
        if (const int others = _mm_movemask_epi8(bytes); others != 0)
            return static_cast<std::size_t>(at - begin + std::countr_zero(static_cast<unsigned>(others)));
    }
#endif
    while (at < end && *at < 0x80)
        *to++ = static_cast<wchar_t>(*at++);
    return static_cast<std::size_t>(at - begin);
}

// Narrows the ASCII at the front of the text and tells how much there is. Of `out`, which has room for as
// many bytes as there are units, what lies behind the result may be written too.
inline std::size_t narrow_ascii(const wchar_t* const begin, const wchar_t* const end, char* const out) {
    const wchar_t* at = begin;
    char* to = out;
#if defined(__SSE2__)
    constexpr int loads = sizeof(wchar_t);
    for (; end - at >= 16; at += 16, to += 16) {
        __m128i part[loads];
        __m128i all = _mm_setzero_si128();
        for (int i = 0; i < loads; ++i) {
            part[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at) + i);
            all = _mm_or_si128(all, part[i]);
        }
        const __m128i above = sizeof(wchar_t) == 2 ? _mm_set1_epi16(~0x7F) : _mm_set1_epi32(~0x7F);
        const __m128i none = _mm_cmpeq_epi8(_mm_and_si128(all, above), _mm_setzero_si128());
        if (_mm_movemask_epi8(none) != 0xFFFF)
            break;
        const __m128i low = loads == 2 ? part[0] : _mm_packs_epi32(part[0], part[1]);
        const __m128i high = loads == 2 ? part[1] : _mm_packs_epi32(part[loads - 2], part[loads - 1]);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_packus_epi16(low, high));
    }
#endif
    while (at < end && static_cast<char32_t>(*at) < 0x80)
        *to++ = static_cast<char>(*at++);
    return static_cast<std::size_t>(at - begin);
}

} // namespace sys
