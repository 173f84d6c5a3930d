#include "host/dxf/record_repair.h"

#include "base/case_fold.h"
#include "base/utf.h"
#include "host/dxf/double_handles.h"
#include "host/dxf/handle_text.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace dxf {

namespace {

constexpr int first_with_handles = 1012; // R13: handles, block records

std::wstring wide_handle(std::uint64_t handle) {
    return base::widen(handle_text(handle));
}

constexpr group_place head = {"\n"}; // before the first class, since no class is called so
constexpr group_place layout_place = {"AcDbLayout"};

class record_mender {
public:
    record_mender(record_table& records, drawing_parts& parts, const drawing_damage& damage,
                  const drawing_manner& manner, placed_repairs& repairs, file_places& places)
        : records_(records), parts_(parts), damage_(damage), manner_(manner), repairs_(repairs),
          places_(places) {}

    void run() {
        for (const drawing_damage::missing_end& end : damage_.ends)
            places_.emplace(end.id, end.at);
        put_in_order();
        write_ends();
        mend_handles();
        if (modern() && (blocks_ = block_table()) != no_record) {
            remember_blocks();
            mend_layouts();
            mend_blocks();
        }
        if (highest_given_ != 0)
            mend_seed();
    }

private:
    // ---- writing

    class text {
    public:
        explicit text(const group_style& style) : style_(style) {}
        text& add(int code, std::string_view value) {
            append_group(bytes_, style_, code, value);
            return *this;
        }
        text& handle(int code, std::uint64_t handle) { return add(code, handle_text(handle)); }
        const std::string& bytes() const { return bytes_; }

    private:
        const group_style& style_;
        std::string bytes_;
    };

    text begin(std::string_view type) const {
        text made(manner_.style);
        made.add(0, type);
        return made;
    }

    // A part that follows no entity. Where it stands it does no harm; behind another entity it would be that
    // one's.
    bool is_orphan(record_id id) const {
        const std::uint32_t type = records_.type(id);
        return records_.kind(id) == record_kind::entity &&
               (type == type_vertex || type == type_attrib || type == type_seqend);
    }

    bool modern() const { return manner_.version >= first_with_handles; }

    // Where a record stands in the file, also when its text is another one by now.
    const char* place(record_id id) const { return place_of(id, records_, places_); }
    void tell(record_id at, repair_kind kind, std::wstring what, std::wstring done) {
        repairs_.push_back({place(at), kind, std::move(what), std::move(done)});
    }
    std::wstring type_of(record_id id) const { return base::widen(records_.type_name(id)); }

    void rewrite(record_id id, std::string_view bytes) {
        places_.try_emplace(id, records_.text(id).data());
        records_.rewrite(id, bytes);
    }
    void rewrite(record_id id, const group_list& groups) { rewrite(id, groups.write(manner_.style)); }

    // A record that the file does not have, behind another.
    record_id insert(record_id previous, record_kind kind, std::uint32_t type, std::string_view bytes) {
        const record_id id = records_.append_own({}, kind, type);
        records_.unlink_behind(parts_.end_of_file); // it was the last one before
        records_.link_behind(previous, id);
        places_.emplace(id, place(previous));
        records_.rewrite(id, bytes);
        return id;
    }

    std::uint64_t give(std::uint64_t handle) {
        highest_given_ = std::max(highest_given_, handle);
        return handle;
    }
    std::uint64_t new_handle() {
        const std::uint64_t handle = give(records_.new_handle());
        first_new_ = first_new_ == 0 ? handle : first_new_;
        return handle;
    }
    // A handle that is named where nothing is, if it can be given; else a new one.
    std::uint64_t named_or_new_handle(std::uint64_t named) {
        const bool is_free = named != 0 && named < absurd_handle && records_.find(named) == no_record;
        return is_free ? give(named) : new_handle();
    }

    // The last record of a container before the one that ends it.
    record_id last_in(record_id container, std::uint32_t closing) const {
        record_id last = container;
        for (record_id next = records_.next(last); next != no_record && records_.type(next) != closing;
             next = records_.next(last))
            last = next;
        return last;
    }

    // ---- ends

    void write_ends();
    void drop_half_point(record_id last);
    void drop_beginning(record_id last);
    std::ptrdiff_t markers_in(record_id id) const {
        const group_list list(records_.text(id));
        return std::count_if(list.groups().begin(), list.groups().end(),
                             [](const group& one) { return one.code == 100; });
    }
    void put_in_order();
    record_id section_of_entities();

    // ---- handles

