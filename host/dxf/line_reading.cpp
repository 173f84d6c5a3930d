#include "host/dxf/line_reading.h"

#include "base/number_text.h"
#include "host/dxf/group_reader.h"
#include "host/dxf/indexer.h"
#include "host/dxf/lost_values.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <array>
#include <limits>
#include <unordered_map>

namespace dxf {

namespace {

using act = line_step::act;
using place = line_manner::place;

// What mistakes surprise, in bits: a line too many, a line that is missing, one that has become blank.
constexpr double too_many = 20;
constexpr double twice = 8;         // as one beside it
constexpr double number_twice = 12; // points have equal numbers often
constexpr double missing = 18;
constexpr double blanked = 8;
constexpr double wrong = 16; // a 0 for another code
constexpr double line_in_text = 18;
constexpr double misfit = 6;       // of a value: nobody would guess such a code for it
constexpr double known_type = 10;  // makes it so much likelier that a line is a type
constexpr double known_text = 8;   // that it is a text of its own
constexpr double code_as_text = 6; // of what may as well be a code

constexpr double strange = 9;             // a group that surprises so much makes its surroundings suspect
constexpr std::size_t lines_before = 60;  // of what is strange, that are suspect,
constexpr std::size_t lines_behind = 24;  // and behind it
constexpr std::size_t most_readings = 12; // followed at a time;
constexpr std::size_t few_readings = 3;   // where damage is everywhere:
constexpr std::size_t much_damage = 4000; // so many lines of a record are suspect
constexpr double hopeless = 50;           // bits behind the best one

std::vector<int> codes_of(const std::vector<text_line>& lines) {
    std::vector<int> codes;
    codes.reserve(lines.size());
    for (const text_line& line : lines) {
        const std::string_view text = line.text();
        codes.push_back(parse_code(text.data(), text.data() + text.size()));
    }
    return codes;
}

bool is_number(std::string_view text) {
    return base::parse_real(text).has_value();
}

struct node { // a step of a reading
    act what = act::group;
    std::uint32_t before = std::numeric_limits<std::uint32_t>::max();
    std::size_t line = 0;
    int code = 0;
    std::int32_t value = -1; // number of a value that was lost; -1: none
};
constexpr std::uint32_t no_node = std::numeric_limits<std::uint32_t>::max();

struct reading {
    double cost = 0;
    place at;
    std::uint32_t type_before = 0; // of the record in front
    bool in_text = false;          // the last group may hold lines
    bool last_blank = false;       // its last line is blank
    std::uint32_t last = no_node;  // its last step that is kept,
    node next;                     // and the one behind that, which is not kept yet
};

class line_reader {
public:
    line_reader(const std::vector<text_line>& lines, const line_manner& manner, std::string_view following)
        : lines_(lines), manner_(manner), codes_(codes_of(lines)),
          values_lost_(lines, codes_, manner, following), before_attributes_(following == "ATTRIB") {}

    std::vector<line_step> read(std::string_view before) {
        mark_suspects();
        reading first;
        first.type_before = manner_.type_number(before);
        add(0, first);
        for (std::size_t at = 0; at < lines_.size(); ++at) {
            std::vector<reading> readings = take(at);
            for (const reading& one : readings)
                go_on(at, one);
        }
        std::vector<reading> done = take(lines_.size());
        for (reading& one : done)
            one.cost += manner_.surprise(one.at, 0); // the next record begins here
        const auto best = std::min_element(
            done.begin(), done.end(), [](const reading& a, const reading& b) { return a.cost < b.cost; });
        return best == done.end() ? std::vector<line_step>() : steps_of(*best);
    }

private:
    void mark_suspects() {
        suspect_.assign(lines_.size() + 1, false);
        std::size_t suspects = 0;
        std::size_t marked = 0;
        const auto mark = [&](std::size_t line) {
            marked = std::max(marked, line > lines_before ? line - lines_before : 0);
            for (const std::size_t end = std::min(line + lines_behind, suspect_.size()); marked < end;
                 ++marked) {
                suspect_[marked] = true;
                ++suspects;
            }
        };
        place at;
        for (std::size_t i = 0; i < lines_.size();) {
            if (codes_[i] == no_code || i + 1 == lines_.size()) {
                mark(i++);
                continue;
            }
            const std::string_view value = lines_[i + 1].text();
            if (manner_.surprise(at, codes_[i]) + manner_.surprise(at, codes_[i], value) > strange)
                mark(i);
            at = manner_.behind(at, codes_[i], value);
            i += 2;
        }
        if (suspects > much_damage) {
            most_readings_ = few_readings;
            values_lost_.look_at_less();
        }
    }

