#include "sys/posix/paper/line_raster.h"

#include "base/ordered_work.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <numbers>
#include <utility>

namespace sys {

namespace {

// Dots of a picture in one colour.
class dot_brush {
public:
    dot_brush(const dot_field& field, const ink& color)
        : field_(field), color_(color), whole_(0xFF000000u | std::uint32_t{color.red} << 16 |
                                               std::uint32_t{color.green} << 8 | color.blue) {}

    const dot_field& field() const { return field_; }
    std::uint8_t* at(int column, int row) const {
        return field_.dots + std::ptrdiff_t{row} * field_.row_bytes + std::ptrdiff_t{column} * 4;
    }
    void cover(std::uint8_t* dot) const { std::memcpy(dot, &whole_, sizeof whole_); }
    // Several side by side.
    void cover(std::uint8_t* dot, int count) const {
        constexpr int block = 64;
        if (count >= block) {
            std::array<std::uint32_t, block> many;
            many.fill(whole_);
            for (; count >= block; count -= block, dot += sizeof many)
                std::memcpy(dot, many.data(), sizeof many);
        }
        for (; count > 0; --count, dot += sizeof whole_)
            cover(dot);
    }
    void blend(std::uint8_t* dot, double covered) const {
        const int share = static_cast<int>(covered * 256.0);
        const auto mix = [share](std::uint8_t& under, int over) {
            under = static_cast<std::uint8_t>(under + (over - under) * share / 256);
        };
        mix(dot[0], color_.blue);
        mix(dot[1], color_.green);
        mix(dot[2], color_.red);
    }

private:
    const dot_field& field_;
    ink color_;
    std::uint32_t whole_;
};

// Rounded down; the limits are not below nought.
int whole_between(double at, int least, int most) {
    return static_cast<int>(std::clamp(at, static_cast<double>(least), static_cast<double>(most)));
}

class thin_raster {
public:
    thin_raster(const dot_brush& brush, double width) : brush_(brush), half_(std::max(width, 1.0) / 2.0) {}

    void draw(sheet_point a, sheet_point b) const {
        const double dx = b.x - a.x;
        const double dy = b.y - a.y;
        const double length = std::hypot(dx, dy);
        // Its ends stand out by half its width, so that corners are closed.
        const double out_x = length > 0.0 ? dx / length * half_ : half_;
        const double out_y = length > 0.0 ? dy / length * half_ : 0.0;
        a = {a.x - out_x, a.y - out_y};
        b = {b.x + out_x, b.y + out_y};
        if (std::fabs(dx) >= std::fabs(dy))
            walk<true>(a.x < b.x ? a : b, a.x < b.x ? b : a);
        else
            walk<false>(turned(a.y < b.y ? a : b), turned(a.y < b.y ? b : a));
    }

private:
    static sheet_point turned(const sheet_point& point) { return {point.y, point.x}; }

    // Along x from dot to dot (along y when it does not lie flat: then both are turned).
    template<bool Flat>
    void walk(const sheet_point& a, const sheet_point& b) const {
        const dot_field& field = brush_.field();
        const double slope = b.x > a.x ? (b.y - a.y) / (b.x - a.x) : 0.0;
        const double straight =
            1.0 / std::sqrt(1.0 + slope * slope); // how a distance along y shrinks across the line
        const double reach = (half_ + 0.5) / straight;
        constexpr double surely = 1e-9;
        const double whole = (half_ - 0.5) / straight - surely; // within it dots are covered
        const int least = Flat ? field.left : field.top;
        const int most = Flat ? field.right : field.bottom;
        const int low = Flat ? field.top : field.left;
        const int high = Flat ? field.bottom : field.right;
        const std::ptrdiff_t step = Flat ? field.row_bytes : 4;
        const int end = whole_between(b.x + 1.0, least, most);
        for (int along = whole_between(a.x, least, most); along < end; ++along) {
            const double middle = a.y + (along + 0.5 - a.x) * slope;
            // The first and the last dot may be covered in part.
            const double part = std::min(along + 1.0, b.x) - std::max<double>(along, a.x);
            const int last = whole_between(middle + reach + 1.0, low, high);
            int across = whole_between(middle - reach, low, high);
            std::uint8_t* dot = brush_.at(Flat ? along : across, Flat ? across : along);
            const bool fully = whole > 0.0 && part >= 1.0;
            for (; across < last; ++across, dot += step) {
                const double off = std::fabs(across + 0.5 - middle);
                if (fully && off < whole) {
                    brush_.cover(dot);
                    continue;
                }
                const double covered = std::min(half_ + 0.5 - off * straight, 1.0) * part;
                if (covered > 0.0)
                    brush_.blend(dot, covered);
            }
        }
    }

    const dot_brush& brush_;
    double half_;
};

// Row by row: what lies well inside is covered, what lies at the rim is blended by how far it is away.
class thick_raster {
public:
    thick_raster(const dot_brush& brush, double width) : brush_(brush), half_(width / 2.0) {}

