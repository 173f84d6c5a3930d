#include "module/layertools/LayerExtract.h"

#include "dbapserv.h"
#include "dbelipse.h"
#include "dbents.h"
#include "dbidmap.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/layertools/ExternalBlock.h"
#include "module/layertools/LayerStates.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <functional>
#include <memory>

namespace {

constexpr int deepest = 100; // references in each other

typedef AcDbObjectPointer<AcDbBlockReference> BlockReferencePointer;

AcDbDatabase& Drawing() {
    return *acdbHostApplicationServices()->workingDatabase();
}

// The layer of this drawing by which an entity in a reference is seen.
AcDbObjectId SeenLayer(const AcDbEntity& entity, const ReferenceContext& context) {
    AcString name;
    entity.layer(name);
    const CString layer = name.kACharPtr();
    return layer == L"0" ? context.m_layer : CLayerExtract::GetSeenLayer(context.m_reference, layer);
}

AcCmColor ColorOf(AcDbObjectId layerId) {
    const AcDbLayerTableRecordPointer layer(layerId, AcDb::kForRead);
    return layer.openStatus() == Acad::eOk ? layer->color() : AcCmColor();
}

AcDb::LineWeight LineWeightOf(AcDbObjectId layerId) {
    const AcDbLayerTableRecordPointer layer(layerId, AcDb::kForRead);
    return layer.openStatus() == Acad::eOk ? layer->lineWeight() : AcDb::kLnWtByLwDefault;
}

// What a reference gives to what is in it, where its own place and placing are known.
ReferenceContext ContextOf(const AcDbBlockReference& reference, const AcDbBlockTableRecord& definition,
                           const ReferenceContext& outer) {
    ReferenceContext inner;
    AcString name;
    definition.getName(name);
    inner.m_reference = definition.isFromExternalReference() ? CString(name.kACharPtr()) : outer.m_reference;
    // The name of a block in a reference is known here behind the reference's.
    if (const int bar = inner.m_reference.ReverseFind(L'|'); bar >= 0)
        inner.m_reference = inner.m_reference.Mid(bar + 1);
    inner.m_layer = SeenLayer(reference, outer);
    const AcCmColor color = reference.color();
    inner.m_color = color.isByBlock() ? outer.m_color : color.isByLayer() ? ColorOf(inner.m_layer) : color;
    const AcDb::LineWeight weight = reference.lineWeight();
    inner.m_lineWeight = weight == AcDb::kLnWtByBlock   ? outer.m_lineWeight
                         : weight == AcDb::kLnWtByLayer ? LineWeightOf(inner.m_layer)
                                                        : weight;
    inner.m_placing = outer.m_placing * KolTool::GetPlacing(reference, definition);
    return inner;
}

// Calls `take` with each entity of a block that a reference to it draws.
void ForDrawn(AcDbObjectId definition, const std::function<void(AcDbObjectId)>& take) {
    const AcDbBlockTableRecordPointer block(definition, AcDb::kForRead);
    AcDbBlockTableRecordIterator* made = nullptr;
    if (block.openStatus() != Acad::eOk || block->newIterator(made) != Acad::eOk)
        return;
    for (const std::unique_ptr<AcDbBlockTableRecordIterator> each(made); !each->done(); each->step()) {
        AcDbObjectId id;
        if (each->getEntityId(id) == Acad::eOk &&
            !id.objectClass()->isDerivedFrom(AcDbAttributeDefinition::desc()) &&
            !id.objectClass()->isDerivedFrom(AcDbViewport::desc()))
            take(id);
    }
}

bool IsReference(AcDbObjectId id) {
    return id.objectClass()->isDerivedFrom(AcDbBlockReference::desc());
}

CString SmallName(const AcDbBlockTableRecord& block) {
    AcString name;
    block.getName(name);
    CString small = name.kACharPtr();
    return small.MakeLower();
}

std::set<CString> GetBlockNames() {
    std::set<CString> names;
    const AcDbBlockTablePointer table(Drawing().blockTableId(), AcDb::kForRead);
    AcDbSymbolTableIterator* made = nullptr;
    if (table.openStatus() != Acad::eOk || table->newIterator(made) != Acad::eOk)
        return names;
    for (const std::unique_ptr<AcDbSymbolTableIterator> each(made); !each->done(); each->step()) {
        AcDbObjectId id;
        each->getRecordId(id);
        const AcDbBlockTableRecordPointer block(id, AcDb::kForRead);
        if (block.openStatus() == Acad::eOk)
            names.insert(SmallName(*block.object()));
    }
    return names;
}

// A circle or an arc as the ellipse that it is when it is scaled unevenly.
std::unique_ptr<AcDbEntity> AsEllipse(const AcDbEntity& entity) {
    std::unique_ptr<AcDbEllipse> ellipse;
    const auto axis = [](const AcGeVector3d& normal) {
        return AcGeMatrix3d::planeToWorld(normal) * AcGeVector3d::kXAxis;
    };
    if (const auto* circle = AcDbCircle::cast(&entity))
        ellipse = std::make_unique<AcDbEllipse>(circle->center(), circle->normal(),
                                                axis(circle->normal()) * circle->radius(), 1.0);
    else if (const auto* arc = AcDbArc::cast(&entity))
        ellipse =
            std::make_unique<AcDbEllipse>(arc->center(), arc->normal(), axis(arc->normal()) * arc->radius(),
                                          1.0, arc->startAngle(), arc->startAngle() + arc->totalAngle());
    if (ellipse != nullptr)
        ellipse->setPropertiesFrom(&entity);
    return ellipse;
}

// What stands in the place of an entity that can not be scaled unevenly; empty when nothing can.
std::vector<std::unique_ptr<AcDbEntity>> Substitutes(const AcDbEntity& entity, const AcGeMatrix3d& placing) {
    std::vector<std::unique_ptr<AcDbEntity>> made;
    if (auto ellipse = AsEllipse(entity)) {
        made.push_back(std::move(ellipse));
    } else {
        AcDbVoidPtrArray parts;
        if (entity.explode(parts) == Acad::eOk)
            for (void* const part : parts)
                made.emplace_back(static_cast<AcDbEntity*>(part));
        for (auto& part : made)
            if (auto ellipse2 = AsEllipse(*part))
                part = std::move(ellipse2);
    }
    for (const auto& part : made)
        if (part->transformBy(placing) != Acad::eOk)
            return {};
    return made;
}

} // namespace

