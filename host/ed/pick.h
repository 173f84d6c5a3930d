// Finding entities by where they are drawn: at a point, in a window, across a fence.
#pragma once

#include "dbidar.h"
#include "gemat3d.h"
#include "host/db/core/imp_database.h"
#include "host/gi/region.h"

#include <optional>
#include <vector>

namespace ed {

// What a point hits.
struct hit {
    dxf::record_id entity = dxf::no_record; // of the current space
    AcDbObjectId innermost; // the entity that was drawn there: in a block, an attribute, or itself
    AcGeMatrix3d to_world;  // from the coordinates of the innermost one's block
    std::vector<AcDbObjectId> containers; // the references around it, the innermost first
};

// The topmost entity that draws something within the pick box around a point; nothing when none does.
ACCORE_PORT std::optional<hit> pick(AcDbImpDatabase& database, const AcGePoint3d& point);

// Whether a window takes what lies in it wholly, or also what it cuts.
enum class reach { inside, inside_or_crossing };

// The entities of the current space that are seen and lie so in a region, the newest first.
ACCORE_PORT std::vector<dxf::record_id> entities_in(AcDbImpDatabase& database, const gi::region& region,
                                                    reach reach);

} // namespace ed
