// Diameter labels: what DoDimPipeDn writes on pipes, by tables worked out by hand.
#include "base/utf.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "host/rx/applications.h"
#include "module/annotation/PipeLabels.h"
#include "module/annotation/PipeTexts.h"
#include "module/standard/PipeSystemCreation.h"
#include "module/standard/PipeSystemUpdates.h"
#include "siblings/zef_pipewire/TDbDoubleLinePipe.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"
#include "siblings/zef_pipewire/TDbText.h"
#include "siblings/zef_public/PipeLabels.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "siblings/zef_public/SharedOptions.h"
#include "tests/ed_session.h"
#include "tests/support.h"

#include <optional>

namespace {

// The shipped standard, a drawing, and the shipped materials, of which one has "De" in front of diameters and
// another one "%%c".
class Labels : public testing::Test {
protected:
    void SetUp() override {
        const std::filesystem::path share = std::filesystem::path(ZEF_SOURCE_FOLDER) / "share";
        sys::set_profile_folder(m_folder.path());
        ASSERT_TRUE(sys::prepare_profile(share));
        std::string table = test::read(sys::system_folder() / "pipe.dbf");
        SetPrefix(table, "PVC-U   ", "De");
        SetPrefix(table, "\xC7\xF2\xC4\xAB", "%%c"); // ductile iron, in GBK
        m_folder.write((sys::system_folder() / "pipe.dbf").string(), table);
        ReloadPipeMaterials();
        for (const wchar_t* const application : applications)
            ASSERT_TRUE(rx::applications::instance().load(application));
    }
    void TearDown() override {
        static_cast<void>(rx::applications::instance().unload(applications[2])); // it may be gone
        m_session.reset();
        for (const int i : {1, 0})
            ASSERT_TRUE(rx::applications::instance().unload(applications[i]));
        g_nDnDimDist2Pipe = 1.0;
    }
    static constexpr const wchar_t* applications[] = {L"zef_kernal", L"zef_pipewire", L"zef_pipeSystem"};

    static void SetPrefix(std::string& table, std::string_view material, std::string prefix) {
        constexpr std::size_t fromName = 24 + 8;
        constexpr std::size_t width = 4;
        prefix.resize(width, ' ');
        for (std::size_t at = table.find(material); at != table.npos; at = table.find(material, at + 1))
            table.replace(at + fromName, width, prefix);
    }

    static AcDbObjectId Append(AcDbEntity* entity) {
        AcDbBlockTableRecordPointer model(ACDB_MODEL_SPACE, acdbHostApplicationServices()->workingDatabase(),
                                          AcDb::kForWrite);
        AcDbObjectId id;
        EXPECT_EQ(model->appendAcDbEntity(id, entity), Acad::eOk);
        entity->close();
        return id;
    }
    // A cold water pipe of DN 100 that has been labelled before in another way, but is not.
    template<class Pipe = TDbPipe>
    static Pipe* MakePipe(const wchar_t* material, const AcGePoint3d& end = {3000, 0, 0}) {
        auto* const pipe = new Pipe;
        pipe->SetEnds({0, 0, 0}, end);
        PipeSystemTool::SetPipeSystemName(pipe, L"给水");
        pipe->setLayer(PipeSystemTool::InitLayer(L"给水", L"管线", nullptr));
        TPipeValues& values = pipe->ChangeValues();
        values.m_dn = 100.0;
        values.m_material = PipeSystemTool::GetIndexOfPIpeMaterial(material);
        values.m_labelFormat = L"kept";
        values.m_thickness = 7.0;
        return pipe;
    }
    static void Label(AcDbObjectId id, const wchar_t* style, int dn = 0, double height = 3.5,
                      bool otherSide = false, bool force = false) {
        KolTool::DoDimPipeDn(TEntitySet({id}), dn, style, height, otherSide ? 1 : 0, force ? 1 : 0);
    }
    static void SetDrawing(double scale, bool absolute) {
        TDbPsConfig* config = nullptr;
        ASSERT_EQ(InitDwgPsGlobal(config), Acad::eOk);
        config->SetPlotScale(scale);
        config->SetAbsoluteSize(absolute);
        config->close();
    }

    std::optional<test::session> m_session{std::in_place, test::drawing("viewports_r2018.dxf")};
    test::folder m_folder;
};

constexpr const wchar_t steel[] = L"无缝钢管";  // DN 100: 108 and 100; DN 125: 133 and 125
constexpr const wchar_t plastic[] = L"PVC-U";   // DN 100: 110 and 103.6; DN 90: 90 and 84
constexpr const wchar_t iron[] = L"球墨铸铁管"; // DN 100: 118 and 98
constexpr const wchar_t none[] = L"";

} // namespace

