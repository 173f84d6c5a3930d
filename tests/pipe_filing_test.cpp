// What the pipe entities file in drawings.
#include "host/db/core/history.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "siblings/zef_pipewire/PipeSystems.h"
#include "tests/binary_form.h"
#include "tests/pipe_support.h"

using PipeFiling = test::pipe_drawing;

namespace {

// Drawings in code page 936 and in UTF-8, in both forms of files.
struct form {
    const char* name;
    bool binary;
};

class PipeFilingIn : public test::pipe_drawing, public testing::WithParamInterface<form> {};

INSTANTIATE_TEST_SUITE_P(Forms, PipeFilingIn,
                         testing::Values(form{"r2000_gbk", false}, form{"r2000_gbk", true},
                                         form{"r2018", false}, form{"r2018", true}),
                         [](const auto& each) {
                             return std::string(each.param.name) + (each.param.binary ? "_binary" : "");
                         });

} // namespace

// Every value is another one, so that none can stand for its neighbour.
TEST_P(PipeFilingIn, FilesWhatItHolds) {
    const std::string ascii = test::read(test::drawing(std::string(GetParam().name) + ".dxf"));
    database = holding(GetParam().binary ? test::as_binary(ascii, true) : ascii);
    const AcDbObjectId other = append(new TDbPipeNode);
    const AcDbObjectId passing = append(test::pipe_between({0, 5, 9}, {9, 0, 9}));
    const AcDbObjectId layer = database->clayer();
    const AcDbObjectId style =
        database->imp().id(database->imp().names().find(db::table_kind::text_style, L"Standard"));
    const std::string node = db::handle_text(other.handle());
    const std::string layer_handle = db::handle_text(layer.handle());
    struct row {
        const char* marker;
        AcDbEntity* entity;
        std::string expected;
    };
    auto* const pipe = test::pipe_between({1, 2, 3}, {4, 5, 6}, L"给水2");
    pipe->SetSystemType(GetSysType(L"给水2"));
    pipe->SetPlotScale(50);
    pipe->InitLabelLocation(-7);
    pipe->EnableDrawLabel(false);
    pipe->AddAttachment(other);
    pipe->AddAttachment(other);
    AcDbObjectIdArray over;
    over.append(passing);
    pipe->SetPassingPipes(over);
    pipe->SetOuterDn(108);
    pipe->SetNodes(other, AcDbObjectId::kNull);
    pipe->SetArrowLayerId(layer);
    pipe->SetField(L"PIPE_THICK", 1);
    pipe->SetField(L"PIPE_THICK", 2.3);
    pipe->SetDimElements({kDimDn, kDimLength}, 1);
    pipe->SetDimElementPrefix(kDimLength, L"长");
    pipe->SetDimElementPrecision(kDimLength, 2, true);
    TPipeValues& values = pipe->ChangeValues();
    values.m_material = 3;
    values.m_lineWidth = 0.7;
    values.m_vPipeRadius = 0.6;
    values.m_vPipeSecond = 0.25;
    values.m_flow = kFlowToStart;
    values.m_labelHeight = 2.5;
    values.m_labelPrefix = L"De";
    values.m_labelFormat = L"%%c";
    values.m_thickness = 4;
    values.m_isChanged = true;
    values.m_isOldLabel = false;
    values.m_oldDimType = -1;
    values.m_labelLayer = layer;
    values.m_labelStyle = style;
    auto* const walls = new TDbDoubleLinePipe;
    walls->SetDns(100, 80);
    walls->SetFlange(180, 20);
    auto* const valve = new TDbPipeAttachment;
    valve->SetPosition({1, 2, 3});
    valve->SetRotation(0.5);
    valve->SetSize(250);
    valve->SetKind(kWaterMeter);
    valve->SetPipeSystemName(L"污水");
    valve->SetPipe(other);
    auto* const joint = new TDbPipeNode;
    joint->SetPosition({7, 8, 9});
    joint->Show(true);
    joint->AddPipe(other);
    joint->AddPipe(other);
    auto* const text = new TDbText;
    text->SetPipeSystemName(L"雨水");
    text->SetSubject(other);
    auto* const profile = new TDbVerticalSectionFeed;
    profile->SetPlace({1, 2, 0}, 1000);
    profile->SetScales(500, 50);
    profile->AddStation({0, 3000, 1500});
    profile->AddStation({9000, 3100, 1400});
    profile->AddCrossing({L"消防", 4000, 1800, 100});
    profile->SetShowCrossPipe(L"消防", true);
    profile->SetShowCrossPipe(7, false);
    const row rows[] = {
        {"TDbPipePrototype", pipe,
         "70 1|1 给水2|90 1|40 50.0|41 -7.0|290 1|291 0|330 " + node +
             "|100 TDbPipe|70 1|10 1.0|20 2.0|30 3.0|11 4.0|21 5.0|31 6.0|40 100.0|41 108.0|71 3|42 0.7|43 "
             "0.6|"
             "44 0.25|72 -1|45 2.5|1 De|2 %%c|47 4.0|290 1|291 0|46 -1.0|330 " +
             node + "|331 0|332 " + db::handle_text(passing.handle()) + "|340 " + layer_handle + "|341 " +
             layer_handle + "|342 " + db::handle_text(style.handle()) +
             "|300 PIPE_THICK|140 2.3|90 0|90 3|73 1|91 3|301 长|302 m|92 2|93 1"},
        {"TDbDoubleLinePipe", walls, "70 1|40 100.0|41 80.0|42 180.0|43 20.0"},
        {"TDbPipeAttachment", valve, "70 1|10 1.0|20 2.0|30 3.0|50 0.5|40 250.0|71 2|1 污水|330 " + node},
        {"TDbPipeNode", joint, "70 1|10 7.0|20 8.0|30 9.0|290 1|330 " + node},
        {"TDbText", text, "70 1|1 雨水|330 " + node},
        {"TDbSectionPrototype", profile,
         "70 1|10 1.0|20 2.0|30 0.0|40 1000.0|41 500.0|42 50.0|140 0.0|140 9000.0|141 3000.0|141 3100.0|"
         "142 1500.0|142 1400.0|300 消防|143 4000.0|144 1800.0|145 100.0|301 消防|71 1|90 7"},
    };
    for (const row& row : rows) {
        const AcDbObjectId id = append(row.entity);
        EXPECT_EQ(test::section(id, row.marker), row.expected) << row.marker;
        const std::string with_it = saved(*database);
        const auto again = holding(saved(*database));
        AcDbObjectId there;
        ASSERT_EQ(again->getAcDbObjectId(there, false, id.handle()), Acad::eOk);
        AcDbEntityPointer read(there, AcDb::kForRead);
        ASSERT_EQ(read.openStatus(), Acad::eOk) << row.marker;
        EXPECT_EQ(read->isA(), id.objectClass()) << row.marker;
        auto* const copy = AcDbEntity::cast(read->clone());
        read.close();
        EXPECT_EQ(test::section(append(*again, copy), row.marker), row.expected)
            << row.marker << ", read and written";

        if (std::string_view(row.marker) != "TDbPipePrototype")
            continue;
        // Mirrored to there and back it is what it was; undone it is that byte for byte.
        database->imp().records().begin_step("MIRROR");
        AcGeMatrix3d mirror;
        mirror.entry[0][0] = -1;
        for (const double x : {-1.0, 1.0}) {
            const AcDbObjectPointer<TDbPipe> mirrored(id, AcDb::kForWrite);
            ASSERT_EQ(mirrored->transformBy(mirror), Acad::eOk);
            EXPECT_EQ(mirrored->GetStartPoint(), AcGePoint3d(x, 2, 3));
            mirrored->ChangeValues().m_flow = x < 0 ? kFlowUnknown : kFlowToStart;
        }
        EXPECT_EQ(test::section(id, row.marker), row.expected) << "mirrored twice";
        database->imp().history().undo();
        EXPECT_TRUE(saved(*database) == with_it) << "undone";
    }
    EXPECT_NE(saved(*database).find("TDbVerticalSectionFeed"), std::string::npos);
}

