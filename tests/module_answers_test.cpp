// What the standard makes in the drawing and writes on pipes: every exported function at least once, with a
// small standard by which the answers can be worked out by hand.
#include "base/utf.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/rx/applications.h"
#include "module/standard/PipeSystemCreation.h"
#include "module/standard/PipeSystemUpdates.h"
#include "module/standard/StandardManager.h"
#include "siblings/zef_kernal/TEntitySet.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDbVerticalSection.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "siblings/zef_public/SharedOptions.h"
#include "tests/ed_session.h"
#include "tests/support.h"

#include <fstream>
#include <optional>
#include <regex>
#include <set>
#include <utility>

namespace {

using namespace PipeSystemTool;

constexpr const char* officeStandard = R"(<?xml version="1.0" encoding="utf-8"?>
<Vantrel><PipeSystem>
<PipeGroup Name="Water">
<Pipe><BaseInfo><PipeOriginalName>OldCold</PipeOriginalName><PipeName>Cold</PipeName><LineWidth>0.5</LineWidth>
<Dim>J-1</Dim><Material>PP-R</Material><OutdoorMaterial>PE100</OutdoorMaterial><VPipeType>1</VPipeType>
<VPipeRaidus>0.6</VPipeRaidus><VPipeRaidus1>0.7</VPipeRaidus1><VPipeRaidus2>0.3</VPipeRaidus2>
<WaterFlowStatus>pressed</WaterFlowStatus><Remark>drinking</Remark><Status>4</Status></BaseInfo>
<SysMap><MapItem><SrcItem>附件</SrcItem><DesItem>阀门</DesItem></MapItem></SysMap>
<Layer LayerType="管线"><LayerName>P-COLD</LayerName><LayerColor>3</LayerColor><LineStyle>CENTER</LineStyle>
<LineWeight>0.50</LineWeight><Remark>mains</Remark><LayerAttachSet><LayerAttach>plan</LayerAttach></LayerAttachSet></Layer>
<Layer LayerType="立管"><LayerName>V-COLD</LayerName><LayerColor>3</LayerColor></Layer>
<Layer LayerType="管径文字"><LayerName>D-COLD</LayerName><LayerColor>7</LayerColor></Layer>
<Layer LayerType="管线流向"><LayerName>F-COLD</LayerName><LayerColor>7</LayerColor></Layer>
<Layer LayerType="阀门"><LayerName>A-COLD</LayerName><LayerColor>4</LayerColor></Layer></Pipe>
<Pipe><BaseInfo><PipeOriginalName>Hot</PipeOriginalName><PipeName>Hot</PipeName><Material>none</Material>
<VPipeType>2</VPipeType></BaseInfo>
<Layer LayerType="管线"><LayerName>P-HOT</LayerName></Layer></Pipe>
</PipeGroup>
<PipeGroup Name="Drains">
<Pipe><BaseInfo><PipeOriginalName>Cold</PipeOriginalName><PipeName>Cold</PipeName></BaseInfo></Pipe>
<Pipe><BaseInfo><PipeOriginalName>Soil</PipeOriginalName><PipeName>Soil</PipeName><VPipeType>3</VPipeType></BaseInfo>
<Layer LayerType="扣弯"><LayerName>B-SOIL</LayerName></Layer></Pipe>
</PipeGroup></PipeSystem>
<OtherLayer><LayerGroup LayerType="things"><Layer><LayerKey>洁具</LayerKey><LayerName>SANITARY</LayerName>
<LayerColor>5</LayerColor><LayerAttachSet><LayerAttach>plan</LayerAttach></LayerAttachSet></Layer></LayerGroup></OtherLayer>
<TextStyleSetting><TextStyleSet>
<TextStyle><Key>管径标注</Key><Name>_KOL_PIPEDN</Name><FontHeigth>3</FontHeigth><WHScale>0.7</WHScale></TextStyle>
<TextStyle><Key>洁具标注</Key><Name>_KOL_SANITARY</Name><ChineseFont>AR PL UMing CN</ChineseFont><WinFont>1</WinFont>
<Bold>1</Bold></TextStyle>
</TextStyleSet></TextStyleSetting></Vantrel>)";

