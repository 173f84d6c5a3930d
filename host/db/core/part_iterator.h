// The parts behind an entity: attributes of a reference, vertices of a polyline.
#pragma once

#include "dbmain.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"

#include <memory>
#include <string_view>
#include <vector>

namespace db {

// The records of an entity's parts of a type ("ATTRIB"), erased ones too; none for a new entity.
std::vector<dxf::record_id> parts_of(const AcDbImpObject& entity, std::string_view type);

// An iterator over them, at the first one that is not erased; of a new entity over the parts that it holds.
std::unique_ptr<AcDbObjectIterator> iterate_parts(const AcDbImpObject& entity, std::string_view type);

} // namespace db
