#include "dbdim.h"

#include "acgi.h"
#include "acutmem.h"
#include "base/wide_format.h"
#include "dbmtext.h"
#include "dbsymtb.h"
#include "host/db/core/blocks.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_classes.h"
#include "host/db/core/symbol_names.h"
#include "host/db/custom/proxy_graphics.h"
#include "host/db/tables/dimension_style.h"
#include "host/dxf/record_header.h"

#include <array>
#include <cmath>
#include <numbers>
#include <optional>

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbDimension, AcDbEntity)
ACRX_DXF_DEFINE_MEMBERS(AcDbRotatedDimension, AcDbDimension, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        DIMENSION, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbAlignedDimension, AcDbDimension, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        DIMENSION, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDb3PointAngularDimension, AcDbDimension, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        0, DIMENSION, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDb2LineAngularDimension, AcDbDimension, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        0, DIMENSION, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbRadialDimension, AcDbDimension, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        DIMENSION, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbDiametricDimension, AcDbDimension, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        DIMENSION, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbOrdinateDimension, AcDbDimension, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        DIMENSION, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbArcDimension, AcDbDimension, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        ARC_DIMENSION, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbRadialDimensionLarge, AcDbDimension, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        0, LARGE_RADIAL_DIMENSION, "ObjectDBX Classes")

