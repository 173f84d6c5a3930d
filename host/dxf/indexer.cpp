#include "host/dxf/indexer.h"

#include "base/utf.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace dxf {

namespace {

// A guess that fits most drawings, so that the columns need not move while they are filled. What is reserved
// and not used costs address space only.
constexpr std::size_t bytes_per_record = 120;

// The columns hold lengths in 32 bits. No object of a drawing comes near it.
constexpr std::ptrdiff_t longest_record = 0x7FFFFFFF;

enum class region { outside, header, classes, tables, blocks, entities, objects, unknown };

region region_by_name(std::string_view name) {
    constexpr std::pair<std::string_view, region> names[] = {
        {"HEADER", region::header}, {"CLASSES", region::classes},   {"TABLES", region::tables},
        {"BLOCKS", region::blocks}, {"ENTITIES", region::entities}, {"OBJECTS", region::objects}};
    for (const auto& [known, where] : names)
        if (name == known)
            return where;
    return region::unknown;
}

// Whether a block's name is that of a space: "*Model_Space" or, in drawings of R12, "$MODEL_SPACE".
bool is_space(std::string_view block, std::string_view space) {
    if (block.empty() || (block[0] != '*' && block[0] != '$'))
        return false;
    block.remove_prefix(1);
    return std::equal(block.begin(), block.end(), space.begin(), space.end(), [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? a | 0x20 : a) == (b >= 'A' && b <= 'Z' ? b | 0x20 : b);
    });
}

class indexing {
public:
    indexing(std::string_view bytes, record_table& records) : bytes_(bytes), records_(records) {}

    base::result<drawing_parts> run();

private:
    record_id begin_record(const raw_group& group);
    record_kind kind_of(std::uint32_t type);
    void finish_header(record_id id, const record_header& header);
    void settle_handles();
    void settle_owners();
    record_id space_block(std::string_view name);

    std::string_view bytes_;
    record_table& records_;
    drawing_parts parts_;
    region region_ = region::outside;
    record_id table_ = no_record;  // the TABLE that is open
    record_id block_ = no_record;  // the BLOCK that is open
    record_id entity_ = no_record; // the entity that a VERTEX, ATTRIB or SEQEND would belong to
    bool any_section_ = false;
    std::vector<record_id> paper_; // entities with group 67 set
};

base::failure refusal(std::string_view bytes, const char* at, std::wstring why) {
    return {L"line " + std::to_wstring(line_number(bytes, at)) + L": " + std::move(why)};
}

base::result<drawing_parts> indexing::run() {
    records_.reserve(bytes_.size() / bytes_per_record + 64);
    group_reader groups(bytes_);
    raw_group group;

    // What stands before the first record: comments, or nothing.
    record_id current = records_.append(bytes_.substr(0, 0), record_kind::structure, type_none);
    header_taker taker({});
    bool in_header = false;
    bool ended = false;
    while (!ended && groups.next(group)) {
        if (group.code != 0) {
            if (in_header && !taker.take(group))
                in_header = false;
            continue;
        }
        if (group.begin - records_.text(current).data() > longest_record)
            return refusal(bytes_, records_.text(current).data(), L"the object that begins here has no end");
        records_.extend(current, group.begin);
        finish_header(current, taker.header);
        current = begin_record(group);
        taker = header_taker(records_.type_name(current));
        in_header = true;
        ended = records_.type(current) == type_eof;
    }
    finish_header(current, taker.header);
    if (bytes_.data() + bytes_.size() - records_.text(current).data() > longest_record)
        return refusal(bytes_, records_.text(current).data(), L"what stands behind this line is no drawing");
    records_.extend(current, bytes_.data() + bytes_.size());
    parts_.high_bytes = groups.high_bytes();

    if (!any_section_) {
        if (bytes_.empty())
            return base::failure{L"the file is empty"};
        return refusal(bytes_, groups.position(), L"no section of a drawing begins before here");
    }
    settle_handles();
    settle_owners();
    return parts_;
}

// A group 0: what kind of record it begins follows from where it stands.
record_id indexing::begin_record(const raw_group& group) {
    const std::uint32_t type = records_.put_type(trimmed(group.value));
    const record_id id = records_.append({group.begin, static_cast<std::size_t>(group.end - group.begin)},
                                         kind_of(type), type);
    switch (records_.kind(id)) {
    case record_kind::table:
        table_ = id;
        parts_.table_heads.push_back(id);
        break;
    case record_kind::block:
        block_ = id;
        parts_.block_begins.push_back(id);
        entity_ = no_record;
        break;
    case record_kind::entity:
        entity_ = id;
        break;
    default:
        break;
    }
    return id;
}

record_kind indexing::kind_of(std::uint32_t type) {
    switch (type) {
    case type_section:
        region_ = region::outside; // its name follows
        table_ = block_ = entity_ = no_record;
        return record_kind::structure;
    case type_endsec:
        region_ = region::outside;
        return record_kind::structure;
    case type_eof:
        return record_kind::structure;
    default:
        break;
    }
    switch (region_) {
    case region::tables:
        if (type == type_table)
            return record_kind::table;
        return type == type_endtab || table_ == no_record ? record_kind::structure : record_kind::entry;
    case region::blocks:
        if (type == type_block)
            return record_kind::block;
        if (type == type_endblk)
            return record_kind::block_end;
        [[fallthrough]];
    case region::entities: {
        const bool part = type == type_vertex || type == type_attrib || type == type_seqend;
        return part && entity_ != no_record ? record_kind::part : record_kind::entity;
    }
    case region::objects:
        return record_kind::object;
    default:
        return record_kind::structure;
    }
}

