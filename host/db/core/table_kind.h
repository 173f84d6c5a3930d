// The nine symbol tables, by what the file calls them.
#pragma once

#include <cstddef>

namespace db {

enum class table_kind { block, layer, text_style, linetype, view, ucs, viewport, regapp, dim_style };
inline constexpr std::size_t table_kinds = 9;

} // namespace db
