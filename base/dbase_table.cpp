#include "base/dbase_table.h"

#include "base/byte_order.h"
#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace base {

namespace {

constexpr std::size_t first_field = 32; // the header's own bytes, before the fields'
constexpr std::size_t field_entry_size = 32;
constexpr std::size_t field_name_size = 11;
constexpr char fields_end = '\x0D';
constexpr char table_end = '\x1A';
constexpr char deleted_mark = '*';

// Blanks and, as some writers fill with them, zeros.
std::string_view without_end(std::string_view text) {
    return text.substr(0, text.find_last_not_of(std::string_view(" \0", 2)) + 1);
}

std::string_view without_blanks(std::string_view text) {
    text = without_end(text);
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text;
}

std::wstring number_of(std::size_t value) {
    return std::to_wstring(value);
}

std::wstring in_quotes(std::wstring_view name) {
    return L"'" + std::wstring(name) + L"'";
}

result<std::string> encode(const dbase_encoding& encoding, std::wstring_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin = at;
        if (!encoding.encode(take_code_point(text, at), bytes))
            return failure{in_quotes(text.substr(begin, at - begin)) + L" is not in the table's code page"};
    }
    return bytes;
}

// What a field of one of our types may be. The length is that of the bytes in a row.
bool is_possible(const dbase_field& field, bool visual) {
    switch (field.type) {
    case 'L':
        return field.length == 1;
    case 'D':
        return field.length == 8;
    case 'M':
        return field.length == 10 || (visual && field.length == 4);
    default:
        return field.length > 0;
    }
}

std::wstring length_fault(const dbase_field& field) {
    const std::wstring type(1, static_cast<wchar_t>(static_cast<unsigned char>(field.type)));
    return L"field " + in_quotes(field.name) + L" of type " + type + L" cannot have a length of " +
           number_of(field.length);
}

} // namespace

result<dbase_table> dbase_table::parse(std::string table, std::optional<std::string> memo,
                                       dbase_encoding encoding) {
    dbase_table read;
    read.bytes_ = std::move(table);
    read.encoding_ = std::move(encoding);
    const std::string_view bytes = read.bytes_;
    if (bytes.size() < first_field)
        return failure{L"a dBASE table's header has at least 32 bytes, here are " + number_of(bytes.size())};
    if (!is_dbase_version(bytes))
        return failure{L"byte 0 is " + number_of(static_cast<unsigned char>(bytes[0])) +
                       L", which is no version of dBASE III, dBASE IV or FoxPro"};
    if (bytes[15] == 1)
        return failure{L"the table is encrypted (byte 15)"};
    read.row_count_ = little_endian(bytes, 4, 4);
    read.header_size_ = little_endian(bytes, 8, 2);
    read.row_size_ = little_endian(bytes, 10, 2);
    if (read.header_size_ < first_field || read.header_size_ > bytes.size())
        return failure{L"the header (byte 8) should have " + number_of(read.header_size_) +
                       L" bytes, the file has " + number_of(bytes.size())};
    if (auto fields = read.read_fields(); !fields)
        return fields.why();
    const std::size_t room = bytes.size() - read.header_size_;
    if (read.row_count_ > room / read.row_size_)
        return failure{L"the file ends at byte " + number_of(bytes.size()) + L", before the end of row " +
                       number_of(room / read.row_size_ + 1) + L" of " + number_of(read.row_count_)};
    const auto form = read.memo_form();
    const bool has_memos = std::any_of(read.fields_.begin(), read.fields_.end(),
                                       [](const dbase_field& field) { return field.type == 'M'; });
    if (memo && has_memos && form != dbase_memo_form::none) {
        auto parsed = dbase_memo::parse(form, std::move(*memo));
        if (!parsed)
            return parsed.why();
        read.memo_ = *std::move(parsed);
    }
    return read;
}

