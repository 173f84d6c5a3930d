// The records of a drawing: every run of groups that begins with a group 0, in columns, with what is asked of
// all of them (type, layer, owner, handle) indexed, and the history of their changes.
//
// A record's text is looked on where it lies: in the file's bytes, or in the arena of texts written anew.
// Texts never change or move, so a change is a new text put in the old one's place, and undo puts the old one
// back: what was undone is the original bytes again. The order of the file is kept as a chain; ids are in the
// order of creation, so a higher id is a newer record.
#pragma once

#include "adesk.h"
#include "host/dxf/names.h"
#include "host/dxf/text_arena.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace dxf {

using record_id = std::uint32_t;
inline constexpr record_id no_record = 0xFFFFFFFFu;

// A handle from here on is no number that counting has reached: new ones are counted below.
inline constexpr std::uint64_t absurd_handle = std::uint64_t(1) << 48;

// What a record is to a drawing.
enum class record_kind : std::uint8_t {
    structure, // SECTION, ENDSEC, ENDTAB, EOF, CLASS, what stands before the first group 0, unknown sections
    header,    // the SECTION record of the header, with all its variables
    table,     // TABLE
    entry,     // a record of a symbol table
    block,     // BLOCK
    block_end, // ENDBLK
    entity,
    part,    // VERTEX, ATTRIB, SEQEND behind the entity that they belong to
    object,  // of the OBJECTS section
    implied, // stands for what the file leaves out, such as model space in old drawings; never saved
};

// Whether group 8 of such a record is its layer.
constexpr bool stands_on_layer(record_kind kind) {
    return kind == record_kind::entity || kind == record_kind::part || kind == record_kind::block ||
           kind == record_kind::block_end;
}

// Types that the index knows by number; others get numbers behind these as they are met.
enum known_type : std::uint32_t {
    type_none,
    type_section,
    type_endsec,
    type_table,
    type_endtab,
    type_eof,
    type_class,
    type_block,
    type_endblk,
    type_block_record,
    type_layer,
    type_ltype,
    type_style,
    type_view,
    type_ucs,
    type_vport,
    type_appid,
    type_dimstyle,
    type_vertex,
    type_attrib,
    type_seqend,
    type_insert,
    type_polyline,
    type_viewport,
    type_dictionary,
    type_xrecord,
    type_layout,
    type_line,
    type_lwpolyline,
    type_circle,
    type_arc,
    type_point,
    type_text,
    known_types
};

// The part of a record that changes; what undo exchanges.
struct record_content {
    const char* text = nullptr;
    std::uint32_t length = 0;
    std::uint32_t type = 0;
    std::uint32_t layer = 0; // number of its layer name's bytes in layer_names()
    std::uint32_t owner = 0; // number of its owner's handle, see owner_handle()
    bool gone = false;       // erased, or its creation undone: not saved, not found
    bool implied = false;    // seen so, and not saved so: see record_table::imply

    padded_text view() const { return padded_text::promised({text, length}); }
};

// What became of a record when a step, or a part of one, was taken back or given again.
struct replay {
    record_id id = no_record;
    bool appended = false; // it came, or went, as what the step had added to the drawing
    bool was_gone = false;
    bool text = false; // it has another text
};

class ACDB_PORT record_table {
public:
    record_table();
    record_table(const record_table&) = delete;
    record_table& operator=(const record_table&) = delete;

    // ---- what stands there

    record_id size() const { return static_cast<record_id>(texts_.size()); }
    bool has(record_id id) const { return id < size(); }
    padded_text text(record_id id) const { return padded_text::promised({texts_[id], lengths_[id]}); }
    record_kind kind(record_id id) const { return kinds_[id]; }
    std::uint32_t type(record_id id) const { return types_[id]; }
    std::string_view type_name(record_id id) const { return type_names_[types_[id]]; }
    std::uint32_t layer(record_id id) const { return layers_[id]; }
    std::uint64_t handle(record_id id) const { return handles_[id]; }
    std::uint64_t owner_handle(record_id id) const { return owners_seen_[owners_[id]]; }
    bool gone(record_id id) const { return (marks_[id] & gone_mark) != 0; }
    bool implied(record_id id) const { return (marks_[id] & implied_mark) != 0; }
    // Whether a file gets nothing of a record; what it gets of the others.
    bool leaves_out(record_id id) const;
    padded_text text_to_save(record_id id) const;
    record_id next(record_id id) const { return next_[id]; }

