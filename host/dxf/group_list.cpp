#include "host/dxf/group_list.h"

#include "base/number_text.h"
#include "host/dxf/common_groups.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>

namespace dxf {

namespace {

// A number as far as the text is one; nothing when it does not begin with one.
template<class Number>
std::optional<Number> leading_number(std::string_view text) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument)
        return std::nullopt;
    return value;
}

// A changed number keeps the columns of the one before it; a text has none to keep.
std::string as_wide_as(std::string value, std::string_view before, int code) {
    if (kind_of_code(code) != value_kind::text && !before.empty() && before.front() == ' ' &&
        value.size() < before.size())
        value.insert(0, before.size() - value.size(), ' ');
    return value;
}

} // namespace

std::optional<std::int64_t> leading_integer(std::string_view text) {
    return leading_number<std::int64_t>(text);
}

namespace {

// A number as most files have it: a sign, up to 15 digits, a point among them. Such a mantissa and its power
// of ten are exact, so their quotient is the number that the digits mean, rounded once.
std::optional<double> plain_real(std::string_view text) {
    static constexpr double powers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    constexpr std::size_t most_digits = 15;
    std::size_t at = 0;
    while (at < text.size() && (text[at] == ' ' || text[at] == '\t'))
        ++at;
    const bool negative = at < text.size() && text[at] == '-';
    if (negative)
        ++at;
    std::int64_t mantissa = 0;
    std::size_t digits = 0;
    std::size_t before_point = most_digits + 1;
    for (; at < text.size(); ++at) {
        const unsigned digit = static_cast<unsigned>(text[at]) - '0';
        if (digit < 10u) {
            mantissa = mantissa * 10 + digit;
            if (++digits > most_digits)
                return std::nullopt;
        } else if (text[at] == '.' && before_point > most_digits) {
            before_point = digits;
        } else {
            break;
        }
    }
    while (at < text.size() && (text[at] == ' ' || text[at] == '\t' || text[at] == '\r'))
        ++at;
    if (at != text.size() || digits == 0)
        return std::nullopt;
    auto value = static_cast<double>(mantissa);
    if (before_point < digits)
        value /= powers[digits - before_point];
    return negative ? -value : value;
}

} // namespace

std::optional<double> leading_real(std::string_view text) {
    if (const auto plain = plain_real(text))
        return plain;
    const std::size_t comma = text.find(',');
    std::optional<double> value;
    if (comma == text.npos || text.substr(0, comma).find('.') != text.npos) {
        value = leading_number<double>(text);
    } else {
        std::string with_point(text);
        with_point[comma] = '.';
        value = leading_number<double>(with_point);
    }
    return value && std::isfinite(*value) ? value : std::nullopt;
}

namespace {

constexpr value_kind find_kind(int code) {
    struct range {
        int first, last;
        value_kind kind;
    };
    // Source: the DXF reference's table of group code value types.
    constexpr range ranges[] = {{0, 4, value_kind::text},
                                {5, 5, value_kind::handle},
                                {6, 9, value_kind::text},
                                {10, 59, value_kind::real},
                                {60, 79, value_kind::small_integer},
                                {90, 99, value_kind::integer},
                                {100, 102, value_kind::text},
                                {105, 105, value_kind::handle},
                                {110, 149, value_kind::real},
                                {160, 169, value_kind::wide_integer},
                                {170, 179, value_kind::small_integer},
                                {210, 239, value_kind::real},
                                {270, 289, value_kind::small_integer},
                                {290, 299, value_kind::flag},
                                {300, 309, value_kind::text},
                                {310, 319, value_kind::binary},
                                {320, 369, value_kind::handle},
                                {370, 389, value_kind::small_integer},
                                {390, 399, value_kind::handle},
                                {400, 409, value_kind::small_integer},
                                {410, 419, value_kind::text},
                                {420, 429, value_kind::integer},
                                {430, 439, value_kind::text},
                                {440, 459, value_kind::integer},
                                {460, 469, value_kind::real},
                                {470, 479, value_kind::text},
                                {480, 481, value_kind::handle},
                                {999, 1003, value_kind::text},
                                {1004, 1004, value_kind::binary},
                                {1005, 1005, value_kind::handle},
                                {1006, 1009, value_kind::text},
                                {1010, 1059, value_kind::real},
                                {1060, 1070, value_kind::small_integer},
                                {1071, 1071, value_kind::integer}};
    for (const range& range : ranges)
        if (code >= range.first && code <= range.last)
            return range.kind;
    return value_kind::text;
}

constexpr auto kinds_of_codes = [] {
    constexpr int highest_code = 1071;
    std::array<value_kind, highest_code + 1> kinds{};
    for (int code = 0; code <= highest_code; ++code)
        kinds[static_cast<std::size_t>(code)] = find_kind(code);
    return kinds;
}();

} // namespace

