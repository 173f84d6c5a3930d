// The layer commands with dialogs, as a drafter runs them: a drawing, a script, the transcript, and what was
// saved.
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/rx/applications.h"
#include "tests/ed_session.h"
#include "tests/layer_support.h"
#include "ui/presenter.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

using test::says;
using test::Sessions;
using test::texts;

// A drawing as "CODE VALUE|CODE VALUE|", without padding.
std::string flat(const std::string& drawing) {
    std::string text;
    std::istringstream in(drawing);
    for (std::string code, value; std::getline(in, code) && std::getline(in, value);)
        for (std::string* const line : {&code, &value}) {
            line->erase(0, line->find_first_not_of(' '));
            line->erase(line->find_last_not_of(" \r") + 1);
            text += *line + (line == &code ? ' ' : '|');
        }
    return text;
}

// The table of layers, of a drawing as it stands or flat.
std::string layers_of(const std::string& drawing) {
    const std::size_t begin = std::min(drawing.find("  2\nLAYER\n"), drawing.find("|2 LAYER|"));
    return begin != drawing.npos ? drawing.substr(begin, drawing.find("ENDTAB", begin) - begin)
                                 : std::string();
}

// The same with every byte of it, of any drawing.
std::string bytes_of_layers(const std::string& drawing) {
    std::string bytes;
    bool inside = false;
    std::istringstream in(drawing);
    for (std::string code, value; std::getline(in, code) && std::getline(in, value);) {
        const std::string group = flat(code + "\n" + value + "\n");
        inside = (inside || group == "2 LAYER|") && group != "0 ENDTAB|";
        if (inside)
            bytes += code + "\n" + value + "\n";
    }
    return bytes;
}

using replacements = std::vector<std::pair<std::string, std::string>>;

std::string replaced(std::string text, const replacements& all) {
    for (const auto& [old, with] : all) {
        const std::size_t at = text.find(old);
        EXPECT_NE(at, text.npos) << old;
        if (at != text.npos)
            text.replace(at, old.size(), with);
    }
    return text;
}

// Layers of every sort of colour in GBK: True is off, its index not the nearest one, and it has a
// transparency.
std::string colored_drawing() {
    return test::read(test::drawing("layer_colors.dxf"));
}

} // namespace

TEST(LayerDialogs, OpenLayerTurnsOnWhatIsCheckedAndShowsItsEntities) {
    const struct {
        std::string script;
        texts changed;
        bool refreshes;
        bool leaves; // something hidden
    } rows[] = {
        // A locked layer is turned on, but its entities stay as they are.
        {"OpenLayer\n1\nOK\n", {"- -3", "+ 3"}, true, true},
        {"OpenLayer\n2\n\n", {"- -9", "+ 9", "- 60", "- 1", "- 60", "- 1"}, true, false},
        {"OpenLayer\n\n", {}, true, false},
        {"OpenLayer\n*\nCANCEL\n", {}, false, false},
        {"OpenLayer\n*\n^C\n", {}, false, false},
        {"OpenLayer\n*\nOK\nU\n", {}, true, true},
        {"OpenLayer\n1 OK\nOpenLayer\n1 OK\nU\n", {"- -3", "+ 3"}, true, true},
    };
    for (const auto& row : rows) {
        Sessions sessions(colored_drawing());
        const test::run_result ran = sessions.run(row.script);
        const texts changed = test::differences(colored_drawing(), sessions.saved);
        EXPECT_EQ(changed, row.changed) << row.script << ran.out;
        EXPECT_EQ(says(ran, "Regenerating model."), row.refreshes) << ran.out;
        EXPECT_EQ(says(ran, "\n1 个图元仍然隐藏：1 个在锁定的图层上。\n"), row.leaves) << ran.out;
        EXPECT_TRUE(says(ran, "打开图层\n      层名 描述\n1 [ ] a\n2 [ ] True\n")) << ran.out;
    }
    const test::run_result open = Sessions(colored_drawing()).run("-LAYER ON *\n\nOpenLayer\n");
    EXPECT_TRUE(says(open, "OpenLayer\n所有图层都是打开的！\n")) << open.out;
}

namespace {

// Says yes to all, and keeps what it was shown.
class AllChecked final : public ui::presenter {
public:
    bool run(ui::dialog& dialog) override {
        for (ui::check_list& list : dialog.lists)
            for (ui::line& line : list.lines)
                line.checked = true;
        shown = dialog;
        return true;
    }
    void tell(std::wstring_view) override {}

