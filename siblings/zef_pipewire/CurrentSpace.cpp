#include "siblings/zef_pipewire/CurrentSpace.h"

#include "acdbads.h"
#include "acedads.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "geassign.h"

namespace {

// As acedTrans numbers them.
constexpr short worldSystem = 0;
constexpr short userSystem = 1;

AcGePoint3d Transformed(const AcGePoint3d& point, short from, short to) {
    resbuf source{};
    source.restype = RTSHORT;
    source.resval.rint = from;
    resbuf target = source;
    target.resval.rint = to;
    AcGePoint3d result = point;
    acedTrans(asDblArray(point), &source, &target, 0, asDblArray(result));
    return result;
}

} // namespace

std::vector<AcDbObjectId> EntitiesOfDrawing(LPCTSTR types) {
    std::vector<AcDbObjectId> found;
    resbuf* const filter = acutBuildList(RTDXF0, types, RTNONE);
    ads_name set;
    if (acedSSGet(L"_X", nullptr, nullptr, filter, set) == RTNORM) {
        Adesk::Int32 length = 0;
        acedSSLength(set, &length);
        for (Adesk::Int32 i = 0; i < length; ++i) {
            ads_name name;
            AcDbObjectId id;
            if (acedSSName(set, i, name) == RTNORM && acdbGetObjectId(id, name) == Acad::eOk)
                found.push_back(id);
        }
        acedSSFree(set);
    }
    acutRelRb(filter);
    return found;
}

std::vector<AcDbObjectId> EntitiesOfCurrentSpace(LPCTSTR types) {
    const AcDbObjectId space = acdbHostApplicationServices()->workingDatabase()->currentSpaceId();
    std::vector<AcDbObjectId> found = EntitiesOfDrawing(types);
    std::erase_if(found, [space](AcDbObjectId id) {
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        return entity.openStatus() != Acad::eOk || entity->blockId() != space;
    });
    return found;
}

AcDbObjectId AppendToCurrentSpace(std::unique_ptr<AcDbEntity> entity) {
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    const AcDbObjectPointer<AcDbBlockTableRecord> space(database->currentSpaceId(), AcDb::kForWrite);
    AcDbObjectId id;
    if (space.openStatus() == Acad::eOk && space->appendAcDbEntity(id, entity.get()) == Acad::eOk)
        entity.release()->close();
    return id;
}

CString WhyNotOnLayer(LPCTSTR layerName) {
    if (*layerName == 0)
        return {};
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    const AcDbLayerTableRecordPointer layer(layerName, database, AcDb::kForRead);
    if (layer.openStatus() != Acad::eOk)
        return L"不能创建";
    if (layer->isFrozen())
        return L"已冻结";
    if (layer->isOff())
        return L"已关闭";
    return layer->isLocked() ? L"已锁定" : L"";
}

AcGePoint3d ToWorld(const AcGePoint3d& user) {
    return Transformed(user, userSystem, worldSystem);
}

AcGePoint3d ToUser(const AcGePoint3d& world) {
    return Transformed(world, worldSystem, userSystem);
}
