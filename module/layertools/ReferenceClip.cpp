#include "module/layertools/ReferenceClip.h"

#include "acdbads.h"
#include "dbdict.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "module/layertools/DrawingRecords.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace {

// The groups of the filter that clips a reference, which stands in a dictionary of the reference's own.
Chain FilterOf(const AcDbBlockReference& reference) {
    const AcDbDictionaryPointer own(reference.extensionDictionary(), AcDb::kForRead);
    AcDbObjectId filters;
    AcDbObjectId filter;
    if (own.openStatus() != Acad::eOk || own->getAt(L"ACAD_FILTER", filters) != Acad::eOk)
        return nullptr;
    const AcDbDictionaryPointer all(filters, AcDb::kForRead);
    ads_name name;
    if (all.openStatus() != Acad::eOk || all->getAt(L"SPATIAL", filter) != Acad::eOk ||
        acdbGetAdsName(name, filter) != Acad::eOk)
        return nullptr;
    Chain groups(acdbEntGet(name));
    for (const resbuf* group = groups.get(); group != nullptr; group = group->rbnext)
        if (group->restype == 0 && std::wstring_view(group->resval.rstring) == L"SPATIAL_FILTER")
            return groups;
    return nullptr;
}

// Three rows of four numbers.
AcGeMatrix3d MatrixOf(const double* numbers) {
    AcGeMatrix3d matrix;
    for (unsigned row = 0; row < 3; ++row)
        for (unsigned column = 0; column < 4; ++column)
            matrix(row, column) = *numbers++;
    return matrix;
}

AcGePoint2d InPlan(const AcGePoint3d& point) {
    return {point.x, point.y};
}

} // namespace

// The first of the two matrices leads from where the reference stood when it was clipped to the definition,
// the second one from there to the polygon's plane. A number of its own stands before them when there is a
// plane in front.
std::optional<CReferenceClip> CReferenceClip::Of(const AcDbBlockReference& reference,
                                                 const AcGeMatrix3d& placing) {
    constexpr std::size_t inMatrix = 12;
    const Chain groups = FilterOf(reference);
    CReferenceClip clip;
    bool isOn = false;
    bool isBehindPlanes = false;
    std::vector<double> numbers;
    for (const resbuf* group = groups.get(); group != nullptr; group = group->rbnext)
        switch (group->restype) {
        case 10:
            clip.m_corners.emplace_back(group->resval.rpoint[0], group->resval.rpoint[1]);
            break;
        case 71:
            isOn = group->resval.rint != 0;
            break;
        case 73:
            isBehindPlanes = true;
            break;
        case 40:
            if (isBehindPlanes)
                numbers.push_back(group->resval.rreal);
            break;
        default:
            break;
        }
    std::vector<AcGePoint2d>& corners = clip.m_corners;
    if (!isOn || corners.size() < 2 || numbers.size() < 2 * inMatrix ||
        !std::ranges::all_of(numbers, [](double one) { return std::isfinite(one); }))
        return std::nullopt;
    if (corners.size() == 2) // of a box
        corners = {corners[0], {corners[1].x, corners[0].y}, corners[1], {corners[0].x, corners[1].y}};
    const AcGeMatrix3d toDefinition = MatrixOf(numbers.data());
    if (toDefinition.isSingular() || placing.isSingular())
        return std::nullopt;
    clip.m_toClip = MatrixOf(numbers.data() + inMatrix) * toDefinition.inverse() * placing.inverse();
    return clip;
}

// By the even-odd rule: a polygon may have another one within it that is left out.
bool CReferenceClip::Holds(const AcGePoint2d& point) const {
    bool holds = false;
    for (std::size_t i = 0, before = m_corners.size() - 1; i < m_corners.size(); before = i++) {
        const AcGePoint2d& a = m_corners[before];
        const AcGePoint2d& b = m_corners[i];
        if ((a.y > point.y) != (b.y > point.y) && point.x < a.x + (b.x - a.x) * (point.y - a.y) / (b.y - a.y))
            holds = !holds;
    }
    return holds;
}

std::vector<double> CReferenceClip::Crossings(const AcGePoint2d& from, const AcGePoint2d& to) const {
    std::vector<double> found;
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    for (std::size_t i = 0, before = m_corners.size() - 1; i < m_corners.size(); before = i++) {
        const AcGePoint2d& a = m_corners[before];
        const double ex = m_corners[i].x - a.x;
        const double ey = m_corners[i].y - a.y;
        const double turn = dx * ey - dy * ex;
        if (turn == 0.0)
            continue;
        const double along = ((a.x - from.x) * ey - (a.y - from.y) * ex) / turn;
        const double onEdge = ((a.x - from.x) * dy - (a.y - from.y) * dx) / turn;
        if (along > 0.0 && along < 1.0 && onEdge >= 0.0 && onEdge <= 1.0)
            found.push_back(along);
    }
    std::ranges::sort(found);
    return found;
}

CReferenceClip::Sight CReferenceClip::Look(AcDbExtents box, const AcGeMatrix3d& placing) const {
    box.transformBy(m_toClip * placing);
    const AcGePoint2d least = InPlan(box.minPoint());
    const AcGePoint2d most = InPlan(box.maxPoint());
    const AcGePoint2d rim[] = {least, {most.x, least.y}, most, {least.x, most.y}};
    for (std::size_t i = 0; i < std::size(rim); ++i)
        if (!Crossings(rim[i], rim[(i + 1) % std::size(rim)]).empty())
            return Sight::Across;
    if (Holds({(least.x + most.x) / 2, (least.y + most.y) / 2}))
        return Sight::Inside;
    const AcGePoint2d& corner = m_corners[0]; // the polygon may lie within the box
    const bool isWithin =
        corner.x >= least.x && corner.x <= most.x && corner.y >= least.y && corner.y <= most.y;
    return isWithin ? Sight::Across : Sight::Outside;
}

std::vector<CReferenceClip::Part> CReferenceClip::Cut(const AcGePoint3d& from, const AcGePoint3d& to) const {
    const AcGePoint2d a = InPlan(m_toClip * from);
    const AcGePoint2d b = InPlan(m_toClip * to);
    std::vector<double> places = Crossings(a, b);
    places.push_back(1.0);
    std::vector<Part> parts;
    double before = 0.0;
    for (const double place : places) {
        const double middle = (before + place) / 2;
        if (place > before && Holds({a.x + (b.x - a.x) * middle, a.y + (b.y - a.y) * middle})) {
            if (!parts.empty() && parts.back().second == before)
                parts.back().second = place;
            else
                parts.emplace_back(before, place);
        }
        before = place;
    }
    return parts;
}
