// Which class an entity of a drawing file is of.
#pragma once

#include "host/dxf/record_table.h"
#include "rxclass.h"

namespace db {

// Registers the classes of the entities that the host knows.
void register_entity_classes();

// The class for an entity's record: the host's own; else the one that an application
// registered under this name; else AcDbEntity. AcDbProxyEntity for what stands for an entity of an
// application that was away when the file was written.
AcRxClass* class_of_entity(const dxf::record_table& records, dxf::record_id id);

} // namespace db
