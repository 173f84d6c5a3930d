// Picking entities for the sake of their layers.
#pragma once

#include "afx.h"
#include "dbid.h"

#include <vector>

// How a pick ended.
enum class PickEnd {
    Picked,    // with at least one entity
    Enter,     // with Enter and no entity
    Cancelled, // with Escape, or with nothing that can be used
};

// Asks for any number of entities. `layers` becomes the names of their layers, each once, in the order of
// picking; names that differ in case only are one.
PickEnd PickLayers(const wchar_t* prompt, std::vector<CString>& layers);

// Asks for one entity. `layer` becomes the name of its layer; false, and nothing changed, when none was
// picked.
bool PickLayer(const wchar_t* prompt, CString& layer);

// All entities of the drawing on a layer, whatever they are: of all spaces, visible or not.
std::vector<AcDbObjectId> GetEntitiesOfLayer(const CString& layer);

// Whether the name is among those, case ignored.
bool HoldsLayer(const std::vector<CString>& layers, const CString& layer);
