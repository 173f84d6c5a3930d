#include "module/layertools/LayerFamilies.h"

#include "acutmem.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/UserLayers.h"
#include "module/standard/Names.h"
#include "module/standard/StandardManager.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <algorithm>
#include <string>
#include <unordered_set>

namespace {

// The types of the add-on's own entities, as drawing files name them.
constexpr wchar_t ownTypes[] = L"ZEF_*";

// The systems of the standard that have a layer, by the layer's name without case.
using SystemsByLayer = std::unordered_map<std::wstring, std::vector<CString>>;

SystemsByLayer GetSystemsOfStandard() {
    SystemsByLayer systems;
    const CStandardManager* const manager = CStandardManager::Loaded();
    if (manager == nullptr)
        return systems;
    for (const auto& group : manager->Standard().m_groups)
        for (const auto& system : group->Systems())
            for (const auto& layer : system->Layers()) {
                auto& known = systems[base::folded(ViewOf(layer->m_layerName))];
                if (std::ranges::find(known, system->m_name) == known.end())
                    known.push_back(system->m_name);
            }
    return systems;
}

LayerFamily GetFamilyOfMark(const CString& mark) {
    return MarkTool::IsArchitecture(mark) ? LayerFamily::Architecture : LayerFamily::Drainage;
}

LayerFamily GetFamilyOfProduct(int product) {
    switch (product) {
    case kArchitectureLayer:
        return LayerFamily::Architecture;
    case kDrainageLayer:
        return LayerFamily::Drainage;
    default:
        return LayerFamily::Other;
    }
}

bool IsOwnType(const AcDbEntity& entity) {
    const ACHAR* const type = entity.isA()->dxfName();
    return type != nullptr && std::wstring_view(type).starts_with(L"ZEF_");
}

} // namespace

CLayerFamilies::CLayerFamilies() {
    const SystemsByLayer standard = GetSystemsOfStandard();
    const CUserLayers table = CUserLayers::Load();
    for (const AcDbObjectId id : GetAllLayerIds()) {
        const AcDbLayerTableRecordPointer record(id, AcDb::kForRead);
        AcString name;
        if (record.openStatus() != Acad::eOk || record->getName(name) != Acad::eOk)
            continue;
        Layer layer{id, name.kACharPtr(), LayerFamily::Other, false, {}};
        const CString mark = MarkTool::GetMark(*record.object());
        const auto systems = standard.find(base::folded(ViewOf(layer.m_name)));
        layer.m_isStandard = systems != standard.end();
        if (layer.m_isStandard)
            layer.m_systems = systems->second;
        if (!mark.IsEmpty() && !MarkTool::IsArchitecture(mark)) {
            std::erase(layer.m_systems, mark);
            layer.m_systems.insert(layer.m_systems.begin(), mark);
        }
        layer.m_family = !mark.IsEmpty()      ? GetFamilyOfMark(mark)
                         : layer.m_isStandard ? LayerFamily::Drainage
                                              : GetFamilyOfProduct(table.GetProduct(layer.m_name));
        m_places.emplace(id, m_layers.size());
        m_layers.push_back(std::move(layer));
    }
}

const CLayerFamilies::Layer* CLayerFamilies::Find(AcDbObjectId layer) const {
    const auto found = m_places.find(layer);
    return found != m_places.end() ? &m_layers[found->second] : nullptr;
}

LayerFamily CLayerFamilies::GetFamily(AcDbObjectId layer) const {
    const Layer* const found = Find(layer);
    return found != nullptr ? found->m_family : LayerFamily::Other;
}

std::vector<AcDbObjectId> CLayerFamilies::GetLayers(LayerFamily family) const {
    std::vector<AcDbObjectId> layers;
    for (const Layer& layer : m_layers)
        if (layer.m_family == family)
            layers.push_back(layer.m_id);
    return layers;
}

const std::vector<CString>& CLayerFamilies::GetSystems(AcDbObjectId layer) const {
    static const std::vector<CString> none;
    const Layer* const found = Find(layer);
    return found != nullptr ? found->m_systems : none;
}

bool CLayerFamilies::IsLayerOf(AcDbObjectId layer, const CString& system) const {
    const auto& systems = GetSystems(layer);
    return std::ranges::find(systems, system) != systems.end();
}

bool CLayerFamilies::IsStandardLayer(AcDbObjectId layer) const {
    const Layer* const found = Find(layer);
    return found != nullptr && found->m_isStandard;
}

std::vector<AcDbObjectId> CLayerFamilies::GetSystemLayers(const CString& system) const {
    std::vector<AcDbObjectId> layers;
    for (const Layer& layer : m_layers)
        if (std::ranges::find(layer.m_systems, system) != layer.m_systems.end())
            layers.push_back(layer.m_id);
    return layers;
}

LayerFamily CLayerFamilies::GetFamily(const AcDbEntity& entity) const {
    const CString mark = MarkTool::GetMark(entity);
    if (!mark.IsEmpty())
        return GetFamilyOfMark(mark);
    return IsOwnType(entity) ? LayerFamily::Drainage : GetFamily(entity.layerId());
}

std::vector<AcDbObjectId> CLayerFamilies::GetEntities(LayerFamily family) const {
    std::vector<AcDbObjectId> entities;
    std::unordered_set<Adesk::IntDbId> marked;
    for (const MarkedEntity& one : MarkTool::GetMarkedEntities()) {
        marked.insert(one.m_entity.asOldId());
        if (GetFamilyOfMark(one.m_mark) == family)
            entities.push_back(one.m_entity);
    }
    for (const AcDbObjectId entity : FindUnmarked(family))
        if (!marked.contains(entity.asOldId()))
            entities.push_back(entity);
    return entities;
}

// What the family's layers and types have, marked or not.
std::vector<AcDbObjectId> CLayerFamilies::FindUnmarked(LayerFamily family) const {
    CString layers;
    for (const Layer& layer : m_layers)
        if (layer.m_family == family) {
            if (!layers.IsEmpty())
                layers += L",";
            layers += ZefExport::GetLiteralPattern(layer.m_name);
        }
    const LPCTSTR pattern = layers; // none fits an empty name
    const bool isDrainage = family == LayerFamily::Drainage;
    resbuf* const filter = isDrainage
                               ? acutBuildList(-4, L"<OR", 8, pattern, RTDXF0, ownTypes, -4, L"OR>", 0)
                               : acutBuildList(8, pattern, -4, L"<NOT", RTDXF0, ownTypes, -4, L"NOT>", 0);
    TPickEntSet found;
    found.SelectDrawing(filter);
    acutRelRb(filter);
    return {found.begin(), found.end()};
}
