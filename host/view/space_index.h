// Where the entities of a space lie: a box for each, so that a pick looks at few of them.
//
// Boxes stand in the order of creation, and every 64 of them have a box around them all: neighbours in a file
// are neighbours in the drawing. They are reckoned when first asked for and follow changes from then on.
#pragma once

#include "host/view/quick_box.h"

#include <mutex>
#include <vector>

namespace gi {

class space_index {
public:
    // The entities of model space or of a sheet, by its block record.
    space_index(AcDbImpDatabase& database, dxf::record_id space) : database_(database), space_(space) {}

    // The entities whose boxes meet an area, the newest first. Erased ones are not among them.
    std::vector<dxf::record_id> near(const flat_box& area);
    // The exact extents of what is drawn, seen from above; only what lies at their edges is drawn for them.
    flat_box extents();

private:
    // Rounded outward, so that half the memory serves.
    struct box {
        float least_x, least_y, most_x, most_y;
    };
    static constexpr std::size_t group = 64;

    static box rounded(const flat_box& box);
    box box_of(known_blocks& blocks, dxf::record_id entity) const;
    void refresh();
    void build();
    void follow_changes();
    void append(dxf::record_id entity, const box& around);
    void widen_group(std::size_t at);

    AcDbImpDatabase& database_;
    mutable std::mutex lock_; // of the database, while several threads look for boxes
    dxf::record_id space_;
    bool built_ = false;
    std::size_t read_ = 0; // of the journal of records
    std::vector<dxf::record_id> entities_;
    std::vector<box> boxes_;
    std::vector<box> groups_;
};

// The live entities of model space or of a sheet that may draw something in an area, what lies on top first.
std::vector<dxf::record_id> entities_near(AcDbImpDatabase& database, dxf::record_id space,
                                          const flat_box& area);
// The extents of model space or of a sheet, seen from above.
flat_box flat_extents(AcDbImpDatabase& database, dxf::record_id space);

} // namespace gi
