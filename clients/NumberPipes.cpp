#include "clients/NumberPipes.h"

#include "acedads.h"
#include "clients/PipeSerials.h"
#include "dbobjptr.h"
#include "module/annotation/Serials.h"
#include "module/standard/PipeSystemTool.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/TDbPipe.h"

#include <algorithm>
#include <utility>

namespace {

// What was answered last, and so is offered next.
struct Answers {
    bool m_withDiameter = false;
    CString m_system; // and the serial behind the last one that was given in it
    CString m_next;
    int m_step = 1;
    ACHAR m_order = L'X';
};
Answers g_last;

// A keyword, the one that it has when nothing is given. False when the asking was ended.
bool AskForKeyword(LPCTSTR keywords, LPCTSTR prompt, ACHAR& keyword) {
    ACHAR given[2] = {keyword, 0};
    acedInitGet(0, keywords);
    const int status = acedGetKword(prompt, given);
    keyword = given[0];
    return status == RTNORM || status == RTNONE;
}

bool AskForStyle(bool& withDiameter) {
    CString prompt;
    prompt.Format(L"\n请选择编号样式[编号(B)/编号与管径(J)]<%s>:", withDiameter ? L"编号与管径" : L"编号");
    ACHAR keyword = withDiameter ? L'J' : L'B';
    if (!AskForKeyword(L"B J", prompt, keyword))
        return false;
    withDiameter = keyword == L'J';
    return true;
}

// The next serial of a pipe's system, where one was given before; else the first one of its risers, or pipes:
// "JL-1", "J-1".
CString OfferedSerial(AcDbObjectId id) {
    const CString system = PipeSystemTool::GetPipeSystemName(id);
    if (system == std::exchange(g_last.m_system, system) && !g_last.m_next.IsEmpty())
        return g_last.m_next;
    const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
    return PipeSystemTool::GetPipeDim(system, false, L"") + (pipe->IsVertical() ? L"L-1" : L"-1");
}

bool AskForSerial(CString& serial) {
    CString prompt;
    prompt.Format(L"\n请输入起始编号<%s>:", serial);
    AcString answer;
    if (acedGetString(0, prompt, answer) != RTNORM)
        return false;
    if (!answer.isEmpty())
        serial = answer.kwszPtr();
    return true;
}

bool AskForStep(int& step) {
    constexpr int most = 1000;
    CString prompt;
    prompt.Format(L"\n请输入编号增量<%d>:", step);
    for (;;) {
        int given = step;
        acedInitGet(RSG_NONEG | RSG_NOZERO, nullptr);
        const int status = acedGetInt(prompt, &given);
        if (status != RTNORM && status != RTNONE)
            return false;
        step = std::min(given, most);
        if (given <= most)
            return true;
        acutPrintf(L"\n编号增量不能大于%d！", most);
        step = 1;
    }
}

// The pipes in the order of their old serials; those without one go first.
std::vector<AcDbObjectId> BySerial(const std::vector<AcDbObjectId>& pipes) {
    std::vector<CString> serials;
    serials.reserve(pipes.size());
    for (const AcDbObjectId pipe : pipes)
        serials.push_back(SerialOf(pipe));
    std::vector<AcDbObjectId> sorted;
    for (const std::size_t place : KolTool::OrderOfSerials(serials))
        sorted.push_back(pipes[place]);
    return sorted;
}

AcGePoint3d MiddleOf(const TDbPipe& pipe) {
    return pipe.GetStartPoint() + (pipe.GetEndPoint() - pipe.GetStartPoint()) / 2;
}

// The pipes by their places along one that is picked, from its start on. False when none was picked.
bool AlongPipe(std::vector<AcDbObjectId>& pipes) {
    TPickEntSet picked;
    AcGePoint3d start;
    AcGeVector3d along;
    while (along.isZeroLength()) {
        if (picked.SelectEntity(L"\n请选择管线，编号从其起点开始<退出>:") != RTNORM)
            return false;
        const AcDbObjectPointer<TDbPipe> pipe(picked.GetAt(0), AcDb::kForRead);
        if (pipe.openStatus() == Acad::eOk && !pipe->IsVertical()) {
            start = pipe->GetStartPoint();
            along = pipe->GetEndPoint() - start;
        } else {
            acutPrintf(L"\n请选择水平管线！");
        }
    }
    std::vector<std::pair<double, AcDbObjectId>> places;
    for (const AcDbObjectId id : pipes) {
        const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
        const AcGeVector3d away = MiddleOf(*pipe.object()) - start;
        places.emplace_back(away.x * along.x + away.y * along.y, id);
    }
    std::ranges::stable_sort(places, {}, &std::pair<double, AcDbObjectId>::first);
    std::ranges::transform(places, pipes.begin(), &std::pair<double, AcDbObjectId>::second);
    return true;
}

// False when the asking was ended.
bool PutInOrder(std::vector<AcDbObjectId>& pipes) {
    const wchar_t* const name = g_last.m_order == L'Y'   ? L"按原编号"
                                : g_last.m_order == L'G' ? L"沿管线"
                                                         : L"选择次序";
    CString prompt;
    prompt.Format(L"\n请选择编号次序[按原编号(Y)/沿管线(G)/选择次序(X)]<%s>:", name);
    if (!AskForKeyword(L"Y G X", prompt, g_last.m_order))
        return false;
    if (g_last.m_order == L'Y')
        pipes = BySerial(pipes);
    return g_last.m_order != L'G' || AlongPipe(pipes);
}

// Numbers at the end of a serial count by ones, whatever the step, so they are counted that often.
void Advance(CString& serial, int step) {
    const CString last = serial.Right(1);
    if (!KolTool::IsDigit(last, false)) {
        KolTool::IncreaseSerial(serial, step);
        return;
    }
    for (int i = 0; i < step; ++i)
        KolTool::IncreaseSerial(serial, 1);
}

} // namespace

void NumberPipes() {
    TPickEntSet picked;
    if (ZefExport::RefusesOldDrawing(L"管线编号") ||
        picked.SelectEntities(L"\n请选择要编号的立管或管线<退出>:") != RTNORM)
        return;
    std::vector<AcDbObjectId> pipes;
    for (const AcDbObjectId id : picked)
        if (AcDbObjectPointer<TDbPipe>(id, AcDb::kForRead).openStatus() == Acad::eOk)
            pipes.push_back(id);
    if (pipes.empty()) {
        acutPrintf(L"\n没有选中管线！");
        return;
    }
    CString serial = OfferedSerial(pipes.front());
    if (!AskForStyle(g_last.m_withDiameter) || !AskForSerial(serial) || !AskForStep(g_last.m_step) ||
        !PutInOrder(pipes))
        return;
    const CString first = serial;
    CString last;
    int numbered = 0;
    for (const AcDbObjectId pipe : pipes) {
        if (!SetSerial(pipe, serial, g_last.m_withDiameter))
            continue;
        ++numbered;
        last = serial;
        Advance(serial, g_last.m_step);
    }
    g_last.m_next = serial;
    if (numbered > 0)
        acutPrintf(L"\n已编号 %d 根，从 %s 到 %s。", numbered, first.GetString(), last.GetString());
    if (const int kept = picked.GetCount() - numbered; kept > 0)
        acutPrintf(L"\n%d 个图元不是管线或图层已锁定，没有编号。", kept);
    picked.UpdateGraphic();
}
