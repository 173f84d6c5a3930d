#include "host/db/entities/block_array.h"

#include "host/db/core/open_objects.h"
#include "host/view/extents.h"
#include "host/view/tracer.h"

#include <algorithm>
#include <memory>

namespace db {

namespace {

class block_array {
public:
    block_array(const reference_groups& groups, const named_block& block, AcGiWorldDraw& draw)
        : groups_(groups), draw_(draw), view_(block.database->objects().view(block.record)),
          first_(groups.placing() * block.to_base()), across_(groups.column_step()), up_(groups.row_step()),
          one_(gi::extents_of_block(*block.database, block.record)) {
        if (!gi::is_empty(one_))
            one_.transformBy(first_);
    }

    void draw() {
        if (draw_.regenType() != kAcGiForExtents) {
            draw_part({0, groups_.rows, 0, groups_.columns});
            return;
        }
        // The box around all is the box around the four corners of the array.
        for (int row = 0; row < groups_.rows; row += std::max(groups_.rows - 1, 1))
            for (int column = 0; column < groups_.columns; column += std::max(groups_.columns - 1, 1))
                draw_one(row, column);
    }

private:
    struct cells {
        int row;
        int rows;
        int column;
        int columns;
    };

    // False when nothing more is wanted of the whole array.
    bool draw_one(int row, int column) {
        draw_.geometry().pushModelTransform(AcGeMatrix3d::translation(across_ * column + up_ * row) * first_);
        const Adesk::Boolean enough = draw_.geometry().draw(view_.get());
        draw_.geometry().popModelTransform();
        return !enough;
    }

    bool draw_part(const cells& part) {
        constexpr int few = 16;
        const bool is_large = part.rows > few || part.columns > few;
        if (is_large && !wants(part))
            return true;
        if (is_large && !is_told_apart(part))
            return draw_one(part.row, part.column);
        if (is_large && part.rows > part.columns) {
            const int half = part.rows / 2;
            return draw_part({part.row, half, part.column, part.columns}) &&
                   draw_part({part.row + half, part.rows - half, part.column, part.columns});
        }
        if (is_large) {
            const int half = part.columns / 2;
            return draw_part({part.row, part.rows, part.column, half}) &&
                   draw_part({part.row, part.rows, part.column + half, part.columns - half});
        }
        for (int row = part.row; row < part.row + part.rows; ++row)
            for (int column = part.column; column < part.column + part.columns; ++column)
                if (!draw_one(row, column))
                    return false;
        return true;
    }

    // Whether the blocks of a part do not all look like one.
    bool is_told_apart(const cells& part) const {
        const auto* const tracer = dynamic_cast<const gi::tracer*>(&draw_);
        return tracer == nullptr || tracer->tells_apart(across_ * (part.columns - 1) + up_ * (part.rows - 1));
    }

    bool wants(const cells& part) const {
        const auto* const tracer = dynamic_cast<const gi::tracer*>(&draw_);
        if (tracer == nullptr || gi::is_empty(one_))
            return true;
        AcDbExtents all;
        for (const int row : {part.row, part.row + part.rows - 1})
            for (const int column : {part.column, part.column + part.columns - 1}) {
                AcDbExtents moved = one_;
                moved.transformBy(AcGeMatrix3d::translation(across_ * column + up_ * row));
                all.addExt(moved);
            }
        return tracer->wants(all);
    }

    const reference_groups& groups_;
    AcGiWorldDraw& draw_;
    std::unique_ptr<AcDbObject> view_;
    AcGeMatrix3d first_;
    AcGeVector3d across_;
    AcGeVector3d up_;
    AcDbExtents one_; // of the first one, where the reference stands
};

} // namespace

void draw_block_array(const reference_groups& groups, const named_block& block, AcGiWorldDraw& draw) {
    block_array(groups, block, draw).draw();
}

} // namespace db
