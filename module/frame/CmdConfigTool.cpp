#include "module/frame/CmdConfigTool.h"

#include "base/utf.h"
#include "module/engines/MarkupSyntax.h"
#include "module/engines/VRbTree.h"
#include "module/engines/VRbTreeXml.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "sys/folders.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;
using CmdConfigTool::AttNode;
using CmdConfigTool::LeafNode;

namespace {

constexpr wchar_t defaultRootPath[] = L"vantrel\\kol\\";
constexpr wchar_t sectionTag[] = L"cmd";
constexpr wchar_t itemTag[] = L"item";
constexpr wchar_t valueTag[] = L"val";
constexpr wchar_t nameAttrib[] = L"name";

// What stands at the open file's place on the disk.
enum class OnDisk { Nothing, Understood, NoXml, Undecodable };

struct ConfigFile {
    CString path; // empty when none is open
    OnDisk onDisk = OnDisk::Nothing;
    CString rootPath = defaultRootPath;
    CVRbTree tree;
    bool isModified = false;
};

ConfigFile& Config() {
    static ConfigFile config;
    return config;
}

// ---- what XML can hold

bool IsText(std::wstring_view text) {
    const auto isForbidden = [](wchar_t unit) {
        return unit < L' ' && unit != L'\t' && unit != L'\r' && unit != L'\n';
    };
    const std::string bytes = base::narrow(text);
    return std::ranges::none_of(text, isForbidden) && base::is_utf8(bytes) && base::widen(bytes) == text;
}

bool IsText(LPCTSTR text) {
    return text == nullptr || IsText(std::wstring_view(text));
}

bool IsTag(const CString& name) {
    return IsText(name.GetString()) && IsName(name.GetString());
}

// Whether it can be written for an item that `identifier` identifies, which is no matter of the leaf's.
bool CanHold(const LeafNode& leaf, LPCTSTR identifier) {
    return IsText(leaf.m_value.GetString()) &&
           std::ranges::all_of(leaf.m_attributes, [&](const AttNode& one) {
               return IsTag(one.m_name) && one.m_name != identifier && IsText(one.m_value.GetString());
           });
}

// ---- paths and keys

std::vector<CString> Components(LPCTSTR path) {
    std::vector<CString> names;
    const CString whole = path;
    int at = 0;
    for (CString part = whole.Tokenize(L"\\", at); at >= 0; part = whole.Tokenize(L"\\", at))
        names.push_back(part);
    return names;
}

CVRbTreeItem* ChildOfName(CVRbTreeItem* parent, const CString& name) {
    CVRbTreeItem* child = Config().tree.GetValidChildItem(parent);
    while (child != nullptr && child->GetName() != name)
        child = child->GetNext();
    return child;
}

// Null when one of its names is missing, and for a path without names.
CVRbTreeItem* RootPathItem() {
    CVRbTreeItem* item = nullptr;
    for (const CString& name : Components(Config().rootPath)) {
        item = ChildOfName(item, name);
        if (item == nullptr)
            return nullptr;
    }
    return item;
}

CVRbTreeItem* FindItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key) {
    const CVRbTreeItem* const root = RootPathItem();
    CVRbTreeItem* item = root != nullptr ? root->FindSubItemBy(nameAttrib, section) : nullptr;
    const std::vector<CString> names = Components(key);
    for (const CString& name : names)
        item = item != nullptr ? item->FindSubItemBy(attribName, name.GetString()) : nullptr;
    return names.empty() ? nullptr : item;
}

// The child that an attribute identifies, made as the last one when it is missing.
CVRbTreeItem* Ensure(CVRbTreeItem& parent, LPCTSTR tag, LPCTSTR attribName, LPCTSTR name) {
    CVRbTreeItem* child = parent.FindSubItemBy(attribName, name);
    if (child == nullptr) {
        child = Config().tree.InsertItem(tag, &parent);
        child->SetAttrib(attribName, name);
    }
    return child;
}

