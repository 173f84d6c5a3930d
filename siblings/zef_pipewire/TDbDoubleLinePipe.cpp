#include "siblings/zef_pipewire/TDbDoubleLinePipe.h"

#include "dbproxy.h"
#include "siblings/zef_pipewire/TDefaultCfg.h"
#include "siblings/zef_pipewire/TDxfFields.h"
#include "siblings/zef_pipewire/TPen.h"

#include <algorithm>

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

void TDbDoubleLinePipe::DrawBody(TPen& pen) const {
    const AcGeVector3d along = GetDirection();
    const AcGeVector3d side(-along.y, along.x, 0.0);
    const AcGePoint3d start = GetStartPoint();
    const AcGePoint3d end = GetEndPoint();
    pen.Line({start + side * (m_startDn / 2), end + side * (m_endDn / 2)});
    pen.Line({start - side * (m_startDn / 2), end - side * (m_endDn / 2)});
    if (m_flangeDiameter <= 0.0)
        return;
    const AcGeVector3d half = side * (m_flangeDiameter / 2);
    const AcGeVector3d thick = along * m_flangeThickness;
    for (const auto& [at, inward] : {std::pair(start, thick), std::pair(end, -thick)})
        pen.Line({at + half, at - half, at - half + inward, at + half + inward, at + half});
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
    return std::max({m_startDn, m_endDn, m_flangeDiameter}) / 2 +
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
