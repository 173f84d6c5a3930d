#include "host/db/entities/dimension_look.h"

#include "acutmem.h"
#include "base/wide_format.h"
#include "dbmtext.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/symbol_names.h"
#include "host/db/entities/dimension_kinds.h"
#include "host/db/tables/dimension_style.h"

#include <cmath>
#include <numbers>
#include <optional>

namespace db {

namespace {

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
    const AcGePoint3d passing = read_point(dimension.imp(), dimension_place, 10);
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
    const AcGePoint3d ten = read_point(imp, dimension_place, 10);
    if (const auto* const rotated = AcDbRotatedDimension::cast(&dimension))
        return AcGeMatrix3d::planeToWorld(dimension.normal()) *
               AcGeVector3d(std::cos(rotated->rotation()), std::sin(rotated->rotation()), 0.0);
    if (AcDbAlignedDimension::cast(&dimension) != nullptr)
        return (read_point(imp, where, 14) - read_point(imp, where, 13)).normal();
    if (const auto* const ordinate = AcDbOrdinateDimension::cast(&dimension)) {
        const double turn = -dimension.horizontalRotation();
        const AcGeVector3d x(std::cos(turn), std::sin(turn), 0.0);
        return AcGeMatrix3d::planeToWorld(dimension.normal()) *
               (ordinate->isUsingXAxis() ? x : AcGeVector3d(-x.y, x.x, 0.0));
    }
    return (read_point(imp, where, 15) - ten).normal();
}

std::wstring measured_text(const AcDbDimension& dimension) {
    double value = 0.0;
    dimension.measurement(value);
    const bool angle = kind_of(dimension).measures_angle;
    if (angle)
        value = degrees(value);
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

class plain_look {
public:
    plain_look(const AcDbDimension& dimension, AcGiWorldDraw& draw)
        : dimension_(dimension), imp_(dimension.imp()), kind_(kind_of(dimension)), draw_(draw),
          normal_(dimension.normal()), style_(dimension_style_of(imp_, dimension_place)) {}

    void run() {
        const AcGePoint3d ten = read_point(imp_, dimension_place, 10);
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
    AcGePoint3d own(int code) const { return read_point(imp_, kind_.place, code); }

    void line(const AcGePoint3d& from, const AcGePoint3d& to) {
        const AcGePoint3d ends[] = {from, to};
        draw_.geometry().polyline(2, ends);
    }

    void arrow(const AcGePoint3d& tip, const AcGeVector3d& pointing) {
        const AcGeVector3d along = pointing.normal() * arrow_size(imp_, style_);
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
        if (const double height = dimension_text_height(imp_, style_); height > 0.0)
            shown.setTextHeight(height);
        shown.setContents(words.c_str());
        draw_.geometry().draw(&shown);
    }

    // Where it is taken hold of. They stand on a layer of their own, which is not plotted.
    void points(const AcGePoint3d& ten) {
        if (imp_.database != nullptr)
            draw_.subEntityTraits().setLayer(
                imp_.database->id(imp_.database->names().find(table_kind::layer, L"Defpoints")));
        draw_.geometry().polyline(1, &ten);
        for (const int code : kind_.points)
            if (code != 0 && imp_.groups().find(kind_.place, code) != dxf::group_list::npos) {
                const AcGePoint3d point = own(code);
                draw_.geometry().polyline(1, &point);
            }
    }

    const AcDbDimension& dimension_;
    const AcDbImpObject& imp_;
    const dimension_kind& kind_;
    AcGiWorldDraw& draw_;
    AcGeVector3d normal_;
    std::string_view style_;
};

} // namespace

double measured(const AcDbDimension& dimension) {
    if (const auto arc = arc_of(dimension)) {
        const auto* const along = AcDbArcDimension::cast(&dimension);
        return along == nullptr ? arc->sweep
                                : arc->sweep * along->xLine1Point().distanceTo(along->centerPoint());
    }
    const dimension_kind& kind = kind_of(dimension);
    const AcDbImpObject& imp = dimension.imp();
    const AcGePoint3d ten = read_point(imp, dimension_place, 10);
    const AcGePoint3d first = read_point(imp, kind.place, kind.points[0]);
    if (kind.measures_angle)
        return 0.0;
    if (AcDbOrdinateDimension::cast(&dimension) != nullptr)
        return (first - ten).dotProduct(direction_of(dimension));
    if (kind.points[1] == 0 || AcDbRadialDimensionLarge::cast(&dimension) != nullptr)
        return ten.distanceTo(first);
    return std::fabs((read_point(imp, kind.place, 14) - first).dotProduct(direction_of(dimension)));
}

void draw_plain_dimension(const AcDbDimension& dimension, AcGiWorldDraw& draw) {
    plain_look(dimension, draw).run();
}

} // namespace db
