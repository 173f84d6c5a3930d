// Whether a record may hold a group, without reading it group by group.
#pragma once

#include <string_view>

namespace dxf {

// Whether a line of a record is a group's code and nothing else. Where none is, the record need not be read
// to know that it does not hold the group.
inline bool may_hold(std::string_view record, std::string_view code) {
    const auto is = [&](std::size_t at, std::string_view any) { return any.find(record[at]) != any.npos; };
    for (std::size_t at = record.find(code); at != record.npos; at = record.find(code, at + 1)) {
        std::size_t first = at;
        while (first != 0 && is(first - 1, " \t0"))
            --first;
        std::size_t behind = at + code.size();
        while (behind != record.size() && is(behind, " \t\r"))
            ++behind;
        if ((first == 0 || is(first - 1, "\n")) && (behind == record.size() || is(behind, "\n")))
            return true;
    }
    return false;
}

} // namespace dxf
