#include "dbdim.h"

#include "acgi.h"
#include "dbsymtb.h"
#include "host/db/core/blocks.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_classes.h"
#include "host/db/core/symbol_names.h"
#include "host/db/custom/proxy_graphics.h"
#include "host/db/entities/dimension_kinds.h"
#include "host/db/entities/dimension_look.h"
#include "host/db/tables/dimension_style.h"
#include "host/dxf/record_header.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbDimension, AcDbEntity)

namespace {

constexpr int text_was_placed = 128; // a bit of group 70, above the kind

dxf::record_id block_of(const AcDbImpObject& imp) {
    const std::string_view name = dxf::trimmed(imp.groups().text(db::dimension_place, 2).value_or(""));
    if (imp.database == nullptr || name.empty())
        return dxf::no_record;
    return imp.database->names().find(db::table_kind::block, imp.decode(name));
}

AcGeMatrix3d block_to_world(const AcDbDimension& dimension) {
    return AcGeMatrix3d::translation(dimension.dimBlockPosition().asVector());
}

} // namespace

AcDbDimension::AcDbDimension() = default;

VALUE_GETTER(AcDbDimension, dimBlockId,
             imp().database != nullptr ? imp().database->id(block_of(imp())) : AcDbObjectId::kNull)

Acad::ErrorStatus AcDbDimension::setDimBlockId(const AcDbObjectId& blockId) {
    assertWriteEnabled();
    if (imp().database == nullptr)
        return Acad::eNoDatabase;
    const dxf::record_id record = imp().database->record(blockId);
    if (record == dxf::no_record)
        return Acad::eNullObjectId;
    if (db::class_of(*imp().database, record) != AcDbBlockTableRecord::desc())
        return Acad::eWrongObjectType;
    imp().edit().set_text(db::dimension_place, 2, imp().encode(imp().database->names().name_of(record)));
    return Acad::eOk;
}

FIELD_GETTER(AcDbDimension, dimBlockPosition, db::dimension_place, 12)

Acad::ErrorStatus AcDbDimension::setDimBlockPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    if (!position.isEqualTo(dimBlockPosition()))
        db::write_point(imp(), db::dimension_place, 12, AcGeMatrix3d::worldToPlane(normal()) * position);
    return Acad::eOk;
}

FIELD_GETTER(AcDbDimension, textPosition, db::dimension_place, 11)

Acad::ErrorStatus AcDbDimension::setTextPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    return db::set_dimension_point(imp(), db::dimension_place, 11,
                                   AcGeMatrix3d::worldToPlane(normal()) * position);
}

VALUE_GETTER(AcDbDimension, isUsingDefaultTextPosition,
             !db::read_bit(imp(), db::dimension_place, 70, text_was_placed))
BIT_SWITCHES(AcDbDimension, useSetTextPosition, useDefaultTextPosition, db::dimension_place, 70,
             text_was_placed)
FIELD_GETTER(AcDbDimension, normal, db::dimension_place, 210)

Acad::ErrorStatus AcDbDimension::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    if (normal.isZeroLength())
        return Acad::eInvalidInput;
    const AcGePoint3d text = textPosition();
    db::leave_block(imp());
    db::write_normal(imp(), db::dimension_place, normal.normal());
    return setTextPosition(text);
}

// That of the text.
VALUE_GETTER(AcDbDimension, elevation, db::read_real(imp(), db::dimension_place, 31))
FIELD_GETTER(AcDbDimension, dimensionText, db::dimension_place, 1)

Acad::ErrorStatus AcDbDimension::setDimensionText(const ACHAR* text) {
    assertWriteEnabled();
    if (text == nullptr)
        return Acad::eInvalidInput;
    imp().edit().set_text(db::dimension_place, 1, imp().encode(text));
    db::leave_block(imp());
    return Acad::eOk;
}

FIELD_GETTER(AcDbDimension, textRotation, db::dimension_place, 53)

Acad::ErrorStatus AcDbDimension::setTextRotation(double rotation) {
    assertWriteEnabled();
    db::write_real(imp(), db::dimension_place, 53, db::degrees(rotation));
    db::leave_block(imp());
    return Acad::eOk;
}

