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
    // The record of the layer on which an entity stands; no_record when the drawing has none of its name.
    dxf::record_id record_of(dxf::record_id entity);
    // The bytes with which a layer is named: as its own record spells it. Those of a record live as long as
    // it.
    std::string bytes_of(std::wstring_view name) const;
    std::string_view bytes_of(dxf::record_id layer);
    // For each number of record_table::layer_names(), whether it names the layer (compared without case).
    std::vector<bool> numbers_of(std::wstring_view name);
    // The records that may name a layer in their extended data, erased ones too.
    const std::vector<dxf::record_id>& name_holders();
    // Whether an entity stands on a locked layer.
    bool is_locked(dxf::record_id entity);
    // The layer that the drawing calls current.
    dxf::record_id current() const;

private:
    // What the drawing says of a layer name that entities have.
    struct named_layer {
        bool known = false; // the others are
        bool locked = false;
        dxf::record_id record = dxf::no_record;
    };

    const named_layer& named_by(dxf::record_id entity);

    AcDbImpDatabase& database_;
    std::unordered_map<std::wstring, std::vector<std::uint32_t>> numbers_; // by folded name
    std::uint32_t names_read_ = 0;
    std::vector<bool> is_holder_; // by record
    std::vector<dxf::record_id> holders_;
    std::size_t journal_read_ = 0;       // for those
    std::vector<named_layer> named_;     // by number of record_table::layer_names()
    std::size_t entries_of_named_ = 0;   // the number of changes of entries until then
    const char* spelled_text_ = nullptr; // of the layer whose bytes were asked for last
    std::string_view spelled_;
};

} // namespace db