    const name_set& type_names() const { return type_names_; }
    const name_set& layer_names() const { return layer_names_; }

    // The columns themselves, for scans over all records.
    const std::vector<std::uint32_t>& types() const { return types_; }
    const std::vector<std::uint32_t>& layers() const { return layers_; }

    // The record with a handle, erased ones too; no_record when there is none. Of doubles the first.
    record_id find(std::uint64_t handle) const;
    // The records whose handle one before them has, in the order of the file.
    const std::vector<record_id>& doubles() const;

    // ---- filling, by the reader of a file

    void reserve(std::size_t records);
    std::uint32_t put_type(std::string_view name) { return type_names_.put(name); }
    std::uint32_t put_layer(std::string_view bytes) { return layer_names_.put(bytes); }
    std::uint32_t put_owner(std::uint64_t handle);
    // Appends a record behind the last one of the file's order. The text must stay where it is.
    record_id append(padded_text text, record_kind kind, std::uint32_t type);
    // The same with a text that the file does not hold, which is copied.
    record_id append_own(std::string_view text, record_kind kind, std::uint32_t type);
    // A record that stands for what the file leaves out.
    record_id append_implied(std::string_view text, std::uint32_t type);
    // One behind `previous` that the file lacks; what drawing::ensure_section and its neighbours make. With a
    // handle of its own unless it is a mere part of the structure.
    record_id make_behind(record_id previous, std::string_view text, record_kind kind);
    // Another text, which is copied, as what the file says: no change that could be undone. Handle, owner and
    // layer are read from it.
    void rewrite(record_id id, std::string_view text);
    // Takes the record behind `previous` out of the file's order; and puts one that was taken out or appended
    // behind another.
    void unlink_behind(record_id previous);
    void link_behind(record_id previous, record_id id);
    void extend(record_id id, const char* end) {
        lengths_[id] = static_cast<std::uint32_t>(end - texts_[id]);
    }
    void set_kind(record_id id, record_kind kind) { kinds_[id] = kind; }
    void set_handle(record_id id, std::uint64_t handle);
    void set_layer(record_id id, std::uint32_t layer) { layers_[id] = layer; }
    void set_owner(record_id id, std::uint32_t owner) { owners_[id] = owner; }
    std::uint32_t owner(record_id id) const { return owners_[id]; }
    // A handle that the file does not use; for records that have none there, and for new ones.
    std::uint64_t new_handle() { return last_given_ = std::max(last_given_, handle_floor_) + 1; }
    // New handles come above this one: the file says that those below were given once.
    void set_handle_floor(std::uint64_t handle) { handle_floor_ = handle; }

    // ---- changes; each is noted in the step that is open

    // Puts a new text in a record's place; layer and owner are read from it. False when it is the same text.
    bool replace(record_id id, std::string_view text);
    // The same with a text that differs in common groups alone: in its layer, which is given then, or in what
    // its header is not read from.
    void replace_look(record_id id, std::string_view text, std::optional<std::string_view> layer);
    // A new record behind `previous` in the order of the file. Group 5 of the text is its handle, `owner` the
    // handle of its owner, which old files do not write.
    record_id insert_after(record_id previous, std::string_view text, record_kind kind, std::uint64_t owner);
    // The same behind one that differs from the new one in handle and data alone.
    record_id insert_like(record_id previous, std::string_view text, std::uint64_t handle);
    // Takes a record out, or brings it back. False when it is so already.
    bool set_gone(record_id id, bool gone);
    // Makes what is implied the drawing's own, so that it is saved. False when it is so already.
    bool settle(record_id id);

    // ---- what is seen and not saved, until it is changed or settled; not changes that could be undone

    // A record that the file leaves out, behind `previous`, as insert_after has it.
    record_id insert_implied(record_id previous, std::string_view text, record_kind kind,
                             std::uint64_t owner);
    // Another text in the place of the one that the file keeps. The record must not have been changed yet.
    void imply(record_id id, std::string_view text);

    // ---- history

