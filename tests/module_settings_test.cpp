// Settings taken along: exported by one user, imported by another; what may be emptied; what a disk that does
// not take part leaves.
#include "base/utf.h"
#include "host/ap/documents.h"
#include "host/ed/editor.h"
#include "module/frame/DrawingDefaults.h"
#include "module/frame/Options.h"
#include "module/frame/SettingsFolder.h"
#include "module/frame/SettingsTransfer.h"
#include "module/standard/LinetypeLibrary.h"
#include "module/standard/PipeSystemTool.h"
#include "module/standard/StandardManager.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "siblings/zef_public/SharedOptions.h"
#include "sys/trash.h"
#include "tests/sys_support.h"

#include <gtest/gtest.h>

#include <csignal>
#include <map>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using namespace SettingsTransfer;

constexpr Groups everything = {true, true, true, true, true, true, true};

// The files of a folder.
std::map<std::string, std::string> files_of(const fs::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(folder))
        files[entry.path().filename().string()] = test::read(entry.path());
    return files;
}

class ModuleSettings : public testing::Test {
protected:
    ModuleSettings() {
        ::setenv("XDG_DATA_HOME", (root_ / "data").c_str(), 1);
        become("one");
    }
    ~ModuleSettings() override {
        ::unsetenv("XDG_DATA_HOME");
        ::setenv("HOME", home_.c_str(), 1);
        CStandardManager::Release();
        g_csSysPath = L"";
        ReloadLinetypes();
        ReloadPipeMaterials();
        OptionTool::ReadSettingsFile(wide(root_ / "before.ini").c_str());
    }

    static std::wstring wide(const fs::path& path) { return sys::from_path(path); }
    // A user with the shipped system folder, as the module finds it at its start.
    void become(const char* name) {
        sys::set_profile_folder(root_ / name);
        ASSERT_TRUE(sys::prepare_profile(fs::path(ZEF_SOURCE_FOLDER) / "share"));
        g_csSysPath = wide(sys::system_folder() / "").c_str();
        CStandardManager::Release();
        CStandardManager::Create().ChooseAndLoad();
        ReloadLinetypes();
        ReloadPipeMaterials();
        LoadDrawingDefaults();
    }
    // What the standard, the tables and the drawing defaults answer now.
    std::string answers() const {
        CStandardManager::Create().Save(wide(root_ / "answers").c_str());
        std::string text = test::read(root_ / "answers");
        std::vector<CString> names;
        GetPipeMaterialList(names);
        GetLinetypeNames(names);
        PipeSystemTool::GetPipeSystemStandardFiles(names);
        for (const CString& name : names)
            text += base::narrow(name.GetString()) + "\n";
        return text + std::to_string(g_iFlangeStyle);
    }

    const std::string home_ = sys::home_folder().string();
    const test::profile root_;
    const bool saved_ = OptionTool::WriteSettingsFile(wide(root_ / "before.ini").c_str());
};

TEST_F(ModuleSettings, TwoUsersAnswerAlikeAfterwards) {
    const fs::path sys = sys::system_folder();
    std::string standard = test::read(sys / "kol.vrsl");
    standard.replace(standard.find("PIPE-给水"), 4, "ROHR");
    test::put(sys / "kol.vrsl", standard);
    test::put(sys / "mine.vrsl", standard);
    std::string config = test::read(sys / "CmdConfig.xml");
    const std::string flange = "\"法兰样式\">";
    config.replace(config.find(flange) + flange.size(), 1, "7");
    test::put(sys / "CmdConfig.xml", config);
    test::put(sys / "acad.pgp", "Q, *QUIT\n");
    std::string materials = test::read(sys / "pipe.dbf");
    materials.replace(materials.find("PP-R"), 4, "XX-X");
    test::put(sys / "pipe.dbf", materials);
    become("one");
    g_iDefaultPipeDn = 65;
    g_nElbowRate = 1.0 / 3;
    const std::string asked = answers();
    EXPECT_EQ(Export(wide(root_ / "first").c_str(), everything), 14);

    become("two");
    fs::remove(sys::system_folder() / "zefdata.dbf"); // it comes where it is looked for first
    fs::rename(sys::system_folder() / "pipe.dbf", sys::system_folder() / "PIPE.DBF");
    g_iDefaultPipeDn = 100;
    g_nElbowRate = 1.5;
    EXPECT_NE(answers(), asked);
    EXPECT_EQ(Import(wide(root_ / "first").c_str()), 14);
    EXPECT_EQ(answers(), asked);
    EXPECT_EQ(g_iDefaultPipeDn, 65);
    EXPECT_EQ(g_nElbowRate, 1.0 / 3);
    EXPECT_TRUE(fs::exists(sys::system_folder() / "zefdata.dbf"));
    EXPECT_FALSE(fs::exists(sys::system_folder() / "pipe.dbf"));
    EXPECT_EQ(Export(wide(root_ / "second").c_str(), everything), 14);
    EXPECT_EQ(files_of(root_ / "second"), files_of(root_ / "first"));

    // A second export leaves only its own files; the others are in the trash.
    ::chmod((root_ / "first" / "acad.pgp").c_str(), 0444);
    Groups linetypes = {};
    linetypes[kLinetypes] = true;
    EXPECT_EQ(Export(wide(root_ / "first").c_str(), linetypes), 1);
    EXPECT_EQ(files_of(root_ / "first").size(), 1u);
    EXPECT_EQ(test::read(root_ / "data/Trash/files/acad.pgp"), "Q, *QUIT\n");
}

