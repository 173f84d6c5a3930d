// Checking a drawing against the standard: what is found and told, by which rules, and how it is put right.
#include "module/check/CheckRules.h"
#include "tests/layer_support.h"
#include "tests/pipe_support.h"

#include <gtest/gtest.h>

namespace {

using test::says;
using test::texts;

// A layer of R2018, and a line.
std::string layer(const std::string& handle, const std::string& name, const std::string& looks) {
    return "  0\nLAYER\n  5\n" + handle +
           "\n330\n3\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\n" + name + "\n 70\n0\n" +
           looks;
}
std::string line(const std::string& handle, const std::string& on, double x0, double y0, double x1, double y1,
                 const std::string& more = "") {
    std::ostringstream text;
    text << "  0\nLINE\n  5\n"
         << handle << "\n330\n28\n100\nAcDbEntity\n  8\n"
         << on << "\n"
         << more << "100\nAcDbLine\n 10\n"
         << x0 << "\n 20\n"
         << y0 << "\n 30\n0\n 11\n"
         << x1 << "\n 21\n"
         << y1 << "\n 31\n0\n";
    return text.str();
}
const std::string good_looks = " 62\n3\n  6\nContinuous\n370\n50\n390\nF\n";

// The drawing with some layers and entities more.
std::string drawing_with(const std::string& layers, const std::string& entities) {
    std::string text = test::read_drawing(test::drawing("r2018.dxf"));
    const std::size_t table = text.find("  0\nLAYER\n");
    EXPECT_NE(table, text.npos);
    text.insert(table, layers);
    const std::string section = "  2\nENTITIES\n";
    const std::size_t at = text.find(section);
    EXPECT_NE(at, text.npos);
    text.insert(at + section.size(), entities);
    return text;
}

class Checks : public testing::Test, public test::Sessions {
protected:
    Checks()
        : Sessions(drawing_with(
              layer("E1", "vpipe_给水", " 62\n5\n  6\nContinuous\n370\n50\n390\nF\n") +
                  layer("E2", "BEND-给水", good_looks) + layer("E3", "没有用的", good_looks),
              line("F1", "BEND-给水", 0, 0, 1000, 0) + line("F2", "BEND-给水", 500, 0, 2000, 0, " 62\n1\n") +
                  line("F3", "BEND-给水", 2004, 3, 3000, 500) + line("F4", "vpipe_给水", 7, 7, 7, 7))) {}