result<void> dbase_table::read_fields() {
    const std::string_view bytes = bytes_;
    std::size_t sum = 1; // the mark of deleted rows
    std::size_t wide_sum = 1;
    std::size_t at = first_field;
    // Some old writers leave the end mark out where the header ends.
    for (; at < header_size_ && bytes[at] != fields_end; at += field_entry_size) {
        const std::wstring number = number_of(fields_.size() + 1);
        if (header_size_ - at < field_entry_size)
            return failure{L"the list of fields has no end before the header's at byte " +
                           number_of(header_size_)};
        const std::string_view entry = bytes.substr(at, field_entry_size);
        const std::string_view name = entry.substr(0, std::min(entry.find('\0'), field_name_size));
        dbase_field field;
        field.name = encoding_.decode(without_end(name));
        field.type = entry[11];
        field.length = static_cast<unsigned char>(entry[16]);
        field.decimals = static_cast<unsigned char>(entry[17]);
        if (field.type < 'A' && !(field.type >= '0' && field.type <= '9'))
            return failure{L"field " + number + L" " + in_quotes(field.name) + L" (byte " +
                           number_of(at + 11) + L") has no type"};
        if (!is_possible(field, is_visual()) && !(field.type == 'C' && field.decimals != 0))
            return failure{length_fault(field) + L" (byte " + number_of(at + 16) + L")"};
        sum += field.length;
        wide_sum += field.length + (field.type == 'C' ? field.decimals * 256 : 0);
        fields_.push_back(std::move(field));
    }
    if (fields_.empty())
        return failure{L"the table has no fields"};
    // FoxPro's texts may be longer than 255: then their length goes on where numbers have their decimals.
    if (sum != row_size_ && wide_sum == row_size_) {
        sum = wide_sum;
        for (dbase_field& field : fields_)
            field.length += field.type == 'C' ? field.decimals * 256 : 0;
    }
    if (sum != row_size_)
        return failure{L"the fields and the mark of deleted rows have " + number_of(sum) +
                       L" bytes together, a row (byte 10) has " + number_of(row_size_)};
    std::size_t offset = 1;
    for (dbase_field& field : fields_) {
        offsets_.push_back(offset);
        offset += field.length;
        if (field.type == 'C')
            field.decimals = 0;
    }
    return {};
}

result<dbase_table> dbase_table::create(std::vector<dbase_field> fields, dbase_memo_form form,
                                        unsigned char language_driver, std::chrono::year_month_day today,
                                        dbase_encoding encoding) {
    dbase_table made;
    made.encoding_ = std::move(encoding);
    std::size_t row_size = 1;
    bool has_memo = false;
    std::string entries;
    for (const dbase_field& field : fields) {
        std::string entry(field_entry_size, '\0');
        const auto encoded = encode(made.encoding_, field.name);
        if (!encoded)
            return encoded.why().behind(L"field name " + in_quotes(field.name) + L": ");
        const std::string& name = *encoded;
        if (name.empty() || name.size() >= field_name_size || name.find('\0') != name.npos)
            return failure{L"the field name " + in_quotes(field.name) + L" must have 1 to 10 bytes"};
        if (std::string_view("CNFLDM").find(field.type) == std::string_view::npos)
            return failure{L"field " + in_quotes(field.name) + L" must be of type C, N, F, L, D or M"};
        const bool is_number = field.type == 'N' || field.type == 'F';
        const std::size_t longest = is_number ? 20 : 254;
        if (!is_possible(field, false) || field.length > longest)
            return failure{length_fault(field)};
        if (field.decimals != 0 && (!is_number || field.decimals + 2 > field.length))
            return failure{L"field " + in_quotes(field.name) + L" cannot have " + number_of(field.decimals) +
                           L" decimals"};
        entry.replace(0, name.size(), name);
        entry[11] = field.type;
        entry[16] = static_cast<char>(field.length);
        entry[17] = static_cast<char>(field.decimals);
        entries += entry;
        has_memo = has_memo || field.type == 'M';
        made.offsets_.push_back(row_size);
        row_size += field.length;
    }
    const std::size_t header_size = first_field + entries.size() + 1;
    if (fields.empty() || fields.size() > 255 || row_size > 0xFFFF)
        return failure{L"a table has 1 to 255 fields and rows of at most 65535 bytes"};
    if (has_memo && form == dbase_memo_form::none)
        return failure{L"a table with a memo field needs a memo file"};

    std::string& header = made.bytes_;
    header.assign(first_field, '\0');
    header[0] = 0x03;
    if (has_memo) {
        header[0] = static_cast<char>(form == dbase_memo_form::dbase3   ? 0x83
                                      : form == dbase_memo_form::dbase4 ? 0x8B
                                                                        : 0xF5);
        made.memo_ = dbase_memo::create(form);
    }
    header[1] = static_cast<char>(static_cast<int>(today.year()) - 1900);
    header[2] = static_cast<char>(static_cast<unsigned>(today.month()));
    header[3] = static_cast<char>(static_cast<unsigned>(today.day()));
    put_little_endian(header, 8, 2, static_cast<std::uint32_t>(header_size));
    put_little_endian(header, 10, 2, static_cast<std::uint32_t>(row_size));
    header[29] = static_cast<char>(language_driver);
    header += entries;
    header += fields_end;
    header += table_end;
    made.fields_ = std::move(fields);
    made.header_size_ = header_size;
    made.row_size_ = row_size;
    return made;
}

