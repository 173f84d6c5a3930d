// Undo and redo: through random commands on real drawings, and by the options of UNDO.
#include "base/utf.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/symbol_names.h"
#include "tests/support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

namespace {

// What random commands are about: entities by their handles, layers, blocks.
struct subjects {
    std::vector<std::string> handles;
    std::vector<std::string> layers;
    std::vector<std::string> blocks;
};

subjects subjects_of(const std::filesystem::path& file) {
    subjects found;
    AcDbDatabase database(false, true);
    if (database.dxfIn(file.wstring().c_str()) != Acad::eOk)
        return found;
    AcDbImpDatabase& imp = database.imp();
    const dxf::record_table& records = imp.records();
    for (dxf::record_id id = 0; id < records.size(); ++id)
        if (records.kind(id) == dxf::record_kind::entity && imp.blocks().in_space(id)) {
            ACHAR handle[AcDbHandle::kStrSiz];
            AcDbHandle(records.handle(id)).getIntoAsciiBuffer(handle);
            found.handles.push_back(base::narrow(handle));
        }
    const auto names = [&](db::table_kind kind, std::vector<std::string>& into) {
        for (const dxf::record_id entry : imp.names().entries(kind))
            if (const std::wstring name = imp.names().name_of(entry);
                name.find_first_of(L"\"*|\n\\`#@.?~[],") == name.npos && !name.empty())
                into.push_back("\"" + base::narrow(name) + "\"");
    };
    names(db::table_kind::layer, found.layers);
    names(db::table_kind::block, found.blocks);
    return found;
}

class random_commands {
public:
    random_commands(subjects about, unsigned seed) : about_(std::move(about)), random_(seed) {}

    // One command, with what it asks for. What it does not ask for after all is cancelled.
    std::string next() {
        static constexpr const char* module_commands[] = {
            "LockSelLayer",  "UnLockSelLayer", "OpenSelLayer",  "ConvertLayer",
            "CloseSelLayer", "FrozenLayer",    "EraseSelLayer", "sfxc"};
        switch (number(20)) {
        case 0:
        case 1:
            return "LINE " + point() + " " + point() + " " + point() + " C";
        case 2:
            return "CIRCLE " + point() + " " + size();
        case 3:
            return "TEXT " + point() + " " + size() + " 30\n给水 1\n";
        case 4:
        case 5:
            return "ERASE " + object() + " " + object() + " ";
        case 6:
            return "ERASE C " + point() + " " + point() + " ";
        case 7:
            return "EXPLODE " + object() + " ";
        case 8:
        case 9:
        case 10: {
            static constexpr const char* options[] = {"OFF", "ON",     "F",   "T", "LO",   "U",
                                                      "C 5", "LW 0.5", "P N", "S", "TR 40"};
            return std::string("-LAYER ") + one_of(options) + " " + layer() + " Y ";
        }
        case 11:
            return "-LAYER M NEW" + std::to_string(number(8)) + " D any text\n" + layer() + " ";
        case 12:
            return "-LAYER R " + layer() + " R" + std::to_string(++renamed_);
        case 13:
            return number(2) == 0 ? "SETVAR LTSCALE " + size() : "SETVAR CLAYER " + layer();
        case 14:
        case 15:
            return "INSERT " + (about_.blocks.empty() ? "none" : one_of(about_.blocks)) + " " + point() +
                   " 2 2 30";
        case 16:
            return number(2) == 0 ? "LAYOUT N L" + std::to_string(number(4)) : "LAYOUT C  ";
        case 17:
            return number(2) == 0   ? "LAYOUT D L" + std::to_string(number(4))
                   : number(2) == 0 ? "LAYOUT S L1"
                                    : "LAYOUT S Model";
        case 18:
            return number(3) == 0 ? "SetAllPipeLayOpen" : number(2) == 0 ? "UnFrozenAllLayer" : "U";
        default: {
            const std::string command = one_of(module_commands);
            return command + " " + object() + " " + (command == "ConvertLayer" ? object() : "") + " ";
        }
        }
    }

private:
    unsigned number(std::size_t below) { return static_cast<unsigned>(random_() % below); }
    std::string one_of(const auto& rows) { return rows[number(std::size(rows))]; }
    std::string point() { return std::to_string(number(5000)) + "," + std::to_string(number(5000)); }
    std::string size() { return std::to_string(1 + number(300)) + ".5"; }
    std::string layer() { return about_.layers.empty() ? "0" : one_of(about_.layers); }
    std::string object() {
        return about_.handles.empty() || number(10) == 0 ? "L"
                                                         : "(handent \"" + one_of(about_.handles) + "\")";
    }

    subjects about_;
    std::mt19937 random_;
    int renamed_ = 0;
};

std::vector<std::filesystem::path> drawings(unsigned seed) {
    std::vector<std::filesystem::path> found;
    for (const char* name :
         {"r12.dxf", "r2000_gbk.dxf", "r2018.dxf", "layer_states.dxf", "picks.dxf", "viewports_r2018.dxf"})
        found.push_back(test::drawing(name));
    found.push_back(std::filesystem::path(ZEF_SOURCE_FOLDER) / "samples" / "storey.dxf");
    std::vector<std::filesystem::path> others = test::corpus();
    std::shuffle(others.begin(), others.end(), std::mt19937(seed));
    constexpr std::size_t most = 12;
    for (const auto& file : others)
        if (found.size() < 7 + most && std::filesystem::file_size(file) < 2'000'000)
            found.push_back(file);
    return found;
}

} // namespace

