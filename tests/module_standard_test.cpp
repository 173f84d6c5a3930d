// The standard: its records, its file, and its look-ups beside slow and obvious ones.
#include "base/utf.h"
#include "module/standard/DefaultStandard.h"
#include "module/standard/LineWeightText.h"
#include "module/standard/LinetypeLibrary.h"
#include "module/standard/PipeSystemTool.h"
#include "module/standard/StandardEdit.h"
#include "module/standard/StandardFile.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "sys/folders.h"
#include "tests/support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>
#include <set>
#include <span>
#include <sstream>

namespace {

using Names = std::vector<CString>;
using Random = std::mt19937;

std::wstring Folded(const CString& text) {
    return base::folded(ViewOf(text));
}

LayerNode* AddLayer(PipeNode& system, LPCTSTR type, LPCTSTR name) {
    auto* const layer = new LayerNode;
    layer->m_layerType = type;
    layer->m_layerKey = system.m_name;
    layer->m_layerName = name;
    system.AddLayerNode(layer);
    return layer;
}

void AddLayer(OtherLayerNode& group, LPCTSTR key, LPCTSTR name) {
    auto layer = std::make_unique<LayerNode>();
    layer->m_layerKey = key;
    layer->m_layerName = name;
    group.AddLayerNode(layer.release());
}

PipeNode* AddSystem(PipeGroupNode& group, LPCTSTR name) {
    auto* const system = new PipeNode(name);
    group.AddPipeSystem(system);
    return system;
}

// A system folder as a user has it at the first start.
class SystemFolder {
public:
    SystemFolder() : m_before(sys::profile_folder()) {
        sys::set_profile_folder(m_folder.path());
        EXPECT_TRUE(sys::prepare_profile(std::filesystem::path(ZEF_SOURCE_FOLDER) / "share"));
        ReloadPipeMaterials();
        ReloadLinetypes();
    }
    ~SystemFolder() { sys::set_profile_folder(m_before); }
    SystemFolder(const SystemFolder&) = delete;
    SystemFolder& operator=(const SystemFolder&) = delete;

private:
    std::filesystem::path m_before;
    test::folder m_folder;
};

// A manager that no test before has touched.
CStandardManager& FreshManager() {
    CStandardManager::Release();
    return CStandardManager::Create();
}

std::wostream& operator<<(std::wostream& out, const CString& text) {
    return out << text.GetString();
}

// A standard as one text, to be compared.
std::wstring Shown(const PipeStandard& standard) {
    std::wostringstream out;
    const auto layer = [&](const LayerNode& one) {
        out << L"  " << one.m_layerType << L"|" << one.m_layerKey << L"|" << one.m_layerName << L"|"
            << one.m_oldKey << L"|" << GetColorText(one.m_color) << L"|" << one.m_linetype << L"|"
            << one.m_lineWeight << L"|" << one.m_remark << L"|" << one.m_canDelete << one.m_canPlot;
        for (const CString& set : one.m_attachments)
            out << L"|" << set;
        out << L"\n";
    };
    const auto layers = [&](const LayerSet& set) {
        for (const auto& [from, to] : set.LayerTypeMap())
            out << L"  " << from << L" -> " << to << set.IsMapped(from) << L"\n";
        for (const auto& one : set.Layers())
            layer(*one);
    };
    for (const auto& group : standard.m_groups) {
        out << group->GroupName() << group->CanRename() << L"\n";
        for (const auto& system : group->Systems()) {
            out << L" " << system->m_initialName << L"|" << system->m_name << L"|" << system->m_lineWidth
                << L"|" << system->m_dim << L"|" << system->m_material << L"|" << system->m_outdoorMaterial
                << L"|" << system->m_vPipeType << L"|" << system->m_vPipeRadius << L"|"
                << system->m_vPipeRadius1 << L"|" << system->m_vPipeRadius2 << L"|"
                << system->m_waterFlowStatus << L"|" << system->m_remark << L"|" << system->m_canDelete
                << system->m_canRename << system->m_status << L"\n";
            layers(*system);
        }
    }
    for (const auto& group : standard.m_otherLayers) {
        out << L"other " << group->m_layerType << L"\n";
        layers(*group);
    }
    for (const LayerNameRule& rule : standard.m_nameRules)
        out << L"rule " << rule.m_layerType << L"|" << rule.m_prefix << L"|" << rule.m_suffix << L"\n";
    for (const CreateSystemRule& rule : standard.m_createRules) {
        out << L"create " << rule.m_name;
        for (const CString& type : rule.m_layerTypes)
            out << L"|" << type;
        out << L"\n";
    }
    for (const TextStyleNode& style : standard.m_textStyles)
        out << L"style " << style.m_key << L"|" << style.m_name << L"|" << style.m_chineseFont << L"|"
            << style.m_englishFont << L"|" << style.m_isWinFont << L"|" << style.m_height << L"|"
            << style.m_scale << L"|" << style.m_isBold << style.m_isItalic << L"|" << style.m_encoding
            << L"\n";
    for (const ObjectColor& one : standard.m_objectColors)
        out << L"color " << one.m_name << L"|" << GetColorText(one.m_color) << L"\n";
    return out.str();
}

// ---- random standards with names that collide, also but for case

const wchar_t* Pick(Random& random, std::span<const wchar_t* const> from) {
    return from[random() % from.size()];
}

constexpr const wchar_t* systemNames[] = {L"给水", L"给水2", L"Fire",  L"FIRE",
                                          L"fire", L"Äpfel", L"äPFEL", L""};
constexpr const wchar_t* typeNames[] = {L"管线", L"立管", L"扣弯", L"Dim", L"DIM", L"dim", L"附件"};
constexpr const wchar_t* layerNames[] = {L"PIPE-A", L"pipe-a", L"PIPE-B", L"Rohr-Ä",
                                         L"rohr-ä", L"VPIPE",  L"0",      L"X"};
constexpr const wchar_t* groupNames[] = {L"G", L"g", L"H"};
constexpr const wchar_t* setNames[] = {L"all", L"ALL", L"some"};

PipeStandard RandomStandard(Random& random) {
    PipeStandard standard;
    const auto fill = [&](LayerSet& layers, CString LayerNode::*key, std::span<const wchar_t* const> keys,
                          const CString& owner, CString LayerNode::*ownerField) {
        for (std::size_t i = random() % 6; i > 0; --i) {
            auto layer = std::make_unique<LayerNode>();
            layer.get()->*ownerField = owner;
            layer.get()->*key = Pick(random, keys);
            layer->m_layerName = Pick(random, layerNames);
            if (random() % 2 == 0)
                layer->m_attachments.emplace_back(Pick(random, setNames));
            layers.AddLayerNode(layer.release());
        }
        for (std::size_t i = random() % 3; i > 0; --i)
            layers.AddMapping(Pick(random, keys), Pick(random, keys));
        layers.UpdateLayerTypeMap();
    };
    for (std::size_t i = random() % 4; i > 0; --i) {
        auto group = std::make_unique<PipeGroupNode>(Pick(random, groupNames));
        for (std::size_t k = random() % 4; k > 0; --k) {
            auto system = std::make_unique<PipeNode>(Pick(random, systemNames));
            system->m_initialName = Pick(random, systemNames);
            fill(*system, &LayerNode::m_layerType, typeNames, system->m_name, &LayerNode::m_layerKey);
            group->AddPipeSystem(system.release());
        }
        standard.m_groups.push_back(std::move(group));
    }
    for (std::size_t i = random() % 3; i > 0; --i) {
        auto group = std::make_unique<OtherLayerNode>(Pick(random, typeNames));
        fill(*group, &LayerNode::m_layerKey, systemNames, group->m_layerType, &LayerNode::m_layerType);
        standard.m_otherLayers.push_back(std::move(group));
    }
    for (std::size_t i = random() % 4; i > 0; --i)
        standard.m_textStyles.push_back(GetDefaultTextStyles()[random() % 9]);
    return standard;
}

// One change as a settings dialog would make it, through the smallest part that holds it.
void ChangeSomething(StandardEdit& edit, Random& random) {
    PipeGroupNode* const group = random() % 2 == 0 ? edit.Group(Pick(random, groupNames)) : nullptr;
    PipeNode* const system = edit.System(Pick(random, systemNames));
    LayerNode* const layer =
        system != nullptr ? system->FindLayerNode(static_cast<int>(random() % 3)) : nullptr;
    OtherLayerNode* const other = edit.OtherLayers(Pick(random, typeNames));
    bool found = false;
    switch (random() % 9) {
    case 0:
        if (group != nullptr)
            group->RenamePipeSystem(Pick(random, systemNames), Pick(random, systemNames));
        break;
    case 1:
        if (group != nullptr)
            group->DeletePipeSystem(Pick(random, systemNames));
        break;
    case 2:
        if (group != nullptr)
            group->MovePipeSystem(Pick(random, systemNames), random() % 2 == 0, found);
        break;
    case 3:
        if (layer != nullptr)
            layer->m_layerName = Pick(random, layerNames);
        break;
    case 4:
        if (system != nullptr)
            system->DelLayerNode(layer);
        break;
    case 5:
        if (layer != nullptr)
            layer->m_attachments.emplace_back(Pick(random, setNames));
        break;
    case 6:
        if (other != nullptr)
            other->DelLayerNode(other->FindLayerNode(0));
        else
            AddLayer(edit.AddOtherLayers(Pick(random, typeNames)), Pick(random, systemNames),
                     Pick(random, layerNames));
        break;
    case 7:
        if (std::vector<Owned<PipeGroupNode>>& groups = edit.Whole().m_groups; groups.size() > 1)
            std::swap(groups.front(), groups.back());
        break;
    default:
        if (system != nullptr)
            AddLayer(*system, Pick(random, typeNames), Pick(random, layerNames));
        if (group != nullptr)
            AddSystem(*group, Pick(random, systemNames));
    }
}

// ---- the slow and obvious look-ups: they know nothing but the lists

struct Typed {
    CString type;
    const LayerNode* layer;
};

// The keys of a set in their order with what stands under each; aliases only where there is no layer.
std::vector<Typed> InKeyOrder(const LayerSet& set, CString LayerNode::*key) {
    std::map<CString, const LayerNode*, KeyOrder> all;
    for (const auto& layer : set.Layers())
        all[layer.get()->*key] = layer.get();
    for (const auto& [source, destination] : set.LayerTypeMap())
        if (set.IsMapped(source))
            all[source] = set.LayerIndex().at(source).get();
    std::vector<Typed> rows;
    for (const auto& [type, layer] : all)
        rows.push_back({type, layer});
    return rows;
}

const LayerNode* SlowLayer(const PipeStandard& standard, const CString& system, const CString& type) {
    for (const auto& group : standard.m_groups)
        for (const auto& one : group->Systems()) {
            if (Folded(one->m_name) != Folded(system))
                continue;
            for (const Typed& row : InKeyOrder(*one, &LayerNode::m_layerType))
                if (Folded(row.type) == Folded(type))
                    return row.layer;
            break;
        }
    for (const auto& group : standard.m_otherLayers)
        if (Folded(group->m_layerType) == Folded(type))
            for (const Typed& row : InKeyOrder(*group, &LayerNode::m_layerKey))
                if (Folded(row.type) == Folded(system))
                    return row.layer;
    return nullptr;
}

const LayerNode* SlowLayerByName(const PipeStandard& standard, const CString& name, CString& groupName) {
    for (const auto& group : standard.m_groups)
        for (const auto& system : group->Systems())
            for (const Typed& row : InKeyOrder(*system, &LayerNode::m_layerType))
                if (Folded(row.layer->m_layerName) == Folded(name)) {
                    groupName = group->GroupName();
                    return row.layer;
                }
    return nullptr;
}

const LayerNode* SlowLayerByType(const PipeGroupNode& group, const CString& type, const CString& name) {
    for (const auto& system : group.Systems()) {
        for (const auto& layer : system->Layers())
            if (Folded(layer->m_layerType) == Folded(type) && Folded(layer->m_layerName) == Folded(name))
                return layer.get();
        for (const auto& [source, destination] : system->LayerTypeMap())
            if (system->IsMapped(source) && Folded(source) == Folded(type) &&
                Folded(system->LayerIndex().at(source)->m_layerName) == Folded(name))
                return system->LayerIndex().at(source).get();
    }
    return nullptr;
}

int SlowPipeLayer(const PipeStandard& standard, const CString& name) {
    for (const auto& group : standard.m_groups)
        for (int i = 0; i < 3; ++i)
            if (SlowLayerByType(*group, typeNames[i], name) != nullptr)
                return i;
    return -1;
}

const PipeNode* SlowSystem(const PipeStandard& standard, const CString& name, CString PipeBasicNode::*field) {
    for (const auto& group : standard.m_groups)
        for (const auto& system : group->Systems())
            if (system.get()->*field == name)
                return system.get();
    return nullptr;
}

CString NameOf(const LayerNode* layer, CString LayerNode::*field) {
    return layer != nullptr ? layer->*field : CString();
}

void CompareAll(const PipeStandard& standard) {
    using namespace PipeSystemTool;
    for (const wchar_t* const system : systemNames) {
        for (const wchar_t* const type : typeNames)
            EXPECT_EQ(GetLayerName(system, type),
                      NameOf(SlowLayer(standard, system, type), &LayerNode::m_layerName))
                << base::narrow(system) << " " << base::narrow(type);
        const PipeNode* const named = SlowSystem(standard, system, &PipeBasicNode::m_name);
        EXPECT_EQ(IsPipeSystemOfCurrentStandard(system), named != nullptr);
        const PipeNode* const initial = SlowSystem(standard, system, &PipeBasicNode::m_initialName);
        EXPECT_EQ(OriginSystemNameToCurrentName(system),
                  initial != nullptr && !initial->m_name.IsEmpty() ? initial->m_name : CString(system));
    }
    for (const wchar_t* const name : layerNames) {
        CString group;
        EXPECT_EQ(GetPipeSystemNameByLayer(name),
                  NameOf(SlowLayerByName(standard, name, group), &LayerNode::m_layerKey));
        EXPECT_EQ(GetPipeSystemGroupName(name), group);
        int type = -1;
        EXPECT_FALSE(IsPipeLayer(name, &type));
        EXPECT_EQ(type, SlowPipeLayer(standard, name));
        for (const wchar_t* const wanted : typeNames) {
            const LayerNode* first = nullptr;
            for (const auto& one : standard.m_groups)
                if (first == nullptr)
                    first = SlowLayerByType(*one, wanted, name);
            EXPECT_EQ(GetPipeSystemNameByLayer(name, wanted), NameOf(first, &LayerNode::m_layerKey));
        }
    }
    for (const wchar_t* const name : setNames) {
        LayerAttachNode set;
        GetLayerAttachInfo(name, set);
        Names found, expected;
        set.LayerNames(LayerAttachNode::kPipeSystemLayer, found);
        for (const auto& group : standard.m_groups)
            for (const auto& system : group->Systems())
                for (const auto& layer : system->Layers())
                    if (layer->IsContainLayerAttach(name))
                        expected.push_back(layer->m_layerName);
        set.LayerNames(LayerAttachNode::kNonPipeSystemLayer, found);
        for (const auto& group : standard.m_otherLayers)
            for (const auto& layer : group->Layers())
                if (layer->IsContainLayerAttach(name))
                    expected.push_back(layer->m_layerName);
        EXPECT_EQ(found, expected);
    }
}

} // namespace

