// Writes records as files of 2000 and later hold them: with handle, owner and markers, without the groups
// that the version does not know. A record that has all of it stays byte for byte as it is.
#pragma once

#include "host/version/conversion.h"
#include "host/version/dropped_groups.h"
#include "host/version/modern_plan.h"
#include "host/version/record_groups.h"

namespace version {

class modern_records {
public:
    modern_records(conversion& job, const modern_plan& plan);

    // An entity, a part of one, a BLOCK or an ENDBLK.
    void entity(dxf::record_id id);
    // An entry of a symbol table, whose TABLE has the given handle.
    void entry(dxf::record_id id, std::uint64_t table);
    // An object that is no root dictionary, a TABLE.
    void other(dxf::record_id id);

private:
    void marked(dxf::record_id id, std::uint64_t handle, std::uint64_t owner);
    void unmarked_entity(dxf::record_id id, std::uint64_t handle, std::uint64_t owner);
    void unmarked_entry(dxf::record_id id, std::uint64_t table, std::string_view marker);
    void entry_data(std::string_view type, std::size_t first, std::size_t last);
    void begin(std::string_view type, std::uint64_t handle, std::uint64_t owner);
    void viewport(dxf::record_id id, std::uint64_t owner);
    void dimension_style_name(int code, std::string_view name);
    void put(std::size_t group);
    void put_at_elevation(std::size_t group, std::string_view elevation);
    void put_rest(std::size_t first);

    conversion& job_;
    const modern_plan& plan_;
    dropped_groups dropped_;
    record_groups groups_; // of the record that is written
    std::int64_t polyline_flags_ = 0;
};

} // namespace version