namespace {

constexpr int dimension_order[] = {280, 2,  10, 20, 30, 11, 21, 31, 12, 22,  32,  70,  1, 71,
                                   72,  41, 42, 73, 74, 75, 53, 51, 54, 210, 220, 230, 3};
constexpr dxf::group_place dimension_place{"AcDbDimension", dimension_order};
constexpr int own_order[] = {13, 23, 33, 14, 24, 34, 15, 25, 35, 16, 26,
                             36, 70, 40, 41, 71, 17, 27, 37, 50, 52};
constexpr dxf::group_place linear_place{"AcDbAlignedDimension", own_order};
constexpr dxf::group_place three_point_place{"AcDb3PointAngularDimension", own_order};
constexpr dxf::group_place two_line_place{"AcDb2LineAngularDimension", own_order};
constexpr dxf::group_place radial_place{"AcDbRadialDimension", own_order};
constexpr dxf::group_place diametric_place{"AcDbDiametricDimension", own_order};
constexpr dxf::group_place ordinate_place{"AcDbOrdinateDimension", own_order};
constexpr dxf::group_place arc_place{"AcDbArcDimension", own_order};
constexpr dxf::group_place large_place{"AcDbRadialDimensionLarge", own_order};

// Bits of group 70, above the kind.
constexpr int ordinate_along_x = 64;
constexpr int text_was_placed = 128;

// A kind of dimension: where its points stand besides group 10, what it measures, what it draws plainly.
struct kind_row {
    AcRxClass* (*desc)();
    const dxf::group_place& place;
    std::array<int, 5> points; // in coordinates of the world
    bool measures_angle;
};

const kind_row& kind_of(const AcDbDimension& dimension) {
    static const kind_row rows[] = {
        {AcDbRotatedDimension::desc, linear_place, {13, 14}, false},
        {AcDbAlignedDimension::desc, linear_place, {13, 14}, false},
        {AcDb3PointAngularDimension::desc, three_point_place, {13, 14, 15}, true},
        {AcDb2LineAngularDimension::desc, two_line_place, {13, 14, 15, 16}, true},
        {AcDbRadialDimension::desc, radial_place, {15}, false},
        {AcDbDiametricDimension::desc, diametric_place, {15}, false},
        {AcDbOrdinateDimension::desc, ordinate_place, {13, 14}, false},
        {AcDbArcDimension::desc, arc_place, {13, 14, 15, 16, 17}, false},
        {AcDbRadialDimensionLarge::desc, large_place, {13, 14, 15}, false},
    };
    for (const kind_row& row : rows)
        if (dimension.isKindOf(row.desc()))
            return row;
    return rows[0];
}

// Its look was made from what is changed now.
void leave_block(AcDbImpObject& imp) {
    dxf::group_list& groups = imp.edit();
    for (const int code : {2, 42, 12, 22, 32})
        groups.remove(dimension_place, code);
    db::write_proxy_graphics(imp, {});
}

Acad::ErrorStatus set_point(AcDbImpObject& imp, const dxf::group_place& where, int code,
                            const AcGePoint3d& point) {
    if (db::read_point(imp, where, code) == point)
        return Acad::eOk;
    db::write_point(imp, where, code, point);
    leave_block(imp);
    return Acad::eOk;
}

dxf::record_id block_of(const AcDbImpObject& imp) {
    const std::string_view name = dxf::trimmed(imp.groups().text(dimension_place, 2).value_or(""));
    if (imp.database == nullptr || name.empty())
        return dxf::no_record;
    return imp.database->names().find(db::table_kind::block, imp.decode(name));
}

AcGeMatrix3d block_to_world(const AcDbDimension& dimension) {
    return AcGeMatrix3d::translation(dimension.dimBlockPosition().asVector());
}

std::string_view style_of(const AcDbImpObject& imp) {
    return imp.groups().text(dimension_place, 3).value_or("Standard");
}

// ---- what the points give

// The part of an arc that an angular dimension shows.
struct shown_arc {
    AcGePoint3d center;
    AcGeVector3d start; // with its radius for its length
    double sweep = 0.0;
    AcGePoint3d end(const AcGeVector3d& normal) const {
        return center + AcGeVector3d(start).rotateBy(sweep, normal);
    }
};

// From one direction to another, the way that passes a point.
std::optional<shown_arc> arc_past(const AcGePoint3d& center, AcGeVector3d from, AcGeVector3d to,
                                  const AcGePoint3d& point, const AcGeVector3d& normal) {
    const AcGeVector3d passing = point - center;
    if (from.isZeroLength() || to.isZeroLength() || passing.isZeroLength())
        return std::nullopt;
    if (from.angleTo(passing, normal) > from.angleTo(to, normal))
        std::swap(from, to);
    return shown_arc{center, from.normal() * passing.length(), from.angleTo(to, normal)};
}

std::optional<shown_arc> arc_of_two_lines(const AcDb2LineAngularDimension& dimension) {
    const AcGePoint3d a = dimension.xLine1Start();
    const AcGePoint3d b = dimension.xLine2Start();
    AcGeVector3d along_a = dimension.xLine1End() - a;
    AcGeVector3d along_b = dimension.xLine2End() - b;
    const AcGeVector3d normal = dimension.normal();
    const double across = along_a.crossProduct(along_b).dotProduct(normal);
    if (std::fabs(across) <= 1e-12 * along_a.length() * along_b.length())
        return std::nullopt;
    const AcGePoint3d center = a + along_a * ((b - a).crossProduct(along_b).dotProduct(normal) / across);
    // Of the four directions the two that the arc's point lies between.
    const AcGeVector3d passing = dimension.arcPoint() - center;
    if (passing.crossProduct(along_b).dotProduct(normal) / across < 0.0)
        along_a = -along_a;
    if (along_a.crossProduct(passing).dotProduct(normal) * along_a.crossProduct(along_b).dotProduct(normal) <
        0.0)
        along_b = -along_b;
    return arc_past(center, along_a, along_b, dimension.arcPoint(), normal);
}

std::optional<shown_arc> arc_of(const AcDbDimension& dimension) {
    const AcGeVector3d normal = dimension.normal();
    const AcGePoint3d passing = db::read_point(dimension.imp(), dimension_place, 10);
    if (const auto* const angle = AcDb3PointAngularDimension::cast(&dimension))
        return arc_past(angle->centerPoint(), angle->xLine1Point() - angle->centerPoint(),
                        angle->xLine2Point() - angle->centerPoint(), passing, normal);
    if (const auto* const arc = AcDbArcDimension::cast(&dimension))
        return arc_past(arc->centerPoint(), arc->xLine1Point() - arc->centerPoint(),
                        arc->xLine2Point() - arc->centerPoint(), passing, normal);
    if (const auto* const lines = AcDb2LineAngularDimension::cast(&dimension))
        return arc_of_two_lines(*lines);
    return std::nullopt;
}

// Along the dimension line, for those that measure along a straight one.
AcGeVector3d direction_of(const AcDbDimension& dimension) {
    const dxf::group_place& where = kind_of(dimension).place;
    const AcDbImpObject& imp = dimension.imp();
    const AcGePoint3d ten = db::read_point(imp, dimension_place, 10);
    if (const auto* const rotated = AcDbRotatedDimension::cast(&dimension))
        return AcGeMatrix3d::planeToWorld(dimension.normal()) *
               AcGeVector3d(std::cos(rotated->rotation()), std::sin(rotated->rotation()), 0.0);
    if (AcDbAlignedDimension::cast(&dimension) != nullptr)
        return (db::read_point(imp, where, 14) - db::read_point(imp, where, 13)).normal();
    if (const auto* const ordinate = AcDbOrdinateDimension::cast(&dimension)) {
        const double turn = -dimension.horizontalRotation();
        const AcGeVector3d x(std::cos(turn), std::sin(turn), 0.0);
        return AcGeMatrix3d::planeToWorld(dimension.normal()) *
               (ordinate->isUsingXAxis() ? x : AcGeVector3d(-x.y, x.x, 0.0));
    }
    return (db::read_point(imp, where, 15) - ten).normal();
}

double measured(const AcDbDimension& dimension) {
    if (const auto arc = arc_of(dimension)) {
        const auto* const along = AcDbArcDimension::cast(&dimension);
        return along == nullptr ? arc->sweep
                                : arc->sweep * along->xLine1Point().distanceTo(along->centerPoint());
    }
    const kind_row& kind = kind_of(dimension);
    const AcDbImpObject& imp = dimension.imp();
    const AcGePoint3d ten = db::read_point(imp, dimension_place, 10);
    const AcGePoint3d first = db::read_point(imp, kind.place, kind.points[0]);
    if (kind.measures_angle)
        return 0.0;
    if (AcDbOrdinateDimension::cast(&dimension) != nullptr)
        return (first - ten).dotProduct(direction_of(dimension));
    if (kind.points[1] == 0 || AcDbRadialDimensionLarge::cast(&dimension) != nullptr)
        return ten.distanceTo(first);
    return std::fabs((db::read_point(imp, kind.place, 14) - first).dotProduct(direction_of(dimension)));
}

std::wstring measured_text(const AcDbDimension& dimension) {
    double value = 0.0;
    dimension.measurement(value);
    const bool angle = kind_of(dimension).measures_angle;
    if (angle)
        value = db::degrees(value);
    std::wstring text = base::format_wide(L"%.4f", value); // as many decimals as a new style has
    text.erase(text.find_last_not_of(L'0') + 1);
    if (text.ends_with(L'.'))
        text.pop_back();
    if (AcDbRadialDimension::cast(&dimension) != nullptr ||
        AcDbRadialDimensionLarge::cast(&dimension) != nullptr)
        text.insert(0, L"R");
    else if (AcDbDiametricDimension::cast(&dimension) != nullptr)
        text.insert(0, L"%%c");
    return angle ? text + L"%%d" : text;
}

// ---- the plain look

class plain_look {
public:
    plain_look(const AcDbDimension& dimension, AcGiWorldDraw& draw)
        : dimension_(dimension), imp_(dimension.imp()), kind_(kind_of(dimension)), draw_(draw),
          normal_(dimension.normal()) {}

