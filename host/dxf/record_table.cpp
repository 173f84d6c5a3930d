#include "host/dxf/record_table.h"

#include "host/dxf/common_groups.h"
#include "host/dxf/record_header.h"
#include "host/dxf/type_name.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

namespace dxf {

namespace {

constexpr std::string_view known_type_names[known_types] = {
    "",           "SECTION",  "ENDSEC",       "TABLE",      "ENDTAB",  "EOF",    "CLASS",
    "BLOCK",      "ENDBLK",   "BLOCK_RECORD", "LAYER",      "LTYPE",   "STYLE",  "VIEW",
    "UCS",        "VPORT",    "APPID",        "DIMSTYLE",   "VERTEX",  "ATTRIB", "SEQEND",
    "INSERT",     "POLYLINE", "VIEWPORT",     "DICTIONARY", "XRECORD", "LAYOUT", "LINE",
    "LWPOLYLINE", "CIRCLE",   "ARC",          "POINT",      "TEXT"};

// Handles are mostly dense: a plain table serves until it would be this many times larger than the records.
constexpr std::uint64_t sparse = 8;

// Without the space.
record_header header_of(padded_text text, record_kind kind) {
    return stands_on_layer(kind) ? read_entity_header(text, false) : read_record_header(text);
}

} // namespace

record_table::record_table() {
    for (const std::string_view name : known_type_names)
        type_names_.put(name);
    layer_names_.put({}); // number 0: no layer
    put_owner(0);         // number 0: no owner
}

void record_table::reserve(std::size_t records) {
    texts_.reserve(records);
    lengths_.reserve(records);
    kinds_.reserve(records);
    marks_.reserve(records);
    types_.reserve(records);
    layers_.reserve(records);
    owners_.reserve(records);
    next_.reserve(records);
    handles_.reserve(records);
}

std::uint32_t record_table::put_owner(std::uint64_t handle) {
    if (last_owner_ < owners_seen_.size() && owners_seen_[last_owner_] == handle)
        return last_owner_;
    const auto [at, added] =
        owner_numbers_.try_emplace(handle, static_cast<std::uint32_t>(owners_seen_.size()));
    if (added)
        owners_seen_.push_back(handle);
    return last_owner_ = at->second;
}

record_id record_table::append(padded_text text, record_kind kind, std::uint32_t type) {
    const record_id id = size();
    texts_.push_back(text.data());
    lengths_.push_back(static_cast<std::uint32_t>(text.size()));
    kinds_.push_back(kind);
    marks_.push_back(0);
    types_.push_back(type);
    layers_.push_back(0);
    owners_.push_back(0);
    next_.push_back(no_record);
    handles_.push_back(0);
    if (last_ != no_record)
        next_[last_] = id;
    last_ = id;
    return id;
}

record_id record_table::append_own(std::string_view text, record_kind kind, std::uint32_t type) {
    return append(arena_.keep(text), kind, type);
}

record_id record_table::append_implied(std::string_view text, std::uint32_t type) {
    const record_id id = append_own(text, record_kind::implied, type);
    set_handle(id, new_handle());
    return id;
}

void record_table::rewrite(record_id id, std::string_view text) {
    const padded_text kept = arena_.keep(text);
    texts_[id] = kept.data();
    lengths_[id] = static_cast<std::uint32_t>(kept.size());
    if (kinds_[id] == record_kind::structure || kinds_[id] == record_kind::header)
        return;
    const record_header header = header_of(kept, kinds_[id]);
    if (header.handle != handles_[id])
        set_handle(id, header.handle);
    if (stands_on_layer(kinds_[id]))
        layers_[id] = put_layer(header.layer);
    if (header.owner != 0)
        owners_[id] = put_owner(header.owner);
}

void record_table::unlink_behind(record_id previous) {
    const record_id id = next_[previous];
    next_[previous] = next_[id];
    next_[id] = no_record;
    if (last_ == id)
        last_ = previous;
}

void record_table::link_behind(record_id previous, record_id id) {
    next_[id] = next_[previous];
    next_[previous] = id;
    if (last_ == previous)
        last_ = id;
}

void record_table::set_handle(record_id id, std::uint64_t handle) {
    handles_[id] = handle;
    highest_handle_ = std::max(highest_handle_, handle);
    if (handle < absurd_handle)
        last_given_ = std::max(last_given_, handle);
    handles_indexed_ = false;
}

// The first of doubles stays.
void record_table::index_handles() const {
    by_handle_.clear();
    by_far_handle_.clear();
    doubles_.clear();
    const bool dense = highest_handle_ / sparse <= size();
    if (dense)
        by_handle_.assign(static_cast<std::size_t>(highest_handle_) + 1, no_record);
    for (record_id id = 0; id < size(); ++id) {
        if (handles_[id] == 0)
            continue;
        record_id& first = dense ? by_handle_[static_cast<std::size_t>(handles_[id])]
                                 : by_far_handle_.try_emplace(handles_[id], no_record).first->second;
        if (first == no_record)
            first = id;
        else
            doubles_.push_back(id);
    }
    handles_indexed_ = true;
}

record_id record_table::find(std::uint64_t handle) const {
    if (handle == 0)
        return no_record;
    if (!handles_indexed_)
        index_handles();
    if (handle < by_handle_.size())
        return by_handle_[static_cast<std::size_t>(handle)];
    const auto at = by_far_handle_.find(handle);
    return at == by_far_handle_.end() ? no_record : at->second;
}

const std::vector<record_id>& record_table::doubles() const {
    if (!handles_indexed_)
        index_handles();
    return doubles_;
}

record_content record_table::content(record_id id) const {
    return {texts_[id], lengths_[id], types_[id], layers_[id], owners_[id], gone(id), implied(id)};
}

void record_table::put(record_id id, const record_content& content) {
    journal_.push_back(id);
    texts_[id] = content.text;
    lengths_[id] = content.length;
    types_[id] = content.type;
    layers_[id] = content.layer;
    owners_[id] = content.owner;
    marks_[id] =
        static_cast<std::uint8_t>((marks_[id] & (noted_mark | saved_mark)) | (content.gone ? gone_mark : 0) |
                                  (content.implied ? implied_mark : 0));
}

record_table::saved_state record_table::state(record_id id) const {
    return {texts_[id], lengths_[id], id, gone(id), implied(id)};
}

// Keeps what a record is before it changes: for undo, and to know what differs from the file.
void record_table::note(record_id id, bool appended) {
    if (!open_) {
        steps_.resize(done_); // what was undone can not be given again after a new change
        steps_.push_back({std::move(next_name_), {}});
        next_name_.clear();
        ++done_;
        open_ = true;
        for (const record_id before : noted_)
            marks_[before] &= static_cast<std::uint8_t>(~noted_mark);
        noted_.clear();
    }
    // A step goes back to what was before it, not to what it passed through.
    if ((marks_[id] & noted_mark) == 0) {
        noted_.push_back(id);
        steps_.back().changes.emplace_back(content(id), id, appended);
    }
    if (!parts_.empty() && parts_.back().noted.insert(id).second)
        parts_.back().changes.emplace_back(content(id), id, appended);
    if ((marks_[id] & saved_mark) == 0)
        saved_.push_back(state(id));
    marks_[id] |= noted_mark | saved_mark;
}

bool record_table::replace(record_id id, std::string_view text) {
    if (this->text(id) == text)
        return false;
    const padded_text kept = arena_.keep(text);
    const record_header header = header_of(kept, kinds_[id]);
    note(id);
    record_content changed = content(id);
    changed.type = put_type(type_name_of(header.type));
    if (stands_on_layer(kinds_[id]))
        changed.layer = put_layer(header.layer);
    if (header.owner != 0 && kinds_[id] != record_kind::part)
        changed.owner = put_owner(header.owner);
    put_text(id, changed, kept);
    return true;
}

void record_table::replace_look(record_id id, std::string_view text, std::optional<std::string_view> layer) {
    note(id);
    record_content changed = content(id);
    const padded_text kept = arena_.keep(text);
    if (layer) // its name stays as long as the text that it stands in
        changed.layer = put_layer(kept.substr(kept.find(*layer), layer->size()));
    put_text(id, changed, kept);
}

void record_table::put_text(record_id id, record_content& changed, std::string_view kept) {
    changed.text = kept.data();
    changed.length = static_cast<std::uint32_t>(kept.size());
    changed.implied = false;
    put(id, changed);
}

record_id record_table::place_behind(record_id previous, padded_text kept, record_kind kind,
                                     std::uint32_t type) {
    const record_id last = std::exchange(last_, no_record);
    const record_id id = append(kept, kind, type);
    if (last != previous)
        last_ = last;
    next_[id] = next_[previous];
    next_[previous] = id;
    return id;
}

// Of a record that is added to those that are indexed: one more entry rather than a new index for each.
void record_table::give_handle(record_id id, std::uint64_t handle) {
    const bool indexed = handles_indexed_;
    set_handle(id, handle);
    if (!indexed)
        return;
    // New handles mostly follow the highest one.
    if (handle >= by_handle_.size() && !by_handle_.empty() && by_far_handle_.empty() &&
        handle / sparse <= size())
        by_handle_.resize(static_cast<std::size_t>(handle) + 1, no_record);
    if (handle < by_handle_.size())
        by_handle_[static_cast<std::size_t>(handle)] = id;
    else
        by_far_handle_[handle] = id;
    handles_indexed_ = true;
}

record_id record_table::make_behind(record_id previous, std::string_view text, record_kind kind) {
    const padded_text kept = arena_.keep(text);
    const record_header header = header_of(kept, kind);
    const record_id id = place_behind(previous, kept, kind, put_type(type_name_of(header.type)));
    if (kind != record_kind::structure && kind != record_kind::header)
        give_handle(id, header.handle != 0 ? header.handle : new_handle());
    owners_[id] = put_owner(header.owner);
    return id;
}

record_id record_table::add_behind(record_id previous, std::string_view text, record_kind kind,
                                   std::uint64_t owner) {
    const padded_text kept = arena_.keep(text);
    const record_header header = header_of(kept, kind);
    const record_id id = place_behind(previous, kept, kind, put_type(type_name_of(header.type)));
    if (stands_on_layer(kind))
        layers_[id] = put_layer(header.layer);
    owners_[id] = put_owner(owner);
    if (kind != record_kind::structure)
        give_handle(id, header.handle != 0 ? header.handle : new_handle());
    return id;
}

record_id record_table::insert_after(record_id previous, std::string_view text, record_kind kind,
                                     std::uint64_t owner) {
    const record_id id = add_behind(previous, text, kind, owner);
    note_insertion(id);
    return id;
}

record_id record_table::insert_like(record_id previous, std::string_view text, std::uint64_t handle) {
    const record_id id = place_behind(previous, arena_.keep(text), kinds_[previous], types_[previous]);
    layers_[id] = layers_[previous];
    owners_[id] = owners_[previous];
    give_handle(id, handle);
    note_insertion(id);
    return id;
}

void record_table::note_insertion(record_id id) {
    marks_[id] = gone_mark;
    note(id, true);
    marks_[id] ^= gone_mark;
    journal_.push_back(id);
}

record_id record_table::insert_implied(record_id previous, std::string_view text, record_kind kind,
                                       std::uint64_t owner) {
    const record_id id = add_behind(previous, text, kind, owner);
    marks_[id] = implied_mark;
    return id;
}

void record_table::imply(record_id id, std::string_view text) {
    if (this->text(id) == text)
        return;
    kept_.try_emplace(id, this->text(id));
    record_content seen = content(id);
    const padded_text kept = arena_.keep(text);
    seen.text = kept.data();
    seen.length = static_cast<std::uint32_t>(kept.size());
    seen.implied = true;
    put(id, seen);
}

bool record_table::settle(record_id id) {
    if (!implied(id))
        return false;
    note(id);
    record_content settled = content(id);
    settled.implied = false;
    put(id, settled);
    return true;
}

bool record_table::leaves_out(record_id id) const {
    return gone(id) || kind(id) == record_kind::implied || (implied(id) && !kept_.contains(id));
}

padded_text record_table::text_to_save(record_id id) const {
    const auto kept = implied(id) ? kept_.find(id) : kept_.end();
    return kept == kept_.end() ? text(id) : kept->second;
}

bool record_table::set_gone(record_id id, bool gone) {
    if (this->gone(id) == gone)
        return false;
    note(id);
    marks_[id] = static_cast<std::uint8_t>(marks_[id] ^ gone_mark);
    journal_.push_back(id);
    return true;
}

void record_table::begin_step(std::string name) {
    open_ = false;
    next_name_ = std::move(name);
}

void record_table::exchange(change& entry, std::vector<replay>& replayed) {
    const record_content now = content(entry.id);
    put(entry.id, entry);
    replayed.push_back({entry.id, entry.appended, now.gone, now.text != entry.text});
    static_cast<record_content&>(entry) = now;
}

std::string record_table::undo(std::vector<replay>& replayed) {
    open_ = false;
    if (done_ == 0)
        return {};
    step& last = steps_[--done_];
    for (auto at = last.changes.rbegin(); at != last.changes.rend(); ++at)
        exchange(*at, replayed);
    return last.name;
}

std::string record_table::redo(std::vector<replay>& replayed) {
    open_ = false;
    if (done_ == steps_.size())
        return {};
    step& next = steps_[done_++];
    for (change& entry : next.changes)
        exchange(entry, replayed);
    return next.name;
}

namespace {

std::vector<record_id> ids_of(const std::vector<replay>& replayed, std::vector<record_id> in_front) {
    for (const replay& one : replayed)
        in_front.push_back(one.id);
    return in_front;
}

} // namespace

std::string record_table::undo(std::vector<record_id>& touched) {
    std::vector<replay> replayed;
    std::string name = undo(replayed);
    touched = ids_of(replayed, std::move(touched));
    return name;
}

std::string record_table::redo(std::vector<record_id>& touched) {
    std::vector<replay> replayed;
    std::string name = redo(replayed);
    touched = ids_of(replayed, std::move(touched));
    return name;
}

void record_table::begin_part() {
    parts_.push_back(
        {{}, {}, open_, open_ ? done_ : done_ + 1, open_ ? steps_.back().changes.size() : 0, next_name_});
}

void record_table::keep_part() {
    part kept = std::move(parts_.back());
    parts_.pop_back();
    if (parts_.empty())
        return;
    part& outer = parts_.back();
    for (change& entry : kept.changes)
        if (outer.noted.insert(entry.id).second)
            outer.changes.push_back(entry);
}

void record_table::take_back_part(std::vector<replay>& replayed) {
    part taken = std::move(parts_.back());
    parts_.pop_back();
    for (auto at = taken.changes.rbegin(); at != taken.changes.rend(); ++at)
        exchange(*at, replayed);
    if (taken.changes.empty() || !open_ || done_ != taken.step)
        return;
    // What was first changed in the part is no change of the step any more.
    std::deque<change>& changes = steps_.back().changes;
    const std::size_t before = taken.open ? taken.step_size : 0;
    while (changes.size() > before) {
        marks_[changes.back().id] &= static_cast<std::uint8_t>(~noted_mark);
        noted_.pop_back();
        changes.pop_back();
    }
    if (!taken.open) {
        steps_.pop_back();
        --done_;
        open_ = false;
        next_name_ = taken.next_name;
    }
}

void record_table::mark_saved() {
    for (saved_state& saved : saved_)
        saved = state(saved.id);
}

std::size_t record_table::unsaved() const {
    return static_cast<std::size_t>(std::ranges::count_if(saved_, [&](const saved_state& saved) {
        return gone(saved.id) ? !saved.gone
                              : saved.gone || saved.implied != implied(saved.id) ||
                                    std::string_view(saved.text, saved.length) != text(saved.id);
    }));
}

} // namespace dxf
