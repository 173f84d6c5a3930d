#include "module/standard/LayerAttachNode.h"

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

CString LayerAttachNode::NonPipeSystemLayerName(LPCTSTR layerKey) const {
    for (const LayerNode& layer : m_nonPipeSystemLayers)
        if (layer.m_layerKey == layerKey)
            return layer.m_layerName;
    return {};
}

void LayerAttachNode::PipeSystemLayerKeys(SystemLayers& types) const {
    for (const LayerNode& layer : m_pipeSystemLayers)
        types[layer.m_layerKey].push_back(layer.m_layerType);
}

CString LayerAttachNode::PipeSystemLayerName(LPCTSTR systemName, LPCTSTR layerType) const {
    for (const LayerNode& layer : m_pipeSystemLayers)
        if (layer.m_layerKey == systemName && layer.m_layerType == layerType)
            return layer.m_layerName;
    return {};
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
