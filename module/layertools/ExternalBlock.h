// References to external drawings, and picks inside of them.
#pragma once

#include "afx.h"
#include "dbid.h"
#include "gemat3d.h"
#include "gepnt3d.h"
#include "module/frame/ModulePort.h"

class AcDbBlockReference;
class AcDbBlockTableRecord;

namespace KolTool {

// Whether an entity is a reference to an external drawing.
ZEF_PIPESYSTEM_PORT bool IsExternalBlock(AcDbObjectId entity);

// From the coordinates of a reference's definition to those that the reference stands in. The definition's
// base point lies at the position of the reference.
AcGeMatrix3d GetPlacing(const AcDbBlockReference& reference, const AcDbBlockTableRecord& definition);

// Asks for an entity inside of a reference: the innermost one, where it was picked, in the world or in the
// user's coordinates, and the transformation from its block to the world. RTNORM; else as acedNEntSelP, and
// nothing is given.
ZEF_PIPESYSTEM_PORT int SelectEntityFromExternalBlock(LPCTSTR prompt, AcDbObjectId& entity,
                                                      AcGePoint3d& pickPoint, AcGeMatrix3d& toWorld,
                                                      bool pointInWorld);

// The layer of the block reference inside of an external one that inserts the block `inserted` around a point
// of the world, the first one if there are several. Each counts as 50 units larger all round. Where none does
// it is that of the last one; "" when nothing inserts the block there.
CString GetLayerOfInsertion(AcDbObjectId externalReference, AcDbObjectId inserted, const AcGePoint3d& point);

} // namespace KolTool
