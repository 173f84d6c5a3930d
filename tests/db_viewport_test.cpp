// Viewports in both of the forms that files have had, layouts, and the space that the user works in.
#include "aced.h"
#include "acutmem.h"
#include "dbents.h"
#include "dblayout.h"
#include "dbobjptr.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/ed/system_variables.h"
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

using Changes = std::vector<std::string>;

std::unique_ptr<AcDbDatabase> opened(std::string_view name) {
    auto database = std::make_unique<AcDbDatabase>(false, true);
    EXPECT_EQ(database->dxfIn(test::drawing(name).wstring().c_str()), Acad::eOk);
    return database;
}

Changes changes(AcDbDatabase& database, std::string_view name) {
    const test::folder folder;
    EXPECT_EQ(database.dxfOut((folder / "out.dxf").wstring().c_str()), Acad::eOk);
    return test::differences(test::read(test::drawing(name)), test::read(folder / "out.dxf"));
}

AcDbObjectId layer(AcDbDatabase& database, const wchar_t* name) {
    const AcDbLayerTablePointer table(database.layerTableId());
    AcDbObjectId id;
    EXPECT_EQ(table->getAt(name, id), Acad::eOk);
    return id;
}

AcDbObjectIdArray layers(AcDbDatabase& database, std::initializer_list<const wchar_t*> names) {
    AcDbObjectIdArray ids;
    for (const wchar_t* name : names)
        ids.append(layer(database, name));
    return ids;
}

// The viewports of the sheet that files call *Paper_Space.
std::vector<AcDbObjectId> viewports(AcDbDatabase& database) {
    const AcDbBlockTableRecordPointer sheet(ACDB_PAPER_SPACE, &database);
    AcDbBlockTableRecordIterator* made = nullptr;
    sheet->newIterator(made);
    const std::unique_ptr<AcDbBlockTableRecordIterator> iterator(made);
    std::vector<AcDbObjectId> found;
    for (; !iterator->done(); iterator->step()) {
        AcDbObjectId id;
        iterator->getEntityId(id);
        if (id.objectClass() == AcDbViewport::desc())
            found.push_back(id);
    }
    return found;
}

std::wstring frozen(const AcDbViewport& viewport) {
    AcDbObjectIdArray ids;
    viewport.getFrozenLayerList(ids);
    std::wstring names;
    for (const AcDbObjectId id : ids) {
        AcString name;
        AcDbObjectPointer<AcDbLayerTableRecord>(id)->getName(name);
        names += name.kwszPtr();
        names += L' ';
    }
    return names;
}

// The drawing as the current document, for the time of a test.
struct Document {
    explicit Document(std::string_view name) {
        EXPECT_TRUE(ap::documents::instance().open(test::drawing(name).wstring(), true));
        EXPECT_EQ(acDocManager->lockDocument(curDoc()), Acad::eOk); // as for a command
    }
    ~Document() { ap::documents::instance().close_all(); }
    AcDbDatabase& database() const { return *ap::documents::instance().current_database(); }
};

ed::variable_value value_of(const wchar_t* variable) {
    ed::variable_value value;
    EXPECT_EQ(ed::get_variable(variable, value), ed::variable_status::well);
    return value;
}

} // namespace

