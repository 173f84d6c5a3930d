// The loops around a hatch as its groups tell them, and back.
#pragma once

#include "gepnt2d.h"
#include "host/dxf/group_list.h"
#include "host/ge/bspline.h"
#include "host/gi/canvas.h"

#include <cstdint>
#include <span>
#include <variant>
#include <vector>

class AcGeMatrix3d;

namespace db {

// A piece of a loop. Angles are those of the groups: degrees, of elliptic arcs of the parameter, and of arcs
// that run clockwise taken the other way round.
struct hatch_edge {
    int type = 1;       // AcDbHatch::HatchEdgeType
    AcGePoint2d first;  // where a line starts; the center of an arc
    AcGePoint2d second; // where a line ends; from an ellipse's center to the end of its major axis
    double size = 0.0;  // radius; of an ellipse the ratio of its axes
    double start_angle = 0.0;
    double end_angle = 360.0;
    bool anticlockwise = true;
    int degree = 0; // of a spline
    bool rational = false;
    bool periodic = false;
    std::vector<double> knots;
    std::vector<double> weights;
    std::vector<AcGePoint2d> points; // of control
    int counts = 0;                  // of fit points, which files of before 2010 do not have
    std::vector<AcGePoint2d> fit_points;
    std::vector<AcGePoint2d> tangents; // at both ends, or none
};

struct hatch_loop {
    int type = 0; // AcDbHatch::HatchLoopType together
    bool closed = true;
    std::vector<AcGePoint2d> vertices; // of a polyline loop
    std::vector<double> bulges;        // behind each of them, or none
    std::vector<hatch_edge> edges;     // of any other loop
    std::vector<std::uint64_t> sources;

    bool is_polyline() const { return (type & 2) != 0; }
};

// Where in the groups of a hatch its loops stand: from the first one's type to behind the last one's sources;
// where they would stand when there is none.
std::pair<std::size_t, std::size_t> range_of_loops(const dxf::group_list& groups);

// The loops that stand there, each with what it has, whatever the counts claim. Numbers that are none are
// nought.
std::vector<hatch_loop> read_loops(std::span<const dxf::group> groups);
void append_loop(std::vector<dxf::group_list::fresh_group>& groups, const hatch_loop& loop);

// Brings a loop to another plane: from points of the old one (with z nought) to points of the new one, whose
// z is left out; `scale` is by what lengths grow, `mirrored` whether it runs the other way round there.
void transform_loop(hatch_loop& loop, const AcGeMatrix3d& plane_to_plane, double scale, bool mirrored);

// What a loop consists of when it is drawn: points that straight lines join, arcs and curves; in the
// coordinates of the hatch's plane, at an elevation. One piece begins where the one before it ends, as far as
// they fit.
using hatch_piece = std::variant<std::vector<AcGePoint3d>, gi::arc, ge::bspline>;
std::vector<hatch_piece> pieces_of(const hatch_loop& loop, double elevation);

} // namespace db