CLayerExtract::CLayerExtract(const std::vector<AcDbObjectId>& references) : m_references(references) {
    Walk(Act::Count);
}

AcDbObjectId CLayerExtract::GetSeenLayer(const CString& reference, const CString& layer) {
    const AcDbObjectId dependent =
        reference.IsEmpty() ? AcDbObjectId() : ZefExport::GetLayerIdFromString(reference + L"|" + layer);
    return dependent.isNull() ? ZefExport::GetLayerIdFromString(layer) : dependent;
}

void CLayerExtract::Run(const std::set<AcDbObjectId>& layers, bool namesReference) {
    m_layers = layers;
    m_namesReference = namesReference;
    const std::vector<AcDbObjectId> known = GetAllLayerIds();
    m_known.insert(known.begin(), known.end());
    m_knownBlocks = GetBlockNames();
    Walk(Act::Copy);
    for (const AcDbObjectId layer : m_unlocked)
        SetLayerState(layer, LayerState::Locked, true);
}

void CLayerExtract::Walk(Act act) {
    m_act = act;
    for (const AcDbObjectId id : m_references) {
        const BlockReferencePointer reference(id, AcDb::kForRead);
        if (reference.openStatus() != Acad::eOk)
            continue;
        m_space = reference->ownerId();
        ReferenceContext outer;
        outer.m_color.setColorIndex(AcCmColor::kACIWhite);
        outer.m_layer = ZefExport::GetLayerIdFromString(L"0");
        WalkReference(*reference.object(), outer, 0);
    }
}

