// A set of layers that belong together for some purpose, gathered from all layers that name it.
#pragma once

#include "module/standard/LayerNode.h"
#include "module/standard/Names.h"

struct LayerAttachNode {
    enum LayerTypeEnum {
        kPipeSystemLayer,
        kNonPipeSystemLayer,
    };
    // Of one system: layer type and layer name, in the order of the standard.
    using SystemLayers = std::map<CString, std::vector<CString>, KeyOrder>;

    CString m_name;
    std::vector<LayerNode> m_pipeSystemLayers;
    std::vector<LayerNode> m_nonPipeSystemLayers;

    // Add a copy.
    ZEF_PIPESYSTEM_PORT void AddPipeSystemLayerNode(const LayerNode& layer);
    ZEF_PIPESYSTEM_PORT void AddNonPipeSystemLayerNode(const LayerNode& layer);

    // Appends the layer keys in their order.
    ZEF_PIPESYSTEM_PORT void NonPipeSystemLayerKeys(std::vector<CString>& keys) const;
    // The name of the first layer of exactly that key, empty when there is none.
    ZEF_PIPESYSTEM_PORT CString NonPipeSystemLayerName(LPCTSTR layerKey) const;

    // Adds, by system, the layer types in their order.
    ZEF_PIPESYSTEM_PORT void PipeSystemLayerKeys(SystemLayers& types) const;
    // The name of the first layer of exactly that system and type, empty when there is none.
    ZEF_PIPESYSTEM_PORT CString PipeSystemLayerName(LPCTSTR systemName, LPCTSTR layerType) const;

    // The names of the layers of one kind, in their order: appended, or joined with the separator between.
    ZEF_PIPESYSTEM_PORT void LayerNames(LayerTypeEnum kind, std::vector<CString>& names) const;
    ZEF_PIPESYSTEM_PORT void LayerNames(LayerTypeEnum kind, CString& names, LPCTSTR separator) const;

    // Make the set's layers that the working drawing lacks: all of one kind, that of exactly a system and a
    // type, or that of exactly a key; of one layer the layer, null when there is none.
    ZEF_PIPESYSTEM_PORT void InitLayer(LayerTypeEnum kind) const;
    ZEF_PIPESYSTEM_PORT AcDbObjectId InitLayer(LPCTSTR systemName, LPCTSTR layerType) const;
    ZEF_PIPESYSTEM_PORT AcDbObjectId InitLayer(LPCTSTR layerKey) const;

private:
    const LayerNode* FindPipeSystemLayer(LPCTSTR systemName, LPCTSTR layerType) const;
    const LayerNode* FindNonPipeSystemLayer(LPCTSTR layerKey) const;
};
