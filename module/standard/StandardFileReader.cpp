#include "module/standard/StandardFile.h"

#include "module/engines/VRbTree.h"
#include "module/engines/VRbTreeXml.h"
#include "module/standard/DefaultStandard.h"
#include "module/standard/LineWeightText.h"
#include "module/standard/StandardFileFields.h"

#include <algorithm>
#include <cmath>

namespace Name = StandardFileName;

namespace {

// ---- values: a missing or an empty one leaves the target as it is

CString TextOf(const CVRbTreeItem& parent, const Name::Element& element) {
    const CVRbTreeItem* const item = parent.FindSubItem(element.name);
    return item != nullptr ? item->GetValue() : CString();
}

void Read(const CVRbTreeItem& parent, const Name::Element& element, CString& target) {
    if (CString text = TextOf(parent, element); !text.IsEmpty())
        target = std::move(text);
}

template<class Number>
void ReadNumber(const CVRbTreeItem& parent, const Name::Element& element, Number& target) {
    const CVRbTreeItem* const item = parent.FindSubItem(element.name);
    if (item != nullptr && item->HasValue())
        target = item->GetValue(Number{});
}

void Read(const CVRbTreeItem& parent, const Name::Element& element, int& target) {
    ReadNumber(parent, element, target);
}

void Read(const CVRbTreeItem& parent, const Name::Element& element, double& target) {
    double number = target;
    ReadNumber(parent, element, number);
    if (std::isfinite(number)) // nothing can be drawn with others
        target = number;
}

void Read(const CVRbTreeItem& parent, const Name::Element& element, bool& target) {
    int number = target ? 1 : 0;
    ReadNumber(parent, element, number);
    target = number != 0;
}

void Read(const CVRbTreeItem& parent, const Name::Element& element, AcCmColor& target) {
    if (const CString text = TextOf(parent, element); !text.IsEmpty())
        target = ParseColor(text);
}

void Read(const CVRbTreeItem& parent, const Name::Element& element, EmptyText<CString> target) {
    if (parent.FindSubItem(element.name) != nullptr)
        target.value = TextOf(parent, element);
}

void Read(const CVRbTreeItem& parent, const Name::Element& element, LineWeightValue<int> target) {
    target.value = ParseLineWeight(TextOf(parent, element));
}

// Reads each field of a record.
auto ReadFrom(const CVRbTreeItem& item) {
    return [&item](const Name::Element& element, auto&& target) { Read(item, element, target); };
}

// Hands each child of the named child to a function.
template<class Take>
void ForEach(const CVRbTreeItem& parent, const Name::Element& element, Take take) {
    if (const CVRbTreeItem* const list = parent.FindSubItem(element.name))
        for (const CVRbTreeItem* item = list->GetChild(); item != nullptr; item = item->GetNext())
            take(*item);
}

// ---- sections

class Reader {
public:
    explicit Reader(PipeStandard& standard) : m_standard(standard) {}

    void Read(const CVRbTreeItem& root) {
        ForEach(root, Name::layerNameRule, [this](const CVRbTreeItem& item) {
            ForEachNameRuleField(m_standard.m_nameRules.emplace_back(), ReadFrom(item));
            m_ruled.insert(m_standard.m_nameRules.back().m_layerType);
        });
        ForEach(root, Name::pipeSystem, [this](const CVRbTreeItem& item) { ReadGroup(item); });
        ForEach(root, Name::otherLayer, [this](const CVRbTreeItem& item) { ReadOtherLayers(item); });
        ForEach(root, Name::createRules, [this](const CVRbTreeItem& links) {
            for (const CVRbTreeItem* item = links.GetChild(); item != nullptr; item = item->GetNext())
                ReadCreateRule(*item);
        });
        ForEach(root, Name::textStyleSetting, [this](const CVRbTreeItem& set) {
            for (const CVRbTreeItem* item = set.GetChild(); item != nullptr; item = item->GetNext())
                ReadTextStyle(*item);
        });
        ForEach(root, Name::objectColorSetting, [this](const CVRbTreeItem& item) {
            ForEachObjectColorField(m_standard.m_objectColors.emplace_back(), ReadFrom(item));
        });
    }

private:
    void ReadGroup(const CVRbTreeItem& item) {
        auto group = std::make_unique<PipeGroupNode>(item.GetAttrib(Name::nameAttrib),
                                                     item.GetAttrib(Name::canNameAttrib, 0) != 0);
        for (const CVRbTreeItem* pipe = item.GetChild(); pipe != nullptr; pipe = pipe->GetNext())
            group->AddPipeSystem(ReadSystem(*pipe).release());
        m_standard.m_groups.push_back(std::move(group));
    }

