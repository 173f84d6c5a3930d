#include "host/dxf/line_manner.h"

#include "base/number_text.h"
#include "host/dxf/indexer.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace dxf {

namespace {

// How much is read to learn from. More would say the same.
constexpr std::size_t records_of_a_type = 64;
constexpr std::size_t records_of_tables = 1000;
constexpr std::size_t bytes_of_a_record = 16 * 1024;

constexpr double impossible = 40; // bits

bool is_x(int code) {
    return (code >= 10 && code <= 18) || (code >= 110 && code <= 112) || code == 210 ||
           (code >= 1010 && code <= 1013);
}
bool is_y(int code) {
    return is_x(code - 10);
}
bool is_z(int code) {
    return (code >= 30 && code <= 37) || (code >= 130 && code <= 132) || code == 230 ||
           (code >= 1030 && code <= 1033);
}

// Whether a code's values are names that other groups say too.
bool is_name(int code) {
    return code == 2 || (code >= 6 && code <= 8) || code == 1001 || code == 1003;
}

bool is_hexadecimal(std::string_view text, std::size_t longest) {
    return !text.empty() && text.size() <= longest &&
           text.find_first_not_of("0123456789ABCDEFabcdef") == text.npos;
}

bool looks_like_type(std::string_view text) {
    return !text.empty() && !base::parse_real(text) &&
           text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_") == text.npos;
}

constexpr std::string_view sections[] = {"HEADER",   "CLASSES", "TABLES",   "BLOCKS",
                                         "ENTITIES", "OBJECTS", "ACDSDATA", "THUMBNAILIMAGE"};
// Those first that are empty in most drawings.
constexpr std::string_view tables[] = {"VIEW",  "UCS",   "VPORT",        "DIMSTYLE", "APPID",
                                       "STYLE", "LTYPE", "BLOCK_RECORD", "LAYER"};

} // namespace

std::vector<text_line> lines_in(std::string_view text) {
    std::vector<text_line> lines;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        const void* const feed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
        const char* const behind = feed != nullptr ? static_cast<const char*>(feed) + 1 : end;
        lines.push_back({at, behind});
        at = behind;
    }
    return lines;
}

void line_manner::followers::count(int code, std::uint32_t times) {
    total += times;
    for (follower& one : codes)
        if (one.code == code) {
            one.times += times;
            return;
        }
    codes.push_back({code, times});
}

std::uint32_t line_manner::followers::times(int code) const {
    for (const follower& one : codes)
        if (one.code == code)
            return one.times;
    return 0;
}

line_manner::line_manner(const record_table& records, const std::vector<record_id>& damaged) {
    types_.emplace_back();
    markers_.emplace_back();
    for (std::uint32_t type = type_none + 1; type < records.type_names().size(); ++type)
        if (looks_like_type(records.type_names()[type]) || type < known_types) {
            type_numbers_.emplace(records.type_names()[type], static_cast<std::uint32_t>(types_.size()));
            types_.push_back(records.type_names()[type]);
        }
    for (std::uint32_t layer = 0; layer < records.layer_names().size(); ++layer)
        names_.insert(trimmed(records.layer_names()[layer]));

    std::vector<std::size_t> learned(records.type_names().size(), 0);
    std::size_t code_lines = 0;
    std::size_t padded = 0;
    std::size_t shorts = 0;
    std::size_t wide_shorts = 0;
    auto next_damaged = damaged.begin();
    style_.line_end = "\n";
    for (record_id id = 1; id < records.size(); ++id) {
        if (next_damaged != damaged.end() && *next_damaged == id) {
            ++next_damaged;
            continue;
        }
        const record_kind kind = records.kind(id);
        const bool names = kind == record_kind::entry || kind == record_kind::table ||
                           kind == record_kind::block || kind == record_kind::structure;
        if (learned[records.type(id)]++ >= (names ? records_of_tables : records_of_a_type))
            continue;
        const padded_text text = records.text(id);
        learn(text, false);
        if (kind == record_kind::table)
            tables_.insert(value_of(text, 2));
        const std::size_t feed = text.find('\n');
        style_.line_end = feed != text.npos && feed > 0 && text[feed - 1] == '\r' ? "\r\n" : "\n";
        group_reader groups(text);
        raw_group group;
        for (int i = 0; i < 8 && groups.next(group); ++i) {
            if (group.code < 0 || group.code > 99)
                continue;
            ++code_lines;
            padded += *group.begin == ' ';
            if (group.code == 70) {
                ++shorts;
                wide_shorts += group.value.starts_with(' ');
            }
        }
    }
    for (const record_id id : damaged)
        if (learned[records.type(id)]++ < records_of_a_type)
            learn(records.text(id), true);
    learn_types(records);
    constexpr std::size_t enough = 20;
    padded_ = code_lines >= enough && padded > code_lines * 9 / 10;
    unpadded_ = code_lines >= enough && padded == 0;
    style_.padded_codes = 2 * padded > code_lines;
    if (2 * wide_shorts < shorts || !style_.padded_codes)
        style_.short_columns = style_.long_columns = 0;
}