    // The rules of the profile, of which only these are on.
    void only(const std::string& rules) const {
        std::string text = "<CheckRules>";
        for (std::size_t i = 0; i < checkRuleCount; ++i) {
            const std::string key = base::narrow(GetRuleInfo(static_cast<CheckRule>(i)).m_key);
            text += "<Rule Name=\"" + key + "\" Severity=\"" +
                    (rules.find(key) != rules.npos ? "错误" : "关") + "\"/>";
        }
        rules_file(text + "</CheckRules>");
    }
    void rules_file(const std::string& text) const {
        std::filesystem::create_directories(folder_ / "profile" / "sys");
        folder_.write("profile/sys/kol.check.xml", text);
    }
};

TEST_F(Checks, TellKindsWithHandlesAndPlacesAndEndWithStatusOne) {
    run("QUIT\n"); // makes the profile
    only("layer-near layer-empty pipe-zero pipe-overlap pipe-gap own-properties");
    const auto ran = run("jcjk\nL\n\n", 1);
    EXPECT_TRUE(says(ran, "可修复  图层\"vpipe_给水\"应为\"VPIPE-给水\"：E1\n")) << ran.out;
    EXPECT_TRUE(says(ran, "图层上没有图元，也没有被引用：E3")) << ran.out;
    EXPECT_TRUE(says(ran, "图层\"BEND-给水\"上的图元颜色不随层：F2 (500,0)\n")) << ran.out;
    EXPECT_TRUE(says(ran, "系统\"给水\"的管线端点没有接上：F3 (2004,3)\n")) << ran.out;
    // It overlaps, but has a colour of its own; the layer without the right name is no pipe layer yet.
    EXPECT_TRUE(says(ran, "        系统\"给水\"的管线重叠：F2 (500,0)\n")) << ran.out;
    EXPECT_FALSE(says(ran, "F4")) << ran.out;
    EXPECT_TRUE(says(ran, "错误 6，警告 0，提示 0；可修复 5 处。")) << ran.out;
    only("pipe-diameter");
    EXPECT_TRUE(says(run("jcjk\n\n"), "\n没有发现问题。\n"));
}

TEST_F(Checks, AreAskedForEachPromptAndEndWithEscape) {
    run("QUIT\n");
    only("layer-near");
    for (const char* script : {"jcjk\n^C\n", "jcjk\nF\n\n\n", "jcjk\nF\n^C\n", "jcjk\nR\nCANCEL\n\n"})
        run(script, 1);
    const std::string before = saved;
    for (const char* script :
         {"gxfz\n\n", "gxfz\n^C\n", "gxfz\nA\n\n", "gxfz\nA\n^C\n", "gxfz\nA\nL\nN\n", "gxfz\nK\nCANCEL\n",
          "gxfz\nK\nOK\n", "gxfz\nM\n\n", "gxfz\nT\n^C\n", "gxfz\nL\n\n"})
        run(script);
    EXPECT_EQ(saved, before);
    EXPECT_TRUE(says(run("jcjk\nF\n" + (folder_ / "a.txt").string() + "\n\n", 4), ".json 或 .html"));
    EXPECT_TRUE(says(run("jcjk\nF\n" + (folder_ / "none" / "a.html").string() + "\n\n", 4), "报告不能写入"));
    run("jcjk\nF\n" + (folder_ / "a.html").string() + "\n\n", 1);
    const std::string html = test::read(folder_ / "a.html");
    EXPECT_TRUE(html.ends_with("</html>\n") && html.find("图层&quot;vpipe_给水&quot;") != html.npos) << html;
}

// The picture shows all that is drawn, 400 mm at its longest with a hundredth of room and a border of 5 mm.
TEST_F(Checks, ReportsHaveAPictureWithThePlaces) {
    run("ERASE\nALL\nR\n(handent \"F1\")\n(handent \"F2\")\n(handent \"F3\")\n\n");
    only("pipe-overlap pipe-gap own-properties");
    const test::run_result ran = run("jcjk\nF\n" + (folder_ / "a.html").string() + "\n\n", 1);
    EXPECT_FALSE(says(ran, "picture")) << ran.out;
    const std::string html = test::read(folder_ / "a.html");
    EXPECT_NE(html.find("<image width=\"410.00\" height="), html.npos);
    EXPECT_NE(html.find("data:image/svg+xml;base64,PD94bWw"), html.npos);
    EXPECT_NE(html.find("：3 处。</figcaption>"), html.npos) << html;
    EXPECT_NE(html.find("cx=\"74.28\" cy=\"74.28\" r=\"1.5\"><title>F2 系统&quot;给水"), html.npos) << html;
    EXPECT_NE(html.find("cx=\"270.88\" cy=\"73.89\" r=\"1.5\"><title>F3 "), html.npos) << html;
}

TEST_F(Checks, TakeTheirRulesFromTheFileBesideTheStandard) {
    run("QUIT\n");
    const struct {
        const char* rules;
        const char* says;
    } rows[] = {
        {"<CheckRules><Rule Name=\"layer-neer\" Severity=\"关\"/></CheckRules>", "没有规则\"layer-neer\""},
        {"<CheckRules><Rule Name=\"mark\" Severity=\"off\"/></CheckRules>", "的等级\"off\"不是"},
        {"<CheckRules><Tolerance Name=\"gap\" Value=\"1O\"/></CheckRules>", "容差\"gap\"的值\"1O\"不是数"},
        {"<CheckRules><Rule", "第 1 行"},
        {"<Other/>", "不是检查规则文件"},
    };
    for (const auto& row : rows) {
        rules_file(row.rules);
        for (const char* command : {"jcjk\n\n", "gxfz\nY\n"}) {
            const auto ran = run(command, 4);
            EXPECT_TRUE(ran.err.find(row.says) != ran.err.npos &&
                        ran.err.find("kol.check.xml") != ran.err.npos)
                << ran.err;
        }
    }
    rules_file("<CheckRules><Rule Name=\"own-properties\" Severity=\"提示\" Layers=\"没有*\"/>"
               "<Tolerance Name=\"gap\" Value=\"2\"/>"
               "<Alias Layers=\"没有?的\" System=\"给水\" LayerType=\"阀门\"/></CheckRules>");
    const auto ran = run("jcjk\nR\n图层名近似=提示\nOK\n\n", 1);
    EXPECT_TRUE(says(ran, "图层\"没有用的\"应为\"VALVE-给水\"") ||
                says(ran, "图层\"没有用的\"应为\"VALVE_给水\""))
        << ran.out;
    EXPECT_FALSE(says(ran, "没有接上") || says(ran, "的图元颜色不随层")) << ran.out;
    EXPECT_TRUE(says(ran, "警告  图层名近似") && says(ran, "提示  图层名近似")) << ran.out;
    EXPECT_NE(test::read(folder_ / "profile/sys/kol.check.xml").find("没有?的"), std::string::npos);
}

TEST_F(Checks, PutRightByKindAndAllOfItAndTheWayBackIsOneStep) {
    run("QUIT\n");
    const std::string before = saved;
    auto ran = run("gxfz\nK\n特性不随层\nOK\nY\n");
    EXPECT_EQ(test::changes(before, saved), (texts{"102: 62 256", "F2: 62 256", "102: -62 1", "F2: -62 1"}))
        << ran.out;
    EXPECT_TRUE(says(ran, "\n修复 2 处（特性不随层 2），复查还有可修复的 0 处。")) << ran.out;
    // Now the two lines can become one, and the layer with the right name has a line without length.
    only("layer-near pipe-zero pipe-overlap pipe-gap layer-color");
    const std::string halfway = saved;
    ran = run("gxfz\nY\n");
    const texts changed = test::changes(halfway, saved);
    const auto has = [&](const char* change) {
        return std::find(changed.begin(), changed.end(), change) != changed.end();
    };
    EXPECT_TRUE(has("F2: gone") && has("F4: gone") && has("vpipe_给水: gone")) << ran.out;
    EXPECT_TRUE(has("F1: 11 2000.0") && has("F3: 10 2000.0") && has("F3: 20 0.0"))
        << testing::PrintToString(changed);
    EXPECT_TRUE(says(run("jcjk\n\n"), "没有发现问题"));
    saved = halfway;
    run("gxfz\nY\nU\n");
    EXPECT_EQ(saved, halfway);
    // What is locked stays, and one line tells.
    ran = run("-LAYER\nLO\nBEND-给水\n\ngxfz\nY\n");
    EXPECT_TRUE(says(ran, "个图元没有修复：") && says(ran, "在锁定的图层上")) << ran.out;
    EXPECT_FALSE(says(ran, "可修复的 0 处")) << ran.out;
}

TEST_F(Checks, MapLayersByAFileAndBackAndLearnIt) {
    const std::string map =
        folder_.write("map.txt", "# x\nBEND-*=弯_*\n没有用的=BEND-给水\n弯*=不用\n").string();
    const std::string before = saved;
    auto ran = run("gxfz\nM\n" + map + "\nY\n");
    EXPECT_TRUE(says(ran, "图层\"BEND-给水\" → \"弯_给水\"\n") && says(ran, "图层改名 2 个，合并 0 个。"))
        << ran.out;
    EXPECT_TRUE(test::objects(saved).contains("弯_给水"));
    const std::string learnt = (folder_ / "learnt.txt").string();
    run("gxfz\nL\n" + folder_.write("before.dxf", before).string() + "\n" + learnt + "\n");
    EXPECT_TRUE(test::read(learnt).ends_with("BEND-给水=弯_给水\r\n没有用的=BEND-给水\r\n"))
        << test::read(learnt);
    ran = run("gxfz\nT\n" + learnt + "\nY\n");
    EXPECT_EQ(test::changes(before, saved), texts()) << ran.out;
    // A name that is taken: merged, and of two that became one the first comes back.
    const std::string merge =
        folder_.write("merge.txt", "vpipe_给水=BEND-给水\n没有用的=BEND-给水\n0=A\n").string();
    ran = run("gxfz\nM\n" + merge + "\nY\n");
    EXPECT_TRUE(says(ran, "图层改名 0 个，合并 2 个。") && says(ran, "图层\"0\"不处理：0层不能改名。"))
        << ran.out;
    EXPECT_TRUE(says(run("gxfz\nT\n" + merge + "\nN\n"), "1 行不能反向")) << ran.out;
    for (const char* bad : {"A\n", "=B\n", "A=\n", "A*=B**\n", "A=B=C\n"}) {
        const auto refused = run("gxfz\nM\n" + folder_.write("bad.txt", bad).string() + "\n", 4);
        EXPECT_NE(refused.err.find("bad.txt 第 1 行"), std::string::npos) << refused.err;
    }
    // Of a drawing with a reference that is not there, other handles than ours.
    const std::string other = test::drawing("layer_tools/pipes.dxf").string();
    EXPECT_TRUE(says(run("gxfz\nL\n" + other + "\n"), "两个图形的图层没有不同。"));
    run("gxfz\nM\nnowhere.txt\n", 4);
    run("gxfz\nL\nnowhere.dxf\n", 4);
}

class ChecksOfPipes : public test::pipe_drawing, public test::Sessions {
protected:
    ChecksOfPipes() : Sessions("") {}
    // A good pipe but for what the caller changes.
    TDbPipe* pipe(double y, const wchar_t* system = L"消防") const {
        TDbPipe* const made = test::pipe_between({0, y, 0}, {1000, y, 0}, system);
        made->ChangeValues().m_material = 0;
        made->ChangeValues().m_dn = 50;
        return made;
    }
};

TEST_F(ChecksOfPipes, FindWhatTheStandardLacks) {
    append(pipe(0));
    append(pipe(0));
    append(pipe(100, L"没有的系统"));
    TDbPipe* bad = pipe(200);
    bad->ChangeValues().m_dn = 51;
    append(bad);
    bad = pipe(300);
    bad->ChangeValues().m_material = 999;
    append(bad);
    append(test::pipe_between({5, 5, 0}, {5, 5, 0}, L"消防"));
    Sessions::saved = pipe_drawing::saved(*database);
    auto ran = run("jcjk\n\n", 1);
    for (const char* text : {"管线的系统\"没有的系统\"不在标准中", "没有公称直径 51",
                             "管材号 999 没有对应的管材", "系统\"消防\"的管线在图层\"0\"上",
                             "可修复  系统\"消防\"的管线重叠", "可修复  系统\"消防\"的管线没有长度"})
        EXPECT_TRUE(says(ran, text)) << text << ran.out;
    run("gxfz\nY\n");
    ran = run("jcjk\n\n", 1);
    for (const char* text : {"在图层\"0\"上", "重叠", "没有长度"})
        EXPECT_FALSE(says(ran, text)) << text << ran.out;
    EXPECT_TRUE(says(ran, "没有公称直径 51")) << ran.out;
}

} // namespace
