// Takes a flat polygon apart into triangles.
#pragma once

#include "gepnt3d.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace version {

// The corners of triangles that together cover a polygon in a plane of one height, as numbers of its points.
// None for one that crosses itself, or has so many corners that it would take long (the time grows with their
// square).
std::vector<std::array<std::size_t, 3>> triangles_of(std::span<const AcGePoint3d> polygon);

} // namespace version
