#include "clients/DrawingSettings.h"

#include "acedads.h"
#include "clients/Questions.h"
#include "dbapserv.h"
#include "dbdict.h"
#include "dbents.h"
#include "dblayout.h"
#include "dbobjptr.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/CurrentSpace.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace {

constexpr double slack = 1e-6;

// By how many times the model is larger than what the viewports of all sheets show of it.
std::vector<double> ScalesOfViewports() {
    std::vector<double> scales;
    const AcDbDictionaryPointer named(
        acdbHostApplicationServices()->workingDatabase()->namedObjectsDictionaryId(), AcDb::kForRead);
    AcDbObjectId id;
    if (named.openStatus() != Acad::eOk || named->getAt(L"ACAD_LAYOUT", id) != Acad::eOk)
        return scales;
    const AcDbDictionaryPointer layouts(id, AcDb::kForRead);
    if (layouts.openStatus() != Acad::eOk)
        return scales;
    const std::unique_ptr<AcDbDictionaryIterator> at(layouts->newIterator());
    for (; !at->done(); at->next()) {
        const AcDbObjectPointer<AcDbLayout> layout(at->objectId(), AcDb::kForRead);
        const AcDbObjectIdArray viewports =
            layout.openStatus() == Acad::eOk ? layout->getViewportArray() : AcDbObjectIdArray();
        for (int i = 1; i < viewports.length(); ++i) { // the first one is the sheet itself
            const AcDbObjectPointer<AcDbViewport> viewport(viewports[i], AcDb::kForRead);
            if (viewport.openStatus() == Acad::eOk && viewport->height() > 0.0)
                scales.push_back(viewport->viewHeight() / viewport->height());
        }
    }
    return scales;
}

// That of the viewports when they agree, without the traces of reckoning; else the drawing's own.
double OfferedScale(double own) {
    const std::vector<double> scales = ScalesOfViewports();
    if (scales.empty())
        return own;
    const auto [least, most] = std::ranges::minmax(scales);
    if (!(least > 0.0) || most > least * (1.0 + slack))
        return own;
    const double round = std::round(least);
    return std::fabs(round - least) < least * slack ? round : least;
}

// Pipes get the scale, and their labels the distance that it is on paper. Gives how many could not.
int Follow(const std::vector<AcDbObjectId>& pipes, double scale) {
    int kept = 0;
    for (const AcDbObjectId id : pipes) {
        const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForWrite);
        if (pipe.openStatus() != Acad::eOk) {
            ++kept;
            continue;
        }
        if (pipe->IsLabelled())
            pipe->InitLabelLocation(pipe->GetLabelDistance() * scale / pipe->GetPlotScale());
        pipe->SetPlotScale(scale);
    }
    return kept;
}

} // namespace

void SetDrawingSettings() {
    if (ZefExport::RefusesOldDrawing(L"图纸设置"))
        return;
    const TPsSettings before = DocGetSettings();
    double scale = OfferedScale(before.m_plotScale);
    bool isAbsolute = before.m_isAbsoluteSize;
    CString prompt;
    prompt.Format(L"\n请输入出图比例，当前为1:%g <1:%g>: 1:", before.m_plotScale, scale);
    acedInitGet(RSG_NONEG | RSG_NOZERO, nullptr);
    if (const int given = acedGetReal(prompt, &scale); given != RTNORM && given != RTNONE)
        return;
    if (!AskYesNo(L"标注文字按图中绝对尺寸", isAbsolute))
        return;
    std::vector<AcDbObjectId> pipes;
    if (std::fabs(scale - before.m_plotScale) > slack)
        pipes = EntitiesOfDrawing(L"ZEF_PIPE,ZEF_DOUBLELINEPIPE");
    bool follow = true;
    if (!pipes.empty() && !AskYesNo(L"已有管线改为新比例", follow))
        return;
    TDbPsConfig* config = nullptr;
    if (InitDwgPsGlobal(config) != Acad::eOk) {
        acdbFail(L"\n图纸设置不能保存！");
        return;
    }
    config->SetPlotScale(scale);
    config->SetAbsoluteSize(isAbsolute);
    config->close();
    const int kept = follow ? Follow(pipes, scale) : 0;
    acutPrintf(L"\n出图比例为1:%g，标注文字按%s。", scale, isAbsolute ? L"图中绝对尺寸" : L"出图尺寸");
    if (kept > 0)
        acutPrintf(L"\n%d 根管线所在的图层已锁定，没有改变。", kept);
}
