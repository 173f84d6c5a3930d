#include "module/layertools/LayerMerge.h"
#include "module/layertools/DrawingWalk.h"

#include "acdbads.h"
#include "acutmem.h"
#include "dbapserv.h"
#include "dbdict.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "dbxrecrd.h"
#include "module/layertools/DrawingRecords.h"
#include "module/layertools/LayerStates.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/TDbPipe.h"

#include <functional>
#include <memory>
#include <unordered_map>

namespace {

constexpr int layerCode = 330;      // in groups and states of layers
constexpr int layerNameCode = 1003; // in extended data
constexpr int applicationCode = 1001;
constexpr wchar_t typesWithParts[] = L"INSERT,POLYLINE";

// The attributes of a reference or the vertices of a polyline; null for entities without parts.
std::unique_ptr<AcDbObjectIterator> PartsOf(const AcDbEntity& entity) {
    AcDbObjectIterator* parts = nullptr;
    if (const auto* reference = AcDbBlockReference::cast(&entity))
        parts = reference->attributeIterator();
    else if (const auto* flat = AcDb2dPolyline::cast(&entity))
        parts = flat->vertexIterator();
    else if (const auto* spatial = AcDb3dPolyline::cast(&entity))
        parts = spatial->vertexIterator();
    else if (const auto* mesh = AcDbPolygonMesh::cast(&entity))
        parts = mesh->vertexIterator();
    else if (const auto* faces = AcDbPolyFaceMesh::cast(&entity))
        parts = faces->vertexIterator();
    return std::unique_ptr<AcDbObjectIterator>(parts);
}

// A part and the layer that it is on.
std::vector<std::pair<AcDbObjectId, AcDbObjectId>> LayersOfParts(const AcDbEntity& entity) {
    std::vector<std::pair<AcDbObjectId, AcDbObjectId>> layers;
    if (const auto parts = PartsOf(entity))
        for (; !parts->done(); parts->step()) {
            const AcDbEntityPointer part(parts->objectId(), AcDb::kForRead);
            if (part.openStatus() == Acad::eOk)
                layers.emplace_back(parts->objectId(), part->layerId());
        }
    return layers;
}

CString NameOf(const AcRxClass* type) {
    return type != nullptr ? type->dxfName() : L"";
}

AcDbDatabase& Drawing() {
    return *acdbHostApplicationServices()->workingDatabase();
}

// Calls `take` with each block of the drawing that is no space and of no reference, and its name.
void ForOwnBlocks(const std::function<void(const AcDbBlockTableRecord&, const CString&)>& take) {
    for (const AcDbObjectId id : RecordsOf(Drawing().blockTableId())) {
        AcString name;
        const AcDbBlockTableRecordPointer block(id, AcDb::kForRead);
        if (block.openStatus() == Acad::eOk && !block->isLayout() && !block->isFromExternalReference() &&
            block->getName(name) == Acad::eOk && CString(name.kACharPtr()).Find(L'|') < 0)
            take(*block.object(), name.kACharPtr());
    }
}

} // namespace

CLayerMerge::CLayerMerge(std::vector<AcDbObjectId> sources, AcDbObjectId target)
    : m_sources(std::move(sources)), m_set(m_sources.begin(), m_sources.end()), m_target(target) {
    for (const AcDbObjectId source : m_sources)
        m_content[source];
    FindInSpaces();
    FindInBlocks();
}

// What has no parts is asked for layer by layer and not opened; what may have parts is looked at on any
// layer.
void CLayerMerge::FindInSpaces() {
    for (const AcDbObjectId source : m_sources) {
        const CString pattern = ZefExport::GetLiteralPattern(GetLayerName(source));
        const Chain filter(
            acutBuildList(8, pattern.GetString(), -4, L"<NOT", RTDXF0, typesWithParts, -4, L"NOT>", 0));
        TPickEntSet found;
        found.SelectDrawing(filter.get());
        std::unordered_map<const AcRxClass*, int> types;
        for (const AcDbObjectId entity : found) {
            ++types[entity.objectClass()];
            m_entities.push_back(entity);
        }
        for (const auto& [type, count] : types)
            Count(source, NameOf(type), L"", count);
    }
    const Chain filter(acutBuildList(RTDXF0, typesWithParts, 0));
    TPickEntSet holders;
    holders.SelectDrawing(filter.get());
    for (const AcDbObjectId entity : holders)
        Look(entity, L"");
}

void CLayerMerge::FindInBlocks() {
    ForOwnBlocks([this](const AcDbBlockTableRecord& block, const CString& name) {
        for (const AcDbObjectId entity : EntitiesOf(block))
            Look(entity, name);
    });
}

