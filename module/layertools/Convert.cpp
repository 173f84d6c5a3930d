// The command that moves what is on one layer to another.
#include "acutads.h"
#include "dbobjptr.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerToolBar.h"
#include "module/layertools/StayedEntities.h"
#include "siblings/zef_kernal/TPickEntSet.h"

void CLayerToolBar::ConvertLayer() {
    const CDocumentLock lock;
    TPickEntSet source;
    TPickEntSet target;
    if (source.SelectEntity(L"\n请选择要转换图层(源)上的任意图元:<退出>") != RTNORM ||
        target.SelectEntity(L"\n请选择要转换图层(目标)上的任意图元:<退出>") != RTNORM)
        return;
    const CString from = source.GetLayerName(0);
    const CString to = target.GetLayerName(0);
    if (from.CompareNoCase(to) == 0) {
        acutPrintf(L"\n图层相同，不需要转换！\n");
        return;
    }
    CStayedEntities stayed;
    TPickEntSet converted;
    converted.SelectLayer(from);
    for (const AcDbObjectId id : converted) {
        const AcDbEntityPointer entity(id, AcDb::kForWrite);
        if (entity.openStatus() != Acad::eOk)
            stayed.Add(entity.openStatus());
        else if (entity->setLayer(to, true) != Acad::eOk)
            stayed.AddRefused();
    }
    acutPrintf(L"\n%s层 已经成功转换到 %s层了！", from.GetString(), to.GetString());
    stayed.Tell(L"没有转换");
}
