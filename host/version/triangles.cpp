#include "host/version/triangles.h"

#include <numeric>

namespace version {

namespace {

// Twice the area of a triangle; negative when it turns to the right.
double turn(const AcGePoint3d& a, const AcGePoint3d& b, const AcGePoint3d& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

} // namespace

std::vector<std::array<std::size_t, 3>> triangles_of(std::span<const AcGePoint3d> polygon) {
    std::vector<std::array<std::size_t, 3>> found;
    constexpr std::size_t most_corners = 300;
    if (polygon.size() < 3 || polygon.size() > most_corners)
        return found;
    double area = 0.0;
    for (std::size_t i = 1; i + 1 < polygon.size(); ++i)
        area += turn(polygon[0], polygon[i], polygon[i + 1]);
    const double sign = area < 0.0 ? -1.0 : 1.0;
    std::vector<std::size_t> left(polygon.size());
    std::iota(left.begin(), left.end(), std::size_t(0));
    // Cuts off one corner after the other in which no other point lies.
    const auto is_ear = [&](std::size_t at) {
        const std::size_t a = left[(at + left.size() - 1) % left.size()];
        const std::size_t b = left[at];
        const std::size_t c = left[(at + 1) % left.size()];
        if (sign * turn(polygon[a], polygon[b], polygon[c]) < 0.0)
            return false;
        for (const std::size_t other : left)
            if (other != a && other != b && other != c &&
                sign * turn(polygon[a], polygon[b], polygon[other]) > 0.0 &&
                sign * turn(polygon[b], polygon[c], polygon[other]) > 0.0 &&
                sign * turn(polygon[c], polygon[a], polygon[other]) > 0.0)
                return false;
        return true;
    };
    while (left.size() > 3) {
        std::size_t ear = 0;
        while (ear < left.size() && !is_ear(ear))
            ++ear;
        if (ear == left.size())
            return {};
        found.push_back(
            {left[(ear + left.size() - 1) % left.size()], left[ear], left[(ear + 1) % left.size()]});
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(ear));
    }
    found.push_back({left[0], left[1], left[2]});
    return found;
}

} // namespace version
