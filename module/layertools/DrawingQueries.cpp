#include "module/layertools/DrawingQueries.h"

#include "dbapserv.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbsymtb.h"

#include <memory>

bool KolTool::GetAllLayerIds(AcDbObjectIdArray& ids, AcDbDatabase* database) {
    if (database == nullptr)
        database = acdbHostApplicationServices()->workingDatabase();
    const AcDbLayerTablePointer table(database != nullptr ? database->layerTableId() : AcDbObjectId());
    AcDbSymbolTableIterator* made = nullptr;
    if (table.openStatus() != Acad::eOk || table->newIterator(made) != Acad::eOk)
        return !ids.isEmpty();
    for (const std::unique_ptr<AcDbSymbolTableIterator> each(made); !each->done(); each->step()) {
        AcDbObjectId layer;
        if (each->getRecordId(layer) == Acad::eOk)
            ids.append(layer);
    }
    return !ids.isEmpty();
}

AcDbEntity* KolTool::AcDbObjectIdToEntity(AcDbObjectId id) {
    AcDbEntity* entity = nullptr;
    return acdbOpenObject(entity, id, AcDb::kForRead) == Acad::eOk ? entity : nullptr;
}
