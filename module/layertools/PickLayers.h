// Picking entities for the sake of their layers.
#pragma once

#include "afx.h"
#include "dbid.h"

#include <string>
#include <unordered_set>
#include <vector>

// Names of layers in the order in which they came, each once; names that differ in case only are one.
class CLayerNames {
public:
    void Add(const CString& name);
    bool Holds(const CString& name) const;

    auto begin() const { return m_names.begin(); }
    auto end() const { return m_names.end(); }

private:
    std::vector<CString> m_names;
    std::unordered_set<std::wstring> m_folded;
};

// How a pick ended.
enum class PickEnd {
    Picked,    // with at least one entity
    Enter,     // with Enter and no entity
    Cancelled, // with Escape, or with nothing that can be used
};

// Asks for any number of entities. `layers` becomes the names of their layers in the order of picking.
PickEnd PickLayers(const wchar_t* prompt, CLayerNames& layers);

// Asks for one entity. `layer` becomes the name of its layer; false, and nothing changed, when none was
// picked.
bool PickLayer(const wchar_t* prompt, CString& layer);

// All entities of the drawing on a layer, whatever they are: of all spaces, visible or not.
std::vector<AcDbObjectId> GetEntitiesOfLayer(const CString& layer);
