// Double-line pipes as a drafter draws them: what is joined by what, where pipes end then, what is taken
// back.
#include "tests/layer_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// Of the saved drawing: each pipe as "x,y-x,y" from its start to its end, rounded, in the order of the file.
std::string pipes_of(const std::string& drawing) {
    std::string found;
    std::istringstream in(drawing);
    std::string code, value, type;
    double at[4] = {};
    const auto round = [](const std::string& text) { return std::stod(text); };
    const auto put = [&] {
        if (type != "ZEF_DOUBLELINEPIPE")
            return;
        for (int i = 0; i < 4; ++i)
            found += std::to_string(std::lround(at[i])) + (i == 1 ? "-" : i == 3 ? " " : ",");
    };
    for (; std::getline(in, code) && std::getline(in, value);) {
        code.erase(0, code.find_first_not_of(' '));
        if (code == "0") {
            put();
            type = value;
        } else if (type == "ZEF_DOUBLELINEPIPE") {
            if (code == "10" || code == "20")
                at[code == "20"] = round(value);
            else if (code == "11" || code == "21")
                at[2 + (code == "21")] = round(value);
        }
    }
    return found.substr(0, found.find_last_not_of(' ') + 1);
}

int count(const std::string& text, std::string_view part) {
    int found = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

constexpr std::string_view fitting = "\n  0\nZEF_DOUBLELINEFITTING\n";

std::string plan() {
    return test::read_drawing(test::drawing("r2018.dxf"));
}

} // namespace

// Long-radius elbows of DN100 are bent by 152; a tee's ends are 105 from its centre, a reducer is 102 long.
TEST(DoubleLinePipes, WhatMeetsIsJoined) {
    const struct {
        const char* what;
        const char* script;
        const char* pipes;
        int fittings;
        const char* told;
    } rows[] = {
        {"an elbow", "0,0 3000,0 @0,2000\n\n", "0,0-2848,0 3000,152-3000,2000", 1,
         "绘制双线管 2 段，管线系统\"给水\"，总长 5.000 m。"},
        {"a corner", "E 直角 0,0 3000,0 @0,2000\n\n", "0,0-2945,0 3000,55-3000,2000", 1, "2 段"},
        {"a corner where there is no room for an arc", "0,0 3000,0 @0,120\n\n", "0,0-2945,0 3000,55-3000,120",
         1, "2 段"},
        {"no room at all", "0,0 3000,0 @0,55.5\n\n", "0,0-3000,0", 0, "管段太短，放不下管件！"},
        {"back on itself", "0,0 3000,0 1000,0\n\n", "0,0-3000,0", 0, "与已有管线重叠！"},
        {"straight on", "0,0 3000,0 5000,0\n\n", "0,0-3000,0 3000,0-5000,0", 0, "2 段"},
        {"a tee at a wall's point", "0,0 4000,0\n\ngxgd 2000,40 2000,3000\n\n",
         "0,0-1895,0 2000,105-2000,3000 2105,0-4000,0", 1, "1 段"},
        {"a tee becomes a cross", "0,0 4000,0\n\ngxgd 2000,0 2000,3000\n\ngxgd 2000,0 2000,-3000\n\n",
         "0,0-1895,0 2000,105-2000,3000 2105,0-4000,0 2000,-105-2000,-3000", 1, "1 段"},
        {"an elbow becomes a tee", "0,0 3000,0 3000,2000\n\ngxgd 3000,0 6000,0\n\n",
         "0,0-2895,0 3000,105-3000,2000 3105,0-6000,0", 1, "1 段"},
        {"a cross of one system", "0,0 4000,0\n\ngxgd 2000,-2000 2000,2000\n\n",
         "0,0-1895,0 2000,-2000-2000,-105 2105,0-4000,0 2000,105-2000,2000", 1, "1 段"},
        {"over another system", "0,0 4000,0\n\ngxgd S 消防 2000,-2000 2000,2000\n\n",
         "0,0-4000,0 2000,-2000-2000,2000", 0, "管线系统\"消防\""},
        {"a reducer", "0,0 3000,0 D 50 6000,0\n\n", "0,0-3000,0 3102,0-6000,0 3000,0-3102,0", 0, "2 段"},
        {"taken back", "0,0 3000,0 @0,2000 U @3000,0\n\n", "0,0-3000,0 3000,0-6000,0", 0, "总长 6.000 m"},
        {"nothing to take back", "0,0 U\n\n", "", 0, "没有可以回退的管段。"},
    };
    for (const auto& row : rows) {
        test::Sessions sessions(plan());
        const auto ran = sessions.run("gxgd S 给水 D 100 " + std::string(row.script));
        EXPECT_EQ(pipes_of(sessions.saved), row.pipes) << row.what << "\n" << ran.out;
        EXPECT_EQ(count(sessions.saved, fitting), row.fittings) << row.what;
        EXPECT_TRUE(test::says(ran, row.told)) << row.what << "\n" << ran.out;
    }
}

