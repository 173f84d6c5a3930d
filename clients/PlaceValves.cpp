#include "clients/PlaceValves.h"

#include "acedads.h"
#include "dbobjptr.h"
#include "module/standard/PipeSystemCreation.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/CurrentSpace.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDbPipeAttachment.h"

#include <algorithm>
#include <cmath>
#include <cwchar>

namespace {

constexpr double symbolSize = 4.0; // mm on paper

struct KindRow {
    const wchar_t* m_keyword;
    int m_kind;
};
constexpr KindRow kinds[] = {{L"Z", kGateValve}, {L"H", kCheckValve}, {L"S", kWaterMeter}, {L"Y", kReducer}};

// False when the asking was ended.
bool AskForKind(int& kind) {
    ACHAR keyword[2] = L"Z";
    acedInitGet(0, L"Z H S Y");
    const int given = acedGetKword(L"\n请选择附件类型[闸阀(Z)/止回阀(H)/水表(S)/异径管(Y)]<闸阀>:", keyword);
    if (given != RTNORM && given != RTNONE)
        return false;
    for (const KindRow& row : kinds) {
        if (std::wcscmp(row.m_keyword, keyword) == 0)
            kind = row.m_kind;
    }
    return true;
}

// On the centre line, nearest in the plan to where the pipe was picked.
AcGePoint3d PlaceOn(const TDbPipe& pipe, const AcGePoint3d& picked) {
    const AcGePoint3d start = pipe.GetStartPoint();
    const AcGeVector3d along = pipe.GetEndPoint() - start;
    const double level = along.x * along.x + along.y * along.y;
    const AcGeVector3d away = picked - start;
    const double part = level > 0.0 ? (away.x * along.x + away.y * along.y) / level : 0.0;
    return start + along * std::clamp(part, 0.0, 1.0);
}

void PlaceValve(AcDbObjectId pipeId, const AcGePoint3d& picked, int kind) {
    const AcDbObjectPointer<TDbPipe> pipe(pipeId, AcDb::kForWrite);
    if (pipe.openStatus() != Acad::eOk || pipe->IsVertical()) {
        acutPrintf(L"\n请选择可以修改的水平管线！");
        return;
    }
    const AcGeVector3d along = pipe->GetEndPoint() - pipe->GetStartPoint();
    CString layer;
    const AcDbObjectId layerId = PipeSystemTool::InitLayer(pipe->GetPipeSystemName(), L"阀门", &layer);
    if (const CString why = WhyNotOnLayer(layer); !why.IsEmpty()) {
        acutPrintf(L"\n图层\"%s\"%s，不能绘制！", layer.GetString(), why.GetString());
        return;
    }
    auto symbol = std::make_unique<TDbPipeAttachment>();
    symbol->SetKind(kind);
    symbol->SetPosition(PlaceOn(*pipe, picked));
    symbol->SetRotation(std::atan2(along.y, along.x));
    symbol->SetSize(symbolSize * pipe->GetPlotScale());
    symbol->SetPipeSystemName(pipe->GetPipeSystemName());
    symbol->SetPipe(pipeId);
    if (!layerId.isNull())
        symbol->setLayer(layerId);
    if (const AcDbObjectId id = AppendToCurrentSpace(std::move(symbol)); !id.isNull())
        pipe->AddAttachment(id);
}

// Of the last pick: whether there was nothing where it was.
bool HitNothing() {
    constexpr short hitNothing = 7;
    resbuf code{};
    return acedGetVar(L"ERRNO", &code) == RTNORM && code.resval.rint == hitNothing;
}

} // namespace

void PlaceValves() {
    int kind = kGateValve;
    if (ZefExport::RefusesOldDrawing(L"附件") || !AskForKind(kind))
        return;
    TPickEntSet picked;
    for (;;) {
        const int given = picked.SelectEntity(L"\n请选择布置附件的管线<退出>:");
        if (given == RTNORM)
            PlaceValve(picked.GetAt(0), ToWorld(picked.GetPickPoint()), kind);
        else if (given == RTERROR && HitNothing())
            acutPrintf(L"\n没有选中管线！");
        else
            return;
    }
}