    void run() {
        const AcGePoint3d ten = db::read_point(imp_, dimension_place, 10);
        if (const auto arc = arc_of(dimension_))
            angular(*arc);
        else if (kind_.place.marker == linear_place.marker)
            linear(ten);
        else if (AcDbOrdinateDimension::cast(&dimension_) != nullptr)
            line(own(13), own(14));
        else if (kind_.measures_angle)
            for (const int code : {13, 15})
                line(own(code), code == 13 ? own(14) : ten);
        else
            radial(ten);
        text();
        points(ten);
    }

private:
    AcGePoint3d own(int code) const { return db::read_point(imp_, kind_.place, code); }

    void line(const AcGePoint3d& from, const AcGePoint3d& to) {
        const AcGePoint3d ends[] = {from, to};
        draw_.geometry().polyline(2, ends);
    }

    void arrow(const AcGePoint3d& tip, const AcGeVector3d& pointing) {
        const AcGeVector3d along = pointing.normal() * db::arrow_size(imp_, style_of(imp_));
        if (along.isZeroLength())
            return;
        const AcGeVector3d across = normal_.crossProduct(along) / 6.0;
        const AcGePoint3d corners[] = {tip, tip - along + across, tip - along - across};
        draw_.geometry().polygon(3, corners);
    }

