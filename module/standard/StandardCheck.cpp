#include "module/standard/StandardCheck.h"

#include "module/engines/MarkupDoc.h"
#include "module/engines/MarkupFault.h"
#include "module/standard/LineWeightText.h"
#include "module/standard/StandardFileFields.h"

#include "adscodes.h"
#include "dbsymtb.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <set>
#include <string>

namespace Name = StandardFileName;

namespace {

class Checker {
public:
    Checker(MarkupDoc& document, const StandardKnowledge& known, std::vector<StandardFault>& faults)
        : m_document(document), m_text(document.GetDocumentText()), m_known(known), m_faults(faults) {}

    void Check() {
        m_document.ResetPosition();
        if (!m_document.FindElement())
            return;
        if (m_document.GetTagName() != Name::root.name)
            Tell(L"根元素不是 " + Quoted(Name::root.name));
        ForEachChild([this](std::wstring_view section) {
            if (section == Name::pipeSystem.name)
                ForEachChild([this](std::wstring_view) { CheckGroup(); });
            else if (section == Name::otherLayer.name)
                ForEachChild([this](std::wstring_view) { CheckOtherLayers(); });
            else if (section == Name::textStyleSetting.name)
                ForEachChild([this](std::wstring_view) {
                    ForEachChild([this](std::wstring_view) { CheckTextStyle(); });
                });
            else if (section == Name::objectColorSetting.name)
                ForEachChild([this](std::wstring_view) { CheckObjectColor(); });
        });
        if (m_systems.empty())
            Tell(L"没有管线系统");
    }

private:
    // What a name was used for first.
    using Uses = std::map<CString, CString, NoCaseOrder>;

    // Hands the tag of each child to a function, at whose call the document stands on the child.
    template<class Take>
    void ForEachChild(Take take) {
        if (!m_document.IntoElement())
            return;
        while (m_document.FindElement())
            take(m_document.GetTagName());
        m_document.OutOfElement();
    }

    CString Data() const { return std::wstring(m_document.GetElementData()).c_str(); }
    CString Attribute(const wchar_t* name) const {
        return std::wstring(m_document.GetAttribute(name)).c_str();
    }

    // The line of the element that the document stands on.
    int Line() {
        const std::wstring_view tag = m_document.GetTagName();
        const auto at = static_cast<std::size_t>(tag.data() - m_text.data());
        if (at < m_counted) {
            m_line = 1;
            m_counted = 0;
        }
        m_line += static_cast<int>(std::count(m_text.begin() + static_cast<std::ptrdiff_t>(m_counted),
                                              m_text.begin() + static_cast<std::ptrdiff_t>(at), L'\n'));
        m_counted = at;
        return m_line;
    }

    void Tell(CString what) {
        m_faults.push_back({Line(), std::wstring(m_document.GetTagName()).c_str(), std::move(what)});
    }

    static CString Quoted(const CString& text) { return L"\"" + text + L"\""; }

    void CheckGroup() {
        if (Attribute(Name::nameAttrib).IsEmpty())
            Tell(L"系统组没有名称");
        CheckFlag(Attribute(Name::canNameAttrib));
        ForEachChild([this](std::wstring_view) { CheckSystem(); });
    }

    void CheckSystem() {
        CString name;
        std::set<CString, KeyOrder> types;
        std::vector<std::pair<CString, StandardFault>> wanted; // destinations of the map
        ForEachChild([&](std::wstring_view tag) {
            if (tag == Name::baseInfo.name) {
                name = CheckBaseInfo();
            } else if (tag == Name::sysMap.name) {
                TakeMap(wanted);
            } else if (const CString type = Attribute(Name::layerTypeAttrib); !type.IsEmpty()) {
                if (!types.insert(type).second)
                    Tell(L"系统 " + Quoted(name) + L" 有两个图层类型 " + Quoted(type));
                CheckLayer(m_layerUses, name);
            }
        });
        TellMissing(wanted, types);
    }