TEST_F(ModuleSettings, AnImportTakesOnlyWhatIsMeant) {
    const fs::path from = root_ / "from";
    const test::folder outside;
    fs::create_directories(from / "sub.vrsl");
    test::put(from / "LINETYPE.DBF", "no table");
    test::put(from / "LAYERDEF.DAT", "not listed");
    test::put(from / "other.txt", "not listed");
    fs::create_symlink(outside.write("secret", "secret"), from / "acad.pgp");
    fs::create_symlink(outside / "secret", from / "link.vrsl");
    const auto before = files_of(sys::system_folder());
    const int dn = g_iDefaultPipeDn;
    EXPECT_EQ(Import(wide(from).c_str()), 1);
    auto expected = before;
    expected["linetype.dbf"] = "no table";
    EXPECT_EQ(files_of(sys::system_folder()), expected);
    EXPECT_EQ(g_iDefaultPipeDn, dn) << "without setting.ini the options stay";
    EXPECT_EQ(Import(wide(root_ / "none").c_str()), 0);
}

TEST_F(ModuleSettings, SomeFoldersAreNotEmptied) {
    ed::editor::instance();
    const test::folder drawings;
    const fs::path open = drawings.write("a.dxf", test::read(test::drawing("r2018.dxf")));
    ASSERT_TRUE(ap::documents::instance().open(wide(open), false));
    fs::create_directories(root_ / "real");
    test::put(root_ / "real" / "x", "x");
    test::put(root_ / "file", "");
    fs::create_directory_symlink(root_ / "real", root_ / "link");
    ::setenv("HOME", (root_ / "home/me").c_str(), 1);
    fs::create_directories(root_ / "home/me/docs");
    const struct {
        fs::path folder;
        const wchar_t* why;
    } rows[] = {
        {"/", L"它是根目录"},
        {"/.//", L"它是根目录"},
        {root_ / "home/me", L"它是用户主文件夹"},
        {root_ / "home/me/docs/..", L"它是用户主文件夹"},
        {root_ / "home/", L"其中有用户主文件夹"},
        {root_ / "home/me/docs", L""},
        {sys::system_folder(), L"它是系统文件夹"},
        {sys::profile_folder(), L"其中有系统文件夹"},
        {drawings.path(), L"其中有打开的图形"},
        {root_ / "link", L"它是链接"},
        {root_ / "link/", L"它是链接"},
        {root_ / "file", L"它不是文件夹"},
        {root_ / "real", L""},
        {root_ / "none/none", L""},
    };
    for (const auto& row : rows) {
        EXPECT_STREQ(SettingsFolder::WhyNotEmptied(row.folder), row.why) << row.folder;
        if (*row.why != 0) {
            EXPECT_EQ(Export(wide(row.folder).c_str(), everything), -1) << row.folder;
        }
    }
    EXPECT_EQ(test::read(root_ / "real" / "x"), "x");
    ap::documents::instance().close_all();
}

TEST_F(ModuleSettings, ATemporaryFolderOfTooLongANameIsNotTaken) {
    const fs::path first(std::string(120, 'a'));
    const auto named = [&](std::size_t length) { // its temporary folder, slash included, is so long
        const std::size_t others = wide(root_ / (first / "temp/").string().c_str()).size() + 1;
        return (first / std::string(length - others, 'b')).string();
    };
    become(named(255).c_str());
    EXPECT_EQ(wide(SettingsFolder::Default()).size(), 255U + std::wstring_view(L"KolSetting").size());
    become(named(256).c_str());
    EXPECT_TRUE(SettingsFolder::Default().empty());
}

