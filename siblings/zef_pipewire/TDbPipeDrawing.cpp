// How a pipe is drawn, and what comes of it when it is exploded.
#include "siblings/zef_pipewire/Drawing.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"
#include "siblings/zef_pipewire/TDefaultCfg.h"
#include "siblings/zef_pipewire/TPen.h"

#include <cmath>
#include <numbers>

namespace {

// Of the arrow that shows the direction of flow, mm on paper.
constexpr double arrowLength = 3.0;
constexpr double arrowWidth = 1.0;

// The symbols of risers by their second value.
constexpr double filledRiser = -1.0;
constexpr double crossedRiser = -3.0;
constexpr double arcRiser = 0.0;
constexpr double nearBy = 1e-6;

} // namespace

AcGeVector3d TDbPipe::GetDirection() const {
    const AcGeVector3d along(m_end.x - m_start.x, m_end.y - m_start.y, 0.0);
    return IsVertical() ? AcGeVector3d() : along / along.length();
}

Adesk::Boolean TDbPipe::subWorldDraw(AcGiWorldDraw* draw) {
    assertReadEnabled();
    if (!IsHiddenFor(*draw)) {
        TDrawingPen pen(*draw);
        Draw(pen);
    }
    return true;
}

Acad::ErrorStatus TDbPipe::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    TGatheringPen pen(*this, parts);
    Draw(pen);
    return Acad::eOk;
}

void TDbPipe::Draw(TPen& pen) const {
    if (IsVertical())
        DrawRiser(pen);
    else
        DrawBody(pen);
    if (m_values.m_flow != kFlowUnknown)
        DrawArrow(pen);
    if (HasLabel()) {
        pen.SetLayer(m_values.m_labelLayer);
        GetLabel().Draw(pen);
    }
}

void TDbPipe::DrawBody(TPen& pen) const {
    const AcGeVector3d along = GetDirection();
    const AcGeVector3d side =
        AcGeVector3d(-along.y, along.x, 0.0) * (m_values.m_lineWidth * GetPlotScale() / 2);
    const bool isThick = IsPsLineWeight(database()) && !side.isZeroLength();
    for (const auto& [start, end] : GetVisibleParts()) {
        if (isThick)
            pen.Area({start + side, end + side, end - side, start - side});
        else
            pen.Line({start, end});
    }
}

void TDbPipe::DrawRiser(TPen& pen) const {
    const double radius = m_values.m_vPipeRadius * GetPlotScale();
    const double second = m_values.m_vPipeSecond;
    const auto is = [&](double kind) { return std::fabs(second - kind) < nearBy; };
    if (is(arcRiser)) {
        pen.Arc(m_start, radius, 0.0, 1.5 * std::numbers::pi);
        return;
    }
    pen.Circle(m_start, radius);
    if (second > 0.0) {
        pen.Circle(m_start, second * GetPlotScale());
    } else if (is(filledRiser)) {
        constexpr int corners = 24;
        std::vector<AcGePoint3d> rim;
        for (int i = 0; i < corners; ++i) {
            const double angle = 2.0 * std::numbers::pi * i / corners;
            rim.push_back(m_start + AcGeVector3d(std::cos(angle), std::sin(angle), 0.0) * radius);
        }
        pen.Area(rim);
    } else if (is(crossedRiser)) {
        for (const AcGeVector3d& arm : {AcGeVector3d::kXAxis * radius, AcGeVector3d::kYAxis * radius})
            pen.Line({m_start - arm, m_start + arm});
    }
}

// On the middle of the pipe, where there is room for it.
void TDbPipe::DrawArrow(TPen& pen) const {
    const double length = arrowLength * GetPlotScale();
    const AcGeVector3d along = GetDirection() * (m_values.m_flow > 0 ? 1.0 : -1.0);
    if (GetLength() < length || along.isZeroLength())
        return;
    const AcGeVector3d side = AcGeVector3d(-along.y, along.x, 0.0) * (arrowWidth * GetPlotScale() / 2);
    const AcGePoint3d middle = m_start + (m_end - m_start) / 2;
    const AcGePoint3d foot = middle - along * (length / 2);
    pen.SetLayer(m_arrowLayer);
    pen.Area({middle + along * (length / 2), foot + side, foot - side});
    pen.SetLayer(AcDbObjectId::kNull);
}

bool TDbPipe::HasLabel() const {
    return IsLabelled() && IsDrawLabelEnabled() && !IsVertical();
}

double TDbPipe::GetLabelGap() const {
    return std::fabs(GetLabelDistance());
}

double TDbPipe::GetLabelHeight() const {
    assertReadEnabled();
    return m_values.m_labelHeight * (DocGetSettings(database()).m_isAbsoluteSize ? 1.0 : GetPlotScale());
}

TLabel TDbPipe::GetLabel() const {
    AcGeVector3d along = GetDirection();
    // Readable from below or from the right.
    if (along.x < -nearBy || (along.x <= nearBy && along.y < 0.0))
        along = -along;
    TLabel label;
    label.m_angle = std::atan2(along.y, along.x);
    label.m_height = GetLabelHeight();
    label.m_style = m_values.m_labelStyle;
    label.m_lines = GetMultiLineDimTextByDimElements();
    const double away = GetLabelGap() + label.GetTotalHeight() / 2;
    label.m_middle = m_start + (m_end - m_start) / 2 +
                     AcGeVector3d(-along.y, along.x, 0.0) * (GetLabelDistance() < 0.0 ? -away : away);
    return label;
}