TEST(Standard, LookUpsAreThoseOfAWalkThroughTheRecords) {
    constexpr unsigned seeds = 80;
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        SCOPED_TRACE(seed);
        Random random(seed);
        CStandardManager& manager = FreshManager();
        test::folder folder;
        const CString path = (folder / "empty.vrsl").wstring().c_str();
        ASSERT_TRUE(WriteStandardFile(path, PipeStandard()));
        ASSERT_TRUE(manager.Load(path, false));
        StandardEdit(manager).Whole() = RandomStandard(random);
        CompareAll(manager.Standard());
        for (int change = 0; change < 12; ++change) {
            {
                StandardEdit edit(manager);
                ChangeSomething(edit, random);
                if (random() % 2 == 0)
                    CompareAll(manager.Standard());
                if (random() % 4 == 0)
                    ChangeSomething(edit, random);
                if (random() % 8 == 0)
                    edit.Whole() = RandomStandard(random);
            }
            CompareAll(manager.Standard());
        }
        if (testing::Test::HasFailure())
            break;
    }
    CStandardManager::Release();
}

TEST(Standard, FilesGiveBackWhatWasWritten) {
    const test::folder folder;
    const auto first = folder / "first.vrsl";
    const auto second = folder / "second.vrsl";
    PipeStandard standard = MakeDefaultStandard();
    standard.m_groups[0]->SetGroupName(L"<&\"'> 组");
    PipeNode& system = *standard.m_groups[0]->Systems()[0];
    system.m_lineWidth = 0.123456;
    system.m_vPipeType = -7;
    LayerNode& layer = *system.Layers()[0];
    layer.m_color.setRGB(255, 0, 128);
    layer.m_lineWeight = -2;
    layer.m_canPlot = false;
    layer.m_attachments = {L"a", L"b"};
    standard.m_otherLayers[0]->AddMapping(L"别名", L"阀门");
    standard.m_otherLayers[0]->UpdateLayerTypeMap();
    standard.m_textStyles[2].m_isBold = true;
    ASSERT_TRUE(WriteStandardFile(first.wstring().c_str(), standard));
    PipeStandard read;
    ASSERT_TRUE(ReadStandardFile(first.wstring().c_str(), read));
    EXPECT_EQ(Shown(read), Shown(standard));
    ASSERT_TRUE(WriteStandardFile(second.wstring().c_str(), read));
    EXPECT_EQ(test::read(second), test::read(first));
    EXPECT_FALSE(WriteStandardFile((folder / "none" / "x.vrsl").wstring().c_str(), read));
}

