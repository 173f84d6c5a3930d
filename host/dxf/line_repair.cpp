#include "host/dxf/line_repair.h"

#include "base/number_text.h"
#include "base/utf.h"
#include "host/dxf/group_list.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

namespace dxf {

namespace {

std::wstring shown(std::string_view text) {
    constexpr std::size_t enough = 40;
    text = trimmed(text.substr(0, text.find('\n')));
    return L"'" + base::widen(text.substr(0, enough)) + (text.size() > enough ? L"...'" : L"'");
}

std::string_view line_at(const char* at, const char* end) {
    const void* const feed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    return {at, static_cast<std::size_t>((feed != nullptr ? static_cast<const char*>(feed) + 1 : end) - at)};
}

// The code of a real that stands between two groups, where points tell it: they come as x, y, z with codes
// ten apart. 0 when they do not.
int code_between(int before, int behind) {
    const auto is_x = [](int code) { return code >= 10 && code <= 18; };
    const auto is_y = [](int code) { return code >= 20 && code <= 28; };
    if (is_y(behind) && before != behind - 10)
        return behind - 10;
    if (is_x(before) && behind != before + 10)
        return before + 10;
    if (is_y(before) && is_x(behind) && behind != before - 10)
        return before + 10;
    return 0;
}

// Whether a line end may stand inside the value: of texts that people write, not of names and numbers.
bool may_hold_lines(int code) {
    constexpr int comment = 999;
    constexpr int text_in_extended_data = 1000;
    return code == 1 || code == 3 || (code >= 300 && code <= 309) || code == comment ||
           code == text_in_extended_data;
}

class line_mender {
public:
    line_mender(const record_table& records, placed_repairs& repairs, std::vector<text_edit>& edits)
        : repairs_(repairs), edits_(edits) {
        for (std::uint32_t type = type_none + 1; type < records.type_names().size(); ++type)
            types_.insert(records.type_names()[type]);
    }

    // `headed`: whether the first group is the record's type, as it is but for what stands before all
    // records.
    void mend(std::string_view record, bool headed) {
        group_reader groups(record);
        raw_group behind;
        bool first = headed;
        int before = 0; // code of the group before
        bool more = groups.next(behind);
        while (more) {
            const raw_group group = behind;
            more = groups.next(behind);
            const int next = more ? behind.code : 0;
            const raw_group& neighbour = more ? behind : group;
            bool stays = true;
            if (!first && group.code == 0)
                stays = lost_code(group, before, next, neighbour);
            else
                before = group.code;
            if (stays)
                stray_lines(group, before, next, neighbour);
            first = false;
        }
    }

private:
    // A code line like that of another group, with another code in its columns.
    static std::string code_line(const raw_group& like, int code) {
        const std::string_view line = line_at(like.begin, like.end);
        const std::size_t width = line.find_last_of("0123456789") + 1;
        std::string digits = std::to_string(code);
        if (line.front() == ' ' && digits.size() < width)
            digits.insert(0, width - digits.size(), ' ');
        return digits.append(line.substr(width));
    }

    void remove(const char* from, const char* to, const char* at, std::string_view text) {
        edits_.push_back({from, static_cast<std::size_t>(to - from), {}});
        repairs_.push_back(
            {at, repair_kind::stray_line, L"the line " + shown(text) + L" belongs to no group", L"left out"});
    }

    // A group 0 whose value is a number. `before` is the code of the group before it and becomes its own.
    // False when it is left out.
    bool lost_code(const raw_group& group, int& before, int next, const raw_group& neighbour) {
        const int code = code_between(before, next);
        if (code == 0) {
            remove(group.begin, group.end, group.value.data(), group.value);
            return false;
        }
        edits_.push_back({group.begin, line_at(group.begin, group.end).size(), code_line(neighbour, code)});
        repairs_.push_back({group.begin, repair_kind::lost_code,
                            L"the number " + shown(group.value) + L" stands where a type should",
                            L"read as group " + std::to_wstring(code)});
        before = code;
        return true;
    }

    // Lines behind a value that has but one. In texts they are allowed, but for a type in front of a handle:
    // no handle stands behind a text of the same object.
    void stray_lines(const raw_group& group, int before, int next, const raw_group& neighbour) {
        const char* at = group.value.data();
        at += line_at(at, group.end).size();
        bool told = false;
        for (std::string_view line; at != group.end; at += line.size()) {
            line = line_at(at, group.end);
            const bool is_type = types_.contains(trimmed(line.substr(0, line.find('\n'))));
            const bool before_handle = at + line.size() == group.end && (next == 5 || next == 105);
            if (is_blank(line) || (may_hold_lines(group.code) && !(is_type && before_handle)))
                continue;
            const int code = told || is_type || !base::parse_real(line) ? 0 : code_between(before, next);
            if (is_type || code != 0) {
                edits_.push_back({at, 0, code_line(neighbour, code)});
                repairs_.push_back(
                    {at, repair_kind::lost_code,
                     (is_type ? L"the type " : L"the number ") + shown(line) + L" has no group code",
                     L"read as group " + std::to_wstring(code)});
            } else {
                remove(at, at + line.size(), at, line);
            }
            told = true;
        }
    }

    placed_repairs& repairs_;
    std::vector<text_edit>& edits_;
    std::unordered_set<std::string_view>
        types_; // that the drawing has, and those that every drawing may have
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
        remove_zeros(text, ended ? group.value.data() + line_at(group.value.data(), group.end).size() : end,
                     repairs, edits);
        return edits;
    }
    line_mender mender(records, repairs, edits);
    for (const record_id id : damage.lines) {
        std::string_view record = records.text(id);
        if (damage.cut_group != nullptr && damage.cut_group >= record.data() &&
            damage.cut_group < record.data() + record.size())
            record = record.substr(0, static_cast<std::size_t>(damage.cut_group - record.data()));
        mender.mend(record, id != 0);
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
