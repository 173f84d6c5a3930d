// A drawing as its file holds it: the bytes, their records, how the file writes text and groups, and saving.
#pragma once

#include "base/result.h"
#include "host/dxf/binary_form.h"
#include "host/dxf/group_list.h"
#include "host/dxf/indexer.h"
#include "host/dxf/line_repair.h"
#include "host/dxf/record_table.h"
#include "host/dxf/repair.h"
#include "host/dxf/text_codec.h"
#include "sys/file.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace dxf {

class ACDB_PORT drawing {
public:
    // Reads a drawing file, ASCII or binary. Its text is in the encoding with the given number, or with 0 in
    // the one that its bytes tell. What can be repaired safely is repaired. On failure says what is wrong and
    // where.
    static base::result<std::unique_ptr<drawing>> open(const std::filesystem::path& file, int encoding = 0);
    // The same from bytes in memory.
    static base::result<std::unique_ptr<drawing>> from_bytes(std::string bytes, int encoding = 0);

    drawing(const drawing&) = delete;
    drawing& operator=(const drawing&) = delete;

    record_table& records() { return *records_; }
    const record_table& records() const { return *records_; }
    const drawing_parts& parts() const { return parts_; }
    const text_codec& codec() const { return codec_; }
    const group_style& style() const { return style_; }
    // The number in $ACADVER: 1009 for R12, 1015 for 2000; 1009 when the file does not tell.
    int version() const { return version_; }
    bool is_binary() const { return binary_ != nullptr; }

    // What was repaired when the file was read, in the order in which it was done.
    const std::vector<repair>& repairs() const { return repairs_; }
    // What a user should know of how the file was read, one line each: an encoding that is not the one that
    // the header names, and the repairs.
    std::vector<std::wstring> messages() const;

    // The TABLE record of a symbol table, by its DXF name ("LAYER"); no_record when the file has none.
    record_id table(std::string_view name) const;

    // The SECTION record of a part ("BLOCKS"), the TABLE record of a symbol table, and the dictionary of all
    // others. What the file lacks is made where the format wants it: it is saved as soon as something stands
    // in it. no_record when what should stand in front of it has no end, and for dictionaries before R13.
    record_id ensure_section(std::string_view name);
    record_id ensure_table(std::string_view name);
    record_id ensure_root_dictionary();
    // A BLOCK that was added.
    void add_block(record_id begin) { parts_.block_begins.push_back(begin); }

    // The first value of a header variable ("$CLAYER") as its bytes stand; nothing when the file has none.
    std::optional<std::string_view> header_value(std::string_view variable) const;
    // Sets the first value of a header variable, as a change that can be undone. A variable that the header
    // lacks is added at its end, with the given code. False when the file has no header.
    bool set_header_value(std::string_view variable, int code, std::string_view value);

    // The last record of a container before the one that ends it, where a new member goes: of a TABLE, of a
    // BLOCK, or of a SECTION. no_record when the container is not closed.
    record_id last_in(record_id container) const;

    // Whether a file gets a record: what was erased, or was made and nothing stands in it, it does not.
    bool is_saved(record_id id) const;
    // Writes the whole file: every span that no one touched as it stands. The old file stays until the new
    // one is whole. What counts as saved does not change: see record_table::mark_saved.
    // The file that was there is kept as `backup`, if that is given.
    base::result<void> write_file(const std::filesystem::path& file,
                                  const std::filesystem::path& backup = {}) const;
    // Gives the file's bytes piece by piece; stops when `put` answers false, and answers false then.
    bool write(const std::function<bool(std::string_view)>& put) const;

private:
    // How the bytes of the file are made of the text that is read.
    enum class line_form { feeds, returns }; // LF or CRLF; CR alone, which LF stands for in the text

    drawing() = default;
    base::result<void> read(padded_text bytes, int encoding);
    base::result<padded_text> text_of(padded_text bytes);
    base::result<void> index(padded_text text, int encoding);
    void shift_lines(const std::vector<text_edit>& edits);
    void take_encoding(int encoding);
    std::vector<std::size_t> lines_of(const std::vector<const char*>& places) const;
    std::wstring refused(const refusal& why) const;
    void take(const placed_repairs& repairs);
    std::string header_with_seed() const;
    void count_classes(std::unordered_map<record_id, padded_string>& texts) const;
    record_id make(record_id previous, std::initializer_list<group_list::fresh_group> groups,
                   record_kind kind);
    void remember_made(record_id first, record_id last);
    bool owner_is_gone(record_id id) const;

    sys::file_bytes file_; // the bytes of the file are in this,
    padded_string memory_; // or in that
    padded_string mended_; // the text, where it is another one than the bytes
    padded_text text_;
    line_form form_ = line_form::feeds;
    std::unique_ptr<binary_form> binary_; // null: the file is ASCII
    std::vector<std::size_t> in_binary_;  // numbers of the records in the binary form
    std::optional<record_table> records_;
    drawing_parts parts_;
    text_codec codec_;
    group_style style_;
    int version_ = 1009;
    std::wstring encoding_note_;
    std::vector<repair> repairs_;
    // Lines that repairs took out of the text, or put in (negative), by where that was.
    std::vector<std::pair<std::size_t, std::ptrdiff_t>> shifts_;
    record_id in_file_ = 0;                                 // records that the file had when it was read
    mutable std::unordered_map<record_id, record_id> last_; // of containers that were asked for
    mutable std::unordered_map<std::string_view, std::string_view> variables_; // first values of the header's
    mutable std::string_view variables_of_;                                    // this text of the header

    // Of what the file lacked and was made: the container that it belongs to, and what it was made as.
    struct made_part {
        record_id first, last;
        const char* text;
    };
    std::unordered_map<record_id, made_part> made_;
};

} // namespace dxf