TEST(Standard, WhatAFileLacksHasItsDefault) {
    const test::folder folder;
    const auto path = folder.write("bare.vrsl", R"(<Vantrel>
<PipeSystem><PipeGroup Name="G"><Pipe><BaseInfo><PipeName>甲</PipeName><LineWidth>x</LineWidth><Status/>
<VPipeRaidus2>1e999</VPipeRaidus2></BaseInfo>
<Layer LayerType="管线"><LayerName>A</LayerName><LayerColor>255,0,0</LayerColor><LineWeight>0.10</LineWeight></Layer>
<Layer LayerType="立管"><LayerName>B</LayerName><LayerColor>ByBlock</LayerColor><CanPlot>0</CanPlot></Layer>
<Layer LayerType="ARROW"/>
<SysMap><MapItem><SrcItem>扣弯</SrcItem><DesItem>立管</DesItem></MapItem></SysMap></Pipe></PipeGroup></PipeSystem>
<LayerNameRule><NameRule><LayerType>管线</LayerType><LayerPrefix>P-</LayerPrefix></NameRule>
<NameRule><LayerType>Arrow</LayerType></NameRule></LayerNameRule>
<TextStyleSetting><TextStyleSet><TextStyle><Key>圆中文字</Key></TextStyle></TextStyleSet></TextStyleSetting>
</Vantrel>)");
    PipeStandard standard;
    ASSERT_TRUE(ReadStandardFile(path.wstring().c_str(), standard));
    const PipeNode& system = *standard.m_groups.at(0)->Systems()[0];
    EXPECT_EQ(system.m_lineWidth, 0.0);
    EXPECT_EQ(system.m_vPipeRadius, 0.0);
    EXPECT_EQ(system.m_vPipeRadius1, 0.5);
    EXPECT_EQ(system.m_vPipeRadius2, 0.25);
    EXPECT_FALSE(system.m_canDelete || system.m_canRename);
    const LayerNode& pipe = *system.Layers().at(0);
    EXPECT_TRUE(pipe.m_color.isByColor() && pipe.m_color.red() == 255 && pipe.m_color.green() == 0);
    EXPECT_EQ(pipe.m_lineWeight, -3);
    EXPECT_TRUE(pipe.m_canPlot);
    EXPECT_EQ(pipe.m_layerKey, L"甲");
    EXPECT_TRUE(system.Layers().at(1)->m_color.isByBlock());
    EXPECT_FALSE(system.Layers().at(1)->m_canPlot);
    EXPECT_EQ(system.FindLayerNode(L"扣弯", false), nullptr);
    EXPECT_EQ(system.FindLayerNode(L"扣弯", true), system.Layers().at(1).get());
    // A rule for every layer type in use.
    const std::vector<LayerNameRule> rules = {
        {L"管线", L"P-", L""}, {L"Arrow", L"", L""}, {L"立管", L"", L""}};
    EXPECT_EQ(standard.m_nameRules, rules);
    EXPECT_EQ(standard.m_textStyles.at(0).m_scale, 1.1);
    EXPECT_EQ(standard.m_textStyles.at(0).m_encoding, L"CHINESE_GB2312");
    EXPECT_TRUE(standard.m_otherLayers.empty() && standard.m_createRules.empty() &&
                standard.m_objectColors.empty());
}

