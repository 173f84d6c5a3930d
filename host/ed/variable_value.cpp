#include "host/ed/variable_value.h"

#include "base/number_text.h"
#include "base/utf.h"

#include <algorithm>
#include <array>
#include <limits>

namespace ed {

std::wstring shown_value(const variable_value& value) {
    if (const int* const whole = std::get_if<int>(&value))
        return std::to_wstring(*whole);
    const auto real_text = [](double real) { return base::widen(base::real_text(real)); };
    if (const double* const real = std::get_if<double>(&value))
        return real_text(*real);
    if (const AcGePoint3d* const point = std::get_if<AcGePoint3d>(&value))
        return real_text(point->x) + L"," + real_text(point->y) + L"," + real_text(point->z);
    return L"\"" + std::get<std::wstring>(value) + L"\"";
}

bool read_value(std::wstring_view typed, const variable_value& old, variable_value& value) {
    if (std::holds_alternative<std::wstring>(old)) {
        value = std::wstring(typed);
        return true;
    }
    if (std::holds_alternative<int>(old)) {
        const auto whole = base::parse_integer(base::narrow(typed));
        if (!whole || *whole < std::numeric_limits<int>::min() || *whole > std::numeric_limits<int>::max())
            return false;
        value = static_cast<int>(*whole);
        return true;
    }
    std::array<double, 3> numbers{};
    std::size_t count = 0;
    for (std::size_t at = 0; at <= typed.size(); ++count) {
        const std::size_t comma = std::min(typed.find(L',', at), typed.size());
        const auto number = base::parse_real(base::narrow(typed.substr(at, comma - at)));
        if (!number || count == numbers.size())
            return false;
        numbers[count] = *number;
        at = comma + 1;
    }
    const bool one = std::holds_alternative<double>(old);
    if (one != (count == 1))
        return false;
    value = one ? variable_value(numbers[0]) : AcGePoint3d(numbers[0], numbers[1], numbers[2]);
    return true;
}

} // namespace ed
