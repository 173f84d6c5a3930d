#include "sys/image_file.h"
#include "tests/support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

// Images that end early, or of which a byte is wrong, have as many dots as they say, or a word; also those
// that ask for a form which is not read.
TEST(Image, is_read_whole_and_damaged) {
    const test::folder folder;
    const std::filesystem::path seeds = std::filesystem::path(ZEF_SOURCE_FOLDER) / "fuzz/seeds/images";
    const auto read = [&](std::string_view bytes) {
        const auto image = sys::read_image(folder.write("image", bytes));
        if (!image) {
            EXPECT_FALSE(image.error().empty());
        } else {
            EXPECT_EQ((*image)->bytes.size(), std::size_t{4} * static_cast<std::size_t>((*image)->width) *
                                                  static_cast<std::size_t>((*image)->height));
        }
        return image;
    };
    std::size_t images = 0;
    for (const auto& entry : std::filesystem::directory_iterator(seeds)) {
        const std::string bytes = test::read(entry.path());
        const auto whole = read(bytes);
        ASSERT_TRUE(whole) << entry.path();
        EXPECT_EQ((*whole)->width, 9) << entry.path();
        EXPECT_EQ((*whole)->height, 7) << entry.path();
        if (entry.path().stem() == "rgb") { // from black to red and green
            EXPECT_EQ(std::vector<int>((*whole)->bytes.begin() + 4, (*whole)->bytes.begin() + 8),
                      (std::vector{28, 0, 0, 255}));
        }
        ++images;
        for (std::size_t at = 0; at < bytes.size(); at += std::max<std::size_t>(bytes.size() / 60, 1)) {
            static_cast<void>(read(bytes.substr(0, at)));
            std::string wrong = bytes;
            wrong[at] = static_cast<char>(wrong[at] ^ (at % 2 != 0 ? 0xFF : 0x04));
            static_cast<void>(read(wrong));
        }
    }
    EXPECT_EQ(images, 14u);
    std::string old = test::read(seeds / "rgb.bmp");
    old[14] = 12; // a head of the first kind, which has other fields
    EXPECT_FALSE(read(old));
}

// A scan of a few bytes goes over the whole image: a thousand of them say the same thing anew.
TEST(Image, of_endless_scans_ends) {
    const test::folder folder;
    const std::string bytes =
        test::read(std::filesystem::path(ZEF_SOURCE_FOLDER) / "fuzz/seeds/images/scans.jpg");
    const std::size_t last = bytes.rfind("\xFF\xDA");
    ASSERT_NE(last, bytes.npos);
    std::string many = bytes.substr(0, last);
    for (int i = 0; i < 1000; ++i)
        many += bytes.substr(last, bytes.size() - 2 - last);
    EXPECT_FALSE(sys::read_image(folder.write("image.jpg", many + "\xFF\xD9")));
}

} // namespace
