#include "host/dxf/text_codec.h"

#include "base/utf.h"
#include "host/dxf/record_header.h"
#include "sys/code_page.h"

#include <charconv>
#include <cstdio>

namespace dxf {

namespace {

// The digit of \M+nXXXX and the code page that it stands for. Source: the DXF reference's MIF codes.
int mif_code_page(char digit) {
    switch (digit) {
    case '1':
        return 932;
    case '2':
        return 950;
    case '3':
        return 949;
    case '4':
        return 1361;
    case '5':
        return 936;
    default:
        return 0;
    }
}

// Four hexadecimal digits; -1 when they are not all there.
int four_digits(std::wstring_view text, std::size_t at) {
    if (at + 4 > text.size())
        return -1;
    int value = 0;
    for (std::size_t i = at; i < at + 4; ++i) {
        const wchar_t c = text[i];
        const int digit = c >= L'0' && c <= L'9'   ? c - L'0'
                          : c >= L'A' && c <= L'F' ? c - L'A' + 10
                          : c >= L'a' && c <= L'f' ? c - L'a' + 10
                                                   : -1;
        if (digit < 0)
            return -1;
        value = value * 16 + digit;
    }
    return value;
}

// \U+, \M+ and caret codes to what they stand for; what only looks like one stays.
std::wstring unescaped(std::wstring_view text) {
    std::wstring out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        if (text.substr(i, 3) == L"\\U+") {
            int code = four_digits(text, i + 3);
            if (code > 0) {
                i += 7;
                const int low = code >= 0xD800 && code < 0xDC00 && text.substr(i, 3) == L"\\U+"
                                    ? four_digits(text, i + 3)
                                    : -1;
                if (sizeof(wchar_t) > 2 && low >= 0xDC00 && low < 0xE000) {
                    code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                    i += 7;
                }
                out += static_cast<wchar_t>(code);
                continue;
            }
        } else if (text.substr(i, 3) == L"\\M+" && i + 3 < text.size() && text[i + 3] < 128) {
            const sys::code_page* const page =
                sys::code_page::find(mif_code_page(static_cast<char>(text[i + 3])));
            const int code = four_digits(text, i + 4);
            if (page != nullptr && code > 0) {
                const char bytes[2] = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
                out += bytes[0] != 0 ? page->decode({bytes, 2}) : page->decode({bytes + 1, 1});
                i += 8;
                continue;
            }
        } else if (text[i] == L'^' && i + 1 < text.size()) {
            const wchar_t c = text[i + 1];
            if (c == L' ' || (c >= L'@' && c <= L'_')) {
                out += c == L' ' ? L'^' : static_cast<wchar_t>(c - L'@');
                i += 2;
                continue;
            }
        }
        out += text[i++];
    }
    return out;
}

void append_escape(std::string& out, unsigned unit) {
    char digits[8];
    std::snprintf(digits, sizeof digits, "\\U+%04X", unit & 0xFFFFu);
    out += digits;
}

} // namespace

int code_page_number(std::string_view name) {
    std::string lower;
    for (const char c : trimmed(name))
        lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    struct known {
        std::string_view name;
        int number;
    };
    // Source: values of $DWGCODEPAGE as the DXF reference lists them.
    static constexpr known names[] = {{"gb2312", 936},      {"gbk", 936},         {"big5", 950},
                                      {"ksc5601", 949},     {"johab", 1361},      {"mac-roman", 10000},
                                      {"macintosh", 10000}, {"utf-8", 65001},     {"utf8", 65001},
                                      {"dos932", 932},      {"iso8859-1", 28591}, {"iso_8859-1", 28591}};
    for (const known& entry : names)
        if (lower == entry.name)
            return entry.number;
    const std::string_view view = lower;
    std::string_view digits;
    if (view.starts_with("ansi_"))
        digits = view.substr(5);
    else if (view.starts_with("dos"))
        digits = view.substr(3);
    else if (view.starts_with("iso8859-"))
        digits = view.substr(8);
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc{} || end != digits.data() + digits.size())
        return 0;
    return view.starts_with("iso") ? 28590 + number : number;
}

text_codec::text_codec(int number) : number_(number) {
    constexpr int utf8 = 65001;
    if (number_ == utf8)
        return;
    page_ = sys::code_page::find(number_);
    if (page_ == nullptr) {
        number_ = 1252;
        page_ = sys::code_page::find(number_);
    }
}

std::wstring text_codec::decode(std::string_view bytes) const {
    std::wstring text = page_ != nullptr ? page_->decode(bytes) : base::widen(bytes);
    if (text.find(L'\\') != text.npos || text.find(L'^') != text.npos)
        return unescaped(text);
    return text;
}

std::string text_codec::encode(std::wstring_view text) const {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = static_cast<char32_t>(text[i]);
        if (sizeof(wchar_t) == 2 && c >= 0xD800 && c < 0xDC00 && i + 1 < text.size())
            c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<char32_t>(text[++i]) - 0xDC00);
        if (c < 0x20) {
            out += '^';
            out += static_cast<char>('@' + c);
        } else if (c == U'^') {
            out += "^ ";
        } else if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c >= 0xDC80 && c <= 0xDCFF) {
            out += static_cast<char>(c - 0xDC00);
        } else if (page_ == nullptr) {
            base::append_utf8(out, c);
        } else if (!page_->encode(c, out)) {
            if (c > 0xFFFF)
                append_escape(out, static_cast<unsigned>(0xD800 + ((c - 0x10000) >> 10)));
            append_escape(out, static_cast<unsigned>(c > 0xFFFF ? 0xDC00 + ((c - 0x10000) & 0x3FF) : c));
        }
    }
    return out;
}

} // namespace dxf
