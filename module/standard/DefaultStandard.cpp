#include "module/standard/DefaultStandard.h"

namespace {

// Thick lines are for new gravity pipes, medium-thick ones for new pressure pipes, medium ones for vents and
// condensate and equipment, thin ones for texts: b, 0.7b, 0.5b and 0.25b of GB/T 50106-2010 and the width
// group 0.7 of GB/T 50001, in hundredths of a millimetre.
constexpr int gravity = 70;
constexpr int pressure = 50;
constexpr int light = 35;
constexpr int thin = 18;

// Colours and letters as offices have them, letters after the table of pipes of GB/T 50106-2010, zones of a
// system with a number behind them; no norm fixes the colours of drawings.
struct System {
    const wchar_t* name;
    const wchar_t* label;
    Adesk::UInt16 color;
    int lineWeight;
    const wchar_t* material;
    const wchar_t* outdoorMaterial;
    const wchar_t* flow;
    const wchar_t* layers = nullptr; // what its layers are called where it is not its name
};

struct Group {
    const wchar_t* name;
    std::vector<System> systems;
};

constexpr const wchar_t* supplied = L"压力流";
constexpr const wchar_t* drained = L"重力流";

constexpr const wchar_t* ppr = L"PP-R";
constexpr const wchar_t* hot = L"PP-R S3.2"; // of hot water
constexpr const wchar_t* pe = L"PE100";
constexpr const wchar_t* steel = L"镀锌钢管";
constexpr const wchar_t* pvc = L"PVC-U";
constexpr const wchar_t* iron = L"球墨铸铁管";

const std::vector<Group>& Groups() {
    static const std::vector<Group> groups = {
        {L"给水系统",
         {
             {L"给水", L"J", 3, pressure, ppr, pe, supplied},
             {L"给水2", L"J2", 3, pressure, ppr, pe, supplied},
             {L"给水3", L"J3", 3, pressure, ppr, pe, supplied},
             {L"直饮水", L"ZY", 120, pressure, ppr, pe, supplied},
             {L"中水", L"ZJ", 84, pressure, ppr, pe, supplied},
             {L"中水2", L"ZJ2", 84, pressure, ppr, pe, supplied},
             {L"中水3", L"ZJ3", 84, pressure, ppr, pe, supplied},
             {L"循环给水", L"XJ", 140, pressure, steel, pe, supplied},
             {L"循环回水", L"XH", 150, pressure, steel, pe, supplied},
             {L"屋顶水箱给水", L"J0", 3, pressure, ppr, pe, supplied},
         }},
        {L"热水系统",
         {
             {L"热给水", L"RJ", 6, pressure, hot, steel, supplied},
             {L"热给水2", L"RJ2", 6, pressure, hot, steel, supplied},
             {L"热给水3", L"RJ3", 6, pressure, hot, steel, supplied},
             {L"热回水", L"RH", 200, pressure, hot, steel, supplied},
             {L"热回水2", L"RH2", 200, pressure, hot, steel, supplied},
             {L"热回水3", L"RH3", 200, pressure, hot, steel, supplied},
             {L"热媒给水", L"RM", 220, pressure, steel, steel, supplied},
             {L"热媒回水", L"RMH", 222, pressure, steel, steel, supplied},
             {L"蒸汽", L"Z", 210, pressure, steel, steel, supplied},
             {L"蒸汽凝结水", L"N", 212, pressure, steel, steel, supplied},
             {L"膨胀", L"PZ", 214, light, steel, steel, L""},
         }},
        {L"消防系统",
         {
             {L"消防", L"X", 1, pressure, steel, iron, supplied},
             {L"消防2", L"X2", 1, pressure, steel, iron, supplied},
             {L"消防3", L"X3", 1, pressure, steel, iron, supplied},
             {L"喷淋", L"ZP", 30, pressure, steel, iron, supplied},
             {L"喷淋2", L"ZP2", 30, pressure, steel, iron, supplied},
             {L"喷淋3", L"ZP3", 30, pressure, steel, iron, supplied},
             {L"雨淋", L"YL", 20, pressure, steel, iron, supplied},
             {L"水幕", L"SM", 22, pressure, steel, iron, supplied},
             {L"水炮", L"SP", 12, pressure, steel, iron, supplied},
             {L"水喷雾", L"ZW", 14, pressure, steel, iron, supplied},
             {L"细水雾", L"ZXW", 16, pressure, steel, steel, supplied},
             {L"气体灭火", L"Q", 32, pressure, steel, steel, L""},
         }},
        {L"排水系统",
         {
             {L"污水", L"W", 2, gravity, pvc, pvc, drained},
             {L"废水", L"F", 42, gravity, pvc, pvc, drained},
             {L"通气", L"T", 9, light, pvc, pvc, L""},
             {L"压力污水", L"YW", 40, pressure, steel, pe, supplied, L"压力污"},
             {L"压力废水", L"YF", 52, pressure, steel, pe, supplied, L"压力废"},
             {L"凝结水", L"KN", 140, light, pvc, pvc, drained, L"凝结"},
             {L"排水", L"P", 50, gravity, pvc, pvc, drained},
         }},
        {L"雨水系统",
         {
             {L"雨水", L"Y", 4, gravity, pvc, pvc, drained},
             {L"压力雨水", L"YY", 5, pressure, steel, pe, supplied, L"压力雨"},
             {L"虹吸雨水", L"HY", 170, pressure, steel, pe, supplied},
         }},
        {L"其它系统", {{L"其它", L"QT", 7, light, steel, pe, L""}}},
    };
    return groups;
}

// The layer types of a system, and how their layers are named: as the drawings of many offices have them.
struct Type {
    const wchar_t* name;
    const wchar_t* prefix;
    bool isPipe; // in the system's colour and weight
    int lineWeight;
    const wchar_t* attachment;
};

constexpr Type types[] = {
    {L"管线", L"PIPE-", true, 0, L"管线"},         {L"立管", L"VPIPE-", true, 0, L"管线"},
    {L"扣弯", L"BEND-", true, 0, L"管线"},         {L"管径文字", L"DIM_", false, thin, L"标注"},
    {L"管线流向", L"FLOW_", false, thin, L"标注"}, {L"立管标注", L"VDIM_", false, thin, L"标注"},
    {L"阀门", L"VALVE_", false, light, L"附件"},   {L"设备", L"EQUIP_", false, light, L"附件"},
};

// Types without layers of their own.
constexpr const wchar_t* aliases[][2] = {
    {L"管线文字", L"管径文字"},
    {L"附件", L"阀门"},
};

constexpr Adesk::UInt16 labelColor = 7;

AcCmColor ColorOf(Adesk::UInt16 index) {
    AcCmColor color;
    color.setColorIndex(index);
    return color;
}

std::unique_ptr<PipeNode> MakeSystem(const System& row) {
    auto system = std::make_unique<PipeNode>(row.name);
    system->m_lineWidth = row.lineWeight / 100.0;
    system->m_dim = row.label;
    system->m_material = row.material;
    system->m_outdoorMaterial = row.outdoorMaterial;
    system->m_vPipeRadius = 0.5;
    system->m_waterFlowStatus = row.flow;
    system->m_canRename = true;
    for (const Type& type : types) {
        auto layer = std::make_unique<LayerNode>();
        layer->m_oldKey = type.name;
        layer->m_layerType = type.name;
        layer->m_layerKey = row.name;
        layer->m_layerName = CString(type.prefix) + (row.layers != nullptr ? row.layers : row.name);
        layer->m_color = ColorOf(type.isPipe ? row.color : labelColor);
        // Pipes carry the letters of their system; risers and bends are too short for that.
        layer->m_linetype = layer->m_layerType == L"管线" ? CString(L"VR-") + row.label : L"Continuous";
        layer->m_lineWeight = type.isPipe ? row.lineWeight : type.lineWeight;
        layer->m_attachments = {type.attachment};
        system->AddLayerNode(layer.release());
    }
    for (const auto& [source, destination] : aliases)
        system->AddMapping(source, destination, true);
    system->UpdateLayerTypeMap();
    return system;
}

struct Independent {
    const wchar_t* key;
    Adesk::UInt16 color;
    int lineWeight;
};

struct IndependentGroup {
    const wchar_t* type;
    std::vector<Independent> layers;
};

// By the order of the keys.
const std::vector<IndependentGroup>& IndependentGroups() {
    static const std::vector<IndependentGroup> groups = {
        {L"给排水图层",
         {
             {L"维朗给排水", 7, light},
             {L"阀门", 3, light},
             {L"立管编号", 7, thin},
             {L"洁具", 4, thin},
             {L"消防标注", 7, thin},
             {L"桩", 8, thin},
             {L"地漏", 2, light},
             {L"雨水斗", 4, light},
             {L"消火栓", 1, light},
             {L"灭火器文字", 1, thin},
             {L"方沟", 2, light},
             {L"双线管", 7, light},
             {L"地热盘管", 6, light},
             {L"管道标注", 7, thin},
             {L"计算文字", 7, thin},
             {L"计算面积", 8, thin},
             {L"中心线", 1, thin},
             {L"虚线", 7, thin},
             {L"给排水室外", 7, light},
             {L"雨水口", 4, light},
             {L"纵断面图", 7, light},
             {L"网格", 8, thin},
             {L"水箱", 3, light},
             {L"水泵", 3, light},
             {L"给排水法兰", 3, light},
             {L"洞口", 7, thin},
             {L"楼板洞", 7, thin},
             {L"井标注", 7, thin},
             {L"树", 94, thin},
             {L"道路", 8, thin},
             {L"焓湿图", 7, thin},
             {L"焓湿图等温", 1, thin},
             {L"焓湿图等焓", 3, thin},
             {L"焓湿图等湿", 5, thin},
             {L"焓湿图相对湿度", 4, thin},
         }},
        {L"公共图层",
         {
             {L"公标", 3, thin},
             {L"标高", 3, thin},
             {L"坐标", 3, thin},
             {L"索引符号", 3, thin},
             {L"引出标注", 3, thin},
             {L"图名标注", 7, thin},
             {L"公文", 7, thin},
         }},
    };
    return groups;
}

// The field of the discipline in layer names (GB/T 50001): an architect's layer of the same name is another.
constexpr const wchar_t* independentPrefix = L"水-";

std::unique_ptr<OtherLayerNode> MakeOtherLayers(const IndependentGroup& row) {
    auto group = std::make_unique<OtherLayerNode>(row.type);
    for (const Independent& one : row.layers) {
        auto layer = std::make_unique<LayerNode>();
        layer->m_oldKey = one.key;
        layer->m_layerType = row.type;
        layer->m_layerKey = one.key;
        layer->m_layerName = CString(independentPrefix) + one.key;
        layer->m_color = ColorOf(one.color);
        layer->m_linetype = L"Continuous";
        if (layer->m_layerKey == L"中心线")
            layer->m_linetype = L"CENTER";
        else if (layer->m_layerKey == L"虚线")
            layer->m_linetype = L"DASHED";
        layer->m_lineWeight = one.lineWeight;
        group->AddLayerNode(layer.release());
    }
    return group;
}

} // namespace

