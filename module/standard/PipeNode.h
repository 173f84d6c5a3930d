// One pipe system of the standard: what it is like, and its layers by layer type.
#pragma once

#include "module/standard/LayerSet.h"

struct PipeBasicNode {
    CString m_initialName;  // as first defined; stays when the system is renamed
    CString m_name;         // one of its kind in the whole standard
    double m_lineWidth = 0; // drawing units
    CString m_dim;          // how it is labelled
    CString m_material;     // indoors
    CString m_outdoorMaterial;
    int m_vPipeType = 0;          // the symbol of its risers
    double m_vPipeRadius = 0;     // of that symbol
    double m_vPipeRadius1 = 0.5;  // of its large circle
    double m_vPipeRadius2 = 0.25; // of its small one
    CString m_waterFlowStatus;
    CString m_remark;
    bool m_canDelete = false;
    bool m_canRename = false;
    int m_status = 0;

    friend bool operator==(const PipeBasicNode&, const PipeBasicNode&) = default;
};

// A flat copy of a system for callers.
struct PipeInfoNode {
    PipeBasicNode m_basic;
    std::map<CString, LayerNode, KeyOrder> m_layers; // by layer type
};

struct ZEF_PIPESYSTEM_PORT PipeNode : PipeBasicNode, LayerSet {
    // Both names are the given one.
    explicit PipeNode(LPCTSTR name = L"");

    // Adds the layer types, aliases too.
    void GetLayerTypes(std::set<CString, KeyOrder>& types) const;
    // Fills the copy; aliases when they are asked for.
    void GetPipeInfo(PipeInfoNode& info, bool includeMapped) const;
    // Adds copies of the layers that belong to the set of that name.
    void GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set) const;

    // The working drawing's layers: that of a type without case, aliases too (null when there is none), or
    // all of them, added by name. One that is missing is made, one that is there stays as it is.
    using LayerIds = std::map<CString, AcDbObjectId, NoCaseOrder>;
    AcDbObjectId CreateLayer(LPCTSTR layerType, bool& created) const;
    void InitLayers(LayerIds& ids) const;

    // Renames it: the initial name stays, and layers of the old one follow.
    void Rename(LPCTSTR newName, bool layersWithoutCase);

    // A copy of its own, layers too; the caller's.
    PipeNode* Clone() const;
    void CopyFrom(const PipeNode* other);
};
