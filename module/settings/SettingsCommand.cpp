#include "module/settings/SettingsCommand.h"
#include "module/layertools/DrawingWalk.h"

#include "module/settings/SettingsPages.h"
#include "module/settings/SettingsQuestions.h"
#include "module/settings/StandardComparison.h"
#include "module/settings/StandardTables.h"
#include "module/standard/DefaultStandard.h"
#include "module/standard/LinetypeLibrary.h"
#include "module/standard/PipeSystemTool.h"
#include "module/standard/StandardCheck.h"
#include "module/standard/StandardFile.h"
#include "module/standard/StandardManager.h"
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

using Settings::Print;

// What linetypes and materials there are: those of the drawing and of the tables, and the one that no drawing
// is without, whether it has a record or not.
StandardKnowledge Knowledge() {
    StandardKnowledge known;
    known.linetypes.emplace_back(L"Continuous");
    GetLinetypeNames(known.linetypes);
    for (const AcDbObjectId id :
         RecordsOf(acdbHostApplicationServices()->workingDatabase()->linetypeTableId())) {
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

// False when the user has stopped it.
bool CheckFile(const CString& name) {
    std::vector<StandardFault> faults;
    CheckStandardFile(name, Knowledge(), faults);
    for (const StandardFault& fault : faults) {
        if (acedUsrBrk() != 0)
            return false;
        Print(TextOf(fault));
    }
    CString sum;
    sum.Format(L"%s: %d 个问题", name.GetString(), static_cast<int>(faults.size()));
    Print(sum);
    return true;
}

bool IsThere(const CString& name) {
    std::error_code fault;
    return std::filesystem::exists(sys::to_path(ViewOf(name)), fault);
}

// In how many places the standard differs from a file; from the built-in one where there is none.
int CountDifferences(const CStandardManager& manager, const CString& file) {
    PipeStandard saved;
    if (file.IsEmpty() || !ReadStandardFile(file, saved))
        saved = MakeDefaultStandard();
    return static_cast<int>(CompareStandards(saved, manager.Standard()).size());
}

CString UnsavedText(int count) {
    CString text;
    text.Format(L"标准有 %d 处修改没有保存", count);
    return text;
}

// ---- the choices: false when one was ended, and the command with it

// Enter leaves the name as it was. False when that was ended.
bool AskFile(const wchar_t* prompt, CString& name) {
    AcString typed;
    if (acedGetString(1, prompt, typed) != RTNORM)
        return false;
    if (!typed.isEmpty())
        name = Settings::FullStandardName(typed.kwszPtr());
    return true;
}

bool OpenStandard(CStandardManager& manager) {
    CString name;
    if (!AskFile(L"\n标准文件名 <退出>:", name))
        return false;
    if (name.IsEmpty())
        return true;
    if (const int unsaved = CountDifferences(manager, manager.FileName());
        unsaved != 0 && IsThere(name) && CountDifferences(manager, name) != 0 &&
        !Settings::AskYes(UnsavedText(unsaved) + L"，是否放弃"))
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

bool SaveTo(const CStandardManager& manager, const CString& name) {
    const bool isSaved = manager.Save(name);
    if (isSaved)
        Print(L"已保存标准文件 " + name);
    else
        acdbFail(L"\n标准文件 " + name + L" 无法保存！");
    return isSaved;
}

// The file that was written becomes `savedTo`.
bool SaveStandard(const CStandardManager& manager, CString& savedTo) {
    CString name;
    if (!AskFile(L"\n另存为标准文件 <退出>:", name))
        return false;
    if (name.IsEmpty())
        return true;
    if (IsThere(name)) {
        acedInitGet(0, L"Y N");
        ACHAR answer[8] = L"N";
        const int given = acedGetKword(L"\n文件已存在，是否替换[是(Y)/否(N)] <否>:", answer);
        if (given != RTNORM && given != RTNONE)
            return false;
        if (answer[0] != L'Y')
            return true;
    }
    if (SaveTo(manager, name))
        savedTo = name;
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
    return CheckFile(name);
}

// At the end of the command: what was changed since it was saved goes to its file when that is wanted, and
// stays in memory else.
void OfferToSave(const CStandardManager& manager, const CString& savedTo) {
    const int unsaved = CountDifferences(manager, manager.FileName());
    if (unsaved == 0 || (!savedTo.IsEmpty() && CountDifferences(manager, savedTo) == 0))
        return;
    const CString name =
        manager.FileName().IsEmpty() ? Settings::FullStandardName(L"kol.vrsl") : manager.FileName();
    if (!Settings::AskYes(UnsavedText(unsaved) + L"，是否保存到 " + name))
        return Print(L"修改只在内存中，到程序结束为止。");
    if (SaveTo(manager, name))
        CheckFile(name);
}

void PrintSummary(const CStandardManager& manager) {
    const PipeStandard& standard = manager.Standard();
    int systems = 0;
    for (const auto& group : standard.m_groups)
        systems += group->GetSystemNum();
    CString line;
    line.Format(L"系统组 %d 个，管线系统 %d 个，文字样式 %d 个", static_cast<int>(standard.m_groups.size()),
                systems, static_cast<int>(standard.m_textStyles.size()));
    Print(L"管道系统标准: " + (manager.FileName().IsEmpty() ? CString(L"内置") : manager.FileName()));
    Print(line);
    if (const int unsaved = CountDifferences(manager, manager.FileName()); unsaved != 0)
        Print(UnsavedText(unsaved));
}

constexpr const wchar_t* keywords = L"X G L A E R T Y M I D B O S C Q";
constexpr const wchar_t* prompt =
    L"\n[系统(X)/系统组(G)/图层(L)/映射(A)/归属集合(E)/规则(R)/文字样式(T)/对象颜色(Y)/管材(M)/"
    L"导入(I)/比较(D)/列表(B)/打开(O)/保存(S)/检查(C)/退出(Q) 或 路径=值] <退出>:";

// False when the command is to end.
bool RunChoice(CStandardManager& manager, wchar_t choice, CString& savedTo) {
    switch (choice) {
    case L'X':
        Settings::SystemsPage(manager);
        return true;
    case L'G':
        Settings::GroupsPage(manager);
        return true;
    case L'L':
        Settings::LayersPage(manager);
        return true;
    case L'A':
        Settings::AliasesPage(manager);
        return true;
    case L'E':
        Settings::AttachmentsPage(manager);
        return true;
    case L'R':
        Settings::RulesPage(manager);
        return true;
    case L'T':
        Settings::TextStylesPage(manager);
        return true;
    case L'Y':
        Settings::ObjectColorsPage(manager);
        return true;
    case L'M':
        Settings::MaterialsPage();
        return true;
    case L'I':
        Settings::ImportPage(manager);
        return true;
    case L'D':
        Settings::ComparePage(manager);
        return true;
    case L'B':
        return PrintStandard(manager.Standard());
    case L'O':
        return OpenStandard(manager);
    case L'S':
        return SaveStandard(manager, savedTo);
    default:
        return CheckStandard(manager);
    }
}

} // namespace

void EditStandard() {
    CStandardManager& manager = CStandardManager::Create();
    PrintSummary(manager);
    CString savedTo;
    Settings::Begin();
    for (bool goesOn = true; goesOn && !Settings::IsEnded();) {
        acedInitGet(RSG_OTHER, keywords);
        AcString answer;
        const int given = acedGetKword(prompt, answer);
        const CString word = answer.kwszPtr();
        if (given == RTCAN)
            return;
        if (given != RTNORM || word == L"Q")
            return OfferToSave(manager, savedTo);
        if (word.GetLength() == 1 && CString(keywords).Find(word) >= 0)
            goesOn = RunChoice(manager, word[0], savedTo);
        else
            Settings::Assign(manager, word);
    }
}
