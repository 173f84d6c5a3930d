// Files of shapes: what is read of them, and what texts, shapes and lines do with it.
#include "host/gi/font.h"
#include "host/gi/shape_font.h"
#include "tests/support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace {

std::string low_first(unsigned number, int bytes = 2) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(number >> (8 * i) & 0xFF);
    return text;
}

std::string codes(std::initializer_list<int> bytes) {
    std::string text;
    for (const int byte : bytes)
        text += static_cast<char>(byte);
    return text;
}

using shapes = std::map<unsigned, std::string>; // names, noughts and codes by numbers

std::string named(std::string_view name, std::initializer_list<int> bytes) {
    return std::string(name) + '\0' + codes(bytes);
}

std::string plain_file(const shapes& all) {
    std::string file = "AutoCAD-86 shapes 1.0\r\n\x1A" + low_first(all.begin()->first) +
                       low_first(all.rbegin()->first) + low_first(static_cast<unsigned>(all.size()));
    std::string bodies;
    for (const auto& [number, body] : all) {
        file += low_first(number) + low_first(static_cast<unsigned>(body.size()));
        bodies += body;
    }
    return file + bodies;
}

std::string unicode_file(const shapes& all) {
    std::string file = "AutoCAD-86 unifont 1.0\r\n\x1A" + low_first(static_cast<unsigned>(all.size()), 4);
    for (const auto& [number, body] : all)
        file += (number == 0 ? "" : low_first(number)) + low_first(static_cast<unsigned>(body.size())) + body;
    return file;
}

std::string big_file(const shapes& all) {
    const auto count = static_cast<unsigned>(all.size());
    std::string file = "AutoCAD-86 bigfont 1.0\r\n\x1A" + low_first(8) + low_first(count) + low_first(1) +
                       low_first(0xA1) + low_first(0xFE);
    std::string bodies;
    const std::size_t first = file.size() + 8 * all.size();
    for (const auto& [number, body] : all) {
        file += low_first(number) + low_first(static_cast<unsigned>(body.size())) +
                low_first(static_cast<unsigned>(first + bodies.size()), 4);
        bodies += body;
    }
    return file + bodies;
}

// The strokes as "x,y x,y; x,y ..." in whole numbers, and where the pen ends.
std::string drawn(const gi::shape* shape) {
    if (shape == nullptr)
        return "none";
    const auto at = [](const AcGePoint2d& p) {
        return std::to_string(std::lround(p.x)) + "," + std::to_string(std::lround(p.y)) + " ";
    };
    std::string text;
    for (const auto& stroke : shape->strokes) {
        // Of arcs the ends and the middle.
        const std::size_t step = stroke.size() > 6 ? (stroke.size() - 1) / 2 : 1;
        for (std::size_t i = 0; i < stroke.size(); i += step)
            text += at(stroke[i]);
        text += "; ";
    }
    return text + at(shape->end);
}

} // namespace

TEST(ShapeFont, draws_what_codes_say) {
    struct row {
        std::initializer_list<int> codes;
        const char* drawn;
    };
    for (const row& wanted : {
             row{{0x24, 0x40, 0x1E, 0}, "0,0 0,2 4,2 5,1 ; 5,1 "}, // vectors: 2 up, 4 right, 1 aslant
             row{{2, 0x20, 1, 8, 3, 256 - 4, 0}, "2,0 5,-4 ; 5,-4 "},
             row{{9, 1, 2, 3, 4, 0, 0, 0x10, 0}, "0,0 1,2 4,6 5,6 ; 5,6 "},
             row{{4, 6, 0x10, 3, 2, 0x14, 0}, "0,0 6,0 6,3 ; 6,3 "},
             row{{5, 0x10, 6, 0x14, 0}, "0,0 1,0 ; 0,0 0,1 ; 0,1 "},
             row{{10, 4, 0x02, 0}, "0,0 -1,3 -4,4 ; -4,4 "},          // a quarter from the right upwards
             row{{10, 4, 256 - 0x02, 0}, "0,0 -1,-3 -4,-4 ; -4,-4 "}, // and the other way round
             row{{10, 4, 0x40, 0}, "0,0 8,0 0,0 ; 0,0 "},             // all round
             row{{11, 0, 128, 0, 4, 0x01, 0}, "0,0 0,1 0,1 0,2 ; 0,2 "},
             row{{12, 4, 0, 127, 0}, "0,0 2,-2 4,0 ; 4,0 "}, // a half circle, counter-clockwise
             row{{13, 0, 4, 129, 4, 0, 0, 0, 0, 0x14, 0}, "0,0 -2,2 4,5 ; 4,5 "},
             row{{14, 8, 9, 9, 0x10, 14, 0x4F, 0x10, 0}, "0,0 1,0 2,0 ; 2,0 "}, // only of text that runs down
             row{{7, 66, 0x10, 0}, "0,0 0,3 1,3 ; 1,3 "},
             row{{7, 65, 0}, "0,0 "}, // draws itself
             row{{8, 5}, "0,0 5,0 ; 5,0 "},
         }) {
        const auto font =
            gi::shape_font::read(plain_file({{65, named("ME", wanted.codes)}, {66, named("", {0x34, 0})}}));
        ASSERT_TRUE(font);
        EXPECT_EQ(drawn((*font)->find(65)), wanted.drawn);
        EXPECT_EQ((*font)->number_of("me"), 65u);
        EXPECT_EQ((*font)->number_of("you"), std::nullopt);
    }
}