// A reference in rows and columns is as many references.
void CLayerExtract::WalkReference(const AcDbBlockReference& reference, const ReferenceContext& outer,
                                  int depth) {
    const AcDbObjectId id = reference.blockTableRecord();
    const AcDbBlockTableRecordPointer definition(id, AcDb::kForRead);
    if (definition.openStatus() != Acad::eOk || depth > deepest)
        return;
    const ReferenceContext first = ContextOf(reference, *definition.object(), outer);
    const auto* many = AcDbMInsertBlock::cast(&reference);
    const int columns = many != nullptr ? many->columns() : 1;
    const int rows = many != nullptr ? many->rows() : 1;
    const AcGeMatrix3d turn = AcGeMatrix3d::planeToWorld(reference.normal()) *
                              AcGeMatrix3d::rotation(reference.rotation(), AcGeVector3d::kZAxis);
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column) {
            ReferenceContext context = first;
            if (many != nullptr) {
                const AcGeVector3d step =
                    turn * AcGeVector3d(column * many->columnSpacing(), row * many->rowSpacing(), 0.0);
                context.m_placing = outer.m_placing * AcGeMatrix3d::translation(step) *
                                    KolTool::GetPlacing(reference, *definition.object());
            }
            WalkPlaced(id, context, depth);
        }
}

void CLayerExtract::WalkPlaced(AcDbObjectId definition, const ReferenceContext& context, int depth) {
    AcDbObjectIdArray chosen;
    ForDrawn(definition, [&](AcDbObjectId id) {
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        if (entity.openStatus() != Acad::eOk)
            return;
        const auto* nested = AcDbBlockReference::cast(entity.object());
        const AcDbObjectId layer = SeenLayer(*entity.object(), context);
        if (m_act == Act::Count) {
            if (nested != nullptr)
                WalkReference(*nested, context, depth + 1);
            else if (!layer.isNull())
                ++m_found[layer];
            return;
        }
        if (nested == nullptr) {
            if (m_layers.contains(layer))
                chosen.append(id);
            return;
        }
        const AcDbBlockTableRecordPointer inner(nested->blockTableRecord(), AcDb::kForRead);
        if (m_layers.contains(layer) && inner.openStatus() == Acad::eOk &&
            !inner->isFromExternalReference() &&
            IsWholeChosen(nested->blockTableRecord(), ContextOf(*nested, *inner.object(), context), 0))
            chosen.append(id);
        else
            WalkReference(*nested, context, depth + 1);
    });
    if (!chosen.isEmpty())
        CopyAll(chosen, context);
}

// Whether all that a block draws, seen through a reference on a layer, is on chosen ones: then it stays a
// block.
bool CLayerExtract::IsWholeChosen(AcDbObjectId definition, const ReferenceContext& context, int depth) {
    const auto key = std::pair(definition, context.m_layer);
    if (const auto known = m_wholes.find(key); known != m_wholes.end())
        return known->second;
    // A block of that name that the drawing has may look otherwise.
    const AcDbBlockTableRecordPointer block(definition, AcDb::kForRead);
    bool isWhole = depth < deepest && block.openStatus() == Acad::eOk &&
                   (m_namesReference || definition.database() == &Drawing() ||
                    !m_knownBlocks.contains(SmallName(*block.object())));
    if (isWhole)
        ForDrawn(definition, [&](AcDbObjectId id) {
            const AcDbEntityPointer entity(id, AcDb::kForRead);
            if (!isWhole || entity.openStatus() != Acad::eOk)
                return;
            isWhole = m_layers.contains(SeenLayer(*entity.object(), context));
            const auto* nested = AcDbBlockReference::cast(entity.object());
            if (!isWhole || nested == nullptr)
                return;
            const AcDbBlockTableRecordPointer inner(nested->blockTableRecord(), AcDb::kForRead);
            isWhole = inner.openStatus() == Acad::eOk && !inner->isFromExternalReference() &&
                      IsWholeChosen(nested->blockTableRecord(), ContextOf(*nested, *inner.object(), context),
                                    depth + 1);
        });
    m_wholes[key] = isWhole;
    return isWhole;
}

