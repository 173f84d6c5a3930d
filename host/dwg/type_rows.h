// The types of objects that are known field by field: how each stands in a DWG file, and in which order its
// groups stand in DXF. One reader (object_reader) walks the first, one writer (record_writer) the second.
//
// A layout is a list of fields, CODE:GROUP. CODE is a bit code of the format; added to those are
//   BA, RA   an angle in radians (BD, RD) that is written in degrees
//   CMC, CMI, CMR   a colour with its true colour; its index alone; as one number
//   H, H?    a handle; left out when it is null     N   the name of the object that a handle stands for
//   O        a handle of an object that follows this one in the file (attributes, vertices)
// No GROUP: the field is read and not written. 12BD and 16BD are so many numbers of one group. Then there are
//   CODE:GROUP=v     the number is kept in the variable v (a to z) too
//   |q=f             the bits of f are added to those of q
//   {7+ ...} {-7 ...} {18+ ...}   for files of 2007 and later; up to 2007
//   {?v ...} {!v ...} {?v&4 ...} {!v&4 ...} {?v=2 ...} {!v=2 ...}   if the variable is not 0 (or is), has
//                    any of the bits (or none), is a number (or is not)
//   {*v ...}         as often as the variable says
//   %1               what follows belongs to a segment of its own
//   'CODE=TEXT       a group that only DXF has
//   @name            what no list can say: a function of special_fields.h
//
// An order is a list of groups:
//   39 39~0 7~Standard 1~ 210~z 11~x 12~o   a group; unless it is this number, this text, empty, the z axis,
//   the
//                    x axis, the origin
//   <10,40,41>       the first of each of them, then the second of each, and so on
//   [3,1]            all of them as they were read
//   %1               a segment, as it was read
//   *                all that is left
//   =AcDbLine        a group 100            'CODE=TEXT  any group
//   {7+ ...} {-7 ...}   as above
//
// Source of the layouts: Open Design Specification for .dwg files 5.4.1, chapter 20, corrected on drawings;
// of the orders: what the editor writes.
#pragma once

#include "adesk.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace dwg {

class object_reader;

enum class field_code : std::uint8_t {
    B,
    RC,
    RS,
    RL,
    RD,
    RD2,
    RD3,
    BS,
    BL,
    BLL,
    BD,
    BD2,
    BD3,
    BD12,
    BD16,
    BA,
    RA,
    BT,
    BE,
    T,
    CMC,
    CMI,
    CMR,
    H,
    H_if,
    N,
    O,
    data_H,
    // steps of the walk
    constant,
    special,
    segment,
    add_bits,
    when_version,
    when_bits,
    when_equal,
    when_set,
    repeat,
};

// One step of a layout. For blocks `end` is the step behind them.
struct field {
    field_code code{};
    bool negated = false;
    std::int16_t group = 0; // 0: not written
    char variable = 0;      // 0: none
    std::uint16_t end = 0;
    std::int32_t from = 0; // first version; a number to compare with; the number of a segment; variable
    std::int32_t to = 0;   // last version
    std::string_view text; // of constants
    void (*read)(object_reader&) = nullptr;
};

enum class order_code : std::uint8_t { group, together, run, segment, rest, constant, when_version };
enum class usual : std::uint8_t { none, number, text, x_axis, z_axis, origin };

// One step of an order. The groups of `together` and `run` are the steps behind it up to `end`.
struct order_step {
    order_code code{};
    usual left_out{};
    std::int16_t group = 0;
    std::uint16_t end = 0;
    std::int32_t from = 0, to = 0;
    double number = 0;
    std::string_view text;
};

enum class role : std::uint8_t { entity, object, entry, control };

struct type_row {
    int number;                  // as the format fixes it; 0: the type has a class
    std::string_view class_name; // the DXF name of its class; empty: it has none
    std::string_view record;     // what group 0 says
    dwg::role role;
    std::string_view layout;
    std::string_view order;
    void (*settle)(object_reader&) = nullptr; // computes groups of what was read
};

struct object_type {
    const type_row* row = nullptr;
    std::vector<field> fields;
    std::vector<order_step> order;
};

// All types, read from their rows once.
ACDB_PORT const std::vector<object_type>& object_types();
// The type with a fixed number, or of a class; null when it is not known.
const object_type* type_of_number(int number);
const object_type* type_of_class(std::string_view dxf_name);

std::span<const type_row> entity_rows();
std::span<const type_row> object_rows();

} // namespace dwg
