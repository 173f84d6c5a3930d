// The client's commands that draw pipes, in the program: what they ask, what they leave in the drawing.
#include "host/db/core/blocks.h"
#include "tests/pipe_support.h"

namespace {

std::size_t count(std::string_view text, std::string_view part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

const std::string plan = test::drawing("r2018.dxf").string();

using PipeCommands = test::pipe_drawing;

} // namespace

TEST_F(PipeCommands, DrawPipesThatMeetInJoints) {
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    // Two pipes, a third one from where they end, and a riser on their beginning.
    const std::string script = "hzgx 给水2 50 N 0,0 3000,0 3000,2000 \\n"
                               "hzgx\\n\\n\\n\\n3000,2000 3000,2000 6000,2000 \\n"
                               "hzlg\\n\\n65\\n0\\n\\n0,0 \\n"
                               "LIST 1500,0 4500,2000 \\n";
    auto run = test::zefhost({plan, "-c", script, "-o", out});
    ASSERT_EQ(run.status, 0) << run.err << run.out;
    for (const char* part :
         {"\n请输入管线系统<给水>:", "\n请输入管线系统<给水2>:", "\n请输入公称直径<50>:",
          "\n标注管径[是(Y)/否(N)]<否>:", "\n请指定管线起点<退出>:", "\n请指定管线下一点<结束>:",
          "\n两点重合，请重新指定！", "\n请输入底标高(m)<0.000>:", "\n请输入顶标高(m)<3.000>:",
          "\n请指定立管位置<退出>:", "Upper bound X=3000.0000  Y=0.0000  Z=0.0000",
          "Lower bound X=3000.0000  Y=2000.0000  Z=0.0000", "Layer: \"PIPE-给水2\""})
        EXPECT_EQ(count(run.out, part) > 0, true) << part << run.out;
    const std::string drawn = test::read(out);
    EXPECT_EQ(count(drawn, "\r\nZEF_PIPE\r\n") - 1, 4U) << "and the class";
    EXPECT_EQ(count(drawn, "\r\nZEF_PIPENODE\r\n") - 1, 5U);
    EXPECT_EQ(count(drawn, "\r\nVPIPE-给水2\r\n") > 0, true);
    const auto there = holding(drawn);
    AcDbImpDatabase& imp = there->imp();
    int ends = 0;
    for (const dxf::record_id record : imp.blocks().entities(imp.blocks().find(ACDB_MODEL_SPACE))) {
        const AcDbObjectPointer<TDbPipe> pipe(imp.id(record), AcDb::kForRead);
        if (pipe.openStatus() != Acad::eOk)
            continue;
        EXPECT_EQ(pipe->GetPipeSystemName(), L"给水2");
        EXPECT_EQ(pipe->GetValues().m_dn, pipe->IsVertical() ? 65.0 : 50.0);
        EXPECT_GT(pipe->GetOuterDn(), 0.0);
        for (const auto& [id, at] : {std::pair(pipe->GetStartNode(), pipe->GetStartPoint()),
                                     std::pair(pipe->GetEndNode(), pipe->GetEndPoint())}) {
            const AcDbObjectPointer<TDbPipeNode> node(id, AcDb::kForRead);
            ASSERT_EQ(node.openStatus(), Acad::eOk);
            EXPECT_TRUE(node->GetPipes().contains(pipe->objectId()));
            EXPECT_EQ(node->GetPosition(), at);
            ++ends;
        }
    }
    EXPECT_EQ(ends, 8);

    // Another program keeps them; what it sees of them can be picked.
    const std::string kept = (folder / "kept.dxf").string();
    run = test::zefhost({out, "--no-module", "-c", "ERASE 1500,0 \nU\nLIST 3000,1000 \n", "-o", kept});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(count(run.out, "ZEF_PIPE    Layer: \"PIPE-给水2\""), 1U) << run.out;
    EXPECT_TRUE(test::read(kept) == drawn);

    // One step each, and none when nothing is drawn.
    run = test::zefhost(
        {plan, "-c", "hzgx 污水 100 N 0,0 50,0 80,0 \nhzlg  \n\n\n0,0 1,1 \nhzgx\n\n\n\n\nU\nU", "-o", kept});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(test::read(kept) == test::read(plan));
}

TEST_F(PipeCommands, OfPipesThatCrossOnePassesOverTheOther) {
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    // One above the first, one below it, one that only touches it; at its height one of its system, and last
    // one of another, which is taken back and drawn anew.
    const std::string script =
        "hzgx 给水 50 N 0,0,0 3000,0,0 \nhzgx 污水 50 N 500,-500,900 500,500,900 \n"
        "hzgx 污水 50 N 1000,-500,-900 1000,500,-900 \nhzgx 污水 50 N 1500,0,0 1500,500,0 \n"
        "hzgx 给水 50 N 2000,-500,0 2000,500,0 \n";
    const std::string last = "hzgx 消防 50 N 2500,-500,0 2500,500,0 \n";
    auto run = test::zefhost({plan, "-c", script + last + "U\n" + last, "-o", out});
    ASSERT_EQ(run.status, 0) << run.err << run.out;
    const auto there = holding(test::read(out));
    std::vector<std::vector<std::size_t>> over; // of each pipe, by their numbers
    std::vector<AcDbObjectId> pipes;
    AcDbImpDatabase& imp = there->imp();
    for (const dxf::record_id record : imp.blocks().entities(imp.blocks().find(ACDB_MODEL_SPACE)))
        if (imp.records().type_name(record) == "ZEF_PIPE")
            pipes.push_back(imp.id(record));
    for (const AcDbObjectId id : pipes) {
        const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
        ASSERT_EQ(pipe.openStatus(), Acad::eOk);
        over.emplace_back();
        for (int i = 0; i < pipe->GetPassingPipes().length(); ++i)
            over.back().push_back(static_cast<std::size_t>(
                std::ranges::find(pipes, pipe->GetPassingPipes()[i]) - pipes.begin()));
    }
    EXPECT_EQ(over, (std::vector<std::vector<std::size_t>>{{1, 5}, {}, {0}, {}, {}, {}}));

    run = test::zefhost({plan, "-c",
                         "hzgx 给水 50 N 0,0,9 3000,0,9 \n-LAYER LO PIPE-给水 \n"
                         "hzgx 污水 50 N 500,-500,900 500,500,900 \n"});
    EXPECT_EQ(count(run.out, "\n有1根被跨越的管线所在的图层已锁定，没有断开！"), 1U) << run.out;
}

TEST_F(PipeCommands, PutSymbolsOnPipes) {
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    // The pick lies a little beside the pipe, whose middle the symbol stands on; a riser takes none.
    const std::string script = "hzgx 给水 50 N 0,0 3000,3000 \\nhzlg  \\n\\n\\n9000,0 \\n"
                               "hzfj H 1501,1500 9050,0 \\nhzfj\\n\\n2500,2500 \\nU\\n"
                               "LIST 1400,1400 \\n";
    const auto run = test::zefhost({plan, "-c", script, "-o", out});
    ASSERT_EQ(run.status, 0) << run.err << run.out;
    EXPECT_EQ(count(run.out, "\n请选择可以修改的水平管线！"), 1U) << run.out;
    EXPECT_EQ(count(run.out, "ZEF_PIPEATTACHMENT    Layer: \"VALVE_给水\""), 1U) << run.out;
    const std::string drawn = test::read(out);
    EXPECT_EQ(count(drawn, "\r\nTDbPipeAttachment\r\n 70\r\n     1\r\n 10\r\n1500.5\r\n 20\r\n1500.5\r\n"),
              1U);
    EXPECT_EQ(count(drawn, "\r\nZEF_PIPEATTACHMENT\r\n") - 1, 1U) << "and the class";
    EXPECT_EQ(count(drawn, "\r\nTDbPipe\r\n"), 3U) << "two and the class";
}

// What is answered amiss is told, and asked again.
TEST_F(PipeCommands, GoOnWhereAnAnswerFitsNothing) {
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    // The last riser stands on a joint that can not be changed.
    const std::string script =
        "hzgx 给水 50 N 0,0 0.05,0.05 3000,0 \\nhzlg  \\n3\\n\\n3.00001\\n6\\n9000,0 \\n"
        "hzfj Z 8000,8000 1500,0 \\n-LAYER LO PIPE-给水 \\nhzlg  \\n0\\n\\n0,0 \\n";
    const auto run = test::zefhost({plan, "-c", script, "-o", out});
    ASSERT_EQ(run.status, 0) << run.err << run.out;
    for (const char* message :
         {"\n两点重合，请重新指定！", "\n没有选中管线！", "\n节点所在的图层已锁定，管线没有与它相连！"})
        EXPECT_EQ(count(run.out, message), 1U) << message << run.out;
    EXPECT_EQ(count(run.out, "\n顶标高与底标高相同，请重新指定！"), 2U) << run.out;
    const std::string drawn = test::read(out);
    EXPECT_EQ(count(drawn, "\r\nZEF_PIPE\r\n") - 1, 3U);
    EXPECT_EQ(count(drawn, "\r\nZEF_PIPENODE\r\n") - 1, 5U);
    EXPECT_EQ(count(drawn, "\r\nZEF_PIPEATTACHMENT\r\n") - 1, 1U);
}

TEST_F(PipeCommands, AskAgainForASystemThatTheStandardLacks) {
    for (const char* script : {"hzgx 空调 给水 50 N 0,0 3000,0 \n", "hzlg 空调 给水 50 0 1 0,0 \n"}) {
        const auto run = test::zefhost({plan, "--keep-going"}, std::string(script) + "LIST L\n\n");
        EXPECT_EQ(run.status, 4) << "a refused answer";
        EXPECT_EQ(count(run.out, "请输入管线系统<"), 2U) << run.out;
        EXPECT_EQ(count(run.out, "PIPE-给水\""), 1U) << run.out;
    }
}

TEST_F(PipeCommands, RefuseWhatTheyCanNotDraw) {
    struct row {
        const char* drawing;
        const char* script;
        const char* word;
    };
    for (const row& row :
         {row{"r2018.dxf", "hzgx\\n空调", "当前标准中没有管线系统\"空调\"！"},
          row{"r2018.dxf", "hzgx 给水 0", "给水"}, row{"r2018.dxf", "hzlg 给水 50 a", "底标高"},
          row{"r12.dxf", "hzgx", "不能保存管线！请先用SAVEAS 2018"},
          row{"r12.dxf", "hzlg", "不能保存管线！请先用SAVEAS 2018"},
          row{"r12.dxf", "hzfj", "不能保存附件！请先用SAVEAS 2018"},
          row{"r2018.dxf", "hzgx 给水 50 N 0,0 1,0 \\n-LAYER LO PIPE-给水 \\nhzgx\\n\\n\\n\\n5,0 9,0 ",
              "图层\"PIPE-给水\"已锁定，不能绘制！"},
          row{"r2018.dxf", "hzlg 给水 50 0 1 0,0 \\n-LAYER OFF VPIPE-给水 \\nhzlg\\n\\n\\n\\n\\n5,5 ",
              "图层\"VPIPE-给水\"已关闭，不能绘制！"}}) {
        const auto run = test::zefhost({test::drawing(row.drawing).string(), "-c", row.script});
        EXPECT_EQ(run.status, 4) << row.script;
        EXPECT_EQ(count(run.out + run.err, row.word) > 0, true) << row.script << "\n" << run.out << run.err;
    }
}

// Layers are made on demand, in the colours and linetypes of the standard; one that the drawing has keeps its
// own. A copy that is taken apart has as many figures on the same layers, and none of the add-on's entities.
TEST_F(PipeCommands, DrawSixSystemsAndTakeThemApart) {
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    const std::string copy = (folder / "copy.2").string();
    std::string script = "-LAYER N PIPE-消防 C 5 PIPE-消防 \n";
    const char* const systems[] = {"给水", "热给水", "消防", "喷淋", "污水", "雨水"};
    for (int i = 0; i < 6; ++i) {
        const std::string y = std::to_string(i * 1000);
        script += "hzgx\n" + std::string(systems[i]) + "\n50\nN\n0," + y + "\n3000," + y + "\n\n";
    }
    script += "hzlg\n污水\n50\n0\n3\n0,9000\n\nzhcc\n" + copy + "\n";
    const auto run = test::zefhost({plan, "-c", script, "-o", out});
    ASSERT_EQ(run.status, 0) << run.err << run.out;
    EXPECT_EQ(count(run.out, "21 个自定义实体分解为 7 个普通实体") > 0, true) << run.out;
    const std::string apart = test::read(copy + ".dxf");
    EXPECT_EQ(count(apart, "\r\nZEF_PIPE\r\n"), 1U) << "the class";
    struct row {
        const char* layer;
        const char* color;
        const char* linetype;
    };
    for (const std::string& drawn : {test::read(out), apart})
        for (const row& row : {row{"PIPE-给水", "3", "Continuous"}, row{"PIPE-热给水", "6", "Continuous"},
                               row{"PIPE-消防", "5", "Continuous"}, row{"PIPE-喷淋", "30", "VR-ZP"},
                               row{"PIPE-污水", "2", "VR-W"}, row{"VPIPE-污水", "2", "Continuous"},
                               row{"PIPE-雨水", "4", "VR-Y"}, row{"DIM_雨水", "7", "Continuous"},
                               row{"FLOW_消防", "7", "Continuous"}}) {
            const std::size_t at =
                drawn.find("\r\nAcDbLayerTableRecord\r\n  2\r\n" + std::string(row.layer) + "\r\n");
            ASSERT_NE(at, drawn.npos) << row.layer;
            const std::string record = drawn.substr(at, drawn.find("\r\n  0\r\n", at) - at);
            EXPECT_EQ(count(record, "\r\n 62\r\n" + std::string(7 - 1 - std::string(row.color).size(), ' ') +
                                        row.color + "\r\n"),
                      1U)
                << record;
            EXPECT_EQ(count(record, "\r\n  6\r\n" + std::string(row.linetype) + "\r\n"), 1U) << record;
        }
}
