#include "host/picture/painter.h"

#include "base/case_fold.h"
#include "dbents.h"
#include "dbmain.h"
#include "dbsymtb.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/layer_look.h"
#include "host/db/tables/properties.h"
#include "host/dxf/record_header.h"
#include "host/picture/gradient.h"
#include "host/picture/hatch_lines.h"
#include "host/picture/line_signs.h"
#include "host/picture/viewport_looks.h"
#include "host/view/extents.h"
#include "host/view/tracer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace picture {

namespace {

double real_of_header(const AcDbImpDatabase& database, std::string_view variable, double missing) {
    const auto value = database.drawing().header_value(variable);
    return value ? dxf::leading_real(*value).value_or(missing) : missing;
}

} // namespace

painter::painter(sys::paper& paper, text_painter& texts, AcDbImpDatabase& drawing, shared_drawing& shared,
                 layer_states& states, const sheet_view& view, const manner& manner)
    : paper_(paper), texts_(texts), drawing_(drawing), shared_(shared), states_(states), view_(view),
      manner_(manner) {
    point_mode_ = static_cast<int>(real_of_header(drawing, "$PDMODE", 0.0));
    point_size_ = real_of_header(drawing, "$PDSIZE", 0.0);
    attribute_mode_ = static_cast<int>(real_of_header(drawing, "$ATTMODE", 1.0));
    constexpr double usual_percents = 5.0; // of the height of what is seen
    if (point_size_ <= 0.0) {
        const double percents = point_size_ < 0.0 ? -point_size_ : usual_percents;
        point_size_ = (view.box().bottom - view.box().top) / view.scale() * percents / 100.0;
    }
}

void painter::follow(gi::tracer& tracer) {
    tracer_ = &tracer;
    traits_ = &tracer.subEntityTraits();
}

void painter::begin_part() {
    layer_.reset();
    last_dot_ = {};
    last_dot_ink_ = {};
}

painter::look painter::of_nothing() const {
    look around;
    around.color.setColorIndex(AcCmEntityColor::kACIForeground);
    around.weight = default_weight;
    around.pen.color = ink_of(around.color, 1.0);
    return around;
}

bool painter::enter(const gi::visit& entity) {
    const layer_states::place place = states_.inside(frames_.empty() ? nullptr : &frames_.back(), entity);
    if (place.state.frozen)
        return false;
    const look around = !frames_.empty() ? current() : around_ != nullptr ? *around_ : of_nothing();
    frame& now = frames_.emplace_back();
    static_cast<layer_states::place&>(now) = place;
    now.around = around;
    return true;
}

// What is too small to be seen is a dot, and what lies outside is nothing.
painter::size painter::size_of(const AcDbExtents& extents, const AcGeMatrix3d& to_world) const {
    if (gi::is_empty(extents))
        return size::seen; // lines without end may yet be
    return size_of(gi::corners_of(extents), to_world);
}

painter::size painter::size_of(std::span<const AcGePoint3d> corners, const AcGeMatrix3d& to_world) const {
    sheet_box seen{1e300, 1e300, -1e300, -1e300};
    for (const AcGePoint3d& corner : corners) {
        const sys::sheet_point at = view_.at(to_world * corner);
        seen = {std::min(seen.left, at.x), std::min(seen.top, at.y), std::max(seen.right, at.x),
                std::max(seen.bottom, at.y)};
    }
    const sheet_box& box = view_.box();
    if (seen.right < box.left || seen.left > box.right || seen.bottom < box.top || seen.top > box.bottom)
        return size::outside;
    const bool large = seen.right - seen.left >= manner_.dot || seen.bottom - seen.top >= manner_.dot;
    return large ? size::seen : size::dot;
}

bool painter::enter_block(const AcDbExtents& extents, const AcGeMatrix3d& to_world) {
    const size seen = size_of(extents, to_world);
    if (seen != size::dot || frames_.empty())
        return seen != size::outside;
    if (const look& now = current(); now.seen)
        dot(to_world * extents.minPoint(), now);
    return false;
}

// An id that names nothing is ByLayer, as in drawings that have no record of that name.
std::string_view painter::type_now() const {
    const gi::visit& entity = frames_.back().entity;
    return entity.database->records().type_name(entity.entity);
}

