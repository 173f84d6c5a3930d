// Exporting layers: what comes along and what does not, a file for each layer, and files of other versions.
#include "tests/layer_support.h"

#include <gtest/gtest.h>
#include <set>

namespace {

using test::picks;
using test::says;
using test::texts;

constexpr const char* askLayers = "\n请选择要输出图层上的图元[层名(N)/列表(D)]<退出>:";

// What stands in a file: "TYPE name" for entries of tables, "TYPE" for what stands in spaces and blocks.
struct Content {
    std::set<std::string> entries;
    std::map<std::string, int> types;
};
Content read_content(const std::filesystem::path& file) {
    Content content;
    for (const auto& [name, groups] : test::objects(test::read_drawing(file))) {
        if (groups.empty())
            continue;
        const std::string type = groups.front().substr(2);
        ++content.types[type];
        for (const char* const table :
             {"LAYER", "LTYPE", "STYLE", "BLOCK_RECORD", "APPID", "DIMSTYLE", "CLASS"})
            if (type == table) {
                const std::string code = type == "CLASS" ? "1 " : "2 ";
                const auto at = std::find_if(groups.begin(), groups.end(),
                                             [&](const std::string& g) { return g.starts_with(code); });
                if (at != groups.end())
                    content.entries.insert(type + " " + at->substr(2));
            }
    }
    return content;
}

struct LayerExport : testing::Test, test::Sessions {
    LayerExport() : Sessions(test::read(test::drawing("layer_tools/pipes.dxf"))) {
        folder_.write("plan.dxf", test::read(test::drawing("layer_tools/plan.dxf")));
    }
    std::string file(const std::string& name) const { return (folder_ / name).string(); }
    // One file of these layers.
    std::string exported(const std::string& names, const std::string& wishes = "N\nN\n\n") const {
        return "tcdc\nN\n" + names + "\n" + wishes + file("part") + "\n";
    }
};

} // namespace

// The sample's axis tags are dimensions in a style of their own, and references to a block with attributes.
TEST_F(LayerExport, TakesWhatTheEntitiesNeedAndNothingElse) {
    saved = test::read(ZEF_SOURCE_FOLDER "/samples/storey.dxf");
    test::run_result made = run(exported("轴线标注"));
    EXPECT_TRUE(says(made, "\n输出 1 个图层的 33 个图元到 1 个文件\"" + file("part.dxf") + "\"。"))
        << made.out;
    Content part = read_content(folder_ / "part.dxf");
    const std::set<std::string> tables = {"LAYER", "LTYPE", "STYLE"};
    std::set<std::string> entries;
    int blocks = 0;
    for (const std::string& entry : part.entries) {
        if (tables.contains(entry.substr(0, entry.find(' '))))
            entries.insert(entry);
        blocks += entry.starts_with("BLOCK_RECORD *D") ? 1 : 0;
    }
    EXPECT_EQ(entries, (std::set<std::string>{"LAYER 0", "LAYER 轴线标注", "LTYPE ByBlock", "LTYPE ByLayer",
                                              "LTYPE Continuous", "STYLE HZTXT", "STYLE Standard"}));
    EXPECT_EQ(blocks, 11); // of the dimensions
    EXPECT_TRUE(part.entries.contains("BLOCK_RECORD _ArchTick"));
    EXPECT_TRUE(part.entries.contains("BLOCK_RECORD 轴线编号"));
    EXPECT_FALSE(part.entries.contains("BLOCK_RECORD 床"));
    EXPECT_EQ(part.types["ATTRIB"], 22);
    run(exported("轴线") + "Y\n");
    part = read_content(folder_ / "part.dxf");
    EXPECT_TRUE(part.entries.contains("LTYPE CENTER"));
    EXPECT_FALSE(part.entries.contains("LTYPE DASHED"));
    EXPECT_EQ(part.types["LINE"], 11);
    EXPECT_EQ(part.types["INSERT"] + part.types["TEXT"], 0);
}