// A profile with that standard, and a drawing.
class Answers : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(rx::applications::instance().load(L"zef_pipewire"));
        sys::set_profile_folder(m_folder.path());
        ASSERT_TRUE(sys::prepare_profile(std::filesystem::path(ZEF_SOURCE_FOLDER) / "share"));
        ReloadPipeMaterials();
        CStandardManager::Release();
        m_folder.write("office.vrsl", officeStandard);
        ASSERT_TRUE(CStandardManager::Create().Load((m_folder / "office.vrsl").wstring().c_str(), false));
    }
    void TearDown() override {
        CStandardManager::Release();
        m_session.reset();
        static_cast<void>(rx::applications::instance().unload(L"zef_pipewire"));
    }

    static AcDbDatabase& Drawing() { return *acdbHostApplicationServices()->workingDatabase(); }
    template<class Entity>
    static AcDbObjectId Append(Entity* entity) {
        AcDbBlockTableRecordPointer model(ACDB_MODEL_SPACE, &Drawing(), AcDb::kForWrite);
        AcDbObjectId id;
        EXPECT_EQ(model->appendAcDbEntity(id, entity), Acad::eOk);
        entity->close();
        return id;
    }
    static AcDbObjectId Layer(const wchar_t* name) { return ZefExport::GetLayerIdFromString(name); }

    std::optional<test::session> m_session{std::in_place, test::drawing("viewports_r2018.dxf")};
    test::folder m_folder;
};

CString Text(const CString& text) {
    return text;
}
CString Text(bool answer) {
    return answer ? L"yes" : L"no";
}
CString Text(int number) {
    CString text;
    text.Format(L"%d", number);
    return text;
}
CString Text(unsigned int number) {
    return Text(static_cast<int>(number));
}
CString Text(double number) {
    CString text;
    text.Format(L"%.4g", number);
    return text;
}
CString Text(const std::vector<CString>& names) {
    CString text;
    for (const CString& name : names)
        text += (text.IsEmpty() ? L"" : L",") + name;
    return text;
}
// The name of a layer, linetype or text style.
CString Text(AcDbObjectId id) {
    const AcDbObjectPointer<AcDbSymbolTableRecord> record(id, AcDb::kForRead);
    AcString name;
    if (record.openStatus() == Acad::eOk)
        record->getName(name);
    return name.kACharPtr();
}

// What a function appends to a list that holds something.
template<class Append>
CString Appended(Append append) {
    std::vector<CString> names = {L"first"};
    append(names);
    return Text(names);
}

struct Row {
    const char* name;
    CString got;
    const wchar_t* expected;
};

void Check(const std::vector<Row>& rows, std::set<std::string>& asked) {
    for (const Row& row : rows) {
        EXPECT_EQ(base::narrow(row.got.GetString()), base::narrow(row.expected)) << row.name;
        asked.insert(row.name);
    }
}

// The names that the headers export.
std::set<std::string> ExportedNames() {
    std::set<std::string> names;
    for (const char* header : {"PipeSystemCreation.h", "PipeSystemUpdates.h"}) {
        std::ifstream file(std::filesystem::path(ZEF_SOURCE_FOLDER) / "module/standard" / header);
        const std::string text(std::istreambuf_iterator<char>(file), {});
        const std::regex declaration(R"(ZEF_PIPESYSTEM_PORT \w+ (\w+)\()");
        for (std::sregex_iterator at(text.begin(), text.end(), declaration), end; at != end; ++at)
            names.insert((*at)[1]);
    }
    return names;
}

} // namespace

