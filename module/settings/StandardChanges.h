// Changes to the current standard as a manager makes them: each keeps its rules, or is refused with the
// reason in words for the user and leaves everything as it was. "" means done.
//
// Names of groups and systems are told apart by case and keys of layers too; layer names are not, and one
// belongs to a single system.
#pragma once

#include "module/standard/StandardEdit.h"

namespace StandardChanges {

// ---- groups of systems

CString AddGroup(CStandardManager& manager, const CString& name);
CString RenameGroup(CStandardManager& manager, const CString& name, const CString& newName);
CString MoveGroup(CStandardManager& manager, const CString& name, bool up);
// Of an empty one.
CString DeleteGroup(CStandardManager& manager, const CString& name);

// ---- systems

// The first system of that name, and its group; null when there is none.
const PipeNode* FindSystem(const PipeStandard& standard, const CString& name);
const PipeGroupNode* FindGroupOf(const PipeStandard& standard, const CString& system);

// A new one at the end of a group with the layers that the creation rule tells, named by the name rules. What
// a layer looks like is taken from the first system of the group that has one of its type, else from the
// first one of all.
CString AddSystem(CStandardManager& manager, const CString& group, const CString& name, const CString& rule);
// A copy behind the others of its group. Where a layer's name holds the name of the system, the copy's holds
// its own; other layers are named by the name rules.
CString CopySystem(CStandardManager& manager, const CString& name, const CString& copy);
// With the layers, those whose names hold the system's name get the new one.
CString RenameSystem(CStandardManager& manager, const CString& name, const CString& newName, bool layersToo);
CString MoveSystem(CStandardManager& manager, const CString& name, bool up);
// To the end of another group.
CString MoveSystemTo(CStandardManager& manager, const CString& name, const CString& group);
CString DeleteSystem(CStandardManager& manager, const CString& name);
// What it is like; its name stays.
CString SetSystem(CStandardManager& manager, const CString& name, const PipeBasicNode& values);

// ---- layers; the owner is a system, or else a group of other layers, the key a layer type or a layer key

const LayerSet* FindOwner(const PipeStandard& standard, const CString& owner);
// Without a name it is called by the name rules; a group of other layers is made when there is none.
CString AddLayer(CStandardManager& manager, const CString& owner, const CString& key, LayerNode values);
CString AddOtherGroup(CStandardManager& manager, const CString& name);
CString SetLayer(CStandardManager& manager, const CString& owner, const CString& key,
                 const LayerNode& values);
CString DeleteLayer(CStandardManager& manager, const CString& owner, const CString& key);

// A key shares the layer of another one; with an empty destination it does so no more.
CString SetAlias(CStandardManager& manager, const CString& owner, const CString& source,
                 const CString& destination);

// ---- the lists; an unknown key is added by Set

CString SetNameRule(CStandardManager& manager, const LayerNameRule& rule);
CString SetCreateRule(CStandardManager& manager, const CreateSystemRule& rule);
CString DeleteCreateRule(CStandardManager& manager, const CString& name);
CString SetTextStyle(CStandardManager& manager, const TextStyleNode& style);
CString SetObjectColor(CStandardManager& manager, const ObjectColor& color);
CString DeleteObjectColor(CStandardManager& manager, const CString& name);

// ---- attachment sets: the names that layers hold

// All of them, in the order of the standard.
std::vector<CString> AttachmentSets(const PipeStandard& standard);
// How many layers hold it; with an empty new name it is taken off them. Nothing is refused.
int RenameAttachmentSet(CStandardManager& manager, const CString& name, const CString& newName);

} // namespace StandardChanges
