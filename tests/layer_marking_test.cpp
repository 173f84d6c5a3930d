// Marking as a drafter does it: a system is chosen on the layer control bar, entities and layers are marked
// for it, moved to its layers, and cleared, on a GBK drawing with pipes, notes and another program's data.
#include "sys/dbase_file.h"
#include "tests/layer_support.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>

namespace {

using test::picks;
using test::says;
using test::texts;

constexpr const char* bar = "tckz\nBAR 给水管线\n";
constexpr const char* marked = "标识图元成功！";
constexpr const char* refused = "标识图元失败，图元所在图层属于某管线系统！";
constexpr const char* entityPrompt =
    "\n请选择标记图元{标识图层(A)/转换图元图层(X)/清除图元标识(S)/清除图层标识(D)}:<退出>";
constexpr const char* layerPrompt =
    "\n请选择标识图层上的任意图元{标识图元(W)/转换图元图层(X)/清除图元标识(S)/清除图层标识(D)}:<退出>";
constexpr const char* convertPrompt =
    "\n请选择需要转换图层的图元{标识图层(A)/标识图元(W)/清除图元标识(S)/清除图层标识(D)}:<退出>";

// The drawing with data of another program at entity 212 and at the layer 说明.
std::string drawing_of_others() {
    std::string text = test::read(test::drawing("layer_tools/pipes.dxf"));
    const std::string data = "1001\nOTHER\n1000\nkept\n";
    const auto put_behind = [&](const std::string& begin) {
        const std::size_t end = text.find("\n  0\n", text.find(begin));
        EXPECT_NE(end, std::string::npos);
        text.insert(end + 1, data);
    };
    put_behind("\n  5\n212\n");
    put_behind("\n  5\n15\n");
    return text;
}

// One drafter, who works on and on.
class Drafter : public test::Sessions {
public:
    Drafter() : Sessions(drawing_of_others()) {
        folder_.write("plan.dxf", test::read(test::drawing("layer_tools/plan.dxf")));
    }

    // What differs from the drawing as it was at first: the common groups, marks, and what came.
    texts changed() const { return test::changes(plain(drawing_of_others()), plain(saved)); }

    std::filesystem::path table() const { return folder_ / "profile/sys/userlayer.dbf"; }
    // "8 设备 给水" for each live row.
    texts rows() const {
        texts found;
        const auto read = sys::read_dbase(table(), 936);
        EXPECT_TRUE(read);
        for (std::size_t row = 0; read && row < read->row_count(); ++row)
            if (!read->is_deleted(row)) {
                std::wstring text;
                for (std::size_t field = 0; field < read->fields().size(); ++field)
                    text += L' ' + read->text(row, field);
                text.erase(0, text.find_first_not_of(L' '));
                text.erase(text.find_last_not_of(L' ') + 1);
                found.push_back(base::narrow(text));
            }
        return found;
    }

private:
    static std::string plain(const std::string& bytes) {
        const test::folder scratch;
        return test::read_drawing(scratch.write("plain.dxf", bytes));
    }
};

bool holds(const texts& all, const std::string& one) {
    return std::find(all.begin(), all.end(), one) != all.end();
}

// Without what came anew: the application's entry and what the bar keeps.
texts marks(const Drafter& drafter) {
    texts found = drafter.changed();
    std::erase_if(found, [](const std::string& change) {
        return change.starts_with("100") || change.starts_with("SECTION");
    });
    return found;
}

} // namespace

