#include "host/dxf/binary_form.h"

#include "base/number_text.h"
#include "host/dxf/group_list.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <unordered_map>

namespace dxf {

namespace {

constexpr std::string_view file_mark("AutoCAD Binary DXF\r\n\x1A\0", 22);
constexpr char far_code = '\xFF'; // in front of a code of two bytes, where codes have one
constexpr int highest_code = 1071;
constexpr std::size_t longest_chunk = 127; // bytes of a binary chunk, as other programs write them

// The bytes of a number, lowest first, as every binary drawing has them.
template<class Number>
Number number_at(const char* at) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        bits |= static_cast<std::uint64_t>(static_cast<unsigned char>(at[i])) << (8 * i);
    if constexpr (std::is_same_v<Number, double>)
        return std::bit_cast<double>(bits);
    else
        return static_cast<Number>(bits);
}

void append_number(std::string& out, std::uint64_t bits, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        out += static_cast<char>(bits >> (8 * i) & 0xFF);
}

template<class Number>
void append_digits(std::string& out, Number value) {
    char digits[24];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

// Strings of binary files hold carets and control characters as they are; in text they are caret codes.
void append_escaped(std::string& text, std::string_view bytes) {
    for (const char byte : bytes) {
        if (byte == '^') {
            text += "^ ";
        } else if (static_cast<unsigned char>(byte) < ' ') {
            text += '^';
            text += static_cast<char>(byte + '@');
        } else {
            text += byte;
        }
    }
}

void append_unescaped(std::string& bytes, std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = text[i] == '^' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (next == ' ' || (next > '@' && next <= '_')) { // a zero byte would end the string
            bytes += next == ' ' ? '^' : static_cast<char>(next - '@');
            ++i;
        } else {
            bytes += text[i];
        }
    }
}

// The bytes that an integer takes; 0 for what is none.
std::size_t integer_size(value_kind kind) {
    switch (kind) {
    case value_kind::flag:
        return 1;
    case value_kind::small_integer:
        return 2;
    case value_kind::integer:
        return 4;
    case value_kind::wide_integer:
        return 8;
    default:
        return 0;
    }
}

// Takes one group after the other from the bytes and appends its lines to a text.
class binary_reader {
public:
    binary_reader(std::string_view bytes, bool wide_codes) : bytes_(bytes), wide_codes_(wide_codes) {}

    enum class outcome { group, cut, wrong };

    // Reads the group at `at` and moves behind it. When the bytes end inside of it, `at` and `text` stay.
    outcome next(std::size_t& at, std::string& text) {
        std::size_t here = at;
        if (!take_code(here))
            return outcome::cut;
        if (code < 0 || code > highest_code)
            return outcome::wrong;
        const std::size_t before = text.size();
        append_digits(text, code);
        text += '\n';
        if (!take_value(kind_of_code(code), here, text)) {
            text.resize(before);
            return outcome::cut;
        }
        text += '\n';
        at = here;
        return outcome::group;
    }

    int code = 0; // of the group that was read last

private:
    bool has(std::size_t at, std::size_t count) const { return bytes_.size() - at >= count; }

    bool take_code(std::size_t& at) {
        if (!has(at, 1))
            return false;
        if (!wide_codes_ && bytes_[at] != far_code) {
            code = static_cast<unsigned char>(bytes_[at++]);
            return true;
        }
        at += wide_codes_ ? 0 : 1;
        if (!has(at, 2))
            return false;
        code = number_at<std::int16_t>(bytes_.data() + at);
        at += 2;
        return true;
    }

