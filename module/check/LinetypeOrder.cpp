#include "module/check/LinetypeOrder.h"
#include "module/layertools/DrawingWalk.h"

#include "aced.h"
#include "acedads.h"
#include "acutmem.h"
#include "dbapserv.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbpl.h"
#include "module/layertools/LayerStates.h"
#include "module/standard/LinetypeLibrary.h"
#include "module/standard/Names.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

namespace {

// How long a pattern is on paper that the eye takes for one, in millimetres.
constexpr double shortest = 2.0;
constexpr double longest = 100.0;
constexpr double usual = 20.0;
constexpr double millimetresInInch = 25.4; // patterns of files in inches

typedef AcDbObjectPointer<AcDbLinetypeTableRecord> LinetypePointer;

AcDbDatabase& Drawing() {
    return *acdbHostApplicationServices()->workingDatabase();
}

// What a linetype draws, as a text that is the same for those that look the same.
std::wstring LookOf(const AcDbLinetypeTableRecord& linetype) {
    CString look;
    for (int i = 0; i < linetype.numDashes(); ++i) {
        look.AppendFormat(L"|%.6g", linetype.dashLengthAt(i));
        ACHAR* text = nullptr;
        const bool hasText = linetype.textAt(i, text) == Acad::eOk;
        if (!hasText && linetype.shapeNumberAt(i) == 0)
            continue;
        const AcGeVector2d offset = linetype.shapeOffsetAt(i);
        look.AppendFormat(
            L"[%s,%d,%s,%.6g,%.6g,%.6g,%.6g,%d]", hasText ? text : L"", linetype.shapeNumberAt(i),
            std::to_wstring(linetype.shapeStyleAt(i).asOldId()).c_str(), linetype.shapeScaleAt(i),
            linetype.shapeRotationAt(i), offset.x, offset.y, linetype.shapeIsUcsOrientedAt(i) ? 1 : 0);
        acutDelString(text);
    }
    return look.GetString();
}

std::vector<AcDbObjectId> AllLinetypes() {
    std::vector<AcDbObjectId> ids;
    for (const AcDbObjectId id : RecordsOf(Drawing().linetypeTableId()))
        ids.push_back(id);
    return ids;
}

AcDbObjectIdArray UnusedOf(const std::vector<AcDbObjectId>& linetypes) {
    AcDbObjectIdArray unused;
    for (const AcDbObjectId id : linetypes)
        unused.append(id);
    Drawing().purge(unused);
    return unused;
}

double ScaleOfDrawing() {
    resbuf value{};
    return acedGetVar(L"LTSCALE", &value) == RTNORM && value.restype == RTREAL ? value.resval.rreal : 1.0;
}

// Two figures: what a person would have typed.
double Rounded(double value) {
    const double unit = std::pow(10.0, std::floor(std::log10(value)) - 1);
    return std::round(value / unit) * unit;
}

bool HasContinuedPattern(const AcDbEntity& entity) {
    if (const auto* const light = AcDbPolyline::cast(&entity))
        return light->hasPlinegen();
    const auto* const old = AcDb2dPolyline::cast(&entity);
    return old == nullptr || old->isLinetypeGenerationOn();
}

template<class Take>
Acad::ErrorStatus Change(AcDbObjectId id, Take take) {
    const AcDbEntityPointer entity(id, AcDb::kForWrite);
    return entity.openStatus() == Acad::eOk ? take(*entity.object()) : entity.openStatus();
}

} // namespace

CLinetypeOrder::CLinetypeOrder(double plotScale) : m_scale(ScaleOfDrawing()), m_newScale(m_scale) {
    ReadPatterns();
    for (const AcDbObjectId id : GetAllLayerIds()) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForRead);
        if (layer.openStatus() != Acad::eOk)
            continue;
        const AcDbObjectId linetype = layer->linetypeObjectId();
        m_ofLayers.emplace(id, linetype);
        if (const auto pattern = m_patterns.find(linetype);
            pattern != m_patterns.end() && !pattern->second.m_sameAs.isNull() && !layer->isDependent())
            m_replaced.emplace_back(id, pattern->second.m_sameAs);
    }
    Walk();
    if (m_isWhole)
        ChooseScale(plotScale);
    m_unused = static_cast<std::size_t>(UnusedOf(AllLinetypes()).length());
}

