#include "host/view/space_index.h"

#include "base/ordered_work.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/tables/draw_order.h"
#include "host/view/extents.h"
#include "host/view/tracer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <unordered_map>

namespace gi {

namespace {

// What an entity draws, flat; it may have no end.
class flat_canvas final : public canvas {
public:
    explicit flat_canvas(flat_box& box) : box_(box) {}

    bool enter_block(const AcDbExtents& block, const AcGeMatrix3d& to_world) override {
        AcDbExtents moved = block;
        moved.transformBy(to_world);
        if (moved.minPoint().x <= moved.maxPoint().x) {
            box_.add(moved.minPoint().x, moved.minPoint().y);
            box_.add(moved.maxPoint().x, moved.maxPoint().y);
        }
        return false;
    }
    void lines(std::span<const AcGePoint3d> points) override {
        for (const AcGePoint3d& point : points)
            box_.add(point.x, point.y);
    }
    void area(std::span<const AcGePoint3d> points) override { lines(points); }
    void curve(const arc& arc) override {
        box_.add(arc.center.x, arc.center.y, arc.u.length() + arc.v.length());
    }
    void unbounded(const AcGePoint3d& /*from*/, const AcGeVector3d& /*direction*/, bool /*both*/) override {
        box_.add(0.0, 0.0, std::numeric_limits<double>::infinity());
    }

private:
    flat_box& box_;
};

float below(double value) {
    const auto rounded = static_cast<float>(value);
    return static_cast<double>(rounded) <= value
               ? rounded
               : std::nextafter(rounded, -std::numeric_limits<float>::infinity());
}

} // namespace

space_index::box space_index::rounded(const flat_box& box) {
    constexpr float infinite = std::numeric_limits<float>::infinity();
    if (box.is_empty())
        return {infinite, infinite, -infinite, -infinite};
    return {below(box.least_x), below(box.least_y), -below(-box.most_x), -below(-box.most_y)};
}

space_index::box space_index::box_of(known_blocks& blocks, dxf::record_id entity) const {
    if (const auto quick = quick_box(blocks, entity))
        return rounded(*quick);
    const std::lock_guard hold(lock_);
    flat_box drawn;
    flat_canvas canvas(drawn);
    tracer(canvas, kAcGiForExtents).draw(database_, entity);
    return rounded(drawn);
}

void space_index::widen_group(std::size_t at) {
    const box& added = boxes_[at];
    if (at / group == groups_.size()) {
        groups_.push_back(added);
        return;
    }
    box& around = groups_[at / group];
    around = {std::min(around.least_x, added.least_x), std::min(around.least_y, added.least_y),
              std::max(around.most_x, added.most_x), std::max(around.most_y, added.most_y)};
}

void space_index::append(dxf::record_id entity, const box& around) {
    entities_.push_back(entity);
    boxes_.push_back(around);
    widen_group(boxes_.size() - 1);
}

void space_index::build() {
    entities_.clear();
    boxes_.clear();
    groups_.clear();
    read_ = database_.records().journal().size();
    std::vector<dxf::record_id> all = database_.blocks().entities(space_);
    if (!std::is_sorted(all.begin(), all.end()))
        std::sort(all.begin(), all.end());
    entities_.reserve(all.size());
    boxes_.reserve(all.size());
    constexpr std::size_t together = 4096; // entities for which a core finds boxes
    const auto make = [&] {
        return [this, &all, blocks = known_blocks(database_, lock_)](std::size_t part,
                                                                     std::vector<box>& found) mutable {
            found.clear();
            for (std::size_t at = part * together; at < std::min((part + 1) * together, all.size()); ++at)
                found.push_back(box_of(blocks, all[at]));
        };
    };
    const auto take = [&](std::size_t part, const std::vector<box>& found) {
        for (std::size_t i = 0; i < found.size(); ++i)
            append(all[part * together + i], found[i]);
    };
    base::work_in_order<std::vector<box>>((all.size() + together - 1) / together, make, take);
    built_ = true;
}

void space_index::follow_changes() {
    const dxf::record_table& records = database_.records();
    known_blocks blocks(database_, lock_);
    const auto& journal = records.journal();
    for (; read_ < journal.size(); ++read_) {
        dxf::record_id id = journal[read_];
        if (records.kind(id) == dxf::record_kind::block) {
            built_ = false; // a base point may have moved
            return;
        }
        if (records.kind(id) == dxf::record_kind::part)
            id = records.find(records.owner_handle(id));
        if (id == dxf::no_record || records.kind(id) != dxf::record_kind::entity)
            continue;
        if (!database_.blocks().in_space(id)) {
            built_ = false; // part of a block, and so of all its references
            return;
        }
        if (records.find(records.owner_handle(id)) != space_)
            continue;
        const auto at = std::lower_bound(entities_.begin(), entities_.end(), id);
        if (at == entities_.end()) {
            append(id, box_of(blocks, id));
        } else if (*at == id) {
            const auto place = static_cast<std::size_t>(at - entities_.begin());
            boxes_[place] = box_of(blocks, id);
            widen_group(place);
        } else {
            built_ = false; // it came from another space
            return;
        }
    }
}

void space_index::refresh() {
    if (built_)
        follow_changes();
    if (!built_)
        build();
}

flat_box space_index::extents() {
    refresh();
    extents_canvas measured;
    tracer drawing(measured, kAcGiForExtents);
    const auto found = [&] {
        flat_box around;
        if (const AcDbExtents& drawn = measured.extents(); !is_empty(drawn)) {
            around.add(drawn.minPoint().x, drawn.minPoint().y);
            around.add(drawn.maxPoint().x, drawn.maxPoint().y);
        }
        return around;
    };
    flat_box known;
    const auto is_known = [&](const box& other) {
        return static_cast<double>(other.least_x) >= known.least_x &&
               static_cast<double>(other.least_y) >= known.least_y &&
               static_cast<double>(other.most_x) <= known.most_x &&
               static_cast<double>(other.most_y) <= known.most_y;
    };
    const auto add_group = [&](std::size_t i) {
        if (is_known(groups_[i]))
            return;
        for (std::size_t at = i * group; at < std::min((i + 1) * group, boxes_.size()); ++at) {
            if (is_known(boxes_[at]) || database_.records().gone(entities_[at]))
                continue;
            drawing.draw(database_, entities_[at]);
            known = found();
        }
    };
    // What reaches furthest comes first: then most of what follows lies within.
    for (const auto edge : {&box::least_x, &box::least_y, &box::most_x, &box::most_y}) {
        const auto less = [edge](const box& a, const box& b) { return a.*edge < b.*edge; };
        const bool least = edge == &box::least_x || edge == &box::least_y;
        const auto at = least ? std::min_element(groups_.begin(), groups_.end(), less)
                              : std::max_element(groups_.begin(), groups_.end(), less);
        if (at != groups_.end())
            add_group(static_cast<std::size_t>(at - groups_.begin()));
    }
    for (std::size_t i = 0; i < groups_.size(); ++i)
        add_group(i);
    return known;
}

std::vector<dxf::record_id> space_index::near(const flat_box& area) {
    refresh();
    const box wanted = rounded(area);
    const auto meets = [&](const box& at) {
        return at.least_x <= wanted.most_x && wanted.least_x <= at.most_x && at.least_y <= wanted.most_y &&
               wanted.least_y <= at.most_y;
    };
    std::vector<dxf::record_id> found;
    for (std::size_t i = groups_.size(); i-- > 0;) {
        if (!meets(groups_[i]))
            continue;
        const std::size_t first = i * group;
        for (std::size_t at = std::min(first + group, boxes_.size()); at-- > first;)
            if (meets(boxes_[at]) && !database_.records().gone(entities_[at]))
                found.push_back(entities_[at]);
    }
    return found;
}

namespace {

// What is known of each space of a database.
struct seen_spaces {
    explicit seen_spaces(AcDbImpDatabase& /*database*/) {}

    struct space {
        std::unique_ptr<space_index> index;
        db::draw_order order;
    };
    std::unordered_map<dxf::record_id, space> all;
};

seen_spaces::space& seen_space(AcDbImpDatabase& database, dxf::record_id space) {
    seen_spaces::space& seen = database.part<seen_spaces>().all[space];
    if (!seen.index)
        seen.index = std::make_unique<space_index>(database, space);
    return seen;
}

} // namespace

std::vector<dxf::record_id> entities_near(AcDbImpDatabase& database, dxf::record_id space,
                                          const flat_box& area) {
    seen_spaces::space& seen = seen_space(database, space);
    std::vector<dxf::record_id> found = seen.index->near(area);
    seen.order.follow(database, space);
    if (seen.order.sort(database, found))
        std::reverse(found.begin(), found.end());
    return found;
}

flat_box flat_extents(AcDbImpDatabase& database, dxf::record_id space) {
    return seen_space(database, space).index->extents();
}

} // namespace gi
