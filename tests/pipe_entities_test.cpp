// The pipe entities: how they are drawn, moved, exploded and labelled.
#include "dbents.h"
#include "host/view/tracer.h"
#include "siblings/zef_pipewire/PipeSystems.h"
#include "siblings/zef_pipewire/TDefaultCfg.h"
#include "tests/pipe_support.h"

#include <array>

using PipeEntity = test::pipe_drawing;

namespace {

// How many figures of each kind somebody who looks sees.
class counting final : public gi::canvas {
public:
    void lines(std::span<const AcGePoint3d>) override { ++counts[0]; }
    void area(std::span<const AcGePoint3d>) override { ++counts[1]; }
    void curve(const gi::arc&) override { ++counts[2]; }
    bool text(const gi::text_line& line) override {
        ++counts[3];
        texts.emplace_back(line.text);
        return true;
    }
    std::array<int, 4> counts{}; // lines, areas, curves, texts
    std::vector<std::wstring> texts;
};

counting seen(const AcDbEntity& entity) {
    counting canvas;
    gi::tracer(canvas).draw(entity);
    return canvas;
}

AcDbExtents extents_of(const AcDbEntity& entity) {
    AcDbExtents extents;
    EXPECT_EQ(entity.getGeomExtents(extents), Acad::eOk);
    return extents;
}

// What somebody sees of the pieces that an entity comes apart into is what he saw of it.
void expect_same_pieces(const AcDbEntity& entity, const char* what) {
    AcDbVoidPtrArray parts;
    ASSERT_EQ(entity.explode(parts), Acad::eOk) << what;
    counting canvas;
    AcDbExtents extents;
    for (void* const part : parts) {
        const std::unique_ptr<AcDbEntity> piece(static_cast<AcDbEntity*>(part));
        gi::tracer(canvas).draw(*piece);
        extents.addExt(extents_of(*piece));
    }
    EXPECT_EQ(canvas.counts, seen(entity).counts) << what;
    EXPECT_EQ(canvas.texts, seen(entity).texts) << what;
    EXPECT_TRUE(extents.minPoint().isEqualTo(extents_of(entity).minPoint())) << what;
    EXPECT_TRUE(extents.maxPoint().isEqualTo(extents_of(entity).maxPoint())) << what;
}

void label(TDbPipe& pipe) {
    pipe.InitLabelLocation(100.0);
}

} // namespace

TEST_F(PipeEntity, IsVerticalByItsPlan) {
    struct row {
        AcGePoint3d end;
        bool vertical;
    };
    for (const row& row : {row{{0.05, 0.05, 3}, true}, row{{0.2, 0, 3}, false}, row{{0, -0.099, 0}, true},
                           row{{0, 0.1, 3}, false}, row{{3, 0, 0}, false}}) {
        const std::unique_ptr<TDbPipe> pipe(test::pipe_between(AcGePoint3d::kOrigin, row.end));
        EXPECT_EQ(pipe->IsVertical(), row.vertical) << row.end.x << " " << row.end.y;
    }
}

