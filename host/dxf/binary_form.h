// Binary drawings. Binary is a form of the file only: its bytes are turned into the text that an ASCII
// drawing would have (LF, no padding), which all the rest reads, and on saving back into bytes. Records that
// were not touched are given back from the file's bytes.
#pragma once

#include "adesk.h"
#include "base/result.h"
#include "host/dxf/padded_text.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dxf {

class ACDB_PORT binary_form {
public:
    // Whether a file that begins so is a binary drawing.
    static bool recognises(std::string_view bytes);

    // Reads a binary drawing; `bytes` must outlive this. Of a file whose end is missing what is whole is
    // read. On failure says at which byte something is wrong.
    base::result<void> read(std::string_view bytes);

    // The drawing as text, to the end of its last whole group. Stays where it is.
    padded_text text() const { return text_.view(); }
    // Where the group begins that the end of the file cuts off, or the file's size when the drawing ended
    // without its EOF, counted in bytes; npos when it is whole.
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);
    std::size_t cut_at() const { return cut_at_; }

    // What stands before the groups.
    std::string_view mark() const { return bytes_.substr(0, records_.front().bytes); }

    // ---- records: what stands before the first group 0 is number 0

    // The record that has this text, by the place where it begins; npos when none has.
    std::size_t record_at(std::string_view text) const;
    // The first byte in the file of the record in which a place of the text lies.
    std::size_t byte_of(const char* at) const;
    std::string_view record_text(std::size_t record) const;
    // Its bytes in the file; those of the last one go on to the file's end.
    std::string_view record_bytes(std::size_t record) const;

    // The bytes of a text. Groups that stand in `record` too (npos: none) have the bytes that they have
    // there.
    std::string bytes_of(padded_text text, std::size_t record) const;

private:
    std::size_t record_around(std::size_t offset) const;

    struct place {
        std::size_t text;  // where a record begins in the text
        std::size_t bytes; // and in the file
    };

    std::string_view bytes_;
    bool wide_codes_ = true; // group codes of two bytes, since R13; before it one byte, or 255 and two
    padded_string text_;
    std::size_t cut_at_ = npos;
    std::vector<place> records_;
};

} // namespace dxf
