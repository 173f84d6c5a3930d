#include "module/layertools/Marks.h"

#include "acdbads.h"
#include "dbmain.h"
#include "dbobjptr.h"
#include "module/layertools/DrawingRecords.h"
#include "siblings/zef_kernal/TPickEntSet.h"

namespace {

constexpr int applicationCode = 1001;
constexpr int textCode = 1000;
constexpr int extendedDataCode = -3;

typedef AcDbObjectPointer<AcDbObject> ObjectPointer;

// Puts the data in the place of what the application keeps at an object.
Acad::ErrorStatus Write(AcDbObject& object, const Chain& data) {
    if (!object.isWriteEnabled())
        if (const Acad::ErrorStatus status = object.upgradeOpen(); status != Acad::eOk)
            return status;
    return data != nullptr ? object.setXData(data.get()) : Acad::eOutOfMemory;
}

} // namespace

CString MarkTool::GetMark(const AcDbObject& object) {
    const Chain data(object.xData(kApplication));
    for (const resbuf* value = data.get(); value != nullptr; value = value->rbnext)
        if (value->restype == textCode)
            return value->resval.rstring;
    return {};
}

CString MarkTool::GetMark(AcDbObjectId object) {
    const ObjectPointer opened(object, AcDb::kForRead);
    return opened.openStatus() == Acad::eOk ? GetMark(*opened.object()) : CString();
}

Acad::ErrorStatus MarkTool::SetMark(AcDbObjectId object, LPCTSTR mark) {
    const ObjectPointer opened(object, AcDb::kForRead);
    if (opened.openStatus() != Acad::eOk || GetMark(*opened.object()) == mark)
        return opened.openStatus();
    acdbRegApp(kApplication); // RTERROR when the drawing knows it already
    return Write(*opened.object(), Chain(acutBuildList(applicationCode, kApplication, textCode, mark, 0)));
}

Acad::ErrorStatus MarkTool::ClearMark(AcDbObject& object) {
    if (Chain(object.xData(kApplication)) == nullptr)
        return Acad::eOk;
    return Write(object, Chain(acutBuildList(applicationCode, kApplication, 0)));
}

Acad::ErrorStatus MarkTool::ClearMark(AcDbObjectId object) {
    const ObjectPointer opened(object, AcDb::kForRead);
    return opened.openStatus() == Acad::eOk ? ClearMark(*opened.object()) : opened.openStatus();
}

std::vector<MarkedEntity> MarkTool::GetMarkedEntities() {
    std::vector<MarkedEntity> marked;
    const Chain filter(acutBuildList(extendedDataCode, applicationCode, kApplication, 0));
    TPickEntSet found;
    found.SelectDrawing(filter.get());
    for (const AcDbObjectId entity : found)
        if (CString mark = GetMark(entity); !mark.IsEmpty())
            marked.push_back({entity, std::move(mark)});
    return marked;
}
