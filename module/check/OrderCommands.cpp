// The commands that bring linetypes and lines in order.
#include "acedads.h"
#include "acutads.h"
#include "acutmem.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "module/check/CheckCommands.h"
#include "module/check/LineJoin.h"
#include "module/check/LinetypeOrder.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/DrawingRecords.h"
#include "module/layertools/LayerDisplay.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"
#include "ui/presenter.h"

#include <optional>

namespace {

constexpr const wchar_t* jobNames[CLinetypeOrder::jobCount] = {L"合并相同线型", L"调整线型比例",
                                                               L"线型连续通过顶点", L"删除无用线型"};

std::wstring WhyNoScale(const std::wstring& value) {
    const std::optional<double> number = base::parse_real(base::narrow(value));
    return number && *number > 0.0 ? L"" : L"请输入大于0的数。";
}

// The jobs that the user wants, and for which plot scale; nothing when he ends the dialog.
std::optional<std::set<CLinetypeOrder::Job>> ChooseJobs(const CLinetypeOrder& order, double& plotScale) {
    ui::dialog dialog;
    dialog.title = L"线型优化";
    dialog.fields.push_back({L"出图比例", base::widen(base::real_text(plotScale)), WhyNoScale});
    ui::check_list list;
    list.columns = {{L"操作", 160}, {L"数量", 60}};
    for (int i = 0; i < CLinetypeOrder::jobCount; ++i) {
        const std::size_t count = order.Count(static_cast<CLinetypeOrder::Job>(i));
        list.lines.push_back({{jobNames[i], std::to_wstring(count)}, count != 0});
    }
    dialog.lists.push_back(list);
    std::set<CLinetypeOrder::Job> jobs;
    if (!ui::run(dialog))
        return std::nullopt;
    for (int i = 0; i < CLinetypeOrder::jobCount; ++i)
        if (dialog.lists[0].lines[static_cast<std::size_t>(i)].checked)
            jobs.insert(static_cast<CLinetypeOrder::Job>(i));
    plotScale = *base::parse_real(base::narrow(dialog.fields[0].value));
    return jobs;
}

void TellOrder(const std::map<CLinetypeOrder::Job, std::size_t>& done, const CLinetypeOrder& order) {
    const auto count = [&](CLinetypeOrder::Job job) {
        const auto found = done.find(job);
        return found != done.end() ? static_cast<int>(found->second) : 0;
    };
    acutPrintf(L"\n合并线型 %d 种，调整线型比例 %d 处，线型连续通过顶点 %d 条，删除无用线型 %d 种。",
               count(CLinetypeOrder::Unite), count(CLinetypeOrder::Rescale), count(CLinetypeOrder::Continue),
               count(CLinetypeOrder::Purge));
    if (done.contains(CLinetypeOrder::Rescale) && order.GetNewScale() != order.GetScale())
        acutPrintf(L"\n全局线型比例由 %g 改为 %g。", order.GetScale(), order.GetNewScale());
    order.GetStayed().Tell(L"没有修改");
}

// What is picked; with Enter all of the drawing. Nothing for Escape.
std::optional<std::vector<AcDbObjectId>> AskEntities() {
    TPickEntSet picked;
    const int answer = picked.SelectEntities(L"\n请选择要连接的图元 <全部>:");
    if (answer == RTCAN)
        return std::nullopt;
    if (answer != RTNORM) {
        const Chain filter(acutBuildList(RTDXF0, L"LINE,ARC,CIRCLE,LWPOLYLINE", 0));
        picked.SelectDrawing(filter.get());
    }
    return std::vector<AcDbObjectId>(picked.begin(), picked.end());
}

} // namespace

void OrderLinetypes() {
    const CDocumentLock lock;
    const double usual = DocGetPScale();
    double plotScale = usual;
    std::optional<CLinetypeOrder> order(usual);
    if (!order->IsWhole()) {
        acutPrintf(L"\n检查已中断。");
        return;
    }
    const auto jobs = ChooseJobs(*order, plotScale);
    if (!jobs)
        return;
    if (jobs->empty()) {
        acutPrintf(L"\n没有选择操作，图形没有改变。");
        return;
    }
    if (plotScale != usual)
        order.emplace(plotScale);
    const auto done = order->Run(*jobs);
    TellOrder(done, *order);
    RegenerateDisplay();
}

void JoinLines() {
    const CDocumentLock lock;
    const auto entities = AskEntities();
    if (!entities)
        return;
    static double last = 1.0;
    CString prompt;
    prompt.Format(L"\n容差 <%g>:", last);
    acedInitGet(RSG_NONEG, nullptr);
    ads_real tolerance = last;
    if (const int answer = acedGetReal(prompt, &tolerance); answer != RTNORM && answer != RTNONE)
        return;
    last = tolerance;
    CLineJoin join(*entities, tolerance);
    join.Run();
    acutPrintf(L"\n图元由 %d 个变为 %d 个：连接 %d 个，删除重复 %d 个、零长 %d 个。",
               static_cast<int>(join.GetBefore()), static_cast<int>(join.GetAfter()),
               static_cast<int>(join.GetJoined()), static_cast<int>(join.GetDoubles()),
               static_cast<int>(join.GetZero()));
    join.GetStayed().Tell(L"没有处理");
    RegenerateDisplay();
}
