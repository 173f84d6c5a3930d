// The extents of what is drawn.
#pragma once

#include "dbmain.h"
#include "host/gi/canvas.h"

#include <array>
#include <cstddef>
#include <span>

namespace gi {

class extents_canvas final : public canvas {
public:
    extents_canvas() : entered_(&own_entered_) {}
    // Shares its count of entities with others.
    explicit extents_canvas(std::size_t& entered) : entered_(&entered) {}

    const AcDbExtents& extents() const { return extents_; }

    bool enter(const visit& /*entity*/) override {
        ++*entered_;
        return true;
    }
    // What stands in a block counts by the block's own extents where these stay a box that is parallel to the
    // axes. Turned blocks are drawn, until there is more than anybody draws: then they count so, too.
    bool enter_block(const AcDbExtents& block, const AcGeMatrix3d& to_world) override;
    void lines(std::span<const AcGePoint3d> points) override;
    void area(std::span<const AcGePoint3d> points) override { lines(points); }
    void curve(const arc& arc) override;

private:
    void add(const AcGePoint3d& point);

    AcDbExtents extents_;
    std::size_t own_entered_ = 0;
    std::size_t* entered_; // how many entities
};

// Whether there is anything between the corners.
bool is_empty(const AcDbExtents& extents);
// All eight corners, the least one first.
std::array<AcGePoint3d, 8> corners_of(const AcDbExtents& extents);

} // namespace gi
