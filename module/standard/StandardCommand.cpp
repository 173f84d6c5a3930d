#include "module/standard/StandardCommand.h"

#include "module/standard/LineWeightText.h"
#include "module/standard/LinetypeLibrary.h"
#include "module/standard/PipeSystemTool.h"
#include "module/standard/StandardCheck.h"
#include "module/standard/StandardManager.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "sys/folders.h"

#include "aced.h"
#include "acutads.h"
#include "dbobjptr.h"
#include "dbsymtb.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <system_error>

namespace {

// How many columns of a screen a text takes: signs of the East take two.
int WidthOf(const CString& text) {
    int width = 0;
    for (int i = 0; i < text.GetLength(); ++i)
        width += text[i] >= 0x1100 ? 2 : 1;
    return width;
}

CString Padded(const CString& text, int width) {
    CString padded = text;
    for (int i = WidthOf(text); i < width; ++i)
        padded += L' ';
    return padded;
}

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

void PrintStandard(const PipeStandard& standard) {
    for (const auto& group : standard.m_groups) {
        Print(L"系统组 " + group->GroupName());
        for (const auto& system : group->Systems()) {
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
        CString line = L"  " + Padded(material.m_name, 18) + Padded(material.m_source, 22);
        for (const PipeDiameter& row : material.m_diameters) {
            CString diameter;
            diameter.Format(L" %g", row.m_dn);
            line += diameter;
        }
        Print(line);
    }
}

// A path as typed: a name without a folder lies in the system folder.
CString FullName(const CString& typed) {
    CString name = typed;
    if (name.Right(5).CompareNoCase(L".vrsl") != 0)
        name += L".vrsl";
    if (name.FindOneOf(L"\\/") >= 0)
        return name;
    return sys::from_path(sys::system_folder() / sys::to_path(ViewOf(name))).c_str();
}

bool AskFile(const wchar_t* prompt, CString& name) {
    constexpr std::size_t size = 512;
    ACHAR typed[size] = {};
    if (acedGetString(1, prompt, typed, size) != RTNORM || typed[0] == 0)
        return false;
    name = FullName(typed);
    return true;
}

// What linetypes and materials there are: those of the drawing and of the tables.
StandardKnowledge Knowledge() {
    StandardKnowledge known;
    GetLinetypeNames(known.linetypes);
    const AcDbLinetypeTablePointer table(acdbHostApplicationServices()->workingDatabase()->linetypeTableId());
    AcDbSymbolTableIterator* made = nullptr;
    if (table.openStatus() == Acad::eOk && table->newIterator(made) == Acad::eOk)
        for (const std::unique_ptr<AcDbSymbolTableIterator> each(made); !each->done(); each->step()) {
            AcDbObjectId id;
            each->getRecordId(id);
            const AcDbObjectPointer<AcDbLinetypeTableRecord> linetype(id, AcDb::kForRead);
            AcString name;
            if (linetype.openStatus() == Acad::eOk && linetype->getName(name) == Acad::eOk)
                known.linetypes.emplace_back(name.kACharPtr());
        }
    GetPipeMaterialList(known.materials);
    return known;
}

void OpenStandard(CStandardManager& manager) {
    CString name;
    if (AskFile(L"\n标准文件名 <退出>:", name) && manager.Load(name, true))
        Print(L"已打开标准文件 " + name);
}

void SaveStandard(CStandardManager& manager) {
    CString name;
    if (!AskFile(L"\n另存为标准文件 <退出>:", name))
        return;
    if (manager.Save(name))
        Print(L"已保存标准文件 " + name);
    else
        acdbFail(L"\n标准文件 " + name + L" 无法保存！");
}

void CheckStandard(const CStandardManager& manager) {
    CString name = manager.FileName();
    AskFile(L"\n要检查的标准文件 <当前>:", name);
    std::vector<StandardFault> faults;
    CheckStandardFile(name, Knowledge(), faults);
    for (const StandardFault& fault : faults) {
        CString line;
        line.Format(L"第 %d 行 %s: %s", fault.line, fault.element.GetString(), fault.what.GetString());
        Print(line);
    }
    CString sum;
    sum.Format(L"%s: %d 个问题", name.GetString(), static_cast<int>(faults.size()));
    Print(sum);
}

} // namespace

void ShowStandard() {
    CStandardManager& manager = CStandardManager::Create();
    Print(L"管道系统标准: " + (manager.FileName().IsEmpty() ? CString(L"内置") : manager.FileName()));
    PrintStandard(manager.Standard());
    for (;;) {
        acedInitGet(0, L"O S C");
        ACHAR answer[8] = {};
        if (acedGetKword(L"\n[打开(O)/保存(S)/检查(C)] <退出>:", answer) != RTNORM)
            return;
        switch (answer[0]) {
        case L'O':
            OpenStandard(manager);
            break;
        case L'S':
            SaveStandard(manager);
            break;
        default:
            CheckStandard(manager);
        }
    }
}
