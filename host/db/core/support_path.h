// Where files are looked for that are named without their folder: linetypes, scripts, shapes.
#pragma once

#include "adesk.h"

#include <filesystem>
#include <string_view>
#include <vector>

class AcDbImpDatabase;

namespace db {

// The folder of the drawing (null, or one without a file: none), the current folder, the user's system
// folder.
ACDB_PORT std::vector<std::filesystem::path> support_folders(const AcDbImpDatabase* drawing);

// The file of that name, as it stands or else in the first of these folders that has it, without regard to
// case. Empty when there is none.
ACDB_PORT std::filesystem::path find_support_file(std::wstring_view name, const AcDbImpDatabase* drawing);

// The files with that ending (".lin") in these folders, by the order of the folders and then by their names.
ACDB_PORT std::vector<std::filesystem::path> support_files(std::wstring_view ending,
                                                           const AcDbImpDatabase* drawing);

} // namespace db
