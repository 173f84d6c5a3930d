#include "host/dxf/block_repair.h"
#include "host/dxf/releases.h"

#include "base/case_fold.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace dxf {

namespace {

constexpr group_place layout_place = {"AcDbLayout"};

class block_mender {
public:
    explicit block_mender(record_tools& tools) : tools_(tools) {}

    void run() {
        if ((blocks_ = block_table()) == no_record)
            return;
        remember_blocks();
        mend_layouts();
        mend_blocks();
    }

private:
    // A handle that is named where nothing is, if it can be given; else a new one.
    std::uint64_t named_or_new_handle(std::uint64_t named) {
        const bool is_free = named != 0 && named < absurd_handle && tools_.records.find(named) == no_record;
        return is_free ? tools_.give(named) : tools_.new_handle();
    }
    std::wstring folded_name(record_id record) const {
        return base::folded(tools_.manner.codec.decode(value_of(tools_.records.text(record), 2)));
    }
    record_id block_table() const;
    void remember_blocks();
    record_id record_of_block(record_id block) const;
    record_id add_block_record(std::string_view name, std::uint64_t handle, std::uint64_t layout);
    void mend_layouts();
    void mend_blocks();
    void add_record_of(record_id block);
    void add_block(record_id record);

    record_tools& tools_;
    record_id blocks_ = no_record;
    std::unordered_map<std::string_view, record_id> by_bytes_; // block records by their names as they stand
    std::unordered_map<std::wstring, record_id> by_name_;      // and without case
};

record_id block_mender::block_table() const {
    for (const record_id table : tools_.parts.table_heads)
        if (value_of(tools_.records.text(table), 2) == "BLOCK_RECORD")
            return table;
    return no_record;
}

void block_mender::remember_blocks() {
    by_bytes_.clear();
    by_name_.clear();
    for (record_id id = tools_.records.next(blocks_);
         id != no_record && tools_.records.kind(id) == record_kind::entry; id = tools_.records.next(id)) {
        by_bytes_.try_emplace(value_of(tools_.records.text(id), 2), id);
        by_name_.try_emplace(folded_name(id), id);
    }
}

record_id block_mender::record_of_block(record_id block) const {
    const record_id owner = tools_.records.find(tools_.records.owner_handle(block));
    if (owner != no_record && tools_.records.type(owner) == type_block_record)
        return owner;
    const auto same = by_bytes_.find(value_of(tools_.records.text(block), 2));
    if (same != by_bytes_.end())
        return same->second;
    const auto alike = by_name_.find(folded_name(block));
    return alike == by_name_.end() ? no_record : alike->second;
}

record_id block_mender::add_block_record(std::string_view name, std::uint64_t handle, std::uint64_t layout) {
    record_tools::text made = tools_.begin("BLOCK_RECORD");
    if (tools_.has_handles)
        made.handle(5, handle);
    if (tools_.records.handle(blocks_) != 0)
        made.handle(330, tools_.records.handle(blocks_));
    made.add(100, "AcDbSymbolTableRecord").add(100, "AcDbBlockTableRecord").add(2, name).handle(340, layout);
    if (tools_.manner.version >= releases::release_2007)
        made.add(70, "0").add(280, "1").add(281, "0");
    const record_id id = tools_.insert(tools_.last_in(blocks_, type_endtab), record_kind::entry,
                                       type_block_record, made.bytes());
    by_bytes_.try_emplace(value_of(tools_.records.text(id), 2), id);
    by_name_.try_emplace(folded_name(id), id);
    return id;
}

// A sheet whose block is not there gets an empty one, by the handle that it names when that is free.
void block_mender::mend_layouts() {
    const record_id objects = tools_.parts.objects;
    if (objects == no_record)
        return;
    for (record_id id = tools_.records.next(objects);
         id != no_record && tools_.records.type(id) != type_endsec; id = tools_.records.next(id)) {
        if (tools_.records.type(id) != type_layout)
            continue;
        group_list groups(tools_.records.text(id));
        if (std::none_of(groups.groups().begin(), groups.groups().end(), [](const group& one) {
                return one.code == 100 && trimmed(one.value) == layout_place.marker;
            }))
            continue;
        const std::uint64_t named = groups.handle(layout_place, 330);
        const record_id block = tools_.records.find(named);
        if (block != no_record && tools_.records.type(block) == type_block_record)
            continue;
        std::string name = "*Paper_Space";
        for (int i = -1; by_name_.contains(base::folded(base::widen(name)));)
            name = "*Paper_Space" + std::to_string(++i);
        const std::uint64_t handle = named_or_new_handle(named);
        tools_.tell(id, repair_kind::layout_without_block,
                    L"the block of the layout " +
                        tools_.manner.codec.decode(trimmed(groups.text(layout_place, 1).value_or(""))) +
                        L" is missing",
                    L"an empty " + base::widen(name) + L" added");
        add_block(add_block_record(name, handle, tools_.records.handle(id)));
        if (handle != named) {
            groups.set_text(layout_place, 330, handle_text(handle));
            tools_.rewrite(id, groups);
        }
    }
}

void block_mender::mend_blocks() {
    std::unordered_set<std::wstring> named; // blocks, by their names without case
    const std::vector<record_id> begins = tools_.parts.block_begins;
    for (const record_id block : begins) {
        named.insert(folded_name(block));
        const record_id record = record_of_block(block);
        if (record != no_record)
            named.insert(folded_name(record));
        else if (!folded_name(block).empty())
            add_record_of(block);
    }
    for (record_id id = tools_.records.next(blocks_);
         id != no_record && tools_.records.kind(id) == record_kind::entry; id = tools_.records.next(id))
        if (const std::wstring name = folded_name(id); !name.empty() && named.insert(name).second) {
            tools_.tell(id, repair_kind::record_without_block,
                        L"the block record " +
                            tools_.manner.codec.decode(value_of(tools_.records.text(id), 2)) +
                            L" has no block",
                        L"an empty one added");
            add_block(id);
        }
}

// A record for a block that has none, by the handle that the block names when that is free.
void block_mender::add_record_of(record_id block) {
    const std::string name(value_of(tools_.records.text(block), 2));
    const std::uint64_t named = tools_.records.owner_handle(block);
    const std::uint64_t handle = named_or_new_handle(named);
    tools_.tell(block, repair_kind::block_without_record,
                L"the block " + tools_.manner.codec.decode(name) + L" has no block record",
                L"one added with the handle " + wide_handle(handle));
    add_block_record(name, handle, 0);
    // The block and all in it tell whose they are.
    for (record_id id = block; named != 0 && handle != named && id != no_record;
         id = tools_.records.next(id)) {
        group_list groups(tools_.records.text(id));
        if (groups.handle(head_place, 330) == named) {
            groups.set_text(head_place, 330, handle_text(handle));
            tools_.rewrite(id, groups);
        }
        if (tools_.records.kind(id) == record_kind::block_end)
            break;
    }
}

// An empty block for a record that has none, at the end of the BLOCKS section.
void block_mender::add_block(record_id record) {
    const std::string name(value_of(tools_.records.text(record), 2));
    if (tools_.parts.blocks == no_record) { // before the entities
        const record_id behind =
            tools_.parts.entities != no_record ? tools_.parts.entities : tools_.parts.end_of_file;
        record_id previous = 0;
        while (tools_.records.next(previous) != behind)
            previous = tools_.records.next(previous);
        tools_.parts.blocks = tools_.insert(previous, record_kind::structure, type_section,
                                            tools_.begin("SECTION").add(2, "BLOCKS").bytes());
        tools_.insert(tools_.parts.blocks, record_kind::structure, type_endsec,
                      tools_.begin("ENDSEC").bytes());
    }
    const std::wstring folded = base::folded(tools_.manner.codec.decode(name));
    const bool on_paper = folded.starts_with(L"*paper_space");
    const bool anonymous = folded.starts_with(L"*") && !on_paper && folded != L"*model_space";
    const auto entity = [&](std::string_view type) {
        record_tools::text made = tools_.begin(type);
        if (tools_.has_handles)
            made.handle(5, tools_.new_handle());
        if (tools_.records.handle(record) != 0)
            made.handle(330, tools_.records.handle(record));
        made.add(100, "AcDbEntity");
        if (on_paper)
            made.add(67, "1");
        made.add(8, "0");
        return made;
    };
    record_tools::text block = entity("BLOCK");
    block.add(100, "AcDbBlockBegin").add(2, name).add(70, anonymous ? "1" : "0");
    block.add(10, "0.0").add(20, "0.0").add(30, "0.0").add(3, name).add(1, "");
    const record_id added = tools_.insert(tools_.last_in(tools_.parts.blocks, type_endsec),
                                          record_kind::block, type_block, block.bytes());
    tools_.insert(added, record_kind::block_end, type_endblk,
                  entity("ENDBLK").add(100, "AcDbBlockEnd").bytes());
    tools_.parts.block_begins.push_back(added);
}

} // namespace

void repair_blocks(record_tools& tools) {
    block_mender(tools).run();
}

} // namespace dxf