void CLayerExtract::CopyAll(const AcDbObjectIdArray& entities, const ReferenceContext& context) {
    AcDbObjectIdArray originals = entities;
    AcDbIdMapping map;
    const bool isOwn = entities[0].database() == &Drawing();
    if (!isOwn)
        Drawing().wblockCloneObjects(originals, m_space, map,
                                     m_namesReference ? AcDb::kDrcMangleName : AcDb::kDrcIgnore);
    for (const AcDbObjectId original : entities) {
        AcDbIdPair pair(original, {}, false);
        const AcDbObjectId copy = isOwn               ? CopyOwn(original)
                                  : map.compute(pair) ? pair.value()
                                                      : AcDbObjectId();
        if (copy.isNull())
            ++m_left;
        else
            Settle(original, copy, context);
    }
}

AcDbObjectId CLayerExtract::CopyOwn(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForRead);
    const AcDbBlockTableRecordPointer space(m_space, AcDb::kForWrite);
    AcDbObjectId added;
    if (entity.openStatus() != Acad::eOk || space.openStatus() != Acad::eOk)
        return added;
    std::unique_ptr<AcDbEntity> copy(static_cast<AcDbEntity*>(entity->clone()));
    if (copy != nullptr && space->appendAcDbEntity(added, copy.get()) == Acad::eOk)
        copy.release()->close(); // the drawing's now
    return added;
}

// Gives a copy the place and the look that the original has in the reference.
void CLayerExtract::Settle(AcDbObjectId original, AcDbObjectId id, const ReferenceContext& context) {
    UnlockFor(id);
    const AcDbEntityPointer source(original, AcDb::kForRead);
    const AcDbEntityPointer copy(id, AcDb::kForWrite);
    if (source.openStatus() != Acad::eOk || copy.openStatus() != Acad::eOk) {
        ++m_left;
        return;
    }
    copy->setLayer(TargetLayer(SeenLayer(*source.object(), context)), !IsReference(id), true);
    if (copy->color().isByBlock())
        copy->setColor(context.m_color);
    if (copy->lineWeight() == AcDb::kLnWtByBlock)
        copy->setLineWeight(context.m_lineWeight);
    if (copy->transformBy(context.m_placing) == Acad::eOk) {
        ++m_copied;
        return;
    }
    auto substitutes = Substitutes(*copy.object(), context.m_placing);
    copy->erase();
    const AcDbBlockTableRecordPointer space(m_space, AcDb::kForWrite);
    if (substitutes.empty() || space.openStatus() != Acad::eOk) {
        ++m_left;
        return;
    }
    for (auto& part : substitutes)
        if (space->appendAcDbEntity(part.get()) == Acad::eOk)
            part.release()->close(); // the drawing's now
    ++m_copied;
}

void CLayerExtract::UnlockFor(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForRead);
    if (entity.openStatus() == Acad::eOk &&
        SetLayerState(entity->layerId(), LayerState::Locked, false) == LayerChange::Done)
        m_unlocked.insert(entity->layerId());
}

// Made as the layer is seen here when the drawing lacks it.
AcDbObjectId CLayerExtract::TargetLayer(AcDbObjectId seen) {
    const auto [at, isNew] = m_targets.try_emplace(seen, seen);
    CString name = GetLayerName(seen);
    const int bar = name.Find(L'|');
    if (!isNew || bar < 0)
        return at->second;
    name = m_namesReference ? name.Left(bar) + L"$0$" + name.Mid(bar + 1) : name.Mid(bar + 1);
    at->second = ZefExport::GetLayerIdFromString(name);
    const AcDbLayerTableRecordPointer shown(seen, AcDb::kForRead);
    if (shown.openStatus() != Acad::eOk)
        return at->second;
    if (at->second.isNull()) {
        auto layer = std::make_unique<AcDbLayerTableRecord>();
        const AcDbLayerTablePointer table(Drawing().layerTableId(), AcDb::kForWrite);
        layer->setName(name);
        if (table.openStatus() == Acad::eOk && table->add(at->second, layer.get()) == Acad::eOk)
            layer.release()->close(); // the table's now
    } else if (m_known.contains(at->second)) {
        return at->second;
    }
    const AcDbLayerTableRecordPointer target(at->second, AcDb::kForWrite);
    if (target.openStatus() == Acad::eOk) {
        target->setColor(shown->color());
        target->setLineWeight(shown->lineWeight());
        target->setIsPlottable(shown->isPlottable());
    }
    return at->second;
}
