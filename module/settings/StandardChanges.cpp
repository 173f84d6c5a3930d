#include "module/settings/StandardChanges.h"

#include "module/settings/StandardFields.h"

#include <algorithm>
#include <utility>

namespace {

const wchar_t* const noName = L"名称不能为空！";

CString Quoted(const CString& text) {
    return L"\"" + text + L"\"";
}

CString NoSuchSystem(const CString& name) {
    return L"标准中没有管线系统" + Quoted(name) + L"！";
}

CString NoSuchGroup(const CString& name) {
    return L"标准中没有系统组" + Quoted(name) + L"！";
}

const PipeGroupNode* FindGroup(const PipeStandard& standard, const CString& name) {
    for (const auto& group : standard.m_groups)
        if (group->GroupName() == name)
            return group.get();
    return nullptr;
}

CString WhyNotGroupName(const PipeStandard& standard, const CString& name) {
    if (name.IsEmpty())
        return noName;
    return FindGroup(standard, name) != nullptr ? L"系统组" + Quoted(name) + L"已经存在！" : CString();
}

CString WhyNotSystemName(const PipeStandard& standard, const CString& name) {
    if (name.IsEmpty())
        return noName;
    return StandardChanges::FindSystem(standard, name) != nullptr ? L"管线系统" + Quoted(name) + L"已经存在！"
                                                                  : CString();
}

// Why a system's layer can not have a name: no drawing takes it, or another system has it.
CString WhyNotLayerName(const PipeStandard& standard, const CString& system, const CString& layer) {
    CString why = WhyNoLayerName(layer);
    if (!why.IsEmpty())
        return why + L"！";
    for (const auto& group : standard.m_groups)
        for (const auto& other : group->Systems())
            if (other->m_name != system && other->CountLayer(layer) != 0)
                return L"图层名" + Quoted(layer) + L"已用于系统" + Quoted(other->m_name) + L"！";
    return {};
}

CString WhyNotLayerNames(const PipeStandard& standard, const PipeNode& system, const CString& except) {
    for (const auto& layer : system.Layers())
        for (const auto& group : standard.m_groups)
            for (const auto& other : group->Systems()) {
                const bool isOwn = other->m_name == system.m_name || other->m_name == except;
                if (!isOwn && other->CountLayer(layer->m_layerName) != 0)
                    return L"图层名" + Quoted(layer->m_layerName) + L"已用于系统" + Quoted(other->m_name) +
                           L"！";
            }
    for (const auto& layer : system.Layers())
        if (const CString why = WhyNoLayerName(layer->m_layerName); !why.IsEmpty())
            return why + L"！";
    return {};
}

CString NameByRule(const PipeStandard& standard, const CString& type, const CString& system) {
    const auto rule = std::ranges::find_if(
        standard.m_nameRules, [&](const LayerNameRule& one) { return IsSameName(one.m_layerType, type); });
    // Without a prefix or a suffix all of a system's layers would have one name.
    if (rule == standard.m_nameRules.end() || (rule->m_prefix.IsEmpty() && rule->m_suffix.IsEmpty()))
        return type + L"-" + system;
    return rule->m_prefix + system + rule->m_suffix;
}

// What a new layer of a type looks like.
LayerNode Model(const PipeStandard& standard, const CString& group, const CString& type) {
    const PipeGroupNode* const own = FindGroup(standard, group);
    const LayerNode* found = own != nullptr ? own->FindLayerNodeByLayerType(type) : nullptr;
    for (const auto& other : standard.m_groups)
        if (found == nullptr)
            found = other->FindLayerNodeByLayerType(type);
    LayerNode layer = found != nullptr ? *found : LayerNode();
    if (found == nullptr) {
        layer.m_color.setColorIndex(7);
        layer.m_linetype = L"Continuous";
    }
    layer.m_layerType = type;
    layer.m_remark = L"";
    return layer;
}

void RenameLayers(const PipeStandard& standard, PipeNode& system, const CString& from, const CString& to,
                  bool others) {
    for (auto& layer : system.Layers())
        if (layer->m_layerName.Replace(from, to) == 0 && others)
            layer->m_layerName = NameByRule(standard, layer->m_layerType, to);
}

// The record of a key in a list; the end when there is none.
template<class Record, class Key>
auto Find(std::vector<Record>& records, Key Record::*key, const CString& wanted) {
    return std::ranges::find_if(records,
                                [&](const Record& record) { return IsSameName(record.*key, wanted); });
}

template<class Record>
CString Put(std::vector<Record>& records, CString Record::*key, const Record& value) {
    if ((value.*key).IsEmpty())
        return noName;
    const auto found = Find(records, key, value.*key);
    if (found != records.end())
        *found = value;
    else
        records.push_back(value);
    return {};
}

template<class Record>
CString Remove(std::vector<Record>& records, CString Record::*key, const CString& wanted) {
    const auto found = Find(records, key, wanted);
    if (found == records.end())
        return L"标准中没有" + Quoted(wanted) + L"！";
    records.erase(found);
    return {};
}

// The owner of layers, to be changed; the name of its system, "" for a group of other layers.
LayerSet* OwnerToChange(StandardEdit& edit, const CString& owner, CString& system) {
    if (PipeNode* const found = edit.System(owner)) {
        system = found->m_name;
        return found;
    }
    return edit.OtherLayers(owner);
}

CString NoSuchOwner(const CString& owner) {
    return L"标准中没有管线系统或图层组" + Quoted(owner) + L"！";
}

CString NoSuchLayer(const CString& owner, const CString& key) {
    return Quoted(owner) + L"中没有图层" + Quoted(key) + L"！";
}

} // namespace

