// What the groups of a multileader say about its look: its context data.
#pragma once

#include "gemat3d.h"
#include "host/db/core/imp_object.h"

#include <string>
#include <vector>

namespace db {

struct multileader_context {
    struct leader {
        bool has_landing = false; // `landing` was set
        AcGePoint3d landing;
        bool has_dogleg = false;
        AcGeVector3d dogleg; // with its length
        std::vector<std::vector<AcGePoint3d>> lines;
    };

    double scale = 1.0;
    double arrow_size = 0.0;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    bool has_text = false;
    std::string_view text; // bytes
    AcGePoint3d text_location;
    AcGeVector3d text_direction = AcGeVector3d::kXAxis;
    double text_rotation = 0.0;
    double text_width = 0.0;
    double text_height = 0.0;
    int attachment = 1;
    bool has_block = false;
    std::uint64_t block = 0;
    AcGePoint3d block_position;
    AcGeMatrix3d block_to_world;
    std::vector<leader> leaders;
};

// Looks on the object's groups, which must not change meanwhile.
multileader_context read_context(const AcDbImpObject& object);

// Moves all points and directions of the context, lengths with `scale`.
void transform_context(AcDbImpObject& object, const AcGeMatrix3d& matrix, double scale);

} // namespace db
