#include "base/wildcard.h"

#include "base/case_fold.h"
#include "base/utf.h"

#include <algorithm>
#include <iterator>

namespace base {

namespace {

constexpr std::size_t none = std::wstring_view::npos;

// Digits are those of ASCII and their full-width twins.
bool is_digit(char32_t c) {
    return (c >= '0' && c <= '9') || (c >= 0xFF10 && c <= 0xFF19);
}

// What is neither letter nor digit: the larger runs of the general categories P, S, Z and C in
// Unicode 14.0.0. All else is taken for a letter, ideographs too.
bool is_symbol(char32_t c) {
    struct range {
        char32_t first;
        char32_t last;
    };
    constexpr range symbols[] = {
        {0x00, 0x2F},     {0x3A, 0x40},     {0x5B, 0x60},       {0x7B, 0xA9},     {0xAB, 0xB1},
        {0xB4, 0xB4},     {0xB6, 0xB8},     {0xBB, 0xBB},       {0xBF, 0xBF},     {0xD7, 0xD7},
        {0xF7, 0xF7},     {0x2000, 0x206F}, {0x207A, 0x207E},   {0x208A, 0x208E}, {0x20A0, 0x20CF},
        {0x2100, 0x2101}, {0x2103, 0x2106}, {0x2108, 0x2109},   {0x2114, 0x2114}, {0x2116, 0x2118},
        {0x211E, 0x2123}, {0x2190, 0x245F}, {0x249C, 0x24B5},   {0x2500, 0x2775}, {0x2794, 0x2BFF},
        {0x2E00, 0x3004}, {0x3008, 0x3020}, {0x3030, 0x3030},   {0x303D, 0x303F}, {0x309B, 0x309C},
        {0x30FB, 0x30FB}, {0x31C0, 0x31E3}, {0x3200, 0x321E},   {0x32C0, 0x33FF}, {0xD800, 0xF8FF},
        {0xFE10, 0xFE19}, {0xFE30, 0xFE6B}, {0xFEFF, 0xFF0F},   {0xFF1A, 0xFF20}, {0xFF3B, 0xFF40},
        {0xFF5B, 0xFF65}, {0xFFE0, 0xFFFF}, {0x1F000, 0x1FBCA},
    };
    const auto found = std::lower_bound(std::begin(symbols), std::end(symbols), c,
                                        [](const range& r, char32_t wanted) { return r.last < wanted; });
    return found != std::end(symbols) && c >= found->first;
}

class matcher {
public:
    matcher(std::wstring_view text, std::wstring_view pattern, bool ignore_case)
        : text_(text), pattern_(pattern), ignore_case_(ignore_case) {}

    bool run() const {
        for (std::size_t begin = 0; begin <= pattern_.size();) {
            const std::size_t end = alternative_end(begin);
            const bool turned = begin < end && pattern_[begin] == L'~';
            if (matches(begin + turned, end) != turned)
                return true;
            begin = end + 1;
        }
        return false;
    }

private:
    // The bracket that closes the one at `at`, none when there is no such.
    std::size_t closing_bracket(std::size_t at) const {
        while (++at < pattern_.size() && pattern_[at] != L']') {
            if (pattern_[at] == L'`')
                ++at;
        }
        return at < pattern_.size() ? at : none;
    }

    // Where the next comma that parts alternatives is, or the end.
    std::size_t alternative_end(std::size_t at) const {
        for (; at < pattern_.size() && pattern_[at] != L','; ++at) {
            if (pattern_[at] == L'`')
                ++at;
            else if (pattern_[at] == L'[' && closing_bracket(at) != none)
                at = closing_bracket(at);
        }
        return std::min(at, pattern_.size());
    }

    // After a star only the last star needs another try: whatever an earlier one could still take, it can
    // too.
    bool matches(std::size_t at, std::size_t end) const {
        std::size_t done = 0;
        std::size_t after_star = none;
        std::size_t taken = 0;
        while (done < text_.size()) {
            if (at < end && pattern_[at] == L'*') {
                after_star = ++at;
                taken = done;
                continue;
            }
            std::size_t next = done;
            if (at < end && element_matches(at, take_code_point(text_, next))) {
                done = next;
                continue;
            }
            if (after_star == none)
                return false;
            take_code_point(text_, taken);
            done = taken;
            at = after_star;
        }
        while (at < end && pattern_[at] == L'*')
            ++at;
        return at == end;
    }

    // Compares one character with the element at `at` and moves behind the element.
    bool element_matches(std::size_t& at, char32_t c) const {
        switch (pattern_[at]) {
        case L'#':
            ++at;
            return is_digit(c);
        case L'@':
            ++at;
            return !is_digit(c) && !is_symbol(c);
        case L'.':
            ++at;
            return is_symbol(c);
        case L'?':
            ++at;
            return true;
        case L'[':
            if (const std::size_t close = closing_bracket(at); close != none) {
                const std::size_t set = at + 1;
                at = close + 1;
                return set_matches(set, close, c);
            }
            break;
        }
        return take_literal(at) == plain(c);
    }

    bool set_matches(std::size_t at, std::size_t end, char32_t c) const {
        const bool turned = at < end && pattern_[at] == L'~';
        at += turned;
        c = plain(c);
        bool found = false;
        while (at < end) {
            const char32_t first = take_literal(at);
            char32_t last = first;
            if (at + 1 < end && pattern_[at] == L'-')
                last = take_literal(++at);
            found = found || (c >= first && c <= last);
        }
        return found != turned;
    }

    char32_t take_literal(std::size_t& at) const {
        if (pattern_[at] == L'`' && at + 1 < pattern_.size())
            ++at;
        return plain(take_code_point(pattern_, at));
    }

    char32_t plain(char32_t c) const { return ignore_case_ ? fold_code_point(c) : c; }

    std::wstring_view text_;
    std::wstring_view pattern_;
    bool ignore_case_;
};

} // namespace

bool wildcard_match(std::wstring_view text, std::wstring_view pattern, bool ignore_case) {
    return matcher(text, pattern, ignore_case).run();
}

} // namespace base
