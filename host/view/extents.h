// The extents of whole blocks, which are remembered.
#pragma once

#include "dbmain.h"
#include "host/view/extents_canvas.h"

#include <unordered_map>

namespace gi {

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
