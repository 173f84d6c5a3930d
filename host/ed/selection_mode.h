// The mode of acedSSGet, as its text says it: "_X", "_:S:E", "_+.:$-M".
#pragma once

#include "adesk.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ed {

// The ways to select: as modes of the call, and as answers of the user.
enum class way {
    ask, // the mode that names no way
    window,
    last,
    crossing,
    box,
    all,     // "ALL" of the user, "A" of a program
    drawing, // "X"
    fence,
    window_polygon,
    crossing_polygon,
    group,
    implied,
    add,
    remove,
    multiple,
    previous,
    undo,
    automatic,
    single,
    point // a pick, "." of a program
};

struct selection_mode {
    way how = way::ask;
    std::optional<way> first; // "+": the way that the user's first answer is an answer to
    std::set<way> denied;     // "-": what the user can not choose
    bool only_whole = false;  // "#": the user chooses among ALL, Last and Previous
    bool prompts = false;     // ":$"
    bool doubles = false;     // ":D"
    bool everything = false;  // ":E": all that lies in the pick box
    bool callbacks = false;   // ":K"
    bool unlocked = false;    // ":L": nothing on locked layers
    bool nested = false;      // ":N"
    bool once = false;        // ":S": one answer is all

    bool allows(way chosen) const;
};

// Nothing for a text that is no mode, and for modes that are not supported.
ACCORE_PORT std::optional<selection_mode> parse_selection_mode(std::wstring_view text);

// The way that an answer at a selection prompt names; and the words for them all, as they are spelled.
std::optional<way> way_of_answer(std::wstring_view answer);
std::vector<std::wstring> words_for_ways();

} // namespace ed
