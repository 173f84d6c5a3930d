#include "sys/image_file.h"
#include "sys/paper.h"
#include "tests/support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

constexpr double dots_per_mm = 8.0;

std::unique_ptr<sys::paper> png_paper() {
    auto made = sys::make_paper({sys::paper_format::png, 100.0, 60.0, dots_per_mm, {255, 255, 255}});
    return made ? *std::move(made) : nullptr;
}

// Lines that wait for each other are drawn in bands by all cores: the dots are those of lines drawn one by
// one.
TEST(Paper, draws_lines_alike_one_by_one_and_together) {
    std::string pictures[2];
    for (const bool together : {true, false}) {
        const auto paper = png_paper();
        ASSERT_NE(paper, nullptr);
        for (int i = 0; i < 2'000; ++i) {
            const auto angle = i * 0.7;
            const double reach = 10.0 + i % 60;
            const std::vector<sys::sheet_point> points = {
                {50.0, 30.0},
                {50.0 + reach * std::cos(angle), 30.0 + reach * std::sin(angle)},
                {i * 0.05, 60.0 - i * 0.03}};
            constexpr double widths[] = {0.0, 0.1, 0.35, 0.74, 2.11, 5.0};
            const sys::ink color{static_cast<unsigned char>(i * 37), static_cast<unsigned char>(i * 11), 99};
            paper->stroke(std::span(points).first(i % 7 == 0 ? 1 : 3), {color, widths[i % 6]});
            if (!together)
                paper->fill({}, color);
        }
        const auto bytes = paper->finish();
        ASSERT_TRUE(bytes);
        pictures[together ? 1 : 0] = *bytes;
    }
    EXPECT_EQ(pictures[0], pictures[1]);
}

// Thick lines have round ends and corners; how far they reach is half their width.
TEST(Paper, draws_thick_lines_as_wide_as_they_are) {
    const test::folder folder;
    const auto paper = png_paper();
    ASSERT_NE(paper, nullptr);
    const sys::sheet_point points[] = {{20.0, 20.0}, {80.0, 20.0}, {80.0, 50.0}};
    paper->stroke(points, {{0, 0, 255}, 4.0});
    const auto bytes = paper->finish();
    ASSERT_TRUE(bytes);
    const auto image = sys::read_image(folder.write("thick.png", *bytes));
    ASSERT_TRUE(image);
    const auto is_blue = [&](double x, double y) {
        const auto row = static_cast<std::size_t>(y * dots_per_mm);
        const auto column = static_cast<std::size_t>(x * dots_per_mm);
        return (*image)->bytes[(row * static_cast<std::size_t>((*image)->width) + column) * 4] == 0;
    };
    for (const auto& [x, y] : {std::pair(50.0, 18.2), {50.0, 21.8}, {18.2, 20.0}, {81.3, 18.7}, {78.4, 50.9}})
        EXPECT_TRUE(is_blue(x, y)) << x << ' ' << y;
    for (const auto& [x, y] : {std::pair(50.0, 17.8), {50.0, 22.2}, {17.8, 20.0}, {18.4, 18.4}, {81.6, 18.4}})
        EXPECT_FALSE(is_blue(x, y)) << x << ' ' << y;
}

} // namespace
