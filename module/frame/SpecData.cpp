#include "module/frame/SpecData.h"

#include "module/engines/VRbTree.h"
#include "module/engines/VRbTreeXml.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/TFlange.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace {

struct FlangeRow {
    double pressureClass = 0;
    double dn = 0;
    TFlangeData data;
};

// One size by nominal diameter, in a series where there are several.
struct SizeRow {
    CString series;
    double dn = 0;
    double size = 0;
};

struct Tables {
    std::vector<FlangeRow> flanges;
    std::vector<SizeRow> elbows;
    std::vector<SizeRow> tees;
    std::vector<SizeRow> reducers;
    TFlangeFunction before = nullptr;
};

std::unique_ptr<Tables> g_tables;

// The numbers of a text, which blanks part.
std::vector<double> NumbersIn(const CString& text) {
    std::vector<double> numbers;
    const TCHAR* at = text;
    for (TCHAR* end = nullptr;; at = end) {
        const double number = _tcstod(at, &end);
        if (end == at)
            return numbers;
        numbers.push_back(number);
    }
}

template<class Take>
void ForEachChild(const CVRbTreeItem& item, const wchar_t* name, Take take) {
    for (const CVRbTreeItem* child = item.GetChild(); child != nullptr; child = child->GetNext())
        if (child->GetName() == name)
            take(*child);
}

// Rows without a size are passed over.
void ReadFlanges(const CVRbTreeItem& root, std::vector<FlangeRow>& rows) {
    ForEachChild(root, L"Flanges", [&](const CVRbTreeItem& flanges) {
        ForEachChild(flanges, L"PressureClass", [&](const CVRbTreeItem& pressureClass) {
            const std::vector<double> classes = NumbersIn(pressureClass.GetAttrib(L"PN"));
            ForEachChild(pressureClass, L"Flange", [&](const CVRbTreeItem& flange) {
                const TFlangeData data{flange.GetAttrib(L"OuterDiameter", 0.0),
                                       flange.GetAttrib(L"Thickness", 0.0)};
                if (data.m_outerDiameter > 0.0 && data.m_thickness > 0.0)
                    for (const double one : classes)
                        rows.push_back({one, flange.GetAttrib(L"Dn", 0.0), data});
            });
        });
    });
}

void ReadSizes(const CVRbTreeItem& root, const wchar_t* table, const wchar_t* row, const wchar_t* size,
               std::vector<SizeRow>& rows) {
    ForEachChild(root, table, [&](const CVRbTreeItem& one) {
        ForEachChild(one, row, [&](const CVRbTreeItem& item) {
            const double length = item.GetAttrib(size, 0.0);
            if (length > 0.0)
                rows.push_back({one.GetAttrib(L"Series"), item.GetAttrib(L"Dn", 0.0), length});
        });
    });
}

constexpr double slack = 0.001;

double SizeOf(std::vector<SizeRow> Tables::*table, LPCTSTR series, double dn) {
    if (g_tables != nullptr)
        for (const SizeRow& row : g_tables.get()->*table)
            if (row.series == series && std::abs(row.dn - dn) < slack)
                return row.size;
    return 0.0;
}

bool FindFlange(double pressureClass, double dn, TFlangeData& flange) {
    if (g_tables != nullptr)
        for (const FlangeRow& row : g_tables->flanges)
            if (std::abs(row.pressureClass - pressureClass) < slack && std::abs(row.dn - dn) < slack) {
                flange = row.data;
                return true;
            }
    return false;
}

} // namespace

void SpecData::Load() {
    if (g_tables != nullptr)
        return;
    g_tables = std::make_unique<Tables>();
    CString path;
    CVRbTree tree;
    if (ZefExport::FindFile(L"SpecData.xml", path) && LoadTreeFromXml(path, tree) != 0) {
        const CVRbTreeItem& root = *tree.GetRootItem();
        ReadFlanges(root, g_tables->flanges);
        ReadSizes(root, L"Elbows", L"Elbow", L"Radius", g_tables->elbows);
        ReadSizes(root, L"Tees", L"Tee", L"CenterToEnd", g_tables->tees);
        ReadSizes(root, L"Reducers", L"Reducer", L"Length", g_tables->reducers);
    }
    g_tables->before = g_pfnGetFlangeDataByDn;
    g_pfnGetFlangeDataByDn = FindFlange;
}

void SpecData::Release() {
    if (g_tables == nullptr)
        return;
    g_pfnGetFlangeDataByDn = g_tables->before;
    g_tables.reset();
}

std::vector<CString> SpecData::GetElbowSeries() {
    std::vector<CString> series;
    if (g_tables != nullptr)
        for (const SizeRow& row : g_tables->elbows)
            if (std::ranges::find(series, row.series) == series.end())
                series.push_back(row.series);
    return series;
}

double SpecData::GetElbowRadius(LPCTSTR series, double dn) {
    return SizeOf(&Tables::elbows, series, dn);
}

double SpecData::GetTeeLength(double dn) {
    return SizeOf(&Tables::tees, L"", dn);
}

double SpecData::GetReducerLength(double dn) {
    return SizeOf(&Tables::reducers, L"", dn);
}
