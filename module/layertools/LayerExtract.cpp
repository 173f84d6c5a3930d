#include "module/layertools/LayerExtract.h"
#include "module/layertools/DrawingWalk.h"

#include "dbapserv.h"
#include "dbents.h"
#include "dbidmap.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/layertools/EntitySubstitutes.h"
#include "module/layertools/ExternalBlock.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/RecordCopies.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <algorithm>
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

// The linetype that a reference gives to what is in it, where its layer and the references around are known.
AcDbObjectId LinetypeOf(const AcDbBlockReference& reference, AcDbObjectId layerId,
                        const ReferenceContext& outer) {
    const AcDbObjectPointer<AcDbLinetypeTableRecord> own(reference.linetypeId(), AcDb::kForRead);
    AcString name = L"ByLayer";
    if (own.openStatus() == Acad::eOk)
        own->getName(name);
    if (name.compareNoCase(L"ByBlock") == 0)
        return outer.m_linetype;
    if (name.compareNoCase(L"ByLayer") != 0)
        return reference.linetypeId();
    const AcDbLayerTableRecordPointer layer(layerId, AcDb::kForRead);
    return layer.openStatus() == Acad::eOk ? layer->linetypeObjectId() : AcDbObjectId();
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
    inner.m_linetype = LinetypeOf(reference, inner.m_layer, outer);
    inner.m_placing = outer.m_placing * KolTool::GetPlacing(reference, definition);
    inner.m_clips = outer.m_clips;
    if (const auto clip = CReferenceClip::Of(reference, inner.m_placing))
        inner.m_clips.push_back(*clip);
    return inner;
}

// Whether a reference shows an entity of its block. Of what a block asks for, the constant is shown.
bool IsDrawn(AcDbObjectId id) {
    if (id.objectClass()->isDerivedFrom(AcDbViewport::desc()))
        return false;
    const AcDbObjectPointer<AcDbAttributeDefinition> asked(id, AcDb::kForRead);
    return asked.openStatus() != Acad::eOk || (asked->isConstant() && !asked->isInvisible());
}

// Calls `take` with each entity of a block that a reference to it draws.
void ForDrawn(AcDbObjectId definition, const std::function<void(AcDbObjectId)>& take) {
    const AcDbBlockTableRecordPointer block(definition, AcDb::kForRead);
    if (block.openStatus() != Acad::eOk)
        return;
    for (const AcDbObjectId id : EntitiesOf(*block.object()))
        if (IsDrawn(id))
            take(id);
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
    for (const AcDbObjectId id : RecordsOf(Drawing().blockTableId())) {
        const AcDbBlockTableRecordPointer block(id, AcDb::kForRead);
        if (block.openStatus() == Acad::eOk)
            names.insert(SmallName(*block.object()));
    }
    return names;
}

bool IsOutside(const AcDbEntity& entity, const ReferenceContext& context) {
    AcDbExtents box;
    return !context.m_clips.empty() && entity.getGeomExtents(box) == Acad::eOk &&
           std::ranges::any_of(context.m_clips, [&](const CReferenceClip& clip) {
               return clip.Look(box, context.m_placing) == CReferenceClip::Sight::Outside;
           });
}

bool IsWithin(const AcDbEntity& entity, const ReferenceContext& context) {
    AcDbExtents box;
    return context.m_clips.empty() || entity.getGeomExtents(box) != Acad::eOk ||
           std::ranges::all_of(context.m_clips, [&](const CReferenceClip& clip) {
               return clip.Look(box, context.m_placing) == CReferenceClip::Sight::Inside;
           });
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
    AcDbLinetypeTablePointer linetypes(Drawing().linetypeTableId(), AcDb::kForRead);
    if (linetypes.openStatus() == Acad::eOk) {
        linetypes->getAt(L"ByBlock", m_byBlock);
        linetypes->getAt(L"Continuous", m_continuous);
        linetypes.close();
    }
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
    LookAtAttributes(reference, outer);
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
        if (entity.openStatus() != Acad::eOk || IsOutside(*entity.object(), context))
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
            if (!m_layers.contains(layer))
                return;
            if (const auto* const constant = AcDbAttributeDefinition::cast(entity.object()))
                CopyText(*constant, context);
            else
                chosen.append(id);
            return;
        }
        const AcDbBlockTableRecordPointer inner(nested->blockTableRecord(), AcDb::kForRead);
        const bool isBlock = inner.openStatus() == Acad::eOk && !inner->isFromExternalReference();
        const ReferenceContext within =
            isBlock ? ContextOf(*nested, *inner.object(), context) : ReferenceContext();
        if (m_layers.contains(layer) && isBlock && within.m_clips.size() == context.m_clips.size() &&
            IsWithin(*entity.object(), context) && IsWholeChosen(nested->blockTableRecord(), within, 0))
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