// Style by material, for pipes and risers, by former label type, and with absolute sizes or without.
TEST_F(Labels, TellWhatTheStyleSaysOfTheMaterial) {
    struct Row {
        const wchar_t *style, *material;
        int dn;
        double newDn, thickness, outer, wall;
        const wchar_t *format, *text;
    };
    const Row rows[] = {
        {L"φ外径", steel, 0, 108, 0, 108, 0, L"%%c", L"%%c108"},
        {L"外径壁厚", steel, 0, 108, 4, 108, 0, L"%%c", L"%%c108x4"},
        {L"外径壁厚", steel, 125, 133, 4, 133, 0, L"%%c", L"%%c133x4"},
        {L"外径壁厚2", steel, 0, 108, 4, 108, 0, L"J %%c", L"J %%c108x4"},
        {L"自动", steel, 0, 100, 7, 108, 4, L"DN", L"DN100"},
        {L"自动", steel, 125, 125, 7, 133, 4, L"DN", L"DN125"},
        {L"DN", steel, 0, 100, 0, 108, 4, L"DN", L"DN100"},
        {L"De", steel, 125, 125, 0, 133, 4, L"De", L"De133"},
        {L"d", steel, -5, 100, 0, 108, 4, L"d", L"d100"},
        {L"", steel, 0, 100, 0, 108, 4, L"", L"DN100"},
        {L"外径壁厚 ", steel, 0, 100, 0, 108, 4, L"外径壁厚 ", L"外径壁厚 100"},
        {L"L %%c", steel, 0, 108, 0, 108, 0, L"L %%c", L"L %%c108"},
        {L"φ外径", plastic, 0, 110, 0, 110, 0, L"%%c", L"%%c110"},
        {L"外径壁厚", plastic, 0, 110, 3.2, 110, 0, L"%%c", L"%%c110x3.2"},
        {L"外径壁厚2", plastic, 90, 90, 3, 90, 3, L"J %%c", L"J %%c90x3"}, // 90 has a row of its own
        {L"自动", plastic, 0, 100, 7, 110, 3.2, L"De", L"De110"},
        {L"DN", plastic, 0, 100, 0, 110, 3.2, L"DN", L"DN100"},
        {L"φ外径", iron, 0, 118, 0, 118, 0, L"%%c", L"%%c118"},
        {L"外径壁厚", iron, 0, 118, 10, 118, 0, L"%%c", L"%%c118x10"},
        {L"外径壁厚2", iron, 0, 118, 10, 118, 0, L"J %%c", L"J %%c118x10"},
        {L"自动", iron, 0, 118, 0, 118, 0, L"%%c", L"%%c118"},
        {L"DN", iron, 0, 100, 0, 118, 10, L"DN", L"DN100"},
        {L"φ外径", none, 0, 100, 0, 100, 0, L"%%c", L"%%c100"},
        {L"外径壁厚", none, 0, 100, 0, 100, 0, L"%%c", L"%%c100"},
        {L"外径壁厚2", none, 40, 40, 0, 40, 0, L"J %%c", L"J %%c40"},
        {L"自动", none, 0, 100, 7, 100, 0, L"DN", L"DN100"},
        {L"DN", none, 65, 65, 0, 65, 0, L"DN", L"DN65"},
    };
    struct Former {
        double type;
        bool isDrawn, isOld;
    };
    const AcDbObjectId textStyle = PipeSystemTool::InitTextStyle(kPipeDnTextStyle);
    ASSERT_FALSE(textStyle.isNull());
    for (const bool absolute : {false, true}) {
        SetDrawing(100, absolute);
        for (const auto& [type, isDrawn, isOld] : {Former{-1, false, false}, Former{-0.5, false, false},
                                                   Former{0, true, false}, Former{1, true, true}})
            for (const bool isRiser : {false, true})
                for (const Row& row : rows) {
                    SCOPED_TRACE(base::narrow(row.style) + " " + base::narrow(row.material) + " " +
                                 std::to_string(type) + (isRiser ? " riser" : ""));
                    auto* const made =
                        MakePipe(row.material, isRiser ? AcGePoint3d(0, 0, 3000) : AcGePoint3d(3000, 0, 0));
                    made->ChangeValues().m_oldDimType = type;
                    made->ChangeValues().m_isOldLabel = true;
                    const AcDbObjectId id = Append(made);
                    Label(id, row.style, row.dn, 2.5);
                    const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForWrite);
                    const TPipeValues& values = pipe->GetValues();
                    double wall = -1.0;
                    pipe->GetField(L"PIPE_THICK", wall);
                    EXPECT_NEAR(values.m_dn, row.newDn, 1e-9);
                    EXPECT_NEAR(values.m_thickness, row.thickness, 1e-9);
                    EXPECT_NEAR(pipe->GetOuterDn(), row.outer, 1e-9);
                    EXPECT_NEAR(wall, row.wall, 1e-9);
                    EXPECT_TRUE(values.m_isChanged);
                    EXPECT_EQ(values.m_labelFormat, isRiser ? L"kept" : row.format);
                    EXPECT_EQ(pipe->IsLabelled(), !isRiser);
                    EXPECT_EQ(values.m_labelHeight, isRiser ? 3.5 : 2.5);
                    EXPECT_EQ(values.m_labelStyle, isRiser ? AcDbObjectId(AcDbObjectId::kNull) : textStyle);
                    EXPECT_EQ(values.m_isOldLabel, isRiser || isOld);
                    EXPECT_EQ(pipe->IsDrawLabelEnabled(), isRiser || isDrawn);
                    EXPECT_EQ(isRiser ? CString(row.text) : pipe->GetLabelText(), row.text);
                    pipe->erase();
                }
    }
}

