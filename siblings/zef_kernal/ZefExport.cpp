#include "siblings/zef_kernal/ZefExport.h"

#include "dbapserv.h"
#include "dbobjptr.h"

AcDbObjectId ZefExport::GetLayerIdFromString(LPCTSTR layerName) {
    AcDbObjectId layer;
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    if (database == nullptr)
        return layer;
    const AcDbLayerTablePointer table(database->layerTableId());
    if (table.openStatus() == Acad::eOk)
        table->getAt(layerName, layer);
    return layer;
}
