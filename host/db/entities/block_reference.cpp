#include "acgi.h"
#include "base/case_fold.h"
#include "dbents.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/part_iterator.h"
#include "host/db/core/record_classes.h"
#include "host/db/core/symbol_names.h"
#include "host/db/creation/new_entity.h"
#include "host/db/entities/block_array.h"
#include "host/db/entities/block_clip.h"
#include "host/db/entities/block_reference_groups.h"
#include "host/dxf/record_header.h"
#include "host/view/extents.h"
#include "host/view/tracer.h"

namespace {

// Does something to every attribute of a reference that is not erased, open as it is wanted. Those that
// somebody has open already, or that are on locked layers, are left out.
template<class Do>
void for_attributes(const AcDbImpObject& object, AcDb::OpenMode mode, Do act) {
    if (object.database == nullptr) {
        for (const std::unique_ptr<AcDbObject>& part : object.parts)
            if (AcDbAttribute* const attribute = AcDbAttribute::cast(part.get()))
                act(*attribute);
        return;
    }
    for (const dxf::record_id part : db::parts_of(object, "ATTRIB")) {
        AcDbAttribute* attribute = nullptr;
        if (acdbOpenObject(attribute, object.database->id(part), mode) != Acad::eOk)
            continue;
        act(*attribute);
        attribute->close();
    }
}

void draw_attributes(const AcDbImpObject& object, AcGiGeometry& geometry) {
    if (object.database == nullptr) {
        for (const std::unique_ptr<AcDbObject>& part : object.parts)
            geometry.draw(part.get());
        return;
    }
    const dxf::record_table& records = object.database->records();
    for (dxf::record_id part = records.next(object.record);
         part != dxf::no_record && records.kind(part) == dxf::record_kind::part; part = records.next(part))
        if (records.type(part) == dxf::type_attrib && !records.gone(part))
            geometry.draw(object.database->objects().view(part).get());
}

} // namespace

ENTITY_CLASS(AcDbBlockReference, AcDbEntity, INSERT, db::plain_place)

AcDbBlockReference::AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId block)
    : AcDbBlockReference() {
    setBlockTableRecord(block);
    setPosition(position);
}

AcDbObjectId AcDbBlockReference::blockTableRecord() const {
    assertReadEnabled();
    if (imp().database == nullptr)
        return m_newBlock;
    const db::named_block block = db::block_of(imp(), db::reference_groups(imp()).name, m_newBlock);
    return block ? block.database->id(block.record) : AcDbObjectId::kNull;
}

Acad::ErrorStatus AcDbBlockReference::setBlockTableRecord(AcDbObjectId block) {
    assertWriteEnabled();
    dxf::record_id record = dxf::no_record;
    AcDbImpDatabase* const database = AcDbImpDatabase::find(block, record);
    if (database == nullptr || db::class_of(*database, record) != AcDbBlockTableRecord::desc())
        return Acad::eWrongObjectType;
    if (imp().database != nullptr && imp().database != database)
        return Acad::eWrongDatabase;
    const std::wstring name = database->names().name_of(record);
    const db::section& place = db::place_of(imp());
    if (!base::equal_no_case(imp().decode(imp().groups().text(place, 2).value_or("")), name))
        imp().edit().set_text(place, 2, imp().encode(name));
    if (imp().database == nullptr)
        m_newBlock = block;
    return Acad::eOk;
}

AcGePoint3d AcDbBlockReference::position() const {
    assertReadEnabled();
    const db::reference_groups groups(imp());
    return AcGeMatrix3d::planeToWorld(groups.normal) * groups.position;
}

Acad::ErrorStatus AcDbBlockReference::setPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    db::write_position(imp(), AcGeMatrix3d::worldToPlane(normal()) * position);
    return Acad::eOk;
}

VALUE_GETTER(AcDbBlockReference, scaleFactors, db::reference_groups(imp()).scale)

Acad::ErrorStatus AcDbBlockReference::setScaleFactors(const AcGeScale3d& scale) {
    assertWriteEnabled();
    for (unsigned axis = 0; axis < 3; ++axis)
        if (scale[axis] == 0.0 || !std::isfinite(scale[axis]))
            return Acad::eInvalidInput;
    for (unsigned axis = 0; axis < 3; ++axis)
        db::write_real(imp(), db::place_of(imp()), 41 + static_cast<int>(axis), scale[axis], 1.0);
    return Acad::eOk;
}

