#include "base/utf.h"

#include <cstdint>
#include <cstring>

namespace base {

namespace {

bool is_surrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

// Takes one character, or one byte as U+DC00+b when no character begins there.
char32_t take_utf8(const unsigned char*& at, const unsigned char* end) {
    const unsigned lead = *at;
    const auto left = end - at;
    const auto is_tail = [&](int i) { return i < left && (at[i] & 0xC0) == 0x80; };
    const auto bits = [&](int i) { return static_cast<char32_t>(at[i] & 0x3F); };

    if (lead < 0x80) {
        ++at;
        return lead;
    }
    if (lead >= 0xC2 && lead < 0xE0 && is_tail(1)) {
        const char32_t c = (lead & 0x1F) << 6 | bits(1);
        at += 2;
        return c;
    }
    if (lead >= 0xE0 && lead < 0xF0 && is_tail(1) && is_tail(2)) {
        const char32_t c = (lead & 0x0F) << 12 | bits(1) << 6 | bits(2);
        if (c >= 0x800 && !is_surrogate(c)) {
            at += 3;
            return c;
        }
    }
    if (lead >= 0xF0 && lead < 0xF5 && is_tail(1) && is_tail(2) && is_tail(3)) {
        const char32_t c = (lead & 0x07) << 18 | bits(1) << 12 | bits(2) << 6 | bits(3);
        if (c >= 0x10000 && c <= 0x10FFFF) {
            at += 4;
            return c;
        }
    }
    ++at;
    return 0xDC00 + lead;
}

// The first byte from `at` on that may be other than ASCII: up to 31 bytes early near the end.
const unsigned char* skip_ascii(const unsigned char* at, const unsigned char* end) {
    while (end - at >= 32) {
        std::uint64_t word[4];
        std::memcpy(word, at, sizeof word);
        if (((word[0] | word[1] | word[2] | word[3]) & 0x8080808080808080u) != 0)
            break;
        at += 32;
    }
    while (at < end && *at < 0x80)
        ++at;
    return at;
}

} // namespace

std::wstring widen(std::string_view utf8) {
    std::wstring out;
    out.reserve(utf8.size());
    auto at = reinterpret_cast<const unsigned char*>(utf8.data());
    const auto end = at + utf8.size();
    while (at < end) {
        const auto ascii_end = skip_ascii(at, end);
        out.append(at, ascii_end);
        for (at = ascii_end; at < end && *at >= 0x80;)
            append_wide(out, take_utf8(at, end));
    }
    return out;
}

std::string narrow(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        if (const auto unit = static_cast<char32_t>(text[at]); unit < 0x80) {
            out += static_cast<char>(unit);
            ++at;
        } else {
            append_utf8(out, take_code_point(text, at));
        }
    }
    return out;
}

bool is_utf8(std::string_view bytes) {
    auto at = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto end = at + bytes.size();
    while ((at = skip_ascii(at, end)) < end) {
        while (at < end && *at >= 0x80) {
            if (is_escaped_byte(take_utf8(at, end)))
                return false;
        }
    }
    return true;
}

void append_utf8(std::string& out, char32_t c) {
    const auto put = [&out](char32_t byte) { out += static_cast<char>(byte); };
    const auto put_tail = [&](int shift) { put(0x80 | (c >> shift & 0x3F)); };

    if (is_escaped_byte(c)) {
        put(c - 0xDC00);
        return;
    }
    if (c > 0x10FFFF || is_surrogate(c))
        c = replacement_character;
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | c >> 6);
        put_tail(0);
    } else if (c < 0x10000) {
        put(0xE0 | c >> 12);
        put_tail(6);
        put_tail(0);
    } else {
        put(0xF0 | c >> 18);
        put_tail(12);
        put_tail(6);
        put_tail(0);
    }
}

void append_wide(std::wstring& out, char32_t c) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (c >= 0x10000) {
            out += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
            out += static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
            return;
        }
    }
    out += static_cast<wchar_t>(c);
}

char32_t take_code_point(std::wstring_view text, std::size_t& at) {
    const auto first = static_cast<char32_t>(text[at++]);
    if ((first & ~0x3FFu) != 0xD800 || at == text.size())
        return first;
    const auto second = static_cast<char32_t>(text[at]);
    if ((second & ~0x3FFu) != 0xDC00)
        return first;
    ++at;
    return 0x10000 + ((first & 0x3FF) << 10) + (second & 0x3FF);
}

} // namespace base
