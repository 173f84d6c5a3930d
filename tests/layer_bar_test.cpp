// The layer control bar as a drafter works it with BAR: what each button does to layers and entities, what
// the drawing keeps of it, and the way back.
#include "tests/layer_support.h"

#include <gtest/gtest.h>

namespace {

const std::string plan = test::drawing("layer_tools/bar.dxf").string();

// What a drawing shows: the handles of hidden entities, then the layers that are not on, thawed and free
// ("WALL off frozen locked").
std::string seen(const std::string& drawing) {
    std::string hidden;
    std::string layers;
    for (const auto& object : test::objects(drawing)) {
        const std::string& name = object.first;
        const test::texts& groups = object.second;
        const auto value = [&](const std::string& code) {
            for (const std::string& group : groups)
                if (group.starts_with(code + " "))
                    return std::atoi(group.c_str() + code.size());
            return 0;
        };
        if (groups.empty())
            continue;
        if (groups[0] == "0 LAYER") {
            const std::string state = std::string(value("62") < 0 ? " off" : "") +
                                      ((value("70") & 1) != 0 ? " frozen" : "") +
                                      ((value("70") & 4) != 0 ? " locked" : "");
            layers += state.empty() ? "" : ", " + name + state;
        } else if (value("60") == 1) {
            hidden += hidden.empty() ? name : " " + name;
        }
    }
    return hidden + layers;
}

struct outcome {
    test::run_result ran;
    std::string saved;
    // Each time the bar was printed.
    test::texts bars;
};

outcome run(const std::string& drawing, const std::string& script, int status = 0) {
    const test::folder scratch;
    const std::string out = (scratch / "out.dxf").string();
    outcome found;
    found.ran = test::zefhost({drawing, "-o", out, "--keep-going"}, script);
    EXPECT_EQ(found.ran.status, status) << script << found.ran.out << found.ran.err;
    found.saved = test::read(out);
    const std::string title = "\n维朗图层管理";
    for (std::size_t at = found.ran.out.find(title); at != std::string::npos;
         at = found.ran.out.find(title, at + 1))
        found.bars.push_back(found.ran.out.substr(at + 1, found.ran.out.find("Command:", at) - at));
    return found;
}

const std::string shown = "A2 B2 C2, WINDOW off, 底图 locked"; // before anything is pressed

} // namespace

TEST(LayerBar, ButtonsDoWhatTheySay) {
    const struct {
        const char* buttons; // by blanks; names of rows with /
        std::string seen;
        const char* said = "";
    } rows[] = {
        {"", shown},
        {"2028", "A1 A2 A3 A4 B2 C2, WINDOW off, 底图 locked",
         "\n已标建筑标识的图元已经全部关闭\n建筑图元: 关\n"},
        {"2028 2028", shown, "\n已标建筑标识的图元已经全部打开\n"},
        {"2029", "A2 B1 B2 B3 B4 B5 C2, WINDOW off, 底图 locked"},
        {"2029 2029", shown},
        {"2030", "A2 B2 C1 C2 C3, WINDOW off, 底图 locked", "1 个图元仍然显示：1 个在锁定的图层上。"},
        {"2030 2030", shown},
        // Of families whose entities were hidden when the bar had hidden none, all are shown.
        {"2029 2025", ", 底图 locked"},
        {"2031", "A2 B2 C2, 底图 locked", "显示建筑层: 开"},
        {"2031 2031", "A2 B2 C2, WALL off, WINDOW off, 底图 locked"},
        {"2032", "A2 B2 C2, DIM_给水 off, PIPE-污水 off, PIPE-给水 off, WINDOW off, 底图 locked, 水-井 off"},
        {"2034", "A2 B2 C2, WINDOW off frozen, 底图 locked",
         "\n********冻结当前层\"WALL\"失败********！\n冻结建筑层: 冻结\n"},
        {"2034 2034", shown, "冻结建筑层: -"},
        {"2036", "A2 B2 C2, WALL locked, WINDOW off locked, 底图 locked"},
        {"2037 2037", shown},
        {"给水管线/ON", "A2 B2 B3 C2, DIM_给水 off, PIPE-给水 off, WINDOW off, 底图 locked",
         "给水管线 开关: 关"},
        {"给水管线/ON 给水管线/ON", shown},
        {"污水管线/冻结", "A2 B2 C2, PIPE-污水 frozen, WINDOW off, 底图 locked"},
        {"给水管线/LOCK 给水管线/FREEZE",
         "A2 B2 C2, DIM_给水 frozen locked, PIPE-给水 frozen locked, WINDOW off, 底图 locked"},
        {"热给水管线/LOCK", shown, "本图中没有\"热给水\"的图层！"},
        // The rows' memory and the families' are apart.
        {"给水管线/ON 2029 2029", "A2 B2 B3 C2, DIM_给水 off, PIPE-给水 off, WINDOW off, 底图 locked"},
        {"2025", ", 底图 locked"},
        {"2028 给水管线/ON 2025", ", 底图 locked"},
        // What could not be shown stays remembered.
        {"2030 -LAYER=LO=说明= 2030 -LAYER=U=说明= 2030 2030", shown,
         "1 个图元仍然隐藏：1 个在锁定的图层上。"},
        {"1 2099 2999 7777", shown},
    };
    for (const auto& row : rows) {
        std::string script = "tckz\n";
        std::istringstream words(row.buttons);
        for (std::string word; words >> word;) {
            std::replace(word.begin(), word.end(), '=', '\n');
            script += (word.starts_with("-") ? "" : "BAR ") + word + "\n";
        }
        const bool bad = std::string(row.buttons).starts_with("1 ");
        const outcome found = run(plan, "LAYERPMODE OFF\n" + script, bad ? 4 : 0);
        EXPECT_EQ(seen(found.saved), row.seen) << row.buttons;
        EXPECT_NE(found.ran.out.find(row.said), std::string::npos) << row.buttons << found.ran.out;
        for (const char* const data :
             {"\nOTHER\n1000\nwall\n", "\nOTHER\n1000\nroom\n", "\nOTHER\n1000\npump\n"})
            EXPECT_NE(found.saved.find(data), std::string::npos) << row.buttons << data;
    }
    // A family without layers: nothing happens, and why is said.
    const std::string bare = test::drawing("picks.dxf").string();
    const outcome none = run(bare, "tckz\nBAR 2031\nBAR 2035\n");
    EXPECT_NE(none.ran.out.find("本图中没有建筑图层！\n显示建筑层: 开\n"), std::string::npos) << none.ran.out;
    EXPECT_NE(none.ran.out.find("本图中没有给排水图层！"), std::string::npos) << none.ran.out;
    EXPECT_EQ(none.saved, test::read(bare));
}

