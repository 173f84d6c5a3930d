// How wide a text is drawn.
#pragma once

#include <string_view>

namespace gi {

// The width of one line of a height, at width factor 1.
double text_width(std::wstring_view text, double height);

} // namespace gi
