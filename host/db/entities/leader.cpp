#include "acgi.h"
#include "base/number_text.h"
#include "dblead.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/custom/proxy_graphics.h"
#include "host/db/entities/arrowhead.h"
#include "host/db/entities/imp_curve.h"
#include "host/db/tables/dimension_style.h"
#include "host/ge/bspline.h"

namespace {

constexpr db::field leader_fields[] = {
    db::number(3, "Standard"),
    db::number(71, "1").or_else(1), // an arrowhead
    db::number(72, "0"),            // splined
    db::number(73, "3"),            // kind of note
    db::number(74, "0"),
    db::number(75, "0"), // a hook line
    db::number(40, "0.0"),
    db::number(41, "0.0"), // height and width of the note
    db::number(76, "0"),   // vertices
    db::point(10),
    db::number(77),
    db::number(340),
    db::normal(),
    db::point(211),
    db::point(212),
    db::point(213), // offset of the note
};
constexpr auto leader_place = db::section_of<leader_fields>("AcDbLeader");

std::vector<AcGePoint3d> vertices(const AcDbImpObject& imp) {
    return db::read_points(imp, leader_place, 10);
}

// Behind the last vertex.
std::size_t end_of_vertices(const dxf::group_list& groups) {
    const auto [first, last] = groups.extent(leader_place);
    std::size_t end = first;
    for (std::size_t i = first; i < last; ++i) {
        const int code = groups.groups()[i].code;
        if (code == 10 || ((code == 20 || code == 30 || code == 76) && i >= end))
            end = i + 1;
    }
    return end;
}

ge::bspline curve_of(const AcDbImpObject& imp) {
    return ge::through(vertices(imp), {}, {});
}

void set_flag(AcDbImpObject& imp, int code, bool value) {
    imp.edit().set_integer(leader_place, code, value ? 1 : 0);
    db::write_proxy_graphics(imp, {});
}

} // namespace

ENTITY_CLASS(AcDbLeader, AcDbCurve, LEADER, leader_place)

FIELD_GETTER(AcDbLeader, normal, leader_place, 210)

int AcDbLeader::numVertices() const {
    assertReadEnabled();
    return static_cast<int>(vertices(imp()).size());
}

AcGePoint3d AcDbLeader::vertexAt(int index) const {
    assertReadEnabled();
    const std::vector<AcGePoint3d> points = vertices(imp());
    return index >= 0 && static_cast<std::size_t>(index) < points.size()
               ? points[static_cast<std::size_t>(index)]
               : AcGePoint3d();
}

Adesk::Boolean AcDbLeader::setVertexAt(int index, const AcGePoint3d& point) {
    assertWriteEnabled();
    if (index < 0 || index >= numVertices())
        return false;
    int at = 0;
    db::change_points(imp(), leader_place, 10,
                      [&](const AcGePoint3d& old) { return at++ == index ? point : old; });
    db::write_proxy_graphics(imp(), {});
    return true;
}

Adesk::Boolean AcDbLeader::appendVertex(const AcGePoint3d& point) {
    assertWriteEnabled();
    const int count = numVertices();
    dxf::group_list& groups = imp().edit();
    groups.set_integer(leader_place, 76, count + 1);
    const std::size_t end = end_of_vertices(groups);
    const dxf::group_list::fresh_group fresh[] = {
        {10, base::real_text(point.x)}, {20, base::real_text(point.y)}, {30, base::real_text(point.z)}};
    groups.splice(end, end, fresh);
    db::write_proxy_graphics(imp(), {});
    return true;
}

void AcDbLeader::removeLastVertex() {
    assertWriteEnabled();
    const int count = numVertices();
    if (count == 0)
        return;
    dxf::group_list& groups = imp().edit();
    const std::size_t end = end_of_vertices(groups);
    std::size_t begin = end - 1;
    while (groups.groups()[begin].code != 10)
        --begin;
    groups.splice(begin, end, {});
    groups.set_integer(leader_place, 76, count - 1);
    db::write_proxy_graphics(imp(), {});
}

FIELD_GETTER(AcDbLeader, hasArrowHead, leader_place, 71)

void AcDbLeader::enableArrowHead() {
    assertWriteEnabled();
    set_flag(imp(), 71, true);
}

void AcDbLeader::disableArrowHead() {
    assertWriteEnabled();
    set_flag(imp(), 71, false);
}

