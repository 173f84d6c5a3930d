// The commands that turn off, freeze, erase and lock by pointing, on a GBK drawing of pipes over a plan.
#include "tests/layer_support.h"

#include <gtest/gtest.h>

namespace {

using test::picks;
using test::texts;

constexpr const char* closing = "\n请选择关闭层上的图元或外部参照上的图元<退出>:";
constexpr const char* freezing = "\n请选择需要冻结层上的图元 <退出>:";

std::size_t count(const std::string& text, std::string_view part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

test::layer_outcome run(const std::string& script) {
    return test::run_on_layers(test::drawing("layer_tools/pipes.dxf"), script);
}

TEST(LayerCommands, ChangeWhatTheyNameAndNothingElse) {
    const struct {
        std::string script;
        texts changed;
        texts said;
    } rows[] = {
        // A pipe layer takes the system's diameter texts with it, also a riser's; any other goes alone, the
        // current one too.
        {"CloseSelLayer\n" + picks({"210"}) + "\n",
         {"DIM_给水: 62 -7", "PIPE-给水: 62 -3", "DIM_给水: -62 7", "PIPE-给水: -62 3"},
         {closing}},
        {"CloseSelLayer\n" + picks({"211"}) + "^C\n",
         {"DIM_给水: 62 -7", "VPIPE-给水: 62 -3", "DIM_给水: -62 7", "VPIPE-给水: -62 3"},
         {}},
        {"CloseSelLayer\n" + picks({"212", "213"}) + "\n",
         {"0: 62 -7", "说明: 62 -4", "0: -62 7", "说明: -62 4"},
         {}},
        // Of a block the layer of the reference goes.
        {"CloseSelLayer\n" + picks({"214"}) + "\n",
         {"DIM_给水: 62 -7", "PIPE-给水: 62 -3", "DIM_给水: -62 7", "PIPE-给水: -62 3"},
         {}},
        {"CloseSelLayer\n\n", {}, {closing}},
        {"CloseSelLayer\n^C\n", {}, {closing}},

        {"FrozenLayer\n" + picks({"212", "210", "212"}) + "\n",
         {"PIPE-给水: 70 1", "说明: 70 1", "PIPE-给水: -70 0", "说明: -70 0"},
         {freezing}},
        {"FrozenLayer\n" + picks({"211"}) + "^C\n", {"VPIPE-给水: 70 5", "VPIPE-给水: -70 4"}, {}},
        {"FrozenLayer\n" + picks({"213", "212"}) + "\n",
         {"说明: 70 1", "说明: -70 0"},
         {"\n不能冻结当前层!"}},
        // A click into empty space ends this one.
        {"FrozenLayer\n-500,-500\n", {}, {freezing}},
        {"FrozenLayer\n\n", {}, {}},

        // Of all spaces, and what is on locked layers stays.
        {"EraseSelLayer\n" + picks({"210", "214"}) + "\n",
         {"210: gone", "214: gone", "215: gone"},
         {"\n请选择删除层上的图元 <退出>:"}},
        {"EraseSelLayer\n" + picks({"211", "212"}) + "\n",
         {"212: gone"},
         {"\n1 个图元没有删除：1 个在锁定的图层上。"}},
        {"EraseSelLayer\n\n", {}, {}},
        {"EraseSelLayer\n" + picks({"210"}) + "^C\n", {}, {}},
        {"ConvertLayer\n" + picks({"210"}) + "^C\n", {}, {}},
        {"OpenSelLayer\n" + picks({"210"}) + "^C\n", {}, {}},

        {"sfxc\n" + picks({"211", "212"}) + "\n",
         {"0: 70 4", "DIM_消防: 70 4", "DIM_给水: 70 4", "PIPE-给水: 70 4", "VPIPE-给水: 70 0",
          "plan|墙体: 70 20", "plan|洁具: 70 52", "plan|洁具: 62 3", "plan|说明: 70 20", "plan|门窗: 70 20",
          "0: -70 0", "DIM_消防: -70 0", "DIM_给水: -70 0", "PIPE-给水: -70 0", "VPIPE-给水: -70 4",
          "plan|墙体: -70 16", "plan|说明: -70 16", "plan|门窗: -70 16"},
         {"\n请选择要保留不被锁定层上的图元<退出>:", "VPIPE-给水 层打开\n说明 层打开\n",
          "Regenerating model."}},
        {"sfxc\n\n", {}, {}},
        {"sfxc\n^C\n", {}, {}},
    };
    for (const auto& row : rows) {
        const test::layer_outcome found = run(row.script);
        EXPECT_EQ(found.changed, row.changed) << row.script << found.ran.out;
        for (const std::string& text : row.said)
            EXPECT_NE(found.ran.out.find(text), std::string::npos) << text << " in:\n" << found.ran.out;
    }
}

TEST(LayerCommands, CloseSelLayerGoesOnAfterAClickIntoEmptySpaceAndKeepsTheObjectSnap) {
    const test::layer_outcome found =
        run("SETVAR OSMODE 33\nCloseSelLayer\n-500,-500\n(handent \"212\")\n\nSETVAR OSMODE\n\n"
            "CloseSelLayer\n(handent \"216\")\n^C\n^C\nSETVAR OSMODE\n\n");
    EXPECT_EQ(found.changed, (texts{"说明: 62 -4", "说明: -62 4"}));
    EXPECT_EQ(count(found.ran.out, "<退出>:"), 3 + 3) << found.ran.out;
    EXPECT_EQ(count(found.ran.out, "<33>"), 2) << found.ran.out;
}

TEST(LayerCommands, FrozenLayerTriesTheLayersThatItCouldNotFreezeAgain) {
    const std::string said = run("FrozenLayer\n" + picks({"213", "212"}) + "\n").ran.out;
    EXPECT_EQ(count(said, "\n不能冻结当前层!"), 2) << said;
    EXPECT_EQ(count(said, "\n图层冻结失败!"), 0) << said;
}

TEST(LayerCommands, WorkOnTheSample) {
    const struct {
        std::string script;
        texts changed;
    } rows[] = {
        {"CloseSelLayer\n" + picks({"C01", "C11"}) + "\n",
         {"DIM_给水: 62 -3", "PIPE-给水: 62 -3", "VPIPE-给水: 62 -3", "DIM_给水: -62 3", "PIPE-给水: -62 3",
          "VPIPE-给水: -62 3"}},
        {"FrozenLayer\n" + picks({"A01", "A06"}) + "\nCloseSelLayer\n" + picks({"A07"}) + "75,75\n\n",
         {"storey_base|柱: 62 -8", "墙体: 70 1", "轴线: 70 1", "storey_base|柱: -62 8", "墙体: -70 0",
          "轴线: -70 0"}},
        {"EraseSelLayer\n" + picks({"C06", "A08"}) + "\nU\n", {}},
        // The sheet's own viewport is on the layer of the others.
        {"EraseSelLayer\n" + picks({"B01"}) + "\n", {"B01: gone", "B02: gone"}},
    };
    for (const auto& row : rows) {
        const std::filesystem::path sample = std::filesystem::path(ZEF_SOURCE_FOLDER) / "samples/storey.dxf";
        EXPECT_EQ(test::run_on_layers(sample, row.script).changed, row.changed) << row.script;
    }
}

TEST(LayerCommands, EachIsOneStepOfUndo) {
    const std::string all = picks({"210", "211", "212"});
    for (const std::string command : {"CloseSelLayer", "FrozenLayer", "EraseSelLayer", "sfxc", "LockSelLayer",
                                      "UnLockSelLayer", "OpenSelLayer"}) {
        const test::layer_outcome found = run(command + "\n" + all + "\nU\n");
        EXPECT_EQ(found.changed, texts()) << command;
        EXPECT_NE(run(command + "\n" + all + "\nU\nREDO\n").changed, texts()) << command;
    }
}

// Nothing is picked, but nothing is cancelled either.
TEST(LayerCommands, UnLockSelLayerUnlocksAllAfterAClickIntoEmptySpace) {
    EXPECT_EQ(run("SETVAR PICKAUTO 0\nUnLockSelLayer\n-500,-500\n\n").changed,
              (texts{"VPIPE-给水: 70 0", "VPIPE-给水: -70 4"}));
}

// Layer 0 and the layers that entities name are there without a table, and are made when a command changes
// them.
TEST(LayerCommands, MakeTheLayersThatADrawingLacks) {
    const test::folder folder;
    const std::filesystem::path drawing = folder.write(
        "plain.dxf", "0\nSECTION\n2\nENTITIES\n0\nLINE\n5\n1F\n8\nWALL\n10\n0\n20\n0\n11\n9\n21\n0\n"
                     "0\nPOINT\n5\n20\n8\nDOOR\n10\n5\n20\n5\n0\nENDSEC\n0\nEOF\n");
    const struct {
        std::string command;
        texts changed;
    } rows[] = {
        {"LockSelLayer", {"0: 70 0", "0: 62 7", "WALL: 70 4", "WALL: 62 7"}},
        {"FrozenLayer", {"0: 70 0", "0: 62 7", "WALL: 70 1", "WALL: 62 7"}},
        {"CloseSelLayer", {"0: 70 0", "0: 62 7", "WALL: 70 0", "WALL: 62 -7"}},
        {"sfxc", {"0: 70 4", "0: 62 7", "DOOR: 70 4", "DOOR: 62 7"}},
        {"UnLockSelLayer", {}},
    };
    for (const auto& row : rows) {
        const std::string script = row.command + "\n" + picks({"1F"}) + "\n";
        texts layers = test::run_on_layers(drawing, script).changed;
        std::erase(layers, "TABLE: 70 1");
        EXPECT_EQ(layers, row.changed) << row.command;
        EXPECT_EQ(test::run_on_layers(drawing, script + "U\n").changed, texts()) << row.command;
    }
}

// A pipe whose application allows nothing, in a drawing without that application.
TEST(LayerCommands, TellWhatMayNotBeErased) {
    const std::pair<const char*, const char*> rows[] = {{"EraseSelLayer\n", "没有删除"},
                                                        {"ERASE\n", "\n1 could not be erased: "}};
    for (const auto& [command, told] : rows) {
        const test::layer_outcome found =
            test::run_on_layers(test::drawing("odd/foreign.dxf"), command + picks({"30"}) + "\n");
        EXPECT_EQ(std::count(found.changed.begin(), found.changed.end(), "30: gone"), 0) << command;
        EXPECT_NE(found.ran.out.find(told), std::string::npos) << found.ran.out;
    }
}

} // namespace
