// How a pipe is drawn and exploded.
#include "dbents.h"
#include "siblings/zef_pipewire/Drawing.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDefaultCfg.h"

#include <cmath>
#include <memory>
#include <numbers>

namespace {

// Of the arrow that shows the direction of flow, mm on paper.
constexpr double arrowLength = 3.0;
constexpr double arrowWidth = 1.0;

// The symbols of risers by their second value.
constexpr double filledRiser = -1.0;
constexpr double crossedRiser = -3.0;
constexpr double nearBy = 1e-6;

} // namespace

AcGeVector3d TDbPipe::GetDirection() const {
    const AcGeVector3d along(m_end.x - m_start.x, m_end.y - m_start.y, 0.0);
    return IsVertical() ? AcGeVector3d() : along / along.length();
}

Adesk::Boolean TDbPipe::subWorldDraw(AcGiWorldDraw* draw) {
    assertReadEnabled();
    if (IsHiddenFor(*draw))
        return true;
    if (IsVertical())
        DrawRiser(*draw);
    else
        DrawBody(*draw);
    if (m_values.m_flow != kFlowUnknown)
        DrawArrow(*draw);
    if (HasLabel()) {
        SetLayerOf(*draw, m_values.m_labelLayer);
        GetLabel().Draw(*draw);
    }
    return true;
}

std::vector<std::vector<AcGePoint3d>> TDbPipe::GetBody() const {
    return {{m_start, m_end}};
}

void TDbPipe::DrawBody(AcGiWorldDraw& draw) const {
    const auto body = GetBody();
    const AcGeVector3d along = GetDirection();
    const AcGeVector3d side =
        AcGeVector3d(-along.y, along.x, 0.0) * (m_values.m_lineWidth * GetPlotScale() / 2);
    if (body.size() == 1 && IsPsLineWeight() && !side.isZeroLength()) {
        const AcGePoint3d rim[] = {m_start + side, m_end + side, m_end - side, m_start - side};
        draw.geometry().polygon(4, rim);
        return;
    }
    for (const std::vector<AcGePoint3d>& line : body)
        draw.geometry().polyline(static_cast<Adesk::UInt32>(line.size()), line.data());
}

void TDbPipe::DrawRiser(AcGiWorldDraw& draw) const {
    const AcGiWorldGeometry& geometry = draw.geometry();
    const double radius = m_values.m_vPipeRadius * GetPlotScale();
    const double second = m_values.m_vPipeSecond;
    const auto is = [&](double kind) { return std::fabs(second - kind) < nearBy; };
    geometry.circle(m_start, radius, AcGeVector3d::kZAxis);
    if (second > 0.0) {
        geometry.circle(m_start, second * GetPlotScale(), AcGeVector3d::kZAxis);
    } else if (is(filledRiser)) {
        constexpr int corners = 24;
        AcGePoint3d rim[corners];
        for (int i = 0; i < corners; ++i) {
            const double angle = 2.0 * std::numbers::pi * i / corners;
            rim[i] = m_start + AcGeVector3d(std::cos(angle), std::sin(angle), 0.0) * radius;
        }
        draw.subEntityTraits().setFillType(kAcGiFillAlways);
        geometry.polygon(corners, rim);
    } else if (is(crossedRiser)) {
        const AcGePoint3d across[] = {m_start - AcGeVector3d::kXAxis * radius,
                                      m_start + AcGeVector3d::kXAxis * radius};
        const AcGePoint3d upright[] = {m_start - AcGeVector3d::kYAxis * radius,
                                       m_start + AcGeVector3d::kYAxis * radius};
        geometry.polyline(2, across);
        geometry.polyline(2, upright);
    }
}

// On the middle of the pipe, where there is room for it.
void TDbPipe::DrawArrow(AcGiWorldDraw& draw) const {
    const double length = arrowLength * GetPlotScale();
    const AcGeVector3d along = GetDirection() * (m_values.m_flow > 0 ? 1.0 : -1.0);
    if (GetLength() < length || along.isZeroLength())
        return;
    const AcGeVector3d side = AcGeVector3d(-along.y, along.x, 0.0) * (arrowWidth * GetPlotScale() / 2);
    const AcGePoint3d middle = m_start + (m_end - m_start) / 2;
    const AcGePoint3d foot = middle - along * (length / 2);
    const AcGePoint3d corners[] = {middle + along * (length / 2), foot + side, foot - side};
    const AcDbObjectId layer = draw.subEntityTraits().layerId();
    SetLayerOf(draw, m_arrowLayer);
    draw.geometry().polygon(3, corners);
    draw.subEntityTraits().setLayer(layer);
}

bool TDbPipe::HasLabel() const {
    return IsLabelled() && IsDrawLabelEnabled() && !IsVertical();
}

TLabel TDbPipe::GetLabel() const {
    AcGeVector3d along = GetDirection();
    // Readable from below or from the right.
    if (along.x < -nearBy || (along.x <= nearBy && along.y < 0.0))
        along = -along;
    TLabel label;
    label.m_angle = std::atan2(along.y, along.x);
    label.m_height = m_values.m_labelHeight * GetPlotScale();
    label.m_style = m_values.m_labelStyle;
    label.m_lines = GetMultiLineDimTextByDimElements();
    const double distance = GetLabelDistance();
    const double away = std::fabs(distance) + label.GetTotalHeight() / 2;
    label.m_middle = m_start + (m_end - m_start) / 2 +
                     AcGeVector3d(-along.y, along.x, 0.0) * (distance < 0.0 ? -away : away);
    return label;
}

Acad::ErrorStatus TDbPipe::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    if (IsVertical())
        AppendPiece(new AcDbCircle(m_start, AcGeVector3d::kZAxis, m_values.m_vPipeRadius * GetPlotScale()),
                    *this, parts);
    else
        for (const std::vector<AcGePoint3d>& line : GetBody())
            for (std::size_t i = 1; i < line.size(); ++i)
                AppendPiece(new AcDbLine(line[i - 1], line[i]), *this, parts);
    if (HasLabel())
        GetLabel().Explode(*this, m_values.m_labelLayer, parts);
    return Acad::eOk;
}
