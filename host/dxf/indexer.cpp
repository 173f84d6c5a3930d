#include "host/dxf/indexer.h"

#include "base/number_text.h"
#include "host/dxf/common_groups.h"
#include "host/dxf/line_manner.h"
#include "host/dxf/piece_scan.h"
#include "host/dxf/type_name.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace dxf {

namespace {

// A guess that fits most drawings, so that the columns need not move while they are filled. What is reserved
// and not used costs address space only.
constexpr std::size_t bytes_per_record = 120;

// Types that are known by number and are no entities stand before this one.
constexpr std::uint32_t known_types_of_entities = type_vertex;

// The columns hold lengths in 32 bits. No object of a drawing comes near it.
constexpr std::ptrdiff_t longest_record = 0x7FFFFFFF;

// Whether a block's name is that of a space: "*Model_Space" or, in drawings of R12, "$MODEL_SPACE".
bool is_space(std::string_view block, std::string_view space) {
    if (block.empty() || (block[0] != '*' && block[0] != '$'))
        return false;
    block.remove_prefix(1);
    return std::equal(block.begin(), block.end(), space.begin(), space.end(), [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? a | 0x20 : a) == (b >= 'A' && b <= 'Z' ? b | 0x20 : b);
    });
}

// A type that is a number is none: the code of the group was lost.
bool is_number(std::string_view type) {
    const char first = type.empty() ? '\0' : type.front();
    return ((first >= '0' && first <= '9') || first == '-' || first == '+' || first == '.') &&
           base::parse_real(type);
}

// Where the first line stands that is a group code, if it is one of the first few; else 0.
std::size_t first_code_line(std::string_view text) {
    constexpr int few = 4;
    std::size_t at = 0;
    for (int i = 0; i < few && at < text.size(); ++i) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        if (parse_code(text.data() + at, text.data() + end) != no_code)
            return at;
        at = end + 1;
    }
    return 0;
}

// Whether the line in front of a place names the version.
bool is_version(std::string_view before) {
    const std::size_t end = before.find_last_not_of(" \r\n");
    return before.substr(0, end + 1).ends_with("$ACADVER");
}

// Whether a group of a record without a value is damage. `before` is what stands in front of it.
bool is_lost(int code, std::uint32_t type, std::string_view before) {
    return must_have_value(code) || (code == 2 && type == type_block) ||
           (type == type_section && (code == 9 || (code == 1 && is_version(before))));
}

bool is_part(std::uint32_t type) {
    return type == type_vertex || type == type_attrib || type == type_seqend;
}

} // namespace

indexer::region indexer::region_by_name(std::string_view name) {
    constexpr std::pair<std::string_view, region> names[] = {
        {"HEADER", region::header}, {"CLASSES", region::classes},   {"TABLES", region::tables},
        {"BLOCKS", region::blocks}, {"ENTITIES", region::entities}, {"OBJECTS", region::objects}};
    for (const auto& [known, where] : names)
        if (name == known)
            return where;
    return region::unknown;
}