// A press that is taken back leaves no trace, nor does the bar that is only looked at.
TEST(LayerBar, EachPressIsOneStepOfUndo) {
    const std::string drawing = test::read(plan);
    std::string script = "tckz\n";
    for (int id = 2028; id <= 2037; ++id)
        if (id != 2033)
            script += "BAR " + std::to_string(id) + "\nU\n";
    for (const char* const row : {"ON", "FREEZE", "LOCK"})
        script += std::string("BAR 给水管线 ") + row + "\nU\n";
    const outcome found = run(plan, script + "BAR\n");
    EXPECT_EQ(found.saved, drawing);
    EXPECT_EQ(found.bars.front(), found.bars.back());
    EXPECT_NE(found.ran.out.find("U\n给水管线 锁定\n"), std::string::npos) << found.ran.out;
    const std::string redone = run(plan, "tckz\nBAR 2028\nU\nREDO\nBAR 2028\nBAR 2025\nU\n").saved;
    EXPECT_EQ(seen(redone), shown);
    // Inside of a command a press belongs to that command's step.
    EXPECT_EQ(run(plan, "tckz\nLINE 0,0 'BAR 2030\n9,9 \nU\n").saved, drawing);
}

// What a session leaves, the next one finds: the same bar, and what was hidden can be shown again.
TEST(LayerBar, IsTheSameWhenADrawingIsOpenedAgain) {
    const struct {
        const char* first;
        const char* then;
    } rows[] = {
        {"", ""},
        {"BAR 2028\nBAR 2030\n", "BAR 2030\nBAR 2028\n"},
        {"BAR 2034\nBAR 2037\n", "BAR 2037\nBAR 2034\n"},
        {"BAR 给水管线 ON\nBAR 污水管线 FREEZE\nBAR 雨水管线 LOCK\n",
         "BAR 污水管线 FREEZE\nBAR 给水管线 ON\n"},
        {"BAR 2029\nBAR 给水管线 LOCK\n", "BAR 给水管线 LOCK\nBAR 2029\n"},
    };
    for (const auto& row : rows) {
        const test::folder scratch;
        const outcome first = run(plan, "LAYERPMODE OFF\ntckz\n" + std::string(row.first) + "BAR\n");
        const std::string kept = scratch.write("kept.dxf", first.saved).string();
        const outcome second = run(kept, "LAYERPMODE OFF\ntckz\n" + std::string(row.then) + "BAR\n");
        EXPECT_EQ(second.bars.front(), first.bars.back()) << row.first;
        EXPECT_EQ(second.bars.back(), first.bars.front()) << row.first;
        EXPECT_EQ(seen(second.saved), shown) << row.first;
    }
}

