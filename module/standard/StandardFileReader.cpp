#include "module/standard/StandardFile.h"

#include "module/engines/VRbTree.h"
#include "module/engines/VRbTreeXml.h"
#include "module/standard/DefaultStandard.h"
#include "module/standard/LineWeightText.h"
#include "module/standard/StandardFileNames.h"

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
    if (item != nullptr && !item->GetValue().IsEmpty())
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
            m_standard.m_nameRules.push_back({TextOf(item, Name::ruleLayerType),
                                              TextOf(item, Name::layerPrefix),
                                              TextOf(item, Name::layerSuffix)});
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
            ObjectColor& one = m_standard.m_objectColors.emplace_back();
            ::Read(item, Name::objectName, one.m_name);
            ::Read(item, Name::color, one.m_color);
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
            ReadBaseInfo(*base, *system);
            for (const CVRbTreeItem* item = base->GetNext(); item != nullptr; item = item->GetNext())
                if (const CString type = item->GetAttrib(Name::layerTypeAttrib); !type.IsEmpty()) {
                    std::unique_ptr<LayerNode> layer = ReadLayer(*item);
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

    static void ReadBaseInfo(const CVRbTreeItem& base, PipeBasicNode& system) {
        ::Read(base, Name::pipeOriginalName, system.m_initialName);
        ::Read(base, Name::pipeName, system.m_name);
        ::Read(base, Name::lineWidth, system.m_lineWidth);
        ::Read(base, Name::dim, system.m_dim);
        ::Read(base, Name::material, system.m_material);
        ::Read(base, Name::outdoorMaterial, system.m_outdoorMaterial);
        ::Read(base, Name::vPipeType, system.m_vPipeType);
        ::Read(base, Name::vPipeRadius, system.m_vPipeRadius);
        ::Read(base, Name::vPipeRadius1, system.m_vPipeRadius1);
        ::Read(base, Name::vPipeRadius2, system.m_vPipeRadius2);
        ::Read(base, Name::waterFlowStatus, system.m_waterFlowStatus);
        ::Read(base, Name::remark, system.m_remark);
        ::Read(base, Name::canRename, system.m_canRename);
        ::Read(base, Name::canDeletePipe, system.m_canDelete);
        ::Read(base, Name::status, system.m_status);
    }

    static std::unique_ptr<LayerNode> ReadLayer(const CVRbTreeItem& item) {
        auto layer = std::make_unique<LayerNode>();
        ::Read(item, Name::oldKey, layer->m_oldKey);
        ::Read(item, Name::layerName, layer->m_layerName);
        ::Read(item, Name::layerColor, layer->m_color);
        ::Read(item, Name::lineStyle, layer->m_linetype);
        layer->m_lineWeight = ParseLineWeight(TextOf(item, Name::lineWeight));
        ::Read(item, Name::remark, layer->m_remark);
        ::Read(item, Name::canDeleteLayer, layer->m_canDelete);
        ::Read(item, Name::canPlot, layer->m_canPlot);
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
                std::unique_ptr<LayerNode> layer = ReadLayer(*one);
                layer->m_layerType = group->m_layerType;
                ::Read(*one, Name::layerKey, layer->m_layerKey);
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
        style.m_key = use;
        ::Read(item, Name::styleName, style.m_name);
        // A style may have no font of one of the two kinds.
        if (item.FindSubItem(Name::chineseFont.name) != nullptr)
            style.m_chineseFont = TextOf(item, Name::chineseFont);
        if (item.FindSubItem(Name::englishFont.name) != nullptr)
            style.m_englishFont = TextOf(item, Name::englishFont);
        ::Read(item, Name::winFont, style.m_isWinFont);
        ::Read(item, Name::fontHeight, style.m_height);
        ::Read(item, Name::widthScale, style.m_scale);
        ::Read(item, Name::bold, style.m_isBold);
        ::Read(item, Name::italic, style.m_isItalic);
        style.m_encoding = TextStyleNode().m_encoding;
        ::Read(item, Name::encoded, style.m_encoding);
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
