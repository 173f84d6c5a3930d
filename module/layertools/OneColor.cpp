// The commands that paint layers in one colour and give them their colours back.
#include "aced.h"
#include "module/frame/KolConfig.h"
#include "module/layertools/ColorMemory.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDialogs.h"
#include "module/layertools/LayerToolBar.h"
#include "siblings/zef_kernal/ZefExport.h"

namespace {

constexpr wchar_t colorOption[] = L"LayerOnlyColor";

bool IsColorIndex(int number) {
    return number >= 1 && number <= AcCmColor::kACImaximum;
}

void ChooseColor(int& index) {
    AcCmColor color;
    color.setColorIndex(static_cast<Adesk::UInt16>(IsColorIndex(index) ? index : AcCmColor::kACIWhite));
    if (acedSetColorDialogTrueColor(color, false, color))
        index = color.colorIndex();
}

void ChooseLayers(CColorMemory& layers) {
    CSelectLayerDlg dialog;
    if (!dialog.DoModal())
        return;
    for (const AcDbObjectId layer : dialog.GetChosenLayers())
        layers.Remember(layer);
}

// Asks for the colour, and meanwhile for the layers. False when the user wants neither.
bool AskColorAndLayers(int& index, CColorMemory& layers) {
    for (;;) {
        CString prompt;
        prompt.Format(L"\n请输入平面图要变成的颜色(1-红/2-黄/3-绿/4-青/5-蓝/6-粉/7-白)[选择图层(E)/"
                      L"选择颜色(C)]<当前颜色值(%d)>:",
                      index);
        acedInitGet(0, L"E C");
        int given = index; // for Enter
        const int answer = acedGetInt(prompt, &given);
        if (answer == RTNORM || answer == RTNONE) {
            if (IsColorIndex(given)) {
                index = given;
                return true;
            }
            acutPrintf(L"\n颜色应为 1 到 255！");
            continue;
        }
        AcString keyword;
        if (answer != RTKWORD || acedGetInput(keyword) != RTNORM)
            return false;
        if (keyword == L"C")
            ChooseColor(index);
        else
            ChooseLayers(layers);
    }
}

bool MayPaintAgain(const CColorMemory& layers, const CColorMemory& before) {
    if (!layers.HasSameLayers(before))
        return true;
    acedInitGet(0, L"Y N");
    AcString answer;
    return acedGetKword(L"\n警告:本次操作的图层与上次一致，是否继续<N>:", answer) == RTNORM && answer == L"Y";
}

} // namespace

void CLayerToolBar::tbds() {
    const CDocumentLock lock;
    if (ZefExport::RefusesOldDrawing(L"图层的原颜色"))
        return;
    int index = AcCmColor::kACIWhite;
    OpenKolConfig().GetValue(colorOption, index);
    if (!IsColorIndex(index))
        index = AcCmColor::kACIWhite;
    CColorMemory layers;
    if (!AskColorAndLayers(index, layers) || layers.IsEmpty())
        return;
    const CColorMemory before = CColorMemory::Load();
    if (!MayPaintAgain(layers, before))
        return;
    if (!layers.Save(index, before)) {
        acdbFail(L"\n图形不能保存图层的原颜色，图层颜色没有改变！");
        return;
    }
    layers.Paint(index);
    acedCommandS(RTSTR, L"REGEN", RTNONE);
    OpenKolConfig().SetValue(colorOption, index);
}

void CLayerToolBar::yshf() {
    const CDocumentLock lock;
    const CColorMemory layers = CColorMemory::Load();
    if (layers.IsEmpty()) {
        acutPrintf(L"\n没有找到相关信息，图层颜色恢复失败！");
        return;
    }
    layers.Restore();
    CColorMemory::Remove();
    acedCommandS(RTSTR, L"REGEN", RTNONE);
}
