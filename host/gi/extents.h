// The extents of what is drawn, and those of whole blocks, which are remembered.
#pragma once

#include "dbmain.h"
#include "host/gi/canvas.h"

#include <unordered_map>

namespace gi {

class extents_canvas final : public canvas {
public:
    // With `cached_blocks` the contents of a block count by their extents, which is exact when the block is
    // not turned, and otherwise may be somewhat larger than the contents.
    explicit extents_canvas(bool cached_blocks = false) : cached_blocks_(cached_blocks) {}

    const AcDbExtents& extents() const { return extents_; }

    bool enter_block(const AcDbExtents& block, const AcGeMatrix3d& to_world) override;
    void lines(std::span<const AcGePoint3d> points) override;
    void area(std::span<const AcGePoint3d> points) override { lines(points); }
    void curve(const arc& arc) override;

private:
    AcDbExtents extents_;
    bool cached_blocks_;
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
};

} // namespace gi
