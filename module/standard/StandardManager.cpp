#include "module/standard/StandardManager.h"

#include "module/standard/DefaultStandard.h"
#include "module/standard/LayerDefinitions.h"
#include "module/standard/StandardFile.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/TRegProperty.h"
#include "sys/folders.h"

#include "aced.h"

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

void CStandardManager::Release() {
    g_manager.reset();
}

CStandardManager::CStandardManager() = default;
CStandardManager::~CStandardManager() = default;

void CStandardManager::ChooseAndLoad() {
    if (m_isLoaded)
        return;
    if (Load(ChosenFile(), false)) {
        Remember();
    } else {
        Edit() = MakeDefaultStandard();
        m_isLoaded = true;
    }
    WriteLayerDefinitions(sys::system_folder() / "LAYERDEF.DAT", m_standard, m_keepLayerDefinitions);
    for (const auto& group : Edit().m_groups)
        group->ConvertOldSysNameToCurrentName();
}

bool CStandardManager::Load(LPCTSTR path, bool withMessages) {
    const CString name(path); // it may be our own
    PipeStandard read;
    if (!ReadStandardFile(name, read)) {
        if (withMessages)
            acedAlert(L"加载标准文件失败！");
        return false;
    }
    Edit() = std::move(read);
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

PipeStandard& CStandardManager::Edit() {
    m_index.reset();
    return m_standard;
}

const StandardIndex& CStandardManager::Index() const {
    if (!m_index)
        m_index.emplace(m_standard);
    return *m_index;
}