    void add(std::size_t at, const reading& one) { waiting_[at % waiting_.size()].push_back(one); }

    // The readings that have come to a line, the best first; those that can only become what others are
    // already are left out.
    std::vector<reading> take(std::size_t at) {
        std::vector<reading> here;
        here.swap(waiting_[at % waiting_.size()]);
        std::stable_sort(here.begin(), here.end(),
                         [](const reading& a, const reading& b) { return a.cost < b.cost; });
        std::vector<reading> kept;
        double best = here.empty() ? 0 : here.front().cost;
        for (const auto& others : waiting_)
            for (const reading& other : others)
                best = std::min(best, other.cost);
        for (const reading& one : here) {
            if (kept.size() == most_readings_ || one.cost > best + hopeless)
                break;
            const bool known = std::any_of(kept.begin(), kept.end(), [&](const reading& other) {
                return other.at == one.at && other.type_before == one.type_before &&
                       other.in_text == one.in_text && other.last_blank == one.last_blank;
            });
            if (known)
                continue;
            kept.push_back(one);
            if (at != 0) {
                kept.back().last = static_cast<std::uint32_t>(nodes_.size());
                nodes_.push_back(one.next);
            }
        }
        return kept;
    }

    void step(std::size_t to, const reading& from, double cost, act what, std::size_t line, int code,
              std::string_view value, std::int32_t lost_value = -1) {
        reading next = from;
        next.cost += cost;
        next.next = {what, from.last, line, code, lost_value};
        if (what == act::more_text) {
            next.last_blank = is_blank(value);
        } else if (what != act::needless && what != act::wrong_pair) {
            if (code == 0)
                next.type_before = from.at.type != 0 ? from.at.type : from.type_before;
            next.at = manner_.behind(from.at, code, value);
            next.in_text = may_hold_lines(code);
            next.last_blank = is_blank(value);
        }
        add(to, next);
    }

    // How much of a surprise a code is there. That attributes follow a reference is none, where they do.
    double surprise(const reading& from, int code) const {
        constexpr int attributes_follow = 66;
        return before_attributes_ && code == attributes_follow && manner_.types()[from.at.type] == "INSERT"
                   ? 0
                   : manner_.surprise(from.at, code);
    }

    // Whether the version of the drawing stands behind a line's code.
    bool is_version(std::size_t i, const reading& from) const {
        return from.at.code == 9 && i > 0 && trimmed(lines_[i - 1].text()) == "$ACADVER";
    }

    // All that the line at which a reading has arrived may be.
    void go_on(std::size_t i, const reading& from) {
        const int code = codes_[i];
        const std::string_view line = lines_[i].text();
        const bool has_next = i + 1 < lines_.size();
        if (code != no_code && has_next)
            read_group(i, from);
        const bool in_text = from.in_text && code == no_code;
        // What is a group's value elsewhere is seldom a further line of a text, or needless.
        const double own = trimmed(line).starts_with("AcDb") ? known_type : is_number(line) ? 4 : 0;
        if (in_text && !(is_blank(line) && from.last_blank))
            step(i + 1, from, line_in_text + (from.last_blank ? 6 : 0) + own, act::more_text, i, from.at.code,
                 line);
        if (!suspect_[i])
            return;
        const bool same =
            (i > 0 && line == lines_[i - 1].text()) || (has_next && line == lines_[i + 1].text());
        // A blank line behind a text may be its own.
        const double blank = in_text && !from.last_blank ? line_in_text + 4 : blanked;
        // Where codes follow themselves, the value between two may have gone as well.
        const bool repeats =
            code == no_code ? is_number(line) : manner_.surprise(manner_.behind(from.at, code, {}), code) < 4;
        const double again = repeats ? number_twice : twice;
        const double needless = code == no_code && is_blank(line) ? blank
                                : same                            ? again
                                : code != no_code                 ? too_many + 4
                                                                  : too_many;
        step(i + 1, from, needless + (same || own != known_type ? 0 : own), act::needless, i, code, line);
        if (code != no_code)
            lose_value(i, from, missing, act::no_value);
        if (is_blank(line) && has_next)
            guess_code(i, from, blanked, act::blank_code, lines_[i + 1].text(), i + 2);
        if (!is_blank(line) || lines_[i].end[-1] == '\n') // else the file ends inside of it
            guess_code(i, from, missing, act::lost_code, line, i + 1);
    }

