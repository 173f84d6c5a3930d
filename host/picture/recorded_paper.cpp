#include "host/picture/recorded_paper.h"

#include <algorithm>
#include <iterator>

namespace picture {

std::uint32_t recorded_paper::number_of(const sys::pen& pen) {
    if (pens_.empty() || !(pens_.back() == pen)) // runs of one pen are the rule
        pens_.push_back(pen);
    return static_cast<std::uint32_t>(pens_.size() - 1);
}

std::uint32_t recorded_paper::number_of(const sys::sheet_font& font) {
    const auto known = std::find(fonts_.begin(), fonts_.end(), font);
    const auto number = static_cast<std::uint32_t>(known - fonts_.begin());
    if (known == fonts_.end())
        fonts_.push_back(font);
    return number;
}

void recorded_paper::keep(std::span<const sys::sheet_point> points) {
    points_.insert(points_.end(), points.begin(), points.end());
}

void recorded_paper::stroke(std::span<const sys::sheet_point> points, const sys::pen& pen) {
    entries_.push_back({act::stroke, static_cast<std::uint32_t>(points.size()), number_of(pen)});
    keep(points);
}

void recorded_paper::fill(std::span<const std::vector<sys::sheet_point>> rims, const sys::ink& color) {
    entries_.push_back({act::fill, static_cast<std::uint32_t>(rims.size()), number_of({color, 0.0})});
    keep_rims(rims);
}

void recorded_paper::fill_shaded(std::span<const std::vector<sys::sheet_point>> rims,
                                 const sys::shading& colors) {
    entries_.push_back(
        {act::shaded, static_cast<std::uint32_t>(rims.size()), static_cast<std::uint32_t>(shadings_.size())});
    shadings_.push_back(colors);
    keep_rims(rims);
}

void recorded_paper::image(const std::shared_ptr<const sys::image_dots>& dots,
                           const sys::image_place& place) {
    entries_.push_back({act::image, 0, static_cast<std::uint32_t>(images_.size())});
    images_.emplace_back(dots, place);
}

void recorded_paper::keep_rims(std::span<const std::vector<sys::sheet_point>> rims) {
    for (const std::vector<sys::sheet_point>& rim : rims) {
        rims_.push_back(static_cast<std::uint32_t>(rim.size()));
        keep(rim);
    }
}

void recorded_paper::text(const sys::sheet_text& written, const sys::sheet_font& font) {
    entries_.push_back({act::text, static_cast<std::uint32_t>(written.text.size()),
                        static_cast<std::uint32_t>(lines_.size())});
    lines_.push_back({written, number_of(font)});
    lines_.back().text.text = {};
    signs_ += written.text;
}

void recorded_paper::push_clip(std::span<const sys::sheet_point> rim) {
    entries_.push_back({act::push_clip, static_cast<std::uint32_t>(rim.size())});
    keep(rim);
}

void recorded_paper::pop_clip() {
    entries_.push_back({act::pop_clip});
}

void recorded_paper::on_layer(std::wstring_view name) {
    entries_.push_back({act::layer, static_cast<std::uint32_t>(name.size())});
    signs_ += name;
}

void recorded_paper::draw_on(sys::paper& target) const {
    std::span<const sys::sheet_point> points(points_);
    std::wstring_view signs(signs_);
    auto rim = rims_.begin();
    const auto next_points = [&points](std::uint32_t count) {
        const auto own = points.first(count);
        points = points.subspan(count);
        return own;
    };
    const auto next_signs = [&signs](std::uint32_t count) {
        const auto own = signs.substr(0, count);
        signs.remove_prefix(count);
        return own;
    };
    std::vector<std::vector<sys::sheet_point>> rims;
    for (const entry& next : entries_) {
        switch (next.kind) {
        case act::stroke:
            target.stroke(next_points(next.count), pens_[next.which]);
            break;
        case act::fill:
        case act::shaded:
            rims.clear();
            for (std::uint32_t i = 0; i < next.count; ++i) {
                const auto own = next_points(*rim++);
                rims.emplace_back(own.begin(), own.end());
            }
            if (next.kind == act::fill)
                target.fill(rims, pens_[next.which].color);
            else
                target.fill_shaded(rims, shadings_[next.which]);
            break;
        case act::text: {
            const line& kept = lines_[next.which];
            sys::sheet_text text = kept.text;
            text.text = next_signs(next.count);
            target.text(text, fonts_[kept.font]);
            break;
        }
        case act::image:
            target.image(images_[next.which].first, images_[next.which].second);
            break;
        case act::push_clip:
            target.push_clip(next_points(next.count));
            break;
        case act::pop_clip:
            target.pop_clip();
            break;
        case act::layer:
            target.on_layer(next_signs(next.count));
            break;
        }
    }
}

void recorded_paper::clear() {
    entries_.clear();
    points_.clear();
    rims_.clear();
    signs_.clear();
    pens_.clear();
    lines_.clear();
    fonts_.clear();
    shadings_.clear();
    images_.clear();
}

} // namespace picture
