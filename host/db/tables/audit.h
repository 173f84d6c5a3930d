// What in a drawing does not fit together, and mending it as the editor's AUDIT does. What reading repaired
// is mended already (host/dxf/repair.h).
#pragma once

#include "host/db/core/imp_database.h"

#include <string>
#include <vector>

namespace db {

struct audit_finding {
    dxf::record_id record = dxf::no_record; // none: of the header
    std::wstring what;                      // "Linetype "X" is not in the table"
    std::wstring remedy;                    // "set to ByLayer"
    bool erases = false;                    // the remedy takes the object away
};

// Looks for: names of linetypes, text styles, dimension styles, blocks and applications that have no record,
// in entities, layers and the header; colours, lineweights and scales of linetypes that there are not;
// entries of dictionaries that name no object. A layer without a record is no error. With `mends` each is
// mended as its remedy says.
std::vector<audit_finding> audit(AcDbImpDatabase& database, bool mends);

} // namespace db
