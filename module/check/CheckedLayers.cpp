#include "module/check/CheckedLayers.h"

#include "module/layertools/LayerStates.h"
#include "module/standard/StandardManager.h"

CCheckedLayers::CCheckedLayers() {
    const CStandardManager* const manager = CStandardManager::Loaded();
    for (const AcDbObjectId id : GetAllLayerIds()) {
        CheckedLayer layer;
        layer.m_id = id;
        layer.m_name = GetLayerName(id);
        layer.m_isOwn = layer.m_name.Find(L'|') < 0;
        if (manager != nullptr && layer.m_isOwn) {
            const StandardIndex& index = manager->Index();
            layer.m_standard = index.FindLayerByName(layer.m_name).record;
            if (layer.m_standard == nullptr)
                layer.m_standard = index.FindOtherLayerByName(layer.m_name);
            if (const PipeNode* const system = index.FindSystemByLayerName(layer.m_name))
                layer.m_system = system->m_name;
            int type = 0;
            layer.m_isPipeLayer = index.FindPipeLayer(layer.m_name, type) != nullptr;
        }
        m_places.emplace(id.asOldId(), m_layers.size());
        m_layers.push_back(std::move(layer));
    }
}

const CheckedLayer& CCheckedLayers::Find(AcDbObjectId layer) const {
    static const CheckedLayer none;
    const auto found = m_places.find(layer.asOldId());
    return found != m_places.end() ? m_layers[found->second] : none;
}
