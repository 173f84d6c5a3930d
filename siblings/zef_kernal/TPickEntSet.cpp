#include "siblings/zef_kernal/TPickEntSet.h"

#include "acdbads.h"
#include "acedads.h"
#include "acutmem.h"
#include "dbobjptr.h"
#include "geassign.h"
#include "siblings/zef_kernal/ZefExport.h"

namespace {

// The entities of a selection set, in its order; the set is freed.
TEntitySet TakeEntities(const ads_name set) {
    std::vector<AcDbObjectId> entities;
    Adesk::Int32 length = 0;
    acedSSLength(set, &length);
    entities.reserve(static_cast<std::size_t>(length));
    for (Adesk::Int32 i = 0; i < length; ++i) {
        ads_name name;
        AcDbObjectId entity;
        if (acedSSName(set, i, name) == RTNORM && acdbGetObjectId(entity, name) == Acad::eOk)
            entities.push_back(entity);
    }
    acedSSFree(set);
    return TEntitySet(std::move(entities));
}

} // namespace

int TPickEntSet::SelectEntity(LPCTSTR prompt) {
    TEntitySet& entities = *this;
    entities = {};
    ads_name name;
    const int answer = acedEntSel(prompt, name, asDblArray(m_point));
    AcDbObjectId entity;
    if (answer == RTNORM && acdbGetObjectId(entity, name) == Acad::eOk)
        Add(entity);
    return answer;
}

int TPickEntSet::SelectEntities(LPCTSTR prompt) {
    TEntitySet& entities = *this;
    entities = {};
    const wchar_t* const prompts[] = {prompt, prompt}; // to add and to remove
    ads_name set;
    const int answer = acedSSGet(L"_:$", prompts, nullptr, nullptr, set);
    if (answer == RTNORM)
        entities = TakeEntities(set);
    return answer;
}

bool TPickEntSet::SelectPickedFirst() {
    return Select(L"_I", nullptr);
}

bool TPickEntSet::SelectDrawing(const resbuf* filter) {
    return Select(L"_X", filter);
}

bool TPickEntSet::Select(LPCTSTR mode, const resbuf* filter) {
    TEntitySet& entities = *this;
    entities = {};
    ads_name set;
    if (acedSSGet(mode, nullptr, nullptr, filter, set) == RTNORM)
        entities = TakeEntities(set);
    return GetCount() != 0;
}

bool TPickEntSet::SelectLayer(LPCTSTR layerName) {
    resbuf* const filter =
        acutBuildList(RTDXF0, L"*", 8, ZefExport::GetLiteralPattern(layerName).GetString(), 0);
    const bool found = SelectDrawing(filter);
    acutRelRb(filter);
    return found;
}

CString TPickEntSet::GetLayerName(int index) const {
    const AcDbEntityPointer entity(GetAt(index), AcDb::kForRead);
    AcString name;
    if (entity.openStatus() == Acad::eOk)
        entity->layer(name);
    return name.kACharPtr();
}

CString TPickEntSet::GetTypeName(int index) const {
    const AcRxClass* const type = GetAt(index).objectClass();
    return type != nullptr ? type->dxfName() : L"";
}

std::vector<Acad::ErrorStatus> TPickEntSet::Erase() const {
    std::vector<Acad::ErrorStatus> reasons;
    for (const AcDbObjectId id : *this) {
        const AcDbEntityPointer entity(id, AcDb::kForWrite);
        const Acad::ErrorStatus status =
            entity.openStatus() == Acad::eOk ? entity->erase() : entity.openStatus();
        if (status != Acad::eOk)
            reasons.push_back(status);
    }
    return reasons;
}
