// Linetypes in order, and lines that were drawn in pieces.
#include "tests/layer_support.h"

#include <gtest/gtest.h>

namespace {

using test::says;
using test::texts;

class Order : public testing::Test, public test::Sessions {
protected:
    Order() : Sessions(test::read_drawing(test::drawing("r2018.dxf"))) {}

    static std::string line(const std::string& from, const std::string& to) {
        return "LINE\n" + from + "\n" + to + "\n\n";
    }
    // The lines of the drawing, as "x,y x,y", in the order of their handles.
    texts lines() const {
        texts found;
        for (const auto& [handle, groups] : test::objects(saved))
            if (!groups.empty() && groups[0] == "0 LINE") {
                std::map<int, double> at;
                for (const std::string& group : groups)
                    at[std::stoi(group)] = std::strtod(group.c_str() + group.find(' '), nullptr);
                std::ostringstream text;
                text << at[10] << "," << at[20] << " " << at[11] << "," << at[21];
                found.push_back(text.str());
            }
        std::ranges::sort(found);
        return found;
    }
};

TEST_F(Order, LinesInOneLineBecomeOneWithinTheTolerance) {
    run("ERASE\nALL\n\n"); // with what is on locked layers left out
    const texts kept = lines();
    const struct {
        std::string drawn;
        const char* tolerance;
        texts left;
        const char* told;
    } rows[] = {
        // Overlapping, touching, lying within another one, twice, turned round, without length.
        {line("0,0", "100,0") + line("50,0", "200,0") + line("300,0", "200,0") + line("20,0", "30,0") +
             line("0,0", "100,0") + line("7,7", "7,7"),
         "1",
         {"0,0 300,0"},
         "连接 2 个，删除重复 2 个、零长 1 个"},
        // A gap as wide as the tolerance is closed, a wider one is not; nor are corners and neighbours.
        {line("0,0", "100,0") + line("101,0", "200,0") + line("201.5,0", "300,0"),
         "1",
         {"0,0 200,0", "201.5,0 300,0"},
         "连接 1 个"},
        {line("0,0", "100,0") + line("100,0", "100,50") + line("0,2", "100,2"),
         "1",
         {"0,0 100,0", "0,2 100,2", "100,0 100,50"},
         "连接 0 个"},
        // Each joint is nearly straight, but the row of them bends away farther than the tolerance.
        {line("0,0", "1000,0") + line("1000,0", "2000,0.9") + line("2000,0.9", "3000,2.7") +
             line("3000,2.7", "4000,5.4"),
         "1",
         {"0,0 3000,2.7", "3000,2.7 4000,5.4"},
         "连接 2 个"},
        // Turned round, with ways on both sides of the x axis.
        {line("0,0", "100,0.01") + line("200,0", "50,0.01") + line("150,0", "300,-0.01"),
         "1",
         {"300,-0.01 0,0"},
         "连接 2 个"},
        {line("100000000,0", "100000001,1") + line("100000001,1", "100000003,3"),
         "0.001",
         {"1e+08,0 1e+08,3"},
         "连接 1 个"},
    };
    const std::string empty = saved;
    for (const auto& row : rows) {
        saved = empty;
        const auto ran = run(row.drawn + "xxyh2\n\n" + row.tolerance + "\n");
        texts wanted = kept;
        wanted.insert(wanted.end(), row.left.begin(), row.left.end());
        std::ranges::sort(wanted);
        EXPECT_EQ(lines(), wanted) << ran.out;
        EXPECT_TRUE(says(ran, row.told)) << ran.out;
    }
}

TEST_F(Order, LinesOfOtherPropertiesStayAndTheWayBackIsOneStep) {
    run("ERASE\nALL\n\n");
    const std::string pieces = line("0,0", "100,0") + "-LAYER\nM\nB\n\n" + line("100,0", "200,0") +
                               "SETVAR\nCECOLOR\n1\n" + line("200,0", "300,0") + "SETVAR\nCECOLOR\nBYLAYER\n";
    const std::size_t kept = lines().size();
    auto ran = run(pieces + "xxyh2\n\n\n");
    EXPECT_TRUE(says(ran, "连接 0 个")) << ran.out;
    EXPECT_EQ(lines().size(), kept + 3);
    run(line("300,0", "400,0") + line("400,0", "500,0") + "CIRCLE\n0,0\n9\nCIRCLE\n0,0\n9\n");
    const std::string before = saved;
    ran = run("xxyh2\n\n1\nU\n");
    EXPECT_TRUE(says(ran, "连接 1 个，删除重复 1 个")) << ran.out;
    EXPECT_EQ(saved, before);
    for (const char* script : {"xxyh2\n^C\n", "xxyh2\n\n^C\n", "xxyh\nCANCEL\n", "xxyh\n^C\n"})
        run(script);
    EXPECT_EQ(saved, before);
    ran = run("-LAYER\nS\n0\nLO\nB\n\nxxyh2\n\n\n");
    EXPECT_TRUE(says(ran, "在锁定的图层上")) << ran.out;
}

TEST(Linetypes, AreUnitedScaledContinuedAndTakenOut) {
    const test::folder folder;
    std::string text = test::read(std::filesystem::path(ZEF_SOURCE_FOLDER) / "samples/storey.dxf");
    std::erase(text, '\r');
    // DASHED once more under another name, and once with other dashes that nobody uses; the walls have the
    // first.
    const std::size_t begin = text.rfind("  0\nLTYPE\n", text.find("\n  2\nDASHED\n"));
    std::string copy = text.substr(begin, text.find("  0\n", begin + 4) - begin);
    const auto put = [](std::string& in, const std::string& from, const std::string& to) {
        ASSERT_NE(in.find(from), in.npos) << from;
        in.replace(in.find(from), from.size(), to);
    };
    const std::string handle = copy.substr(copy.find("\n  5\n"), copy.find("\n330\n") - copy.find("\n  5\n"));
    put(copy, handle, "\n  5\nFA1");
    put(copy, "\n  2\nDASHED\n", "\n  2\n虚线-2\n");
    std::string other = copy;
    put(other, "\n  5\nFA1", "\n  5\nFA2");
    put(other, "\n  2\n虚线-2\n", "\n  2\nUNUSED\n");
    put(other, "\n 49\n", "\n 49\n9");
    text.insert(begin, copy + other);
    const std::size_t wall = text.find("\n  6\n", text.find("\n  2\n墙体\n"));
    text.replace(wall + 5, text.find('\n', wall + 5) - wall - 5, "虚线-2");
    put(text, "$LTSCALE\n 40\n15.0", "$LTSCALE\n 40\n1.0");
    // A wall whose pattern would be too long, and one that is still readable.
    const std::string on_wall = "\n  8\n墙体\n";
    std::string handles[2];
    std::size_t at = text.find("\n  2\nENTITIES\n");
    for (int i = 0; i < 2; ++i) {
        at = text.find(on_wall, at) + on_wall.size();
        const std::size_t own = text.rfind("\n  5\n", at) + 5;
        handles[i] = text.substr(own, text.find('\n', own) - own);
        text.insert(at, i == 0 ? " 48\n8.0\n" : " 48\n0.5\n");
    }
    const auto drawing = folder.write("in.dxf", text);
    const auto none = test::run_on_layers(drawing, "xxyh\n-*\nOK\n");
    EXPECT_TRUE(says(none.ran, "没有选择操作，图形没有改变。") && none.changed.empty()) << none.ran.out;
    const auto outcome = test::run_on_layers(drawing, "xxyh\nOK\n");
    EXPECT_TRUE(says(outcome.ran, "1 [x] 合并相同线型     1\n")) << outcome.ran.out;
    EXPECT_TRUE(says(outcome.ran, "合并线型 1 种，") && says(outcome.ran, "删除无用线型 1 种。"))
        << outcome.ran.out;
    EXPECT_TRUE(says(outcome.ran, "全局线型比例由 1 改为 100。")) << outcome.ran.out;
    const auto has = [&](const char* change) {
        return std::ranges::find(outcome.changed, change) != outcome.changed.end();
    };
    EXPECT_TRUE(has("墙体: 6 DASHED") && has("FA1: gone") && has("FA2: gone"))
        << testing::PrintToString(outcome.changed);
    EXPECT_TRUE(has((handles[0] + ": -48 8.0").c_str()) && !has((handles[1] + ": -48 0.5").c_str()))
        << testing::PrintToString(outcome.changed);
    // Walls are closed polylines: their pattern goes on now.
    EXPECT_NE(std::ranges::count_if(outcome.changed,
                                    [](const std::string& one) { return one.ends_with(": 70 129"); }),
              0);
}

} // namespace
