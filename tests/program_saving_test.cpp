// Saving as users meet it: two people at one drawing, files that change behind one's back, backups, endings,
// formats.
#include "host/ap/automatic_save.h"
#include "host/ap/file_name.h"
#include "sys/user.h"
#include "tests/ed_session.h"
#include "tests/terminal.h"

namespace {

namespace fs = std::filesystem;

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != text.npos;
}

constexpr const char* change = "CIRCLE 0,0 5";

} // namespace

TEST(ProgramSaving, TheSecondOfTwoIsToldAndOpensReadOnly) {
    const test::folder folder;
    const std::string before = test::read(test::drawing("r2018.dxf"));
    const std::string file = folder.write("plan.dxf", before).string();
    const std::string mine = folder.write("mine.dxf", before).string();
    const std::string who = base::narrow(sys::login_name() + L" on " + sys::computer_name() + L" since 2");
    {
        test::terminal first({file}, (folder / "profile").string());
        ASSERT_TRUE(first.shows("Command: "));
        auto second = test::zefhost({file, "-c", std::string(change) + "\\nQSAVE"});
        EXPECT_EQ(second.status, 6);
        EXPECT_TRUE(contains(second.err, file + ": in use by " + who)) << second.err;
        EXPECT_TRUE(contains(second.err, "opened read-only, since it is in use by " + who)) << second.err;
        second = test::zefhost({mine, "-c", change, "-o", file});
        EXPECT_EQ(second.status, 6);
        EXPECT_TRUE(contains(second.err, "'" + file + "' is in use by " + who)) << second.err;
        EXPECT_EQ(test::read(file), before);
        second = test::zefhost({file, "-c", change, "-o", (folder / "copy.dxf").string()});
        EXPECT_EQ(second.status, 0) << second.err;
        first.type("QUIT\r");
        EXPECT_EQ(first.ends(), 0);
    }
    EXPECT_FALSE(fs::exists(file + ".dwl"));
    const auto third = test::zefhost({file, "-c", std::string(change) + "\\nQSAVE"});
    EXPECT_EQ(third.status, 0) << third.err;
    EXPECT_NE(test::read(file), before);
}

TEST(ProgramSaving, AChangeOnTheDiskIsNotOverwrittenUnasked) {
    const test::folder folder;
    const std::string before = test::read(test::drawing("r2018.dxf"));
    const fs::path file = folder.write("plan.dxf", before);
    const std::string other = before + " ";
    for (const char* const answer : {"", "N", "Y"}) {
        SCOPED_TRACE(answer);
        test::put(file, before);
        test::terminal person({file.string()}, (folder / "profile").string());
        ASSERT_TRUE(person.shows("Command: "));
        person.type(std::string(change) + "\r");
        ASSERT_TRUE(person.shows("Command: "));
        test::put(file, other);
        person.type("QSAVE\r");
        ASSERT_TRUE(person.shows("changed on the disk by another program"));
        ASSERT_TRUE(person.shows("<N>: "));
        person.type(std::string(answer) + "\r");
        ASSERT_TRUE(person.shows("Command: "));
        EXPECT_EQ(test::read(file) == other, *answer != 'Y');
        // Behind that it is this program's own again, and a file that is gone hides nothing.
        if (*answer == 'Y')
            fs::remove(file);
        person.type(*answer == 'Y' ? "QSAVE\r" : "QUIT\rY\r");
        if (*answer == 'Y') {
            ASSERT_TRUE(person.shows("Command: "));
            person.type("QUIT\r");
        }
        person.ends();
        EXPECT_TRUE(fs::exists(file));
    }
    // Without a person there is nobody to ask.
    test::put(file, before);
    test::session session(file);
    session.type(L"5,5 3");
    ed::editor::instance().run_command(L"CIRCLE");
    test::put(file, other);
    ed::editor::instance().run_command(L"QSAVE");
    EXPECT_TRUE(contains(session.errors, "was changed on the disk by another program")) << session.errors;
    EXPECT_EQ(test::read(file), other);
    EXPECT_TRUE(ap::documents::instance().save(L"", 0, ap::documents::if_changed::replace));
    EXPECT_TRUE(ap::documents::instance().save(L"")) << "now it is its own again";
}

TEST(ProgramSaving, TheOldFileIsKeptWhereIsavebakSaysSo) {
    const test::folder folder;
    const std::string before = test::read(test::drawing("r2018.dxf"));
    const std::string file = folder.write("plan.dxf", before).string();
    ASSERT_EQ(test::zefhost({file, "-c", std::string("ISAVEBAK 0\\n") + change + "\\nQSAVE"}).status, 0);
    EXPECT_FALSE(fs::exists(folder / "plan.bak"));
    ASSERT_EQ(
        test::zefhost({file, "-c", std::string("ISAVEBAK 1\\n") + change + "\\nQSAVE", "-o", file}).status,
        0);
    EXPECT_EQ(test::read(folder / "plan.bak").size(), test::read(file).size())
        << "of the save before the last one";
    ASSERT_EQ(test::zefhost({file, "-c", change, "-o", file}).status, 0);
    const std::string last = test::read(file);
    EXPECT_TRUE(test::read(folder / "plan.bak") != last);
    fs::remove(folder / "plan.bak");
    fs::create_directories(folder / "plan.bak" / "in the way");
    const auto result = test::zefhost({file, "-c", change, "-o", file});
    EXPECT_EQ(result.status, 6);
    EXPECT_TRUE(contains(result.err, "cannot keep the old file as")) << result.err;
    EXPECT_TRUE(test::read(file) == last);
}