void indexing::finish_header(record_id id, const record_header& header) {
    const std::uint32_t type = records_.type(id);
    if (type == type_section) {
        any_section_ = true;
        region_ = region_by_name(header.name);
        switch (region_) {
        case region::header:
            records_.set_kind(id, record_kind::header);
            parts_.header = parts_.header == no_record ? id : parts_.header;
            break;
        case region::tables:
            parts_.tables = parts_.tables == no_record ? id : parts_.tables;
            break;
        case region::blocks:
            parts_.blocks = parts_.blocks == no_record ? id : parts_.blocks;
            break;
        case region::entities:
            parts_.entities = parts_.entities == no_record ? id : parts_.entities;
            break;
        case region::objects:
            parts_.objects = parts_.objects == no_record ? id : parts_.objects;
            break;
        default:
            break;
        }
        return;
    }
    if (type == type_eof)
        parts_.end_of_file = id;
    const record_kind kind = records_.kind(id);
    if (kind == record_kind::structure)
        return;
    if (header.handle != 0)
        records_.set_handle(id, header.handle);
    if (stands_on_layer(kind))
        records_.set_layer(id, records_.put_layer(header.layer));
    if (kind == record_kind::entity && header.paper)
        paper_.push_back(id);
    // Owners by place are settled when all handles are known; until then the column holds what 330 says.
    if (header.owner != 0)
        records_.set_owner(id, records_.put_owner(header.owner));
}

void indexing::settle_handles() {
    for (record_id id = 0; id < records_.size(); ++id)
        if (records_.kind(id) != record_kind::structure && records_.kind(id) != record_kind::header &&
            records_.handle(id) == 0)
            records_.set_handle(id, records_.new_handle());
}

// The block of model or paper space: its record, before R13 its BLOCK; when the file has neither, one that
// stands for it.
record_id indexing::space_block(std::string_view name) {
    record_id found = no_record;
    for (record_id id = 0; id < records_.size() && found == no_record; ++id)
        if (records_.type(id) == type_block_record && is_space(value_of(records_.text(id), 2), name))
            found = id;
    for (const record_id id : parts_.block_begins)
        if (found == no_record && is_space(value_of(records_.text(id), 2), name))
            found = id;
    if (found != no_record)
        return found;
    return records_.append_implied("  0\nBLOCK_RECORD\n  2\n*" + std::string(name) + "\n", type_block_record);
}

void indexing::settle_owners() {
    // Block records by the name of their block, for blocks whose group 330 does not tell.
    std::unordered_map<std::string_view, record_id> by_name;
    for (record_id id = 0; id < records_.size(); ++id)
        if (records_.kind(id) == record_kind::entry && records_.type(id) == type_block_record)
            by_name.try_emplace(value_of(records_.text(id), 2), id);

    const auto is_block = [&](std::uint64_t handle) {
        const record_id id = records_.find(handle);
        return id != no_record &&
               (records_.type(id) == type_block_record || records_.kind(id) == record_kind::block);
    };
    const record_id model = space_block("Model_Space");
    const record_id paper = space_block("Paper_Space");
    const std::uint32_t model_owner = records_.put_owner(records_.handle(model));
    const std::uint32_t paper_owner = records_.put_owner(records_.handle(paper));
    std::unordered_set<std::uint32_t> good_owners; // numbers whose handles are blocks
    std::unordered_set<record_id> on_paper(paper_.begin(), paper_.end());

    std::uint32_t table_owner = 0;
    std::uint32_t block_owner = 0; // of what stands between BLOCK and ENDBLK; 0 outside
    record_id entity = no_record;
    for (record_id id = 0; id < records_.size(); ++id) {
        switch (records_.kind(id)) {
        case record_kind::table:
            table_owner = records_.put_owner(records_.handle(id));
            break;
        case record_kind::entry:
            records_.set_owner(id, table_owner);
            break;
        case record_kind::block: {
            record_id record = records_.find(records_.owner_handle(id));
            if (record == no_record || records_.type(record) != type_block_record) {
                const auto named = by_name.find(value_of(records_.text(id), 2));
                record = named == by_name.end() ? id : named->second;
            }
            block_owner = records_.put_owner(records_.handle(record));
            records_.set_owner(id, block_owner);
            break;
        }
        case record_kind::block_end:
            records_.set_owner(id, block_owner);
            block_owner = 0;
            break;
        case record_kind::entity:
            if (block_owner != 0) {
                records_.set_owner(id, block_owner);
            } else if (const std::uint32_t owner = records_.owner(id); !good_owners.contains(owner)) {
                if (is_block(records_.owner_handle(id)))
                    good_owners.insert(owner);
                else
                    records_.set_owner(id, on_paper.contains(id) ? paper_owner : model_owner);
            }
            entity = id;
            break;
        case record_kind::part:
            records_.set_owner(id, records_.put_owner(records_.handle(entity)));
            break;
        default:
            break;
        }
    }
}

} // namespace

base::result<drawing_parts> index_records(std::string_view bytes, record_table& records) {
    return indexing(bytes, records).run();
}

std::size_t line_number(std::string_view bytes, const char* at) {
    return static_cast<std::size_t>(std::count(bytes.data(), at, '\n')) + 1;
}

} // namespace dxf
