// The spaces of a drawing: model space, its sheets with their layouts and viewports, and which is current.
//
// The file tells whether the Model tab is current ($TILEMODE) and which sheet was current last: the block
// that is called *Paper_Space. What the user changes to after that is the session's and is not saved.
#pragma once

#include "host/db/core/imp_database.h"

#include <string>
#include <string_view>
#include <vector>

namespace db {

bool in_tile_mode(const AcDbImpDatabase& database);
// False when the drawing has no header to keep it.
bool set_tile_mode(AcDbImpDatabase& database, bool tiled);

// ---- layouts

// The LAYOUT of a space; no_record when it has none, as in drawings of R12 and before.
dxf::record_id layout_of(AcDbImpDatabase& database, dxf::record_id space);
// The name of the tab of a space.
std::wstring tab_name(AcDbImpDatabase& database, dxf::record_id space);
// The sheet that is current, or would be if the Model tab were not: a block record.
dxf::record_id current_sheet(AcDbImpDatabase& database);
// The space whose tab is current; makes a tab current by its name, false when there is none.
dxf::record_id current_tab(AcDbImpDatabase& database);
bool set_current_tab(AcDbImpDatabase& database, std::wstring_view name);
// The space that the user edits: model space also through a viewport of a sheet.
dxf::record_id current_space(AcDbImpDatabase& database);

// ---- viewports

// The viewports of a sheet, its own first.
std::vector<dxf::record_id> viewports(AcDbImpDatabase& database, dxf::record_id sheet);
// Whether a viewport is its sheet's own.
bool is_sheet_itself(const AcDbImpDatabase& database, dxf::record_id viewport);
// The number of a viewport, as CVPORT has it: 1 the sheet's own, others 2 and up; -1 for one of another sheet
// than the current one.
int viewport_number(AcDbImpDatabase& database, dxf::record_id viewport);
// With the Model tab the table's record, else the viewport of the sheet; no_record when there is none.
dxf::record_id viewport_by_number(AcDbImpDatabase& database, int number);
dxf::record_id current_viewport(AcDbImpDatabase& database);
int current_viewport_number(AcDbImpDatabase& database);
// Goes into a viewport; on a sheet 1 is paper space. False when there is none of this number that is on.
bool set_current_viewport(AcDbImpDatabase& database, int number);

} // namespace db