value_kind kind_of_code(int code) {
    const auto at = static_cast<std::size_t>(code); // below nought: far above all of them
    return at < kinds_of_codes.size() ? kinds_of_codes[at] : value_kind::text;
}

void append_group(std::string& out, const group_style& style, int code, std::string_view value) {
    char text[16];
    const std::string_view digits(
        text, static_cast<std::size_t>(std::to_chars(text, std::end(text), code).ptr - text));
    if (style.padded_codes && digits.size() < 3)
        out.append(3 - digits.size(), ' ');
    out += digits;
    out += style.line_end;
    const value_kind kind = kind_of_code(code);
    const std::size_t columns = kind == value_kind::small_integer || kind == value_kind::flag
                                    ? style.short_columns
                                : kind == value_kind::integer ? style.long_columns
                                                              : 0;
    if (value.size() < columns)
        out.append(columns - value.size(), ' ');
    out += value;
    out += style.line_end;
}

group_list::group_list(padded_text record) {
    constexpr std::size_t bytes_per_group = 12; // about as many as most have
    groups_.reserve(record.size() / bytes_per_group + 8);
    group_reader reader(record);
    raw_group raw;
    while (reader.next(raw))
        groups_.push_back({raw.code, raw.value, {raw.begin, static_cast<std::size_t>(raw.end - raw.begin)}});
    rest_ = record.substr(static_cast<std::size_t>(reader.position() - record.data()));
}

// The groups among which a place's are looked for; extended data and embedded objects are never among them.
std::pair<std::size_t, std::size_t> group_list::extent(const group_place& place) const {
    std::size_t first = npos;        // behind the marker
    std::size_t first_marker = npos; // of any class
    std::size_t end = groups_.size();
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        const int code = groups_[i].code;
        if (code >= 1000 || code == 101) {
            end = i;
            break;
        }
        if (code != 100)
            continue;
        if (first != npos)
            return {first, i};
        if (first_marker == npos)
            first_marker = i;
        if (trimmed(groups_[i].value) == place.marker)
            first = i + 1;
    }
    if (first != npos)
        return {first, end};
    return {0, first_marker == npos || place.marker == "*" ? end : first_marker};
}

namespace {

// Whether a place is that of what all entities have in common, which is theirs in other parts of a record
// too.
bool is_common(const group_place& place, int code) {
    return place.marker == common_marker && common_bit(code) != 0;
}

// Calls `take(index)` for each common group that is the entity's.
template<class Take>
void for_common(const std::vector<group>& groups, Take take) {
    common_parts parts(groups.empty() ? std::string_view() : trimmed(groups.front().value));
    bool in_braces = false;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const int code = groups[i].code;
        if (code >= 1000 || code == 101)
            break;
        if (code == 100)
            parts.begin(groups[i].value);
        else if (code == 102)
            in_braces = groups[i].value.find('{') != std::string_view::npos;
        else if (!in_braces && common_bit(code) != 0 && parts.holds(code))
            take(i);
    }
}

// Takes away all groups of a common code from one on.
void remove_common(std::vector<group>& groups, int code, std::size_t from = 0) {
    std::vector<std::size_t> found;
    for_common(groups, [&](std::size_t i) {
        if (groups[i].code == code && i >= from)
            found.push_back(i);
    });
    for (auto at = found.rbegin(); at != found.rend(); ++at)
        groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(*at));
}

// What is kept of a common code: where its first group stands, counted from 1, and whether it stands again.
constexpr std::uint32_t stands_again = 0x80000000u;
std::size_t common_index(int code) {
    return static_cast<std::size_t>(std::countr_zero(common_bit(code)));
}

} // namespace

std::size_t group_list::find_common(int code) const {
    if (!common_is_known_) {
        common_ = {};
        for_common(groups_, [&](std::size_t i) {
            std::uint32_t& place = common_[common_index(groups_[i].code)];
            place = place == 0 ? static_cast<std::uint32_t>(i) + 1 : place | stands_again;
        });
        common_is_known_ = true;
    }
    const std::uint32_t place = common_[common_index(code)] & ~stands_again;
    return place == 0 ? npos : place - 1;
}

std::size_t group_list::find(const group_place& place, int code) const {
    if (is_common(place, code))
        return find_common(code);
    const auto [first, last] = extent(place);
    bool in_braces = false;
    for (std::size_t i = first; i < last; ++i) {
        if (groups_[i].code == 102 && code != 102)
            in_braces = groups_[i].value.find('{') != std::string_view::npos;
        else if (groups_[i].code == code && !in_braces)
            return i;
    }
    return npos;
}

std::optional<std::string_view> group_list::text(const group_place& place, int code) const {
    const std::size_t at = find(place, code);
    if (at == npos)
        return std::nullopt;
    return groups_[at].value;
}