    // Changes from here on belong to a new step, until the next call. A step without a change is none.
    void begin_step(std::string name);
    // Takes back, or gives again, a whole step. Its name; empty when there is none. `touched` gets the
    // records.
    std::string undo(std::vector<record_id>& touched);
    std::string redo(std::vector<record_id>& touched);
    // The same, with what became of each.
    std::string undo(std::vector<replay>& replayed);
    std::string redo(std::vector<replay>& replayed);
    bool can_redo() const { return done_ != steps_.size(); }
    // How many steps could be taken back.
    std::size_t steps_in_effect() const { return done_; }

    // A part of a step: what changes from begin_part() on is kept as part of what is around it, or taken
    // back. Parts stand in each other.
    void begin_part();
    void keep_part();
    void take_back_part(std::vector<replay>& replayed);

    // Every record that changed, came or went since the file was read, in that order and as often as it did:
    // who keeps something that was made from records remembers how far he has read, and goes on from there.
    const std::vector<record_id>& journal() const { return journal_; }

    // What is there now is what the file holds.
    void mark_saved();
    // How many records differ from what the file holds.
    std::size_t unsaved() const;

private:
    // What a record was, or after undo: what it became. There is one for each record that a step changes, so
    // the order of members is the one that leaves no room between them.
    struct change : record_content {
        change(const record_content& was, record_id record, bool came)
            : record_content(was), appended(came), id(record) {}
        bool appended; // it was not there before
        record_id id;
    };
    // What the file holds of a record.
    struct saved_state {
        const char* text;
        std::uint32_t length;
        record_id id;
        bool gone;
        bool implied;
    };
    struct step {
        std::string name;
        std::deque<change> changes;
    };
    struct part {
        std::deque<change> changes;
        std::unordered_set<record_id> noted;
        bool open = false;         // a step had begun when it began
        std::size_t step = 0;      // the number of that step, or of the one that would begin
        std::size_t step_size = 0; // the changes that it had
        std::string next_name;     // its name, when it had not begun
    };

    enum : std::uint8_t {
        gone_mark = 1,
        implied_mark = 2,
        noted_mark = 4, // by the open step
        saved_mark = 8, // what the file holds of it is in saved_
    };

    record_id add_behind(record_id previous, std::string_view text, record_kind kind, std::uint64_t owner);
    record_content content(record_id id) const;
    void note_insertion(record_id id);
    record_id place_behind(record_id previous, padded_text kept, record_kind kind, std::uint32_t type);
    void give_handle(record_id id, std::uint64_t handle);
    void put(record_id id, const record_content& content);
    void put_text(record_id id, record_content& changed, std::string_view kept);
    saved_state state(record_id id) const;
    void note(record_id id, bool appended = false);
    void index_handles() const;
    void exchange(change& entry, std::vector<replay>& replayed);

    std::vector<const char*> texts_;
    std::vector<std::uint32_t> lengths_;
    std::vector<record_kind> kinds_;
    std::vector<std::uint8_t> marks_;
    std::vector<std::uint32_t> types_;
    std::vector<std::uint32_t> layers_;
    std::vector<std::uint32_t> owners_;
    std::vector<record_id> next_;
    std::vector<std::uint64_t> handles_;
    record_id last_ = no_record; // of the file's order, while it is being filled

    name_set type_names_;
    name_set layer_names_;
    std::vector<std::uint64_t> owners_seen_;
    std::unordered_map<std::uint64_t, std::uint32_t> owner_numbers_;
    std::uint32_t last_owner_ = 0; // runs of one owner are the rule

    std::uint64_t highest_handle_ = 0;
    std::uint64_t last_given_ = 0; // the highest one to which new ones can be added for long
    std::uint64_t handle_floor_ = 0;
    mutable std::vector<record_id> by_handle_; // built when first asked
    mutable std::unordered_map<std::uint64_t, record_id> by_far_handle_;
    mutable std::vector<record_id> doubles_;
    mutable bool handles_indexed_ = false;

    text_arena arena_;
    std::deque<step> steps_;
    std::size_t done_ = 0;         // steps_[0, done_) are in effect
    bool open_ = false;            // the last step in effect takes further changes
    std::vector<record_id> noted_; // by that step, in the order of its changes
    std::string next_name_;
    std::vector<part> parts_;
    std::vector<record_id> journal_;
    std::unordered_map<record_id, padded_text> kept_; // by the file, of implied records that it has
    std::deque<saved_state> saved_;                   // of records that changed since the file was read
};

} // namespace dxf
