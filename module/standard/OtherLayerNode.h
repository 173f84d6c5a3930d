// A group of layers of the standard that belong to no pipe system, by layer key.
#pragma once

#include "module/standard/LayerSet.h"

struct ZEF_PIPESYSTEM_PORT OtherLayerNode : LayerSet {
    CString m_layerType; // the group's name, which is the layer type of its layers

    explicit OtherLayerNode(LPCTSTR layerType = L"");

    const CString& GetLayerType() const { return m_layerType; }
    // Without case.
    bool IsLayerType(LPCTSTR layerType) const { return IsSameName(m_layerType, CString(layerType)); }

    using LayerSet::FindLayerNode;
    // The layer of a key in a group of that type, both told apart by case or not; null in another group.
    const LayerNode* FindLayerNode(LPCTSTR layerType, LPCTSTR layerKey, bool includeMapped,
                                   bool withCase) const;
    LayerNode* FindLayerNode(LPCTSTR layerType, LPCTSTR layerKey, bool includeMapped, bool withCase) {
        return Changeable(std::as_const(*this).FindLayerNode(layerType, layerKey, includeMapped, withCase));
    }

    using LayerSet::GetAllLayerName;
    // All of them in a group of that type without case, none in another one.
    void GetAllLayerName(LPCTSTR layerType, std::vector<CString>& names) const;

    void GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set) const;
    // Renames the layers of that type whose name is the old one without case; whether there was one.
    bool RenameLayerName(LPCTSTR layerType, LPCTSTR oldName, LPCTSTR newName);

    void CopyFrom(const OtherLayerNode* other);
};
