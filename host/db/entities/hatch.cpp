#include "dbhatch.h"

#include "acgi.h"
#include "base/case_fold.h"
#include "base/number_text.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/entities/hatch_boundary.h"
#include "host/db/entities/hatch_pattern.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using fresh_groups = std::vector<dxf::group_list::fresh_group>;

std::vector<db::hatch_loop> loops_of(const AcDbImpObject& imp) {
    const auto [first, last] = db::range_of_loops(imp.groups());
    return db::read_loops(std::span(imp.groups().groups()).subspan(first, last - first));
}

void write_loops(AcDbImpObject& imp, const std::vector<db::hatch_loop>& loops) {
    const auto [first, last] = db::range_of_loops(imp.groups());
    fresh_groups fresh;
    for (const db::hatch_loop& loop : loops)
        db::append_loop(fresh, loop);
    imp.edit().splice(first, last, fresh);
    imp.edit().set_integer(db::hatch_place, 91, static_cast<std::int64_t>(loops.size()));
}

// What is filled: by the normal style everything inside of an odd number of loops; by the outer one only
// between the outermost loops and those next to them; by the ignoring one all that the outermost hold.
std::vector<db::hatch_loop> filled_loops(std::vector<db::hatch_loop> loops, int style) {
    if (style == AcDbHatch::kNormal)
        return loops;
    const int kept =
        AcDbHatch::kExternal | (style == AcDbHatch::kOuter ? AcDbHatch::kOutermost | AcDbHatch::kTextbox : 0);
    std::vector<db::hatch_loop> chosen;
    std::copy_if(loops.begin(), loops.end(), std::back_inserter(chosen),
                 [&](const db::hatch_loop& loop) { return (loop.type & kept) != 0; });
    return chosen.empty() ? loops : chosen;
}

void draw_arc(AcGiWorldGeometry& geometry, const gi::arc& arc) {
    AcGeMatrix3d to_plane;
    to_plane.setCoordSystem(arc.center, arc.u, arc.v, AcGeVector3d::kZAxis);
    const AcGeVector3d from(std::cos(arc.start), std::sin(arc.start), 0.0);
    geometry.pushModelTransform(to_plane);
    geometry.circularArc(AcGePoint3d::kOrigin, 1.0, AcGeVector3d::kZAxis, from, arc.sweep);
    geometry.popModelTransform();
}

// What decides about the extents: of curves where they go furthest along the axes of the world.
void draw_for_extents(AcGiWorldGeometry& geometry, const db::hatch_piece& piece) {
    if (const auto* const arc = std::get_if<gi::arc>(&piece)) {
        draw_arc(geometry, *arc);
        return;
    }
    std::vector<AcGePoint3d> points;
    if (const auto* const spline = std::get_if<ge::bspline>(&piece)) {
        std::vector<double> at = {spline->first(), spline->last()};
        AcGeMatrix3d to_world;
        geometry.getModelToWorldTransform(to_world);
        for (unsigned axis = 0; axis < 3; ++axis) {
            const auto turns = ge::turns(*spline, {to_world(axis, 0), to_world(axis, 1), to_world(axis, 2)});
            at.insert(at.end(), turns.begin(), turns.end());
        }
        for (const double t : at)
            points.push_back(spline->at(t).point);
    } else {
        points = std::get<std::vector<AcGePoint3d>>(piece);
    }
    geometry.polyline(static_cast<Adesk::UInt32>(points.size()), points.data());
}

void add_to_rim(const db::hatch_piece& piece, std::vector<AcGePoint3d>& rim) {
    constexpr double fine = 1e-3; // of its size
    if (const auto* const arc = std::get_if<gi::arc>(&piece)) {
        const double size = std::max(arc->u.length(), arc->v.length());
        const std::vector<AcGePoint3d> points = gi::flattened(*arc, size * fine);
        rim.insert(rim.end(), points.begin(), points.end());
    } else if (const auto* const spline = std::get_if<ge::bspline>(&piece)) {
        AcDbExtents box;
        for (const AcGePoint3d& point : spline->points)
            box.addPoint(point);
        for (const double t : ge::flattening(*spline, box.minPoint().distanceTo(box.maxPoint()) * fine))
            rim.push_back(spline->at(t).point);
    } else {
        const auto& points = std::get<std::vector<AcGePoint3d>>(piece);
        rim.insert(rim.end(), points.begin(), points.end());
    }
}

} // namespace

