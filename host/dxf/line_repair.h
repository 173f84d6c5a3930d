// Repairs in the lines of a drawing's text, which come before its records can be trusted: zero bytes, lines
// that lost their group code, an end that was cut off.
#pragma once

#include "host/dxf/indexer.h"
#include "host/dxf/repair.h"

#include <string>
#include <string_view>
#include <vector>

namespace dxf {

// `count` bytes at `at` give way to others.
struct text_edit {
    const char* at;
    std::size_t count;
    std::string instead;
};

// What is to be changed in the lines of `text`, in order, and why. Nothing when what looked like damage is
// none: programs write line ends inside texts, and blank lines.
ACDB_PORT std::vector<text_edit> mend_lines(std::string_view text, const record_table& records,
                                            const drawing_damage& damage, placed_repairs& repairs);

// The text with the edits made.
ACDB_PORT std::string edited(std::string_view text, const std::vector<text_edit>& edits);

} // namespace dxf