TEST(DbViewport, TheViewIsReadFromBothForms) {
    const struct {
        const char* drawing;
        double twist;
    } rows[] = {{"viewports_r2018.dxf", 1.5707963267948966}, {"viewports_r12.dxf", 1.5}};
    for (const auto& row : rows) {
        const auto database = opened(row.drawing);
        const auto ids = viewports(*database);
        ASSERT_GE(ids.size(), 3u) << row.drawing;
        const AcDbObjectPointer<AcDbViewport> viewport(ids[1]);
        EXPECT_EQ(viewport->centerPoint(), AcGePoint3d(100, 100, 0)) << row.drawing;
        EXPECT_EQ(viewport->width(), 150.0);
        EXPECT_EQ(viewport->height(), 100.0);
        EXPECT_EQ(viewport->viewCenter(), AcGePoint2d(5000, 2500));
        EXPECT_EQ(viewport->viewHeight(), 10000.0);
        EXPECT_EQ(viewport->viewTarget(), AcGePoint3d(1, 2, 3));
        EXPECT_EQ(viewport->viewDirection(), AcGeVector3d::kZAxis);
        EXPECT_EQ(viewport->twistAngle(), row.twist);
        EXPECT_EQ(viewport->customScale(), 0.01);
        EXPECT_EQ(frozen(*viewport), L"墙 ");
        AcDbExtents extents;
        EXPECT_EQ(viewport->getGeomExtents(extents), Acad::eOk);
        EXPECT_EQ(extents.maxPoint(), AcGePoint3d(175, 150, 0)) << "its frame is what can be picked";
        EXPECT_EQ(AcDbObjectPointer<AcDbViewport>(ids[0])->getGeomExtents(extents), Acad::eInvalidExtents)
            << "the sheet itself has none";
        EXPECT_EQ(changes(*database, row.drawing), Changes{});
    }
}

