#include "host/dxf/double_handles.h"

#include "host/dxf/group_list.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <unordered_map>

namespace dxf {

namespace {

bool is_pointer(int code) {
    return (code >= 320 && code <= 369) || (code >= 390 && code <= 399) || code == 480 || code == 481;
}

bool is_ownership(int code) {
    return code == 350 || code == 360;
}

// What a group of a type points at. Source: the DXF reference's tables of objects and entities.
struct target_row {
    std::string_view type;
    int code;
    std::string_view target; // a type; empty: any entity
};
constexpr target_row targets[] = {
    {"GROUP", 340, {}},
    {"HATCH", 330, {}},
    {"SORTENTSTABLE", 331, {}},
    {"LEADER", 340, {}},
    {"VIEWPORT", 340, {}},
    {"VIEWPORT", 331, "LAYER"},
    {"VIEWPORT", 341, "LAYER"},
    {"LAYOUT", 330, "BLOCK_RECORD"},
    {"LAYOUT", 331, "VIEWPORT"},
    {"SORTENTSTABLE", 330, "BLOCK_RECORD"},
    {"BLOCK_RECORD", 340, "LAYOUT"},
    {"BLOCK_RECORD", 331, "INSERT"},
    {"MLINE", 340, "MLINESTYLE"},
    {"IMAGE", 340, "IMAGEDEF"},
    {"LTYPE", 340, "STYLE"},
    {"MULTILEADER", 340, "MLEADERSTYLE"},
};

class finder {
public:
    finder(const std::vector<record_id>& doubles, const record_table& records) : records_(records) {
        for (const record_id id : doubles) {
            std::vector<record_id>& same = by_handle_[records.handle(id)];
            if (same.empty())
                same.push_back(records.find(records.handle(id)));
            same.push_back(id);
        }
    }

    std::vector<reference_to_double> run() {
        for (record_id id = 0; id != no_record; id = records_.next(id)) {
            stand(id);
            look(id);
        }
        return std::move(found_);
    }

private:
    // Notes what the records from here on stand in.
    void stand(record_id id) {
        switch (records_.kind(id)) {
        case record_kind::table:
            table_ = id;
            break;
        case record_kind::block:
            block_ = value_of(records_.text(id), 2);
            break;
        case record_kind::entity:
            entity_ = id;
            break;
        case record_kind::structure:
            block_ = {};
            break;
        default:
            break;
        }
    }

    void look(record_id id) {
        const record_kind kind = records_.kind(id);
        if (kind == record_kind::structure || kind == record_kind::header)
            return;
        const group_list list(records_.text(id));
        std::string_view braces; // the name of those that are open
        bool in_front = true;    // of the first class: what belongs to every object
        for (std::size_t i = 0; i < list.groups().size(); ++i) {
            const group& group = list.groups()[i];
            if (group.code == 100)
                in_front = false;
            else if (group.code == 102)
                braces =
                    group.value.find('{') == group.value.npos ? std::string_view() : trimmed(group.value);
            if (!is_pointer(group.code))
                continue;
            const auto same = by_handle_.find(parse_handle(group.value));
            if (same == by_handle_.end())
                continue;
            const bool owner = in_front && braces.empty() && group.code == 330;
            const record_id meant = the_one(same->second, [&](record_id candidate) {
                return owner                      ? owns(candidate, id)
                       : !braces.empty()          ? names(candidate, id)
                       : is_ownership(group.code) ? records_.owner_handle(candidate) == records_.handle(id)
                                                  : suits(candidate, id, group.code);
            });
            if (meant != same->second.front())
                found_.push_back({id, i, meant});
        }
        if (kind == record_kind::block_end)
            block_ = {};
    }

    // The only one of some records that is right, and else the first one.
    template<class Right>
    static record_id the_one(const std::vector<record_id>& candidates, Right right) {
        record_id found = no_record;
        for (const record_id candidate : candidates)
            if (right(candidate)) {
                if (found != no_record)
                    return candidates.front();
                found = candidate;
            }
        return found == no_record ? candidates.front() : found;
    }

    bool owns(record_id candidate, record_id owned) const {
        switch (records_.kind(owned)) {
        case record_kind::entry:
            return candidate == table_;
        case record_kind::part:
            return candidate == entity_;
        case record_kind::object:
            return names(candidate, owned);
        case record_kind::block:
        case record_kind::block_end:
        case record_kind::entity:
            if (records_.type(candidate) != type_block_record)
                return false;
            return block_.empty() || value_of(records_.text(candidate), 2) == block_;
        default:
            return false;
        }
    }

    // Whether one record holds the handle of another.
    bool names(record_id candidate, record_id other) const {
        const std::uint64_t handle = records_.handle(other);
        group_reader groups(records_.text(candidate));
        raw_group group;
        while (groups.next(group))
            if (is_pointer(group.code) && parse_handle(group.value) == handle)
                return true;
        return false;
    }

    bool suits(record_id candidate, record_id holder, int code) const {
        for (const target_row& row : targets)
            if (row.code == code && row.type == records_.type_name(holder))
                return row.target.empty() ? records_.kind(candidate) == record_kind::entity
                                          : records_.type_name(candidate) == row.target;
        return false;
    }

    const record_table& records_;
    std::unordered_map<std::uint64_t, std::vector<record_id>> by_handle_; // the first record in front
    std::vector<reference_to_double> found_;
    record_id table_ = no_record; // in which the record stands
    record_id entity_ = no_record;
    std::string_view block_;
};

} // namespace

std::vector<reference_to_double> references_to(const std::vector<record_id>& doubles,
                                               const record_table& records) {
    return doubles.empty() ? std::vector<reference_to_double>() : finder(doubles, records).run();
}

} // namespace dxf