VALUE_GETTER(AcDbBlockReference, rotation, db::in_one_turn(db::reference_groups(imp()).rotation))

Acad::ErrorStatus AcDbBlockReference::setRotation(double angle) {
    assertWriteEnabled();
    if (!std::isfinite(angle))
        return Acad::eInvalidInput;
    db::write_rotation(imp(), angle);
    return Acad::eOk;
}

VALUE_GETTER(AcDbBlockReference, normal, db::reference_groups(imp()).normal)

Acad::ErrorStatus AcDbBlockReference::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    if (normal.isZeroLength())
        return Acad::eInvalidInput;
    const AcGePoint3d kept = position();
    db::write_normal(imp(), db::place_of(imp()), normal.normal());
    return setPosition(kept);
}

AcGeMatrix3d AcDbBlockReference::blockTransform() const {
    assertReadEnabled();
    const db::reference_groups groups(imp());
    const db::named_block block = db::block_of(imp(), groups.name, m_newBlock);
    return block ? groups.placing() * block.to_base() : groups.placing();
}

Acad::ErrorStatus AcDbBlockReference::setBlockTransform(const AcGeMatrix3d& transform) {
    assertWriteEnabled();
    const db::named_block block = db::block_of(imp(), db::reference_groups(imp()).name, m_newBlock);
    const AcGeMatrix3d placing = block ? transform * block.to_base().inverse() : transform;
    return db::write_placing(imp(), placing) ? Acad::eOk : Acad::eCannotScaleNonUniformly;
}

Acad::ErrorStatus AcDbBlockReference::appendAttribute(AcDbAttribute* attribute) {
    AcDbObjectId id;
    return appendAttribute(id, attribute);
}

Acad::ErrorStatus AcDbBlockReference::appendAttribute(AcDbObjectId& id, AcDbAttribute* attribute) {
    if (attribute == nullptr)
        return Acad::eNullObjectPointer;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!attribute->isNewObject())
        return Acad::eAlreadyInDb;
    if (imp().database != nullptr)
        return db::add_part(*imp().database, imp().record, *attribute, id);
    imp().parts.emplace_back(attribute); // the reference's from now on
    id = AcDbObjectId::kNull;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockReference::openAttribute(AcDbAttribute*& attribute, AcDbObjectId id,
                                                    AcDb::OpenMode mode, bool openErasedOne) const {
    attribute = nullptr;
    assertReadEnabled();
    const dxf::record_id wanted =
        imp().database != nullptr ? imp().database->record(id) : static_cast<dxf::record_id>(dxf::no_record);
    for (const dxf::record_id part : db::parts_of(imp(), "ATTRIB"))
        if (part == wanted)
            return acdbOpenObject(attribute, id, mode, openErasedOne);
    return Acad::eInvalidInput;
}

AcDbObjectIterator* AcDbBlockReference::attributeIterator() const {
    assertReadEnabled();
    return db::iterate_parts(imp(), "ATTRIB").release(); // the caller's
}

Acad::ErrorStatus AcDbBlockReference::geomExtentsBestFit(AcDbExtents& extents,
                                                         const AcGeMatrix3d& parent) const {
    assertReadEnabled();
    gi::extents_canvas canvas;
    gi::tracer(canvas, kAcGiForExtents, parent).draw(*this);
    if (gi::is_empty(canvas.extents()))
        return Acad::eInvalidExtents;
    extents = canvas.extents();
    return Acad::eOk;
}

PLANE_FIGURE(AcDbBlockReference)

AcRxObject* AcDbBlockReference::clone() const {
    auto* const copy = static_cast<AcDbBlockReference*>(AcDbEntity::clone());
    if (copy == nullptr)
        return nullptr;
    copy->m_newBlock = blockTableRecord();
    const auto add = [&](const AcDbObject& attribute) {
        if (AcRxObject* const made = attribute.clone())
            copy->imp().parts.emplace_back(static_cast<AcDbObject*>(made));
    };
    for (const std::unique_ptr<AcDbObject>& part : imp().parts)
        add(*part);
    for (const dxf::record_id part : db::parts_of(imp(), "ATTRIB"))
        if (!imp().database->records().gone(part))
            add(*imp().database->objects().view(part));
    return copy;
}

