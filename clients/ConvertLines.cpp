#include "clients/ConvertLines.h"

#include "acedads.h"
#include "acutmem.h"
#include "clients/NewPipe.h"
#include "clients/Questions.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbpl.h"
#include "module/standard/PipeSystemTool.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/CurrentSpace.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "siblings/zef_public/SharedOptions.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr double metre = 1000.0;

// What was answered last, and so is offered next.
struct Answers {
    int m_dn = 0;
    double m_bottom = 0.0; // of risers, m
    double m_top = 3.0;
};
Answers g_last;

// What a line becomes.
struct Found {
    AcDbObjectId m_line;
    TPipeKind m_kind; // without a diameter where the line tells none
    std::vector<std::pair<AcGePoint3d, AcGePoint3d>> m_parts;
    bool m_isRiser = false; // stands where its one part begins
};

// The nominal diameter of the system's material with that outer one; 0 when it has none.
int NominalOf(LPCTSTR system, double outer) {
    constexpr double slack = 0.001;
    const CString name = PipeSystemTool::GetPipeMaterial(system, kIndoorMaterial);
    for (const PipeMaterial& material : GetPipeMaterials())
        for (const PipeDiameter& row : material.m_diameters)
            if (material.m_name == name && std::fabs(row.m_outer - outer) < slack)
                return static_cast<int>(std::lround(row.m_dn));
    return 0;
}

// 0 when no text says it.
int DnInData(const AcDbEntity& line, LPCTSTR system) {
    const std::unique_ptr<resbuf, int (*)(resbuf*)> data(line.xData(), acutRelRb);
    for (const resbuf* one = data.get(); one != nullptr; one = one->rbnext) {
        if (one->restype != AcDb::kDxfXdAsciiString)
            continue;
        const std::wstring_view text(one->resval.rstring);
        const double number = text.size() > 2 ? std::wcstod(one->resval.rstring + 2, nullptr) : 0.0;
        if (number >= 1.0 && text.starts_with(L"DN"))
            return static_cast<int>(std::lround(number));
        if (number >= 1.0 && (text.starts_with(L"De") || text.starts_with(L"dn")))
            return NominalOf(system, number);
    }
    return 0;
}

// False for a polyline with arcs, and for what is none of the three.
bool FindParts(const AcDbEntity& entity, Found& found) {
    if (const auto* const line = AcDbLine::cast(&entity)) {
        found.m_parts.emplace_back(line->startPoint(), line->endPoint());
    } else if (const auto* const circle = AcDbCircle::cast(&entity)) {
        found.m_parts.emplace_back(circle->center(), circle->center());
        found.m_isRiser = true;
    } else if (const auto* const polyline = AcDbPolyline::cast(&entity)) {
        const unsigned int count = polyline->numVerts();
        for (unsigned int i = 0; i + (polyline->isClosed() ? 0 : 1) < count; ++i) {
            AcGePoint3d ends[2];
            double bulge = 0.0;
            polyline->getPointAt(i, ends[0]);
            polyline->getPointAt((i + 1) % count, ends[1]);
            polyline->getBulgeAt(i, bulge);
            if (bulge != 0.0)
                return false;
            if (ends[0].distanceTo(ends[1]) >= CJoints::nearBy)
                found.m_parts.emplace_back(ends[0], ends[1]);
        }
    }
    return !found.m_parts.empty();
}

// False for what can not become a pipe.
bool Find(AcDbObjectId id, Found& found) {
    const AcDbEntityPointer entity(id, AcDb::kForWrite);
    AcString layer;
    if (entity.openStatus() != Acad::eOk || entity->layer(layer) != Acad::eOk)
        return false;
    found.m_line = id;
    found.m_kind.m_system = PipeSystemTool::GetPipeSystemNameByPipeLayer(layer.kwszPtr());
    if (found.m_kind.m_system.IsEmpty() || !FindParts(*entity, found))
        return false;
    found.m_kind.m_dn = DnInData(*entity, found.m_kind.m_system);
    return true;
}

// False when the asking was ended.
bool AskForDn(int& dn) {
    dn = dn > 0 ? dn : g_iDefaultPipeDn;
    CString prompt;
    prompt.Format(L"\n请输入没有管径数据的管线的公称直径<%d>:", dn);
    acedInitGet(RSG_NOZERO | RSG_NONEG, nullptr);
    const int given = acedGetInt(prompt, &dn);
    return given == RTNORM || given == RTNONE;
}

bool AskForMissing(const std::vector<Found>& lines) {
    const auto any = [&lines](auto holds) { return std::ranges::any_of(lines, holds); };
    if (any([](const Found& one) { return one.m_kind.m_dn == 0; }) && !AskForDn(g_last.m_dn))
        return false;
    if (!any([](const Found& one) { return one.m_isRiser; }))
        return true;
    if (!AskForElevation(L"请输入立管底标高", g_last.m_bottom) ||
        !AskForElevation(L"请输入立管顶标高", g_last.m_top))
        return false;
    if (std::fabs(g_last.m_top - g_last.m_bottom) * metre >= CJoints::nearBy)
        return true;
    acdbFail(L"\n顶标高与底标高相同！");
    return false;
}

// False when the drawing does not take it.
bool Convert(CJoints& joints, const Found& line) {
    TPipeKind kind = line.m_kind;
    if (kind.m_dn == 0)
        kind.m_dn = g_last.m_dn;
    for (auto [start, end] : line.m_parts) {
        if (line.m_isRiser) {
            start.z = g_last.m_bottom * metre;
            end.z = g_last.m_top * metre;
        }
        if (DrawPipe(joints, nullptr, kind, start, end).isNull())
            return false;
    }
    const AcDbEntityPointer entity(line.m_line, AcDb::kForWrite);
    return entity.openStatus() == Acad::eOk && entity->erase() == Acad::eOk;
}

} // namespace

void ConvertLines() {
    TPickEntSet picked;
    if (ZefExport::RefusesOldDrawing(L"管线") ||
        picked.SelectEntities(L"\n请选择要转换的直线、多段线和立管圆<退出>:") != RTNORM)
        return;
    std::vector<Found> lines;
    for (const AcDbObjectId id : picked)
        if (Found found; Find(id, found))
            lines.push_back(std::move(found));
    if (!AskForMissing(lines))
        return;
    CJoints joints;
    int converted = 0;
    int pipes = 0;
    for (const Found& line : lines) {
        if (!Convert(joints, line))
            return;
        ++converted;
        pipes += static_cast<int>(line.m_parts.size());
    }
    acutPrintf(L"\n%d 个图元转换为 %d 根管线。", converted, pipes);
    if (const int kept = picked.GetCount() - converted; kept > 0)
        acutPrintf(L"\n%d 个图元不在管线图层上、图层已锁定或不是直线，没有转换。", kept);
}