TEST_F(Answers, OfEveryExportedFunction) {
    std::set<std::string> asked;
    auto* const made = new TDbPipe;
    made->SetEnds({0, 0, 0}, {0.05, 0.05, 3000});
    made->SetPipeSystemName(L"Cold");
    const AcDbObjectId pipeId = Append(made);
    const AcDbObjectId feedId = Append(new TDbVerticalSectionFeed);
    TextStyleNode style;
    ASSERT_TRUE(GetTextStyleInfo(L"_KOL_PIPEDN", style));

    // What is made.
    CString name = L"before";
    CString key = L"before";
    const AcDbObjectId none = InitLayer(L"Cold", L"none", &name);
    style.m_height += 1e-7;
    const bool isNearlySame = IsModified(style);
    style.m_height += 1;
    Check(
        {
            {"AddLayer",
             Text(AddLayer(true, L"附件", L"Cold", L"X-COLD", 6, L"DASHED", AcDb::kLnWt030, L"r")), L"yes"},
            {"AddLayer", Text(AddLayer(true, L"附件", L"Cold", L"Y", 6, L"", AcDb::kLnWt030, L"")), L"no"},
            {"ContainLayer", Text(ContainLayer(L"Cold", L"x-cold", L"附件")), L"yes"},
            {"InitLayer", Text(none) + name, L""},
            {"InitLayer", Text(InitLayer(L"Cold", L"附件", &name)), L"X-COLD"},
            {"InitLayer", Text(InitLayer(L"p-hot")), L"P-HOT"},
            {"InitIndependentLayer", Text(InitIndependentLayer(L"洁具", &key)) + key, L"SANITARYSANITARY"},
            {"GetIndependentLayerName", Text(GetIndependentLayerName(L"none", true)), L""},
            {"GetIndependentLayerKey", Appended([](auto& names) {
                 GetIndependentLayerKey(names);
                 names = {names.front(), Text(static_cast<int>(names.size())), names.back()};
             }),
             L"维朗给排水,42,公文"},
            {"InitLinetyle", Text(InitLinetyle(L"Cold", L"附件")), L"DASHED"},
            {"InitTextStyle", Text(InitTextStyle(kPipeDnTextStyle)), L"_KOL_PIPEDN"},
            {"UpdateTextStyle", Text(UpdateTextStyle(L"none")), L"no"},
            {"UpdateTextStyle", Text(UpdateTextStyle(kPipeDnTextStyle)), L"yes"},
            {"IsModified", Text(isNearlySame) + Text(IsModified(style)), L"noyes"},
            {"SetTextStyleHeight", Text(SetTextStyleHeight(kPipeDnTextStyle, 7)), L"yes"},
            {"SetTextStyleScale", Text(SetTextStyleScale(L"_kol_pipedn", 7)), L"no"},
            {"SetTextStyleInfo", Text(SetTextStyleInfo(L"_KOL_PIPEDN", style)), L"yes"},
        },
        asked);

    // What pipes are given.
    AcDbObjectPointer<TDbPipe> pipe(pipeId, AcDb::kForWrite);
    TPipeValues& values = pipe->ChangeValues();
    values.m_dn = 20;
    PipeDimNode arrangement;
    arrangement.m_elements = {{kDimDn, L"<", L">", 1, true}};
    UpdateMaterialLineWeight(pipe.object(), true, true, kIndoorMaterial);
    SetPipeLayer(pipe.object(), L"Cold");
    UpdatePipeInfo(pipe.object());
    UpdatePipeLabel(pipe.object());
    UpdateVPipeRadius(pipe.object());
    UpatePipeDimType(pipe.object(), arrangement);
    SetPipeStatus(L"Cold", 9);
    SetShowCrossPipe(feedId, L"Cold", false);
    UpdatePipeMaterial();
    double wall = 0.0;
    pipe->GetField(L"PIPE_THICK", wall);
    Check(
        {
            {"SetPipeLayer", Text(pipe->layerId()), L"V-COLD"},
            {"SetPipeLayer", Text(values.m_labelLayer), L"D-COLD"},
            {"SetPipeLayer", Text(pipe->GetArrowLayerId()), L"F-COLD"},
            {"UpdateMaterialLineWeight", GetPipeMaterialByIndex(values.m_material) + Text(values.m_lineWidth),
             L"PP-R0.5"},
            {"UpdatePipeInfo", Text(pipe->GetOuterDn()) + L" " + Text(wall), L"25 2.3"},
            {"UpdatePipeLabel", values.m_labelPrefix + Text(values.m_isChanged), L"DNyes"},
            {"UpdateVPipeRadius", Text(values.m_vPipeRadius) + L" " + Text(values.m_vPipeSecond), L"0.7 0.3"},
            {"UpatePipeDimType", pipe->GetMultiLineDimTextByDimElements().front(), L"<DN20>"},
            {"SetPipeSystemName", Text(SetPipeSystemName(feedId, L"Hot")), L"no"},
            {"SetPipeStatus", Text(GetPipeStatus(L"Cold")), L"9"},
            {"SetShowCrossPipe", Text(IsShowCrossPipe(feedId, L"Cold")), L"no"},
            {"UpdatePipeMaterial", Text(GetPipeOuterDn(L"PP-R", 20)), L"25"},
        },
        asked);
    EXPECT_EQ(asked, ExportedNames());
}

