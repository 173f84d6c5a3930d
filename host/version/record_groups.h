// The groups of a record that is written as another version, read once.
#pragma once

#include "host/dxf/group_list.h"
#include "host/dxf/record_header.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace version {

class record_groups {
public:
    // Reads a record's text, which must outlive this; what was read before is gone.
    void read(dxf::padded_text text) {
        groups_.clear();
        dxf::group_reader reader(text);
        dxf::raw_group group;
        while (reader.next(group))
            groups_.push_back(group);
        data_ = groups_.size();
        mark_ = groups_.size();
        handle_ = owner_ = 0;
        bool in_braces = false;
        for (std::size_t i = 1; i < groups_.size(); ++i) {
            const int code = groups_[i].code;
            if (code >= 1000 || code == 101) {
                data_ = i;
                break;
            }
            if (code == 102)
                in_braces = groups_[i].value.find('{') != std::string_view::npos;
            else if (code == 100 && mark_ == groups_.size())
                mark_ = i;
            else if (mark_ == groups_.size() && !in_braces && (code == 5 || code == 105) && handle_ == 0)
                handle_ = dxf::parse_handle(groups_[i].value);
            else if (mark_ == groups_.size() && !in_braces && code == 330 && owner_ == 0)
                owner_ = dxf::parse_handle(groups_[i].value);
        }
        if (mark_ > data_)
            mark_ = groups_.size();
        while (data_ < groups_.size() && groups_[data_].code < 1000)
            ++data_;
    }

    const std::vector<dxf::raw_group>& all() const { return groups_; }
    std::size_t size() const { return groups_.size(); }
    const dxf::raw_group& operator[](std::size_t i) const { return groups_[i]; }
    std::string_view type() const {
        return groups_.empty() ? std::string_view() : dxf::trimmed(groups_[0].value);
    }
    // Where its first marker is, and its extended data; size() when there are none.
    std::size_t first_marker() const { return mark_; }
    std::size_t extended_data() const { return data_; }
    bool has_markers() const { return mark_ != groups_.size(); }
    // What stands before its first marker, 0 when nothing does.
    std::uint64_t handle() const { return handle_; }
    std::uint64_t owner() const { return owner_; }

    // The first value of a code before the extended data; `missing` when there is none.
    std::string_view value(int code, std::string_view missing = {}) const {
        for (std::size_t i = 1; i < data_; ++i)
            if (groups_[i].code == code)
                return dxf::trimmed(groups_[i].value);
        return missing;
    }
    bool has(int code) const {
        for (std::size_t i = 1; i < data_; ++i)
            if (groups_[i].code == code)
                return true;
        return false;
    }
    std::int64_t integer(int code, std::int64_t missing = 0) const {
        const auto number = dxf::leading_real(value(code));
        return number ? static_cast<std::int64_t>(*number) : missing;
    }
    double real(int code, double missing = 0.0) const {
        return dxf::leading_real(value(code)).value_or(missing);
    }

private:
    std::vector<dxf::raw_group> groups_;
    std::size_t mark_ = 0;
    std::size_t data_ = 0;
    std::uint64_t handle_ = 0;
    std::uint64_t owner_ = 0;
};

} // namespace version
