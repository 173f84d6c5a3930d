#include "host/version/dropped_groups.h"

#include "host/db/core/format_versions.h"
#include "host/dxf/record_header.h"

#include <algorithm>

namespace version {

dropped_groups::dropped_groups(int version, const dxf::record_table& records) {
    for (std::uint32_t type = 0; type < records.type_names().size(); ++type)
        codes_.push_back(db::unknown_groups(version, records.type_names()[type]));
}

bool dropped_groups::has(std::uint32_t type, int code) const {
    return std::binary_search(codes_[type].begin(), codes_[type].end(), code);
}

void dropped_groups::tell(std::string_view type, int code, std::string_view value, losses& lost) {
    value = dxf::trimmed(value);
    switch (code) {
    case 48:
        lost.add(L"linetype scale");
        break;
    case 370:
        if (value != "-1" && value != "-3") // by layer, the default
            lost.add(L"lineweight");
        break;
    case 420:
        lost.add(L"true colour", L"written as the nearest of the 255");
        break;
    case 440:
        lost.add(L"transparency");
        break;
    case 450:
        if (value == "1")
            lost.add(L"gradient", L"written as one colour");
        break;
    case 90:
        if (type == "MTEXT" && value != "0")
            lost.add(L"background of MTEXT");
        break;
    default:
        break;
    }
}

} // namespace version