    void mend_handles();
    void give_handle(record_id id, std::uint64_t handle);
    void mend_seed();

    // ---- blocks

    record_id block_table() const;
    void mend_layouts();
    void mend_blocks();
    void remember_blocks();
    void add_record_of(record_id block);
    record_id record_of_block(record_id block) const;
    record_id add_block_record(std::string_view name, std::uint64_t handle, std::uint64_t layout);
    void add_block(record_id record);
    std::wstring folded_name(record_id record) const {
        return base::folded(manner_.codec.decode(value_of(records_.text(record), 2)));
    }

    record_table& records_;
    drawing_parts& parts_;
    const drawing_damage& damage_;
    const drawing_manner& manner_;
    placed_repairs& repairs_;
    file_places& places_;
    bool has_handles_ = false; // whether the drawing is one whose records have handles
    std::uint64_t first_new_ = 0;
    std::uint64_t highest_given_ = 0;
    record_id blocks_ = no_record;
    std::unordered_map<std::string_view, record_id> by_bytes_; // block records by their names as they stand
    std::unordered_map<std::wstring, record_id> by_name_;      // and without case
};

// ---- ends

// What stands in the wrong place goes to the end of the section that it belongs to.
void record_mender::put_in_order() {
    if (damage_.outside.empty() && damage_.repeated.empty() && damage_.needless_ends.empty())
        return;
    const auto set_of = [](const std::vector<record_id>& ids) {
        return std::unordered_set<record_id>(ids.begin(), ids.end());
    };
    const auto outside = set_of(damage_.outside);
    const auto repeated = set_of(damage_.repeated);
    const auto needless = set_of(damage_.needless_ends);
    std::vector<std::pair<record_id, record_id>> moved; // and the sections where they go
    record_id first = no_record; // section of the kind of the one that is passed, when that is a repeated one
    for (record_id id = 0; records_.next(id) != no_record;) {
        const record_id next = records_.next(id);
        if (repeated.contains(next)) {
            const std::string_view name = value_of(records_.text(next), 2);
            first = name == "BLOCKS" ? parts_.blocks : name == "ENTITIES" ? parts_.entities : parts_.objects;
            tell(next, repair_kind::repeated_section, L"another " + base::widen(name) + L" section",
                 L"what it holds is put at the end of the first one");
        } else if (needless.contains(next)) {
            tell(next, repair_kind::needless_end, L"an ENDSEC ends no section", L"left out");
        } else if (first != no_record && records_.type(next) == type_endsec) {
            first = no_record;
        } else if ((first != no_record || outside.contains(next)) && is_orphan(next)) {
            tell(next, repair_kind::outside_of_sections, L"a " + type_of(next) + L" belongs to no entity",
                 L"left out");
        } else if (first != no_record) {
            moved.emplace_back(next, first);
        } else if (outside.contains(next)) {
            tell(next, repair_kind::outside_of_sections, L"a " + type_of(next) + L" stands in no section",
                 L"put at the end of the ENTITIES section");
            moved.emplace_back(next, section_of_entities());
        } else {
            id = next;
            continue;
        }
        records_.unlink_behind(id);
    }
    std::unordered_map<record_id, record_id> lasts;
    for (const auto& [id, section] : moved) {
        record_id& last = lasts.try_emplace(section, no_record).first->second;
        if (last == no_record)
            last = last_in(section, type_endsec);
        records_.link_behind(last, id);
        last = id;
    }
}

// The ENTITIES section; an empty one at the end when there is none.
record_id record_mender::section_of_entities() {
    if (parts_.entities != no_record)
        return parts_.entities;
    record_id last = 0;
    while (records_.next(last) != parts_.end_of_file)
        last = records_.next(last);
    parts_.entities =
        insert(last, record_kind::structure, type_section, begin("SECTION").add(2, "ENTITIES").bytes());
    insert(parts_.entities, record_kind::structure, type_endsec, begin("ENDSEC").bytes());
    return parts_.entities;
}

// The records that the index put in for missing ends get their text.
void record_mender::write_ends() {
    if (damage_.open_line) { // a blank one that is open says nothing
        const std::string_view lines = records_.text(damage_.last);
        const std::size_t whole = lines.rfind('\n') + 1;
        const group_list groups(lines);
        const bool is_more = !groups.empty() && groups.groups().back().value.find('\n') != lines.npos;
        rewrite(damage_.last, is_more && is_blank(lines.substr(whole))
                                  ? std::string(lines.substr(0, whole))
                                  : std::string(lines) + std::string(manner_.style.line_end));
    }
    if (damage_.last != no_record) {
        drop_half_point(damage_.last);
        drop_beginning(damage_.last);
    }
    for (const drawing_damage::missing_end& end : damage_.ends) {
        const std::uint32_t type = records_.type(end.id);
        text made = begin(records_.type_name(end.id));
        std::wstring what =
            L"the end of a " + (end.of == no_record ? std::wstring() : type_of(end.of)) + L" is missing";
        if (type == type_endblk || type == type_seqend) {
            if (records_.handle(end.of) != 0)
                made.handle(5, new_handle());
            if (modern()) {
                const std::uint64_t owner =
                    type == type_seqend ? records_.handle(end.of) : records_.owner_handle(end.of);
                if (owner != 0)
                    made.handle(330, owner);
                made.add(100, "AcDbEntity");
            }
            const std::string_view layer = records_.layer_names()[records_.layer(end.of)];
            made.add(8, layer.empty() ? "0" : layer);
            if (modern() && type == type_endblk)
                made.add(100, "AcDbBlockEnd");
        } else if (type == type_eof) {
            what = L"the end of the file is missing";
        }
        records_.rewrite(end.id, made.bytes());
        tell(end.id, repair_kind::missing_end, std::move(what), type_of(end.id) + L" added");
    }
}

// A point of which the file's end left nothing but its first coordinate is none.
void record_mender::drop_half_point(record_id last) {
    group_list groups(records_.text(last));
    const auto in = [code = groups.empty() ? 0 : groups.groups().back().code](int first, int end) {
        return code >= first && code <= end;
    };
    if (!in(10, 18) && !in(110, 112) && !in(210, 219) && !in(1010, 1013))
        return;
    groups.splice(groups.groups().size() - 1, groups.groups().size(), {});
    rewrite(last, groups);
    tell(last, repair_kind::cut_end, L"the file ends inside of a point of this " + type_of(last),
         L"the point is left out");
}

// An entity of which the file's end left nothing but what all entities have is none.
void record_mender::drop_beginning(record_id last) {
    const record_kind kind = records_.kind(last);
    if (!modern() || (kind != record_kind::entity && kind != record_kind::part) ||
        records_.type(last) == type_seqend || markers_in(last) > 1)
        return;
    record_id previous = 0;
    while (previous != no_record && records_.next(previous) != last)
        previous = records_.next(previous);
    if (previous == no_record) // it stood in the wrong place and is out already
        return;
    if (markers_in(previous) < 2 && records_.kind(previous) == kind) // it is the manner of the file
        return;
    tell(last, repair_kind::cut_end, L"the file ends inside of this " + type_of(last), L"it is left out");
    records_.unlink_behind(previous);
}

// ---- handles

void record_mender::give_handle(record_id id, std::uint64_t handle) {
    const int code = records_.type(id) == type_dimstyle ? 105 : 5;
    group_list groups(records_.text(id));
    groups.set_text(head, code, handle_text(handle));
    rewrite(id, groups);
}

void record_mender::mend_handles() {
    const std::vector<record_id> doubles = records_.doubles();
    const std::vector<reference_to_double> references = references_to(doubles, records_);
    std::unordered_map<record_id, std::size_t> following;
    for (const reference_to_double& one : references)
        ++following[one.meant];
    for (const record_id id : doubles) {
        const std::uint64_t before = records_.handle(id);
        const std::uint64_t handle = new_handle();
        tell(id, repair_kind::duplicate_handle,
             L"duplicate handle " + wide_handle(before) + L" of a " + type_of(id),
             L"given the handle " + wide_handle(handle) +
                 (following.contains(id)
                      ? L", also in " + std::to_wstring(following[id]) + L" groups that mean it"
                      : std::wstring()));
        give_handle(id, handle);
    }
    for (auto at = references.begin(); at != references.end();) {
        const record_id holder = at->holder;
        group_list groups(records_.text(holder));
        for (; at != references.end() && at->holder == holder; ++at) {
            const group_list::fresh_group fresh[] = {
                {groups.groups()[at->group].code, handle_text(records_.handle(at->meant))}};
            groups.splice(at->group, at->group + 1, fresh);
        }
        rewrite(holder, groups);
    }

    std::vector<record_id> without = damage_.empty_handles;
    std::erase_if(without, [&](record_id id) { return records_.handle(id) != 0; });
    if (modern()) {
        const std::unordered_set<record_id> known(without.begin(), without.end());
        std::vector<record_id> missing;
        std::size_t with = known.size();
        for (record_id id = 0; id < records_.size(); ++id) {
            const record_kind kind = records_.kind(id);
            if (kind == record_kind::structure || kind == record_kind::header)
                continue;
            if (records_.handle(id) != 0)
                ++with;
            else if (!known.contains(id))
                missing.push_back(id);
        }
        has_handles_ = with > missing.size();
        if (has_handles_) // else it is the manner of the file to have none
            without.insert(without.end(), missing.begin(), missing.end());
    }
    for (const record_id id : without) {
        const std::uint64_t handle = new_handle();
        tell(id, repair_kind::missing_handle, L"a " + type_of(id) + L" has no handle",
             L"given the handle " + wide_handle(handle));
        give_handle(id, handle);
    }
}

// New handles are above the seed, so the seed must follow.
void record_mender::mend_seed() {
    if (parts_.header == no_record)
        return;
    group_list header(records_.text(parts_.header));
    const auto& groups = header.groups();
    for (std::size_t i = 0; i + 1 < groups.size(); ++i) {
        if (groups[i].code != 9 || trimmed(groups[i].value) != "$HANDSEED" || groups[i + 1].code == 9)
            continue;
        const std::uint64_t seed = parse_handle(groups[i + 1].value);
        if (seed > highest_given_)
            return;
        const std::uint64_t next = records_.new_handle();
        const group_list::fresh_group fresh[] = {{groups[i + 1].code, handle_text(next)}};
        // The first new handle is the seed itself, unless others were above it.
        if (first_new_ != seed)
            repairs_.push_back({groups[i + 1].source.data(), repair_kind::low_handle_seed,
                                L"$HANDSEED is " + wide_handle(seed) + L", not above the handles",
                                L"raised to " + wide_handle(next)});
        header.splice(i + 1, i + 2, fresh);
        rewrite(parts_.header, header);
        return;
    }
}

// ---- blocks

record_id record_mender::block_table() const {
    for (const record_id table : parts_.table_heads)
        if (value_of(records_.text(table), 2) == "BLOCK_RECORD")
            return table;
    return no_record;
}

void record_mender::remember_blocks() {
    by_bytes_.clear();
    by_name_.clear();
    for (record_id id = records_.next(blocks_); id != no_record && records_.kind(id) == record_kind::entry;
         id = records_.next(id)) {
        by_bytes_.try_emplace(value_of(records_.text(id), 2), id);
        by_name_.try_emplace(folded_name(id), id);
    }
}

record_id record_mender::record_of_block(record_id block) const {
    const record_id owner = records_.find(records_.owner_handle(block));
    if (owner != no_record && records_.type(owner) == type_block_record)
        return owner;
    const auto same = by_bytes_.find(value_of(records_.text(block), 2));
    if (same != by_bytes_.end())
        return same->second;
    const auto alike = by_name_.find(folded_name(block));
    return alike == by_name_.end() ? no_record : alike->second;
}

record_id record_mender::add_block_record(std::string_view name, std::uint64_t handle, std::uint64_t layout) {
    constexpr int first_with_units = 1021;
    text made = begin("BLOCK_RECORD");
    if (has_handles_)
        made.handle(5, handle);
    if (records_.handle(blocks_) != 0)
        made.handle(330, records_.handle(blocks_));
    made.add(100, "AcDbSymbolTableRecord").add(100, "AcDbBlockTableRecord").add(2, name).handle(340, layout);
    if (manner_.version >= first_with_units)
        made.add(70, "0").add(280, "1").add(281, "0");
    const record_id id =
        insert(last_in(blocks_, type_endtab), record_kind::entry, type_block_record, made.bytes());
    by_bytes_.try_emplace(value_of(records_.text(id), 2), id);
    by_name_.try_emplace(folded_name(id), id);
    return id;
}

// A sheet whose block is not there gets an empty one, by the handle that it names when that is free.
void record_mender::mend_layouts() {
    const record_id objects = parts_.objects;
    if (objects == no_record)
        return;
    for (record_id id = records_.next(objects); id != no_record && records_.type(id) != type_endsec;
         id = records_.next(id)) {
        if (records_.type(id) != type_layout)
            continue;
        group_list groups(records_.text(id));
        if (std::none_of(groups.groups().begin(), groups.groups().end(), [](const group& one) {
                return one.code == 100 && trimmed(one.value) == layout_place.marker;
            }))
            continue;
        const std::uint64_t named = groups.handle(layout_place, 330);
        const record_id block = records_.find(named);
        if (block != no_record && records_.type(block) == type_block_record)
            continue;
        std::string name = "*Paper_Space";
        for (int i = -1; by_name_.contains(base::folded(base::widen(name)));)
            name = "*Paper_Space" + std::to_string(++i);
        const std::uint64_t handle = named_or_new_handle(named);
        tell(id, repair_kind::layout_without_block,
             L"the block of the layout " +
                 manner_.codec.decode(trimmed(groups.text(layout_place, 1).value_or(""))) + L" is missing",
             L"an empty " + base::widen(name) + L" added");
        add_block(add_block_record(name, handle, records_.handle(id)));
        if (handle != named) {
            groups.set_text(layout_place, 330, handle_text(handle));
            rewrite(id, groups);
        }
    }
}

void record_mender::mend_blocks() {
    std::unordered_set<std::wstring> named; // blocks, by their names without case
    const std::vector<record_id> begins = parts_.block_begins;
    for (const record_id block : begins) {
        named.insert(folded_name(block));
        const record_id record = record_of_block(block);
        if (record != no_record)
            named.insert(folded_name(record));
        else if (!folded_name(block).empty())
            add_record_of(block);
    }
    for (record_id id = records_.next(blocks_); id != no_record && records_.kind(id) == record_kind::entry;
         id = records_.next(id))
        if (const std::wstring name = folded_name(id); !name.empty() && named.insert(name).second) {
            tell(id, repair_kind::record_without_block,
                 L"the block record " + manner_.codec.decode(value_of(records_.text(id), 2)) +
                     L" has no block",
                 L"an empty one added");
            add_block(id);
        }
}

// A record for a block that has none, by the handle that the block names when that is free.
void record_mender::add_record_of(record_id block) {
    const std::string name(value_of(records_.text(block), 2));
    const std::uint64_t named = records_.owner_handle(block);
    const std::uint64_t handle = named_or_new_handle(named);
    tell(block, repair_kind::block_without_record,
         L"the block " + manner_.codec.decode(name) + L" has no block record",
         L"one added with the handle " + wide_handle(handle));
    add_block_record(name, handle, 0);
    // The block and all in it tell whose they are.
    for (record_id id = block; named != 0 && handle != named && id != no_record; id = records_.next(id)) {
        group_list groups(records_.text(id));
        if (groups.handle(head, 330) == named) {
            groups.set_text(head, 330, handle_text(handle));
            rewrite(id, groups);
        }
        if (records_.kind(id) == record_kind::block_end)
            break;
    }
}

// An empty block for a record that has none, at the end of the BLOCKS section.
void record_mender::add_block(record_id record) {
    const std::string name(value_of(records_.text(record), 2));
    if (parts_.blocks == no_record) { // before the entities
        const record_id behind = parts_.entities != no_record ? parts_.entities : parts_.end_of_file;
        record_id previous = 0;
        while (records_.next(previous) != behind)
            previous = records_.next(previous);
        parts_.blocks =
            insert(previous, record_kind::structure, type_section, begin("SECTION").add(2, "BLOCKS").bytes());
        insert(parts_.blocks, record_kind::structure, type_endsec, begin("ENDSEC").bytes());
    }
    const std::wstring folded = base::folded(manner_.codec.decode(name));
    const bool on_paper = folded.starts_with(L"*paper_space");
    const bool anonymous = folded.starts_with(L"*") && !on_paper && folded != L"*model_space";
    const auto entity = [&](std::string_view type) {
        text made = begin(type);
        if (has_handles_)
            made.handle(5, new_handle());
        if (records_.handle(record) != 0)
            made.handle(330, records_.handle(record));
        made.add(100, "AcDbEntity");
        if (on_paper)
            made.add(67, "1");
        made.add(8, "0");
        return made;
    };
    text block = entity("BLOCK");
    block.add(100, "AcDbBlockBegin").add(2, name).add(70, anonymous ? "1" : "0");
    block.add(10, "0.0").add(20, "0.0").add(30, "0.0").add(3, name).add(1, "");
    const record_id added =
        insert(last_in(parts_.blocks, type_endsec), record_kind::block, type_block, block.bytes());
    insert(added, record_kind::block_end, type_endblk, entity("ENDBLK").add(100, "AcDbBlockEnd").bytes());
    parts_.block_begins.push_back(added);
}

} // namespace

void repair_records(record_table& records, drawing_parts& parts, const drawing_damage& damage,
                    const drawing_manner& manner, placed_repairs& repairs, file_places& places) {
    record_mender(records, parts, damage, manner, repairs, places).run();
}

} // namespace dxf
