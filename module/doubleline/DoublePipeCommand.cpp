#include "module/doubleline/DoublePipeCommand.h"

#include "module/doubleline/DoubleLineNetwork.h"
#include "module/doubleline/TDoublePipeJig.h"
#include "module/frame/Reactors.h"
#include "module/frame/SpecData.h"
#include "module/standard/PipeSystemCreation.h"
#include "module/standard/PipeSystemUpdates.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/CurrentSpace.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"
#include "siblings/zef_pipewire/TFlange.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "siblings/zef_public/SharedOptions.h"

#include "acedads.h"
#include "actrans.h"
#include "acutads.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "geassign.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr double metre = 1000.0;
constexpr const wchar_t* pressureApplication = L"VR-PIPE-FLANGE-PN";
constexpr const wchar_t* corner = L"直角";

struct Pressure {
    const wchar_t* name; // as pipes keep it
    double bars;
};
constexpr Pressure pressures[] = {{L"0.25MPa", 2.5}, {L"0.6MPa", 6.0}, {L"1.0MPa", 10.0}, {L"1.6MPa", 16.0}};

// What pipes are drawn as; kept for the next time.
struct Kind {
    CString system;
    int dn = 0;
    std::size_t pressure = 2;
    CString elbows = L"长半径"; // a series of the table, or `corner`
    bool hasFlanges = false;
    double bottom = 0.0; // of risers, m
    double top = 3.0;
};
Kind g_kind;

CString Material() {
    return PipeSystemTool::GetPipeMaterial(g_kind.system, kIndoorMaterial);
}

// ---- the questions: false for Escape, and for what can not be taken

bool AskText(const CString& prompt, CString& text) {
    AcString typed;
    if (acedGetString(0, L"\n" + prompt, typed) != RTNORM)
        return false;
    if (!typed.isEmpty())
        text = typed.kwszPtr();
    return true;
}

bool Refuse(const CString& why) {
    acdbFail(L"\n" + why);
    return false;
}

bool AskSystem() {
    CString system = g_kind.system;
    if (!AskText(L"请输入管线系统<" + system + L">:", system))
        return false;
    if (!PipeSystemTool::IsPipeSystemOfCurrentStandard(system))
        return Refuse(L"当前标准中没有管线系统\"" + system + L"\"！");
    g_kind.system = system;
    return true;
}

// The diameters of the system's material are offered; another one is drawn as wide as it is called.
bool AskDn() {
    CString offered;
    for (const PipeMaterial& material : GetPipeMaterials())
        if (material.m_name == Material())
            for (const PipeDiameter& row : material.m_diameters) {
                CString dn;
                dn.Format(L" %g", row.m_dn);
                offered += dn;
            }
    if (!offered.IsEmpty())
        acutPrintf(L"\n%s 的公称直径:%s", Material().GetString(), offered.GetString());
    CString prompt;
    prompt.Format(L"\n请输入公称直径<%d>:", g_kind.dn);
    acedInitGet(RSG_NOZERO | RSG_NONEG, nullptr);
    int dn = g_kind.dn;
    if (const int given = acedGetInt(prompt, &dn); given != RTNORM && given != RTNONE)
        return false;
    g_kind.dn = dn;
    if (!offered.IsEmpty() && FindPipeDiameter(Material(), dn) == nullptr)
        acutPrintf(L"\n管材 %s 没有 DN%d，外径按公称直径绘制。", Material().GetString(), dn);
    return true;
}

bool AskPressure() {
    CString prompt = L"压力等级(";
    for (const Pressure& pressure : pressures)
        prompt += (&pressure == pressures ? L"" : L" ") + CString(pressure.name);
    CString name = pressures[g_kind.pressure].name;
    if (!AskText(prompt + L")<" + name + L">:", name))
        return false;
    const auto* const found = std::ranges::find_if(
        pressures, [&](const Pressure& one) { return name.CompareNoCase(one.name) == 0; });
    if (found == std::end(pressures))
        return Refuse(L"没有压力等级\"" + name + L"\"！");
    g_kind.pressure = static_cast<std::size_t>(found - pressures);
    return true;
}

bool AskElbows() {
    std::vector<CString> series = SpecData::GetElbowSeries();
    series.emplace_back(corner);
    CString prompt = L"弯头(";
    for (const CString& one : series)
        prompt += (&one == series.data() ? L"" : L" ") + one;
    CString name = g_kind.elbows;
    if (!AskText(prompt + L")<" + name + L">:", name))
        return false;
    if (std::ranges::find(series, name) == series.end())
        return Refuse(L"没有弯头\"" + name + L"\"！");
    g_kind.elbows = name;
    return true;
}

bool AskFlanges() {
    acedInitGet(0, L"Y N");
    ACHAR answer[8] = {};
    CString prompt;
    prompt.Format(L"\n管端是否画法兰[是(Y)/否(N)]<%s>:", g_kind.hasFlanges ? L"是" : L"否");
    const int given = acedGetKword(prompt, answer);
    if (given == RTNORM)
        g_kind.hasFlanges = answer[0] == L'Y';
    return given == RTNORM || given == RTNONE;
}

