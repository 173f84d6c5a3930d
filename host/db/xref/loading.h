// Finding and reading the external references of a drawing.
#pragma once

#include "host/db/core/imp_database.h"

#include <string>
#include <vector>

namespace db {

// Finds and reads what the blocks of a drawing refer to, and what that refers to, and makes the names that
// depend on it known. Blocks that it has dealt with before stay as they are. Gives what the user is to be
// told, a line each.
std::vector<std::wstring> load_references(AcDbImpDatabase& drawing);

} // namespace db
