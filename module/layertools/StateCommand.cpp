// The command for layer states: what all layers show, kept in the drawing by name.
#include "acdblayerstatemanager.h"
#include "aced.h"
#include "acedads.h"
#include "acutads.h"
#include "acutmem.h"
#include "dbapserv.h"
#include "dbents.h"
#include "dbsymtb.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerLooks.h"
#include "module/layertools/LayerQuestions.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"
#include "module/standard/Names.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "sys/folders.h"
#include "ui/presenter.h"

#include <algorithm>
#include <filesystem>
#include <optional>

namespace {

using Manager = AcDbLayerStateManager;
using Names = std::vector<CString>;

AcDbDatabase& Drawing() {
    return *acdbHostApplicationServices()->workingDatabase();
}

Names StateNames(AcDbDatabase& drawing, bool withHidden) {
    AcStringArray found;
    Manager(&drawing).getLayerStateNames(found, withHidden);
    Names names;
    for (const AcString& name : found)
        names.emplace_back(name.kACharPtr());
    return names;
}

// The viewport of a sheet that the user looks through; null on the Model tab.
AcDbObjectId SheetViewport() {
    const AcDbObjectId viewport = acedGetCurViewportObjectId();
    const AcRxClass* const type = viewport.objectClass();
    return type != nullptr && type->isDerivedFrom(AcDbViewport::desc()) ? viewport : AcDbObjectId();
}

CString NumberText(std::size_t number) {
    CString text;
    text.Format(L"%d", static_cast<int>(number));
    return text;
}

// A list of states, of which the user checks some.
Names ChooseStates(const Names& names, const wchar_t* title) {
    ui::dialog dialog;
    dialog.title = title;
    ui::check_list list;
    list.columns = {{L"状态名", 160}, {L"图层", 60}, {L"视口", 60}, {L"说明", 180}};
    for (const CString& name : names) {
        LayerLooks looks;
        AcString description;
        GetStateLooks(name, looks);
        Manager(&Drawing()).getLayerStateDescription(name, description);
        list.lines.push_back({{name.GetString(), NumberText(looks.m_looks.size()).GetString(),
                               looks.m_hasViewport ? L"有" : L"", description.kwszPtr()}});
    }
    dialog.lists.push_back(list);
    Names chosen;
    if (ui::run(dialog))
        for (std::size_t i = 0; i < names.size(); ++i)
            if (dialog.lists[0].lines[i].checked)
                chosen.push_back(names[i]);
    return chosen;
}

// States by name, by patterns, or from the list. Empty when the user ends it.
Names AskStates(const wchar_t* prompt) {
    for (;;) {
        CString typed;
        if (!AskName(prompt, typed) || typed.IsEmpty())
            return {};
        Names found;
        if (typed == L"?") {
            found = ChooseStates(StateNames(Drawing(), false), L"图层状态");
        } else {
            const bool isOne = Manager(&Drawing()).hasLayerState(typed);
            found = StateNames(Drawing(), isOne); // hidden ones have to be named
            std::erase_if(found, [&](const CString& name) {
                return isOne ? !IsSameName(name, typed) : !FitsName(name, typed);
            });
            if (found.empty())
                acutPrintf(L"\n没有图层状态\"%s\"！", typed.GetString());
        }
        if (!found.empty())
            return found;
    }
}

// One state; empty when the user ends it.
CString AskState(const wchar_t* prompt) {
    for (;;) {
        const Names found = AskStates(prompt);
        if (found.size() <= 1)
            return found.empty() ? CString() : found.front();
        acutPrintf(L"\n有 %d 个图层状态符合，请只选一个！", static_cast<int>(found.size()));
    }
}

bool TellFault(const CString& name, Acad::ErrorStatus status) {
    if (status == Acad::eOk)
        return false;
    const wchar_t* const why = status == Acad::eInvalidKey      ? L"名称里有不能用的字符"
                               : status == Acad::eDuplicateKey  ? L"已存在"
                               : status == Acad::eFileNotFound  ? L"文件不存在或不能读"
                               : status == Acad::eInvalidInput  ? L"不是图层状态文件"
                               : status == Acad::eFileAccessErr ? L"文件不能写"
                                                                : L"图形不能保存它";
    acdbFail(L"\n\"" + name + L"\"" + why + L"！");
    return true;
}

bool MayReplace(const CString& name) {
    CString prompt;
    prompt.Format(L"\n图层状态\"%s\"已存在，是否替换[是(Y)/否(N)]<N>:", name.GetString());
    return AskYes(prompt);
}

void Save() {
    CString name;
    if (!AskName(L"\n请输入要保存的状态名<退出>:", name) || name.IsEmpty())
        return;
    Manager states(&Drawing());
    if (states.hasLayerState(name) && !MayReplace(name))
        return;
    CString description;
    if (!AskName(L"\n请输入说明<不变>:", description))
        return;
    const AcDbObjectId viewport = SheetViewport();
    if (TellFault(name, states.saveLayerState(name, Manager::kAll, viewport)))
        return;
    if (!description.IsEmpty())
        states.setLayerStateDescription(name, description);
    acutPrintf(L"\n图层状态\"%s\"已保存：%d 个图层%s。", name.GetString(),
               static_cast<int>(GetAllLayerIds().size()), viewport.isNull() ? L"" : L"，包括当前视口的冻结");
}

// One line for each layer that differs, until Escape. How many there are.
int PrintDifferences(const LayerLooks& before, const LayerLooks& after, int mask, int most) {
    const auto later = GetByLayer(after);
    int count = 0;
    for (const LayerLook& look : before.m_looks) {
        const auto found = later.find(look.m_layer);
        if (look.m_isGone || found == later.end())
            continue;
        const CString difference = GetDifference(look, *found->second, mask);
        if (!difference.IsEmpty() && ++count <= most && acedUsrBrk() == 0)
            acutPrintf(L"\n图层\"%s\"：%s", look.m_name.GetString(), difference.GetString());
    }
    if (count > most)
        acutPrintf(L"\n……共 %d 个图层。", count);
    return count;
}

// Layers by name in one line, as far as their names are known; of long lists the end is counted.
void PrintNames(const wchar_t* what, const std::vector<const LayerLook*>& looks) {
    constexpr std::size_t most = 20;
    CString list;
    std::size_t shown = 0;
    for (const LayerLook* const look : looks)
        if (!look->m_name.IsEmpty() && shown < most) {
            list += (shown == 0 ? L"：\"" : L"，\"") + look->m_name + L"\"";
            ++shown;
        }
    if (!looks.empty())
        acutPrintf(L"\n%s %d 个%s%s。", what, static_cast<int>(looks.size()), list.GetString(),
                   shown < looks.size() && shown != 0 ? L"等" : L"");
}

std::vector<const LayerLook*> GoneOf(const LayerLooks& looks) {
    std::vector<const LayerLook*> gone;
    for (const LayerLook& look : looks.m_looks)
        if (look.m_isGone)
            gone.push_back(&look);
    return gone;
}

std::vector<const LayerLook*> MissingIn(const LayerLooks& looks, const LayerLooks& others) {
    const auto known = GetByLayer(others);
    std::vector<const LayerLook*> missing;
    for (const LayerLook& look : looks.m_looks)
        if (!look.m_isGone && !known.contains(look.m_layer))
            missing.push_back(&look);
    return missing;
}

// What becomes of layers that a state does not know; nothing when the user ends it.
std::optional<int> AskForUnknown(std::size_t count) {
    if (count == 0)
        return Manager::kUndefDoNothing;
    CString prompt;
    prompt.Format(L"\n状态不知道的图层有 %d 个，如何处理[不变(N)/关闭(O)/冻结(F)]<N>:",
                  static_cast<int>(count));
    bool isEnded = false;
    const CString answer = AskKeyword(prompt, L"N O F", isEnded);
    if (isEnded)
        return std::nullopt;
    return answer == L"O"   ? Manager::kUndefTurnOff
           : answer == L"F" ? Manager::kUndefFreeze
                            : Manager::kUndefDoNothing;
}

void Restore() {
    const CString name = AskState(L"\n请输入要恢复的状态名(?列表)<退出>:");
    LayerLooks kept;
    if (name.IsEmpty() || !GetStateLooks(name, kept))
        return;
    const AcDbObjectId viewport = SheetViewport();
    const LayerLooks before = GetDrawingLooks(viewport);
    const auto unknown = MissingIn(before, kept);
    const std::optional<int> forUnknown = AskForUnknown(unknown.size());
    if (!forUnknown)
        return;
    const Acad::ErrorStatus status = Manager(&Drawing()).restoreLayerState(name, viewport, *forUnknown);
    const LayerLooks after = GetDrawingLooks(viewport);
    constexpr int most = 20;
    const int changed = PrintDifferences(before, after, Manager::kAll, most);
    PrintNames(L"已不存在的图层", GoneOf(kept));
    PrintNames(L"状态不知道的图层", unknown);
    if (TellFault(name, status))
        return;
    acutPrintf(L"\n图层状态\"%s\"已恢复：%d 个图层改变，%d 个图层已不存在。", name.GetString(), changed,
               static_cast<int>(GoneOf(kept).size()));
    if (changed != 0) {
        RefreshLayerDisplay();
        RegenerateDisplay();
    }
}

void Rename() {
    const CString name = AskState(L"\n请输入要改名的状态名(?列表)<退出>:");
    CString newName;
    if (name.IsEmpty() || !AskName(L"\n请输入新状态名<退出>:", newName) || newName.IsEmpty())
        return;
    if (!TellFault(newName, Manager(&Drawing()).renameLayerState(name, newName)))
        acutPrintf(L"\n图层状态\"%s\"改名为\"%s\"。", name.GetString(), newName.GetString());
}

void Delete() {
    const Names names = AskStates(L"\n请输入要删除的状态名(可用通配符，?列表)<退出>:");
    int deleted = 0;
    for (const CString& name : names)
        deleted += Manager(&Drawing()).deleteLayerState(name) == Acad::eOk ? 1 : 0;
    if (!names.empty())
        acutPrintf(L"\n删除图层状态 %d 个。", deleted);
}

// Two states, or a state and the drawing as it is.
void Compare() {
    const CString first = AskState(L"\n请输入要比较的状态名(?列表)<退出>:");
    LayerLooks looks;
    if (first.IsEmpty() || !GetStateLooks(first, looks))
        return;
    CString second;
    LayerLooks others;
    for (;;) {
        if (!AskName(L"\n请输入另一个状态名<当前图形>:", second))
            return;
        if (second.IsEmpty())
            others = GetDrawingLooks(SheetViewport());
        else if (!GetStateLooks(second, others)) {
            acutPrintf(L"\n没有图层状态\"%s\"！", second.GetString());
            continue;
        }
        break;
    }
    int mask = looks.m_mask & others.m_mask;
    if (!looks.m_hasViewport || !others.m_hasViewport)
        mask &= ~Manager::kCurrentViewport;
    const int differing = PrintDifferences(looks, others, mask, INT_MAX);
    const CString other = second.IsEmpty() ? CString(L"当前图形") : L"\"" + second + L"\"";
    PrintNames(L"只在\"" + first + L"\"里的图层", MissingIn(looks, others));
    PrintNames(L"只在" + other + L"里的图层", MissingIn(others, looks));
    PrintNames(L"已不存在的图层", GoneOf(looks));
    acutPrintf(L"\n图层状态\"%s\"与%s比较：%d 个图层不同。", first.GetString(), other.GetString(), differing);
}

// The file that the user names; empty when he ends it. Escape and Enter do.
std::filesystem::path AskFile(const wchar_t* prompt, const CString& byDefault) {
    CString typed;
    if (!AskName(prompt, typed) || (typed.IsEmpty() && byDefault.IsEmpty()))
        return {};
    std::filesystem::path file = sys::to_path((typed.IsEmpty() ? byDefault : typed).GetString());
    if (!file.has_extension())
        file += ".las";
    return file;
}

CString TextOf(const std::filesystem::path& path) {
    return sys::from_path(path).c_str();
}

void Export() {
    const CString name = AskState(L"\n请输入要输出的状态名(?列表)<退出>:");
    if (name.IsEmpty())
        return;
    const std::filesystem::path file = AskFile(L"\n请输入文件名<退出>:", L"");
    if (file.empty() || TellFault(TextOf(file), Manager(&Drawing()).exportLayerState(name, TextOf(file))))
        return;
    acutPrintf(L"\n图层状态\"%s\"已输出到%s。", name.GetString(), TextOf(file).GetString());
}

// Every state of a drawing file; those of the same name are replaced when the user says so.
Acad::ErrorStatus ImportDrawing(const std::filesystem::path& file, Names& imported) {
    AcDbDatabase other(false, true);
    if (other.dxfIn(TextOf(file)) != Acad::eOk)
        return Acad::eFileNotFound;
    Manager states(&Drawing());
    for (const CString& name : StateNames(other, false)) {
        if (states.hasLayerState(name)) {
            if (!MayReplace(name))
                continue;
            states.deleteLayerState(name);
        }
        if (const Acad::ErrorStatus status = states.importLayerStateFromDb(name, &other); status != Acad::eOk)
            return status;
        imported.push_back(name);
    }
    return Acad::eOk;
}

Acad::ErrorStatus ImportFile(const std::filesystem::path& file, Names& imported) {
    Manager states(&Drawing());
    AcString name;
    Acad::ErrorStatus status = states.importLayerState(TextOf(file), name);
    if (status == Acad::eDuplicateKey) {
        if (!MayReplace(name.kACharPtr()))
            return Acad::eOk;
        states.deleteLayerState(name.kACharPtr());
        status = states.importLayerState(TextOf(file), name);
    }
    if (status == Acad::eOk)
        imported.emplace_back(name.kACharPtr());
    return status;
}

void Import() {
    const std::filesystem::path file = AskFile(L"\n请输入状态文件(.las)或图形文件(.dxf、.dwg)名<退出>:", L"");
    if (file.empty())
        return;
    const std::size_t layers = GetAllLayerIds().size();
    Names imported;
    const CString ending = TextOf(file.extension());
    const bool isDrawing = ending.CompareNoCase(L".dxf") == 0 || ending.CompareNoCase(L".dwg") == 0;
    const Acad::ErrorStatus status = isDrawing ? ImportDrawing(file, imported) : ImportFile(file, imported);
    if (TellFault(TextOf(file), status))
        return;
    CString list;
    for (const CString& name : imported)
        list += (list.IsEmpty() ? L"：\"" : L"，\"") + name + L"\"";
    acutPrintf(L"\n输入图层状态 %d 个%s，新建图层 %d 个。", static_cast<int>(imported.size()),
               list.GetString(), static_cast<int>(GetAllLayerIds().size() - layers));
}

void List() {
    const Names names = StateNames(Drawing(), false);
    for (const CString& name : names) {
        LayerLooks looks;
        AcString description;
        GetStateLooks(name, looks);
        Manager(&Drawing()).getLayerStateDescription(name, description);
        const bool isShown = Manager(&Drawing()).compareLayerStateToDb(name, SheetViewport());
        acutPrintf(L"\n\"%s\"：%d 个图层%s%s%s%s", name.GetString(), static_cast<int>(looks.m_looks.size()),
                   looks.m_hasViewport ? L"，有视口" : L"", isShown ? L"，与当前一致" : L"",
                   description.isEmpty() ? L"" : L"，", description.kACharPtr());
    }
    acutPrintf(L"\n图层状态 %d 个。", static_cast<int>(names.size()));
}

} // namespace

void CLayerToolBar::cztk() {
    const CDocumentLock lock;
    if (ZefExport::RefusesOldDrawing(L"图层状态"))
        return;
    constexpr struct {
        const wchar_t* keyword;
        void (*act)();
    } actions[] = {{L"S", Save},    {L"R", Restore}, {L"N", Rename}, {L"D", Delete},
                   {L"C", Compare}, {L"E", Export},  {L"I", Import}, {L"L", List}};
    bool isEnded = false;
    const CString answer =
        AskKeyword(L"\n图层状态[保存(S)/恢复(R)/改名(N)/删除(D)/比较(C)/输出(E)/输入(I)/列表(L)]<退出>:",
                   L"S R N D C E I L", isEnded);
    for (const auto& action : actions)
        if (answer == action.keyword)
            action.act();
}
