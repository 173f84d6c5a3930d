#include "module/frame/SpecData.h"

#include "module/engines/VRbTree.h"
#include "module/engines/VRbTreeXml.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/TFlange.h"

#include <cmath>
#include <memory>
#include <vector>

namespace {

struct FlangeRow {
    double pressureClass = 0;
    double dn = 0;
    TFlangeData data;
};

struct Tables {
    std::vector<FlangeRow> flanges;
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

bool FindFlange(double pressureClass, double dn, TFlangeData& flange) {
    constexpr double slack = 0.001;
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
    if (ZefExport::FindFile(L"SpecData.xml", path) && LoadTreeFromXml(path, tree) != 0)
        ReadFlanges(*tree.GetRootItem(), g_tables->flanges);
    g_tables->before = g_pfnGetFlangeDataByDn;
    g_pfnGetFlangeDataByDn = FindFlange;
}

void SpecData::Release() {
    if (g_tables == nullptr)
        return;
    g_pfnGetFlangeDataByDn = g_tables->before;
    g_tables.reset();
}
