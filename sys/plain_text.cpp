#include "sys/plain_text.h"

#include "base/utf.h"
#include "sys/code_page.h"

#include <algorithm>

namespace sys {

namespace {

std::wstring utf16_text(std::string_view bytes, bool big_endian) {
    std::string utf8;
    char32_t high = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        const char32_t unit = big_endian ? static_cast<char32_t>(first << 8 | second)
                                         : static_cast<char32_t>(second << 8 | first);
        if (unit >= 0xD800 && unit < 0xDC00) {
            high = unit;
            continue;
        }
        if (unit >= 0xDC00 && unit < 0xE000 && high != 0)
            base::append_utf8(utf8, 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00));
        else
            base::append_utf8(utf8, unit);
        high = 0;
    }
    return base::widen(utf8);
}

} // namespace

std::wstring plain_text(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE"))
        return utf16_text(bytes.substr(2), false);
    if (bytes.starts_with("\xFE\xFF"))
        return utf16_text(bytes.substr(2), true);
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    const code_page* const page = code_page::find(ansi_code_page());
    return base::is_utf8(bytes) || page == nullptr ? base::widen(bytes) : page->decode(bytes);
}

bool next_line(std::wstring_view text, std::size_t& at, std::wstring_view& line) {
    if (at >= text.size())
        return false;
    const std::size_t end = std::min(text.find(L'\n', at), text.size());
    line = text.substr(at, end - at);
    at = end + 1;
    if (!line.empty() && line.back() == L'\r')
        line.remove_suffix(1);
    return true;
}

} // namespace sys
