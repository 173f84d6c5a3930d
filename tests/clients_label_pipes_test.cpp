// The client's commands that label and number pipes, in the program.
#include "host/db/core/blocks.h"
#include "tests/pipe_support.h"

#include <algorithm>
#include <optional>

namespace {

const std::string plan = test::drawing("r2018.dxf").string();

// Runs a script on a drawing, and looks at what is saved.
class LabelCommands : public test::pipe_drawing {
protected:
    void run(const std::string& drawing, const std::string& script) {
        const std::string out = (folder / "out.dxf").string();
        const auto result = test::zefhost({drawing, "-c", script, "-o", out});
        ASSERT_EQ(result.status, 0) << result.err << result.out;
        shown = result.out;
        database = holding(test::read(out));
    }
    bool shows(std::string_view part) const { return shown.find(part) != shown.npos; }

    // Calls `look` with each entity of a class.
    template<class Entity, class Look>
    void for_each(Look look) const {
        AcDbImpDatabase& imp = database->imp();
        for (const dxf::record_id record : imp.blocks().entities(imp.blocks().find(ACDB_MODEL_SPACE)))
            if (const AcDbObjectPointer<Entity> entity(imp.id(record), AcDb::kForRead);
                entity.openStatus() == Acad::eOk)
                look(*entity);
    }
    // Labels of pipes and texts, from left to right by where they are.
    std::vector<CString> labels() const {
        std::vector<std::pair<double, CString>> found;
        for_each<TDbPipe>([&](const TDbPipe& pipe) {
            if (pipe.IsLabelled() && pipe.IsDrawLabelEnabled())
                found.emplace_back(pipe.GetStartPoint().x, pipe.GetLabelText());
        });
        for_each<TDbText>(
            [&](const TDbText& text) { found.emplace_back(text.position().x, text.textStringConst()); });
        std::ranges::stable_sort(found, {}, &std::pair<double, CString>::first);
        std::vector<CString> texts;
        for (const auto& [x, text] : found)
            texts.push_back(text);
        return texts;
    }

    test::folder folder;
    std::string shown;
};

using texts = std::vector<CString>;
const std::string all = "(ssget \"X\" '((0 . \"ZEF_PIPE\")))\n\n";

} // namespace

TEST_F(LabelCommands, KeepTheNominalDiameter) {
    // PP-R: DN 50 is 63 outside and 51.4 inside, DN 65 is 75.
    const std::string draw = "hzgx\n给水\n50\nY\n0,0\n3000,0\n3600,0\n\n";
    struct row {
        const char* orders;
        texts expected;
        double dn;
    };
    for (const row& row :
         {row{"", {L"DN50"}, 50.0}, row{"S\n1\n\n", {L"%%c63"}, 63.0},
          row{"S\n1\n\n|S\n外径壁厚\n\n", {L"%%c63x5.8"}, 63.0},
          row{"S\n1\n\n|S\n3\n\n|S\nDN\n\n", {L"DN50"}, 50.0}, row{"S\n1\n\n|S\nDe\n\n", {L"De63"}, 50.0},
          row{"S\nφ\n\n|D\n65\n\n|D\n0\nS\nJ-DN\n\n", {L"J-DN65"}, 65.0}}) {
        std::string script = draw;
        std::string orders = row.orders;
        while (!orders.empty()) {
            const std::size_t end = std::min(orders.find('|'), orders.size());
            script += "bzgj\n" + orders.substr(0, end) + all;
            orders.erase(0, end + 1);
        }
        ASSERT_NO_FATAL_FAILURE(run(plan, script));
        EXPECT_EQ(labels(), row.expected) << row.orders;
        EXPECT_TRUE(shows("管线太短，标注不显示。")) << shown;
        for_each<TDbPipe>(
            [&](const TDbPipe& pipe) { EXPECT_EQ(pipe.GetValues().m_dn, row.dn) << row.orders; });
    }
    const auto locked = test::zefhost({plan, "-c", draw + "-LAYER LO PIPE-给水 \nbzgj\n\n" + all});
    EXPECT_NE(locked.out.find("2 个图元不是管线或图层已锁定，没有标注。"), locked.out.npos) << locked.out;
    for (const char* command : {"bzgj", "gxbh", "tzsz", "xzgx"})
        EXPECT_EQ(test::zefhost({test::drawing("r12.dxf").string(), "-c", command}).status, 4) << command;
}

