#include "sys/atomic_file.h"

#include "tests/sys_support.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <random>
#include <set>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>

namespace {

namespace fs = std::filesystem;

std::wstring save(const fs::path& target, std::string_view bytes, std::size_t piece = 1 << 20) {
    auto file = sys::atomic_file::create(target);
    if (!file)
        return file.error();
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
        if (const auto written = file->write(bytes.substr(0, piece)); !written)
            return written.error();
    }
    const auto done = file->commit();
    return done ? L"" : done.error();
}

bool has_unnamed_files(const fs::path& folder) {
    const int file = ::open(folder.c_str(), O_TMPFILE | O_WRONLY, 0600);
    if (file >= 0)
        ::close(file);
    return file >= 0;
}

TEST(SysAtomicFile, WritesAllPiecesInOrder) {
    const test::folder folder;
    std::string bytes(1'500'000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i * 11 + i / 999);
    for (const std::size_t piece : {1'500'000u, 262'144u, 262'143u, 1000u, 7u}) {
        EXPECT_EQ(save(folder / "f", bytes, piece), L"");
        EXPECT_TRUE(test::read(folder / "f") == bytes) << piece;
    }
    EXPECT_EQ(test::count_entries(folder.path()), 1u);
}

TEST(SysAtomicFile, UncommittedLeavesNothing) {
    const test::folder folder;
    folder.write("old", "old");
    const auto begin = [&](const char* name, auto end) {
        auto file = sys::atomic_file::create(folder / name);
        EXPECT_TRUE(file && file->write(std::string(1 << 20, 'x')));
        const auto other = std::move(*file);
        end();
        return 0;
    };
    begin("old", [] {});
    begin("new", [] {});
    // Not even a kill leaves litter where files need no name.
    if (has_unnamed_files(folder.path())) {
        const pid_t child = test::start_child([&] { return begin("old", [] { ::raise(SIGKILL); }); });
        EXPECT_EQ(test::wait_for(child), -1);
    }
    EXPECT_EQ(test::read(folder / "old"), "old");
    EXPECT_EQ(test::count_entries(folder.path()), 1u);
}

TEST(SysAtomicFile, RightsAndLinks) {
    const test::folder folder;
    const mode_t mask = ::umask(027);
    EXPECT_EQ(save(folder / "new", "1"), L"");
    ::umask(mask);
    EXPECT_EQ(fs::status(folder / "new").permissions(), fs::perms(0640));
    const bool is_root = ::geteuid() == 0;
    ASSERT_TRUE(!is_root || ::chown((folder / "new").c_str(), 12, 34) == 0);
    for (const mode_t mode : {0600u, 0664u, 0777u}) {
        ::chmod((folder / "new").c_str(), mode);
        EXPECT_EQ(save(folder / "new", "2"), L"");
        struct stat about = {};
        ASSERT_EQ(::stat((folder / "new").c_str(), &about), 0);
        EXPECT_EQ(about.st_mode & 07777, mode);
        EXPECT_TRUE(!is_root || (about.st_uid == 12 && about.st_gid == 34));
    }

    fs::create_directory(folder / "sub");
    fs::create_symlink("sub/real", folder / "link");
    fs::create_symlink("link", folder / "link to link");
    for (const char* const bytes : {"dangling", "again"}) {
        EXPECT_EQ(save(folder / "link to link", bytes), L"");
        EXPECT_EQ(test::read(folder / "sub/real"), bytes);
        EXPECT_TRUE(fs::is_symlink(folder / "link to link") && fs::is_symlink(folder / "link"));
    }
}