    CString CheckBaseInfo() {
        CString name;
        bool told = false;
        ForEachChild([&](std::wstring_view tag) {
            const CString value = Data();
            if (tag == Name::pipeName.name) {
                name = value;
                told = true;
                if (name.IsEmpty())
                    Tell(L"系统没有名称");
                else if (!m_systems.insert(name).second)
                    Tell(L"系统名称 " + Quoted(name) + L" 已经使用");
            } else if (tag == Name::material.name || tag == Name::outdoorMaterial.name) {
                CheckMaterial(value, tag == Name::outdoorMaterial.name);
            } else {
                ForEachSystemField(m_kinds.system, CheckKind(tag, value));
            }
        });
        if (!told)
            Tell(L"系统没有名称");
        return name;
    }

    void CheckMaterial(const CString& name, bool isOutdoors) {
        const auto material = std::ranges::find(m_known.materials, name, &PipeMaterial::m_name);
        if (material == m_known.materials.end()) {
            if (!name.IsEmpty())
                Tell(L"管材 " + Quoted(name) + L" 没有管径表");
        } else if (!(isOutdoors ? material->m_isOutdoor : material->m_isIndoor)) {
            Tell(L"管材 " + Quoted(name) + (isOutdoors ? L" 不用于室外" : L" 不用于室内"));
        }
    }

    void CheckLayer(Uses& uses, const CString& owner) {
        bool told = false;
        ForEachChild([&](std::wstring_view tag) {
            const CString value = Data();
            if (tag == Name::layerName.name) {
                told = true;
                if (value.IsEmpty()) {
                    Tell(L"图层没有名称");
                } else if (acdbSNValid(value, 0) != RTNORM) {
                    Tell(L"图层名 " + Quoted(value) + L" 含有不允许的字符");
                } else if (const auto& [use, isNew] = uses.try_emplace(value, owner);
                           !isNew && use->second != owner) {
                    Tell(L"图层 " + Quoted(value) + L" 已经用于 " + Quoted(use->second));
                }
            } else if (tag == Name::lineStyle.name && !value.IsEmpty() &&
                       std::ranges::none_of(m_known.linetypes,
                                            [&](const CString& one) { return IsSameName(one, value); })) {
                Tell(L"线型 " + Quoted(value) + L" 未知");
            } else {
                ForEachLayerField(m_kinds.layer, true, CheckKind(tag, value));
            }
        });
        if (!told)
            Tell(L"图层没有名称");
    }

    void CheckTextStyle() {
        ForEachChild(
            [this](std::wstring_view tag) { ForEachTextStyleField(m_kinds.style, CheckKind(tag, Data())); });
    }

    void CheckObjectColor() {
        ForEachChild([this](std::wstring_view tag) {
            ForEachObjectColorField(m_kinds.color, CheckKind(tag, Data()));
        });
    }

    // Looks whether a value is one of the kind of that field whose element has its tag.
    struct KindChecker {
        void operator()(const Name::Element& element, const auto& kind) const {
            if (tag == element.name)
                checker.CheckValue(value, kind);
        }
        Checker& checker;
        std::wstring_view tag;
        const CString& value;
    };
    KindChecker CheckKind(std::wstring_view tag, const CString& value) { return {*this, tag, value}; }

    void CheckValue(const CString& /*value*/, const CString& /*kind*/) {}
    void CheckValue(const CString& /*value*/, EmptyText<const CString> /*kind*/) {}
    void CheckValue(const CString& value, const bool& /*kind*/) { CheckFlag(value); }
    void CheckValue(const CString& value, const int& /*kind*/) {
        if (!IsInteger(value))
            Tell(L"整数 " + Quoted(value) + L" 无效");
    }
    void CheckValue(const CString& value, const double& /*kind*/) {
        if (!IsSize(value))
            Tell(L"数值 " + Quoted(value) + L" 无效");
    }
    void CheckValue(const CString& value, const AcCmColor& /*kind*/) {
        if (!IsColor(value))
            Tell(L"颜色 " + Quoted(value) + L" 无效");
    }
    void CheckValue(const CString& value, LineWeightValue<const int> /*kind*/) {
        if (!value.IsEmpty() && GetLineWeightText(ParseLineWeight(value)) != value)
            Tell(L"线宽 " + Quoted(value) + L" 无效");
    }

