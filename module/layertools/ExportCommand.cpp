// The command that writes layers with all that is on them to drawing files.
#include "acedads.h"
#include "acutads.h"
#include "dbapserv.h"
#include "dbmain.h"
#include "module/layertools/LayerExport.h"
#include "module/layertools/LayerQuestions.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"
#include "sys/folders.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>

namespace {

namespace fs = std::filesystem;
using Layers = std::vector<AcDbObjectId>;

constexpr wchar_t layerSign = L'*'; // in a file name stands for the layer's

CString TextOf(const fs::path& path) {
    return sys::from_path(path).c_str();
}

// How the user wants it.
struct Wishes {
    bool m_eachAlone = false; // a file for each layer
    bool m_takesApart = false;
    const FileVersion* m_version = nullptr; // that of the current drawing
    CString m_fileName;                     // with the layer sign where each is alone
};

std::optional<bool> AskYesOrNo(const wchar_t* prompt) {
    bool isEnded = false;
    const CString answer = AskKeyword(prompt, L"Y N", isEnded);
    return isEnded ? std::nullopt : std::optional(answer == L"Y");
}

// False when the user ends it.
bool AskVersion(const FileVersion*& version) {
    CString keywords;
    CString shown;
    for (const FileVersion& each : GetFileVersions()) {
        keywords += keywords.IsEmpty() ? L"" : L" ";
        keywords += each.m_name;
        shown += shown.IsEmpty() ? L"" : L"/";
        shown += each.m_name;
    }
    bool isEnded = false;
    const CString answer =
        AskKeyword(L"\n请选择文件版本[" + shown + L"]<与当前图形相同>:", keywords, isEnded);
    version = nullptr;
    for (const FileVersion& each : GetFileVersions())
        if (answer == each.m_name)
            version = &each;
    return !isEnded;
}

// Beside the current drawing, as "plan-*.dxf" for "plan.dxf".
CString PatternByDefault() {
    const ACHAR* own = nullptr;
    fs::path stem = L"drawing";
    fs::path folder;
    if (acdbHostApplicationServices()->workingDatabase()->getFilename(own) == Acad::eOk && own != nullptr &&
        *own != 0) {
        stem = sys::to_path(own).stem();
        folder = sys::to_path(own).parent_path();
    }
    return TextOf(folder / stem) + L"-" + layerSign + L".dxf";
}

bool AskFileName(Wishes& wishes) {
    if (!wishes.m_eachAlone)
        return AskName(L"\n请输入文件名<退出>:", wishes.m_fileName) && !wishes.m_fileName.IsEmpty();
    const CString byDefault = PatternByDefault();
    for (;;) {
        if (!AskName(L"\n请输入文件名(*代表图层名)<" + byDefault + L">:", wishes.m_fileName))
            return false;
        if (wishes.m_fileName.IsEmpty())
            wishes.m_fileName = byDefault;
        if (TextOf(sys::to_path(wishes.m_fileName.GetString()).filename()).Find(layerSign) >= 0)
            return true;
        acutPrintf(L"\n文件名里没有代表图层名的*！");
    }
}

bool AskWishes(Wishes& wishes) {
    const std::optional<bool> eachAlone = AskYesOrNo(L"\n是否每个图层一个文件[是(Y)/否(N)]<N>:");
    if (!eachAlone)
        return false;
    const std::optional<bool> takesApart = AskYesOrNo(L"\n是否分解自定义实体[是(Y)/否(N)]<N>:");
    if (!takesApart)
        return false;
    wishes.m_eachAlone = *eachAlone;
    wishes.m_takesApart = *takesApart;
    return AskVersion(wishes.m_version) && AskFileName(wishes);
}

// A layer's name as a part of a file name: nothing in it leads to another folder.
CString PartOfFileName(const CString& layer) {
    CString part = layer;
    for (const wchar_t c : {L'<', L'>', L'/', L'\\', L'"', L':', L';', L'?', L'*', L'|', L',', L'=', L'`'})
        part.Replace(c, L'_');
    return part;
}

fs::path WithExtension(const CString& name) {
    fs::path path = sys::to_path(name.GetString());
    if (CString(TextOf(path.extension())).CompareNoCase(L".dxf") != 0)
        path += ".dxf";
    return path;
}

// The file for a layer; another one where a layer before it has that name.
fs::path FileFor(const CString& pattern, const CString& layer, std::set<CString>& taken) {
    const int sign = pattern.ReverseFind(layerSign);
    const CString behind = pattern.Mid(sign + 1);
    for (int number = 1;; ++number) {
        CString part = PartOfFileName(layer);
        if (number > 1)
            part.AppendFormat(L"-%d", number);
        const fs::path path = WithExtension(pattern.Left(sign) + part + behind);
        CString folded = TextOf(path);
        folded.MakeLower();
        if (taken.insert(folded).second)
            return path;
    }
}

bool IsDrawingItself(const fs::path& path) {
    const ACHAR* own = nullptr;
    std::error_code ignored;
    return acdbHostApplicationServices()->workingDatabase()->getFilename(own) == Acad::eOk &&
           own != nullptr && fs::equivalent(sys::to_path(own), path, ignored);
}

// Whether the file may be written, after a word with the user where there is one.
bool MayWrite(const fs::path& path) {
    if (IsDrawingItself(path)) {
        acdbFail(L"\n输出的文件不能覆盖当前图形！");
        return false;
    }
    std::error_code ignored;
    return !fs::exists(path, ignored) ||
           AskYes(L"\n文件\"" + TextOf(path) + L"\"已存在，是否替换[是(Y)/否(N)]<N>:");
}

// Layers of references have nothing of this drawing on them.
void KeepOwn(Layers& layers) {
    std::erase_if(layers, [](AcDbObjectId layer) {
        const CString name = GetLayerName(layer);
        const bool isDependent = name.Find(L'|') >= 0;
        if (isDependent)
            acutPrintf(L"\n图层\"%s\"是外部参照的图层，不能输出。", name.GetString());
        return isDependent;
    });
}

// What all files together got.
struct Total {
    int m_files = 0;
    int m_layers = 0;
    int m_entities = 0;
    int m_followed = 0;
    int m_takenApart = 0;
    int m_kept = 0;
};

// False when the rest is not to be tried.
bool ExportTo(const Layers& layers, const fs::path& path, const Wishes& wishes, Total& total) {
    CLayerExport work(layers);
    for (const AcDbObjectId layer : work.GetEmptyLayers())
        acutPrintf(L"\n图层\"%s\"上没有图元，不输出。", GetLayerName(layer).GetString());
    if (work.GetCount() == 0)
        return true;
    if (!MayWrite(path))
        return true;
    const CString name = TextOf(path);
    if (work.Make(wishes.m_takesApart) != Acad::eOk || work.Write(name, wishes.m_version) != Acad::eOk) {
        acdbFail(L"\n\"" + name + L"\"不能输出！");
        return false;
    }
    ++total.m_files;
    total.m_layers += static_cast<int>(layers.size() - work.GetEmptyLayers().size());
    total.m_entities += work.GetCount();
    total.m_followed += work.GetFollowed();
    total.m_takenApart += work.GetTakenApart();
    total.m_kept += work.GetKept();
    if (wishes.m_eachAlone)
        acutPrintf(L"\n%s：%d 个图元", name.GetString(), work.GetCount());
    return true;
}

Total Export(const Layers& layers, const Wishes& wishes) {
    Total total;
    if (!wishes.m_eachAlone) {
        ExportTo(layers, WithExtension(wishes.m_fileName), wishes, total);
        return total;
    }
    std::set<CString> taken;
    for (const AcDbObjectId layer : layers)
        if (!ExportTo({layer}, FileFor(wishes.m_fileName, GetLayerName(layer), taken), wishes, total))
            break;
    return total;
}

} // namespace

void CLayerToolBar::tcdc() {
    Layers layers = AskLayers({[] { return L"\n请选择要输出图层上的图元[层名(N)/列表(D)]<退出>:"; },
                               L"\n请输入要输出的图层名(可用通配符，多个用逗号分开):", L"输出图层"});
    if (layers.empty())
        return;
    KeepOwn(layers);
    Wishes wishes;
    if (layers.empty() || !AskWishes(wishes))
        return;
    const Total total = Export(layers, wishes);
    if (total.m_files == 0)
        return;
    acutPrintf(
        L"\n输出 %d 个图层的 %d 个图元到 %d 个文件%s。", total.m_layers, total.m_entities, total.m_files,
        wishes.m_eachAlone ? L"" : (L"\"" + TextOf(WithExtension(wishes.m_fileName)) + L"\"").GetString());
    if (total.m_followed > 0)
        acutPrintf(L"\n另有 %d 个图元被它们引用，一同输出。", total.m_followed);
    if (total.m_takenApart > 0)
        acutPrintf(L"\n%d 个自定义实体已分解。", total.m_takenApart);
    if (total.m_kept > 0)
        acutPrintf(L"\n%d 个自定义实体不能分解，保持原样。", total.m_kept);
}
