// The steps of undo of a drawing: commands that can be taken back and given again.
#pragma once

#include "host/db/core/imp_database.h"
#include "host/db/core/undo_groups.h"

#include <span>
#include <string>

namespace db {

class ACDB_PORT history {
public:
    explicit history(AcDbImpDatabase& database) : database_(database) {}

    // What changes from here on belongs to a new step.
    void begin_step(std::string name);
    // Takes back, or gives again, a whole step, and tells who listens. Its name; empty when there is none.
    std::string undo();
    std::string redo();
    // Takes back a part of a step (dxf::record_table::begin_part).
    void take_back_part();
    // Whether one of these is being told.
    bool is_replaying() const { return replaying_; }

    undo_groups groups;

private:
    void tell(std::span<const dxf::replay> changes);

    AcDbImpDatabase& database_;
    bool replaying_ = false;
};

} // namespace db
