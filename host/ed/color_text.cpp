#include "host/ed/color_text.h"

#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace ed {

std::optional<AcCmColor> parse_color(const std::wstring& text) {
    static constexpr std::array<std::wstring_view, 7> names = {L"red",  L"yellow",  L"green", L"cyan",
                                                               L"blue", L"magenta", L"white"};
    AcCmColor color;
    for (std::size_t i = 0; i < names.size(); ++i)
        if (base::equal_no_case(text, names[i])) {
            color.setColorIndex(static_cast<Adesk::UInt16>(i + 1));
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
