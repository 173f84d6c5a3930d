#include "module/layertools/MarkCommands.h"

#include "acedads.h"
#include "acutads.h"
#include "dbents.h"
#include "module/frame/KolConfig.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerControlBar.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/Marks.h"
#include "module/layertools/StayedEntities.h"
#include "module/layertools/SystemMarker.h"

#include <algorithm>
#include <array>

namespace {

constexpr wchar_t modeOption[] = L"KolLogoType";

// The modes, by their numbers in the option.
struct Mode {
    const wchar_t* m_keywords;
    const wchar_t* m_prompt;
};
enum ModeNumber { kMarkEntities, kMarkLayers, kConvert };
constexpr std::array<Mode, 3> modes{{
    {L"A S D X", L"\n请选择标记图元{标识图层(A)/转换图元图层(X)/清除图元标识(S)/清除图层标识(D)}:<退出>"},
    {L"W S D X",
     L"\n请选择标识图层上的任意图元{标识图元(W)/转换图元图层(X)/清除图元标识(S)/清除图层标识(D)}:<退出>"},
    {L"A S D W",
     L"\n请选择需要转换图层的图元{标识图层(A)/标识图元(W)/清除图元标识(S)/清除图层标识(D)}:<退出>"},
}};

int ReadMode() {
    int mode = kMarkEntities;
    OpenKolConfig().GetValue(modeOption, mode);
    return mode >= kMarkEntities && mode <= kConvert ? mode : int{kMarkEntities};
}

// Whether the pick that failed was a click into empty space.
bool HasHitNothing() {
    constexpr short hitNothing = 7;
    resbuf number{};
    return acedGetVar(L"ERRNO", &number) == RTNORM && number.resval.rint == hitNothing;
}

void TakeKeyword(wchar_t keyword, const CSystemMarker& marker, int& mode) {
    switch (keyword) {
    case L'W':
        mode = kMarkEntities;
        break;
    case L'A':
        mode = kMarkLayers;
        break;
    case L'X':
        mode = kConvert;
        break;
    case L'S':
        marker.ClearEntities();
        break;
    case L'D':
        marker.ClearLayers();
        break;
    default:
        break;
    }
}

// False when the user has pressed Escape.
bool Act(const TPickEntSet& picked, const CSystemMarker& marker, int mode) {
    if (mode == kConvert)
        return marker.ConvertEntities(picked);
    if (mode == kMarkLayers)
        marker.MarkLayers(picked);
    else
        marker.MarkEntities(picked);
    return true;
}

// Asks and acts until the user ends it; the mode then is the one that was chosen last.
void AskAndMark(const CSystemMarker& marker, int& mode) {
    TPickEntSet picked;
    if (picked.SelectPickedFirst() && !Act(picked, marker, mode))
        return;
    for (;;) {
        const Mode& asked = modes[static_cast<std::size_t>(mode)];
        acedInitGet(0, asked.m_keywords);
        const int answer = picked.SelectEntity(asked.m_prompt);
        if (answer == RTKWORD) {
            ACHAR keyword[8] = {};
            acedGetInput(keyword);
            TakeKeyword(keyword[0], marker, mode);
        } else if (answer == RTNORM) {
            if (!Act(picked, marker, mode))
                return;
        } else if (answer != RTERROR || !HasHitNothing()) {
            return;
        }
    }
}

} // namespace

void MarkForSystem() {
    CLayerControlBar* const bar = CLayerControlBar::Get();
    const CString system = bar != nullptr ? bar->TakeChosenSystem() : CString();
    if (system.IsEmpty()) {
        acutPrintf(L"\n此命令不能单独使用，请通过给排水\"图层控制\"中的给排水标识使用！");
        return;
    }
    const CDocumentLock lock;
    int mode = ReadMode();
    AskAndMark(CSystemMarker(system), mode);
    OpenKolConfig().SetValue(modeOption, mode);
}

void CleanArchitectureMarks() {
    CLayerControlBar& bar = CLayerControlBar::Create();
    const CDocumentLock lock;
    TPickEntSet picked;
    acedInitGet(0, L"A");
    const int answer = picked.SelectEntities(L"\n请选择要清除建筑标识的图元[清除全部A]<退出>");
    if (answer != RTNORM && answer != RTKWORD)
        return;
    std::vector<AcDbObjectId> marked;
    if (answer == RTKWORD) {
        for (const MarkedEntity& one : MarkTool::GetMarkedEntities())
            if (MarkTool::IsArchitecture(one.m_mark))
                marked.push_back(one.m_entity);
        picked.SelectDrawing(nullptr);
    } else {
        std::ranges::copy_if(picked, std::back_inserter(marked), [](AcDbObjectId entity) {
            return MarkTool::IsArchitecture(MarkTool::GetMark(entity));
        });
    }
    int cleared = 0;
    CStayedEntities stayed;
    for (const AcDbObjectId entity : marked) {
        if (const Acad::ErrorStatus status = MarkTool::ClearMark(entity); status == Acad::eOk)
            ++cleared;
        else
            stayed.Add(status);
    }
    acutPrintf(L"\n共选中实体%d个,清除建筑标识%d个！\n", picked.GetCount(), cleared);
    stayed.Tell(L"没有清除标识");
    if (cleared != 0)
        bar.Refresh();
}