    void read_group(std::size_t i, const reading& from) {
        const int code = codes_[i];
        const std::string_view value = lines_[i + 1].text();
        const double cost = manner_.surprise_of_columns(lines_[i].text()) + surprise(from, code);
        if (is_blank(value) && (must_have_value(code) || manner_.names_part(from.at, code) ||
                                (code == 1 && is_version(i, from)))) {
            lose_value(i, from, blanked, act::blank_value);
            return;
        }
        if (code == 0 && is_number(value)) {
            guess_code(i, from, wrong, act::wrong_code, value, i + 2);
            step(i + 2, from, wrong + 8, act::wrong_pair, i, code, value);
            return;
        }
        step(i + 2, from, cost + manner_.surprise(from.at, code, value), act::group, i, code, value);
    }

    // A value whose code is not there.
    void guess_code(std::size_t i, const reading& from, double cost, act what, std::string_view value,
                    std::size_t to) {
        const bool version = is_version(i, from);
        const auto consider = [&](int code) {
            if ((what == act::wrong_code && code == 0) || (is_blank(value) && !may_hold_lines(code)) ||
                (version && (code != 1 || !value.starts_with("AC"))))
                return;
            const double fit = manner_.surprise(from.at, code, value);
            if (fit >= misfit && (kind_of_code(code) != value_kind::text || code == 1002))
                return;
            double all = cost + surprise(from, code) + fit + manner_.surprise_of_columns(code, value);
            if (code == 0 && manner_.type_number(trimmed(value)) != 0)
                all -= known_type;
            if (may_hold_lines(code))
                all += manner_.says(trimmed(value)) ? -known_text : codes_[i] != no_code ? code_as_text : 0;
            step(to, from, all, what, i, code, value);
        };
        const auto [found, is_new] = likely_codes_.try_emplace(line_manner::key(from.at));
        if (is_new)
            found->second = manner_.likely_codes(from.at);
        const std::vector<int>& likely = found->second;
        for (const int code : likely)
            consider(code);
        const auto consider_if = [&](bool condition, int code) {
            if (condition && std::find(likely.begin(), likely.end(), code) == likely.end())
                consider(code);
        };
        const std::string_view text = trimmed(value);
        consider_if(manner_.type_number(text) != 0, 0);
        consider_if(text.starts_with("AcDb"), 100);
        consider_if(from.at.code > 0, from.at.code); // lists
        consider_if(to < codes_.size() && codes_[to] > 10,
                    codes_[std::min(to, codes_.size() - 1)] - 10); // x of a y
        consider_if(text.starts_with('$'), 9);
        consider_if(before_attributes_ && text == "1", 66);
        consider_if(text.starts_with('{') || text == "}", 102);
        if (from.at.code == 9) { // what header variables have
            const bool real = is_number(text);
            const bool whole = base::parse_integer(text).has_value();
            consider_if(whole, 70);
            consider_if(real && !whole, 40);
            consider_if(!real, 1);
        }
    }

    void lose_value(std::size_t i, const reading& from, double cost, act what) {
        const int code = codes_[i];
        const std::size_t behind = what == act::no_value ? i + 1 : i + 2;
        const lost_value found =
            is_version(i, from) && code == 1
                ? lost_value{values_lost_.version()}
                : values_lost_.find(from.at, from.at.type != 0 ? from.at.type : from.type_before, code,
                                    behind);
        values_.push_back(found.value);
        left_out_.push_back(found.left_out);
        step(behind, from, cost + manner_.surprise_of_columns(lines_[i].text()) + surprise(from, code), what,
             i, code, found.value, static_cast<std::int32_t>(values_.size()) - 1);
    }

    std::vector<line_step> steps_of(const reading& last) const {
        std::vector<line_step> steps;
        for (std::uint32_t at = last.last; at != no_node; at = nodes_[at].before) {
            const node& one = nodes_[at];
            line_step step{one.what, one.line, one.code, {}, false};
            if (one.value >= 0) {
                step.value = values_[static_cast<std::size_t>(one.value)];
                step.left_out = left_out_[static_cast<std::size_t>(one.value)];
            }
            steps.push_back(std::move(step));
        }
        std::reverse(steps.begin(), steps.end());
        return steps;
    }

    const std::vector<text_line>& lines_;
    const line_manner& manner_;
    std::vector<int> codes_;
    lost_values values_lost_;
    bool before_attributes_; // these stand in the record behind
    std::vector<bool> suspect_;
    std::size_t most_readings_ = most_readings;
    std::unordered_map<std::uint64_t, std::vector<int>> likely_codes_;
    std::array<std::vector<reading>, 3> waiting_; // by the line to which they have come
    std::vector<node> nodes_;
    std::vector<std::string> values_;
    std::vector<bool> left_out_;
};

} // namespace

std::vector<line_step> read_lines(const std::vector<text_line>& lines, const line_manner& manner,
                                  std::string_view before, std::string_view following) {
    return line_reader(lines, manner, following).read(before);
}

} // namespace dxf