TEST(DoubleLinePipes, WallsStandAtTheOuterDiameterAndFlangesByPressure) {
    test::Sessions sessions(plan());
    // PP-R of DN100 is 110 wide; the steel flange of PN 10 is 220 wide and 22 thick.
    auto ran = sessions.run("gxgd S 给水 D 100 P 1.0MPa F Y 0,0 3000,0\n\n");
    EXPECT_TRUE(test::says(ran, "PP-R 的公称直径: 15 20 25")) << ran.out;
    for (const char* part : {"\nSTART_OUTER\n", "\n140\n110.0\n", "\n 42\n220.0\n 43\n22.0\n", "\n1.0MPa\n",
                             "\n  8\n水-双线管\n"})
        EXPECT_NE(sessions.saved.find(part), std::string::npos) << part;
    // A diameter that neither the material nor the flanges have is told, and drawn as it is called.
    ran = sessions.run("gxgd S 给水 D 104 F Y 0,500 3000,500\n\n");
    EXPECT_TRUE(test::says(ran, "没有 DN104，外径按公称直径绘制。")) << ran.out;
    EXPECT_TRUE(test::says(ran, "没有 DN104、1.0MPa 的法兰数据"));
    // One step of undo, for risers too.
    const std::string before = sessions.saved;
    sessions.run("gxgd 0,900 3000,900 3000,2000\n\nU\ngxgd V 0 3 500,500 900,900 \nU\n");
    EXPECT_EQ(pipes_of(sessions.saved), pipes_of(before));
    ran = sessions.run("gxgd V 0 2.5 500,700\n\n");
    EXPECT_TRUE(test::says(ran, "绘制双线立管 1 段")) << ran.out;
    EXPECT_NE(pipes_of(sessions.saved).find("500,700-500,700"), std::string::npos);
}

TEST(DoubleLinePipes, EscapeAndEnterEndEveryQuestion) {
    const std::pair<std::string, int> rows[] = {{"", 2},       {" S", 3},   {" D", 3},    {" P", 3},
                                                {" E", 3},     {" F", 3},   {" V", 4},    {" V 0", 3},
                                                {" V 0 3", 2}, {" 0,0", 2}, {" 0,0 D", 3}};
    for (const auto& [asked, enters] : rows)
        for (const std::string& end :
             {std::string(" ^C"), std::string(static_cast<std::size_t>(enters), '\n')}) {
            test::Sessions sessions(plan());
            sessions.run("gxgd" + asked + end);
            EXPECT_EQ(pipes_of(sessions.saved), "") << asked;
        }
    test::Sessions sessions(plan());
    for (const char* const wrong : {"gxgd S 没有", "gxgd P 9MPa", "gxgd E 圆的", "gxgd V 1 1"})
        sessions.run(wrong, 4);
    // What is on locked layers is not cut; the piece is refused, what was drawn before stays.
    sessions.run("gxgd S 给水 D 100 0,0 4000,0\n\n-LAYER LO 水-双线管\n\n");
    sessions.run("gxgd 2000,0 2000,3000\n\n", 4);
    EXPECT_EQ(pipes_of(sessions.saved), "0,0-4000,0");
}
