// Extracting layers: what is on chosen layers of references and blocks becomes entities of the drawing.
#include "tests/layer_support.h"

#include <gtest/gtest.h>

namespace {

using test::picks;
using test::says;
using test::texts;

constexpr const char* askReference = "\n请选择外部参照或块<退出>:";
constexpr const char* askLayer = "\n请选择参照或块内要提取图层上的图元[层名(N)/列表(D)]<退出>:";
constexpr const char* askNaming = "\n提取后的图层名[图层名(N)/参照名$0$图层名(R)]<N>:";

// The plan is inserted at 5000,5000 with its base point 1000,500, doubled and turned by 90 degrees: what is
// at x,y in it is at 6000 - 2y, 3000 + 2x.
const std::string plan = "tctq\n" + picks({"216"}) + "\n";

struct LayerExtract : testing::Test, test::Sessions {
    LayerExtract() : Sessions(test::read(test::drawing("layer_tools/pipes.dxf"))) {
        folder_.write("plan.dxf", test::read(test::drawing("layer_tools/plan.dxf")));
    }

    struct row {
        std::string script;
        texts said;
        bool changes = false;
    };
    void expect(const std::vector<row>& rows) {
        const std::string before = saved;
        for (const row& each : rows) {
            saved = before;
            const test::run_result ran = run(each.script);
            for (const std::string& text : each.said)
                EXPECT_TRUE(says(ran, text)) << each.script << text << "\n" << ran.out << ran.err;
            EXPECT_EQ(saved != before, each.changes) << each.script << ran.out;
        }
        saved = before;
    }
};

std::string list(const std::string& layer) {
    return "LIST\n(ssget \"X\" '((8 . \"" + layer + "\")))\n\n";
}

} // namespace

TEST_F(LayerExtract, CopiesStandWhereTheReferenceShowsThem) {
    const std::string doors = "at point, X=4800.0000  Y=11000.0000  Z=0.0000";
    const std::string wall = "from point, X=5000.0000  Y=5000.0000  Z=0.0000";
    expect({
        {plan + "N\n墙体\nN\n" + list("墙体"),
         {askReference, askLayer, askNaming, "\n从 1 个参照或块提取 2 个图元到 1 个图层。", wall,
          "to point, X=5000.0000  Y=7000.0000  Z=0.0000", doors},
         true},
        {plan + "N\nplan|墙*\nR\n" + list("plan$0$墙体"), {wall, doors}, true},
        {plan + "5000,6000\n\n\n" + list("墙体"), {"\n图层\"plan|墙体\"", "\n请继续选择", wall}, true},
        {plan + "D\nplan|墙体 OK\n\n" + list("墙体"), {"提取图层", wall}, true},
        // A block on a chosen layer in one that is not; its line is on layer 0.
        {plan + "N\n门窗\n\n" + list("门窗"), {"提取 2 个图元", "at point, X=1000.0000  Y=9000.0000"}, true},
        // What is on 0 of the model is seen on the layer of the reference.
        {plan + "N\n0\n" + list("0"), {"提取 1 个图元到 1 个图层", "X=1000.0000  Y=5000.0000"}, true},
        {"tctq\n" + picks({"216", "217"}) + "\nN\n*\n\n",
         {"\n从 2 个参照或块提取 16 个图元到 5 个图层。"},
         true},
        {plan + "N\n墙体\n\nU\n", {"提取 2 个图元"}},
        // Once more on layers that are locked now, and with colours of their own: they stay as they are.
        {"-LAYER N 墙体\nC 6 墙体\nLO 墙体\n\n" + plan + "N\n墙体\n\n-LAYER ?\n墙体\n\n" + list("墙体"),
         {"提取 2 个图元", "6", wall},
         true},
    });
    run("-LAYER C 5 plan|墙体\n\n" + plan + "N\n墙体\n\n");
    const test::run_result listed = run("-LAYER ?\n墙体\n\n");
    EXPECT_TRUE(says(listed, "墙体        On                 5")) << listed.out;
    EXPECT_EQ(
        test::changes(test::read(folder_ / "plan.dxf"), test::read(test::drawing("layer_tools/plan.dxf"))),
        texts()); // the source is untouched
}

