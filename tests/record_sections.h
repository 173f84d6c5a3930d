// The groups that a class writes into an object's record.
#pragma once

#include "base/utf.h"
#include "host/db/core/imp_database.h"
#include "host/dxf/group_reader.h"
#include "host/dxf/record_header.h"

#include <string>

namespace test {

// The groups behind a marker up to the record's end, "40 32.0|1 ...", in UTF-8 whatever the drawing's
// encoding.
inline std::string section(AcDbObjectId id, const std::string& marker) {
    const AcDbImpDatabase& imp = id.database()->imp();
    std::string found;
    dxf::group_reader reader(imp.records().text(imp.record(id)));
    dxf::raw_group group;
    bool inside = false;
    while (reader.next(group)) {
        if (inside)
            found += (found.empty() ? "" : "|") + std::to_string(group.code) + " " +
                     base::narrow(imp.drawing().codec().decode(dxf::trimmed(group.value)));
        inside = inside || (group.code == 100 && dxf::trimmed(group.value) == marker);
    }
    return found;
}

} // namespace test
