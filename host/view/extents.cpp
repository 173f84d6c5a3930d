#include "host/view/extents.h"

#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/references.h"
#include "host/view/nesting.h"
#include "host/view/tracer.h"

namespace gi {

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