TEST(LayerMarking, EachAnswerDoesWhatItSays) {
    const struct {
        std::string script;
        texts changed;
        texts said;
    } rows[] = {
        // Mode 0: entities on a system's layer are refused, those on locked layers told apart; a click into
        // empty space asks again.
        {bar + picks({"212"}) + "\n", {"212: 1001 VR-LAYER", "212: 1000 给水"}, {entityPrompt, marked}},
        {bar + picks({"210"}) + "\n", {}, {refused}},
        {bar + picks({"211"}) + "^C\n", {}, {refused}},
        {bar + std::string("-9000,-9000\n") + picks({"213"}) + "\n",
         {"213: 1001 VR-LAYER", "213: 1000 给水"},
         {marked}},
        {std::string("-LAYER LO 说明\n\n") + bar + picks({"212"}) + "\n",
         {"说明: 70 4", "说明: -70 0"},
         {"\n1 个图元没有标识：1 个在锁定的图层上。"}},
        {bar + std::string("\n"), {}, {entityPrompt}},
        {bar + std::string("^C\n"), {}, {entityPrompt}},
        // What was picked before is the first pick: one accepted, one refused.
        {"tckz\n" + picks({"212", "210"}) + "BAR 给水管线\n\n",
         {"212: 1001 VR-LAYER", "212: 1000 给水"},
         {"\n标记完成，存在图元属于某管线系统未进行标记！"}},
        // The last system has it.
        {bar + picks({"212"}) + "\nBAR 消防管线\n" + picks({"212"}) + "\n",
         {"212: 1001 VR-LAYER", "212: 1000 消防"},
         {}},
        // Mode 1: a standard's layer is refused, one of another system goes over.
        {bar + std::string("A\n") + picks({"212", "210"}) + "\n",
         {"说明: 1001 VR-LAYER", "说明: 1000 给水"},
         {layerPrompt, "\n标识图层成功！", "\n标识图层失败，标识图层属于某管线系统！"}},
        {bar + std::string("A\n") + picks({"212"}) + "\nBAR 消防管线\n" + picks({"212"}) + "\n",
         {"说明: 1001 VR-LAYER", "说明: 1000 消防"},
         {}},
        // An entity on a marked layer belongs to the system by its layer.
        {bar + std::string("A\n") + picks({"212"}) + "W\n" + picks({"212"}) + "\n",
         {"说明: 1001 VR-LAYER", "说明: 1000 给水"},
         {layerPrompt, refused}},
        // A layer is turned off with the system that it goes to.
        {"tckz\nBAR 给水管线 ON\nBAR 给水管线\nA\n" + picks({"212"}) + "\nBAR 给水管线 ON\nBAR 给水管线 ON\n",
         {"DIM_给水: 62 -7", "PIPE-给水: 62 -3", "VPIPE-给水: 62 -3", "说明: 62 -4", "说明: 1001 VR-LAYER",
          "说明: 1000 给水", "DIM_给水: -62 7", "PIPE-给水: -62 3", "VPIPE-给水: -62 3", "说明: -62 4"},
         {"\n标识图层成功！"}},
        // Mode 2: to one of the system's layers, with its mark gone.
        {bar + picks({"212"}) + "X\n" + picks({"213", "210"}) + "\n",
         {"212: 1001 VR-LAYER", "212: 1000 给水", "213: 8 PIPE-给水", "213: -8 0"},
         {convertPrompt, "\n请选择给水系统目标图层上的任意图元", "\n转换成功！"}},
        {bar + picks({"212"}) + "X\n" + picks({"212", "211"}) + "\n",
         {"212: 8 VPIPE-给水", "212: -8 说明"},
         {"\n转换成功！"}},
        {bar + std::string("X\n") + picks({"210", "211"}) + "\n",
         {},
         {"\n转换失败，图元所在图层属于某管线系统！"}},
        {bar + std::string("X\n") + picks({"213", "212"}) + "\n", {}, {"\n请选择给水系统所属图层上的图元！"}},
        {bar + std::string("X\n") + picks({"213"}) + "\n\n", {}, {"\n目标图层获取失败，无法转换！"}},
        {bar + std::string("X\n") + picks({"213"}) + "^C\n", {}, {}},
    };
    for (const auto& row : rows) {
        Drafter drafter;
        const test::run_result ran = drafter.run(row.script);
        for (const std::string& said : row.said)
            EXPECT_TRUE(says(ran, said)) << row.script << said << ran.out;
        EXPECT_EQ(marks(drafter), row.changed) << row.script << ran.out;
    }
}

