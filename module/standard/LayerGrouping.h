// Sorts layers of the current drawing into layer filters, one for each group of pipe systems, of the group's
// name: that whose systems have a layer of that name, else that of a system which a name rule makes the name
// from. Layers of no system stay alone.
//
// The filters are those that the editor's layer manager shows as groups: xrecords in the dictionary
// "ACLYDICTIONARY" of the layer table's own dictionary, 1 "AcLyLayerGroup", 90 1, 300 the name and 330 each
// of the layers.
#pragma once

#include "afx.h"
#include "dbsymtb.h"
#include "module/standard/PipeStandard.h"

#include <map>
#include <vector>

class CLayerGrouping {
public:
    // Takes note of a layer.
    void Add(const AcDbLayerTableRecord& layer);
    // Whether none of them has a group.
    bool IsEmpty() const { return m_layers.empty(); }
    // Brings all that were noted into the filters of the working drawing. One that has them already is not
    // changed; where nothing can be written, as in files of R12, nothing is.
    void Write();

private:
    std::map<CString, std::vector<AcDbObjectId>, KeyOrder> m_layers; // by the name of the group
};