// Each change and the lines that differ then.
TEST(DbViewport, ChangesGoToTheFormOfTheFile) {
    struct row {
        const char* drawing;
        std::size_t viewport;
        void (*change)(AcDbViewport&, AcDbDatabase&);
        Changes expected;
    };
    constexpr auto freeze = [](AcDbViewport& v, AcDbDatabase& d) {
        EXPECT_EQ(v.freezeLayersInViewport(layers(d, {L"墙", L"管", L"管"})), Acad::eOk);
        EXPECT_TRUE(v.isLayerFrozenInViewport(layer(d, L"墙")) && v.isLayerFrozenInViewport(layer(d, L"管")));
        EXPECT_FALSE(v.isLayerFrozenInViewport(layer(d, L"图框")));
    };
    constexpr auto thaw = [](AcDbViewport& v, AcDbDatabase& d) {
        EXPECT_EQ(v.thawLayersInViewport(layers(d, {L"墙", L"管"})), Acad::eOk);
        EXPECT_EQ(frozen(v), L"");
    };
    constexpr auto thaw_all = [](AcDbViewport& v, AcDbDatabase&) {
        EXPECT_EQ(v.thawAllLayersInViewport(), Acad::eOk);
        EXPECT_EQ(frozen(v), L"");
    };
    constexpr auto freeze_and_thaw = [](AcDbViewport& v, AcDbDatabase& d) {
        v.freezeLayersInViewport(layers(d, {L"管", L"图框"}));
        v.thawLayersInViewport(layers(d, {L"图框", L"管"}));
    };
    constexpr auto turn_view = [](AcDbViewport& v, AcDbDatabase&) {
        EXPECT_EQ(v.setViewCenter({1, 2500}), Acad::eOk);
        EXPECT_EQ(v.setTwistAngle(0.0), Acad::eOk);
        EXPECT_EQ(v.setCustomScale(0.05), Acad::eOk);
        EXPECT_EQ(v.setViewTarget({1, 2, 3}), Acad::eOk);
        EXPECT_EQ(v.setWidth(0.0), Acad::eInvalidInput);
        EXPECT_EQ(v.customScale(), 0.05);
    };
    constexpr auto off = [](AcDbViewport& v, AcDbDatabase&) {
        EXPECT_TRUE(v.isOn());
        EXPECT_EQ(v.setOff(), Acad::eOk);
        EXPECT_FALSE(v.isOn());
    };
    constexpr auto on = [](AcDbViewport& v, AcDbDatabase&) {
        EXPECT_FALSE(v.isOn());
        EXPECT_EQ(v.setOn(), Acad::eOk);
        EXPECT_TRUE(v.isOn());
    };
    const row rows[] = {
        {"viewports_r2018.dxf", 1, freeze, {"+ 331", "+ 32"}},
        {"viewports_r2018.dxf", 1, thaw, {"- 331", "- 31"}},
        {"viewports_r2018.dxf", 1, freeze_and_thaw, {}},
        {"viewports_r2018.dxf", 2, freeze, {"+ 341", "+ 32"}}, // 331 and 341 are read alike
        {"viewports_r2018.dxf", 2, thaw, {"- 31", "- 341"}},   // what names no layer stays
        {"viewports_r2018.dxf", 2, thaw_all, {"- 341", "- 31", "- 341", "- FF"}},
        {"viewports_r2018.dxf", 3, freeze, {"+ 331", "+ 31", "+ 331", "+ 32"}},
        {"viewports_r2018.dxf",
         1,
         turn_view,
         {"- 5000.0", "+ 1.0", "- 10000.0", "+ 2000.0", "- 90.0", "+ 0.0"}},
        {"viewports_r2018.dxf", 1, off, {"- 3", "+ 0", "- 32864", "+ 163936"}},
        {"viewports_r2018.dxf", 3, on, {"- 0", "+ 3", "- 163936", "+ 32864"}},
        {"viewports_r2018.dxf",
         1,
         [](AcDbViewport& v, AcDbDatabase&) { EXPECT_EQ(v.setLocked(), Acad::eOk); },
         {"- 32864", "+ 49248"}},
        {"viewports_r12.dxf", 1, freeze, {"+ 1003", "+ \xB9\xDC"}},
        {"viewports_r12.dxf", 1, thaw, {"- 1003", "- \xC7\xBD"}},
        {"viewports_r12.dxf", 1, thaw_all, {"- 1003", "- \xC7\xBD"}},
        {"viewports_r12.dxf", 1, freeze_and_thaw, {}},
        {"viewports_r12.dxf",
         1,
         turn_view,
         {"- 1.5", "- 1040", "- 10000.0", "- 1040", "- 5000.0", "+ 0.0", "+ 1040", "+ 2000.0", "+ 1040",
          "+ 1.0"}},
        {"viewports_r12.dxf", 1, off, {"- 2", "+ 0"}},
        {"viewports_r12.dxf", 2, on, {"- 0", "+ 3"}},
        {"viewports_r12.dxf",
         1,
         [](AcDbViewport& v, AcDbDatabase&) { EXPECT_EQ(v.setLocked(), Acad::eNotApplicable); },
         {}},
    };
    for (const row& row : rows) {
        const auto database = opened(row.drawing);
        {
            const AcDbObjectPointer<AcDbViewport> viewport(viewports(*database)[row.viewport],
                                                           AcDb::kForWrite);
            ASSERT_EQ(viewport.openStatus(), Acad::eOk);
            row.change(*viewport, *database);
        }
        EXPECT_EQ(changes(*database, row.drawing), row.expected) << row.drawing << ", row " << &row - rows;
    }
}

TEST(DbViewport, AnOldViewportWithoutDataGetsAListThatIsReadAgain) {
    const auto database = opened("viewports_r12.dxf");
    const test::folder folder;
    {
        const AcDbObjectPointer<AcDbViewport> viewport(viewports(*database)[2], AcDb::kForWrite);
        EXPECT_EQ(viewport->viewHeight(), 100.0) << "that of its frame";
        EXPECT_EQ(viewport->freezeLayersInViewport(layers(*database, {L"图框", L"墙"})), Acad::eOk);
        EXPECT_EQ(viewport->setViewHeight(300.0), Acad::eOk);
    }
    ASSERT_EQ(database->dxfOut((folder / "out.dxf").wstring().c_str()), Acad::eOk);
    AcDbDatabase again(false, true);
    ASSERT_EQ(again.dxfIn((folder / "out.dxf").wstring().c_str()), Acad::eOk);
    const AcDbObjectPointer<AcDbViewport> viewport(viewports(again)[2]);
    EXPECT_EQ(frozen(*viewport), L"图框 墙 ");
    EXPECT_EQ(viewport->viewHeight(), 300.0);
    EXPECT_EQ(viewport->viewDirection(), AcGeVector3d::kZAxis);
}

