// Where the groups of a drawing name the records of its symbol tables: what follows when one gets another
// name, and which are in use. References by handle follow by themselves.
#pragma once

#include "dbmain.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/table_kind.h"

#include <functional>
#include <string>
#include <string_view>

namespace db {

// Whether every drawing has a record of this name, which keeps it: layer 0, linetypes ByLayer, ByBlock and
// Continuous, style Standard, application ACAD, the spaces, what is anonymous.
bool is_fixed_name(table_kind kind, std::wstring_view name);

// Takes out of the list all that must not be erased: what is in use, what every drawing has, and what is no
// record of a symbol table.
void keep_purgeable(AcDbImpDatabase& database, AcDbObjectIdArray& ids);

// Calls `found` with the table and the index of the group for each group of a record that names an entry of a
// symbol table; and with the table, the variable, its group code and its value for each variable of the
// header that does.
void for_names(const AcDbImpDatabase& database, dxf::record_id record, const dxf::group_list& groups,
               const std::function<void(table_kind, std::size_t)>& found);
void for_header_names(const AcDbImpDatabase& database,
                      const std::function<void(table_kind, const std::string& variable, int code,
                                               const std::string& value)>& found);

} // namespace db
