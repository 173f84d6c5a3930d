#include "base/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace base {

namespace {

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// The number without the blanks around it and without its plus sign; empty when it does not begin as one.
std::string_view bare_number(std::string_view text, bool may_begin_with_point) {
    const auto is_blank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
    while (!text.empty() && is_blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    const bool has_sign = !text.empty() && (text[0] == '+' || text[0] == '-');
    if (text.size() <= has_sign ||
        (!is_digit(text[has_sign]) && !(may_begin_with_point && text[has_sign] == '.')))
        return {};
    if (text[0] == '+')
        text.remove_prefix(1);
    return text;
}

// True when the digits of a well-formed real that does not fit into a double stand for one that is too small.
bool is_tiny(std::string_view number) {
    long long exponent = 0;
    const std::size_t mark = number.find_first_of("eE");
    if (mark != number.npos) {
        const std::size_t digits = mark + (number[mark + 1] == '+' ? 2 : 1);
        const auto read = std::from_chars(number.data() + digits, number.data() + number.size(), exponent);
        if (read.ec != std::errc())
            return number[digits] == '-';
        number = number.substr(0, mark);
    }
    const std::size_t point = std::min(number.find('.'), number.size());
    const std::size_t first = number.find_first_of("123456789");
    const auto place = static_cast<long long>(point) - static_cast<long long>(first);
    return place + exponent < 0;
}

} // namespace

std::string real_text(double value) {
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value < 0 ? "-inf" : "inf";
    const double size = std::fabs(value);
    const bool fixed = size == 0 || (size >= 1e-4 && size < 1e15);
    char text[40];
    const auto format = fixed ? std::chars_format::fixed : std::chars_format::scientific;
    std::string out(text, std::to_chars(text, text + sizeof text, value, format).ptr);
    if (fixed && out.find('.') == out.npos)
        out += ".0";
    return out;
}

std::optional<double> parse_real(std::string_view text) {
    text = bare_number(text, true);
    const char* const end = text.data() + text.size();
    double value = 0;
    const auto read = std::from_chars(text.data(), end, value);
    if (text.empty() || read.ptr != end)
        return std::nullopt;
    if (read.ec == std::errc::result_out_of_range && is_tiny(text))
        return text[0] == '-' ? -0.0 : 0.0;
    if (read.ec != std::errc() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<std::int64_t> parse_integer(std::string_view text) {
    text = bare_number(text, false);
    const char* const end = text.data() + text.size();
    std::int64_t value = 0;
    const auto read = std::from_chars(text.data(), end, value);
    if (text.empty() || read.ptr != end || read.ec != std::errc())
        return std::nullopt;
    return value;
}

} // namespace base
