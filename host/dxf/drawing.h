// A drawing as its file holds it: the bytes, their records, how the file writes text and groups, and saving.
#pragma once

#include "base/result.h"
#include "host/dxf/group_list.h"
#include "host/dxf/indexer.h"
#include "host/dxf/record_table.h"
#include "host/dxf/text_codec.h"
#include "sys/file.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace dxf {

class ACDB_PORT drawing {
public:
    // Reads a drawing file. On failure says what is wrong and where.
    static base::result<std::unique_ptr<drawing>> open(const std::filesystem::path& file);
    // The same from bytes in memory.
    static base::result<std::unique_ptr<drawing>> from_bytes(std::string bytes);

    drawing(const drawing&) = delete;
    drawing& operator=(const drawing&) = delete;

    record_table& records() { return records_; }
    const record_table& records() const { return records_; }
    const drawing_parts& parts() const { return parts_; }
    const text_codec& codec() const { return codec_; }
    const group_style& style() const { return style_; }
    // The number in $ACADVER: 1009 for R12, 1015 for 2000; 1009 when the file does not tell.
    int version() const { return version_; }

    // The TABLE record of a symbol table, by its DXF name ("LAYER"); no_record when the file has none.
    record_id table(std::string_view name) const;

    // The first value of a header variable ("$CLAYER") as its bytes stand; nothing when the file has none.
    std::optional<std::string_view> header_value(std::string_view variable) const;
    // Sets the first value of a header variable, as a change that can be undone. A variable that the header
    // lacks is added at its end, with the given code. False when the file has no header.
    bool set_header_value(std::string_view variable, int code, std::string_view value);

    // The last record of a container before the one that ends it, where a new member goes: of a TABLE, of a
    // BLOCK, or of a SECTION. no_record when the container is not closed.
    record_id last_in(record_id container) const;

    // // Writes the whole file: every span that no one touched as it stands. The old file stays until the new
    // one is whole. What counts as saved does not change: see record_table::mark_saved.
    base::result<void> write_file(const std::filesystem::path& file) const;
    // Gives the file's bytes piece by piece; stops when `put` answers false, and answers false then.
    bool write(const std::function<bool(std::string_view)>& put) const;

private:
    drawing() = default;
    base::result<void> read(std::string_view bytes);
    std::string header_with_seed() const;

    sys::file_bytes file_; // the bytes are in this,
    std::string memory_;   // or in that
    std::string_view bytes_;
    record_table records_;
    drawing_parts parts_;
    text_codec codec_;
    group_style style_;
    int version_ = 1009;
    record_id in_file_ = 0;                                 // records that the file had when it was read
    mutable std::unordered_map<record_id, record_id> last_; // of containers that were asked for
};

} // namespace dxf
