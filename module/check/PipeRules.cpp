// Pipes whose system, layer, material or diameter the standard and its tables do not have.
#include "dbobjptr.h"
#include "module/check/DrawingCheck.h"
#include "module/layertools/LayerFamilies.h"
#include "module/standard/PipeSystemCreation.h"
#include "module/standard/PipeSystemUpdates.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_public/PipeMaterials.h"

#include <set>

namespace {

typedef AcDbObjectPointer<TDbPipe> PipePointer;

CString LayerTypeOf(const TDbPipe& pipe) {
    return pipe.IsVertical() ? L"立管" : L"管线";
}

class CPipeRules : public CRuleFamily {
public:
    using CRuleFamily::CRuleFamily;

    void Look(const AcDbEntity& entity, const CheckedLayer& layer, bool isInSpace) override {
        const auto* const pipe = isInSpace ? TDbPipe::cast(&entity) : nullptr;
        if (pipe == nullptr)
            return;
        const CString system = PipeSystemTool::GetPipeSystemName(pipe);
        if (PipeSystemTool::IsPipeSystemOfCurrentStandard(system))
            LookAtLayer(*pipe, system, layer);
        else if (m_context.IsOn(CheckRule::PipeSystem))
            AddUnknown(*pipe, system);
        LookAtMaterial(*pipe);
    }

private:
    // A pipe may be on any layer of its system, also on one that was marked for it.
    void LookAtLayer(const TDbPipe& pipe, const CString& system, const CheckedLayer& layer) {
        if (!m_context.IsOn(CheckRule::PipeLayer) || m_families.IsLayerOf(layer.m_id, system))
            return;
        CString text;
        text.Format(L"系统\"%s\"的管线在图层\"%s\"上", system, layer.m_name);
        Mend mend;
        if (!PipeSystemTool::GetLayerName(system, LayerTypeOf(pipe)).IsEmpty())
            mend = [system](const Finding& finding) {
                const PipePointer open(finding.m_object, AcDb::kForWrite);
                if (open.openStatus() != Acad::eOk)
                    return open.openStatus();
                return open->setLayer(PipeSystemTool::InitLayer(system, LayerTypeOf(*open.object()), nullptr),
                                      false);
            };
        m_context.m_findings.Add(m_context.m_findings.GetKind(CheckRule::PipeLayer, text, mend),
                                 pipe.objectId());
    }

    // A system that was renamed is known by its first name.
    void AddUnknown(const TDbPipe& pipe, const CString& system) {
        const CString current = PipeSystemTool::OriginSystemNameToCurrentName(system);
        CString text;
        Mend mend;
        if (system.IsEmpty()) {
            text = L"管线没有系统";
        } else if (current != system) {
            text.Format(L"管线的系统\"%s\"已改名为\"%s\"", system, current);
            mend = [current](const Finding& finding) {
                const PipePointer open(finding.m_object, AcDb::kForWrite);
                if (open.openStatus() == Acad::eOk)
                    PipeSystemTool::SetPipeSystemName(open.object(), current);
                return open.openStatus();
            };
        } else {
            text.Format(L"管线的系统\"%s\"不在标准中", system);
        }
        m_context.m_findings.Add(m_context.m_findings.GetKind(CheckRule::PipeSystem, text, mend),
                                 pipe.objectId());
    }

    void LookAtMaterial(const TDbPipe& pipe) {
        const TPipeValues& values = pipe.GetValues();
        const CString material = GetPipeMaterialByIdx(values.m_material);
        CString text;
        if (material.IsEmpty()) {
            text.Format(L"管材号 %d 没有对应的管材", values.m_material);
            AddText(CheckRule::PipeMaterial, text, pipe);
        } else if (FindPipeDiameter(material, values.m_dn) == nullptr) {
            text.Format(L"管材\"%s\"没有公称直径 %g", material, values.m_dn);
            AddText(CheckRule::PipeDiameter, text, pipe);
        }
    }

    void AddText(CheckRule rule, const CString& text, const TDbPipe& pipe) {
        if (m_context.IsOn(rule))
            m_context.m_findings.Add(m_context.m_findings.GetKind(rule, text), pipe.objectId());
    }

    CLayerFamilies m_families;
};

} // namespace

std::unique_ptr<CRuleFamily> MakePipeRules(const CheckContext& context) {
    return std::make_unique<CPipeRules>(context);
}
