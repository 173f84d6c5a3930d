// Reads or changes one common group of an entity by its bytes alone, the other groups being copied as they
// are.
//
// Most changes of many entities at once are of this kind: another layer, hidden, shown. The text that comes
// out is the one that group_list would write; where that is not sure at once (no markers, a group that stands
// twice or outside of the common part, lines that are no groups) nothing comes out, and the groups have to be
// read.
#pragma once

#include "host/dxf/group_list.h"

#include <optional>
#include <string>
#include <string_view>

namespace dxf {

// The value of a common group that the record has once, in its common part.
ACDB_PORT std::optional<std::string_view> common_value(padded_text record, const group_place& place,
                                                       int code);

// The record's text with a common group set, behind the groups that `place` writes before it where there is
// none yet.
ACDB_PORT std::optional<std::string> with_common(padded_text record, const group_style& style,
                                                 const group_place& place, int code, std::string_view value);

// The record's text without that group; nothing also where it has none.
ACDB_PORT std::optional<std::string> without_common(padded_text record, const group_place& place, int code);

} // namespace dxf
