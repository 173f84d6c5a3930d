#include "module/standard/LayerSet.h"

#include <algorithm>

void LayerSet::AddLayerNode(LayerNode* layer) {
    if (layer == nullptr)
        return;
    m_layers.emplace_back(std::unique_ptr<LayerNode>(layer));
    m_index[layer->*m_key] = layer;
    m_mapped.erase(layer->*m_key);
}

void LayerSet::DelLayerNode(const LayerNode* layer) {
    const auto found = std::ranges::find_if(m_layers, [&](const auto& one) { return one.get() == layer; });
    if (found == m_layers.end())
        return;
    std::erase_if(m_mapped, [&](const CString& key) { return m_index.at(key).get() == layer; });
    std::erase_if(m_index, [&](const auto& entry) { return entry.second.get() == layer; });
    const Owned<LayerNode> gone = std::move(*found);
    m_layers.erase(found);
    for (auto& other : m_layers) // one of the same key that stood in its shadow
        if (other.get()->*m_key == gone.get()->*m_key)
            m_index[other.get()->*m_key] = other.get();
}

const LayerNode* LayerSet::FindLayerNode(int index) const {
    return index >= 0 && index < GetLayerNum() ? m_layers[static_cast<std::size_t>(index)].get() : nullptr;
}

const LayerNode* LayerSet::FindLayerNode(LPCTSTR key, bool includeMapped) const {
    const CString wanted(key);
    for (const auto& [one, layer] : m_index)
        if (IsSameName(one, wanted) && (includeMapped || !IsMapped(one)))
            return layer.get();
    return nullptr;
}

const LayerNode* LayerSet::FindLayerNode(LPCTSTR key, LPCTSTR layerName, bool includeMapped) const {
    const CString wanted(key);
    const auto found = m_index.find(wanted);
    if (found == m_index.end() || (!includeMapped && IsMapped(wanted)) ||
        !IsSameName(found->second->m_layerName, CString(layerName)))
        return nullptr;
    return found->second.get();
}

const LayerNode* LayerSet::FindLayerNodeByLayerName(LPCTSTR layerName, bool /*includeMapped*/) const {
    const CString wanted(layerName);
    for (const auto& layer : m_layers)
        if (IsSameName(layer->m_layerName, wanted))
            return layer.get();
    return nullptr;
}

const LayerNode* LayerSet::FindLayerNodeByKey(LPCTSTR key, LPCTSTR layerName) const {
    const CString wanted(key);
    const CString name(layerName);
    const auto fits = [&](const CString& one, const LayerNode& layer) {
        return IsSameName(one, wanted) && (layerName == nullptr || IsSameName(layer.m_layerName, name));
    };
    for (const auto& layer : m_layers)
        if (fits(layer.get()->*m_key, *layer))
            return layer.get();
    for (const CString& alias : m_mapped)
        if (const LayerNode* const layer = m_index.at(alias).get(); fits(alias, *layer))
            return layer;
    return nullptr;
}

void LayerSet::GetAllLayer(LayersByName& layers) const {
    for (const auto& layer : m_layers)
        layers.try_emplace(layer->m_layerName, layer.get());
}

void LayerSet::GetAllLayerName(std::vector<CString>& names) const {
    for (const auto& layer : m_layers)
        names.push_back(layer->m_layerName);
}

void LayerSet::GetAllLayerName(LPCTSTR key, std::vector<CString>& names) const {
    const CString wanted(key);
    for (const auto& layer : m_layers)
        if (IsSameName(layer.get()->*m_key, wanted))
            names.push_back(layer->m_layerName);
    for (const CString& alias : m_mapped)
        if (IsSameName(alias, wanted))
            names.push_back(m_index.at(alias)->m_layerName);
}

int LayerSet::CountLayer(LPCTSTR layerName) const {
    const CString wanted(layerName);
    return static_cast<int>(std::ranges::count_if(
        m_layers, [&](const auto& layer) { return IsSameName(layer->m_layerName, wanted); }));
}

bool LayerSet::UpdateLayer(LPCTSTR key, const LayerNode& value) {
    const LayerNode* layer = FindExactly(key);
    if (layer == nullptr)
        layer = FindLayerNode(key, false);
    if (layer != nullptr)
        Replace(*Changeable(layer), value);
    return layer != nullptr;
}

// Not one that is shared through an alias.
const LayerNode* LayerSet::FindExactly(const CString& key) const {
    const auto found = m_index.find(key);
    return found != m_index.end() && !IsMapped(key) ? found->second.get() : nullptr;
}

void LayerSet::Replace(LayerNode& layer, const LayerNode& value) const {
    CString kept = layer.*m_key;
    layer = value;
    layer.*m_key = std::move(kept);
}

void LayerSet::UpdateLayerTo(LayerSet* target) const {
    if (target == nullptr || target == this)
        return;
    for (const auto& layer : m_layers)
        if (const LayerNode* const same = target->FindExactly(layer.get()->*m_key))
            target->Replace(*Changeable(same), *layer);
        else
            target->AddLayerNode(std::make_unique<LayerNode>(*layer).release());
}

void LayerSet::AddMapping(LPCTSTR source, LPCTSTR destination, bool isDefault) {
    m_map[source] = destination;
    if (isDefault)
        m_defaultMap[source] = destination;
}

bool LayerSet::RemoveMapping(LPCTSTR source) {
    const CString key(source);
    if (m_map.erase(key) == 0)
        return false;
    if (m_mapped.erase(key) != 0)
        m_index.erase(key);
    return true;
}

bool LayerSet::IsDefaultMapping(LPCTSTR key) const {
    const CString wanted(key);
    const auto own = m_map.find(wanted);
    const auto builtIn = m_defaultMap.find(wanted);
    return own != m_map.end() && builtIn != m_defaultMap.end() && own->second == builtIn->second;
}

void LayerSet::UpdateLayerTypeMap() {
    for (const auto& [source, destination] : m_map) {
        const auto found = m_index.find(destination);
        if (found != m_index.end() && m_index.try_emplace(source, found->second.get()).second)
            m_mapped.insert(source);
    }
}

void LayerSet::UpdateLayerTypeMap(const LayerSet* from) {
    if (from == nullptr)
        return;
    m_map = from->m_map;
    UpdateLayerTypeMap();
}

void LayerSet::CopyLayersFrom(const LayerSet& other) {
    if (this == &other)
        return;
    m_index.clear();
    m_layers.clear();
    std::map<const LayerNode*, LayerNode*> copies;
    for (const auto& layer : other.m_layers) {
        m_layers.push_back(std::make_unique<LayerNode>(*layer));
        copies[layer.get()] = m_layers.back().get();
    }
    for (const auto& [key, layer] : other.m_index)
        m_index[key] = copies.at(layer.get());
    m_map = other.m_map;
    m_defaultMap = other.m_defaultMap;
    m_mapped = other.m_mapped;
}

void LayerSet::GatherAttached(LPCTSTR attachName, std::vector<LayerNode>& layers) const {
    for (const auto& layer : m_layers)
        if (layer->IsContainLayerAttach(attachName))
            layers.push_back(*layer);
}