std::optional<std::int64_t> group_list::integer(const group_place& place, int code) const {
    const std::size_t at = find(place, code);
    return at == npos ? std::nullopt : leading_integer(groups_[at].value);
}

std::optional<double> group_list::real(const group_place& place, int code) const {
    const std::size_t at = find(place, code);
    return at == npos ? std::nullopt : leading_real(groups_[at].value);
}

std::uint64_t group_list::handle(const group_place& place, int code) const {
    const std::size_t at = find(place, code);
    return at == npos ? 0 : parse_handle(groups_[at].value);
}

// Behind the last group that the class writes before this one; with none of these, first of its class.
std::size_t group_list::insertion_point(const group_place& place, int code) const {
    const auto [first, last] = extent(place);
    const auto rank = [&](int wanted) {
        return std::find(place.order.begin(), place.order.end(), wanted) - place.order.begin();
    };
    const auto own = rank(code);
    std::size_t at = first;
    bool in_braces = false;
    for (std::size_t i = first; i < last; ++i) {
        if (groups_[i].code == 102)
            in_braces = groups_[i].value.find('{') != std::string_view::npos;
        else if (!in_braces && (groups_[i].code == 0 || rank(groups_[i].code) < own))
            at = i + 1;
    }
    return at;
}

void group_list::put_new(std::size_t at, int code, std::string value) {
    own_.push_front(std::move(value));
    groups_.insert(groups_.begin() + static_cast<std::ptrdiff_t>(at), group{code, own_.front(), {}});
    moved();
}

// Another value for a group that is there: its code line, its line ends and its columns stay as they are.
void group_list::put_value(std::size_t at, std::string_view value) {
    group& changed = groups_[at];
    const std::string written = as_wide_as(std::string(value), changed.value, changed.code);
    changed_ = true;
    if (changed.source.empty()) {
        own_.push_front(written);
        changed.value = own_.front();
        return;
    }
    const auto begin = static_cast<std::size_t>(changed.value.data() - changed.source.data());
    own_.push_front(std::string(changed.source.substr(0, begin)) + written);
    own_.front() += changed.source.substr(begin + changed.value.size());
    changed.source = own_.front();
    changed.value = changed.source.substr(begin, written.size());
}

void group_list::set_text(const group_place& place, int code, std::string_view value) {
    const std::size_t at = find(place, code);
    if (at == npos)
        return put_new(insertion_point(place, code), code, std::string(value));
    if (groups_[at].value != value)
        put_value(at, value);
    if (!is_common(place, code) || (common_[common_index(code)] & stands_again) == 0)
        return;
    remove_common(groups_, code, at + 1); // who reads the last one must see it
    moved();
}

void group_list::set_integer(const group_place& place, int code, std::int64_t value) {
    if (integer(place, code) != value)
        set_text(place, code, std::to_string(value));
}

void group_list::set_real(const group_place& place, int code, double value) {
    if (real(place, code) != value)
        set_text(place, code, base::real_text(value));
}

void group_list::set_integer_at(std::size_t at, std::int64_t value) {
    if (leading_integer(groups_[at].value) != value)
        put_value(at, std::to_string(value));
}

void group_list::set_real_at(std::size_t at, double value) {
    if (leading_real(groups_[at].value) != value)
        put_value(at, base::real_text(value));
}

void group_list::remove(const group_place& place, int code) {
    const std::size_t at = find(place, code);
    if (at == npos)
        return;
    if (is_common(place, code))
        remove_common(groups_, code);
    else
        groups_.erase(groups_.begin() + static_cast<std::ptrdiff_t>(at));
    moved();
}

void group_list::splice(std::size_t first, std::size_t last, std::span<const fresh_group> groups) {
    const auto begin = groups_.begin();
    const auto at =
        groups_.erase(begin + static_cast<std::ptrdiff_t>(first), begin + static_cast<std::ptrdiff_t>(last));
    std::vector<group> added;
    added.reserve(groups.size());
    for (const fresh_group& fresh : groups) {
        own_.push_front(fresh.value);
        added.push_back({fresh.code, own_.front(), {}});
    }
    groups_.insert(at, added.begin(), added.end());
    moved();
}

void group_list::put_fresh(std::size_t at, std::string value) {
    own_.push_front(std::move(value));
    groups_[at] = {groups_[at].code, own_.front(), {}};
    moved();
}

std::string group_list::write(const group_style& style) const {
    std::size_t size = rest_.size();
    for (const group& group : groups_)
        size += group.source.empty() ? group.value.size() + 16 : group.source.size();
    std::string out;
    out.reserve(size);
    for (const group& group : groups_) {
        if (!group.source.empty())
            out += group.source;
        else
            append_group(out, style, group.code, group.value);
    }
    out += rest_;
    return out;
}

} // namespace dxf
