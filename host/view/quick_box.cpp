#include "host/view/quick_box.h"

#include "dbmain.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/plain_figures.h"
#include "host/dxf/group_list.h"
#include "host/dxf/record_header.h"
#include "host/view/extents.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace gi {

void flat_box::add(double x, double y, double around) {
    least_x = std::min(least_x, x - around);
    least_y = std::min(least_y, y - around);
    most_x = std::max(most_x, x + around);
    most_y = std::max(most_y, y + around);
}

namespace {

// Reads the plain numbers of a record's own groups, up to its extended data.
class numbers {
public:
    explicit numbers(dxf::padded_text record) : groups_(record) {}

    // The next group that a box depends on; false at the end, and when the entity is tilted in space.
    bool next() {
        while (groups_.next(group_)) {
            const int code = group_.code;
            if (code >= 1000 || code == 101)
                return false;
            if (code == 102)
                in_braces_ = group_.value.find('{') != std::string_view::npos;
            if (in_braces_ || code == 102)
                continue;
            if ((code == 210 || code == 220) && value() != 0.0)
                tilted_ = true;
            if (code == 230 && value() < 0.0)
                tilted_ = true;
            return true;
        }
        return false;
    }
    int code() const { return group_.code; }
    std::string_view text() const { return group_.value; }
    double value() const { return dxf::leading_real(group_.value).value_or(0.0); }
    bool tilted() const { return tilted_; }

private:
    dxf::group_reader groups_;
    dxf::raw_group group_;
    bool in_braces_ = false;
    bool tilted_ = false;
};

using maybe_box = std::optional<flat_box>;

// What a group is for the box of a figure, by its code.
enum class role : unsigned char { none, x, y, reach };

template<const auto& Fields>
constexpr auto make_roles() {
    std::array<role, 64> roles{};
    for (const db::field& row : Fields)
        if (row.reach) {
            roles[static_cast<std::size_t>(row.code)] = role::reach;
        } else if (row.size() > 1 && row.kind != db::field::normal) {
            roles[static_cast<std::size_t>(row.code)] = role::x;
            roles[static_cast<std::size_t>(row.code) + 10] = role::y;
        }
    return roles;
}

// Around a figure's points, and as far from the last of them as it reaches.
template<const auto& Fields>
maybe_box box_of(dxf::padded_text record) {
    static constexpr auto roles = make_roles<Fields>();
    flat_box box;
    double x = 0.0;
    double y = 0.0;
    double reach = 0.0;
    numbers numbers(record);
    while (numbers.next()) {
        const auto code = static_cast<std::size_t>(numbers.code());
        switch (code < roles.size() ? roles[code] : role::none) {
        case role::x:
            x = numbers.value();
            break;
        case role::y:
            y = numbers.value();
            box.add(x, y);
            break;
        case role::reach:
            reach = numbers.value();
            break;
        case role::none:
            break;
        }
    }
    if (reach != 0.0)
        box.add(x, y, std::fabs(reach));
    return numbers.tilted() ? maybe_box() : box;
}

// An arc of not more than half a turn bulges by its sagitta; a longer one by its diameter at most.
double bulge_reach(double chord, double bulge) {
    const double size = std::fabs(bulge);
    return size <= 1.0 ? size * chord / 2.0 : chord * (1.0 + size * size) / (2.0 * size);
}

maybe_box box_of_polyline(dxf::padded_text record) {
    flat_box box;
    double x = 0.0;
    double y = 0.0;
    double first_x = 0.0;
    double first_y = 0.0;
    double bulge = 0.0;
    double width = 0.0;
    bool any = false;
    numbers numbers(record);
    const auto arrive = [&](double next_x, double next_y) {
        const double around = bulge == 0.0 ? 0.0 : bulge_reach(std::hypot(next_x - x, next_y - y), bulge);
        if (around != 0.0)
            box.add(x, y, around);
        box.add(next_x, next_y, around);
    };
    double coming_x = 0.0;
    while (numbers.next()) {
        switch (numbers.code()) {
        case 10:
            coming_x = numbers.value();
            break;
        case 20: {
            const double coming_y = numbers.value();
            if (!any) {
                first_x = x = coming_x;
                first_y = y = coming_y;
            }
            arrive(coming_x, coming_y);
            any = true;
            bulge = 0.0;
            x = coming_x;
            y = coming_y;
            break;
        }
        case 40:
        case 41:
        case 43:
            width = std::max(width, std::fabs(numbers.value()));
            break;
        case 42:
            bulge = numbers.value();
            break;
        default:
            break;
        }
    }
    if (any && bulge != 0.0) // of the segment that closes it
        arrive(first_x, first_y);
    if (any && width != 0.0) {
        box.add(box.least_x, box.least_y, width);
        box.add(box.most_x, box.most_y, width);
    }
    return numbers.tilted() ? maybe_box() : box;
}

// A text lies within a circle about its points that its length fills, whichever way it runs.
maybe_box box_of_text(dxf::padded_text record) {
    double x[2] = {0.0, 0.0};
    double y[2] = {0.0, 0.0};
    bool second = false;
    double height = 0.0;
    double factor = 1.0;
    std::size_t letters = 0;
    numbers numbers(record);
    while (numbers.next()) {
        switch (numbers.code()) {
        case 1:
            letters = std::max(letters, numbers.text().size());
            break;
        case 10:
            x[0] = numbers.value();
            break;
        case 20:
            y[0] = numbers.value();
            break;
        case 11:
            x[1] = numbers.value();
            second = true;
            break;
        case 21:
            y[1] = numbers.value();
            break;
        case 40:
            height = std::fabs(numbers.value());
            break;
        case 41:
            factor = std::max(factor, std::fabs(numbers.value()));
            break;
        default:
            break;
        }
    }
    if (height == 0.0) // then it is the one that is meant without a value
        return {};
    // No letter is wider than one and a half of its height; a slant and what hangs below are two more.
    const double around = height * (2.0 + 1.5 * factor * static_cast<double>(letters));
    flat_box box;
    box.add(x[0], y[0], around);
    if (second)
        box.add(x[1], y[1], around);
    return numbers.tilted() ? maybe_box() : box;
}

maybe_box box_of_reference(known_blocks& blocks, dxf::record_id entity) {
    const dxf::record_table& records = blocks.database().records();
    std::string_view name;
    double x = 0.0;
    double y = 0.0;
    double scale_x = 1.0;
    double scale_y = 1.0;
    double angle = 0.0;
    numbers numbers(records.text(entity));
    while (numbers.next()) {
        switch (numbers.code()) {
        case 2:
            name = dxf::trimmed(numbers.text());
            break;
        case 10:
            x = numbers.value();
            break;
        case 20:
            y = numbers.value();
            break;
        case 41:
            scale_x = numbers.value();
            break;
        case 42:
            scale_y = numbers.value();
            break;
        case 50:
            angle = numbers.value() * std::numbers::pi / 180.0;
            break;
        case 70:
        case 71:
            if (numbers.value() > 1.0)
                return {}; // rows and columns
            break;
        default:
            break;
        }
    }
    if (numbers.tilted())
        return {};
    const known_blocks::block& block = blocks.named(name);
    if (!block.found)
        return {};
    flat_box box;
    for (dxf::record_id part = records.next(entity);
         part != dxf::no_record && records.kind(part) == dxf::record_kind::part; part = records.next(part)) {
        if (records.gone(part) || records.type(part) != dxf::type_attrib)
            continue;
        const maybe_box text = box_of_text(records.text(part));
        if (!text)
            return {};
        box.add(text->least_x, text->least_y);
        box.add(text->most_x, text->most_y);
    }
    const AcDbExtents& extents = block.extents;
    if (is_empty(extents))
        return box;
    const AcGePoint3d& base = block.base;
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    for (const double corner_x : {extents.minPoint().x, extents.maxPoint().x})
        for (const double corner_y : {extents.minPoint().y, extents.maxPoint().y}) {
            const double u = (corner_x - base.x) * scale_x;
            const double v = (corner_y - base.y) * scale_y;
            box.add(x + u * cosine - v * sine, y + u * sine + v * cosine);
        }
    return box;
}

// A dimension is drawn by its block, where it was drawn with it.
maybe_box box_of_dimension(known_blocks& blocks, dxf::padded_text record) {
    std::string_view name;
    numbers numbers(record);
    while (numbers.next()) {
        const int code = numbers.code();
        if (code == 2)
            name = dxf::trimmed(numbers.text());
        else if ((code == 12 || code == 22) && numbers.value() != 0.0)
            return {}; // moved since
    }
    if (numbers.tilted() || name.empty())
        return {};
    const known_blocks::block& block = blocks.named(name);
    if (!block.found || is_empty(block.extents))
        return {};
    flat_box box;
    box.add(block.extents.minPoint().x, block.extents.minPoint().y);
    box.add(block.extents.maxPoint().x, block.extents.maxPoint().y);
    return box;
}

} // namespace

