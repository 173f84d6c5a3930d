// The blocks of a drawing: where they begin, what stands in them, and which of them are spaces.
#pragma once

#include "gepnt3d.h"
#include "host/db/core/imp_database.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace db {

class ACDB_PORT blocks {
public:
    explicit blocks(AcDbImpDatabase& database) : database_(database) {}

    // The record of a block, also of model space in drawings that have no record for it; no_record when there
    // is none of that name. The same by the bytes with which a reference names it.
    dxf::record_id find(std::wstring_view name) const;
    dxf::record_id find_bytes(std::string_view name);
    // Its BLOCK; no_record when the file has none.
    dxf::record_id begin_of(dxf::record_id block);
    // Its entities in the order of the file, parts left out, erased ones too.
    std::vector<dxf::record_id> entities(dxf::record_id block);
    // What a reference to a block draws of it: not the definitions of attributes that each reference fills,
    // nothing that is erased.
    std::vector<dxf::record_id> drawn_of(dxf::record_id block);
    // The point of a block that a reference puts at its position.
    AcGePoint3d base_of(dxf::record_id block);
    // Whether a block of this name is model space or a sheet.
    static bool is_space_name(std::wstring_view block);
    // Whether an entity, or the entity that a part belongs to, stands in model space or on a sheet.
    bool in_space(dxf::record_id entity);

    // Erases what stands in a block with it, and brings back what was erased so.
    void set_contents_erased(dxf::record_id block, bool erased);

private:
    // BLOCKs by the handles of their records.
    using begins = std::unordered_multimap<std::uint64_t, dxf::record_id>;

    std::pair<begins::const_iterator, begins::const_iterator> begins_of(dxf::record_id block);

    AcDbImpDatabase& database_;
    begins begins_;
    std::size_t begins_read_ = 0;                                   // of the drawing's list of them
    std::unordered_map<std::string_view, dxf::record_id> by_bytes_; // bytes that lie in records
    std::size_t names_read_ = 0;                                    // revision of the names of symbol tables
    std::unordered_map<dxf::record_id, std::vector<dxf::record_id>> erased_with_; // with a block
    std::vector<signed char> spaces_; // by number of owner: 1 a space, 0, or -1 for not asked yet
};

} // namespace db
