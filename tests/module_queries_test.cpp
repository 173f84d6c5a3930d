// Every question that the add-on's other modules ask the standard, with answers worked out by hand from a
// small standard, and from none.
#include "base/utf.h"
#include "module/standard/PipeSystemTool.h"
#include "module/standard/StandardManager.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "sys/folders.h"
#include "tests/ed_session.h"
#include "tests/support.h"

#include "dbobjptr.h"
#include "dbsymtb.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace PipeSystemTool;
using Names = std::vector<CString>;

// No two values of it are the same. "Water" of the second group stands in the shadow of the first one's; so
// do its layers p1 and V1.
constexpr const char* standardText = R"(<Vantrel><PipeSystem>
<PipeGroup Name="Wet">
 <Pipe><BaseInfo><PipeOriginalName>Old</PipeOriginalName><PipeName>Water</PipeName><LineWidth>0.61</LineWidth>
  <Dim>J-1-x</Dim><Material>PP-R</Material><OutdoorMaterial>PE100 SDR17</OutdoorMaterial><VPipeType>3</VPipeType>
  <VPipeRaidus>1.5</VPipeRaidus><VPipeRaidus1>2.5</VPipeRaidus1><VPipeRaidus2>3.5</VPipeRaidus2>
  <WaterFlowStatus>flow</WaterFlowStatus><Remark>first</Remark><Status>5</Status></BaseInfo>
  <SysMap><MapItem><SrcItem>扣弯</SrcItem><DesItem>管线</DesItem></MapItem></SysMap>
  <Layer LayerType="管线"><LayerName>P1</LayerName><LayerColor>11</LayerColor><LineStyle>L1</LineStyle>
   <Remark>R1</Remark><LayerAttachSet><LayerAttach>set</LayerAttach><LayerAttach>set</LayerAttach></LayerAttachSet></Layer>
  <Layer LayerType="立管"><LayerName>V1</LayerName><LayerColor>12</LayerColor><LineStyle>L2</LineStyle>
   <Remark>R2</Remark></Layer>
  <Layer LayerType="管径文字"><LayerName>D1</LayerName><LayerColor>13</LayerColor><LineStyle>L3</LineStyle></Layer></Pipe>
 <Pipe><BaseInfo><PipeName>Fire</PipeName></BaseInfo>
  <Layer LayerType="管线"><LayerName>P2</LayerName></Layer>
  <Layer LayerType="扣弯"><LayerName>B2</LayerName></Layer></Pipe></PipeGroup>
<PipeGroup Name="wet"><Pipe><BaseInfo><PipeOriginalName>Old</PipeOriginalName><PipeName>Drain</PipeName></BaseInfo>
  <Layer LayerType="立管"><LayerName>p1</LayerName></Layer>
  <Layer LayerType="管线"><LayerName>P3</LayerName></Layer></Pipe>
 <Pipe><BaseInfo><PipeName>Water</PipeName><LineWidth>9</LineWidth></BaseInfo>
  <Layer LayerType="管线"><LayerName>V1</LayerName></Layer></Pipe></PipeGroup>
</PipeSystem><OtherLayer><LayerGroup LayerType="Common"><Layer><LayerKey>Level</LayerKey><LayerName>O1</LayerName>
 <LayerColor>14</LayerColor><LineStyle>L4</LineStyle><Remark>R4</Remark>
 <LayerAttachSet><LayerAttach>set</LayerAttach></LayerAttachSet></Layer></LayerGroup></OtherLayer>
<TextStyleSetting><TextStyleSet>
 <TextStyle><Key>圆中文字</Key><Name>S1</Name><FontHeigth>4.5</FontHeigth><WHScale>0.55</WHScale></TextStyle>
 <TextStyle><Key>其他标注</Key><Name>S2</Name><FontHeigth>5.5</FontHeigth><WHScale>0.65</WHScale></TextStyle>
</TextStyleSet></TextStyleSetting></Vantrel>)";

CString Text(const CString& text) {
    return text;
}
CString Text(bool answer) {
    return answer ? L"yes" : L"no";
}
CString Text(double number) {
    CString text;
    text.Format(L"%g", number);
    return text;
}
CString Text(int number) {
    return Text(static_cast<double>(number));
}
CString Text(unsigned int number) {
    return Text(static_cast<double>(number));
}
CString Text(const AcCmColor& color) {
    return Text(static_cast<int>(color.colorIndex()));
}

