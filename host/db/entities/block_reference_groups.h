// What a reference to a block says in its groups, and how it is placed by them.
#pragma once

#include "gescl3d.h"
#include "host/db/core/blocks.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"

#include <cmath>
#include <string_view>

namespace db {

inline constexpr field reference_fields[] = {
    number(66), number(2, ""), point(10, "0.0"), number(41), number(42), number(43),
    number(50), number(70),    number(71),       number(44), number(45), normal(),
};
inline constexpr auto plain_place = section_of<reference_fields>("AcDbBlockReference");
inline constexpr auto array_place = section_of<reference_fields>("AcDbMInsertBlock");
// The one that a record has.
const section& place_of(const AcDbImpObject& reference);

// What the groups of a reference say, its position in the coordinates of its plane, its angle in radians.
struct reference_groups {
    explicit reference_groups(const AcDbImpObject& object);

    // From the block's coordinates, with its base point at the origin.
    AcGeMatrix3d placing() const {
        AcGeMatrix3d turned;
        const AcGeVector3d x(std::cos(rotation), std::sin(rotation), 0.0);
        turned.setCoordSystem(position, x * scale.sx, AcGeVector3d(-x.y, x.x, 0.0) * scale.sy,
                              AcGeVector3d::kZAxis * scale.sz);
        return AcGeMatrix3d::planeToWorld(normal) * turned;
    }
    // From one column to the next one, and from one row to the next.
    AcGeVector3d column_step() const {
        return AcGeMatrix3d::planeToWorld(normal) *
               AcGeVector3d(std::cos(rotation), std::sin(rotation), 0.0) * column_spacing;
    }
    AcGeVector3d row_step() const {
        return AcGeMatrix3d::planeToWorld(normal) *
               AcGeVector3d(-std::sin(rotation), std::cos(rotation), 0.0) * row_spacing;
    }

    std::string_view name;
    AcGePoint3d position;
    AcGeScale3d scale;
    double rotation;
    AcGeVector3d normal;
    int columns;
    int rows;
    double column_spacing;
    double row_spacing;
};

void write_rotation(AcDbImpObject& reference, double angle);
void write_position(AcDbImpObject& reference, const AcGePoint3d& in_plane);
// Takes a placing of a block apart into groups; false, and nothing is written, when it has axes that are not
// at right angles. Signs of the scale stay what they are as far as they can.
bool write_placing(AcDbImpObject& reference, const AcGeMatrix3d& placing);

// A block and the drawing that it stands in; no database when there is none.
struct named_block {
    AcDbImpDatabase* database = nullptr;
    dxf::record_id record = dxf::no_record;

    explicit operator bool() const { return database != nullptr && record != dxf::no_record; }
    AcGeMatrix3d to_base() const {
        return AcGeMatrix3d::translation(-database->blocks().base_of(record).asVector());
    }
};

// The block that a reference names; of a new one the block that it was given.
named_block block_of(const AcDbImpObject& reference, std::string_view name, AcDbObjectId new_block);

} // namespace db
