#include "dbmline.h"

#include "acgi.h"
#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"

#include <algorithm>
#include <array>
#include <vector>

namespace {

constexpr db::field mline_fields[] = {
    db::number(2, "STANDARD"),
    db::number(340),
    db::number(40, "1.0").or_else(1.0),
    db::number(70, "0"),
    db::number(71, "1"),
    db::number(72, "0"),
    db::number(73, "0"),
    db::point(10, "0.0"),
    db::normal("0.0 0.0 1.0"),
    db::point(11),
};
constexpr auto mline_place = db::section_of<mline_fields>("AcDbMline");

constexpr int closed_flag = 2;

// A vertex, and for each line how far along the miter it lies, then where from there along the axis it is
// drawn and where not, in turn.
struct mline_vertex {
    AcGePoint3d point;
    AcGeVector3d axis;
    AcGeVector3d miter;
    std::vector<std::vector<double>> lines;
};

std::vector<mline_vertex> read_vertices(const AcDbImpObject& object) {
    const dxf::group_list& groups = object.groups();
    const auto [first, last] = groups.extent(mline_place);
    std::vector<mline_vertex> vertices;
    for (std::size_t i = first; i < last; ++i) {
        const dxf::group& group = groups.groups()[i];
        const auto real = [&] { return dxf::leading_real(group.value).value_or(0.0); };
        if (group.code == 11)
            vertices.emplace_back();
        if (vertices.empty())
            continue;
        mline_vertex& vertex = vertices.back();
        const auto axis = static_cast<unsigned>(group.code / 10 - 1);
        switch (group.code) {
        case 11:
        case 21:
        case 31:
            vertex.point[axis] = real();
            break;
        case 12:
        case 22:
        case 32:
            vertex.axis[axis] = real();
            break;
        case 13:
        case 23:
        case 33:
            vertex.miter[axis] = real();
            break;
        case 74:
            vertex.lines.emplace_back();
            break;
        case 41:
            if (!vertex.lines.empty())
                vertex.lines.back().push_back(real());
            break;
        default:
            break;
        }
    }
    return vertices;
}

// The lines that are drawn, one after the other.
std::vector<std::array<AcGePoint3d, 2>> read_lines(const AcDbImpObject& object) {
    std::vector<mline_vertex> vertices = read_vertices(object);
    std::vector<std::array<AcGePoint3d, 2>> drawn;
    if (vertices.size() > 1 && (db::read_integer(object, mline_place, 71) & closed_flag) != 0)
        vertices.push_back(vertices.front());
    for (std::size_t i = 0; i + 1 < vertices.size(); ++i) {
        const mline_vertex& from = vertices[i];
        const mline_vertex& to = vertices[i + 1];
        for (std::size_t line = 0; line < std::min(from.lines.size(), to.lines.size()); ++line) {
            const std::vector<double>& where = from.lines[line];
            if (where.empty() || to.lines[line].empty())
                continue;
            const AcGePoint3d start = from.point + from.miter * where[0];
            const AcGePoint3d end = to.point + to.miter * to.lines[line][0];
            if (where.size() < 2)
                drawn.push_back({start, end});
            for (std::size_t piece = 1; piece < where.size(); piece += 2)
                drawn.push_back({start + from.axis * where[piece],
                                 piece + 1 < where.size() ? start + from.axis * where[piece + 1] : end});
        }
    }
    return drawn;
}

} // namespace

ENTITY_CLASS(AcDbMline, AcDbEntity, MLINE, mline_place)

AcDbObjectId AcDbMline::style() const {
    assertReadEnabled();
    AcDbImpDatabase* const database = imp().database;
    return database != nullptr
               ? database->id(database->records().find(imp().groups().handle(mline_place, 340)))
               : AcDbObjectId::kNull;
}

VALUE_GETTER(AcDbMline, justification,
             static_cast<Mline::MlineJustification>(std::clamp(db::read_integer(imp(), mline_place, 70), 0,
                                                               2)))
FIELD_GETTER(AcDbMline, scale, mline_place, 40)
FIELD_GETTER(AcDbMline, normal, mline_place, 210)
BIT_GETTER(AcDbMline, closedMline, mline_place, 71, closed_flag)
VALUE_GETTER(AcDbMline, numVertices, static_cast<int>(db::read_points(imp(), mline_place, 11).size()))

AcGePoint3d AcDbMline::vertexAt(int index) const {
    assertReadEnabled();
    const std::vector<AcGePoint3d> points = db::read_points(imp(), mline_place, 11);
    return index >= 0 && index < static_cast<int>(points.size()) ? points[static_cast<std::size_t>(index)]
                                                                 : AcGePoint3d();
}

AcGeVector3d AcDbMline::axisAt(int index) const {
    assertReadEnabled();
    const std::vector<mline_vertex> all = read_vertices(imp());
    return index >= 0 && index < static_cast<int>(all.size()) ? all[static_cast<std::size_t>(index)].axis
                                                              : AcGeVector3d();
}

AcGeVector3d AcDbMline::miterAt(int index) const {
    assertReadEnabled();
    const std::vector<mline_vertex> all = read_vertices(imp());
    return index >= 0 && index < static_cast<int>(all.size()) ? all[static_cast<std::size_t>(index)].miter
                                                              : AcGeVector3d();
}

Adesk::Boolean AcDbMline::subWorldDraw(AcGiWorldDraw* draw) {
    for (const std::array<AcGePoint3d, 2>& line : read_lines(imp()))
        draw->geometry().polyline(2, line.data());
    return true;
}

Acad::ErrorStatus AcDbMline::subTransformBy(const AcGeMatrix3d& matrix) {
    if (!matrix.isUniScaledOrtho())
        return Acad::eCannotScaleNonUniformly;
    const double scale = matrix.scale();
    const auto moved = [&](const AcGePoint3d& point) { return matrix * point; };
    const auto turned = [&](const AcGePoint3d& direction) {
        return AcGePoint3d::kOrigin + (matrix * direction.asVector()) / scale;
    };
    for (const int code : {10, 11})
        db::change_points(imp(), mline_place, code, moved);
    for (const int code : {12, 13})
        db::change_points(imp(), mline_place, code, turned);
    const AcGeVector3d up = (matrix * normal()) / scale;
    db::write_normal(imp(), mline_place, up);
    // Lengths along miters and axes, and of the filling.
    if (scale != 1.0) {
        dxf::group_list& groups = imp().edit();
        const auto [first, last] = groups.extent(mline_place);
        for (std::size_t i = first; i < last; ++i)
            if (const int code = groups.groups()[i].code; code >= 40 && code <= 42)
                groups.set_real_at(i, dxf::leading_real(groups.groups()[i].value).value_or(0.0) * scale);
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMline::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    const AcDbEntity* like = this; // then the line before: it has fewer groups to be searched
    for (const std::array<AcGePoint3d, 2>& line : read_lines(imp())) {
        auto* const part = new AcDbLine(line[0], line[1]);
        part->setPropertiesFrom(like);
        parts.append(part);
        like = part;
    }
    return Acad::eOk;
}
