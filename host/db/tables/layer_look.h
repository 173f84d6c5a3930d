// What a layer shows: whether it is on, thawed, free, and how it looks; for states of all layers that are
// kept and given back.
#pragma once

#include "dbsymtb.h"
#include "host/dxf/record_table.h"

#include <string_view>

class AcDbImpDatabase;

namespace db {

// As layer states write them in one number.
enum layer_flag {
    layer_off = 1,
    layer_frozen = 2,
    layer_locked = 4,
    layer_plotted = 8,
    layer_frozen_in_new = 16,
    layer_frozen_in_viewport = 32,
};

struct layer_look {
    AcDbObjectId layer;
    int flags = 0;
    AcCmColor color;
    AcDb::LineWeight weight = AcDb::kLnWtByLwDefault;
    AcDbObjectId linetype;
    int transparency = 0; // as files write it: nought is none
};

// What a layer shows, as its record stands or as another text of it says.
layer_look look_of(AcDbImpDatabase& drawing, dxf::record_id layer);
layer_look look_of(AcDbImpDatabase& drawing, dxf::record_id layer, std::string_view text);

// In what two looks differ, as a mask of AcDbLayerStateManager. Of frozen in a viewport nothing is said.
int difference(const layer_look& a, const layer_look& b);

// Gives a layer what the mask names of a look. The current layer stays thawed. eOk also when there was
// nothing to do.
Acad::ErrorStatus give_look(AcDbImpDatabase& drawing, const layer_look& look, int mask);

} // namespace db