TEST_F(LayerExport, AsksBeforeItWritesAndChangesNothing) {
    const std::string before = saved;
    folder_.write("part.dxf", "old");
    const struct {
        std::string script;
        texts said;
        bool writes = false;
        int status = 0;
    } rows[] = {
        {"tcdc\n\n", {askLayers}},
        {"tcdc\n^C\n", {askLayers}},
        {"tcdc\nN\n^C\n", {}},
        {"tcdc\nN\nPIPE-给水\n^C\n", {"\n是否每个图层一个文件[是(Y)/否(N)]<N>:"}},
        {"tcdc\nN\nPIPE-给水\n\n^C\n", {"\n是否分解自定义实体[是(Y)/否(N)]<N>:"}},
        {"tcdc\nN\nPIPE-给水\n\n\n^C\n",
         {"\n请选择文件版本[2018/2013/2010/2007/2004/2000/R12]<与当前图形相同>:"}},
        {"tcdc\nN\nPIPE-给水\n\n\n\n\n", {"\n请输入文件名<退出>:"}},
        {"tcdc\nN\nPIPE-给水\n\n\n\n^C\n", {"\n请输入文件名<退出>:"}},
        {exported("PIPE-给水") + "\n", {"已存在，是否替换[是(Y)/否(N)]<N>:"}},
        {"-LAYER N 空\n\n" + exported("PIPE-给水,空") + "Y\nU\n",
         {"\n图层\"空\"上没有图元，不输出。", "\n输出 1 个图层的"},
         true},
        {"tcdc\n" + picks({"212"}) + "\n\n\n\n" + file("part.dxf") + "\nY\n", {"到 1 个文件"}, true},
        {"tcdc\nD\nPIPE-给水 OK\n\n\n\n" + file("part.dxf") + "\nY\n", {"输出图层", "到 1 个文件"}, true},
        {"tcdc\nN\nplan|墙体\n", {"\n图层\"plan|墙体\"是外部参照的图层，不能输出。"}},
        {"-LAYER N 空\n\n" + exported("空") + "U\n", {"\n图层\"空\"上没有图元，不输出。"}},
        {"tcdc\nN\nPIPE-给水\n\n\n\n" + file("in.dxf") + "\n", {"\n输出的文件不能覆盖当前图形！"}, false, 4},
        {"tcdc\nN\nPIPE-给水\n\n\n\n/nowhere/x\n", {"\n\"/nowhere/x.dxf\"不能输出！"}, false, 4},
        {"tcdc\nN\nPIPE-给水\nY\n\n\n" + file("x.dxf") + "\n^C\n", {"\n文件名里没有代表图层名的*！"}},
    };
    for (const auto& row : rows) {
        folder_.write("part.dxf", "old");
        saved = before;
        const test::run_result ran = run(row.script, row.status);
        for (const std::string& said : row.said)
            EXPECT_TRUE(says(ran, said)) << row.script << said << ran.out;
        EXPECT_EQ(test::read(folder_ / "part.dxf") != "old", row.writes) << row.script << ran.out;
        if (row.status == 0) {
            EXPECT_EQ(saved, before) << row.script;
        }
    }
}

TEST_F(LayerExport, GivesEachLayerAFileAndTakesPipesAlongOrApart) {
    const std::string pipes = "hzgx\n给水\n100\nN\n0,0\n5000,0\n\n";
    test::run_result ran = run(pipes + "tcdc\nN\nPIPE-*,VPIPE-*\nY\n\n2000\n" + file("e-*") + "\n");
    EXPECT_TRUE(says(ran, "\n" + file("e-PIPE-给水.dxf") + "：")) << ran.out;
    const Content with = read_content(folder_ / "e-PIPE-给水.dxf");
    EXPECT_EQ(with.types.at("ZEF_PIPE"), 1);
    EXPECT_TRUE(with.entries.contains("CLASS ZEF_PIPE"));
    EXPECT_TRUE(test::read(folder_ / "e-PIPE-给水.dxf").find("AC1015") != std::string::npos);
    // On a locked layer, too.
    ran = run("-LAYER LO PIPE-给水\n\ntcdc\nN\nPIPE-给水\n\nY\nR12\n" + file("apart.dxf") + "\n");
    EXPECT_TRUE(says(ran, "个自定义实体已分解。")) << ran.out;
    const Content apart = read_content(folder_ / "apart.dxf");
    EXPECT_EQ(apart.types.count("ZEF_PIPE"), 0u);
    EXPECT_TRUE(test::read(folder_ / "apart.dxf").find("AC1009") != std::string::npos);
    // What was exported opens here, and the pipe is one.
    saved = test::read(folder_ / "e-PIPE-给水.dxf");
    EXPECT_TRUE(says(run("LIST\n(ssget \"X\" '((0 . \"ZEF_PIPE\")))\n\n"), "ZEF_PIPE"));
}
