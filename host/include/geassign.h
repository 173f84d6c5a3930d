// Looks at the arrays of the C interface as points and vectors, and the other way round. Nothing is copied:
// the result is the argument itself, and lives as long.
#pragma once

#include "adsdef.h"
#include "gepnt2d.h"
#include "gepnt3d.h"
#include "gevec2d.h"
#include "gevec3d.h"

inline AcGePoint2d& asPnt2d(ads_real* p) {
    return *reinterpret_cast<AcGePoint2d*>(p);
}
inline const AcGePoint2d& asPnt2d(const ads_real* p) {
    return *reinterpret_cast<const AcGePoint2d*>(p);
}
inline AcGeVector2d& asVec2d(ads_real* p) {
    return *reinterpret_cast<AcGeVector2d*>(p);
}
inline const AcGeVector2d& asVec2d(const ads_real* p) {
    return *reinterpret_cast<const AcGeVector2d*>(p);
}
inline AcGePoint3d& asPnt3d(ads_real* p) {
    return *reinterpret_cast<AcGePoint3d*>(p);
}
inline const AcGePoint3d& asPnt3d(const ads_real* p) {
    return *reinterpret_cast<const AcGePoint3d*>(p);
}
inline AcGeVector3d& asVec3d(ads_real* p) {
    return *reinterpret_cast<AcGeVector3d*>(p);
}
inline const AcGeVector3d& asVec3d(const ads_real* p) {
    return *reinterpret_cast<const AcGeVector3d*>(p);
}

inline ads_real* asDblArray(AcGePoint2d& p) {
    return &p.x;
}
inline const ads_real* asDblArray(const AcGePoint2d& p) {
    return &p.x;
}
inline ads_real* asDblArray(AcGeVector2d& v) {
    return &v.x;
}
inline const ads_real* asDblArray(const AcGeVector2d& v) {
    return &v.x;
}
inline ads_real* asDblArray(AcGePoint3d& p) {
    return &p.x;
}
inline const ads_real* asDblArray(const AcGePoint3d& p) {
    return &p.x;
}
inline ads_real* asDblArray(AcGeVector3d& v) {
    return &v.x;
}
inline const ads_real* asDblArray(const AcGeVector3d& v) {
    return &v.x;
}

static_assert(sizeof(AcGePoint2d) == 2 * sizeof(ads_real) && sizeof(AcGePoint3d) == sizeof(ads_point));
