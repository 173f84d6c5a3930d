#include "gegbl.h"
#include "gemat3d.h"
#include "gepnt2d.h"
#include "gepnt3d.h"
#include "gescl3d.h"
#include "gevec2d.h"
#include "gevec3d.h"

// All of them are there before the first constructor of any application runs.
constinit AcGeTol AcGeContext::gTol;

constinit const AcGeVector2d AcGeVector2d::kIdentity;
constinit const AcGeVector2d AcGeVector2d::kXAxis(1.0, 0.0);
constinit const AcGeVector2d AcGeVector2d::kYAxis(0.0, 1.0);
constinit const AcGePoint2d AcGePoint2d::kOrigin;

constinit const AcGeVector3d AcGeVector3d::kIdentity;
constinit const AcGeVector3d AcGeVector3d::kXAxis(1.0, 0.0, 0.0);
constinit const AcGeVector3d AcGeVector3d::kYAxis(0.0, 1.0, 0.0);
constinit const AcGeVector3d AcGeVector3d::kZAxis(0.0, 0.0, 1.0);
constinit const AcGePoint3d AcGePoint3d::kOrigin;

constinit const AcGeScale3d AcGeScale3d::kIdentity;
constinit const AcGeMatrix3d AcGeMatrix3d::kIdentity;
