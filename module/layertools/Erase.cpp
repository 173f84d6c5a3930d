// The command that erases what is on layers.
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerNames.h"
#include "module/layertools/LayerToolBar.h"
#include "module/layertools/StayedEntities.h"

void CLayerToolBar::EraseSelLayer() {
    const CDocumentLock lock;
    TPickEntSet picked;
    if (picked.SelectEntities(L"\n请选择删除层上的图元 <退出>:") != RTNORM)
        return;
    CStayedEntities stayed;
    for (const CString& layer : CLayerNames(picked)) {
        TPickEntSet erased;
        if (erased.SelectLayer(layer))
            for (const Acad::ErrorStatus reason : erased.Erase())
                stayed.Add(reason);
    }
    stayed.Tell(L"没有删除");
    RegenerateDisplay();
}
