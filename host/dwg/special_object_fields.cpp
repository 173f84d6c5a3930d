// Fields of tables' entries and of objects that no list of codes can say.
#include "host/dwg/special_fields.h"

#include "host/dwg/object_reader.h"

namespace dwg {

namespace {

// ---- entries of tables

void head(object_reader& in) {
    in.text(); // names are known already, and are made unique
    in.fields.add_name(2, in.own);
    std::int64_t flags = 0;
    if (in.since(r2007)) {
        flags = (in.data.BS() & 0x100) != 0 ? 48 : 0;
    } else {
        const bool referenced = in.data.B();
        const int index = static_cast<int>(in.data.BS()) - 1;
        if (in.data.B())
            flags = index >= 0 ? 48 : 16;
        (void)referenced;
    }
    in.fields.add_integer(70, flags);
}

void block_header(object_reader& in) {
    head(in);
    std::int64_t flags = 0;
    for (const int bit : {1, 2, 4, 8})
        flags |= in.data.B() ? bit : 0;
    in.data.B();
    const std::size_t count = in.since(r2004) ? in.data.BL() : 0;
    if (count > in.handles.left() / 8)
        return in.fail();
    auto& fields = in.fields;
    constexpr std::uint8_t of_block = 8; // fields of the BLOCK record
    fields.segment = of_block;
    fields.add_integer(20070, flags | in.fields.integer(70));
    in.read_point(10);
    fields.add_text(1, in.text());
    std::size_t inserts = 0;
    while (!in.data.bad() && in.data.RC() != 0)
        ++inserts;
    fields.add_text(4, in.text());
    const std::string preview = take_bytes(in.data, in.data.BL());
    fields.segment = 0;
    if (in.since(r2007)) {
        fields.add_integer(10070, in.data.BS());
        fields.add_integer(280, in.data.B() ? 1 : 0);
        fields.add_integer(281, in.data.RC());
    }
    if (!preview.empty())
        fields.add_chunk(310, preview);
    in.next_handle();
    in.variable('b') = static_cast<std::int64_t>(in.next_handle().handle); // BLOCK
    constexpr std::int64_t outside = 12; // a reference, also an overlaid one
    if (in.since(r2004)) {
        for (std::size_t i = 0; i < count; ++i)
            in.owned.push_back(in.next_handle().handle);
    } else if ((flags & outside) == 0) {
        in.owned.push_back(in.next_handle().handle);
        in.next_handle();
    }
    in.variable('e') = static_cast<std::int64_t>(in.next_handle().handle); // ENDBLK
    fields.segment = 1;
    if (inserts > in.handles.left() / 8)
        return in.fail();
    for (std::size_t i = 0; i < inserts; ++i)
        in.next_handle();
    fields.segment = 0;
    fields.add_handle(340, in.next_handle().handle);
    in.variable('f') = flags;
}

// Dashes of a linetype; a shape or a text stands in some. The texts lie in an area of their own behind them.
void dashes(object_reader& in) {
    const std::int64_t count = in.variable('n');
    bool has_text = false;
    struct dash {
        double length, x, y, scale, rotation;
        unsigned shape, flags;
    };
    std::vector<dash> all;
    for (std::int64_t i = 0; i < count && !in.data.bad(); ++i) {
        dash one{};
        one.length = in.data.BD();
        one.shape = in.data.BS();
        one.x = in.data.RD();
        one.y = in.data.RD();
        one.scale = in.data.BD();
        one.rotation = in.data.BD();
        one.flags = in.data.BS();
        has_text = has_text || (one.flags & 2) != 0;
        all.push_back(one);
    }
    std::string area;
    constexpr std::size_t narrow_area = 256;
    if (!in.since(r2007))
        area = take_bytes(in.data, narrow_area);
    else if (has_text)
        area = take_bytes(in.data, 2 * narrow_area);
    for (const dash& one : all) {
        in.fields.add_real(49, one.length);
        const unsigned flags = one.flags & 7;
        in.fields.add_integer(74, flags);
        if ((flags & 6) == 0)
            continue;
        const bool is_text = (flags & 2) != 0;
        in.fields.add_integer(75, is_text ? 0 : one.shape);
        in.fields.add_handle(340, 0);
        in.fields.add_real(46, one.scale);
        constexpr double degrees = 57.295779513082320877;
        in.fields.add_real(50, one.rotation * degrees);
        in.fields.add_real(44, one.x);
        in.fields.add_real(45, one.y);
        if (!is_text)
            continue;
        std::string held;
        if (in.since(r2007)) {
            for (std::size_t at = std::size_t(2) * one.shape;
                 at + 1 < area.size() && (area[at] != '\0' || area[at + 1] != '\0'); at += 2)
                held += area.substr(at, 2);
            held = utf8_of(held);
        } else if (one.shape < area.size()) {
            held = area.substr(one.shape, area.find('\0', one.shape) - one.shape);
        }
        in.fields.add_text(9, held);
    }
}

void dash_styles(object_reader& in) {
    std::vector<std::uint64_t> styles;
    for (std::int64_t i = 0; i < in.variable('n') && !in.handles.bad(); ++i)
        styles.push_back(in.next_handle().handle);
    // One a dash, but written for those alone that hold something.
    std::size_t at = 0;
    for (value& one : in.fields.all()) {
        if (one.code == 49)
            ++at;
        if (one.code == 340 && at != 0 && at <= styles.size())
            one.number = styles[at - 1];
    }
}

void view_mode(object_reader& in) {
    std::int64_t mode = 0;
    for (const int bit : {1, 2, 4})
        mode |= in.data.B() ? bit : 0;
    mode |= in.data.B() ? 0 : 16;
    in.fields.add_integer(71, mode);
}

// ---- objects

void line_type(object_reader& in) {
    if (in.since(r2018)) {
        in.fields.add_name(6, in.next_handle().handle);
        return;
    }
    constexpr std::size_t by_block = 0x7FFE; // 0x7FFF is by layer; less is a place in the table
    const auto index = static_cast<std::size_t>(in.data.BS());
    if (index < in.source.linetypes.size())
        in.fields.add_name(6, in.source.linetypes[index]);
    else
        in.fields.add_text(6, index == by_block ? "BYBLOCK" : "BYLAYER");
}

// Groups of application data: each has a code, and what stands behind it follows from that.
void xrecord(object_reader& in) {
    const std::string bytes = take_bytes(in.data, in.data.BL());
    bit_reader from(bytes);
    auto& fields = in.fields;
    fields.segment = 1;
    const auto within = [](int code, int low, int high) { return code >= low && code <= high; };
    while (from.left() >= 16 && !from.bad()) {
        const int code = static_cast<std::int16_t>(from.RS());
        if (within(code, 0, 4) || within(code, 6, 9) || within(code, 100, 102) || within(code, 300, 309) ||
            within(code, 410, 419) || within(code, 430, 439) || within(code, 470, 479) ||
            within(code, 999, 1003)) {
            const std::size_t length = from.RS();
            if (!in.since(r2007))
                from.RC();
            const std::string held = take_bytes(from, in.since(r2007) ? 2 * length : length);
            fields.add_text(code, in.since(r2007) ? utf8_of(held) : held);
        } else if (within(code, 10, 37) || within(code, 110, 119) || within(code, 210, 239) ||
                   within(code, 1010, 1037)) {
            const double x = from.RD();
            const double y = from.RD();
            fields.add_point(code, x, y, from.RD());
        } else if (within(code, 38, 59) || within(code, 120, 149) || within(code, 460, 469) ||
                   within(code, 1040, 1059)) {
            constexpr double degrees = 57.295779513082320877;
            fields.add_real(code, from.RD() * (within(code, 50, 59) ? degrees : 1)); // angles
        } else if (within(code, 60, 79) || within(code, 170, 179) || within(code, 270, 279) ||
                   within(code, 370, 389) || within(code, 400, 409) || within(code, 1060, 1070)) {
            fields.add_integer(code, static_cast<std::int16_t>(from.RS()));
        } else if (within(code, 280, 299)) {
            fields.add_integer(code, from.RC());
        } else if (within(code, 90, 99) || within(code, 420, 429) || within(code, 440, 459) || code == 1071) {
            fields.add_integer(code, static_cast<std::int32_t>(from.RL()));
        } else if (within(code, 160, 169)) {
            fields.add_integer(code, static_cast<std::int64_t>(from.RLL()));
        } else if (within(code, 310, 319) || code == 1004) {
            fields.add_chunk(code, take_bytes(from, from.RC()));
        } else if (code == 5 || code == 105 || within(code, 320, 369) || within(code, 390, 399) ||
                   code == 480 || code == 481 || code == 1005) {
            fields.add_handle(code, from.RLL());
        } else {
            return in.fail(); // of an add-on; kept as it is
        }
    }
    if (from.bad())
        return in.fail();
    fields.segment = 0;
    fields.add_integer(280, in.data.BS());
}

constexpr special_row rows[] = {
    {"head", head},           {"block_header", block_header},
    {"dashes", dashes},       {"dash_styles", dash_styles},
    {"view_mode", view_mode}, {"line_type", line_type},
    {"xrecord", xrecord},
};

} // namespace

std::span<const special_row> object_fields() {
    return rows;
}

} // namespace dwg
