// Tables of 2000 to 2007: sizes, cells with their looks, and what the table has other than its style.
#include "host/dwg/object_reader.h"
#include "host/dwg/special_fields.h"

#include <algorithm>
#include <iterator>

namespace dwg {

namespace {

// Where the groups stand in DXF, in this order.
enum part : std::uint8_t { part_head = 1, part_overrides, part_sizes, part_cells };

constexpr int kind_text = 1;
constexpr int kind_block = 2;
constexpr std::size_t longest_text = 250; // longer ones are parted in a way that is not known

void add_short_text(object_reader& in, int group, std::string_view text) {
    if (text.size() > longest_text)
        in.fail();
    in.fields.add_text(group, text);
}

// Colours have their long form in all versions.
void read_color(object_reader& in, int group) {
    in.read_color(group, field_code::CMC, true);
}

// What a cell has other than its row: by a bit each.
void cell_looks(object_reader& in, std::int64_t flags) {
    constexpr std::int64_t known = 0x7FFFF;
    if ((flags & ~known) != 0)
        return in.fail();
    const auto has = [&](std::int64_t bit) { return (flags & bit) != 0; };
    const std::size_t begin = in.fields.all().size();
    if (has(1))
        in.fields.add_integer(170, in.data.BS());
    if (has(2))
        in.fields.add_integer(283, in.data.B() ? 1 : 0);
    if (has(4))
        read_color(in, 63);
    if (has(8))
        read_color(in, 64);
    if (has(0x10))
        in.fields.add_name(7, in.next_handle().handle);
    if (has(0x20))
        in.fields.add_real(140, in.data.BD());
    // Borders: top, right, bottom, left.
    constexpr std::pair<int, std::int64_t> borders[] = {{69, 0x40}, {65, 0x80}, {66, 0x100}, {68, 0x200}};
    for (const auto& [color, bit] : borders) {
        constexpr int weight = 210;
        if (has(bit))
            read_color(in, color);
        if (has(bit << 4))
            in.fields.add_integer(color + weight, static_cast<std::int16_t>(in.data.BS()));
        if (has(bit << 8) && in.data.BS() != 0)
            in.fail(); // hidden ones were not seen
    }
    constexpr int order[] = {170, 63,  421, 64,  422, 283, 7,   140, 275, 65,
                             423, 276, 66,  424, 278, 68,  426, 279, 69,  427};
    const auto place = [&](const value& one) {
        return std::find(std::begin(order), std::end(order), one.code);
    };
    std::stable_sort(in.fields.all().begin() + static_cast<std::ptrdiff_t>(begin), in.fields.all().end(),
                     [&](const value& one, const value& other) { return place(one) < place(other); });
}

// Since 2007: what a cell holds, and the text that is seen.
void cell_value(object_reader& in) {
    enum : std::int64_t { integer = 1, real = 2, text = 4, date = 8, point = 32 };
    constexpr std::int64_t is_empty = 1;
    in.fields.add_integer(92, in.data.BL());
    in.fields.add_text(301, "CELL_VALUE");
    const std::int64_t flags = in.data.BL();
    const std::int64_t type = in.data.BL();
    in.fields.add_integer(93, flags);
    in.fields.add_integer(90, type);
    if ((flags & is_empty) == 0) {
        const std::size_t size = type == text || type == date || type == point ? in.data.BL() : 0;
        switch (type) {
        case integer:
            in.fields.add_integer(91, static_cast<std::int32_t>(in.data.BL()));
            break;
        case real:
            in.fields.add_real(140, in.data.BD());
            break;
        case text: {
            std::string held = utf8_of(take_bytes(in.data, size));
            if (!held.empty() && held.back() == '\0')
                held.pop_back();
            add_short_text(in, 1, held);
            break;
        }
        case date:
            in.fields.add_integer(92, static_cast<std::int64_t>(size));
            in.fields.add_chunk(310, take_bytes(in.data, size));
            break;
        case point: {
            if (size != 3 * sizeof(double))
                in.fail();
            const double x = in.data.RD();
            const double y = in.data.RD();
            in.fields.add_point(11, x, y, in.data.RD());
            break;
        }
        default:
            in.fail();
        }
    }
    in.fields.add_integer(94, in.data.BL());
    in.fields.add_text(300, in.text());
    add_short_text(in, 302, in.text());
    in.fields.add_text(304, "ACVALUE_END");
}

void cell(object_reader& in) {
    const int kind = in.data.BS();
    in.fields.add_integer(171, kind);
    in.fields.add_integer(172, in.data.RC());
    in.fields.add_integer(173, in.data.B() ? 1 : 0);
    in.fields.add_integer(174, in.data.B() ? 1 : 0);
    in.fields.add_integer(175, in.data.BL());
    in.fields.add_integer(176, in.data.BL());
    const double rotation = in.data.BD();
    // A field, or the block.
    const std::uint64_t held = in.next_handle().handle;
    std::string text;
    double scale = 0;
    if (kind == kind_text && held == 0) {
        if (!in.since(r2007))
            text = in.text();
    } else if (kind == kind_block) {
        scale = in.data.BD();
        if (in.data.B())
            in.fail(); // with attributes
    } else {
        in.fail();
    }
    const bool has_looks = in.data.B();
    const std::int64_t flags = has_looks ? in.data.BL() : 0;
    const int edges = has_looks ? in.data.RC() : 0;
    if (in.since(r2007))
        in.fields.add_integer(91, flags);
    else
        in.fields.add_integer(177, static_cast<std::int16_t>(flags));
    in.fields.add_integer(178, edges);
    in.fields.add_real(145, rotation);
    if (kind == kind_block) {
        in.fields.add_handle(340, held);
        in.fields.add_real(144, scale);
        in.fields.add_integer(179, 0);
    } else if (!in.since(r2007)) {
        add_short_text(in, 1, text);
    }
    cell_looks(in, flags);
    if (in.since(r2007))
        cell_value(in);
}

// What the table has other than its style: margins and heights of texts are known.
void overrides(object_reader& in) {
    constexpr std::int64_t margins[] = {0x8, 0x10};
    constexpr std::int64_t heights[] = {0x100000, 0x200000, 0x400000};
    const std::int64_t flags = in.data.B() ? in.data.BL() : 0;
    if ((flags & ~std::int64_t(0x700018)) != 0)
        return in.fail();
    in.fields.segment = part_overrides;
    in.fields.add_integer(93, flags);
    for (const int group : {94, 95, 96}) // of borders
        in.fields.add_integer(group, 0);
    for (int group = 40; const std::int64_t bit : margins) {
        if ((flags & bit) != 0)
            in.fields.add_real(group, in.data.BD());
        ++group;
    }
    const std::size_t first = in.fields.all().size();
    for (const std::int64_t bit : heights)
        if ((flags & bit) != 0)
            in.fields.add_real(140, in.data.BD());
    if (in.fields.all().size() ==
        first + std::size(heights)) // the title, headers, data; DXF begins with data
        std::rotate(in.fields.all().begin() + static_cast<std::ptrdiff_t>(first), in.fields.all().end() - 1,
                    in.fields.all().end());
    for (int borders = 0; borders < 3; ++borders)
        if (in.data.B())
            in.fail();
}

} // namespace

void table_fields(object_reader& in) {
    if (in.variable('a') != 0)
        return in.fail(); // attributes
    in.fields.add_handle(343, in.fields.find(2)->number);
    in.fields.segment = part_head;
    const int what = in.data.BS();
    in.read_point(11);
    in.fields.add_integer(90, what);
    const std::size_t columns = in.data.BL();
    const std::size_t rows = in.data.BL();
    constexpr std::size_t least_bits = 10; // of a cell
    if (columns > in.data.left() || rows > in.data.left() || columns * rows > in.data.left() / least_bits)
        return in.fail();
    in.fields.add_integer(91, static_cast<std::int64_t>(rows));
    in.fields.add_integer(92, static_cast<std::int64_t>(columns));
    in.fields.segment = part_sizes;
    for (std::size_t i = 0; i < columns; ++i)
        in.fields.add_real(142, in.data.BD());
    for (std::size_t i = 0; i < rows; ++i)
        in.fields.add_real(141, in.data.BD());
    auto& all = in.fields.all();
    std::rotate(all.end() - static_cast<std::ptrdiff_t>(columns + rows),
                all.end() - static_cast<std::ptrdiff_t>(rows), all.end());
    in.fields.segment = part_cells;
    for (std::size_t i = 0; i < columns * rows && !in.data.bad() && !in.handles.bad(); ++i)
        cell(in);
    overrides(in);
}

} // namespace dwg
