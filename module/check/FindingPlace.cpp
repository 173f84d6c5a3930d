#include "module/check/FindingPlace.h"

#include "dbents.h"
#include "dbmtext.h"
#include "dbobjptr.h"

namespace {

bool PointOf(const AcDbEntity& entity, AcGePoint3d& point) {
    if (const auto* const text = AcDbText::cast(&entity)) {
        point = text->position();
        return true;
    }
    if (const auto* const paragraph = AcDbMText::cast(&entity)) {
        point = paragraph->location();
        return true;
    }
    if (const auto* const reference = AcDbBlockReference::cast(&entity)) {
        point = reference->position();
        return true;
    }
    if (const auto* const curve = AcDbCurve::cast(&entity); curve != nullptr)
        if (curve->getStartPoint(point) == Acad::eOk)
            return true;
    AcDbExtents extents;
    if (entity.getGeomExtents(extents) != Acad::eOk)
        return false;
    point = extents.minPoint() + (extents.maxPoint() - extents.minPoint()) / 2;
    return true;
}

CString NameOf(const AcDbSymbolTableRecord& record) {
    AcString name;
    record.getName(name);
    return name.kACharPtr();
}

} // namespace

CString GetHandleText(AcDbObjectId object) {
    ACHAR text[AcDbHandle::kStrSiz] = {};
    object.handle().getIntoAsciiBuffer(text);
    return text;
}

FindingPlace GetPlace(const Finding& finding) {
    FindingPlace place;
    place.m_handle = GetHandleText(finding.m_object);
    const AcDbObjectPointer<AcDbObject> object(finding.m_object, AcDb::kForRead);
    if (object.openStatus() != Acad::eOk)
        return place;
    place.m_type = object->isA()->dxfName();
    if (const auto* const record = AcDbSymbolTableRecord::cast(object.object())) {
        place.m_layer = NameOf(*record);
        place.m_type = AcDbLayerTableRecord::cast(record) != nullptr ? L"LAYER" : L"STYLE";
    }
    const auto* const entity = AcDbEntity::cast(object.object());
    if (entity == nullptr)
        return place;
    AcString layer;
    entity->layer(layer);
    place.m_layer = layer.kACharPtr();
    const AcDbBlockTableRecordPointer block(entity->blockId(), AcDb::kForRead);
    if (block.openStatus() == Acad::eOk)
        place.m_block = NameOf(*block.object());
    if (place.m_block.CompareNoCase(ACDB_MODEL_SPACE) == 0)
        place.m_block.Empty();
    place.m_point = finding.m_place;
    place.m_hasPoint = finding.m_hasPlace || PointOf(*entity, place.m_point);
    return place;
}

CString GetPlaceText(const FindingPlace& place) {
    CString text = place.m_handle;
    if (place.m_hasPoint)
        text.AppendFormat(L" (%.0f,%.0f)", place.m_point.x, place.m_point.y);
    if (!place.m_block.IsEmpty())
        text += L" " + place.m_block;
    return text;
}