// Of a damaged record only pairs of groups are learned that both look sound.
void line_manner::learn(padded_text record, bool damaged) {
    group_reader groups(record);
    raw_group group;
    place at;
    bool sound_before = true;
    std::size_t read = 0;
    while (read < bytes_of_a_record && groups.next(group)) {
        read += static_cast<std::size_t>(group.end - group.begin);
        const std::string_view value = trimmed(group.value);
        const bool sound =
            !damaged || (value.find('\n') == value.npos && !(group.code == 0 && at.code >= 0) &&
                         surprise(at, group.code, group.value) == 0);
        if (sound && sound_before) {
            if (at.code >= 0)
                behind_code_[at.code].count(group.code, 1);
            // In what place a damaged record's groups stand is what is to be found out.
            if (at.code >= 0 && !damaged) {
                behind_place_[key(at)].count(group.code, 1);
                if (at.marker != 0)
                    behind_place_[key({0, at.marker, at.code, at.braces})].count(group.code, 1);
            }
            anywhere_.count(group.code, 1);
        }
        if (sound && is_name(group.code))
            names_.insert(value);
        if (sound && may_hold_lines(group.code) && !value.empty())
            texts_.insert(value);
        if (kind_of_code(group.code) == value_kind::real)
            ++(value.find_first_of(".eE") != value.npos ? points_ : whole_reals_);
        if (sound && group.code == 100 && marker_numbers_.emplace(value, markers_.size()).second)
            markers_.push_back(value);
        const place before = at;
        at = behind(at, group.code, value);
        if (sound && group.code == 100)
            for (const std::uint32_t type : {before.type, 0u})
                next_markers_[key({type, before.marker, -1})].count(static_cast<int>(at.marker), 1);
        sound_before = sound;
    }
    if (read == record.size() && !damaged)
        behind_place_[key(at)].count(0, 1);
}

void line_manner::learn_types(const record_table& records) {
    std::uint32_t before = 0;
    std::vector<std::uint32_t> numbers(records.type_names().size());
    for (std::uint32_t type = 0; type < numbers.size(); ++type)
        numbers[type] = type_number(records.type_names()[type]);
    for (record_id id = 1; id < records.size(); ++id) {
        const std::uint32_t type = numbers[records.type(id)];
        next_types_[before].count(static_cast<int>(type), 1);
        before = type;
    }
}

std::uint32_t line_manner::type_number(std::string_view name) const {
    const auto found = type_numbers_.find(name);
    return found == type_numbers_.end() ? 0 : found->second;
}

line_manner::place line_manner::behind(const place& before, int code, std::string_view value) const {
    if (code == 0)
        return {type_number(trimmed(value)), 0, 0};
    place at = before;
    at.code = code;
    if (code == 102) {
        const std::string_view name = trimmed(value);
        at.braces = !name.starts_with('{')        ? 0
                    : name == "{ACAD_XDICTIONARY" ? 1
                    : name == "{ACAD_REACTORS"    ? 2
                                                  : 3;
    }
    if (code == 100) {
        const auto found = marker_numbers_.find(trimmed(value));
        at.marker = found == marker_numbers_.end() ? 0 : found->second;
    }
    return at;
}

std::string_view line_manner::lacking_table() const {
    const auto found = std::find_if(std::begin(tables), std::end(tables),
                                    [this](std::string_view name) { return !tables_.contains(name); });
    return found != std::end(tables) ? *found : tables[0];
}

bool line_manner::names_part(const place& before, int code) const {
    const std::string_view type = types_[before.type];
    return (code == 2 && ((before.code == 0 && (type == "SECTION" || type == "TABLE")) || type == "BLOCK")) ||
           (code == 9 && type == "SECTION");
}