TEST_F(PipeEntity, DrawsLineLabelAndArrow) {
    struct row {
        const char* what;
        AcGePoint3d end;
        void (*change)(TDbPipe&);
        std::array<int, 4> expected;
        AcGePoint3d least, most; // of its extents
    };
    const row rows[] = {
        {"a line", {3000, 0, 0}, [](TDbPipe&) {}, {1, 0, 0, 0}, {0, 0, 0}, {3000, 0, 0}},
        {"flow",
         {3000, 0, 0},
         [](TDbPipe& p) { p.ChangeValues().m_flow = kFlowToEnd; },
         {1, 1, 0, 0},
         {0, -50, 0},
         {3000, 50, 0}},
        {"flow, no room",
         {200, 0, 0},
         [](TDbPipe& p) { p.ChangeValues().m_flow = kFlowToEnd; },
         {1, 0, 0, 0},
         {0, 0, 0},
         {200, 0, 0}},
        {"a label", {0, 3000, 0}, label, {1, 0, 0, 1}, {-450, 0, 0}, {0, 3000, 0}},
        {"a label that is not drawn",
         {3000, 0, 0},
         [](TDbPipe& p) {
             label(p);
             p.EnableDrawLabel(false);
         },
         {1, 0, 0, 0},
         {0, 0, 0},
         {3000, 0, 0}},
        {"a riser, and its label", {0, 0, 3000}, label, {0, 0, 1, 0}, {-50, -50, 0}, {50, 50, 0}},
        {"a riser of two circles",
         {0, 0, 3000},
         [](TDbPipe& p) {
             p.ChangeValues().m_vPipeSecond = 0.25;
             p.SetPlotScale(200);
         },
         {0, 0, 2, 0},
         {-100, -100, 0},
         {100, 100, 0}},
        {"a filled riser",
         {0, 0, 3000},
         [](TDbPipe& p) { p.ChangeValues().m_vPipeSecond = -1; },
         {0, 1, 1, 0},
         {-50, -50, 0},
         {50, 50, 0}},
        {"a riser as an arc",
         {0, 0, 3000},
         [](TDbPipe& p) { p.ChangeValues().m_vPipeSecond = 0; },
         {0, 0, 1, 0},
         {-50, -50, 0},
         {50, 50, 0}},
        {"a crossed riser",
         {0, 0, 3000},
         [](TDbPipe& p) { p.ChangeValues().m_vPipeSecond = -3; },
         {2, 0, 1, 0},
         {-50, -50, 0},
         {50, 50, 0}},
    };
    for (const row& row : rows) {
        const std::unique_ptr<TDbPipe> pipe(test::pipe_between(AcGePoint3d::kOrigin, row.end));
        row.change(*pipe);
        EXPECT_EQ(seen(*pipe).counts, row.expected) << row.what;
        expect_same_pieces(*pipe, row.what);
        const AcDbExtents extents = extents_of(*pipe);
        AcGeTol tenth;
        tenth.setEqualPoint(0.1);
        EXPECT_TRUE(extents.minPoint().isEqualTo(row.least, tenth))
            << row.what << " " << extents.minPoint().x << " " << extents.minPoint().y;
        EXPECT_TRUE(extents.maxPoint().isEqualTo(row.most, tenth))
            << row.what << " " << extents.maxPoint().x << " " << extents.maxPoint().y;
    }
    ASSERT_TRUE(TDefaultCfg::SetDefaultValue(TDefaultCfg::kBoolean, 2, true));
    const std::unique_ptr<TDbPipe> thick(test::pipe_between(AcGePoint3d::kOrigin, {0, 1000, 0}));
    EXPECT_EQ(seen(*thick).counts, (std::array<int, 4>{0, 1, 0, 0}));
    EXPECT_EQ(extents_of(*thick).maxPoint(), AcGePoint3d(17.5, 1000, 0));
    expect_same_pieces(*thick, "a thick pipe");
    expect_same_pieces(*std::unique_ptr<TDbPipe>(test::pipe_between(AcGePoint3d::kOrigin, {0, 1000, 70})),
                       "a thick pipe that falls");
    TDefaultCfg::SetDefaultValue(TDefaultCfg::kBoolean, 2, false);
}

