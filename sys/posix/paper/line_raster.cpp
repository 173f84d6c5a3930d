#include "sys/posix/paper/line_raster.h"

#include <algorithm>
#include <cmath>

namespace sys {

namespace {

class line_raster {
public:
    line_raster(const dot_field& field, double width, const ink& color)
        : field_(field), half_(std::max(width, 1.0) / 2.0), color_(color) {}

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
            walk(a.x < b.x ? a : b, a.x < b.x ? b : a, true);
        else
            walk(turned(a.y < b.y ? a : b), turned(a.y < b.y ? b : a), false);
    }

private:
    static sheet_point turned(const sheet_point& point) { return {point.y, point.x}; }

    // Along x from dot to dot (along y when it does not lie flat: then both are turned).
    void walk(const sheet_point& a, const sheet_point& b, bool flat) const {
        const double slope = b.x > a.x ? (b.y - a.y) / (b.x - a.x) : 0.0;
        const double straight =
            1.0 / std::sqrt(1.0 + slope * slope); // how a distance along y shrinks across the line
        const double reach = (half_ + 0.5) / straight;
        const int least = flat ? field_.left : field_.top;
        const int most = flat ? field_.right : field_.bottom;
        const int low = flat ? field_.top : field_.left;
        const int high = flat ? field_.bottom : field_.right;
        const auto dot = [](double at, int from, int to) {
            return static_cast<int>(
                std::clamp(std::floor(at), static_cast<double>(from), static_cast<double>(to)));
        };
        const int end = dot(b.x + 1.0, least, most);
        for (int along = dot(a.x, least, most); along < end; ++along) {
            const double middle = a.y + (along + 0.5 - a.x) * slope;
            // The first and the last dot may be covered in part.
            const double part = std::min(along + 1.0, b.x) - std::max<double>(along, a.x);
            const int last = dot(middle + reach + 1.0, low, high);
            for (int across = dot(middle - reach, low, high); across < last; ++across) {
                const double away = std::fabs(across + 0.5 - middle) * straight;
                const double covered = std::min(half_ + 0.5 - away, 1.0) * part;
                if (covered > 0.0)
                    blend(flat ? along : across, flat ? across : along, covered);
            }
        }
    }

    void blend(int column, int row, double covered) const {
        std::uint8_t* const dot =
            field_.dots + std::ptrdiff_t{row} * field_.row_bytes + std::ptrdiff_t{column} * 4;
        const int share = static_cast<int>(covered * 256.0);
        const auto mix = [share](std::uint8_t& under, int over) {
            under = static_cast<std::uint8_t>(under + (over - under) * share / 256);
        };
        mix(dot[0], color_.blue);
        mix(dot[1], color_.green);
        mix(dot[2], color_.red);
    }

    const dot_field& field_;
    double half_;
    ink color_;
};

} // namespace

void draw_thin_line(const dot_field& field, std::span<const sheet_point> points, double width,
                    const ink& color) {
    if (points.empty())
        return;
    const line_raster raster(field, width, color);
    if (points.size() == 1)
        raster.draw(points.front(), points.front());
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        raster.draw(points[i], points[i + 1]);
}

} // namespace sys
