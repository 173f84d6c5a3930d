#include "module/standard/StandardCommand.h"

#include "module/standard/LineWeightText.h"
#include "module/standard/LinetypeLibrary.h"
#include "module/standard/PipeSystemTool.h"
#include "module/standard/StandardCheck.h"
#include "module/standard/StandardManager.h"
#include "module/standard/TextColumns.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "sys/folders.h"

#include "aced.h"
#include "acutads.h"
#include "dbobjptr.h"
#include "dbsymtb.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>

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

// False when the user has stopped it.
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

// A path as typed: a name without a folder lies in the system folder.
CString FullName(const CString& typed) {
    CString name = typed;
    if (name.Right(5).CompareNoCase(L".vrsl") != 0)
        name += L".vrsl";
    const std::filesystem::path path = sys::to_path(ViewOf(name));
    return name.FindOneOf(L"\\/") < 0 ? CString(sys::from_path(sys::system_folder() / path).c_str()) : name;
}

// Enter leaves the name as it was. False when that was ended.
bool AskFile(const wchar_t* prompt, CString& name) {
    AcString typed;
    if (acedGetString(1, prompt, typed) != RTNORM)
        return false;
    if (!typed.isEmpty())
        name = FullName(typed.kwszPtr());
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
    known.materials = GetPipeMaterials();
    return known;
}

CString TextOf(const StandardFault& fault) {
    if (fault.line == 0)
        return fault.what;
    CString place;
    place.Format(L"第 %d 行 %s", fault.line, fault.element.GetString());
    return place.TrimRight() + L": " + fault.what;
}

// ---- the choices: false when one was ended, and the command with it

bool OpenStandard(CStandardManager& manager) {
    CString name;
    if (!AskFile(L"\n标准文件名 <退出>:", name))
        return false;
    if (name.IsEmpty())
        return true;
    if (manager.Load(name, true)) {
        Print(L"已打开标准文件 " + manager.FileName());
        if (!manager.Fault().IsEmpty())
            Print(manager.Fault());
        const auto& groups = manager.Standard().m_groups;
        if (std::ranges::all_of(groups, [](const auto& group) { return group->IsEmpty(); }))
            Print(L"其中没有管线系统！"); // most likely another kind of file: no choice for the next start
        else
            manager.Remember();
        return true;
    }
    acdbFail(L"\n" + manager.Fault());
    return true;
}

bool SaveStandard(CStandardManager& manager) {
    CString name;
    if (!AskFile(L"\n另存为标准文件 <退出>:", name))
        return false;
    std::error_code fault;
    if (!name.IsEmpty() && std::filesystem::exists(sys::to_path(ViewOf(name)), fault)) {
        acedInitGet(0, L"Y N");
        ACHAR answer[8] = L"N";
        const int given = acedGetKword(L"\n文件已存在，是否替换[是(Y)/否(N)] <否>:", answer);
        if (given != RTNORM && given != RTNONE)
            return false;
        if (answer[0] != L'Y')
            return true;
    }
    if (name.IsEmpty())
        return true;
    if (manager.Save(name))
        Print(L"已保存标准文件 " + name);
    else
        acdbFail(L"\n标准文件 " + name + L" 无法保存！");
    return true;
}

bool CheckStandard(const CStandardManager& manager) {
    CString name = manager.FileName();
    if (!AskFile(L"\n要检查的标准文件 <当前>:", name))
        return false;
    if (name.IsEmpty()) {
        Print(L"内置标准没有文件");
        return true;
    }
    std::vector<StandardFault> faults;
    CheckStandardFile(name, Knowledge(), faults);
    for (const StandardFault& fault : faults) {
        if (IsStopped())
            return false;
        Print(TextOf(fault));
    }
    CString sum;
    sum.Format(L"%s: %d 个问题", name.GetString(), static_cast<int>(faults.size()));
    Print(sum);
    return true;
}

} // namespace

void ShowStandard() {
    CStandardManager& manager = CStandardManager::Create();
    Print(L"管道系统标准: " + (manager.FileName().IsEmpty() ? CString(L"内置") : manager.FileName()));
    if (!PrintStandard(manager.Standard()))
        return;
    for (bool goesOn = true; goesOn;) {
        acedInitGet(0, L"O S C");
        ACHAR answer[8] = {};
        if (acedGetKword(L"\n[打开(O)/保存(S)/检查(C)] <退出>:", answer) != RTNORM)
            return;
        switch (answer[0]) {
        case L'O':
            goesOn = OpenStandard(manager);
            break;
        case L'S':
            goesOn = SaveStandard(manager);
            break;
        default:
            goesOn = CheckStandard(manager);
        }
    }
}
