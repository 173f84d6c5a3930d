#include "sys/code_page.h"

#include "base/utf.h"

#include <map>
#include <memory>
#include <mutex>

namespace sys {

namespace {

constexpr int utf8_page = 65001;

} // namespace

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
            if (c != 0)
                ++i;
            else
                c = static_cast<char16_t>(0xDC00 + byte);
        }
        out += static_cast<wchar_t>(c);
    }
    return out;
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
    const unsigned code = c < codes_.size() ? codes_[c] : 0;
    if (code > 0xFF)
        out += static_cast<char>(code >> 8);
    if (code != 0)
        out += static_cast<char>(code & 0xFF);
    return code != 0;
}

} // namespace sys
