#include "sys/folders.h"

#include "sys/dynamic_library.h"
#include "tests/sys_support.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

TEST(SysFolders, PathsComeBack) {
    for (const char* const name :
         {"", "a/b.dxf", "\xE6\xB0\xB4/\xF0\x9F\x98\x80", "latin\xE9", "\xFF\xFE\x80/\xED\xB2\x80"})
        EXPECT_EQ(sys::to_path(sys::from_path(name)).native(), name);
    for (const wchar_t* const text : {L"", L"水/\U0001F600", L"caf\xDCE9"})
        EXPECT_EQ(sys::from_path(sys::to_path(text)), text);
}

// Each row in a child, so that the environment of the other tests stays as it is.
TEST(SysFolders, DefaultProfile) {
    const struct {
        const char* profile;
        const char* config;
        const char* home;
        fs::path expected;
    } rows[] = {
        {"/p/q/../r", "/c", "/h", "/p/r"},
        {"rel", "/c", "/h", fs::current_path() / "rel"},
        {nullptr, "/c", "/h", "/c/zef"},
        {"", "relative is ignored", "/h", "/h/.config/zef"},
        {nullptr, nullptr, "/h", "/h/.config/zef"},
    };
    for (const auto& row : rows) {
        const auto set = [](const char* name, const char* value) {
            value != nullptr ? ::setenv(name, value, 1) : ::unsetenv(name);
        };
        EXPECT_EQ(test::wait_for(test::start_child([&] {
                      set("ZEF_PROFILE", row.profile);
                      set("XDG_CONFIG_HOME", row.config);
                      set("HOME", row.home);
                      return static_cast<int>(sys::default_profile_folder() != row.expected);
                  })),
                  0)
            << row.expected;
    }
}

TEST(SysFolders, PrepareProfile) {
    const test::folder share;
    fs::create_directories(share / "a/b");
    share.write("a/b/file", "text");
    share.write("水", "water");
    for (int i = 0; i < 200; ++i)
        share.write("a/" + std::to_string(i), "many files, so that the copies overlap");
    ::chmod((share / "a/b/file").c_str(), 0444);
    ::chmod((share / "a").c_str(), 0555);
    const test::profile profile;
    sys::set_profile_folder(profile / "new/profile");

    const auto refused = sys::prepare_profile(share / "none");
    ASSERT_FALSE(refused);
    EXPECT_NE(refused.error().find(sys::from_path(share / "none")), std::wstring::npos);

    // Eight programs start at once: when this one closes the pipe.
    int gate[2] = {};
    ASSERT_EQ(::pipe(gate), 0);
    pid_t children[8] = {};
    for (pid_t& child : children)
        child = test::start_child([&] {
            char nothing = 0;
            ::close(gate[1]);
            return ::read(gate[0], &nothing, 1) != 0 || !sys::prepare_profile(share.path()) ||
                   test::read(sys::system_folder() / "水") != "water";
        });
    ::close(gate[0]);
    ::close(gate[1]);
    for (const pid_t child : children)
        EXPECT_EQ(test::wait_for(child), 0);
    EXPECT_EQ(test::count_entries(sys::profile_folder()), 1u);
    EXPECT_EQ(test::read(sys::system_folder() / "a/b/file"), "text");
    struct stat about = {};
    ASSERT_EQ(::stat((sys::system_folder() / "a/b/file").c_str(), &about), 0);
    EXPECT_EQ(about.st_mode & 0600, 0600u);

    test::put(profile / "new/profile/sys/水", "the user's own");
    EXPECT_TRUE(sys::prepare_profile(share / "none"));
    EXPECT_EQ(test::read(sys::system_folder() / "水"), "the user's own");
    EXPECT_TRUE(fs::is_directory(sys::temp_folder()));
    EXPECT_EQ(sys::temp_folder(), profile / "new/profile/temp");
    ::chmod((share / "a").c_str(), 0755);
}

TEST(SysDynamicLibrary, OpensFindsAndRefuses) {
    const test::folder folder;
    folder.write("text.arx", "no library");
    const auto missing = sys::dynamic_library::open(folder / "none.arx");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(), L"cannot load '" + sys::from_path(folder / "none.arx") +
                                   L"': cannot open shared object file: No such file or directory");
    EXPECT_FALSE(sys::dynamic_library::open(folder / "text.arx"));
    EXPECT_FALSE(sys::dynamic_library::open("libm.so.6")) << "a bare name is a file of the current folder";

    auto self = sys::dynamic_library::open(ZEF_BINARY_FOLDER "/libzef_sys.so");
    ASSERT_TRUE(self) << testing::PrintToString(self.error());
    sys::dynamic_library moved = std::move(*self);
    EXPECT_NE(moved.symbol("_ZN4base7is_utf8ESt17basic_string_viewIcSt11char_traitsIcEE"), nullptr);
    EXPECT_EQ(moved.symbol("no_such_symbol"), nullptr);
}

} // namespace
