// The bits of group 70 of a POLYLINE and of a VERTEX. Source: the DXF reference.
#pragma once

namespace db {

namespace polyline_flag {
inline constexpr int closed = 1; // of a mesh: its rows
inline constexpr int curve_fit = 2;
inline constexpr int spline_fit = 4;
inline constexpr int in_space = 8;
inline constexpr int mesh = 16;
inline constexpr int columns_closed = 32;
inline constexpr int polyface = 64;
inline constexpr int plinegen = 128;
} // namespace polyline_flag

namespace vertex_flag {
inline constexpr int fitted = 1; // made for a fitted curve
inline constexpr int tangent = 2;
inline constexpr int spline = 8; // made for a spline
inline constexpr int frame = 16; // a control point of the spline
inline constexpr int in_space = 32;
inline constexpr int mesh = 64;
inline constexpr int polyface = 128; // without `mesh`: a face
} // namespace vertex_flag

} // namespace db
