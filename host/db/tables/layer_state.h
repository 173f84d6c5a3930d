// A layer state as a drawing keeps it: an Xrecord in the dictionary ACAD_LAYERSTATES, which the extension
// dictionary of the layer table holds.
#pragma once

#include "dbmain.h"
#include "host/db/tables/layer_look.h"

#include <string>
#include <vector>

namespace db {

struct layer_state {
    int mask = 0; // of AcDbLayerStateManager
    std::wstring description;
    bool of_viewport = false;   // it says what is frozen in a viewport
    std::wstring current_layer; // when it was saved
    std::vector<layer_look> looks;
};

// A true colour as states write it: one number with the method in its highest byte. False for a number that
// is none.
int packed_true_color(const AcCmColor& color);
bool unpack_true_color(int number, AcCmColor& color);

// The dictionary of states; null when there is none and it is not to be made, or can not be.
AcDbObjectId layer_states_dictionary(AcDbImpDatabase& drawing, bool makes);

// Puts a state into the drawing, in the place of one of that name. eNotApplicable where there can be none.
Acad::ErrorStatus write_layer_state(AcDbImpDatabase& drawing, const std::wstring& name,
                                    const layer_state& state);
// eKeyNotFound. Layers that are gone are left out.
Acad::ErrorStatus read_layer_state(AcDbImpDatabase& drawing, const std::wstring& name, layer_state& state);

} // namespace db
