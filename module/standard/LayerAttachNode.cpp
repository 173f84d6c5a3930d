#include "module/standard/LayerAttachNode.h"

#include <algorithm>

void LayerAttachNode::AddPipeSystemLayerNode(const LayerNode& layer) {
    m_pipeSystemLayers.push_back(layer);
}

void LayerAttachNode::AddNonPipeSystemLayerNode(const LayerNode& layer) {
    m_nonPipeSystemLayers.push_back(layer);
}

void LayerAttachNode::NonPipeSystemLayerKeys(std::vector<CString>& keys) const {
    for (const LayerNode& layer : m_nonPipeSystemLayers)
        keys.push_back(layer.m_layerKey);
}

const LayerNode* LayerAttachNode::FindNonPipeSystemLayer(LPCTSTR layerKey) const {
    const auto found = std::ranges::find(m_nonPipeSystemLayers, CString(layerKey), &LayerNode::m_layerKey);
    return found != m_nonPipeSystemLayers.end() ? &*found : nullptr;
}

CString LayerAttachNode::NonPipeSystemLayerName(LPCTSTR layerKey) const {
    const LayerNode* const layer = FindNonPipeSystemLayer(layerKey);
    return layer != nullptr ? layer->m_layerName : CString();
}

void LayerAttachNode::PipeSystemLayerKeys(SystemLayers& types) const {
    for (const LayerNode& layer : m_pipeSystemLayers)
        types[layer.m_layerKey].push_back(layer.m_layerType);
}

const LayerNode* LayerAttachNode::FindPipeSystemLayer(LPCTSTR systemName, LPCTSTR layerType) const {
    const auto found = std::ranges::find_if(m_pipeSystemLayers, [&](const LayerNode& layer) {
        return layer.m_layerKey == systemName && layer.m_layerType == layerType;
    });
    return found != m_pipeSystemLayers.end() ? &*found : nullptr;
}

CString LayerAttachNode::PipeSystemLayerName(LPCTSTR systemName, LPCTSTR layerType) const {
    const LayerNode* const layer = FindPipeSystemLayer(systemName, layerType);
    return layer != nullptr ? layer->m_layerName : CString();
}

void LayerAttachNode::LayerNames(LayerTypeEnum kind, std::vector<CString>& names) const {
    for (const LayerNode& layer : kind == kPipeSystemLayer ? m_pipeSystemLayers : m_nonPipeSystemLayers)
        names.push_back(layer.m_layerName);
}

void LayerAttachNode::LayerNames(LayerTypeEnum kind, CString& names, LPCTSTR separator) const {
    std::vector<CString> all;
    LayerNames(kind, all);
    names = JoinNames(all, separator);
}
