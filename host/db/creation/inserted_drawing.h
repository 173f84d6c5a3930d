// A drawing file as a block of another drawing: copied into it, or referred to.
#pragma once

#include "base/result.h"
#include "host/db/core/imp_database.h"

#include <filesystem>
#include <string>
#include <vector>

namespace db {

struct inserted_drawing {
    AcDbObjectId block;
    bool redefined = false;         // the drawing had a block of the name, which has new contents now
    std::vector<std::wstring> told; // what the user is to know, a line each
};

// Reads a drawing file and makes a block of its model space, with the layers, styles, linetypes and blocks
// that it needs. What the drawing has under the same name stays as it is there. Entities that hold on to
// other objects of their drawing are left out, which is told. On failure says why, and nothing is changed.
base::result<inserted_drawing> insert_drawing(AcDbImpDatabase& drawing, const std::filesystem::path& file,
                                              const std::wstring& name);

// Adds a block that stands for an external reference. As AcDbSymbolTable::add answers.
Acad::ErrorStatus add_reference_block(AcDbImpDatabase& drawing, const std::wstring& name,
                                      const std::wstring& path, bool overlay, AcDbObjectId& id);

} // namespace db