void CLinetypeOrder::ReadPatterns() {
    std::vector<CString> names;
    GetLinetypeNames(names);
    const std::set<CString, NoCaseOrder> known(names.begin(), names.end());
    std::map<std::wstring, std::vector<AcDbObjectId>> byLook;
    for (const AcDbObjectId id : AllLinetypes()) {
        const LinetypePointer linetype(id, AcDb::kForRead);
        AcString name;
        if (linetype.openStatus() != Acad::eOk || linetype->isDependent() ||
            linetype->getName(name) != Acad::eOk)
            continue;
        Pattern pattern{name.kACharPtr(), linetype->numDashes() == 0 ? 0.0 : linetype->patternLength(), {}};
        const bool isContinuous = IsSameName(pattern.m_name, CString(L"Continuous"));
        if (IsSameName(pattern.m_name, CString(L"ByLayer")))
            m_byLayer = id;
        if (isContinuous)
            m_continuous = id;
        if (id == m_byLayer || IsSameName(pattern.m_name, CString(L"ByBlock")))
            continue;
        auto& same = byLook[LookOf(*linetype.object())];
        // The one that stays stands first: Continuous, else one of the module's own.
        if (isContinuous || (!same.empty() && known.contains(pattern.m_name) &&
                             !known.contains(m_patterns[same[0]].m_name) && same[0] != m_continuous))
            same.insert(same.begin(), id);
        else
            same.push_back(id);
        m_patterns.emplace(id, std::move(pattern));
    }
    for (const auto& [look, same] : byLook)
        for (std::size_t i = 1; i < same.size(); ++i) {
            m_patterns[same[i]].m_sameAs = same[0];
            ++m_united;
        }
}

void CLinetypeOrder::Walk() {
    constexpr unsigned looksBetweenQuestions = 4096;
    unsigned looks = 0;
    for (const AcDbObjectId id : RecordsOf(Drawing().blockTableId())) {
        const AcDbBlockTableRecordPointer block(id, AcDb::kForRead);
        AcString name;
        if (block.openStatus() != Acad::eOk || block->isFromExternalReference())
            continue;
        block->getName(name);
        const bool isModel = CString(name.kACharPtr()).CompareNoCase(ACDB_MODEL_SPACE) == 0;
        for (const AcDbObjectId entityId : EntitiesOf(*block.object())) {
            if (++looks % looksBetweenQuestions == 0 && acedUsrBrk() != 0) {
                m_isWhole = false;
                return;
            }
            const AcDbEntityPointer entity(entityId, AcDb::kForRead);
            if (entity.openStatus() == Acad::eOk)
                LookAt(*entity.object(), isModel);
        }
    }
}

void CLinetypeOrder::LookAt(const AcDbEntity& entity, bool isInModel) {
    AcDbObjectId linetype = entity.linetypeId();
    if (linetype.isNull() || linetype == m_byLayer) {
        const auto layer = m_ofLayers.find(entity.layerId());
        linetype = layer != m_ofLayers.end() ? layer->second : AcDbObjectId();
    } else if (const auto own = m_patterns.find(linetype);
               own != m_patterns.end() && !own->second.m_sameAs.isNull()) {
        m_replaced.emplace_back(entity.objectId(), own->second.m_sameAs);
    }
    const auto pattern = m_patterns.find(linetype);
    if (pattern == m_patterns.end() || pattern->second.m_length <= 0.0)
        return;
    if (!HasContinuedPattern(entity))
        m_polylines.push_back(entity.objectId());
    if (isInModel)
        m_scaled.push_back({entity.objectId(), pattern->second.m_length, entity.linetypeScale()});
}

bool CLinetypeOrder::IsReadable(double length, double plotScale) const {
    return length * m_newScale / plotScale >= shortest && length * m_newScale / plotScale <= longest;
}

