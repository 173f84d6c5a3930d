#include "siblings/zef_public/PipeMaterials.h"

#include "sys/dbase_file.h"
#include "sys/folders.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr int gbk = 936;
constexpr double metre = 1000.0;

struct Fields {
    std::size_t material, prefix, use, dn, outer, inner, source;
};

std::optional<Fields> FieldsOf(const base::dbase_table& table) {
    const auto material = table.find_field(L"MATERIAL");
    const auto prefix = table.find_field(L"PREFIX");
    const auto use = table.find_field(L"USE");
    const auto dn = table.find_field(L"DN");
    const auto outer = table.find_field(L"OUTER");
    const auto inner = table.find_field(L"INNER");
    const auto source = table.find_field(L"SOURCE");
    if (!material || !prefix || !use || !dn || !outer || !inner || !source)
        return std::nullopt;
    return Fields{*material, *prefix, *use, *dn, *outer, *inner, *source};
}

// Rows without a name or a diameter are passed over, and those that are deleted.
std::vector<PipeMaterial> Read() {
    std::vector<PipeMaterial> materials;
    const auto table = sys::read_dbase(sys::find_without_case(sys::system_folder(), "pipe.dbf"), gbk);
    const auto fields = table ? FieldsOf(*table) : std::nullopt;
    if (!fields)
        return materials;
    for (std::size_t row = 0; row < table->row_count(); ++row) {
        const CString name = table->text(row, fields->material).c_str();
        const auto dn = table->number(row, fields->dn);
        const auto outer = table->number(row, fields->outer);
        const auto inner = table->number(row, fields->inner);
        if (table->is_deleted(row) || name.IsEmpty() || !dn || !outer || !inner)
            continue;
        auto material = std::ranges::find(materials, name, &PipeMaterial::m_name);
        if (material == materials.end()) {
            const std::wstring use = table->text(row, fields->use);
            materials.push_back({name,
                                 table->text(row, fields->prefix).c_str(),
                                 use == L"I" || use == L"B",
                                 use == L"O" || use == L"B",
                                 table->text(row, fields->source).c_str(),
                                 {}});
            material = materials.end() - 1;
        }
        material->m_diameters.push_back({*dn, *outer, *inner});
    }
    return materials;
}

// None until somebody asks.
std::optional<std::vector<PipeMaterial>> g_materials;

const std::vector<PipeMaterial>& Materials() {
    if (!g_materials)
        g_materials = Read();
    return *g_materials;
}

} // namespace

const std::vector<PipeMaterial>& GetPipeMaterials() {
    return Materials();
}

void ReloadPipeMaterials() {
    if (g_materials)
        g_materials = Read();
}

void GetPipeMaterialList(std::vector<CString>& names) {
    for (const PipeMaterial& material : Materials())
        names.push_back(material.m_name);
}

CString GetPipeMaterialByIdx(int index) {
    const std::vector<PipeMaterial>& all = Materials();
    return index >= 0 && static_cast<std::size_t>(index) < all.size()
               ? all[static_cast<std::size_t>(index)].m_name
               : CString();
}

CString GetDnByMat(LPCTSTR material) {
    const auto one = std::ranges::find(Materials(), CString(material), &PipeMaterial::m_name);
    return one != Materials().end() && !one->m_prefix.IsEmpty() ? one->m_prefix : L"DN";
}

const PipeDiameter* FindPipeDiameter(LPCTSTR material, double dn) {
    constexpr double slack = 0.001;
    const auto one = std::ranges::find(Materials(), CString(material), &PipeMaterial::m_name);
    if (one == Materials().end())
        return nullptr;
    const auto row = std::ranges::find_if(one->m_diameters, [dn](const PipeDiameter& diameter) {
        return std::abs(diameter.m_dn - dn) < slack;
    });
    return row != one->m_diameters.end() ? &*row : nullptr;
}

double GetPipeOutDByDn(LPCTSTR material, double dn) {
    const PipeDiameter* const found = FindPipeDiameter(material, dn);
    return (found != nullptr ? found->m_outer : dn) / metre;
}

double GetPipeDjByDn(LPCTSTR material, double dn) {
    const PipeDiameter* const found = FindPipeDiameter(material, dn);
    return (found != nullptr ? found->m_inner : dn) / metre;
}