TEST_F(Labels, AreDrawnWhereThePipeIsLongEnough) {
    struct Row {
        double scale;
        bool absolute;
        double height, length;
        bool isDrawn;
    };
    for (const Row& row :
         {Row{100, false, 2.98, 500, false}, Row{100, false, 2.98, 501, true},
          Row{100, false, 2.99, 666, false}, Row{100, false, 2.99, 667, true},
          Row{50, false, 2.5, 250, false}, Row{50, false, 2.5, 251, true}, Row{50, false, 3.5, 333, false},
          Row{50, false, 3.5, 334, true}, Row{100, true, 2.98, 5, false}, Row{100, true, 2.98, 5.01, true},
          Row{100, true, 2.99, 8, false}, Row{100, true, 2.99, 8.01, true},
          Row{100, false, 0, 666, false}}) { // its own height, 3.5
        SetDrawing(row.scale, row.absolute);
        const AcDbObjectId id = Append(MakePipe(steel, {row.length, 0, 0}));
        Label(id, L"DN", 0, row.height);
        const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
        EXPECT_EQ(pipe->IsDrawLabelEnabled(), row.isDrawn) << row.height << " " << row.length << row.absolute;
        EXPECT_EQ(pipe->GetLabelHeight(), (row.height > 0 ? row.height : 3.5) * (row.absolute ? 1 : 100));
    }
}

TEST_F(Labels, StayWhereTheyAreUnlessForced) {
    const AcDbObjectId id = Append(MakePipe(steel));
    struct Row {
        double scale, option;
        bool otherSide, force;
        double distance;
    };
    for (const Row& row : {Row{100, 1, true, false, -100}, Row{100, 1, false, false, -100},
                           Row{50, 3, false, true, 150}, Row{50, 3, true, true, -150}}) {
        SetDrawing(row.scale, false);
        g_nDnDimDist2Pipe = row.option;
        Label(id, L"DN", 0, 3.5, row.otherSide, row.force);
        EXPECT_EQ(AcDbObjectPointer<TDbPipe>(id, AcDb::kForRead)->GetLabelDistance(), row.distance);
    }
    // What is no pipe, and a pipe on a locked layer, stay as they are.
    const AcDbObjectId line = Append(new AcDbLine({0, 0, 0}, {1, 1, 0}));
    Label(line, L"DN");
    KolTool::DoDimPipeDn(TEntitySet(), 100, L"DN", 3.5, 0, 0);
    AcDbLayerTableRecordPointer(L"PIPE-给水", acdbHostApplicationServices()->workingDatabase(),
                                AcDb::kForWrite)
        ->setIsLocked(true);
    Label(id, L"DN", 50);
    EXPECT_EQ(AcDbObjectPointer<TDbPipe>(id, AcDb::kForRead)->GetValues().m_dn, 100.0);
}