// What a function does to a list that has something in it already, and what it answers.
template<class Fill>
CString Filled(Fill fill) {
    Names names = {L"before"};
    CString answer;
    if constexpr (std::is_void_v<decltype(fill(names))>)
        fill(names);
    else
        answer = L" " + Text(fill(names));
    CString all;
    for (const CString& name : names)
        all += (all.IsEmpty() ? L"" : L"|") + name;
    return all + answer;
}

CString SystemsOf(const std::vector<PipeClassificationNode>& groups) {
    CString all;
    for (const PipeClassificationNode& group : groups) {
        all += group.m_groupName + L":";
        for (const PipeInfoNode& system : group.m_systems)
            all += L" " + system.m_basic.m_name + L"/" + Text(static_cast<int>(system.m_layers.size()));
        all += L";";
    }
    return all;
}

CString PipeLayerType(LPCTSTR layer) {
    int type = -1;
    const bool answer = IsPipeLayer(layer, &type);
    return Text(answer) + L" " + Text(type);
}

CString Attached(LPCTSTR name) {
    LayerAttachNode set;
    GetLayerAttachInfo(name, set);
    CString pipes, others;
    set.LayerNames(LayerAttachNode::kPipeSystemLayer, pipes, L",");
    set.LayerNames(LayerAttachNode::kNonPipeSystemLayer, others, L",");
    return set.m_name + L": " + pipes + L"; " + others;
}

template<class Which>
CString Style(Which which) {
    TextStyleNode style;
    const bool found = GetTextStyleInfo(which, style);
    return style.m_name + L" " + Text(found);
}

// A drawing with the layers P1, in a colour of its own, and V1.
class Queries : public testing::Test {
protected:
    Queries() {
        sys::set_profile_folder(m_folder.path());
        EXPECT_TRUE(sys::prepare_profile(std::filesystem::path(ZEF_SOURCE_FOLDER) / "share"));
        ReloadPipeMaterials();
        CStandardManager::Release();
        const auto file = m_folder.write("Small.vrsl", standardText);
        EXPECT_TRUE(CStandardManager::Create().Load(file.wstring().c_str(), false));
        for (const wchar_t* type : {L"管线", L"立管"})
            EXPECT_NE(GetLayerName(L"Water", type, true), L"");
        const AcDbLayerTableRecordPointer layer(LayerId(L"P1"), AcDb::kForWrite);
        AcCmColor color;
        color.setColorIndex(99);
        layer->setColor(color);
    }
    ~Queries() override { CStandardManager::Release(); }

    static AcDbObjectId LayerId(LPCTSTR name) { return ZefExport::GetLayerIdFromString(name); }

    test::session m_session{test::drawing("viewports_r2018.dxf")};
    test::folder m_folder;
};

} // namespace

