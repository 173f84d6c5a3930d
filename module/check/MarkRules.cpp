// Marks of pipe systems that the standard does not have any more.
#include "module/check/DrawingCheck.h"
#include "module/layertools/Marks.h"
#include "module/standard/PipeSystemTool.h"

namespace {

class CMarkRules : public CRuleFamily {
public:
    using CRuleFamily::CRuleFamily;

    void Finish() override {
        if (!m_context.IsOn(CheckRule::Mark))
            return;
        for (const CheckedLayer& layer : m_context.m_layers.All())
            if (layer.m_isOwn)
                LookAt(layer.m_id, MarkTool::GetMark(layer.m_id));
        for (const MarkedEntity& marked : MarkTool::GetMarkedEntities())
            LookAt(marked.m_entity, marked.m_mark);
    }

private:
    // Of a system that was renamed the mark gets its name; else it means nothing and goes.
    void LookAt(AcDbObjectId object, const CString& mark) {
        if (mark.IsEmpty() || MarkTool::IsArchitecture(mark) ||
            PipeSystemTool::IsPipeSystemOfCurrentStandard(mark))
            return;
        const CString current = PipeSystemTool::OriginSystemNameToCurrentName(mark);
        const bool isRenamed = current != mark;
        CString text;
        text.Format(isRenamed ? L"标记的系统\"%s\"已改名" : L"标记的系统\"%s\"不在标准中", mark);
        const Mend mend = [isRenamed, current](const Finding& finding) {
            return isRenamed ? MarkTool::SetMark(finding.m_object, current)
                             : MarkTool::ClearMark(finding.m_object);
        };
        m_context.m_findings.Add(m_context.m_findings.GetKind(CheckRule::Mark, text, mend), object);
    }
};

} // namespace

std::unique_ptr<CRuleFamily> MakeMarkRules(const CheckContext& context) {
    return std::make_unique<CMarkRules>(context);
}