TEST_F(Labels, DoubleLinePipesGetDnAndFlange) {
    struct Row {
        const wchar_t* pressure;
        int dn;
        double diameter, thickness;
    };
    for (const Row& row :
         {Row{L"0.25MPa", 200, 320, 22}, Row{L"0.6MPa", 200, 320, 22}, Row{L"1.0MPa", 200, 340, 24},
          Row{L"1.6MPa", 200, 340, 26}, Row{L"2.5MPa", 200, 340, 24}, Row{nullptr, 200, 340, 24},
          Row{L"1.6mpa", 200, 340, 24}, Row{L"1.0MPa", 201, 0, 0}, Row{L"1.0MPa", 0, 5, 5}}) {
        auto* const made = MakePipe<TDbDoubleLinePipe>(steel);
        made->SetDns(80, 60);
        made->SetFlange(5, 5);
        const AcDbObjectId id = Append(made);
        if (row.pressure != nullptr) {
            acdbRegApp(L"VR-PIPE-FLANGE-PN");
            resbuf* const data = acutBuildList(AcDb::kDxfRegAppName, L"VR-PIPE-FLANGE-PN",
                                               AcDb::kDxfXdAsciiString, row.pressure, 0);
            EXPECT_EQ(AcDbEntityPointer(id, AcDb::kForWrite)->setXData(data), Acad::eOk);
            acutRelRb(data);
        }
        Label(id, L"外径壁厚", row.dn);
        const AcDbObjectPointer<TDbDoubleLinePipe> pipe(id, AcDb::kForRead);
        EXPECT_EQ(pipe->GetFlangeDiameter(), row.diameter) << row.dn;
        EXPECT_EQ(pipe->GetFlangeThickness(), row.thickness) << row.dn;
        EXPECT_EQ(pipe->GetStartDn(), row.dn > 0 ? row.dn : 80);
        EXPECT_EQ(pipe->GetEndDn(), row.dn > 0 ? row.dn : 60);
        EXPECT_EQ(pipe->GetValues().m_isChanged, row.dn > 0);
        EXPECT_EQ(pipe->GetValues().m_labelFormat, L"kept");
        EXPECT_FALSE(pipe->GetValues().m_labelStyle.isNull());
        EXPECT_FALSE(pipe->IsLabelled());
        EXPECT_EQ(pipe->GetLabelText(), row.dn == 201 ? L"DN201" : row.dn > 0 ? L"DN200" : L"DN80");
        AcDbVoidPtrArray parts;
        ASSERT_EQ(pipe->explode(parts), Acad::eOk);
        EXPECT_EQ(parts.length(), row.diameter > 0 ? 5 : 3) << "two walls, two flanges, the label";
        for (void* const part : parts)
            delete static_cast<AcDbEntity*>(part);
    }
}

// What stands around a diameter stays, and so does a text that tells of something else.
TEST_F(Labels, TextsAboutAPipeFollowIt) {
    struct Row {
        const wchar_t *text, *sign;
        int dn;
        double outer;
        const wchar_t* expected; // null: not found
    };
    for (const Row& row :
         {Row{L"DN100", L"", 100, 108, L"*"}, Row{L"JL-100 DN100 明装", L"", 100, 108, L"JL-100 * 明装"},
          Row{L"%%c108x4;", L"", 100, 108, L"*;"}, Row{L"De110.1", L"", 100, 110.12, L"*"},
          Row{L"管100×3.5", L"管", 100, 0, L"*"}, Row{L"J %%c108x4", L"J %%c", 108, 0, L"*"},
          Row{L"d100x", L"", 100, 0, L"*x"}, Row{L"100", L"", 100, 0, nullptr},
          Row{L"WD100", L"", 100, 0, nullptr}, Row{L"DN1000", L"", 100, 0, nullptr},
          Row{L"DN99.6.", L"", 100, 0, L"*."}, Row{L"", L"", 100, 0, nullptr}}) {
        CString text = row.text;
        EXPECT_EQ(PipeTexts::ReplaceDiameter(text, {row.sign}, row.dn, row.outer, L"*"),
                  row.expected != nullptr);
        EXPECT_EQ(text, row.expected != nullptr ? row.expected : row.text);
    }

    const AcDbObjectId id = Append(MakePipe(steel));
    AcDbObjectId texts[2];
    for (int i = 0; i < 2; ++i) {
        auto* const text = new TDbText;
        text->setTextString(L"JL-1 DN100");
        if (i == 0)
            text->SetSubject(id);
        texts[i] = Append(text);
        AcDbObjectPointer<TDbPipe>(id, AcDb::kForWrite)->AddAttachment(texts[i]);
    }
    const auto shown = [](AcDbObjectId text) {
        return CString(AcDbObjectPointer<TDbText>(text, AcDb::kForRead)->textStringConst());
    };
    Label(id, L"外径壁厚2");
    EXPECT_EQ(shown(texts[0]), L"JL-1 J %%c108x4");
    Label(id, L"DN", 125);
    EXPECT_EQ(shown(texts[0]), L"JL-1 DN125");
    EXPECT_EQ(shown(texts[1]), L"JL-1 DN100") << "about something else";

    EXPECT_EQ(GetPipeLayerIdxByName(L"vpipe-给水"), GetPipeLayerIdxByName(L"PIPE-给水"));
    EXPECT_EQ(g_csPipeDim[static_cast<std::size_t>(GetPipeLayerIdxByName(L"PIPE-污水"))], L"W");
    EXPECT_EQ(GetPipeLayerIdxByName(L"DIM_给水"), -1);
    ASSERT_TRUE(rx::applications::instance().unload(applications[2]));
    EXPECT_EQ(GetPipeLayerIdxByName(L"PIPE-给水"), -1);
}
