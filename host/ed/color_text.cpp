#include "host/ed/color_text.h"

#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string_view>
#include <vector>

namespace ed {

Adesk::UInt16 named_color(std::wstring_view text) {
    constexpr std::wstring_view names[] = {L"red",  L"yellow",  L"green", L"cyan",
                                           L"blue", L"magenta", L"white"};
    for (std::size_t i = 0; i < std::size(names); ++i)
        if (base::equal_no_case(text, names[i]))
            return static_cast<Adesk::UInt16>(i + 1);
    return 0;
}

std::optional<AcCmColor> parse_color(const std::wstring& text) {
    AcCmColor color;
    if (const Adesk::UInt16 index = named_color(text); index != 0) {
        color.setColorIndex(index);
        return color;
    }
    std::vector<std::int64_t> numbers;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t comma = std::min(text.find(L',', at), text.size());
        const auto number = base::parse_integer(base::narrow(text.substr(at, comma - at)));
        if (!number || std::abs(*number) > 255)
            return std::nullopt;
        numbers.push_back(*number);
        at = comma + 1;
    }
    if (numbers.size() == 3 && std::all_of(numbers.begin(), numbers.end(), [](auto n) { return n >= 0; })) {
        color.setRGB(static_cast<Adesk::UInt8>(numbers[0]), static_cast<Adesk::UInt8>(numbers[1]),
                     static_cast<Adesk::UInt8>(numbers[2]));
        return color;
    }
    if (numbers.size() != 1 || numbers[0] == 0)
        return std::nullopt;
    color.setColorIndex(static_cast<Adesk::UInt16>(std::abs(numbers[0])));
    return color;
}

std::wstring color_text(const AcCmColor& color) {
    if (!color.isByColor())
        return std::to_wstring(color.colorIndex());
    return std::to_wstring(color.red()) + L"," + std::to_wstring(color.green()) + L"," +
           std::to_wstring(color.blue());
}

} // namespace ed
