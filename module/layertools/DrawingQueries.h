// Small questions to drawings, for the add-on's other modules too.
#pragma once

#include "dbid.h"
#include "dbidar.h"
#include "module/frame/ModulePort.h"

class AcDbDatabase;
class AcDbEntity;

namespace KolTool {

// Appends all layers of a drawing, those of external references too, in the order of its layer table; null
// for the current drawing. Whether there are any in the list then.
ZEF_PIPESYSTEM_PORT bool GetAllLayerIds(AcDbObjectIdArray& ids, AcDbDatabase* database = nullptr);

// The entity, open for reading; the caller closes it. Null for what is no entity, or can not be opened.
ZEF_PIPESYSTEM_PORT AcDbEntity* AcDbObjectIdToEntity(AcDbObjectId id);

} // namespace KolTool
