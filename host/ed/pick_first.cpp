#include "host/ed/pick_first.h"

#include "aced.h"
#include "acutmem.h"
#include "host/ed/coordinates.h"
#include "host/ed/running_commands.h"
#include "host/ed/selection_prompt.h"
#include "host/ed/selection_sources.h"
#include "host/ed/system_variables.h"
#include "host/rx/events.h"

namespace ed {

namespace {

// Keeps what was picked until a command begins that does not use it, or the one ends that did; what a command
// picks for the next one stays.
class keeper final : public AcEditorReactor {
public:
    static keeper& instance() {
        static keeper the_keeper;
        [[maybe_unused]] static const bool hears = rx::event_reactors().add(&the_keeper);
        return the_keeper;
    }

    void set(selection_set picked) {
        picked_ = std::move(picked);
        fresh_ = true;
    }
    const selection_set& picked() const { return picked_; }

    void commandWillStart(const ACHAR* /*command*/) override {
        if (depth_++ != 0)
            return;
        fresh_ = false;
        const AcEdCommand* const command = command_under_way();
        if (command != nullptr && (command->commandFlags() & ACRX_CMD_USEPICKSET) == 0)
            picked_ = {};
    }
    void commandEnded(const ACHAR* /*command*/) override { end(); }
    void commandCancelled(const ACHAR* /*command*/) override { end(); }
    void commandFailed(const ACHAR* /*command*/) override { end(); }

private:
    void end() {
        if (depth_ > 0 && --depth_ == 0 && !fresh_)
            picked_ = {};
    }

    selection_set picked_;
    int depth_ = 0;      // commands in commands
    bool fresh_ = false; // it was picked since the command began
};

} // namespace

std::vector<AcDbObjectId> picked_first() {
    const AcEdCommand* const command = command_under_way();
    if (command == nullptr || (command->commandFlags() & ACRX_CMD_USEPICKSET) == 0 ||
        variable<int>(L"PICKFIRST") == 0)
        return {};
    return keeper::instance().picked().ids();
}

std::optional<std::wstring> pick_before_command(const answer& given) {
    AcDbImpDatabase* const drawing = selected_drawing();
    if (drawing == nullptr || (!given.expression && !read_point(given.text)))
        return std::nullopt;
    if (variable<int>(L"PICKFIRST") == 0)
        return L"PICKFIRST is 0: commands do not use what is picked before them.";
    selection_set picked = variable<int>(L"PICKADD") != 0 ? keeper::instance().picked() : selection_set();
    const selection_mode mode;
    std::wstring reason = selection_prompt(*drawing, nullptr, mode, {}, L"", L"").take_first(picked, given);
    if (reason.empty())
        keeper::instance().set(std::move(picked));
    return reason;
}

void drop_picks() {
    keeper::instance().set({});
}

} // namespace ed

int acedSSSetFirst(const ads_name set, const ads_name /*unused*/) {
    if (set == nullptr || ads_name_nil(set)) {
        ed::keeper::instance().set({});
        return RTNORM;
    }
    const ed::selection_set* const found = ed::find_selection_set(set);
    if (found == nullptr) {
        ed::set_error_number(2);
        return RTERROR;
    }
    ed::keeper::instance().set(*found);
    return RTNORM;
}

int acedSSGetFirst(resbuf** grips, resbuf** picked) {
    for (resbuf** const result : {grips, picked}) {
        if (result == nullptr)
            continue;
        *result = acutNewRb(RTNONE);
        const ed::selection_set& first = ed::keeper::instance().picked();
        if (result == grips && picked != nullptr)
            continue; // grips are shown by a screen only
        if (!first.ids().empty() && ed::name_selection_set(first, (*result)->resval.rlname))
            (*result)->restype = RTPICKS;
    }
    return RTNORM;
}