std::optional<refusal> indexer::run() {
    records_.reserve(text_.size() / bytes_per_record + 64);
    const std::size_t start = first_code_line(text_);
    group_reader groups(text_.substr(start));
    raw_group group;
    piece_scan pieces(text_, piece_scan::usual_manner());
    const scanned_piece* piece = pieces.from(text_.data());
    bool high_bytes = false; // in front of where `groups` began
    bool zero_bytes = false;

    // What stands before the first record: comments, or nothing.
    record_id current = records_.append(text_.substr(0, 0), record_kind::structure, type_none);
    header_taker taker({});
    bool in_header = false;
    bool is_entity = false;
    bool is_scattered = false; // behind the header there may be groups that belong to it
    bool finished = false;     // the current record was taken from a piece
    bool ended = false;
    bool mixed_up = start != 0; // lines of the current record are no groups, or values are not there
    std::size_t stray_lines = 0;
    const auto finish = [&](const char* end) {
        if (end - records_.text(current).data() > longest_record)
            return false;
        records_.extend(current, end);
        if (is_scattered && is_entity) {
            const record_header whole = read_entity_header(records_.text(current));
            taker.header.layer = whole.layer;
            taker.header.paper = whole.paper;
        }
        finish_header(current, taker);
        const std::uint32_t type = records_.type(current);
        const bool nameless = taker.header.name.empty() && (type == type_section || type == type_table);
        if (mixed_up || nameless)
            damage_.lines.push_back(current);
        return true;
    };
    // The records of a piece, at whose beginning reading stands.
    const auto take = [&](const scanned_piece& found) {
        for (const scanned_record& record : found.records) {
            taker = header_taker(found.types[record.type]);
            taker.header.layer = found.layers[record.layer];
            taker.header.handle = record.handle;
            taker.header.owner = record.owner;
            taker.header.paper = record.paper;
            current = begin_record({0, record.begin, record.end, taker.header.type});
            finish_header(current, taker);
        }
    };
    while (!ended && groups.next(group)) {
        if ((group.value.empty() || group.value.back() == ' ') && is_blank(group.value) &&
            is_lost(group.code, records_.type(current),
                    {text_.data(), static_cast<std::size_t>(group.begin - text_.data())}))
            mixed_up = true;
        if (group.code != 0) {
            if (in_header)
                in_header = taker.take(group);
            else if (group.code == 8 || group.code == 67)
                is_scattered = true;
            continue;
        }
        // The last lines that were met may stand behind this group: they are none of its value.
        const bool met_lines = std::exchange(stray_lines, groups.stray_lines()) != groups.stray_lines();
        const std::size_t first_line = met_lines ? group.value.find('\n') : group.value.npos;
        if (met_lines)
            group.value = group.value.substr(0, first_line);
        mixed_up = mixed_up || met_lines;
        if (is_blank(group.value) || is_number(trimmed(group.value))) {
            mixed_up = true;
            continue;
        }
        if (!std::exchange(finished, false) && !finish(group.begin))
            return refusal{records_.text(current).data(), L"the object that begins here has no end"};
        mixed_up = first_line != group.value.npos;
        if (piece != nullptr && piece->begin < group.begin)
            piece = pieces.from(group.begin);
        if (piece != nullptr && piece->begin == group.begin && !met_lines) {
            take(*piece);
            finished = true;
            high_bytes = high_bytes || groups.high_bytes() || piece->high_bytes;
            zero_bytes = zero_bytes || groups.zero_bytes();
            stray_lines = 0;
            groups = group_reader(text_.substr(static_cast<std::size_t>(piece->end - text_.data())));
            piece = pieces.from(piece->end);
            continue;
        }
        current = begin_record(group);
        taker = header_taker(records_.type_name(current));
        in_header = true;
        is_scattered = false;
        is_entity = stands_on_layer(records_.kind(current)) || section_ == no_record; // which lost its place
        ended = records_.type(current) == type_eof;
    }
    const char* const end = text_.data() + text_.size();
    // What stands behind the end is none of the drawing.
    mixed_up = !ended && (mixed_up || stray_lines != groups.stray_lines());
    if (!finish(end))
        return refusal{records_.text(current).data(), L"what stands behind this line is no drawing"};
    parts_.high_bytes = high_bytes || groups.high_bytes();
    if (zero_bytes || groups.zero_bytes()) {
        const char* const last = ended ? group.value.data() + group.value.size() : end;
        damage_.zero_bytes =
            std::memchr(text_.data(), 0, static_cast<std::size_t>(last - text_.data())) != nullptr;
    }

    constexpr std::size_t head = 1000; // bytes
    if (!any_section_ && !(damage_.in_lines() && text_.substr(0, head).find("SECTION") != text_.npos)) {
        if (text_.empty())
            return refusal{text_.data(), L"the file is empty"};
        return refusal{groups.position(), L"no section of a drawing begins before here"};
    }
    if (!ended && any_section_) {
        if (parts_.blocks == no_record && parts_.entities == no_record)
            return refusal{end, L"the file ends here, before the first of its blocks and entities"};
        end_of_text(current, group, groups);
    }
    return std::nullopt;
}

// The text ended without an EOF.
void indexer::end_of_text(record_id last, const raw_group& last_group, const group_reader& groups) {
    const char* const end = text_.data() + text_.size();
    const std::string_view rest(groups.position(), static_cast<std::size_t>(end - groups.position()));
    const std::string_view last_line = text_.substr(text_.rfind('\n') + 1);
    if (!is_blank(rest))
        damage_.cut_group = groups.position();
    else if (!is_blank(last_line))
        damage_.cut_group = last_group.begin;
    damage_.last = last;
    damage_.open_line = !last_line.empty();
    end_what_is_open(type_eof, end);
    make_end(type_eof, record_kind::structure, no_record, end);
    parts_.end_of_file = records_.size() - 1;
}

// A record of a type begins at a place: what should have ended before it is ended.
void indexer::end_what_is_open(std::uint32_t type, const char* at) {
    if (in_parts_ && !is_part(type))
        make_end(type_seqend, record_kind::part, entity_, at);
    const bool ends_section = type == type_endsec || type == type_section || type == type_eof;
    if (block_ != no_record && (ends_section || type == type_block))
        make_end(type_endblk, record_kind::block_end, block_, at);
    if (table_ != no_record && (ends_section || type == type_table))
        make_end(type_endtab, record_kind::structure, table_, at);
    if (section_ != no_record && ends_section && type != type_endsec)
        make_end(type_endsec, record_kind::structure, section_, at);
}

void indexer::make_end(std::uint32_t type, record_kind kind, record_id of, const char* at) {
    const record_id id = records_.append_own({}, kind, type);
    damage_.ends.push_back({id, of, at});
    if (kind == record_kind::part && section_ == no_record)
        damage_.outside.push_back(id);
    switch (type) {
    case type_seqend:
        in_parts_ = false;
        break;
    case type_endblk:
        block_ = no_record;
        break;
    case type_endtab:
        table_ = no_record;
        break;
    default:
        section_ = no_record;
        region_ = region::outside;
        break;
    }
}

