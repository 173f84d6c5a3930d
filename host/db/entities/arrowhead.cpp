#include "host/db/entities/arrowhead.h"

#include "acgi.h"
#include "dbsymtb.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_classes.h"

namespace db {

void draw_arrowhead(const AcDbImpObject& entity, std::uint64_t block, const AcGePoint3d& tip,
                    const AcGeVector3d& pointing, const AcGeVector3d& normal, double size,
                    AcGiWorldDraw& draw) {
    const AcGeVector3d along = pointing.normal() * size;
    const AcGeVector3d across = normal.crossProduct(along);
    if (along.isZeroLength())
        return;
    const dxf::record_id record =
        block != 0 && entity.database != nullptr ? entity.database->records().find(block) : dxf::no_record;
    if (record != dxf::no_record && db::class_of(*entity.database, record) == AcDbBlockTableRecord::desc()) {
        AcGeMatrix3d to_tip; // such blocks are one unit long, and point along their x axis
        to_tip.setCoordSystem(tip, along, across, normal * size);
        draw.geometry().pushModelTransform(to_tip);
        draw.geometry().draw(entity.database->objects().view(record).get());
        draw.geometry().popModelTransform();
        return;
    }
    constexpr double half_width = 1.0 / 6.0; // of its length
    const AcGePoint3d corners[] = {tip, tip - along + across * half_width, tip - along - across * half_width};
    draw.geometry().polygon(3, corners);
}

} // namespace db
