#include "host/ed/unit_text.h"

#include "base/number_text.h"
#include "base/utf.h"

#include <cmath>
#include <numbers>
#include <string>

namespace ed {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double inches_per_foot = 12.0;

// A number without a sign of its own.
std::optional<double> unsigned_real(std::wstring_view text) {
    if (text.empty() || text.front() == L'+' || text.front() == L'-')
        return std::nullopt;
    return base::parse_real(base::narrow(text));
}

// "3/4", "3-1/2", "3.5", "1e3".
std::optional<double> mixed_number(std::wstring_view text) {
    const std::size_t slash = text.find(L'/');
    if (slash == text.npos)
        return unsigned_real(text);
    const std::size_t dash = text.find(L'-');
    double whole = 0.0;
    std::size_t numerator = 0;
    if (dash < slash) {
        const auto read = unsigned_real(text.substr(0, dash));
        if (!read)
            return std::nullopt;
        whole = *read;
        numerator = dash + 1;
    }
    const auto over = unsigned_real(text.substr(numerator, slash - numerator));
    const auto under = unsigned_real(text.substr(slash + 1));
    if (!over || !under || *under == 0.0)
        return std::nullopt;
    return whole + *over / *under;
}

char small(wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<char>(c - L'A' + L'a')
           : c < 128              ? static_cast<char>(c)
                                  : '\0';
}

// "45", "45d", "45d30'", "45d30'15.5\"", in degrees.
std::optional<double> parse_degrees(std::wstring_view text) {
    double degrees = 0.0;
    double unit = 1.0;
    for (const char mark : {'d', '\'', '"'}) {
        std::size_t end = 0;
        while (end < text.size() && small(text[end]) != mark)
            ++end;
        const bool last = end == text.size();
        const auto value = unsigned_real(text.substr(0, end));
        if (!value)
            return std::nullopt;
        degrees += *value * unit;
        if (last || end + 1 == text.size())
            return degrees;
        text.remove_prefix(end + 1);
        unit /= 60.0;
    }
    return std::nullopt; // something stands behind the seconds
}

// "N45d30'E": from north or south so far towards east or west; "N" and so on by themselves.
std::optional<double> parse_bearing(std::wstring_view text) {
    const char first = small(text.front());
    const char last = small(text.back());
    if (text.size() == 1) {
        constexpr std::string_view directions = "enws";
        const std::size_t quarter = directions.find(first);
        return quarter == directions.npos ? std::nullopt
                                          : std::optional(static_cast<double>(quarter) * pi / 2.0);
    }
    if ((first != 'n' && first != 's') || (last != 'e' && last != 'w'))
        return std::nullopt;
    const auto degrees =
        text.size() == 2 ? std::optional(0.0) : parse_degrees(text.substr(1, text.size() - 2));
    if (!degrees || *degrees > 90.0)
        return std::nullopt;
    const double turn = *degrees * pi / 180.0;
    const double from = first == 'n' ? pi / 2.0 : -pi / 2.0;
    return within_turn((first == 'n') == (last == 'w') ? from + turn : from - turn);
}

} // namespace

std::optional<double> parse_length(std::wstring_view text, length_form form) {
    if (text.empty())
        return std::nullopt;
    const double sign = text.front() == L'-' ? -1.0 : 1.0;
    if (text.front() == L'-' || text.front() == L'+')
        text.remove_prefix(1);
    const bool imperial = form == length_form::engineering || form == length_form::architectural;
    double feet = 0.0;
    if (const std::size_t mark = text.find(L'\''); imperial && mark != text.npos) {
        const auto read = unsigned_real(text.substr(0, mark));
        if (!read)
            return std::nullopt;
        feet = *read;
        text.remove_prefix(mark + 1);
        if (!text.empty() && text.front() == L'-')
            text.remove_prefix(1);
        if (text.empty())
            return sign * feet * inches_per_foot;
    }
    if (imperial && text.ends_with(L'"'))
        text.remove_suffix(1);
    const auto rest = mixed_number(text);
    return rest ? std::optional(sign * (feet * inches_per_foot + *rest)) : std::nullopt;
}

std::optional<typed_angle> parse_angle(std::wstring_view text, angle_form form) {
    if (text.empty())
        return std::nullopt;
    if (form == angle_form::surveyor)
        if (const auto bearing = parse_bearing(text))
            return typed_angle{*bearing, true};
    const double sign = text.front() == L'-' ? -1.0 : 1.0;
    if (text.front() == L'-' || text.front() == L'+')
        text.remove_prefix(1);
    if (text.empty())
        return std::nullopt;
    const char mark = small(text.back());
    const bool told = mark == 'g' || mark == 'r';
    const auto plain = unsigned_real(told ? text.substr(0, text.size() - 1) : text);
    if (plain) {
        const bool grads = told ? mark == 'g' : form == angle_form::grads;
        const bool radians = told ? mark == 'r' : form == angle_form::radians;
        return typed_angle{sign * (grads ? *plain * pi / 200.0 : radians ? *plain : *plain * pi / 180.0)};
    }
    const auto degrees = parse_degrees(text);
    return degrees ? std::optional(typed_angle{sign * *degrees * pi / 180.0}) : std::nullopt;
}

double within_turn(double radians) {
    const double turn = 2.0 * pi;
    const double rest = std::fmod(radians, turn);
    const double positive = rest < 0.0 ? rest + turn : rest;
    // What is a full turn but for the last digits is none.
    return turn - positive < 1e-12 ? 0.0 : positive;
}

} // namespace ed
