// Points as users type them, and the user's coordinate system in which they do.
#pragma once

#include "gemat3d.h"
#include "gepnt3d.h"

#include <optional>
#include <string_view>

namespace ed {

// From the user's coordinates to the world's, as the current drawing has them.
AcGeMatrix3d user_to_world();
AcGePoint3d to_world(const AcGePoint3d& user);
AcGePoint3d to_user(const AcGePoint3d& world);

// A typed point in user coordinates: "x,y" at the current elevation, "x,y,z", "d<a", "d<a,z", "d<a<b";
// behind "@" from the last point, which is "@" alone; behind "*" in world coordinates. Nothing when the text
// is no point.
ACCORE_PORT std::optional<AcGePoint3d> read_point(std::wstring_view text);

// The same, which is the last point from now on.
std::optional<AcGePoint3d> take_point(std::wstring_view text);

// A typed distance, and a typed angle as the direction that it means, from the x axis counterclockwise.
std::optional<double> read_length(std::wstring_view text);
std::optional<double> read_direction(std::wstring_view text);

} // namespace ed