TEST(SysAtomicFile, Refusals) {
    const test::folder folder;
    fs::create_directory(folder / "sub");
    fs::create_symlink("round", folder / "round");
    folder.write("file", "x");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    const struct {
        fs::path target;
        const wchar_t* reason;
    } rows[] = {
        {folder / "sub", L"it is a folder"},
        {folder / "none/f", L"no such folder"},
        {folder / "file/f", L"not a directory"},
        {folder / "pipe", L"it is a device or a pipe"},
        {folder / "round", L"too many levels of symbolic links"},
        {folder / std::string(300, 'n'), L"file name too long"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(save(row.target, "y"),
                  L"cannot write '" + sys::from_path(row.target) + L"': " + row.reason);
    EXPECT_EQ(test::count_entries(folder.path()), 4u);

    // A read-only file is not replaced, though its folder would allow it.
    ::chmod(folder.path().c_str(), 0777);
    ::chmod((folder / "file").c_str(), 0444);
    EXPECT_EQ(test::wait_for(test::start_child([&] {
                  const std::wstring name = sys::from_path(folder / "file");
                  return !test::give_up_rights() ||
                         save(folder / "file", "y") != L"cannot write '" + name + L"': permission denied";
              })),
              0);
}

// The limit of a file's size stands for a full disk: both refuse a write somewhere in the middle.
TEST(SysAtomicFile, AFullDiskLosesNothing) {
    const test::folder folder;
    folder.write("f", "old");
    const auto work = [&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {500'000, 500'000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const std::wstring expected = L"cannot write '" + sys::from_path(folder / "f") + L"': file too large";
        int wrong = 0;
        for (const std::size_t piece : {1'000'000u, 300'000u, 1000u})
            wrong += save(folder / "f", std::string(1'000'000, 'x'), piece) != expected;
        // The last bytes may still be gathered when commit is called, and one failure is enough for good.
        auto file = sys::atomic_file::create(folder / "f");
        wrong += !file->write(std::string(450'000, 'x')) || !file->write(std::string(100'000, 'x'));
        wrong += bool(file->commit()) + bool(file->write("")) + bool(file->commit());
        return wrong;
    };
    EXPECT_EQ(test::wait_for(test::start_child(work)), 0);
    EXPECT_EQ(test::read(folder / "f"), "old");
    EXPECT_EQ(test::count_entries(folder.path()), 1u);
}

// A child saves one generation after the other, each of one letter and with a size of its own, until it is
// killed.
TEST(SysAtomicFile, KilledWhileSaving) {
    const test::folder folder;
    const auto generation = [](std::size_t number) {
        return std::string(100'000 + number % 26 * 40'000, static_cast<char>('a' + number % 26));
    };
    ASSERT_EQ(save(folder / "f", generation(0)), L"");
    std::mt19937 random(std::random_device{}());
    std::set<std::string> seen;
    // A child that gets no time from a busy machine has saved nothing yet: later rounds give it more.
    for (unsigned round = 0; round < 50 || (seen.size() < 2 && round < 200); ++round) {
        const pid_t child = test::start_child([&]() -> int {
            for (std::size_t number = 1;; ++number)
                save(folder / "f", generation(number), 30'000);
        });
        std::this_thread::sleep_for(std::chrono::microseconds(random() % (20'000 * (1 + round / 50))));
        ::kill(child, SIGKILL);
        EXPECT_EQ(test::wait_for(child), -1);
        const std::string bytes = test::read(folder / "f");
        ASSERT_FALSE(bytes.empty());
        EXPECT_TRUE(bytes == generation(static_cast<std::size_t>(bytes[0] - 'a'))) << bytes.size();
        seen.insert(bytes);
    }
    EXPECT_GT(seen.size(), 1u) << "nothing was saved before the child was killed";
    ASSERT_EQ(save(folder / "f", "last"), L"");
    if (has_unnamed_files(folder.path())) {
        EXPECT_EQ(test::count_entries(folder.path()), 1u)
            << "what a killed program left goes with the next save";
    }
}

TEST(SysAtomicFile, ProgramsThatSaveOneFileAtOnceAllSucceed) {
    const test::folder folder;
    std::vector<pid_t> children;
    for (const char letter : {'a', 'b', 'c', 'd'})
        children.push_back(test::start_child([&] {
            for (int i = 0; i < 100; ++i)
                if (!save(folder / "f", std::string(300'000, letter)).empty())
                    return 1;
            return 0;
        }));
    for (const pid_t child : children)
        EXPECT_EQ(test::wait_for(child), 0);
    const std::string bytes = test::read(folder / "f");
    ASSERT_FALSE(bytes.empty());
    EXPECT_TRUE(bytes == std::string(300'000, bytes[0]));
    EXPECT_EQ(test::count_entries(folder.path()), 1u);
}

// From here on this process cannot make unnamed files, as on file systems that have none.
bool forbid_unnamed_files() {
    constexpr unsigned flag = O_TMPFILE & ~O_DIRECTORY;
    sock_filter filter[] = {
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
        {BPF_JMP | BPF_JEQ | BPF_K, 0, 3, SYS_openat},
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, args[2])},
        {BPF_JMP | BPF_JSET | BPF_K, 0, 1, flag},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | EOPNOTSUPP},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    };
    const sock_fprog program = {std::size(filter), filter};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

TEST(SysAtomicFile, WithoutUnnamedFiles) {
    constexpr int skipped = 77;
    const test::folder folder;
    folder.write("f", "old");
    const int status = test::wait_for(test::start_child([&] {
        if (!forbid_unnamed_files() || has_unnamed_files(folder.path()))
            return skipped;
        int wrong = 0;
        {
            auto file = sys::atomic_file::create(folder / "f");
            wrong += !file || !file->write("half") || test::count_entries(folder.path()) != 2;
        }
        wrong += test::count_entries(folder.path()) != 1 || test::read(folder / "f") != "old";
        wrong += !save(folder / "f", "new").empty() || test::read(folder / "f") != "new";
        wrong += test::count_entries(folder.path()) != 1;
        return wrong;
    }));
    if (status == skipped)
        GTEST_SKIP() << "this system does not let a process forbid itself calls";
    EXPECT_EQ(status, 0);
}

} // namespace
