// The command for layer states: what it keeps and gives back, what it tells, and states as files.
#include "tests/layer_support.h"

#include <gtest/gtest.h>

namespace {

using test::says;
using test::texts;

constexpr const char* ask =
    "\n图层状态[保存(S)/恢复(R)/改名(N)/删除(D)/比较(C)/输出(E)/输入(I)/列表(L)]<退出>:";
const std::string saves = "cztk\nS\nplan\n地下室\n";

struct LayerStates : testing::Test, test::Sessions {
    LayerStates() : Sessions(test::read_drawing(test::drawing("viewports_r2018.dxf"))) {}

    // Every row of a table of scripts says these texts, and changes the drawing or does not.
    struct row {
        std::string script;
        texts said;
        bool changes = false;
        int status = 0;
    };
    void expect(const std::vector<row>& rows) {
        const std::string before = saved;
        for (const row& each : rows) {
            saved = before;
            const test::run_result ran = run(each.script, each.status);
            for (const std::string& text : each.said)
                EXPECT_TRUE(says(ran, text)) << each.script << text << ran.out << ran.err;
            if (each.status == 0) {
                EXPECT_EQ(saved != before, each.changes) << each.script << ran.out;
            }
        }
        saved = before;
    }
    std::string file(const std::string& name) const { return (folder_ / name).string(); }
};

} // namespace

TEST_F(LayerStates, AreGivenBackAfterSavingAndTellWhatChanged) {
    run("-LAYER N A,B\nC 3 A\nLO A\n\n" + saves);
    const std::string before = saved;
    run("-LAYER C 1 A\nOFF A\nF B\nU A\nN 新\n\n");
    test::run_result ran = run("cztk\nR\nPLAN\n\n");
    for (const char* const said :
         {"\n状态不知道的图层有 1 个，如何处理[不变(N)/关闭(O)/冻结(F)]<N>:",
          "\n图层\"A\"：关→开，解锁→锁定，颜色 1→3", "\n图层\"B\"：冻结→解冻",
          "\n状态不知道的图层 1 个：\"新\"。", "\n图层状态\"plan\"已恢复：2 个图层改变，0 个图层已不存在。"})
        EXPECT_TRUE(says(ran, said)) << said << ran.out;
    EXPECT_EQ(test::changes(before, saved), texts({"新: 70 0", "新: 62 7"}));
    // A layer that is gone is told by its name while the drawing remembers it, and counted ever after.
    ran = run("-PURGE LA A N\ncztk\nR\nplan\n\n");
    EXPECT_TRUE(says(ran, "\n已不存在的图层 1 个：\"A\"。")) << ran.out;
    ran = run("cztk\nR\nplan\nO\ncztk\nC\nplan\n\n");
    for (const char* const said : {"\n图层\"新\"：开→关", "\n已不存在的图层 1 个。", "1 个图层已不存在。",
                                   "\n图层状态\"plan\"与当前图形比较：0 个图层不同。"})
        EXPECT_TRUE(says(ran, said)) << said << ran.out;
}

