#include "clients/DrawPipes.h"

#include "clients/NewPipe.h"
#include "clients/PipeLabelling.h"
#include "clients/Questions.h"
#include "siblings/zef_pipewire/Crossings.h"
#include "siblings/zef_pipewire/CurrentSpace.h"

#include "acedads.h"
#include "geassign.h"
#include "module/standard/PipeSystemTool.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_public/SharedOptions.h"

#include <cmath>
#include <optional>

namespace {

constexpr double metre = 1000.0;

// What was answered last, and so is offered next.
struct Answers {
    TPipeKind m_kind;
    bool m_isLabelled = false;
    double m_bottom = 0.0; // of risers, m
    double m_top = 3.0;
};
Answers g_last;

// The systems of the standard, in its order.
std::vector<CString> SystemNames() {
    std::vector<PipeClassificationNode> groups;
    PipeSystemTool::GetPipeSystems(groups);
    std::vector<CString> names;
    for (const PipeClassificationNode& group : groups)
        for (const PipeInfoNode& system : group.m_systems)
            names.push_back(system.m_basic.m_name);
    return names;
}

// Asks for a system until it is one of the standard's: a wrong name shows which there are. False when that
// was ended.
bool AskForSystem(const std::vector<CString>& systems, CString& system) {
    CString prompt;
    prompt.Format(L"\n请输入管线系统<%s>:", system);
    for (;;) {
        AcString answer;
        if (acedGetString(0, prompt, answer) != RTNORM)
            return false;
        if (answer.isEmpty())
            return true;
        if (PipeSystemTool::IsPipeSystemOfCurrentStandard(answer.kwszPtr())) {
            system = answer.kwszPtr();
            return true;
        }
        CString all;
        for (const CString& one : systems)
            all += L" " + one;
        acutPrintf(L"\n当前标准中的管线系统:%s", all.GetString());
        CString message;
        message.Format(L"\n当前标准中没有管线系统\"%s\"！", answer.kwszPtr());
        acdbFail(message); // which ends a script
    }
}

// Asks for system and diameter. False when that was ended, or the drawing can not hold pipes, or the standard
// has no system, which the user is told.
bool AskForPipe() {
    if (ZefExport::RefusesOldDrawing(L"管线"))
        return false;
    const std::vector<CString> systems = SystemNames();
    if (systems.empty()) {
        acdbFail(L"\n当前标准中没有管线系统！");
        return false;
    }
    if (!PipeSystemTool::IsPipeSystemOfCurrentStandard(g_last.m_kind.m_system))
        g_last.m_kind.m_system = systems.front();
    CString system = g_last.m_kind.m_system;
    if (!AskForSystem(systems, system))
        return false;
    int dn = g_last.m_kind.m_dn > 0 ? g_last.m_kind.m_dn : g_iDefaultPipeDn;
    CString prompt;
    prompt.Format(L"\n请输入公称直径<%d>:", dn);
    acedInitGet(RSG_NOZERO | RSG_NONEG, nullptr);
    if (const int given = acedGetInt(prompt, &dn); given != RTNORM && given != RTNONE)
        return false;
    g_last.m_kind.m_system = system;
    g_last.m_kind.m_dn = dn;
    return true;
}

// A point of the world; nothing when the asking was ended.
std::optional<AcGePoint3d> AskForPoint(LPCTSTR prompt, const std::optional<AcGePoint3d>& base) {
    const AcGePoint3d from = base ? ToUser(*base) : AcGePoint3d();
    AcGePoint3d given;
    acedInitGet(0, nullptr);
    if (acedGetPoint(base ? asDblArray(from) : nullptr, prompt, asDblArray(given)) != RTNORM)
        return std::nullopt;
    return ToWorld(given);
}

// As the last labelling was, with the diameter that the pipe has.
void Label(AcDbObjectId pipe) {
    TLabelOrder order = LastLabelOrder();
    order.m_dn = 0;
    if (LabelPipe(pipe, order) == kTooShort)
        acutPrintf(L"\n管线太短，标注不显示。");
}

} // namespace

void DrawPipes() {
    if (!AskForPipe() || !AskYesNo(L"标注管径", g_last.m_isLabelled))
        return;
    std::optional<AcGePoint3d> from = AskForPoint(L"\n请指定管线起点<退出>:", std::nullopt);
    CJoints joints;
    CCrossings crossings;
    while (from) {
        const auto to = AskForPoint(L"\n请指定管线下一点<结束>:", from);
        if (to && to->distanceTo(*from) < CJoints::nearBy) {
            acutPrintf(L"\n两点重合，请重新指定！");
            continue;
        }
        if (to) {
            const AcDbObjectId pipe = DrawPipe(joints, &crossings, g_last.m_kind, *from, *to);
            if (pipe.isNull())
                return;
            if (g_last.m_isLabelled)
                Label(pipe);
        }
        from = to;
    }
}

void DrawRisers() {
    if (!AskForPipe() || !AskForElevation(L"请输入底标高", g_last.m_bottom))
        return;
    const auto isLevel = [] { return std::fabs(g_last.m_top - g_last.m_bottom) * metre < CJoints::nearBy; };
    do {
        if (!AskForElevation(L"请输入顶标高", g_last.m_top))
            return;
        if (isLevel())
            acutPrintf(L"\n顶标高与底标高相同，请重新指定！");
    } while (isLevel());
    CJoints joints;
    while (const auto at = AskForPoint(L"\n请指定立管位置<退出>:", std::nullopt))
        if (DrawPipe(joints, nullptr, g_last.m_kind, {at->x, at->y, g_last.m_bottom * metre},
                     {at->x, at->y, g_last.m_top * metre})
                .isNull())
            return;
}
