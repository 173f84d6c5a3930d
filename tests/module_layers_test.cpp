// The layer commands as a drafter runs them: a drawing, a script, what is said and what has changed.
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/TRegProperty.h"
#include "sys/folders.h"
#include "tests/layer_support.h"

#include <gtest/gtest.h>

namespace {

using test::picks;
using test::texts;

test::layer_outcome run(const std::string& script, texts arguments = {}) {
    return test::run_on_layers(test::drawing("layer_states.dxf"), script, std::move(arguments));
}

// Told by the application that traces: what refreshes the display is typed without echo.
constexpr std::string_view refreshed = "-LAYER will start";
constexpr std::string_view regenerated = "RE will start";

TEST(ModuleLayers, CommandsChangeWhatTheyNameAndNothingElse) {
    const struct {
        std::string script;
        texts changed;
        texts said;
        bool refreshes;
    } rows[] = {
        {"OpenSelLayer\n" + picks({"33", "30", "33"}) + "\n",
         {"0: 62 -7", "A: 62 3", "B#1: 62 -7", "0: -62 7", "A: -62 -3", "B#1: -62 7"},
         {"\n请选择打开层上的图元 <退出>:"},
         false},
        {"OpenSelLayer\n" + picks({"34"}) + "\n",
         {"0: 62 -7", "给水: 62 -7", "0: -62 7", "给水: -62 7"},
         {},
         false},
        {"OpenSelLayer\n\n", {}, {"\n请选择打开层上的图元 <退出>:\n"}, false},
        {"SetAllPipeLayOpen\n",
         {"A: 62 3", "B21: 62 5", "X|墙: 62 1", "32: -60 1", "A: -62 -3", "B21: -62 -5", "X|墙: -62 -1"},
         {},
         false},
        {"LockSelLayer\n" + picks({"31", "33", "34", "33"}) + "\n",
         {"给水: 70 4", "给水: -70 0"},
         {"\n请选择要锁定层上的图元 <退出>:", "\nB#1层本身就是锁定的！\nRegenerating model.\n"},
         true},
        {"LockSelLayer\n^C\n", {}, {"\n请选择要锁定层上的图元 <退出>:"}, false},
        {"UnLockSelLayer\n" + picks({"33", "30", "34"}) + "\n",
         {"B#1: 70 0", "B#1: -70 4"},
         {"\n请选择要解锁层上的图元(ESC退出,空格解开全部层) <全部>:",
          "\n给水层本身就没有锁定！\nA层本身就没有锁定！\nRegenerating model.\n"},
         true},
        {"UnLockSelLayer\n\n", {"B#1: 70 0", "X|墙: 70 49", "B#1: -70 4", "X|墙: -70 53"}, {}, true},
        {"UnLockSelLayer\n^C\n", {}, {}, false},
        {"UnFrozenAllLayer\n", {"A: 70 0", "X|墙: 70 52", "A: -70 1", "X|墙: -70 53"}, {}, true},
        {"ConvertLayer\n" + picks({"33", "30"}),
         {"33: 8 A", "33: -8 给水"},
         {"\n请选择要转换图层(源)上的任意图元:<退出>", "\n请选择要转换图层(目标)上的任意图元:<退出>",
          "\n给水层 已经成功转换到 A层了！"},
         false},
        // What lies on a locked layer stays, which a second line tells.
        {"ConvertLayer\n" + picks({"31", "33"}),
         {},
         {"\nB#1层 已经成功转换到 给水层了！\n3 个图元没有转换：3 个在锁定的图层上。\n"},
         false},
        // "#" in the name is no digit of a pattern; sheets are converted too, blocks are not.
        {"-LAYER U B`#1\n\nConvertLayer\n" + picks({"31", "33"}),
         {"31: 8 给水", "34: 8 给水", "35: 8 给水", "B#1: 70 0", "31: -8 B#1", "34: -8 b#1", "35: -8 B#1",
          "B#1: -70 4"},
         {},
         false},
        {"ConvertLayer\n" + picks({"31", "34"}), {}, {"\n图层相同，不需要转换！\n"}, false},
        {"ConvertLayer\n(handent \"31\")\n\n", {}, {}, false},
    };
    for (const auto& row : rows) {
        const test::layer_outcome found = run(row.script);
        EXPECT_EQ(found.changed, row.changed) << row.script << found.ran.out;
        for (const std::string& text : row.said)
            EXPECT_NE(found.ran.out.find(text), std::string::npos) << text << " in:\n" << found.ran.out;
        EXPECT_EQ(found.ran.out.find("Regenerating model.") != std::string::npos, row.refreshes)
            << found.ran.out;
        EXPECT_EQ(found.ran.out.find("*Cancel*") != std::string::npos,
                  row.script.find("^C") != std::string::npos)
            << "nothing is seen of how the display is refreshed:\n"
            << found.ran.out;
    }
}

TEST(ModuleLayers, ThawingTwiceRefreshesOnce) {
    const std::string said = run("UnFrozenAllLayer\nUnFrozenAllLayer\n", {"--load", "tracing"}).ran.out;
    EXPECT_NE(said.find(refreshed), said.npos);
    EXPECT_EQ(said.find(refreshed), said.rfind(refreshed)) << said;
}

TEST(ModuleLayers, AnOptionKeepsTheRefreshFromRegenerating) {
    const test::folder profile;
    sys::set_profile_folder(profile.path());
    for (const int shows : {0, 2}) {
        TRegProperty(GetRegLocation(), L"KOLConfig").SetValue(L"LayerLockShowUpdate", shows);
        const std::string said =
            run("UnLockSelLayer\n\n", {"--load", "tracing", "--profile", profile.path().string()}).ran.out;
        EXPECT_NE(said.find(refreshed), said.npos) << said;
        EXPECT_EQ(said.find(regenerated) != said.npos, shows != 0) << said;
    }
}

} // namespace
