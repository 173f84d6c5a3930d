// Lines of text with nothing unusual, drawn from the groups of their records.
#include "host/db/tables/text_styles.h"
#include "host/dxf/record_header.h"
#include "host/gi/text_alignment.h"
#include "host/picture/common_groups.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace picture {

const AcGiTextStyle& painter::style_named(std::string_view name) {
    const auto [at, fresh] = styles_.try_emplace(name);
    if (fresh) {
        const std::lock_guard hold(shared_.lock);
        at->second = db::text_style(&drawing_, name);
    }
    return at->second;
}

std::wstring painter::message_of(std::string_view bytes) {
    if (std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= ' ' && c != '\\' && c != '^'; }))
        return {bytes.begin(), bytes.end()}; // the same in all encodings
    const std::lock_guard hold(shared_.lock);
    return drawing_.drawing().codec().decode(bytes);
}

bool painter::draw_plain_text(dxf::record_id entity) {
    const bool attribute = drawing_.records().type(entity) == dxf::type_attrib;
    bool hidden = attribute && attribute_mode_ == 0;
    AcGePoint3d points[2]; // of insertion and of alignment
    bool aligned = false;
    double height = 0.0;
    double width_factor = 1.0;
    double rotation = 0.0;
    double oblique = 0.0;
    int horizontal = 0;
    int vertical = 0;
    std::string_view bytes;
    std::string_view style_bytes;
    common_groups groups(drawing_.records().text(entity));
    while (groups.next()) {
        const int code = groups.group.code;
        switch (code) {
        case 1:
            bytes = groups.group.value;
            groups.plain = bytes.find("%%") == bytes.npos;
            break;
        case 7:
            style_bytes = groups.group.value;
            break;
        case 11:
        case 21:
        case 31:
            aligned = true;
            [[fallthrough]];
        case 10:
        case 20:
        case 30:
            points[code % 10][static_cast<unsigned>(code / 10 - 1)] = groups.number();
            break;
        case 40:
            height = groups.number();
            break;
        case 41:
            width_factor = groups.number(1.0);
            break;
        case 50:
            rotation = groups.number() * std::numbers::pi / 180.0;
            break;
        case 51:
            oblique = std::remainder(groups.number(), 360.0) * std::numbers::pi / 180.0;
            break;
        case 70: // invisible, constant, ...
            groups.plain = attribute;
            hidden = hidden || ((static_cast<int>(groups.number()) & 1) != 0 && attribute_mode_ != 2);
            break;
        case 71: // from right to left, and on its head
            groups.plain = groups.number() == 0.0;
            break;
        case 72:
            horizontal = static_cast<int>(groups.number());
            groups.plain = horizontal == AcDb::kTextLeft || horizontal == AcDb::kTextCenter ||
                           horizontal == AcDb::kTextRight || horizontal == AcDb::kTextMid;
            break;
        case 73:
        case 74:
            if ((code == 74) == attribute) // the other one is an attribute's length
                vertical = static_cast<int>(groups.number());
            groups.plain =
                (attribute || code == 73) && vertical >= AcDb::kTextBase && vertical <= AcDb::kTextTop;
            break;
        default: // an attribute's tag, version and lock
            groups.plain = attribute && (code == 2 || code == 280);
        }
    }
    if (!groups.is_plain() || !(height > 0.0) || !(width_factor > 0.0))
        return false;
    if (attribute && (groups.color == AcCmEntityColor::kACIbyBlock || groups.weight == AcDb::kLnWtByBlock ||
                      !groups.linetype.empty()))
        return false; // it looks to its reference
    if (hidden)
        return true;
    const AcGiTextStyle& style = style_named(style_bytes);
    if (style.isVertical())
        return false;
    const look& now = look_of(entity, groups).shown;
    if (!now.seen)
        return true;
    const std::wstring shown = message_of(bytes);
    if (shown.empty())
        return true;
    const gi::font& font = style.imp();
    const gi::text_box box = gi::measure_text(shown, font, height, width_factor, style.trackingPercent());
    const AcGeVector3d x(std::cos(rotation), std::sin(rotation), 0.0);
    const AcGeVector3d y(-x.y, x.x, 0.0);
    gi::text_line line;
    line.position = points[0];
    if (horizontal != AcDb::kTextLeft || vertical != AcDb::kTextBase) {
        const gi::text_shift shift = gi::shift_of_alignment(horizontal, vertical, box, height);
        line.position = points[aligned ? 1 : 0] + x * shift.along + y * shift.up;
    }
    const double wide = height * width_factor;
    line.x = x * wide;
    line.y = y * height;
    line.oblique = oblique;
    line.text = shown;
    line.written_with = &font;
    line.length = box.width / wide;
    draw_text(line, now);
    return true;
}

} // namespace picture
