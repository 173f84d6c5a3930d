// Entities that have colour, linetype or lineweight of their own where their layer is to say.
#include "acutmem.h"
#include "base/wildcard.h"
#include "dbobjptr.h"
#include "module/check/DrawingCheck.h"
#include "module/standard/Names.h"
#include "module/standard/StandardManager.h"

#include <array>

namespace {

class CPropertyRules : public CRuleFamily {
public:
    explicit CPropertyRules(const CheckContext& context)
        : CRuleFamily(context), m_layers(context.m_rules[CheckRule::OwnProperties].m_layers),
          m_isOn(context.IsOn(CheckRule::OwnProperties)) {}

    // In a block the reference may say.
    void Look(const AcDbEntity& entity, const CheckedLayer& layer, bool isInSpace) override {
        if (!m_isOn || !IsAsked(layer))
            return;
        const Adesk::UInt16 color = entity.colorIndex();
        if (color != AcCmEntityColor::kACIbyLayer && (isInSpace || color != AcCmEntityColor::kACIbyBlock))
            Add(Color, layer, entity.objectId());
        ACHAR* linetype = entity.linetype();
        if (const std::wstring_view name(linetype);
            !IsSameName(name, L"ByLayer") && (isInSpace || !IsSameName(name, L"ByBlock")))
            Add(Linetype, layer, entity.objectId());
        acutDelString(linetype);
        const AcDb::LineWeight weight = entity.lineWeight();
        if (weight != AcDb::kLnWtByLayer && (isInSpace || weight != AcDb::kLnWtByBlock))
            Add(Weight, layer, entity.objectId());
    }

private:
    enum Property { Color, Linetype, Weight };

    // Without a pattern: on layers of the standard.
    bool IsAsked(const CheckedLayer& layer) {
        if (m_layers.IsEmpty())
            return layer.m_standard != nullptr;
        if (&layer != m_last) {
            m_last = &layer;
            m_isLastAsked =
                layer.m_isOwn && base::wildcard_match(ViewOf(layer.m_name), ViewOf(m_layers), true);
        }
        return m_isLastAsked;
    }

    static Acad::ErrorStatus Clear(AcDbObjectId id, Property property) {
        const AcDbEntityPointer entity(id, AcDb::kForWrite);
        if (entity.openStatus() != Acad::eOk)
            return entity.openStatus();
        switch (property) {
        case Color:
            return entity->setColorIndex(AcCmEntityColor::kACIbyLayer, false);
        case Linetype:
            return entity->setLinetype(L"ByLayer", false);
        default:
            return entity->setLineWeight(AcDb::kLnWtByLayer, false);
        }
    }

    void Add(Property property, const CheckedLayer& layer, AcDbObjectId entity) {
        static constexpr const wchar_t* names[] = {L"颜色", L"线型", L"线宽"};
        int& kind = m_kinds.try_emplace(&layer, Kinds{-1, -1, -1}).first->second[property];
        if (kind < 0) {
            CString text;
            text.Format(L"图层\"%s\"上的图元%s不随层", layer.m_name, names[property]);
            kind = m_context.m_findings.GetKind(
                CheckRule::OwnProperties, text,
                [property](const Finding& finding) { return Clear(finding.m_object, property); });
        }
        m_context.m_findings.Add(kind, entity);
    }

    using Kinds = std::array<int, 3>;
    CString m_layers;
    bool m_isOn;
    const CheckedLayer* m_last = nullptr;
    bool m_isLastAsked = false;
    std::unordered_map<const CheckedLayer*, Kinds> m_kinds;
};

} // namespace

std::unique_ptr<CRuleFamily> MakePropertyRules(const CheckContext& context) {
    return std::make_unique<CPropertyRules>(context);
}
