#include "module/standard/DefaultStandard.h"
#include "module/standard/LinetypeLibrary.h"
#include "module/standard/PipeSystemCreation.h"
#include "module/standard/PipeSystemTool.h"
#include "module/standard/StandardEdit.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <algorithm>
#include <memory>

namespace {

LayerNode* MakeDefinition(LPCTSTR layerType, LPCTSTR layerKey, LPCTSTR layerName, int colorIndex,
                          LPCTSTR linetype, LPCTSTR remark) {
    auto layer = std::make_unique<LayerNode>();
    layer->m_layerType = layerType;
    layer->m_layerKey = layerKey;
    layer->m_layerName = layerName;
    layer->m_color.setColorIndex(static_cast<Adesk::UInt16>(colorIndex));
    layer->m_linetype = linetype;
    layer->m_remark = remark;
    layer->m_canDelete = true;
    return layer.release();
}

void AddLayerType(std::vector<LayerNameRule>& types, const CString& layerType) {
    const bool isThere = std::ranges::any_of(
        types, [&](const LayerNameRule& rule) { return IsSameName(rule.m_layerType, layerType); });
    if (!isThere)
        types.push_back({layerType, {}, {}});
}

const LayerNode* FindDefinition(LPCTSTR systemName, LPCTSTR layerType) {
    const CStandardManager* const manager = CStandardManager::Loaded();
    return manager != nullptr ? manager->Index().FindDefinition(systemName, layerType) : nullptr;
}

const LayerNode* FindIndependentLayer(LPCTSTR layerKey) {
    const CStandardManager* const manager = CStandardManager::Loaded();
    if (manager == nullptr)
        return nullptr;
    for (const auto& group : manager->Standard().m_otherLayers)
        if (const LayerNode* const layer = group->FindLayerNode(layerKey, true))
            return layer;
    return nullptr;
}

AcDbObjectId Made(const LayerNode* layer) {
    return layer != nullptr ? layer->CreateLayer() : AcDbObjectId(AcDbObjectId::kNull);
}

} // namespace

namespace PipeSystemTool {

bool AddLayer(bool isPipeSystemLayer, LPCTSTR layerType, LPCTSTR ownerName, LPCTSTR layerName, int colorIndex,
              LPCTSTR linetype, AcDb::LineWeight /*lineWeight*/, LPCTSTR remark) {
    CStandardManager* const manager = CStandardManager::Loaded();
    if (manager == nullptr || *layerType == 0 || *ownerName == 0)
        return false;
    StandardEdit edit(*manager);
    if (isPipeSystemLayer) {
        PipeNode* const system = edit.System(ownerName);
        if (system == nullptr || system->FindLayerNode(layerType, false) != nullptr)
            return false;
        system->AddLayerNode(MakeDefinition(layerType, ownerName, layerName, colorIndex, linetype, remark));
        AddLayerType(edit.NameRules(), layerType);
        return true;
    }
    OtherLayerNode* group = edit.OtherLayers(layerType);
    if (group != nullptr && group->FindLayerNode(ownerName, false) != nullptr)
        return false;
    if (group == nullptr)
        group = &edit.AddOtherLayers(layerType);
    group->AddLayerNode(MakeDefinition(layerType, ownerName, layerName, colorIndex, linetype, remark));
    return true;
}

bool ContainLayer(LPCTSTR systemName, LPCTSTR layerName, LPCTSTR layerType) {
    return IsSameName(GetLayerName(systemName, layerType, false), CString(layerName));
}

AcDbObjectId InitLayer(LPCTSTR systemName, LPCTSTR layerType, CString* layerName) {
    const LayerNode* const layer = FindDefinition(systemName, layerType);
    if (layerName != nullptr)
        *layerName = layer != nullptr ? layer->m_layerName : CString();
    return Made(layer);
}

AcDbObjectId InitLayer(LPCTSTR layerName) {
    const AcDbObjectId there = ZefExport::GetLayerIdFromString(layerName);
    const CStandardManager* const manager = CStandardManager::Loaded();
    if (!there.isNull() || manager == nullptr)
        return there;
    // All groups would make a layer of the same name: when the drawing refuses the first one's it refuses
    // all.
    const PipeNode* const system = manager->Index().FindSystemByLayerName(layerName);
    return Made(system != nullptr ? system->FindLayerNodeByLayerName(layerName)
                                  : manager->Index().FindOtherLayerByName(layerName));
}

AcDbObjectId InitIndependentLayer(LPCTSTR layerKey, CString* layerName) {
    const LayerNode* const layer = FindIndependentLayer(layerKey);
    if (layerName != nullptr && layer != nullptr)
        *layerName = layer->m_layerName;
    return Made(layer);
}

CString GetIndependentLayerName(LPCTSTR layerKey, bool create) {
    const LayerNode* const layer = FindIndependentLayer(layerKey);
    if (layer != nullptr && create)
        layer->CreateLayer();
    return layer != nullptr ? layer->m_layerName : CString();
}

void GetIndependentLayerKey(std::vector<CString>& keys) {
    keys = GetIndependentLayerKeys();
}

AcDbObjectId InitLinetyle(LPCTSTR systemName, LPCTSTR layerType) {
    const LayerNode* const layer = FindDefinition(systemName, layerType);
    return layer != nullptr ? KolTool::LoadVrLineType(layer->m_linetype) : AcDbObjectId(AcDbObjectId::kNull);
}

} // namespace PipeSystemTool
