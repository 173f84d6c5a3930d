// Layers and linetypes that the drawing gets from the standard.
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/standard/LinetypeLibrary.h"
#include "module/standard/PipeSystemTool.h"
#include "module/standard/StandardEdit.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "sys/folders.h"
#include "tests/ed_session.h"
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

// A profile as at the first start, the shipped standard, and a drawing with the layer "0" alone.
class LayerCreation : public testing::Test {
protected:
    LayerCreation() {
        sys::set_profile_folder(m_folder.path());
        EXPECT_TRUE(sys::prepare_profile(std::filesystem::path(ZEF_SOURCE_FOLDER) / "share"));
        CStandardManager::Release();
        CStandardManager::Create().ChooseAndLoad();
        m_edit.emplace(CStandardManager::Create());
        ReloadLinetypes();
    }
    ~LayerCreation() override {
        m_edit.reset();
        CStandardManager::Release();
    }
    LayerNode& Layer(LPCTSTR system, LPCTSTR type) {
        return *m_edit->System(system)->FindLayerNode(type, true);
    }

    test::session m_session{test::drawing("viewports_r2018.dxf")};
    test::folder m_folder;
    std::optional<StandardEdit> m_edit;
};

CString LinetypeName(AcDbObjectId id) {
    const AcDbObjectPointer<AcDbLinetypeTableRecord> linetype(id, AcDb::kForRead);
    AcString name;
    if (linetype.openStatus() == Acad::eOk)
        linetype->getName(name);
    return name.kACharPtr();
}

} // namespace

TEST_F(LayerCreation, ALayerIsMadeOnceAndNeverChanged) {
    using namespace PipeSystemTool;
    EXPECT_EQ(GetLayerName(L"给水", L"管线", false), L"PIPE-给水");
    EXPECT_TRUE(ZefExport::GetLayerIdFromString(L"PIPE-给水").isNull());

    LayerNode& definition = Layer(L"给水", L"管线");
    definition.m_linetype = L"vr-j"; // in the table it is VR-J
    definition.m_color.setRGB(1, 2, 3);
    definition.m_lineWeight = 50;
    definition.m_canPlot = false;
    EXPECT_EQ(GetLayerName(L"给水", L"管线", true), L"PIPE-给水");
    const AcDbObjectId id = ZefExport::GetLayerIdFromString(L"pipe-给水");
    {
        const AcDbLayerTableRecordPointer layer(id, AcDb::kForRead);
        ASSERT_EQ(layer.openStatus(), Acad::eOk);
        EXPECT_EQ(layer->color(), definition.m_color);
        EXPECT_EQ(layer->lineWeight(), AcDb::kLnWt050);
        EXPECT_FALSE(layer->isPlottable());
        EXPECT_EQ(LinetypeName(layer->linetypeObjectId()), L"VR-J");
        const AcDbObjectPointer<AcDbLinetypeTableRecord> linetype(layer->linetypeObjectId(), AcDb::kForRead);
        EXPECT_EQ(linetype->numDashes(), 3);
        EXPECT_EQ(linetype->patternLength(), 24.5);
        EXPECT_FALSE(linetype->shapeStyleAt(1).isNull());
    }
    // Now it is there: another definition of it changes nothing and makes nothing.
    definition.m_color.setColorIndex(5);
    definition.m_linetype = L"CENTER";
    bool created = false;
    EXPECT_EQ(definition.CreateLayer(&created), id);
    EXPECT_FALSE(created);
    const AcDbLayerTableRecordPointer layer(id, AcDb::kForRead);
    EXPECT_EQ(LinetypeName(layer->linetypeObjectId()), L"VR-J");

    bool other = false;
    EXPECT_FALSE(Layer(L"热给水", L"管线").CreateLayer(&other).isNull());
    EXPECT_TRUE(other);
    EXPECT_EQ(GetLayerName(L"没有", L"管线", true), L"");
}

TEST_F(LayerCreation, WhatTheDrawingDoesNotTakeIsLeft) {
    LayerNode& definition = Layer(L"给水", L"管线");
    definition.m_linetype = L"no such line";
    const AcDbObjectId id = definition.CreateLayer();
    const AcDbLayerTableRecordPointer layer(id, AcDb::kForRead);
    ASSERT_EQ(layer.openStatus(), Acad::eOk);
    EXPECT_EQ(LinetypeName(layer->linetypeObjectId()).CompareNoCase(L"Continuous"), 0);

    definition.m_layerName = L"a*b";
    bool created = false;
    EXPECT_TRUE(definition.CreateLayer(&created).isNull());
    EXPECT_FALSE(created);
}

// A system, a group and an attachment set make what the drawing lacks of theirs.
TEST_F(LayerCreation, RecordsMakeTheirLayers) {
    const auto has = [](LPCTSTR name) { return !ZefExport::GetLayerIdFromString(name).isNull(); };
    const PipeGroupNode& group = *CStandardManager::Loaded()->Standard().m_groups.at(0);
    const PipeNode& system = *group.Systems().at(0); // 给水
    bool created = false;
    const AcDbObjectId valve = system.CreateLayer(L"附件", created); // an alias
    EXPECT_TRUE(created && valve == ZefExport::GetLayerIdFromString(L"VALVE_给水"));
    created = false;
    EXPECT_EQ(system.CreateLayer(L"阀门", created), valve);
    EXPECT_TRUE(system.CreateLayer(L"没有", created).isNull());
    EXPECT_FALSE(created);

    EXPECT_FALSE(group.CreateLayer(L"pipe-给水2").isNull());
    EXPECT_TRUE(has(L"PIPE-给水2") && !has(L"PIPE-给水"));
    EXPECT_TRUE(group.CreateLayer(L"没有").isNull());
    PipeNode::LayerIds ids;
    group.InitLayers(ids);
    EXPECT_EQ(ids.at(L"valve_给水"), valve);
    std::vector<CString> names;
    group.GetAllLayerName(names);
    EXPECT_EQ(ids.size(), names.size());

    LayerAttachNode set;
    PipeSystemTool::GetLayerAttachInfo(L"管线", set);
    EXPECT_FALSE(set.InitLayer(L"污水", L"立管").isNull());
    EXPECT_TRUE(has(L"VPIPE-污水") && !has(L"PIPE-污水") && !has(L"DIM_污水"));
    EXPECT_TRUE(set.InitLayer(L"污水").isNull()) << "no key of another layer";
    set.InitLayer(LayerAttachNode::kPipeSystemLayer);
    EXPECT_TRUE(has(L"PIPE-污水") && !has(L"DIM_污水"));
}

TEST_F(LayerCreation, EveryLinetypeOfTheTableLoadsOnce) {
    std::vector<CString> names;
    GetLinetypeNames(names);
    ASSERT_GT(names.size(), 20U);
    for (const CString& name : names) {
        const AcDbObjectId id = KolTool::LoadVrLineType(name);
        EXPECT_EQ(LinetypeName(id), name);
        EXPECT_EQ(KolTool::LoadVrLineType(CString(name).MakeLower()), id);
    }
    EXPECT_TRUE(KolTool::LoadVrLineType(L"WAVY").isNull());
}

TEST_F(LayerCreation, LinetypesThatTheTableLacksComeFromFiles) {
    m_folder.write("sys/first.lin", "*OTHER,another\nA,1,-1\n");
    m_folder.write("sys/Office.LIN", "*OFFICE,of an office\nA,10,-2\n");
    EXPECT_EQ(LinetypeName(KolTool::LoadVrLineType(L"office")), L"OFFICE");
    EXPECT_TRUE(KolTool::LoadVrLineType(L"none").isNull());
}