void painter::put_on_layer(const look& shown) {
    if (layer_ == shown.layer)
        return;
    layer_ = shown.layer;
    paper_.on_layer(look_of_layer(shown.layer).name);
}

void painter::dot(const AcGePoint3d& point, const look& shown) {
    const sys::sheet_point at = view_.at(point);
    const sheet_box& box = view_.box();
    if (!(at.x >= box.left && at.x <= box.right && at.y >= box.top && at.y <= box.bottom))
        return;
    if (std::fabs(at.x - last_dot_.x) < manner_.dot && std::fabs(at.y - last_dot_.y) < manner_.dot &&
        shown.pen.color == last_dot_ink_)
        return;
    last_dot_ = at;
    last_dot_ink_ = shown.pen.color;
    const sys::sheet_point points[] = {at, at};
    put_on_layer(shown);
    paper_.stroke(points, {shown.pen.color, std::min(shown.pen.width, manner_.dot)});
}

void painter::stroke(std::span<const AcGePoint3d> points, const look& shown) {
    std::vector<sys::sheet_point> placed;
    placed.reserve(points.size());
    sheet_box box{1e300, 1e300, -1e300, -1e300};
    for (const AcGePoint3d& point : points) {
        const sys::sheet_point at = view_.at(point);
        box = {std::min(box.left, at.x), std::min(box.top, at.y), std::max(box.right, at.x),
               std::max(box.bottom, at.y)};
        placed.push_back(at);
    }
    if (box.right - box.left < manner_.dot && box.bottom - box.top < manner_.dot) {
        dot(points.front(), shown);
        return;
    }
    put_on_layer(shown);
    for (const std::vector<sys::sheet_point>& part : view_.near_lines(std::move(placed)))
        paper_.stroke(part, shown.pen);
}

void painter::lines(std::span<const AcGePoint3d> points) {
    const look& now = current();
    if (!now.seen || points.empty())
        return;
    if (points.size() == 1) {
        if (type_now() == "POINT")
            point_sign(points.front(), now);
        else
            dot(points.front(), now);
        return;
    }
    if (points.size() > 3 && draw_inside(points, now))
        return;
    draw_lines(points, now);
}

void painter::draw_lines(std::span<const AcGePoint3d> points, const look& now) {
    const double scale = manner_.linetype_scale * now.linetype_scale;
    // A pattern that repeats within a few dots looks like a line.
    constexpr double dots_to_see = 3.0;
    if (now.pattern == nullptr || now.pattern->length * scale * view_.scale() < dots_to_see * manner_.dot) {
        stroke(points, now);
        return;
    }
    const patterned_line drawn = patterned(points, *now.pattern, scale);
    for (const std::vector<AcGePoint3d>& dash : drawn.dashes)
        stroke(dash, now);
    if (!drawn.signs.empty())
        put_on_layer(now);
    for (const placed_sign& sign : drawn.signs)
        draw_sign(sign, scale, view_, texts_, now.pen);
}

// Source: the editor's table of point signs: 0 a dot, 1 nothing, 2 a plus, 3 a cross, 4 a tick; 32 adds a
// circle, 64 a square.
void painter::point_sign(const AcGePoint3d& point, const look& shown) {
    const double half = point_size_ / 2.0;
    const auto line = [&](double x1, double y1, double x2, double y2) {
        const AcGePoint3d ends[] = {point + AcGeVector3d(x1, y1, 0.0) * half,
                                    point + AcGeVector3d(x2, y2, 0.0) * half};
        stroke(ends, shown);
    };
    constexpr double beyond = 2.0; // a plus and a cross are twice as large as circle and square
    switch (point_mode_ % 32) {
    case 0:
        dot(point, shown);
        break;
    case 2:
        line(-beyond, 0.0, beyond, 0.0);
        line(0.0, -beyond, 0.0, beyond);
        break;
    case 3:
        line(-beyond, -beyond, beyond, beyond);
        line(-beyond, beyond, beyond, -beyond);
        break;
    case 4:
        line(0.0, 0.0, 0.0, 1.0);
        break;
    default:
        break;
    }
    if ((point_mode_ & 32) != 0)
        stroke(gi::flattened({point, {half, 0.0, 0.0}, {0.0, half, 0.0}, 0.0, 2.0 * std::numbers::pi},
                             manner_.dot / 2.0 / view_.scale()),
               shown);
    if ((point_mode_ & 64) != 0) {
        line(-1.0, -1.0, 1.0, -1.0);
        line(1.0, -1.0, 1.0, 1.0);
        line(1.0, 1.0, -1.0, 1.0);
        line(-1.0, 1.0, -1.0, -1.0);
    }
}

