// What a drawing of 2000 or later must have and the source may lack: records of blocks, spaces, layouts,
// dictionaries, entries for the names that are used; with the handles that they get.
#pragma once

#include "host/version/conversion.h"

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

namespace version {

// The symbol tables, in the order in which files have them.
inline constexpr std::array<std::string_view, 9> table_names = {
    "VPORT", "LTYPE", "LAYER", "STYLE", "VIEW", "UCS", "APPID", "DIMSTYLE", "BLOCK_RECORD"};

struct modern_plan {
    explicit modern_plan(conversion& job);

    // Model space and the sheets.
    struct space {
        std::string name; // "*Model_Space"
        std::uint64_t record = 0;
        dxf::record_id begin = dxf::no_record; // its BLOCK
        bool has_record = false;
        std::uint64_t layout = 0; // of a LAYOUT that is made; 0: none is
    };
    std::vector<space> spaces; // model space first

    // BLOCKs without a record; their record has the handle that entities name as their owner.
    std::unordered_map<dxf::record_id, std::uint64_t> without_record; // and the BLOCK gets this one
    // Records of blocks by folded name.
    std::unordered_map<std::wstring, std::uint64_t> block_records;

    std::array<dxf::record_id, table_names.size()> tables{}; // TABLE records
    std::array<std::uint64_t, table_names.size()> table_handles{};
    // Names that are used and that no entry has, by table, as bytes of the source or plain ASCII.
    std::array<std::vector<std::string>, table_names.size()> missing;
    std::unordered_map<std::wstring, std::uint64_t> text_styles; // by folded name

    dxf::record_id root = dxf::no_record;
    std::uint64_t root_handle = 0;
    // Dictionaries that are made; 0: the source has them.
    std::uint64_t groups = 0;
    std::uint64_t layouts = 0;
    std::uint64_t plot_styles = 0;
    std::uint64_t normal_style = 0;

    // The handle of a space's LAYOUT that is made, by that of its block's record; 0: none is.
    std::uint64_t layout_of(std::uint64_t block_record) const;
    std::size_t table(std::string_view name) const;

private:
    void plan_blocks(conversion& job);
    void plan_tables(conversion& job);
    void plan_names(conversion& job);
    void plan_objects(conversion& job);
};

// "*Model_Space" for that and for "$MODEL_SPACE", likewise for paper space; other names as they are.
std::string_view modern_block_name(std::string_view name);

} // namespace version
