// What begins and ends blocks and sequences of parts: entities that draw nothing.
#include "dbents.h"
#include "host/db/core/fields.h"

namespace {

constexpr db::field begin_fields[] = {db::number(2, ""), db::number(70, "0"), db::point(10, "0.0"),
                                      db::number(3, ""), db::number(1, "")};
constexpr auto begin_place = db::section_of<begin_fields>("AcDbBlockBegin");
constexpr auto end_marker = db::marker("AcDbBlockEnd");

} // namespace

ENTITY_CLASS(AcDbBlockBegin, AcDbEntity, BLOCK, begin_place)
ENTITY_CLASS(AcDbBlockEnd, AcDbEntity, ENDBLK, end_marker)
ENTITY_CLASS(AcDbSequenceEnd, AcDbEntity, SEQEND)
