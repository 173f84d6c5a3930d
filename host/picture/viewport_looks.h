// What a viewport of a sheet overrides of a layer's look.
#pragma once

#include "dbcolor.h"
#include "host/db/core/imp_database.h"

#include <cstdint>
#include <optional>

namespace picture {

// Nothing where the layer's own look holds.
struct viewport_look {
    std::optional<AcCmEntityColor> color;
    std::optional<dxf::record_id> linetype;
    std::optional<int> weight;                // hundredths of a millimetre
    std::optional<std::int64_t> transparency; // as files write it
};

// Source: entries of a layer's extension dictionary that the editor writes (ADSK_XREC_LAYER_COLOR_OVR and its
// fellows): braces for each viewport, in them its handle (335) and the value (420, 343, 91, 440).
viewport_look look_in_viewport(const AcDbImpDatabase& drawing, dxf::record_id layer, dxf::record_id viewport);

} // namespace picture
