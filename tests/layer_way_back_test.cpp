// The way back from what the layer commands hide and lock: LAYERP, and the state before that the drawing
// keeps.
#include "tests/layer_support.h"

#include <gtest/gtest.h>

namespace {

const std::string pipes = test::drawing("layer_tools/pipes.dxf").string();

// The lists of layers that a script asks for with "?", one after the other.
test::texts lists(const test::run_result& ran) {
    test::texts found;
    for (std::size_t at = ran.out.find("\nLayer name "); at != ran.out.npos;
         at = ran.out.find("\nLayer name ", at + 1))
        found.push_back(ran.out.substr(at, ran.out.find("\n\n", at) - at));
    return found;
}

constexpr const char* list = "-LAYER ? \n\n";

// A drawing, a script on it, what it saved, and its lists.
struct outcome {
    std::string saved;
    test::texts lists;
    test::run_result ran;
};

outcome run(const std::string& drawing, const std::string& script) {
    const test::folder scratch;
    const std::string in = scratch.write("in.dxf", drawing).string();
    const std::string out = (scratch / "out.dxf").string();
    outcome found;
    found.ran = test::zefhost({in, "-o", out}, script);
    EXPECT_EQ(found.ran.status, 0) << found.ran.err;
    found.saved = test::read(out);
    found.lists = lists(found.ran);
    return found;
}

} // namespace

TEST(LayerWayBack, LayerpTakesBackLayersAloneStepByStep) {
    const std::string hide = "CloseSelLayer\n(handent \"210\")\n\n";
    const std::string lock = "LockSelLayer\n(handent \"212\")\n\nLINE 0,0 10,10 \n";
    const outcome found = run(test::read(pipes), list + hide + list + lock + list + "LAYERP\n" + list +
                                                     "LAYERP\n" + list + "LAYERP\nU\n" + list + "U\n" + list);
    ASSERT_EQ(found.lists.size(), 7U) << found.ran.out;
    const auto& [plain, hidden, locked] = std::tie(found.lists[0], found.lists[1], found.lists[2]);
    EXPECT_NE(plain, hidden);
    EXPECT_NE(hidden, locked);
    EXPECT_EQ(found.lists[3], hidden);
    EXPECT_EQ(found.lists[4], plain);
    EXPECT_NE(found.ran.out.find("*No previous layer status*"), std::string::npos);
    EXPECT_EQ(found.lists[5], hidden) << "U takes back what LAYERP did";
    EXPECT_EQ(found.lists[6], locked);
    const test::texts changed = test::changes(test::read(pipes), found.saved);
    EXPECT_NE(found.saved.find("\nLINE\n"), std::string::npos);
    // What was undone is no change any more; a command after it is.
    const outcome undone = run(test::read(pipes), list + hide + "U\nLINE 0,0 10,10 \nLAYERP\n" + list + lock +
                                                      "LAYERP\n" + list);
    EXPECT_EQ(undone.lists, test::texts(3, plain)) << undone.ran.out;
}

TEST(LayerWayBack, LayerpReachesViewportsAndColours) {
    const std::string sheet = test::read(test::drawing("viewports_r2018.dxf"));
    // How often the file says that something is frozen in a viewport.
    const auto frozen = [&](const std::string& behind) {
        const std::string saved =
            run(sheet, "FrozenViewLayer\n175,100\n2\nOK\n\n" + behind + "-LAYER A D *BEFORE*\n\n").saved;
        std::size_t found = 0;
        for (std::size_t at = saved.find("\n331\n"); at != saved.npos; at = saved.find("\n331\n", at + 1))
            ++found;
        return found;
    };
    EXPECT_EQ(frozen("LAYERP\n") + 1, frozen(""));
    const outcome painted =
        run(sheet, std::string(list) + "-LAYER C 1,2,3 0 LW 0.5 0 TR 30 0 \nLAYERP\n" + list);
    EXPECT_EQ(painted.lists.at(0), painted.lists.at(1));
    EXPECT_EQ(painted.saved.find("AcCmTransparency\n1071"), std::string::npos);
}

TEST(LayerWayBack, TheDrawingKeepsTheStateBeforeTheFirstCommandThatHides) {
    const std::string restore = "-LAYER A R *BEFORE*\n\n";
    const std::string hide = "CloseSelLayer\n(handent \"212\")\n\n";
    const std::string isolate = "OpenSelLayer\n(handent \"210\")\n\n";
    const std::string plan = test::read(pipes);
    const outcome first = run(plan, list + hide + list + isolate);
    const outcome again =
        run(first.saved, list + restore + list + "SetAllPipeLayOpen\nsfxc\n(handent \"210\")\n\n");
    EXPECT_NE(again.lists.at(0), first.lists.at(0));
    EXPECT_EQ(again.lists.at(1), first.lists.at(0)) << "the first of that session, not the second";
    const outcome third = run(again.saved, std::string(restore) + list);
    EXPECT_EQ(third.lists.at(0), first.lists.at(0)) << "that of the later session";
    EXPECT_EQ(first.saved.find("*BEFORE*"), first.saved.rfind("*BEFORE*"));

    EXPECT_EQ(run(plan, isolate + "U\n").saved, plan) << "it goes with its command";
    EXPECT_NE(run(plan, isolate + "U\n" + isolate).saved.find("*BEFORE*"), std::string::npos);
    for (const std::string& script :
         {std::string("-LAYER OFF * Y \n"), std::string("SetAllPipeLayOpen\n"), "LAYERPMODE OFF\n" + isolate})
        EXPECT_EQ(run(plan, script).saved.find("*BEFORE*"), std::string::npos) << script;
    const std::string old = test::read(test::drawing("r12.dxf"));
    EXPECT_EQ(run(old, "FrozenLayer\nL\n\n").saved.find("BEFORE"), std::string::npos)
        << "it has no place there";
}
