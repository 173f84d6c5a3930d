#include "acgi.h"
#include "acutmem.h"
#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/entry_fields.h"
#include "host/db/tables/shape_files.h"
#include "host/dxf/record_header.h"

#include <cmath>

namespace {

constexpr db::field shape_fields[] = {
    db::number(39), db::flat_point(10, "0.0"),   db::number(40, "1.0"), db::number(2, ""),
    db::angle(50),  db::number(41).or_else(1.0), db::angle(51),         db::normal(),
};
constexpr auto shape_place = db::section_of<shape_fields>("AcDbShape");

} // namespace

ENTITY_CLASS(AcDbShape, AcDbEntity, SHAPE, shape_place)

FIELD_MEMBERS(AcDbShape, position, setPosition, shape_place, 10)
FIELD_GETTER(AcDbShape, size, shape_place, 40)

Acad::ErrorStatus AcDbShape::setSize(double size) {
    assertWriteEnabled();
    if (!(size > 0.0))
        return Acad::eInvalidInput;
    db::write_real(imp(), shape_place, 40, size);
    return Acad::eOk;
}

ACHAR* AcDbShape::name() const {
    assertReadEnabled();
    ACHAR* copy = nullptr;
    acutNewString(imp().decode(dxf::trimmed(imp().groups().text(shape_place, 2).value_or(""))).c_str(), copy);
    return copy;
}

FIELD_GETTER(AcDbShape, rotation, shape_place, 50)

Acad::ErrorStatus AcDbShape::setRotation(double rotation) {
    assertWriteEnabled();
    db::write_real(imp(), shape_place, 50, db::degrees(rotation));
    return Acad::eOk;
}

FIELD_GETTER(AcDbShape, widthFactor, shape_place, 41)
FIELD_GETTER(AcDbShape, oblique, shape_place, 51)
FIELD_GETTER(AcDbShape, thickness, shape_place, 39)
FIELD_GETTER(AcDbShape, normal, shape_place, 210)

namespace {

// The shape of that name in one of the drawing's shape files; null where none of them is here.
std::shared_ptr<const gi::shape_font> file_with(AcDbImpDatabase* database, std::string_view name,
                                                const gi::shape*& found) {
    found = nullptr;
    if (database == nullptr)
        return nullptr;
    for (const dxf::record_id style : database->names().entries(db::table_kind::text_style)) {
        const dxf::group_list groups(database->records().text(style));
        constexpr std::int64_t shape_bit = 1;
        if ((groups.integer(db::text_style_place, 70).value_or(0) & shape_bit) == 0)
            continue;
        const auto file = database->part<db::shape_files>().of(
            database->drawing().codec().decode(groups.text(db::text_style_place, 3).value_or("")));
        const auto number = file != nullptr ? file->number_of(name) : std::nullopt;
        if (number && (found = file->find(*number)) != nullptr)
            return file;
    }
    return nullptr;
}

} // namespace

Adesk::Boolean AcDbShape::subWorldDraw(AcGiWorldDraw* draw) {
    const AcGeVector3d up = normal();
    const AcGeVector3d along =
        AcGeMatrix3d::planeToWorld(up) * AcGeVector3d(std::cos(rotation()), std::sin(rotation()), 0.0);
    const AcGeVector3d x = along * (size() * widthFactor());
    const AcGeVector3d y = (up.crossProduct(along) + along * std::tan(oblique())) * size();
    const AcGePoint3d at = position();
    draw->subEntityTraits().setThickness(thickness());
    const gi::shape* shape = nullptr;
    const auto file =
        file_with(imp().database, dxf::trimmed(imp().groups().text(shape_place, 2).value_or("")), shape);
    if (shape != nullptr) {
        for (const std::vector<AcGePoint2d>& stroke : shape->strokes) {
            std::vector<AcGePoint3d> points;
            points.reserve(stroke.size());
            for (const AcGePoint2d& point : stroke)
                points.push_back(at + x * point.x + y * point.y);
            draw->geometry().polyline(static_cast<Adesk::UInt32>(points.size()), points.data(), &up);
        }
        return true;
    }
    // Its size is all that is known.
    const AcGePoint3d rim[] = {at, at + x, at + x + y, at + y, at};
    draw->geometry().polyline(5, rim, &up);
    return true;
}

Acad::ErrorStatus AcDbShape::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(normal(), matrix, change))
        return Acad::eCannotScaleNonUniformly;
    const AcGePoint3d moved = matrix * position();
    const double turned = change.turned(rotation());
    db::write_real(imp(), shape_place, 39, thickness() * (matrix * normal()).length());
    db::write_real(imp(), shape_place, 40, size() * change.scale);
    if (change.mirrored) { // read from behind
        db::write_real(imp(), shape_place, 41, -widthFactor(), 1.0);
        db::write_real(imp(), shape_place, 51, -db::degrees(oblique()));
    }
    db::write_real(imp(), shape_place, 50,
                   db::degrees(change.mirrored ? turned + 3.14159265358979323846 : turned));
    db::write_normal(imp(), shape_place, change.normal);
    return setPosition(moved);
}
