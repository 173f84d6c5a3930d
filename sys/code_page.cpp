#include "sys/code_page.h"

#include "base/utf.h"
#include "sys/gb18030.h"
#include "sys/wide_blocks.h"

#include <atomic>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>

namespace sys {

namespace {

constexpr int utf8_page = 65001;
constexpr int gbk_page = 936; // GB 18030's characters of four bytes are read in it too

std::atomic<int> ansi_page = 936;

// The length of the character that begins at `at`, 0 when none does, and -1 when the end cuts off what may be
// one. The character goes to `c`.
int take_utf8(const unsigned char* at, const unsigned char* end, char32_t& c) {
    struct shape {
        unsigned char first_lead, last_lead, first_second, last_second;
        int length;
    };
    // Source: the Unicode standard's table of well-formed sequences. Bytes behind the second are 80..BF.
    static constexpr shape shapes[] = {{0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
                                       {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3},
                                       {0xEE, 0xEF, 0x80, 0xBF, 3}, {0xF0, 0xF0, 0x90, 0xBF, 4},
                                       {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4}};
    for (const shape& s : shapes) {
        if (*at < s.first_lead || *at > s.last_lead)
            continue;
        c = *at & (0x7Fu >> s.length);
        for (int i = 1; i < s.length; ++i) {
            if (at + i == end)
                return -1;
            if (at[i] < (i == 1 ? s.first_second : 0x80) || at[i] > (i == 1 ? s.last_second : 0xBF))
                return 0;
            c = c << 6 | (at[i] & 0x3Fu);
        }
        return s.length;
    }
    return 0;
}

wchar_t* put(wchar_t* out, char32_t c) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (c >= 0x10000) {
            *out++ = static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
            c = 0xDC00 + (c & 0x3FF);
        }
    }
    *out++ = static_cast<wchar_t>(c);
    return out;
}

// Takes blocks apart. `take(at, end, out)` is told a place where a byte above 127 stands, and takes
// characters as long as such bytes follow; it gives false when the end cuts the character off.
template<class Take>
code_page::decoded decode_blocks(std::string_view block, wchar_t* const out, Take take) {
    const auto begin = reinterpret_cast<const unsigned char*>(block.data());
    const unsigned char* const end = begin + block.size();
    const unsigned char* at = begin;
    wchar_t* to = out;
    code_page::decoded done;
    while (at < end) {
        const std::size_t ascii = widen_ascii(at, end, to);
        at += ascii;
        to += ascii;
        if (at < end && !take(at, end, to, done.lost))
            break;
    }
    done.bytes = static_cast<std::size_t>(at - begin);
    done.units = static_cast<std::size_t>(to - out);
    return done;
}

bool take_utf8_run(const unsigned char*& at, const unsigned char* end, wchar_t*& out, std::size_t& lost) {
    while (at < end && *at >= 0x80) {
        // Three bytes are what Chinese texts are made of.
        if (end - at >= 4) {
            std::uint32_t word;
            std::memcpy(&word, at, sizeof word);
            const char32_t c = (at[0] & 0x0Fu) << 12 | (at[1] & 0x3Fu) << 6 | (at[2] & 0x3Fu);
            if ((word & 0x00C0C0F0u) == 0x008080E0u && c >= 0x800 && (c & 0xF800) != 0xD800) {
                *out++ = static_cast<wchar_t>(c);
                at += 3;
                continue;
            }
        }
        char32_t c = 0;
        const int length = take_utf8(at, end, c);
        if (length < 0)
            return false;
        if (length == 0)
            ++lost;
        out = put(out, length == 0 ? 0xDC00 + *at : c);
        at += length == 0 ? 1 : length;
    }
    return true;
}

} // namespace

int ansi_code_page() {
    return ansi_page;
}

bool set_ansi_code_page(int number) {
    if (code_page::find(number) == nullptr)
        return false;
    ansi_page = number;
    return true;
}

const code_page* code_page::find(int number) {
    static std::mutex mutex;
    static std::map<int, std::unique_ptr<code_page>> pages;
    const std::lock_guard lock(mutex);
    const auto [found, is_new] = pages.try_emplace(number);
    if (is_new) {
        std::unique_ptr<code_page> page(new code_page(number));
        if (number == utf8_page || page->fill())
            found->second = std::move(page);
    }
    return found->second.get();
}

std::wstring code_page::decode(std::string_view bytes) const {
    if (number_ == utf8_page)
        return base::widen(bytes);
    std::wstring out;
    out.reserve(bytes.size());
    const auto at = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const unsigned byte = at(i);
        char16_t c = characters_[byte];
        if (c == 0 && byte >= 0x80) {
            if (i + 1 < bytes.size())
                c = characters_[byte << 8 | at(i + 1)];
            if (c == 0 && number_ == gbk_page) {
                const long of_four =
                    gb18030_character(reinterpret_cast<const unsigned char*>(bytes.data()) + i,
                                      static_cast<long>(bytes.size() - i));
                if (of_four > 0) {
                    wchar_t units[2];
                    out.append(units, put(units, static_cast<char32_t>(of_four)));
                    i += 3;
                    continue;
                }
            }
            if (c != 0)
                ++i;
            else
                c = static_cast<char16_t>(0xDC00 + byte);
        }
        out += static_cast<wchar_t>(c);
    }
    return out;
}

code_page::decoded code_page::decode_block(std::string_view block, wchar_t* out) const {
    if (number_ == utf8_page)
        return decode_blocks(block, out, take_utf8_run);
    return decode_blocks(block, out,
                         [this, characters = characters_](const unsigned char*& at, const unsigned char* end,
                                                          wchar_t*& to, std::size_t& lost) {
                             while (at < end && *at >= 0x80) {
                                 const unsigned byte = *at;
                                 const bool is_lead = is_lead_[byte];
                                 if (is_lead && at + 1 == end)
                                     return false;
                                 const char16_t c = characters[is_lead ? byte << 8 | at[1] : byte];
                                 if (c != 0) {
                                     *to++ = static_cast<wchar_t>(c);
                                     at += is_lead ? 2 : 1;
                                     continue;
                                 }
                                 const long of_four =
                                     number_ == gbk_page ? gb18030_character(at, end - at) : 0;
                                 if (of_four < 0)
                                     return false;
                                 if (of_four > 0) {
                                     to = put(to, static_cast<char32_t>(of_four));
                                     at += 4;
                                     continue;
                                 }
                                 *to++ = static_cast<wchar_t>(0xDC00 + byte);
                                 ++at;
                                 ++lost;
                             }
                             return true;
                         });
}

bool code_page::encode(char32_t c, std::string& out) const {
    if (c < 0x80 || base::is_escaped_byte(c)) {
        base::append_utf8(out, c);
        return true;
    }
    if (number_ == utf8_page) {
        if ((c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF)
            return false;
        base::append_utf8(out, c);
        return true;
    }
    const unsigned code = c <= 0xFFFF ? codes_[c] : 0;
    if (code > 0xFF)
        out += static_cast<char>(code >> 8);
    if (code != 0)
        out += static_cast<char>(code & 0xFF);
    return code != 0;
}

} // namespace sys
