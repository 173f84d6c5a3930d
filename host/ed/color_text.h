// Colours as users type and read them.
#pragma once

#include "dbcolor.h"

#include <optional>
#include <string>
#include <string_view>

namespace ed {

// The index of a colour that has a name, 1 (red) to 7 (white), however it is written; 0 for other texts.
Adesk::UInt16 named_color(std::wstring_view text);

// A colour by index, by one of the seven names, or as "red,green,blue"; nothing for other texts. A minus in
// front of an index is passed over: what it means is the caller's.
std::optional<AcCmColor> parse_color(const std::wstring& text);

// "3", or "255,128,0" for a true colour.
std::wstring color_text(const AcCmColor& color);

} // namespace ed