// To write to: null when the root path is missing or section, attribute or key can not be written.
CVRbTreeItem* EnsureItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key) {
    CVRbTreeItem* item = RootPathItem();
    const std::vector<CString> names = Components(key);
    if (item == nullptr || names.empty() || !IsText(section) || !IsTag(attribName) || !IsText(key))
        return nullptr;
    item = Ensure(*item, sectionTag, nameAttrib, section);
    for (const CString& name : names)
        item = Ensure(*item, itemTag, attribName, name);
    Config().isModified = true;
    return item;
}

// ---- values

template<class Take>
void ForEachChild(const CVRbTreeItem& item, Take take) {
    for (CVRbTreeItem* child = item.GetChild(); child != nullptr;) {
        CVRbTreeItem* const next = child->GetNext();
        take(*child);
        child = next;
    }
}

template<class Take>
void ForEachValue(const CVRbTreeItem& item, Take take) {
    ForEachChild(item, [&](CVRbTreeItem& child) {
        if (child.GetName() == valueTag)
            take(child);
    });
}

void DeleteValues(const CVRbTreeItem& item) {
    ForEachValue(item, [](CVRbTreeItem& child) { Config().tree.DeleteItem(&child); });
}

LeafNode LeafOf(const CVRbTreeItem& item, LPCTSTR identifier) {
    LeafNode leaf{item.GetValue(), {}};
    AttNode one;
    for (int at = item.GetAttribIterator(); item.GetNextAttrib(at, one.m_name, one.m_value);)
        if (one.m_name != identifier)
            leaf.m_attributes.push_back(one);
    return leaf;
}

void SetLeaf(CVRbTreeItem& item, const LeafNode& leaf) {
    item.SetValue(leaf.m_value.GetString());
    for (const AttNode& one : leaf.m_attributes)
        item.SetAttrib(one.m_name, one.m_value.GetString());
}

void Read(const CVRbTreeItem& item, LPCTSTR, CString& value) {
    value = item.GetValue();
}

void Read(const CVRbTreeItem& item, LPCTSTR, CStringArray& values) {
    values.RemoveAll();
    ForEachValue(item, [&](const CVRbTreeItem& child) { values.Add(child.GetValue()); });
}

void Read(const CVRbTreeItem& item, LPCTSTR attribName, LeafNode& leaf) {
    leaf = LeafOf(item, attribName);
}

void Read(const CVRbTreeItem& item, LPCTSTR, std::vector<LeafNode>& leaves) {
    leaves.clear();
    ForEachValue(item, [&](const CVRbTreeItem& child) { leaves.push_back(LeafOf(child, L"")); });
}

template<class Value>
bool ReadAs(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, Value& value) {
    const CVRbTreeItem* const item = FindItem(section, attribName, key);
    if (item != nullptr)
        Read(*item, attribName, value);
    return item != nullptr;
}

bool WriteText(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, LPCTSTR value) {
    CVRbTreeItem* const item = IsText(value) ? EnsureItem(section, attribName, key) : nullptr;
    if (item == nullptr)
        return false;
    DeleteValues(*item);
    item->SetValue(value);
    return true;
}

bool WriteLeaf(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, const LeafNode& leaf) {
    CVRbTreeItem* const item = CanHold(leaf, attribName) ? EnsureItem(section, attribName, key) : nullptr;
    if (item == nullptr)
        return false;
    DeleteValues(*item);
    for (const AttNode& old : LeafOf(*item, attribName).m_attributes)
        item->DeleteAttrib(old.m_name);
    SetLeaf(*item, leaf);
    return true;
}