    void linear(const AcGePoint3d& through) {
        const AcGeVector3d along = direction_of(dimension_);
        const AcGeVector3d up = normal_.crossProduct(along);
        const auto foot = [&](const AcGePoint3d& point) {
            return point + up * (through - point).dotProduct(up);
        };
        const AcGePoint3d first = foot(own(13));
        const AcGePoint3d second = foot(own(14));
        line(own(13), first);
        line(own(14), second);
        line(first, second);
        arrow(first, first - second);
        arrow(second, second - first);
    }

    void angular(const shown_arc& arc) {
        const AcGePoint3d first = arc.center + arc.start;
        const AcGePoint3d second = arc.end(normal_);
        draw_.geometry().circularArc(arc.center, arc.start.length(), normal_, arc.start, arc.sweep);
        line(arc.center, first);
        line(arc.center, second);
        arrow(first, normal_.crossProduct(first - arc.center) * -1.0);
        arrow(second, normal_.crossProduct(second - arc.center));
    }

    // A radius, or a diameter, from the point that group 10 holds.
    void radial(const AcGePoint3d& ten) {
        const bool jogged = AcDbRadialDimensionLarge::cast(&dimension_) != nullptr;
        const AcGePoint3d on_circle = own(kind_.points[0]);
        if (jogged) {
            line(own(14), own(15));
            line(own(15), on_circle);
        } else {
            line(ten, on_circle);
        }
        arrow(on_circle, on_circle - (jogged ? own(15) : ten));
        if (AcDbDiametricDimension::cast(&dimension_) != nullptr)
            arrow(ten, ten - on_circle);
    }

    void text() {
        ACHAR* given = dimension_.dimensionText();
        std::wstring words = given;
        acutDelString(given);
        if (words == L" ")
            return; // the way to say that there shall be none
        if (words.empty())
            words = L"<>";
        if (const std::size_t at = words.find(L"<>"); at != words.npos)
            words.replace(at, 2, measured_text(dimension_));
        AcGeVector3d along = AcGeMatrix3d::planeToWorld(normal_) * AcGeVector3d::kXAxis;
        if (kind_.place.marker == linear_place.marker && !direction_of(dimension_).isZeroLength()) {
            // Read from below or from the right.
            const double turn = along.angleTo(direction_of(dimension_), normal_);
            const bool upside_down = turn > std::numbers::pi / 2.0 + 1e-9 && turn <= std::numbers::pi * 1.5;
            along = upside_down ? -direction_of(dimension_) : direction_of(dimension_);
        }
        AcDbMText shown;
        shown.setNormal(normal_);
        shown.setDirection(along.rotateBy(dimension_.textRotation(), normal_));
        shown.setLocation(dimension_.textPosition());
        shown.setAttachment(AcDbMText::kMiddleCenter);
        if (const double height = db::dimension_text_height(imp_, style_of(imp_)); height > 0.0)
            shown.setTextHeight(height);
        shown.setContents(words.c_str());
        draw_.geometry().draw(&shown);
    }

    // Where it is taken hold of. They stand on a layer of their own, which is not plotted.
    void points(const AcGePoint3d& ten) {
        if (imp_.database != nullptr)
            draw_.subEntityTraits().setLayer(
                imp_.database->id(imp_.database->names().find(db::table_kind::layer, L"Defpoints")));
        draw_.geometry().polyline(1, &ten);
        for (const int code : kind_.points)
            if (code != 0 && imp_.groups().find(kind_.place, code) != dxf::group_list::npos) {
                const AcGePoint3d point = own(code);
                draw_.geometry().polyline(1, &point);
            }
    }

    const AcDbDimension& dimension_;
    const AcDbImpObject& imp_;
    const kind_row& kind_;
    AcGiWorldDraw& draw_;
    AcGeVector3d normal_;
};

} // namespace

AcDbDimension::AcDbDimension() = default;
AcDbDimension::~AcDbDimension() = default;

AcDbObjectId AcDbDimension::dimBlockId() const {
    assertReadEnabled();
    return imp().database != nullptr ? imp().database->id(block_of(imp())) : AcDbObjectId::kNull;
}