TEST(DbViewport, RefusalsChangeNothing) {
    const auto database = opened("viewports_r2018.dxf");
    const auto other = opened("viewports_r12.dxf");
    const AcDbObjectId id = viewports(*database)[1];
    {
        const AcDbObjectPointer<AcDbViewport> reading(id);
        EXPECT_EQ(reading->freezeLayersInViewport(layers(*database, {L"管"})), Acad::eNotOpenForWrite);
        EXPECT_EQ(reading->thawAllLayersInViewport(), Acad::eNotOpenForWrite);
        EXPECT_EQ(reading->setOff(), Acad::eNotOpenForWrite);
    }
    {
        const AcDbObjectPointer<AcDbViewport> viewport(id, AcDb::kForWrite);
        AcDbObjectIdArray ids = layers(*database, {L"管"});
        ids.append(layer(*other, L"管"));
        EXPECT_EQ(viewport->freezeLayersInViewport(ids), Acad::eWrongDatabase);
        ids.setAt(1, id);
        EXPECT_EQ(viewport->freezeLayersInViewport(ids), Acad::eWrongObjectType);
    }
    AcDbViewport fresh;
    EXPECT_EQ(fresh.setOn(), Acad::eNotInDatabase);
    EXPECT_EQ(fresh.number(), -1);
    EXPECT_EQ(frozen(fresh), L"");
    EXPECT_EQ(changes(*database, "viewports_r2018.dxf"), Changes{});
}

TEST(DbViewport, ANewOneHasTheLayersFrozenThatAreInNewOnes) {
    const auto database = opened("viewports_r2018.dxf");
    const AcDbBlockTableRecordPointer sheet(ACDB_PAPER_SPACE, database.get(), AcDb::kForWrite);
    auto viewport = std::make_unique<AcDbViewport>();
    viewport->setWidth(30.0);
    ASSERT_EQ(sheet->appendAcDbEntity(viewport.get()), Acad::eOk);
    AcDbViewport* const added = viewport.release(); // the database's
    EXPECT_EQ(frozen(*added), L"图框 ");
    EXPECT_EQ(added->number(), 5);
    EXPECT_TRUE(added->isOn());
    EXPECT_EQ(added->width(), 30.0);
    added->close();
}

TEST(DbViewport, LayoutsAndTheirViewports) {
    const auto database = opened("viewports_r2018.dxf");
    const struct {
        const wchar_t* name;
        const wchar_t* block;
        int order;
        int viewports;
        bool current;
    } rows[] = {{L"Model", L"*Model_Space", 0, 0, false},
                {L"平面", L"*Paper_Space", 1, 4, true},
                {L"系统图", L"*Paper_Space0", 2, 2, false}};
    AcDbDictionary* root = nullptr;
    ASSERT_EQ(database->getNamedObjectsDictionary(root), Acad::eOk);
    AcDbDictionary* tabs = nullptr;
    EXPECT_EQ(root->getAt(L"ACAD_LAYOUT", tabs, AcDb::kForRead), Acad::eOk);
    root->close();
    for (const auto& row : rows) {
        AcDbLayout* layout = nullptr;
        ASSERT_EQ(tabs->getAt(row.name, layout, AcDb::kForRead), Acad::eOk);
        AcString name;
        layout->getLayoutName(name);
        EXPECT_EQ(std::wstring(name.kwszPtr()), row.name);
        EXPECT_EQ(layout->getTabOrder(), row.order);
        EXPECT_EQ(layout->getViewportArray().length(), row.viewports);
        EXPECT_EQ(layout->getTabSelected(), row.current);
        EXPECT_EQ(layout->modelType(), row.order == 0);
        const AcDbBlockTableRecordPointer block(row.block, database.get());
        EXPECT_EQ(layout->getBlockTableRecordId(), block->objectId());
        // The third block does not name its layout (340): it is found from the other side.
        EXPECT_EQ(block->getLayoutId(), layout->objectId());
        EXPECT_TRUE(block->isLayout());
        layout->close();
    }
    tabs->close();
    const auto old = opened("viewports_r12.dxf");
    EXPECT_TRUE(AcDbBlockTableRecordPointer(ACDB_PAPER_SPACE, old.get())->getLayoutId().isNull());
}

