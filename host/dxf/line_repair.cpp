#include "host/dxf/line_repair.h"

#include "base/number_text.h"
#include "base/utf.h"
#include "host/dxf/line_reading.h"

#include <algorithm>
#include <cstring>

namespace dxf {

namespace {

std::wstring shown(std::string_view text) {
    constexpr std::size_t enough = 40;
    text = trimmed(text.substr(0, text.find('\n')));
    return L"'" + base::widen(text.substr(0, enough)) + (text.size() > enough ? L"...'" : L"'");
}

class line_mender {
public:
    line_mender(const record_table& records, const std::vector<record_id>& damaged, placed_repairs& repairs,
                std::vector<text_edit>& edits)
        : records_(records), manner_(records, damaged), repairs_(repairs), edits_(edits) {}

    void mend(record_id id, std::string_view record) {
        lines_ = lines_in(record);
        const std::string_view before = id > 0 ? records_.type_name(id - 1) : std::string_view();
        const std::string_view behind =
            records_.has(id + 1) ? records_.type_name(id + 1) : std::string_view();
        const std::vector<line_step> steps = read_lines(lines_, manner_, before, behind);
        for (std::size_t i = 0; i < steps.size(); ++i)
            if (steps[i].what == line_step::act::needless)
                leave_out(steps[i].line, steps[i].line + 1);
            else if (steps[i].what == line_step::act::wrong_pair)
                leave_out(steps[i].line, steps[i].line + 2);
            else if (steps[i].what == line_step::act::no_value ||
                     steps[i].what == line_step::act::blank_value)
                i = mend_value(steps, i);
            else if (steps[i].what != line_step::act::group && steps[i].what != line_step::act::more_text)
                mend_code(steps[i]);
    }

private:
    // A group in the manner of the file: its code line, and its value line.
    std::pair<std::string, std::string> group_lines(int code, std::string_view value) const {
        std::string both;
        append_group(both, manner_.style(), code, value);
        const std::size_t behind = both.find('\n') + 1;
        return {both.substr(0, behind), both.substr(behind)};
    }

    void edit(std::size_t first, std::size_t last, std::string instead) {
        const char* const begin = first < lines_.size() ? lines_[first].begin : lines_.back().end;
        const char* const end = last > first ? lines_[last - 1].end : begin;
        edits_.push_back({begin, static_cast<std::size_t>(end - begin), std::move(instead)});
    }

    void leave_out(std::size_t first, std::size_t last) {
        const std::string_view line = lines_[last - 1].text();
        const bool twice = last == first + 1 && first > 0 && line == lines_[first - 1].text();
        edit(first, last, {});
        repairs_.push_back({lines_[last - 1].begin, repair_kind::stray_line,
                            is_blank(line) ? L"a blank line belongs to no group"
                            : twice        ? L"the line " + shown(line) + L" stands twice"
                                           : L"the line " + shown(line) + L" belongs to no group",
                            twice && !is_blank(line) ? L"left out once" : L"left out"});
    }

    void mend_code(const line_step& step) {
        using act = line_step::act;
        const bool is_missing = step.what == act::lost_code;
        const std::size_t value_line = is_missing ? step.line : step.line + 1;
        const std::string_view value = lines_[value_line].text();
        edit(step.line, value_line, group_lines(step.code, {}).first);
        const std::wstring what = step.code == 0            ? L"the type "
                                  : base::parse_real(value) ? L"the number "
                                                            : L"the text ";
        repairs_.push_back({lines_[step.line].begin, repair_kind::lost_code,
                            (is_blank(value) ? L"an empty text" : what + shown(value)) +
                                (step.what == act::wrong_code   ? L" stands where a type should"
                                 : step.what == act::blank_code ? L" has a blank line for its group code"
                                                                : L" has no group code"),
                            L"read as group " + std::to_wstring(step.code)});
    }

