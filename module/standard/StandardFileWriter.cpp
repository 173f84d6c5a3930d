#include "module/standard/StandardFile.h"

#include "module/engines/VRbTree.h"
#include "module/engines/VRbTreeXml.h"
#include "module/standard/LineWeightText.h"
#include "module/standard/StandardFileNames.h"

namespace Name = StandardFileName;

namespace {

class Writer {
public:
    explicit Writer(const PipeStandard& standard) {
        CVRbTreeItem* const root = Add(VRBTREE_ROOT, Name::root);
        CVRbTreeItem* const systems = Add(root, Name::pipeSystem);
        for (const auto& group : standard.m_groups)
            AddGroup(systems, *group);
        CVRbTreeItem* const others = Add(root, Name::otherLayer);
        for (const auto& group : standard.m_otherLayers)
            AddOtherLayers(others, *group);
        AddRules(root, standard);
        CVRbTreeItem* const styles = Add(Add(root, Name::textStyleSetting), Name::textStyleSet);
        for (const TextStyleNode& style : standard.m_textStyles)
            AddTextStyle(styles, style);
        CVRbTreeItem* const colors = Add(root, Name::objectColorSetting);
        for (const ObjectColor& one : standard.m_objectColors) {
            CVRbTreeItem* const item = Add(colors, Name::objectColor);
            Add(item, Name::objectName, one.m_name);
            Add(item, Name::color, GetColorText(one.m_color));
        }
    }

    bool Save(LPCTSTR path) const { return SaveTreeToXml(m_tree, path, L"utf-8", false) != 0; }

private:
    CVRbTreeItem* Add(CVRbTreeItem* parent, const Name::Element& element) {
        CVRbTreeItem* const item = m_tree.InsertItem(element.name, parent);
        if (element.comment != nullptr)
            item->SetAttrib(Name::commentAttrib, element.comment);
        return item;
    }
    void Add(CVRbTreeItem* parent, const Name::Element& element, const CString& value) {
        Add(parent, element)->SetValue(value);
    }
    void Add(CVRbTreeItem* parent, const Name::Element& element, int value) {
        Add(parent, element)->SetValue(value);
    }
    void Add(CVRbTreeItem* parent, const Name::Element& element, double value) {
        Add(parent, element)->SetValue(value, 6);
    }

    void AddGroup(CVRbTreeItem* parent, const PipeGroupNode& group) {
        CVRbTreeItem* const item = Add(parent, Name::pipeGroup);
        item->SetAttrib(Name::nameAttrib, group.GroupName());
        item->SetAttrib(Name::canNameAttrib, group.CanRename() ? 1 : 0);
        for (const auto& system : group.Systems())
            AddSystem(Add(item, Name::pipe), *system);
    }

    void AddSystem(CVRbTreeItem* item, const PipeNode& system) {
        CVRbTreeItem* const base = Add(item, Name::baseInfo);
        Add(base, Name::pipeOriginalName, system.m_initialName);
        Add(base, Name::pipeName, system.m_name);
        Add(base, Name::lineWidth, system.m_lineWidth);
        Add(base, Name::dim, system.m_dim);
        Add(base, Name::material, system.m_material);
        Add(base, Name::outdoorMaterial, system.m_outdoorMaterial);
        Add(base, Name::vPipeType, system.m_vPipeType);
        Add(base, Name::vPipeRadius, system.m_vPipeRadius);
        Add(base, Name::vPipeRadius1, system.m_vPipeRadius1);
        Add(base, Name::vPipeRadius2, system.m_vPipeRadius2);
        Add(base, Name::waterFlowStatus, system.m_waterFlowStatus);
        Add(base, Name::remark, system.m_remark);
        Add(base, Name::canRename, system.m_canRename ? 1 : 0);
        Add(base, Name::canDeletePipe, system.m_canDelete ? 1 : 0);
        Add(base, Name::status, system.m_status);
        AddMap(Add(item, Name::sysMap), system);
        for (const auto& layer : system.Layers()) {
            CVRbTreeItem* const one = Add(item, Name::layer);
            one->SetAttrib(Name::layerTypeAttrib, layer->m_layerType);
            AddLayer(one, *layer, false);
        }
    }

