// What changed between two drawings, entity by entity.
#pragma once

#include "host/dxf/record_table.h"

#include <unordered_map>
#include <vector>

class AcDbImpDatabase;

namespace picture {

enum class change : unsigned char { none, came, went, altered };

// Entities of two forms of a drawing are the same when they have the same handle, and those that are left
// when they say the same. One is altered when it says something else, or its layer shows it in another way;
// on a layer that hides it now it went, and the other way round it came.
class changes {
public:
    changes(AcDbImpDatabase& before, AcDbImpDatabase& now);

    change of(const AcDbImpDatabase& drawing, dxf::record_id entity) const;
    AcDbImpDatabase& before() const { return before_; }

private:
    struct found {
        dxf::record_id entity = dxf::no_record;
        std::size_t says = 0; // its groups with those of its parts, as one number
    };
    static std::vector<found> entities_of(AcDbImpDatabase& drawing);
    void compare_layers(AcDbImpDatabase& before, AcDbImpDatabase& now);

    AcDbImpDatabase& before_;
    const AcDbImpDatabase& now_;
    std::unordered_map<dxf::record_id, change> in_before_;
    std::unordered_map<dxf::record_id, change> in_now_;
};

} // namespace picture
