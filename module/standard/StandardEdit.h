// How the current standard is changed. Queries give const records only; who wants to change one holds a
// StandardEdit for as long as it does so:
//
//     CStandardManager* const manager = CStandardManager::Loaded();
//     if (manager == nullptr)
//         return false;
//     StandardEdit edit(*manager);
//     if (PipeNode* const system = edit.System(name))
//         system->m_status = status;
//
// Ask for the smallest part that holds the change: what was asked for is compared with what the look-ups
// know, by every query while the edit lives and once more when it ends, and nothing else is. So a change to
// one system costs as much as that system has layers, however large the standard is.
//
// - Records that an edit gave, and pointers into them, are not kept beyond it. Loading ends them too.
// - Systems are renamed, moved, added and deleted by their group (Group), so that its own look-ups follow; a
//   layer gets another type by being deleted and added.
// - Edits may be nested: a function that changes the standard makes its own.
#pragma once

#include "module/standard/StandardManager.h"

class ZEF_PIPESYSTEM_PORT StandardEdit {
public:
    explicit StandardEdit(CStandardManager& manager);
    ~StandardEdit();
    StandardEdit(const StandardEdit&) = delete;
    StandardEdit& operator=(const StandardEdit&) = delete;

    // The first system of exactly that name; null when there is none.
    PipeNode* System(LPCTSTR name);
    // Of each group the first system of exactly that name.
    std::vector<PipeNode*> Systems(LPCTSTR name);
    // The first group of exactly that name, with its list of systems and all of them; null when there is
    // none.
    PipeGroupNode* Group(LPCTSTR name);
    // The first group of other layers of that type without case; null when there is none.
    OtherLayerNode* OtherLayers(LPCTSTR layerType);
    // A new group of other layers behind the others.
    OtherLayerNode& AddOtherLayers(LPCTSTR layerType);

    // Lists that are searched as they are: changes to them cost nothing more.
    std::vector<TextStyleNode>& TextStyles();
    std::vector<LayerNameRule>& NameRules();

    // Everything, for changes to the lists of groups.
    PipeStandard& Whole();

private:
    CStandardManager& m_manager;
};
