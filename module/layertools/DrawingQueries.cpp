#include "module/layertools/DrawingQueries.h"
#include "module/layertools/DrawingWalk.h"

#include "dbapserv.h"
#include "dbents.h"

bool KolTool::GetAllLayerIds(AcDbObjectIdArray& ids, AcDbDatabase* database) {
    if (database == nullptr)
        database = acdbHostApplicationServices()->workingDatabase();
    for (const AcDbObjectId layer :
         RecordsOf(database != nullptr ? database->layerTableId() : AcDbObjectId()))
        ids.append(layer);
    return !ids.isEmpty();
}

AcDbEntity* KolTool::AcDbObjectIdToEntity(AcDbObjectId id) {
    AcDbEntity* entity = nullptr;
    return acdbOpenObject(entity, id, AcDb::kForRead) == Acad::eOk ? entity : nullptr;
}
