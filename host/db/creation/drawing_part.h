// A new drawing made of a part of another one.
#pragma once

#include "base/result.h"
#include "host/db/core/imp_database.h"

#include <memory>
#include <vector>

namespace db {

// Some entities of model space and of sheets, with what they need (host/db/creation/needed_records.h), as a
// drawing of the same version, encoding and handles; what names something that did not come along no longer
// does. Of the header what names such a thing is as in a new drawing. On failure says why.
base::result<std::unique_ptr<dxf::drawing>> part_of_drawing(AcDbImpDatabase& drawing,
                                                            const std::vector<dxf::record_id>& entities);

} // namespace db