// A circle in a block that is scaled unevenly; its colour is the reference's, which has that of its layer.
TEST_F(LayerExtract, BlocksWorkTooAndWhatIsSeenStays) {
    const std::string symbol =
        folder_
            .write("sym.dxf", "0\nSECTION\n2\nENTITIES\n0\nCIRCLE\n8\nW\n62\n0\n10\n10\n"
                              "20\n0\n40\n5\n0\nENDSEC\n0\nEOF\n")
            .string();
    run("-LAYER S 说明\n\nINSERT\n" + symbol + "\n100,0\n2\n1\n0\n");
    const test::run_result ran = run("tctq\nL\n\nN\nW\n");
    EXPECT_TRUE(says(ran, "\n从 1 个参照或块提取 1 个图元到 1 个图层。")) << ran.out;
    EXPECT_FALSE(says(ran, askNaming)); // no reference
    int ellipses = 0;
    for (const auto& [handle, groups] : test::objects(saved)) {
        if (groups.empty() || groups.front() != "0 ELLIPSE")
            continue;
        ++ellipses;
        for (const char* const group : {"8 W", "62 4", "10 120.0", "11 10.0", "40 0.5"})
            EXPECT_NE(std::find(groups.begin(), groups.end(), group), groups.end()) << group;
    }
    EXPECT_EQ(ellipses, 1);
}

// A block with an attribute, a constant one and lines ByBlock, at 100,0; the reference is clipped to what is
// at 0 to 50 in the block, seen when it stood there.
TEST_F(LayerExtract, ClipsAttributesAndLinetypesAreAsSeen) {
    const auto entity = [](const std::string& type, const std::string& groups) {
        return "0\n" + type + "\n8\nW\n" + groups;
    };
    const std::string symbol =
        folder_
            .write("sym.dxf", "0\nSECTION\n2\nENTITIES\n" +
                                  entity("LINE", "6\nBYBLOCK\n10\n-10\n20\n0\n11\n100\n21\n0\n") +
                                  entity("LINE", "10\n60\n20\n0\n11\n100\n21\n0\n") +
                                  entity("CIRCLE", "10\n20\n20\n0\n40\n5\n") +
                                  entity("CIRCLE", "10\n50\n20\n0\n40\n5\n") +
                                  entity("CIRCLE", "10\n80\n20\n0\n40\n5\n") +
                                  entity("ATTDEF", "10\n5\n20\n5\n40\n2\n1\nx\n2\nTAG\n3\n?\n70\n0\n") +
                                  entity("ATTDEF", "10\n5\n20\n9\n40\n2\n1\nfix\n2\nFIX\n3\n?\n70\n2\n") +
                                  "0\nENDSEC\n0\nEOF\n")
            .string();
    saved = test::read(test::drawing("r2018.dxf"));
    run("-LINETYPE L DASHED\n\n\n-LAYER N LL L DASHED LL S LL\n\nINSERT\n" + symbol +
        "\n100,0\n1\n1\n0\nval\n");
    std::erase(saved, '\r');
    const std::string insert = saved.substr(saved.rfind("\nINSERT\n"));
    const std::string handle = insert.substr(12, insert.find('\n', 12) - 12);
    const std::string at = "\n  5\n" + handle + "\n";
    saved.insert(saved.find(at) + at.size(), "102\n{ACAD_XDICTIONARY\n360\nFE0\n102\n}\n");
    const auto dictionary = [](const std::string& own, const std::string& owner, const std::string& entry) {
        return "  0\nDICTIONARY\n  5\n" + own + "\n330\n" + owner + "\n100\nAcDbDictionary\n281\n1\n" + entry;
    };
    const std::string move = "40\n1\n40\n0\n40\n0\n40\n",
                      stay = "40\n0\n40\n1\n40\n0\n40\n0\n40\n0\n40\n0\n40\n1\n40\n0\n";
    const std::string filter =
        "  0\nSPATIAL_FILTER\n  5\nFE2\n330\nFE1\n100\nAcDbFilter\n100\nAcDbSpatialFilter\n"
        "70\n2\n10\n100\n20\n-20\n10\n150\n20\n20\n210\n0\n220\n0\n230\n1\n11\n0\n21\n0\n31\n0\n"
        "71\n1\n72\n0\n73\n0\n" +
        move + "-100\n" + stay + move + "0\n" + stay;
    const std::string objects = "\n  2\nOBJECTS\n";
    const std::size_t first = saved.find("  0\nDICTIONARY\n", saved.find(objects) + objects.size());
    const std::size_t second = saved.find("\n  0\n", first) + 1;
    saved.insert(second, dictionary("FE0", handle, "  3\nACAD_FILTER\n360\nFE1\n") +
                             dictionary("FE1", "FE0", "  3\nSPATIAL\n360\nFE2\n") + filter);
    const test::run_result ran = run("tctq\nL\n\nN\nW\n" + list("W"));
    for (const char* const said :
         {"提取 5 个图元到 1 个图层。", "\n1 个图元跨过参照的裁剪边界，整个提取。",
          "from point, X=100.0000  Y=0.0000", "to point, X=150.0000  Y=0.0000", "center point, X=120.0000",
          "center point, X=150.0000", "Linetype: \"DASHED\""})
        EXPECT_TRUE(says(ran, said)) << said << ran.out;
    EXPECT_FALSE(says(ran, "X=180.0000") || says(ran, "X=160.0000"));
    for (const char* const text : {"\n  1\nval\n", "\n  1\nfix\n"})
        EXPECT_NE(saved.find(text, saved.find("\n  0\nTEXT\n")), saved.npos) << text;
}

