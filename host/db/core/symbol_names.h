// The symbol tables of a drawing and the names of their entries. What is known follows the journal of changed
// records.
#pragma once

#include "host/db/core/imp_database.h"
#include "host/db/core/table_kind.h"

#include <array>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class AcRxClass;

namespace db {

// The classes of a table, and of an entry by the type of its record; AcDbObject for types that no table has.
AcRxClass* class_of_table(table_kind kind);
AcRxClass* class_of_entry(std::string_view type);

class ACDB_PORT symbol_names {
public:
    explicit symbol_names(AcDbImpDatabase& database);

    // The record of a table: the file's TABLE, or one that is made for it.
    dxf::record_id table(table_kind kind);
    table_kind kind_of_table(dxf::record_id table) const;
    // Whether blocks have records of their own: before R13 a BLOCK is its own.
    bool has_block_records() const;
    // Where a new entry goes: behind this record. no_record when the drawing has no such table.
    dxf::record_id place_for_entry(table_kind kind);

    // A table's entries in order, erased ones too.
    std::vector<dxf::record_id> entries(table_kind kind) const;
    // The entry of a name, compared without case; no_record when there is none. Erased ones are not found.
    dxf::record_id find(table_kind kind, std::wstring_view name);
    std::wstring name_of(dxf::record_id entry) const;
    // Whether a record is an entry of a symbol table, and of which.
    bool is_entry(dxf::record_id record, table_kind& kind) const;
    // Whether an erased entry can not come back since another one has its name.
    bool is_taken(dxf::record_id entry);

    // Another number after each change of what find() answers; and after each change of an entry.
    std::size_t revision();
    std::size_t changes();

private:
    struct names {
        bool known = false;
        bool doubles = false;                                             // several entries have one name
        std::unordered_map<std::wstring, dxf::record_id> by_name;         // folded
        std::unordered_map<dxf::record_id, const std::wstring*> by_entry; // keys of the other
        std::wstring asked; // what find() was asked last, and answered, at that revision
        dxf::record_id answer = dxf::no_record;
        std::size_t answered = 0;
    };

    void follow_changes();
    void look_again(dxf::record_id record);
    static bool add(names& known, const std::wstring& name, dxf::record_id entry);

    AcDbImpDatabase& database_;
    std::array<dxf::record_id, table_kinds> implied_tables_;
    std::array<names, table_kinds> names_;
    bool knows_any_ = false; // whether names of a table are known
    std::size_t journal_read_ = 0;
    dxf::record_id records_seen_ = 0;
    std::size_t revision_ = 1;
    std::size_t changes_ = 0;
};

} // namespace db
