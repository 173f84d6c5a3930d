// Where selections come from: everything, the last entity, the set before, groups, handles.
#pragma once

#include "host/db/core/imp_database.h"
#include "host/ed/selection_filter.h"
#include "host/ed/selection_mode.h"
#include "host/gi/region.h"
#include "host/picture/layer_states.h"

#include <optional>
#include <string>
#include <vector>

namespace ed {

// The drawing that is selected in; null when none is open.
AcDbImpDatabase* selected_drawing();

// All that a filter fits (null: everything), the newest first: of the whole drawing, or of what is neither
// frozen nor locked.
std::vector<AcDbObjectId> select_all(AcDbImpDatabase& database, const selection_filter* filter,
                                     bool whole_drawing);
// The newest entity of the current space that is seen; no_record when there is none.
dxf::record_id last_visible(AcDbImpDatabase& database);
bool in_current_space(AcDbImpDatabase& database, dxf::record_id entity);
// What is left of the set that was selected last, when that was in this drawing.
std::vector<AcDbObjectId> previous_in(AcDbImpDatabase& database);
// The entities of a group of the drawing; nothing when there is none of this name.
std::optional<std::vector<AcDbObjectId>> select_group(AcDbImpDatabase& database, const std::wstring& name);
// The main entity with a handle: of a part, the entity that it belongs to. An empty reason when there is one.
std::wstring entity_of_handle(AcDbImpDatabase& database, const std::wstring& handle, dxf::record_id& entity);

// The region that a way takes between its points, in world coordinates, and whether it takes only what lies
// in it wholly.
gi::region region_of(way chosen, std::vector<AcGePoint2d> points);
bool takes_inside_only(way chosen, const std::vector<AcGePoint2d>& points);
// The entities of the current space in it, the newest first.
std::vector<AcDbObjectId> select_region(AcDbImpDatabase& database, way chosen,
                                        std::vector<AcGePoint2d> points);
// What a point hits, in world coordinates: the topmost, or all that lies in the pick box; in blocks the
// innermost one when `nested`.
std::vector<AcDbObjectId> select_point(AcDbImpDatabase& database, const AcGePoint3d& point,
                                       const selection_mode& mode);

} // namespace ed