TEST_F(Answers, MakingOverwritesNothing) {
    // A layer that the drawing has stays as it is.
    {
        AcDbLayerTablePointer table(Drawing().layerTableId(), AcDb::kForWrite);
        AcDbObjectPointer<AcDbLayerTableRecord> layer;
        layer.create();
        AcDbObjectId id;
        layer->setName(L"p-cold");
        AcCmColor color;
        color.setColorIndex(1);
        layer->setColor(color);
        ASSERT_EQ(table->add(id, layer.object()), Acad::eOk);
    }
    const AcDbObjectId there = InitLayer(L"P-COLD");
    EXPECT_EQ(there, Layer(L"P-COLD"));
    EXPECT_EQ(InitLayer(L"Cold", L"管线", nullptr), there);
    EXPECT_EQ(AcDbLayerTableRecordPointer(there, AcDb::kForRead)->color().colorIndex(), 1);

    // A definition that is added wins over the map, with the default lineweight; its type is listed once.
    const CStandardManager& manager = CStandardManager::Create();
    const std::size_t types = manager.Standard().m_nameRules.size();
    EXPECT_TRUE(AddLayer(true, L"New", L"Cold", L"N-COLD", 2, L"CENTER", AcDb::kLnWt030, L""));
    EXPECT_TRUE(AddLayer(true, L"NEW", L"Soil", L"N-SOIL", 2, L"CENTER", AcDb::kLnWt030, L""));
    EXPECT_EQ(manager.Standard().m_nameRules.size(), types + 1);
    const AcDbLayerTableRecordPointer made(InitLayer(L"Cold", L"new", nullptr), AcDb::kForRead);
    EXPECT_EQ(made->lineWeight(), AcDb::kLnWtByLwDefault);
    EXPECT_EQ(Text(made->linetypeObjectId()), L"CENTER");
    EXPECT_FALSE(AddLayer(true, L"", L"Cold", L"x", 2, L"", AcDb::kLnWt030, L""));
    EXPECT_FALSE(AddLayer(true, L"New", L"cold", L"x", 2, L"", AcDb::kLnWt030, L""));
    EXPECT_TRUE(AddLayer(false, L"Others", L"key", L"OTHER", 2, L"", AcDb::kLnWt030, L""));
    EXPECT_FALSE(AddLayer(false, L"OTHERS", L"KEY", L"OTHER2", 2, L"", AcDb::kLnWt030, L""));
    EXPECT_EQ(Text(InitIndependentLayer(L"key", nullptr)), L"OTHER");
    EXPECT_TRUE(AddLayer(false, L"Others", L"key2", L"OTHER2", 2, L"", AcDb::kLnWt030, L""));
    EXPECT_EQ(Text(InitLayer(L"KEY", L"others", nullptr)),
              L"OTHER"); // a new group is in the index, and grows
    EXPECT_EQ(Text(InitLayer(L"key2", L"others", nullptr)), L"OTHER2");
    EXPECT_EQ(manager.Standard().m_nameRules.size(), types + 1);
}

