// The fields of a class of objects as rows: in which group each stands, what a new object says there, what is
// meant where a record leaves it out, and which values it takes. From the rows come the order in which the
// class's groups are written, the text of a new object, and the members that only read or write one field.
//
//     constexpr db::field circle_fields[] = {
//         db::number(39), db::flat_point(10, "0.0"), db::number(40, "0.0").not_negative(), db::normal()};
//     constexpr auto circle_place = db::section_of<circle_fields>("AcDbCircle");
//
//     ENTITY_CLASS(AcDbCircle, AcDbCurve, CIRCLE, circle_place)
//     FIELD_MEMBERS(AcDbCircle, radius, setRadius, circle_place, 40)
#pragma once

#include "dbmain.h"
#include "host/db/core/imp_object.h"
#include "host/dxf/group_list.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace db {

// A row. What a new object says is text; of several coordinates that differ, with blanks between them. Rows
// that say nothing of that are left out of a new object.
struct field {
    enum kinds { single, angle, pair, point, flat_point, normal };
    enum rules { anything, not_below_zero, a_direction };

    int code;
    kinds kind = single;
    std::string_view fresh = {};
    double missing = 0.0; // what is meant where the group is missing
    rules rule = anything;
    bool reach = false; // what is drawn lies within that distance of the point

    // Coordinates stand in groups whose codes are ten apart.
    constexpr int size() const { return kind == single || kind == angle ? 1 : kind == pair ? 2 : 3; }
    // Other values are answered with eInvalidInput. A direction is written with the length 1.
    constexpr field not_negative() const { return {code, kind, fresh, missing, not_below_zero, reach}; }
    constexpr field direction() const { return {code, kind, fresh, missing, a_direction, reach}; }
    constexpr field or_else(double meant) const { return {code, kind, fresh, meant, rule, reach}; }
    constexpr field around() const { return {code, kind, fresh, missing, rule, true}; }
};

// A number, flags, a text or a handle.
constexpr field number(int code, std::string_view fresh = {}) {
    return {code, field::single, fresh};
}
// In degrees, of which members speak in radians.
constexpr field angle(int code, std::string_view fresh = {}) {
    return {code, field::angle, fresh};
}
constexpr field pair(int code, std::string_view fresh = {}) {
    return {code, field::pair, fresh};
}
constexpr field point(int code, std::string_view fresh = {}) {
    return {code, field::point, fresh};
}
// In the coordinates of the plane with the section's normal, of which members speak in those of the world.
constexpr field flat_point(int code, std::string_view fresh = {}) {
    return {code, field::flat_point, fresh};
}
// The z axis when it is missing.
constexpr field normal(std::string_view fresh = {}) {
    return {210, field::normal, fresh};
}

// The fields that stand behind one marker.
struct section : dxf::group_place {
    std::span<const field> fields = {};

    // The row with a code; one that is not there does not compile.
    consteval field operator[](int code) const {
        for (const field& row : fields)
            if (row.code == code)
                return row;
        throw "no row with this code";
    }
};

template<const auto& Fields>
constexpr auto make_order() {
    constexpr std::size_t count = [] {
        std::size_t groups = 0;
        for (const field& row : Fields)
            groups += static_cast<std::size_t>(row.size());
        return groups;
    }();
    std::array<int, count> order{};
    std::size_t at = 0;
    for (const field& row : Fields)
        for (int axis = 0; axis < row.size(); ++axis)
            order[at++] = row.code + 10 * axis;
    return order;
}
template<const auto& Fields>
inline constexpr auto order_of = make_order<Fields>();

template<const auto& Fields>
constexpr section section_of(std::string_view marker) {
    return {{marker, order_of<Fields>}, Fields};
}
// A marker behind which nothing stands in a new object.
constexpr section marker(std::string_view name) {
    return {{name}, {}};
}

// Appends a section's marker and what a new object says behind it.
void append_fresh(std::string& text, const section& fields);
// The groups of a new entity of a type, as imp_object::begin_as wants them.
std::string new_entity_text(std::string_view type, std::initializer_list<section> sections);

// A text that the caller frees (acutDelString).
ACHAR* read_text(const AcDbImpObject& object, const dxf::group_place& place, int code);
// Null when the group names nothing in the object's drawing.
AcDbObjectId read_id(const AcDbImpObject& object, const dxf::group_place& place, int code);
bool read_bit(const AcDbImpObject& object, const dxf::group_place& place, int code, int bit);
void write_bit(AcDbImpObject& object, const dxf::group_place& place, int code, int bit, bool on);

// Reading and writing a field by its row.
double read_number(const AcDbImpObject& object, const section& place, const field& row);
AcGePoint3d read_place(const AcDbImpObject& object, const section& place, const field& row);
AcGeVector3d read_vector(const AcDbImpObject& object, const section& place, const field& row);
Acad::ErrorStatus write_field(AcDbImpObject& object, const section& place, const field& row, double value);
Acad::ErrorStatus write_field(AcDbImpObject& object, const section& place, const field& row, int value);
Acad::ErrorStatus write_field(AcDbImpObject& object, const section& place, const field& row,
                              const AcGePoint3d& value);
Acad::ErrorStatus write_field(AcDbImpObject& object, const section& place, const field& row,
                              const AcGeVector3d& value);
int read_whole(const AcDbImpObject& object, const section& place, const field& row);