TEST_F(PipeEntity, LabelsTellWhatTheyAreTold) {
    struct row {
        const char* what;
        void (*change)(TDbPipe&);
        std::vector<CString> expected;
    };
    const row rows[] = {
        {"nothing", [](TDbPipe&) {}, {L"DN100"}},
        {"a prefix", [](TDbPipe& p) { p.ChangeValues().m_labelPrefix = L"De"; }, {L"De100"}},
        {"a format in front of the prefix",
         [](TDbPipe& p) {
             p.ChangeValues().m_labelPrefix = L"De";
             p.ChangeValues().m_labelFormat = L"d";
         },
         {L"d100"}},
        {"outer diameter",
         [](TDbPipe& p) {
             p.ChangeValues().m_labelFormat = L"J %%c";
             p.ChangeValues().m_dn = 114.3;
         },
         {L"J %%c114.3"}},
        {"with its thickness",
         [](TDbPipe& p) {
             p.ChangeValues().m_labelFormat = L"%%c";
             p.ChangeValues().m_thickness = 4.0;
         },
         {L"%%c100x4"}},
        {"elements in a line",
         [](TDbPipe& p) {
             p.SetDimElements({kDimSystem, kDimDn, kDimLength}, 0);
         },
         {L"给水 DN100 L=12.5m"}},
        {"two in a line",
         [](TDbPipe& p) {
             p.SetDimElements({kDimDn, kDimGradient, kDimStartElevation}, 2);
         },
         {L"DN100 i=0.04", L"H=1.5"}},
        {"prefix, suffix, decimals",
         [](TDbPipe& p) {
             p.SetDimElementPrefix(kDimEndElevation, L"");
             p.SetDimElementSuffix(kDimEndElevation, L" m");
             p.SetDimElementPrecision(kDimEndElevation, 4, true);
             p.SetDimElementPrecision(kDimThickness, 0, false);
             p.SetField(L"PIPE_THICK", 2.6);
             p.SetOuterDn(108);
             p.SetDimElements({kDimOuterDn, kDimThickness, kDimEndElevation, 99}, 1);
         },
         {L"%%c108", L"x3", L"1.0000 m", L""}},
    };
    for (const row& row : rows) {
        const std::unique_ptr<TDbPipe> pipe(test::pipe_between({0, 0, 1500}, {12500, 0, 1000}));
        row.change(*pipe);
        EXPECT_EQ(pipe->GetMultiLineDimTextByDimElements(), row.expected) << row.what;
    }
}

TEST_F(PipeEntity, MovesAndComesApart) {
    AcGeMatrix3d turned;
    turned.setToRotation(1.5707963267948966, AcGeVector3d::kZAxis);
    AcGeMatrix3d flat;
    flat.setToScaling(AcGeScale3d(2, 1, 1));
    auto* const made = test::pipe_between({0, 0, 500}, {1000, 0, 500});
    label(*made);
    made->SetDimElements({kDimDn, kDimSystem}, 1);
    const AcDbObjectId id = append(made);
    AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForWrite);
    EXPECT_EQ(pipe->transformBy(flat), Acad::eCannotScaleNonUniformly);
    EXPECT_EQ(pipe->transformBy(turned), Acad::eOk);
    EXPECT_EQ(pipe->GetEndPoint(), AcGePoint3d(0, 1000, 500));
    pipe->ChangeValues().m_labelLayer = database->clayer();
    AcDbVoidPtrArray parts;
    ASSERT_EQ(pipe->explode(parts), Acad::eOk);
    ASSERT_EQ(parts.length(), 3);
    std::unique_ptr<AcDbEntity> pieces[3];
    for (int i = 0; i < 3; ++i)
        pieces[i].reset(static_cast<AcDbEntity*>(parts[i]));
    EXPECT_EQ(AcDbLine::cast(pieces[0].get())->endPoint(), AcGePoint3d(0, 1000, 500));
    EXPECT_STREQ(AcDbText::cast(pieces[1].get())->textStringConst(), L"DN100");
    EXPECT_STREQ(AcDbText::cast(pieces[2].get())->textStringConst(), L"给水");
    EXPECT_NEAR(AcDbText::cast(pieces[2].get())->rotation(), 1.5707963267948966, 1e-9);

    const std::unique_ptr<TDbPipeAttachment> valve(new TDbPipeAttachment);
    valve->SetPosition({100, 0, 0});
    valve->SetSize(200);
    EXPECT_EQ(valve->transformBy(turned.preMultBy(AcGeMatrix3d::scaling(2))), Acad::eOk);
    EXPECT_EQ(valve->GetPosition(), AcGePoint3d(0, 200, 0));
    EXPECT_NEAR(valve->GetRotation(), 1.5707963267948966, 1e-9);
    const AcDbExtents extents = extents_of(*valve);
    EXPECT_EQ(extents.minPoint(), AcGePoint3d(-100, 0, 0));
    EXPECT_EQ(extents.maxPoint(), AcGePoint3d(100, 400, 0));
}

