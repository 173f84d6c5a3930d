// Lets through what lies within a clip boundary, and cuts what crosses it.
#pragma once

#include "gepnt2d.h"
#include "host/gi/canvas.h"

#include <limits>
#include <vector>

namespace gi {

// An upright prism over a polygon, in a space of its own.
struct clip_boundary {
    AcGeMatrix3d from_world;          // into that space
    std::vector<AcGePoint2d> polygon; // three corners at least; inside by the even-odd rule
    double least_z = -std::numeric_limits<double>::infinity();
    double most_z = std::numeric_limits<double>::infinity();
};

class clipped_canvas final : public canvas {
public:
    // What is let through goes to `target`, which must outlive this one.
    clipped_canvas(canvas& target, clip_boundary boundary);

    bool reads_traits() const override { return target_.reads_traits(); }
    double finest() const override { return target_.finest(); }
    bool enter(const visit& entity) override { return target_.enter(entity); }
    void leave() override { target_.leave(); }
    bool enter_block(const AcDbExtents& extents, const AcGeMatrix3d& to_world) override;

    void lines(std::span<const AcGePoint3d> points) override;
    // A boundary of more than a thousand corners lets only the rims of areas through.
    void area(std::span<const AcGePoint3d> figure) override;
    void area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) override;
    // A text of which some lies within is shown whole.
    bool text(const text_line& line) override;
    void curve(const arc& arc) override;
    void unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both) override;

private:
    bool holds(const AcGePoint3d& in_clip_space) const;
    // Where the line a + t d meets the boundary's walls, for t from 0 to 1 or anywhere.
    std::vector<double> meetings(const AcGePoint3d& a, const AcGeVector3d& d) const;
    std::vector<AcGePoint3d> cut(std::span<const AcGePoint3d> figure, std::span<const AcGePoint2d> corners);
    // None when there would be too many.
    const std::vector<std::vector<AcGePoint2d>>& convex_parts();
    void outline(std::span<const AcGePoint3d> figure);

    canvas& target_;
    clip_boundary boundary_;
    AcGePoint2d least_; // of the polygon
    AcGePoint2d most_;
    double slack_; // how near to the rim counts as on it
    bool convex_;
    std::vector<std::vector<AcGePoint2d>> parts_; // when areas were asked for
};

} // namespace gi