TEST(Undo, AHundredRandomCommandsAllTheWayBackAndForth) {
    const int given = testing::UnitTest::GetInstance()->random_seed();
    const unsigned seed = given != 0 ? static_cast<unsigned>(given) : std::random_device{}();
    std::cout << "seed " << seed << "\n";
    constexpr int commands = 100;
    const test::folder folder;
    for (const auto& file : drawings(seed)) {
        random_commands random(subjects_of(file), seed);
        std::string script = "SETVAR ATTREQ 0\n";
        for (int i = 1; i < commands; ++i)
            script += random.next() + "\n^C^C^C\n";
        script += "SETVAR ATTREQ 1\nCIRCLE 1,1 1\n"; // behind it nothing is left to be given again
        const auto save = [&](const char* name) { script += "SAVEAS\n\n" + (folder / name).string() + "\n"; };
        const auto repeat = [&](const char* command, int times) {
            for (int i = 0; i < times; ++i)
                script += std::string(command) + "\n";
        };
        save("forth.dxf");
        script += "UNDO " + std::to_string(commands) + "\n";
        save("back.dxf");
        repeat("REDO", 1);
        save("forth_again.dxf");
        repeat("U", commands);
        save("back_again.dxf");
        repeat("REDO", commands);
        save("forth_at_last.dxf");
        const auto result = test::zefhost({file.string(), "--keep-going"}, script);
        EXPECT_TRUE(result.status == 0 || result.status == 4) << file << "\n" << result.err;
        const std::string before = test::read(file);
        const std::string after = test::read(folder / "forth.dxf");
        EXPECT_NE(before, after) << file << ": nothing was done";
        const auto same = [&](const char* name, const std::string& wanted) {
            const std::string found = test::read(folder / name);
            if (found == wanted)
                return;
            std::string lines;
            for (const std::string& line : test::differences(wanted, found))
                lines += line + "\n";
            ADD_FAILURE() << file << ", seed " << seed << ", " << name << ":\n" << lines.substr(0, 2000);
        };
        same("back.dxf", before);
        same("back_again.dxf", before);
        same("forth_again.dxf", after);
        same("forth_at_last.dxf", after);
        for (const char* name :
             {"forth.dxf", "back.dxf", "forth_again.dxf", "back_again.dxf", "forth_at_last.dxf"})
            std::filesystem::remove(folder / name);
    }
}

// What is left of five circles behind each script: their radii.
TEST(Undo, OptionsOfUndo) {
    struct row {
        const char* script;
        const char* left;
    };
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    for (const row& row : {
             row{"1 2 3 U", "1 2"},
             row{"1 2 3 UNDO 2", "1"},
             row{"1 2 3 UNDO 2 REDO", "1 2 3"}, // as many as UNDO took back
             row{"1 2 3 U U REDO", "1 2"},
             row{"1 2 3 U U REDO REDO REDO", "1 2 3"},
             row{"1 2 3 U 4 REDO", "1 2 4"}, // nothing to give again behind a change
             row{"1 UNDO_M 2 3 UNDO_B", "1"},
             row{"1 UNDO_M 2 UNDO_M 3 UNDO_B UNDO_B", "1"},
             row{"1 2 UNDO_B_Y", ""},
             row{"1 2 UNDO_B_N", "1 2"},
             row{"1 UNDO_BE 2 3 UNDO_E 4 U U", "1"},
             row{"1 UNDO_BE 2 3 UNDO_E U REDO", "1 2 3"},
             row{"1 UNDO_BE 2 3 UNDO_E U 4 5 U", "1 4"}, // the group went with what took its place
             row{"1 2 UNDO_C_N U", "1 2"},
             row{"1 2 UNDO_C_N 3 UNDO_A 4 U U", "1 2 3"}, // what came before it was on again stays
             row{"1 2 3 UNDO_C_O U U", "1 2"},
             row{"1 2 UNDO 50 REDO", "1 2"},
             row{"1 SETVAR LTSCALE 3 U U", ""},
         }) {
        std::string script;
        std::istringstream words(row.script);
        for (std::string word; words >> word;) {
            if (std::isdigit(static_cast<unsigned char>(word[0])) != 0 && !script.ends_with("UNDO\n") &&
                !script.ends_with("LTSCALE\n"))
                word = "CIRCLE\n0,0\n" + word;
            std::replace(word.begin(), word.end(), '_', '\n');
            script += word + "\n";
        }
        const auto done = test::zefhost({"-s", folder.write("a.scr", script).string(), "-o", out});
        EXPECT_EQ(done.status, 0) << row.script << "\n" << done.err << done.out;
        std::string left;
        AcDbDatabase database(false, true);
        ASSERT_EQ(database.dxfIn(base::widen(out).c_str()), Acad::eOk);
        const dxf::record_table& records = database.imp().records();
        for (dxf::record_id id = 0; id < records.size(); ++id)
            if (records.type(id) == dxf::type_circle)
                left += (left.empty() ? "" : " ") +
                        std::to_string(static_cast<int>(
                            dxf::group_list(records.text(id)).real({"AcDbCircle"}, 40).value_or(0.0)));
        EXPECT_EQ(left, row.left) << row.script << "\n" << done.out;
    }
}
