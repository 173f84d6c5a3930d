// What the buttons of the layer control bar do to layers and entities of the current drawing, which is locked
// for writing.
#pragma once

#include "module/layertools/BarReading.h"

#include "afx.h"

// Gives layers a state or takes it away. Layers that cannot be frozen or thawed are told of.
void SetLayers(const std::vector<AcDbObjectId>& layers, LayerState state, bool wanted);

// Shows or hides the entities of a toggle, and remembers in the drawing which ones it hid. What lies on
// locked layers is counted. False, with a word to the user, when the drawing cannot keep the memory.
bool ShowFamily(const CLayerFamilies& families, BarToggle toggle, bool show);

// The same for the entities that are marked for a system, under the name of its row. False when there are
// none.
bool ShowMarked(const BarSystem& system, bool show);