void CLayerMerge::Look(AcDbObjectId id, const CString& block) {
    const AcDbEntityPointer entity(id, AcDb::kForRead);
    if (entity.openStatus() != Acad::eOk)
        return;
    const AcDbObjectId layer = entity->layerId();
    const bool isOn = IsSource(layer);
    if (isOn)
        Count(layer, NameOf(id.objectClass()), block, 1);
    bool hasParts = false;
    bool isHolder = false;
    for (const auto& [part, layerOfPart] : LayersOfParts(*entity.object())) {
        hasParts = true;
        if (!IsSource(layerOfPart))
            continue;
        isHolder = true;
        Count(layerOfPart, NameOf(part.objectClass()), block, 1);
    }
    if (isHolder || (hasParts && isOn))
        m_holders.push_back(id);
    else if (isOn)
        m_entities.push_back(id);
}

void CLayerMerge::Count(AcDbObjectId layer, const CString& type, const CString& block, int count) {
    LayerContent& content = m_content.at(layer);
    content.m_count += count;
    content.m_kinds[type] += count;
    if (!block.IsEmpty())
        content.m_blocks[block] += count;
}

void CLayerMerge::Run() {
    for (const AcDbObjectId source : m_sources)
        SetLayerState(source, LayerState::Locked, false);
    for (const AcDbObjectId entity : m_entities)
        Move(entity);
    for (const AcDbObjectId holder : m_holders)
        MoveWithParts(holder);
    MoveLayersOfPipes();
    ThawInViewports();
    const AcDbObjectPointer<AcDbLayerTable> table(Drawing().layerTableId(), AcDb::kForRead);
    if (table.openStatus() == Acad::eOk)
        FollowInDictionary(table->extensionDictionary());
    FollowInExtendedData();
    EraseSources();
}

void CLayerMerge::Move(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForWrite);
    if (entity.openStatus() != Acad::eOk)
        m_stayed.Add(entity.openStatus());
    else if (entity->setLayer(m_target, false) != Acad::eOk)
        m_stayed.AddRefused();
    else
        ++m_moved;
}

// What ends the parts follows the entity; parts on other layers stay there.
void CLayerMerge::MoveWithParts(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForWrite);
    if (entity.openStatus() != Acad::eOk) {
        m_stayed.Add(entity.openStatus());
        return;
    }
    const auto parts = LayersOfParts(*entity.object());
    const AcDbObjectId own = entity->layerId();
    if (entity->setLayer(IsSource(own) ? m_target : own, true) != Acad::eOk) {
        m_stayed.AddRefused();
        return;
    }
    m_moved += IsSource(own) ? 1 : 0;
    for (const auto& [part, layer] : parts) {
        const AcDbEntityPointer open(part, AcDb::kForWrite);
        if (open.openStatus() == Acad::eOk) {
            open->setLayer(IsSource(layer) ? m_target : layer, false);
            m_moved += IsSource(layer) ? 1 : 0;
        } else if (IsSource(layer)) {
            m_stayed.Add(open.openStatus());
        }
    }
}

// A pipe names the layers of its label and its arrow, wherever it is itself.
void CLayerMerge::MoveLayersOfPipes() {
    const Chain filter(acutBuildList(RTDXF0, L"ZEF_PIPE,ZEF_DOUBLELINEPIPE", 0));
    TPickEntSet pipes;
    pipes.SelectDrawing(filter.get());
    for (const AcDbObjectId id : pipes) {
        AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
        if (pipe.openStatus() != Acad::eOk)
            continue;
        const bool label = IsSource(pipe->GetValues().m_labelLayer);
        const bool arrow = IsSource(pipe->GetArrowLayerId());
        if (!label && !arrow)
            continue;
        if (const Acad::ErrorStatus status = pipe->upgradeOpen(); status != Acad::eOk) {
            m_stayed.Add(status);
            continue;
        }
        if (label)
            pipe->ChangeValues().m_labelLayer = m_target;
        if (arrow)
            pipe->SetArrowLayerId(m_target);
    }
}

