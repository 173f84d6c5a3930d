#include "module/layertools/PickLayers.h"

#include "acdbads.h"
#include "acedads.h"
#include "acutmem.h"
#include "base/case_fold.h"
#include "dbobjptr.h"

namespace {

// The entities of a selection set, in its order; the set is freed.
std::vector<AcDbObjectId> TakeEntities(const ads_name set) {
    std::vector<AcDbObjectId> entities;
    Adesk::Int32 length = 0;
    acedSSLength(set, &length);
    for (Adesk::Int32 i = 0; i < length; ++i) {
        ads_name name;
        AcDbObjectId entity;
        if (acedSSName(set, i, name) == RTNORM && acdbGetObjectId(entity, name) == Acad::eOk)
            entities.push_back(entity);
    }
    acedSSFree(set);
    return entities;
}

bool GetLayer(AcDbObjectId id, CString& layer) {
    const AcDbEntityPointer entity(id, AcDb::kForRead);
    AcString name;
    if (entity.openStatus() != Acad::eOk || entity->layer(name) != Acad::eOk)
        return false;
    layer = name.kACharPtr();
    return true;
}

// Why the last call of the C interface failed: 52 for Enter.
int LastError() {
    resbuf value = {};
    return acedGetVar(L"ERRNO", &value) == RTNORM && value.restype == RTSHORT ? value.resval.rint : 0;
}

// A pattern that only this name matches.
CString Literally(const CString& name) {
    CString pattern;
    for (int i = 0; i < name.GetLength(); ++i) {
        if (CString(L"#@.*?~[],-`").Find(name[i]) >= 0)
            pattern += L'`';
        pattern += name[i];
    }
    return pattern;
}

} // namespace

void CLayerNames::Add(const CString& name) {
    if (m_folded.insert(base::folded(name.GetString())).second)
        m_names.push_back(name);
}

bool CLayerNames::Holds(const CString& name) const {
    return m_folded.contains(base::folded(name.GetString()));
}

PickEnd PickLayers(const wchar_t* prompt, CLayerNames& layers) {
    constexpr int nullResponse = 52;
    const wchar_t* const prompts[] = {prompt, prompt}; // to add and to remove
    layers = {};
    ads_name set;
    const int answer = acedSSGet(L"_:$", prompts, nullptr, nullptr, set);
    if (answer == RTERROR && LastError() == nullResponse)
        return PickEnd::Enter;
    if (answer != RTNORM)
        return PickEnd::Cancelled;
    for (const AcDbObjectId entity : TakeEntities(set)) {
        CString layer;
        if (GetLayer(entity, layer))
            layers.Add(layer);
    }
    return PickEnd::Picked;
}

bool PickLayer(const wchar_t* prompt, CString& layer) {
    ads_name name;
    ads_point point;
    AcDbObjectId entity;
    return acedEntSel(prompt, name, point) == RTNORM && acdbGetObjectId(entity, name) == Acad::eOk &&
           GetLayer(entity, layer);
}

std::vector<AcDbObjectId> GetEntitiesOfLayer(const CString& layer) {
    resbuf* const filter = acutBuildList(RTDXF0, L"*", 8, Literally(layer).GetString(), 0);
    ads_name set;
    const int answer = acedSSGet(L"_X", nullptr, nullptr, filter, set);
    acutRelRb(filter);
    return answer == RTNORM ? TakeEntities(set) : std::vector<AcDbObjectId>();
}
