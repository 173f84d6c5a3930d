// The groups that all entities have in common: layer, linetype, colour and their fellows.
//
// The editor writes them behind the marker AcDbEntity, before those of the entity's own classes. Other
// programs put them behind the marker of a class, or among its groups. They are the entity's there too,
// unless the class uses the code for something of its own. Where a record has one of them twice the first one
// counts.
#pragma once

#include "adesk.h"
#include "host/dxf/record_header.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace dxf {

inline constexpr std::string_view common_marker = "AcDbEntity";

// A set of common codes, a bit for each.
using common_set = std::uint32_t;

// Source: the DXF reference's table of common group codes for entities. 5, 102 and 330 are not here: they
// stand in front of all markers, and classes use them too.
inline constexpr int common_codes[] = {6,   8,   48,  60,  62,  67,  92,  160, 284,
                                       310, 347, 370, 390, 410, 420, 430, 440};

namespace detail {

inline constexpr int highest_common_code = 440;
inline constexpr auto common_bits = [] {
    std::array<common_set, highest_common_code + 1> bits{};
    common_set bit = 1;
    for (const int code : common_codes) {
        bits[static_cast<std::size_t>(code)] = bit;
        bit <<= 1;
    }
    return bits;
}();

} // namespace detail

// The set of one code; empty when it is none of them.
constexpr common_set common_bit(int code) {
    return code >= 0 && code <= detail::highest_common_code
               ? detail::common_bits[static_cast<std::size_t>(code)]
               : 0;
}

// The common codes that mean something else behind the markers of a type's own classes. Of a type that is not
// known, which may use codes as it likes, all of them.
ACDB_PORT common_set codes_of_class(std::string_view type);

// The parts of an entity's record, one after the other. What stands in front of all markers and behind the
// first one is what all entities have in common, whatever that marker says.
class common_parts {
public:
    explicit common_parts(std::string_view type) : type_(type) {}

    // A marker, group 100.
    void begin(std::string_view marker) { in_class_ = ++markers_ > 1 && trimmed(marker) != common_marker; }
    bool in_class() const { return in_class_; }
    // Whether a common group that stands here is the entity's.
    bool holds(int code) const { return !in_class_ || (codes_of_class(type_) & common_bit(code)) == 0; }

private:
    std::string_view type_;
    bool in_class_ = false;
    unsigned markers_ = 0;
};

// Takes the groups of an entity behind those that header_taker wants, one after the other, into its header:
// layer and space where they stand among the groups of its classes.
class scattered_taker {
public:
    explicit scattered_taker(std::string_view type) : parts_(type) {}

    // False when nothing further can belong to the header.
    bool take(const raw_group& group, record_header& header) {
        if (group.code > 8 && group.code < 67) // most groups, so this is asked first
            return true;
        switch (group.code) {
        case 100:
            parts_.begin(group.value);
            return true;
        case 102:
            in_braces_ = group.value.find('{') != group.value.npos;
            return true;
        case 8:
            if (header.layer.data() == nullptr && is_common(group))
                header.layer = group.value;
            return true;
        case 67:
            if (is_common(group))
                header.paper = header.paper || trimmed(group.value) == "1";
            return true;
        default:
            return group.code < 1000 && group.code != 101;
        }
    }

private:
    bool is_common(const raw_group& group) const {
        return !in_braces_ && parts_.in_class() && parts_.holds(group.code);
    }

    common_parts parts_;
    bool in_braces_ = false;
};

// The header of an entity's text. Whether it stands in paper space may be said anywhere in it: who does not
// want to know it need not read all of it.
inline record_header read_entity_header(padded_text text, bool wants_space = true) {
    group_reader groups(text);
    raw_group group;
    if (!groups.next(group) || group.code != 0)
        return {};
    header_taker taker(trimmed(group.value));
    scattered_taker scattered(taker.header.type);
    bool in_header = true;
    bool in_entity = true;
    while (in_entity && groups.next(group)) {
        in_header = in_header && taker.take(group);
        if (!in_header && !wants_space && taker.header.layer.data() != nullptr)
            break;
        in_entity = scattered.take(group, taker.header);
    }
    return taker.header;
}

} // namespace dxf
