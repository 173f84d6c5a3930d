// Curves, faces and texts of drawables as figures on a canvas.
#include "host/gi/set_text.h"
#include "host/view/tracer_sink.h"

#include <cmath>
#include <span>
#include <string_view>

namespace gi {

Adesk::Boolean tracer::sink::circularArc(const AcGePoint3d& center, const double radius,
                                         const AcGeVector3d& normal, const AcGeVector3d& startVector,
                                         const double sweepAngle, const AcGiArcType arcType) const {
    const AcGeVector3d x = startVector.normal() * radius;
    const AcGeVector3d y = normal.normal().crossProduct(x);
    const AcGeMatrix3d& m = stack_.back();
    arc drawn{m * center, m * x, m * y, 0.0, sweepAngle};
    out().curve(drawn);
    if (const AcGeVector3d up = extrusion(&normal); !up.isZeroLength()) {
        const AcGePoint3d sides[] = {drawn.at(0.0), drawn.at(0.0) + up};
        out().lines(sides);
        drawn.center += up;
        out().curve(drawn);
        const AcGePoint3d other[] = {drawn.at(sweepAngle) - up, drawn.at(sweepAngle)};
        out().lines(other);
    }
    if (arcType == kAcGiArcSector) {
        const AcGePoint3d rim[] = {drawn.at(0.0), drawn.center, drawn.at(sweepAngle)};
        out().lines(rim);
    } else if (arcType == kAcGiArcChord) {
        const AcGePoint3d rim[] = {drawn.at(0.0), drawn.at(sweepAngle)};
        out().lines(rim);
    }
    return false;
}

Adesk::Boolean tracer::sink::through(const AcGePoint3d& first, const AcGePoint3d& second,
                                     const AcGePoint3d& third, bool whole, AcGiArcType type) const {
    const AcGeVector3d a = second - first;
    const AcGeVector3d b = third - first;
    const AcGeVector3d normal = a.crossProduct(b);
    if (normal.isZeroLength()) { // the three stand in a line
        const AcGePoint3d line[] = {first, second, third};
        return polyline(3, line, nullptr, -1);
    }
    const AcGePoint3d center =
        first + (normal.crossProduct(a) * b.lengthSqrd() + b.crossProduct(normal) * a.lengthSqrd()) /
                    (2.0 * normal.lengthSqrd());
    const AcGeVector3d start = first - center;
    const double sweep = whole ? full_turn : start.angleTo(third - center, normal);
    return circularArc(center, start.length(), normal, start, sweep, type);
}

Adesk::Boolean tracer::sink::polyline(const Adesk::UInt32 nbPoints, const AcGePoint3d* points,
                                      const AcGeVector3d* normal, Adesk::LongPtr /*marker*/) const {
    const std::vector<AcGePoint3d> moved = in_world(nbPoints, points);
    out().lines(moved);
    if (const AcGeVector3d up = extrusion(normal); !up.isZeroLength()) {
        std::vector<AcGePoint3d> lifted = moved;
        for (AcGePoint3d& point : lifted)
            point += up;
        out().lines(lifted);
        for (std::size_t i = 0; i < moved.size(); ++i) {
            const AcGePoint3d side[] = {moved[i], lifted[i]};
            out().lines(side);
        }
    }
    return false;
}

Adesk::Boolean tracer::sink::polygon(const Adesk::UInt32 nbPoints, const AcGePoint3d* points) const {
    std::vector<AcGePoint3d> moved = in_world(nbPoints, points);
    if (owner_.subEntityTraits().fillType() == kAcGiFillAlways) {
        out().area(moved);
    } else if (!moved.empty()) {
        moved.push_back(moved.front());
        out().lines(moved);
    }
    return false;
}

Adesk::Boolean tracer::sink::mesh(const Adesk::UInt32 rows, const Adesk::UInt32 columns,
                                  const AcGePoint3d* points) const {
    const std::vector<AcGePoint3d> moved = in_world(std::size_t{rows} * columns, points);
    for (std::size_t row = 0; row < rows; ++row)
        out().lines(std::span(moved).subspan(row * columns, columns));
    std::vector<AcGePoint3d> column(rows);
    for (std::size_t i = 0; i < columns; ++i) {
        for (std::size_t row = 0; row < rows; ++row)
            column[row] = moved[row * columns + i];
        out().lines(column);
    }
    return false;
}

Adesk::Boolean tracer::sink::shell(const Adesk::UInt32 nbVertex, const AcGePoint3d* vertices,
                                   const Adesk::UInt32 faceListSize, const Adesk::Int32* faces) const {
    const std::vector<AcGePoint3d> moved = in_world(nbVertex, vertices);
    std::vector<std::vector<AcGePoint3d>> rims; // of a face and the holes behind it
    const auto draw_face = [&] {
        if (rims.size() == 1)
            out().area(rims.front());
        else if (!rims.empty())
            out().area_of_rims(rims);
        rims.clear();
    };
    for (Adesk::UInt32 at = 0; at < faceListSize;) {
        const std::int64_t signed_count = faces[at++];
        if (signed_count >= 0)
            draw_face();
        const auto count = static_cast<Adesk::UInt32>(
            std::min<std::int64_t>(std::abs(signed_count), std::int64_t{faceListSize} - at));
        std::vector<AcGePoint3d> rim;
        rim.reserve(count);
        for (Adesk::UInt32 i = 0; i < count; ++i)
            if (const auto index = static_cast<Adesk::UInt32>(faces[at + i]); index < nbVertex)
                rim.push_back(moved[index]);
        at += count;
        if (!rim.empty())
            rims.push_back(std::move(rim));
    }
    draw_face();
    return false;
}

Adesk::Boolean tracer::sink::text(const AcGePoint3d& position, const AcGeVector3d& normal,
                                  const AcGeVector3d& direction, const ACHAR* message,
                                  const Adesk::Int32 length, const Adesk::Boolean raw,
                                  const AcGiTextStyle& style) const {
    std::wstring_view signs = message != nullptr ? message : L"";
    if (length >= 0)
        signs = signs.substr(0, static_cast<std::size_t>(length));
    const set_text set = set_line(signs, raw, style);
    if (set.shown.empty())
        return false;
    AcGeVector3d x = direction.normal();
    AcGeVector3d y = normal.normal().crossProduct(x);
    if (style.isBackward())
        x = -x;
    if (style.isUpsideDown())
        y = -y;
    const AcGeMatrix3d& to_world = stack_.back();
    const double wide = style.textSize() * style.xScale();
    bool kept = true;
    for (const text_part& run : set.parts)
        kept = kept && out().text({to_world * (position + x * run.along + y * run.up), to_world * (x * wide),
                                   to_world * (y * style.textSize()), style.obliquingAngle(),
                                   set.signs_of(run), &style.imp(), wide > 0.0 ? run.length / wide : 0.0});
    if (kept) {
        for (const text_rule& rule : set.rules) {
            const AcGePoint3d at = position + y * rule.up;
            const AcGePoint3d ends[] = {at + x * rule.from, at + x * rule.to};
            out().lines(in_world(2, ends));
        }
        return false;
    }
    const text_box& box = set.box;
    const AcGeVector3d slanted = y + x * std::tan(style.obliquingAngle());
    const AcGePoint3d start = position + x * box.left + slanted * box.bottom;
    const AcGeVector3d along = x * box.width;
    const AcGeVector3d up = slanted * (box.top - box.bottom);
    const AcGePoint3d corners[] = {start, start + along, start + along + up, start + up};
    std::vector<AcGePoint3d> figure = in_world(4, corners);
    out().area(figure);
    if (const AcGeVector3d lift = extrusion(&normal); !lift.isZeroLength()) {
        for (AcGePoint3d& corner : figure)
            corner += lift;
        out().area(figure);
    }
    return false;
}

} // namespace gi