TEST_F(ModuleSettings, WhatAFullDiskOrAReadOnlyFolderRefusesStaysAndTheRestIsCopied) {
    ASSERT_EQ(Export(wide(root_ / "from").c_str(), everything), 13);
    test::put(root_ / "from" / "acad.pgp", "new");
    const auto before = files_of(sys::system_folder());
    const auto in_child = [&](auto prepare, auto work) {
        return test::wait_for(test::start_child([&] { return prepare() ? work() : -2; }));
    };
    // A limit of a file's size stands for a full disk: the standard is too long for it.
    const auto full = [] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {100'000, 100'000};
        return ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
    };
    test::put(root_ / "from" / "kol.vrsl",
              std::string(200'000, ' ') + test::read(root_ / "from" / "kol.vrsl"));
    EXPECT_EQ(in_child(full, [&] { return Import(wide(root_ / "from").c_str()); }), 12);
    EXPECT_EQ(test::read(sys::system_folder() / "kol.vrsl"), before.at("kol.vrsl"));
    EXPECT_EQ(test::read(sys::system_folder() / "acad.pgp"), "new");
    EXPECT_EQ(in_child(full, [&] { return Export(wide(root_ / "to").c_str(), everything); }), 12);
    EXPECT_FALSE(fs::exists(root_ / "to" / "kol.vrsl"));

    // A system folder that can not be written to.
    test::put(root_ / "from" / "acad.pgp", "newer");
    const auto now = files_of(sys::system_folder());
    const auto read_only = [] {
        return ::chmod(sys::system_folder().c_str(), 0555) == 0 && test::give_up_rights();
    };
    EXPECT_EQ(in_child(read_only, [&] { return Import(wide(root_ / "from").c_str()) <= 1 ? 0 : 1; }), 0);
    ::chmod(sys::system_folder().c_str(), 0755);
    EXPECT_EQ(files_of(sys::system_folder()), now);
    // A folder that vanishes.
    fs::remove_all(sys::system_folder());
    EXPECT_EQ(Export(wide(root_ / "vanished").c_str(), everything), 1) << "the options alone";
}

// The commands as a user answers them, Escape and Enter at every prompt.
TEST(SettingsCommands, AskForTheFolderAndTellWhatTheyDid) {
    const test::folder folder;
    const std::string own = (folder / "own").string();
    const struct {
        std::string script;
        std::string said;
        std::size_t files; // in the folder that was named
    } rows[] = {
        {"dcsz\nCANCEL\ndcsz\n^C\n", "导出设置", 0},
        {"dcsz\n导出到指定文件夹 OK\n^C\ndcsz\n导出到指定文件夹 OK\n\n", "\n指定保存目录 <退出>:", 0},
        {"drsz\n^C\n", "\n指定导入目录 <", 0},
        {"drsz\n\n", "\n没有文件夹 ", 0}, // nothing was exported yet
        {"dcsz\n-* 线型库 OK\n", "\n已导出 1 个文件: ", 0},
        {"drsz\n\n", "\n已导入 1 个文件: ", 0},
        {"dcsz\nOK\n", "\n已导出 13 个文件: ", 0},
        {"dcsz\n导出到指定文件夹 OK\n" + own + "\n", "\n已导出 13 个文件: " + own, 13},
        {"dcsz\n-* 管材库,导出到指定文件夹 OK\n" + own + "/\n", "\n已导出 1 个文件: " + own, 1},
        {"drsz\n" + own + "\n", "\n已导入 1 个文件: " + own, 1},
        {"dcsz\n导出到指定文件夹 OK\n/\n", "\n不能导出到 /: 它是根目录。", 1},
    };
    for (const auto& row : rows) {
        const auto ran = test::zefhost({"--profile", (folder / "profile").string()}, row.script);
        EXPECT_EQ(ran.status, 0) << row.script << ran.err;
        EXPECT_NE(ran.out.find(row.said), ran.out.npos) << row.script << ran.out;
        EXPECT_EQ(fs::exists(own) ? files_of(own).size() : 0U, row.files) << row.script;
    }
}

} // namespace
