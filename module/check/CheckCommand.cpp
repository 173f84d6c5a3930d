#include "module/check/CheckCommands.h"

#include "acedads.h"
#include "acutads.h"
#include "module/check/CheckReport.h"
#include "module/check/DrawingCheck.h"
#include "module/check/RulesDialog.h"
#include "module/standard/Names.h"
#include "sys/folders.h"

namespace {

// The host's own variable: a run in which it was set does not end with status 0. Elsewhere there is none.
void NoteFindings() {
    resbuf found{};
    found.restype = RTSHORT;
    found.resval.rint = 1;
    acedSetVar(L"FINDINGS", &found);
}

// False when the user ended it.
bool WriteReport(const CCheckReport& report) {
    AcString name;
    if (acedGetString(1, L"\n报告文件名(.html或.json) <退出>:", name) != RTNORM)
        return false;
    if (name.isEmpty())
        return true;
    if (const auto written = report.Write(sys::to_path(name.kwszPtr())); !written)
        acdbFail(CString(L"\n报告不能写入：") + written.error().c_str());
    else
        acutPrintf(L"\n已写入报告 %s", name.kwszPtr());
    return true;
}

enum class Next { Stop, AskAgain, CheckAgain };

Next AskNext(const CCheckReport& report, CheckRules& rules) {
    acedInitGet(0, L"L F R");
    ACHAR answer[8] = {};
    if (acedGetKword(L"\n[逐条列出(L)/报告文件(F)/规则(R)] <退出>:", answer) != RTNORM)
        return Next::Stop;
    switch (answer[0]) {
    case L'L':
        report.PrintAll();
        return Next::AskAgain;
    case L'F':
        return WriteReport(report) ? Next::AskAgain : Next::Stop;
    default:
        return EditCheckRules(rules) ? Next::CheckAgain : Next::AskAgain;
    }
}

} // namespace

void CheckCurrentDrawing() {
    CheckRules rules;
    CString fault;
    if (!ReadCheckRules(GetCheckRulesFile(), rules, fault)) {
        acdbFail(L"\n" + fault);
        return;
    }
    for (Next next = Next::CheckAgain; next == Next::CheckAgain;) {
        const auto findings = CheckDrawing(rules);
        if (!findings) {
            acutPrintf(L"\n检查已中断。");
            return;
        }
        const CCheckReport report(*findings, rules);
        report.PrintTable();
        if (!findings->IsEmpty())
            NoteFindings();
        do
            next = AskNext(report, rules);
        while (next == Next::AskAgain);
    }
}
