// A dBASE III, dBASE IV or FoxPro table in memory, with its memo file. The bytes of the file are kept as they
// are and changed in place, so that what was not changed is written back as it stood; index files are not
// looked at. Rows and fields count from 0, in messages from 1.
#pragma once

#include "base/dbase_memo.h"
#include "base/result.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace base {

// How text stands in the table's bytes. `decode` takes any bytes; `encode` appends the bytes of one character
// and says false when there are none.
struct dbase_encoding {
    std::function<std::wstring(std::string_view)> decode;
    std::function<bool(char32_t, std::string&)> encode;
};

// The types are C text, N and F numbers, L truth, D date, M memo. Fields of other types are kept as bytes.
struct dbase_field {
    std::wstring name;
    char type = 'C';
    std::size_t length = 0;
    std::size_t decimals = 0;
};

// What a table's header says before the table is parsed: whether it is of a version that we know, the form of
// the memo file that belongs to it if it has memos, and the Windows number of its code page, 0 when it names
// none. Any bytes may be given.
bool is_dbase_version(std::string_view table);
dbase_memo_form memo_form_of_dbase(std::string_view table);
int code_page_of_dbase(std::string_view table);

class dbase_table {
public:
    // The table of a file's bytes and of its memo file's, if there is one and the table has memos. Fails with
    // what is wrong and where when the header does not hold together or the file ends too early.
    static result<dbase_table> parse(std::string table, std::optional<std::string> memo,
                                     dbase_encoding encoding);

    // A table without rows. `form` is the memo file's when a field is a memo, otherwise it is not looked at;
    // `language_driver` is the header's byte for the code page, `today` its date. Fails when a field cannot
    // be.
    static result<dbase_table> create(std::vector<dbase_field> fields, dbase_memo_form form,
                                      unsigned char language_driver, std::chrono::year_month_day today,
                                      dbase_encoding encoding);

    // The files' bytes as they are now; no memo file gives null.
    const std::string& bytes() const { return bytes_; }
    const std::string* memo_bytes() const { return memo_ ? &memo_->bytes() : nullptr; }
    dbase_memo_form memo_form() const { return memo_form_of_dbase(bytes_); }

    const std::vector<dbase_field>& fields() const { return fields_; }

    // The first field of that name, compared without case.
    std::optional<std::size_t> find_field(std::wstring_view name) const;

    // Deleted rows count too.
    std::size_t row_count() const { return row_count_; }

    bool is_deleted(std::size_t row) const;

    // The text of a field of any type as it stands in the row, without the blanks at its end. Empty when
    // there is no such row or field.
    std::wstring text(std::size_t row, std::size_t field) const;

    // The value of a field N or F, L, D. Nothing when it is blank, is none, or the field is of another type.
    std::optional<double> number(std::size_t row, std::size_t field) const;
    std::optional<bool> logical(std::size_t row, std::size_t field) const;
    std::optional<std::chrono::year_month_day> date(std::size_t row, std::size_t field) const;

    // The text of a memo, empty when the row has none. Fails when the field is no memo or the memo file does
    // not hold what the row names.
    result<std::wstring> memo(std::size_t row, std::size_t field) const;

    // Each of these changes one value, no other byte of the table, and none at all when the value is that
    // already; no value makes the field blank. They fail, and change nothing, when there is no such row or
    // field, the field is of another type, or the value does not fit into it: nothing is cut.
    result<void> set_text(std::size_t row, std::size_t field, std::wstring_view text);
    result<void> set_number(std::size_t row, std::size_t field, std::optional<double> value);
    result<void> set_logical(std::size_t row, std::size_t field, std::optional<bool> value);
    result<void> set_date(std::size_t row, std::size_t field,
                          std::optional<std::chrono::year_month_day> value);

    // The same for a memo. A new text goes to the end of the memo file; the old one stays there, unused.
    result<void> set_memo(std::size_t row, std::size_t field, std::wstring_view text);

    // Marks a row as deleted, or takes the mark away. A row that is not there fails.
    result<void> set_deleted(std::size_t row, bool deleted);

    // Adds a blank row behind the last one and gives its number. Fails when there are too many.
    result<std::size_t> append_row();

private:
    dbase_table() = default;

    result<void> read_fields();
    bool is_visual() const;
    char type_of(std::size_t field) const;
    std::string_view cell(std::size_t row, std::size_t field) const;
    std::wstring place(std::size_t row, std::size_t field) const;
    result<void> check_type(std::size_t row, std::size_t field, std::string_view types) const;
    result<void> put(std::size_t row, std::size_t field, std::string_view value, bool to_the_right);
    result<std::uint64_t> memo_block(std::size_t row, std::size_t field) const;

    std::string bytes_;
    std::optional<dbase_memo> memo_;
    dbase_encoding encoding_;
    std::vector<dbase_field> fields_;
    std::vector<std::size_t> offsets_; // of the fields in a row
    std::size_t header_size_ = 0;
    std::size_t row_size_ = 0;
    std::size_t row_count_ = 0;
};

} // namespace base