TEST_F(LayerStates, AreNamedListedComparedAndDeleted) {
    run(saves + "-LAYER N A\nC 5 墙\n\ncztk\nS\nred\n\n");
    expect({
        {"cztk\nL\n",
         {"\n\"plan\"：4 个图层", "，地下室", "\n\"red\"：5 个图层", "，与当前一致", "\n图层状态 2 个。"}},
        {"cztk\nC\nplan\nred\n", {"颜色 ", "\n只在\"red\"里的图层 1 个：\"A\"。", "比较：1 个图层不同。"}},
        {"cztk\nC\nplan\nnix\n^C\n", {"\n没有图层状态\"nix\"！"}},
        {"cztk\nN\nplan\nRED\n", {"\n\"RED\"已存在！"}, false, 4},
        {"cztk\nN\nplan\nb/c\n", {"\n\"b/c\"名称里有不能用的字符！"}, false, 4},
        {"cztk\nN\nplan\n一层\ncztk\nL\n",
         {"\n图层状态\"plan\"改名为\"一层\"。", "\n\"一层\"：4 个图层"},
         true},
        {"cztk\nD\n*\ncztk\nL\n", {"\n删除图层状态 2 个。", "\n图层状态 0 个。"}, true},
        {"cztk\nD\n?\n2 OK\ncztk\nL\n", {"状态名", "\n删除图层状态 1 个。", "\n\"plan\""}, true},
        {"cztk\nD\nred\nU\n", {"\n删除图层状态 1 个。"}},
        {"cztk\nR\n*\n^C\n", {"\n有 2 个图层状态符合，请只选一个！"}},
        {"cztk\nS\nplan\n\n", {"\n图层状态\"plan\"已存在，是否替换[是(Y)/否(N)]<N>:"}},
        {"cztk\nS\nplan\nY\n\ncztk\nL\n", {"\n\"plan\"：5 个图层", "，地下室"}, true},
    });
    // Escape and Enter at each prompt.
    std::vector<row> ends = {{"cztk\n\n", {ask}}, {"cztk\n^C\n", {ask}}};
    for (const std::string way : {"S\n", "S\nnew\n^C\n", "S\nplan\nY\n^C\n", "R\n", "R\nplan\n^C\n", "N\n",
                                  "N\nplan\n", "D\n", "C\n", "E\n", "E\nplan\n", "I\n"})
        for (const char* const end : {"\n", "^C\n"})
            ends.push_back({"cztk\n" + way + (way.ends_with("^C\n") ? "" : end), {ask}});
    expect(ends);
}

TEST_F(LayerStates, AreFilesAndComeFromDrawings) {
    run("-LAYER N 墙体\nC T 10,20,30 墙体\n\n" + saves);
    const std::string las = file("plan.las");
    const std::string full = file("full.dxf");
    expect({{"cztk\nE\nplan\n" + file("plan") + "\n", {"\n图层状态\"plan\"已输出到" + las + "。"}},
            {"cztk\nE\nplan\n/nowhere/x.las\n", {"文件不能写！"}, false, 4}});
    const std::string bytes = test::read(las);
    EXPECT_TRUE(bytes.starts_with("  0\r\nLAYERSTATEDICTIONARY\r\n  0\r\nLAYERSTATE\r\n  1\r\nplan\r\n"));
    EXPECT_EQ(std::count_if(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; }), 0);
    folder_.write("full.dxf", saved);
    folder_.write("twice.las", bytes + bytes);
    folder_.write(
        "utf8.las",
        "  0\nLAYERSTATEDICTIONARY\n  0\nLAYERSTATE\n  1\n状态\n 91\n2047\n  8\n门\n 90\n9\n 62\n5\n");
    saved = test::read_drawing(test::drawing("viewports_r2018.dxf"));
    const std::string look = "cztk\nR\nplan\n-LAYER ?\n墙体\n\n";
    expect({
        {"cztk\nI\n" + las + "\n" + look,
         {"\n输入图层状态 1 个：\"plan\"，新建图层 1 个。", "10,20,30"},
         true},
        {"cztk\nI\n" + full + "\n" + look,
         {"\n输入图层状态 1 个：\"plan\"，新建图层 1 个。", "10,20,30"},
         true},
        {"-LAYER A I " + las + "\n\n" + look, {"10,20,30"}, true},
        {"cztk\nI\n" + las + "\nU\n", {"新建图层 1 个。"}},
        {"cztk\nI\n" + file("utf8") + "\n-LAYER ?\n门\n\n",
         {"：\"状态\"", "\n门          Off                5"},
         true},
        {saves + "cztk\nI\n" + las + "\n\n", {"是否替换[是(Y)/否(N)]<N>:", "\n输入图层状态 0 个"}, true},
        {saves + "cztk\nI\n" + full + "\nY\n", {"是否替换[是(Y)/否(N)]<N>:", "新建图层 1 个。"}, true},
        {"cztk\nI\n" + file("nix") + "\n", {"文件不存在或不能读！"}, false, 4},
        {"cztk\nI\n" + file("twice.las") + "\n", {"不是图层状态文件！"}, false, 4},
    });
}

TEST_F(LayerStates, NeedADrawingThatCanHoldThem) {
    saved = test::read(test::drawing("r12.dxf"));
    expect({{"cztk\n", {"\n当前图形是R12或更早的版本，不能保存图层状态！"}, false, 4}});
}