std::optional<std::size_t> dbase_table::find_field(std::wstring_view name) const {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (equal_no_case(fields_[i].name, name))
            return i;
    }
    return std::nullopt;
}

bool dbase_table::is_visual() const {
    return bytes_[0] >= 0x30 && bytes_[0] <= 0x32;
}

char dbase_table::type_of(std::size_t field) const {
    return field < fields_.size() ? fields_[field].type : '\0';
}

// Empty when there is no such row or field.
std::string_view dbase_table::cell(std::size_t row, std::size_t field) const {
    if (row >= row_count_ || field >= fields_.size())
        return {};
    return std::string_view(bytes_).substr(header_size_ + row * row_size_ + offsets_[field],
                                           fields_[field].length);
}

// Where a fault is, for messages.
std::wstring dbase_table::place(std::size_t row, std::size_t field) const {
    return L"row " + number_of(row + 1) + L", field " +
           (field < fields_.size() ? in_quotes(fields_[field].name) : number_of(field + 1)) + L": ";
}

result<void> dbase_table::check_type(std::size_t row, std::size_t field, std::string_view types) const {
    if (row >= row_count_ || field >= fields_.size())
        return failure{place(row, field) + L"the table has " + number_of(row_count_) + L" rows and " +
                       number_of(fields_.size()) + L" fields"};
    if (types.find(fields_[field].type) == types.npos)
        return failure{place(row, field) + L"a field of type " +
                       std::wstring(1, static_cast<wchar_t>(static_cast<unsigned char>(type_of(field)))) +
                       L" has no such value"};
    return {};
}

bool dbase_table::is_deleted(std::size_t row) const {
    return row < row_count_ && bytes_[header_size_ + row * row_size_] == deleted_mark;
}

std::wstring dbase_table::text(std::size_t row, std::size_t field) const {
    return encoding_.decode(without_end(cell(row, field)));
}

std::optional<double> dbase_table::number(std::size_t row, std::size_t field) const {
    if (type_of(field) != 'N' && type_of(field) != 'F')
        return std::nullopt;
    return parse_real(without_blanks(cell(row, field)));
}

std::optional<bool> dbase_table::logical(std::size_t row, std::size_t field) const {
    const std::string_view value = cell(row, field);
    if (type_of(field) != 'L' || value.empty())
        return std::nullopt;
    if (std::string_view("TtYy").find(value[0]) != value.npos)
        return true;
    if (std::string_view("FfNn").find(value[0]) != value.npos)
        return false;
    return std::nullopt;
}

std::optional<std::chrono::year_month_day> dbase_table::date(std::size_t row, std::size_t field) const {
    const std::string_view value = cell(row, field);
    if (type_of(field) != 'D' || value.size() != 8 || value.find_first_not_of("0123456789") != value.npos)
        return std::nullopt;
    unsigned digits = 0;
    std::from_chars(value.data(), value.data() + value.size(), digits);
    const std::chrono::year_month_day date(std::chrono::year(static_cast<int>(digits / 10000)),
                                           std::chrono::month(digits / 100 % 100),
                                           std::chrono::day(digits % 100));
    return date.ok() ? std::optional(date) : std::nullopt;
}

// 0 when the row has no memo.
result<std::uint64_t> dbase_table::memo_block(std::size_t row, std::size_t field) const {
    if (auto right = check_type(row, field, "M"); !right)
        return right.why();
    const std::string_view value = cell(row, field);
    if (value.size() == 4)
        return std::uint64_t{little_endian(value, 0, 4)};
    const std::string_view digits = without_blanks(value);
    std::uint64_t block = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), block);
    if (read.ptr != digits.data() + digits.size())
        return failure{place(row, field) + in_quotes(encoding_.decode(digits)) +
                       L" is no number of a memo block"};
    return block;
}

result<std::wstring> dbase_table::memo(std::size_t row, std::size_t field) const {
    const auto block = memo_block(row, field);
    if (!block)
        return block.why();
    if (*block == 0)
        return std::wstring();
    if (!memo_)
        return failure{place(row, field) + L"the table's memo file is missing"};
    const auto text = memo_->text(*block);
    if (!text)
        return text.why().behind(place(row, field));
    return encoding_.decode(*text);
}

// The value among blanks; fails when the field is too short for it.
result<void> dbase_table::put(std::size_t row, std::size_t field, std::string_view value, bool to_the_right) {
    const std::size_t length = fields_[field].length;
    if (value.size() > length)
        return failure{place(row, field) + in_quotes(encoding_.decode(value)) + L" has " +
                       number_of(value.size()) + L" bytes, the field has " + number_of(length)};
    const std::size_t begin = header_size_ + row * row_size_ + offsets_[field];
    bytes_.replace(begin, length, length, ' ');
    bytes_.replace(begin + (to_the_right ? length - value.size() : 0), value.size(), value);
    return {};
}

