#include "module/frame/SettingsTransfer.h"

#include "acedads.h"
#include "acutads.h"
#include "module/frame/DrawingDefaults.h"
#include "module/frame/Options.h"
#include "module/frame/SettingsFolder.h"
#include "module/standard/LinetypeLibrary.h"
#include "module/standard/PipeSystemTool.h"
#include "module/standard/StandardManager.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "sys/folders.h"
#include "ui/presenter.h"

#include <filesystem>
#include <optional>
#include <system_error>

namespace fs = std::filesystem;

namespace SettingsTransfer {

namespace {

constexpr const wchar_t* settingsFile = L"setting.ini";
constexpr const wchar_t* configFile = L"CmdConfig.xml";
constexpr const wchar_t* aliasFile = L"acad.pgp";
constexpr const wchar_t* toolBarFile = L"zefdata.dbf";
constexpr const wchar_t* linetypeFile = L"linetype.dbf";
constexpr const wchar_t* materialFile = L"pipe.dbf";
constexpr const wchar_t* symbolFiles[] = {L"VALVE_U.TK",  L"VALVE_U.SLB",  L"VALVE_U.DWB",
                                          L"EVALVE_U.TK", L"EVALVE_U.SLB", L"EVALVE_U.DWB"};

CString TextOf(const fs::path& path) {
    return sys::from_path(path).c_str();
}

class CExport {
public:
    explicit CExport(fs::path folder) : m_folder(std::move(folder)) {}

    void WriteOptions() {
        if (OptionTool::WriteSettingsFile(TextOf(m_folder / settingsFile)))
            ++m_count;
    }
    // A file that the add-on does not have is passed over.
    void Copy(LPCTSTR name) {
        CString path;
        if (ZefExport::FindFile(name, path) &&
            SettingsFolder::Copy(sys::to_path(path.GetString()), m_folder / sys::to_path(name)))
            ++m_count;
    }
    int GetCount() const { return m_count; }

private:
    fs::path m_folder;
    int m_count = 0;
};

class CImport {
public:
    explicit CImport(fs::path folder) : m_folder(std::move(folder)) {}