    void draw(const sheet_point& a, const sheet_point& b) {
        const dot_field& field = brush_.field();
        go(a, b);
        const double out = half_ + 0.5;
        const int last = whole_between(std::max(a.y, b.y) + out + 1.0, field.top, field.bottom);
        for (int row = whole_between(std::min(a.y, b.y) - out, field.top, field.bottom); row < last; ++row) {
            const span outer = across(row, out);
            if (outer.first >= outer.last)
                continue;
            span inner = across(row, half_ - 0.5);
            if (inner.first >= inner.last)
                inner = {outer.last, outer.last};
            for (int column = outer.first; column < inner.first; ++column)
                blend(column, row);
            brush_.cover(brush_.at(inner.first, row), inner.last - inner.first);
            for (int column = inner.last; column < outer.last; ++column)
                blend(column, row);
        }
    }

    // How far from the line the middles of square tiles lie that it covers wholly, or touches.
    double covering(int side) const { return half_ - 0.5 - side * std::numbers::sqrt2 / 2.0; }
    double touching(int side) const { return half_ + 0.5 + side * std::numbers::sqrt2 / 2.0; }
    // The tiles of the field whose middles are not further away, row by row.
    template<class Take>
    void for_tiles(const sheet_point& a, const sheet_point& b, int side, double away, Take take) {
        const dot_field& field = brush_.field();
        go(a, b);
        const int tiles = (field.right - field.left + side - 1) / side;
        const double out = half_ + side;
        const int last = whole_between(std::max(a.y, b.y) + out, field.top, field.bottom);
        const int begin = whole_between(std::min(a.y, b.y) - out, field.top, field.bottom);
        for (int row = (begin - field.top) / side; away > 0.0 && field.top + row * side < last; ++row) {
            const auto [low, high] = reach(field.top + (row + 0.5) * side, away);
            if (low <= high)
                take(row, whole_between(std::ceil((low - field.left) / side - 0.5), 0, tiles),
                     whole_between((high - field.left) / side + 0.5, 0, tiles));
        }
    }

private:
    // Columns, the last one not among them.
    struct span {
        int first;
        int last;
    };

    void go(const sheet_point& a, const sheet_point& b) {
        a_ = a;
        length_ = std::hypot(b.x - a.x, b.y - a.y);
        along_ =
            length_ > 0.0 ? sheet_point{(b.x - a.x) / length_, (b.y - a.y) / length_} : sheet_point{1.0, 0.0};
    }
    // The dots of a row whose middles are not further from the line than `away`.
    span across(int row, double away) const {
        const auto [low, high] = reach(row + 0.5, away);
        if (low > high)
            return {0, 0};
        const dot_field& field = brush_.field();
        return {whole_between(std::ceil(low - 0.5), field.left, field.right),
                whole_between(high + 0.5, field.left, field.right)};
    }
    // From where to where points at a height are not further from the line than `away`: it has round ends.
    // The first is above the second where none is.
    std::pair<double, double> reach(double height, double away) const {
        double low = 1e300;
        double high = -1e300;
        const double y = height - a_.y;
        for (const double at : {0.0, length_}) {
            const double up = y - along_.y * at;
            if (std::fabs(up) > away)
                continue;
            const double wide = std::sqrt(away * away - up * up);
            low = std::min(low, along_.x * at - wide);
            high = std::max(high, along_.x * at + wide);
        }
        double left = -1e300;
        double right = 1e300;
        keep(along_.x, -y * along_.y, length_ - y * along_.y, left, right);
        keep(-along_.y, -away - y * along_.x, away - y * along_.x, left, right);
        if (left <= right) {
            low = std::min(low, left);
            high = std::max(high, right);
        }
        return {a_.x + low, a_.x + high};
    }
    // Narrows left and right to where slope * x lies between two numbers.
    static void keep(double slope, double least, double most, double& left, double& right) {
        constexpr double flat = 1e-12;
        if (std::fabs(slope) < flat) {
            if (least > 0.0 || most < 0.0)
                right = left - 1.0;
            return;
        }
        const double first = (slope > 0.0 ? least : most) / slope;
        const double last = (slope > 0.0 ? most : least) / slope;
        left = std::max(left, first);
        right = std::min(right, last);
    }
    void blend(int column, int row) const {
        const double x = column + 0.5 - a_.x;
        const double y = row + 0.5 - a_.y;
        const double at = x * along_.x + y * along_.y;
        double away = std::fabs(y * along_.x - x * along_.y);
        if (at < 0.0 || at > length_)
            away = std::hypot(away, at < 0.0 ? at : at - length_);
        const double covered = std::min(half_ + 0.5 - away, 1.0);
        if (covered > 0.0)
            brush_.blend(brush_.at(column, row), covered);
    }

