#include "host/gi/set_text.h"

#include "acgi.h"
#include "host/gi/font.h"

#include <algorithm>

namespace gi {

namespace {

// A line under, through or over some of the signs of a text.
struct ruled_signs {
    std::size_t place; // 0 under, 1 through, 2 over
    std::size_t first; // sign
    std::size_t last;  // behind the last one
};

// Those that the codes %%u, %%k and %%o switch on and off in a text of which `count` signs are shown.
std::vector<ruled_signs> rules_of(std::wstring_view text, std::size_t count, const AcGiTextStyle& style) {
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::size_t begun[] = {style.isUnderlined() ? 0 : none, style.isStrikethrough() ? 0 : none,
                           style.isOverlined() ? 0 : none};
    std::vector<ruled_signs> rules;
    const auto end = [&](std::size_t place, std::size_t at) {
        if (begun[place] != none && at > begun[place])
            rules.push_back({place, begun[place], at});
        begun[place] = none;
    };
    for (std::size_t at = text.find(L"%%"); at != text.npos && at + 2 < text.size();
         at = text.find(L"%%", at)) {
        const std::size_t place = std::wstring_view(L"uUkKoO").find(text[at + 2]) / 2;
        at += 3;
        if (place > 2)
            continue;
        const std::size_t shown = shown_text(text.substr(0, at)).size();
        if (begun[place] == none)
            begun[place] = shown;
        else
            end(place, shown);
    }
    for (std::size_t place = 0; place < 3; ++place)
        end(place, count);
    return rules;
}

} // namespace

bool runs_down(const AcGiTextStyle& style) {
    return style.isVertical() && style.imp().hand != font_hand::outline;
}

text_box box_of_text(std::wstring_view shown, const AcGiTextStyle& style, double height,
                     double width_factor) {
    const auto measured = [&](std::wstring_view signs) {
        return measure_text(signs, style.imp(), height, width_factor, style.trackingPercent());
    };
    if (!runs_down(style) || shown.empty())
        return measured(shown);
    text_box box;
    for (std::size_t i = 0; i < shown.size(); ++i)
        box.width = std::max(box.width, measured(shown.substr(i, 1)).width);
    box.left = -box.width / 2.0;
    const auto steps = static_cast<double>(shown.size() - 1);
    box.bottom = -height * (1.0 + steps * column_step * style.trackingPercent());
    return box;
}

set_text set_line(std::wstring_view text, bool raw, const AcGiTextStyle& style) {
    set_text set;
    set.shown = raw ? std::wstring(text) : shown_text(text);
    const std::wstring_view shown = set.shown;
    const double height = style.textSize();
    set.box = box_of_text(shown, style, height, style.xScale());
    const auto width_of = [&](std::wstring_view signs) {
        return measure_text(signs, style.imp(), height, style.xScale(), style.trackingPercent()).width;
    };
    if (runs_down(style)) {
        for (std::size_t i = 0; i < shown.size(); ++i) {
            const double width = width_of(shown.substr(i, 1));
            const double depth = 1.0 + static_cast<double>(i) * column_step * style.trackingPercent();
            set.parts.push_back({-width / 2.0, -depth * height, i, 1, width});
        }
        return set;
    }
    set.parts.push_back({0.0, 0.0, 0, shown.size(), set.box.width});
    constexpr double places[] = {-0.2, 0.5, 1.2}; // heights above the base line
    for (const ruled_signs& rule : rules_of(raw ? std::wstring_view() : text, shown.size(), style))
        set.rules.push_back({rule.first == 0 ? 0.0 : width_of(shown.substr(0, rule.first)),
                             width_of(shown.substr(0, rule.last)), places[rule.place] * height});
    return set;
}

} // namespace gi
