// The command that moves what is on one layer to another.
#include "acutads.h"
#include "dbobjptr.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerToolBar.h"
#include "module/layertools/PickLayers.h"

void CLayerToolBar::ConvertLayer() {
    const CDocumentLock lock;
    CString source;
    CString target;
    if (!PickLayer(L"\n请选择要转换图层(源)上的任意图元:<退出>", source) ||
        !PickLayer(L"\n请选择要转换图层(目标)上的任意图元:<退出>", target))
        return;
    if (source.CompareNoCase(target) == 0) {
        acutPrintf(L"\n图层相同，不需要转换！\n");
        return;
    }
    for (const AcDbObjectId id : GetEntitiesOfLayer(source)) {
        const AcDbEntityPointer entity(id, AcDb::kForWrite);
        if (entity.openStatus() == Acad::eOk)
            entity->setLayer(target, true);
    }
    acutPrintf(L"\n%s层 已经成功转换到 %s层了！", source.GetString(), target.GetString());
}
