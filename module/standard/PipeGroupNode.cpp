#include "module/standard/PipeGroupNode.h"

#include <algorithm>
#include <utility>

PipeGroupNode::PipeGroupNode(LPCTSTR groupName, bool canRename)
    : m_groupName(groupName), m_canRename(canRename) {
}

PipeGroupNode::~PipeGroupNode() = default;

// ---- systems

int PipeGroupNode::GetSystemIndex(LPCTSTR name) const {
    const auto found = std::ranges::find_if(m_systems, [&](const auto& one) { return one->m_name == name; });
    return found == m_systems.end() ? -1 : static_cast<int>(found - m_systems.begin());
}

bool PipeGroupNode::GetSystemInfo(int index, PipeBasicNode& info) const {
    const PipeNode* const system = FindPipeSystem(index);
    if (system != nullptr)
        info = *system;
    return system != nullptr;
}

void PipeGroupNode::GetAllPipeSystemNames(std::vector<CString>& names) const {
    for (const auto& system : m_systems)
        names.push_back(system->m_name);
}

void PipeGroupNode::AddPipeSystem(PipeNode* system) {
    if (system == nullptr)
        return;
    m_systems.emplace_back(std::unique_ptr<PipeNode>(system));
    m_byName.try_emplace(system->m_name, system);
}

bool PipeGroupNode::DeletePipeSystem(LPCTSTR name) {
    const PipeNode* const system = FindPipeSystem(name);
    if (system == nullptr)
        return false;
    std::erase_if(m_systems, [system](const auto& one) { return one.get() == system; });
    IndexNames();
    return true;
}

const PipeNode* PipeGroupNode::FindPipeSystem(LPCTSTR name) const {
    const auto found = m_byName.find(CString(name));
    return found == m_byName.end() ? nullptr : found->second.get();
}

const PipeNode* PipeGroupNode::FindPipeSystem(int index) const {
    return index >= 0 && index < GetSystemNum() ? m_systems[static_cast<std::size_t>(index)].get() : nullptr;
}

const PipeNode* PipeGroupNode::FindPipeSystem(LPCTSTR groupName, LPCTSTR name) const {
    return m_groupName == groupName ? FindPipeSystem(name) : nullptr;
}

const PipeNode* PipeGroupNode::FindPipeSystemByLayerName(LPCTSTR layerName) const {
    for (const auto& system : m_systems)
        if (system->FindLayerNodeByLayerName(layerName) != nullptr)
            return system.get();
    return nullptr;
}

bool PipeGroupNode::Rename(LPCTSTR oldName, LPCTSTR newName, bool layersWithoutCase) {
    PipeNode* const system = FindPipeSystem(oldName);
    if (system == nullptr)
        return false;
    system->Rename(newName, layersWithoutCase);
    IndexNames();
    return true;
}

bool PipeGroupNode::RenamePipeSystem(LPCTSTR oldName, LPCTSTR newName) {
    return Rename(oldName, newName, false);
}

bool PipeGroupNode::RenameSystemName(LPCTSTR oldName, LPCTSTR newName) {
    return Rename(oldName, newName, true);
}

bool PipeGroupNode::MovePipeSystem(LPCTSTR name, bool up, bool& found) {
    const int index = GetSystemIndex(name);
    if (index < 0)
        return false;
    found = true;
    const int other = up ? index - 1 : index + 1;
    if (FindPipeSystem(other) == nullptr)
        return false;
    std::swap(m_systems[static_cast<std::size_t>(index)], m_systems[static_cast<std::size_t>(other)]);
    IndexNames();
    return true;
}

// Of two systems of one name the first counts.
void PipeGroupNode::IndexNames() {
    m_byName.clear();
    for (auto& system : m_systems)
        m_byName.try_emplace(system->m_name, system.get());
}

bool PipeGroupNode::OldSystemNameToCurrentName(LPCTSTR oldName, CString& currentName) const {
    for (const auto& system : m_systems)
        if (system->m_initialName == oldName) {
            currentName = system->m_name;
            return true;
        }
    return false;
}

void PipeGroupNode::ConvertOldSysNameToCurrentName() {
    for (auto& system : m_systems)
        for (auto& layer : system->Layers())
            // A current name may be what another system was called at first.
            if (layer->m_layerKey != system->m_name)
                OldSystemNameToCurrentName(layer->m_layerKey, layer->m_layerKey);
}

void PipeGroupNode::GetPipeGroupInfo(PipeClassificationNode& info, bool includeMapped) const {
    info.m_groupName = m_groupName;
    info.m_systems.assign(m_systems.size(), {});
    for (std::size_t i = 0; i < m_systems.size(); ++i)
        m_systems[i]->GetPipeInfo(info.m_systems[i], includeMapped);
}

