// Layers of the current drawing and their states: on or off, locked, frozen.
#pragma once

#include "afx.h"
#include "dbid.h"

#include <vector>

enum class LayerState { Off, Locked, Frozen };

enum class LayerChange {
    Done,      // the layer has the state now
    WasSo,     // it had it already
    NotOpened, // there is no such layer, or it cannot be opened
    Refused,   // it does not take the state
};

// All layers, those of external references too, in the order of the layer table.
std::vector<AcDbObjectId> GetAllLayerIds();

// A layer's name; empty when it cannot be opened.
CString GetLayerName(AcDbObjectId layer);

// Gives a state to a layer, or takes it away. A layer that needs no change is not opened for writing.
LayerChange SetLayerState(AcDbObjectId layer, LayerState state, bool wanted);
// The same by the layer's name.
LayerChange SetLayerState(const wchar_t* layerName, LayerState state, bool wanted);
