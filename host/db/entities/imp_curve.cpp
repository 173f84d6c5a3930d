#include "host/db/entities/imp_curve.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace db {

namespace {

constexpr double full_turn = 2.0 * std::numbers::pi;
constexpr double endless = std::numeric_limits<double>::infinity();

// The integral of a function by the rule of Gauss with eight points, halved until halving changes nothing.
template<class Value, class Function>
Value integral(const Function& f, double from, double to, double size, int depth = 0) {
    static constexpr std::array<std::array<double, 2>, 4> rule = {{{0.1834346424956498, 0.3626837833783620},
                                                                   {0.5255324099163290, 0.3137066458778873},
                                                                   {0.7966664774136267, 0.2223810344533745},
                                                                   {0.9602898564975363, 0.1012285362903763}}};
    const auto once = [&](double a, double b) {
        const double mid = (a + b) / 2.0;
        const double half = (b - a) / 2.0;
        Value sum{};
        for (const auto& [node, weight] : rule)
            sum += (f(mid - half * node) + f(mid + half * node)) * (weight * half);
        return sum;
    };
    const auto magnitude = [](const Value& value) {
        if constexpr (std::is_same_v<Value, double>)
            return std::fabs(value);
        else
            return value.length();
    };
    const double mid = (from + to) / 2.0;
    const Value whole = once(from, to);
    const Value halves = once(from, mid) + once(mid, to);
    size = std::max(size, magnitude(halves));
    constexpr double slack = 1e-12;
    constexpr int deepest = 10;
    if (!(magnitude(whole - halves) > slack * size) || depth == deepest)
        return halves;
    return integral<Value>(f, from, mid, size, depth + 1) + integral<Value>(f, mid, to, size, depth + 1);
}

bool is_circular(const gi::arc& arc) {
    constexpr double slack = 1e-12;
    const double size = arc.u.lengthSqrd();
    return std::fabs(arc.v.lengthSqrd() - size) <= slack * size &&
           std::fabs(arc.u.dotProduct(arc.v)) <= slack * size;
}

} // namespace

double curve_piece::to_shape(double param) const {
    if (to == endless)
        return param;
    return first == last ? from : from + (to - from) * ((param - first) / (last - first));
}

double curve_piece::to_param(double t) const {
    return to == endless || from == to ? t : first + (last - first) * ((t - from) / (to - from));
}

AcGePoint3d curve_piece::at(double t) const {
    if (const auto* line = std::get_if<straight>(&shape))
        return line->from + line->along * t;
    if (const auto* arc = std::get_if<gi::arc>(&shape))
        return arc->at(t);
    return std::get<2>(shape)->at(t).point;
}

AcGeVector3d curve_piece::slope(double t) const {
    if (const auto* line = std::get_if<straight>(&shape))
        return line->along;
    if (const auto* arc = std::get_if<gi::arc>(&shape))
        return arc->v * std::cos(t) - arc->u * std::sin(t);
    return std::get<2>(shape)->at(t).first;
}

double curve_piece::length(double t0, double t1) const {
    if (const auto* line = std::get_if<straight>(&shape))
        return line->along.length() * std::fabs(t1 - t0);
    if (const auto* arc = std::get_if<gi::arc>(&shape); arc != nullptr && is_circular(*arc))
        return arc->u.length() * std::fabs(t1 - t0);
    return std::fabs(integral<double>([this](double t) { return slope(t).length(); }, t0, t1, 0.0));
}

