// Colours as users type and read them.
#pragma once

#include "dbcolor.h"

#include <optional>
#include <string>

namespace ed {

// A colour by index, by one of the seven names, or as "red,green,blue"; nothing for other texts. A minus in
// front of an index is passed over: what it means is the caller's.
std::optional<AcCmColor> parse_color(const std::wstring& text);

// "3", or "255,128,0" for a true colour.
std::wstring color_text(const AcCmColor& color);

} // namespace ed