Adesk::Boolean AcDbBlockReference::subWorldDraw(AcGiWorldDraw* draw) {
    const db::reference_groups groups(imp());
    if (const db::named_block block = db::block_of(imp(), groups.name, m_newBlock)) {
        bool clipped = false;
        if (std::optional<AcGiClipBoundary> clip = db::clip_of(*this)) {
            // The boundary stands still over all rows and columns.
            draw->geometry().pushModelTransform(groups.placing() * block.to_base());
            clipped = draw->geometry().pushClipBoundary(&*clip);
            draw->geometry().popModelTransform();
        }
        db::draw_block_array(groups, block, *draw);
        if (clipped)
            draw->geometry().popClipBoundary();
    }
    draw_attributes(imp(), draw->geometry());
    return true;
}

Acad::ErrorStatus AcDbBlockReference::subTransformBy(const AcGeMatrix3d& matrix) {
    const db::reference_groups before(imp());
    const AcGeVector3d across = matrix * before.column_step();
    const AcGeVector3d up = matrix * before.row_step();
    if (!db::write_placing(imp(), matrix * before.placing()))
        return Acad::eCannotScaleNonUniformly;
    // Steps along axes that may point the other way now.
    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(normal());
    const AcGeVector3d x = plane * AcGeVector3d(std::cos(rotation()), std::sin(rotation()), 0.0);
    if (before.column_spacing != 0.0)
        db::write_near(imp(), db::place_of(imp()), 44, across.dotProduct(x), 0.0);
    if (before.row_spacing != 0.0)
        db::write_near(imp(), db::place_of(imp()), 45, up.dotProduct(normal().crossProduct(x)), 0.0);
    for_attributes(imp(), AcDb::kForWrite, [&](AcDbAttribute& attribute) { attribute.transformBy(matrix); });
    return Acad::eOk;
}

ACRX_CONS_DEFINE_MEMBERS(AcDbMInsertBlock, AcDbBlockReference, 0)

AcDbMInsertBlock::AcDbMInsertBlock() {
    imp().begin_as("0\nINSERT\n100\nAcDbEntity\n8\n0\n100\nAcDbMInsertBlock\n"
                   "2\n\n10\n0.0\n20\n0.0\n30\n0.0\n70\n1\n71\n1\n44\n0.0\n45\n0.0\n");
}

AcDbMInsertBlock::AcDbMInsertBlock(const AcGePoint3d& position, AcDbObjectId block, Adesk::Int16 columns,
                                   Adesk::Int16 rows, double columnSpacing, double rowSpacing)
    : AcDbMInsertBlock() {
    setBlockTableRecord(block);
    setPosition(position);
    setColumns(columns);
    setRows(rows);
    setColumnSpacing(columnSpacing);
    setRowSpacing(rowSpacing);
}

VALUE_GETTER(AcDbMInsertBlock, columns, static_cast<Adesk::Int16>(db::reference_groups(imp()).columns))

Acad::ErrorStatus AcDbMInsertBlock::setColumns(Adesk::Int16 columns) {
    assertWriteEnabled();
    if (columns < 1)
        return Acad::eInvalidInput;
    db::write_integer(imp(), db::place_of(imp()), 70, columns, 1);
    return Acad::eOk;
}

VALUE_GETTER(AcDbMInsertBlock, rows, static_cast<Adesk::Int16>(db::reference_groups(imp()).rows))

Acad::ErrorStatus AcDbMInsertBlock::setRows(Adesk::Int16 rows) {
    assertWriteEnabled();
    if (rows < 1)
        return Acad::eInvalidInput;
    db::write_integer(imp(), db::place_of(imp()), 71, rows, 1);
    return Acad::eOk;
}

VALUE_GETTER(AcDbMInsertBlock, columnSpacing, db::reference_groups(imp()).column_spacing)

Acad::ErrorStatus AcDbMInsertBlock::setColumnSpacing(double spacing) {
    assertWriteEnabled();
    db::write_real(imp(), db::place_of(imp()), 44, spacing);
    return Acad::eOk;
}

VALUE_GETTER(AcDbMInsertBlock, rowSpacing, db::reference_groups(imp()).row_spacing)

Acad::ErrorStatus AcDbMInsertBlock::setRowSpacing(double spacing) {
    assertWriteEnabled();
    db::write_real(imp(), db::place_of(imp()), 45, spacing);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMInsertBlock::subExplode(AcDbVoidPtrArray& /*parts*/) const {
    return Acad::eCannotExplodeEntity;
}