TEST(Standard, ABrokenFileLeavesTheStandardAsItWas) {
    const test::folder folder;
    const auto good = folder / "good.vrsl";
    ASSERT_TRUE(WriteStandardFile(good.wstring().c_str(), MakeDefaultStandard()));
    CStandardManager& manager = FreshManager();
    ASSERT_TRUE(manager.Load(good.wstring().c_str(), false));
    const std::wstring before = Shown(manager.Standard());
    const std::string whole = test::read(good);
    for (const std::string& bytes :
         {std::string(), std::string("<Vantrel"), whole.substr(0, whole.size() / 2), std::string("text")}) {
        const auto broken = folder.write("broken.vrsl", bytes);
        EXPECT_FALSE(manager.Load(broken.wstring().c_str(), false)) << bytes.substr(0, 20);
        EXPECT_EQ(Shown(manager.Standard()), before);
        EXPECT_EQ(manager.FileName(), good.wstring().c_str());
    }
    CStandardManager::Release();
}

TEST(Standard, SystemsMoveAndChangeTheirNames) {
    PipeGroupNode group(L"G");
    for (const wchar_t* name : {L"a", L"b", L"c"})
        AddLayer(*AddSystem(group, name), L"管线", name);
    bool found = false;
    EXPECT_FALSE(group.MovePipeSystem(L"x", true, found));
    EXPECT_FALSE(found);
    EXPECT_FALSE(group.MovePipeSystem(L"a", true, found));
    EXPECT_TRUE(found);
    EXPECT_FALSE(group.MovePipeSystem(L"c", false, found));
    EXPECT_TRUE(group.MovePipeSystem(L"c", true, found));
    EXPECT_EQ(group.GetSystemIndex(L"c"), 1);
    EXPECT_EQ(group.FindPipeSystem(-1), nullptr);
    EXPECT_EQ(group.FindPipeSystem(3), nullptr);

    EXPECT_FALSE(group.RenamePipeSystem(L"A", L"z"));
    EXPECT_TRUE(group.RenamePipeSystem(L"a", L"z"));
    CString now;
    EXPECT_TRUE(group.OldSystemNameToCurrentName(L"a", now));
    EXPECT_EQ(now, L"z");
    EXPECT_EQ(group.FindPipeSystem(L"z")->Layers()[0]->m_layerKey, L"z");
    EXPECT_EQ(group.FindPipeSystem(L"a"), nullptr);

    // A layer that still has the old name follows; one whose system has it now stays with that.
    EXPECT_TRUE(group.RenamePipeSystem(L"c", L"a"));
    group.FindPipeSystem(L"z")->Layers()[0]->m_layerKey = L"a";
    group.ConvertOldSysNameToCurrentName();
    EXPECT_EQ(group.FindPipeSystem(L"z")->Layers()[0]->m_layerKey, L"z");
    EXPECT_EQ(group.FindPipeSystem(L"a")->Layers()[0]->m_layerKey, L"a");

    EXPECT_FALSE(group.CanRenameLayerName(L"z", L"B"));
    EXPECT_TRUE(group.CanRenameLayerName(L"B", L"b"));

    // A copy is one of its own.
    PipeGroupNode copy;
    copy.CopyFrom(&group);
    EXPECT_TRUE(group.DeletePipeSystem(L"b"));
    EXPECT_EQ(copy.FindLayerNode(L"B", L"管线")->m_layerName, L"b");
}

