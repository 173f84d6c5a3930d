#include "dbbody.h"
#include "dbregion.h"
#include "dbsol3d.h"
#include "dbsurf.h"
#include "host/db/core/imp_object.h"
#include "host/db/custom/proxy_graphics.h"

// Their geometry stands in the modeller's own text, which the host keeps and does not read.
#define MODELER_BODY(CLASS, TYPE, MARKER)                                                                    \
    ACRX_DXF_DEFINE_MEMBERS(CLASS, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, TYPE,          \
                            "ObjectDBX Classes")                                                             \
    CLASS::CLASS() {                                                                                         \
        imp().begin_as("0\n" #TYPE "\n100\nAcDbEntity\n8\n0\n100\nAcDbModelerGeometry\n70\n1\n" MARKER);     \
    }                                                                                                        \
    Adesk::Boolean CLASS::subWorldDraw(AcGiWorldDraw* draw) {                                                \
        db::draw_proxy_graphics(db::read_proxy_graphics(imp()), imp(), *draw);                               \
        return true;                                                                                         \
    }

MODELER_BODY(AcDb3dSolid, 3DSOLID, "100\nAcDb3dSolid\n")
MODELER_BODY(AcDbBody, BODY, "")
MODELER_BODY(AcDbRegion, REGION, "")
MODELER_BODY(AcDbSurface, SURFACE, "100\nAcDbSurface\n")
