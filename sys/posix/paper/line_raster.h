// Thin lines put straight into the dots of a picture: most of a plan is made of them, and a drawing library
// that can do everything takes five times as long.
#pragma once

#include "sys/paper.h"

#include <cstdint>
#include <span>

namespace sys {

// The dots of a picture, each as blue, green, red and a byte that is not used; lines may be drawn within some
// of them alone.
struct dot_field {
    std::uint8_t* dots = nullptr;
    int row_bytes = 0;
    int left = 0; // the columns and rows that may be drawn on, the last ones not among them
    int top = 0;
    int right = 0;
    int bottom = 0;
};

// Draws a line through points (in dots) that is `width` dots wide, with soft edges, over what is there.
void draw_thin_line(const dot_field& field, std::span<const sheet_point> points, double width,
                    const ink& color);

} // namespace sys
