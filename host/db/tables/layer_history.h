// What commands did to the states of layers of a drawing, so that the last of it can be taken back alone
// (LAYERP); and the state before the first command of a session that hides or locks layers, which the drawing
// keeps.
#pragma once

#include "host/db/tables/layer_look.h"

#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace db {

// The name of that state.
inline constexpr const wchar_t* state_before = L"*BEFORE*";

class layer_history {
public:
    explicit layer_history(AcDbImpDatabase& drawing) : drawing_(drawing) {}

    // A command with a step of its own begins, and has ended. Where `isolates` is set and it is the first one
    // that turned layers off, froze or locked them, the state before it is put into the drawing, in the same
    // step.
    void command_begins();
    void command_ended(bool isolates);

    // Gives layers and viewports back what the last command that changed them took, without what else it did.
    // False when there is none that has not been taken back. Called by a command.
    bool take_back();

private:
    struct earlier {
        dxf::record_id record;
        std::string_view text; // before the command; empty where it was not there
    };
    struct layer_change {
        layer_look before;
        int mask; // of AcDbLayerStateManager: what was changed
    };
    struct viewport_change {
        AcDbObjectId viewport;
        std::vector<AcDbObjectId> frozen; // by the command
        std::vector<AcDbObjectId> thawed;
    };
    struct change {
        std::size_t place;       // the number of steps in effect with it: with fewer it was undone
        bool taken_back = false; // this one took back the last one in front of it that still counted
        std::vector<layer_change> layers;
        std::vector<viewport_change> viewports;
    };

    bool follows(dxf::record_id record) const;
    std::string_view text_now(dxf::record_id record) const;
    std::vector<earlier> catch_up();
    void forget_undone();
    change change_of(const std::vector<earlier>& records, bool& hides) const;
    void keep_state_before(const std::vector<earlier>& records);

    AcDbImpDatabase& drawing_;
    std::size_t journal_read_ = 0;
    dxf::record_id records_seen_ = 0;
    // Layers and viewports as they stood when those were read last; texts never change.
    std::unordered_map<dxf::record_id, std::string_view> texts_;
    std::size_t steps_before_ = 0; // the command under way
    bool took_back_ = false;       // that command did
    std::vector<change> changes_;
    std::optional<std::size_t> kept_at_; // the place of the command before which the state was kept
};

} // namespace db
