// How a drawing shows pipe systems, and what becomes of pipe entities without their application.
#include "dbproxy.h"
#include "host/db/core/history.h"
#include "host/view/tracer.h"
#include "siblings/zef_pipewire/PipeSystems.h"
#include "siblings/zef_pipewire/TDefaultCfg.h"
#include "tests/pipe_support.h"

namespace {

class PipeConfig : public test::pipe_drawing {
protected:
    // Whether somebody who looks at an entity sees something of it.
    static bool is_seen(AcDbObjectId id) {
        class any final : public gi::canvas {
        public:
            void lines(std::span<const AcGePoint3d>) override { found = true; }
            void area(std::span<const AcGePoint3d>) override { found = true; }
            void curve(const gi::arc&) override { found = true; }
            bool found = false;
        } canvas;
        gi::tracer(canvas).draw(id.database()->imp(), id.database()->imp().record(id));
        return canvas.found;
    }
    static AcGePoint3d most_of(AcDbObjectId id) {
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        AcDbExtents extents;
        EXPECT_EQ(entity->getGeomExtents(extents), Acad::eOk);
        return extents.maxPoint();
    }
};

} // namespace

TEST_F(PipeConfig, HidesSystemsUntilTheyAreShown) {
    auto* const valve = new TDbPipeAttachment;
    valve->SetPipeSystemName(L"给水");
    auto* const text = new TDbText;
    text->setTextString(L"JL-1");
    text->SetPipeSystemName(L"给水");
    const AcDbObjectId ids[] = {append(test::pipe_between({0, 0, 0}, {50, 0, 0})), append(valve),
                                append(text), append(test::pipe_between({0, 0, 0}, {50, 0, 0}, L"空调"))};
    const auto shown = [&] {
        std::string all;
        for (const AcDbObjectId id : ids)
            all += is_seen(id) ? '1' : '0';
        return all;
    };
    TDbPsConfig* config = nullptr;
    EXPECT_EQ(GetDwgPsGlobal(config, AcDb::kForWrite, database.get()), Acad::eKeyNotFound);
    EXPECT_EQ(config, nullptr);
    const std::string before = saved(*database);
    EXPECT_EQ(shown(), "1111");

    struct row {
        void (*change)(TDbPsConfig&);
        const char* expected;
    };
    const row rows[] = {
        {[](TDbPsConfig& c) { c.ShowSystem(GetSysType(L"给水"), false); }, "0001"},
        {[](TDbPsConfig& c) { c.ShowCustomPipeSystem(L"空调", false); }, "0000"},
        {[](TDbPsConfig& c) { c.ShowSystem(GetSysType(L"给水2"), false); }, "0000"},
        {[](TDbPsConfig& c) { c.ShowSystem(GetSysType(L"给水"), true); }, "1110"},
        {[](TDbPsConfig& c) {
             c.ShowCustomPipeSystem(L"空调", true);
             c.ShowCustomPipeSystem(L"空调", true);
             c.SetPlotScale(50);
             c.SetPlotScale(0);
             c.SetAbsoluteSize(true);
             c.SetLook({.m_breakWidth = 2.5, .m_textGap = -1, .m_elbowType = 1});
         },
         "1111"},
    };
    for (const row& row : rows) {
        ASSERT_EQ(InitDwgPsGlobal(config, database.get()), Acad::eOk);
        row.change(*config);
        config->close();
        EXPECT_EQ(shown(), row.expected);
        EXPECT_EQ(most_of(ids[0]).x, 50.0) << "extents stay";
    }
    const auto again = holding(saved(*database));
    ASSERT_EQ(GetDwgPsGlobal(config, AcDb::kForRead, again.get()), Acad::eOk);
    EXPECT_EQ(config->GetPlotScale(), 50.0);
    EXPECT_TRUE(config->IsAbsoluteSize());
    EXPECT_EQ(config->GetLook(), (TPsLook{.m_breakWidth = 2.5, .m_elbowType = 1}));
    EXPECT_TRUE(config->IsSystemShown(GetSysType(L"给水")));
    EXPECT_FALSE(config->IsSystemShown(GetSysType(L"给水2")));
    EXPECT_TRUE(config->IsCustomPipeSystemShown(L"空调"));
    config->close();
    EXPECT_TRUE(IsPipeSystemShown(again.get(), L""));
    EXPECT_EQ(GetPsBreakWidth(again.get()), 2.5);
    EXPECT_EQ(GetElbowType(again.get()), 1);
    EXPECT_EQ(GetPsPipeTextDis(again.get()), GetPsPipeTextDis(holding(before).get())) << "the default";
    database->imp().history().undo();
    EXPECT_EQ(GetDwgPsGlobal(config, AcDb::kForRead, database.get()), Acad::eKeyNotFound);
}

TEST_F(PipeConfig, WithoutTheApplicationPipesArePicturesOfThemselves) {
    auto* const made = test::pipe_between({0, 0, 0}, {3000, 0, 0});
    made->InitLabelLocation(100);
    made->ChangeValues().m_flow = kFlowToEnd;
    const AcDbObjectId pipe = append(made);
    const AcDbObjectId riser = append(test::pipe_between({0, 0, 0}, {0, 0, 3000}));
    TDbPsConfig* config = nullptr;
    ASSERT_EQ(InitDwgPsGlobal(config, database.get()), Acad::eOk);
    config->close();
    const AcGePoint3d most = most_of(pipe);
    const std::string bytes = saved(*database);

    ASSERT_TRUE(rx::applications::instance().unload(L"zef_pipewire"));
    const auto there = holding(bytes);
    for (const AcDbObjectId id : {pipe, riser}) {
        AcDbObjectId proxy_id;
        ASSERT_EQ(there->getAcDbObjectId(proxy_id, false, id.handle()), Acad::eOk);
        AcDbObjectPointer<AcDbProxyEntity> proxy(proxy_id, AcDb::kForWrite);
        ASSERT_EQ(proxy.openStatus(), Acad::eOk);
        EXPECT_STREQ(proxy->originalClassName(), L"TDbPipe");
        EXPECT_EQ(proxy->graphicsMetafileType(), AcDbProxyEntity::kFullGraphics);
        proxy.close();
        EXPECT_TRUE(is_seen(proxy_id));
        const AcGePoint3d extent = most_of(proxy_id);
        EXPECT_NEAR(extent.x, id == pipe ? most.x : 50.0, 1e-9);
        EXPECT_NEAR(extent.y, id == pipe ? most.y : 50.0, 1.0); // letters are measured by another font
    }
    EXPECT_EQ(saved(*there), bytes);
    ASSERT_TRUE(rx::applications::instance().load(L"zef_pipewire"));
    AcDbObjectId id;
    ASSERT_EQ(there->getAcDbObjectId(id, false, pipe.handle()), Acad::eOk);
    EXPECT_TRUE(id.objectClass() == TDbPipe::desc()) << "it is one again";
}
