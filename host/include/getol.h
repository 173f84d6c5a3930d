// How near two points or vectors must be to count as equal.
#pragma once

#include "adesk.h"

class ACGE_PORT AcGeTol {
public:
    constexpr AcGeTol() = default;

    // The greatest distance of equal points.
    constexpr double equalPoint() const { return m_point; }
    // The greatest length of the difference of equal vectors; also of a vector that counts as none.
    constexpr double equalVector() const { return m_vector; }
    void setEqualPoint(double distance) { m_point = distance; }
    void setEqualVector(double length) { m_vector = length; }

private:
    double m_point = 1e-10;
    double m_vector = 1e-10;
};
