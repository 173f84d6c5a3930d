// Where the drawing of entities ends: a canvas gets a few plain figures in world coordinates. Extents,
// picking and exploding are canvases.
#pragma once

#include "acdb.h"
#include "gemat3d.h"
#include "host/dxf/record_table.h"

#include <span>
#include <string_view>
#include <vector>

class AcDbExtents;
class AcDbImpDatabase;

namespace gi {

struct font;

// Part of an ellipse, as the image of a circle is: center + u cos t + v sin t, for t from `start` through
// `sweep`. Whole when the sweep is a full turn or more.
struct arc {
    AcGePoint3d center;
    AcGeVector3d u;
    AcGeVector3d v;
    double start = 0.0;
    double sweep = 0.0;

    AcGePoint3d at(double t) const;
    bool is_whole() const;
};

// Points along an arc, its ends among them, of which no chord is further from it than `deviation` (and no
// more than 512 of them).
std::vector<AcGePoint3d> flattened(const arc& arc, double deviation);

// An entity of a database while it is drawn, and what it is drawn in.
struct visit {
    AcDbImpDatabase* database = nullptr;
    dxf::record_id entity = dxf::no_record;
    AcGeMatrix3d to_world; // from the coordinates of the block that the entity stands in
};

// A line of text, for canvases that keep it as such: y is where its letters rise, as long as they are high; x
// is where it runs, by its width factor longer than that.
struct text_line {
    AcGePoint3d position;
    AcGeVector3d x;
    AcGeVector3d y;
    double oblique = 0.0;
    std::wstring_view text;
    const font* written_with = nullptr; // as long as the call lasts
    double length = 0.0;                // along x, in lengths of it
};

class canvas {
public:
    virtual ~canvas() = default;

    // Whether attributes (colour, layer, linetype) matter to it.
    virtual bool reads_traits() const { return false; }
    // Whether it sees a drawing that stands still: then what blocks hold is read once, however often they are
    // drawn.
    virtual bool sees_it_stand_still() const { return false; }
    // An entity of a database begins, inside of those that have not ended: false to leave it out. One that
    // was not left out ends with leave().
    virtual bool enter(const visit& /*entity*/) { return true; }
    virtual void leave() {}
    // What stands in a block, or in several rows and columns of it, begins, all of it within these corners
    // (of the block's coordinates): false when it need not be drawn.
    virtual bool enter_block(const AcDbExtents& /*extents*/, const AcGeMatrix3d& /*to_world*/) {
        return true;
    }
    // What lies nearer to each other than this, in the world, is the same to it.
    virtual double finest() const { return 0.0; }
    // Whether it has seen enough: what is left need not be drawn.
    virtual bool is_done() const { return false; }

    virtual void lines(std::span<const AcGePoint3d> points) = 0;
    // A closed figure, filled; its rim belongs to it.
    virtual void area(std::span<const AcGePoint3d> points) = 0;
    // A filled figure with several rims: what lies within an odd number of them belongs to it. A canvas that
    // does not tell holes gets each rim as an area of its own.
    virtual void area_of_rims(std::span<const std::vector<AcGePoint3d>> rims);
    // A text; a canvas that does not keep it answers false, and gets the area that it covers.
    virtual bool text(const text_line& /*line*/) { return false; }
    virtual void curve(const arc& arc) = 0;
    // A line without end to one side, or to both.
    virtual void unbounded(const AcGePoint3d& /*from*/, const AcGeVector3d& /*direction*/, bool /*both*/) {}
};

} // namespace gi
