// Copies of entities in another drawing, with what they need there.
#pragma once

#include "dbsymtb.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/table_kind.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace db {

// What the other drawing has under the same name stays as it is there. With a prefix ("plan") names of
// layers, styles, linetypes and blocks become "plan$0$name", as binding a reference names them.
class transfer {
public:
    transfer(AcDbImpDatabase& from, AcDbImpDatabase& to, std::wstring prefix = {})
        : from_(from), to_(to), prefix_(std::move(prefix)) {}

    // Puts a copy of an entity into a block of the other drawing, which is open for write. Null for one that
    // holds on to other objects of its drawing, or that the other drawing can not hold: it is counted.
    AcDbObjectId copy_entity(dxf::record_id entity, AcDbBlockTableRecord& target);
    // The same for all that is in a block.
    void copy_entities(dxf::record_id block, AcDbObjectId target);

    // What was left out, a line for each type.
    std::vector<std::wstring> told() const;

private:
    using name_key = std::pair<table_kind, std::wstring>;

    AcDbObjectId try_copy(dxf::record_id entity, AcDbBlockTableRecord& target);
    bool settle(AcDbImpObject& copy);
    bool settle_handles(AcDbImpObject& copy);
    std::wstring name_there(table_kind kind, const std::wstring& name) const;
    dxf::record_id entry_of(std::uint64_t handle);
    dxf::record_id ensure(table_kind kind, const std::wstring& name);
    dxf::record_id copy_block(dxf::record_id old, const std::wstring& name, const name_key& key);
    dxf::record_id copy_entry(table_kind kind, dxf::record_id old, const std::wstring& name);

    AcDbImpDatabase& from_;
    AcDbImpDatabase& to_;
    std::wstring prefix_;
    std::map<name_key, dxf::record_id> settled_;
    std::map<std::string, std::size_t> left_out_;
};

} // namespace db