    void ReadOptions() {
        if (OptionTool::ReadSettingsFile(TextOf(m_folder / settingsFile)))
            ++m_count;
    }
    // Over the add-on's file of that name, or into the system folder when it has none. Whether there is one
    // in the folder and it could be copied.
    bool Copy(LPCTSTR name) {
        const fs::path from = SettingsFolder::FindFile(m_folder, sys::to_path(name));
        CString to = g_csSysPath + name;
        ZefExport::FindFile(name, to);
        const bool isCopied = !from.empty() && SettingsFolder::Copy(from, sys::to_path(to.GetString()));
        m_count += isCopied ? 1 : 0;
        return isCopied;
    }
    int GetCount() const { return m_count; }

private:
    fs::path m_folder;
    int m_count = 0;
};

void ReloadStandard() {
    CStandardManager& manager = CStandardManager::Create();
    if (!manager.FileName().IsEmpty()) {
        manager.Reload();
        return;
    }
    // The built-in one counted because there was no file.
    CStandardManager::Release();
    CStandardManager::Create().ChooseAndLoad();
}

// A path as typed, whole; Enter gives the default. Nothing when the question was cancelled, or there is no
// folder to go by.
std::optional<fs::path> AskFolder(const CString& prompt, const fs::path& byDefault) {
    AcString typed;
    if (acedGetString(1, prompt, typed) != RTNORM)
        return std::nullopt;
    if (typed.isEmpty())
        return byDefault.empty() ? std::nullopt : std::optional(byDefault);
    std::error_code fault;
    const fs::path folder = fs::absolute(sys::to_path(typed.kwszPtr()), fault);
    return fault ? std::nullopt : std::optional(folder);
}

void TellCount(const wchar_t* done, int count, const fs::path& folder) {
    acutPrintf(L"\n%s %d 个文件: %s", done, count, TextOf(folder).GetString());
}

} // namespace

int Export(LPCTSTR folder, const Groups& groups) {
    const fs::path target = sys::to_path(folder);
    if (const CString why = SettingsFolder::WhyNotEmptied(target); !why.IsEmpty()) {
        acutPrintf(L"\n不能导出到 %s: %s。", folder, why.GetString());
        return -1;
    }
    if (!SettingsFolder::Prepare(target))
        return 0;
    CExport to(target);
    if (groups[kInitial]) {
        to.WriteOptions();
        to.Copy(configFile);
    }
    if (groups[kAliases])
        to.Copy(aliasFile);
    if (groups[kToolBars])
        to.Copy(toolBarFile);
    if (groups[kLayers]) {
        std::vector<CString> names;
        PipeSystemTool::GetPipeSystemStandardFiles(names);
        for (const CString& name : names)
            to.Copy(name);
    }
    if (groups[kLinetypes])
        to.Copy(linetypeFile);
    if (groups[kMaterials])
        to.Copy(materialFile);
    if (groups[kSymbols])
        for (const wchar_t* const name : symbolFiles)
            to.Copy(name);
    return to.GetCount();
}

int Import(LPCTSTR folder) {
    CImport from(sys::to_path(folder));
    from.ReadOptions();
    from.Copy(aliasFile);
    from.Copy(toolBarFile);
    std::vector<CString> names;
    PipeSystemTool::GetPipeSystemStandardFiles(folder, names);
    bool hasStandards = false;
    for (const CString& name : names)
        hasStandards = from.Copy(name) || hasStandards;
    if (hasStandards)
        ReloadStandard();
    if (from.Copy(linetypeFile))
        ReloadLinetypes();
    if (from.Copy(materialFile))
        ReloadPipeMaterials();
    for (const wchar_t* const name : symbolFiles)
        from.Copy(name);
    if (from.Copy(configFile))
        LoadDrawingDefaults();
    return from.GetCount();
}

void ExportCommand() {
    constexpr const wchar_t* labels[] = {L"初始设置", L"快捷命令 acad.pgp", L"工具条设置",
                                         L"线型库",   L"图层设置",          L"管材库",
                                         L"用户图库", L"导出到指定文件夹"};
    static_assert(std::size(labels) == kGroupCount + 1);
    ui::dialog dialog;
    dialog.title = L"导出设置";
    ui::check_list boxes;
    boxes.columns = {{L"导出设置", 200}};
    for (const wchar_t* const label : labels)
        boxes.lines.push_back({{label}, true});
    boxes.lines.back().checked = false;
    dialog.lists = {boxes};
    if (!ui::run(dialog))
        return;
    const std::vector<ui::line>& lines = dialog.lists.front().lines;
    Groups groups{};
    for (std::size_t i = 0; i < groups.size(); ++i)
        groups[i] = lines[i].checked;
    const auto folder = lines.back().checked ? AskFolder(L"\n指定保存目录 <退出>:", {})
                                             : std::optional(SettingsFolder::Default());
    if (!folder)
        return;
    if (folder->empty()) {
        acutPrintf(L"\n系统临时文件夹的路径超过255个字符，请选择“导出到指定文件夹”。");
        return;
    }
    if (const int count = Export(TextOf(*folder), groups); count >= 0)
        TellCount(L"已导出", count, *folder);
}

void ImportCommand() {
    const fs::path byDefault = SettingsFolder::Default();
    const auto folder = AskFolder(L"\n指定导入目录 <" + TextOf(byDefault) + L">:", byDefault);
    if (!folder)
        return;
    std::error_code fault;
    if (fs::is_directory(*folder, fault))
        TellCount(L"已导入", Import(TextOf(*folder)), *folder);
    else
        acutPrintf(L"\n没有文件夹 %s。", TextOf(*folder).GetString());
}

} // namespace SettingsTransfer