TEST_F(Answers, TextStylesFollowTheFontsThatThereAre) {
    namespace FontUtils = Autodesk::AutoCAD::PAL::FontUtils;
    const auto shown = [](AcDbObjectId id) {
        const AcDbObjectPointer<AcDbTextStyleTableRecord> style(id, AcDb::kForRead);
        AcString face;
        AcString file;
        AcString big;
        bool bold = false;
        bool italic = false;
        Charset charset = kUndefinedCharset;
        FontUtils::FontPitch pitch{};
        FontUtils::FontFamily family{};
        style->font(face, bold, italic, charset, pitch, family);
        style->fileName(file);
        style->bigFontFileName(big);
        CString text;
        text.Format(L"%s,%s,%s,%d%d,%d,%g,%g", file.kwszPtr(), big.kwszPtr(), face.kwszPtr(), bold ? 1 : 0,
                    italic ? 1 : 0, face.isEmpty() ? -1 : static_cast<int>(charset), style->textSize(),
                    style->xScale());
        return base::narrow(text.GetString());
    };
    const AcDbObjectId shapes = InitTextStyle(L"_KOL_PIPEDN");
    EXPECT_EQ(shown(shapes), "SIMPLEX,HZTXT,,00,-1,3,0.7");
    const AcDbObjectId windows = InitTextStyle(kSanitaryTextStyle);
    EXPECT_EQ(shown(windows), "AR PL UMing CN,,AR PL UMing CN,10,134,3.5,0.8");

    // The drawing's own stays until it is updated; one that the standard does not have stays then, too.
    EXPECT_TRUE(SetTextStyleHeight(kPipeDnTextStyle, 5.0));
    EXPECT_EQ(InitTextStyle(L"_kol_pipedn"), shapes);
    EXPECT_EQ(shown(shapes), "SIMPLEX,HZTXT,,00,-1,3,0.7");
    EXPECT_TRUE(UpdateTextStyle(L"Standard"));
    EXPECT_TRUE(UpdateTextStyle(L"_KOL_PIPEDN"));
    EXPECT_EQ(shown(shapes), "SIMPLEX,HZTXT,,00,-1,5,0.7");
    TextStyleNode style;
    ASSERT_TRUE(GetTextStyleInfo(kSanitaryTextStyle, style));
    style.m_chineseFont = L"no such font";
    EXPECT_TRUE(SetTextStyleInfo(kSanitaryTextStyle, style));
    EXPECT_TRUE(UpdateTextStyle(kSanitaryTextStyle));
    EXPECT_EQ(shown(windows), ",no such font,,00,-1,3.5,0.8");
    EXPECT_TRUE(InitTextStyle(L"none").isNull());
}

