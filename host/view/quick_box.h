// A box around an entity, found without making an object of it: from the numbers in its groups alone.
#pragma once

#include "dbmain.h"
#include "gepnt3d.h"
#include "host/dxf/record_table.h"

#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>

class AcDbImpDatabase;

namespace gi {

// What an entity covers of the x-y plane; of one that covers nothing the least is above the most.
struct ACGI_PORT flat_box {
    double least_x = 1e300;
    double least_y = 1e300;
    double most_x = -1e300;
    double most_y = -1e300;

    void add(double x, double y, double around = 0.0);
    bool is_empty() const { return !(least_x <= most_x); }
};

// What references to blocks need of them to have boxes, asked of the drawing once each. Each thread has its
// own; they share the lock that the drawing is asked with.
class ACGI_PORT known_blocks {
public:
    known_blocks(AcDbImpDatabase& database, std::mutex& lock) : database_(database), lock_(lock) {}

    struct block {
        bool found = false;
        AcGePoint3d base;
        AcDbExtents extents;
    };
    // By the bytes of its name in a record.
    const block& named(std::string_view name);
    AcDbImpDatabase& database() const { return database_; }

private:
    AcDbImpDatabase& database_;
    std::mutex& lock_;
    std::unordered_map<std::string_view, block> known_;
};

// Around everything that the entity draws; it may be larger, texts may even be much smaller than theirs.
// Nothing for kinds of entities of which only drawing tells.
ACGI_PORT std::optional<flat_box> quick_box(known_blocks& blocks, dxf::record_id entity);

} // namespace gi
