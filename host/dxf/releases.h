// The versions of drawing files, by the numbers in $ACADVER.
#pragma once

namespace dxf::releases {

inline constexpr int release_12 = 1009;
inline constexpr int release_13 = 1012;   // handles, owners, markers, classes, dictionaries
inline constexpr int release_14 = 1014;   // light polylines, hatches
inline constexpr int release_2000 = 1015; // lineweights, plot styles, several sheets
inline constexpr int release_2004 = 1018; // true colours, transparency, counts of classes
inline constexpr int release_2007 = 1021; // UTF-8, materials, flags of blocks
inline constexpr int release_2010 = 1024;
inline constexpr int release_2013 = 1027;
inline constexpr int release_2018 = 1032;

} // namespace dxf::releases
