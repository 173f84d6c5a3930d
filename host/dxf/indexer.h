// Reads the text of a drawing once, from front to back, into a record table.
#pragma once

#include "base/result.h"
#include "host/dxf/record_header.h"
#include "host/dxf/record_table.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dxf {

// Where the parts of a drawing begin; no_record for what the file does not have.
struct drawing_parts {
    record_id header = no_record; // SECTION records
    record_id classes = no_record;
    record_id tables = no_record;
    record_id blocks = no_record;
    record_id entities = no_record;
    record_id objects = no_record;
    record_id end_of_file = no_record;
    std::vector<record_id> table_heads;  // TABLE records
    std::vector<record_id> block_begins; // BLOCK records
    bool high_bytes = false;             // whether any byte is above 127
};

// What a whole drawing does not have, as far as one look over it shows.
struct drawing_damage {
    // ---- in the lines; the records are not to be trusted before these are mended
    std::vector<record_id> lines;    // records with lines that are no group, or a group 0 that is a number
    bool zero_bytes = false;         // in the groups, not behind them
    const char* cut_group = nullptr; // the group that the end of the bytes cuts off

    // ---- in the records
    // Records without a text that were put in where the end of something is missing, and what follows them.
    struct missing_end {
        record_id id;
        record_id of; // what it ends: BLOCK, TABLE, SECTION, the entity with parts
        const char* at;
    };
    std::vector<missing_end> ends;
    std::vector<record_id> outside;       // entities that stand in no section
    std::vector<record_id> repeated;      // SECTIONs of blocks, entities or objects behind the first such one
    std::vector<record_id> needless_ends; // ENDSECs where no section is open
    std::vector<record_id> empty_handles; // records with a handle that is none
    record_id last = no_record;           // in which the text ends without an EOF
    bool open_line = false;               // and whether its last line lacks its end

    bool in_lines() const { return !lines.empty() || zero_bytes || cut_group != nullptr; }
};

// Why bytes are no drawing, and where.
struct refusal {
    const char* at;
    std::wstring why;
};

class ACDB_PORT indexer {
public:
    // `text` must stay where it is.
    indexer(padded_text text, record_table& records) : text_(text), records_(records) {}

    // Fills the records, with handles, layers and owners as they stand in the file. Why this is no drawing;
    // nothing when all went well.
    std::optional<refusal> run();
    drawing_parts& parts() { return parts_; }
    const drawing_damage& damage() const { return damage_; }

    // Gives handles to records that have none, and each record its owner: entities in a block belong to it;
    // those of the ENTITIES section to the block that group 330 names, and where it names none, to model or
    // paper space by group 67.
    void settle();

private:
    enum class region { outside, header, classes, tables, blocks, entities, objects, unknown };
    static region region_by_name(std::string_view name);

    record_id begin_record(const raw_group& group);
    void end_what_is_open(std::uint32_t type, const char* at);
    void make_end(std::uint32_t type, record_kind kind, record_id of, const char* at);
    record_kind kind_of(std::uint32_t type);
    void begin_section(record_id& part, record_id id);
    void finish_header(record_id id, const header_taker& taker);
    void end_of_text(record_id last, const raw_group& last_group, const group_reader& groups);
    void settle_owners();
    record_id space_block(std::string_view name);

    padded_text text_;
    record_table& records_;
    drawing_parts parts_;
    drawing_damage damage_;
    region region_ = region::outside;
    record_id section_ = no_record; // what is open: the SECTION,
    record_id table_ = no_record;   // the TABLE,
    record_id block_ = no_record;   // the BLOCK,
    record_id entity_ = no_record;  // the entity that a VERTEX, ATTRIB or SEQEND would belong to
    bool in_parts_ = false;         // and parts of it were met, but not their SEQEND
    bool any_section_ = false;
    std::vector<record_id> paper_; // entities with group 67 set
};

// Whether a text holds nothing that is to be read: blanks, line ends, and the mark that ended a file of old.
inline bool is_blank(std::string_view text) {
    return text.find_first_not_of(std::string_view(" \t\r\n\x1A\0", 6)) == text.npos;
}

// The number of the line in which `at` stands, counted from 1.
ACDB_PORT std::size_t line_number(std::string_view text, const char* at);

} // namespace dxf
