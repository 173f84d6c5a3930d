// Which class the object of a record is of.
#pragma once

#include "host/db/core/imp_database.h"

class AcRxClass;

namespace db {

// The class of the object that opening a record gives; null for records that are no objects.
ACDB_PORT AcRxClass* class_of(const AcDbImpDatabase& database, dxf::record_id record);
// The class that stands for it when its own one did not want to read the record.
AcRxClass* class_of_unread(const AcDbImpDatabase& database, dxf::record_id record);

} // namespace db
