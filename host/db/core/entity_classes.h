// Which class an entity of a drawing file is of.
#pragma once

#include "rxclass.h"

#include <string_view>

namespace db {

// Registers the classes of the entities that the host knows.
void register_entity_classes();

// The class for a type of record ("LINE") and its text: the host's own; else the one that an application
// registered under this name; else AcDbEntity. AcDbProxyEntity for what stands for an entity of an
// application that was away when the file was written.
AcRxClass* class_of_entity(std::string_view type, std::string_view record);

} // namespace db
