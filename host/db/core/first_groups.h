// The first group of every code of a record, found in one pass: for classes that ask for many.
#pragma once

#include "gemat3d.h"
#include "host/dxf/group_list.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace db {

// Extended data, embedded objects and what stands in braces (102) is passed over. Looks on the list, which
// must not change meanwhile.
class first_groups {
public:
    explicit first_groups(const dxf::group_list& groups) {
        bool in_braces = false;
        for (const dxf::group& group : groups.groups()) {
            if (group.code >= 1000 || group.code == 101)
                break;
            if (group.code == 102)
                in_braces = group.value.find('{') != std::string_view::npos;
            else if (!in_braces && group.code >= 0 && group.code < codes &&
                     first_[static_cast<std::size_t>(group.code)] == nullptr)
                first_[static_cast<std::size_t>(group.code)] = &group;
        }
    }

    bool has(int code) const { return first_[static_cast<std::size_t>(code)] != nullptr; }
    // Empty when there is none.
    std::string_view text(int code) const {
        return has(code) ? first_[static_cast<std::size_t>(code)]->value : std::string_view();
    }
    // What is no finite number counts as missing.
    double real(int code, double missing = 0.0) const {
        if (!has(code))
            return missing;
        return dxf::leading_real(text(code)).value_or(missing);
    }
    int integer(int code, int missing = 0) const {
        using limits = std::numeric_limits<int>;
        return static_cast<int>(std::clamp<double>(real(code, missing), limits::min(), limits::max()));
    }
    // Its x in group `code`, y ten above, z twenty above.
    AcGePoint3d point(int code) const { return {real(code), real(code + 10), real(code + 20)}; }
    AcGeVector3d normal() const {
        if (!has(210))
            return AcGeVector3d::kZAxis;
        const AcGeVector3d normal = point(210).asVector();
        return normal.isZeroLength() ? AcGeVector3d::kZAxis : normal.normal();
    }

private:
    static constexpr int codes = 300;
    std::array<const dxf::group*, codes> first_{};
};

} // namespace db
