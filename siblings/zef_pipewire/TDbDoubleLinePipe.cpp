#include "siblings/zef_pipewire/TDbDoubleLinePipe.h"

#include "dbproxy.h"
#include "siblings/zef_pipewire/TDefaultCfg.h"
#include "siblings/zef_pipewire/TDxfFields.h"
#include "siblings/zef_pipewire/TPen.h"

#include <algorithm>
#include <cmath>

ACRX_DXF_DEFINE_MEMBERS(TDbDoubleLinePipe, TDbPipe, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        AcDbProxyEntity::kAllAllowedBits, ZEF_DOUBLELINEPIPE, "ZEF_PIPEWIRE|pipe entities")

double TDbDoubleLinePipe::GetStartDn() const {
    assertReadEnabled();
    return m_startDn;
}

double TDbDoubleLinePipe::GetEndDn() const {
    assertReadEnabled();
    return m_endDn;
}

void TDbDoubleLinePipe::SetDns(double start, double end) {
    assertWriteEnabled();
    m_startDn = start;
    m_endDn = end;
}

double TDbDoubleLinePipe::GetFlangeDiameter() const {
    assertReadEnabled();
    return m_flangeDiameter;
}

double TDbDoubleLinePipe::GetFlangeThickness() const {
    assertReadEnabled();
    return m_flangeThickness;
}

void TDbDoubleLinePipe::SetFlange(double diameter, double thickness) {
    assertWriteEnabled();
    m_flangeDiameter = diameter;
    m_flangeThickness = thickness;
}

namespace {

constexpr const wchar_t* startOuter = L"START_OUTER";
constexpr const wchar_t* endOuter = L"END_OUTER";

} // namespace

double TDbDoubleLinePipe::GetStartOuter() const {
    double outer = m_startDn;
    GetField(startOuter, outer);
    return outer;
}

double TDbDoubleLinePipe::GetEndOuter() const {
    double outer = m_endDn;
    GetField(endOuter, outer);
    return outer;
}

void TDbDoubleLinePipe::SetOuters(double start, double end) {
    SetField(startOuter, start);
    SetField(endOuter, end);
}

void TDbDoubleLinePipe::DrawBody(TPen& pen) const {
    const AcGeVector3d along = GetDirection();
    const AcGeVector3d side(-along.y, along.x, 0.0);
    const AcGePoint3d start = GetStartPoint();
    const AcGePoint3d end = GetEndPoint();
    const double length = GetLength();
    const auto half = [&](const AcGePoint3d& at) {
        const double part = length > 0.0 ? start.distanceTo(at) / length : 0.0;
        return side * ((GetStartOuter() + (GetEndOuter() - GetStartOuter()) * part) / 2);
    };
    for (const auto& [from, to] : GetVisibleParts())
        for (const double hand : {1.0, -1.0})
            pen.Line({from + half(from) * hand, to + half(to) * hand});
    if (m_flangeDiameter <= 0.0)
        return;
    const AcGeVector3d rim = side * (m_flangeDiameter / 2);
    const AcGeVector3d thick = along * m_flangeThickness;
    for (const auto& [at, inward] : {std::pair(start, thick), std::pair(end, -thick)})
        pen.Line({at + rim, at - rim, at - rim + inward, at + rim + inward, at + rim});
}

void TDbDoubleLinePipe::DrawRiser(TPen& pen) const {
    double thickness = 0.0;
    GetField(L"PIPE_THICK", thickness);
    const double radius = GetEndOuter() / 2;
    for (const double one : {radius, thickness > 0.0 ? radius - thickness : 0.0, m_flangeDiameter / 2})
        if (one > 0.0)
            pen.Circle(GetStartPoint(), one);
}

double TDbDoubleLinePipe::GetPassingGap(const TDbPipe& passing) const {
    const auto* const walls = TDbDoubleLinePipe::cast(&passing);
    const double width = walls != nullptr ? std::max(walls->GetStartOuter(), walls->GetEndOuter()) : 0.0;
    const AcGeVector3d along = GetDirection();
    const AcGeVector3d across = walls != nullptr ? walls->GetDirection() : along;
    const double sine = std::fabs(along.x * across.y - along.y * across.x);
    const double cosine = std::fabs(along.x * across.x + along.y * across.y);
    const double own = std::max(GetStartOuter(), GetEndOuter());
    // At a slant both walls have to end in front of the other one's.
    const double slant = sine > 0.01 && walls != nullptr ? (width + own * cosine) / sine : width;
    return slant + TDbPipe::GetPassingGap(passing);
}

double TDbDoubleLinePipe::GetLabelDn() const {
    int atEnd = 0;
    TDefaultCfg::GetDefaultValue(TDefaultCfg::kInteger, 4, atEnd);
    return atEnd == 1 ? m_endDn : m_startDn;
}

CString TDbDoubleLinePipe::GetLabelText() const {
    assertReadEnabled();
    return SignedDiameter(L"DN", GetLabelDn());
}

bool TDbDoubleLinePipe::HasLabel() const {
    return !GetValues().m_labelStyle.isNull() && IsDrawLabelEnabled() && !IsVertical() && GetLabelDn() > 0.0;
}

// Beyond the walls and the flanges.
double TDbDoubleLinePipe::GetLabelGap() const {
    return std::max({GetStartOuter(), GetEndOuter(), m_flangeDiameter}) / 2 +
           GetPsPipeTextDis(database()) * GetPlotScale();
}

TDxfFields TDbDoubleLinePipe::Fields() {
    constexpr Adesk::Int16 version = 1;
    return {L"TDbDoubleLinePipe",
            version,
            {{40, &m_startDn}, {41, &m_endDn}, {42, &m_flangeDiameter}, {43, &m_flangeThickness}}};
}

Acad::ErrorStatus TDbDoubleLinePipe::dxfInFields(AcDbDxfFiler* filer) {
    const Acad::ErrorStatus status = TDbPipe::dxfInFields(filer);
    return status == Acad::eOk ? Fields().Read(filer) : status;
}

Acad::ErrorStatus TDbDoubleLinePipe::dxfOutFields(AcDbDxfFiler* filer) const {
    const Acad::ErrorStatus status = TDbPipe::dxfOutFields(filer);
    return status == Acad::eOk ? const_cast<TDbDoubleLinePipe*>(this)->Fields().Write(filer) : status;
}
