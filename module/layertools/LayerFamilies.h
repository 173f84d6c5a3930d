// Which family, and which pipe system, the layers and entities of the current drawing belong to.
//
// An entity is what its own mark says (see Marks.h); without one, water and drainage when it is of the
// add-on's own classes; else what its layer is. A layer is what its mark says; without one, water and
// drainage when the standard has it as a layer of a pipe system; else what the table "userlayer.dbf" says.
#pragma once

#include "module/layertools/Marks.h"

#include <cstddef>
#include <map>
#include <unordered_map>

class AcDbEntity;

enum class LayerFamily {
    Other,
    Architecture, // 建筑
    Drainage,     // 给排水
};

// A picture of the drawing at the moment when it is made: after a change it is made anew. To make it costs a
// look at every layer; nothing is asked of entities before a method says so.
class ZEF_PIPESYSTEM_PORT CLayerFamilies {
public:
    CLayerFamilies();

    // ---- layers

    LayerFamily GetFamily(AcDbObjectId layer) const;
    // The layers of a family, in the order of the layer table.
    std::vector<AcDbObjectId> GetLayers(LayerFamily family) const;

    // The systems of a layer: the one that it is marked for, then those of the standard. Most have one or
    // none.
    const std::vector<CString>& GetSystems(AcDbObjectId layer) const;
    // Whether it is a layer of that system, or one of any.
    bool IsLayerOf(AcDbObjectId layer, const CString& system) const;
    bool IsSystemLayer(AcDbObjectId layer) const { return !GetSystems(layer).empty(); }
    // Whether the standard has it as a layer of a pipe system; such layers are not marked.
    bool IsStandardLayer(AcDbObjectId layer) const;
    // The drawing's layers of a system, marked ones too, in the order of the layer table.
    std::vector<AcDbObjectId> GetSystemLayers(const CString& system) const;

    // ---- entities: each call looks through the drawing, reads extended data only of those that are marked,
    // and makes what it finds the previous selection

    LayerFamily GetFamily(const AcDbEntity& entity) const;
    // Those of a family, in model space and on sheets, seen or not.
    std::vector<AcDbObjectId> GetEntities(LayerFamily family) const;

private:
    struct Layer {
        AcDbObjectId m_id;
        CString m_name;
        LayerFamily m_family = LayerFamily::Other;
        bool m_isStandard = false;
        std::vector<CString> m_systems;
    };

    const Layer* Find(AcDbObjectId layer) const;
    std::vector<AcDbObjectId> FindUnmarked(LayerFamily family) const;

    std::vector<Layer> m_layers; // in the order of the table
    std::map<AcDbObjectId, std::size_t> m_places;
};