TEST_F(LabelCommands, NumberRisers) {
    const std::string draw = "hzgx\n给水\n50\nN\n0,0\n4000,4000\n\n"
                             "hzlg\n\n\n0\n3\n3000,0\n1000,0\n2000,0\n\n";
    const std::string pick = "(ssget \"X\" '((0 . \"ZEF_PIPE\") (8 . \"VPIPE-*\")))\n\n";
    const std::string number = "gxbh\n" + pick;
    // Along the pipe, the other way round by picks, and anew by their numbers.
    ASSERT_NO_FATAL_FAILURE(run(plan, draw + number + "B\n\n\nG\n2000,2000\n"));
    EXPECT_EQ(labels(), (texts{L"JL-1", L"JL-2", L"JL-3"})) << shown;
    EXPECT_TRUE(shows("已编号 3 根，从 JL-1 到 JL-3。")) << shown;
    const std::string one = number + "B\nJL-%%\n\nX\n";
    ASSERT_NO_FATAL_FAILURE(
        run(plan, draw + "gxbh 3050,0 \nB\nJL-12\n\nX\ngxbh 1050,0 \n\n2\n\n\ngxbh 2050,0 \n\n10\n\n\n" +
                      number + "\nA09\n3\nY\ngxbh\n3050,0\n\n\nZ\n3\n\n"));
    EXPECT_EQ(labels(), (texts{L"A09", L"A12", L"Z"})) << "2, then 10, then JL-12" << shown;
    // The diameter of a riser follows in the text about it.
    ASSERT_NO_FATAL_FAILURE(run(plan, draw + number + "J\n\n\nX\nbzgj\nS\n1\n\n" + pick + "bzgj\nD\n65\n\n" +
                                          pick + "gxbh\n" + pick + "\n\n\n\n"));
    texts found = labels();
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (texts{L"%%c75", L"%%c75", L"%%c75", L"JL-4", L"JL-5", L"JL-6"})) << shown;
}

TEST_F(LabelCommands, SettingsHoldForTheDrawing) {
    const std::string draw = "hzgx\n给水\n50\nY\n0,0\n600,0\n\n";
    // At 1:50 a label of 3.5 is drawn from a third of a metre on; pipes follow, and so does a label.
    ASSERT_NO_FATAL_FAILURE(run(plan, "tzsz\n50\nN\n" + draw + "tzsz\n200\nY\nY\n"));
    EXPECT_EQ(labels(), texts{L"DN50"});
    for_each<TDbPipe>([](const TDbPipe& pipe) {
        EXPECT_EQ(pipe.GetLabelDistance(), 200.0);
        EXPECT_EQ(pipe.GetPlotScale(), 200.0);
        EXPECT_EQ(pipe.GetLabelHeight(), 3.5) << "absolute";
    });
    // Viewports of several scales offer none; those that are left have one.
    const std::string sheets = test::drawing("viewports_r2018.dxf").string();
    ASSERT_NO_FATAL_FAILURE(run(sheets, "tzsz\n50\n\ntzsz\n\n\nERASE (handent \"73\") \ntzsz\n\n\n"));
    EXPECT_TRUE(shows("当前为1:50 <1:50>") && shows("当前为1:50 <1:100>")) << shown;
    EXPECT_EQ(DocGetPScale(database.get()), 100.0);
}

TEST_F(LabelCommands, MakePipesOfLines) {
    const std::string script = "-LAYER M PIPE-污水 \nLINE 0,0 2000,0 2000,2000 4000,2000 \n"
                               "-LAYER M VPIPE-污水 \nCIRCLE 4000,2000 50\n-LAYER M 墙 \nLINE 0,0 1,0 \n"
                               "xzgx (ssget \"X\" '((8 . \"*PIPE-污水,墙\"))) \n75\n0\n3\n";
    ASSERT_NO_FATAL_FAILURE(run(plan, script));
    EXPECT_TRUE(shows("4 个图元转换为 4 根管线。") && shows("没有转换。")) << shown;
    int risers = 0;
    int joints = 0;
    for_each<TDbPipe>([&](const TDbPipe& pipe) {
        EXPECT_EQ(pipe.GetPipeSystemName(), L"污水");
        EXPECT_EQ(pipe.GetValues().m_dn, 75.0);
        risers += pipe.IsVertical() ? 1 : 0;
    });
    for_each<TDbPipeNode>([&](const TDbPipeNode&) { ++joints; });
    EXPECT_EQ(risers, 1);
    EXPECT_EQ(joints, 5) << "the riser begins where the last pipe ends";

    // The sample's tell their diameters: De32 of PP-R is DN 25. One is a polyline of two parts.
    ASSERT_NO_FATAL_FAILURE(run((std::filesystem::path(ZEF_SOURCE_FOLDER) / "samples/storey.dxf").string(),
                                "xzgx (handent \"C01\") (handent \"31E\") \nbzgj\nS\nDe\n\n" + all));
    EXPECT_EQ(labels(), (texts{L"De32", L"De32"})) << "the third one is too short" << shown;
    for_each<TDbPipe>([](const TDbPipe& pipe) { EXPECT_EQ(pipe.GetValues().m_dn, 25.0); });
}
