// What stands for a value that a damaged record lost: what the groups behind it, and the drawing's sound
// records, tell of it.
#pragma once

#include "host/dxf/line_manner.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace dxf {

struct lost_value {
    std::string value;
    bool left_out = false; // the group says nothing without it
};

class lost_values {
public:
    // `lines` and the codes that they are make a record, which stands in front of one of the type
    // `following`.
    lost_values(const std::vector<text_line>& lines, const std::vector<int>& codes, const line_manner& manner,
                std::string_view following)
        : lines_(lines), codes_(codes), manner_(manner), following_(following) {}

    // The value of a code at a place, behind which the line `behind` stands. `type_before`: of the record, or
    // when it has none yet of the one before it.
    lost_value find(const line_manner::place& at, std::uint32_t type_before, int code, std::size_t behind);
    // That of $ACADVER: the oldest version that has what the drawing has.
    std::string version() const;
    // Where damage is everywhere.
    void look_at_less() { looked_at_ = 6; }

private:
    double surprise_of_rest(line_manner::place at, std::size_t line) const;
    bool may_be(std::string_view type, std::size_t line) const;
    lost_value type(std::uint32_t type_before, std::size_t behind);
    lost_value marker(const line_manner::place& at, std::size_t behind) const;
    std::string section_name(std::size_t behind) const;
    std::string table_name(std::size_t behind) const;
    std::string_view next_value(int code, std::size_t line) const;
    std::string_view next_type(std::size_t line) const;

    const std::vector<text_line>& lines_;
    const std::vector<int>& codes_;
    const line_manner& manner_;
    std::string_view following_;
    std::size_t looked_at_ = 60; // lines
    std::unordered_map<std::size_t, std::pair<std::uint32_t, lost_value>> types_found_;
};

} // namespace dxf
