// The joints of the current space: pipes that begin or end at the same place share one.
#pragma once

#include "afx.h"
#include "dbid.h"
#include "gepnt3d.h"

#include <cstdint>
#include <unordered_map>

class CJoints {
public:
    // What lies nearer than this is one place, mm.
    static constexpr double nearBy = 0.1;

    // Those that there are.
    CJoints();

    // The joint at a place; a new one on that layer, or on the current one for null, when there is none. Null
    // when it can not be made.
    AcDbObjectId FindOrAdd(const AcGePoint3d& position, AcDbObjectId layer);

    // Tells a joint of a pipe that meets there. False when it can not be changed: its layer is locked.
    static bool AddPipe(AcDbObjectId joint, AcDbObjectId pipe);

private:
    struct Joint {
        AcGePoint3d m_position;
        AcDbObjectId m_id;
    };
    // By the cell that they lie in, a cube as long as `nearBy`: what is nearer lies in the same one or next
    // to it.
    std::unordered_multimap<std::uint64_t, Joint> m_joints;
};
