// In which order the entities of a block are drawn where that is not the order of the file: the drawing's
// table of draw order (SORTENTSTABLE) names entities and, for each, the handle in whose place it is drawn.
// All others are drawn in the places of their own handles.
#pragma once

#include "host/dxf/record_table.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

class AcDbImpDatabase;

namespace db {

class draw_order {
public:
    // Reads the block's table unless it is the one that was read before.
    void follow(const AcDbImpDatabase& database, dxf::record_id block);

    // Puts entities of the block in the order in which they are drawn, what lies on top last. Without a table
    // they stay as they are; true when there is one.
    bool sort(const AcDbImpDatabase& database, std::vector<dxf::record_id>& entities) const;

private:
    std::string_view read_; // the table's text; texts never change, another text is another table
    std::unordered_map<std::uint64_t, std::uint64_t> places_;
};

// Everything that a reference to a block shows, what lies on top last.
std::vector<dxf::record_id> drawn_in_order(AcDbImpDatabase& database, dxf::record_id block);

} // namespace db
