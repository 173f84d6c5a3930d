#include "sys/posix/registry_text.h"

#include "base/case_fold.h"
#include "base/utf.h"

#include <algorithm>
#include <charconv>

namespace sys {

namespace {

constexpr std::wstring_view header = L"Windows Registry Editor Version 5.00";
constexpr std::wstring_view root = L"HKEY_CURRENT_USER\\";
constexpr std::wstring_view line_end = L"\r\n";
constexpr std::string_view utf16_mark = "\xFF\xFE";
constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";

std::wstring text_of(std::string_view bytes) {
    if (!bytes.starts_with(utf16_mark))
        return base::widen(bytes.substr(bytes.starts_with(utf8_mark) ? utf8_mark.size() : 0));
    std::wstring units;
    units.reserve(bytes.size() / 2);
    for (std::size_t i = utf16_mark.size(); i < bytes.size(); i += 2) {
        const unsigned low = static_cast<unsigned char>(bytes[i]);
        const unsigned high = i + 1 < bytes.size() ? static_cast<unsigned char>(bytes[i + 1]) : 0;
        units += static_cast<wchar_t>(high << 8 | low);
    }
    std::wstring text;
    text.reserve(units.size());
    for (std::size_t at = 0; at < units.size();)
        base::append_wide(text, base::take_code_point(units, at));
    return text;
}

void append_utf16(std::string& out, std::wstring_view text) {
    const auto put = [&out](char32_t unit) {
        out += static_cast<char>(unit & 0xFF);
        out += static_cast<char>(unit >> 8);
    };
    for (const wchar_t unit : text) {
        const auto c = static_cast<char32_t>(unit);
        if (c > 0xFFFF) {
            put(0xD800 + ((c - 0x10000) >> 10));
            put(0xDC00 + (c & 0x3FF));
        } else {
            put(c);
        }
    }
}

std::wstring_view trimmed(std::wstring_view text) {
    constexpr std::wstring_view blanks = L" \t";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(blanks) + 1));
    return text;
}

// Takes the quoted text that begins at the front; nothing when there is none that ends.
std::optional<std::wstring> take_quoted(std::wstring_view& text) {
    if (!text.starts_with(L'"'))
        return std::nullopt;
    std::wstring out;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == L'"') {
            text.remove_prefix(i + 1);
            return out;
        }
        if (text[i] == L'\\' && i + 1 < text.size() && (text[i + 1] == L'\\' || text[i + 1] == L'"'))
            ++i;
        out += text[i];
    }
    return std::nullopt;
}

std::wstring in_quotes(std::wstring_view text) {
    std::wstring out = L"\"";
    for (const wchar_t c : text) {
        if (c == L'\\' || c == L'"')
            out += L'\\';
        out += c;
    }
    return out + L'"';
}

std::wstring name_text(std::wstring_view name) {
    return name.empty() ? L"@" : in_quotes(name);
}

struct value_line {
    std::wstring name;
    std::wstring_view data;
};

std::optional<value_line> parse_value_line(std::wstring_view line) {
    line = trimmed(line);
    std::optional<std::wstring> name;
    if (line.starts_with(L'@')) {
        name.emplace();
        line.remove_prefix(1);
    } else {
        name = take_quoted(line);
    }
    line = trimmed(line);
    if (!name || !line.starts_with(L'='))
        return std::nullopt;
    return value_line{std::move(*name), trimmed(line.substr(1))};
}

std::optional<registry_value> parse_data(std::wstring_view data) {
    constexpr std::wstring_view number_kind = L"dword:";
    if (data.starts_with(number_kind)) {
        const std::string digits = base::narrow(data.substr(number_kind.size()));
        std::uint32_t number = 0;
        const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
        if (read.ec != std::errc() || read.ptr != digits.data() + digits.size())
            return std::nullopt;
        return number;
    }
    auto text = take_quoted(data);
    if (!text || !trimmed(data).empty())
        return std::nullopt;
    return std::move(*text);
}

std::wstring data_text(const registry_value& value) {
    if (const auto* const text = std::get_if<std::wstring>(&value))
        return in_quotes(*text);
    constexpr wchar_t hex[] = L"0123456789abcdef";
    std::wstring out = L"dword:";
    for (int shift = 28; shift >= 0; shift -= 4)
        out += hex[std::get<std::uint32_t>(value) >> shift & 0xF];
    return out;
}

