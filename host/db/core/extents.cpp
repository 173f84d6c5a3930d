#include "dbmain.h"

#include <algorithm>

Acad::ErrorStatus AcDbExtents::set(const AcGePoint3d& minimum, const AcGePoint3d& maximum) {
    if (!(minimum.x <= maximum.x && minimum.y <= maximum.y && minimum.z <= maximum.z))
        return Acad::eInvalidInput;
    m_min = minimum;
    m_max = maximum;
    return Acad::eOk;
}

void AcDbExtents::addPoint(const AcGePoint3d& point) {
    for (unsigned axis = 0; axis < 3; ++axis) {
        m_min[axis] = std::min(m_min[axis], point[axis]);
        m_max[axis] = std::max(m_max[axis], point[axis]);
    }
}

void AcDbExtents::addExt(const AcDbExtents& other) {
    if (other.m_min.x > other.m_max.x)
        return;
    addPoint(other.m_min);
    addPoint(other.m_max);
}

void AcDbExtents::expandBy(const AcGeVector3d& vector) {
    if (m_min.x > m_max.x)
        return;
    addPoint(m_min + vector);
    addPoint(m_max + vector);
}

void AcDbExtents::transformBy(const AcGeMatrix3d& matrix) {
    if (m_min.x > m_max.x)
        return;
    AcDbExtents moved;
    for (unsigned corner = 0; corner < 8; ++corner)
        moved.addPoint(matrix * AcGePoint3d((corner & 1) != 0 ? m_max.x : m_min.x,
                                            (corner & 2) != 0 ? m_max.y : m_min.y,
                                            (corner & 4) != 0 ? m_max.z : m_min.z));
    *this = moved;
}
