// The memo file of a dBASE or FoxPro table: long texts in blocks, which the table's rows name by number.
#pragma once

#include "base/result.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace base {

enum class dbase_memo_form {
    none,
    dbase3, // ".dbt": blocks of 512 bytes, a text ends at the byte 0x1A
    dbase4, // ".dbt": blocks of any size, a text begins with FF FF 08 00 and its length
    foxpro, // ".fpt": blocks of any size, a text begins with its kind and its length, big end first
};

class dbase_memo {
public:
    // A file without texts; `form` is not none.
    static dbase_memo create(dbase_memo_form form);

    // The bytes of a file in that form, which is not none. Fails when they are too few or tell no block size.
    static result<dbase_memo> parse(dbase_memo_form form, std::string bytes);

    // All of the file as it is now; what was read and not changed gives the same bytes.
    const std::string& bytes() const { return bytes_; }

    // The bytes of the text that begins at a block, until the next call of append(). Fails when the block is
    // not in the file, no text begins there, or it has no end.
    result<std::string_view> text(std::uint64_t block) const;

    // Adds a text and gives its block. Texts that are there stay as they are, so that a table of before the
    // change still finds its own. Fails when the file has been cut, when the text cannot stand in this form,
    // or there are too many blocks.
    result<std::uint32_t> append(std::string_view text);

private:
    dbase_memo(dbase_memo_form form, std::string bytes) : form_(form), bytes_(std::move(bytes)) {}

    dbase_memo_form form_;
    std::size_t block_size_ = 512;
    std::string bytes_;
};

} // namespace base
