// The groups of one record, to be read, and to be changed group by group.
//
// A list looks on the record's text. A change replaces, adds or takes away single groups; text() gives the
// record's text anew, in which every group that was not changed stands byte for byte as it stood, and changed
// ones follow the file's manner (line ends, padding of codes and numbers).
#pragma once

#include "adesk.h"
#include "host/dxf/common_groups.h"
#include "host/dxf/group_reader.h"

#include <array>
#include <cstdint>
#include <forward_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dxf {

struct group {
    int code = 0;
    std::string_view value;  // without line end
    std::string_view source; // both lines as they stand in the file; empty when written anew
};

// How a file writes its groups.
struct group_style {
    std::string_view line_end = "\r\n";
    bool padded_codes = true;      // in three columns
    std::size_t short_columns = 6; // of short integers, which stand at their end; 0: as long as they are
    std::size_t long_columns = 9;  // of longer ones
};

// Where in a record a property is looked for.
//
// From R13 on the groups of each class stand behind a marker (100); a group of another class may have the
// same code. Where the marker is missing, what stands before the first one is searched: of records without
// markers (R12 and before, and what some programs write) that is all.
struct group_place {
    std::string_view marker;         // class name behind group 100; "*": the whole record
    std::span<const int> order = {}; // the codes of this class in the order in which they are written
};

class ACDB_PORT group_list {
public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    group_list() = default;
    // Reads a record's text; the text must outlive the list.
    explicit group_list(padded_text record);
    group_list(group_list&&) = default;
    group_list& operator=(group_list&&) = default;

    const std::vector<group>& groups() const { return groups_; }
    bool empty() const { return groups_.empty(); }
    bool changed() const { return changed_; }

    // The groups among which a place's are looked for, from the first to behind the last: for classes that
    // have a code more than once.
    std::pair<std::size_t, std::size_t> extent(const group_place& place) const;
    // The first group of a code at a place; npos when there is none.
    std::size_t find(const group_place& place, int code) const;

    // Its value as text, integer, real or handle, blanks around numbers ignored; nothing when there is none.
    // What is no number reads as far as it is one, as programs in the wild read it ("256QSW" is 256).
    std::optional<std::string_view> text(const group_place& place, int code) const;
    std::optional<std::int64_t> integer(const group_place& place, int code) const;
    std::optional<double> real(const group_place& place, int code) const;
    std::uint64_t handle(const group_place& place, int code) const; // 0: none

    // Sets the first group of a code, or adds one where `place.order` puts it. A value that reads the same
    // already is left as it is.
    void set_text(const group_place& place, int code, std::string_view value);
    void set_integer(const group_place& place, int code, std::int64_t value);
    void set_real(const group_place& place, int code, double value);
    // The same for the group that stands at an index.
    void set_integer_at(std::size_t at, std::int64_t value);
    void set_real_at(std::size_t at, double value);
    // Takes away the first group of a code, if there is one.
    void remove(const group_place& place, int code);

    // Replaces the groups [first, last) by others.
    struct fresh_group {
        int code;
        std::string value;
    };
    void splice(std::size_t first, std::size_t last, std::span<const fresh_group> groups);
    // The same for one group and another of its code.
    void put_fresh(std::size_t at, std::string value);

    // The record's text with all changes.
    std::string write(const group_style& style) const;

private:
    std::size_t find_common(int code) const;
    std::size_t insertion_point(const group_place& place, int code) const;
    void put_new(std::size_t at, int code, std::string value);
    void put_value(std::size_t at, std::string_view value);
    void moved() {
        changed_ = true;
        common_is_known_ = false;
    }

    std::vector<group> groups_;
    std::string_view rest_;              // behind the last whole group, in damaged files
    std::forward_list<std::string> own_; // values written anew; most lists have none
    bool changed_ = false;
    // Where the first group of each common code stands, counted from 1; gathered when the first is asked for.
    mutable std::array<std::uint32_t, std::size(common_codes)> common_{};
    mutable bool common_is_known_ = false;
};

// The kinds of value that group codes have, by the ranges of the DXF reference.
enum class value_kind { text, real, small_integer, integer, wide_integer, flag, handle, binary };
ACDB_PORT value_kind kind_of_code(int code);

// The integer that a text begins with, blanks in front allowed; nothing when it begins with none.
ACDB_PORT std::optional<std::int64_t> leading_integer(std::string_view text);

// The real that a text begins with, blanks in front allowed, a comma read as the point that it stands for
// ("1,5"); nothing when it begins with none, or with one that is not finite.
ACDB_PORT std::optional<double> leading_real(std::string_view text);

// One group in the manner of a file.
ACDB_PORT void append_group(std::string& out, const group_style& style, int code, std::string_view value);

} // namespace dxf