    const dot_brush& brush_;
    double half_;
    sheet_point a_;
    sheet_point along_;
    double length_ = 0.0;
};

template<class Raster>
void draw_parts(Raster raster, std::span<const sheet_point> points) {
    if (points.size() == 1)
        raster.draw(points.front(), points.front());
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        raster.draw(points[i], points[i + 1]);
}

} // namespace

void draw_line(const dot_field& field, std::span<const sheet_point> points, double width, const ink& color) {
    constexpr double thick = 6.0; // dots
    const dot_brush brush(field, color);
    if (width > thick)
        draw_parts(thick_raster(brush, width), points);
    else
        draw_parts(thin_raster(brush, width), points);
}

bool waiting_lines::add(const dot_field& field, std::span<const sheet_point> points, double width,
                        const ink& color) {
    double length = width;
    double top = 1e300;
    double bottom = -1e300;
    for (std::size_t i = 0; i < points.size(); ++i) {
        top = std::min(top, points[i].y);
        bottom = std::max(bottom, points[i].y);
        if (i != 0)
            length +=
                std::max(std::fabs(points[i].x - points[i - 1].x), std::fabs(points[i].y - points[i - 1].y));
    }
    constexpr double few = 2'000.0; // dots: it is drawn sooner than kept
    const double dots = length * std::max(width, 1.0);
    if (lines_.empty() && dots < few)
        return false;
    const double out = std::max(width, 1.0) + 1.0;
    lines_.push_back({points_.size(), points.size(), width, color,
                      whole_between(top - out, field.top, field.bottom),
                      whole_between(bottom + out + 1.0, field.top, field.bottom)});
    points_.insert(points_.end(), points.begin(), points.end());
    dots_ += dots;
    constexpr double many = 1e9;
    constexpr std::size_t most_lines = 100'000;
    if (dots_ > many || lines_.size() >= most_lines)
        draw(field);
    return true;
}

// What lies below a later line that covers a tile wholly is not seen there, and not drawn.
void waiting_lines::draw_seen(const dot_field& field) const {
    constexpr double thick = 16.0; // dots: such a line covers tiles
    constexpr int side = 8;        // of a tile
    const auto columns = static_cast<std::size_t>((field.right - field.left + side - 1) / side);
    const auto rows = static_cast<std::size_t>((field.bottom - field.top + side - 1) / side);
    std::vector<std::size_t> covered_by(columns * rows); // the number of the last line that does
    const auto for_tiles = [&](const line& each, bool covered, auto take) {
        const dot_brush brush(field, each.color);
        thick_raster raster(brush, each.width);
        const double away = covered ? raster.covering(side) : raster.touching(side);
        for (std::size_t at = each.first; at + 1 < each.first + each.count; ++at)
            raster.for_tiles(points_[at], points_[at + 1], side, away, [&](int row, int first, int last) {
                take(std::span(points_).subspan(at, 2), row, static_cast<std::size_t>(first),
                     static_cast<std::size_t>(last));
            });
    };
    const auto is_near = [&](const line& each) { return each.top < field.bottom && field.top < each.bottom; };
    for (std::size_t i = 0; i < lines_.size(); ++i)
        if (is_near(lines_[i]) && lines_[i].width >= thick)
            for_tiles(lines_[i], true, [&](const auto&, int row, std::size_t first, std::size_t last) {
                const auto tiles =
                    covered_by.begin() + std::ptrdiff_t{row} * static_cast<std::ptrdiff_t>(columns);
                if (first < last)
                    std::fill(tiles + static_cast<std::ptrdiff_t>(first),
                              tiles + static_cast<std::ptrdiff_t>(last), i);
            });
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const line& each = lines_[i];
        if (!is_near(each))
            continue;
        if (each.width < thick || each.count < 2) {
            draw_line(field, std::span(points_).subspan(each.first, each.count), each.width, each.color);
            continue;
        }
        for_tiles(each, false,
                  [&](std::span<const sheet_point> part, int row, std::size_t first, std::size_t last) {
                      const std::size_t* const tiles =
                          covered_by.data() + static_cast<std::size_t>(row) * columns;
                      while (first < last) {
                          std::size_t end = first;
                          while (end < last && tiles[end] <= i)
                              ++end;
                          dot_field seen = field;
                          seen.top = field.top + row * side;
                          seen.bottom = std::min(seen.top + side, field.bottom);
                          seen.left = field.left + static_cast<int>(first) * side;
                          seen.right = std::min(field.left + static_cast<int>(end) * side, field.right);
                          if (first < end)
                              draw_line(seen, part, each.width, each.color);
                          first = end + 1;
                      }
                  });
    }
}

void waiting_lines::draw(const dot_field& field) {
    constexpr double enough = 4e6; // dots that are worth further threads
    const int rows = dots_ > enough ? 64 : std::max(field.bottom - field.top, 1);
    const auto band = [&](std::size_t part, char& /*nothing*/) {
        dot_field own = field;
        own.top = std::min(field.top + static_cast<int>(part) * rows, field.bottom);
        own.bottom = std::min(own.top + rows, field.bottom);
        if (dots_ > enough)
            draw_seen(own);
        else
            for (const line& each : lines_)
                draw_line(own, std::span(points_).subspan(each.first, each.count), each.width, each.color);
    };
    const auto bands = static_cast<std::size_t>((field.bottom - field.top + rows - 1) / rows);
    if (!lines_.empty())
        base::work_in_order<char>(
            bands, [&] { return band; }, [](std::size_t, char) {});
    lines_.clear();
    points_.clear();
    dots_ = 0.0;
}

} // namespace sys