TEST(Standard, LayersAndTheirAliases) {
    PipeNode system(L"s");
    LayerNode* const first = AddLayer(system, L"管线", L"one");
    LayerNode* const second = AddLayer(system, L"管线", L"two");
    system.AddMapping(L"立管", L"管线", true);
    system.AddMapping(L"扣弯", L"none");
    system.UpdateLayerTypeMap();
    EXPECT_EQ(system.FindLayerNode(L"管线", false), second); // the later one
    EXPECT_EQ(system.FindLayerNode(L"立管", true), second);
    EXPECT_EQ(system.FindLayerNode(L"立管", L"TWO", true), second);
    EXPECT_EQ(system.FindLayerNode(L"立管", L"two", false), nullptr);
    EXPECT_EQ(system.FindLayerNode(L"扣弯", true), nullptr);
    EXPECT_TRUE(system.IsDefaultMapping(L"立管"));
    EXPECT_FALSE(system.IsDefaultMapping(L"扣弯"));

    const std::unique_ptr<PipeNode> clone(system.Clone());
    system.DelLayerNode(second); // with the alias; the one in its shadow counts again
    EXPECT_EQ(system.FindLayerNode(L"管线", false), first);
    EXPECT_EQ(system.FindLayerNode(L"立管", true), nullptr);
    EXPECT_EQ(clone->FindLayerNode(L"立管", true)->m_layerName, L"two");

    // Types that differ in case only are two.
    PipeNode from(L"s");
    AddLayer(from, L"ABC", L"large");
    AddLayer(from, L"abc", L"small");
    PipeNode to(L"s");
    AddLayer(to, L"abc", L"old");
    from.UpdateLayerTo(&to);
    from.UpdateLayerTo(&to);
    EXPECT_EQ(to.FindLayerNode(L"ABC", L"large", false), to.FindLayerNode(1));
    EXPECT_EQ(to.FindLayerNode(L"abc", L"small", false), to.FindLayerNode(0));
    EXPECT_EQ(to.GetLayerNum(), 2);
    LayerNode changed = *to.FindLayerNode(0);
    changed.m_layerName = L"smaller";
    EXPECT_TRUE(to.UpdateLayer(L"abc", changed));
    EXPECT_EQ(to.FindLayerNode(1)->m_layerName, L"large");

    LayerNode* const own = AddLayer(*clone, L"立管", L"three"); // no alias any more
    EXPECT_EQ(clone->FindLayerNode(L"立管", false), own);
    PipeInfoNode info;
    clone->GetPipeInfo(info, false);
    EXPECT_EQ(info.m_layers.size(), 2U);
}