result<void> dbase_table::set_text(std::size_t row, std::size_t field, std::wstring_view text) {
    if (auto right = check_type(row, field, "C"); !right)
        return right;
    if (this->text(row, field) == text)
        return {};
    const auto bytes = encode(encoding_, text);
    if (!bytes)
        return bytes.why().behind(place(row, field));
    return put(row, field, *bytes, false);
}

result<void> dbase_table::set_number(std::size_t row, std::size_t field, std::optional<double> value) {
    if (auto right = check_type(row, field, "NF"); !right)
        return right;
    if (!value)
        return put(row, field, {}, true);
    if (number(row, field) == value)
        return {};
    if (!std::isfinite(*value))
        return failure{place(row, field) + L"no field can hold a number that is not finite"};
    // The longest has 309 digits before the point.
    char text[600];
    const int decimals = static_cast<int>(fields_[field].decimals);
    const auto* const end =
        std::to_chars(std::begin(text), std::end(text), *value, std::chars_format::fixed, decimals).ptr;
    std::string_view digits(text, static_cast<std::size_t>(end - text));
    if (digits[0] == '-' && digits.find_first_not_of("-0.") == digits.npos)
        digits.remove_prefix(1);
    return put(row, field, digits, true);
}

result<void> dbase_table::set_logical(std::size_t row, std::size_t field, std::optional<bool> value) {
    if (auto right = check_type(row, field, "L"); !right)
        return right;
    if (value && logical(row, field) == value)
        return {};
    return put(row, field, !value ? "" : *value ? "T" : "F", false);
}

result<void> dbase_table::set_date(std::size_t row, std::size_t field,
                                   std::optional<std::chrono::year_month_day> value) {
    if (auto right = check_type(row, field, "D"); !right)
        return right;
    if (!value)
        return put(row, field, {}, false);
    const int year = static_cast<int>(value->year());
    if (!value->ok() || year < 0 || year > 9999)
        return failure{place(row, field) + L"this is no date of the years 0 to 9999"};
    std::string digits =
        std::to_string(static_cast<unsigned>(year) * 10000 + static_cast<unsigned>(value->month()) * 100 +
                       static_cast<unsigned>(value->day()));
    digits.insert(0, 8 - digits.size(), '0');
    return put(row, field, digits, false);
}

result<void> dbase_table::set_memo(std::size_t row, std::size_t field, std::wstring_view text) {
    if (auto right = check_type(row, field, "M"); !right)
        return right;
    if (const auto old = memo(row, field); old && *old == text)
        return {};
    const auto bytes = encode(encoding_, text);
    if (!bytes)
        return bytes.why().behind(place(row, field));
    std::uint32_t block = 0;
    if (!bytes->empty()) {
        if (!memo_)
            return failure{place(row, field) + L"the table's memo file is missing"};
        const auto added = memo_->append(*bytes);
        if (!added)
            return added.why().behind(place(row, field));
        block = *added;
    }
    if (fields_[field].length != 4)
        return put(row, field, block != 0 ? std::to_string(block) : std::string(), true);
    put_little_endian(bytes_, header_size_ + row * row_size_ + offsets_[field], 4, block);
    return {};
}

result<void> dbase_table::set_deleted(std::size_t row, bool deleted) {
    if (row >= row_count_)
        return failure{L"there is no row " + number_of(row + 1) + L", the table has " +
                       number_of(row_count_)};
    if (is_deleted(row) != deleted)
        bytes_[header_size_ + row * row_size_] = deleted ? deleted_mark : ' ';
    return {};
}

result<std::size_t> dbase_table::append_row() {
    if (row_count_ >= std::numeric_limits<std::uint32_t>::max())
        return failure{L"the table cannot have more than " + number_of(row_count_) + L" rows"};
    std::string row(row_size_, ' ');
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        // Visual FoxPro's own types, and its block numbers, are no text.
        const bool is_text = std::string_view("CNFLD").find(fields_[i].type) != std::string_view::npos;
        if (is_visual() && !is_text)
            row.replace(offsets_[i], fields_[i].length, fields_[i].length, '\0');
    }
    bytes_.insert(header_size_ + row_count_ * row_size_, row);
    put_little_endian(bytes_, 4, 4, static_cast<std::uint32_t>(row_count_ + 1));
    return row_count_++;
}

} // namespace base
