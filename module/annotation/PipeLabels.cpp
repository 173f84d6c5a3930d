#include "module/annotation/PipeLabels.h"

#include "module/standard/PipeSystemCreation.h"
#include "module/standard/PipeSystemUpdates.h"
#include "siblings/zef_pipewire/TDbDoubleLinePipe.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"
#include "siblings/zef_pipewire/TFlange.h"
#include "siblings/zef_public/PipeLabels.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "siblings/zef_public/SharedOptions.h"

#include "acutmem.h"
#include "dbobjptr.h"
#include "rxclass.h"

#include <cmath>
#include <memory>
#include <string_view>
#include <utility>

namespace {

constexpr double metre = 1000.0;
constexpr wchar_t outerSign[] = L"%%c";
constexpr wchar_t withThickness[] = L"外径壁厚";
constexpr wchar_t withPrefixAndThickness[] = L"外径壁厚2";
constexpr wchar_t automatic[] = L"自动";

// The pressure class of a pipe's flanges (PN, bar).
double PressureClassOf(const AcDbEntity& pipe) {
    constexpr std::pair<const wchar_t*, double> classes[] = {
        {L"0.25MPa", 2.5}, {L"0.6MPa", 6.0}, {L"1.0MPa", 10.0}, {L"1.6MPa", 16.0}};
    constexpr double usual = 10.0;
    const std::unique_ptr<resbuf, int (*)(resbuf*)> data(pipe.xData(L"VR-PIPE-FLANGE-PN"), acutRelRb);
    const resbuf* text = data.get();
    while (text != nullptr && text->restype != AcDb::kDxfXdAsciiString)
        text = text->rbnext;
    for (const auto& [name, pressure] : classes)
        if (text != nullptr && std::wstring_view(text->resval.rstring) == name)
            return pressure;
    return usual;
}

bool IsPipeClass(AcDbObjectId id) {
    const AcRxClass* const type = id.objectClass();
    const CString name = type != nullptr ? type->dxfName() : nullptr;
    return name.CompareNoCase(L"ZEF_PIPE") == 0 || name.CompareNoCase(L"ZEF_DOUBLELINEPIPE") == 0;
}

void SetDnAndFlange(TDbDoubleLinePipe& pipe, int dn) {
    TFlangeData flange;
    GetFlangeDataByDn(PressureClassOf(pipe), dn, flange);
    pipe.SetDns(dn, dn);
    pipe.SetFlange(flange.m_outerDiameter, flange.m_thickness);
    pipe.ChangeValues().m_isChanged = true;
}

// Whether a pipe of that length is labelled with texts of that height.
bool IsLongEnough(double length, double textHeight, const TPsSettings& drawing) {
    constexpr double large = 2.99;
    if (drawing.m_isAbsoluteSize)
        return length > (textHeight < large ? 5.0 : 8.0);
    return length / metre > drawing.m_plotScale / (textHeight < large ? 200.0 : 150.0);
}

// Puts the outer diameter in the place of the nominal one. Gives the wall.
double TurnToOuter(TPipeValues& values, double nominal) {
    const CString material = GetPipeMaterialByIdx(values.m_material);
    values.m_dn = GetPipeOutDByDn(material, nominal) * metre;
    values.m_isChanged = true;
    return (values.m_dn - GetPipeDjByDn(material, nominal) * metre) * 0.5;
}

// The diameters, and the thickness that the label tells.
void SetDiameter(TPipeValues& values, int dn, const CString& style, const CString& format) {
    const bool tellsThickness = style == withThickness || style == withPrefixAndThickness;
    if (format.Find(outerSign) >= 0) {
        const double wall = TurnToOuter(values, dn > 0 ? dn : std::round(values.m_dn));
        values.m_thickness = tellsThickness ? wall : 0.0;
        return;
    }
    if (style.CompareNoCase(automatic) != 0)
        values.m_thickness = 0.0;
    if (dn > 0) {
        values.m_dn = dn;
        values.m_isChanged = true;
    }
}

void LabelPipe(TDbPipe& pipe, int dn, const CString& style, double textHeight, bool otherSide, bool force,
               AcDbObjectId textStyle) {
    TPipeValues& values = pipe.ChangeValues();
    const CString format = KolTool::GetPipeLabelFormat(pipe, style);
    SetDiameter(values, dn, style, format);
    if (!pipe.IsVertical()) {
        if (textHeight > 0.0)
            values.m_labelHeight = textHeight;
        if (!pipe.IsLabelled() || force) {
            const TPsSettings drawing = DocGetSettings();
            const double distance = drawing.m_plotScale * g_nDnDimDist2Pipe;
            pipe.InitLabelLocation(otherSide ? -distance : distance);
            pipe.EnableDrawLabel(IsLongEnough(pipe.GetLength(), values.m_labelHeight, drawing));
        }
        if (values.m_oldDimType < 0.0)
            pipe.EnableDrawLabel(false);
        if (values.m_oldDimType < 1.0)
            values.m_isOldLabel = false;
        values.m_labelFormat = format;
        values.m_labelStyle = textStyle;
    }
    PipeSystemTool::UpdatePipeInfo(&pipe);
}

} // namespace

CString KolTool::GetPipeLabelFormat(const TDbPipe& pipe, LPCTSTR labelStyle) {
    const CString style(labelStyle);
    if (style == L"φ外径" || style == withThickness)
        return outerSign;
    if (style == withPrefixAndThickness) {
        AcString layer;
        pipe.layer(layer);
        const int at = GetPipeLayerIdxByName(layer.kwszPtr());
        return (at >= 0 ? g_csPipeDim[static_cast<std::size_t>(at)] : CString()) + L" " + outerSign;
    }
    if (style.CompareNoCase(automatic) == 0)
        return GetDnByMat(GetPipeMaterialByIdx(pipe.GetValues().m_material));
    return style;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers link it so
void KolTool::DoDimPipeDn(TEntitySet pipes, int dn, LPCTSTR labelStyle, double textHeight, int otherSide,
                          int force) {
    if (pipes.GetCount() == 0 || !IsPipeClass(pipes.GetAt(0)))
        return;
    CString prefix;
    int oldDn = 0;
    {
        const AcDbObjectPointer<TDbPipe> pipe(pipes.GetAt(0), AcDb::kForWrite);
        if (pipe.openStatus() != Acad::eOk)
            return;
        const AcDbObjectId textStyle = PipeSystemTool::InitTextStyle(kPipeDnTextStyle);
        if (auto* const walls = TDbDoubleLinePipe::cast(pipe.object())) {
            if (dn >= 1)
                SetDnAndFlange(*walls, dn);
            walls->ChangeValues().m_labelStyle = textStyle;
            return;
        }
        prefix = pipe->GetValues().m_labelPrefix;
        oldDn = static_cast<int>(std::lround(pipe->GetValues().m_dn));
        LabelPipe(*pipe.object(), dn, labelStyle, textHeight, otherSide != 0, force != 0, textStyle);
        if (pipe->IsVertical())
            return;
    }
    UpdatePipeTextDim(pipes, prefix, oldDn);
}