    void AddMap(CVRbTreeItem* item, const LayerSet& layers) {
        for (const auto& [source, destination] : layers.LayerTypeMap()) {
            CVRbTreeItem* const one = Add(item, Name::mapItem);
            Add(one, Name::srcItem, source);
            Add(one, Name::desItem, destination);
        }
    }

    void AddLayer(CVRbTreeItem* item, const LayerNode& layer, bool withKey) {
        Add(item, Name::oldKey, layer.m_oldKey);
        if (withKey)
            Add(item, Name::layerKey, layer.m_layerKey);
        Add(item, Name::layerName, layer.m_layerName);
        Add(item, Name::layerColor, GetColorText(layer.m_color));
        Add(item, Name::lineStyle, layer.m_linetype);
        Add(item, Name::lineWeight, GetLineWeightText(layer.m_lineWeight));
        Add(item, Name::remark, layer.m_remark);
        Add(item, Name::canDeleteLayer, layer.m_canDelete ? 1 : 0);
        Add(item, Name::canPlot, layer.m_canPlot ? 1 : 0);
        CVRbTreeItem* const attachments = Add(item, Name::layerAttachSet);
        for (const CString& one : layer.m_attachments)
            Add(attachments, Name::layerAttach, one);
    }

    void AddOtherLayers(CVRbTreeItem* parent, const OtherLayerNode& group) {
        CVRbTreeItem* const item = Add(parent, Name::layerGroup);
        item->SetAttrib(Name::layerTypeAttrib, group.m_layerType);
        AddMap(Add(item, Name::otherMap), group);
        for (const auto& layer : group.Layers())
            AddLayer(Add(item, Name::layer), *layer, true);
    }

    void AddRules(CVRbTreeItem* root, const PipeStandard& standard) {
        CVRbTreeItem* const names = Add(root, Name::layerNameRule);
        for (const LayerNameRule& rule : standard.m_nameRules) {
            CVRbTreeItem* const item = Add(names, Name::nameRule);
            Add(item, Name::ruleLayerType, rule.m_layerType);
            Add(item, Name::layerPrefix, rule.m_prefix);
            Add(item, Name::layerSuffix, rule.m_suffix);
        }
        CVRbTreeItem* const links = Add(Add(root, Name::createRules), Name::linkLayerType);
        for (const CreateSystemRule& rule : standard.m_createRules) {
            CVRbTreeItem* const item = Add(links, Name::createRule);
            item->SetAttrib(Name::nameAttrib, rule.m_name);
            for (const CString& type : rule.m_layerTypes)
                Add(item, Name::linkedLayerType, type);
        }
    }

    void AddTextStyle(CVRbTreeItem* parent, const TextStyleNode& style) {
        CVRbTreeItem* const item = Add(parent, Name::textStyle);
        Add(item, Name::key, style.m_key);
        Add(item, Name::styleName, style.m_name);
        Add(item, Name::chineseFont, style.m_chineseFont);
        Add(item, Name::englishFont, style.m_englishFont);
        Add(item, Name::winFont, style.m_isWinFont ? 1 : 0);
        Add(item, Name::fontHeight, style.m_height);
        Add(item, Name::widthScale, style.m_scale);
        Add(item, Name::bold, style.m_isBold ? 1 : 0);
        Add(item, Name::italic, style.m_isItalic ? 1 : 0);
        Add(item, Name::encoded, style.m_encoding);
    }

    CVRbTree m_tree;
};

} // namespace

bool WriteStandardFile(LPCTSTR path, const PipeStandard& standard) {
    return Writer(standard).Save(path);
}