TEST_F(Answers, PipesFollowTheirSystems) {
    const auto riser = [](const wchar_t* system) {
        auto pipe = std::make_unique<TDbPipe>();
        pipe->SetEnds({0, 0, 0}, {0, 0, 3000});
        pipe->ChangeValues().m_vPipeRadius = 8;
        pipe->ChangeValues().m_vPipeSecond = 9;
        SetPipeSystemName(pipe.get(), system);
        UpdateVPipeRadius(pipe.get());
        return Text(pipe->GetValues().m_vPipeRadius) + L" " + Text(pipe->GetValues().m_vPipeSecond);
    };
    const BOOL arcs = std::exchange(g_bStandPipeArc, FALSE);
    EXPECT_EQ(riser(L"Hot"), L"0 -1");
    EXPECT_EQ(riser(L"Soil"), L"0 -3");
    EXPECT_EQ(riser(L"none"), L"0.5 -2");
    EXPECT_EQ(riser(L""), L"8 9");
    g_bStandPipeArc = TRUE;
    EXPECT_EQ(riser(L"none"), L"0.5 0");
    g_bStandPipeArc = arcs;

    // A layer that there is not is refused by the entity, and held by label and arrow.
    auto* const made = new TDbPipe;
    made->SetEnds({0, 0, 0}, {0.2, 0, 3000});
    const AcDbObjectId id = Append(made);
    UpdatePipeInfo(TEntitySet({id}));
    SetPipeLayer(id, L"Cold");
    SetPipeLayer(id, L"Soil");
    EXPECT_TRUE(SetPipeSystemName(id, L"给水"));
    AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForWrite);
    EXPECT_EQ(pipe->GetSystemType(), 0);
    EXPECT_EQ(Text(pipe->layerId()), L"P-COLD") << "not upright: 0.2 apart";
    EXPECT_TRUE(pipe->GetValues().m_labelLayer.isNull());
    EXPECT_TRUE(pipe->GetArrowLayerId().isNull());

    // An unknown material: -1 in sixteen bits, the nominal diameter, no wall.
    TPipeValues& values = pipe->ChangeValues();
    values.m_dn = 25;
    SetPipeSystemName(pipe.object(), L"Hot");
    UpdateMaterialLineWeight(pipe.object(), true, false, kIndoorMaterial);
    EXPECT_EQ(values.m_material, -1);
    EXPECT_EQ(values.m_lineWidth, 0.35);
    UpdatePipeInfo(pipe.object());
    UpdatePipeLabel(pipe.object());
    double wall = 1.0;
    EXPECT_TRUE(pipe->GetField(L"PIPE_THICK", wall));
    EXPECT_EQ(wall, 0.0);
    EXPECT_EQ(pipe->GetOuterDn(), 25.0);
    EXPECT_EQ(values.m_labelPrefix, L"");

    // Both systems of the name have the status.
    SetPipeStatus(L"Cold", 6);
    for (const auto& group : CStandardManager::Create().Standard().m_groups)
        EXPECT_EQ(group->FindPipeSystem(L"Cold")->m_status, 6);
}

TEST_F(Answers, TheFirstArrangementThatFitsIsTaken) {
    auto* const made = new TDbPipe;
    made->SetEnds({0, 0, 0}, {700, 0, 0});
    made->ChangeValues().m_dn = 100;
    made->ChangeValues().m_labelHeight = 1.0;
    const AcDbObjectPointer<TDbPipe> pipe(Append(made), AcDb::kForWrite);
    const PipeDimNode wide{{{kDimDn, L"", L"", -1, false}, {kDimLength, L"", L"", 2, true}}, 0};
    const PipeDimNode high{{{kDimDn, L"", L"", -1, false}, {kDimLength, L"", L"", 3, true}}, 1};
    EXPECT_FALSE(UpatePipeDimType(pipe.object(), std::vector<PipeDimNode>()));
    EXPECT_FALSE(UpatePipeDimType(pipe.object(), std::vector{wide}));
    EXPECT_TRUE(pipe->GetDimElements().empty());
    EXPECT_TRUE(UpatePipeDimType(pipe.object(), std::vector{wide, high}));
    const std::vector<CString> lines = pipe->GetMultiLineDimTextByDimElements();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[1], L"0.700");
    // What hides a part of the pipe counts.
    AcDbObjectIdArray over;
    for (const double x : {150.0, 350.0, 550.0, 750.0})
        over.append(Append([x] {
            auto* const passing = new TDbPipe;
            passing->SetEnds({x, -100, 900}, {x, 100, 900});
            return passing;
        }()));
    pipe->SetPassingPipes(over);
    EXPECT_FALSE(UpatePipeDimType(pipe.object(), std::vector{high}));
}
