// What painters read of an entity without an object.
#pragma once

#include "host/db/tables/properties.h"
#include "host/dxf/group_list.h"
#include "host/dxf/group_reader.h"
#include "host/dxf/record_header.h"
#include "host/picture/painter.h"

#include <cstdlib>

namespace picture {

// The groups of an entity one after the other, without those that all entities have and those that decide
// nothing here.
struct painter::common_groups {
    explicit common_groups(dxf::padded_text record) : groups(record) {}

    // The next one of the entity's own; false at the end, and once something unusual was met.
    bool next() {
        constexpr int first_of_programs = 1000;
        constexpr int braces = 102;
        while (plain && groups.next(group) && group.code < first_of_programs) {
            if (in_reactors) {
                in_reactors = group.code != braces;
                continue;
            }
            switch (group.code) {
            case 0:
            case 5:
            case 8:
            case 67:
            case 330:
            case 410:
                break;
            case 100:
                if (dxf::trimmed(group.value) == "AcDbXrecord") // data behind an attribute, not its own
                    return false;
                break;
            case braces:
                if (!group.value.starts_with("{ACAD_REACTORS"))
                    return true;
                in_reactors = true;
                break;
            case 430: // what the true colour is called
                break;
            case 6:
                linetype = dxf::trimmed(group.value);
                break;
            case 48:
                linetype_scale = number(1.0);
                break;
            case 62:
                color = dxf::leading_integer(group.value).value_or(0);
                break;
            case 420:
                true_color = dxf::leading_integer(group.value).value_or(-1);
                break;
            case 370:
                weight = dxf::leading_integer(group.value).value_or(0);
                break;
            default:
                return true;
            }
        }
        return false;
    }
    double number(double missing = 0.0) const { return dxf::leading_real(group.value).value_or(missing); }
    // Whether all of it was usual.
    bool is_plain() const {
        constexpr std::int64_t heaviest = AcDb::kLnWt211;
        constexpr std::int64_t most_colors = 0xFFFFFF;
        return plain && color >= 0 && color <= AcCmEntityColor::kACIbyLayer && true_color >= -1 &&
               true_color <= most_colors && std::abs(weight) <= heaviest &&
               db::is_line_weight(static_cast<int>(weight));
    }

    dxf::group_reader groups;
    dxf::raw_group group;
    std::int64_t color = AcCmEntityColor::kACIbyLayer;
    std::int64_t true_color = -1; // none
    std::int64_t weight = AcDb::kLnWtByLayer;
    std::string_view linetype; // empty where it is ByLayer
    double linetype_scale = 1.0;
    bool in_reactors = false;
    bool plain = true;
};

} // namespace picture