void AddDefaultMappings(PipeNode& system) {
    for (const auto& [source, destination] : aliases)
        system.AddDefaultMapping(source, destination);
}

PipeStandard MakeDefaultStandard() {
    PipeStandard standard;
    for (const Group& row : Groups()) {
        auto group = std::make_unique<PipeGroupNode>(row.name);
        for (const System& system : row.systems)
            group->AddPipeSystem(MakeSystem(system).release());
        standard.m_groups.push_back(std::move(group));
    }
    for (const IndependentGroup& row : IndependentGroups())
        standard.m_otherLayers.push_back(MakeOtherLayers(row));
    CreateSystemRule all{L"新建系统", {}};
    for (const Type& type : types) {
        standard.m_nameRules.push_back({type.name, type.prefix, {}});
        all.m_layerTypes.emplace_back(type.name);
    }
    standard.m_createRules.push_back(std::move(all));
    standard.m_createRules.push_back({L"只有管线", {L"管线", L"立管", L"扣弯"}});
    standard.m_textStyles = GetDefaultTextStyles();
    constexpr std::pair<const wchar_t*, Adesk::UInt16> objects[] = {
        {L"管线", 256}, {L"立管", 256}, {L"管径标注", 7}, {L"立管标注", 7},
        {L"阀门", 3},   {L"洁具", 4},   {L"地漏", 2},     {L"消火栓", 1},
    };
    for (const auto& [name, color] : objects)
        standard.m_objectColors.push_back({name, ColorOf(color)});
    return standard;
}

const std::vector<CString>& GetIndependentLayerKeys() {
    static const std::vector<CString> keys = [] {
        std::vector<CString> all;
        for (const IndependentGroup& group : IndependentGroups())
            for (const Independent& layer : group.layers)
                all.emplace_back(layer.key);
        return all;
    }();
    return keys;
}
