#include "host/dxf/name_repair.h"

#include "base/case_fold.h"
#include "host/dxf/record_header.h"

#include <string>
#include <unordered_set>

namespace dxf {

void repair_names(record_table& records, const drawing_parts& parts, const drawing_manner& manner,
                  placed_repairs& repairs, file_places& places) {
    const auto name_of = [&](record_id id) { return value_of(records.text(id), 2); };
    const auto is_record = [&](record_id id) {
        return id != no_record && records.kind(id) == record_kind::entry &&
               records.type(id) == type_block_record;
    };
    std::unordered_set<std::wstring> taken; // gathered at the first name that is lost
    const auto take = [&](std::string_view name) {
        if (taken.empty())
            for (record_id id = 0; id < records.size(); ++id)
                if (is_record(id))
                    taken.insert(base::folded(manner.codec.decode(name_of(id))));
        return taken.insert(base::folded(manner.codec.decode(name))).second;
    };
    for (const record_id block : parts.block_begins) {
        const record_id record = records.find(records.owner_handle(block));
        const std::string name(name_of(block));
        if (!is_record(record) || !name_of(record).empty() || name.empty() || !take(name))
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
