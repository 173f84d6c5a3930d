// What records of the standard make in the working drawing: each a layer by LayerNode::CreateLayer.
#include "module/standard/PipeGroupNode.h"

namespace {

AcDbObjectId Made(const LayerNode* layer, bool* created = nullptr) {
    return layer != nullptr ? layer->CreateLayer(created) : AcDbObjectId(AcDbObjectId::kNull);
}

} // namespace

AcDbObjectId PipeNode::CreateLayer(LPCTSTR layerType, bool& created) const {
    return Made(FindLayerNode(layerType, true), &created);
}

void PipeNode::InitLayers(LayerIds& ids) const {
    for (const auto& layer : Layers())
        if (const AcDbObjectId id = layer->CreateLayer(); !id.isNull())
            ids[layer->m_layerName] = id;
}

AcDbObjectId PipeGroupNode::CreateLayer(LPCTSTR layerName) const {
    const PipeNode* const system = FindPipeSystemByLayerName(layerName);
    return system != nullptr ? Made(system->FindLayerNodeByLayerName(layerName)) : Made(nullptr);
}

void PipeGroupNode::InitLayers(PipeNode::LayerIds& ids) const {
    for (const auto& system : m_systems)
        system->InitLayers(ids);
}

void LayerAttachNode::InitLayer(LayerTypeEnum kind) const {
    for (const LayerNode& layer : kind == kPipeSystemLayer ? m_pipeSystemLayers : m_nonPipeSystemLayers)
        layer.CreateLayer();
}

AcDbObjectId LayerAttachNode::InitLayer(LPCTSTR systemName, LPCTSTR layerType) const {
    return Made(FindPipeSystemLayer(systemName, layerType));
}

AcDbObjectId LayerAttachNode::InitLayer(LPCTSTR layerKey) const {
    return Made(FindNonPipeSystemLayer(layerKey));
}
