// U, UNDO, REDO.
#include "acedads.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "host/db/core/history.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/undo_groups.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/prompts.h"
#include "host/ed/questions.h"

#include <algorithm>
#include <numeric>

namespace ed {

namespace {

enum class undo_control { all, none, one };
undo_control control = undo_control::all; // of the session
bool automatic = true;                    // whether menus group what they do: there are none

// The history of the current drawing, as its groups divide it.
class history {
public:
    explicit history(AcDbImpDatabase& drawing) : drawing_(drawing), groups_(drawing.history().groups) {
        if (drawing.records().can_redo() || groups_.undone.empty())
            return;
        // A change since then took the place of what had been undone, and of where that was divided.
        groups_.undone.clear();
        std::erase_if(groups_.groups, [&](const auto& one) { return one.end > groups_.reached; });
        std::erase_if(groups_.marks, [&](std::size_t place) { return place > groups_.reached; });
    }

    db::undo_groups& groups() { return groups_; }
    std::size_t now() const { return drawing_.records().steps_in_effect(); }

    // Goes back by steps or groups, at most `count` of them, and not before `place`. Gives their names.
    std::wstring back(std::size_t count, std::size_t place) {
        const std::size_t from = now();
        std::wstring names;
        while (count-- > 0 && now() > place) {
            const std::size_t unit = begin_of_unit();
            std::wstring name = unit + 1 < now() ? L"GROUP" : L"";
            while (now() > std::max(unit, place)) {
                const std::wstring step = base::widen(drawing_.history().undo());
                if (name.empty())
                    name = step;
            }
            names += (names.empty() ? L"" : L" ") + name;
        }
        if (now() < from)
            groups_.undone.push_back(from - now());
        groups_.reached = now();
        return names;
    }

    // The place before which nothing is taken back.
    std::size_t least() const {
        if (control != undo_control::one)
            return groups_.least;
        const std::size_t newest =
            std::accumulate(groups_.undone.begin(), groups_.undone.end(), now()); // what REDO can reach
        return std::max(groups_.least, newest > 0 ? newest - 1 : 0);
    }

private:
    // Where what ends here begins: a group of steps or a single one.
    std::size_t begin_of_unit() const {
        std::size_t begin = now() - 1;
        for (const auto& group : groups_.groups)
            if (group.end == now())
                begin = std::min(begin, group.begin);
        return begin;
    }

    AcDbImpDatabase& drawing_;
    db::undo_groups& groups_;
};

void take_back(history& past, std::size_t count) {
    const std::wstring names = past.back(count, past.least());
    acutPrintf(names.empty() ? L"\nNothing to undo.\n" : L"\n%ls\n", names.c_str());
}

void ask_control(history& past) {
    std::wstring word = L"All";
    if (ask_keyword(L"\nEnter an UNDO control option [All/None/One] <All>: ", L"All None One", word) == RTCAN)
        return;
    const bool was_off = control == undo_control::none;
    control = word == L"None" ? undo_control::none : word == L"One" ? undo_control::one : undo_control::all;
    if (was_off || control == undo_control::none)
        past.groups() = {{}, {}, {}, {}, past.now(), past.now()};
}

void ask_automatic() {
    std::wstring word = automatic ? L"ON" : L"OFF";
    if (ask_keyword(std::wstring(L"\nEnter UNDO Auto mode [ON/OFF] <") + (automatic ? L"On" : L"Off") +
                        L">: ",
                    L"ON OFF", word) != RTCAN)
        automatic = word == L"ON";
}

void end_group(history& past) {
    db::undo_groups& groups = past.groups();
    if (groups.begun.empty()) {
        acutPrintf(L"\nNo UNDO group is open.\n");
        return;
    }
    const std::size_t begin = groups.begun.back();
    groups.begun.pop_back();
    if (begin >= past.now())
        return;
    std::erase_if(groups.groups, [&](const auto& one) { return one.begin >= begin; });
    groups.groups.push_back({begin, past.now()});
}

void back_to_mark(history& past) {
    db::undo_groups& groups = past.groups();
    while (!groups.marks.empty() && groups.marks.back() > past.now())
        groups.marks.pop_back();
    std::size_t place = past.least();
    if (groups.marks.empty()) {
        if (!ask_yes(L"\nThis will undo everything. OK?", true).value_or(false))
            return;
    } else {
        place = std::max(place, groups.marks.back());
        groups.marks.pop_back();
        acutPrintf(L"\nMark encountered");
    }
    const std::wstring names = past.back(past.now(), place);
    acutPrintf(names.empty() ? L"\nEverything has been undone\n" : L"\n%ls\n", names.c_str());
}

bool may_undo() {
    if (control != undo_control::none)
        return true;
    acutPrintf(L"\nUNDO is turned off. UNDO turns it on.\n");
    return false;
}

} // namespace

void u_command() {
    if (current_drawing() == nullptr || !may_undo())
        return;
    history past(current_drawing()->imp());
    take_back(past, 1);
}

void undo_command() {
    if (current_drawing() == nullptr)
        return;
    history past(current_drawing()->imp());
    if (control == undo_control::none) {
        ask_control(past);
        return;
    }
    acutPrintf(L"\nCurrent settings: Auto = %ls, Control = %ls", automatic ? L"On" : L"Off",
               control == undo_control::one ? L"One" : L"All");
    std::size_t count = 1;
    acedInitGet(0, L"Auto Control BEgin End Mark Back");
    const int answered =
        ask_value(L"\nEnter the number of operations to undo or [Auto/Control/BEgin/End/Mark/Back] <1>: ",
                  take_input_rules(), answer_rule::word, [&](const answer& given) -> std::wstring {
                      const auto number = base::parse_integer(base::narrow(given.text));
                      if (!number || *number < 1 || *number > 32767)
                          return L"Requires an integer between 1 and 32767.";
                      count = static_cast<std::size_t>(*number);
                      return {};
                  });
    if (answered == RTCAN)
        return;
    if (answered != RTKWORD) {
        take_back(past, count);
        return;
    }
    const std::wstring word = taken_keyword();
    if (word == L"Auto")
        ask_automatic();
    else if (word == L"Control")
        ask_control(past);
    else if (word == L"BEgin")
        past.groups().begun.push_back(past.now());
    else if (word == L"End")
        end_group(past);
    else if (word == L"Mark")
        past.groups().marks.push_back(past.now());
    else
        back_to_mark(past);
}

// Gives again what one U or one UNDO took back.
void redo_command() {
    if (current_drawing() == nullptr)
        return;
    AcDbImpDatabase& drawing = current_drawing()->imp();
    history past(drawing);
    std::size_t count = 1;
    if (!past.groups().undone.empty()) {
        count = past.groups().undone.back();
        past.groups().undone.pop_back();
    }
    std::wstring names;
    while (count-- > 0)
        if (const std::string name = drawing.history().redo(); !name.empty())
            names += (names.empty() ? L"" : L" ") + base::widen(name);
    past.groups().reached = past.now();
    acutPrintf(names.empty() ? L"\nNothing to redo.\n" : L"\n%ls\n", names.c_str());
}

} // namespace ed