    bool take_value(value_kind kind, std::size_t& at, std::string& text) {
        if (const std::size_t size = integer_size(kind); size != 0) {
            if (!has(at, size))
                return false;
            const char* const value = bytes_.data() + at;
            append_digits(text, size == 1   ? number_at<std::uint8_t>(value)
                                : size == 2 ? number_at<std::int16_t>(value)
                                : size == 4 ? number_at<std::int32_t>(value)
                                            : number_at<std::int64_t>(value));
            at += size;
            return true;
        }
        if (kind == value_kind::real) {
            if (!has(at, sizeof(double)))
                return false;
            text += base::real_text(number_at<double>(bytes_.data() + at));
            at += sizeof(double);
            return true;
        }
        if (kind == value_kind::binary) {
            if (!has(at, 1) || !has(at + 1, static_cast<unsigned char>(bytes_[at])))
                return false;
            const std::size_t size = static_cast<unsigned char>(bytes_[at]);
            for (const char byte : bytes_.substr(at + 1, size)) {
                text += "0123456789ABCDEF"[static_cast<unsigned char>(byte) >> 4];
                text += "0123456789ABCDEF"[static_cast<unsigned char>(byte) & 15];
            }
            at += 1 + size;
            return true;
        }
        const std::size_t end = bytes_.find('\0', at);
        if (end == bytes_.npos)
            return false;
        append_escaped(text, bytes_.substr(at, end - at));
        at = end + 1;
        return true;
    }

    std::string_view bytes_;
    bool wide_codes_;
};

// The integer that a text begins with, or the nearest one that `size` bytes hold; 0 when there is none.
std::uint64_t integer_bits(std::string_view text, std::size_t size) {
    if (size == sizeof(std::int64_t)) {
        std::int64_t value = 0;
        std::from_chars(text.data(), text.data() + text.size(), value);
        return static_cast<std::uint64_t>(value);
    }
    // Files hold signed and unsigned numbers in the same codes.
    const int bits = static_cast<int>(8 * size);
    const double value = leading_real(text).value_or(0);
    const double low = -std::ldexp(1.0, bits - 1);
    const double high = std::ldexp(1.0, bits) - 1;
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(std::clamp(value, low, high)));
}

int hexadecimal(char digit) {
    return digit >= '0' && digit <= '9'   ? digit - '0'
           : digit >= 'A' && digit <= 'F' ? digit - 'A' + 10
           : digit >= 'a' && digit <= 'f' ? digit - 'a' + 10
                                          : -1;
}

void append_code(std::string& out, int code, bool wide_codes) {
    if (!wide_codes && code < static_cast<unsigned char>(far_code)) {
        out += static_cast<char>(code);
        return;
    }
    if (!wide_codes)
        out += far_code;
    append_number(out, static_cast<std::uint64_t>(code), 2);
}

// A group of a text as its bytes.
void append_binary(std::string& out, const raw_group& group, bool wide_codes) {
    const value_kind kind = kind_of_code(group.code);
    if (kind != value_kind::binary)
        append_code(out, group.code, wide_codes);
    if (const std::size_t size = integer_size(kind); size != 0) {
        append_number(out, integer_bits(trimmed(group.value), size), size);
    } else if (kind == value_kind::real) {
        append_number(out, std::bit_cast<std::uint64_t>(leading_real(group.value).value_or(0)),
                      sizeof(double));
    } else if (kind == value_kind::binary) {
        const std::string_view digits = trimmed(group.value);
        std::size_t at = 0;
        do { // what is too long for one becomes several
            std::string chunk;
            for (; at + 1 < digits.size() && chunk.size() < longest_chunk; at += 2)
                chunk += static_cast<char>(std::max(hexadecimal(digits[at]), 0) << 4 |
                                           std::max(hexadecimal(digits[at + 1]), 0));
            append_code(out, group.code, wide_codes);
            out += static_cast<char>(chunk.size());
            out += chunk;
        } while (at + 1 < digits.size());
    } else {
        append_unescaped(out, group.value);
        out += '\0';
    }
}

// Both lines of a group.
std::string_view lines_of(const raw_group& group) {
    return {group.begin, static_cast<std::size_t>(group.end - group.begin)};
}

} // namespace

bool binary_form::recognises(std::string_view bytes) {
    return bytes.starts_with(file_mark.substr(0, 18)); // the rest may have been lost on the way: read() tells
}