    // An empty one is the default, here and below.
    void CheckFlag(const CString& text) {
        if (!text.IsEmpty() && text != L"0" && text != L"1")
            Tell(L"标志 " + Quoted(text) + L" 应为 0 或 1");
    }

    static bool IsInteger(const CString& text) {
        wchar_t* end = nullptr;
        std::wcstol(text, &end, 10);
        return *end == 0;
    }

    static bool IsSize(CString text) {
        text.TrimRight();
        wchar_t* end = nullptr;
        const double size = std::wcstod(text, &end);
        return *end == 0 && std::isfinite(size) && size >= 0.0;
    }

    static bool IsColor(const CString& text) {
        if (text.IsEmpty() || text == L"ByLayer" || text == L"ByBlock")
            return true;
        long parts[3] = {};
        const wchar_t* at = text;
        const int count = 1 + static_cast<int>(std::ranges::count(ViewOf(text), L','));
        if (count != 1 && count != 3)
            return false;
        for (int i = 0; i < count; ++i) {
            wchar_t* end = nullptr;
            parts[i] = std::wcstol(at, &end, 10);
            if (end == at || (*end != 0 && *end != L','))
                return false;
            at = end + 1;
        }
        return std::ranges::all_of(parts,
                                   [&](long part) { return part >= 0 && part <= (count == 1 ? 256 : 255); });
    }

    void TakeMap(std::vector<std::pair<CString, StandardFault>>& wanted) {
        ForEachChild([&](std::wstring_view) {
            ForEachChild([&](std::wstring_view tag) {
                if (tag == Name::desItem.name)
                    wanted.push_back({Data(), {Line(), Name::desItem.name, {}}});
            });
        });
    }

    void TellMissing(std::vector<std::pair<CString, StandardFault>>& wanted,
                     const std::set<CString, KeyOrder>& there) {
        for (auto& [key, fault] : wanted)
            if (!there.contains(key)) {
                fault.what = L"映射目标 " + Quoted(key) + L" 不存在";
                m_faults.push_back(std::move(fault));
            }
    }

    void CheckOtherLayers() {
        const CString group = Attribute(Name::layerTypeAttrib);
        if (group.IsEmpty())
            Tell(L"图层组没有名称");
        std::set<CString, KeyOrder> keys;
        std::vector<std::pair<CString, StandardFault>> wanted;
        ForEachChild([&](std::wstring_view tag) {
            if (tag == Name::otherMap.name) {
                TakeMap(wanted);
                return;
            }
            CheckLayer(m_otherUses, group);
            ForEachChild([&](std::wstring_view part) {
                if (part == Name::layerKey.name)
                    keys.insert(Data());
            });
        });
        TellMissing(wanted, keys);
    }

    // Records of which only the kinds of the fields are wanted.
    struct Kinds {
        PipeBasicNode system;
        LayerNode layer;
        TextStyleNode style;
        ObjectColor color;
    };
    const Kinds m_kinds;

    MarkupDoc& m_document;
    std::wstring_view m_text;
    const StandardKnowledge& m_known;
    std::vector<StandardFault>& m_faults;
    std::set<CString, KeyOrder> m_systems;
    Uses m_layerUses;
    Uses m_otherUses;
    int m_line = 1;
    std::size_t m_counted = 0;
};

} // namespace

bool CheckStandardFile(LPCTSTR path, const StandardKnowledge& known, std::vector<StandardFault>& faults) {
    MarkupDoc document;
    const bool isRead = document.LoadFile(path);
    std::vector<StandardFault> found;
    if (const std::optional<MarkupFault> fault = FindMarkupFault(document))
        found.push_back({fault->line, L"", fault->what});
    if (!isRead) {
        faults.insert(faults.end(), found.begin(), found.end());
        return false;
    }
    Checker(document, known, found).Check();
    std::ranges::stable_sort(found, {}, &StandardFault::line);
    faults.insert(faults.end(), found.begin(), found.end());
    return true;
}
