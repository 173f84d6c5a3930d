#include "sys/posix/paper/pdf_shadings.h"

#include <cmath>

namespace sys {

namespace {

void append_color(std::string& text, const ink& color) {
    constexpr double most = 255.0;
    for (const unsigned char part : {color.red, color.green, color.blue}) {
        append_number(text, part / most);
        text += ' ';
    }
}

// From one colour to the next, evenly.
std::string between(const ink& from, const ink& to) {
    std::string text = "<</FunctionType 2/Domain[0 1]/N 1/C0[";
    append_color(text, from);
    text += "]/C1[";
    append_color(text, to);
    return text + "]>>";
}

std::string function_of(const shading& colors) {
    const auto& stops = colors.stops;
    if (stops.size() == 2)
        return between(stops[0].second, stops[1].second);
    std::string parts;
    std::string bounds;
    std::string encoded;
    for (std::size_t i = 0; i + 1 < stops.size(); ++i) {
        parts += between(stops[i].second, stops[i + 1].second);
        encoded += "0 1 ";
        if (i != 0) {
            append_number(bounds, stops[i].first);
            bounds += ' ';
        }
    }
    return "<</FunctionType 3/Domain[0 1]/Functions[" + parts + "]/Bounds[" + bounds + "]/Encode[" + encoded +
           "]>>";
}

} // namespace

int pdf_shadings::add(pdf_file& file, const shading& colors, double scale) {
    std::string text = colors.round ? "<</ShadingType 3" : "<</ShadingType 2";
    text += "/ColorSpace/DeviceRGB/Extend[true true]/Coords[";
    const auto append = [&](double value) {
        append_number(text, value * scale);
        text += ' ';
    };
    append(colors.from.x);
    append(colors.from.y);
    if (colors.round) {
        append(0.0);
        append(colors.from.x);
        append(colors.from.y);
        append(std::hypot(colors.to.x - colors.from.x, colors.to.y - colors.from.y));
    } else {
        append(colors.to.x);
        append(colors.to.y);
    }
    const int object = file.reserve();
    file.write(object, text + "]/Function" + function_of(colors) + ">>");
    names_ += "/S";
    names_ += std::to_string(count_);
    names_ += ' ';
    names_ += std::to_string(object);
    names_ += " 0 R";
    return count_++;
}

} // namespace sys