// A group 0: what kind of record it begins follows from where it stands.
record_id indexer::begin_record(const raw_group& group) {
    const std::uint32_t type = records_.put_type(type_name_of(group.value));
    if (in_parts_ || type <= type_block) // nothing else ends anything
        end_what_is_open(type, group.begin);
    const record_id id =
        records_.append(padded_text::promised({group.begin, group.end}), kind_of(type), type);
    switch (records_.kind(id)) {
    case record_kind::structure:
        if (type == type_section)
            section_ = id;
        else if (type == type_endsec && std::exchange(section_, no_record) == no_record)
            damage_.needless_ends.push_back(id);
        break;
    case record_kind::table:
        table_ = id;
        parts_.table_heads.push_back(id);
        break;
    case record_kind::block:
        block_ = id;
        parts_.block_begins.push_back(id);
        entity_ = no_record;
        break;
    case record_kind::block_end:
        block_ = no_record;
        break;
    case record_kind::entity:
        entity_ = id;
        break;
    case record_kind::part:
        in_parts_ = type != type_seqend;
        break;
    default:
        break;
    }
    return id;
}

record_kind indexer::kind_of(std::uint32_t type) {
    switch (type) {
    case type_section:
        region_ = region::outside; // its name follows
        table_ = block_ = entity_ = no_record;
        return record_kind::structure;
    case type_endsec:
        region_ = region::outside;
        table_ = block_ = entity_ = no_record;
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
        if (type != type_endtab)
            return table_ == no_record ? record_kind::structure : record_kind::entry;
        table_ = no_record;
        return record_kind::structure;
    case region::blocks:
        if (type == type_block)
            return record_kind::block;
        if (type == type_endblk)
            return record_kind::block_end;
        [[fallthrough]];
    case region::entities:
        return is_part(type) && entity_ != no_record ? record_kind::part : record_kind::entity;
    case region::objects:
        return record_kind::object;
    default:
        return record_kind::structure;
    }
}

void indexer::begin_section(record_id& part, record_id id) {
    if (part == no_record)
        part = id;
    else
        damage_.repeated.push_back(id);
}

void indexer::finish_header(record_id id, const header_taker& taker) {
    const record_header& header = taker.header;
    const std::uint32_t type = records_.type(id);
    if (type == type_section) {
        any_section_ = true;
        region_ = region_by_name(header.name);
        switch (region_) {
        case region::header:
            records_.set_kind(id, record_kind::header);
            parts_.header = parts_.header == no_record ? id : parts_.header;
            break;
        case region::classes:
            parts_.classes = parts_.classes == no_record ? id : parts_.classes;
            break;
        case region::tables:
            parts_.tables = parts_.tables == no_record ? id : parts_.tables;
            break;
        case region::blocks:
            begin_section(parts_.blocks, id);
            break;
        case region::entities:
            begin_section(parts_.entities, id);
            break;
        case region::objects:
            begin_section(parts_.objects, id);
            break;
        default:
            break;
        }
        return;
    }
    if (type == type_eof)
        parts_.end_of_file = id;
    // What stands between two sections and has a layer is an entity that lost its place.
    if (section_ == no_record && type >= known_types_of_entities && !header.layer.empty()) {
        const bool part = is_part(type) && entity_ != no_record;
        records_.set_kind(id, part ? record_kind::part : record_kind::entity);
        entity_ = part ? entity_ : id;
        in_parts_ = part && type != type_seqend;
        damage_.outside.push_back(id);
    }
    const record_kind kind = records_.kind(id);
    if (kind == record_kind::structure)
        return;
    if (header.handle != 0)
        records_.set_handle(id, header.handle);
    else if (taker.has_handle())
        damage_.empty_handles.push_back(id);
    if (stands_on_layer(kind))
        records_.set_layer(id, records_.put_layer(header.layer));
    if (kind == record_kind::entity && header.paper)
        paper_.push_back(id);
    // Owners by place are settled when all handles are known; until then the column holds what 330 says.
    if (header.owner != 0)
        records_.set_owner(id, records_.put_owner(header.owner));
}

void indexer::settle() {
    for (record_id id = 0; id < records_.size(); ++id)
        if (records_.kind(id) != record_kind::structure && records_.kind(id) != record_kind::header &&
            records_.handle(id) == 0)
            records_.set_handle(id, records_.new_handle());
    settle_owners();
}

// The block of model or paper space: its record, before R13 its BLOCK; when the file has neither, one that
// stands for it.
record_id indexer::space_block(std::string_view name) {
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

void indexer::settle_owners() {
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

std::size_t line_number(std::string_view text, const char* at) {
    return static_cast<std::size_t>(std::count(text.data(), at, '\n')) + 1;
}

} // namespace dxf