// What is known of a place counts as far as it is known; behind it stands what is known of its code alone,
// then how often a code is met at all.
double line_manner::surprise(const place& before, int code) const {
    constexpr double codes = 1024; // there are
    constexpr double against_rules = 24;
    constexpr double least = 1.0 / 4096;      // of a code that is met nowhere else
    constexpr double next_number = 1.0 / 128; // and whose number follows
    if (code < -5 || code > 1071)
        return impossible;
    // Points come as x, y, z, with codes ten apart.
    const bool goes_on = (is_x(before.code) || is_y(before.code)) && code == before.code + 10;
    const std::string_view type = types_[before.type];
    if (type == "SECTION") { // its name, then in a header variables and their values
        if (before.code == 0)
            return code == 2 ? 0 : against_rules;
        if (before.code == 9 ? code == 9 || code == 0 : code != 9 && code != 0 && !goes_on)
            return against_rules;
        if (before.code != 9)
            return is_x(before.code) && !goes_on ? against_rules : 1;
    } else if (type == "TABLE" && before.code == 0) {
        return code == 2 ? 0 : against_rules;
    } else if (code != 0 && (type == "ENDSEC" || type == "ENDTAB" || type == "EOF")) {
        return against_rules;
    } else if (code == 9 && before.type != 0) { // which names variables of the header and nothing else
        return against_rules;
    }
    double likely = std::max((anywhere_.times(code) + 1 / codes) / (anywhere_.total + 1.0), least);
    if (code == before.code + 1 && code > 59)
        likely = std::max(likely, next_number);
    if (goes_on)
        likely = std::max(likely, is_x(before.code) ? 0.9 : 0.4);
    else if (is_x(before.code))
        likely *= 0.0001;
    else if (is_y(code) || is_z(code))
        likely *= 0.001;
    if (const auto found = behind_code_.find(before.code); found != behind_code_.end())
        likely = (found->second.times(code) + 2 * likely) / (found->second.total + 2.0);
    const auto learn_from = [&](const place& at) {
        if (const auto found = behind_place_.find(key(at)); found != behind_place_.end())
            likely = (found->second.times(code) + likely) / (found->second.total + 1.0);
    };
    if (before.marker != 0)
        learn_from({0, before.marker, before.code, before.braces});
    learn_from(before);
    if (type == "SECTION") // variables are as they are
        likely = std::max(likely, 0.004);
    return -std::log2(std::max(likely, 1e-9));
}

double line_manner::surprise(const place& before, int code, std::string_view value) const {
    const std::string_view text = trimmed(value);
    const auto is_one_of = [text](const auto& known) {
        return std::find(std::begin(known), std::end(known), text) != std::end(known);
    };
    constexpr double strange = 16;
    switch (code) {
    case 0:
        return type_numbers_.contains(text) ? 1 : looks_like_type(text) ? 12 : impossible;
    case 9:
        return text.starts_with('$') ? 0 : types_[before.type] == "SECTION" ? strange : 6;
    case 100: {
        const auto found = marker_numbers_.find(text);
        if (found == marker_numbers_.end())
            return text.starts_with("AcDb") ? 8 : 20;
        const auto next = next_markers_.find(key({before.type, before.marker, -1}));
        if (next == next_markers_.end())
            return 5;
        return next->second.times(static_cast<int>(found->second)) != 0 ? 0 : 12;
    }
    case 66: // flags in all that is known
    case 67:
        return text == "0" || text == "1" ? 0 : strange;
    case 102:
        return text.starts_with('{') || text == "}" ? 0 : 8;
    case 1002:
        return text == "{" || text == "}" ? 0 : strange;
    case 5:
    case 105:
        return is_hexadecimal(text, 16) || text.empty() ? 0 : strange;
    case 2:
        if (types_[before.type] == "SECTION" && before.code == 0)
            return is_one_of(sections) ? 0 : strange;
        if (types_[before.type] == "TABLE" && before.code == 0)
            return is_one_of(tables) ? 0 : strange;
        break;
    default:
        break;
    }
    switch (kind_of_code(code)) {
    case value_kind::text:
        if (is_name(code))
            return text.empty() || names_.contains(text) ? 0 : 6;
        if (before.code == 9 && types_[before.type] == "SECTION" && base::parse_real(text))
            return 3;
        // A number with blanks in front is what codes and integers are in most drawings.
        return !value.empty() && value.front() == ' ' && base::parse_integer(text) ? 3 : 0;
    case value_kind::handle:
        return is_hexadecimal(text, 16) ? 0 : strange;
    case value_kind::binary:
        return is_hexadecimal(text, text.size()) && text.size() % 2 == 0 ? 0 : strange;
    case value_kind::real: {
        if (!base::parse_real(text))
            return leading_real(text) ? 6 : strange;
        const bool has_point = text.find_first_of(".eE") != text.npos;
        return !has_point && points_ > 50 * (whole_reals_ + 1) ? 5 : 0;
    }
    default:
        if (const auto number = base::parse_integer(text)) {
            constexpr std::int64_t most = 0xFFFF; // of 16 bits, whatever their sign
            const bool small = kind_of_code(code) == value_kind::small_integer;
            return small && (*number > most || *number < -most) ? strange : 0;
        }
        return base::parse_real(text) || (!text.empty() && text[0] >= '0' && text[0] <= '9') ? 8 : strange;
    }
}