    ui::dialog shown;
};

} // namespace

// The dialog describes itself: whoever shows it gets titles, columns and sizes.
TEST(LayerDialogs, TheListOfExternalLayersIsThereWhenItHasAny) {
    rx::applications& applications = rx::applications::instance();
    AllChecked window;
    test::session session(test::drawing("layer_states.dxf"));
    ASSERT_TRUE(applications.load(L"zef_pipeSystem"));
    ui::presenter* const before = ui::set_presenter(&window);
    for (const std::size_t lists : {2u, 0u, 1u}) { // then all are on, then one of them is off again
        window.shown = {};
        EXPECT_TRUE(ed::editor::instance().run_command(L"OpenLayer"));
        ASSERT_EQ(window.shown.lists.size(), lists);
        int height = 0;
        for (const ui::check_list& list : window.shown.lists) {
            const bool external = height != 0;
            height += list.height;
            ASSERT_EQ(list.columns.size(), 2u);
            EXPECT_EQ(list.columns[0].name, L"层名");
            EXPECT_EQ(list.columns[0].width, external ? 180 : 80);
            EXPECT_EQ(list.columns[1].name, L"描述");
            EXPECT_EQ(list.columns[1].width, 80);
            for (const ui::line& line : list.lines)
                EXPECT_EQ(line.cells[0].find(L'|') != std::wstring::npos, external);
        }
        EXPECT_EQ(height, 300 * static_cast<int>(lists));
        if (lists == 0) {
            const AcDbObjectPointer<AcDbLayerTableRecord> own(session.id(0x13), AcDb::kForWrite);
            own->setIsOff(true);
        }
    }
    ui::set_presenter(before);
    applications.unload_all();
}

// Picked by points: before R13 entities need not have handles.
TEST(LayerDialogs, ViewportsFreezeAndThawInBothFormsOfFiles) {
    const std::string freeze = "FrozenViewLayer\n";
    const std::string thaw = "UnFrozenViewAllLayer\n";
    const std::string frame = "175,100\n"; // of the viewport in which 墙 is frozen
    const struct {
        std::string script;
        texts r2018;
        texts r12;
    } rows[] = {
        // In a viewport that is picked those layers are listed that are not frozen there.
        {freeze + frame + "2\nOK\n\n", {"+ 331", "+ 32"}, {"+ 1003", "+ \xB9\xDC"}},
        {freeze + frame + "2\nOK\n" + frame + "2\nOK\n\n",
         {"+ 331", "+ 32", "+ 331", "+ 33"},
         {"+ 1003", "+ \xB9\xDC", "+ 1003", "+ \xCD\xBC\xBF\xF2"}},
        {freeze + frame + "2\nCANCEL\n\n", {}, {}},
        {freeze + frame + "2\n^C\n\n", {}, {}},
        {freeze + "^C\n", {}, {}},
        {freeze + frame + "2\nOK\n\nU\n", {}, {}},
        {freeze + "9999,9999\n", {}, {}},
        // The sheet itself has nothing frozen, so a viewport is asked for.
        {thaw + frame + "1\nOK\n", {"- 331", "- 31"}, {"- 1003", "- \xC7\xBD"}},
        {thaw + frame + "*\nCANCEL\n", {}, {}},
        {thaw + frame + "*\nOK\nU\n", {}, {}},
        {thaw + "9999,9999\n", {}, {}},
        {thaw + "\n", {}, {}},
        {thaw + "^C\n", {}, {}},
        // In a viewport it is that one.
        {"MSPACE\n" + thaw + "*\n\n", {"- 331", "- 31"}, {"- 1003", "- \xC7\xBD"}},
    };
    for (const char* const name : {"viewports_r2018.dxf", "viewports_r12.dxf"})
        for (const auto& row : rows) {
            const std::string drawing = test::read(test::drawing(name));
            Sessions sessions(drawing);
            const test::run_result ran = sessions.run(row.script);
            const bool old = std::string_view(name) == "viewports_r12.dxf";
            EXPECT_EQ(test::differences(drawing, sessions.saved), old ? row.r12 : row.r2018)
                << name << '\n'
                << row.script << ran.out;
        }
}

