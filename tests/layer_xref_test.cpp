// CloseSelLayer on what lies in external references: which layer it is that hides it.
#include "tests/layer_support.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

using test::texts;

// The plan is inserted at 5000,5000 with its base point 1000,500, doubled and turned by 90 degrees: what is
// at x,y in it is at 6000 - 2y, 3000 + 2x. And once more as it is at 20000,5000.
test::layer_outcome pick_in_plan(const std::string& point) {
    return test::run_on_layers(test::drawing("layer_tools/pipes.dxf"),
                               "CloseSelLayer\n(handent \"216\")\n" + point + "\n\n");
}

TEST(LayersOfReferences, WhatIsPickedDecidesWhichLayerIsTurnedOff) {
    const struct {
        const char* what;
        const char* point;
        texts changed;
    } rows[] = {
        {"a line on a layer of its own", "5000,6000", {"plan|墙体: 62 -1", "plan|墙体: -62 1"}},
        {"a door on layer 0", "4800,5500", {"plan|门窗: 62 -2", "plan|门窗: -62 2"}},
        {"the next one of the same doors: the drawing does not hold its layer yet",
         "4800,9100",
         {"plan|洁具: 70 48", "plan|洁具: 62 -3"}},
        {"the last one of the same doors", "4800,11100", {"plan|墙体: 62 -1", "plan|墙体: -62 1"}},
        {"a door seen through the other reference: no box holds it, the last door counts",
         "20250,5100",
         {"plan|墙体: 62 -1", "plan|墙体: -62 1"}},
        {"a text: its pieces are on its layer, not on the drawing's own of that name",
         "3100,6040",
         {"plan|说明: 62 -4", "plan|说明: -62 4"}},
        {"a text on layer 0 of a block: its pieces are on layer 0",
         "3100,9040",
         {"0: 62 -7", "plan|洁具: 70 48", "plan|洁具: 62 -3", "0: -62 7"}},
        {"on layer 0 of the model", "1000,6000", {"0: 62 -7", "0: -62 7"}},
        {"a block that nothing in the model inserts", "1000,9100", {}},
        {"nothing", "0,-3000", {}},
    };
    for (const auto& row : rows) {
        const test::layer_outcome found = pick_in_plan(row.point);
        EXPECT_EQ(found.changed, row.changed) << row.what << "\n" << found.ran.out;
        EXPECT_NE(found.ran.out.find("\n外部参照！请继续选择外部参照上要关闭的图元<退出>: "),
                  std::string::npos);
    }
}

TEST(LayersOfReferences, EscapeLeavesTheInnerPickAndOneUndoTakesAllBack) {
    const auto run = [](const std::string& script) {
        return test::run_on_layers(test::drawing("layer_tools/pipes.dxf"),
                                   "CloseSelLayer\n(handent \"216\")\n" + script);
    };
    EXPECT_EQ(run("^C\n(handent \"212\")\n\n").changed, (texts{"说明: 62 -4", "说明: -62 4"}));
    EXPECT_EQ(run("\n(handent \"212\")\n\n").changed, (texts{"说明: 62 -4", "说明: -62 4"}));
    EXPECT_EQ(run("5000,6000\n(handent \"212\")\n4800,9100\n4800,9100\n\nU\n").changed, texts());
}

// A drawing of another office in inches, shown in millimetres.
TEST(LayersOfReferences, OfARealDrawing) {
    const char* const corpus = std::getenv("ZEF_CORPUS");
    const std::filesystem::path sheet =
        std::filesystem::path(corpus != nullptr ? corpus : "") / "xref/graph/XrefGraph.dxf";
    if (!std::filesystem::exists(sheet))
        GTEST_SKIP() << "ZEF_CORPUS names no folder with " << sheet.filename();
    const struct {
        std::string point;
        texts changed;
    } rows[] = {
        {"-1299.2147,339.5895", {"06457|1_1_WALLS: 62 -3", "06457|1_1_WALLS: -62 3"}},
        // In blocks, on layer 0: an oven and a dishwasher on the layer of texts, a toilet on that of walls.
        {"-957.1442,431.8755", {"06457|1_8_TEXT: 62 -7", "06457|1_8_TEXT: -62 7"}},
        {"-952.7364,524.1570", {"06457|1_8_TEXT: 62 -7", "06457|1_8_TEXT: -62 7"}},
        {"-1135.8062,328.0171", {"06457|1_1_WALLS: 62 -3", "06457|1_1_WALLS: -62 3"}},
    };
    for (const auto& row : rows) {
        const std::string script = "CloseSelLayer\n" + row.point + "\n" + row.point + "\n\n";
        EXPECT_EQ(test::run_on_layers(sheet, script).changed, row.changed) << row.point;
    }
}

} // namespace
