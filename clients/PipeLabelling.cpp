#include "clients/PipeLabelling.h"

#include "dbobjptr.h"
#include "module/annotation/PipeLabels.h"
#include "module/standard/PipeSystemCreation.h"
#include "siblings/zef_pipewire/TDbDoubleLinePipe.h"
#include "siblings/zef_public/PipeLabels.h"
#include "siblings/zef_public/PipeMaterials.h"

#include <cmath>

namespace {

constexpr double metre = 1000.0;
constexpr wchar_t nominalField[] = L"PIPE_NOMINAL";
// The DN as labelling left it: when it is another one by now, the nominal one that is kept is out of date.
constexpr wchar_t labelledField[] = L"PIPE_LABELLED_DN";

int NominalDnOf(const TDbPipe& pipe) {
    constexpr double slack = 0.001;
    if (const auto* const walls = TDbDoubleLinePipe::cast(&pipe))
        return static_cast<int>(std::lround(walls->GetStartDn()));
    const double dn = pipe.GetValues().m_dn;
    double nominal = dn;
    double labelled = 0.0;
    if (pipe.GetField(labelledField, labelled) && std::fabs(labelled - dn) < slack)
        pipe.GetField(nominalField, nominal);
    return static_cast<int>(std::lround(nominal));
}

void KeepNominalDn(TDbPipe& pipe, int nominal, const CString& format) {
    const CString material = GetPipeMaterialByIdx(pipe.GetValues().m_material);
    const bool tellsOuter = format.Find(L"%%c") >= 0;
    pipe.SetField(nominalField, nominal);
    pipe.SetField(labelledField, tellsOuter ? GetPipeOutDByDn(material, nominal) * metre : nominal);
}

} // namespace

TLabelOrder& LastLabelOrder() {
    static TLabelOrder order;
    return order;
}

LabellingEnum LabelPipe(AcDbObjectId id, const TLabelOrder& order) {
    int dn = order.m_dn;
    CString prefix;
    int oldDn = 0;
    bool isRiser = false;
    {
        const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForWrite);
        if (pipe.openStatus() != Acad::eOk)
            return kNotLabelled;
        TPipeValues& values = pipe->ChangeValues();
        isRiser = pipe->IsVertical();
        prefix = values.m_labelPrefix;
        oldDn = static_cast<int>(std::lround(values.m_dn));
        if (dn <= 0)
            dn = NominalDnOf(*pipe.object());
        const CString format = KolTool::GetPipeLabelFormat(*pipe.object(), order.m_style);
        if (dn > 0)
            KeepNominalDn(*pipe.object(), dn, format);
        if (isRiser) // for the texts about it
            values.m_labelFormat = format;
        if (values.m_labelLayer.isNull())
            values.m_labelLayer = PipeSystemTool::InitLayer(pipe->GetPipeSystemName(), L"管径文字", nullptr);
    }
    const TEntitySet set({id});
    KolTool::DoDimPipeDn(set, dn, order.m_style, order.m_height, order.m_otherSide ? 1 : 0,
                         order.m_force ? 1 : 0);
    if (isRiser) {
        UpdatePipeTextDim(set, prefix, oldDn);
        return kRiserLabelled;
    }
    const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
    return pipe->IsDrawLabelEnabled() ? kLabelled : kTooShort;
}
