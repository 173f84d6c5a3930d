#include "host/dxf/space_repair.h"

#include "base/case_fold.h"
#include "base/utf.h"
#include "host/dxf/common_groups.h"
#include "host/dxf/handle_text.h"

namespace dxf {

namespace {

constexpr group_place head = {"\n"}; // before the first class, since no class is called so

bool is_block(const record_table& records, record_id id) {
    return id != no_record &&
           (records.type(id) == type_block_record || records.kind(id) == record_kind::block);
}

std::wstring name_of(const record_table& records, const drawing_manner& manner, record_id block) {
    return manner.codec.decode(value_of(records.text(block), 2));
}

// The record of model space; no_record when the file has none.
record_id model_space(const record_table& records, const drawing_manner& manner) {
    for (record_id id = 0; id < records.size(); ++id)
        if (records.type(id) == type_block_record && records.kind(id) == record_kind::entry &&
            base::equal_no_case(name_of(records, manner, id), L"*Model_Space"))
            return id;
    return no_record;
}

// The same text with another owner; with none when that is 0.
std::string with_owner(padded_text text, std::uint64_t owner, const group_style& style) {
    constexpr int owner_code = 330;
    group_list groups(text);
    if (owner == 0)
        groups.remove(head, owner_code);
    else
        groups.set_text(head, owner_code, handle_text(owner));
    return groups.write(style);
}

} // namespace

void repair_spaces(record_table& records, const drawing_parts& parts, const drawing_manner& manner,
                   placed_repairs& repairs, const file_places& places) {
    if (parts.entities == no_record)
        return;
    const record_id model = model_space(records, manner);
    const std::uint64_t owner = model == no_record ? 0 : records.handle(model);
    for (record_id id = records.next(parts.entities); id != no_record && records.type(id) != type_endsec;
         id = records.next(id)) {
        const std::uint64_t named = records.owner_handle(id);
        if (records.kind(id) != record_kind::entity || named == 0 || named == owner ||
            !is_block(records, records.find(named)) || read_entity_header(records.text(id)).paper)
            continue;
        repairs.push_back({place_of(id, records, places), repair_kind::wrong_space,
                           L"a " + base::widen(records.type_name(id)) + L" of model space names the block " +
                               name_of(records, manner, records.find(named)) + L" as its owner",
                           L"put in model space"});
        records.rewrite(id, with_owner(records.text(id), owner, manner.style));
        records.set_owner(id, records.put_owner(owner));
    }
}

} // namespace dxf