TEST(ShapeFont, reads_files_of_each_kind_and_nothing_else) {
    const auto font = gi::shape_font::read(unicode_file({{0, named("FONT", {4, 1, 0, 0, 0, 0})},
                                                         {0x41, named("", {7, 0x4E, 0x2D, 0x20, 0})},
                                                         {0x4E2D, named("", {0x44, 0})}}));
    ASSERT_TRUE(font);
    EXPECT_EQ((*font)->height(), 4.0);
    EXPECT_EQ(drawn((*font)->find(0x41)), "0,0 0,4 2,4 ; 2,4 ");
    EXPECT_EQ((*font)->find(0), nullptr) << "it tells of the font";
    // A part of a letter at 1,2, half as wide and as high as it is alone; the pen is where it was.
    const auto big = gi::shape_font::read(big_file({{0, named("BIG", {8, 0, 2, 6, 0})},
                                                    {0x101, named("", {8, 8, 8, 0})},
                                                    {0xB8F8, named("", {7, 0, 1, 1, 1, 2, 4, 4, 0})}}));
    ASSERT_TRUE(big);
    EXPECT_TRUE((*big)->is_big());
    EXPECT_EQ(drawn((*big)->find(0xB8F8)), "1,2 5,6 ; 6,0 ") << "as wide as the font says";
    const std::string whole = plain_file({{1, named("A", {0x10, 0})}, {2, named("B", {0x20, 0})}});
    for (const std::string& broken :
         {std::string(), std::string("AutoCAD-86 shapes 1.0"),
          "AutoCAD-86 nonsense\r\n\x1A" + std::string(20, '\1'), whole.substr(0, 33),
          unicode_file({{0, named("F", {4})}}).substr(0, 30)})
        EXPECT_FALSE(gi::shape_font::read(broken)) << broken.size();
    const auto damaged = gi::shape_font::read(whole.substr(0, whole.size() - 2));
    ASSERT_TRUE(damaged);
    EXPECT_EQ(drawn((*damaged)->find(1)), "0,0 1,0 ; 1,0 ");
    EXPECT_EQ((*damaged)->find(2), nullptr);
    // Shapes that draw each other many times over.
    shapes many;
    for (unsigned i = 1; i <= 9; ++i) {
        std::string body(1, '\0');
        for (int n = 0; n < 100; ++n)
            body += codes({7, static_cast<int>(i % 9 + 1), 0x10});
        many[i] = body;
    }
    const auto bomb = gi::shape_font::read(plain_file(many));
    ASSERT_TRUE(bomb);
    EXPECT_LT((*bomb)->find(1)->strokes.front().size(), 20'001u);
}

TEST(ShapeFont, measures_and_draws_letters_of_both_files) {
    gi::font font;
    font.shapes = *gi::shape_font::read(plain_file({{0, named("F", {4, 1, 0, 0})},
                                                    {65, named("", {0x44, 0x40, 2, 0x20, 0})},
                                                    {129, named("", {0x80, 0})}}));
    font.big_shapes = *gi::shape_font::read(
        big_file({{0, named("B", {8, 0, 2, 8, 0})}, {0xB8F8, named("", {8, 16, 8, 0})}}));
    EXPECT_EQ(gi::measure_text(L"AA", font, 10.0).width, 25.0) << "four sixths of the second one are drawn";
    EXPECT_EQ(gi::measure_text(L"\x7ED9", font, 10.0).width, 20.0) << "of the big font, by its number in GBK";
    EXPECT_EQ(gi::measure_text(L"\xD8", font, 10.0, 0.5).width, 10.0) << "a diameter has a number of its own";
    const gi::font without;
    EXPECT_EQ(gi::measure_text(L"A\x6C34", font, 10.0).width,
              15.0 + gi::measure_text(L"\x6C34", without, 10.0).width)
        << "what no file has";
}

TEST(ShapeFont, is_found_beside_the_drawing_or_told_once) {
    const test::folder folder;
    const auto picture = [&](std::string_view styles, std::string_view out) {
        const auto group = [](std::string_view all) {
            std::string lines;
            for (const char c : all)
                lines += c == '|' ? '\n' : c;
            return lines + "\n";
        };
        const auto drawing = folder.write(
            "a.dxf",
            group("0|SECTION|2|TABLES|0|TABLE|2|STYLE|70|2") + group(styles) +
                group(
                    "0|ENDTAB|0|TABLE|2|LTYPE|70|1|0|LTYPE|2|SIGNS|70|0|3||72|65|73|2|40|10|49|8|74|0|49|-2|"
                    "74|4|"
                    "75|1|340|51|46|1|50|0|44|-1|45|0|0|ENDTAB|0|TABLE|2|LAYER|70|1|0|LAYER|2|0|70|0|62|7|6|"
                    "CONTINUOUS|0|ENDTAB|0|ENDSEC|0|SECTION|2|ENTITIES|0|LINE|8|0|62|1|6|SIGNS|10|0|20|0|11|"
                    "100|21|"
                    "0|0|SHAPE|8|0|62|2|10|0|20|10|40|5|2|zig|0|TEXT|8|0|62|3|7|MINE|10|0|20|30|40|5|1|A|0|"
                    "ENDSEC|"
                    "0|EOF"));
        return test::zefhost({drawing.string(), "--no-module", "-c",
                              "PICTURE " + (folder / out).string() + "\\n\\n\\n\\n\\nPICTURE " +
                                  (folder / out).string() + "\\n\\n\\n\\n\\n"});
    };
    folder.write("SIGNS.shx", plain_file({{1, named("ZIG", {0x12, 0x1E, 0x12, 0})}}));
    folder.write("mine.shx", plain_file({{0, named("F", {4, 1, 0, 0})}, {65, named("", {0x44, 0x40, 0})}}));
    const auto here =
        picture("0|STYLE|5|50|2|MINE|70|0|3|C:\\fonts\\mine.shx|0|STYLE|5|51|2||70|1|3|signs", "here.svg");
    EXPECT_EQ(here.status, 0) << here.err;
    EXPECT_EQ(here.out.find("Fonts that are not here"), here.out.npos);
    const auto lacking =
        picture("0|STYLE|5|50|2|MINE|70|0|3|lost.shx|0|STYLE|5|51|2||70|1|3|gone.shx", "lacking.svg");
    EXPECT_EQ(lacking.status, 0) << lacking.err;
    const std::size_t told =
        lacking.out.find("Fonts that are not here, and what stands in: gone.shx: nothing; lost.shx: ");
    EXPECT_NE(told, lacking.out.npos) << lacking.out;
    EXPECT_EQ(lacking.out.find("Fonts that are not here", told + 1), lacking.out.npos) << "once";
    // With the files: ten signs in the line of four corners each, and the shape is no square of five.
    const auto corners = [&](std::string_view out, std::string_view color) {
        const std::string svg = test::read(folder / out);
        std::size_t count = 0;
        for (std::size_t at = svg.find(color); at != svg.npos; at = svg.find(color, at + 1)) {
            const std::string_view path = std::string_view(svg).substr(svg.rfind('<', at), 4000);
            for (std::size_t i = 0; i < path.find("/>"); ++i)
                count += path[i] == 'L' ? 1U : 0U;
        }
        return count;
    };
    constexpr std::string_view yellow = "rgb(100%,100%,0%)";
    EXPECT_EQ(corners("here.svg", yellow) + corners("here.svg", "rgb(100%, 100%, 0%)"), 3u);
    EXPECT_EQ(corners("lacking.svg", yellow) + corners("lacking.svg", "rgb(100%, 100%, 0%)"), 4u);
}
