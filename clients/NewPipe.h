// Draws one pipe by the current standard.
#pragma once

#include "clients/Joints.h"
#include "siblings/zef_pipewire/Crossings.h"

// What a pipe is drawn as.
struct TPipeKind {
    CString m_system;
    int m_dn = 0;
};

// A pipe between two points of the world, a riser when it stands upright, in the layer of its system, with
// the joints at its ends, and the pipes that it passes when it is to know them. Null when the drawing does
// not take it, which the user is told.
AcDbObjectId DrawPipe(CJoints& joints, CCrossings* crossings, const TPipeKind& kind, const AcGePoint3d& start,
                      const AcGePoint3d& end);