double curve_piece::at_length(double wanted) const {
    const bool uniform = std::holds_alternative<straight>(shape) ||
                         (std::holds_alternative<gi::arc>(shape) && is_circular(std::get<gi::arc>(shape)));
    const double speed = slope(from).length();
    if (uniform)
        return speed == 0.0 ? from : from + (to < from ? -wanted : wanted) / speed;
    // Newton's method, and halving where it leaves the piece.
    double low = from;
    double high = to;
    double t = from;
    double missing = wanted;
    constexpr int most = 60;
    for (int i = 0; i < most; ++i) {
        (missing > 0.0 ? low : high) = t;
        const double step = slope(t).length();
        double next = t + (to < from ? -missing : missing) / step;
        if (!(next > std::min(low, high) && next < std::max(low, high)))
            next = (low + high) / 2.0;
        const bool forwards = (next - t) * (to - from) > 0.0;
        missing += forwards ? -length(t, next) : length(next, t);
        const bool stays = std::fabs(next - t) <= 1e-15 * std::fabs(to - from);
        t = next;
        if (stays)
            break;
    }
    return t;
}

double curve_piece::nearest(const AcGePoint3d& point, bool extended) const {
    const double least = std::min(from, to);
    const double most = std::max(from, to);
    const auto distance = [&](double t) { return (at(t) - point).lengthSqrd(); };
    const auto nearer_end = [&] { return distance(from) <= distance(to) ? from : to; };
    if (const auto* line = std::get_if<straight>(&shape)) {
        const double size = line->along.lengthSqrd();
        const double t = size == 0.0 ? from : (point - line->from).dotProduct(line->along) / size;
        return extended ? t : std::clamp(t, least, most);
    }
    if (const auto* arc = std::get_if<gi::arc>(&shape); arc != nullptr && is_circular(*arc)) {
        const AcGeVector3d away = point - arc->center;
        const double x = away.dotProduct(arc->u);
        const double y = away.dotProduct(arc->v);
        if (x == 0.0 && y == 0.0)
            return from;
        double t = std::atan2(y, x);
        t += full_turn * std::ceil((least - t) / full_turn); // the first one that is not before the piece
        return t <= most || extended ? t : nearer_end();
    }
    // Where the distance is least the line to the point stands at right angles to the curve.
    const auto leans = [&](double t) { return (at(t) - point).dotProduct(slope(t)); };
    const auto* spline = std::get_if<std::shared_ptr<const ge::bspline>>(&shape);
    const int samples = spline != nullptr ? 6 * (*spline)->degree : 64;
    double best = nearer_end();
    double best_distance = distance(best);
    double before = least;
    double before_leans = leans(least);
    for (int i = 1; i <= samples; ++i) {
        const double here = i == samples ? most : least + (most - least) * i / samples;
        const double here_leans = leans(here);
        if (before_leans <= 0.0 && here_leans >= 0.0) {
            double low = before;
            double high = here;
            for (int halving = 0; halving < 64; ++halving) {
                const double mid = low + (high - low) / 2.0;
                (leans(mid) < 0.0 ? low : high) = mid;
            }
            if (const double found = distance(high); found < best_distance) {
                best = high;
                best_distance = found;
            }
        }
        before = here;
        before_leans = here_leans;
    }
    return best;
}

AcGeVector3d curve_piece::swept(const AcGePoint3d& from_point) const {
    const AcGeVector3d start = at(from) - from_point;
    const AcGeVector3d end = at(to) - from_point;
    if (std::holds_alternative<straight>(shape))
        return start.crossProduct(end);
    if (const auto* arc = std::get_if<gi::arc>(&shape))
        return (arc->center - from_point).crossProduct(end - start) +
               arc->u.crossProduct(arc->v) * (to - from);
    return integral<AcGeVector3d>(
        [&](double t) {
            const ge::bspline::place place = std::get<2>(shape)->at(t);
            return (place.point - from_point).crossProduct(place.first);
        },
        from, to, 0.0);
}

} // namespace db

void AcDbImpCurve::clear() {
    pieces_.clear();
    starts_.clear();
}

void AcDbImpCurve::add(const db::curve_piece& piece) {
    pieces_.push_back(piece);
    starts_.clear();
}

void AcDbImpCurve::add_line(const AcGePoint3d& from, const AcGePoint3d& to, double first, double last) {
    add({db::straight{from, to - from}, 0.0, 1.0, first, last});
}