TEST_F(Queries, AnswerAsTheStandardSaysAndWithoutOneAsItIsFixed) {
    const CString two[] = {L"Water", L"Drain"};
    const Names twoNames(std::begin(two), std::end(two));
    const CString groups[] = {L"Wet", L"wet"};
    const Names groupNames(std::begin(groups), std::end(groups));
    const AcDbObjectId p1 = LayerId(L"P1");
    const AcDbObjectId v1 = LayerId(L"V1");
    const struct {
        const char* what;
        std::function<CString()> ask;
        const wchar_t* answer;
        const wchar_t* without; // a standard
    } rows[] = {
#define ROW(CALL, ANSWER, WITHOUT) {#CALL, [&] { return Text(CALL); }, ANSWER, WITHOUT}
        // Names of systems.
        ROW(GetPipeSystemNameByLayer(L"p1", L"管线"), L"Water", L""),
        ROW(GetPipeSystemNameByLayer(L"P1", L"立管"), L"Drain", L""),
        ROW(GetPipeSystemNameByLayer(L"P1", L"扣弯"), L"Water", L""),
        ROW(GetPipeSystemNameByLayer(L"O1", L"Common"), L"", L""),
        ROW(GetPipeSystemNameByLayer(L"d1"), L"Water", L""),
        ROW(GetPipeSystemNameByLayer(L"O1"), L"", L""),
        ROW(GetPipeSystemNameByLayer(p1), L"Water", L""),
        ROW(GetPipeSystemNameByLayer(AcDbObjectId::kNull), L"", L""),
        ROW(GetPipeSystemNameByLayer(p1, L"立管"), L"Drain", L""),
        ROW(GetPipeSystemNameByPipeLayer(L"P1"), L"Water", L""),
        ROW(GetPipeSystemNameByPipeLayer(L"B2"), L"Fire", L""),
        ROW(GetPipeSystemNameByPipeLayer(L"D1"), L"", L""),
        ROW(GetPipeSystemNameByPipeLayer(v1), L"Water", L""),
        ROW(OriginSystemNameToCurrentName(L"Old"), L"Water", L"Old"),
        ROW(OriginSystemNameToCurrentName(L"old"), L"old", L"old"),
        ROW(CurrentSystemNameToOriginName(L"Water"), L"Old", L"Water"),
        ROW(CurrentSystemNameToOriginName(L"none"), L"none", L"none"),
        ROW(IsPipeSystemOfCurrentStandard(L"Drain"), L"yes", L"no"),
        ROW(IsPipeSystemOfCurrentStandard(L"drain"), L"no", L"no"),
        ROW(IsGroupIncludedSystem(L"Wet", L"Fire"), L"yes", L"no"),
        ROW(IsGroupIncludedSystem(L"wet", L"Fire"), L"no", L"no"),
        ROW(IsGroupIncludedSystem(L"WET", L"Fire"), L"no", L"no"),
        ROW(GetPipeSystemGroupName(L"p3"), L"wet", L""),
        ROW(GetPipeSystemGroupName(L"O1"), L"", L""),
        ROW(
            [] {
                PipeClassificationNode group;
                const bool found = GetPipeSystemGroup(L"WET", group);
                return SystemsOf({group}) + Text(found);
            }(),
            L"Wet: Water/4 Fire/2;yes", L":;no"),
        ROW(Filled([](Names& names) { return GetPipeSystemNamesOfGroupByPipeSystemName(L"Fire", names); }),
            L"before|Water|Fire yes", L"before no"),
        ROW(Filled([](Names& names) { return GetPipeSystemNamesOfGroupByPipeSystemName(L"fire", names); }),
            L"before yes", L"before no"),
        ROW(Filled([](Names& names) { return GetPipeSystemsBySystemGroup(L"wet", names); }),
            L"before|Drain|Water yes", L"before no"),
        ROW(
            [] {
                std::vector<PipeClassificationNode> all;
                const bool found = GetPipeSystems(all, false);
                return SystemsOf(all) + Text(found);
            }(),
            L"Wet: Water/3 Fire/2;wet: Drain/2 Water/1;yes", L"no"),
        ROW(
            [] {
                std::vector<PipeClassificationNode> all(1);
                return GetPipeSystems(all, false);
            }(),
            L"yes", L"no"),
        ROW(GetCurrentStandardName(), L"Small", L""),
        ROW(Filled([](Names& names) { return GetPipeSystemStandardFiles(names); }), L"before|kol.vrsl yes",
            L"before|kol.vrsl yes"),
        // Layers.
        ROW(GetLayerName(L"water", L"立管"), L"V1", L""),
        ROW(GetLayerName(L"Water", L"扣弯"), L"P1", L""),
        ROW(GetLayerName(L"level", L"common"), L"O1", L""),
        ROW(GetLayerName(L"Level", L"管线"), L"", L""),
        ROW(GetLayerColor(L"p1"), L"99", L"99"),
        ROW(GetLayerColor(L"d1"), L"13", L"0"),
        ROW(GetLayerColor(L"o1"), L"14", L"0"),
        ROW(GetLinetypeName(L"Water", L"管径文字"), L"L3", L""),
        ROW(GetLinetypeName(L"Level", L"Common"), L"L4", L""),
        ROW(GetLayerRemark(L"Water", L"立管"), L"R2", L""),
        ROW(GetLayerRemark(L"Level", L"Common"), L"R4", L""),
        ROW(GetLayerNames(L"Water", L"扣弯"), L"P1", L""),
        ROW(Filled([](Names& names) { return GetLayerNames(L"Fire", L"管线", names); }), L"before|P2 yes",
            L"before no"),
        ROW(Filled([](Names& names) { return GetLayerNames(L"fire", L"管线", names); }), L"before yes",
            L"before no"),
        ROW(GetPipeLayers(L"Water", L";"), L"P1;V1", L""),
        ROW(GetPipeLayers(L"water", L";"), L"", L""),
        ROW(GetPipeLayers(twoNames, L", "), L"P1, V1, P3", L""),
        ROW(GetPipeLayers(two, 2, L","), L"P1,V1,P3", L""),
        ROW(Filled([](Names& names) { GetPipeLayers(L"Fire", names); }), L"before|P2|B2", L"before"),
        ROW(Filled([&](Names& names) { GetPipeLayers(twoNames, names); }), L"before|P1|V1|P3", L"before"),
        ROW(Filled([&](Names& names) { GetPipeLayers(two + 1, 1, names); }), L"before|P3|p1", L"before"),
        ROW(GetSystemGroupLayers(L"Wet", L"管线", L";"), L"P1;P2", L""),
        ROW(Filled([](Names& names) { GetSystemGroupLayers(L"wet", L"立管", names); }), L"before|p1",
            L"before"),
        ROW(GetSystemGroupPipeLayers(L"Wet", L";"), L"P1;V1;P2;B2", L""),
        ROW(GetSystemGroupPipeLayers(L"WET", L";"), L"", L""),
        ROW(GetSystemGroupPipeLayers(groupNames, L";"), L"P1;V1;P2;B2;P3", L""),
        ROW(GetSystemGroupPipeLayers(groups + 1, 1, L";"), L"P3;p1;V1", L""),
        ROW(Filled([](Names& names) { GetSystemGroupPipeLayers(L"wet", names); }), L"before|P3|p1|V1",
            L"before"),
        ROW(Filled([&](Names& names) { GetSystemGroupPipeLayers(groupNames, names); }),
            L"before|P1|V1|P2|B2|P3", L"before"),
        ROW(Filled([&](Names& names) { GetSystemGroupPipeLayers(groups, 1, names); }), L"before|P1|V1|P2|B2",
            L"before"),
        ROW(GetLayerByPipeLayer(L"p1", L"管径文字", true), L"D1", L""),
        ROW(GetLayerByPipeLayer(L"P1", L"扣弯", true), L"P1", L""),
        ROW(GetLayerByPipeLayer(L"P1", L"扣弯", false), L"", L""),
        ROW(GetLayerByPipeLayer(L"D1", L"管线", true), L"", L""),
        ROW(GetLayerByVPipeLayer(L"v1", L"管线", false), L"P1", L""),
        ROW(GetLayerByVPipeLayer(L"P1", L"管线", false), L"P3", L""),
        ROW(Attached(L"set"), L"set: P1; O1", L"set: ; "),
        ROW(Attached(L"SET"), L"SET: ; ", L"SET: ; "),
        ROW(PipeLayerType(L"p1"), L"no 0", L"no -1"),
        ROW(PipeLayerType(L"V1"), L"no 1", L"no -1"),
        ROW(PipeLayerType(L"b2"), L"no 2", L"no -1"),
        ROW(PipeLayerType(L"D1"), L"no -1", L"no -1"),
        ROW(IsPipeLayer(L"P1", nullptr), L"no", L"no"),
        ROW(SystemGroupContainLayer(L"Wet", L"v1", L"立管"), L"yes", L"no"),
        ROW(SystemGroupContainLayer(L"Wet", L"V1", L"管线"), L"no", L"no"),
        ROW(SystemGroupContainLayer(L"wet", L"V1", L"管线"), L"yes", L"no"),
        ROW(SystemGroupContainLayer(L"WET", L"V1", L"立管"), L"no", L"no"),
        // Values of systems.
        ROW(GetPipeMaterial(L"Water", kIndoorMaterial), L"PP-R", L""),
        ROW(GetPipeMaterial(L"Water", kOutdoorMaterial), L"PE100 SDR17", L""),
        ROW(GetPipeLineWidth(L"Water"), L"0.61", L"0.35"),
        ROW(GetPipeLineWidth(L"water"), L"0.35", L"0.35"),
        ROW(GetPipeDim(L"Water", true, L"-"), L"J", L""),
        ROW(GetPipeDim(L"Water", false, L"-"), L"J1x", L""),
        ROW(GetPipeDim(L"Water", true, L"+"), L"J-1-x", L""),
        ROW(GetPipeDimB(L"Water", L"-"), L"1-x", L""),
        ROW(GetPipeDimB(L"Water", L"x"), L"", L""),
        ROW(GetPipeDimB(L"Water", L"+"), L"", L""),
        ROW(GetVPipeRadius(L"Water"), L"1.5", L"0.5"),
        ROW(GetVPipeRadius1(L"Water"), L"2.5", L"0.5"),
        ROW(GetVPipeRadius2(L"Water"), L"3.5", L"0.25"),
        ROW(GetVPipeRadius2(L"none"), L"0.25", L"0.25"),
        ROW(GetVPipeType(L"Water"), L"3", L"0"),
        ROW(GetPipeStatus(L"Water"), L"5", L"0"),
        ROW(GetPipeWaterFlowStatus(L"Water"), L"flow", L""),
        ROW(GetPipeRemark(L"Water"), L"first", L""),
        // Materials; the tables are there without a standard, too.
        ROW(GetPipeMaterialByIndex(GetMaterialIndex(L"pe100 sdr17")), L"PE100 SDR17", L"PE100 SDR17"),
        ROW(GetMaterialIndex(L"none"), L"0", L"0"),
        ROW(GetIndexOfPIpeMaterial(L"pp-r"), L"-1", L"-1"),
        ROW(GetPipeMaterialByIndex(GetIndexOfPIpeMaterial(L"PP-R")), L"PP-R", L"PP-R"),
        ROW(GetPipeMaterialByIndex(-1), L"", L""),
        ROW(GetPipeMaterialByIndex(GetPipeMaterialIndex(L"Water", kOutdoorMaterial)), L"PE100 SDR17", L""),
        ROW(GetPipeMaterialIndex(L"none", kIndoorMaterial), L"-1", L"-1"),
        ROW(GetPrefixOfPipeMaterial(L"PP-R"), L"DN", L"DN"),
        ROW(GetPrefixOfPipeMaterial(L"pp-r"), L"", L""),
        ROW(GetPrefixOfPipeMaterial(GetIndexOfPIpeMaterial(L"球墨铸铁管")), L"DN", L"DN"),
        ROW(GetPipeOuterDn(L"PP-R", 15.0004), L"20", L"20"),
        ROW(GetPipeOuterDn(L"PP-R", 15.002), L"15.002", L"15.002"),
        ROW(GetPipeInnerDn(L"PP-R", 15), L"16", L"16"),
        ROW(GetPipeInnerDn(L"PE100 SDR17", 15), L"15", L"15"),
        ROW(GetPipeThick(L"PP-R", 15), L"4", L"4"),
        ROW(GetPipeThick(L"PE100 SDR17", 15), L"0", L"0"),
        // Text styles.
        ROW(GetTextStyleName(kCircleTextStyle), L"S1", L""),
        ROW(GetTextStyleName(kWellTextStyle), L"", L""),
        ROW(Style(kOtherDimTextStyle), L"S2 yes", L" no"),
        ROW(Style(L"S1"), L"S1 yes", L" no"),
        ROW(Style(L"s1"), L" no", L" no"),
        ROW(
            [] {
                std::vector<TextStyleNode> styles(3);
                const bool found = GetAllTextStyleInfo(styles);
                return Text(static_cast<int>(styles.size())) + styles.back().m_name + Text(found);
            }(),
            L"2S2yes", L"3no"),
        ROW(GetTextStyleHeight(kCircleTextStyle, 7), L"4.5", L"7"),
        ROW(GetTextStyleHeight(kWellTextStyle, 7), L"7", L"7"),
        ROW(GetTextStyleHeight(L"S2", 7), L"5.5", L"7"),
        ROW(GetTextStyleHeight(L"s2", 7), L"7", L"7"),
        ROW(GetTextStyleScale(kCircleTextStyle, 7), L"0.55", L"7"),
        ROW(GetTextStyleScale(L"S2", 7), L"0.65", L"7"),
#undef ROW
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.ask(), row.answer) << row.what;
    CStandardManager::Release();
    for (const auto& row : rows)
        EXPECT_EQ(row.ask(), row.without) << "without a standard: " << row.what;
}

TEST_F(Queries, DiametersAreAppendedAndOthersListsAreSearched) {
    TDPtrList<int> diameters;
    EXPECT_FALSE(GetPipeDnByMaterial(L"none", diameters));
    EXPECT_TRUE(GetPipeDnByMaterial(L"无缝钢管", diameters));
    EXPECT_EQ(diameters.GetCount(), 6);
    EXPECT_EQ(*diameters.GetAt(0), 100);
    EXPECT_TRUE(GetPipeDnByMaterial(L"none", diameters)) << "there were some before";
    diameters.DeleteAll();
    TWCStringList list;
    list.Append(L"One");
    list.Append(L"Two");
    EXPECT_EQ(GetMaterialIndex(list, L"TWO"), 1);
    EXPECT_EQ(GetMaterialIndex(list, L"PP-R"), 0);
}
