#include "host/view/extents.h"

#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/references.h"
#include "host/view/nesting.h"
#include "host/view/tracer.h"

#include <cmath>

namespace gi {

namespace {

// Whether boxes stay boxes: each axis goes to an axis.
bool keeps_boxes(const AcGeMatrix3d& m) {
    for (unsigned row = 0; row < 3; ++row) {
        int used = 0;
        for (unsigned column = 0; column < 3; ++column)
            used += std::fabs(m(row, column)) > 1e-12 * m.scale() ? 1 : 0;
        if (used > 1)
            return false;
    }
    return true;
}

} // namespace

bool is_empty(const AcDbExtents& extents) {
    const AcGePoint3d least = extents.minPoint();
    const AcGePoint3d most = extents.maxPoint();
    return !(least.x <= most.x && least.y <= most.y && least.z <= most.z);
}

bool extents_canvas::enter_block(const AcDbExtents& block, const AcGeMatrix3d& to_world) {
    constexpr std::size_t most_entered = 100'000;
    if (!keeps_boxes(to_world) && *entered_ < most_entered)
        return true;
    if (!is_empty(block)) {
        AcDbExtents moved = block;
        moved.transformBy(to_world);
        add(moved.minPoint());
        add(moved.maxPoint());
    }
    return false;
}

// What lies further out than extents begin, or nowhere, is damage.
void extents_canvas::add(const AcGePoint3d& point) {
    constexpr double furthest = 1e20;
    if (std::fabs(point.x) < furthest && std::fabs(point.y) < furthest && std::fabs(point.z) < furthest)
        extents_.addPoint(point);
}

void extents_canvas::lines(std::span<const AcGePoint3d> points) {
    for (const AcGePoint3d& point : points)
        add(point);
}

void extents_canvas::curve(const arc& arc) {
    add(arc.at(arc.start));
    add(arc.at(arc.start + arc.sweep));
    // Each coordinate is c + a cos t + b sin t: extreme where tan t = b / a, and half a turn on.
    for (unsigned axis = 0; axis < 3; ++axis) {
        const double t = std::atan2(arc.v[axis], arc.u[axis]);
        constexpr double half = 3.14159265358979323846;
        for (int turn = -4; turn <= 4; ++turn) {
            const double at = t + half * turn;
            const double along = (at - arc.start) / (arc.sweep == 0.0 ? 1.0 : arc.sweep);
            if (arc.is_whole() || (along >= 0.0 && along <= 1.0))
                add(arc.at(at));
        }
    }
}

const AcDbExtents& block_extents::of(dxf::record_id block) {
    follow_changes();
    if (const auto at = known_.find(block); at != known_.end())
        return at->second;
    if (depth_ > most_nested_blocks) { // a space holds the first of them
        static const AcDbExtents nothing;
        tell_too_deep(database_);
        return nothing;
    }
    known_[block]; // a block that holds itself meets this, and ends there
    if (depth_++ == 0)
        entered_ = 0;
    extents_canvas measured(entered_);
    tracer drawing(measured, kAcGiForExtents);
    for (const dxf::record_id entity : database_.blocks().drawn_of(block))
        drawing.draw(database_, entity);
    --depth_;
    return known_[block] = measured.extents();
}

// Whatever changed in some block may be in others through references: all are reckoned anew then. Changes in
// spaces are the rule, and concern no block. Styles decide how wide texts are, filters clip references.
void block_extents::follow_changes() {
    const dxf::record_table& records = database_.records();
    const auto& journal = records.journal();
    for (; read_ < journal.size(); ++read_) {
        const dxf::record_id id = journal[read_];
        const dxf::record_kind kind = records.kind(id);
        const bool drawn = kind == dxf::record_kind::entity || kind == dxf::record_kind::part;
        const bool decides = records.type(id) == dxf::type_style ||
                             (kind == dxf::record_kind::object && records.type_name(id) == "SPATIAL_FILTER");
        if (kind == dxf::record_kind::block || decides || (drawn && !database_.blocks().in_space(id)))
            known_.clear();
    }
}

const AcDbExtents& extents_of_block(AcDbImpDatabase& database, dxf::record_id block) {
    const auto [drawing, there] = database.references().place(block);
    return drawing->part<block_extents>().of(there);
}

} // namespace gi