base::result<void> binary_form::read(std::string_view bytes) {
    bytes_ = bytes;
    if (!bytes.starts_with(file_mark))
        return base::failure{
            L"byte " + std::to_wstring(file_mark.size() - 4) +
            L": the mark of a binary DXF file is damaged, as by a transfer that takes it for text"};
    std::size_t at = file_mark.size();
    // The first group is "0 SECTION", as a rule: a zero, or two of them.
    wide_codes_ =
        bytes.size() < at + 2 || (bytes[at] == '\0' ? bytes[at + 1] == '\0' : bytes[at] != far_code);
    records_ = {{0, at}};
    std::string text;
    text.reserve(bytes.size() * 2);
    binary_reader reader(bytes, wide_codes_);
    for (bool ended = false; !ended;) {
        const std::size_t text_at = text.size();
        const std::size_t group_at = at;
        switch (reader.next(at, text)) {
        case binary_reader::outcome::group:
            if (reader.code == 0) {
                records_.push_back({text_at, group_at});
                ended = std::string_view(text).substr(text_at) == "0\nEOF\n";
            }
            break;
        case binary_reader::outcome::cut:
            cut_at_ = group_at;
            ended = true;
            break;
        case binary_reader::outcome::wrong:
            return base::failure{L"byte " + std::to_wstring(group_at) + L": " + std::to_wstring(reader.code) +
                                 L" is no group code"};
        }
    }
    text_ = padded_string(std::move(text));
    return {};
}

// The last record that begins at or before an offset of the text: of two that begin there the first is empty.
std::size_t binary_form::record_around(std::size_t offset) const {
    const auto behind =
        std::upper_bound(records_.begin(), records_.end(), offset,
                         [](std::size_t wanted, const place& record) { return wanted < record.text; });
    return static_cast<std::size_t>(behind - records_.begin()) - 1;
}

std::size_t binary_form::record_at(std::string_view text) const {
    const std::less<const char*> before;
    const std::string_view whole = this->text();
    if (before(text.data(), whole.data()) || !before(text.data(), whole.data() + whole.size()))
        return npos;
    const auto offset = static_cast<std::size_t>(text.data() - whole.data());
    const std::size_t record = record_around(offset);
    return records_[record].text == offset ? record : npos;
}

std::size_t binary_form::byte_of(const char* at) const {
    const auto offset = static_cast<std::size_t>(at - text().data());
    return offset < text().size() ? records_[record_around(offset)].bytes : std::min(cut_at_, bytes_.size());
}

std::string_view binary_form::record_text(std::size_t record) const {
    const std::size_t end = record + 1 < records_.size() ? records_[record + 1].text : text().size();
    return text().substr(records_[record].text, end - records_[record].text);
}

std::string_view binary_form::record_bytes(std::size_t record) const {
    const std::size_t end = record + 1 < records_.size() ? records_[record + 1].bytes
                            : cut_at_ != npos            ? cut_at_
                                                         : bytes_.size();
    return bytes_.substr(records_[record].bytes, end - records_[record].bytes);
}

std::string binary_form::bytes_of(padded_text text, std::size_t record) const {
    // The groups of the record as it stands in the file, by their lines: where their bytes begin.
    struct known {
        std::size_t begin;
        std::size_t end;
    };
    std::unordered_map<std::string, known> before;
    if (record != npos) {
        const std::size_t end = records_[record].bytes + record_bytes(record).size();
        binary_reader reader(bytes_.substr(0, end), wide_codes_);
        std::string lines;
        for (std::size_t at = records_[record].bytes; at < end; lines.clear()) {
            const std::size_t begin = at;
            if (reader.next(at, lines) != binary_reader::outcome::group)
                break;
            before.try_emplace(lines, known{begin, at});
        }
    }
    std::string out;
    group_reader groups(text);
    raw_group group;
    while (groups.next(group)) {
        const auto same = before.find(std::string(lines_of(group)));
        if (same != before.end())
            out += bytes_.substr(same->second.begin, same->second.end - same->second.begin);
        else
            append_binary(out, group, wide_codes_);
    }
    return out;
}

} // namespace dxf
