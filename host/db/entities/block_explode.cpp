// Taking references to blocks apart.
#include "dbelipse.h"
#include "dbents.h"
#include "host/db/core/open_objects.h"
#include "host/db/creation/new_entity.h"
#include "host/db/entities/block_reference_groups.h"

namespace {

void destroy(AcDbVoidPtrArray& parts, int from) {
    while (parts.length() > from) {
        delete static_cast<AcDbEntity*>(parts.last());
        parts.removeLast();
    }
}

// A circle or an arc as an ellipse, which stands uneven scales; null for other entities.
std::unique_ptr<AcDbEntity> as_ellipse(const AcDbEntity& entity) {
    const AcDbCircle* const circle = AcDbCircle::cast(&entity);
    const AcDbArc* const arc = AcDbArc::cast(&entity);
    if (circle == nullptr && arc == nullptr)
        return nullptr;
    const AcGeVector3d normal = circle != nullptr ? circle->normal() : arc->normal();
    const AcGeVector3d x = AcGeMatrix3d::planeToWorld(normal) * AcGeVector3d::kXAxis;
    auto ellipse =
        circle != nullptr
            ? std::make_unique<AcDbEllipse>(circle->center(), normal, x * circle->radius(), 1.0)
            : std::make_unique<AcDbEllipse>(arc->center(), normal, x * arc->radius(), 1.0, arc->startAngle(),
                                            arc->startAngle() + arc->totalAngle());
    ellipse->setPropertiesFrom(&entity);
    return ellipse;
}

// Appends a transformed copy of an entity, or of what it is made of where it can not follow as a whole.
Acad::ErrorStatus add_transformed(const AcDbEntity& entity, const AcGeMatrix3d& matrix,
                                  AcDbVoidPtrArray& parts, int depth = 0) {
    AcDbEntity* copy = nullptr;
    const Acad::ErrorStatus status = entity.getTransformedCopy(matrix, copy);
    if (status == Acad::eOk) {
        parts.append(copy);
        return status;
    }
    if (std::unique_ptr<AcDbEntity> ellipse = as_ellipse(entity);
        ellipse != nullptr && ellipse->transformBy(matrix) == Acad::eOk) {
        parts.append(ellipse.release()); // the caller's
        return Acad::eOk;
    }
    constexpr int deepest = 8;
    if (status != Acad::eCannotScaleNonUniformly || depth == deepest)
        return status;
    AcDbVoidPtrArray pieces;
    const Acad::ErrorStatus exploded = entity.explode(pieces);
    Acad::ErrorStatus worst = exploded == Acad::eOk ? Acad::eOk : status;
    for (int i = 0; i < pieces.length() && worst == Acad::eOk; ++i)
        worst = add_transformed(*static_cast<AcDbEntity*>(pieces[i]), matrix, parts, depth + 1);
    destroy(pieces, 0);
    return worst;
}

} // namespace

Acad::ErrorStatus AcDbBlockReference::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    const db::reference_groups groups(imp());
    const db::named_block block = db::block_of(imp(), groups.name, m_newBlock);
    if (!block)
        return Acad::eCannotExplodeEntity;
    const std::unique_ptr<AcDbObject> view = block.database->objects().view(block.record);
    const auto& record = static_cast<const AcDbBlockTableRecord&>(*view);
    if (record.isFromExternalReference() || !record.explodable())
        return Acad::eCannotExplodeEntity;
    const AcGeMatrix3d transform = groups.placing() * block.to_base();
    const int before = parts.length();
    for (const dxf::record_id id : block.database->blocks().entities(block.record)) {
        if (block.database->records().gone(id))
            continue;
        const std::unique_ptr<AcDbObject> entity = block.database->objects().view(id);
        if (add_transformed(static_cast<const AcDbEntity&>(*entity), transform, parts) != Acad::eOk) {
            destroy(parts, before); // nothing gets lost by half
            return Acad::eCannotExplodeEntity;
        }
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockReference::explodeToOwnerSpace() const {
    assertReadEnabled();
    if (imp().database == nullptr)
        return Acad::eNoDatabase;
    const dxf::record_table& records = imp().database->records();
    const dxf::record_id owner = records.find(records.owner_handle(imp().record));
    if (owner == dxf::no_record)
        return Acad::eInvalidInput;
    AcDbVoidPtrArray parts;
    Acad::ErrorStatus status = explode(parts);
    std::vector<dxf::record_id> added;
    for (int i = 0; i < parts.length(); ++i) {
        std::unique_ptr<AcDbEntity> entity(static_cast<AcDbEntity*>(parts[i]));
        AcDbObjectId id;
        if (status == Acad::eOk)
            status = db::add_entity(*imp().database, owner, *entity, id);
        if (status != Acad::eOk)
            continue;
        added.push_back(imp().database->record(id));
        entity.release()->close(); // the database's now
    }
    if (status != Acad::eOk)
        for (const dxf::record_id record : added)
            imp().database->objects().set_erased(record, true);
    return status;
}
