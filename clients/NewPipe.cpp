#include "clients/NewPipe.h"

#include "acedads.h"
#include "module/standard/PipeSystemCreation.h"
#include "module/standard/PipeSystemUpdates.h"
#include "siblings/zef_pipewire/CurrentSpace.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"

namespace {

// What the standard says about pipes of the system.
void ApplyStandard(TDbPipe& pipe, const TPipeKind& kind) {
    using namespace PipeSystemTool;
    pipe.ChangeValues().m_dn = kind.m_dn;
    SetPipeSystemName(&pipe, kind.m_system);
    UpdateMaterialLineWeight(&pipe, true, true, kIndoorMaterial);
    UpdatePipeInfo(&pipe);
    UpdatePipeLabel(&pipe);
    UpdateVPipeRadius(&pipe);
    SetPipeLayer(&pipe, kind.m_system);
    pipe.SetPlotScale(DocGetPScale());
}

} // namespace

AcDbObjectId DrawPipe(CJoints& joints, CCrossings* crossings, const TPipeKind& kind, const AcGePoint3d& start,
                      const AcGePoint3d& end) {
    auto pipe = std::make_unique<TDbPipe>();
    pipe->SetEnds(start, end);
    CString layer;
    const AcDbObjectId layerId =
        PipeSystemTool::InitLayer(kind.m_system, pipe->IsVertical() ? L"立管" : L"管线", &layer);
    if (const CString why = WhyNotOnLayer(layer); !why.IsEmpty()) {
        acdbFail(L"\n图层\"" + layer + L"\"" + why + L"，不能绘制！");
        return AcDbObjectId::kNull;
    }
    ApplyStandard(*pipe, kind);
    if (crossings != nullptr)
        crossings->GoUnder(*pipe);
    const AcDbObjectId ends[] = {joints.FindOrAdd(start, layerId), joints.FindOrAdd(end, layerId)};
    pipe->SetNodes(ends[0], ends[1]);
    const AcDbObjectId id = AppendToCurrentSpace(std::move(pipe));
    if (id.isNull()) {
        acdbFail(L"\n管线不能加入当前图形！");
        return AcDbObjectId::kNull;
    }
    for (const AcDbObjectId joint : ends)
        if (!CJoints::AddPipe(joint, id))
            acutPrintf(L"\n节点所在的图层已锁定，管线没有与它相连！");
    if (const int untold = crossings != nullptr ? crossings->GoOver(id) : 0; untold != 0)
        acutPrintf(L"\n有%d根被跨越的管线所在的图层已锁定，没有断开！", untold);
    return id;
}