void painter::fill(std::span<const std::vector<AcGePoint3d>> rims, const look& shown,
                   const sys::shading* colors) {
    std::vector<std::vector<sys::sheet_point>> placed;
    for (const std::vector<AcGePoint3d>& rim : rims) {
        std::vector<sys::sheet_point> points;
        points.reserve(rim.size());
        for (const AcGePoint3d& point : rim)
            points.push_back(view_.at(point));
        points = view_.near_area(std::move(points));
        if (points.size() > 2)
            placed.push_back(std::move(points));
    }
    if (placed.empty())
        return;
    put_on_layer(shown);
    if (colors != nullptr)
        paper_.fill_shaded(placed, *colors);
    else
        paper_.fill(placed, shown.pen.color);
}

bool painter::is_hatch_drawn(std::span<const std::vector<AcGePoint3d>> rims, const look& shown) {
    if (type_now() != "HATCH")
        return false;
    const gi::visit& entity = frames_.back().entity;
    const std::unique_ptr<AcDbObject> view = entity.database->objects().view(entity.entity);
    const AcDbHatch* const hatch = AcDbHatch::cast(view.get());
    if (hatch != nullptr && hatch->isGradient() && manner_.changed == nullptr) {
        const double opacity = shown.pen.color.opacity;
        const auto colors = gradient_of(*hatch, entity.to_world, rims, view_,
                                        [&](const AcCmEntityColor& color) { return ink_of(color, opacity); });
        if (colors)
            fill(rims, shown, &*colors);
        return colors.has_value();
    }
    if (hatch == nullptr || hatch->isSolidFill() || hatch->numPatternDefinitions() == 0)
        return false;
    constexpr std::size_t most_lines = 50'000;
    const auto lines = hatch_lines(*hatch, entity.to_world, rims, most_lines);
    if (!lines)
        return false;
    for (const std::vector<AcGePoint3d>& line : *lines)
        stroke(line, shown);
    return true;
}

void painter::area(std::span<const AcGePoint3d> points) {
    const std::vector<AcGePoint3d> rims[] = {{points.begin(), points.end()}};
    area_of_rims(rims);
}

void painter::area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) {
    const look& now = current();
    if (!now.seen || is_hatch_drawn(rims, now))
        return;
    fill(rims, now);
}

bool painter::text(const gi::text_line& line) {
    if (const look& now = current(); now.seen)
        draw_text(line, now);
    return true;
}

void painter::draw_text(const gi::text_line& line, const look& now) {
    const sys::sheet_point high = view_.along(line.y);
    const double height = std::hypot(high.x, high.y);
    if (height < manner_.dot) { // nobody reads it: a line where it stands
        const AcGePoint3d ends[] = {line.position + line.y * 0.5,
                                    line.position + line.y * 0.5 + line.x * line.length};
        stroke(ends, now);
        return;
    }
    sys::pen pen = now.pen;
    constexpr double thickest_letters = 0.15; // of their height
    pen.width = std::min(pen.width, height * thickest_letters);
    put_on_layer(now);
    texts_.draw(line, view_, pen);
}

void painter::curve(const gi::arc& arc) {
    if (const look& now = current(); now.seen)
        draw_curve(arc, now);
}

void painter::draw_curve(const gi::arc& arc, const look& now) {
    draw_lines(gi::flattened(arc, std::max(manner_.dot / 2.0 / view_.scale(), 1e-9)), now);
}

void painter::unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both) {
    if (const look& now = current(); now.seen)
        draw_unbounded(from, direction, both, now);
}

void painter::draw_unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both,
                             const look& now) {
    const std::vector<sys::sheet_point> part =
        view_.part_of_line(view_.at(from), view_.along(direction), both);
    if (part.empty())
        return;
    put_on_layer(now);
    paper_.stroke(part, now.pen);
}

} // namespace picture
