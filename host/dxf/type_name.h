// The type that a group 0 names. A blank line behind it belongs to its value in damaged files, not to its
// name.
#pragma once

#include "host/dxf/record_header.h"

#include <string_view>

namespace dxf {

inline std::string_view type_name_of(std::string_view value) {
    value = trimmed(value);
    return trimmed(value.substr(0, value.find_first_of("\r\n")));
}

} // namespace dxf