TEST(DbViewport, TheUserGoesThroughTabsAndViewports) {
    const Document document("viewports_r2018.dxf");
    AcDbDatabase& database = document.database();
    const auto ids = viewports(database);
    const auto number = [](AcDbObjectId id) { return AcDbObjectPointer<AcDbViewport>(id)->number(); };
    const AcDbObjectId model = AcDbBlockTableRecordPointer(ACDB_MODEL_SPACE, &database)->objectId();
    const AcDbObjectId sheet = AcDbBlockTableRecordPointer(ACDB_PAPER_SPACE, &database)->objectId();

    EXPECT_EQ(std::get<std::wstring>(value_of(L"CTAB")), L"平面");
    EXPECT_EQ(std::get<int>(value_of(L"CVPORT")), 1);
    EXPECT_EQ(database.currentSpaceId(), sheet);
    EXPECT_EQ(acedGetCurViewportObjectId(), ids[0]);
    EXPECT_EQ(number(ids[0]), 1);
    EXPECT_EQ(number(ids[2]), 4);
    EXPECT_EQ(number(ids[3]), 3) << "the file has given its number twice";
    EXPECT_EQ(acedViewportIdFromNumber(4), ids[2]);
    EXPECT_EQ(acedMspace(), Acad::eOk);
    EXPECT_EQ(acedGetCurViewportObjectId(), ids[1]);
    EXPECT_EQ(std::get<int>(value_of(L"CVPORT")), 2);
    EXPECT_EQ(database.currentSpaceId(), model);
    EXPECT_EQ(ed::set_variable(L"CVPORT", 4), ed::variable_status::well);
    EXPECT_EQ(acedActiveViewportId(), ids[2]);
    EXPECT_EQ(ed::set_variable(L"CVPORT", 3), ed::variable_status::out_of_range) << "it is off";
    EXPECT_EQ(ed::set_variable(L"CVPORT", 5), ed::variable_status::out_of_range);
    EXPECT_EQ(acedPspace(), Acad::eOk);
    EXPECT_EQ(database.currentSpaceId(), sheet);
    EXPECT_EQ(database.imp().records().unsaved(), 0u) << "going about changes no drawing";

    EXPECT_EQ(ed::set_variable(L"CTAB", std::wstring(L"系统图")), ed::variable_status::well);
    EXPECT_EQ(number(ids[1]), -1) << "of another sheet";
    EXPECT_FALSE(AcDbObjectPointer<AcDbViewport>(ids[1])->isOn());
    EXPECT_EQ(acedMspace(), Acad::eOk) << "a viewport that has no number in the file";
    EXPECT_EQ(number(acedGetCurViewportObjectId()), 2);
    EXPECT_EQ(ed::set_variable(L"CTAB", std::wstring(L"没有")), ed::variable_status::out_of_range);

    EXPECT_EQ(ed::set_variable(L"CTAB", std::wstring(L"model")), ed::variable_status::well);
    EXPECT_TRUE(database.tilemode());
    EXPECT_EQ(acedMspace(), Acad::eInvalidInput);
    EXPECT_EQ(acedPspace(), Acad::eInvalidInput);
    EXPECT_EQ(std::get<int>(value_of(L"CVPORT")), 2);
    EXPECT_EQ(acedGetCurViewportObjectId().objectClass(), AcDbViewportTableRecord::desc());
    EXPECT_EQ(ed::set_variable(L"CVPORT", 3), ed::variable_status::well);
    EXPECT_NE(acedViewportIdFromNumber(2), acedGetCurViewportObjectId());
    EXPECT_EQ(AcDbObjectPointer<AcDbViewport>(ids[3], AcDb::kForWrite)->setOn(), Acad::eNotInPaperspace);
    EXPECT_EQ(ed::set_variable(L"TILEMODE", 0), ed::variable_status::well);
    EXPECT_EQ(std::get<std::wstring>(value_of(L"CTAB")), L"系统图") << "the sheet that was current last";
}

