// What is discarded can be found in the trash, with where it came from; nothing is reached through a link.
#include "sys/trash.h"
#include "tests/sys_support.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

class SysTrash : public testing::Test {
protected:
    SysTrash() { ::setenv("XDG_DATA_HOME", (folder_ / "data").c_str(), 1); }
    ~SysTrash() override { ::unsetenv("XDG_DATA_HOME"); }
    const test::folder folder_;
};

TEST_F(SysTrash, KeepsWhatIsDiscarded) {
    const test::folder outside;
    const fs::path kept = outside.write("kept", "kept");
    fs::create_directories(folder_ / "a b%管/deep");
    folder_.write("a b%管/deep/x", "x");
    ::chmod(folder_.write("plain", "1").c_str(), 0444);
    ::chmod((folder_ / "a b%管/deep").c_str(), 0555);
    fs::create_symlink(kept, folder_ / "link");
    fs::create_directory_symlink(outside.path(), folder_ / "links");
    for (const char* const name : {"a b%管", "plain", "link", "links"})
        EXPECT_TRUE(sys::discard(folder_ / name)) << name;
    folder_.write("plain", "2");
    EXPECT_TRUE(sys::discard(folder_ / "plain"));
    EXPECT_EQ(test::count_entries(folder_.path()), 1u);
    EXPECT_EQ(test::read(kept), "kept");

    const fs::path trash = folder_ / "data/Trash";
    EXPECT_EQ(test::read(trash / "files/a b%管/deep/x"), "x");
    EXPECT_EQ(test::read(trash / "files/plain"), "1");
    EXPECT_EQ(test::read(trash / "files/plain.2"), "2");
    EXPECT_TRUE(fs::is_symlink(trash / "files/link") && fs::is_symlink(trash / "files/links"));
    const std::string info = test::read(trash / "info/a b%管.trashinfo");
    const std::string path =
        "[Trash Info]\nPath=" + folder_.path().string() + "/a%20b%25%E7%AE%A1\nDeletionDate=20";
    EXPECT_EQ(info.substr(0, path.size()), path);
    EXPECT_EQ(info.size(), path.size() + std::string_view("26-11-22T03:45:00\n").size());
    EXPECT_EQ(test::count_entries(trash / "info"), 5u);
}

TEST_F(SysTrash, WithoutOneThingsAreDeletedForGood) {
    folder_.write("data", "no folder");
    ::chmod(folder_.path().c_str(), 0755);
    const fs::path kept = folder_.write("kept", "x");
    const test::folder work;
    ::chmod(work.path().c_str(), 0777);
    // In a child that may not make a trash where the file system begins either.
    const auto discards = [](const fs::path& thing) {
        return test::wait_for(test::start_child([&] {
            test::give_up_rights();
            std::error_code ignored;
            fs::create_directories(thing / "x", ignored);
            return sys::discard(thing) && !fs::exists(thing) ? 0 : 1;
        }));
    };
    EXPECT_EQ(discards(work / "own"), 0);
    if (::geteuid() == 0) {
        EXPECT_EQ(discards(kept), 1) << "another user's";
    }
    EXPECT_EQ(test::read(kept), "x");
}

} // namespace
