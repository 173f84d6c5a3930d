// What layers show, as the drawing has it now and as a layer state keeps it, to be compared.
#pragma once

#include "afx.h"
#include "dbcolor.h"
#include "dbid.h"

#include <map>
#include <vector>

struct LayerLook {
    // As states write them in one number.
    enum Flag { Off = 1, Frozen = 2, Locked = 4, Plotted = 8, FrozenInNew = 16, FrozenHere = 32 };

    AcDbObjectId m_layer; // null: a state knew it, and nothing is left of it
    CString m_name;       // also of a layer that was erased since the drawing was opened
    bool m_isGone = false;
    int m_flags = 0;
    AcCmColor m_color;
    int m_lineWeight = 0;
    AcDbObjectId m_linetype;
    int m_transparency = 0; // as files write it
};

struct LayerLooks {
    int m_mask = 0; // of AcDbLayerStateManager
    bool m_hasViewport = false;
    std::vector<LayerLook> m_looks; // in the order of the layer table, or of the state
};

// The looks by their layers, those that are gone left out. They lie in `looks`.
std::map<AcDbObjectId, const LayerLook*> GetByLayer(const LayerLooks& looks);

// What all layers show; `viewport` is that of a sheet, in which layers may be frozen too, or null.
LayerLooks GetDrawingLooks(AcDbObjectId viewport);
// What a state keeps. False when the drawing has no such state.
bool GetStateLooks(const CString& name, LayerLooks& looks);

// What of a layer differs, as far as the mask goes: "开→关，颜色 7→红". Empty when it is the same.
CString GetDifference(const LayerLook& before, const LayerLook& after, int mask);
