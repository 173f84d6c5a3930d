// Hatches whose colours change from place to place.
#pragma once

#include "dbcolor.h"
#include "dbhatch.h"
#include "gemat3d.h"
#include "host/picture/sheet_view.h"
#include "sys/paper.h"

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace picture {

// The colours of a hatch's gradient over its rims (in the world); `to_world` leads there from where the hatch
// stands. `ink_of` gives the ink of a colour. Nothing for a hatch without a gradient, or without two colours.
//
// Where the colours of each kind lie is seen in the editor's own swatches: the second one is where light
// falls, in the middle of a cylinder and a sphere, low on a hemisphere. A curved one is drawn as a flatter
// hemisphere; a shifted one (group 461) has its light a quarter of its size further up and to the left.
std::optional<sys::shading> gradient_of(const AcDbHatch& hatch, const AcGeMatrix3d& to_world,
                                        std::span<const std::vector<AcGePoint3d>> rims,
                                        const sheet_view& view,
                                        const std::function<sys::ink(const AcCmEntityColor&)>& ink_of);

} // namespace picture
