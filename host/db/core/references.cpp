#include "host/db/core/references.h"

#include "host/db/core/blocks.h"
#include "host/dxf/record_header.h"

db::references& AcDbImpDatabase::references() const {
    return part<db::references>();
}

namespace db {

references::references(AcDbImpDatabase& drawing) : drawing_(drawing) {
}
references::~references() = default;

reference_state references::state(dxf::record_id block) const {
    const auto at = by_block_.find(block);
    return at == by_block_.end() ? reference_state::none : at->second.state;
}

AcDbImpDatabase* references::database(dxf::record_id block) const {
    const auto at = by_block_.find(block);
    return at == by_block_.end() ? nullptr : at->second.database;
}

block_place references::place(dxf::record_id block) const {
    if (AcDbImpDatabase* const loaded = database(block))
        return {loaded, loaded->blocks().find(ACDB_MODEL_SPACE)};
    const auto at = dependents_.blocks.find(block);
    return at == dependents_.blocks.end() ? block_place{&drawing_, block} : at->second;
}

std::optional<AcGePoint3d> references::base_point(dxf::record_id block) const {
    const AcDbImpDatabase* const loaded = database(block);
    return loaded != nullptr ? std::optional(insertion_base(*loaded)) : std::nullopt;
}

AcGePoint3d insertion_base(const AcDbImpDatabase& drawing) {
    AcGePoint3d point;
    if (drawing.drawing().parts().header == dxf::no_record)
        return point;
    dxf::group_reader groups(drawing.records().text(drawing.drawing().parts().header));
    dxf::raw_group group;
    bool of_base = false;
    while (groups.next(group)) {
        if (group.code == 9)
            of_base = dxf::trimmed(group.value) == "$INSBASE";
        else if (of_base && (group.code == 10 || group.code == 20 || group.code == 30))
            point[static_cast<unsigned>(group.code / 10 - 1)] = dxf::leading_real(group.value).value_or(0.0);
    }
    return point;
}

bool references::is_referenced(dxf::record_id record) const {
    const dxf::record_table& records = drawing_.records();
    return host_ != nullptr || (records.implied(record) && records.type(record) == dxf::type_block_record);
}

std::optional<bool> references::resolved(dxf::record_id entry) const {
    return looked_for_ ? std::optional(dependents_.resolved.contains(entry)) : std::nullopt;
}

} // namespace db