TEST_F(PipeFiling, DamagedOrNewerOnesAreMet) {
    const std::string head = "0 SECTION|2 HEADER|9 $ACADVER|1 AC1032|0 ENDSEC|0 SECTION|2 ENTITIES|"
                             "0 ZEF_PIPE|5 A1|100 AcDbEntity|8 0|100 TDbPipePrototype|70 1|1 污水|";
    struct row {
        const char* what;
        const char* groups;
        bool is_pipe;
    };
    const row rows[] = {
        {"no section of its own", "40 50.0", true},
        {"lists of other lengths", "100 TDbPipe|70 1|300 A|300 B|140 1.0|91 3|91 4|301 x", true},
        {"unknown groups", "100 TDbPipe|70 1|49 5.0|10 1.0|20 2.0|30 3.0", true},
        {"a scale of nought, and one that is below", "40 0.0|40 -1.0|100 TDbPipe|70 1|10 1.0", true},
        {"a newer version", "100 TDbPipe|70 2|10 1.0|20 2.0|30 3.0", false},
    };
    for (const row& row : rows) {
        const auto there = holding(test::groups(head + row.groups + "|0 ENDSEC|0 EOF"));
        const std::string bytes = saved(*there);
        AcDbObjectId id;
        ASSERT_EQ(there->getAcDbObjectId(id, false, AcDbHandle(0xA1)), Acad::eOk);
        AcDbEntityPointer entity(id, AcDb::kForRead);
        ASSERT_EQ(entity.openStatus(), Acad::eOk) << row.what;
        const TDbPipe* const pipe = TDbPipe::cast(entity.object());
        EXPECT_EQ(pipe != nullptr, row.is_pipe) << row.what;
        double value = 0.0;
        if (pipe != nullptr) {
            EXPECT_EQ(pipe->GetPipeSystemName(), L"污水") << row.what;
            EXPECT_GT(pipe->GetPlotScale(), 0.0) << row.what;
            EXPECT_FALSE(pipe->GetField(L"B", value)) << row.what;
            EXPECT_EQ(pipe->GetMultiLineDimTextByDimElements().size(), 1U) << row.what;
        }
        entity.close();
        EXPECT_EQ(saved(*there), bytes) << row.what;
    }
}