    std::unique_ptr<PipeNode> ReadSystem(const CVRbTreeItem& pipe) {
        auto system = std::make_unique<PipeNode>();
        if (const CVRbTreeItem* const base = pipe.FindSubItem(Name::baseInfo.name)) {
            ForEachSystemField<PipeBasicNode>(*system, ReadFrom(*base));
            for (const CVRbTreeItem* item = base->GetNext(); item != nullptr; item = item->GetNext())
                if (const CString type = item->GetAttrib(Name::layerTypeAttrib); !type.IsEmpty()) {
                    std::unique_ptr<LayerNode> layer = ReadLayer(*item, false);
                    layer->m_layerType = type;
                    layer->m_layerKey = system->m_name;
                    system->AddLayerNode(layer.release());
                    AddMissingRule(type);
                }
        }
        AddDefaultMappings(*system);
        ReadMap(pipe, Name::sysMap, *system);
        return system;
    }

    static std::unique_ptr<LayerNode> ReadLayer(const CVRbTreeItem& item, bool withKey) {
        auto layer = std::make_unique<LayerNode>();
        ForEachLayerField(*layer, withKey, ReadFrom(item));
        ForEach(item, Name::layerAttachSet,
                [&](const CVRbTreeItem& one) { layer->m_attachments.push_back(one.GetValue()); });
        return layer;
    }

    // Every layer type in use has a rule.
    void AddMissingRule(const CString& type) {
        if (m_ruled.insert(type).second)
            m_standard.m_nameRules.push_back({type, {}, {}});
    }

    static void ReadMap(const CVRbTreeItem& parent, const Name::Element& element, LayerSet& layers) {
        ForEach(parent, element, [&](const CVRbTreeItem& item) {
            layers.AddMapping(TextOf(item, Name::srcItem), TextOf(item, Name::desItem));
        });
        layers.UpdateLayerTypeMap();
    }

    void ReadOtherLayers(const CVRbTreeItem& item) {
        auto group = std::make_unique<OtherLayerNode>(item.GetAttrib(Name::layerTypeAttrib));
        for (const CVRbTreeItem* one = item.GetChild(); one != nullptr; one = one->GetNext())
            if (one->GetName() == Name::layer.name) {
                std::unique_ptr<LayerNode> layer = ReadLayer(*one, true);
                layer->m_layerType = group->m_layerType;
                group->AddLayerNode(layer.release());
            }
        ReadMap(item, Name::otherMap, *group);
        m_standard.m_otherLayers.push_back(std::move(group));
    }

    void ReadCreateRule(const CVRbTreeItem& item) {
        CreateSystemRule& rule = m_standard.m_createRules.emplace_back();
        rule.m_name = item.GetAttrib(Name::nameAttrib);
        for (const CVRbTreeItem* type = item.GetChild(); type != nullptr; type = type->GetNext())
            rule.m_layerTypes.push_back(type->GetValue());
    }

    // What a style does not say is that of the built-in style of the same use.
    void ReadTextStyle(const CVRbTreeItem& item) {
        const CString use = TextOf(item, Name::key);
        const std::vector<TextStyleNode>& builtIn = GetDefaultTextStyles();
        const auto same = std::ranges::find(builtIn, use, &TextStyleNode::m_key);
        TextStyleNode& style =
            m_standard.m_textStyles.emplace_back(same != builtIn.end() ? *same : TextStyleNode());
        style.m_encoding = TextStyleNode().m_encoding;
        ForEachTextStyleField(style, ReadFrom(item));
    }

    PipeStandard& m_standard;
    std::set<CString, NoCaseOrder> m_ruled; // the layer types that have a rule
};

} // namespace

bool ReadStandardFile(LPCTSTR path, PipeStandard& standard, std::optional<MarkupFault>* fault) {
    CVRbTree tree;
    if (LoadTreeFromXml(path, tree, fault) == 0 || tree.GetRootItem() == nullptr)
        return false;
    PipeStandard read;
    Reader(read).Read(*tree.GetRootItem());
    standard = std::move(read);
    return true;
}