// Two drawings, each with states of its own; a command of the host's changes what the bar shows.
TEST(LayerBar, FollowsTheCurrentDrawingAndItsCommands) {
    const test::folder scratch;
    const std::string other = scratch.write("other.dxf", test::read(plan)).string();
    const outcome found =
        run(plan,
            "tckz\nBAR 2028\nBAR 2036\nBAR\nOPEN\n" + other + "\nBAR\nBAR 2035\nBAR\nCLOSE Y\nBAR\n" +
                "-LAYER U * \nBAR\nSetAllPipeLayOpen\nBAR\nCLOSE Y\nBAR\nBAR 2028\nNEW\n\nBAR\n",
            4);
    ASSERT_EQ(found.bars.size(), 9U) << found.ran.out;
    EXPECT_EQ(found.bars[2], found.bars[0]) << "the other drawing's";
    EXPECT_NE(found.bars[3], found.bars[2]);
    EXPECT_EQ(found.bars[4], found.bars[1]) << "the first drawing's again";
    EXPECT_NE(found.bars[5].find("2036 锁定建筑层    - "), std::string::npos) << found.bars[5];
    EXPECT_NE(found.bars[6].find("2028 建筑图元      开"), std::string::npos) << found.bars[6];
    EXPECT_TRUE(found.bars[7].starts_with("维朗图层管理 (disabled)\n")) << found.bars[7];
    EXPECT_NE(found.ran.err.find("can not be used now"), std::string::npos) << found.ran.err;
    EXPECT_FALSE(found.bars[8].starts_with("维朗图层管理 (disabled)\n")) << found.bars[8];
}

TEST(LayerBar, ListsSystemsByPages) {
    const outcome found =
        run(plan, "tckz\nBAR 尾页\nBAR 上页\nBAR 2038\n\nBAR 2038\n^C\nBAR 2038\n51\n4\nBAR 首页\n"
                  "BAR 上页\nBAR 下页\nBAR 2024\nBAR 2038\n50\n");
    const struct {
        std::size_t bar;
        const char* first;
        const char* page;
    } rows[] = {{0, "\n2100 给水管线", "1/5"},  {1, "\n2140 ", "5/5"},
                {2, "\n2130 ", "4/5"},          {3, "\n2128 ", "8/11"},
                {4, "\n2100 给水管线", "1/11"}, {5, "\n2104 热给水管线2", "2/11"},
                {6, "\n2100 给水管线", "1/11"}};
    ASSERT_EQ(found.bars.size(), 8U) << found.ran.out;
    for (const auto& row : rows) {
        const std::string& bar = found.bars[row.bar];
        const std::size_t header = bar.find("锁定\n");
        EXPECT_EQ(bar.find(row.first), header + std::string("锁定").size()) << row.bar << bar;
        EXPECT_NE(bar.find(row.page), std::string::npos) << row.bar << bar;
    }
    EXPECT_NE(found.ran.out.find("每页应为 1 到 50 个系统！"), std::string::npos);
    // The built-in rows, then what else the standard has.
    const std::string& all = found.bars.back();
    for (const char* const row :
         {"\n2109 中水管线2", "\n2124 其它管线", "\n2125 中水管线", "\n2143 虹吸雨水管线"})
        EXPECT_NE(all.find(row), std::string::npos) << row << all;
}

// Drawings that hold no entries keep no memory of what was hidden: nothing is, and the layers obey.
TEST(LayerBar, OldDrawingsHaveLayersAlone) {
    const std::string old = test::drawing("r12.dxf").string();
    EXPECT_EQ(run(old, "tckz\nBAR 2028\n", 4).saved, test::read(old));
    const outcome found = run(old, "LAYERPMODE OFF\ntckz\nBAR 2031\nBAR 2036\nBAR\nBAR 2036\nBAR 2031\n");
    EXPECT_NE(found.bars.front(), found.bars.back());
    EXPECT_EQ(found.saved, test::read(old));
}

// Off and on again shows what was seen before, entity by entity; all other objects stay as they were.
TEST(LayerBar, RestoresRealDrawings) {
    std::vector<std::filesystem::path> drawings = test::corpus();
    drawings.push_back(std::filesystem::path(ZEF_SOURCE_FOLDER) / "samples/storey.dxf");
    const std::string toggles = "BAR 2028\nBAR 2029\nBAR 2030\n";
    for (const auto& drawing : drawings) {
        const test::folder scratch;
        const auto saved = [&](const std::string& script) {
            const std::string out = (scratch / "out.dxf").string();
            const auto ran = test::zefhost({drawing.string(), "-o", out, "--keep-going"},
                                           "LAYERPMODE OFF\ntckz\n" + script);
            return ran.out.find("是R12或更早的版本") == std::string::npos ? test::read_drawing(out)
                                                                          : std::string();
        };
        const std::string before = saved(""); // with the drawing's repairs
        const std::string off = saved(toggles);
        if (off.empty())
            continue;
        EXPECT_NE(seen(off), seen(before)) << drawing << ": nothing was hidden";
        const auto after = test::objects(saved(toggles + toggles));
        int differing = 0;
        for (const auto& [name, groups] : test::objects(before)) {
            const auto now = after.find(name);
            // The dictionary that got the entries, and the header, whose USERI1 tells of the architecture.
            if (!groups.empty() && groups[0] != "0 DICTIONARY" && groups[0] != "0 SECTION" &&
                (now == after.end() || now->second != groups) && ++differing < 4)
                ADD_FAILURE() << drawing << ": " << name;
        }
    }
}