ENTITY_CLASS(AcDbHatch, AcDbEntity, HATCH, db::hatch_place)

FIELD_MEMBERS(AcDbHatch, normal, setNormal, db::hatch_place, 210)
FIELD_MEMBERS(AcDbHatch, elevation, setElevation, db::hatch_place, 30)
FIELD_MEMBERS(AcDbHatch, associative, setAssociative, db::hatch_place, 71)

int AcDbHatch::numLoops() const {
    assertReadEnabled();
    const auto [first, last] = db::range_of_loops(imp().groups());
    const auto begin = imp().groups().groups().begin();
    return static_cast<int>(std::count_if(begin + static_cast<std::ptrdiff_t>(first),
                                          begin + static_cast<std::ptrdiff_t>(last),
                                          [](const dxf::group& group) { return group.code == 92; }));
}

Adesk::Int32 AcDbHatch::loopTypeAt(int loopIndex) const {
    assertReadEnabled();
    const auto loops = loops_of(imp());
    return loopIndex >= 0 && static_cast<std::size_t>(loopIndex) < loops.size()
               ? loops[static_cast<std::size_t>(loopIndex)].type
               : kDefault;
}

Acad::ErrorStatus AcDbHatch::getLoopAt(int loopIndex, Adesk::Int32& loopType, AcGePoint2dArray& vertices,
                                       AcGeDoubleArray& bulges) const {
    assertReadEnabled();
    const auto loops = loops_of(imp());
    if (loopIndex < 0 || static_cast<std::size_t>(loopIndex) >= loops.size())
        return Acad::eInvalidIndex;
    const db::hatch_loop& loop = loops[static_cast<std::size_t>(loopIndex)];
    if (!loop.is_polyline())
        return Acad::eInvalidInput;
    loopType = loop.type;
    vertices.removeAll();
    bulges.removeAll();
    for (std::size_t i = 0; i < loop.vertices.size(); ++i) {
        vertices.append(loop.vertices[i]);
        bulges.append(i < loop.bulges.size() ? loop.bulges[i] : 0.0);
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::getLoopAt(int loopIndex, Adesk::Int32& loopType,
                                       AcGeVoidPointerArray& /*edgePtrs*/,
                                       AcGeIntArray& /*edgeTypes*/) const {
    assertReadEnabled();
    const auto loops = loops_of(imp());
    if (loopIndex < 0 || static_cast<std::size_t>(loopIndex) >= loops.size())
        return Acad::eInvalidIndex;
    const db::hatch_loop& loop = loops[static_cast<std::size_t>(loopIndex)];
    loopType = loop.type;
    return loop.is_polyline() ? Acad::eInvalidInput : Acad::eNotImplementedYet;
}

Acad::ErrorStatus AcDbHatch::appendLoop(Adesk::Int32 loopType, const AcGePoint2dArray& vertices,
                                        const AcGeDoubleArray& bulges) {
    assertWriteEnabled();
    if (vertices.length() < 2 || (!bulges.isEmpty() && bulges.length() != vertices.length()))
        return Acad::eInvalidInput;
    db::hatch_loop loop;
    loop.type = loopType | kPolyline;
    for (const AcGePoint2d& vertex : vertices) {
        if (!std::isfinite(vertex.x) || !std::isfinite(vertex.y))
            return Acad::eInvalidInput;
        loop.vertices.push_back(vertex);
    }
    bool is_bent = false;
    for (const double bulge : bulges) {
        if (!std::isfinite(bulge))
            return Acad::eInvalidInput;
        loop.bulges.push_back(bulge);
        is_bent = is_bent || bulge != 0.0;
    }
    if (!is_bent)
        loop.bulges.clear();
    const std::size_t at = db::range_of_loops(imp().groups()).second;
    const int count = numLoops();
    fresh_groups fresh;
    db::append_loop(fresh, loop);
    imp().edit().splice(at, at, fresh);
    imp().edit().set_integer(db::hatch_place, 91, count + 1);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::removeLoopAt(int loopIndex) {
    assertWriteEnabled();
    auto loops = loops_of(imp());
    if (loopIndex < 0 || static_cast<std::size_t>(loopIndex) >= loops.size())
        return Acad::eInvalidIndex;
    loops.erase(loops.begin() + loopIndex);
    write_loops(imp(), loops);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::getAssocObjIdsAt(int loopIndex, AcDbObjectIdArray& ids) const {
    assertReadEnabled();
    ids.removeAll();
    const auto loops = loops_of(imp());
    if (loopIndex < 0 || static_cast<std::size_t>(loopIndex) >= loops.size())
        return Acad::eInvalidIndex;
    if (imp().database != nullptr)
        for (const std::uint64_t source : loops[static_cast<std::size_t>(loopIndex)].sources)
            ids.append(imp().database->id(imp().database->records().find(source)));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::getAssocObjIds(AcDbObjectIdArray& ids) const {
    assertReadEnabled();
    ids.removeAll();
    if (imp().database != nullptr)
        for (const db::hatch_loop& loop : loops_of(imp()))
            for (const std::uint64_t source : loop.sources)
                ids.append(imp().database->id(imp().database->records().find(source)));
    return Acad::eOk;
}

VALUE_GETTER(AcDbHatch, patternType,
             static_cast<HatchPatternType>(
                 std::clamp(db::read_integer(imp(), db::hatch_place, 76, kPreDefined), 0, 2)))

const ACHAR* AcDbHatch::patternName() const {
    assertReadEnabled();
    m_name = imp().decode(dxf::trimmed(imp().groups().text(db::hatch_place, 2).value_or(""))).c_str();
    return m_name;
}

Acad::ErrorStatus AcDbHatch::setPattern(HatchPatternType patType, const ACHAR* patName) {
    assertWriteEnabled();
    if (patName == nullptr)
        return Acad::eInvalidInput;
    const bool solid = patType == kPreDefined && base::equal_no_case(patName, L"SOLID");
    if (!solid && patType != kUserDefined)
        return Acad::eNotImplementedYet;
    db::hatch_pattern made = db::read_pattern(imp());
    dxf::group_list& groups = imp().edit();
    groups.set_text(db::hatch_place, 2, imp().encode(patName));
    groups.set_integer(db::hatch_place, 70, solid ? 1 : 0);
    groups.set_integer(db::hatch_place, 76, patType);
    if (solid) {
        const auto [first, last] = db::range_of_pattern(groups);
        groups.splice(first, last, {});
    } else {
        db::define_by_user(made);
        db::write_pattern(imp(), made);
    }
    return Acad::eOk;
}

FIELD_GETTER(AcDbHatch, patternAngle, db::hatch_place, 52)

Acad::ErrorStatus AcDbHatch::setPatternAngle(double angle) {
    assertWriteEnabled();
    if (isSolidFill() || !std::isfinite(angle))
        return Acad::eInvalidInput;
    if (angle == patternAngle())
        return Acad::eOk;
    db::hatch_pattern changed = db::read_pattern(imp());
    db::turn_and_scale(changed, db::degrees(angle) - changed.angle, 1.0);
    db::write_pattern(imp(), changed);
    return Acad::eOk;
}

VALUE_GETTER(AcDbHatch, patternSpace,
             patternType() == kUserDefined ? db::read_real(imp(), db::hatch_place, 41, 1.0) : 1.0)

Acad::ErrorStatus AcDbHatch::setPatternSpace(double space) {
    return patternType() == kUserDefined ? setPatternScale(space) : Acad::eInvalidInput;
}

FIELD_GETTER(AcDbHatch, patternScale, db::hatch_place, 41)

Acad::ErrorStatus AcDbHatch::setPatternScale(double scale) {
    assertWriteEnabled();
    if (isSolidFill() || !(scale > 0.0) || !std::isfinite(scale))
        return Acad::eInvalidInput;
    if (scale == patternScale())
        return Acad::eOk;
    db::hatch_pattern changed = db::read_pattern(imp());
    if (!(changed.scale > 0.0))
        return Acad::eInvalidInput;
    db::turn_and_scale(changed, 0.0, scale / changed.scale);
    changed.scale = scale;
    db::write_pattern(imp(), changed);
    return Acad::eOk;
}

FIELD_GETTER(AcDbHatch, patternDouble, db::hatch_place, 77)

Acad::ErrorStatus AcDbHatch::setPatternDouble(bool isDouble) {
    assertWriteEnabled();
    if (patternType() != kUserDefined || isSolidFill())
        return Acad::eInvalidInput;
    db::hatch_pattern changed = db::read_pattern(imp());
    if (changed.is_double == isDouble)
        return Acad::eOk;
    changed.is_double = isDouble;
    db::define_by_user(changed);
    db::write_pattern(imp(), changed);
    return Acad::eOk;
}

VALUE_GETTER(AcDbHatch, numPatternDefinitions, static_cast<int>(db::read_families(imp().groups()).size()))

Acad::ErrorStatus AcDbHatch::getPatternDefinitionAt(int index, double& angle, double& baseX, double& baseY,
                                                    double& offsetX, double& offsetY,
                                                    AcGeDoubleArray& dashes) const {
    assertReadEnabled();
    const auto families = db::read_families(imp().groups());
    if (index < 0 || static_cast<std::size_t>(index) >= families.size())
        return Acad::eInvalidIndex;
    const db::line_family& family = families[static_cast<std::size_t>(index)];
    angle = db::radians(family.angle);
    baseX = family.base.x;
    baseY = family.base.y;
    offsetX = family.offset.x;
    offsetY = family.offset.y;
    dashes.removeAll();
    for (const double dash : family.dashes)
        dashes.append(dash);
    return Acad::eOk;
}

VALUE_GETTER(AcDbHatch, hatchStyle,
             static_cast<HatchStyle>(std::clamp(db::read_integer(imp(), db::hatch_place, 75), 0, 2)))
FIELD_SETTER(AcDbHatch, setHatchStyle, db::hatch_place, 75)
FIELD_GETTER(AcDbHatch, isSolidFill, db::hatch_place, 70)

AcDbHatch::HatchObjectType AcDbHatch::hatchObjectType() const {
    assertReadEnabled();
    return db::read_integer(imp(), db::hatch_place, 450) != 0 ? kGradientObject : kHatchObject;
}

// Gradients of users are for the editor's future.
AcDbHatch::GradientPatternType AcDbHatch::gradientType() const {
    return kPreDefinedGradient;
}

const ACHAR* AcDbHatch::gradientName() const {
    assertReadEnabled();
    m_name = imp().decode(dxf::trimmed(imp().groups().text(db::hatch_place, 470).value_or(""))).c_str();
    return m_name;
}

FIELD_GETTER(AcDbHatch, gradientAngle, db::hatch_place, 460)
VALUE_GETTER(AcDbHatch, gradientShift, static_cast<float>(db::read_real(imp(), db::hatch_place, 461)))
FIELD_GETTER(AcDbHatch, getGradientOneColorMode, db::hatch_place, 452)
VALUE_GETTER(AcDbHatch, getShadeTintValue, static_cast<float>(db::read_real(imp(), db::hatch_place, 462)))

Acad::ErrorStatus AcDbHatch::evaluateHatch(bool /*bUnderestimateNumLines*/) {
    return Acad::eNotImplementedYet;
}

PLANE_FIGURE(AcDbHatch)

Adesk::Boolean AcDbHatch::subWorldDraw(AcGiWorldDraw* draw) {
    AcGiWorldGeometry& geometry = draw->geometry();
    geometry.pushModelTransform(normal());
    std::vector<AcGePoint3d> points;
    std::vector<Adesk::Int32> faces;
    const int style = hatchStyle();
    for (const db::hatch_loop& loop : filled_loops(loops_of(imp()), style)) {
        const std::vector<db::hatch_piece> pieces = db::pieces_of(loop, elevation());
        if (draw->regenType() == kAcGiForExtents) {
            for (const db::hatch_piece& piece : pieces)
                draw_for_extents(geometry, piece);
            continue;
        }
        std::vector<AcGePoint3d> rim;
        for (const db::hatch_piece& piece : pieces)
            add_to_rim(piece, rim);
        // Behind the first loop, the others are its holes, and what is in these again.
        const auto count = static_cast<Adesk::Int32>(rim.size());
        faces.push_back(faces.empty() || style == kIgnore ? count : -count);
        for (Adesk::Int32 i = 0; i < count; ++i)
            faces.push_back(static_cast<Adesk::Int32>(points.size()) + i);
        points.insert(points.end(), rim.begin(), rim.end());
    }
    if (!points.empty())
        geometry.shell(static_cast<Adesk::UInt32>(points.size()), points.data(),
                       static_cast<Adesk::UInt32>(faces.size()), faces.data());
    geometry.popModelTransform();
    return true;
}

Acad::ErrorStatus AcDbHatch::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(normal(), matrix, change))
        return Acad::eCannotScaleNonUniformly;
    const AcGeMatrix3d moving = change.plane_to_plane * AcGeMatrix3d::translation({0.0, 0.0, elevation()});
    auto loops = loops_of(imp());
    for (db::hatch_loop& loop : loops)
        db::transform_loop(loop, moving, change.scale, change.mirrored);
    db::hatch_pattern lines = db::read_pattern(imp());
    // Directions in the plane: what the x axis becomes, and on which side of it the y axis is.
    const double turn = db::degrees(change.turned(0.0));
    lines.angle = (change.mirrored ? -lines.angle : lines.angle) + turn;
    lines.scale *= change.scale;
    const auto moved = [&](double x, double y) {
        const AcGePoint3d there = moving * AcGePoint3d(x, y, 0.0);
        return AcGePoint2d(there.x, there.y);
    };
    for (db::line_family& family : lines.families) {
        family.angle = (change.mirrored ? -family.angle : family.angle) + turn;
        const AcGePoint2d base = moved(family.base.x, family.base.y);
        family.offset = moved(family.base.x + family.offset.x, family.base.y + family.offset.y) - base;
        family.base = base;
        for (double& dash : family.dashes)
            dash *= change.scale;
    }
    if (!isSolidFill())
        db::write_pattern(imp(), lines);
    write_loops(imp(), loops);
    // Seed points stand behind their number.
    dxf::group_list& groups = imp().edit();
    if (const std::size_t at = groups.find(db::hatch_place, 98); at != dxf::group_list::npos) {
        const auto& all = groups.groups();
        std::size_t end = at + 1;
        fresh_groups seeds;
        for (; end + 1 < all.size() && all[end].code == 10 && all[end + 1].code == 20; end += 2) {
            const AcGePoint2d seed = moved(dxf::leading_real(all[end].value).value_or(0.0),
                                           dxf::leading_real(all[end + 1].value).value_or(0.0));
            seeds.push_back({10, base::real_text(seed.x)});
            seeds.push_back({20, base::real_text(seed.y)});
        }
        groups.splice(at + 1, end, seeds);
    }
    if (isGradient())
        db::write_real(imp(), db::hatch_place, 460,
                       (change.mirrored ? -gradientAngle() : gradientAngle()) + db::radians(turn));
    db::write_real(imp(), db::hatch_place, 30, (moving * AcGePoint3d::kOrigin).z);
    db::write_normal(imp(), db::hatch_place, change.normal);
    return Acad::eOk;
}
