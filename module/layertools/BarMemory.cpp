#include "module/layertools/BarMemory.h"

#include "acdbads.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "module/layertools/DrawingRecords.h"

#include <algorithm>

namespace {

constexpr wchar_t statesKey[] = L"管道系统图层";
constexpr wchar_t togglesName[] = L"开关状态";

constexpr int nameCode = 1;
constexpr int numberCode = 90;
constexpr int entityCode = 330;

const wchar_t* GetHiddenKey(BarToggle toggle) {
    switch (toggle) {
    case kArchitectureEntities:
        return L"管道系统图层-建筑图元";
    case kDrainageEntities:
        return L"管道系统图层-给排水图元";
    default:
        return L"管道系统图层-其他图元";
    }
}

constexpr wchar_t hiddenByRowsKey[] = L"管道系统图层-系统图元";

bool IsHidden(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForRead);
    return entity.openStatus() == Acad::eOk && entity->visibility() == AcDb::kInvisible;
}

} // namespace

BarStates LoadBarStates() {
    BarStates states;
    const Chain chain = DrawingRecords::Read(statesKey);
    states.m_isStored = chain != nullptr;
    CString name;
    for (const resbuf* node = chain.get(); node != nullptr; node = node->rbnext) {
        if (node->restype == nameCode)
            name = node->resval.rstring;
        else if (node->restype == numberCode && name == togglesName)
            states.m_toggles = static_cast<unsigned>(node->resval.rlong);
        else if (node->restype == numberCode)
            states.m_rows.emplace_back(name, static_cast<unsigned>(node->resval.rlong));
    }
    return states;
}

unsigned BarStates::GetRow(const CString& name) const {
    const auto found = std::ranges::find(m_rows, name, &std::pair<CString, unsigned>::first);
    return found != m_rows.end() ? found->second : unsigned{kRowOn};
}

bool SaveBarStates(const BarStates& states) {
    CChainMaker pairs;
    for (const auto& [name, state] : states.m_rows) {
        pairs.Add(nameCode, name);
        pairs.Add(numberCode, static_cast<int>(state));
    }
    pairs.Add(nameCode, CString(togglesName));
    pairs.Add(numberCode, static_cast<int>(states.m_toggles));
    return DrawingRecords::Write(statesKey, *pairs.Get());
}

void NoteAllShown() {
    BarStates states = LoadBarStates();
    if (!states.m_isStored)
        return;
    states.m_toggles |= kAllShown;
    for (auto& [name, state] : states.m_rows)
        state |= kRowOn;
    SaveBarStates(states);
    for (const BarToggle toggle : {kArchitectureEntities, kDrainageEntities, kOtherEntities})
        CHiddenEntities(toggle).ForgetVisible();
    CHiddenEntities::OfRows().ForgetVisible();
}

CHiddenEntities::CHiddenEntities(BarToggle toggle) : CHiddenEntities(GetHiddenKey(toggle)) {
}

CHiddenEntities CHiddenEntities::OfRows() {
    return CHiddenEntities(hiddenByRowsKey);
}

CHiddenEntities::CHiddenEntities(const wchar_t* key) : m_key(key) {
    const Chain chain = DrawingRecords::Read(key);
    std::vector<AcDbObjectId>* entities = nullptr;
    for (const resbuf* node = chain.get(); node != nullptr; node = node->rbnext) {
        AcDbObjectId entity;
        if (node->restype == nameCode)
            entities = &m_byName[node->resval.rstring];
        else if (node->restype == entityCode && entities != nullptr &&
                 acdbGetObjectId(entity, node->resval.rlname) == Acad::eOk)
            entities->push_back(entity);
    }
    std::erase_if(m_byName, [](const auto& one) { return one.second.empty(); });
}

const std::vector<AcDbObjectId>& CHiddenEntities::Get(const CString& name) const {
    static const std::vector<AcDbObjectId> none;
    const auto found = m_byName.find(name);
    return found != m_byName.end() ? found->second : none;
}

void CHiddenEntities::Set(std::vector<AcDbObjectId> entities, const CString& name) {
    if (entities.empty())
        m_byName.erase(name);
    else
        m_byName[name] = std::move(entities);
}

void CHiddenEntities::ForgetVisible() {
    std::size_t visible = 0;
    for (auto& [name, entities] : m_byName)
        visible += std::erase_if(entities, [](AcDbObjectId entity) { return !IsHidden(entity); });
    std::erase_if(m_byName, [](const auto& one) { return one.second.empty(); });
    if (visible != 0)
        Save();
}

bool CHiddenEntities::Save() const {
    CChainMaker chain;
    for (const auto& [name, entities] : m_byName) {
        chain.Add(nameCode, name);
        for (const AcDbObjectId entity : entities)
            chain.Add(entityCode, entity);
    }
    DrawingRecords::Remove(m_key);
    return chain.Get() == nullptr || DrawingRecords::Write(m_key, *chain.Get());
}