// Attributes stand where the reference does.
void CLayerExtract::LookAtAttributes(const AcDbBlockReference& reference, const ReferenceContext& outer) {
    const std::unique_ptr<AcDbObjectIterator> each(reference.attributeIterator());
    for (; each != nullptr && !each->done(); each->step()) {
        const AcDbObjectPointer<AcDbAttribute> attribute(each->objectId(), AcDb::kForRead);
        if (attribute.openStatus() != Acad::eOk || attribute->isInvisible() ||
            IsOutside(*attribute.object(), outer))
            continue;
        const AcDbObjectId layer = SeenLayer(*attribute.object(), outer);
        if (m_act == Act::Count && !layer.isNull())
            ++m_found[layer];
        else if (m_act == Act::Copy && m_layers.contains(layer))
            CopyText(*attribute.object(), outer);
    }
}

void CLayerExtract::CopyText(const AcDbText& text, const ReferenceContext& context) {
    std::unique_ptr<AcDbEntity> made = AsText(text);
    AcDbBlockTableRecordPointer space(m_space, AcDb::kForWrite);
    AcDbObjectId added;
    if (space.openStatus() != Acad::eOk || space->appendAcDbEntity(added, made.get()) != Acad::eOk) {
        ++m_left;
        return;
    }
    made.release()->close(); // the drawing's now
    space.close();
    Settle(text.objectId(), added, context);
}

// Leaves of a line what the clips show. False when that is nothing.
bool CLayerExtract::CutLine(AcDbLine& line, const ReferenceContext& context) {
    using Piece = std::pair<AcGePoint3d, AcGePoint3d>;
    std::vector<Piece> pieces = {{line.startPoint(), line.endPoint()}};
    for (const CReferenceClip& clip : context.m_clips) {
        std::vector<Piece> shown;
        for (const auto& [from, to] : pieces)
            for (const auto& part : clip.Cut(from, to))
                shown.emplace_back(from + (to - from) * part.first, from + (to - from) * part.second);
        pieces = std::move(shown);
    }
    if (pieces.empty()) {
        line.erase();
        return false;
    }
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        std::unique_ptr<AcDbLine> other(static_cast<AcDbLine*>(line.clone()));
        other->setStartPoint(pieces[i].first);
        other->setEndPoint(pieces[i].second);
        const AcDbBlockTableRecordPointer space(m_space, AcDb::kForWrite);
        if (space.openStatus() == Acad::eOk && space->appendAcDbEntity(other.get()) == Acad::eOk)
            other.release()->close(); // the drawing's now
    }
    line.setStartPoint(pieces[0].first);
    line.setEndPoint(pieces[0].second);
    return true;
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
    if (!m_byBlock.isNull() && copy->linetypeId() == m_byBlock) {
        const AcDbObjectId linetype = RecordCopies::Linetype(context.m_linetype);
        copy->setLinetype(linetype.isNull() ? m_continuous : linetype, false);
    }
    const bool isCut = !IsWithin(*source.object(), context);
    auto* const line = AcDbLine::cast(copy.object());
    const Acad::ErrorStatus status = copy->transformBy(context.m_placing);
    if (status == Acad::eOk && line != nullptr && isCut) {
        m_copied += CutLine(*line, context) ? 1 : 0;
        return;
    }
    m_uncut += isCut ? 1 : 0;
    if (status == Acad::eOk) {
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
