// The pages of layers, of aliases and of attachment sets.
#include "module/settings/DrawingUse.h"
#include "module/settings/SettingsPages.h"
#include "module/settings/SettingsQuestions.h"
#include "module/settings/StandardChanges.h"
#include "module/standard/LineWeightText.h"

namespace {

using namespace Settings;

CString Quoted(const CString& text) {
    return L"\"" + text + L"\"";
}

// A system or a group of other layers.
std::optional<CString> AskOwner(const PipeStandard& standard) {
    std::vector<Choice> tree;
    for (const auto& group : standard.m_groups) {
        tree.push_back({group->GroupName(), {}, 0});
        for (const auto& system : group->Systems())
            tree.push_back({system->m_name, {}, 1});
    }
    for (const auto& group : standard.m_otherLayers)
        tree.push_back({group->m_layerType, {L"其他图层"}, 0});
    return AskOneOf(L"管线系统或图层组", L"管线系统和图层组", {L"名称", L"种类"}, tree);
}

std::optional<CString> AskLayer(const LayerSet& layers, bool isOfSystem) {
    std::vector<Choice> list;
    for (const auto& layer : layers.Layers())
        list.push_back({isOfSystem ? layer->m_layerType : layer->m_layerKey,
                        {layer->m_layerName, GetColorText(layer->m_color), layer->m_linetype,
                         GetLineWeightText(layer->m_lineWeight)}});
    return AskOneOf(isOfSystem ? L"图层类型" : L"图层关键字", L"图层",
                    {isOfSystem ? L"图层类型" : L"图层关键字", L"图层名", L"颜色", L"线型", L"线宽"}, list);
}

void NewLayer(CStandardManager& manager, const CString& owner, bool isOfSystem) {
    const auto key = AskName(isOfSystem ? L"新图层类型 <返回>:" : L"新图层关键字 <返回>:");
    if (!key)
        return;
    LayerNode layer;
    layer.m_color.setColorIndex(7);
    layer.m_linetype = L"Continuous";
    const auto name = AskText(isOfSystem ? L"图层名 <按命名规则>:" : L"图层名 <同关键字>:");
    if (!name)
        return;
    layer.m_layerName = *name;
    const CString refusal = StandardChanges::AddLayer(manager, owner, *key, layer);
    const LayerSet* const layers = StandardChanges::FindOwner(manager.Standard(), owner);
    const LayerNode* const made = refusal.IsEmpty() ? layers->FindLayerNode(*key, false) : nullptr;
    Tell(refusal, made != nullptr ? L"已在" + Quoted(owner) + L"中新建图层" + Quoted(*key) + L"，图层名" +
                                        Quoted(made->m_layerName) + L"。"
                                  : CString());
}

void EditLayer(CStandardManager& manager, const CString& owner, const CString& key) {
    const LayerNode* const layer =
        StandardChanges::FindOwner(manager.Standard(), owner)->FindLayerNode(key, false);
    LayerNode values = layer != nullptr ? *layer : LayerNode();
    if (layer != nullptr && !EditFields(L"图层 " + owner + L"/" + key, values))
        return;
    const DrawingUse use = UseOfLayers({layer != nullptr ? layer->m_layerName : CString()});
    const CString refusal = StandardChanges::SetLayer(manager, owner, key, values);
    Tell(refusal, L"已修改" + Quoted(owner) + L"的图层" + Quoted(key) + L"。");
    if (refusal.IsEmpty() && use.layers != 0)
        Print(L"当前图形中已有该图层(图元 " + SizeText(use.entities) + L" 个)，特性保持不变。");
}

void DeleteLayer(CStandardManager& manager, const CString& owner, const CString& key) {
    if (const LayerNode* const layer =
            StandardChanges::FindOwner(manager.Standard(), owner)->FindLayerNode(key, false)) {
        const DrawingUse use = UseOfLayers({layer->m_layerName});
        if (!use.IsNone())
            Print(L"当前图形中的" + use.GetText() + L"将保持原样，但不再属于标准。");
    }
    if (AskYes(L"是否删除图层" + Quoted(owner + L"/" + key)))
        Tell(StandardChanges::DeleteLayer(manager, owner, key),
             L"已删除" + Quoted(owner) + L"的图层" + Quoted(key) + L"。");
}

// Of the layers that a set has: the owner and the key.
void PrintSet(const PipeStandard& standard, const CString& name) {
    LayerAttachNode set;
    for (const auto& group : standard.m_groups)
        group->GetLayerAttachInfo(name, set);
    for (const auto& group : standard.m_otherLayers)
        group->GetLayerAttachInfo(name, set);
    for (const LayerNode& layer : set.m_pipeSystemLayers)
        Print(L"  " + layer.m_layerKey + L"/" + layer.m_layerType + L"  " + layer.m_layerName);
    for (const LayerNode& layer : set.m_nonPipeSystemLayers)
        Print(L"  " + layer.m_layerType + L"/" + layer.m_layerKey + L"  " + layer.m_layerName);
}

} // namespace