TEST(LayerDialogs, LayersOfPickedEntitiesFreezeInTheCurrentViewport) {
    const std::string drawing = test::read(test::drawing("viewports_r2018.dxf"));
    const struct {
        const char* script;
        texts changed;
    } rows[] = {
        {"MSPACE\nUnFrozenViewAllLayer\n*\n\nFrozenViewLayer\n(handent \"60\")\n(handent \"60\")\n\n", {}},
        {"MSPACE\nUnFrozenViewAllLayer\n*\n\nFrozenViewLayer\n(handent \"60\")\n\nU\n", {"- 331", "- 31"}},
        // On the sheet it is the sheet's own.
        {"LINE 0,0 400,0\n\nFrozenViewLayer\n200,0\n\nERASE (handent \"2DF\")\n\n", {"+ 331", "+ 30"}},
    };
    for (const auto& row : rows) {
        Sessions sessions(drawing);
        const test::run_result ran = sessions.run(row.script);
        EXPECT_EQ(test::differences(drawing, sessions.saved), row.changed) << row.script << ran.out;
    }
    for (const char* const command : {"FrozenViewLayer", "UnFrozenViewAllLayer"}) {
        const test::run_result ran = Sessions(colored_drawing()).run(std::string(command) + "\n");
        EXPECT_TRUE(says(ran, command + std::string("\n本命令必须在图纸布局中使用！\n"))) << ran.out;
    }
}

// A file of a program that leaves the sheet's own viewport to the editor.
TEST(LayerDialogs, ASheetWithoutViewportsGetsItsOwn) {
    std::string bare;
    std::string record;
    std::istringstream in(test::read(test::drawing("viewports_r2018.dxf")));
    for (std::string code, value; std::getline(in, code) && std::getline(in, value);) {
        if (flat(code + "\n\n") == "0 |") {
            bare += flat(record).starts_with("0 VIEWPORT|5 ") ? std::string() : record;
            record.clear();
        }
        record += code + "\n" + value + "\n";
    }
    bare += record;
    ASSERT_EQ(flat(bare).find("|0 VIEWPORT|5 "), std::string::npos);
    for (const char* const begin : {"", "SETVAR CTAB Model\nSETVAR CTAB 平面\n"}) {
        Sessions sessions(bare);
        sessions.run(begin + std::string("LINE 0,0 400,0\n\nFrozenViewLayer\n200,0\n\n"));
        const test::run_result thawed = sessions.run("UnFrozenViewAllLayer\n*\n\nUnFrozenViewAllLayer\n\n");
        EXPECT_TRUE(says(thawed, "UnFrozenViewAllLayer\n视口已解冻图层\n")) << thawed.out;
        EXPECT_TRUE(says(thawed, "请选择需要解冻图层的视口<退出>:\n")) << "there is none frozen any more";
    }
    Sessions undone(bare);
    undone.run("LINE 0,0 400,0\n\nFrozenViewLayer\n200,0\n\nU\nU\n");
    EXPECT_EQ(test::differences(bare, undone.saved), texts());
}

TEST(LayerDialogs, TitlesAndPromptsAreThoseOfTheAddOn) {
    const test::run_result views =
        Sessions(test::read(test::drawing("viewports_r2018.dxf")))
            .run("FrozenViewLayer\n175,100\n\n\nUnFrozenViewAllLayer\n175,100\n\n");
    for (const char* const text :
         {"\n请选择需要冻结的视口或视口图层上的任意图元 <退出>:175,100\n视口未冻结图层\n",
          "\n请选择需要解冻图层的视口<退出>:175,100\n", "\n视口已解冻图层\n"})
        EXPECT_TRUE(says(views, text)) << text << views.out;
    const test::run_result colors = Sessions(colored_drawing()).run("tbds\nE\n1\n\n3\ntbds\nE\n1\n\n3\nN\n");
    for (const std::string& text :
         {std::string(
              "\n请输入平面图要变成的颜色(1-红/2-黄/3-绿/4-青/5-蓝/6-粉/7-白)[选择图层(E)/"
              "选择颜色(C)]<当前颜色值(7)>:E\n选择图层\n      层名  颜色        描述\n1 [ ] 0     7\n"),
          std::string("给水  0,0,255     给水\n"), std::string("<当前颜色值(3)>:"),
          std::string("\n警告:本次操作的图层与上次一致，是否继续<N>:N\n")})
        EXPECT_TRUE(says(colors, text)) << text << colors.out;
}