TEST(DbViewport, LayersAreFrozenThawedAndResetByTheEditor) {
    const Document document("viewports_r12.dxf");
    AcDbDatabase& database = document.database();
    const auto ids = viewports(database);
    EXPECT_EQ(std::get<std::wstring>(value_of(L"CTAB")), L"Layout1");
    const auto all = layers(database, {L"墙", L"管", L"图框"});
    const auto state = [&] { return frozen(*AcDbObjectPointer<AcDbViewport>(ids[1])); };
    EXPECT_EQ(acedVPLayer(ids[1], all, AcDb::kFreeze), Acad::eOk);
    EXPECT_EQ(state(), L"墙 管 图框 ");
    EXPECT_EQ(acedVPLayer(ids[1], all, AcDb::kReset), Acad::eOk);
    EXPECT_EQ(state(), L"图框 ") << "frozen in new viewports";
    EXPECT_EQ(acedVPLayer(ids[1], all, AcDb::kThaw), Acad::eOk);
    EXPECT_EQ(state(), L"");
    EXPECT_EQ(acedVPLayer(all[0], all, AcDb::kThaw), Acad::eInvalidInput);
    const AcDbObjectPointer<AcDbViewport> opened(ids[1]);
    EXPECT_EQ(acedVPLayer(ids[1], all, AcDb::kFreeze), Acad::eInvalidInput) << "it is open";
}

// A layer that only a reference has is the drawing's own when a viewport names it.
TEST(DbViewport, AFrozenDependentLayerIsSaved) {
    const test::folder folder;
    for (const char* name : {"host.dxf", "xref_a.dxf", "xref_b.dxf"})
        folder.write(name, test::read(test::drawing(std::string("xrefs/") + name)));
    std::string bytes = test::read(folder / "host.dxf");
    const std::string line = "  0\r\nLINE\r\n  5\r\n60";
    bytes.insert(bytes.find(line),
                 "  0\r\nVIEWPORT\r\n  5\r\n70\r\n330\r\n29\r\n100\r\nAcDbEntity\r\n 67\r\n1\r\n  8\r\n0\r\n"
                 "100\r\nAcDbViewport\r\n 40\r\n1.0\r\n 41\r\n1.0\r\n");
    ASSERT_TRUE(ap::documents::instance().open(folder.write("host.dxf", bytes).wstring(), true));
    ASSERT_EQ(acDocManager->lockDocument(curDoc()), Acad::eOk);
    AcDbDatabase& database = *ap::documents::instance().current_database();
    EXPECT_EQ(acedVPLayer(viewports(database)[0], layers(database, {L"共用|PIPE"}), AcDb::kFreeze),
              Acad::eOk);
    ASSERT_EQ(database.dxfOut((folder / "out.dxf").wstring().c_str()), Acad::eOk);
    ap::documents::instance().close_all();
    AcDbDatabase again(false, true);
    ASSERT_EQ(again.dxfIn((folder / "out.dxf").wstring().c_str()), Acad::eOk);
    EXPECT_EQ(frozen(*AcDbObjectPointer<AcDbViewport>(viewports(again)[0])), L"共用|PIPE ");
}
