#include "module/settings/StandardTables.h"

#include "module/standard/LineWeightText.h"
#include "module/standard/TextColumns.h"
#include "siblings/zef_public/PipeMaterials.h"

#include "aced.h"
#include "acutads.h"

namespace {

CString NumberText(double number) {
    CString text;
    text.Format(L"%.2f", number);
    return text;
}

void Print(const CString& line) {
    acutPrintf(L"\n%s", line.GetString());
}

void PrintLayer(const CString& key, const LayerNode& layer) {
    CString line = L"    " + Padded(key, 18) + Padded(layer.m_layerName, 24) +
                   Padded(GetColorText(layer.m_color), 12) + Padded(layer.m_linetype, 14) +
                   Padded(GetLineWeightText(layer.m_lineWeight), 6);
    if (!layer.m_canPlot)
        line += L"不打印";
    line.TrimRight();
    Print(line);
}

void PrintAliases(const LayerSet& layers) {
    for (const auto& [source, destination] : layers.LayerTypeMap())
        Print(L"    " + Padded(source, 18) + L"同 " + destination);
}

// Whether the user pressed Escape while it is printed.
bool IsStopped() {
    return acedUsrBrk() != 0;
}

} // namespace

bool PrintStandard(const PipeStandard& standard) {
    for (const auto& group : standard.m_groups) {
        Print(L"系统组 " + group->GroupName());
        for (const auto& system : group->Systems()) {
            if (IsStopped())
                return false;
            CString line = L"  " + Padded(system->m_name, 20) + Padded(system->m_dim, 8) + L"线宽 " +
                           NumberText(system->m_lineWidth) + L"  管材 " + system->m_material;
            if (!system->m_outdoorMaterial.IsEmpty() && system->m_outdoorMaterial != system->m_material)
                line += L"，室外 " + system->m_outdoorMaterial;
            Print(line);
            for (const auto& layer : system->Layers())
                PrintLayer(layer->m_layerType, *layer);
            PrintAliases(*system);
        }
    }
    for (const auto& group : standard.m_otherLayers) {
        if (IsStopped())
            return false;
        Print(L"其他图层 " + group->m_layerType);
        for (const auto& layer : group->Layers())
            PrintLayer(layer->m_layerKey, *layer);
        PrintAliases(*group);
    }
    Print(L"文字样式");
    for (const TextStyleNode& style : standard.m_textStyles)
        Print(L"  " + Padded(style.m_key, 12) + Padded(style.m_name, 18) + Padded(style.m_chineseFont, 10) +
              Padded(style.m_englishFont, 12) + L"字高 " + NumberText(style.m_height) + L"  宽高比 " +
              NumberText(style.m_scale));
    Print(L"管材");
    for (const PipeMaterial& material : GetPipeMaterials()) {
        if (IsStopped())
            return false;
        CString line = L"  " + Padded(material.m_name, 18) + Padded(material.m_source, 22);
        for (const PipeDiameter& row : material.m_diameters) {
            CString diameter;
            diameter.Format(L" %g", row.m_dn);
            line += diameter;
        }
        Print(line);
    }
    return true;
}
