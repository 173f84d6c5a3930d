#include "module/check/SegmentMends.h"

#include "dbents.h"
#include "dbobjptr.h"
#include "dbpl.h"
#include "module/check/SameProperties.h"
#include "module/check/Segments.h"
#include "siblings/zef_pipewire/TDbPipe.h"

#include <algorithm>

namespace {

// Whether one straight piece of an entity holds a whole line.
bool Covers(const AcDbEntity& entity, const Segment& line, double tolerance) {
    return std::ranges::any_of(PiecesOf(entity), [&](const Segment& piece) {
        return piece.Touches(line.m_start, tolerance) && piece.Touches(line.m_end, tolerance);
    });
}

bool AreSamePipe(const TDbPipe& a, const TDbPipe& b, double tolerance) {
    const auto isAt = [&](const AcGePoint3d& p, const AcGePoint3d& q) {
        return p.distanceTo(q) <= tolerance;
    };
    const bool sameEnds =
        (isAt(a.GetStartPoint(), b.GetStartPoint()) && isAt(a.GetEndPoint(), b.GetEndPoint())) ||
        (isAt(a.GetStartPoint(), b.GetEndPoint()) && isAt(a.GetEndPoint(), b.GetStartPoint()));
    return sameEnds && a.GetPipeSystemName() == b.GetPipeSystemName() &&
           a.GetSystemType() == b.GetSystemType() && a.GetValues().m_dn == b.GetValues().m_dn &&
           a.GetValues().m_material == b.GetValues().m_material;
}

// The line from the first to the last of four points that lie in one.
Segment Union(const Segment& a, const Segment& b) {
    const Segment& axis = a.Length() >= b.Length() ? a : b;
    const AcGePoint3d points[] = {a.m_start, a.m_end, b.m_start, b.m_end};
    const auto [first, last] = std::minmax_element(
        std::begin(points), std::end(points),
        [&](const AcGePoint3d& p, const AcGePoint3d& q) { return axis.Along(p) < axis.Along(q); });
    return {*first, *last};
}

Acad::ErrorStatus Erase(AcDbEntity& entity) {
    const Acad::ErrorStatus opened = entity.isWriteEnabled() ? Acad::eOk : entity.upgradeOpen();
    return opened == Acad::eOk ? entity.erase() : opened;
}

} // namespace

Acad::ErrorStatus MendByErasing(const Finding& finding) {
    const AcDbEntityPointer entity(finding.m_object, AcDb::kForWrite);
    return entity.openStatus() == Acad::eOk ? entity->erase() : entity.openStatus();
}

Acad::ErrorStatus MendOverlap(AcDbObjectId object, AcDbObjectId other, const CheckTolerances& tolerances,
                              bool onlyAsked) {
    if (object.isErased() || other.isErased())
        return Acad::eNotApplicable;
    const AcDbEntityPointer late(object, AcDb::kForRead);
    const AcDbEntityPointer early(other, AcDb::kForRead);
    if (late.openStatus() != Acad::eOk || early.openStatus() != Acad::eOk)
        return Acad::eNotApplicable;
    const double same = tolerances.m_same;
    if (PropertyKey(*late.object()) != PropertyKey(*early.object()))
        return Acad::eNotApplicable;
    const auto* const latePipe = TDbPipe::cast(late.object());
    const auto* const earlyPipe = TDbPipe::cast(early.object());
    if (latePipe != nullptr || earlyPipe != nullptr) {
        if (latePipe == nullptr || earlyPipe == nullptr || !AreSamePipe(*latePipe, *earlyPipe, same) ||
            !latePipe->GetAttachments().isEmpty())
            return Acad::eNotApplicable;
        return onlyAsked ? Acad::eOk : Erase(*late.object());
    }
    const auto* const lateLine = AcDbLine::cast(late.object());
    auto* const earlyLine = AcDbLine::cast(early.object());
    if (lateLine != nullptr && Covers(*early.object(), PiecesOf(*lateLine).front(), same))
        return onlyAsked ? Acad::eOk : Erase(*late.object());
    if (earlyLine != nullptr && lateLine == nullptr &&
        Covers(*late.object(), PiecesOf(*earlyLine).front(), same))
        return onlyAsked ? Acad::eOk : Erase(*early.object());
    if (lateLine == nullptr || earlyLine == nullptr || lateLine->thickness() != earlyLine->thickness())
        return Acad::eNotApplicable;
    const Segment first = PiecesOf(*earlyLine).front();
    const Segment second = PiecesOf(*lateLine).front();
    if (SharedLength(first, second, same) <= tolerances.m_overlap)
        return Acad::eNotApplicable; // one of them was changed meanwhile
    if (onlyAsked)
        return Acad::eOk;
    if (const Acad::ErrorStatus opened = early->upgradeOpen(); opened != Acad::eOk)
        return opened;
    const Segment all = Union(first, second);
    earlyLine->setStartPoint(all.m_start);
    earlyLine->setEndPoint(all.m_end);
    return Erase(*late.object());
}

Acad::ErrorStatus MendGap(const Finding& finding, const CheckTolerances& tolerances, bool onlyAsked) {
    if (finding.m_object.isErased() || finding.m_other.isErased())
        return Acad::eNotApplicable;
    const AcDbEntityPointer entity(finding.m_object, AcDb::kForRead);
    const AcDbEntityPointer other(finding.m_other, AcDb::kForRead);
    if (entity.openStatus() != Acad::eOk || other.openStatus() != Acad::eOk)
        return entity.openStatus() != Acad::eOk ? entity.openStatus() : other.openStatus();
    const double same = tolerances.m_same;
    const auto isAt = [&](const AcGePoint3d& point) { return point.distanceTo(finding.m_place) <= same; };
    const auto pieces = PiecesOf(*other.object());
    if (std::ranges::none_of(pieces, [&](const Segment& one) { return one.Touches(finding.m_goal, same); }))
        return Acad::eNotApplicable;
    const auto open = [&] { return onlyAsked ? Acad::eOk : entity->upgradeOpen(); };
    if (auto* const line = AcDbLine::cast(entity.object())) {
        const bool atStart = isAt(line->startPoint());
        const AcGePoint3d rest = atStart ? line->endPoint() : line->startPoint();
        if ((!atStart && !isAt(line->endPoint())) || rest.distanceTo(finding.m_goal) <= same)
            return Acad::eNotApplicable;
        const Acad::ErrorStatus opened = open();
        if (onlyAsked || opened != Acad::eOk)
            return opened;
        return atStart ? line->setStartPoint(finding.m_goal) : line->setEndPoint(finding.m_goal);
    }
    auto* const polyline = AcDbPolyline::cast(entity.object());
    if (polyline == nullptr || polyline->isClosed() || polyline->numVerts() < 2 ||
        !polyline->normal().isCodirectionalTo(AcGeVector3d::kZAxis) ||
        std::abs(finding.m_goal.z - polyline->elevation()) > same)
        return Acad::eNotApplicable;
    for (const unsigned index : {0U, polyline->numVerts() - 1}) {
        AcGePoint3d end;
        polyline->getPointAt(index, end);
        if (!isAt(end))
            continue;
        const Acad::ErrorStatus opened = open();
        if (onlyAsked || opened != Acad::eOk)
            return opened;
        return polyline->setPointAt(index, {finding.m_goal.x, finding.m_goal.y});
    }
    return Acad::eNotApplicable;
}