TEST_F(PipeEntity, SymbolsAndPassingPipesHideItsLine) {
    auto* const made = test::pipe_between({0, 0, 0}, {3000, 0, 0});
    const AcDbObjectId id = append(made);
    auto* const valve = new TDbPipeAttachment;
    valve->SetPosition({2900, 10, 0});
    valve->SetSize(400);
    auto* const beside = new TDbPipeAttachment;
    beside->SetPosition({500, 500, 0});
    const AcDbObjectId passing = append(test::pipe_between({1000, -500, 900}, {1000, 500, 900}));
    const AcDbObjectId touching = append(test::pipe_between({2000, 0, 900}, {2000, 500, 900}));
    AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForWrite);
    EXPECT_EQ(pipe->GetVisibleLength(), 3000.0);
    pipe->AddAttachment(append(valve));
    pipe->AddAttachment(append(beside));
    AcDbObjectIdArray over;
    over.append(passing);
    over.append(touching);
    pipe->SetPassingPipes(over);
    ASSERT_EQ(pipe->GetVisibleParts().size(), 2U);
    EXPECT_EQ(pipe->GetVisibleParts()[1].first, AcGePoint3d(1100, 0, 0)); // half of 2 mm on paper, at 1:100
    EXPECT_EQ(pipe->GetVisibleParts()[1].second, AcGePoint3d(2700, 0, 0));
    EXPECT_NEAR(pipe->GetVisibleLength(), 900 + 1600, 1e-9);
    expect_same_pieces(*pipe.object(), "with gaps");
    AcDbObjectPointer<TDbPipe>(passing, AcDb::kForWrite)->erase();
    EXPECT_NEAR(pipe->GetVisibleLength(), 2700, 1e-9);
}

TEST_F(PipeEntity, TakesItsInvisibleJointsAlong) {
    AcDbObjectId joints[3];
    for (int i = 0; i < 3; ++i) {
        auto* const node = new TDbPipeNode;
        node->SetPosition({1000.0 * i, 0, 0});
        node->Show(i == 2);
        joints[i] = append(node);
    }
    AcDbObjectId pipes[2];
    for (int i = 0; i < 2; ++i) {
        auto* const pipe = test::pipe_between({1000.0 * i, 0, 0}, {1000.0 * (i + 1), 0, 0});
        pipe->SetNodes(joints[i], joints[i + 1]);
        pipes[i] = append(pipe);
        for (const AcDbObjectId joint : {joints[i], joints[i + 1]})
            AcDbObjectPointer<TDbPipeNode>(joint, AcDb::kForWrite)->AddPipe(pipes[i]);
    }
    const auto gone = [&] {
        std::array<bool, 3> answer{};
        for (std::size_t i = 0; i < 3; ++i)
            answer[i] = joints[i].isErased();
        return answer;
    };
    using state = std::array<bool, 3>;
    AcDbObjectPointer<TDbPipe>(pipes[0], AcDb::kForWrite)->erase();
    EXPECT_EQ(gone(), (state{true, false, false})) << "the other pipe needs its joint";
    AcDbObjectPointer<TDbPipe>(pipes[1], AcDb::kForWrite)->erase();
    EXPECT_EQ(gone(), (state{true, true, false})) << "the last one is shown";
    AcDbObjectPointer<TDbPipe>(pipes[0], AcDb::kForWrite, true)->erase(false);
    EXPECT_EQ(gone(), (state{false, false, false}));
}