FIELD_GETTER(AcDbDimension, horizontalRotation, db::dimension_place, 51)
VALUE_GETTER(AcDbDimension, dimensionStyle, db::dimension_style_id(imp(), db::dimension_place))

Acad::ErrorStatus AcDbDimension::setDimensionStyle(AcDbObjectId styleId) {
    assertWriteEnabled();
    if (imp().database == nullptr)
        return Acad::eNoDatabase;
    const dxf::record_id record = imp().database->record(styleId);
    if (record == dxf::no_record)
        return Acad::eNullObjectId;
    if (imp().database->records().type(record) != dxf::type_dimstyle)
        return Acad::eWrongObjectType;
    imp().edit().set_text(db::dimension_place, 3, imp().encode(imp().database->names().name_of(record)));
    db::leave_block(imp());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDimension::measurement(double& measurement) const {
    assertReadEnabled();
    const auto saved = imp().groups().real(db::dimension_place, 42);
    measurement = saved ? *saved : db::measured(*this);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDimension::recomputeDimBlock(bool /*forceUpdate*/) {
    return Acad::eNotImplementedYet;
}

Adesk::Boolean AcDbDimension::subWorldDraw(AcGiWorldDraw* draw) {
    if (const dxf::record_id record = block_of(imp()); record != dxf::no_record) {
        const std::unique_ptr<AcDbObject> block = imp().database->objects().view(record);
        draw->geometry().pushModelTransform(block_to_world(*this));
        draw->geometry().draw(block.get());
        draw->geometry().popModelTransform();
    } else {
        db::draw_plain_dimension(*this, *draw);
    }
    return true;
}

Acad::ErrorStatus AcDbDimension::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(normal(), matrix, change))
        return Acad::eCannotScaleNonUniformly;
    const db::dimension_kind& kind = db::kind_of(*this);
    const bool only_moved = matrix == AcGeMatrix3d::translation(matrix.translation());
    const AcGePoint3d text = matrix * textPosition();
    const AcGePoint3d block = dimBlockPosition() + matrix.translation();
    const auto measured_before = imp().groups().real(db::dimension_place, 42);
    db::write_point(imp(), db::dimension_place, 10, matrix * db::read_point(imp(), db::dimension_place, 10));
    for (const int code : kind.points)
        if (code != 0 && imp().groups().find(kind.place, code) != dxf::group_list::npos)
            db::write_point(imp(), kind.place, code, matrix * db::read_point(imp(), kind.place, code));
    db::write_real(imp(), kind.place, 40, db::read_real(imp(), kind.place, 40) * change.scale);
    const double turn = change.turned(0.0);
    if (AcDbRotatedDimension::cast(this) != nullptr)
        db::write_real(imp(), kind.place, 50,
                       db::degrees(change.turned(db::radians(db::read_real(imp(), kind.place, 50)))));
    if (turn != 0.0 && AcDbOrdinateDimension::cast(this) != nullptr)
        db::write_real(imp(), db::dimension_place, 51, db::degrees(horizontalRotation() - turn));
    if (!only_moved)
        db::leave_block(imp());
    db::write_normal(imp(), db::dimension_place, change.normal);
    db::write_point(imp(), db::dimension_place, 11, AcGeMatrix3d::worldToPlane(change.normal) * text);
    if (only_moved)
        setDimBlockPosition(block);
    else if (measured_before)
        imp().edit().set_real(db::dimension_place, 42,
                              *measured_before * (kind.measures_angle ? 1.0 : change.scale));
    db::write_proxy_graphics(imp(), {});
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDimension::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    const dxf::record_id record = block_of(imp());
    if (record == dxf::no_record)
        return Acad::eNotApplicable;
    const int before = parts.length();
    for (const dxf::record_id id : imp().database->blocks().drawn_of(record)) {
        const std::unique_ptr<AcDbObject> view = imp().database->objects().view(id);
        AcDbEntity* part = nullptr;
        const auto* const entity = AcDbEntity::cast(view.get());
        if (entity != nullptr && entity->getTransformedCopy(block_to_world(*this), part) == Acad::eOk) {
            parts.append(part); // the caller's
            continue;
        }
        while (parts.length() > before) {
            delete static_cast<AcDbEntity*>(parts.last());
            parts.removeLast();
        }
        return Acad::eCannotExplodeEntity;
    }
    return Acad::eOk;
}