namespace StandardChanges {

// ---- groups

CString AddGroup(CStandardManager& manager, const CString& name) {
    CString why = WhyNotGroupName(manager.Standard(), name);
    if (why.IsEmpty())
        StandardEdit(manager).Whole().m_groups.emplace_back(std::make_unique<PipeGroupNode>(name, true));
    return why;
}

CString RenameGroup(CStandardManager& manager, const CString& name, const CString& newName) {
    const PipeGroupNode* const group = FindGroup(manager.Standard(), name);
    if (group == nullptr)
        return NoSuchGroup(name);
    if (!group->CanRename())
        return L"系统组" + Quoted(name) + L"不能改名！";
    CString why = WhyNotGroupName(manager.Standard(), newName);
    if (why.IsEmpty()) {
        StandardEdit edit(manager);
        for (auto& one : edit.Whole().m_groups)
            if (one.get() == group)
                one->SetGroupName(newName);
    }
    return why;
}

CString MoveGroup(CStandardManager& manager, const CString& name, bool up) {
    if (FindGroup(manager.Standard(), name) == nullptr)
        return NoSuchGroup(name);
    StandardEdit edit(manager);
    auto& groups = edit.Whole().m_groups;
    std::size_t at = 0;
    while (groups[at]->GroupName() != name)
        ++at;
    if (up ? at == 0 : at + 1 == groups.size())
        return L"系统组" + Quoted(name) + (up ? L"已经在最前！" : L"已经在最后！");
    std::swap(groups[at], groups[up ? at - 1 : at + 1]);
    return {};
}

CString DeleteGroup(CStandardManager& manager, const CString& name) {
    const PipeGroupNode* const group = FindGroup(manager.Standard(), name);
    if (group == nullptr)
        return NoSuchGroup(name);
    if (!group->IsEmpty())
        return L"系统组" + Quoted(name) + L"中还有管线系统，不能删除！";
    StandardEdit edit(manager);
    std::erase_if(edit.Whole().m_groups, [&](const auto& one) { return one.get() == group; });
    return {};
}

// ---- systems

const PipeNode* FindSystem(const PipeStandard& standard, const CString& name) {
    for (const auto& group : standard.m_groups)
        if (const PipeNode* const system = group->FindPipeSystem(name))
            return system;
    return nullptr;
}

const PipeGroupNode* FindGroupOf(const PipeStandard& standard, const CString& system) {
    for (const auto& group : standard.m_groups)
        if (group->IsIncludedSystem(system))
            return group.get();
    return nullptr;
}

CString AddSystem(CStandardManager& manager, const CString& group, const CString& name, const CString& rule) {
    const PipeStandard& standard = manager.Standard();
    if (FindGroup(standard, group) == nullptr)
        return NoSuchGroup(group);
    if (CString why = WhyNotSystemName(standard, name); !why.IsEmpty())
        return why;
    const auto found = std::ranges::find(standard.m_createRules, rule, &CreateSystemRule::m_name);
    if (found == standard.m_createRules.end())
        return L"标准中没有创建规则" + Quoted(rule) + L"！";
    auto system = std::make_unique<PipeNode>(name);
    const PipeGroupNode* const own = FindGroup(standard, group);
    if (!own->IsEmpty()) { // how it is drawn and what it is made of
        static_cast<PipeBasicNode&>(*system) = *own->FindPipeSystem(0);
        system->m_initialName = system->m_name = name;
        system->m_dim = L"";
        system->m_remark = L"";
        system->m_status = 0;
    }
    system->m_canRename = system->m_canDelete = true;
    for (const CString& type : found->m_layerTypes) {
        LayerNode layer = Model(standard, group, type);
        layer.m_layerKey = name;
        layer.m_layerName = NameByRule(standard, type, name);
        system->AddLayerNode(std::make_unique<LayerNode>(std::move(layer)).release());
    }
    if (!own->IsEmpty())
        system->UpdateLayerTypeMap(own->FindPipeSystem(0));
    if (CString why = WhyNotLayerNames(standard, *system, name); !why.IsEmpty())
        return why;
    StandardEdit(manager).Group(group)->AddPipeSystem(system.release());
    return {};
}

CString CopySystem(CStandardManager& manager, const CString& name, const CString& copy) {
    const PipeStandard& standard = manager.Standard();
    const PipeNode* const source = FindSystem(standard, name);
    if (source == nullptr)
        return NoSuchSystem(name);
    if (CString why = WhyNotSystemName(standard, copy); !why.IsEmpty())
        return why;
    std::unique_ptr<PipeNode> made(source->Clone());
    made->Rename(copy, true);
    made->m_initialName = copy;
    made->m_canRename = made->m_canDelete = true;
    RenameLayers(standard, *made, name, copy, true);
    if (CString why = WhyNotLayerNames(standard, *made, copy); !why.IsEmpty())
        return why;
    StandardEdit(manager).Group(FindGroupOf(standard, name)->GroupName())->AddPipeSystem(made.release());
    return {};
}

CString RenameSystem(CStandardManager& manager, const CString& name, const CString& newName, bool layersToo) {
    const PipeStandard& standard = manager.Standard();
    const PipeNode* const system = FindSystem(standard, name);
    if (system == nullptr)
        return NoSuchSystem(name);
    if (!system->m_canRename)
        return L"管线系统" + Quoted(name) + L"不能改名！";
    if (CString why = WhyNotSystemName(standard, newName); !why.IsEmpty())
        return why;
    if (layersToo) {
        const std::unique_ptr<PipeNode> tried(system->Clone());
        RenameLayers(standard, *tried, name, newName, false);
        if (CString why = WhyNotLayerNames(standard, *tried, name); !why.IsEmpty())
            return why;
    }
    StandardEdit edit(manager);
    if (layersToo)
        RenameLayers(standard, *edit.System(name), name, newName, false);
    edit.Group(FindGroupOf(standard, name)->GroupName())->RenamePipeSystem(name, newName);
    return {};
}

CString MoveSystem(CStandardManager& manager, const CString& name, bool up) {
    const PipeGroupNode* const group = FindGroupOf(manager.Standard(), name);
    if (group == nullptr)
        return NoSuchSystem(name);
    bool found = false;
    if (!StandardEdit(manager).Group(group->GroupName())->MovePipeSystem(name, up, found))
        return L"管线系统" + Quoted(name) + (up ? L"已经在最前！" : L"已经在最后！");
    return {};
}

CString MoveSystemTo(CStandardManager& manager, const CString& name, const CString& group) {
    const PipeGroupNode* const from = FindGroupOf(manager.Standard(), name);
    if (from == nullptr)
        return NoSuchSystem(name);
    const PipeGroupNode* const to = FindGroup(manager.Standard(), group);
    if (to == nullptr)
        return NoSuchGroup(group);
    if (to == from)
        return L"管线系统" + Quoted(name) + L"已经在该组中！";
    std::unique_ptr<PipeNode> moved(from->FindPipeSystem(name)->Clone());
    StandardEdit edit(manager);
    edit.Group(from->GroupName())->DeletePipeSystem(name);
    edit.Group(group)->AddPipeSystem(moved.release());
    return {};
}

CString DeleteSystem(CStandardManager& manager, const CString& name) {
    const PipeNode* const system = FindSystem(manager.Standard(), name);
    if (system == nullptr)
        return NoSuchSystem(name);
    if (!system->m_canDelete)
        return L"管线系统" + Quoted(name) + L"不能删除！（属性\"可删除\"为否）";
    StandardEdit(manager).Group(FindGroupOf(manager.Standard(), name)->GroupName())->DeletePipeSystem(name);
    return {};
}

CString SetSystem(CStandardManager& manager, const CString& name, const PipeBasicNode& values) {
    StandardEdit edit(manager);
    PipeNode* const system = edit.System(name);
    if (system == nullptr)
        return NoSuchSystem(name);
    PipeBasicNode kept = values;
    kept.m_name = system->m_name;
    kept.m_initialName = system->m_initialName;
    static_cast<PipeBasicNode&>(*system) = kept;
    return {};
}

// ---- layers

const LayerSet* FindOwner(const PipeStandard& standard, const CString& owner) {
    if (const PipeNode* const system = FindSystem(standard, owner))
        return system;
    for (const auto& group : standard.m_otherLayers)
        if (group->IsLayerType(owner))
            return group.get();
    return nullptr;
}

CString AddOtherGroup(CStandardManager& manager, const CString& name) {
    if (name.IsEmpty())
        return noName;
    if (FindOwner(manager.Standard(), name) != nullptr)
        return Quoted(name) + L"已经存在！";
    StandardEdit(manager).AddOtherLayers(name);
    return {};
}

CString AddLayer(CStandardManager& manager, const CString& owner, const CString& key, LayerNode values) {
    if (key.IsEmpty())
        return noName;
    StandardEdit edit(manager);
    CString system;
    LayerSet* const layers = OwnerToChange(edit, owner, system);
    if (layers == nullptr)
        return NoSuchOwner(owner);
    if (layers->FindLayerNode(key, false) != nullptr)
        return Quoted(owner) + L"中已有图层" + Quoted(key) + L"！";
    const bool isOfSystem = !system.IsEmpty();
    if (values.m_layerName.IsEmpty())
        values.m_layerName = isOfSystem ? NameByRule(manager.Standard(), key, system) : key;
    if (CString why = isOfSystem ? WhyNotLayerName(manager.Standard(), system, values.m_layerName)
                                 : WhyNoLayerName(values.m_layerName);
        !why.IsEmpty())
        return why;
    values.m_layerType = isOfSystem ? key : owner;
    values.m_layerKey = isOfSystem ? system : key;
    values.m_canDelete = true;
    layers->AddLayerNode(std::make_unique<LayerNode>(std::move(values)).release());
    if (isOfSystem && Find(edit.NameRules(), &LayerNameRule::m_layerType, key) == edit.NameRules().end())
        edit.NameRules().push_back({key, {}, {}});
    return {};
}

CString SetLayer(CStandardManager& manager, const CString& owner, const CString& key,
                 const LayerNode& values) {
    StandardEdit edit(manager);
    CString system;
    LayerSet* const layers = OwnerToChange(edit, owner, system);
    if (layers == nullptr)
        return NoSuchOwner(owner);
    LayerNode* const layer = layers->FindLayerNode(key, false);
    if (layer == nullptr)
        return NoSuchLayer(owner, key);
    if (CString why = system.IsEmpty() ? WhyNoLayerName(values.m_layerName)
                                       : WhyNotLayerName(manager.Standard(), system, values.m_layerName);
        !why.IsEmpty())
        return why;
    LayerNode kept = values;
    kept.m_layerType = layer->m_layerType;
    kept.m_layerKey = layer->m_layerKey;
    *layer = std::move(kept);
    return {};
}

CString DeleteLayer(CStandardManager& manager, const CString& owner, const CString& key) {
    StandardEdit edit(manager);
    CString system;
    LayerSet* const layers = OwnerToChange(edit, owner, system);
    if (layers == nullptr)
        return NoSuchOwner(owner);
    const LayerNode* const layer = layers->FindLayerNode(key, false);
    if (layer == nullptr)
        return NoSuchLayer(owner, key);
    if (!layer->m_canDelete)
        return L"图层" + Quoted(key) + L"不能删除！（属性\"可删除\"为否）";
    layers->DelLayerNode(layer);
    return {};
}

CString SetAlias(CStandardManager& manager, const CString& owner, const CString& source,
                 const CString& destination) {
    if (source.IsEmpty())
        return noName;
    StandardEdit edit(manager);
    CString system;
    LayerSet* const layers = OwnerToChange(edit, owner, system);
    if (layers == nullptr)
        return NoSuchOwner(owner);
    if (destination.IsEmpty())
        return layers->RemoveMapping(source) ? CString()
                                             : Quoted(owner) + L"中没有映射" + Quoted(source) + L"！";
    if (layers->FindLayerNode(source, false) != nullptr)
        return Quoted(source) + L"有自己的图层，不能映射！";
    if (layers->FindLayerNode(destination, false) == nullptr)
        return NoSuchLayer(owner, destination);
    layers->RemoveMapping(source);
    layers->AddMapping(source, destination);
    layers->UpdateLayerTypeMap();
    return {};
}

// ---- the lists

CString SetNameRule(CStandardManager& manager, const LayerNameRule& rule) {
    return Put(StandardEdit(manager).NameRules(), &LayerNameRule::m_layerType, rule);
}

CString SetCreateRule(CStandardManager& manager, const CreateSystemRule& rule) {
    if (rule.m_layerTypes.empty())
        return L"创建规则" + Quoted(rule.m_name) + L"至少要有一个图层类型！";
    return Put(StandardEdit(manager).Whole().m_createRules, &CreateSystemRule::m_name, rule);
}

CString DeleteCreateRule(CStandardManager& manager, const CString& name) {
    return Remove(StandardEdit(manager).Whole().m_createRules, &CreateSystemRule::m_name, name);
}

CString SetTextStyle(CStandardManager& manager, const TextStyleNode& style) {
    if (style.m_name.IsEmpty())
        return noName;
    return Put(StandardEdit(manager).TextStyles(), &TextStyleNode::m_key, style);
}

CString SetObjectColor(CStandardManager& manager, const ObjectColor& color) {
    return Put(StandardEdit(manager).Whole().m_objectColors, &ObjectColor::m_name, color);
}

CString DeleteObjectColor(CStandardManager& manager, const CString& name) {
    return Remove(StandardEdit(manager).Whole().m_objectColors, &ObjectColor::m_name, name);
}

} // namespace StandardChanges