TEST(LayerDialogs, PaintingTakesAnIndexAndKeepsTheSign) {
    Sessions sessions(colored_drawing());
    sessions.run("tbds\nE\n1-5\n\nC\nColor=255,128,0\n\n\n");
    const std::string painted =
        replaced(flat(colored_drawing()), {{"62 7|", "62 30|"},
                                           {"62 11|420 13210000|430 RAL CLASSIC$RAL 1000|", "62 30|"},
                                           {"62 -3|", "62 -30|"},
                                           {"62 -9|420 16744448|", "62 -30|"},
                                           {"62 5|420 255|", "62 30|"}});
    EXPECT_EQ(layers_of(flat(sessions.saved)), layers_of(painted));
    // In the order of the names, whatever their case, and of true colours the index that is nearest.
    const std::string pairs =
        "|1 0|90 7|1 a|90 3|1 Book|90 21|1 True|90 30|1 \xB8\xF8\xCB\xAE|90 5|0 ENDSEC|";
    EXPECT_NE(flat(sessions.saved).find(pairs), std::string::npos) << flat(sessions.saved);
    EXPECT_TRUE(says(sessions.run("tbds\n^C\n"), "<当前颜色值(30)>:*Cancel*\n"));
}

TEST(LayerDialogs, ColoursComeBackAsTheyWere) {
    const replacements other_pair = {{"1\nTrue\n 90\n       30\n  1\n", "1\nTrue\n 90\n       31\n  1\n"}};
    const struct {
        const char* between; // painting and giving back
        replacements edits;  // of the file in between
        replacements changed;
    } rows[] = {
        {"LINE 0,0 1,1\n\n", {}, {}},
        // What was remembered first stays, whatever is painted over it.
        {"tbds\nE\n*\n\n40\nY\ntbds\nE\n2-3\n\n50\n", {}, {}},
        {"-LAYER ON True\n\n", {}, {{"62 -9|420 16744448|", "62 9|420 16744448|"}}},
        {"-LAYER C -6 True\n\n", {}, {{"62 -9|420 16744448|", "62 -30|"}}},
        {"-LAYER R True Other\n\n", {}, {{"2 True|70 0|62 -9|420 16744448|", "2 Other|70 0|62 -30|"}}},
        // A program that knows indices alone has remembered another one.
        {"", other_pair, {{"62 -9|420 16744448|", "62 -31|"}}},
    };
    for (const auto& row : rows) {
        Sessions sessions(colored_drawing());
        sessions.run("tbds\nE\n*\nOK\n30\n");
        sessions.run(row.between);
        sessions.saved = replaced(sessions.saved, row.edits);
        const test::run_result ran = sessions.run("yshf\nyshf\n");
        EXPECT_TRUE(says(ran, "Command: yshf\n没有找到相关信息，图层颜色恢复失败！\n")) << ran.out;
        EXPECT_EQ(layers_of(flat(sessions.saved)), layers_of(replaced(flat(colored_drawing()), row.changed)))
            << row.between << ran.out;
        if (row.changed.empty()) {
            EXPECT_EQ(layers_of(sessions.saved), layers_of(colored_drawing())) << "byte for byte";
        }
        EXPECT_EQ(sessions.saved.find("TuCengDanSe"), std::string::npos) << row.between;
    }
    // Indices that no layer can have come back as those that they are seen in.
    Sessions odd(replaced(colored_drawing(),
                          {{" 62\n   250\n", " 62\n     0\n"}, {" 62\n     5\n", " 62\n   256\n"}}));
    odd.run("tbds\nE\n*\nOK\n3\nyshf\n");
    EXPECT_EQ(layers_of(flat(odd.saved)),
              layers_of(replaced(flat(colored_drawing()), {{"62 250|", "62 7|"}})));
}