bool WriteLeaves(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, const std::vector<LeafNode>& leaves) {
    const bool canHold = std::ranges::all_of(leaves, [](const LeafNode& leaf) { return CanHold(leaf, L""); });
    CVRbTreeItem* const item = canHold ? EnsureItem(section, attribName, key) : nullptr;
    if (item == nullptr)
        return false;
    DeleteValues(*item);
    item->SetValue(L"");
    for (const LeafNode& leaf : leaves)
        SetLeaf(*Config().tree.InsertItem(valueTag, item), leaf);
    return true;
}

bool WriteList(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, const CStringArray& values) {
    std::vector<LeafNode> leaves;
    for (INT_PTR i = 0; i < values.GetSize(); ++i)
        leaves.push_back({values[i], {}});
    return WriteLeaves(section, attribName, key, leaves);
}

// ---- the file

// Its place in the system folder, in which names have no case; empty for a name that leads out of the folder.
fs::path PlaceOf(LPCTSTR fileName) {
    const fs::path name = sys::to_path(fileName != nullptr ? fileName : L"");
    if (g_csSysPath.IsEmpty() || name.empty() || name.is_absolute() ||
        std::ranges::find(name, "..") != name.end())
        return {};
    const fs::path folder = sys::to_path(g_csSysPath.GetString());
    const fs::path there = sys::find_without_case(folder, name);
    return there.empty() ? folder / name : there;
}

bool IsThere(const CString& path) {
    std::error_code fault;
    return fs::exists(sys::to_path(path.GetString()), fault);
}

// Keeps what nobody could read before it is written over. False when that fails.
bool PutAside(const CString& path) {
    const fs::path file = sys::to_path(path.GetString());
    fs::path kept = file;
    kept += ".bak";
    std::error_code fault;
    fs::copy_file(file, kept, fs::copy_options::overwrite_existing, fault);
    return !fault;
}

bool Save(const ConfigFile& config) {
    if (config.path.IsEmpty() || config.onDisk == OnDisk::Undecodable ||
        (config.onDisk == OnDisk::NoXml && !PutAside(config.path)))
        return false;
    return SaveTreeToXml(config.tree, config.path, L"utf-8", false) != 0;
}

} // namespace

CString LeafNode::GetAttribute(LPCTSTR name) const {
    const auto found = std::ranges::find(m_attributes, CString(name), &AttNode::m_name);
    return found != m_attributes.end() ? found->m_value : CString();
}

bool LeafNode::HasAttribute(LPCTSTR name) const {
    return std::ranges::find(m_attributes, CString(name), &AttNode::m_name) != m_attributes.end();
}

bool CmdConfigTool::OpenConfigFile(LPCTSTR fileName) {
    ConfigFile& config = Config();
    config.tree.DeleteAllItems();
    config.isModified = false;
    config.path = sys::from_path(PlaceOf(fileName)).c_str();
    if (config.path.IsEmpty())
        return false;
    std::optional<MarkupFault> fault;
    const bool isRead = LoadTreeFromXml(config.path, config.tree, &fault, true) != 0;
    if (isRead && fault)
        config.onDisk = OnDisk::Undecodable;
    else if (isRead)
        config.onDisk = OnDisk::Understood;
    else
        config.onDisk = IsThere(config.path) ? OnDisk::NoXml : OnDisk::Nothing;
    if (config.onDisk != OnDisk::Understood)
        config.tree.DeleteAllItems();
    return config.onDisk == OnDisk::Understood;
}

bool CmdConfigTool::CloseConfigFile() {
    ConfigFile& config = Config();
    const bool isSaved = config.isModified && Save(config);
    config = ConfigFile();
    return isSaved;
}

void CmdConfigTool::SetRootPath(LPCTSTR path) {
    Config().rootPath = path;
}

bool CmdConfigTool::CreateRootPath(LPCTSTR path) {
    ConfigFile& config = Config();
    const std::vector<CString> names = Components(path);
    const CVRbTreeItem* const root = config.tree.GetRootItem();
    if (names.empty() || !std::ranges::all_of(names, IsTag) ||
        (root != nullptr && root->GetName() != names.front()))
        return false;
    CVRbTreeItem* item = nullptr;
    for (const CString& name : names) {
        CVRbTreeItem* child = ChildOfName(item, name);
        if (child == nullptr) {
            child = config.tree.InsertItem(name, item);
            config.isModified = true;
        }
        item = child;
    }
    return true;
}

