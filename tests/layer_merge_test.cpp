// Merging layers: what lies on them wherever it stands, what names them, and what can not be merged.
#include "tests/layer_support.h"

#include <gtest/gtest.h>

namespace {

using test::picks;
using test::says;
using test::texts;

constexpr const char* askSources = "\n请选择要合并图层上的图元[层名(N)/列表(D)/锁定图层也合并(L)]<退出>:";
constexpr const char* askTarget = "\n请选择目标图层上的图元[层名(N)]<退出>:";
constexpr const char* askConfirm = "\n是否继续[是(Y)/否(N)]<N>:";

// The merge of these layers by name, up to its preview; and confirmed.
std::string named(const std::string& names, const std::string& target, const std::string& first = "") {
    return "hbtc\n" + first + "N\n" + names + "\nN\n" + target + "\n";
}
std::string merged(const std::string& names, const std::string& target, const std::string& first = "") {
    return named(names, target, first) + "Y\n";
}

// A drawing of R2000 in which layer A is named by all that can name one: an entity, a block's entity, an
// attribute of a reference on another layer, vertices of a polyline on another layer, extended data, a
// viewport.
std::string drawing_with_a() {
    std::string text = test::read(test::drawing("layer_tools/pipes.dxf"));
    const auto insert = [&](const std::string& before, const std::string& what) {
        const std::size_t at = text.find(before);
        EXPECT_NE(at, std::string::npos) << before;
        text.insert(at, what);
    };
    std::string layer = text.substr(text.find("  0\nLAYER\n  5\n11\n"));
    layer.resize(layer.find("\n  0\nLAYER\n", 1) + 1);
    const std::size_t name = layer.find("\n  2\n") + 5;
    layer.replace(name, layer.find('\n', name) - name, "A");
    layer.replace(layer.find("\n11\n"), 4, "\nA1\n");
    insert("  0\nLAYER\n  5\n11\n", layer);
    insert("  0\nENDBLK\n  5\n67\n", "  0\nLINE\n  5\n3A0\n330\n43\n100\nAcDbEntity\n  "
                                     "8\nA\n100\nAcDbLine\n 10\n0\n 20\n0\n 11\n9\n 21\n9\n");
    const std::string entity = "\n330\n40\n100\nAcDbEntity\n  8\n";
    insert("  0\nLINE\n  5\n210\n", "  0\nCIRCLE\n  5\n301" + entity +
                                        "A\n100\nAcDbCircle\n 10\n0\n 20\n0\n 40\n5\n"
                                        "  0\nINSERT\n  5\n302" +
                                        entity +
                                        "0\n100\nAcDbBlockReference\n 66\n1\n  2\n\xB7\xA7\n 10\n0\n 20\n0\n"
                                        "  0\nATTRIB\n  5\n303\n330\n302\n100\nAcDbEntity\n  "
                                        "8\nA\n100\nAcDbText\n 10\n0\n 20\n0\n 40\n3\n  1\nx\n"
                                        "100\nAcDbAttribute\n  2\nT\n 70\n0\n"
                                        "  0\nATTRIB\n  5\n304\n330\n302\n100\nAcDbEntity\n  "
                                        "8\n0\n100\nAcDbText\n 10\n0\n 20\n0\n 40\n3\n  1\ny\n"
                                        "100\nAcDbAttribute\n  2\nU\n 70\n0\n"
                                        "  0\nSEQEND\n  5\n305\n330\n302\n100\nAcDbEntity\n  8\n0\n"
                                        "  0\nPOLYLINE\n  5\n306" +
                                        entity +
                                        "A\n100\nAcDb2dPolyline\n 66\n1\n 10\n0\n 20\n0\n 30\n0\n"
                                        "  0\nVERTEX\n  5\n307\n330\n306\n100\nAcDbEntity\n  "
                                        "8\nA\n100\nAcDbVertex\n100\nAcDb2dVertex\n 10\n0\n 20\n0\n"
                                        "  0\nVERTEX\n  5\n308\n330\n306\n100\nAcDbEntity\n  "
                                        "8\n0\n100\nAcDbVertex\n100\nAcDb2dVertex\n 10\n9\n 20\n0\n"
                                        "  0\nSEQEND\n  5\n309\n330\n306\n100\nAcDbEntity\n  8\nA\n");
    insert("  0\nLINE\n  5\n213\n", "1001\nOTHER\n1003\nA\n1000\nkept\n");
    return text;
}

test::layer_outcome run(const std::string& script) {
    const test::folder scratch;
    scratch.write("plan.dxf", test::read(test::drawing("layer_tools/plan.dxf")));
    return test::run_on_layers(scratch.write("in.dxf", drawing_with_a()), script);
}

} // namespace

