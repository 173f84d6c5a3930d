// Fields of entities that no list of codes can say.
#include "host/dwg/special_fields.h"

#include "host/dwg/object_reader.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace dwg {

namespace {

void text_fields(object_reader& in) {
    const unsigned absent = in.data.RC();
    const auto has = [&](unsigned bit) { return (absent & bit) == 0; };
    const double z = has(1) ? in.data.RD() : 0;
    const double x = in.data.RD();
    const double y = in.data.RD();
    in.fields.add_point(10, x, y, z);
    double ax = x;
    double ay = y;
    if (has(2)) {
        ax = in.data.DD(x);
        ay = in.data.DD(y);
    }
    in.fields.add_point(11, has(2) ? ax : 0, has(2) ? ay : 0, z);
    if (in.data.B()) {
        in.fields.add_point(210, 0, 0, 1);
    } else {
        const double nx = in.data.BD();
        const double ny = in.data.BD();
        in.fields.add_point(210, nx, ny, in.data.BD());
    }
    in.fields.add_real(39, in.data.B() ? 0 : in.data.BD());
    constexpr double degrees = 57.295779513082320877;
    if (has(4))
        in.fields.add_real(51, in.data.RD() * degrees);
    if (has(8))
        in.fields.add_real(50, in.data.RD() * degrees);
    in.fields.add_real(40, in.data.RD());
    if (has(0x10))
        in.fields.add_real(41, in.data.RD());
    in.fields.add_text(1, in.text());
    constexpr int groups[] = {71, 72, 73};
    for (unsigned i = 0; i < std::size(groups); ++i)
        if (has(0x20U << i))
            in.fields.add_integer(groups[i], static_cast<std::int16_t>(in.data.BS()));
}

// A text of several lines in an attribute is an entity in the entity: what it has in common with others, and
// the fields of an MTEXT, which are kept apart.
void embedded(object_reader& in) {
    const common_data outer = in.common;
    in.common = {};
    in.read_common_entity();
    in.common = outer;
    static const object_type* const mtext = type_of_number(44);
    constexpr std::uint8_t apart = 9;
    const std::uint8_t segment = in.fields.segment;
    in.fields.segment = apart;
    in.walk(mtext->fields, 0, mtext->fields.size());
    for (value& one : in.fields.all())
        if (one.segment >= apart || one.segment == 1)
            one.type = value_type::nothing;
    in.fields.segment = segment;
    if (const std::size_t size = in.data.BS(); size != 0) {
        take_bytes(in.data, size);
        in.next_handle();
        in.data.BS();
    }
}

void scale(object_reader& in) {
    double x = 1;
    double y = 1;
    double z = 1;
    switch (in.data.BB()) {
    case 0:
        x = in.data.RD();
        y = in.data.DD(x);
        z = in.data.DD(x);
        break;
    case 1:
        y = in.data.DD(1);
        z = in.data.DD(1);
        break;
    case 2:
        x = y = z = in.data.RD();
        break;
    default:
        break;
    }
    in.fields.add_real(41, x);
    in.fields.add_real(42, y);
    in.fields.add_real(43, z);
}

void widths(object_reader& in) {
    const double begin = in.data.BD();
    in.fields.add_real(40, std::fabs(begin));
    in.fields.add_real(41, begin < 0 ? -begin : in.data.BD());
}

void line(object_reader& in) {
    const bool flat = in.data.B();
    double p[6] = {};
    for (int axis = 0; axis < (flat ? 2 : 3); ++axis) {
        p[axis] = in.data.RD();
        p[axis + 3] = in.data.DD(p[axis]);
    }
    in.fields.add_point(10, p[0], p[1], p[2]);
    in.fields.add_point(11, p[3], p[4], p[5]);
}

void face(object_reader& in) {
    const bool no_flags = in.data.B();
    const bool flat = in.data.B();
    double x = in.data.RD();
    double y = in.data.RD();
    double z = flat ? 0 : in.data.RD();
    in.fields.add_point(10, x, y, z);
    for (int corner = 11; corner < 14; ++corner) {
        x = in.data.DD(x);
        y = in.data.DD(y);
        z = in.data.DD(z);
        in.fields.add_point(corner, x, y, z);
    }
    if (!no_flags)
        in.fields.add_integer(70, in.data.BS());
}

void lwpolyline(object_reader& in) {
    const unsigned flags = in.data.BS();
    const auto has = [&](unsigned bit) { return (flags & bit) != 0; };
    in.fields.add_integer(70, (has(0x200) ? 1 : 0) + (has(0x100) ? 128 : 0));
    const double width = has(4) ? in.data.BD() : 0;
    if (has(4) || !has(0x20))
        in.fields.add_real(43, width);
    if (has(8))
        in.fields.add_real(38, in.data.BD());
    if (has(2))
        in.fields.add_real(39, in.data.BD());
    if (has(1)) {
        const double x = in.data.BD();
        const double y = in.data.BD();
        in.fields.add_point(210, x, y, in.data.BD());
    }
    const std::size_t points = in.data.BL();
    const std::size_t bulges = has(0x10) ? in.data.BL() : 0;
    const std::size_t ids = in.since(r2010) && has(0x400) ? in.data.BL() : 0;
    const std::size_t pairs = has(0x20) ? in.data.BL() : 0;
    const std::size_t least = 4 * points + 2 * bulges + 2 * ids + 4 * pairs;
    if (least > in.data.left() || std::max({points, bulges, ids, pairs}) > in.data.left())
        return in.fail();
    in.fields.add_integer(90, static_cast<std::int64_t>(points));
    double x = 0;
    double y = 0;
    for (std::size_t i = 0; i < points && !in.data.bad(); ++i) {
        x = i == 0 ? in.data.RD() : in.data.DD(x);
        y = i == 0 ? in.data.RD() : in.data.DD(y);
        in.fields.add_point(10, x, y);
    }
    for (std::size_t i = 0; i < bulges; ++i)
        in.fields.add_real(42, in.data.BD());
    for (std::size_t i = 0; i < ids; ++i)
        in.fields.add_integer(91, in.data.BL());
    for (std::size_t i = 0; i < pairs; ++i) {
        in.fields.add_real(40, in.data.BD());
        in.fields.add_real(41, in.data.BD());
    }
}

void spline(object_reader& in) {
    constexpr unsigned by_fit_points = 2;
    unsigned kind = in.data.BL();
    std::int64_t flags = 0;
    if (in.since(r2013)) {
        const unsigned bits = in.data.BL();
        const unsigned knots = in.data.BL();
        constexpr unsigned custom_knots = 15;
        if ((bits & 1) != 0)
            kind = by_fit_points;
        if (knots == custom_knots)
            kind = 1;
        flags |= (bits & 4) != 0 ? 1 : 0;
    }
    in.fields.add_point(210, 0, 0, 1);
    in.fields.add_integer(71, in.data.BL());
    if (kind == by_fit_points) {
        in.fields.add_real(42, 1e-9);
        in.fields.add_real(43, 1e-10);
        in.fields.add_real(44, in.data.BD());
        in.read_point(12);
        in.read_point(13);
        const std::size_t count = in.data.BL();
        if (count > in.data.left() / 6)
            return in.fail();
        in.fields.add_integer(72, 0);
        in.fields.add_integer(73, 0);
        in.fields.add_integer(74, static_cast<std::int64_t>(count));
        for (std::size_t i = 0; i < count; ++i)
            in.read_point(11);
    } else {
        flags |= in.data.B() ? 4 : 0;
        flags |= in.data.B() ? 1 : 0;
        flags |= in.data.B() ? 2 : 0;
        in.fields.add_real(42, in.data.BD());
        in.fields.add_real(43, in.data.BD());
        const std::size_t knots = in.data.BL();
        const std::size_t points = in.data.BL();
        const bool weighted = in.data.B();
        if (std::max(knots, points) > in.data.left() / 2)
            return in.fail();
        in.fields.add_integer(72, static_cast<std::int64_t>(knots));
        in.fields.add_integer(73, static_cast<std::int64_t>(points));
        in.fields.add_integer(74, 0);
        for (std::size_t i = 0; i < knots; ++i)
            in.fields.add_real(40, in.data.BD());
        for (std::size_t i = 0; i < points && !in.data.bad(); ++i) {
            in.read_point(10);
            if (weighted)
                in.fields.add_real(41, in.data.BD());
        }
    }
    // Flat when all its points have one z: then the normal is written for it.
    bool flat = true;
    const value* first = nullptr;
    for (const value& one : in.fields.all())
        if (one.code == 10 || one.code == 11) {
            flat = flat && (first == nullptr || one.z == first->z);
            first = first == nullptr ? &one : first;
        }
    if (flat)
        flags |= 8;
    else
        in.fields.drop(210);
    in.fields.add_integer(70, flags);
}

void background(object_reader& in) {
    const std::int64_t flags = in.variable('b');
    if ((flags & 1) == 0 && !(in.since(r2018) && (flags & 0x10) != 0))
        return;
    in.fields.add_real(45, in.data.BD());
    in.read_color(63, field_code::CMC);
    in.fields.add_integer(441, static_cast<std::int32_t>(in.data.BL()));
}

// What a text with columns has more since 2018; without columns nobody writes it.
void columns(object_reader& in) {
    in.data.BS();
    in.data.B();
    in.next_handle();
    const std::size_t begin = in.fields.all().size();
    const std::uint8_t segment = in.fields.segment;
    if (segment == 0)
        in.fields.segment = 1;
    in.fields.add_text(101, "Embedded Object");
    in.fields.add_integer(70, in.data.BL());
    in.read_point(10);
    in.read_point(11);
    for (const int group : {40, 41, 42, 43})
        in.fields.add_real(group, in.data.BD());
    const int kind = in.data.BS();
    in.fields.add_integer(71, kind);
    if (kind != 0) {
        const std::size_t count = in.data.BL();
        in.fields.add_integer(72, static_cast<std::int64_t>(count));
        in.fields.add_real(44, in.data.BD());
        in.fields.add_real(45, in.data.BD());
        const bool automatic = in.data.B();
        in.fields.add_integer(73, automatic ? 1 : 0);
        in.fields.add_integer(74, in.data.B() ? 1 : 0);
        if (kind == 2 && !automatic) {
            if (count > in.data.left() / 2)
                return in.fail();
            for (std::size_t i = 0; i < count; ++i)
                in.fields.add_real(46, in.data.BD());
        }
    } else {
        in.fields.all().resize(begin);
    }
    in.fields.segment = segment;
}

// A line of a leader has looks of its own only where its flags say so.
void leader_line(object_reader& in) {
    const std::size_t begin = in.fields.all().size();
    in.fields.add_integer(170, in.data.BS());
    in.read_color(92, field_code::CMR);
    in.fields.add_handle(340, in.next_handle().handle);
    in.fields.add_integer(171, static_cast<std::int32_t>(in.data.BL()));
    in.fields.add_real(40, in.data.BD());
    in.fields.add_handle(341, in.next_handle().handle);
    if (const std::int64_t flags = in.data.BL(); flags != 0)
        in.fields.add_integer(93, flags);
    else
        in.fields.all().resize(begin);
}

constexpr special_row rows[] = {
    {"text", text_fields},
    {"embedded", embedded},
    {"scale", scale},
    {"widths", widths},
    {"line", line},
    {"face", face},
    {"lwpolyline", lwpolyline},
    {"spline", spline},
    {"background", background},
    {"columns", columns},
    {"leader_line", leader_line},
    {"modeler", modeler_fields},
    {"table", table_fields},
};

} // namespace

std::span<const special_row> entity_fields() {
    return rows;
}

} // namespace dwg
