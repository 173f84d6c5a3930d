// A whole standard: what one standard file holds.
#pragma once

#include "module/standard/OtherLayerNode.h"
#include "module/standard/PipeGroupNode.h"
#include "module/standard/TextStyleNode.h"

// How a layer of a type is named in a new system: prefix, system name, suffix. The rules are the standard's
// list of layer types, too.
struct LayerNameRule {
    CString m_layerType;
    CString m_prefix;
    CString m_suffix;

    friend bool operator==(const LayerNameRule&, const LayerNameRule&) = default;
};

// The layer types that a new system of a kind begins with.
struct CreateSystemRule {
    CString m_name;
    std::vector<CString> m_layerTypes;

    friend bool operator==(const CreateSystemRule&, const CreateSystemRule&) = default;
};

struct ObjectColor {
    CString m_name;
    AcCmColor m_color;

    friend bool operator==(const ObjectColor&, const ObjectColor&) = default;
};

// All lists are in the order of the file.
struct PipeStandard {
    std::vector<Owned<PipeGroupNode>> m_groups;
    std::vector<Owned<OtherLayerNode>> m_otherLayers;
    std::vector<LayerNameRule> m_nameRules;
    std::vector<CreateSystemRule> m_createRules;
    std::vector<TextStyleNode> m_textStyles;
    std::vector<ObjectColor> m_objectColors;
};

// Does something to all sets of layers: those of the systems, then the groups of other layers.
template<class Standard, class Act>
void ForEachLayerSet(Standard& standard, Act act) {
    for (auto& group : standard.m_groups)
        for (auto& system : group->Systems())
            act(*system);
    for (auto& group : standard.m_otherLayers)
        act(*group);
}
