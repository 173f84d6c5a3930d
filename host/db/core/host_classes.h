// Which classes of objects are the host's own, and which ones applications brought.
#pragma once

#include "rxclass.h"

#include <string_view>

namespace db {

// Calls `register_all`, and takes the classes that it registers for the host's own.
void register_host_classes(void (*register_all)());
bool is_host_class(const AcRxClass* type);
// Whether an application brought a class of objects.
bool has_application_classes();

// The class that an application registered for records of a type; null when there is none, or when it is one
// of entities where it should not be, or the other way round.
AcRxClass* application_class(std::string_view type, bool entity);

} // namespace db
