#include "host/picture/hatch_lines.h"

#include <algorithm>
#include <cmath>

namespace picture {

namespace {

// One of the families of parallel lines that a pattern is made of.
struct family {
    AcGePoint2d base;
    AcGeVector2d along; // of length 1
    AcGeVector2d across;
    double step = 0.0;  // from line to line, across
    double shift = 0.0; // and along
    std::vector<double> dashes;
    double period = 0.0;
};

std::optional<family> family_at(const AcDbHatch& hatch, int index) {
    double angle = 0.0;
    double base_x = 0.0;
    double base_y = 0.0;
    double offset_x = 0.0;
    double offset_y = 0.0;
    AcGeDoubleArray dashes;
    if (hatch.getPatternDefinitionAt(index, angle, base_x, base_y, offset_x, offset_y, dashes) != Acad::eOk)
        return std::nullopt;
    family found;
    found.base = {base_x, base_y};
    found.along = {std::cos(angle), std::sin(angle)};
    found.across = {-found.along.y, found.along.x};
    found.step = offset_x * found.across.x + offset_y * found.across.y;
    found.shift = offset_x * found.along.x + offset_y * found.along.y;
    for (int i = 0; i < dashes.length(); ++i) {
        found.dashes.push_back(dashes[i]);
        found.period += std::fabs(dashes[i]);
    }
    return found;
}

// Draws the parts of one line between places along it, dash by dash.
class dashing {
public:
    dashing(const family& family, const AcGeMatrix3d& to_world, std::size_t most,
            std::vector<std::vector<AcGePoint3d>>& made)
        : family_(family), to_world_(to_world), most_(most), made_(made) {}

    // False when there would be too many.
    bool draw(double number, double from, double to) {
        if (family_.dashes.empty() || !(family_.period > 0.0))
            return add(number, from, to);
        const double origin = number * family_.shift;
        double at = origin + std::floor((from - origin) / family_.period) * family_.period;
        if ((to - from) / family_.period * static_cast<double>(family_.dashes.size()) >
            static_cast<double>(most_))
            return false;
        while (at < to) {
            for (const double dash : family_.dashes) {
                const double next = at + std::fabs(dash);
                if (dash >= 0.0 && next >= from && at <= to &&
                    !add(number, std::max(at, from), std::min(next, to)))
                    return false;
                at = next;
            }
        }
        return true;
    }

private:
    bool add(double number, double from, double to) {
        if (made_.size() >= most_)
            return false;
        const AcGePoint2d foot = family_.base + family_.across * (number * family_.step);
        const auto point = [&](double t) {
            const AcGePoint2d there = foot + family_.along * t;
            return to_world_ * AcGePoint3d(there.x, there.y, 0.0);
        };
        made_.push_back({point(from), point(to)});
        return true;
    }

    const family& family_;
    const AcGeMatrix3d& to_world_;
    std::size_t most_;
    std::vector<std::vector<AcGePoint3d>>& made_;
};

} // namespace

std::optional<std::vector<std::vector<AcGePoint3d>>>
hatch_lines(const AcDbHatch& hatch, const AcGeMatrix3d& to_world,
            std::span<const std::vector<AcGePoint3d>> rims, std::size_t most) {
    const AcGeMatrix3d plane = to_world * AcGeMatrix3d::planeToWorld(hatch.normal()) *
                               AcGeMatrix3d::translation({0.0, 0.0, hatch.elevation()});
    AcGeMatrix3d back;
    std::vector<std::vector<AcGePoint3d>> made;
    if (!plane.inverse(back))
        return made;
    std::vector<std::vector<AcGePoint2d>> flat;
    for (const std::vector<AcGePoint3d>& rim : rims) {
        flat.emplace_back();
        for (const AcGePoint3d& point : rim) {
            const AcGePoint3d there = back * point;
            flat.back().emplace_back(there.x, there.y);
        }
    }
    for (int index = 0; index < hatch.numPatternDefinitions(); ++index) {
        const std::optional<family> lines = family_at(hatch, index);
        if (!lines || lines->step == 0.0)
            continue;
        // Where each line meets the rims: its number, and the place along it.
        std::vector<std::pair<double, double>> meetings;
        for (const std::vector<AcGePoint2d>& rim : flat)
            for (std::size_t i = 0; i < rim.size(); ++i) {
                const AcGeVector2d a = rim[i] - lines->base;
                const AcGeVector2d b = rim[(i + 1) % rim.size()] - lines->base;
                const auto number = [&](const AcGeVector2d& v) {
                    return (v.x * lines->across.x + v.y * lines->across.y) / lines->step;
                };
                const double at_a = number(a);
                const double at_b = number(b);
                const double first = std::ceil(std::min(at_a, at_b));
                const double last = std::max(at_a, at_b);
                if (!(last - first + static_cast<double>(meetings.size()) < 2.0 * static_cast<double>(most)))
                    return std::nullopt;
                for (double line = first; line < last; line += 1.0) {
                    const double t = (line - at_a) / (at_b - at_a);
                    const AcGeVector2d there = a + (b - a) * t;
                    meetings.emplace_back(line, there.x * lines->along.x + there.y * lines->along.y);
                }
            }
        std::sort(meetings.begin(), meetings.end());
        dashing draw(*lines, plane, most, made);
        for (std::size_t i = 0; i + 1 < meetings.size(); ++i) {
            if (meetings[i].first != meetings[i + 1].first)
                continue;
            if (!draw.draw(meetings[i].first, meetings[i].second, meetings[i + 1].second))
                return std::nullopt;
            ++i;
        }
    }
    return made;
}

} // namespace picture
