// list_extents DRAWING: every entity of the drawing's blocks and spaces with the box around what it draws, a
// line each, in the order of the file: block, handle, type, class, and six numbers (least x, y, z, most x, y,
// z) or "-" for what draws nothing that has a box. Tabulators stand between them.
#include "base/utf.h"
#include "dbents.h"
#include "dbsymtb.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/symbol_names.h"
#include "sys/folders.h"

#include <cstdio>

namespace {

void list_entity(const std::wstring& block, const AcDbEntity& entity) {
    ACHAR handle[AcDbHandle::kStrSiz] = L"-";
    AcDbHandle number;
    entity.getAcDbHandle(number);
    number.getIntoAsciiBuffer(handle);
    const AcDbImpObject& imp = entity.imp();
    std::printf("%s\t%s\t%s\t%s", base::narrow(block).c_str(), base::narrow(handle).c_str(),
                std::string(imp.database->records().type_name(imp.record)).c_str(),
                base::narrow(entity.isA()->name()).c_str());
    AcDbExtents box;
    if (entity.getGeomExtents(box) == Acad::eOk) {
        const AcGePoint3d least = box.minPoint();
        const AcGePoint3d most = box.maxPoint();
        std::printf("\t%.17g\t%.17g\t%.17g\t%.17g\t%.17g\t%.17g\n", least.x, least.y, least.z, most.x, most.y,
                    most.z);
    } else {
        std::printf("\t-\n");
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: list_extents DRAWING\n");
        return 2;
    }
    AcDbDatabase database(false, true);
    if (const auto read = database.imp().read(sys::from_path(argv[1])); !read) {
        std::fprintf(stderr, "list_extents: %s\n", base::narrow(read.error()).c_str());
        return 3;
    }
    AcDbImpDatabase& all = database.imp();
    for (const dxf::record_id block : all.names().entries(db::table_kind::block)) {
        if (all.records().gone(block))
            continue;
        for (const dxf::record_id record : all.blocks().entities(block)) {
            const std::unique_ptr<AcDbObject> view = all.objects().view(record);
            if (const AcDbEntity* const entity = AcDbEntity::cast(view.get()))
                list_entity(all.names().name_of(block), *entity);
        }
    }
    return 0;
}
