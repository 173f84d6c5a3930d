// What the index wants to know of a record from its first groups: type, handle, owner, layer, space.
#pragma once

#include "host/dxf/group_reader.h"

#include <cstdint>
#include <string_view>

namespace dxf {

struct record_header {
    std::string_view type;    // group 0, without blanks around it
    std::string_view name;    // group 2
    std::string_view layer;   // group 8, its bytes as they stand
    std::uint64_t handle = 0; // group 5, of a DIMSTYLE 105
    std::uint64_t owner = 0;  // group 330 outside of application groups
    bool paper = false;       // group 67
};

// `text` without blanks and tabs around it.
inline std::string_view trimmed(std::string_view text) {
    const auto is_blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && is_blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    return text;
}

// The number that hexadecimal digits stand for, blanks around them allowed; 0 when they are none.
inline std::uint64_t parse_handle(std::string_view digits) {
    digits = trimmed(digits);
    std::uint64_t value = 0;
    if (digits.size() > 16)
        return 0;
    for (const char c : digits) {
        unsigned digit = 0;
        if (c >= '0' && c <= '9')
            digit = static_cast<unsigned>(c - '0');
        else if (c >= 'A' && c <= 'F')
            digit = static_cast<unsigned>(c - 'A') + 10;
        else if (c >= 'a' && c <= 'f')
            digit = static_cast<unsigned>(c - 'a') + 10;
        else
            return 0;
        value = value << 4 | digit;
    }
    return value;
}

// Takes the groups behind a group 0, one after the other, into a header.
//
// Ends where the common part does: at the second subclass marker, at extended data, at an embedded object. A
// group 5 behind the first marker is data, and so are a second 5, 8 or 330; in braces (102) all are.
class header_taker {
public:
    explicit header_taker(std::string_view type) : dimstyle_(type == "DIMSTYLE") { header.type = type; }

    // False when nothing further can belong to the header.
    bool take(const raw_group& group) {
        if (group.code == 102) {
            in_braces_ = !group.value.empty() && group.value.find('{') != group.value.npos;
            return true;
        }
        if (in_braces_)
            return true;
        switch (group.code) {
        case 2:
            if (once(name_seen))
                header.name = trimmed(group.value);
            break;
        case 5:
            if (!dimstyle_ && markers_ == 0 && once(handle_seen))
                header.handle = parse_handle(group.value);
            break;
        case 105:
            if (dimstyle_ && once(handle_seen))
                header.handle = parse_handle(group.value);
            break;
        case 8:
            if (once(layer_seen))
                header.layer = group.value;
            break;
        case 67:
            header.paper = trimmed(group.value) == "1";
            break;
        case 100:
            return ++markers_ < 2;
        case 101:
            return false;
        case 330:
            if (markers_ == 0 && once(owner_seen))
                header.owner = parse_handle(group.value);
            break;
        default:
            return group.code < 1000;
        }
        return true;
    }

    // Whether a group was taken for the handle, whatever stands in it.
    bool has_handle() const { return (seen_ & handle_seen) != 0; }

    record_header header;

private:
    enum : unsigned { name_seen = 1, handle_seen = 2, layer_seen = 4, owner_seen = 8 };

    bool once(unsigned what) {
        if ((seen_ & what) != 0)
            return false;
        seen_ |= what;
        return true;
    }

    bool dimstyle_;
    bool in_braces_ = false;
    unsigned markers_ = 0;
    unsigned seen_ = 0; // of the groups of which only the first counts
};

// The first value of a code in a record's text, without blanks around it; empty when there is none.
inline std::string_view value_of(padded_text text, int code) {
    group_reader groups(text);
    raw_group group;
    while (groups.next(group))
        if (group.code == code)
            return trimmed(group.value);
    return {};
}

// The header of one record's text.
inline record_header read_record_header(padded_text text) {
    group_reader groups(text);
    raw_group group;
    if (!groups.next(group) || group.code != 0)
        return {};
    header_taker taker(trimmed(group.value));
    while (groups.next(group) && taker.take(group)) {
    }
    return taker.header;
}

} // namespace dxf
