#include "host/picture/changes.h"

#include "base/case_fold.h"
#include "dbmain.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/layer_look.h"
#include "host/dxf/group_list.h"
#include "host/picture/layer_states.h"

#include <functional>
#include <map>
#include <string>

namespace picture {

namespace {

// What a record says, without what names it and what it belongs to.
std::size_t said_by(dxf::padded_text record, std::size_t before) {
    dxf::group_reader groups(record);
    dxf::raw_group group;
    std::size_t said = before;
    bool in_braces = false; // who watches it
    while (groups.next(group)) {
        if (group.code == 102)
            in_braces = group.value.starts_with('{');
        if (in_braces || group.code == 102 || group.code == 5 || group.code == 330)
            continue;
        for (const std::size_t part :
             {static_cast<std::size_t>(group.code), std::hash<std::string_view>()(dxf::trimmed(group.value))})
            said = (said ^ part) * 0x100000001B3U + (said >> 47);
    }
    return said;
}

// How a layer shows what stands on it.
struct shown_layer {
    bool seen = true;
    AcCmEntityColor color;
    int weight = 0;
    int transparency = 0;
    friend bool operator==(const shown_layer&, const shown_layer&) = default;
};

std::map<std::wstring, shown_layer> layers_of(AcDbImpDatabase& drawing) {
    std::map<std::wstring, shown_layer> layers;
    for (const dxf::record_id layer : drawing.names().entries(db::table_kind::layer)) {
        const db::layer_look look = db::look_of(drawing, layer);
        shown_layer& shown = layers[base::folded(drawing.names().name_of(layer))];
        shown.seen = (look.flags & (db::layer_off | db::layer_frozen)) == 0;
        shown.color = look.color;
        shown.weight = look.weight;
        shown.transparency = look.transparency;
    }
    return layers;
}

} // namespace

std::vector<changes::found> changes::entities_of(AcDbImpDatabase& drawing) {
    std::vector<found> all;
    const dxf::record_table& records = drawing.records();
    for (dxf::record_id record = 0; record != dxf::no_record; record = records.next(record)) {
        if (records.gone(record))
            continue;
        const dxf::record_kind kind = records.kind(record);
        if (kind == dxf::record_kind::entity)
            all.push_back({record, said_by(records.text(record), 0)});
        else if (kind == dxf::record_kind::part && !all.empty())
            all.back().says = said_by(records.text(record), all.back().says);
    }
    return all;
}

changes::changes(AcDbImpDatabase& before, AcDbImpDatabase& now) : before_(before), now_(now) {
    std::unordered_map<std::uint64_t, found> old_by_handle;
    std::unordered_multimap<std::size_t, dxf::record_id> old_by_words;
    for (const found& old : entities_of(before)) {
        const std::uint64_t handle = before.records().handle(old.entity);
        if (handle != 0)
            old_by_handle.emplace(handle, old);
        else
            old_by_words.emplace(old.says, old.entity);
        in_before_[old.entity] = change::went;
    }
    std::vector<found> left;
    for (const found& fresh : entities_of(now)) {
        const auto same = old_by_handle.find(now.records().handle(fresh.entity));
        const bool is_same = same != old_by_handle.end() && before.records().type_name(same->second.entity) ==
                                                                now.records().type_name(fresh.entity);
        if (!is_same) {
            left.push_back(fresh);
            continue;
        }
        in_before_[same->second.entity] = change::none;
        in_now_[fresh.entity] = same->second.says == fresh.says ? change::none : change::altered;
        old_by_handle.erase(same);
    }
    for (const auto& [handle, old] : old_by_handle)
        old_by_words.emplace(old.says, old.entity);
    for (const found& fresh : left) {
        const auto same = old_by_words.find(fresh.says);
        in_now_[fresh.entity] = same == old_by_words.end() ? change::came : change::none;
        if (same != old_by_words.end()) {
            in_before_[same->second] = change::none;
            old_by_words.erase(same);
        }
    }
    compare_layers(before, now);
}

// What stands on a layer that is seen in one of the two alone, or looks different there.
void changes::compare_layers(AcDbImpDatabase& before, AcDbImpDatabase& now) {
    const auto old_layers = layers_of(before);
    const auto new_layers = layers_of(now);
    const auto look_again = [](AcDbImpDatabase& drawing, const auto& own, const auto& other,
                               change hidden_there, change differs,
                               std::unordered_map<dxf::record_id, change>& marks) {
        std::unordered_map<std::uint32_t, change> by_number;
        for (auto& [entity, mark] : marks) {
            const auto [at, fresh] = by_number.try_emplace(drawing.records().layer(entity), change::none);
            if (fresh) {
                const std::wstring name = base::folded(drawing.layers().name_of(entity));
                const auto here = own.find(name);
                const auto there = other.find(name);
                const shown_layer mine = here != own.end() ? here->second : shown_layer();
                const shown_layer its = there != other.end() ? there->second : shown_layer();
                if (mine.seen && !its.seen)
                    at->second = hidden_there;
                else if (mine.seen && !(mine == its))
                    at->second = differs;
            }
            if (at->second != change::none && mark == change::none)
                mark = at->second;
        }
    };
    look_again(before, old_layers, new_layers, change::went, change::none, in_before_);
    look_again(now, new_layers, old_layers, change::came, change::altered, in_now_);
}

change changes::of(const AcDbImpDatabase& drawing, dxf::record_id entity) const {
    const auto& marks = &drawing == &before_ ? in_before_ : in_now_;
    const auto at = marks.find(entity);
    return (&drawing == &before_ || &drawing == &now_) && at != marks.end() ? at->second : change::none;
}

} // namespace picture
