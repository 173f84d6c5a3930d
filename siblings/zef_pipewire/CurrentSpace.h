// The current drawing, and the space of it that the user edits.
#pragma once

#include "afx.h"
#include "dbmain.h"
#include "siblings/zef_pipewire/PipewirePort.h"

#include <memory>
#include <vector>

// The entities of types, by their names in drawing files with commas between: of the whole drawing, and of
// that space.
ZEF_PIPEWIRE_PORT std::vector<AcDbObjectId> EntitiesOfDrawing(LPCTSTR types);
ZEF_PIPEWIRE_PORT std::vector<AcDbObjectId> EntitiesOfCurrentSpace(LPCTSTR types);

// Puts an entity into that space. Null when that fails.
ZEF_PIPEWIRE_PORT AcDbObjectId AppendToCurrentSpace(std::unique_ptr<AcDbEntity> entity);

// Why nothing is to be drawn on a layer, as the end of a sentence that begins with it: the drawing could not
// make it, or it is frozen, off or locked. "" when nothing is against it, and for "", the current layer.
ZEF_PIPEWIRE_PORT CString WhyNotOnLayer(LPCTSTR layerName);

// Points between the user's coordinates and the world's.
ZEF_PIPEWIRE_PORT AcGePoint3d ToWorld(const AcGePoint3d& user);
ZEF_PIPEWIRE_PORT AcGePoint3d ToUser(const AcGePoint3d& world);
