#include "module/standard/StandardIndex.h"

#include <array>

namespace {

std::wstring_view TextOf(LPCTSTR text) {
    return text != nullptr ? std::wstring_view(text) : std::wstring_view();
}

template<class Fold>
std::size_t HashOf(std::wstring_view first, std::wstring_view second, const void* scope, Fold fold) {
    std::uint64_t hash = 0x9E3779B97F4A7C15U ^ reinterpret_cast<std::uintptr_t>(scope);
    const auto add = [&](std::uint64_t value) {
        hash = (hash ^ value) * 0xFF51AFD7ED558CCDU;
        hash ^= hash >> 32;
    };
    for (const wchar_t c : first)
        add(static_cast<std::uint64_t>(fold(c)));
    add(0);
    for (const wchar_t c : second)
        add(static_cast<std::uint64_t>(fold(c)));
    return static_cast<std::size_t>(hash);
}

template<class Table, class Key>
auto ValueAt(const Table& table, const Key& key) -> typename Table::mapped_type {
    const auto found = table.find(key);
    return found == table.end() ? typename Table::mapped_type{} : found->second;
}

} // namespace

std::size_t StandardIndex::ExactHash::operator()(const Key& key) const {
    return HashOf(key.first, key.second, key.scope, [](wchar_t c) { return c; });
}

std::size_t StandardIndex::NoCaseHash::operator()(const Key& key) const {
    return HashOf(key.first, key.second, key.scope, [](wchar_t c) { return base::fold_case(c); });
}

bool StandardIndex::Exact::operator()(const Key& a, const Key& b) const {
    return a.scope == b.scope && a.first == b.first && a.second == b.second;
}

bool StandardIndex::NoCase::operator()(const Key& a, const Key& b) const {
    return a.scope == b.scope && IsSameName(a.first, b.first) && IsSameName(a.second, b.second);
}

// ---- making: try_emplace keeps the first

StandardIndex::StandardIndex(const PipeStandard& standard) {
    for (const auto& group : standard.m_groups)
        AddGroup(*group);
    for (const auto& group : standard.m_otherLayers)
        AddOtherLayers(*group);
    for (const TextStyleNode& style : standard.m_textStyles) {
        m_stylesByKey.try_emplace({ViewOf(style.m_key), {}}, &style);
        m_stylesByName.try_emplace({ViewOf(style.m_name), {}}, &style);
    }
}

void StandardIndex::AddGroup(PipeGroupNode& group) {
    m_groups.try_emplace({ViewOf(group.GroupName()), {}}, &group);
    m_groupsNoCase.try_emplace({ViewOf(group.GroupName()), {}}, &group);
    std::array<std::vector<LayerNode*>, std::size(pipeTypes)> pipeLayers;
    for (const auto& owner : group.Systems()) {
        PipeNode* const system = owner.get();
        const std::wstring_view name = ViewOf(system->m_name);
        m_systems.try_emplace({name, {}}, Found<PipeNode>{system, &group});
        m_systemsByInitialName.try_emplace({ViewOf(system->m_initialName), {}}, system);
        // Of the systems of one name in a group only the first is asked for its layers.
        const bool isFirst = m_systemsOfGroups.try_emplace({name, {}, &group}, system).second;
        for (const auto& [type, layer] : system->LayerIndex()) {
            if (isFirst)
                m_layers.try_emplace({name, ViewOf(type)}, layer);
            m_layersByName.try_emplace({ViewOf(layer->m_layerName), {}}, Found<LayerNode>{layer, &group});
        }
        const auto addType = [&](const CString& type, LayerNode* layer) {
            const Key key{ViewOf(type), ViewOf(layer->m_layerName)};
            m_layersByType.try_emplace(key, layer);
            const bool isNew = m_layersByType.try_emplace({key.first, key.second, &group}, layer).second;
            for (std::size_t i = 0; isNew && i < pipeLayers.size(); ++i)
                if (IsSameName(key.first, pipeTypes[i]))
                    pipeLayers[i].push_back(layer);
        };
        for (const auto& layer : system->Layers()) {
            m_systemsByLayerName.try_emplace({ViewOf(layer->m_layerName), {}}, system);
            addType(layer->m_layerType, layer.get());
            for (const CString& set : layer->m_attachments)
                m_attached[{ViewOf(set), {}}].pipeLayers.push_back(layer.get());
        }
        for (const auto& [type, layer] : system->LayerIndex())
            if (system->IsMapped(type))
                addType(type, layer);
    }
    for (std::size_t i = 0; i < pipeLayers.size(); ++i)
        for (LayerNode* const layer : pipeLayers[i]) {
            const std::wstring_view name = ViewOf(layer->m_layerName);
            m_pipeLayers.try_emplace({name, {}}, PipeLayer{layer, static_cast<int>(i)});
            m_pipeLayersByType[{pipeTypes[i], name}].push_back({layer, &group});
        }
}