TEST(ProgramSaving, NamesGetTheEndingThatIsWritten) {
    for (const auto& [typed, wanted] : std::initializer_list<std::pair<const wchar_t*, const wchar_t*>>{
             {L"plan", L"plan.dxf"},
             {L"plan.DXF", L"plan.DXF"},
             {L"a.b/plan", L"a.b/plan.dxf"},
             {L"plan.2", L"plan.2.dxf"},
             {L"给水.施工图", L"给水.施工图.dxf"},
             {L".plan", L".plan.dxf"},
             {L"plan.dwg", nullptr},
             {L"plan.pdf", nullptr},
             {L"folder/", nullptr},
             {L"..", nullptr},
         }) {
        const auto name = ap::drawing_file_name(typed);
        EXPECT_EQ(name ? *name : L"refused", wanted != nullptr ? wanted : L"refused") << base::narrow(typed);
    }
    const test::folder folder;
    const std::string plan = test::drawing("r2018.dxf").string();
    EXPECT_EQ(test::zefhost({plan, "-o", (folder / "plan.dwg").string()}).status, 2)
        << "before anything is done";
    EXPECT_EQ(test::zefhost({plan, "-c", "QUIT", "-o", (folder / "plan").string()}).status, 0);
    EXPECT_EQ(test::count_entries(folder.path()), 1U);
    EXPECT_TRUE(fs::exists(folder / "plan.dxf"));
}

TEST(ProgramSaving, TheFormatIsAskedForFirst) {
    const std::string plan = test::drawing("r2018.dxf").string();
    for (const auto& [script, saved] : std::initializer_list<std::pair<std::string, const char*>>{
             {"SAVEAS 2018 NAME", "2018.dxf"},
             {"SAVEAS\n\nNAME", "2018.dxf"},
             {"SAVEAS DXF 16 NAME", "2018.dxf"},
             {"_SAVEAS _DXF _V 2018 16 NAME", "2018.dxf"},
             {"SAVE NAME", "2018.dxf"},
             {"DXFOUT NAME\n", "2018.dxf"},
             {"DXFOUT NAME\nV 2018 16", "2018.dxf"},
             {"SAVEAS NAME", nullptr},
             {"SAVEAS 2018 NAME.dwg", nullptr},
             {"SAVEAS DXF 17 NAME", nullptr},
         }) {
        const test::folder folder;
        std::string text = script;
        text.replace(text.find("NAME"), 4, (folder / "2018").string());
        const auto result = test::zefhost({plan}, text + "\n");
        EXPECT_EQ(result.status, saved != nullptr ? 0 : 4) << script << "\n" << result.out << result.err;
        EXPECT_EQ(test::count_entries(folder.path()), saved != nullptr ? 1U : 0U) << script;
        EXPECT_TRUE(saved == nullptr || test::read(folder / saved) == test::read(plan)) << script;
    }
}

TEST(ProgramSaving, AutomaticSavesComeWhenTheyAreDueAndGoAtTheEnd) {
    using clock = ap::automatic_save::clock;
    const test::folder folder;
    const auto file = folder.write("plan.dxf", test::read(test::drawing("r2018.dxf")));
    test::session session(file);
    const clock::time_point start = clock::now();
    const auto at = [&](int minutes, ap::automatic_save& saves) {
        return saves.at_prompt(session.database(), L"plan.dxf", start + std::chrono::minutes(minutes));
    };
    const fs::path temporary = sys::temp_folder();
    {
        ap::automatic_save saves;
        EXPECT_EQ(at(0, saves), L"");
        EXPECT_EQ(at(100, saves), L"") << "nothing was changed";
        session.type(L"");
        ed::editor::instance().input.send(L"5,5 3");
        ed::editor::instance().run_command(L"CIRCLE");
        EXPECT_EQ(at(100, saves), L"");
        EXPECT_EQ(at(109, saves), L"");
        EXPECT_NE(at(110, saves).find(L"Automatic save to " + temporary.wstring()), std::wstring::npos);
        ASSERT_TRUE(fs::exists(saves.file()));
        EXPECT_NE(test::read(saves.file()), test::read(file));
        EXPECT_TRUE(saves.file().filename().string().starts_with("plan_1_1_"));
        EXPECT_EQ(at(200, saves), L"") << "nothing since";
        EXPECT_EQ(test::count_entries(temporary), 1U);
        saves.drawing_saved(session.database());
        EXPECT_EQ(test::count_entries(temporary), 0U);
        test::set_variable(L"SAVETIME", 0);
        ed::editor::instance().input.send(L"5,5 3");
        ed::editor::instance().run_command(L"CIRCLE");
        EXPECT_EQ(at(300, saves), L"");
        EXPECT_EQ(at(400, saves), L"");
        test::set_variable(L"SAVETIME", 1);
        EXPECT_EQ(at(400, saves), L"");
        EXPECT_NE(at(401, saves), L"");
    }
    EXPECT_EQ(test::count_entries(temporary), 0U) << "its end takes it along";
}
