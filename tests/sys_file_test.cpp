#include "sys/file.h"

#include "tests/sys_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/stat.h>
#include <thread>

namespace {

bool is_padded(const sys::file_bytes& bytes) {
    const char* const end = bytes.data() + bytes.size();
    return std::all_of(end, end + sys::file_bytes::padding, [](char c) { return c == 0; });
}

TEST(SysFile, ReadsEverySizeWithItsPadding) {
    const test::folder folder;
    for (const std::size_t size : {0u, 1u, 4031u, 4032u, 4033u, 65471u, 65472u, 65473u, 65536u, 3'000'000u}) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 7 + i / 256);
        folder.write("f", bytes);
        const auto read = sys::read_file(folder / "f");
        ASSERT_TRUE(read) << size;
        EXPECT_TRUE(read->view() == bytes) << size;
        EXPECT_TRUE(is_padded(*read)) << size;
    }
}

TEST(SysFile, ReadsWhatDoesNotTellItsSize) {
    const test::folder folder;
    const std::string bytes(1'000'000, 'p');
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::thread writer([&] { folder.write("pipe", bytes); });
    const auto read = sys::read_file(folder / "pipe");
    writer.join();
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->view() == bytes);
    EXPECT_TRUE(is_padded(*read));
    const auto made_up = sys::read_file("/proc/self/status");
    EXPECT_TRUE(made_up && made_up->view().starts_with("Name:"));
}

// What was read stays, whatever happens to the file: a mapping would change or fault here.
TEST(SysFile, BytesAreOurs) {
    const test::folder folder;
    folder.write("f", std::string(100'000, 'a'));
    auto read = sys::read_file(folder / "f");
    ASSERT_TRUE(read);
    std::filesystem::resize_file(folder / "f", 10);
    EXPECT_EQ(read->view(), std::string(100'000, 'a'));

    const char* const data = read->data();
    sys::file_bytes moved;
    moved = std::move(*read);
    EXPECT_EQ(moved.data(), data);
    EXPECT_EQ(read->size(), 0u);
    EXPECT_TRUE(is_padded(*read));
}

TEST(SysFile, Failures) {
    const test::folder folder;
    const std::wstring where = sys::from_path(folder.path());
    const auto error = [](const std::filesystem::path& path) {
        const auto read = sys::read_file(path);
        return read ? L"read" : read.error();
    };
    EXPECT_EQ(error(folder / "a.dxf"), L"cannot read '" + where + L"/a.dxf': no such file");
    EXPECT_EQ(error(folder.path()), L"cannot read '" + where + L"': it is a folder");
    EXPECT_EQ(error("a\xFF/b"), L"cannot read 'a\xDCFF/b': no such file");
    const auto is_missing = [](const std::filesystem::path& path) {
        return sys::read_file(path).failed(base::failure_kind::not_found);
    };
    EXPECT_TRUE(is_missing(folder / "a.dxf"));
    EXPECT_TRUE(is_missing(folder.write("file", "") / "below"));
    EXPECT_FALSE(is_missing(folder / "file"));
    EXPECT_FALSE(is_missing(folder.path()));
}

} // namespace
