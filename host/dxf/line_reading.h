// How the lines of a damaged record are to be read as groups: of all readings the one that surprises least,
// by what the sound records of the drawing are like. So a lost line, one too many and a blank one are found
// where they are, not where the codes and values behind them stop making sense.
#pragma once

#include "host/dxf/line_manner.h"

#include <string>
#include <vector>

namespace dxf {

struct line_step {
    enum class act {
        group,      // this line is a code, the next one its value
        more_text,  // belongs to the text before it
        needless,   // belongs to no group
        lost_code,  // a value whose code is missing; `code` is what it is read as
        blank_code, // a blank line that stands for `code`; the next one is the value
        wrong_code, // a 0 that should be `code`; the next line is the value
        wrong_pair, // a 0 and a number that belong to no group
        no_value,   // a code whose value is missing; `value` is what is read
        blank_value // a code with a blank line for its value
    };
    act what = act::group;
    std::size_t line = 0; // the first one that the step takes
    int code = 0;
    std::string value;
    bool left_out = false; // of what lost its value, when it says nothing without
};

// The reading of the lines of a record, which stands between records of the types `before` and `following`.
// Empty when there is none.
std::vector<line_step> read_lines(const std::vector<text_line>& lines, const line_manner& manner,
                                  std::string_view before, std::string_view following);

} // namespace dxf
