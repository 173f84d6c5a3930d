// The groups of a VIEWPORT in both of the forms that files have had.
//
// From R2000 on the view stands in groups of its own, and layers frozen in it are named by handle (331, 341).
// Before that all but the frame is extended data of the application ACAD: a list called MVIEW with its values
// in a fixed order, at its end a list of the names of layers (1003).
#pragma once

#include "host/db/core/fields.h"
#include "host/dxf/group_list.h"

#include <cstdint>
#include <vector>

class AcDbImpDatabase;

namespace db {

extern const section viewport_place;

// Whether a viewport's view is the list, which is so where it has neither in files before R2000.
bool uses_list(const AcDbImpObject& viewport);

// A real number: its group, and its place in the MVIEW list, counted in groups; 0 when it has none there.
struct viewport_field {
    int code;
    std::size_t in_list = 0;
};

double viewport_real(const dxf::group_list& groups, const viewport_field& field, double missing);
// Sets it in the form that the viewport's drawing has.
void set_viewport_real(AcDbImpObject& viewport, const viewport_field& field, double value);

// Whether a viewport shows its view, in the layout that is current.
bool viewport_is_on(const dxf::group_list& groups);

// The layers that are frozen in a viewport, without those that the drawing has no record of.
std::vector<dxf::record_id> frozen_layers(const AcDbImpObject& viewport);
// Freezes a layer of the viewport's drawing, which must not be frozen there yet, and thaws one.
void freeze_in_viewport(AcDbImpObject& viewport, dxf::record_id layer);
void thaw_in_viewport(AcDbImpObject& viewport, dxf::record_id layer);
// Gives a viewport that has just joined a sheet its number, and freezes what is frozen in new viewports.
void begin_viewport(AcDbImpObject& viewport);
// Thaws all, those too that the drawing has no record of.
void thaw_all_in_viewport(AcDbImpObject& viewport);

} // namespace db
