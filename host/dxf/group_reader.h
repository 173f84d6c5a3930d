// Walks a run of ASCII DXF bytes group by group, where it lies, copying nothing.
//
// Line ends are looked for in blocks of 64 bytes, behind the text's end too. A group is two lines, code and
// value; a line that should be a code and is none belongs to the value before it, since programs do write raw
// line ends inside texts.
#pragma once

#include "host/dxf/padded_text.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace dxf {

// One group as it stands in the file.
struct raw_group {
    int code = 0;
    const char* begin = nullptr; // first byte of the code line
    const char* end = nullptr;   // behind the value's line end
    std::string_view value;      // the value line without its line end
};

inline constexpr int no_code = -32768;

// The group code that a line holds, blanks around it allowed; no_code when it holds none. Nothing is read
// behind `end`.
inline int parse_code(const char* p, const char* end) {
    // Three columns, as most files write it.
    const std::ptrdiff_t length = end - p;
    if (length == 3 || (length == 4 && p[3] == '\r')) {
        const auto digit = [p](int column) { return static_cast<unsigned>(p[column] - '0'); };
        const bool has_tens = digit(1) < 10u;
        const bool has_hundreds = has_tens && digit(0) < 10u;
        if (digit(2) < 10u && (has_hundreds || p[0] == ' ') && (has_tens || p[1] == ' '))
            return static_cast<int>((has_hundreds ? digit(0) * 100 : 0) + (has_tens ? digit(1) * 10 : 0) +
                                    digit(2));
    }
    while (p != end && (*p == ' ' || *p == '\t'))
        ++p;
    const bool negative = p != end && *p == '-';
    if (negative)
        ++p;
    const char* const first = p;
    int code = 0;
    while (p != end && static_cast<unsigned>(*p - '0') < 10u && p - first < 5) {
        code = code * 10 + (*p - '0');
        ++p;
    }
    if (p == first)
        return no_code;
    while (p != end && (*p == ' ' || *p == '\t' || *p == '\r'))
        ++p;
    if (p != end)
        return no_code;
    return negative ? -code : code;
}

// The ends of lines, one after the other.
class line_scanner {
public:
    explicit line_scanner(padded_text text) : block_(text.data()), end_(text.data() + text.size()) { load(); }

    // The next line feed, or the end of the bytes.
    const char* next() {
        while (mask_ == 0) {
            if (end_ - block_ <= 64)
                return end_;
            block_ += 64;
            load();
        }
        const char* const at = block_ + std::countr_zero(mask_);
        mask_ &= mask_ - 1;
        return at < end_ ? at : end_;
    }

    // Whether a byte above 127 was met in what was loaded so far.
    bool high_bytes() const {
#if defined(__SSE2__)
        return _mm_movemask_epi8(seen_) != 0;
#else
        return (seen_ & 0x8080808080808080u) != 0;
#endif
    }

    // The same of zero bytes.
    bool zero_bytes() const {
#if defined(__SSE2__)
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(least_, _mm_setzero_si128())) != 0)
            return true;
#else
        if (zero_seen_)
            return true;
#endif
        return block_ < end_ && end_ - block_ <= 64 &&
               std::memchr(block_, 0, static_cast<std::size_t>(end_ - block_)) != nullptr;
    }

private:
#if defined(__SSE2__)
    void load() {
        const __m128i feed = _mm_set1_epi8('\n');
        std::uint64_t mask = 0;
        for (unsigned i = 0; i < 4; ++i) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block_ + i * 16));
            const auto found = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, feed)));
            mask |= static_cast<std::uint64_t>(found) << (i * 16);
            if (block_ + i * 16 < end_)
                seen_ = _mm_or_si128(seen_, bytes);
            if (block_ + i * 16 + 16 <= end_)
                least_ = _mm_min_epu8(least_, bytes);
        }
        mask_ = mask;
    }
    __m128i seen_ = _mm_setzero_si128();
    __m128i least_ = _mm_set1_epi8(1); // zero where a zero byte was met
#else
    void load() {
        std::uint64_t mask = 0;
        for (unsigned i = 0; i < 64; ++i) {
            mask |= static_cast<std::uint64_t>(block_[i] == '\n') << i;
            if (block_ + i < end_) {
                seen_ |= static_cast<std::uint64_t>(static_cast<unsigned char>(block_[i]));
                zero_seen_ |= block_[i] == 0;
            }
        }
        mask_ = mask;
    }
    std::uint64_t seen_ = 0;
    bool zero_seen_ = false;
#endif
    const char* block_;
    const char* end_;
    std::uint64_t mask_ = 0;
};

class group_reader {
public:
    // The first line must be a group code, else next() gives nothing.
    explicit group_reader(padded_text text)
        : lines_(text), at_(text.data()), end_(text.data() + text.size()) {
        if (at_ != end_)
            read_code();
    }

    // Reads the next group; false at the end, or at a code line without a value line.
    bool next(raw_group& group) {
        if (code_ == no_code)
            return false;
        group.code = code_;
        group.begin = at_;
        const char* const value = after(code_end_);
        if (value == end_) { // a code and nothing behind it
            code_ = no_code;
            return false;
        }
        const char* feed = lines_.next();
        at_ = after(feed);
        code_ = no_code;
        while (at_ != end_) {
            read_code();
            if (code_ != no_code)
                break;
            ++stray_lines_;
            feed = code_end_;
            at_ = after(feed);
        }
        group.end = at_;
        const char* last = feed;
        if (last != value && last[-1] == '\r')
            --last;
        group.value = std::string_view(value, static_cast<std::size_t>(last - value));
        return true;
    }

    // Where reading stands: the first byte that no group given so far holds.
    const char* position() const { return at_; }

    // How many lines were met so far that are neither a code nor its value.
    std::size_t stray_lines() const { return stray_lines_; }
    bool high_bytes() const { return lines_.high_bytes(); }
    bool zero_bytes() const { return lines_.zero_bytes(); }

private:
    const char* after(const char* feed) const { return feed == end_ ? end_ : feed + 1; }

    void read_code() {
        code_end_ = lines_.next();
        code_ = parse_code(at_, code_end_);
    }

    line_scanner lines_;
    const char* at_;                 // the code line that was read ahead
    const char* code_end_ = nullptr; // its line feed
    const char* end_;
    int code_ = no_code;
    std::size_t stray_lines_ = 0;
};

} // namespace dxf