Acad::ErrorStatus AcDbDimension::setDimBlockId(const AcDbObjectId& blockId) {
    assertWriteEnabled();
    if (imp().database == nullptr)
        return Acad::eNoDatabase;
    const dxf::record_id record = imp().database->record(blockId);
    if (record == dxf::no_record)
        return Acad::eNullObjectId;
    if (db::class_of(*imp().database, record) != AcDbBlockTableRecord::desc())
        return Acad::eWrongObjectType;
    imp().edit().set_text(dimension_place, 2, imp().encode(imp().database->names().name_of(record)));
    return Acad::eOk;
}

AcGePoint3d AcDbDimension::dimBlockPosition() const {
    assertReadEnabled();
    return AcGeMatrix3d::planeToWorld(normal()) * db::read_point(imp(), dimension_place, 12);
}

Acad::ErrorStatus AcDbDimension::setDimBlockPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    if (!position.isEqualTo(dimBlockPosition()))
        db::write_point(imp(), dimension_place, 12, AcGeMatrix3d::worldToPlane(normal()) * position);
    return Acad::eOk;
}

AcGePoint3d AcDbDimension::textPosition() const {
    assertReadEnabled();
    return AcGeMatrix3d::planeToWorld(normal()) * db::read_point(imp(), dimension_place, 11);
}

Acad::ErrorStatus AcDbDimension::setTextPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    return set_point(imp(), dimension_place, 11, AcGeMatrix3d::worldToPlane(normal()) * position);
}

bool AcDbDimension::isUsingDefaultTextPosition() const {
    assertReadEnabled();
    return (db::read_integer(imp(), dimension_place, 70) & text_was_placed) == 0;
}

Acad::ErrorStatus AcDbDimension::useSetTextPosition() {
    assertWriteEnabled();
    db::write_integer(imp(), dimension_place, 70,
                      db::read_integer(imp(), dimension_place, 70) | text_was_placed);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDimension::useDefaultTextPosition() {
    assertWriteEnabled();
    db::write_integer(imp(), dimension_place, 70,
                      db::read_integer(imp(), dimension_place, 70) & ~text_was_placed);
    return Acad::eOk;
}

AcGeVector3d AcDbDimension::normal() const {
    assertReadEnabled();
    return db::read_normal(imp(), dimension_place);
}

Acad::ErrorStatus AcDbDimension::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    if (normal.isZeroLength())
        return Acad::eInvalidInput;
    const AcGePoint3d text = textPosition();
    leave_block(imp());
    db::write_normal(imp(), dimension_place, normal.normal());
    return setTextPosition(text);
}

double AcDbDimension::elevation() const {
    assertReadEnabled();
    return db::read_real(imp(), dimension_place, 31);
}

ACHAR* AcDbDimension::dimensionText() const {
    assertReadEnabled();
    ACHAR* copy = nullptr;
    acutNewString(imp().decode(imp().groups().text(dimension_place, 1).value_or("")).c_str(), copy);
    return copy;
}

Acad::ErrorStatus AcDbDimension::setDimensionText(const ACHAR* text) {
    assertWriteEnabled();
    if (text == nullptr)
        return Acad::eInvalidInput;
    imp().edit().set_text(dimension_place, 1, imp().encode(text));
    leave_block(imp());
    return Acad::eOk;
}

double AcDbDimension::textRotation() const {
    assertReadEnabled();
    return db::radians(db::read_real(imp(), dimension_place, 53));
}

Acad::ErrorStatus AcDbDimension::setTextRotation(double rotation) {
    assertWriteEnabled();
    db::write_real(imp(), dimension_place, 53, db::degrees(rotation));
    leave_block(imp());
    return Acad::eOk;
}

double AcDbDimension::horizontalRotation() const {
    assertReadEnabled();
    return db::radians(db::read_real(imp(), dimension_place, 51));
}

AcDbObjectId AcDbDimension::dimensionStyle() const {
    assertReadEnabled();
    if (imp().database == nullptr)
        return AcDbObjectId::kNull;
    return imp().database->id(
        imp().database->names().find(db::table_kind::dim_style, imp().decode(dxf::trimmed(style_of(imp())))));
}