TEST(LayerDialogs, NothingIsPaintedUnlessLayersAndAColourAreGiven) {
    const struct {
        const char* script;
        const char* said;
    } rows[] = {
        {"tbds\n\n", ""},
        {"tbds\n3\n", ""},
        {"tbds\n^C\n", ""},
        {"tbds\nE\n*\nCANCEL\n3\n", ""},
        {"tbds\nE\n*\n^C\n3\n", ""},
        {"tbds\nE\n\n3\n", ""},
        {"tbds\nE\n*\n\n^C\n", ""},
        // These are no colours of layers: it is asked again.
        {"tbds\nE\n*\n\n0\n256\n300\n-1\n^C\n", "-1\n颜色应为 1 到 255！\n请输入"},
        // One step of undo, each of them.
        {"tbds\nE\n*\n\n3\nU\n", "Regenerating model."},
        {"tbds\nE\n*\n\nC\nColor=4\nCANCEL\nC\n^C\n\nU\n", "<当前颜色值(7)>:\n"},
    };
    for (const auto& row : rows) {
        Sessions sessions(colored_drawing());
        const test::run_result ran = sessions.run(row.script);
        EXPECT_EQ(sessions.saved, colored_drawing()) << row.script << ran.out;
        EXPECT_TRUE(says(ran, row.said)) << row.script << ran.out;
    }
}

TEST(LayerDialogs, PaintingTheSameLayersAgainIsAskedFor) {
    const struct {
        std::string script;
        bool asks;
        bool paints;
    } rows[] = {
        {"tbds\nE\n1,3\n\n5\n\n", true, false},       {"tbds\nE\n1,3\n\n5\nN\n", true, false},
        {"tbds\nE\n1,3\n\n5\n^C\n", true, false},     {"tbds\nE\n1,3\n\n5\ny\n", true, true},
        {"tbds\nE\n3\n\nE\n1\n\n5\n\n", true, false}, {"tbds\nE\n1\n\n5\n", false, true},
        {"tbds\nE\n1-3\n\n5\n", false, true},         {"tbds\nE\n1,4\n\n5\n", false, true},
    };
    Sessions first(colored_drawing());
    first.run("tbds\nE\n1,3\n\n3\n");
    for (const auto& row : rows) {
        Sessions again(first.saved);
        const test::run_result ran = again.run(row.script);
        EXPECT_EQ(says(ran, "警告"), row.asks) << row.script << ran.out;
        EXPECT_EQ(again.saved != first.saved, row.paints) << row.script << ran.out;
        if (!row.paints)
            continue;
        Sessions undone(again.saved);
        undone.run("yshf\nU\n");
        EXPECT_EQ(undone.saved, again.saved) << row.script;
        again.run("yshf\n");
        EXPECT_EQ(layers_of(again.saved), layers_of(colored_drawing())) << row.script;
    }
    // Another colour since is what is remembered then.
    first.run("-LAYER C -6 a\n\ntbds\nE\n3\n\n4\nyshf\n");
    EXPECT_EQ(layers_of(flat(first.saved)),
              layers_of(replaced(flat(colored_drawing()), {{"62 -3|", "62 -6|"}})));
}

TEST(LayerDialogs, ADrawingThatCannotRememberColoursIsNotPainted) {
    const std::string drawing = test::read(test::drawing("viewports_r12.dxf"));
    const test::run_result ran = Sessions(drawing).run("tbds\nE\n*\n\n3\n", 4);
    EXPECT_TRUE(says(ran, "不能保存图层的原颜色！请先用SAVEAS 2018")) << ran.out;
    EXPECT_EQ(ran.err.find("changed and not saved"), std::string::npos) << ran.err;
}

// In the drawings of other programs, too, some of which pad their numbers in a manner of their own.
TEST(LayerDialogs, ColoursOfTheWorldsDrawingsComeBack) {
    int restored = 0;
    for (const std::filesystem::path& file : test::corpus()) {
        const std::string drawing = test::read(file);
        const test::folder folder;
        const std::string out = (folder / "out.dxf").string();
        const std::string script = "tbds\nE\n*\n\n3\n";
        if (test::zefhost({file.string(), "-o", out}, script).status != 0 || layers_of(flat(drawing)).empty())
            continue; // R12 and before keep nothing
        EXPECT_NE(layers_of(flat(test::read(out))), layers_of(flat(drawing))) << file;
        EXPECT_EQ(test::zefhost({out, "-o", out}, "LINE 0,0 1,1\n\nyshf\n").status, 0) << file;
        EXPECT_EQ(bytes_of_layers(test::read(out)), bytes_of_layers(drawing)) << file;
        ++restored;
    }
    EXPECT_TRUE(test::corpus().empty() || restored > 10);
}