void StandardIndex::AddOtherLayers(const OtherLayerNode& group) {
    for (const auto& [key, layer] : group.LayerIndex())
        m_otherLayers.try_emplace({ViewOf(key), ViewOf(group.m_layerType)}, layer);
    for (const auto& layer : group.Layers()) {
        m_otherLayersByName.try_emplace({ViewOf(layer->m_layerName), {}}, layer.get());
        for (const CString& set : layer->m_attachments)
            m_attached[{ViewOf(set), {}}].otherLayers.push_back(layer.get());
    }
}

// ---- asking

LayerNode* StandardIndex::FindLayer(LPCTSTR system, LPCTSTR layerType) const {
    return ValueAt(m_layers, Key{TextOf(system), TextOf(layerType)});
}

StandardIndex::Found<LayerNode> StandardIndex::FindLayerByName(LPCTSTR layerName) const {
    return ValueAt(m_layersByName, Key{TextOf(layerName), {}});
}

LayerNode* StandardIndex::FindLayerByType(LPCTSTR layerType, LPCTSTR layerName) const {
    return FindLayerByType(nullptr, layerType, layerName);
}

LayerNode* StandardIndex::FindLayerByType(const PipeGroupNode* group, LPCTSTR layerType,
                                          LPCTSTR layerName) const {
    return ValueAt(m_layersByType, Key{TextOf(layerType), TextOf(layerName), group});
}

LayerNode* StandardIndex::FindPipeLayer(LPCTSTR layerName, int& type) const {
    const PipeLayer found = ValueAt(m_pipeLayers, Key{TextOf(layerName), {}});
    if (found.layer != nullptr)
        type = found.type;
    return found.layer;
}

std::span<const StandardIndex::Found<LayerNode>> StandardIndex::FindPipeLayers(int type,
                                                                               LPCTSTR layerName) const {
    const auto found = m_pipeLayersByType.find(Key{pipeTypes[type], TextOf(layerName)});
    if (found == m_pipeLayersByType.end())
        return {};
    return found->second;
}

PipeNode* StandardIndex::FindSystem(const PipeGroupNode* group, LPCTSTR name) const {
    return ValueAt(m_systemsOfGroups, Key{TextOf(name), {}, group});
}

StandardIndex::Found<PipeNode> StandardIndex::FindSystem(LPCTSTR name) const {
    return ValueAt(m_systems, Key{TextOf(name), {}});
}

PipeNode* StandardIndex::FindSystemByInitialName(LPCTSTR name) const {
    return ValueAt(m_systemsByInitialName, Key{TextOf(name), {}});
}

PipeNode* StandardIndex::FindSystemByLayerName(LPCTSTR layerName) const {
    return ValueAt(m_systemsByLayerName, Key{TextOf(layerName), {}});
}

PipeGroupNode* StandardIndex::FindGroup(LPCTSTR name) const {
    return ValueAt(m_groups, Key{TextOf(name), {}});
}

PipeGroupNode* StandardIndex::FindGroupNoCase(LPCTSTR name) const {
    return ValueAt(m_groupsNoCase, Key{TextOf(name), {}});
}

LayerNode* StandardIndex::FindOtherLayer(LPCTSTR layerType, LPCTSTR layerKey) const {
    return ValueAt(m_otherLayers, Key{TextOf(layerKey), TextOf(layerType)});
}

LayerNode* StandardIndex::FindOtherLayerByName(LPCTSTR layerName) const {
    return ValueAt(m_otherLayersByName, Key{TextOf(layerName), {}});
}

void StandardIndex::GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set) const {
    const auto found = m_attached.find(Key{TextOf(attachName), {}});
    if (found == m_attached.end())
        return;
    for (const LayerNode* layer : found->second.pipeLayers)
        set.AddPipeSystemLayerNode(*layer);
    for (const LayerNode* layer : found->second.otherLayers)
        set.AddNonPipeSystemLayerNode(*layer);
}

const TextStyleNode* StandardIndex::FindTextStyleByKey(LPCTSTR key) const {
    return ValueAt(m_stylesByKey, Key{TextOf(key), {}});
}

const TextStyleNode* StandardIndex::FindTextStyleByName(LPCTSTR name) const {
    return ValueAt(m_stylesByName, Key{TextOf(name), {}});
}