// The key of a section's first line, folded and with its root; nothing for other lines.
std::optional<std::wstring> section_of(std::wstring_view line) {
    line = trimmed(line);
    if (!line.starts_with(L'[') || !line.ends_with(L']'))
        return std::nullopt;
    return base::folded(line.substr(1, line.size() - 2));
}

std::wstring_view bare_key(std::wstring_view key) {
    while (key.starts_with(L'\\'))
        key.remove_prefix(1);
    while (key.ends_with(L'\\'))
        key.remove_suffix(1);
    return key;
}

std::wstring full_key(std::wstring_view key) {
    return std::wstring(root) + std::wstring(bare_key(key));
}

} // namespace

registry_text::registry_text(std::string_view bytes) {
    const std::wstring text = text_of(bytes);
    bool goes_on = false;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(L'\n', at), text.size());
        std::wstring_view line = std::wstring_view(text).substr(at, end - at);
        if (line.ends_with(L'\r'))
            line.remove_suffix(1);
        if (goes_on) {
            lines_.back().append(line_end).append(line);
            goes_on = trimmed(line).ends_with(L'\\');
        } else {
            lines_.emplace_back(line);
            const auto value = parse_value_line(line);
            goes_on = value && value->data.starts_with(L"hex") && value->data.ends_with(L'\\');
        }
        at = end + 1;
    }
    index();
}

bool registry_text::is_text(std::string_view bytes) {
    return bytes.starts_with(utf16_mark) ? bytes.size() % 2 == 0 : base::is_utf8(bytes);
}

std::string registry_text::bytes() const {
    std::string out(utf16_mark);
    for (const std::wstring& line : lines_) {
        append_utf16(out, line);
        append_utf16(out, line_end);
    }
    return out;
}

std::optional<registry_value> registry_text::read(std::wstring_view key, std::wstring_view name) const {
    const auto found = values_.find(base::folded(full_key(key)) + L'\n' + base::folded(name));
    return found != values_.end() ? std::optional(found->second) : std::nullopt;
}

bool registry_text::write(std::wstring_view key, std::wstring_view name, const registry_value& value) {
    if (read(key, name) == value)
        return false;
    // The older form of the editor calls itself so; it is the newer one from now on.
    std::replace(lines_.begin(), lines_.end(), std::wstring(L"REGEDIT4"), std::wstring(header));
    if (std::find(lines_.begin(), lines_.end(), header) == lines_.end())
        lines_.insert(lines_.begin(), std::wstring(header));
    const place at = find(key, name);
    std::wstring line = name_text(name) + L'=' + data_text(value);
    if (!at.lines.empty()) {
        lines_[at.lines.back()] = std::move(line);
    } else if (at.section_end > 0) {
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at.section_end), std::move(line));
    } else {
        if (!lines_.back().empty())
            lines_.emplace_back();
        lines_.push_back(L'[' + full_key(key) + L']');
        lines_.push_back(std::move(line));
    }
    values_.insert_or_assign(base::folded(full_key(key)) + L'\n' + base::folded(name), value);
    return true;
}

bool registry_text::erase(std::wstring_view key, std::wstring_view name) {
    const place at = find(key, name);
    for (auto line = at.lines.rbegin(); line != at.lines.rend(); ++line)
        lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(*line));
    values_.erase(base::folded(full_key(key)) + L'\n' + base::folded(name));
    return !at.lines.empty();
}

registry_text::place registry_text::find(std::wstring_view key, std::wstring_view name) const {
    const std::wstring wanted = base::folded(full_key(key));
    place found;
    bool inside = false;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (const auto section = section_of(lines_[i]))
            inside = *section == wanted;
        if (!inside)
            continue;
        if (!lines_[i].empty())
            found.section_end = i + 1;
        const auto value = parse_value_line(lines_[i]);
        if (value && base::equal_no_case(value->name, name))
            found.lines.push_back(i);
    }
    return found;
}

void registry_text::index() {
    std::wstring section;
    for (const std::wstring& line : lines_) {
        if (auto begun = section_of(line))
            section = std::move(*begun);
        const auto value = parse_value_line(line);
        if (!value)
            continue;
        const std::wstring name = section + L'\n' + base::folded(value->name);
        if (auto data = parse_data(value->data))
            values_.insert_or_assign(name, std::move(*data));
        else
            values_.erase(name);
    }
}

} // namespace sys