    // A code whose value was lost. The step up to which all is done.
    std::size_t mend_value(const std::vector<line_step>& steps, std::size_t at) {
        const line_step& step = steps[at];
        const std::size_t value_line = step.line + 1;
        const std::size_t behind = step.what == line_step::act::blank_value ? value_line + 1 : value_line;
        const std::wstring code = std::to_wstring(step.code);
        std::wstring what = L"the value of group " + code + L" is missing";
        std::wstring done;
        std::size_t last = at;
        if (step.left_out) {
            // What belongs to a header variable or to an object goes with its name.
            std::size_t end = behind;
            if (step.code == 0 || step.code == 9) {
                while (last + 1 < steps.size() && steps[last + 1].code != 0 &&
                       steps[last + 1].code != step.code)
                    ++last;
                end = last + 1 < steps.size() ? steps[last + 1].line : lines_.size();
                what = step.code == 0 ? L"the type of an object is missing, and nothing tells it"
                                      : L"the name of a header variable is missing";
            }
            edit(step.line, end, {});
            done = step.code == 0   ? L"the object is left out"
                   : step.code == 9 ? L"the variable is left out"
                                    : L"the group is left out";
        } else {
            edit(value_line, behind, group_lines(step.code, step.value).second);
            done = step.value.empty() ? L"it is left empty" : L"read as " + shown(step.value);
        }
        repairs_.push_back(
            {lines_[step.line].begin, repair_kind::lost_code, std::move(what), std::move(done)});
        return last;
    }

    const record_table& records_;
    line_manner manner_;
    placed_repairs& repairs_;
    std::vector<text_edit>& edits_;
    std::vector<text_line> lines_; // of the record that is mended
};

// Zero bytes, up to `end`.
void remove_zeros(std::string_view text, const char* end, placed_repairs& repairs,
                  std::vector<text_edit>& edits) {
    std::size_t count = 0;
    for (const char* at = text.data(); at < end;) {
        at = static_cast<const char*>(std::memchr(at, 0, static_cast<std::size_t>(end - at)));
        if (at == nullptr)
            break;
        const char* const begin = at;
        while (at < end && *at == 0)
            ++at;
        edits.push_back({begin, static_cast<std::size_t>(at - begin), {}});
        count += static_cast<std::size_t>(at - begin);
    }
    if (count != 0)
        repairs.push_back({edits.front().at, repair_kind::zero_bytes,
                           count == 1 ? L"a zero byte" : std::to_wstring(count) + L" zero bytes from here on",
                           L"left out"});
}

} // namespace

std::vector<text_edit> mend_lines(std::string_view text, const record_table& records,
                                  const drawing_damage& damage, placed_repairs& repairs) {
    std::vector<text_edit> edits;
    const char* const end = text.data() + text.size();
    if (damage.zero_bytes) { // lines are other ones when they are gone
        const record_id last = records.size() - 1;
        group_reader groups(records.text(last));
        raw_group group;
        const bool ended = records.type(last) == type_eof && groups.next(group);
        remove_zeros(text, ended ? lines_in({group.begin, group.end}).at(1).end : end, repairs, edits);
        return edits;
    }
    line_mender mender(records, damage.lines, repairs, edits);
    for (const record_id id : damage.lines) {
        std::string_view record = records.text(id);
        if (damage.cut_group != nullptr && damage.cut_group >= record.data() &&
            damage.cut_group < record.data() + record.size())
            record = record.substr(0, static_cast<std::size_t>(damage.cut_group - record.data()));
        mender.mend(id, record);
    }
    if (damage.cut_group != nullptr) {
        edits.push_back({damage.cut_group, static_cast<std::size_t>(end - damage.cut_group), {}});
        repairs.push_back({damage.cut_group, repair_kind::cut_end, L"the file ends inside of this group",
                           L"the group is left out"});
    }
    return edits;
}

std::string edited(std::string_view text, const std::vector<text_edit>& edits) {
    std::string out;
    out.reserve(text.size() + edits.size() * 4);
    const char* from = text.data();
    for (const text_edit& edit : edits) {
        out.append(from, edit.at);
        out += edit.instead;
        from = edit.at + edit.count;
    }
    out.append(from, text.data() + text.size());
    return out;
}

} // namespace dxf
