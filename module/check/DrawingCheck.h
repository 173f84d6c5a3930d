// The check of the current drawing against the current standard.
#pragma once

#include "module/check/CheckedLayers.h"
#include "module/check/Findings.h"

#include <memory>
#include <optional>

class AcDbEntity;

// What all families of rules have.
struct CheckContext {
    const CheckRules& m_rules;
    const CCheckedLayers& m_layers;
    CFindings& m_findings;

    bool IsOn(CheckRule rule) const { return m_rules.IsOn(rule); }
};

// A family of rules. It looks at each entity of the drawing once, attributes of references too: in model
// space, on sheets and in definitions of blocks, without those of external references and without the parts
// of dimensions and the like (anonymous blocks).
class CRuleFamily {
public:
    explicit CRuleFamily(const CheckContext& context) : m_context(context) {}
    CRuleFamily(const CRuleFamily&) = delete;
    CRuleFamily& operator=(const CRuleFamily&) = delete;
    virtual ~CRuleFamily();

    virtual void Look(const AcDbEntity& entity, const CheckedLayer& layer, bool isInSpace);
    virtual void Finish() {}

protected:
    CheckContext m_context;
};

std::unique_ptr<CRuleFamily> MakeLayerRules(const CheckContext& context);
std::unique_ptr<CRuleFamily> MakePropertyRules(const CheckContext& context);
std::unique_ptr<CRuleFamily> MakePipeRules(const CheckContext& context);
std::unique_ptr<CRuleFamily> MakeSegmentRules(const CheckContext& context);
std::unique_ptr<CRuleFamily> MakeTextRules(const CheckContext& context);
std::unique_ptr<CRuleFamily> MakeMarkRules(const CheckContext& context);

// Nothing when the user pressed Escape meanwhile.
std::optional<CFindings> CheckDrawing(const CheckRules& rules);
