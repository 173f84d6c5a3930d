#include "module/check/DrawingCheck.h"
#include "module/layertools/DrawingWalk.h"

#include "aced.h"
#include "acedads.h"
#include "acutmem.h"
#include "base/wildcard.h"
#include "dbapserv.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/layertools/DrawingRecords.h"
#include "module/standard/Names.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <algorithm>
#include <array>
#include <span>

namespace {

constexpr unsigned looksBetweenQuestions = 4096; // whether the user pressed Escape

class Walk {
public:
    Walk(const CheckContext& context, std::span<const std::unique_ptr<CRuleFamily>> families)
        : m_context(context), m_families(families) {}

    // False when the user stopped it.
    bool Run() { return LookInSpaces() && LookInBlocks(); }

private:
    // Only what some rule asks about is opened: of a plan that is most often the smaller part.
    bool LookInSpaces() {
        const CString layers = AskedLayers();
        const Chain filter(acutBuildList(-4, L"<OR", 8, layers.GetString(), RTDXF0,
                                         L"TEXT,MTEXT,ATTDEF,INSERT,VIEWPORT,ZEF_*", -4, L"OR>", 0));
        TPickEntSet found;
        found.SelectDrawing(filter.get());
        std::vector<AcDbObjectId> entities(found.begin(), found.end());
        std::ranges::sort(entities); // the order of the drawing
        return std::ranges::all_of(entities, [this](AcDbObjectId id) { return Open(id, true); });
    }

    // Those of the standard, and those that a rule names.
    CString AskedLayers() const {
        const CString& own = m_context.m_rules[CheckRule::OwnProperties].m_layers;
        std::vector<CString> patterns;
        for (const CheckedLayer& layer : m_context.m_layers.All())
            if (layer.m_standard != nullptr ||
                (!own.IsEmpty() && base::wildcard_match(ViewOf(layer.m_name), ViewOf(own), true)))
                patterns.push_back(ZefExport::GetLiteralPattern(layer.m_name));
        return JoinNames(patterns, L",");
    }

    bool LookInBlocks() {
        for (const AcDbObjectId id :
             RecordsOf(acdbHostApplicationServices()->workingDatabase()->blockTableId())) {
            const AcDbBlockTableRecordPointer block(id, AcDb::kForRead);
            if (block.openStatus() == Acad::eOk && IsLookedAt(*block.object()) && !LookIn(*block.object()))
                return false;
        }
        return true;
    }

    static bool IsLookedAt(const AcDbBlockTableRecord& block) {
        AcString name;
        return !block.isLayout() && !block.isFromExternalReference() && !block.isAnonymous() &&
               block.getName(name) == Acad::eOk && CString(name.kACharPtr()).Find(L'|') < 0;
    }

    bool LookIn(const AcDbBlockTableRecord& block) {
        for (const AcDbObjectId id : EntitiesOf(block))
            if (!Open(id, false))
                return false;
        return true;
    }

    // False when the user stopped it.
    bool Open(AcDbObjectId id, bool isInSpace) {
        if (++m_looks % looksBetweenQuestions == 0 && acedUsrBrk() != 0)
            return false;
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        if (entity.openStatus() != Acad::eOk)
            return true;
        LookAt(*entity.object(), isInSpace);
        const auto* const reference = AcDbBlockReference::cast(entity.object());
        const std::unique_ptr<AcDbObjectIterator> attributes(
            reference != nullptr ? reference->attributeIterator() : nullptr);
        for (; attributes != nullptr && !attributes->done(); attributes->step()) {
            const AcDbEntityPointer attribute(attributes->objectId(), AcDb::kForRead);
            if (attribute.openStatus() == Acad::eOk)
                LookAt(*attribute.object(), isInSpace);
        }
        return true;
    }

    void LookAt(const AcDbEntity& entity, bool isInSpace) const {
        const CheckedLayer& layer = m_context.m_layers.Find(entity.layerId());
        for (const auto& family : m_families)
            family->Look(entity, layer, isInSpace);
    }

    const CheckContext& m_context;
    std::span<const std::unique_ptr<CRuleFamily>> m_families;
    unsigned m_looks = 0;
};

} // namespace

CRuleFamily::~CRuleFamily() = default;

void CRuleFamily::Look(const AcDbEntity& /*entity*/, const CheckedLayer& /*layer*/, bool /*isInSpace*/) {
}

std::optional<CFindings> CheckDrawing(const CheckRules& rules) {
    CFindings findings;
    const CCheckedLayers layers;
    const CheckContext context{rules, layers, findings};
    const std::array families{MakeLayerRules(context),   MakePropertyRules(context), MakePipeRules(context),
                              MakeSegmentRules(context), MakeTextRules(context),     MakeMarkRules(context)};
    if (!Walk(context, families).Run())
        return std::nullopt;
    for (const auto& family : families)
        family->Finish();
    return findings;
}
