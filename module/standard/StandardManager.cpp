#include "module/standard/StandardManager.h"

#include "module/standard/DefaultStandard.h"
#include "module/standard/LayerDefinitions.h"
#include "module/standard/StandardEdit.h"
#include "module/standard/StandardFile.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/TRegProperty.h"
#include "sys/folders.h"

#include "aced.h"
#include "acutads.h"

#include <filesystem>
#include <memory>
#include <system_error>

namespace {

std::unique_ptr<CStandardManager> g_manager;

TRegProperty OpenSetting() {
    TRegProperty setting(GetRegLocation(), L"PipeSystemSetting");
    setting.SetTopRootKey(HKEY_CURRENT_USER);
    return setting;
}

constexpr const wchar_t* standardFileValue = L"StandardFile";

bool IsFile(const CString& path) {
    std::error_code fault;
    return std::filesystem::is_regular_file(sys::to_path(ViewOf(path)), fault);
}

CString InSystemFolder(const CString& name) {
    return sys::from_path(sys::system_folder() / sys::to_path(ViewOf(name))).c_str();
}

CString WholePath(LPCTSTR path) {
    std::error_code fault;
    const std::filesystem::path whole = std::filesystem::absolute(sys::to_path(ViewOf(CString(path))), fault);
    return fault ? CString(path) : CString(sys::from_path(whole).c_str());
}

// The file that the registry names, if there is one; else the one of the system folder.
CString ChosenFile() {
    CString name;
    OpenSetting().GetValue(standardFileValue, name);
    if (!name.IsEmpty() && name.FindOneOf(L"\\/") < 0)
        name = InSystemFolder(name);
    return !name.IsEmpty() && IsFile(name) ? name : InSystemFolder(L"kol.vrsl");
}

} // namespace

CStandardManager* CStandardManager::Current() {
    return g_manager.get();
}

CStandardManager& CStandardManager::Create() {
    if (g_manager == nullptr)
        g_manager.reset(new CStandardManager);
    return *g_manager;
}

CStandardManager* CStandardManager::Loaded() {
    return g_manager != nullptr && g_manager->m_isLoaded ? g_manager.get() : nullptr;
}

void CStandardManager::Release() {
    g_manager.reset();
}

CStandardManager::CStandardManager() = default;
CStandardManager::~CStandardManager() = default;

void CStandardManager::Choose() {
    m_chosen = ChosenFile();
}

void CStandardManager::ChooseAndLoad() {
    if (m_isLoaded)
        return;
    if (m_chosen.IsEmpty())
        Choose();
    if (Load(m_chosen, false)) {
        Remember();
    } else {
        Replace(MakeDefaultStandard());
        m_isLoaded = true;
        m_fault += L"；使用内置标准";
    }
    if (!m_fault.IsEmpty())
        acdbFail(L"\n" + m_fault);
    WriteLayerDefinitions(sys::system_folder() / "LAYERDEF.DAT", m_standard, m_keepLayerDefinitions);
    StandardEdit edit(*this);
    for (auto& group : edit.Whole().m_groups)
        group->ConvertOldSysNameToCurrentName();
}

bool CStandardManager::Load(LPCTSTR path, bool withMessages) {
    const CString name = WholePath(path);
    PipeStandard read;
    std::optional<MarkupFault> fault;
    const bool isRead = ReadStandardFile(name, read, &fault);
    m_fault = fault ? L"标准文件 " + name + L": " + fault->GetText() : CString();
    if (!isRead) {
        if (withMessages)
            acedAlert(L"加载标准文件失败！");
        return false;
    }
    Replace(std::move(read));
    m_fileName = name;
    m_isLoaded = true;
    return true;
}

bool CStandardManager::Reload() {
    return Load(m_fileName, true);
}

bool CStandardManager::Save(LPCTSTR path) const {
    return WriteStandardFile(path, m_standard);
}

void CStandardManager::Remember() const {
    OpenSetting().SetValue(standardFileValue, m_fileName);
}

void CStandardManager::Replace(PipeStandard standard) {
    m_index.reset();
    m_changed = {};
    m_changed.everything = m_edits != 0; // what it gave out is gone, but not the standard itself
    m_standard = std::move(standard);
}

// As long as somebody changes something, it may have changed again.
void CStandardManager::FollowChanges() const {
    if (m_index) {
        if (m_changed.everything)
            m_index->Follow();
        else // groups first: they know which systems are gone
            for (const PipeGroupNode* const group : m_changed.groups)
                m_index->Follow(group);
        for (const PipeNode* const system : m_changed.systems)
            m_index->Follow(system);
        for (const OtherLayerNode* const group : m_changed.otherLayers)
            m_index->Follow(group);
    }
    if (m_edits == 0)
        m_changed = {};
}

const StandardIndex& CStandardManager::Index() const {
    if (!m_index)
        m_index.emplace(m_standard);
    else if (m_edits != 0)
        FollowChanges();
    return *m_index;
}