TEST(LayerMarking, TravelsWithTheDrawingAndGoesWithoutATrace) {
    Drafter drafter;
    EXPECT_TRUE(
        says(drafter.run("gpsbs\n"), "\n此命令不能单独使用，请通过给排水\"图层控制\"中的给排水标识使用！"));
    drafter.run(bar + picks({"212", "213"}) + "A\n" + picks({"217"}) + "\n");
    // The last mode counts in the next run, and one chosen without a pick, too.
    EXPECT_TRUE(says(drafter.run(bar + std::string("X\n\n")), layerPrompt));
    EXPECT_TRUE(says(drafter.run(bar + std::string("\n")), convertPrompt));
    const texts all = {"0: 1001 VR-LAYER", "0: 1000 给水",       "212: 1001 VR-LAYER",
                       "212: 1000 给水",   "213: 1001 VR-LAYER", "213: 1000 给水"};
    EXPECT_EQ(marks(drafter), all);
    // What was hidden with the system comes back when its marks go; another system's stay.
    drafter.run("tckz\nBAR 给水管线 ON\n");
    EXPECT_TRUE(holds(drafter.changed(), "212: 60 1"));
    drafter.run("tckz\nBAR 给水管线 ON\nBAR 消防管线\nS\nD\n\n");
    EXPECT_TRUE(holds(drafter.changed(), "212: 1000 给水"));
    drafter.run("tckz\nBAR 给水管线 ON\n-LAYER LO 说明\n\n");
    test::run_result ran = drafter.run(bar + std::string("S\nD\n\n"));
    EXPECT_TRUE(says(ran, "\n已成功删除\"给水\"中的图元标识！") &&
                says(ran, "\n已成功删除\"给水\"中的图层标识！"));
    EXPECT_TRUE(says(ran, "\n1 个图元没有清除标识：1 个在锁定的图层上。"));
    EXPECT_TRUE(holds(drafter.changed(), "212: 60 1") && !holds(drafter.changed(), "213: 60 1"));
    drafter.run(bar + std::string("S\n\nBAR 2025\n-LAYER U 说明\n\n") + bar + "S\n\n");
    texts left = marks(drafter);
    EXPECT_EQ(left, texts()) << "other programs' data too";
}

TEST(LayerMarking, IsTakenBackStepByStep) {
    for (const std::string& script : {bar + picks({"212", "213"}) + "A\n" + picks({"217"}) + "\n",
                                      std::string(bar) + "X\n" + picks({"213", "210"}) + "\n"}) {
        Drafter drafter;
        drafter.run(script + "U\n");
        EXPECT_EQ(marks(drafter), texts()) << script;
    }
    Drafter drafter;
    drafter.run(bar + picks({"212"}) + "A\n" + picks({"213"}) + "\n");
    const std::string with_marks = drafter.saved;
    drafter.run(bar + std::string("S\nD\n\nU\n"));
    EXPECT_EQ(test::differences(with_marks, drafter.saved), texts());
    EXPECT_FALSE(holds(drafter.rows(), "8 0 给水")) << "the table keeps what it is told";
}

TEST(LayerMarking, EntersLayersInTheTableBesideTheUsersRows) {
    Drafter drafter;
    drafter.run("tckz\n");
    // A table of the user's own: without our column, with one that we do not know, with rows that are
    // deleted.
    const auto encoding = sys::dbase_encoding_of(936);
    auto own =
        base::dbase_table::create({{L"product", 'N', 4, 0}, {L"name", 'C', 40, 0}, {L"since", 'D', 8, 0}},
                                  base::dbase_memo_form::none, 0x4D, {}, *encoding);
    ASSERT_TRUE(own);
    const auto add = [&](double product, const wchar_t* name, bool deleted) {
        const auto row = own->append_row();
        ASSERT_TRUE(row && own->set_number(*row, 0, product) && own->set_text(*row, 1, name) &&
                    own->set_deleted(*row, deleted));
    };
    add(1, L"建筑", false);
    add(8, L"说明", true);
    add(5, L"别的", false);
    ASSERT_TRUE(own->set_date(
        0, 2, std::chrono::year_month_day{std::chrono::year(2020), std::chrono::May, std::chrono::day(1)}));
    ASSERT_TRUE(sys::write_dbase(*own, drafter.table()));

    drafter.run(bar + std::string("A\n") + picks({"212"}) + "\n");
    EXPECT_EQ(drafter.rows(), (texts{"1 建筑 20200501", "5 别的", "8 说明  给水"}));
    // Another system takes it over; what the table has is entered no second time.
    drafter.run("tckz\nBAR 消防管线\n" + picks({"212"}) + "\n");
    drafter.run("tckz\nBAR 消防管线\n" + picks({"212"}) + "\n");
    EXPECT_EQ(drafter.rows(), (texts{"1 建筑 20200501", "5 别的", "8 说明  消防"}));
    drafter.run(bar + std::string("D\n\n"));
    EXPECT_EQ(drafter.rows().size(), 3U);
    drafter.run("tckz\nBAR 消防管线\nD\n\n");
    EXPECT_EQ(drafter.rows(), (texts{"1 建筑 20200501", "5 别的"}));

    // A table that is none is told of and stays; the mark is set.
    std::ofstream(drafter.table()) << "no table";
    EXPECT_TRUE(says(drafter.run(bar + picks({"212"}) + "\n"), "\n图层表userlayer.dbf不能保存："));
    EXPECT_EQ(test::read(drafter.table()), "no table");
    EXPECT_TRUE(holds(drafter.changed(), "说明: 1000 给水"));
}