Acad::ErrorStatus AcDbDimension::setDimensionStyle(AcDbObjectId styleId) {
    assertWriteEnabled();
    if (imp().database == nullptr)
        return Acad::eNoDatabase;
    const dxf::record_id record = imp().database->record(styleId);
    if (record == dxf::no_record)
        return Acad::eNullObjectId;
    if (imp().database->records().type(record) != dxf::type_dimstyle)
        return Acad::eWrongObjectType;
    imp().edit().set_text(dimension_place, 3, imp().encode(imp().database->names().name_of(record)));
    leave_block(imp());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDimension::measurement(double& measurement) const {
    assertReadEnabled();
    const auto saved = imp().groups().real(dimension_place, 42);
    measurement = saved ? *saved : measured(*this);
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
        plain_look(*this, *draw).run();
    }
    return true;
}

Acad::ErrorStatus AcDbDimension::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(normal(), matrix, change))
        return Acad::eCannotScaleNonUniformly;
    const kind_row& kind = kind_of(*this);
    const bool only_moved = matrix == AcGeMatrix3d::translation(matrix.translation());
    const AcGePoint3d text = matrix * textPosition();
    const AcGePoint3d block = dimBlockPosition() + matrix.translation();
    const auto measured_before = imp().groups().real(dimension_place, 42);
    db::write_point(imp(), dimension_place, 10, matrix * db::read_point(imp(), dimension_place, 10));
    for (const int code : kind.points)
        if (code != 0 && imp().groups().find(kind.place, code) != dxf::group_list::npos)
            db::write_point(imp(), kind.place, code, matrix * db::read_point(imp(), kind.place, code));
    db::write_real(imp(), kind.place, 40, db::read_real(imp(), kind.place, 40) * change.scale);
    const double turn = change.turned(0.0);
    if (AcDbRotatedDimension::cast(this) != nullptr)
        db::write_real(imp(), kind.place, 50,
                       db::degrees(change.turned(db::radians(db::read_real(imp(), kind.place, 50)))));
    if (turn != 0.0 && AcDbOrdinateDimension::cast(this) != nullptr)
        db::write_real(imp(), dimension_place, 51, db::degrees(horizontalRotation() - turn));
    if (!only_moved)
        leave_block(imp());
    db::write_normal(imp(), dimension_place, change.normal);
    db::write_point(imp(), dimension_place, 11, AcGeMatrix3d::worldToPlane(change.normal) * text);
    if (only_moved)
        setDimBlockPosition(block);
    else if (measured_before)
        imp().edit().set_real(dimension_place, 42,
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

// ---- the kinds

// A new one: its type in group 70, and its points at the origin.
#define NEW_DIMENSION(TYPE, KIND, MARKER, POINTS)                                                            \
    "0\n" TYPE "\n100\nAcDbEntity\n8\n0\n100\nAcDbDimension\n10\n0.0\n20\n0.0\n30\n0.0\n11\n0.0\n21\n0.0\n"  \
    "31\n0.0\n70\n" KIND "\n71\n5\n3\nStandard\n100\n" MARKER "\n" POINTS
#define POINT_13 "13\n0.0\n23\n0.0\n33\n0.0\n"
#define POINT_14 "14\n0.0\n24\n0.0\n34\n0.0\n"
#define POINT_15 "15\n0.0\n25\n0.0\n35\n0.0\n"
#define POINT_16 "16\n0.0\n26\n0.0\n36\n0.0\n"

// Getter and setter of a point.
#define DIMENSION_POINT(CLASS, GET, SET, PLACE, CODE)                                                        \
    AcGePoint3d CLASS::GET() const {                                                                         \
        assertReadEnabled();                                                                                 \
        return db::read_point(imp(), PLACE, CODE);                                                           \
    }                                                                                                        \
    Acad::ErrorStatus CLASS::SET(const AcGePoint3d& point) {                                                 \
        assertWriteEnabled();                                                                                \
        return set_point(imp(), PLACE, CODE, point);                                                         \
    }

AcDbRotatedDimension::AcDbRotatedDimension() {
    imp().begin_as(NEW_DIMENSION("DIMENSION", "32", "AcDbAlignedDimension",
                                 POINT_13 POINT_14 "50\n0.0\n100\nAcDbRotatedDimension\n"));
}
AcDbRotatedDimension::~AcDbRotatedDimension() = default;
DIMENSION_POINT(AcDbRotatedDimension, xLine1Point, setXLine1Point, linear_place, 13)
DIMENSION_POINT(AcDbRotatedDimension, xLine2Point, setXLine2Point, linear_place, 14)
DIMENSION_POINT(AcDbRotatedDimension, dimLinePoint, setDimLinePoint, dimension_place, 10)

double AcDbRotatedDimension::rotation() const {
    assertReadEnabled();
    return db::radians(db::read_real(imp(), linear_place, 50));
}

Acad::ErrorStatus AcDbRotatedDimension::setRotation(double rotation) {
    assertWriteEnabled();
    db::write_real(imp(), linear_place, 50, db::degrees(rotation));
    leave_block(imp());
    return Acad::eOk;
}

double AcDbRotatedDimension::oblique() const {
    assertReadEnabled();
    return db::radians(db::read_real(imp(), linear_place, 52));
}

AcDbAlignedDimension::AcDbAlignedDimension() {
    imp().begin_as(NEW_DIMENSION("DIMENSION", "33", "AcDbAlignedDimension", POINT_13 POINT_14));
}
AcDbAlignedDimension::~AcDbAlignedDimension() = default;
DIMENSION_POINT(AcDbAlignedDimension, xLine1Point, setXLine1Point, linear_place, 13)
DIMENSION_POINT(AcDbAlignedDimension, xLine2Point, setXLine2Point, linear_place, 14)
DIMENSION_POINT(AcDbAlignedDimension, dimLinePoint, setDimLinePoint, dimension_place, 10)

double AcDbAlignedDimension::oblique() const {
    assertReadEnabled();
    return db::radians(db::read_real(imp(), linear_place, 52));
}

AcDb3PointAngularDimension::AcDb3PointAngularDimension() {
    imp().begin_as(
        NEW_DIMENSION("DIMENSION", "37", "AcDb3PointAngularDimension", POINT_13 POINT_14 POINT_15));
}
AcDb3PointAngularDimension::~AcDb3PointAngularDimension() = default;
DIMENSION_POINT(AcDb3PointAngularDimension, arcPoint, setArcPoint, dimension_place, 10)
DIMENSION_POINT(AcDb3PointAngularDimension, centerPoint, setCenterPoint, three_point_place, 15)
DIMENSION_POINT(AcDb3PointAngularDimension, xLine1Point, setXLine1Point, three_point_place, 13)
DIMENSION_POINT(AcDb3PointAngularDimension, xLine2Point, setXLine2Point, three_point_place, 14)

AcDb2LineAngularDimension::AcDb2LineAngularDimension() {
    imp().begin_as(
        NEW_DIMENSION("DIMENSION", "34", "AcDb2LineAngularDimension", POINT_13 POINT_14 POINT_15 POINT_16));
}
AcDb2LineAngularDimension::~AcDb2LineAngularDimension() = default;
DIMENSION_POINT(AcDb2LineAngularDimension, arcPoint, setArcPoint, two_line_place, 16)
DIMENSION_POINT(AcDb2LineAngularDimension, xLine1Start, setXLine1Start, two_line_place, 13)
DIMENSION_POINT(AcDb2LineAngularDimension, xLine1End, setXLine1End, two_line_place, 14)
DIMENSION_POINT(AcDb2LineAngularDimension, xLine2Start, setXLine2Start, two_line_place, 15)
DIMENSION_POINT(AcDb2LineAngularDimension, xLine2End, setXLine2End, dimension_place, 10)

AcDbRadialDimension::AcDbRadialDimension() {
    imp().begin_as(NEW_DIMENSION("DIMENSION", "36", "AcDbRadialDimension", POINT_15 "40\n0.0\n"));
}
AcDbRadialDimension::~AcDbRadialDimension() = default;
DIMENSION_POINT(AcDbRadialDimension, center, setCenter, dimension_place, 10)
DIMENSION_POINT(AcDbRadialDimension, chordPoint, setChordPoint, radial_place, 15)

double AcDbRadialDimension::leaderLength() const {
    assertReadEnabled();
    return db::read_real(imp(), radial_place, 40);
}

AcDbDiametricDimension::AcDbDiametricDimension() {
    imp().begin_as(NEW_DIMENSION("DIMENSION", "35", "AcDbDiametricDimension", POINT_15 "40\n0.0\n"));
}
AcDbDiametricDimension::~AcDbDiametricDimension() = default;
DIMENSION_POINT(AcDbDiametricDimension, chordPoint, setChordPoint, diametric_place, 15)
DIMENSION_POINT(AcDbDiametricDimension, farChordPoint, setFarChordPoint, dimension_place, 10)

double AcDbDiametricDimension::leaderLength() const {
    assertReadEnabled();
    return db::read_real(imp(), diametric_place, 40);
}

AcDbOrdinateDimension::AcDbOrdinateDimension() {
    imp().begin_as(NEW_DIMENSION("DIMENSION", "38", "AcDbOrdinateDimension", POINT_13 POINT_14));
}
AcDbOrdinateDimension::~AcDbOrdinateDimension() = default;
DIMENSION_POINT(AcDbOrdinateDimension, origin, setOrigin, dimension_place, 10)
DIMENSION_POINT(AcDbOrdinateDimension, definingPoint, setDefiningPoint, ordinate_place, 13)
DIMENSION_POINT(AcDbOrdinateDimension, leaderEndPoint, setLeaderEndPoint, ordinate_place, 14)

bool AcDbOrdinateDimension::isUsingXAxis() const {
    assertReadEnabled();
    return (db::read_integer(imp(), dimension_place, 70) & ordinate_along_x) != 0;
}

AcDbArcDimension::AcDbArcDimension() {
    imp().begin_as(NEW_DIMENSION("ARC_DIMENSION", "37", "AcDbArcDimension",
                                 POINT_13 POINT_14 POINT_15 "70\n0\n40\n0.0\n41\n0.0\n71\n0\n" POINT_16
                                                            "17\n0.0\n27\n0.0\n37\n0.0\n"));
}
AcDbArcDimension::~AcDbArcDimension() = default;
DIMENSION_POINT(AcDbArcDimension, arcPoint, setArcPoint, dimension_place, 10)
DIMENSION_POINT(AcDbArcDimension, centerPoint, setCenterPoint, arc_place, 15)
DIMENSION_POINT(AcDbArcDimension, xLine1Point, setXLine1Point, arc_place, 13)
DIMENSION_POINT(AcDbArcDimension, xLine2Point, setXLine2Point, arc_place, 14)

AcGePoint3d AcDbArcDimension::leader1Point() const {
    assertReadEnabled();
    return db::read_point(imp(), arc_place, 16);
}

AcGePoint3d AcDbArcDimension::leader2Point() const {
    assertReadEnabled();
    return db::read_point(imp(), arc_place, 17);
}

bool AcDbArcDimension::isPartial() const {
    assertReadEnabled();
    return db::read_integer(imp(), arc_place, 70) != 0;
}

bool AcDbArcDimension::hasLeader() const {
    assertReadEnabled();
    return db::read_integer(imp(), arc_place, 71) != 0;
}

double AcDbArcDimension::arcStartParam() const {
    assertReadEnabled();
    return db::read_real(imp(), arc_place, 40); // radians
}

double AcDbArcDimension::arcEndParam() const {
    assertReadEnabled();
    return db::read_real(imp(), arc_place, 41);
}

AcDbRadialDimensionLarge::AcDbRadialDimensionLarge() {
    imp().begin_as(NEW_DIMENSION("LARGE_RADIAL_DIMENSION", "41", "AcDbRadialDimensionLarge",
                                 POINT_13 POINT_14 POINT_15 "40\n0.0\n"));
}
AcDbRadialDimensionLarge::~AcDbRadialDimensionLarge() = default;
DIMENSION_POINT(AcDbRadialDimensionLarge, center, setCenter, dimension_place, 10)
DIMENSION_POINT(AcDbRadialDimensionLarge, chordPoint, setChordPoint, large_place, 13)
DIMENSION_POINT(AcDbRadialDimensionLarge, overrideCenter, setOverrideCenter, large_place, 14)
DIMENSION_POINT(AcDbRadialDimensionLarge, jogPoint, setJogPoint, large_place, 15)