void CLayerMerge::ThawInViewports() {
    const Chain filter(acutBuildList(RTDXF0, L"VIEWPORT", 0));
    TPickEntSet viewports;
    viewports.SelectDrawing(filter.get());
    AcDbObjectIdArray sources;
    for (const AcDbObjectId source : m_sources)
        sources.append(source);
    for (const AcDbObjectId id : viewports) {
        AcDbObjectPointer<AcDbViewport> viewport(id, AcDb::kForRead);
        if (viewport.openStatus() != Acad::eOk)
            continue;
        bool isFrozen = false;
        for (const AcDbObjectId source : m_sources)
            isFrozen = isFrozen || viewport->isLayerFrozenInViewport(source);
        if (!isFrozen)
            continue;
        if (const Acad::ErrorStatus status = viewport->upgradeOpen(); status != Acad::eOk)
            m_stayed.Add(status);
        else
            viewport->thawLayersInViewport(sources);
    }
}

// Groups and states of layers are records below the layer table, in dictionaries in each other.
void CLayerMerge::FollowInDictionary(AcDbObjectId id) {
    const AcDbDictionaryPointer dictionary(id, AcDb::kForRead);
    if (dictionary.openStatus() != Acad::eOk)
        return;
    for (const std::unique_ptr<AcDbDictionaryIterator> each(dictionary->newIterator()); !each->done();
         each->next()) {
        const AcRxClass* const type = each->objectId().objectClass();
        if (type != nullptr && type->isDerivedFrom(AcDbXrecord::desc()))
            FollowInRecord(each->objectId());
        else
            FollowInDictionary(each->objectId());
    }
}

// A group lists its layers; a state has what it keeps of a layer behind it. Where the target is there
// already, what stands for a source goes.
void CLayerMerge::FollowInRecord(AcDbObjectId id) {
    AcDbXrecordPointer record(id, AcDb::kForRead);
    resbuf* data = nullptr;
    if (record.openStatus() != Acad::eOk || record->rbChain(&data) != Acad::eOk || data == nullptr)
        return;
    const Chain chain(data);
    const auto layerOf = [](const resbuf& node) {
        AcDbObjectId layer;
        if (node.restype == layerCode)
            acdbGetObjectId(layer, node.resval.rlname);
        return layer;
    };
    bool hasTarget = false;
    for (const resbuf* node = data; node != nullptr; node = node->rbnext)
        hasTarget = hasTarget || layerOf(*node) == m_target;
    bool isChanged = false;
    bool drops = false;
    for (resbuf** link = &data; *link != nullptr;) {
        resbuf& node = **link;
        if (node.restype == layerCode) {
            drops = false;
            if (IsSource(layerOf(node))) {
                isChanged = true;
                drops = hasTarget;
                hasTarget = true;
                acdbGetAdsName(node.resval.rlname, m_target);
            }
        }
        if (drops && link != &data) {
            *link = node.rbnext;
            node.rbnext = nullptr;
            acutRelRb(&node);
        } else {
            link = &node.rbnext;
        }
    }
    if (isChanged && record->upgradeOpen() == Acad::eOk)
        record->setFromRbChain(*chain);
}

// Extended data may name layers.
void CLayerMerge::FollowInExtendedData() {
    const CString target = GetLayerName(m_target);
    const Chain filter(acutBuildList(-3, applicationCode, L"*", 0));
    TPickEntSet found;
    found.SelectDrawing(filter.get());
    for (const AcDbObjectId id : found) {
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        const Chain data(entity.openStatus() == Acad::eOk ? entity->xData() : nullptr);
        bool isChanged = false;
        for (resbuf* node = data.get(); node != nullptr; node = node->rbnext)
            if (node->restype == layerNameCode &&
                IsSource(ZefExport::GetLayerIdFromString(node->resval.rstring))) {
                acutDelString(node->resval.rstring);
                acutNewString(target, node->resval.rstring);
                isChanged = true;
            }
        if (!isChanged)
            continue;
        for (const resbuf* node = data.get(); node != nullptr; node = node->rbnext)
            if (node->restype == applicationCode)
                acdbRegApp(node->resval.rstring); // files of other programs leave some out
        Acad::ErrorStatus status = entity->upgradeOpen();
        if (status == Acad::eOk)
            status = entity->setXData(data.get());
        if (status != Acad::eOk)
            m_stayed.Add(status);
    }
}

void CLayerMerge::EraseSources() {
    AcDbObjectIdArray unused;
    for (const AcDbObjectId source : m_sources)
        unused.append(source);
    Drawing().purge(unused);
    for (const AcDbObjectId source : m_sources) {
        bool isErased = false;
        if (unused.contains(source)) {
            const AcDbLayerTableRecordPointer layer(source, AcDb::kForWrite);
            isErased = layer.openStatus() == Acad::eOk && layer->erase() == Acad::eOk;
        }
        if (isErased)
            ++m_erased;
        else
            m_left.push_back(source);
    }
}