// The drawing's scale stays when it suits most; else it is the plot scale, for patterns in inches times what
// these have of millimetres.
void CLinetypeOrder::ChooseScale(double plotScale) {
    const auto suits = [&](double scale) {
        m_newScale = scale;
        const auto readable = std::ranges::count_if(
            m_scaled, [&](const Scaled& one) { return IsReadable(one.m_length, plotScale); });
        return static_cast<std::size_t>(readable) * 2 >= m_scaled.size();
    };
    if (!suits(m_scale) && !suits(plotScale) && !suits(plotScale * millimetresInInch))
        m_newScale = m_scale;
    for (const Scaled& one : m_scaled) {
        if (IsReadable(one.m_length * one.m_scale, plotScale))
            continue;
        const double wanted = IsReadable(one.m_length, plotScale)
                                  ? 1.0
                                  : Rounded(usual * plotScale / (one.m_length * m_newScale));
        if (wanted != one.m_scale)
            m_rescaled.emplace_back(one.m_entity, wanted);
    }
}

std::size_t CLinetypeOrder::Count(Job job) const {
    switch (job) {
    case Unite:
        return m_united;
    case Rescale:
        return m_rescaled.size() + (m_newScale != m_scale ? 1 : 0);
    case Continue:
        return m_polylines.size();
    default:
        return m_unused;
    }
}

std::map<CLinetypeOrder::Job, std::size_t> CLinetypeOrder::Run(const std::set<Job>& jobs) {
    std::map<Job, std::size_t> done;
    if (jobs.contains(Unite))
        done[Unite] = UniteAll();
    if (jobs.contains(Rescale))
        done[Rescale] = RescaleAll();
    if (jobs.contains(Continue))
        done[Continue] = ContinueAll();
    if (jobs.contains(Purge))
        done[Purge] = EraseUnused(AllLinetypes());
    return done;
}

// A linetype that something else names still stays.
std::size_t CLinetypeOrder::UniteAll() {
    for (const auto& [id, linetype] : m_replaced) {
        const AcDbObjectPointer<AcDbObject> object(id, AcDb::kForWrite);
        Acad::ErrorStatus status = object.openStatus();
        if (auto* const layer = AcDbLayerTableRecord::cast(object.object()))
            status = layer->setLinetypeObjectId(linetype);
        else if (auto* const entity = AcDbEntity::cast(object.object()))
            status = entity->setLinetype(linetype, false);
        if (status != Acad::eOk)
            m_stayed.Add(status);
    }
    std::vector<AcDbObjectId> replaced;
    for (const auto& [id, pattern] : m_patterns)
        if (!pattern.m_sameAs.isNull())
            replaced.push_back(id);
    return EraseUnused(replaced);
}

std::size_t CLinetypeOrder::RescaleAll() {
    std::size_t done = 0;
    if (m_newScale != m_scale) {
        resbuf value{};
        value.restype = RTREAL;
        value.resval.rreal = m_newScale;
        done += acedSetVar(L"LTSCALE", &value) == RTNORM ? 1 : 0;
    }
    for (const auto& rescaled : m_rescaled) {
        const Acad::ErrorStatus status = Change(rescaled.first, [&rescaled](AcDbEntity& entity) {
            return entity.setLinetypeScale(rescaled.second, false);
        });
        if (status == Acad::eOk)
            ++done;
        else
            m_stayed.Add(status);
    }
    return done;
}

std::size_t CLinetypeOrder::ContinueAll() {
    std::size_t done = 0;
    for (const AcDbObjectId id : m_polylines) {
        const Acad::ErrorStatus status = Change(id, [](AcDbEntity& entity) {
            if (auto* const light = AcDbPolyline::cast(&entity)) {
                light->setPlinegen(true);
                return Acad::eOk;
            }
            auto* const old = AcDb2dPolyline::cast(&entity);
            return old != nullptr ? old->setLinetypeGenerationOn() : Acad::eNotThatKindOfClass;
        });
        if (status == Acad::eOk)
            ++done;
        else
            m_stayed.Add(status);
    }
    return done;
}

std::size_t CLinetypeOrder::EraseUnused(const std::vector<AcDbObjectId>& linetypes) {
    std::size_t gone = 0;
    for (const AcDbObjectId id : UnusedOf(linetypes)) {
        const LinetypePointer linetype(id, AcDb::kForWrite);
        gone += linetype.openStatus() == Acad::eOk && linetype->erase() == Acad::eOk ? 1 : 0;
    }
    return gone;
}