void AcDbImpCurve::add_endless(const AcGePoint3d& from, const AcGeVector3d& direction, bool both) {
    const double begin = both ? -db::endless : 0.0;
    add({db::straight{from, direction}, begin, db::endless, begin, db::endless});
}

void AcDbImpCurve::add_arc(const gi::arc& arc, double first, double last) {
    add({arc, arc.start, arc.start + arc.sweep, first, last});
}

void AcDbImpCurve::add_spline(std::shared_ptr<const ge::bspline> spline) {
    const std::vector<double> breaks = spline->breaks();
    for (std::size_t i = 0; i + 1 < breaks.size(); ++i)
        add({spline, breaks[i], breaks[i + 1], breaks[i], breaks[i + 1]});
}

const db::curve_piece& AcDbImpCurve::piece_at(double param) const {
    const auto behind =
        std::upper_bound(pieces_.begin(), pieces_.end(), param,
                         [](double value, const db::curve_piece& piece) { return value < piece.first; });
    return behind == pieces_.begin() ? pieces_.front() : *(behind - 1);
}

bool AcDbImpCurve::has(double param) const {
    if (pieces_.size() == 1 && pieces_.front().shape.index() < 2)
        return std::isfinite(param);
    return param >= first() && param <= last();
}

AcGePoint3d AcDbImpCurve::at(double param) const {
    const db::curve_piece& piece = piece_at(param);
    return piece.at(piece.to_shape(param));
}

AcGeVector3d AcDbImpCurve::slope(double param) const {
    const db::curve_piece& piece = piece_at(param);
    const double rate = piece.to == db::endless || piece.last == piece.first
                            ? 1.0
                            : (piece.to - piece.from) / (piece.last - piece.first);
    return piece.slope(piece.to_shape(param)) * rate;
}

double AcDbImpCurve::piece_length(std::size_t index) const {
    const db::curve_piece& piece = pieces_[index];
    return piece.length(piece.from, piece.to);
}

void AcDbImpCurve::measure() const {
    if (starts_.size() == pieces_.size())
        return;
    starts_.assign(pieces_.size(), 0.0);
    for (std::size_t i = 1; i < pieces_.size(); ++i)
        starts_[i] = starts_[i - 1] + piece_length(i - 1);
}

double AcDbImpCurve::length() const {
    measure();
    return starts_.back() + piece_length(pieces_.size() - 1);
}

double AcDbImpCurve::length_to(double param) const {
    measure();
    const db::curve_piece& piece = piece_at(param);
    return starts_[static_cast<std::size_t>(&piece - pieces_.data())] +
           piece.length(piece.from, piece.to_shape(param));
}

double AcDbImpCurve::param_at_length(double length) const {
    measure();
    const auto behind = std::upper_bound(starts_.begin() + 1, starts_.end(), length);
    const auto index = static_cast<std::size_t>(behind - starts_.begin() - 1);
    const db::curve_piece& piece = pieces_[index];
    return std::clamp(piece.to_param(piece.at_length(length - starts_[index])), piece.first, piece.last);
}

double AcDbImpCurve::nearest(const AcGePoint3d& point, bool extended) const {
    double best = 0.0;
    double best_distance = db::endless;
    for (const db::curve_piece& piece : pieces_) {
        const double t = piece.nearest(point, extended && pieces_.size() == 1);
        if (const double distance = (piece.at(t) - point).lengthSqrd(); distance < best_distance) {
            best = piece.to_param(t);
            best_distance = distance;
        }
    }
    return best;
}

double AcDbImpCurve::area() const {
    const AcGePoint3d start = pieces_.front().at(pieces_.front().from);
    AcGeVector3d twice;
    for (const db::curve_piece& piece : pieces_)
        twice += piece.swept(start);
    return twice.length() / 2.0;
}
