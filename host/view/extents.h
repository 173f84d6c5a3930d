// The extents of what is drawn, and those of whole blocks, which are remembered.
#pragma once

#include "dbmain.h"
#include "host/gi/canvas.h"

#include <unordered_map>

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

// The extents of a database's blocks in their own coordinates, reckoned when first asked for and again when
// something in a block has changed.
class block_extents {
public:
    explicit block_extents(AcDbImpDatabase& database) : database_(database) {}

    const AcDbExtents& of(dxf::record_id block);

private:
    void follow_changes();

    AcDbImpDatabase& database_;
    std::unordered_map<dxf::record_id, AcDbExtents> known_;
    std::size_t read_ = 0; // of the journal of records
    // Of blocks that are being reckoned, one in the other: how many, and how many entities all of them had.
    std::size_t depth_ = 0;
    std::size_t entered_ = 0;
};

// The same for who does not keep them: the extents of what a reference to a block draws of it, in the block's
// coordinates, also of blocks that stand for another drawing.
ACGI_PORT const AcDbExtents& extents_of_block(AcDbImpDatabase& database, dxf::record_id block);

} // namespace gi
