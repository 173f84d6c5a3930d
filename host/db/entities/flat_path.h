// A path in a plane, of lines and arcs that may have widths: what light polylines and flat heavy ones share.
#pragma once

#include "acgi.h"
#include "dbptrar.h"
#include "gemat3d.h"
#include "gepnt2d.h"
#include "host/gi/canvas.h"

#include <vector>

class AcDbEntity;
class AcDbImpCurve;

namespace db {

// A vertex, and the segment from it to the next one. The bulge is the tangent of a quarter of the angle that
// the segment turns through, positive to the left; nought for a line.
struct path_vertex {
    AcGePoint2d point;
    double bulge = 0.0;
    double start_width = 0.0;
    double end_width = 0.0;
};

struct flat_path {
    std::vector<path_vertex> vertices; // in the coordinates of the plane
    bool closed = false;
    double elevation = 0.0; // above the plane through the origin
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    double thickness = 0.0;

    std::size_t segments() const;
    const path_vertex& next(std::size_t vertex) const { return vertices[(vertex + 1) % vertices.size()]; }
};

// Whether a segment is an arc; then `arc` is it, in the plane at an elevation, with a negative sweep when it
// turns to the right. Coinciding ends make a line, and a bulge so small that nobody could tell.
bool arc_of_segment(const path_vertex& from, const AcGePoint2d& to, double elevation, gi::arc& arc);

void draw_path(const flat_path& path, AcGiWorldDraw& draw);
// The parameter of the curve counts the vertices.
void add_pieces(const flat_path& path, AcDbImpCurve& pieces);
// New lines and arcs with the properties of `whole`, which the caller owns.
void explode_path(const flat_path& path, const AcDbEntity& whole, AcDbVoidPtrArray& parts);
// The path after a transformation, and by what lengths in it grow. False, and the path is as it was, when it
// would have to be something else.
bool transform_path(flat_path& path, const AcGeMatrix3d& matrix, double& growth);

} // namespace db
