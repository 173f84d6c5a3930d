#include "host/db/tables/layer_history.h"

#include "acdblayerstatemanager.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/implied_entries.h"
#include "host/db/tables/layer_state.h"
#include "host/db/tables/layer_tracking.h"
#include "host/db/tables/spaces.h"
#include "host/db/tables/viewport_groups.h"

#include <algorithm>

namespace db {

namespace {

using manager = AcDbLayerStateManager;

// The layers that are in `these` and not in `those`; both are sorted.
std::vector<AcDbObjectId> without(const AcDbImpDatabase& drawing, const std::vector<dxf::record_id>& these,
                                  const std::vector<dxf::record_id>& those) {
    std::vector<AcDbObjectId> found;
    for (const dxf::record_id layer : these)
        if (!std::binary_search(those.begin(), those.end(), layer))
            found.push_back(drawing.id(layer));
    return found;
}

// The layers that a text of a viewport's record says are frozen in it, sorted.
std::vector<dxf::record_id> frozen_in(AcDbImpDatabase& drawing, dxf::record_id viewport,
                                      std::string_view text) {
    AcDbViewport seen;
    AcDbImpObject& imp = seen.imp();
    imp.begin_new(std::string(text));
    imp.groups(); // read now: as part of the drawing it would be its record that is read
    imp.look_on(drawing, viewport);
    std::vector<dxf::record_id> layers = frozen_layers(imp);
    std::sort(layers.begin(), layers.end());
    return layers;
}

AcDbObjectIdArray live_of(const std::vector<AcDbObjectId>& layers) {
    AcDbObjectIdArray live;
    for (const AcDbObjectId layer : layers)
        if (!layer.isErased())
            live.append(layer);
    return live;
}

} // namespace

bool layer_history::follows(dxf::record_id record) const {
    const std::uint32_t type = drawing_.records().type(record);
    return type == dxf::type_layer || type == dxf::type_viewport;
}

std::string_view layer_history::text_now(dxf::record_id record) const {
    const dxf::record_table& records = drawing_.records();
    return records.gone(record) ? std::string_view() : records.text(record);
}

// The layers and viewports that changed since it was asked last, as they were then.
std::vector<layer_history::earlier> layer_history::catch_up() {
    std::vector<earlier> changed;
    const auto& journal = drawing_.records().journal();
    for (; journal_read_ < journal.size(); ++journal_read_) {
        const dxf::record_id id = journal[journal_read_];
        if (!follows(id))
            continue;
        std::string_view& text = texts_[id];
        const std::string_view now = text_now(id);
        if (now.data() == text.data() && now.size() == text.size())
            continue; // read already: the journal names it as often as it changed
        changed.push_back({id, text});
        text = now;
    }
    return changed;
}

void layer_history::command_begins() {
    if (!drawing_.has_drawing())
        return;
    catch_up(); // what was done since then was undo, or no command
    for (; records_seen_ < drawing_.records().size(); ++records_seen_)
        if (follows(records_seen_))
            texts_.emplace(records_seen_, text_now(records_seen_));
    steps_before_ = drawing_.records().steps_in_effect();
    took_back_ = false;
}

// What had been undone can not be given again after another change.
void layer_history::forget_undone() {
    std::erase_if(changes_, [&](const change& one) { return one.place > steps_before_; });
    if (kept_at_ && *kept_at_ > steps_before_)
        kept_at_.reset();
}

void layer_history::command_ended(bool isolates) {
    if (!drawing_.has_drawing())
        return;
    const std::vector<earlier> records = catch_up();
    if (took_back_ || drawing_.records().steps_in_effect() <= steps_before_)
        return;
    forget_undone();
    if (!follows_layers())
        return;
    bool hides = false;
    change last = change_of(records, hides);
    if (!last.layers.empty() || !last.viewports.empty())
        changes_.push_back(std::move(last));
    if (isolates && hides && !kept_at_) {
        keep_state_before(records);
        kept_at_ = drawing_.records().steps_in_effect();
        catch_up();
    }
}

// What a command did to layers that were there before it, and are still.
layer_history::change layer_history::change_of(const std::vector<earlier>& records, bool& hides) const {
    change found{drawing_.records().steps_in_effect(), false, {}, {}};
    constexpr int hidden = layer_off | layer_frozen | layer_locked;
    for (const auto& [record, text] : records) {
        if (text.empty() || drawing_.records().gone(record))
            continue;
        if (drawing_.records().type(record) == dxf::type_layer) {
            const layer_look before = look_of(drawing_, record, text);
            const layer_look now = look_of(drawing_, record);
            if (const int mask = difference(before, now); mask != 0)
                found.layers.push_back({before, mask});
            hides = hides || (now.flags & ~before.flags & hidden) != 0;
            continue;
        }
        const auto before = frozen_in(drawing_, record, text);
        const auto now = frozen_in(drawing_, record, drawing_.records().text(record));
        viewport_change one{drawing_.id(record), without(drawing_, now, before),
                            without(drawing_, before, now)};
        hides = hides || !one.frozen.empty();
        if (!one.frozen.empty() || !one.thawed.empty())
            found.viewports.push_back(std::move(one));
    }
    return found;
}

// A drawing that can not hold states (R12 and before) keeps none.
void layer_history::keep_state_before(const std::vector<earlier>& records) {
    if (layer_states_dictionary(drawing_, true).isNull())
        return;
    std::unordered_map<dxf::record_id, std::string_view> before;
    for (const auto& [record, text] : records)
        before.emplace(record, text);
    const auto text_before = [&](dxf::record_id record) {
        const auto changed = before.find(record);
        return changed != before.end() ? changed->second : drawing_.records().text(record);
    };
    const dxf::record_id viewport = current_viewport(drawing_);
    layer_state state;
    state.of_viewport = viewport != dxf::no_record && drawing_.records().type(viewport) == dxf::type_viewport;
    // What the editor's own isolating commands keep. Source: drawings that it has saved.
    state.mask = manager::kOn | manager::kFrozen | manager::kLocked | manager::kNewViewport |
                 manager::kCurrentViewport;
    state.current_layer = drawing_.names().name_of(drawing_.layers().current());
    const std::vector<dxf::record_id> frozen = state.of_viewport
                                                   ? frozen_in(drawing_, viewport, text_before(viewport))
                                                   : std::vector<dxf::record_id>();
    for (const dxf::record_id layer : drawing_.names().entries(table_kind::layer)) {
        if (drawing_.records().gone(layer) || text_before(layer).empty())
            continue;
        settle_entry(drawing_, layer); // what is saved must not name what is not
        layer_look& look = state.looks.emplace_back(look_of(drawing_, layer, text_before(layer)));
        if (std::binary_search(frozen.begin(), frozen.end(), layer))
            look.flags |= layer_frozen_in_viewport;
    }
    write_layer_state(drawing_, state_before, state);
}

bool layer_history::take_back() {
    forget_undone();
    std::size_t done = 0; // changes further in front that were taken back already
    auto last = changes_.rbegin();
    for (; last != changes_.rend(); ++last)
        if (last->taken_back)
            ++done;
        else if (done == 0)
            break;
        else
            --done;
    if (last == changes_.rend())
        return false;
    for (const layer_change& one : last->layers)
        give_look(drawing_, one.before, one.mask);
    for (const viewport_change& one : last->viewports) {
        const AcDbObjectPointer<AcDbViewport> viewport(one.viewport, AcDb::kForWrite);
        if (viewport.openStatus() != Acad::eOk)
            continue;
        viewport->thawLayersInViewport(live_of(one.frozen));
        viewport->freezeLayersInViewport(live_of(one.thawed));
    }
    took_back_ = true;
    changes_.push_back({drawing_.records().steps_in_effect(), true, {}, {}});
    return true;
}

} // namespace db
