#include "host/gi/text_metrics.h"

#include "base/display_width.h"

namespace gi {

double text_width(std::wstring_view text, double height) {
    // Capitals of the usual stroke fonts are about as wide as two thirds of their height, with the gap behind
    // them nearly as wide as high; signs of East Asian fonts fill a square.
    constexpr double narrow = 0.85;
    double width = 0.0;
    for (const wchar_t c : text)
        width += height * (base::display_width(std::wstring_view(&c, 1)) > 1 ? 1.2 : narrow);
    return width;
}

} // namespace gi
