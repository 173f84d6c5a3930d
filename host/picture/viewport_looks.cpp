#include "host/picture/viewport_looks.h"

#include "host/db/core/object_links.h"
#include "host/db/tables/properties.h"
#include "host/dxf/group_list.h"
#include "host/dxf/record_header.h"

#include <string_view>

namespace picture {

namespace {

// As the editor keeps a colour in one number: its method in the highest byte, then red, green and blue, or an
// index in the lowest one.
std::optional<AcCmEntityColor> color_of_number(std::int64_t number) {
    constexpr std::int64_t by_color = 0xC2;
    constexpr std::int64_t by_index = 0xC3;
    const auto byte = [number](int shift) { return static_cast<Adesk::UInt8>((number >> shift) & 0xFF); };
    AcCmEntityColor color;
    if (byte(24) == by_color)
        color.setRGB(byte(16), byte(8), byte(0));
    else if (byte(24) == by_index)
        color.setColorIndex(byte(0));
    else
        return std::nullopt;
    return color;
}

std::int64_t whole(std::string_view text) {
    return dxf::leading_integer(text).value_or(0);
}

std::uint64_t handle_in(std::string_view text) {
    return dxf::parse_handle(dxf::trimmed(text));
}

} // namespace

viewport_look look_in_viewport(const AcDbImpDatabase& drawing, dxf::record_id layer,
                               dxf::record_id viewport) {
    viewport_look found;
    const dxf::record_table& records = drawing.records();
    if (layer == dxf::no_record || viewport == dxf::no_record ||
        records.text(layer).find(db::dictionary_braces) == std::string_view::npos)
        return found;
    const std::uint64_t wanted = records.handle(viewport);
    const auto read = [&](dxf::record_id entry) {
        bool ours = false;
        dxf::group_reader groups(records.text(entry));
        dxf::raw_group group;
        while (groups.next(group)) {
            switch (group.code) {
            case 102: // braces begin or end
                ours = false;
                break;
            case 335:
                ours = handle_in(group.value) == wanted;
                break;
            case 420:
                if (ours)
                    found.color = color_of_number(whole(group.value));
                break;
            case 343:
                if (ours)
                    found.linetype = records.find(handle_in(group.value));
                break;
            case 91:
                if (ours && db::is_line_weight(static_cast<int>(whole(group.value))))
                    found.weight = static_cast<int>(whole(group.value));
                break;
            case 440:
                if (ours)
                    found.transparency = whole(group.value);
                break;
            default:
                break;
            }
        }
    };
    for (const std::uint64_t handle :
         db::links(dxf::group_list(records.text(layer)), db::dictionary_braces)) {
        const dxf::record_id dictionary = records.find(handle);
        if (dictionary == dxf::no_record)
            continue;
        const dxf::group_list entries(records.text(dictionary));
        bool is_override = false;
        for (const dxf::group& entry : entries.groups()) {
            if (entry.code == 3)
                is_override = dxf::trimmed(entry.value).starts_with("ADSK_XREC_LAYER_");
            if (!is_override || (entry.code != 350 && entry.code != 360))
                continue;
            if (const dxf::record_id record = records.find(handle_in(entry.value)); record != dxf::no_record)
                read(record);
        }
    }
    return found;
}

} // namespace picture
