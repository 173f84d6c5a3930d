#include "host/dxf/sealed_groups.h"

#include "host/dxf/record_header.h"

#include <algorithm>

namespace dxf {

std::vector<std::string_view> sealed_groups(const record_table& records) {
    constexpr std::string_view marker = "AcDbModelerGeometry";
    constexpr std::string_view old_types[] = {"3DSOLID", "BODY", "REGION"}; // without markers
    std::vector<bool> is_modeler(records.type_names().size());
    for (std::uint32_t type = 0; type < is_modeler.size(); ++type) {
        const std::string_view name = records.type_names()[type];
        is_modeler[type] = name.ends_with("SURFACE") ||
                           std::find(std::begin(old_types), std::end(old_types), name) != std::end(old_types);
    }
    std::vector<std::string_view> sealed;
    for (record_id id = 0; id < records.size(); ++id) {
        if (!is_modeler[records.type(id)])
            continue;
        const padded_text record = records.text(id);
        const bool marked = record.find(marker) != record.npos;
        bool behind = !marked;
        group_reader groups(record);
        raw_group group;
        while (groups.next(group)) {
            behind = behind || (group.code == 100 && trimmed(group.value) == marker);
            if (behind && (group.code == 1 || group.code == 3))
                sealed.emplace_back(group.begin, static_cast<std::size_t>(group.end - group.begin));
        }
    }
    return sealed;
}

} // namespace dxf
