#include "host/db/core/fields.h"

#include "acutmem.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/lines_alike.h"

namespace db {

namespace {

void append_field(std::string& text, const field& row) {
    std::string_view rest = row.fresh;
    for (int axis = 0; axis < row.size(); ++axis) {
        const std::size_t end = row.size() > 1 ? rest.find(' ') : rest.npos;
        dxf::append_group(text, plain_style, row.code + 10 * axis, rest.substr(0, end));
        if (end != rest.npos)
            rest.remove_prefix(end + 1);
    }
}

bool is_taken(const field& row, double value) {
    return row.rule != field::not_below_zero || value >= 0.0;
}

} // namespace

void append_fresh(std::string& text, const section& fields) {
    dxf::append_group(text, plain_style, 100, fields.marker);
    for (const field& row : fields.fields)
        if (row.fresh.data() != nullptr)
            append_field(text, row);
}

std::string new_entity_text(std::string_view type, std::initializer_list<section> sections) {
    std::string text;
    dxf::append_group(text, plain_style, 0, type);
    dxf::append_group(text, plain_style, 100, dxf::common_marker);
    dxf::append_group(text, plain_style, 8, "0");
    for (const section& section : sections)
        append_fresh(text, section);
    return text;
}

ACHAR* read_text(const AcDbImpObject& object, const dxf::group_place& place, int code) {
    ACHAR* copy = nullptr;
    acutNewString(object.decode(object.groups().text(place, code).value_or("")).c_str(), copy);
    return copy;
}

AcDbObjectId read_id(const AcDbImpObject& object, const dxf::group_place& place, int code) {
    AcDbImpDatabase* const database = object.database;
    return database != nullptr ? database->id(database->records().find(object.groups().handle(place, code)))
                               : AcDbObjectId::kNull;
}

bool read_bit(const AcDbImpObject& object, const dxf::group_place& place, int code, int bit) {
    return (read_integer(object, place, code) & bit) != 0;
}

void write_bit(AcDbImpObject& object, const dxf::group_place& place, int code, int bit, bool on) {
    const int bits = read_integer(object, place, code);
    write_integer(object, place, code, on ? bits | bit : bits & ~bit);
}

double read_number(const AcDbImpObject& object, const section& place, const field& row) {
    const double value = read_real(object, place, row.code, row.missing);
    return row.kind == field::angle ? radians(value) : value;
}

int read_whole(const AcDbImpObject& object, const section& place, const field& row) {
    return read_integer(object, place, row.code, static_cast<int>(row.missing));
}

AcGePoint3d read_place(const AcDbImpObject& object, const section& place, const field& row) {
    const AcGePoint3d point = read_point(object, place, row.code);
    return row.kind == field::flat_point ? AcGeMatrix3d::planeToWorld(read_normal(object, place)) * point
                                         : point;
}

AcGeVector3d read_vector(const AcDbImpObject& object, const section& place, const field& row) {
    return row.kind == field::normal ? read_normal(object, place)
                                     : read_point(object, place, row.code).asVector();
}

Acad::ErrorStatus write_field(AcDbImpObject& object, const section& place, const field& row, double value) {
    if (!is_taken(row, value))
        return Acad::eInvalidInput;
    if (row.kind != field::angle)
        write_real(object, place, row.code, value, row.missing);
    else if (read_number(object, place, row) != value)
        write_real(object, place, row.code, degrees(value), row.missing);
    return Acad::eOk;
}

Acad::ErrorStatus write_field(AcDbImpObject& object, const section& place, const field& row, int value) {
    if (!is_taken(row, value))
        return Acad::eInvalidInput;
    write_integer(object, place, row.code, value, static_cast<int>(row.missing));
    return Acad::eOk;
}

Acad::ErrorStatus write_field(AcDbImpObject& object, const section& place, const field& row,
                              const AcGePoint3d& value) {
    write_point(object, place, row.code,
                row.kind == field::flat_point ? AcGeMatrix3d::worldToPlane(read_normal(object, place)) * value
                                              : value);
    return Acad::eOk;
}

Acad::ErrorStatus write_field(AcDbImpObject& object, const section& place, const field& row,
                              const AcGeVector3d& value) {
    if (row.rule == field::a_direction && value.isZeroLength())
        return Acad::eInvalidInput;
    const AcGeVector3d written = row.rule == field::a_direction ? value.normal() : value;
    if (row.kind == field::normal)
        write_normal(object, place, written);
    else
        write_point(object, place, row.code, AcGePoint3d::kOrigin + written);
    return Acad::eOk;
}

} // namespace db
