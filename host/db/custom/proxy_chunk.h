// The types of chunks in proxy graphics that are read or written here.
#pragma once

#include <cstdint>

namespace db {

enum class proxy_chunk : std::uint32_t {
    extents = 1,
    circle = 2,
    circle_of_points = 3,
    arc = 4,
    arc_of_points = 5,
    polyline = 6,
    polygon = 7,
    mesh = 8,
    shell = 9,
    text = 10,
    styled_text = 11,
    xline = 12,
    ray = 13,
    color = 14,
    fill = 20,
    true_color = 22,
    line_weight = 23,
    linetype_scale = 24,
    thickness = 25,
    push_matrix = 29,
    push_other_matrix = 30,
    pop_matrix = 31,
    polyline_with_normal = 32,
    unicode_text = 36,
    styled_unicode_text = 38,
};

} // namespace db
