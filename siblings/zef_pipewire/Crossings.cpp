#include "siblings/zef_pipewire/Crossings.h"

#include "dbobjptr.h"
#include "siblings/zef_pipewire/CurrentSpace.h"
#include "siblings/zef_pipewire/TDbPipe.h"

#include <cmath>

namespace {

constexpr double nearBy = 0.1; // as ends that meet are

} // namespace

CCrossings::CCrossings() {
    for (const AcDbObjectId id : EntitiesOfCurrentSpace(L"ZEF_PIPE,ZEF_DOUBLELINEPIPE")) {
        const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
        if (pipe.openStatus() == Acad::eOk && !pipe->IsVertical())
            m_lines.push_back(LineOf(*pipe.object()));
    }
}

CCrossings::Line CCrossings::LineOf(const TDbPipe& pipe) {
    return {pipe.objectId(), pipe.GetStartPoint(), pipe.GetEndPoint(), pipe.GetPipeSystemName()};
}

// Whether a line crosses another one inside of both, and lies above it there.
bool CCrossings::PassesOver(const Line& line, const Line& other, bool isLater) {
    const AcGeVector3d along = line.m_end - line.m_start;
    const AcGeVector3d across = other.m_end - other.m_start;
    const AcGeVector3d away = other.m_start - line.m_start;
    const auto cross = [](const AcGeVector3d& a, const AcGeVector3d& b) { return a.x * b.y - a.y * b.x; };
    const double turn = cross(along, across);
    if (turn == 0.0)
        return false;
    const double here = cross(away, across) / turn;
    const double there = cross(away, along) / turn;
    // At its ends a pipe meets the other one.
    const auto isInside = [](double part, const AcGeVector3d& whole) {
        const double length = std::hypot(whole.x, whole.y);
        return part * length >= nearBy && (1.0 - part) * length >= nearBy;
    };
    if (!isInside(here, along) || !isInside(there, across))
        return false;
    const double rise = line.m_start.z + along.z * here - (other.m_start.z + across.z * there);
    if (std::fabs(rise) >= nearBy)
        return rise > 0.0;
    return isLater && line.m_system != other.m_system;
}

void CCrossings::GoUnder(TDbPipe& pipe) const {
    if (pipe.IsVertical())
        return;
    const Line line = LineOf(pipe);
    AcDbObjectIdArray above;
    for (const Line& other : m_lines)
        if (PassesOver(other, line, false))
            above.append(other.m_id);
    pipe.SetPassingPipes(above);
}

int CCrossings::GoOver(AcDbObjectId pipe) {
    Line line;
    {
        const AcDbObjectPointer<TDbPipe> drawn(pipe, AcDb::kForRead);
        if (drawn.openStatus() != Acad::eOk || drawn->IsVertical())
            return 0;
        line = LineOf(*drawn.object());
    }
    int untold = 0;
    for (const Line& other : m_lines) {
        if (!PassesOver(line, other, true))
            continue;
        const AcDbObjectPointer<TDbPipe> below(other.m_id, AcDb::kForWrite);
        if (below.openStatus() != Acad::eOk) {
            ++untold;
            continue;
        }
        AcDbObjectIdArray above = below->GetPassingPipes();
        if (!above.contains(pipe))
            above.append(pipe);
        below->SetPassingPipes(above);
    }
    m_lines.push_back(line);
    return untold;
}
