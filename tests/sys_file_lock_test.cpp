#include "sys/file_lock.h"

#include "sys/file_stamp.h"
#include "sys/user.h"
#include "tests/sys_support.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

// Whether a file's lock can be had; who has it when it can not.
bool is_free(const fs::path& file, sys::lock_holder& holder) {
    sys::file_lock lock;
    return sys::file_lock::take(file, lock, holder) && lock.holds();
}

} // namespace

TEST(SysFileLock, ASecondOneIsToldWhoHasItAndSince) {
    const test::folder folder;
    const fs::path file = folder.write("plan.dxf", "0\nEOF\n");
    fs::create_symlink(file, folder / "link.dxf");
    sys::lock_holder holder;
    {
        sys::file_lock lock;
        ASSERT_TRUE(sys::file_lock::take(file, lock, holder) && lock.holds());
        for (const char* const name : {"plan.dxf", "link.dxf"}) {
            EXPECT_FALSE(is_free(folder / name, holder)) << name;
            EXPECT_EQ(holder.user, sys::login_name());
            EXPECT_EQ(holder.computer, sys::computer_name());
            EXPECT_EQ(holder.since.substr(0, 11), sys::local_time().substr(0, 11));
        }
        sys::file_lock moved = std::move(lock);
        EXPECT_FALSE(is_free(file, holder));
    }
    EXPECT_TRUE(is_free(file, holder));
    EXPECT_EQ(test::count_entries(folder.path()), 2U) << "nothing stays behind";
}

TEST(SysFileLock, AKilledHolderLocksNothing) {
    const test::folder folder;
    const fs::path file = folder.write("plan.dxf", "");
    const pid_t child = test::start_child([&] {
        sys::file_lock lock;
        sys::lock_holder holder;
        if (sys::file_lock::take(file, lock, holder))
            test::put(folder / "ready", "");
        ::pause();
        return 0;
    });
    while (!fs::exists(folder / "ready"))
        ::usleep(1000);
    sys::lock_holder holder;
    EXPECT_FALSE(is_free(file, holder));
    ::kill(child, SIGKILL);
    EXPECT_EQ(test::wait_for(child), -1);
    EXPECT_TRUE(fs::exists(folder / "plan.dxf.dwl")) << "it had no time to remove it";
    EXPECT_TRUE(is_free(file, holder));
    EXPECT_FALSE(fs::exists(folder / "plan.dxf.dwl"));
}

TEST(SysFileLock, WhatCanNotBeLockedIsNoError) {
    const test::folder folder;
    const fs::path file = folder.write("plan.dxf", "");
    fs::create_directory(folder / "closed");
    fs::copy(file, folder / "closed" / "plan.dxf");
    ::mkfifo((folder / "pipe").c_str(), 0600);
    ::mkfifo((folder / "plan.dxf.dwl").c_str(), 0600);
    fs::permissions(folder / "closed", fs::perms(0555));
    fs::permissions(folder.path(), fs::perms(0755));
    const int wrong = test::wait_for(test::start_child([&] {
        int count = !test::give_up_rights();
        for (const char* const name : {"none.dxf", "pipe", "closed/plan.dxf", "plan.dxf"}) {
            sys::file_lock lock;
            sys::lock_holder holder;
            count += !sys::file_lock::take(folder / name, lock, holder) || lock.holds();
        }
        return count;
    }));
    EXPECT_EQ(wrong, 0);
}

TEST(SysFileLock, OfManyAtOnceOneHasIt) {
    const test::folder folder;
    const fs::path file = folder.write("plan.dxf", "");
    std::vector<pid_t> children;
    for (int i = 0; i < 8; ++i)
        children.push_back(test::start_child([&] {
            int wrong = 0;
            for (int round = 0; round < 200; ++round) {
                sys::file_lock lock;
                sys::lock_holder holder;
                if (!sys::file_lock::take(file, lock, holder))
                    continue;
                // Who has the lock makes a folder that nobody else can make meanwhile.
                wrong += ::mkdir((folder / "inside").c_str(), 0700) != 0;
                wrong += ::rmdir((folder / "inside").c_str()) != 0;
            }
            return wrong;
        }));
    for (const pid_t child : children)
        EXPECT_EQ(test::wait_for(child), 0);
    EXPECT_EQ(test::count_entries(folder.path()), 1U);
}

TEST(SysFileLock, AStampTellsAnotherFileOrOtherBytes) {
    const test::folder folder;
    const fs::path file = folder.write("a", "one");
    const auto before = sys::stamp_of(file);
    ASSERT_TRUE(before);
    EXPECT_EQ(before, sys::stamp_of(file));
    folder.write("b", "two");
    fs::last_write_time(folder / "b", fs::last_write_time(file));
    fs::rename(folder / "b", file);
    EXPECT_NE(before, sys::stamp_of(file)) << "another file of the same size and time";
    const auto second = sys::stamp_of(file);
    test::put(file, "longer");
    EXPECT_NE(second, sys::stamp_of(file));
    EXPECT_FALSE(sys::stamp_of(folder / "none"));
}
