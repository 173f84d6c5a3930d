#include "module/standard/OtherLayerNode.h"

OtherLayerNode::OtherLayerNode(LPCTSTR layerType) : LayerSet(&LayerNode::m_layerKey), m_layerType(layerType) {
}

const LayerNode* OtherLayerNode::FindLayerNode(LPCTSTR layerType, LPCTSTR layerKey, bool includeMapped,
                                               bool withCase) const {
    if (!IsLayerType(layerType) || (withCase && m_layerType != layerType))
        return nullptr;
    if (!withCase)
        return FindLayerNode(layerKey, includeMapped);
    const CString wanted(layerKey);
    const auto found = LayerIndex().find(wanted);
    return found != LayerIndex().end() && (includeMapped || !IsMapped(wanted)) ? found->second.get()
                                                                               : nullptr;
}

void OtherLayerNode::GetAllLayerName(LPCTSTR layerType, std::vector<CString>& names) const {
    if (IsLayerType(layerType))
        GetAllLayerName(names);
}

void OtherLayerNode::GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set) const {
    GatherAttached(attachName, set.m_nonPipeSystemLayers);
}

bool OtherLayerNode::RenameLayerName(LPCTSTR layerType, LPCTSTR oldName, LPCTSTR newName) {
    if (!IsLayerType(layerType))
        return false;
    const CString old(oldName);
    bool renamed = false;
    for (auto& layer : Layers())
        if (IsSameName(layer->m_layerName, old)) {
            layer->m_layerName = newName;
            renamed = true;
        }
    return renamed;
}

void OtherLayerNode::CopyFrom(const OtherLayerNode* other) {
    if (other == nullptr)
        return;
    m_layerType = other->m_layerType;
    CopyLayersFrom(*other);
}
