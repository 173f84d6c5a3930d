#include "clients/MarkArchitecture.h"

#include "acedads.h"
#include "acutads.h"
#include "module/layertools/LayerFamilies.h"
#include "module/layertools/Marks.h"
#include "siblings/zef_kernal/TPickEntSet.h"

namespace {

// What is architecture's already and what is nobody's.
TEntitySet AllButDrainage() {
    const CLayerFamilies families;
    TEntitySet all;
    for (const LayerFamily family : {LayerFamily::Architecture, LayerFamily::Other})
        for (const AcDbObjectId entity : families.GetEntities(family))
            all.Add(entity);
    return all;
}

} // namespace

void MarkArchitecture() {
    TPickEntSet picked;
    acedInitGet(0, L"A");
    const int answer = picked.SelectEntities(L"\n请选择要标识为建筑的图元[全部非给排水图元A]<退出>");
    if (answer != RTNORM && answer != RTKWORD)
        return;
    const TEntitySet chosen = answer == RTKWORD ? AllButDrainage() : picked;
    int marked = 0;
    int locked = 0;
    for (const AcDbObjectId entity : chosen) {
        const Acad::ErrorStatus status = MarkTool::SetMark(entity, MarkTool::kArchitecture);
        marked += status == Acad::eOk ? 1 : 0;
        locked += status == Acad::eOnLockedLayer ? 1 : 0;
    }
    acutPrintf(L"\n共选中实体%d个,添加建筑标识%d个！\n", chosen.GetCount(), marked);
    if (locked != 0)
        acutPrintf(L"\n%d 个图元在锁定的图层上，没有标识。", locked);
}
