#include "host/dxf/common_patch.h"

#include "host/dxf/code_line.h"
#include "host/dxf/common_groups.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace dxf {

namespace {

// Where a common group stands, or would stand.
struct common_spot {
    raw_group found;              // no code: there is none
    const char* behind = nullptr; // the groups that are written before it
};

std::optional<common_spot> find_spot(padded_text record, const group_place& place, int code) {
    const auto rank = [&](int wanted) {
        return std::find(place.order.begin(), place.order.end(), wanted) - place.order.begin();
    };
    const auto own = rank(code);
    common_spot spot;
    spot.found.code = no_code;
    group_reader groups(record);
    raw_group group;
    bool in_common = false;
    const char* end = record.data();
    while (groups.next(group)) {
        if (group.code == 101 || (group.code == 102 && in_common))
            return std::nullopt;
        if (group.code >= 1000 || (group.code == 100 && in_common))
            break;
        end = group.end;
        if (group.code == 100) {
            if (trimmed(group.value) != common_marker)
                return std::nullopt;
            in_common = true;
            spot.behind = group.end;
        } else if (group.code == code) {
            if (!in_common || spot.found.code == code)
                return std::nullopt;
            spot.found = group;
        } else if (in_common && spot.found.code == no_code && rank(group.code) < own) {
            spot.behind = group.end;
        }
    }
    char digits[12];
    const std::string_view code_text(
        digits, static_cast<std::size_t>(std::to_chars(digits, std::end(digits), code).ptr - digits));
    const std::string_view rest = record.substr(static_cast<std::size_t>(end - record.data()));
    if (!in_common || groups.stray_lines() != 0 || may_hold(rest, code_text))
        return std::nullopt;
    return spot;
}

// The record with `middle` for what stands between two places of it.
std::string spliced(std::string_view record, const char* from, std::string_view middle, const char* to) {
    const std::string_view front = record.substr(0, static_cast<std::size_t>(from - record.data()));
    const std::string_view back = record.substr(static_cast<std::size_t>(to - record.data()));
    std::string text;
    text.reserve(front.size() + middle.size() + back.size() + 64);
    return text.append(front).append(middle).append(back);
}

} // namespace

std::optional<std::string_view> common_value(padded_text record, const group_place& place, int code) {
    const std::optional<common_spot> spot = find_spot(record, place, code);
    return spot && spot->found.code == code ? std::optional(spot->found.value) : std::nullopt;
}

std::optional<std::string> with_common(padded_text record, const group_style& style, const group_place& place,
                                       int code, std::string_view value) {
    const std::optional<common_spot> spot = find_spot(record, place, code);
    if (!spot)
        return std::nullopt;
    if (spot->found.code == code) {
        const std::string_view before = spot->found.value;
        if (kind_of_code(code) != value_kind::text) // whose columns are kept
            return std::nullopt;
        return spliced(record, before.data(), value, before.data() + before.size());
    }
    std::string group;
    append_group(group, style, code, value);
    return spliced(record, spot->behind, group, spot->behind);
}

std::optional<std::string> without_common(padded_text record, const group_place& place, int code) {
    const std::optional<common_spot> spot = find_spot(record, place, code);
    if (!spot || spot->found.code != code)
        return std::nullopt;
    return spliced(record, spot->found.begin, {}, spot->found.end);
}

} // namespace dxf
