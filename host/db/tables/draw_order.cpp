#include "host/db/tables/draw_order.h"

#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/object_links.h"
#include "host/dxf/group_reader.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace db {

namespace {

std::uint64_t handle_in(std::string_view text) {
    text = dxf::trimmed(text);
    std::uint64_t handle = 0;
    std::from_chars(text.data(), text.data() + text.size(), handle, 16);
    return handle;
}

// What a dictionary holds under a name.
std::uint64_t entry_of(dxf::padded_text dictionary, std::string_view name) {
    if (dictionary.empty())
        return 0;
    dxf::group_reader reader(dictionary);
    dxf::raw_group group;
    bool is_next = false;
    while (reader.next(group)) {
        if (group.code == 3)
            is_next = dxf::trimmed(group.value) == name;
        else if (is_next && (group.code == 350 || group.code == 360))
            return handle_in(group.value);
    }
    return 0;
}

// The text of a block's table; empty when it has none.
dxf::padded_text table_of(const AcDbImpDatabase& database, dxf::record_id block) {
    const dxf::record_table& records = database.records();
    const auto text_of = [&](std::uint64_t handle) {
        const dxf::record_id id = handle != 0 ? records.find(handle) : dxf::no_record;
        return id != dxf::no_record && !records.gone(id) ? records.text(id) : dxf::padded_text();
    };
    if (records.text(block).find(dictionary_braces) == std::string_view::npos)
        return {};
    for (const std::uint64_t handle : links(dxf::group_list(records.text(block)), dictionary_braces))
        if (const std::uint64_t table = entry_of(text_of(handle), "ACAD_SORTENTS"); table != 0)
            return text_of(table);
    return {};
}

} // namespace

void draw_order::follow(const AcDbImpDatabase& database, dxf::record_id block) {
    const dxf::padded_text table = table_of(database, block);
    if (table.data() == read_.data() && table.size() == read_.size())
        return;
    read_ = table;
    places_.clear();
    if (table.empty())
        return;
    dxf::group_reader reader(table);
    dxf::raw_group group;
    std::uint64_t entity = 0;
    bool is_inside = false;
    while (reader.next(group)) {
        is_inside = is_inside || group.code == 100; // the group 5 in front is the table's own handle
        if (is_inside && group.code == 331)
            entity = handle_in(group.value);
        else if (is_inside && group.code == 5 && entity != 0)
            places_[std::exchange(entity, 0)] = handle_in(group.value);
    }
}

bool draw_order::sort(const AcDbImpDatabase& database, std::vector<dxf::record_id>& entities) const {
    if (places_.empty())
        return false;
    const auto place = [&](dxf::record_id id) {
        const std::uint64_t handle = database.records().handle(id);
        const auto found = places_.find(handle);
        return found != places_.end() ? found->second : handle;
    };
    std::ranges::stable_sort(entities, {}, place);
    return true;
}

std::vector<dxf::record_id> drawn_in_order(AcDbImpDatabase& database, dxf::record_id block) {
    std::vector<dxf::record_id> drawn = database.blocks().drawn_of(block);
    draw_order order;
    order.follow(database, block);
    order.sort(database, drawn);
    return drawn;
}

} // namespace db
