#include "host/db/entities/multileader_context.h"

#include "host/dxf/record_header.h"

namespace db {

namespace {

// The parts of the data, one in another: 300 CONTEXT_DATA{, 302 LEADER{, 304 LEADER_LINE{, and 301, 303 and
// 305 end them.
enum class part { none, context, leader, line };

part part_behind(part before, const dxf::group& group) {
    const std::string_view text = dxf::trimmed(group.value);
    switch (group.code) {
    case 300:
        return text == "CONTEXT_DATA{" ? part::context : before;
    case 301:
        return part::none;
    case 302:
        return before == part::context && text == "LEADER{" ? part::leader : before;
    case 303:
        return before == part::leader ? part::context : before;
    case 304:
        return before == part::leader && text == "LEADER_LINE{" ? part::line : before;
    case 305:
        return before == part::line ? part::leader : before;
    default:
        return before;
    }
}

double number(const dxf::group& group) {
    return dxf::leading_real(group.value).value_or(0.0);
}

bool is_set(const dxf::group& group) {
    return number(group) != 0.0;
}

// The point whose x stands at `at`.
AcGePoint3d point_at(const std::vector<dxf::group>& all, std::size_t at) {
    AcGePoint3d point;
    for (unsigned axis = 0; axis < 3 && at + axis < all.size(); ++axis)
        if (all[at + axis].code == all[at].code + static_cast<int>(10 * axis))
            point[axis] = number(all[at + axis]);
    return point;
}

void take_context_group(multileader_context& context, const std::vector<dxf::group>& all, std::size_t at,
                        int& matrix_entry) {
    const dxf::group& group = all[at];
    switch (group.code) {
    case 40:
        context.scale = number(group);
        break;
    case 41:
        context.text_height = number(group);
        break;
    case 140:
        context.arrow_size = number(group);
        break;
    case 290:
        context.has_text = is_set(group);
        break;
    case 304:
        context.text = group.value;
        break;
    case 11:
        context.normal = point_at(all, at).asVector();
        break;
    case 12:
        context.text_location = point_at(all, at);
        break;
    case 13:
        context.text_direction = point_at(all, at).asVector();
        break;
    case 42:
        context.text_rotation = number(group);
        break;
    case 43:
        context.text_width = number(group);
        break;
    case 171:
        context.attachment = static_cast<int>(std::clamp(number(group), 1.0, 9.0));
        break;
    case 296:
        context.has_block = is_set(group);
        break;
    case 341:
        context.block = dxf::parse_handle(group.value);
        break;
    case 15:
        context.block_position = point_at(all, at);
        break;
    case 47:
        if (matrix_entry < 16)
            context.block_to_world.entry[matrix_entry / 4][matrix_entry % 4] = number(group);
        ++matrix_entry;
        break;
    default:
        break;
    }
}

void take_leader_group(multileader_context::leader& leader, const std::vector<dxf::group>& all,
                       std::size_t at) {
    const dxf::group& group = all[at];
    switch (group.code) {
    case 290:
        leader.has_landing = is_set(group);
        break;
    case 291:
        leader.has_dogleg = is_set(group);
        break;
    case 10:
        leader.landing = point_at(all, at);
        break;
    case 11:
        leader.dogleg = point_at(all, at).asVector();
        break;
    case 40:
        leader.dogleg = leader.dogleg * number(group);
        break;
    default:
        break;
    }
}

// How a point or a number of a part follows a transformation.
enum class follows { not_at_all, as_point, as_direction, as_length };

follows how(part where, int code) {
    if (where == part::context)
        switch (code) {
        case 10:
        case 12:
        case 15:
        case 110:
            return follows::as_point;
        case 11:
        case 13:
        case 14:
        case 111:
        case 112:
            return follows::as_direction;
        case 40:
        case 41:
        case 43:
        case 44:
        case 140:
        case 145:
            return follows::as_length;
        default:
            return follows::not_at_all;
        }
    if (where == part::leader)
        return code == 10 || code == 12 || code == 13 ? follows::as_point
               : code == 11                           ? follows::as_direction
               : code == 40                           ? follows::as_length
                                                      : follows::not_at_all;
    return where == part::line && (code == 10 || code == 11 || code == 12) ? follows::as_point
                                                                           : follows::not_at_all;
}

} // namespace

multileader_context read_context(const AcDbImpObject& object) {
    multileader_context context;
    const auto& all = object.groups().groups();
    part where = part::none;
    int matrix_entry = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const part before = std::exchange(where, part_behind(where, all[i]));
        if (where != before) {
            if (before == part::context && where == part::leader)
                context.leaders.emplace_back();
            else if (before == part::leader && where == part::line)
                context.leaders.back().lines.emplace_back();
        } else if (where == part::context) {
            take_context_group(context, all, i, matrix_entry);
        } else if (where == part::leader) {
            take_leader_group(context.leaders.back(), all, i);
        } else if (where == part::line && all[i].code == 10) {
            context.leaders.back().lines.back().push_back(point_at(all, i));
        }
    }
    return context;
}

void transform_context(AcDbImpObject& object, const AcGeMatrix3d& matrix, double scale) {
    dxf::group_list& groups = object.edit();
    const auto& all = groups.groups();
    part where = part::none;
    int matrix_entry = 0;
    AcGeMatrix3d block_to_world = matrix * read_context(object).block_to_world;
    for (std::size_t i = 0; i < all.size(); ++i) {
        where = part_behind(where, all[i]);
        const int code = all[i].code;
        const follows what = how(where, code);
        if (what == follows::as_length) {
            groups.set_real_at(i, number(all[i]) * scale);
        } else if (what != follows::not_at_all) {
            const AcGePoint3d point = point_at(all, i);
            const AcGePoint3d moved = what == follows::as_point
                                          ? matrix * point
                                          : AcGePoint3d::kOrigin + (matrix * point.asVector()).normal();
            for (unsigned axis = 0; axis < 3 && i + axis < all.size(); ++axis)
                if (all[i + axis].code == code + static_cast<int>(10 * axis))
                    groups.set_real_at(i + axis, moved[axis]);
        } else if (where == part::context && code == 47 && matrix_entry < 16) {
            groups.set_real_at(i, block_to_world.entry[matrix_entry / 4][matrix_entry % 4]);
            ++matrix_entry;
        }
    }
}

} // namespace db
