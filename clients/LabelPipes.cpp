#include "clients/LabelPipes.h"

#include "acedads.h"
#include "clients/PipeLabelling.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <array>

namespace {

constexpr const wchar_t* styles[] = {L"自动", L"φ外径", L"外径壁厚", L"外径壁厚2"};

// A style, or what stands in front of diameters; there the sign of diameters may be typed as it is seen.
bool AskForStyle(CString& style) {
    CString prompt;
    prompt.Format(L"\n请输入标注样式[自动(0)/φ外径(1)/外径壁厚(2)/系统代号加外径壁厚(3)]或直径前的文字<%s>:",
                  style);
    AcString answer;
    if (acedGetString(0, prompt, answer) != RTNORM)
        return false;
    CString given = answer.kwszPtr();
    if (given.IsEmpty())
        return true;
    for (int i = 0; i < static_cast<int>(std::size(styles)); ++i) {
        if (given == styles[i] || given == std::to_wstring(i).c_str()) {
            style = styles[i];
            return true;
        }
    }
    given.Replace(L"φ", L"%%c");
    style = given;
    return true;
}

bool AskForDn(int& dn) {
    CString prompt;
    prompt.Format(L"\n请输入公称直径(0为管线原有管径)<%d>:", dn);
    acedInitGet(RSG_NONEG, nullptr);
    const int given = acedGetInt(prompt, &dn);
    return given == RTNORM || given == RTNONE;
}

bool AskForHeight(double& height) {
    CString prompt;
    prompt.Format(L"\n请输入文字高度<%g>:", height);
    acedInitGet(RSG_NONEG | RSG_NOZERO, nullptr);
    const int given = acedGetReal(prompt, &height);
    return given == RTNORM || given == RTNONE;
}

CString DnText(int dn) {
    CString text = L"原值";
    if (dn > 0)
        text.Format(L"%d", dn);
    return text;
}

// False when the asking was ended.
bool AskForOrder(TLabelOrder& order) {
    const auto yesNo = [](bool yes) { return yes ? L"是" : L"否"; };
    for (;;) {
        acutPrintf(L"\n样式=%s 管径=%s 字高=%g 另一侧=%s 重新定位=%s", order.m_style.GetString(),
                   DnText(order.m_dn).GetString(), order.m_height, yesNo(order.m_otherSide),
                   yesNo(order.m_force));
        ACHAR keyword[2] = L"";
        acedInitGet(0, L"S D H C F");
        const int given =
            acedGetKword(L"\n请设置[样式(S)/管径(D)/字高(H)/另一侧(C)/重新定位(F)]<选择管线>:", keyword);
        if (given == RTNONE)
            return true;
        if (given != RTNORM)
            return false;
        bool isAnswered = true;
        switch (keyword[0]) {
        case L'S':
            isAnswered = AskForStyle(order.m_style);
            break;
        case L'D':
            isAnswered = AskForDn(order.m_dn);
            break;
        case L'H':
            isAnswered = AskForHeight(order.m_height);
            break;
        case L'C':
            order.m_otherSide = !order.m_otherSide;
            break;
        default:
            order.m_force = !order.m_force;
            break;
        }
        if (!isAnswered)
            return false;
    }
}

} // namespace

void LabelPipes() {
    TLabelOrder& order = LastLabelOrder();
    TPickEntSet picked;
    if (ZefExport::RefusesOldDrawing(L"管径标注") || !AskForOrder(order) ||
        picked.SelectEntities(L"\n请选择要标注管径的管线<退出>:") != RTNORM)
        return;
    std::array<int, kNotLabelled + 1> counts{};
    for (const AcDbObjectId id : picked)
        ++counts[static_cast<std::size_t>(LabelPipe(id, order))];
    acutPrintf(L"\n已标注 %d 根管线的管径。", counts[kLabelled] + counts[kTooShort]);
    constexpr const wchar_t* others[] = {nullptr, L"\n其中 %d 根太短，标注不显示。",
                                         L"\n%d 根立管的管径已更新。",
                                         L"\n%d 个图元不是管线或图层已锁定，没有标注。"};
    for (std::size_t i = kTooShort; i < counts.size(); ++i)
        if (counts[i] > 0)
            acutPrintf(others[i], counts[i]);
    picked.UpdateGraphic();
}
