// Lines put straight into the dots of a picture: most of a plan is made of them, and a drawing library that
// can do everything takes five times as long, for thick ones much more.
#pragma once

#include "sys/paper.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

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

// Draws a line through points (in dots) that is `width` dots wide, with soft edges, over what is there. Thin
// ones have square ends, thick ones round ends and corners.
void draw_line(const dot_field& field, std::span<const sheet_point> points, double width, const ink& color);

// Lines that cover many dots wait until something else is drawn, and are drawn by all cores then, each some
// rows of the picture: the same dots as one after the other.
class waiting_lines {
public:
    // False when the line need not wait: nothing waits, and it is short.
    bool add(const dot_field& field, std::span<const sheet_point> points, double width, const ink& color);
    // Draws all of them.
    void draw(const dot_field& field);

private:
    struct line {
        std::size_t first; // of its points
        std::size_t count;
        double width;
        ink color;
        int top; // rows that it may touch, the last one not among them
        int bottom;
    };

    void draw_seen(const dot_field& field) const;

    std::vector<line> lines_;
    std::vector<sheet_point> points_;
    double dots_ = 0.0; // about so many are covered
};

} // namespace sys
