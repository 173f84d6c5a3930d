#include "host/db/entities/hatch_pattern.h"

#include "base/number_text.h"
#include "host/db/core/geometry_groups.h"

#include <cmath>

namespace db {

namespace {

using fresh_groups = std::vector<dxf::group_list::fresh_group>;

line_family plain_lines(double angle, double space) {
    line_family lines;
    lines.angle = angle;
    lines.offset = {0.0 - std::sin(radians(angle)) * space, std::cos(radians(angle)) * space};
    return lines;
}

} // namespace

std::pair<std::size_t, std::size_t> range_of_pattern(const dxf::group_list& groups) {
    const auto& all = groups.groups();
    std::size_t first = groups.find(hatch_place, 76);
    if (first == dxf::group_list::npos)
        return {all.size(), all.size()};
    const auto belongs = [](int code) {
        return code == 73 || code == 52 || code == 41 || code == 77 || code == 78 || code == 53 ||
               (code >= 43 && code <= 46) || code == 79 || code == 49;
    };
    std::size_t last = ++first;
    while (last < all.size() && belongs(all[last].code))
        ++last;
    return {first, last};
}

std::vector<line_family> read_families(const dxf::group_list& groups) {
    std::vector<line_family> families;
    const auto [first, last] = range_of_pattern(groups);
    for (std::size_t i = first; i < last; ++i) {
        const dxf::group& group = groups.groups()[i];
        const double value = dxf::leading_real(group.value).value_or(0.0);
        if (group.code == 53) {
            families.push_back({});
            families.back().angle = value;
        } else if (!families.empty()) {
            line_family& family = families.back();
            switch (group.code) {
            case 43:
                family.base.x = value;
                break;
            case 44:
                family.base.y = value;
                break;
            case 45:
                family.offset.x = value;
                break;
            case 46:
                family.offset.y = value;
                break;
            case 49:
                family.dashes.push_back(value);
                break;
            default:
                break;
            }
        }
    }
    return families;
}

hatch_pattern read_pattern(const AcDbImpObject& hatch) {
    hatch_pattern found;
    found.angle = read_real(hatch, hatch_place, 52);
    found.scale = read_real(hatch, hatch_place, 41, 1.0);
    found.is_double = read_integer(hatch, hatch_place, 77) != 0;
    found.families = read_families(hatch.groups());
    return found;
}

void write_pattern(AcDbImpObject& hatch, const hatch_pattern& pattern) {
    const auto [first, last] = range_of_pattern(hatch.groups());
    fresh_groups fresh;
    const auto real = [&](int code, double value) { fresh.push_back({code, base::real_text(value)}); };
    const auto integer = [&](int code, std::size_t value) { fresh.push_back({code, std::to_string(value)}); };
    if (first < last && hatch.groups().groups()[first].code == 73)
        fresh.push_back({73, std::string(hatch.groups().groups()[first].value)});
    real(52, pattern.angle);
    real(41, pattern.scale);
    integer(77, pattern.is_double ? 1 : 0);
    integer(78, pattern.families.size());
    for (const line_family& family : pattern.families) {
        real(53, family.angle);
        real(43, family.base.x);
        real(44, family.base.y);
        real(45, family.offset.x);
        real(46, family.offset.y);
        integer(79, family.dashes.size());
        for (const double dash : family.dashes)
            real(49, dash);
    }
    hatch.edit().splice(first, last, fresh);
}

void define_by_user(hatch_pattern& pattern) {
    pattern.families = {plain_lines(pattern.angle, pattern.scale)};
    if (pattern.is_double)
        pattern.families.push_back(plain_lines(pattern.angle + 90.0, pattern.scale));
}

void turn_and_scale(hatch_pattern& pattern, double turn, double factor) {
    pattern.angle += turn;
    pattern.scale *= factor;
    if (pattern.families.empty())
        return;
    const AcGePoint2d center = pattern.families.front().base;
    for (line_family& family : pattern.families) {
        family.angle += turn;
        family.base = center + (family.base - center).rotateBy(radians(turn)) * factor;
        family.offset = family.offset.rotateBy(radians(turn)) * factor;
        for (double& dash : family.dashes)
            dash *= factor;
    }
}

} // namespace db
