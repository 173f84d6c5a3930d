// Entities with nothing unusual, drawn from the groups of their records: most of a plan, without an object
// for any of them. What this source does not know exactly it leaves to the tracer.
#include "host/db/core/symbol_names.h"
#include "host/dxf/record_header.h"
#include "host/picture/common_groups.h"
#include "host/view/tracer.h"

#include <cmath>
#include <numbers>

namespace picture {

const painter::plain_look& painter::look_of(dxf::record_id entity, const common_groups& groups) {
    const change mark = manner_.changed != nullptr ? manner_.changed->of(drawing_, entity) : change::none;
    const plain_key key{drawing_.records().layer(entity),
                        groups.color,
                        groups.true_color,
                        groups.weight,
                        groups.linetype,
                        groups.linetype_scale,
                        mark};
    if (last_look_ != nullptr && last_look_->first == key)
        return last_look_->second;
    const auto [at, fresh] = plain_looks_.try_emplace(key);
    last_look_ = &*at;
    if (!fresh)
        return at->second;
    const std::lock_guard hold(shared_.lock);
    frame now;
    static_cast<layer_states::place&>(now) = states_.inside(nullptr, {&drawing_, entity, {}});
    now.around = of_nothing();
    now.color.setColorIndex(static_cast<Adesk::UInt16>(groups.color));
    if (groups.true_color >= 0)
        now.color.setRGB(static_cast<Adesk::UInt8>(groups.true_color >> 16),
                         static_cast<Adesk::UInt8>(groups.true_color >> 8),
                         static_cast<Adesk::UInt8>(groups.true_color));
    now.weight = static_cast<AcDb::LineWeight>(groups.weight);
    if (!groups.linetype.empty())
        now.linetype = drawing_.id(drawing_.names().find(db::table_kind::linetype,
                                                         drawing_.drawing().codec().decode(groups.linetype)));
    now.linetype_scale = groups.linetype_scale;
    at->second.place = now;
    at->second.shown = resolve(now);
    at->second.frozen = now.state.frozen;
    at->second.shown.seen = at->second.shown.seen && !now.state.frozen;
    return at->second;
}

bool painter::draw_plain(dxf::record_id entity) {
    const dxf::record_table& records = drawing_.records();
    if (records.kind(entity) != dxf::record_kind::entity)
        return false;
    switch (records.type(entity)) {
    case dxf::type_line:
        return draw_plain_line(entity);
    case dxf::type_circle:
    case dxf::type_arc:
        return draw_plain_arc(entity);
    case dxf::type_lwpolyline:
        return draw_plain_polyline(entity);
    case dxf::type_point:
        return draw_plain_point(entity);
    case dxf::type_text:
        return draw_plain_text(entity);
    case dxf::type_insert:
        return draw_plain_reference(entity);
    default:
        return records.type_name(entity) == "DIMENSION" && draw_plain_dimension(entity);
    }
}

bool painter::draw_plain_line(dxf::record_id entity) {
    AcGePoint3d ends[2];
    common_groups groups(drawing_.records().text(entity));
    while (groups.next()) {
        const int code = groups.group.code;
        if ((code >= 10 && code <= 31) && code % 10 < 2)
            ends[code % 10][static_cast<unsigned>(code / 10 - 1)] = groups.number();
        else
            groups.plain = false;
    }
    if (!groups.is_plain())
        return false;
    if (const look& now = look_of(entity, groups).shown; now.seen)
        draw_lines(ends, now);
    return true;
}

bool painter::draw_plain_arc(dxf::record_id entity) {
    constexpr double full = 2.0 * std::numbers::pi;
    const bool whole = drawing_.records().type(entity) == dxf::type_circle;
    AcGePoint3d center;
    double radius = 0.0;
    double angles[2] = {};
    common_groups groups(drawing_.records().text(entity));
    while (groups.next()) {
        const int code = groups.group.code;
        if (code == 10 || code == 20 || code == 30)
            center[static_cast<unsigned>(code / 10 - 1)] = groups.number();
        else if (code == 40)
            radius = groups.number();
        else if (!whole && (code == 50 || code == 51))
            angles[code - 50] = groups.number() * std::numbers::pi / 180.0;
        else
            groups.plain = false;
    }
    if (!groups.is_plain() || !(radius > 0.0))
        return false;
    const look& now = look_of(entity, groups).shown;
    if (!now.seen)
        return true;
    gi::arc arc{center, {radius, 0.0, 0.0}, {0.0, radius, 0.0}, 0.0, full};
    if (!whole) {
        const auto in_one_turn = [](double angle) {
            const double turned = std::fmod(angle, full);
            return turned < 0.0 ? turned + full : turned;
        };
        const double sweep = in_one_turn(in_one_turn(angles[1]) - in_one_turn(angles[0]));
        constexpr double nothing = 1e-12;
        arc.u = AcGeVector3d(std::cos(angles[0]), std::sin(angles[0]), 0.0) * radius;
        arc.v = AcGeVector3d(-arc.u.y, arc.u.x, 0.0);
        arc.sweep = sweep < nothing ? full : sweep;
    }
    draw_curve(arc, now);
    return true;
}

bool painter::draw_plain_polyline(dxf::record_id entity) {
    points_.clear();
    bool closed = false;
    double elevation = 0.0;
    common_groups groups(drawing_.records().text(entity));
    while (groups.next()) {
        switch (groups.group.code) {
        case 10:
            points_.emplace_back(groups.number(), 0.0, 0.0);
            break;
        case 20:
            if (!points_.empty())
                points_.back().y = groups.number();
            break;
        case 38:
            elevation = groups.number();
            break;
        case 40: // widths, and bulges
        case 41:
        case 42:
        case 43:
            groups.plain = groups.number() == 0.0;
            break;
        case 70:
            closed = (static_cast<int>(groups.number()) & 1) != 0;
            break;
        case 90: // the count of vertices, and their names
        case 91:
            break;
        default:
            groups.plain = false;
        }
    }
    if (!groups.is_plain())
        return false;
    if (closed && points_.size() > 1)
        points_.push_back(points_.front());
    for (AcGePoint3d& point : points_)
        point.z = elevation;
    const look& now = look_of(entity, groups).shown;
    if (!now.seen || points_.empty())
        return true;
    if (points_.size() == 1)
        dot(points_.front(), now);
    else
        draw_lines(points_, now);
    return true;
}

bool painter::draw_plain_point(dxf::record_id entity) {
    AcGePoint3d point;
    common_groups groups(drawing_.records().text(entity));
    while (groups.next()) {
        const int code = groups.group.code;
        if (code == 10 || code == 20 || code == 30)
            point[static_cast<unsigned>(code / 10 - 1)] = groups.number();
        else
            groups.plain = code == 50; // the direction of its sign's axes, which ours do not have
    }
    if (!groups.is_plain())
        return false;
    if (const look& now = look_of(entity, groups).shown; now.seen)
        point_sign(point, now);
    return true;
}

// ---- references

const block_figures* painter::block_named(std::string_view name) {
    const auto [at, fresh] = plain_blocks_.try_emplace(name);
    if (fresh) {
        const std::lock_guard hold(shared_.lock);
        at->second = shared_.blocks.find(name);
    }
    return at->second;
}

painter::plain_look painter::look_in(const block_figures::attributes& part, const plain_look& reference) {
    frame outer;
    static_cast<layer_states::place&>(outer) = reference.place;
    frame now;
    static_cast<layer_states::place&>(now) = states_.inside(&outer, {&drawing_, part.entity, {}});
    now.around = reference.shown;
    now.color = part.color;
    now.layer = part.layer;
    now.linetype = part.linetype;
    now.weight = part.weight;
    now.linetype_scale = part.linetype_scale;
    frames_.push_back(outer);
    frames_.push_back(now);
    plain_look found{now, resolve(frames_.back()), reference.frozen || now.state.frozen};
    frames_.resize(frames_.size() - 2);
    found.shown.seen = found.shown.seen && !found.frozen;
    return found;
}

const std::vector<painter::plain_look>& painter::looks_in(const block_figures& block,
                                                          const plain_look& reference) {
    const auto [at, fresh] = block_looks_.try_emplace({&block, &reference});
    if (fresh) {
        const std::lock_guard hold(shared_.lock);
        for (const block_figures::attributes& part : block.looks)
            at->second.push_back(
                look_in(part, part.around == block_figures::of_block ? reference : at->second[part.around]));
    }
    return at->second;
}

void painter::draw_block(const block_figures& block, const AcGeMatrix3d& to_world,
                         const plain_look& reference) {
    switch (size_of(block.extents, to_world)) {
    case size::outside:
        return;
    case size::dot:
        if (reference.shown.seen)
            dot(to_world * block.extents.minPoint(), reference.shown);
        return;
    case size::seen:
        break;
    }
    const std::vector<plain_look>& looks = looks_in(block, reference);
    for (std::size_t i = 0; i < block.figures.size(); ++i) {
        const block_figures::figure& figure = block.figures[i];
        const plain_look& now = looks[figure.look];
        if (figure.what != block_figures::kind::nested) {
            if (now.shown.seen)
                draw_figure(figure, to_world, now.shown);
            continue;
        }
        const size seen = now.frozen ? size::outside : size_of(figure.lists.front(), to_world);
        if (seen == size::dot && now.shown.seen)
            dot(to_world * figure.lists.front().front(), now.shown);
        if (seen != size::seen)
            i += figure.inside;
    }
}

void painter::draw_figure(const block_figures::figure& figure, const AcGeMatrix3d& to_world,
                          const look& now) {
    using kind = block_figures::kind;
    switch (figure.what) {
    case kind::lines: {
        points_.clear();
        for (const AcGePoint3d& point : figure.lists.front())
            points_.push_back(to_world * point);
        if (points_.size() == 1)
            dot(points_.front(), now);
        else if (!points_.empty())
            draw_lines(points_, now);
        break;
    }
    case kind::areas: {
        std::vector<std::vector<AcGePoint3d>> rims = figure.lists;
        for (std::vector<AcGePoint3d>& rim : rims)
            for (AcGePoint3d& point : rim)
                point = to_world * point;
        fill(rims, now);
        break;
    }
    case kind::curve:
        draw_curve({to_world * figure.arc.center, to_world * figure.arc.u, to_world * figure.arc.v,
                    figure.arc.start, figure.arc.sweep},
                   now);
        break;
    case kind::text: {
        gi::text_line line = figure.line;
        line.position = to_world * line.position;
        line.x = to_world * line.x;
        line.y = to_world * line.y;
        draw_text(line, now);
        break;
    }
    case kind::unbounded:
        draw_unbounded(to_world * figure.arc.center, to_world * figure.arc.u, figure.both, now);
        break;
    case kind::point:
        point_sign(to_world * figure.lists.front().front(), now);
        break;
    case kind::nested:
        break;
    }
}

// They stand behind the reference, with places of their own.
void painter::draw_attributes(dxf::record_id reference, const plain_look& own) {
    const dxf::record_table& records = drawing_.records();
    for (dxf::record_id part = records.next(reference);
         part != dxf::no_record && records.kind(part) == dxf::record_kind::part; part = records.next(part)) {
        if (records.type(part) != dxf::type_attrib || records.gone(part))
            continue;
        if (manner_.changed == nullptr && draw_plain_text(part))
            continue;
        const std::lock_guard hold(shared_.lock);
        around_ = &own.shown;
        tracer_->draw(drawing_, part);
        around_ = nullptr;
    }
}

bool painter::draw_plain_reference(dxf::record_id entity) {
    std::string_view name;
    AcGePoint3d position;
    double scales[3] = {1.0, 1.0, 1.0};
    double angle = 0.0;
    common_groups groups(drawing_.records().text(entity));
    while (groups.next()) {
        const int code = groups.group.code;
        if (code == 2)
            name = dxf::trimmed(groups.group.value);
        else if (code == 10 || code == 20 || code == 30)
            position[static_cast<unsigned>(code / 10 - 1)] = groups.number();
        else if (code >= 41 && code <= 43)
            scales[code - 41] = groups.number(1.0);
        else if (code == 50)
            angle = groups.number() * std::numbers::pi / 180.0;
        else if (code == 70 || code == 71)
            groups.plain = groups.number(1.0) <= 1.0; // rows and columns
        else
            groups.plain = code == 66 || code == 44 || code == 45;
    }
    const block_figures* const block = groups.is_plain() ? block_named(name) : nullptr;
    if (block == nullptr)
        return false;
    const plain_look& reference = look_of(entity, groups);
    if (reference.frozen)
        return true;
    AcGeMatrix3d placing;
    const AcGeVector3d x(std::cos(angle), std::sin(angle), 0.0);
    placing.setCoordSystem(position, x * scales[0], AcGeVector3d(-x.y, x.x, 0.0) * scales[1],
                           AcGeVector3d::kZAxis * scales[2]);
    const AcGeMatrix3d to_world = placing * AcGeMatrix3d::translation(-block->base.asVector());
    draw_block(*block, to_world, reference);
    draw_attributes(entity, reference);
    return true;
}

// By the block that it was drawn with; one that was moved since is left to the tracer.
bool painter::draw_plain_dimension(dxf::record_id entity) {
    std::string_view name;
    common_groups groups(drawing_.records().text(entity));
    while (groups.next())
        switch (groups.group.code) {
        case 2:
            name = dxf::trimmed(groups.group.value);
            break;
        case 12:
        case 22:
        case 32:
        case 210:
        case 220:
            groups.plain = groups.number() == 0.0;
            break;
        case 230:
            groups.plain = groups.number() == 1.0;
            break;
        case 60:
        case 440:
            groups.plain = false;
            break;
        default:
            break;
        }
    const block_figures* const block = groups.is_plain() && !name.empty() ? block_named(name) : nullptr;
    if (block == nullptr)
        return false;
    if (const plain_look& own = look_of(entity, groups); !own.frozen)
        draw_block(*block, AcGeMatrix3d::kIdentity, own);
    return true;
}

} // namespace picture
