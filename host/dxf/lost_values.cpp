#include "host/dxf/lost_values.h"

#include "host/dxf/group_reader.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <array>
#include <limits>

namespace dxf {

namespace {

constexpr double most_of_a_group = 18; // bits; a group that does not fit at all says no more than that

// What entities have by default: without its value such a group says nothing.
bool has_default(const line_manner::place& at, int code) {
    constexpr std::array codes = {6, 7, 39, 48, 60, 62, 284, 370, 420, 430, 440};
    return at.code != 9 && std::find(codes.begin(), codes.end(), code) != codes.end();
}

} // namespace

// What stands for a value that was lost.
lost_value lost_values::find(const line_manner::place& at, std::uint32_t type_before, int code,
                             std::size_t behind) {
    const std::string_view type = manner_.types()[at.type];
    switch (code) {
    case 0:
        return this->type(type_before, behind);
    case 9: // the version is the one that a drawing can not be without
        if (behind + 1 < lines_.size() && lines_[behind + 1].text().starts_with("AC1"))
            return {"$ACADVER"};
        return {"", true};
    case 100:
        return marker(at, behind);
    case 2:
        if (at.code == 0 && type == "SECTION")
            return {section_name(behind)};
        if (at.code == 0 && type == "TABLE")
            return {table_name(behind)};
        if (type == "BLOCK") {
            const std::string_view again = trimmed(next_value(3, behind));
            return {again.empty() ? "LOST_BLOCK" : std::string(again)};
        }
        return {};
    case 8:
        return {"0"};
    case 66: // what hardly anybody writes when it is 0
    case 67:
        return {"1"};
    case 102:
        return {at.braces != 0                                    ? "}"
                : behind < codes_.size() && codes_[behind] == 360 ? "{ACAD_XDICTIONARY"
                                                                  : "{ACAD_REACTORS"};
    case 1001:
        return {"ACAD"};
    default:
        break;
    }
    if (has_default(at, code))
        return {"", true};
    switch (kind_of_code(code)) {
    case value_kind::text:
        return {};
    case value_kind::handle:
        return code == 5 || code == 105 ? lost_value{} : lost_value{"0", code == 330 && at.marker == 0};
    case value_kind::real:
        return {"0.0"};
    case value_kind::binary:
        return {"", true};
    default:
        return {"0"};
    }
}

// How the groups from a line on surprise in a place, up to the end of their record.
double lost_values::surprise_of_rest(line_manner::place at, std::size_t line) const {
    double cost = 0;
    for (std::size_t i = line; i + 1 < lines_.size() && i < line + looked_at_; i += 2) {
        const int code = codes_[i];
        if (code == no_code)
            break;
        const std::string_view value = lines_[i + 1].text();
        cost += std::min(manner_.surprise(at, code), most_of_a_group);
        if (code == 0)
            return cost + manner_.surprise_of_type(at.type, manner_.type_number(trimmed(value)));
        if (code == 2 || code == 100)
            cost += manner_.surprise(at, code, value);
        at = manner_.behind(at, code, value);
    }
    if (line + looked_at_ > lines_.size()) // the next record begins here
        cost += manner_.surprise(at, 0);
    return cost;
}

// Whether a record of the structure may have the groups that stand there.
bool lost_values::may_be(std::string_view type, std::size_t line) const {
    const int first = line < codes_.size() ? codes_[line] : 0;
    if (type == "SECTION" || type == "TABLE")
        return first == 2;
    if (type == "ENDSEC" || type == "ENDTAB" || type == "EOF")
        return first == 0;
    if (type != "ENDBLK" && type != "SEQEND")
        return true;
    for (std::size_t i = line; i + 1 < lines_.size() && codes_[i] > 0 && codes_[i] < 1000; i += 2)
        if ((codes_[i] >= 9 && codes_[i] < 60) || (codes_[i] >= 70 && codes_[i] < 100))
            return false;
    return true;
}

lost_value lost_values::type(std::uint32_t type_before, std::size_t behind) {
    const auto known = types_found_.find(behind);
    if (known != types_found_.end() && known->second.first == type_before)
        return known->second.second;
    const std::string_view next = next_type(behind);
    lost_value best{"", true};
    double least = std::numeric_limits<double>::max();
    for (std::uint32_t number = 1; number < manner_.types().size(); ++number) {
        const std::string_view name = manner_.types()[number];
        if (!may_be(name, behind))
            continue;
        const line_manner::place at = {number, 0, 0};
        const double cost = manner_.surprise_of_type(type_before, number) +
                            line_manner::surprise_of_parts(manner_.types()[type_before], name, next) +
                            surprise_of_rest(at, behind);
        if (cost < least) {
            least = cost;
            best = {std::string(name)};
        }
    }
    types_found_[behind] = {type_before, best};
    return best;
}

lost_value lost_values::marker(const line_manner::place& at, std::size_t behind) const {
    lost_value best{"", true};
    double least = std::numeric_limits<double>::max();
    for (const std::string_view marker : manner_.likely_markers(at)) {
        const double cost = surprise_of_rest(manner_.behind(at, 100, marker), behind);
        if (cost < least) {
            least = cost;
            best = {std::string(marker)};
        }
    }
    return best;
}

std::string_view lost_values::next_value(int code, std::size_t line) const {
    for (std::size_t i = line; i + 1 < lines_.size() && codes_[i] != 0 && codes_[i] != no_code; i += 2)
        if (codes_[i] == code)
            return lines_[i + 1].text();
    return {};
}

// By what stands behind the names that are missing.
std::string lost_values::section_name(std::size_t behind) const {
    if (behind < codes_.size() && codes_[behind] == 9)
        return "HEADER";
    const std::string_view first = next_type(behind);
    return first == "CLASS"        ? "CLASSES"
           : first == "TABLE"      ? "TABLES"
           : first == "BLOCK"      ? "BLOCKS"
           : first == "DICTIONARY" ? "OBJECTS"
           : first == "ACDSSCHEMA" ? "ACDSDATA"
                                   : "ENTITIES";
}
std::string lost_values::table_name(std::size_t behind) const {
    const std::string_view entry = next_type(behind);
    return std::string(entry == "ENDTAB" ? manner_.lacking_table() : entry); // an empty one
}

std::string_view lost_values::next_type(std::size_t line) const {
    const std::size_t end = std::min(lines_.size(), line + 400);
    for (std::size_t i = line; i + 1 < end; i += 2)
        if (codes_[i] == 0)
            return trimmed(lines_[i + 1].text());
    return end == lines_.size() ? following_ : std::string_view();
}

std::string lost_values::version() const {
    const bool is_later = std::any_of(lines_.begin(), lines_.end(), [](const text_line& line) {
        return trimmed(line.text()) == "$CAMERADISPLAY";
    });
    return is_later ? "AC1021" : manner_.has_markers() ? "AC1015" : "AC1009";
}

} // namespace dxf
