// Making, renaming and taking away sheets: a block, a LAYOUT and an entry of the dictionary ACAD_LAYOUT each.
#pragma once

#include "host/db/core/imp_database.h"

#include <string>
#include <vector>

namespace db {

// The layouts that a drawing has, model space among them, by their tabs from left to right.
std::vector<dxf::record_id> layouts_by_tab(AcDbImpDatabase& database);

// Makes a sheet of A3 size, or with `like`, a LAYOUT, one that is as it is there, with copies of what stands
// on it. eDuplicateKey when there is one of that name, eInvalidInput for what is no name, eNotApplicable in
// drawings of R12 and before and in those without a LAYOUT for model space.
Acad::ErrorStatus add_layout(AcDbImpDatabase& database, const std::wstring& name, dxf::record_id like);

// Makes the viewport that the current sheet itself is, in the size of its paper, when the sheet has no
// viewport, as in files of programs that leave it to the editor. Nothing with the Model tab, and where
// nothing may be changed.
void make_sheet_viewport(AcDbImpDatabase& database);

// Gives a LAYOUT another name. As above.
Acad::ErrorStatus rename_layout(AcDbImpDatabase& database, dxf::record_id layout, const std::wstring& name);

// Erases a LAYOUT and what stands on its sheet. eNotApplicable for model space, and for the sheet whose
// entities stand among those of model space in the file: a drawing must have one.
Acad::ErrorStatus erase_layout(AcDbImpDatabase& database, dxf::record_id layout);

} // namespace db