TEST(Standard, DiametersOfMaterials) {
    const SystemFolder folder;
    ASSERT_FALSE(GetPipeMaterials().empty());
    EXPECT_NEAR(GetPipeOutDByDn(L"PP-R", 15.0), 0.020, 1e-12); // metres
    EXPECT_NEAR(GetPipeDjByDn(L"PP-R", 15.0), 0.016, 1e-12);
    EXPECT_NEAR(GetPipeDjByDn(L"none", 15.0), 0.015, 1e-12);
    // Walls of PP-R are dn / (2 S + 1), rounded up to a tenth; 3.2 stands for the square root of ten.
    const std::pair<const wchar_t*, double> series[] = {{L"PP-R", 5.0},
                                                        {L"PP-R S4", 4.0},
                                                        {L"PP-R S3.2", std::sqrt(10.0)},
                                                        {L"PP-R S2.5", 2.5},
                                                        {L"PP-R S2", 2.0}};
    for (const auto& [name, s] : series)
        for (const PipeDiameter& row :
             GetPipeMaterials()[static_cast<std::size_t>(PipeSystemTool::GetIndexOfPIpeMaterial(name))]
                 .m_diameters) {
            const double wall = std::max(std::ceil(row.m_outer / (2 * s + 1) * 10 - 1e-6) / 10, 2.0);
            EXPECT_NEAR((row.m_outer - row.m_inner) / 2, wall, 0.11)
                << base::narrow(name) << " " << row.m_outer;
        }
    for (const PipeMaterial& material : GetPipeMaterials()) {
        EXPECT_GE(material.m_source.Find(L'-'), 0)
            << "without edition: " << base::narrow(material.m_source.GetString());
        double last = 0;
        for (const PipeDiameter& row : material.m_diameters) {
            EXPECT_GT(row.m_dn, last) << base::narrow(material.m_name.GetString());
            EXPECT_GT(row.m_outer, row.m_inner);
            last = row.m_dn;
        }
    }
}

