#include "host/gi/canvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace gi {

AcGePoint3d arc::at(double t) const {
    return center + u * std::cos(t) + v * std::sin(t);
}

bool arc::is_whole() const {
    constexpr double full = 2.0 * std::numbers::pi;
    return std::fabs(sweep) >= full - 1e-9;
}

void canvas::area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) {
    for (const std::vector<AcGePoint3d>& rim : rims)
        area(rim);
}

std::vector<AcGePoint3d> flattened(const arc& arc, double deviation) {
    const double radius = std::max(arc.u.length(), arc.v.length());
    // The sagitta of a chord over the angle a is r (1 - cos(a/2)).
    double step = std::numbers::pi / 4.0;
    if (deviation < radius && deviation > 0.0)
        step = std::clamp(2.0 * std::acos(1.0 - deviation / radius), 1e-3, step);
    constexpr double most = 511.0;
    const double count = std::clamp(std::ceil(std::fabs(arc.sweep) / step), 1.0, most);
    std::vector<AcGePoint3d> points;
    points.reserve(static_cast<std::size_t>(count) + 1);
    for (double i = 0.0; i <= count; ++i)
        points.push_back(arc.at(arc.start + arc.sweep * i / count));
    return points;
}

} // namespace gi
