#include "module/standard/StandardEdit.h"

StandardEdit::StandardEdit(CStandardManager& manager) : m_manager(manager) {
    ++m_manager.m_edits;
}

StandardEdit::~StandardEdit() {
    if (--m_manager.m_edits == 0)
        m_manager.FollowChanges();
}

PipeNode* StandardEdit::System(LPCTSTR name) {
    for (auto& group : m_manager.m_standard.m_groups)
        if (PipeNode* const system = group->FindPipeSystem(name)) {
            m_manager.m_changed.systems.insert(system);
            return system;
        }
    return nullptr;
}

std::vector<PipeNode*> StandardEdit::Systems(LPCTSTR name) {
    std::vector<PipeNode*> systems;
    for (auto& group : m_manager.m_standard.m_groups)
        if (PipeNode* const system = group->FindPipeSystem(name)) {
            m_manager.m_changed.systems.insert(system);
            systems.push_back(system);
        }
    return systems;
}

PipeGroupNode* StandardEdit::Group(LPCTSTR name) {
    for (auto& group : m_manager.m_standard.m_groups)
        if (group->GroupName() == name) {
            m_manager.m_changed.groups.insert(group.get());
            return group.get();
        }
    return nullptr;
}

OtherLayerNode* StandardEdit::OtherLayers(LPCTSTR layerType) {
    for (auto& group : m_manager.m_standard.m_otherLayers)
        if (group->IsLayerType(layerType)) {
            m_manager.m_changed.otherLayers.insert(group.get());
            return group.get();
        }
    return nullptr;
}

OtherLayerNode& StandardEdit::AddOtherLayers(LPCTSTR layerType) {
    OtherLayerNode& group =
        *m_manager.m_standard.m_otherLayers.emplace_back(std::make_unique<OtherLayerNode>(layerType));
    m_manager.m_changed.otherLayers.insert(&group);
    return group;
}

std::vector<TextStyleNode>& StandardEdit::TextStyles() {
    return m_manager.m_standard.m_textStyles;
}

std::vector<LayerNameRule>& StandardEdit::NameRules() {
    return m_manager.m_standard.m_nameRules;
}

PipeStandard& StandardEdit::Whole() {
    m_manager.m_changed.everything = true;
    return m_manager.m_standard;
}
