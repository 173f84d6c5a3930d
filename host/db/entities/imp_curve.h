// A curve as a row of plain pieces - lines, arcs of circles and ellipses, B-splines - and what can be
// measured along it.
#pragma once

#include "acdb.h"
#include "host/ge/bspline.h"
#include "host/gi/canvas.h"

#include <memory>
#include <variant>
#include <vector>

namespace db {

// from + along * t
struct straight {
    AcGePoint3d from;
    AcGeVector3d along;
};

// A piece with the parameters of the curve at its ends; `from` and `to` are those of the shape there. For a
// curve that goes on without end the last one, or both, are infinite, and the parameters are the same.
struct curve_piece {
    std::variant<straight, gi::arc, std::shared_ptr<const ge::bspline>> shape;
    double from = 0.0;
    double to = 0.0;
    double first = 0.0;
    double last = 0.0;

    double to_shape(double param) const;
    double to_param(double t) const;
    AcGePoint3d at(double t) const;
    AcGeVector3d slope(double t) const; // by t
    // How far it is along the piece from one place to one that is not before it.
    double length(double t0, double t1) const;
    // The place that is so far behind `from`, which must be finite.
    double at_length(double length) const;
    // The place nearest to a point; also outside of the ends of lines and circles when `extended` is true.
    double nearest(const AcGePoint3d& point, bool extended) const;
    // Twice the area between the piece and the lines from its ends to a point, as a vector.
    AcGeVector3d swept(const AcGePoint3d& from_point) const;
};

} // namespace db

class AcDbImpCurve {
public:
    void add_line(const AcGePoint3d& from, const AcGePoint3d& to, double first, double last);
    // A line without end behind `from`, and before it too; its parameter is the length.
    void add_endless(const AcGePoint3d& from, const AcGeVector3d& direction, bool both);
    void add_arc(const gi::arc& arc, double first, double last);
    void add_spline(std::shared_ptr<const ge::bspline> spline);
    bool is_empty() const { return pieces_.empty(); }
    void clear();

    double first() const { return pieces_.front().first; }
    double last() const { return pieces_.back().last; }
    // Whether there is a point for a parameter: behind the ends too on a line or an arc.
    bool has(double param) const;
    AcGePoint3d at(double param) const;
    AcGeVector3d slope(double param) const; // by the parameter
    // The parameter must be one of the curve, and its beginning must not be infinite.
    double length_to(double param) const;
    double length() const;
    double param_at_length(double length) const;
    double nearest(const AcGePoint3d& point, bool extended) const;
    // Of the figure between the curve and the line that closes it.
    double area() const;

    // What the pieces were made from, see AcDbCurve.
    std::size_t revision = 0;
    std::size_t journal = 0;
    bool reads_parts = false;

private:
    const db::curve_piece& piece_at(double param) const;
    double piece_length(std::size_t index) const;
    void add(const db::curve_piece& piece);
    void measure() const;

    std::vector<db::curve_piece> pieces_;
    mutable std::vector<double> starts_; // where each piece begins, as a length; when asked first
};
