#include "host/dxf/name_repair.h"

#include "base/case_fold.h"
#include "host/dxf/record_header.h"

#include <algorithm>

namespace dxf {

void repair_names(record_table& records, const drawing_parts& parts, const drawing_manner& manner,
                  placed_repairs& repairs, file_places& places) {
    const auto name_of = [&](record_id id) { return value_of(records.text(id), 2); };
    const auto is_record = [&](record_id id) {
        return id != no_record && records.kind(id) == record_kind::entry &&
               records.type(id) == type_block_record;
    };
    const auto is_taken = [&](std::string_view name) {
        const std::wstring wanted = manner.codec.decode(name);
        for (record_id id = 0; id < records.size(); ++id)
            if (is_record(id) && base::equal_no_case(manner.codec.decode(name_of(id)), wanted))
                return true;
        return false;
    };
    for (const record_id block : parts.block_begins) {
        const record_id record = records.find(records.owner_handle(block));
        const std::string name(name_of(block));
        if (!is_record(record) || !name_of(record).empty() || name.empty() || is_taken(name))
            continue;
        group_list groups(records.text(record));
        groups.set_text({"AcDbBlockTableRecord"}, 2, name);
        repairs.push_back({records.text(record).data(), repair_kind::lost_name, L"a block record has no name",
                           L"named " + manner.codec.decode(name) + L" as its block"});
        places.try_emplace(record, records.text(record).data());
        records.rewrite(record, groups.write(manner.style));
    }
}

} // namespace dxf
