// The parts that a file may lack, made when something is to stand in them.
#include "host/dxf/drawing.h"
#include "host/dxf/handle_text.h"
#include "host/dxf/record_header.h"
#include "host/dxf/releases.h"

#include <algorithm>

namespace dxf {

namespace {

struct section_row {
    std::string_view name;
    record_id drawing_parts::*begin;
    record_kind kind;
};

// In the order in which they stand.
constexpr section_row sections[] = {
    {"HEADER", &drawing_parts::header, record_kind::header},
    {"CLASSES", &drawing_parts::classes, record_kind::structure},
    {"TABLES", &drawing_parts::tables, record_kind::structure},
    {"BLOCKS", &drawing_parts::blocks, record_kind::structure},
    {"ENTITIES", &drawing_parts::entities, record_kind::structure},
    {"OBJECTS", &drawing_parts::objects, record_kind::structure},
};

// The symbol tables, likewise.
constexpr std::string_view tables[] = {"VPORT", "LTYPE", "LAYER",    "STYLE",       "VIEW",
                                       "UCS",   "APPID", "DIMSTYLE", "BLOCK_RECORD"};

} // namespace

record_id drawing::make(record_id previous, std::initializer_list<group_list::fresh_group> groups,
                        record_kind kind) {
    std::string text;
    for (const group_list::fresh_group& group : groups)
        append_group(text, style_, group.code, group.value);
    return records_->make_behind(previous, text, kind);
}

void drawing::remember_made(record_id first, record_id last) {
    for (const record_id id : {first, last})
        made_.insert_or_assign(id, made_part{first, last, records_->text(id).data()});
}

record_id drawing::ensure_section(std::string_view name) {
    const section_row* const row =
        std::find_if(std::begin(sections), std::end(sections),
                     [&](const section_row& candidate) { return candidate.name == name; });
    record_id& begin = parts_.*row->begin;
    if (begin != no_record)
        return begin;
    record_id previous = 0; // what stands in front of all records
    for (const section_row* other = std::begin(sections); other != row; ++other)
        if (const record_id before = parts_.*other->begin; before != no_record) {
            const record_id last = last_in(before);
            previous = last == no_record ? no_record : records_->next(last);
        }
    if (previous == no_record)
        return no_record;
    begin = make(previous, {{0, "SECTION"}, {2, std::string(name)}}, row->kind);
    remember_made(begin, make(begin, {{0, "ENDSEC"}}, record_kind::structure));
    return begin;
}

record_id drawing::ensure_table(std::string_view name) {
    if (const record_id head = table(name); head != no_record)
        return head;
    const record_id section = ensure_section("TABLES");
    if (section == no_record)
        return no_record;
    record_id previous = section;
    for (const std::string_view other : tables) {
        if (other == name)
            break;
        if (const record_id before = table(other); before != no_record) {
            const record_id last = last_in(before);
            previous = last == no_record ? no_record : records_->next(last);
        }
    }
    if (previous == no_record)
        return no_record;
    const std::string named(name);
    const std::string handle = handle_text(records_->new_handle());
    record_id head = no_record;
    if (version_ < releases::release_13)
        head = make(previous, {{0, "TABLE"}, {2, named}, {70, "1"}}, record_kind::table);
    else if (name == "DIMSTYLE")
        head = make(previous,
                    {{0, "TABLE"},
                     {2, named},
                     {5, handle},
                     {330, "0"},
                     {100, "AcDbSymbolTable"},
                     {70, "1"},
                     {100, "AcDbDimStyleTable"}},
                    record_kind::table);
    else
        head = make(previous,
                    {{0, "TABLE"}, {2, named}, {5, handle}, {330, "0"}, {100, "AcDbSymbolTable"}, {70, "1"}},
                    record_kind::table);
    remember_made(head, make(head, {{0, "ENDTAB"}}, record_kind::structure));
    parts_.table_heads.push_back(head);
    return head;
}

record_id drawing::ensure_root_dictionary() {
    if (version_ < releases::release_13)
        return no_record;
    const record_id section = ensure_section("OBJECTS");
    if (section == no_record)
        return no_record;
    const record_id first = records_->next(section);
    if (first != no_record && records_->kind(first) == record_kind::object)
        return records_->type(first) == type_dictionary ? first : no_record;
    const std::string handle = handle_text(records_->new_handle());
    const record_id root =
        version_ < releases::release_2000
            ? make(section, {{0, "DICTIONARY"}, {5, handle}, {330, "0"}, {100, "AcDbDictionary"}},
                   record_kind::object)
            : make(section, {{0, "DICTIONARY"}, {5, handle}, {330, "0"}, {100, "AcDbDictionary"}, {281, "1"}},
                   record_kind::object);
    if (made_.contains(section)) // then it is saved with whatever object there is
        made_.insert({root, {section, made_.at(section).last, records_->text(root).data()}});
    else
        remember_made(root, root);
    return root;
}

// Whether an object's owner, or that one's owner and so on, was erased: it goes with it, and would come back
// with it.
bool drawing::owner_is_gone(record_id id) const {
    constexpr int deepest = 100; // owners of damaged drawings may go round in a circle
    for (int depth = 0; depth < deepest; ++depth) {
        id = records_->find(records_->owner_handle(id));
        if (id == no_record)
            return false;
        if (records_->gone(id))
            return true;
    }
    return false;
}

// What was made and nothing stands in does not count, nor does a new object that nobody owns yet.
bool drawing::is_saved(record_id id) const {
    if (records_->leaves_out(id))
        return false;
    if (records_->kind(id) == record_kind::object && !records_->journal().empty() && owner_is_gone(id))
        return false;
    const auto made = made_.find(id);
    if (made == made_.end())
        return id < in_file_ || records_->kind(id) != record_kind::object || records_->owner_handle(id) != 0;
    for (record_id at = made->second.first;; at = records_->next(at)) {
        const auto other = made_.find(at);
        const bool as_made = other != made_.end() && records_->text(at).data() == other->second.text;
        if (!as_made && !records_->leaves_out(at))
            return true;
        if (at == made->second.last)
            return false;
    }
}

} // namespace dxf
