#include "module/layertools/ExternalBlock.h"
#include "module/layertools/DrawingWalk.h"

#include "acdbads.h"
#include "acedads.h"
#include "acutmem.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "geassign.h"

#include <memory>

namespace {

typedef AcDbObjectPointer<AcDbBlockReference> BlockReferencePointer;
typedef AcDbObjectPointer<AcDbBlockTableRecord> BlockPointer;

// Seen from above, the box enlarged.
bool IsAround(const AcDbExtents& box, const AcGePoint3d& point) {
    constexpr double margin = 50.0;
    const auto isWithin = [](double least, double value, double most) {
        return least - margin < value && value < most + margin;
    };
    return isWithin(box.minPoint().x, point.x, box.maxPoint().x) &&
           isWithin(box.minPoint().y, point.y, box.maxPoint().y);
}

} // namespace

// The block transform does not say everywhere where the base point lies.
AcGeMatrix3d KolTool::GetPlacing(const AcDbBlockReference& reference,
                                 const AcDbBlockTableRecord& definition) {
    const AcGeMatrix3d transform = reference.blockTransform();
    return AcGeMatrix3d::translation(reference.position() - transform * definition.origin()) * transform;
}

bool KolTool::IsExternalBlock(AcDbObjectId entity) {
    const BlockReferencePointer reference(entity, AcDb::kForRead);
    if (reference.openStatus() != Acad::eOk)
        return false;
    const BlockPointer definition(reference->blockTableRecord(), AcDb::kForRead);
    return definition.openStatus() == Acad::eOk && definition->isFromExternalReference();
}

int KolTool::SelectEntityFromExternalBlock(LPCTSTR prompt, AcDbObjectId& entity, AcGePoint3d& pickPoint,
                                           AcGeMatrix3d& toWorld, bool pointInWorld) {
    ads_name name;
    AcGePoint3d point;
    ads_matrix transform;
    const int answer = acedNEntSelP(prompt, name, asDblArray(point), 0, transform, nullptr);
    if (answer != RTNORM)
        return answer;
    acdbGetObjectId(entity, name);
    for (unsigned row = 0; row < 4; ++row)
        for (unsigned column = 0; column < 4; ++column)
            toWorld(row, column) = transform[row][column];
    pickPoint = point;
    if (!pointInWorld)
        return answer;
    resbuf user{};
    user.restype = RTSHORT;
    user.resval.rint = 1;
    resbuf world = user;
    world.resval.rint = 0;
    acedTrans(asDblArray(point), &user, &world, 0, asDblArray(pickPoint));
    return answer;
}

CString KolTool::GetLayerOfInsertion(AcDbObjectId externalReference, AcDbObjectId inserted,
                                     const AcGePoint3d& point) {
    CString layer;
    const BlockReferencePointer external(externalReference, AcDb::kForRead);
    if (external.openStatus() != Acad::eOk)
        return layer;
    const BlockPointer definition(external->blockTableRecord(), AcDb::kForRead);
    if (definition.openStatus() != Acad::eOk)
        return layer;
    const AcGeMatrix3d toWorld = GetPlacing(*external.object(), *definition.object());
    for (const AcDbObjectId id : EntitiesOf(*definition.object())) {
        const BlockReferencePointer reference(id, AcDb::kForRead);
        if (reference.openStatus() != Acad::eOk || reference->blockTableRecord() != inserted)
            continue;
        AcString name;
        reference->layer(name);
        layer = name.kACharPtr();
        AcDbExtents box;
        if (reference->getGeomExtents(box) != Acad::eOk)
            continue;
        box.transformBy(toWorld);
        if (IsAround(box, point))
            break;
    }
    return layer;
}
