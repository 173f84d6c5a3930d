#include "acgi.h"
#include "dbsymtb.h"
#include "dbtable.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_classes.h"
#include "host/db/core/symbol_names.h"
#include "host/db/custom/proxy_graphics.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <cmath>

ACRX_DXF_DEFINE_MEMBERS(AcDbTable, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, ACAD_TABLE,
                        "ObjectDBX Classes")

namespace {

constexpr int reference_order[] = {2, 10, 20, 30, 210, 220, 230};
constexpr dxf::group_place reference_place{"AcDbBlockReference", reference_order};
constexpr dxf::group_place table_place{"AcDbTable"};

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

AcDbTable::AcDbTable() {
    imp().begin_as(
        "0\nACAD_TABLE\n100\nAcDbEntity\n8\n0\n100\nAcDbBlockReference\n10\n0.0\n20\n0.0\n30\n0.0\n"
        "100\nAcDbTable\n11\n1.0\n21\n0.0\n31\n0.0\n91\n0\n92\n0\n");
}

AcDbTable::~AcDbTable() = default;

AcGePoint3d AcDbTable::position() const {
    assertReadEnabled();
    return AcGeMatrix3d::planeToWorld(normal()) * db::read_point(imp(), reference_place, 10);
}

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

AcGeVector3d AcDbTable::normal() const {
    assertReadEnabled();
    return db::read_normal(imp(), reference_place);
}

AcDbObjectId AcDbTable::blockTableRecord() const {
    assertReadEnabled();
    return imp().database != nullptr ? imp().database->id(block_of(imp())) : AcDbObjectId::kNull;
}

Adesk::UInt32 AcDbTable::numRows() const {
    assertReadEnabled();
    return static_cast<Adesk::UInt32>(std::max(db::read_integer(imp(), table_place, 91), 0));
}

Adesk::UInt32 AcDbTable::numColumns() const {
    assertReadEnabled();
    return static_cast<Adesk::UInt32>(std::max(db::read_integer(imp(), table_place, 92), 0));
}

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