TEST(LayerMarking, DefinesLayersInADialog) {
    Drafter drafter;
    drafter.run("tckz\n");
    std::filesystem::remove(drafter.table()); // one is made
    const auto define = [&](const std::string& answers, int status = 0) {
        return drafter.run("tckz\nBAR 2033\n" + answers, status);
    };
    EXPECT_TRUE(says(define("说明,0\n所选图层定义为=建筑\nOK\n"), "\n已定义 2 个图层为：建筑。"));
    define("另加图层名=A-*；墙体\n所选图层定义为=建筑\nOK\n");
    define("墙体 所选图层定义为=给排水 OK\n");
    EXPECT_EQ(drafter.rows(), (texts{"1 0", "1 说明", "1 A-*", "8 墙体"}));
    define("0 所选图层定义为=无 OK\n");
    for (const char* const no : {"OK\n", "墙体\nOK\n", "所选图层定义为=建筑\n\n",
                                 "墙体 所选图层定义为=无 CANCEL\n", "墙体 所选图层定义为=无\n^C\n"})
        define(no);
    EXPECT_TRUE(says(define("所选图层定义为=结构\n", 4), "请输入 建筑、给排水 或 无。"));
    EXPECT_TRUE(
        says(define("另加图层名=" + std::string(255, 'x') + "\n", 4), "图层名过长，或有不能保存的字符。"));
    EXPECT_EQ(drafter.rows(), (texts{"1 说明", "1 A-*", "8 墙体"}));
    // What they say counts for layers of references by their names there.
    drafter.run("tckz\nBAR 2035\nBAR 2036\n");
    texts frozen;
    for (const std::string& change : drafter.changed())
        if (change.find("墙体: ") != change.npos || change.find("说明: ") != change.npos)
            frozen.push_back(change);
    EXPECT_EQ(frozen, (texts{"plan|墙体: 70 17", "plan|说明: 70 20", "说明: 70 4", "plan|墙体: -70 16",
                             "plan|说明: -70 16", "说明: -70 0"}));
    // A mark says more than they do: it is no longer the architecture's that are unlocked.
    drafter.run(bar + std::string("A\n") + picks({"212"}) + "\nBAR 2036\n");
    EXPECT_TRUE(holds(drafter.changed(), "说明: 70 4") && !holds(drafter.changed(), "plan|说明: 70 20"));
}

TEST(LayerMarking, MarksArchitectureAndCleansIt) {
    Drafter drafter;
    drafter.run(bar + picks({"213"}) + "\n");
    test::run_result ran = drafter.run("SetDolmoLayTag\n" + picks({"212", "210"}) + "\n");
    EXPECT_TRUE(says(ran, "\n共选中实体2个,添加建筑标识2个！\n"));
    drafter.run("SetDolmoLayTag\n\nSetDolmoLayTag\n^C\n");
    EXPECT_TRUE(holds(drafter.changed(), "212: 1000 Dolmo") && holds(drafter.changed(), "210: 1000 Dolmo"));
    EXPECT_TRUE(holds(drafter.changed(), "213: 1000 给水"));
    // The mark hides them with architecture, on a pipe layer too.
    drafter.run("tckz\nBAR 2028\n");
    EXPECT_TRUE(holds(drafter.changed(), "210: 60 1") && !holds(drafter.changed(), "213: 60 1"));
    ran = drafter.run("tckz\nBAR 2028\nCleanDolmoLayTag\n" + picks({"210", "213"}) +
                      "\nCleanDolmoLayTag\n^C\n");
    EXPECT_TRUE(says(ran, "\n请选择要清除建筑标识的图元[清除全部A]<退出>"));
    EXPECT_TRUE(says(ran, "\n共选中实体2个,清除建筑标识1个！\n"));
    ran = drafter.run("-LAYER LO 说明\n\nCleanDolmoLayTag\nA\n-LAYER U 说明\n\nCleanDolmoLayTag\nA\n");
    EXPECT_TRUE(says(ran, "\n共选中实体8个,清除建筑标识0个！\n\n1 个图元没有清除标识：1 个在锁定的图层上。"));
    EXPECT_TRUE(says(ran, "\n共选中实体8个,清除建筑标识1个！\n"));
    ran = drafter.run("SetDolmoLayTag\nA\nU\nBAR\n", 4);
    EXPECT_TRUE(says(ran, "\n共选中实体3个,添加建筑标识3个！\n"))
        << ran.out; // neither pipes nor what is marked for one
    EXPECT_EQ(marks(drafter), (texts{"213: 1001 VR-LAYER", "213: 1000 给水"}));
}
