// Layer states that a drawing keeps by name, as the option stAte of -LAYER saves and restores them.
#pragma once

#include "dbmain.h"

#include <string>
#include <vector>

namespace ed {

std::vector<std::wstring> layer_state_names(AcDbDatabase& drawing);
// Keeps what all layers show now under a name, in the place of what was kept so. eNotApplicable in drawings
// of R12 and before.
Acad::ErrorStatus save_layer_state(AcDbDatabase& drawing, const std::wstring& name);
// Gives the layers what was kept; those that are new since then stay. eKeyNotFound.
Acad::ErrorStatus restore_layer_state(AcDbDatabase& drawing, const std::wstring& name);
Acad::ErrorStatus delete_layer_state(AcDbDatabase& drawing, const std::wstring& name);

} // namespace ed