double line_manner::surprise_of_columns(std::string_view code_line) const {
    if (padded_)
        return code_line.size() >= 3 && (code_line.size() == 3 || code_line[0] != ' ') ? 0 : 5;
    return unpadded_ && code_line.starts_with(' ') ? 5 : 0;
}

double line_manner::surprise_of_columns(int code, std::string_view value) const {
    const value_kind kind = kind_of_code(code);
    const std::size_t columns = kind == value_kind::small_integer || kind == value_kind::flag
                                    ? style_.short_columns
                                : kind == value_kind::integer ? style_.long_columns
                                                              : 0;
    return (columns == 0 ? value.starts_with(' ') : value.size() < columns) ? 5 : 0;
}

double line_manner::surprise_of_type(std::uint32_t before, std::uint32_t type) const {
    double likely = 0.5 / static_cast<double>(types_.size());
    if (const auto found = next_types_.find(before); found != next_types_.end())
        likely = (found->second.times(static_cast<int>(type)) + likely) / (found->second.total + 1.0);
    return -std::log2(likely);
}

double line_manner::surprise_of_parts(std::string_view before, std::string_view type, std::string_view next) {
    constexpr double apart = 20;
    const auto is_part = [](std::string_view name) {
        return name == "VERTEX" || name == "ATTRIB" || name == "SEQEND";
    };
    const auto may_follow = [](std::string_view part, std::string_view ahead) {
        const bool of_polyline = ahead == "POLYLINE" || ahead == "VERTEX";
        const bool of_insert = ahead == "INSERT" || ahead == "ATTRIB";
        return (of_polyline && part != "ATTRIB") || (of_insert && part != "VERTEX");
    };
    const bool parted = is_part(type) && !may_follow(type, before);
    const bool parts = is_part(next) && !may_follow(next, type);
    const bool endless = is_part(type) && type != "SEQEND" && !next.empty() && !is_part(next);
    return (parted ? apart : 0) + (parts ? apart : 0) + (endless ? apart : 0);
}

std::vector<int> line_manner::likely_codes(const place& before) const {
    constexpr std::size_t most = 8;
    std::vector<int> codes;
    const auto add = [&](int code) {
        if (codes.size() < most && std::find(codes.begin(), codes.end(), code) == codes.end())
            codes.push_back(code);
    };
    const auto add_all = [&](const followers& all) {
        std::vector<follower> sorted = all.codes;
        std::sort(sorted.begin(), sorted.end(),
                  [](const follower& a, const follower& b) { return a.times > b.times; });
        for (const follower& one : sorted)
            add(one.code);
    };
    const std::string_view type = types_[before.type];
    if (before.code == 0 && (type == "SECTION" || type == "TABLE"))
        return {2};
    if (type == "SECTION" && before.code != 9)
        add(9);
    if (is_x(before.code) || is_y(before.code))
        add(before.code + 10);
    if (const auto found = behind_place_.find(key(before)); found != behind_place_.end())
        add_all(found->second);
    if (const auto found = behind_code_.find(before.code); found != behind_code_.end())
        add_all(found->second);
    return codes;
}

std::vector<std::string_view> line_manner::likely_markers(const place& before) const {
    std::vector<std::string_view> found;
    for (const std::uint32_t type : {before.type, 0u}) { // 0: behind this marker, whatever the type
        const auto next = next_markers_.find(key({type, before.marker, -1}));
        if (next == next_markers_.end() || !found.empty())
            continue;
        for (const follower& one : next->second.codes)
            found.push_back(markers_[static_cast<std::size_t>(one.code)]);
    }
    return found;
}

} // namespace dxf