bool AskElevation(const wchar_t* what, double& elevation) {
    CString prompt;
    prompt.Format(L"\n请输入%s(m)<%.3f>:", what, elevation);
    acedInitGet(0, nullptr);
    const int given = acedGetReal(prompt, &elevation);
    return given == RTNORM || given == RTNONE;
}

// ---- the pipe

// Of the material and the pressure; and says when there is no flange for them.
void SetSizes(TDbDoubleLinePipe& pipe) {
    const double outer = PipeSystemTool::GetPipeOuterDn(Material(), g_kind.dn);
    pipe.SetDns(g_kind.dn, g_kind.dn);
    pipe.SetOuters(outer, outer);
    TFlangeData flange;
    if (g_kind.hasFlanges && !GetFlangeDataByDn(pressures[g_kind.pressure].bars, g_kind.dn, flange))
        acutPrintf(L"\n没有 DN%d、%s 的法兰数据，不画法兰。", g_kind.dn, pressures[g_kind.pressure].name);
    pipe.SetFlange(flange.m_outerDiameter, flange.m_thickness);
}

void KeepPressure(AcDbEntity& pipe) {
    acdbRegApp(pressureApplication);
    resbuf* const data = acutBuildList(AcDb::kDxfRegAppName, pressureApplication, AcDb::kDxfXdAsciiString,
                                       pressures[g_kind.pressure].name, RTNONE);
    pipe.setXData(data);
    acutRelRb(data);
}

// A pipe that begins at a point, on the layer of double-line pipes. Null when nothing is to be drawn there,
// which is told.
std::unique_ptr<TDbDoubleLinePipe> MakePipe(const AcGePoint3d& start, const AcGePoint3d& end) {
    CString name;
    const AcDbObjectId layer = PipeSystemTool::InitIndependentLayer(L"双线管", &name);
    if (const CString why = WhyNotOnLayer(name); !why.IsEmpty()) {
        Refuse(L"图层\"" + name + L"\"" + why + L"，不能绘制！");
        return nullptr;
    }
    auto pipe = std::make_unique<TDbDoubleLinePipe>();
    pipe->setDatabaseDefaults();
    pipe->SetEnds(start, end);
    pipe->ChangeValues().m_dn = g_kind.dn;
    PipeSystemTool::SetPipeSystemName(pipe.get(), g_kind.system);
    PipeSystemTool::UpdateMaterialLineWeight(pipe.get(), true, true, kIndoorMaterial);
    PipeSystemTool::UpdatePipeInfo(pipe.get());
    PipeSystemTool::UpdatePipeLabel(pipe.get());
    SetSizes(*pipe);
    pipe->SetPlotScale(DocGetPScale());
    if (!layer.isNull())
        pipe->setLayer(layer);
    KeepPressure(*pipe);
    return pipe;
}

// ---- drawing

// Transactions that stand in each other: each step of the drawing can be taken back.
class Steps {
public:
    Steps() = default;
    Steps(const Steps&) = delete;
    Steps& operator=(const Steps&) = delete;
    ~Steps() {
        for (; m_count > 0; --m_count)
            actrTransactionManager->endTransaction();
    }
    void Begin() {
        actrTransactionManager->startTransaction();
        ++m_count;
    }
    void TakeBack() {
        actrTransactionManager->abortTransaction();
        --m_count;
    }

private:
    int m_count = 0;
};

// What a prompt for a point gave.
struct Answer {
    AcEdJig::DragStatus status = AcEdJig::kCancel;
    AcGePoint3d point;
};

constexpr const wchar_t* startKeywords = L"S D P E F V";
constexpr const wchar_t* nextKeywords = L"D U";

Answer AskStart() {
    Answer answer;
    AcGePoint3d given;
    acedInitGet(0, startKeywords);
    const int got = acedGetPoint(nullptr,
                                 L"\n请指定双线管起点[管线系统(S)/管径(D)/压力(P)/弯头(E)/法兰(F)/立管(V)]"
                                 L"<退出>:",
                                 asDblArray(given));
    if (got == RTNORM) {
        answer = {AcEdJig::kNormal, ToWorld(given)};
    } else if (got == RTKWORD) {
        ACHAR keyword[8] = {};
        acedGetInput(keyword);
        const int place = CString(startKeywords).Find(keyword[0]) / 2;
        answer.status = static_cast<AcEdJig::DragStatus>(AcEdJig::kKW1 + place);
    }
    return answer;
}

struct Drawn {
    int pipes = 0;
    double length = 0.0;
};

void Tell(const Drawn& drawn, const wchar_t* what) {
    if (drawn.pipes != 0)
        acutPrintf(L"\n绘制%s %d 段，管线系统\"%s\"，总长 %.3f m。", what, drawn.pipes,
                   g_kind.system.GetString(), drawn.length / metre);
}

// What "@" means from now on: the point that a pipe really ends in, which may not be the one that was given.
void SetLastPoint(const AcGePoint3d& world) {
    const AcGePoint3d point = ToUser(world);
    resbuf value{};
    value.restype = RT3DPOINT;
    std::copy_n(asDblArray(point), 3, value.resval.rpoint);
    acedSetVar(L"LASTPOINT", &value);
}