void Settings::LayersPage(CStandardManager& manager) {
    const wchar_t choice = AskChoice(L"E N D G", L"属性(E)/新建(N)/删除(D)/新图层组(G)");
    if (choice == L'\0')
        return;
    if (choice == L'G') {
        if (const auto name = AskName(L"新图层组名 <返回>:"))
            Tell(StandardChanges::AddOtherGroup(manager, *name), L"已新建图层组" + Quoted(*name) + L"。");
        return;
    }
    const auto owner = AskOwner(manager.Standard());
    if (!owner)
        return;
    const LayerSet* const layers = StandardChanges::FindOwner(manager.Standard(), *owner);
    if (layers == nullptr)
        return Tell(L"标准中没有管线系统或图层组" + Quoted(*owner) + L"！", L"");
    const bool isOfSystem = StandardChanges::FindSystem(manager.Standard(), *owner) != nullptr;
    if (choice == L'N')
        return NewLayer(manager, *owner, isOfSystem);
    if (const auto key = AskLayer(*layers, isOfSystem)) {
        if (choice == L'E')
            EditLayer(manager, *owner, *key);
        else
            DeleteLayer(manager, *owner, *key);
    }
}

void Settings::AliasesPage(CStandardManager& manager) {
    const auto owner = AskOwner(manager.Standard());
    if (!owner)
        return;
    if (const LayerSet* const layers = StandardChanges::FindOwner(manager.Standard(), *owner))
        for (const auto& [source, destination] : layers->LayerTypeMap())
            Print(L"  " + source + L" → " + destination);
    const wchar_t choice = AskChoice(L"N D", L"设置(N)/删除(D)");
    if (choice == L'\0')
        return;
    const auto source = AskName(L"映射源 <返回>:");
    if (!source)
        return;
    if (choice == L'D')
        return Tell(StandardChanges::SetAlias(manager, *owner, *source, L""),
                    L"已删除" + Quoted(*owner) + L"的映射" + Quoted(*source) + L"。");
    if (const auto destination = AskName(L"映射目标 <返回>:"))
        Tell(StandardChanges::SetAlias(manager, *owner, *source, *destination),
             Quoted(*owner) + L"的" + Quoted(*source) + L"现在使用" + Quoted(*destination) + L"的图层。");
}

void Settings::AttachmentsPage(CStandardManager& manager) {
    std::vector<Choice> list;
    for (const CString& name : StandardChanges::AttachmentSets(manager.Standard()))
        list.push_back({name, {}, 0});
    const auto name = AskOneOf(L"归属集合", L"归属集合", {L"归属集合"}, list);
    if (!name)
        return;
    PrintSet(manager.Standard(), *name);
    const wchar_t choice = AskChoice(L"A O R D", L"加入图层(A)/移出图层(O)/改名(R)/删除(D)");
    CString count;
    if (choice == L'R' || choice == L'D') {
        const auto newName = choice == L'R' ? AskName(L"新集合名 <返回>:") : std::optional(CString());
        if (!newName || (choice == L'D' && !AskYes(L"是否删除归属集合" + Quoted(*name))))
            return;
        const int layers = StandardChanges::RenameAttachmentSet(manager, *name, *newName);
        count.Format(L"(图层 %d 个)。", layers);
        Tell(layers == 0 ? L"标准中没有归属集合" + Quoted(*name) + L"！" : CString(),
             L"归属集合" + Quoted(*name) +
                 (choice == L'D' ? CString(L"已删除") : L"已改名为" + Quoted(*newName)) + count);
    } else if (choice != L'\0') {
        const auto owner = AskOwner(manager.Standard());
        const LayerSet* const layers =
            owner ? StandardChanges::FindOwner(manager.Standard(), *owner) : nullptr;
        if (!owner)
            return;
        if (layers == nullptr)
            return Tell(L"标准中没有管线系统或图层组" + Quoted(*owner) + L"！", L"");
        const auto key =
            AskLayer(*layers, StandardChanges::FindSystem(manager.Standard(), *owner) != nullptr);
        const LayerNode* const layer = key ? layers->FindLayerNode(*key, false) : nullptr;
        if (!key)
            return;
        LayerNode changed = layer != nullptr ? *layer : LayerNode();
        std::erase(changed.m_attachments, *name);
        if (choice == L'A')
            changed.m_attachments.push_back(*name);
        Tell(StandardChanges::SetLayer(manager, *owner, *key, changed),
             L"图层" + Quoted(*owner + L"/" + *key) + (choice == L'A' ? L"已加入" : L"已移出") + L"归属集合" +
                 Quoted(*name) + L"。");
    }
}
