#include "siblings/zef_pipewire/TPen.h"

#include "dbents.h"
#include "dbhatch.h"
#include "dbpl.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

namespace {

bool IsLevel(const std::vector<AcGePoint3d>& points) {
    constexpr double slack = 1e-9;
    return std::ranges::all_of(
        points, [&](const AcGePoint3d& point) { return std::fabs(point.z - points.front().z) < slack; });
}

// The normal of the plane that all points lie in; of no length when there is none, or more than one.
AcGeVector3d NormalOf(const std::vector<AcGePoint3d>& points) {
    constexpr double slack = 1e-6;
    const AcGeVector3d across = (points[1] - points[0]).crossProduct(points[2] - points[0]);
    if (across.isZeroLength())
        return {};
    const AcGeVector3d normal = across.normal();
    return std::ranges::all_of(points,
                               [&](const AcGePoint3d& point) {
                                   return std::fabs(normal.dotProduct(point - points[0])) < slack;
                               })
               ? normal
               : AcGeVector3d();
}

} // namespace

// ---- drawing

TDrawingPen::TDrawingPen(AcGiWorldDraw& draw) : m_draw(draw), m_ownLayer(draw.subEntityTraits().layerId()) {
}

void TDrawingPen::SetLayer(AcDbObjectId layer) {
    m_draw.subEntityTraits().setLayer(layer.isNull() ? m_ownLayer : layer);
}

void TDrawingPen::Line(const std::vector<AcGePoint3d>& points) {
    m_draw.geometry().polyline(static_cast<Adesk::UInt32>(points.size()), points.data());
}

void TDrawingPen::Area(const std::vector<AcGePoint3d>& rim) {
    m_draw.subEntityTraits().setFillType(kAcGiFillAlways);
    m_draw.geometry().polygon(static_cast<Adesk::UInt32>(rim.size()), rim.data());
}

void TDrawingPen::Circle(const AcGePoint3d& center, double radius) {
    m_draw.geometry().circle(center, radius, AcGeVector3d::kZAxis);
}

void TDrawingPen::Arc(const AcGePoint3d& center, double radius, double startAngle, double endAngle) {
    m_draw.geometry().circularArc(center, radius, AcGeVector3d::kZAxis,
                                  AcGeVector3d(std::cos(startAngle), std::sin(startAngle), 0.0),
                                  endAngle - startAngle);
}

void TDrawingPen::Text(const AcGePoint3d& start, double angle, LPCTSTR text, const AcGiTextStyle& style,
                       AcDbObjectId /*styleId*/) {
    m_draw.geometry().text(start, AcGeVector3d::kZAxis, AcGeVector3d(std::cos(angle), std::sin(angle), 0.0),
                           text, -1, false, style);
}

// ---- gathering

void TGatheringPen::Add(AcDbEntity* piece) {
    piece->setPropertiesFrom(&m_entity);
    if (!m_layer.isNull())
        piece->setLayer(m_layer);
    m_pieces.append(piece);
}

void TGatheringPen::Line(const std::vector<AcGePoint3d>& points) {
    if (points.size() > 2 && IsLevel(points)) {
        auto line = std::make_unique<AcDbPolyline>();
        line->setElevation(points.front().z);
        for (const AcGePoint3d& point : points)
            line->addVertexAt(line->numVerts(), {point.x, point.y});
        Add(line.release());
        return;
    }
    for (std::size_t i = 1; i < points.size(); ++i)
        Add(new AcDbLine(points[i - 1], points[i]));
}

// Triangles and quadrangles are figures of their own, others hatches; what lies in no level plane and has
// more corners is made of faces.
void TGatheringPen::Area(const std::vector<AcGePoint3d>& rim) {
    constexpr std::size_t most = 4;
    if (rim.size() < 3)
        return;
    const bool isLevel = IsLevel(rim);
    const AcGeVector3d normal = isLevel ? AcGeVector3d::kZAxis : NormalOf(rim);
    if (rim.size() <= most && !normal.isZeroLength()) {
        auto solid = std::make_unique<AcDbSolid>();
        solid->setNormal(normal);
        const std::array<std::size_t, most> corners{0, 1, rim.size() - 1,
                                                    2}; // its third and fourth are crossed
        for (std::size_t i = 0; i < most; ++i)
            solid->setPointAt(static_cast<Adesk::UInt16>(i), rim[corners[i]]);
        Add(solid.release());
        return;
    }
    if (!isLevel) {
        for (std::size_t i = 2; i < rim.size(); ++i)
            Add(new AcDbFace(rim[0], rim[i - 1], rim[i]));
        return;
    }
    auto hatch = std::make_unique<AcDbHatch>();
    AcGePoint2dArray vertices;
    for (const AcGePoint3d& point : rim)
        vertices.append(AcGePoint2d(point.x, point.y));
    hatch->setElevation(rim.front().z);
    hatch->appendLoop(AcDbHatch::kExternal, vertices, AcGeDoubleArray());
    Add(hatch.release());
}

void TGatheringPen::Circle(const AcGePoint3d& center, double radius) {
    Add(new AcDbCircle(center, AcGeVector3d::kZAxis, radius));
}

void TGatheringPen::Arc(const AcGePoint3d& center, double radius, double startAngle, double endAngle) {
    Add(new AcDbArc(center, radius, startAngle, endAngle));
}

void TGatheringPen::Text(const AcGePoint3d& start, double angle, LPCTSTR text, const AcGiTextStyle& style,
                         AcDbObjectId styleId) {
    auto piece = std::make_unique<AcDbText>(start, text, styleId, style.textSize(), angle);
    piece->setWidthFactor(style.xScale());
    piece->setOblique(style.obliquingAngle());
    Add(piece.release());
}