bool CmdConfigTool::ReadItem(LPCTSTR section, LPCTSTR key, CString& value) {
    return ReadAs(section, nameAttrib, key, value);
}
bool CmdConfigTool::ReadItem(LPCTSTR section, LPCTSTR key, CStringArray& values) {
    return ReadAs(section, nameAttrib, key, values);
}
bool CmdConfigTool::ReadItem(LPCTSTR section, LPCTSTR key, LeafNode& leaf) {
    return ReadAs(section, nameAttrib, key, leaf);
}
bool CmdConfigTool::ReadItem(LPCTSTR section, LPCTSTR key, std::vector<LeafNode>& leaves) {
    return ReadAs(section, nameAttrib, key, leaves);
}
bool CmdConfigTool::ReadItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, CString& value) {
    return ReadAs(section, attribName, key, value);
}
bool CmdConfigTool::ReadItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, CStringArray& values) {
    return ReadAs(section, attribName, key, values);
}
bool CmdConfigTool::ReadItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, LeafNode& leaf) {
    return ReadAs(section, attribName, key, leaf);
}
bool CmdConfigTool::ReadItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key,
                             std::vector<LeafNode>& leaves) {
    return ReadAs(section, attribName, key, leaves);
}

bool CmdConfigTool::WriteItem(LPCTSTR section, LPCTSTR key, LPCTSTR value) {
    return WriteText(section, nameAttrib, key, value);
}
bool CmdConfigTool::WriteItem(LPCTSTR section, LPCTSTR key, const CStringArray& values) {
    return WriteList(section, nameAttrib, key, values);
}
bool CmdConfigTool::WriteItem(LPCTSTR section, LPCTSTR key, const LeafNode& leaf) {
    return WriteLeaf(section, nameAttrib, key, leaf);
}
bool CmdConfigTool::WriteItem(LPCTSTR section, LPCTSTR key, const std::vector<LeafNode>& leaves) {
    return WriteLeaves(section, nameAttrib, key, leaves);
}
bool CmdConfigTool::WriteItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, LPCTSTR value) {
    return WriteText(section, attribName, key, value);
}
bool CmdConfigTool::WriteItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, const CStringArray& values) {
    return WriteList(section, attribName, key, values);
}
bool CmdConfigTool::WriteItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, const LeafNode& leaf) {
    return WriteLeaf(section, attribName, key, leaf);
}
bool CmdConfigTool::WriteItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key,
                              const std::vector<LeafNode>& leaves) {
    return WriteLeaves(section, attribName, key, leaves);
}

bool CmdConfigTool::ReadAttribute(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, LPCTSTR name,
                                  CString& value) {
    const CVRbTreeItem* const item = FindItem(section, attribName, key);
    if (item == nullptr || !LeafOf(*item, L"").HasAttribute(name))
        return false;
    value = item->GetAttrib(name, L"");
    return true;
}

bool CmdConfigTool::WriteAttribute(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, LPCTSTR name,
                                   LPCTSTR value) {
    CVRbTreeItem* const item = IsTag(name) && IsText(value) ? EnsureItem(section, attribName, key) : nullptr;
    if (item == nullptr)
        return false;
    item->SetAttrib(name, value);
    return true;
}

bool CmdConfigTool::ReadChildItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, CStringArray& values) {
    const CVRbTreeItem* const item = FindItem(section, attribName, key);
    if (item == nullptr)
        return false;
    values.RemoveAll();
    ForEachChild(*item, [&](const CVRbTreeItem& child) { values.Add(child.GetValue()); });
    return true;
}
