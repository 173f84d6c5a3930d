// What the groups of a drawing are like: which code stands behind which, what the values of a code look like,
// which type and which marker follow which. Learned from its sound records, so that damaged ones can be read
// as their neighbours are.
#pragma once

#include "host/dxf/group_list.h"
#include "host/dxf/record_table.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace dxf {

// A line with its line end.
struct text_line {
    const char* begin = nullptr;
    const char* end = nullptr;
    std::string_view text() const { // without the line end
        const char* last = end;
        while (last != begin && (last[-1] == '\n' || last[-1] == '\r'))
            --last;
        return {begin, static_cast<std::size_t>(last - begin)};
    }
};

// The lines of a text; a last one without a line end counts.
ACDB_PORT std::vector<text_line> lines_in(std::string_view text);

// Whether a line end may stand inside the value: of texts that people write, not of names and numbers.
constexpr bool may_hold_lines(int code) {
    return code == 1 || code == 3 || (code >= 300 && code <= 309) || code == 999 || code == 1000;
}

// Whether a value that is blank is one that was lost: of numbers, types, markers, handles that refer. The
// handles of records are mended with the records.
inline bool must_have_value(int code) {
    const value_kind kind = kind_of_code(code);
    return code != 5 && code != 105 &&
           (code == 0 || code == 100 || code == 102 ||
            (kind != value_kind::text && kind != value_kind::binary));
}

class ACDB_PORT line_manner {
public:
    // `damaged`: records that are not to be trusted, in order; they are learned from where a drawing has
    // nothing better.
    line_manner(const record_table& records, const std::vector<record_id>& damaged);

    // What stands in front of a group: numbers of a type and of a marker, and the group's code.
    struct place {
        std::uint32_t type = 0;   // 0: none, or one that is not known
        std::uint32_t marker = 0; // the last one; 0: none
        int code = -1;            // -1: nothing
        unsigned braces = 0;      // in which of an application's groups (102); 0: in none
        bool operator==(const place&) const = default;
    };
    place behind(const place& before, int code, std::string_view value) const;

    // How much of a surprise a code is behind others, and a value behind its code, in bits: 0 is none.
    double surprise(const place& before, int code) const;
    double surprise(const place& before, int code, std::string_view value) const;
    // The same of how a line that is a code stands in its columns.
    double surprise_of_columns(std::string_view code_line) const;
    // And of one that is the value of a code.
    double surprise_of_columns(int code, std::string_view value) const;
    // That a type follows another one.
    double surprise_of_type(std::uint32_t before, std::uint32_t type) const;
    // And that it stands between two: parts (VERTEX, ATTRIB, SEQEND) follow one another and what they are
    // parts of.
    static double surprise_of_parts(std::string_view before, std::string_view type, std::string_view next);

    // Codes that stand behind others most often, the most frequent first.
    std::vector<int> likely_codes(const place& before) const;
    // All types that the drawing has; the markers that stand behind one.
    const std::vector<std::string_view>& types() const { return types_; }
    std::vector<std::string_view> likely_markers(const place& before) const;
    std::uint32_t type_number(std::string_view name) const;
    // Whether groups stand behind markers, as from R13 on.
    bool has_markers() const { return markers_.size() > 1; }
    // The table that no sound record names; of several the one that is most likely an empty one.
    std::string_view lacking_table() const;
    // Whether a sound record says a text that may hold lines: it is more than a further line of one.
    bool says(std::string_view text) const { return texts_.contains(text); }
    // Whether a group names the section, table or block that it stands in, or a variable of the header.
    bool names_part(const place& before, int code) const;

    const group_style& style() const { return style_; }

    // A number that no other place has.
    static std::uint64_t key(const place& at) {
        return static_cast<std::uint64_t>(at.type) << 40 | static_cast<std::uint64_t>(at.marker) << 20 |
               static_cast<std::uint64_t>(at.braces) << 18 | static_cast<std::uint64_t>(at.code + 8);
    }

private:
    struct follower {
        int code;
        std::uint32_t times;
    };
    struct followers {
        std::uint32_t total = 0;
        std::vector<follower> codes;
        void count(int code, std::uint32_t times);
        std::uint32_t times(int code) const;
    };

    void learn(padded_text record, bool damaged);
    void learn_types(const record_table& records);

    std::vector<std::string_view> types_;
    std::unordered_map<std::string_view, std::uint32_t> type_numbers_;
    std::vector<std::string_view> markers_;
    std::unordered_map<std::string_view, std::uint32_t> marker_numbers_;
    std::unordered_map<std::uint64_t, followers> behind_place_;
    std::unordered_map<int, followers> behind_code_;
    followers anywhere_;
    std::unordered_map<std::uint64_t, followers> next_markers_; // numbers of markers, by type and marker
    std::unordered_map<std::uint32_t, followers> next_types_;
    std::unordered_set<std::string_view> names_;  // values of codes that name things
    std::unordered_set<std::string_view> tables_; // names of tables
    std::unordered_set<std::string_view> texts_;  // and of those that may hold lines
    group_style style_;
    std::size_t points_ = 0;      // reals that have a point
    std::size_t whole_reals_ = 0; // and those that have none
    bool padded_ = false;         // codes stand in three columns
    bool unpadded_ = false;       // none does
};

} // namespace dxf
