#include "acgi.h"
#include "dbsymtb.h"
#include "dbtable.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_classes.h"
#include "host/db/core/symbol_names.h"
#include "host/db/custom/proxy_graphics.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr db::field reference_fields[] = {db::number(2), db::flat_point(10, "0.0"), db::normal()};
constexpr auto reference_place = db::section_of<reference_fields>("AcDbBlockReference");
constexpr db::field table_fields[] = {db::point(11, "1.0 0.0 0.0"), db::number(91, "0"), db::number(92, "0")};
constexpr db::section table_place{{"AcDbTable"}, table_fields};

dxf::record_id block_of(const AcDbImpObject& imp) {
    if (imp.database == nullptr)
        return dxf::no_record;
    const std::string_view name = dxf::trimmed(imp.groups().text(reference_place, 2).value_or(""));
    const dxf::record_id named = imp.database->names().find(db::table_kind::block, imp.decode(name));
    if (named != dxf::no_record)
        return named;
    const dxf::record_id found = imp.database->records().find(imp.groups().handle(table_place, 343));
    return found != dxf::no_record && db::class_of(*imp.database, found) == AcDbBlockTableRecord::desc()
               ? found
               : dxf::no_record;
}

} // namespace

ENTITY_CLASS(AcDbTable, AcDbEntity, ACAD_TABLE, reference_place, table_place)

FIELD_GETTER(AcDbTable, position, reference_place, 10)

Acad::ErrorStatus AcDbTable::setPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    db::write_point(imp(), reference_place, 10, AcGeMatrix3d::worldToPlane(normal()) * position);
    db::write_proxy_graphics(imp(), {});
    return Acad::eOk;
}

AcGeVector3d AcDbTable::direction() const {
    assertReadEnabled();
    const AcGeVector3d direction = db::read_point(imp(), table_place, 11).asVector();
    return direction.isZeroLength() ? AcGeMatrix3d::planeToWorld(normal()) * AcGeVector3d::kXAxis
                                    : direction.normal();
}

FIELD_GETTER(AcDbTable, normal, reference_place, 210)
VALUE_GETTER(AcDbTable, blockTableRecord,
             imp().database != nullptr ? imp().database->id(block_of(imp())) : AcDbObjectId::kNull)
VALUE_GETTER(AcDbTable, numRows,
             static_cast<Adesk::UInt32>(std::max(db::read_integer(imp(), table_place, 91), 0)))
VALUE_GETTER(AcDbTable, numColumns,
             static_cast<Adesk::UInt32>(std::max(db::read_integer(imp(), table_place, 92), 0)))

Adesk::Boolean AcDbTable::subWorldDraw(AcGiWorldDraw* draw) {
    const dxf::record_id record = block_of(imp());
    if (record == dxf::no_record) {
        db::draw_proxy_graphics(db::read_proxy_graphics(imp()), imp(), *draw);
        return true;
    }
    AcGeMatrix3d to_world;
    to_world.setCoordSystem(position(), direction(), normal().crossProduct(direction()), normal());
    draw->geometry().pushModelTransform(to_world);
    draw->geometry().draw(imp().database->objects().view(record).get());
    draw->geometry().popModelTransform();
    return true;
}

Acad::ErrorStatus AcDbTable::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    constexpr double slack = 1e-6;
    if (!db::change_plane(normal(), matrix, change) || change.mirrored ||
        std::fabs(change.scale - 1.0) > slack)
        return Acad::eCannotScaleNonUniformly;
    const AcGePoint3d moved = matrix * position();
    const AcGeVector3d along = matrix * direction();
    db::write_normal(imp(), reference_place, change.normal);
    db::write_point(imp(), table_place, 11, AcGePoint3d::kOrigin + along.normal());
    return setPosition(moved);
}
