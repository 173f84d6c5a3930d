// Finds characters in markup, several units at a time. `Unit` is wchar_t, or a type of one of its widths.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// How far behind the end of what they search the functions may read.
constexpr std::size_t scanReach = 16;

#if defined(__SSE2__)
// Of the eight units at `a`, and at `b`, those for which `compare` of them gives ones; two bits stand for
// each.
template<class Unit, class Compare>
unsigned MaskOfEight(const Unit* a, const Unit* b, Compare compare) {
    const auto compared = [=](int i) {
        return compare(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a) + i),
                       _mm_loadu_si128(reinterpret_cast<const __m128i*>(b) + i));
    };
    if constexpr (sizeof(Unit) == 2)
        return static_cast<unsigned>(_mm_movemask_epi8(compared(0)));
    else
        return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi32(compared(0), compared(1))));
}

template<class Unit, class Compare>
unsigned MaskOfEight(const Unit* at, Compare compare) {
    return MaskOfEight(at, at, [compare](__m128i units, __m128i) { return compare(units); });
}
#endif

#if defined(__SSE2__)
// Sixteen units as bytes; what is above 254 becomes 255. So do negative ones, or they become nought.
template<class Unit>
__m128i NarrowSixteen(const Unit* at) {
    const auto load = [at](int i) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at) + i); };
    if constexpr (sizeof(Unit) == 2) {
        // Units above 7FFF would count as negative.
        const auto positive = [](__m128i units) {
            const __m128i above = _mm_srai_epi16(units, 15);
            return _mm_or_si128(_mm_andnot_si128(above, units), _mm_srli_epi16(above, 1));
        };
        return _mm_packus_epi16(positive(load(0)), positive(load(1)));
    } else {
        return _mm_packus_epi16(_mm_packs_epi32(load(0), load(1)), _mm_packs_epi32(load(2), load(3)));
    }
}
#endif

// Of the sixteen units at a place, a bit for each that is below 64, and for each that is a double quote.
struct TagFront {
    unsigned low;
    unsigned quotes;
};

template<class Unit>
TagFront MarkTagFront(const Unit* at) {
#if defined(__SSE2__)
    const __m128i bytes = NarrowSixteen(at);
    const __m128i low = _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(63)), bytes);
    return {static_cast<unsigned>(_mm_movemask_epi8(low)),
            static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"'))))};
#else
    TagFront front = {};
    for (unsigned i = 0; i < 16; ++i) {
        front.low |= unsigned(at[i] >= 0 && at[i] < 64) << i;
        front.quotes |= unsigned(at[i] == '"') << i;
    }
    return front;
#endif
}

// The first unit that is this one; `end` when there is none.
template<class Unit>
const Unit* FindUnit(const Unit* at, const Unit* end, Unit wanted) {
#if defined(__SSE2__)
    for (; at < end; at += 8) {
        const unsigned mask = MaskOfEight(at, [wanted](__m128i units) {
            if constexpr (sizeof(Unit) == 2)
                return _mm_cmpeq_epi16(units, _mm_set1_epi16(static_cast<short>(wanted)));
            else
                return _mm_cmpeq_epi32(units, _mm_set1_epi32(static_cast<int>(wanted)));
        });
        if (mask != 0)
            return std::min(at + std::countr_zero(mask) / 2, end);
    }
    return end;
#else
    return std::find(at, end, wanted);
#endif
}

// The first unit below 64 for which `is` is true; `end` when there is none.
template<class Unit, class Is>
const Unit* FindLowUnit(const Unit* at, const Unit* end, Is is) {
#if defined(__SSE2__)
    for (; at < end; at += 8) {
        unsigned mask = MaskOfEight(at, [](__m128i units) {
            if constexpr (sizeof(Unit) == 2)
                return _mm_cmplt_epi16(units, _mm_set1_epi16(64));
            else
                return _mm_cmplt_epi32(units, _mm_set1_epi32(64));
        });
        while (mask != 0) {
            const int place = std::countr_zero(mask);
            const Unit* const found = at + place / 2;
            if (found >= end)
                return end;
            if (is(*found))
                return found;
            mask &= ~(3u << place);
        }
    }
    return end;
#else
    return std::find_if(at, end, is);
#endif
}

// Whether two runs of units are the same.
template<class Unit>
bool AreEqual(const Unit* a, const Unit* b, std::size_t size) {
#if defined(__SSE2__)
    for (std::size_t i = 0; i < size; i += 8) {
        // Two bits stand for each unit that differs.
        const unsigned differing = ~MaskOfEight(a + i, b + i, [](__m128i x, __m128i y) {
            return sizeof(Unit) == 2 ? _mm_cmpeq_epi16(x, y) : _mm_cmpeq_epi32(x, y);
        });
        const std::size_t first = static_cast<unsigned>(std::countr_zero(differing)) / 2;
        if (i + first < size && first < 8)
            return false;
    }
    return true;
#else
    return std::equal(a, a + size, b);
#endif
}

// Goes through the characters that structure markup, < > " ' & and noughts, sixty-four units at a time. The
// text is ended by nought, and 64 units can be read from each of its places.
template<class Unit>
class MarkupScan {
public:
    static constexpr std::size_t blockSize = 64;

    explicit MarkupScan(const Unit* at) { MoveTo(at); }

    // Goes on with what stands at `at`.
    void MoveTo(const Unit* at) {
        m_block = at;
        m_mask = MaskOf(at);
    }

    // The next one. Other characters are among them now and then; behind the end it must not be asked.
    const Unit* Next() {
        while (m_mask == 0)
            MoveTo(m_block + blockSize);
        const Unit* const found = m_block + std::countr_zero(m_mask);
        m_mask &= m_mask - 1;
        return found;
    }

private:
    static std::uint64_t MaskOf(const Unit* at) {
        std::uint64_t mask = 0;
#if defined(__SSE2__)
        for (unsigned i = 0; i < blockSize; i += 16)
            mask |= static_cast<std::uint64_t>(MaskOfSixteen(at + i)) << i;
#else
        for (unsigned i = 0; i < blockSize; ++i)
            mask |= static_cast<std::uint64_t>(at[i] == '<' || at[i] == '>' || at[i] == '"' ||
                                               at[i] == '\'' || at[i] == '&' || at[i] == 0)
                    << i;
#endif
        return mask;
    }

#if defined(__SSE2__)
    static unsigned MaskOfSixteen(const Unit* at) {
        const __m128i bytes = NarrowSixteen(at);
        const auto is = [bytes](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
        // < and > differ in one bit, as & and ' do.
        const auto either = [bytes](char bit, char c) {
            return _mm_cmpeq_epi8(_mm_or_si128(bytes, _mm_set1_epi8(bit)), _mm_set1_epi8(c));
        };
        const __m128i found = _mm_or_si128(_mm_or_si128(either('<' ^ '>', '>'), either('&' ^ '\'', '\'')),
                                           _mm_or_si128(is('"'), is('\0')));
        return static_cast<unsigned>(_mm_movemask_epi8(found));
    }
#endif

    const Unit* m_block;
    std::uint64_t m_mask;
};