const known_blocks::block& known_blocks::named(std::string_view name) {
    const auto [at, fresh] = known_.try_emplace(name);
    if (!fresh)
        return at->second;
    const std::lock_guard hold(lock_);
    const dxf::record_id record = database_.blocks().find_bytes(name);
    at->second.found = record != dxf::no_record;
    if (at->second.found) {
        at->second.base = database_.blocks().base_of(record);
        at->second.extents = extents_of_block(database_, record);
    }
    return at->second;
}

std::optional<flat_box> quick_box(known_blocks& blocks, dxf::record_id entity) {
    const dxf::record_table& records = blocks.database().records();
    const dxf::padded_text text = records.text(entity);
    if (records.type(entity) == dxf::type_insert)
        return box_of_reference(blocks, entity);
    switch (records.type(entity)) {
    case dxf::type_line:
        return box_of<db::line_fields>(text);
    case dxf::type_point:
        return box_of<db::point_fields>(text);
    case dxf::type_circle:
    case dxf::type_arc:
        return box_of<db::circle_fields>(text);
    case dxf::type_lwpolyline:
        return box_of_polyline(text);
    case dxf::type_text:
        return box_of_text(text);
    default:
        return records.type_name(entity) == "DIMENSION" ? box_of_dimension(blocks, text) : maybe_box();
    }
}

} // namespace gi