TEST(LayerMerge, TakesEverythingAlongAndTheLayerGoes) {
    const test::layer_outcome found = run(merged("A", "说明"));
    EXPECT_TRUE(says(found.ran, "\n图层\"A\"：5 个图元（")) << found.ran.out;
    EXPECT_TRUE(says(found.ran, "，其中块内：阀 1")) << found.ran.out;
    EXPECT_TRUE(says(found.ran, "\n5 个图元合并到图层\"说明\"，删除图层 1 个。"));
    const texts expected = {"212: -1003 A", "212: 1003 说明", "301: 8 说明", "303: 8 说明", "306: 8 说明",
                            "307: 8 说明",  "309: 8 说明",    "3A0: 8 说明", "A: gone"};
    texts came;
    for (const std::string& change : found.changed)
        if (change.find(": 8 ") != change.npos || change.find("1003") != change.npos || change == "A: gone")
            came.push_back(change);
    std::sort(came.begin(), came.end());
    EXPECT_EQ(came, expected);
    EXPECT_EQ(run(merged("A", "说明") + "U\n").changed, texts());
}

TEST(LayerMerge, TellsWhatItCanNotDoAndAsksBefore) {
    const struct {
        std::string script;
        texts said;
        bool changes;
    } rows[] = {
        {merged("*", "说明", "L\n"),
         {askSources, askTarget, "\n图层\"0\"是0层，不能合并。",
          "\n图层\"plan|墙体\"是外部参照的图层，不能合并。", "\n图层\"VPIPE-给水\"：1 个图元（LINE 1）",
          askConfirm},
         true},
        {named("VPIPE-给水,0", "说明"),
         {"\n图层\"VPIPE-给水\"已锁定，不能合并。", "\n没有可以合并的图层！"},
         false},
        {"-LAYER S A\n\n" + named("a", "0") + "U\nU\n", {"\n图层\"A\"是当前层，不能合并。"}, false},
        {named("A", "plan|墙体"), {"\n目标图层不能是外部参照的图层！"}, false},
        {named("A", "A"), {"\n没有可以合并的图层！"}, false},
        {named("A", "说明") + "\n", {askConfirm}, false},
        {named("A", "说明") + "N\n", {askConfirm}, false},
        {named("A", "说明") + "^C\n", {askConfirm}, false},
        {"hbtc\nN\nNIX\n\n", {"\n没有名称符合\"NIX\"的图层！"}, false},
        {"hbtc\nN\nA\nN\nNIX\nN\n\n", {"\n没有图层\"NIX\"！"}, false},
        {"hbtc\n\n", {askSources}, false},
        {"hbtc\n^C\n", {askSources}, false},
        {"hbtc\nN\n^C\n", {}, false},
        {"hbtc\n" + picks({"301"}) + "\n^C\n", {askTarget}, false},
        {"hbtc\n" + picks({"301"}) + "\n" + picks({"212"}) + "Y\n", {"删除图层 1 个。"}, true},
        {picks({"301"}) + "hbtc\n" + picks({"212"}) + "Y\n", {"删除图层 1 个。"}, true},
        {"hbtc\nD\nA OK\nN\n说明\nY\n", {"合并图层", "删除图层 1 个。"}, true},
        {"hbtc\nD\nA CANCEL\n\n", {}, false},
        // A pipe names the layers of its label and its arrow.
        {"hzgx\n给水\n100\nN\n0,0\n5000,0\n\n" + merged("FLOW_给水,DIM_给水", "PIPE-给水"),
         {"删除图层 2 个。"},
         true},
    };
    for (const auto& row : rows) {
        const test::layer_outcome found = run(row.script);
        for (const std::string& said : row.said)
            EXPECT_TRUE(says(found.ran, said)) << row.script << said << found.ran.out;
        EXPECT_EQ(!found.changed.empty(), row.changes) << row.script << found.ran.out;
    }
}

// The target stands where a source stood, once, and viewports no longer know the sources.
TEST(LayerMerge, FollowsInStatesAndViewports) {
    const struct {
        std::string script;
        std::ptrdiff_t layers; // that the state knows then
    } rows[] = {
        {"", 4},
        {merged("*", "0", "L\n"), 1},
        {"-LAYER N B\n\n" + merged("墙,管", "B", "L\n"), 3},
    };
    for (const auto& row : rows) {
        const test::folder scratch;
        const std::string out = (scratch / "out.dxf").string();
        const test::run_result ran = test::zefhost({test::drawing("viewports_r2018.dxf").string(), "-o", out},
                                                   "LAYERPMODE OFF\n-LAYER A S both\n\n" + row.script);
        EXPECT_EQ(ran.status, 0) << ran.out << ran.err;
        std::ptrdiff_t layers = 0;
        for (const auto& [handle, groups] : test::objects(test::read_drawing(out))) {
            const auto data = std::find(groups.begin(), groups.end(), "91 2047");
            layers +=
                std::count_if(data, groups.end(), [](const std::string& g) { return g.starts_with("330 "); });
            if (handle == "71") {
                EXPECT_EQ(std::count(groups.begin(), groups.end(), "331 31"), row.script.empty() ? 1 : 0);
            }
        }
        EXPECT_EQ(layers, row.layers) << ran.out;
    }
}
