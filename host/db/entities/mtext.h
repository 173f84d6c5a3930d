// A paragraph text in its groups.
#pragma once

#include "dbmtext.h"
#include "host/db/core/imp_object.h"
#include "host/db/entities/mtext_layout.h"

#include <memory>

namespace db {

// What the groups of a paragraph text say. Where it stands and how it is turned is the world's.
struct mtext_values {
    // The style is looked for in `styles`; without one it is the font txt.
    mtext_values(const AcDbImpObject& object, AcDbImpDatabase* styles);
    explicit mtext_values(const AcDbImpObject& object) : mtext_values(object, object.database) {}

    AcGePoint3d location;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    AcGeVector3d direction; // in the plane
    AcGiTextStyle style;    // with its height
    std::string contents;   // in the drawing's encoding
    mtext_frame frame;
    int column_type = 0;
    bool automatic_height = false;
    bool reversed = false;

    AcGeVector3d up() const { return normal.crossProduct(direction); }
};

// Draws a paragraph text with the styles of a drawing.
void draw_mtext(const AcDbImpObject& object, AcDbImpDatabase* styles, AcGiWorldDraw& draw);

// The paragraph text that a record holds behind its own groups (101), as attributes of several lines do; null
// when it holds none. A new object in the coordinates and the encoding of the record's drawing.
std::unique_ptr<AcDbMText> embedded_mtext(const AcDbImpObject& object);

} // namespace db
