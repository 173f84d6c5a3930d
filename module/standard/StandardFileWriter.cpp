#include "module/standard/StandardFile.h"

#include "module/engines/VRbTree.h"
#include "module/engines/VRbTreeXml.h"
#include "module/standard/LineWeightText.h"
#include "module/standard/StandardFileFields.h"

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
            ForEachTextStyleField(style, AddTo(Add(styles, Name::textStyle)));
        CVRbTreeItem* const colors = Add(root, Name::objectColorSetting);
        for (const ObjectColor& one : standard.m_objectColors)
            ForEachObjectColorField(one, AddTo(Add(colors, Name::objectColor)));
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
    void Add(CVRbTreeItem* parent, const Name::Element& element, bool value) {
        Add(parent, element, value ? 1 : 0);
    }
    void Add(CVRbTreeItem* parent, const Name::Element& element, const AcCmColor& value) {
        Add(parent, element, GetColorText(value));
    }
    void Add(CVRbTreeItem* parent, const Name::Element& element, EmptyText<const CString> text) {
        Add(parent, element, text.value);
    }
    void Add(CVRbTreeItem* parent, const Name::Element& element, LineWeightValue<const int> weight) {
        Add(parent, element, GetLineWeightText(weight.value));
    }

    // Adds each field of a record that it is handed.
    struct FieldAdder {
        void operator()(const Name::Element& element, const auto& value) const {
            writer.Add(item, element, value);
        }
        Writer& writer;
        CVRbTreeItem* item;
    };
    FieldAdder AddTo(CVRbTreeItem* item) { return {*this, item}; }

    void AddGroup(CVRbTreeItem* parent, const PipeGroupNode& group) {
        CVRbTreeItem* const item = Add(parent, Name::pipeGroup);
        item->SetAttrib(Name::nameAttrib, group.GroupName());
        item->SetAttrib(Name::canNameAttrib, group.CanRename() ? 1 : 0);
        for (const auto& system : group.Systems())
            AddSystem(Add(item, Name::pipe), *system);
    }

    void AddSystem(CVRbTreeItem* item, const PipeNode& system) {
        ForEachSystemField(system, AddTo(Add(item, Name::baseInfo)));
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
        ForEachLayerField(layer, withKey, AddTo(item));
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
        for (const LayerNameRule& rule : standard.m_nameRules)
            ForEachNameRuleField(rule, AddTo(Add(names, Name::nameRule)));
        CVRbTreeItem* const links = Add(Add(root, Name::createRules), Name::linkLayerType);
        for (const CreateSystemRule& rule : standard.m_createRules) {
            CVRbTreeItem* const item = Add(links, Name::createRule);
            item->SetAttrib(Name::nameAttrib, rule.m_name);
            for (const CString& type : rule.m_layerTypes)
                Add(item, Name::linkedLayerType, type);
        }
    }

    CVRbTree m_tree;
};

} // namespace

bool WriteStandardFile(LPCTSTR path, const PipeStandard& standard) {
    return Writer(standard).Save(path);
}
