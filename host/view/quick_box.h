// A box around an entity, found without making an object of it: from the numbers in its groups alone.
#pragma once

#include "host/dxf/record_table.h"

#include <optional>

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

// Around everything that the entity draws; it may be larger, texts may even be much smaller than theirs.
// Nothing for kinds of entities of which only drawing tells.
ACGI_PORT std::optional<flat_box> quick_box(AcDbImpDatabase& database, dxf::record_id entity);

} // namespace gi
