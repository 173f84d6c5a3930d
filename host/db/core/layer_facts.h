// What is known of the layers of a drawing by the names that entities have for them. It follows the journal
// of changed records.
#pragma once

#include "host/db/core/imp_database.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace db {

class ACDB_PORT layer_facts {
public:
    explicit layer_facts(AcDbImpDatabase& database) : database_(database) {}

    // The name of an entity's layer.
    std::wstring name_of(dxf::record_id entity) const;
    // The bytes with which a layer is named: as its own record spells it.
    std::string bytes_of(std::wstring_view name) const;
    // For each number of record_table::layer_names(), whether it names the layer (compared without case).
    std::vector<bool> numbers_of(std::wstring_view name);
    // The records that may name a layer in their extended data, erased ones too.
    const std::vector<dxf::record_id>& name_holders();
    // Whether an entity stands on a locked layer.
    bool is_locked(dxf::record_id entity);
    // The layer that the drawing calls current.
    dxf::record_id current() const;

private:
    AcDbImpDatabase& database_;
    std::unordered_map<std::wstring, std::vector<std::uint32_t>> numbers_; // by folded name
    std::uint32_t names_read_ = 0;
    std::vector<bool> is_holder_; // by record
    std::vector<dxf::record_id> holders_;
    std::size_t journal_read_ = 0;    // for those
    std::vector<signed char> locked_; // by number of layer name: 1, 0, or -1 for not asked yet
    std::size_t journal_of_locks_ = 0;
    std::size_t names_of_locks_ = 0; // revision of the names of symbol tables
};

} // namespace db
