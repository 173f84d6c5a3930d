#include "module/standard/PipeNode.h"

PipeNode::PipeNode(LPCTSTR name) : LayerSet(&LayerNode::m_layerType) {
    m_initialName = name;
    m_name = name;
}

void PipeNode::GetLayerTypes(std::set<CString, KeyOrder>& types) const {
    for (const auto& [type, layer] : LayerIndex())
        types.insert(type);
}

void PipeNode::GetPipeInfo(PipeInfoNode& info, bool includeMapped) const {
    info.m_basic = *this;
    info.m_layers.clear();
    for (const auto& [type, layer] : LayerIndex())
        if (includeMapped || !IsMapped(type))
            info.m_layers[type] = *layer;
}

void PipeNode::GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set) const {
    GatherAttached(attachName, set.m_pipeSystemLayers);
}

void PipeNode::Rename(LPCTSTR newName, bool layersWithoutCase) {
    for (auto& layer : Layers())
        if (layer->m_layerKey == m_name || (layersWithoutCase && IsSameName(layer->m_layerKey, m_name)))
            layer->m_layerKey = newName;
    m_name = newName;
}

PipeNode* PipeNode::Clone() const {
    auto copy = std::make_unique<PipeNode>();
    copy->CopyFrom(this);
    return copy.release();
}

void PipeNode::CopyFrom(const PipeNode* other) {
    if (other == nullptr)
        return;
    static_cast<PipeBasicNode&>(*this) = *other;
    CopyLayersFrom(*other);
}