// From a start to the last point.
void DrawRun(const AcGePoint3d& start, Drawn& drawn) {
    Steps steps;
    std::vector<AcGePoint3d> points = {CDoubleLineNetwork().Snap(start)};
    for (;;) {
        SetLastPoint(points.back());
        std::unique_ptr<TDbDoubleLinePipe> pipe = MakePipe(points.back(), points.back());
        if (pipe == nullptr)
            return;
        TDoublePipeJig jig(std::move(pipe));
        jig.setDispPrompt(L"\n请指定下一点[管径(D)/回退(U)]<结束>:");
        jig.setKeywordList(nextKeywords);
        jig.setUserInputControls(AcEdJig::kNullResponseAccepted);
        const AcEdJig::DragStatus status = jig.drag();
        if (status == AcEdJig::kKW1) {
            AskDn();
            continue;
        }
        if (status == AcEdJig::kKW2) {
            if (points.size() < 2) {
                acutPrintf(L"\n没有可以回退的管段。");
                continue;
            }
            steps.TakeBack();
            drawn.length -= points.back().distanceTo(points[points.size() - 2]);
            --drawn.pipes;
            points.pop_back();
            continue;
        }
        if (status != AcEdJig::kNormal)
            return;
        CDoubleLineNetwork network;
        AcGePoint3d to = network.Snap(jig.Point());
        to.z = points.back().z; // pipes are level
        if (to.distanceTo(points.back()) < 1.0) {
            acutPrintf(L"\n两点重合，请重新指定！");
            continue;
        }
        steps.Begin();
        const TFittingOrder order{g_kind.elbows == corner ? CString() : g_kind.elbows};
        if (const CString why = network.Draw(jig.Pipe(), points.back(), to, order); !why.IsEmpty()) {
            steps.TakeBack();
            acutPrintf(L"\n%s", why.GetString());
            continue;
        }
        ++drawn.pipes;
        drawn.length += to.distanceTo(points.back());
        points.push_back(to);
    }
}

// Risers between two elevations.
void DrawRisers() {
    if (!AskElevation(L"底标高", g_kind.bottom) || !AskElevation(L"顶标高", g_kind.top))
        return;
    if (std::fabs(g_kind.top - g_kind.bottom) * metre < 1.0) {
        Refuse(L"顶标高与底标高相同！");
        return;
    }
    Drawn drawn;
    for (;;) {
        AcGePoint3d given;
        acedInitGet(0, nullptr);
        if (acedGetPoint(nullptr, L"\n请指定双线立管位置<结束>:", asDblArray(given)) != RTNORM)
            break;
        const AcGePoint3d at = ToWorld(given);
        std::unique_ptr<TDbDoubleLinePipe> pipe =
            MakePipe({at.x, at.y, g_kind.bottom * metre}, {at.x, at.y, g_kind.top * metre});
        if (pipe == nullptr)
            break;
        drawn.length += pipe->GetLength();
        if (AppendToCurrentSpace(std::move(pipe)).isNull()) {
            Refuse(L"管线不能加入当前图形！");
            break;
        }
        ++drawn.pipes;
    }
    Tell(drawn, L"双线立管");
}

// The system and the diameter that the command begins with.
bool Prepare() {
    if (ZefExport::RefusesOldDrawing(L"管线"))
        return false;
    std::vector<PipeClassificationNode> groups;
    PipeSystemTool::GetPipeSystems(groups);
    const auto group = std::ranges::find_if(groups, [](const auto& one) { return !one.m_systems.empty(); });
    if (group == groups.end())
        return Refuse(L"当前标准中没有管线系统！");
    if (!PipeSystemTool::IsPipeSystemOfCurrentStandard(g_kind.system))
        g_kind.system = group->m_systems.front().m_basic.m_name;
    if (g_kind.dn <= 0)
        g_kind.dn = g_iDefaultPipeDn;
    return true;
}

} // namespace

void DrawDoubleLinePipes() {
    if (!Prepare())
        return;
    const TBanReactor ban;
    for (;;) {
        acutPrintf(L"\n管线系统: %s  管材: %s  DN%d  %s  弯头: %s  法兰: %s", g_kind.system.GetString(),
                   Material().GetString(), g_kind.dn, pressures[g_kind.pressure].name,
                   g_kind.elbows.GetString(), g_kind.hasFlanges ? L"有" : L"无");
        const Answer answer = AskStart();
        switch (answer.status) {
        case AcEdJig::kNormal: {
            Drawn drawn;
            DrawRun(answer.point, drawn);
            return Tell(drawn, L"双线管");
        }
        case AcEdJig::kKW1:
            if (!AskSystem())
                return;
            break;
        case AcEdJig::kKW2:
            if (!AskDn())
                return;
            break;
        case AcEdJig::kKW3:
            if (!AskPressure())
                return;
            break;
        case AcEdJig::kKW4:
            if (!AskElbows())
                return;
            break;
        case AcEdJig::kKW5:
            if (!AskFlanges())
                return;
            break;
        case AcEdJig::kKW6:
            return DrawRisers();
        default:
            return;
        }
    }
}