// What a member returns, and the value that it reads or takes.
template<class Member>
struct member;
template<class Class, class Value>
struct member<Value (Class::*)() const> {
    using value = Value;
};
template<class Class, class Result, class Value>
struct member<Result (Class::*)(Value)> {
    using result = Result;
    using value = Value;
};

template<class Value>
Value read_field(const AcDbImpObject& object, const section& place, const field& row) {
    if constexpr (std::is_same_v<Value, AcGePoint3d>)
        return read_place(object, place, row);
    else if constexpr (std::is_same_v<Value, AcGeVector3d>)
        return read_vector(object, place, row);
    else if constexpr (std::is_same_v<Value, AcDbObjectId>)
        return read_id(object, place, row.code);
    else if constexpr (std::is_same_v<Value, ACHAR*>)
        return read_text(object, place, row.code);
    else if constexpr (std::is_same_v<Value, bool>)
        return read_whole(object, place, row) != 0;
    else if constexpr (std::is_floating_point_v<Value>)
        return static_cast<Value>(read_number(object, place, row));
    else if constexpr (std::is_same_v<Value, Adesk::Int16>)
        return static_cast<Value>(std::clamp(read_whole(object, place, row), -32768, 32767));
    else
        return static_cast<Value>(read_whole(object, place, row));
}

} // namespace db

// A class of entities with its constructor, whose objects begin with what the rows of its sections say; and
// the same with the name of an application that files give it.
#define ENTITY_CLASS(CLASS, PARENT, TYPE, ...)                                                               \
    ENTITY_CLASS_OF(CLASS, PARENT, TYPE, "ObjectDBX Classes", __VA_ARGS__)
#define ENTITY_CLASS_OF(CLASS, PARENT, TYPE, APP, ...)                                                       \
    ACRX_DXF_DEFINE_MEMBERS(CLASS, PARENT, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, TYPE, APP)         \
    CLASS::CLASS() {                                                                                         \
        static const std::string text = db::new_entity_text(#TYPE, {__VA_ARGS__});                           \
        imp().begin_as(text.c_str());                                                                        \
    }

// The member that gives a field, the one that sets it, and both.
#define FIELD_GETTER(CLASS, GET, PLACE, CODE)                                                                \
    db::member<decltype(&CLASS::GET)>::value CLASS::GET() const {                                            \
        assertReadEnabled();                                                                                 \
        return db::read_field<db::member<decltype(&CLASS::GET)>::value>(imp(), PLACE, (PLACE)[CODE]);        \
    }
#define FIELD_SETTER(CLASS, SET, PLACE, CODE)                                                                \
    db::member<decltype(&CLASS::SET)>::result CLASS::SET(db::member<decltype(&CLASS::SET)>::value value) {   \
        assertWriteEnabled();                                                                                \
        return static_cast<db::member<decltype(&CLASS::SET)>::result>(                                       \
            db::write_field(imp(), PLACE, (PLACE)[CODE], value));                                            \
    }
#define FIELD_MEMBERS(CLASS, GET, SET, PLACE, CODE)                                                          \
    FIELD_GETTER(CLASS, GET, PLACE, CODE)                                                                    \
    FIELD_SETTER(CLASS, SET, PLACE, CODE)

// A member that gives what an expression says of an object that is open.
#define VALUE_GETTER(CLASS, GET, ...)                                                                        \
    db::member<decltype(&CLASS::GET)>::value CLASS::GET() const {                                            \
        assertReadEnabled();                                                                                 \
        return __VA_ARGS__;                                                                                  \
    }

// The same for one bit of a field, and for members that set it or take it away without being told which.
#define BIT_GETTER(CLASS, GET, PLACE, CODE, BIT)                                                             \
    db::member<decltype(&CLASS::GET)>::value CLASS::GET() const {                                            \
        assertReadEnabled();                                                                                 \
        return db::read_bit(imp(), PLACE, CODE, BIT);                                                        \
    }
#define BIT_MEMBERS(CLASS, GET, SET, PLACE, CODE, BIT)                                                       \
    BIT_GETTER(CLASS, GET, PLACE, CODE, BIT)                                                                 \
    db::member<decltype(&CLASS::SET)>::result CLASS::SET(db::member<decltype(&CLASS::SET)>::value value) {   \
        assertWriteEnabled();                                                                                \
        db::write_bit(imp(), PLACE, CODE, BIT, value);                                                       \
        return static_cast<db::member<decltype(&CLASS::SET)>::result>(Acad::eOk);                            \
    }
#define BIT_SWITCHES(CLASS, ON, OFF, PLACE, CODE, BIT)                                                       \
    Acad::ErrorStatus CLASS::ON() {                                                                          \
        assertWriteEnabled();                                                                                \
        db::write_bit(imp(), PLACE, CODE, BIT, true);                                                        \
        return Acad::eOk;                                                                                    \
    }                                                                                                        \
    Acad::ErrorStatus CLASS::OFF() {                                                                         \
        assertWriteEnabled();                                                                                \
        db::write_bit(imp(), PLACE, CODE, BIT, false);                                                       \
        return Acad::eOk;                                                                                    \
    }

// A figure in a plane, whose coordinates are those of the plane with its normal.
#define PLANE_FIGURE(CLASS)                                                                                  \
    void CLASS::getEcs(AcGeMatrix3d& matrix) const {                                                         \
        matrix.setToPlaneToWorld(normal());                                                                  \
    }