// ---- layers

const LayerNode* PipeGroupNode::FindLayerNode(LPCTSTR systemName, LPCTSTR layerType) const {
    const CString wanted(systemName);
    const auto system =
        std::ranges::find_if(m_systems, [&](const auto& one) { return IsSameName(one->m_name, wanted); });
    return system == m_systems.end() ? nullptr : (*system)->FindLayerNode(layerType, true);
}

const LayerNode* PipeGroupNode::FindLayerNode(int index, LPCTSTR layerType) const {
    const PipeNode* const system = FindPipeSystem(index);
    return system == nullptr ? nullptr : system->FindLayerNode(layerType, true);
}

const LayerNode* PipeGroupNode::FindLayerNode(LPCTSTR layerName) const {
    const CString wanted(layerName);
    for (const auto& system : m_systems)
        for (const auto& [type, layer] : system->LayerIndex())
            if (IsSameName(layer->m_layerName, wanted))
                return layer.get();
    return nullptr;
}

const LayerNode* PipeGroupNode::FindLayerNodeByLayerType(LPCTSTR layerType) const {
    return FindLayerNodeByLayerType(layerType, nullptr);
}

const LayerNode* PipeGroupNode::FindLayerNodeByLayerType(LPCTSTR layerType, LPCTSTR layerName) const {
    for (const auto& system : m_systems)
        if (const LayerNode* const layer = system->FindLayerNodeByKey(layerType, layerName))
            return layer;
    return nullptr;
}

void PipeGroupNode::GetAllLayer(LayerSet::LayersByName& layers) const {
    for (const auto& system : m_systems)
        system->GetAllLayer(layers);
}

void PipeGroupNode::GetAllLayerName(std::vector<CString>& names) const {
    for (const auto& system : m_systems)
        system->GetAllLayerName(names);
}

void PipeGroupNode::GetAllLayerName(LPCTSTR layerType, std::vector<CString>& names) const {
    for (const auto& system : m_systems)
        system->GetAllLayerName(layerType, names);
}

void PipeGroupNode::GetLayerTypes(std::set<CString, KeyOrder>& types) const {
    for (const auto& system : m_systems)
        system->GetLayerTypes(types);
}

int PipeGroupNode::CountLayer(LPCTSTR layerName) const {
    int count = 0;
    for (const auto& system : m_systems)
        count += system->CountLayer(layerName);
    return count;
}

bool PipeGroupNode::CanRenameLayerName(LPCTSTR systemName, LPCTSTR layerName) const {
    const CString own(systemName);
    return std::ranges::none_of(m_systems, [&](const auto& system) {
        return !IsSameName(system->m_name, own) && system->CountLayer(layerName) != 0;
    });
}

bool PipeGroupNode::GetLayerNameByLayerTypeLayerName(LPCTSTR systemName, LPCTSTR layerType, LPCTSTR layerName,
                                                     CString& result, bool includeMapped, bool& found) const {
    const CString wanted(systemName);
    const CString name(layerName);
    found = false;
    for (const auto& system : m_systems) {
        if (!IsSameName(system->m_name, wanted))
            continue;
        const LayerNode* const layer = system->FindLayerNode(layerType, includeMapped);
        if (layer != nullptr && (name.IsEmpty() || system->CountLayer(name) != 0)) {
            result = layer->m_layerName;
            found = true;
        }
        break;
    }
    return found;
}

void PipeGroupNode::GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set) const {
    for (const auto& system : m_systems)
        system->GetLayerAttachInfo(attachName, set);
}

bool PipeGroupNode::UpdateLayer(LPCTSTR systemName, const LayerNode& value) {
    PipeNode* const system = FindPipeSystem(systemName);
    return system != nullptr && system->UpdateLayer(value.m_layerType, value);
}

void PipeGroupNode::UpdateLayerTo(PipeGroupNode* target) const {
    if (target == nullptr)
        return;
    for (const auto& system : m_systems)
        if (PipeNode* const same = target->FindPipeSystem(system->m_name))
            system->UpdateLayerTo(same);
}

void PipeGroupNode::CopyFrom(const PipeGroupNode* other) {
    if (other == nullptr || other == this)
        return;
    m_groupName = other->m_groupName;
    m_canRename = other->m_canRename;
    m_systems.clear();
    for (const auto& system : other->m_systems)
        m_systems.emplace_back(std::unique_ptr<PipeNode>(system->Clone()));
    IndexNames();
}