// A layer that comes with extended data gets the plot style of layer 0 in front of it.
TEST_F(LayerExtract, LayersComeWhole) {
    std::string referred = test::read(test::drawing("layer_tools/plan.dxf"));
    const std::size_t wall = referred.find("\n\xC7\xBD\xCC\xE5\n");
    referred.insert(referred.find("\n  0\nLAYER\n", wall) + 1, "1001\nACAD\n1000\nkept\n");
    folder_.write("plan.dxf", referred);
    saved = test::read(test::drawing("r2018.dxf"));
    run("XATTACH\n" + (folder_ / "plan.dxf").string() + "\n\n0,0\n1\n1\n0\ntctq\nL\n\nN\n墙体\nR\n");
    std::erase(saved, '\r');
    const auto objects = test::objects(saved);
    ASSERT_TRUE(objects.contains("plan$0$墙体")) << saved.size();
    const texts& layer = objects.at("plan$0$墙体");
    EXPECT_EQ(layer.back(), "1000 kept");
    EXPECT_EQ(std::count_if(layer.begin(), layer.end(), [](const auto& g) { return g.starts_with("390 "); }),
              std::count_if(objects.at("0").begin(), objects.at("0").end(),
                            [](const auto& g) { return g.starts_with("390 "); }));
}

// A text that stands for an attribute keeps the typeface of the reference's style.
TEST_F(LayerExtract, TextStylesComeWithTheirTypefaces) {
    folder_.write("ref.dxf",
                  "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nSTYLE\n70\n1\n"
                  "0\nSTYLE\n2\nSONG\n70\n0\n40\n0\n41\n0.7\n50\n0\n71\n0\n42\n1\n3\nsimsun.ttf\n4\n\n"
                  "1001\nACAD\n1000\nSimSun\n1071\n34\n0\nENDTAB\n0\nENDSEC\n"
                  "0\nSECTION\n2\nENTITIES\n"
                  "0\nATTDEF\n8\nW\n7\nSONG\n10\n5\n20\n9\n40\n2\n1\nfix\n2\nFIX\n3\n?\n70\n2\n"
                  "0\nENDSEC\n0\nEOF\n");
    saved = test::read(test::drawing("r2018.dxf"));
    const test::run_result ran =
        run("XATTACH\n" + (folder_ / "ref.dxf").string() + "\n\n0,0\n1\n1\n0\ntctq\nL\n\nN\nW\nN\n");
    std::erase(saved, '\r');
    const auto objects = test::objects(saved);
    const auto made = std::find_if(objects.begin(), objects.end(), [](const auto& object) {
        return std::find(object.second.begin(), object.second.end(), "2 SONG") != object.second.end();
    });
    ASSERT_NE(made, objects.end()) << ran.out << ran.err;
    const texts& style = made->second;
    for (const char* const group : {"3 simsun.ttf", "41 0.7", "1000 SimSun", "1071 34"})
        EXPECT_NE(std::find(style.begin(), style.end(), group), style.end()) << group;
}

TEST_F(LayerExtract, EndsAtEveryPromptWithNothingChanged) {
    std::vector<row> rows = {
        {"tctq\n" + picks({"210"}) + "\n^C\n", {"\n选中的图元里没有外部参照或块！"}},
        {plan + "N\n没有\n^C\n", {"\n参照或块里没有名称符合\"没有\"的图层！"}},
        {plan + "-9000,-9000\n\n", {askLayer}},
        {plan + "0,500\n\n", {"\n它不在选中的参照或块里！"}},
        {plan + "5000,6000\n^C\n", {"\n请继续选择"}},
    };
    for (const char* const end : {"\n", "^C\n"})
        for (const std::string& way : {std::string("tctq\n"), plan, plan + "D\nCANCEL\n"})
            rows.push_back({way + end, {askReference}});
    rows.push_back({plan + "N\n^C\n", {askLayer}});
    rows.push_back({plan + "N\n墙体\n^C\n", {askNaming}});
    expect(rows);
}