TEST_F(PipeEntity, SymbolsJointsAndTexts) {
    for (const auto& [kind, expected] : {std::pair(kGateValve, std::array<int, 4>{2, 0, 0, 0}),
                                         std::pair(kCheckValve, std::array<int, 4>{1, 1, 0, 0}),
                                         std::pair(kWaterMeter, std::array<int, 4>{1, 0, 1, 0}),
                                         std::pair(kReducer, std::array<int, 4>{1, 0, 0, 0})}) {
        TDbPipeAttachment symbol;
        symbol.SetKind(kind);
        EXPECT_EQ(seen(symbol).counts, expected) << kind;
        symbol.SetPosition({300, 200, 100});
        symbol.SetRotation(0.5);
        expect_same_pieces(symbol, "a symbol");
    }
    TDbPipeNode joint;
    EXPECT_TRUE(IsNoDrawingObject(&joint));
    EXPECT_EQ(seen(joint).counts, (std::array<int, 4>{}));
    joint.Show(true);
    EXPECT_FALSE(IsNoDrawingObject(&joint));
    EXPECT_EQ(seen(joint).counts[2], 1);
    expect_same_pieces(joint, "a joint");
    TDbText text;
    EXPECT_FALSE(IsNoDrawingObject(&text));
    EXPECT_FALSE(IsNoDrawingObject(nullptr));
    text.setTextString(L"JL-1");
    EXPECT_EQ(seen(text).texts, (std::vector<std::wstring>{L"JL-1"}));
    TDbDoubleLinePipe walls;
    walls.SetEnds({0, 0, 0}, {1000, 0, 0});
    walls.SetDns(100, 80);
    EXPECT_EQ(seen(walls).counts[0], 2);
    walls.SetFlange(180, 20);
    EXPECT_EQ(seen(walls).counts[0], 4);
    EXPECT_EQ(extents_of(walls).maxPoint(), AcGePoint3d(1000, 90, 0));
    expect_same_pieces(walls, "two walls and two flanges");
    expect_same_pieces(text, "a text");
}

TEST_F(PipeEntity, SectionsShowWhatCrosses) {
    TDbVerticalSection drain;
    drain.SetPlace({0, 0, 0}, 0);
    drain.SetScales(10, 1);
    drain.AddStation({0, 300, 100});
    drain.AddStation({900, 300, 50});
    drain.AddCrossing({L"消防", 100, 200, 80});
    drain.AddCrossing({L"空调", 200, 200, 80}); // a system without a code
    struct row {
        const char* what;
        void (*change)(TDbVerticalSection&);
        int circles;
    };
    const int fire = GetSysType(L"消防");
    ASSERT_NE(fire, kCustomSystemType);
    EXPECT_EQ(GetSystypeName(fire), L"消防");
    const row rows[] = {
        {"all", [](TDbVerticalSection&) {}, 2},
        {"by its code", [](TDbVerticalSection& s) { s.SetShowCrossPipe(GetSysType(L"消防"), false); }, 1},
        {"by its name, which goes first", [](TDbVerticalSection& s) { s.SetShowCrossPipe(L"消防", true); },
         2},
        {"the other by its name", [](TDbVerticalSection& s) { s.SetShowCrossPipe(L"空调", false); }, 1},
        {"again", [](TDbVerticalSection& s) { s.SetShowCrossPipe(L"空调", true); }, 2},
    };
    EXPECT_FALSE(drain.HasField(L"消防"));
    for (const row& row : rows) {
        row.change(drain);
        EXPECT_EQ(seen(drain).counts, (std::array<int, 4>{5, 0, row.circles, 0})) << row.what;
    }
    EXPECT_TRUE(drain.HasField(L"消防"));
    EXPECT_FALSE(drain.IsShowCrossPipe(fire));
    EXPECT_EQ(extents_of(drain).maxPoint(), AcGePoint3d(90, 300, 0));
    AcGeMatrix3d move;
    EXPECT_EQ(drain.transformBy(move.setToTranslation({5, 0, 0})), Acad::eOk);
    EXPECT_EQ(drain.GetCorner(), AcGePoint3d(5, 0, 0));
    EXPECT_EQ(drain.transformBy(move.setToScaling(2)), Acad::eNotApplicable);
}
