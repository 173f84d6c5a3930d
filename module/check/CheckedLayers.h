// The layers of the current drawing as the standard sees them, at the moment when it is made.
#pragma once

#include "afx.h"
#include "dbid.h"
#include "module/standard/PipeStandard.h"

#include <unordered_map>
#include <vector>

struct CheckedLayer {
    AcDbObjectId m_id;
    CString m_name;
    bool m_isOwn = true;                   // not of an external reference
    const LayerNode* m_standard = nullptr; // of that name, without case
    CString m_system;                      // whose layer it is; empty for a layer of none
    bool m_isPipeLayer = false;            // where pipes, risers and bends go
};

class CCheckedLayers {
public:
    CCheckedLayers();

    const std::vector<CheckedLayer>& All() const { return m_layers; }
    // What a drawing says is on a layer that it lacks has an empty one.
    const CheckedLayer& Find(AcDbObjectId layer) const;

private:
    std::vector<CheckedLayer> m_layers; // in the order of the table
    std::unordered_map<Adesk::LongPtr, std::size_t> m_places;
};
