#include "module/standard/PipeSystemTool.h"

#include "siblings/zef_public/PipeMaterials.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

const PipeMaterial* FindMaterial(LPCTSTR name) {
    const std::vector<PipeMaterial>& all = GetPipeMaterials();
    const auto found =
        std::ranges::find_if(all, [name](const PipeMaterial& one) { return one.m_name == name; });
    return found != all.end() ? &*found : nullptr;
}

// The place of the first entry of a list that has the name without case, else 0.
template<class NameAt>
int PlaceOf(int count, NameAt nameAt, LPCTSTR name) {
    const CString wanted(name);
    for (int i = 0; i < count; ++i)
        if (IsSameName(nameAt(i), wanted))
            return i;
    return 0;
}

} // namespace

namespace PipeSystemTool {

int GetMaterialIndex(LPCTSTR material) {
    const std::vector<PipeMaterial>& all = GetPipeMaterials();
    return PlaceOf(
        static_cast<int>(all.size()), [&](int i) { return all[static_cast<std::size_t>(i)].m_name; },
        material);
}

int GetMaterialIndex(const TWCStringList& list, LPCTSTR material) {
    return PlaceOf(
        list.GetCount(), [&](int i) { return list.GetAt(i); }, material);
}

int GetIndexOfPIpeMaterial(LPCTSTR material) {
    const PipeMaterial* const found = FindMaterial(material);
    return found != nullptr ? static_cast<int>(found - GetPipeMaterials().data()) : -1;
}

CString GetPipeMaterialByIndex(int index) {
    return GetPipeMaterialByIdx(index);
}

int GetPipeMaterialIndex(LPCTSTR systemName, PipeMaterialEnum use) {
    return GetIndexOfPIpeMaterial(GetPipeMaterial(systemName, use));
}

CString GetPrefixOfPipeMaterial(LPCTSTR material) {
    const PipeMaterial* const found = FindMaterial(material);
    return found != nullptr ? found->m_prefix : CString();
}

CString GetPrefixOfPipeMaterial(int index) {
    return GetPrefixOfPipeMaterial(GetPipeMaterialByIndex(index));
}

bool GetPipeDnByMaterial(LPCTSTR material, TDPtrList<int>& diameters) {
    if (const PipeMaterial* const found = FindMaterial(material))
        for (const PipeDiameter& row : found->m_diameters)
            diameters.Append(std::make_unique<int>(static_cast<int>(std::lrint(row.m_dn))).release());
    return diameters.GetCount() > 0;
}

double GetPipeInnerDn(LPCTSTR material, double dn) {
    const PipeDiameter* const row = FindPipeDiameter(material, dn);
    return row != nullptr ? row->m_inner : dn;
}

double GetPipeOuterDn(LPCTSTR material, double dn) {
    const PipeDiameter* const row = FindPipeDiameter(material, dn);
    return row != nullptr ? row->m_outer : dn;
}

double GetPipeThick(LPCTSTR material, double dn) {
    const PipeDiameter* const row = FindPipeDiameter(material, dn);
    return row != nullptr ? row->m_outer - row->m_inner : 0.0;
}

} // namespace PipeSystemTool
