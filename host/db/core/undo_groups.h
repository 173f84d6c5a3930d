// How the user divides the history of a drawing: marks, steps that go together, and what REDO gives again.
#pragma once

#include <cstddef>
#include <vector>

namespace db {

// Places are numbers of steps in effect.
struct undo_groups {
    struct group {
        std::size_t begin;
        std::size_t end;
    };
    std::vector<std::size_t> marks;
    std::vector<group> groups;       // that were ended
    std::vector<std::size_t> begun;  // that were not
    std::vector<std::size_t> undone; // how many steps each command took back since the last change
    std::size_t reached = 0;         // by the last command that took back or gave again
    std::size_t least = 0;           // what lies before is not taken back any more
};

} // namespace db
