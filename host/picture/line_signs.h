// Texts and shapes that stand in lines.
#pragma once

#include "host/picture/line_pattern.h"
#include "host/picture/text_painter.h"

namespace picture {

// Draws a sign of a line whose pattern is `scale` times as large as its linetype says.
void draw_sign(const placed_sign& placed, double scale, const sheet_view& view, text_painter& texts,
               const sys::pen& pen);

} // namespace picture
