#include "host/ge/bspline.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ge {

namespace {

constexpr int highest_degree = 25;

// A control point times its weight.
struct homogeneous {
    AcGeVector3d v;
    double w = 1.0;

    homogeneous operator+(const homogeneous& o) const { return {v + o.v, w + o.w}; }
    homogeneous operator-(const homogeneous& o) const { return {v - o.v, w - o.w}; }
    homogeneous operator*(double f) const { return {v * f, w * f}; }
};

bool is_real(const AcGePoint3d& point) {
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

// Knots at equal distances, as often at the ends as makes the curve end in its first and last points.
std::vector<double> even_knots(std::size_t points, std::size_t degree) {
    std::vector<double> knots(points + degree + 1);
    for (std::size_t i = 0; i < knots.size(); ++i)
        knots[i] = static_cast<double>(std::clamp(i, degree, points) - degree);
    return knots;
}

// Solves a system whose matrix has three diagonals, in place.
void solve(std::span<double> below, std::span<double> middle, std::span<double> above,
           std::span<AcGeVector3d> values) {
    const std::size_t count = middle.size();
    for (std::size_t i = 1; i < count; ++i) {
        const double factor = below[i] / middle[i - 1];
        middle[i] -= factor * above[i - 1];
        values[i] -= values[i - 1] * factor;
    }
    values[count - 1] *= 1.0 / middle[count - 1];
    for (std::size_t i = count - 1; i-- > 0;)
        values[i] = (values[i] - values[i + 1] * above[i]) / middle[i];
}

} // namespace

std::vector<double> bspline::breaks() const {
    std::vector<double> found{first()};
    for (std::size_t i = static_cast<std::size_t>(degree) + 1; i <= points.size(); ++i)
        if (knots[i] > found.back())
            found.push_back(knots[i]);
    return found;
}

// De Boor's scheme; the differences of the points before its last steps are the derivatives.
bspline::place bspline::at(double t) const {
    const auto p = static_cast<std::size_t>(degree);
    t = std::clamp(t, first(), last());
    // The span whose knots t lies between; at the end the last one that is not empty.
    std::size_t k = static_cast<std::size_t>(
        std::upper_bound(knots.begin() + degree, knots.begin() + static_cast<std::ptrdiff_t>(points.size()),
                         t) -
        knots.begin() - 1);
    while (k > p && knots[k] >= knots[k + 1])
        --k;
    std::array<homogeneous, highest_degree + 1> d;
    for (std::size_t i = 0; i <= p; ++i) {
        const double w = weights.empty() ? 1.0 : weights[k - p + i];
        d[i] = {points[k - p + i].asVector() * w, w};
    }
    homogeneous once{{}, 0.0};
    homogeneous twice{{}, 0.0};
    const auto knot = [&](std::size_t i) { return knots[i]; };
    const auto slope = [&](const homogeneous& a, const homogeneous& b, double from, double to) {
        return to > from ? (b - a) * (1.0 / (to - from)) : homogeneous{{}, 0.0};
    };
    for (std::size_t level = 1; level <= p; ++level) {
        if (level + 1 == p) {
            const homogeneous before = slope(d[p - 2], d[p - 1], knot(k - 1), knot(k + 1));
            const homogeneous behind = slope(d[p - 1], d[p], knot(k), knot(k + 2));
            twice = slope(before, behind, knot(k), knot(k + 1)) * static_cast<double>(p * (p - 1));
        }
        if (level == p)
            once = slope(d[p - 1], d[p], knot(k), knot(k + 1)) * static_cast<double>(p);
        for (std::size_t i = p; i >= level; --i) {
            const double from = knot(k - p + i);
            const double to = knot(k + 1 + i - level);
            const double part = to > from ? (t - from) / (to - from) : 0.0;
            d[i] = d[i - 1] * (1.0 - part) + d[i] * part;
        }
    }
    place found;
    const homogeneous& top = d[p];
    found.point = AcGePoint3d::kOrigin + top.v / top.w;
    const AcGeVector3d value = top.v / top.w;
    found.first = (once.v - value * once.w) / top.w;
    found.second = (twice.v - found.first * (2.0 * once.w) - value * twice.w) / top.w;
    return found;
}

bspline bspline::reversed() const {
    bspline turned = *this;
    std::reverse(turned.points.begin(), turned.points.end());
    std::reverse(turned.weights.begin(), turned.weights.end());
    for (std::size_t i = 0; i < knots.size(); ++i)
        turned.knots[i] = first() + last() - knots[knots.size() - 1 - i];
    return turned;
}

bool mend(bspline& spline) {
    if (spline.points.size() < 2 || spline.degree < 1 || spline.degree > highest_degree ||
        !std::all_of(spline.points.begin(), spline.points.end(), is_real))
        return false;
    if (static_cast<std::size_t>(spline.degree) >= spline.points.size()) {
        spline.degree = static_cast<int>(spline.points.size()) - 1;
        spline.knots.clear();
    }
    const auto degree = static_cast<std::size_t>(spline.degree);
    const bool good = spline.knots.size() == spline.points.size() + degree + 1 &&
                      std::all_of(spline.knots.begin(), spline.knots.end(),
                                  [](double knot) { return std::isfinite(knot); }) &&
                      std::is_sorted(spline.knots.begin(), spline.knots.end()) &&
                      spline.first() < spline.last();
    if (!good)
        spline.knots = even_knots(spline.points.size(), degree);
    if (spline.weights.size() != spline.points.size() ||
        !std::all_of(spline.weights.begin(), spline.weights.end(),
                     [](double weight) { return weight > 0.0 && std::isfinite(weight); }))
        spline.weights.clear();
    return true;
}

// Between its points the curve is a cubic one, all with the same first and second derivatives where they
// meet. First the derivatives at the points (three diagonals), then control points from these.
bspline through(std::span<const AcGePoint3d> given, const AcGeVector3d& start, const AcGeVector3d& end) {
    std::vector<AcGePoint3d> through;
    std::vector<double> t;
    for (const AcGePoint3d& point : given) {
        if (!is_real(point))
            continue;
        const double chord = through.empty() ? 0.0 : through.back().distanceTo(point);
        if (!through.empty() && chord <= AcGeTol().equalPoint())
            continue;
        t.push_back(through.empty() ? 0.0 : t.back() + chord);
        through.push_back(point);
    }
    bspline made;
    const std::size_t count = through.size();
    if (count < 2)
        return made;
    std::vector<double> below(count, 0.0);
    std::vector<double> middle(count, 1.0);
    std::vector<double> above(count, 0.0);
    std::vector<AcGeVector3d> slopes(count);
    const auto chord = [&](std::size_t i) { return (through[i + 1] - through[i]) / (t[i + 1] - t[i]); };
    for (std::size_t i = 1; i + 1 < count; ++i) {
        const double before = t[i] - t[i - 1];
        const double behind = t[i + 1] - t[i];
        below[i] = behind;
        middle[i] = 2.0 * (before + behind);
        above[i] = before;
        slopes[i] = (chord(i - 1) * behind + chord(i) * before) * 3.0;
    }
    if (start.isZeroLength()) {
        middle[0] = 2.0;
        above[0] = 1.0;
        slopes[0] = chord(0) * 3.0;
    } else {
        slopes[0] = start.normal();
    }
    if (end.isZeroLength()) {
        middle[count - 1] = 2.0;
        below[count - 1] = 1.0;
        slopes[count - 1] = chord(count - 2) * 3.0;
    } else {
        slopes[count - 1] = end.normal();
    }
    solve(below, middle, above, slopes);

    // The curve is smooth to the second derivative, so each inner knot stands once. The blossom of a piece of
    // it at three neighbouring knots is the control point.
    made.degree = 3;
    made.knots.assign(3, t.front());
    made.knots.insert(made.knots.end(), t.begin(), t.end());
    made.knots.insert(made.knots.end(), 3, t.back());
    made.points.push_back(through.front());
    for (std::size_t i = 0; i + 1 < count; ++i) {
        // The control points of the piece between t[i] and t[i+1] alone.
        const double h = t[i + 1] - t[i];
        const AcGePoint3d b0 = through[i];
        const AcGePoint3d b1 = b0 + slopes[i] * (h / 3.0);
        const AcGePoint3d b3 = through[i + 1];
        const AcGePoint3d b2 = b3 - slopes[i + 1] * (h / 3.0);
        if (i == 0)
            made.points.push_back(b1);
        if (i + 2 == count) {
            made.points.push_back(b2);
            break;
        }
        // The blossom at t[i], t[i+1], t[i+2]: from b1 and b2, which are those at t[i], t[i], t[i+1] and at
        // t[i], t[i+1], t[i+1].
        const double part = (t[i + 2] - t[i]) / h;
        made.points.push_back(b1 + (b2 - b1) * part);
    }
    made.points.push_back(through.back());
    return made;
}

std::vector<double> flattening(const bspline& spline, double deviation) {
    std::vector<double> found;
    const std::vector<double> breaks = spline.breaks();
    for (std::size_t i = 0; i + 1 < breaks.size(); ++i) {
        // A chord over h is away from its curve by at most h^2/8 times the second derivative.
        const double length = breaks[i + 1] - breaks[i];
        double bend = 0.0;
        const int samples = 2 * spline.degree + 1;
        for (int s = 0; s <= samples; ++s)
            bend = std::max(bend, spline.at(breaks[i] + length * s / samples).second.length());
        constexpr double most = 512.0;
        const double pieces =
            spline.degree == 1
                ? 1.0
                : std::clamp(std::ceil(length * std::sqrt(bend / (8.0 * std::max(deviation, 1e-300)))), 2.0,
                             most);
        for (double piece = 0.0; piece < pieces; ++piece)
            found.push_back(breaks[i] + length * piece / pieces);
    }
    found.push_back(breaks.back());
    return found;
}

std::vector<double> turns(const bspline& spline, const AcGeVector3d& direction) {
    std::vector<double> found;
    const auto slope = [&](double t) { return spline.at(t).first.dotProduct(direction); };
    const std::vector<double> breaks = spline.breaks();
    for (std::size_t i = 0; i + 1 < breaks.size(); ++i) {
        const int samples = 4 * spline.degree;
        const double step = (breaks[i + 1] - breaks[i]) / samples;
        double at = breaks[i];
        double value = slope(at);
        for (int s = 1; s <= samples; ++s) {
            double next = s == samples ? breaks[i + 1] : breaks[i] + step * s;
            const double next_value = slope(next);
            if (value * next_value < 0.0) {
                double low = at;
                double high = next;
                for (int halving = 0; halving < 60 && low < high; ++halving) {
                    const double mid = low + (high - low) / 2.0;
                    (slope(mid) * value > 0.0 ? low : high) = mid;
                }
                found.push_back(high);
            } else if (next_value == 0.0) {
                found.push_back(next);
            }
            at = next;
            value = next_value;
        }
    }
    return found;
}

} // namespace ge