TEST(Standard, TheShippedStandardIsTheBuiltInOne) {
    const SystemFolder folder;
    PipeStandard shipped;
    ASSERT_TRUE(ReadStandardFile(
        (std::filesystem::path(ZEF_SOURCE_FOLDER) / "share/kol.vrsl").wstring().c_str(), shipped));
    EXPECT_EQ(Shown(shipped), Shown(MakeDefaultStandard()));
    // Materials are used where their own marks say; linetypes are those of the table.
    const auto isMarked = [](const CString& name, bool PipeMaterial::*mark) {
        return std::ranges::any_of(GetPipeMaterials(), [&](const PipeMaterial& material) {
            return material.m_name == name && material.*mark;
        });
    };
    Names linetypes = {L"Continuous"};
    GetLinetypeNames(linetypes);
    for (const auto& group : shipped.m_groups)
        for (const auto& system : group->Systems()) {
            SCOPED_TRACE(base::narrow(system->m_name.GetString()));
            EXPECT_TRUE(isMarked(system->m_material, &PipeMaterial::m_isIndoor));
            EXPECT_TRUE(isMarked(system->m_outdoorMaterial, &PipeMaterial::m_isOutdoor));
            EXPECT_TRUE(system->IsDefaultMapping(L"附件"));
            EXPECT_EQ(system->FindLayerNode(L"管线", false)->m_linetype, L"VR-" + system->m_dim);
            for (const auto& layer : system->Layers())
                EXPECT_TRUE(std::ranges::count(linetypes, layer->m_linetype));
        }
    std::set<std::wstring> names;
    for (const auto& group : shipped.m_groups)
        for (const auto& system : group->Systems())
            for (const auto& layer : system->Layers())
                EXPECT_TRUE(names.insert(Folded(layer->m_layerName)).second)
                    << base::narrow(layer->m_layerName.GetString());
    EXPECT_EQ(GetIndependentLayerKeys().size(), 42U);
}