FIELD_GETTER(AcDbLeader, hasHookLine, leader_place, 75)
FIELD_GETTER(AcDbLeader, isSplined, leader_place, 72)

void AcDbLeader::setToSplineLeader() {
    assertWriteEnabled();
    set_flag(imp(), 72, true);
}

void AcDbLeader::setToStraightLeader() {
    assertWriteEnabled();
    set_flag(imp(), 72, false);
}

AcDbLeader::AnnoType AcDbLeader::annoType() const {
    assertReadEnabled();
    const int type = db::read_integer(imp(), leader_place, 73, kNoAnno);
    return type >= kMText && type <= kNoAnno ? static_cast<AnnoType>(type) : kNoAnno;
}

FIELD_GETTER(AcDbLeader, annotationObjId, leader_place, 340)
FIELD_GETTER(AcDbLeader, annoHeight, leader_place, 40)
FIELD_GETTER(AcDbLeader, annoWidth, leader_place, 41)
FIELD_GETTER(AcDbLeader, annotationOffset, leader_place, 213)
VALUE_GETTER(AcDbLeader, dimensionStyle, db::dimension_style_id(imp(), leader_place))

bool AcDbLeader::subMakePieces(AcDbImpCurve& pieces) const {
    if (isSplined()) {
        if (auto curve = std::make_shared<ge::bspline>(curve_of(imp())); !curve->points.empty())
            pieces.add_spline(std::move(curve));
        return true;
    }
    const std::vector<AcGePoint3d> points = vertices(imp());
    for (std::size_t i = 1; i < points.size(); ++i)
        pieces.add_line(points[i - 1], points[i], static_cast<double>(i - 1), static_cast<double>(i));
    return true;
}

Adesk::Boolean AcDbLeader::subWorldDraw(AcGiWorldDraw* draw) {
    std::vector<AcGePoint3d> points = vertices(imp());
    if (points.empty())
        return true;
    const AcGePoint3d first = points.front();
    AcGeVector3d pointing = points.size() > 1 ? first - points[1] : AcGeVector3d();
    const double first_length = pointing.length();
    if (isSplined()) {
        if (const ge::bspline curve = curve_of(imp()); !curve.points.empty()) {
            constexpr double fine = 1e-4; // of its first chord
            points.clear();
            for (const double t : ge::flattening(curve, first_length * fine))
                points.push_back(curve.at(t).point);
            pointing = -curve.at(curve.first()).first;
        }
    }
    const std::string_view style = db::dimension_style_of(imp(), leader_place);
    // Where texts stand above the line it goes on under the note.
    if (hasHookLine() && annoType() == kMText && points.size() > 1 &&
        db::style_real(imp(), style, 77, 0.0) != 0.0) {
        const AcGeVector3d along = (points.back() - points[points.size() - 2]).normal();
        points.push_back(points.back() + along * (annoWidth() + db::dimension_gap(imp(), style)));
    }
    draw->geometry().polyline(static_cast<Adesk::UInt32>(points.size()), points.data());
    const double size = db::arrow_size(imp(), style);
    if (hasArrowHead() && size > 0.0 && first_length >= 2.0 * size) // as the editor has room for it
        db::draw_arrowhead(imp(), db::style_handle(imp(), style, 341), first, pointing, normal(), size,
                           *draw);
    return true;
}

Acad::ErrorStatus AcDbLeader::subTransformBy(const AcGeMatrix3d& matrix) {
    const AcGeVector3d up = matrix * normal();
    if (up.isZeroLength())
        return Acad::eCannotScaleNonUniformly;
    db::change_points(imp(), leader_place, 10, [&](const AcGePoint3d& old) { return matrix * old; });
    for (const int code : {211, 212, 213})
        if (imp().groups().find(leader_place, code) != dxf::group_list::npos) {
            const AcGeVector3d moved = matrix * db::read_point(imp(), leader_place, code).asVector();
            db::write_point(imp(), leader_place, code,
                            AcGePoint3d::kOrigin + (code == 211 ? moved.normal() : moved));
        }
    for (const int code : {40, 41})
        db::write_real(imp(), leader_place, code, db::read_real(imp(), leader_place, code) * matrix.scale());
    db::write_normal(imp(), leader_place, up.normal());
    db::write_proxy_graphics(imp(), {});
    return Acad::eOk;
}
