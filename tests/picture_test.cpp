#include "base/utf.h"
#include "dbents.h"
#include "host/gi/font.h"
#include "host/picture/line_pattern.h"
#include "host/picture/picture.h"
#include "host/picture/stroke_letters.h"
#include "host/view/clip.h"
#include "host/view/tracer.h"
#include "tests/db_entities.h"
#include "tests/support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using test::zefhost;

std::string group(int code, std::string_view value) {
    return std::to_string(code) + "\n" + std::string(value) + "\n";
}

std::string layer(std::string_view name, std::string_view color, std::string_view flags,
                  std::string_view linetype = "CONTINUOUS") {
    return group(0, "LAYER") + group(2, name) + group(70, flags) + group(62, color) + group(6, linetype);
}

std::string line(std::string_view on, std::string_view further, double y, double from = 0.0,
                 double to = 100.0) {
    return group(0, "LINE") + group(8, on) + std::string(further) + group(10, std::to_string(from)) +
           group(20, std::to_string(y)) + group(11, std::to_string(to)) + group(21, std::to_string(y));
}

// A drawing whose entities take their looks in all the ways there are.
std::string looks(std::string_view more = {}) {
    std::string text = group(0, "SECTION") + group(2, "TABLES") + group(0, "TABLE") + group(2, "LTYPE") +
                       group(70, "1") + group(0, "LTYPE") + group(2, "DASHES") + group(70, "0") +
                       group(3, "") + group(72, "65") + group(73, "2") + group(40, "20.0") +
                       group(49, "15.0") + group(49, "-5.0") + group(0, "ENDTAB") + group(0, "TABLE") +
                       group(2, "LAYER") + group(70, "6") + layer("0", "7", "0") + layer("RED", "1", "0") +
                       layer("BLUE", "5", "0") + layer("OFF", "-3", "0") + layer("FROZEN", "4", "1") +
                       layer("DASHED", "30", "0", "DASHES") + group(0, "ENDTAB") + group(0, "ENDSEC") +
                       group(0, "SECTION") + group(2, "BLOCKS");
    text += group(0, "BLOCK") + group(8, "0") + group(2, "INNER") + group(70, "0") + group(10, "0.0") +
            group(20, "0.0") + line("0", group(62, "0"), 10.0) + line("0", "", 12.0) + line("RED", "", 14.0) +
            group(0, "ENDBLK") + group(0, "BLOCK") + group(8, "0") + group(2, "OUTER") + group(70, "0") +
            group(10, "0.0") + group(20, "0.0") + group(0, "INSERT") + group(8, "0") + group(62, "0") +
            group(2, "INNER") + group(10, "0.0") + group(20, "0.0") + group(0, "ENDBLK") +
            group(0, "ENDSEC") + group(0, "SECTION") + group(2, "ENTITIES");
    text += group(0, "INSERT") + group(8, "BLUE") + group(62, "6") + group(2, "OUTER") + group(10, "0.0") +
            group(20, "0.0") + line("OFF", "", 20.0) + line("FROZEN", "", 22.0) +
            line("DASHED", "", 24.0, 0.0, 100.0) + line("0", "", 26.0) + std::string(more);
    return text + group(0, "ENDSEC") + group(0, "EOF");
}

// The SVG of a drawing, without blanks. `answers` are those behind the file's name.
std::string svg_of(const test::folder& folder, std::string_view drawing, std::string_view answers) {
    const auto file = folder.write("drawing.dxf", drawing);
    const auto out = folder / "out.svg";
    const auto run =
        zefhost({file.string(), "--no-module", "-c", "PICTURE " + out.string() + " " + std::string(answers)});
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    std::string svg = test::read(out);
    std::erase(svg, ' ');
    return svg;
}

std::size_t times(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST(Picture, resolves_colours_through_layers_and_nested_blocks) {
    const test::folder folder;
    const std::string svg = svg_of(folder, looks(), "Current\\n\\nFit\\nColors\\n");
    const std::string_view magenta = "rgb(100%,0%,100%)";
    const std::string_view blue = "rgb(0%,0%,100%)";
    const std::string_view red = "rgb(100%,0%,0%)";
    const std::string_view green = "rgb(0%,100%,0%)";
    const std::string_view cyan = "rgb(0%,100%,100%)";
    EXPECT_EQ(times(svg, magenta), 1u) << "ByBlock, through two references";
    EXPECT_EQ(times(svg, blue), 1u) << "layer 0 is the reference's";
    EXPECT_EQ(times(svg, red), 1u) << "a layer of its own";
    EXPECT_EQ(times(svg, green), 0u) << "off";
    EXPECT_EQ(times(svg, cyan), 0u) << "frozen";
    // Orange dashes: 100 long with dashes of 15 and gaps of 5 make five repeats, in one path of six pieces.
    const std::size_t orange = svg.find("rgb(100%,49.8");
    ASSERT_NE(orange, svg.npos);
    const std::size_t path = svg.find("d=\"M", orange);
    EXPECT_EQ(times(svg.substr(path, svg.find('"', path + 3) - path), "M"), 6u);
    EXPECT_EQ(times(svg_of(folder, looks(), "Current\\n\\nFit\\nGreys\\n"), red), 0u);
    const std::string second = group(0, "INSERT") + group(8, "0") + group(62, "2") + group(2, "OUTER") +
                               group(10, "0.0") + group(20, "40.0");
    const std::string both = svg_of(folder, looks(second), "Current\\n\\nFit\\nColors\\n");
    EXPECT_EQ(times(both, magenta), 1u);
    EXPECT_EQ(times(both, "rgb(100%,100%,0%)"), 1u) << "the same block, ByBlock in another reference";
    const std::string dark = svg_of(folder, looks(), "Current\\n\\nFit\\nScreen\\n");
    EXPECT_GE(times(dark, "stroke:rgb(100%,100%,100%)") + times(dark, "stroke=\"rgb(100%,100%,100%)"), 1u)
        << "colour 7 on black";
}

// The usual kinds of entities are drawn from their groups; a group that says nothing new makes them objects.
TEST(Picture, is_the_same_from_groups_and_from_objects) {
    const test::folder folder;
    const auto numbers = [](std::initializer_list<std::pair<int, std::string_view>> groups) {
        std::string text;
        for (const auto& [code, value] : groups)
            text += group(code, value);
        return text;
    };
    const std::string bodies[] = {
        group(0, "LINE") + numbers({{8, "RED"}, {10, "5"}, {20, "30"}, {11, "95"}, {21, "31"}}),
        group(0, "LINE") +
            numbers({{8, "DASHED"}, {62, "3"}, {370, "50"}, {10, "5"}, {20, "32"}, {11, "95"}}),
        group(0, "LINE") + numbers({{8, "FROZEN"}, {10, "5"}, {20, "33"}, {11, "95"}, {21, "33"}}),
        group(0, "CIRCLE") + numbers({{8, "RED"}, {10, "40"}, {20, "60"}, {40, "12.5"}}),
        group(0, "ARC") +
            numbers({{8, "BLUE"}, {10, "40"}, {20, "60"}, {40, "9"}, {50, "350"}, {51, "-280"}}),
        group(0, "ARC") +
            numbers({{8, "DASHED"}, {10, "60"}, {20, "60"}, {40, "9"}, {50, "90"}, {51, "450"}}),
        group(0, "LWPOLYLINE") + numbers({{8, "RED"},
                                          {90, "3"},
                                          {70, "1"},
                                          {43, "0.0"},
                                          {38, "2.0"},
                                          {10, "1"},
                                          {20, "50"},
                                          {10, "9"},
                                          {20, "50"},
                                          {10, "5"},
                                          {20, "58"}}),
        group(0, "LWPOLYLINE") + numbers({{8, "RED"},
                                          {90, "2"},
                                          {70, "0"},
                                          {10, "1"},
                                          {20, "70"},
                                          {42, "0.5"},
                                          {10, "9"},
                                          {20, "70"}}),
        group(0, "LWPOLYLINE") + numbers({{8, "0"}, {90, "1"}, {70, "0"}, {10, "1"}, {20, "75"}}),
        group(0, "POINT") + numbers({{8, "BLUE"}, {10, "70"}, {20, "45"}, {30, "0"}}),
        group(0, "INSERT") +
            numbers(
                {{8, "BLUE"}, {2, "INNER"}, {10, "7"}, {20, "80"}, {41, "-0.5"}, {42, "0.25"}, {50, "30"}}),
        group(0, "INSERT") + numbers({{8, "FROZEN"}, {2, "INNER"}, {10, "7"}, {20, "90"}}),
        group(0, "INSERT") + numbers({{8, "OFF"}, {62, "6"}, {2, "INNER"}, {10, "7"}, {20, "95"}}),
        group(0, "INSERT") +
            numbers({{8, "RED"}, {2, "INNER"}, {10, "7"}, {20, "99"}, {41, "1e-5"}, {42, "1e-5"}}),
        group(0, "INSERT") +
            numbers({{8, "RED"}, {2, "INNER"}, {10, "50"}, {20, "99"}, {41, "0.1"}, {70, "3"}, {44, "20"}}),
        group(0, "LINE") +
            numbers({{8, "RED"}, {62, "3"}, {420, "1193046"}, {10, "5"}, {20, "34"}, {11, "95"}}),
        group(0, "LINE") +
            numbers({{8, "RED"}, {6, "dashes"}, {48, "0.5"}, {10, "5"}, {20, "36"}, {11, "95"}}),
        group(0, "LINE") +
            numbers({{102, "{ACAD_REACTORS"}, {330, "9"}, {102, "}"}, {8, "BLUE"}, {11, "95"}}),
        group(0, "DIMENSION") +
            numbers({{8, "RED"}, {62, "4"}, {2, "OUTER"}, {70, "0"}, {13, "5"}, {23, "9"}}),
        group(0, "DIMENSION") + numbers({{8, "FROZEN"}, {2, "OUTER"}, {70, "0"}}),
        group(0, "DIMENSION") + numbers({{8, "BLUE"}, {2, "INNER"}, {12, "0"}, {22, "120"}, {70, "0"}}),
    };
    // Attributes, of which the mode of the drawing shows those that are not invisible.
    const auto reference = [&](std::string_view further) {
        const auto attribute = [&](std::string_view y, std::string_view own) {
            return group(0, "ATTRIB") +
                   numbers({{8, "BLUE"}, {10, "3"}, {20, y}, {40, "4"}, {1, "Sign"}, {2, "TAG"}}) +
                   std::string(further) + std::string(own);
        };
        return group(0, "INSERT") + numbers({{8, "RED"}, {66, "1"}, {2, "INNER"}, {10, "9"}, {20, "150"}}) +
               std::string(further) + attribute("151", "") + attribute("157", group(70, "1")) +
               attribute("163", numbers({{70, "0"},
                                         {72, "1"},
                                         {11, "40"},
                                         {21, "163"},
                                         {74, "3"},
                                         {100, "AcDbXrecord"},
                                         {70, "1"}})) +
               attribute("170", group(62, "0")) + attribute("177", numbers({{73, "2"}, {71, "2"}})) +
               group(0, "SEQEND");
    };
    std::string plain;
    std::string unusual;
    for (const std::string& body : bodies) {
        plain += body;
        unusual += body + group(60, "0"); // seen
    }
    const std::string answers = "Current\\n\\nFit\\nColors\\n";
    plain += reference("");
    unusual += reference(group(60, "0"));
    const std::string from_groups = svg_of(folder, looks(plain), answers);
    EXPECT_EQ(from_groups, svg_of(folder, looks(unusual), answers));
    EXPECT_NE(from_groups, svg_of(folder, looks(), answers));
}

// "RED" and its fellows, as a PDF has names of layers.
std::string pdf_name(std::string_view name) {
    std::string hex = "/Name<FEFF";
    for (const char sign : name)
        hex += "00" + std::string(1, "0123456789ABCDEF"[sign / 16]) + "0123456789ABCDEF"[sign % 16];
    return hex + ">";
}

TEST(Picture, has_the_layers_that_show_something_in_a_pdf) {
    const test::folder folder;
    const auto file = folder.write("drawing.dxf", looks());
    const auto out = folder / "out.pdf";
    const auto run = zefhost({file.string(), "--no-module", "-c", "", "--picture", out.string()});
    EXPECT_EQ(run.status, 0) << run.err;
    const std::string pdf = test::read(out);
    for (const auto& [name, shown] :
         {std::pair("RED", 1u), {"BLUE", 1u}, {"DASHED", 1u}, {"OFF", 0u}, {"FROZEN", 0u}})
        EXPECT_EQ(times(pdf, pdf_name(name)), shown) << name;
    // Readers find an object where the table at the end says that it is.
    const std::size_t table = std::stoul(pdf.substr(pdf.rfind("startxref\n") + 10));
    ASSERT_EQ(pdf.compare(table, 5, "xref\n"), 0);
    const std::size_t first = std::stoul(pdf.substr(pdf.find(" f \n", table) + 4));
    EXPECT_EQ(pdf.compare(first, 8, "1 0 obj\n"), 0);
}

TEST(Picture, shows_a_window_at_a_scale) {
    const test::folder folder;
    // Of all the lines only the one at y 26 lies in the window; at 1:2 its 100 units are 50 mm, 141.7 points.
    const std::string svg = svg_of(folder, looks(), "Window -10,25 110,27 200x100 1:2 Colors\\n");
    EXPECT_EQ(times(svg, "rgb(100%,0%,0%)"), 1u) << "near the paper's middle, so seen, too";
    EXPECT_NE(svg.find("283.4"), svg.npos) << "half of the paper: " << svg.substr(0, 600);
}

TEST(Picture, hatches_by_the_lines_of_the_pattern) {
    const test::folder folder;
    std::string hatch = group(0, "HATCH") + group(8, "0") + group(62, "6") + group(10, "0.0") +
                        group(20, "0.0") + group(30, "0.0") + group(210, "0.0") + group(220, "0.0") +
                        group(230, "1.0") + group(2, "LINES") + group(70, "0") + group(71, "0") +
                        group(91, "1") + group(92, "2") + group(72, "0") + group(73, "1") + group(93, "4");
    for (const auto& [x, y] : {std::pair("0.0", "32.0"), {"60.0", "32.0"}, {"60.0", "62.0"}, {"0.0", "62.0"}})
        hatch += group(10, x) + group(20, y);
    hatch += group(97, "0") + group(75, "0") + group(76, "1") + group(52, "0.0") + group(41, "1.0") +
             group(77, "0") + group(78, "1") + group(53, "0.0") + group(43, "0.0") + group(44, "0.0") +
             group(45, "0.0") + group(46, "10.0") + group(79, "0") + group(98, "0");
    const std::string svg = svg_of(folder, looks(hatch), "Window 0,30 60,64 A4 Fit Colors\\n");
    // Lines at 40, 50 and 60, in one path; no area.
    EXPECT_EQ(times(svg, "rgb(100%,0%,100%)"), 1u);
    const std::size_t magenta = svg.find("rgb(100%,0%,100%)");
    ASSERT_NE(magenta, svg.npos);
    const std::size_t path = svg.find("d=\"M", magenta);
    EXPECT_EQ(times(svg.substr(path, svg.find('"', path + 3) - path), "M"), 3u);
}

TEST(Picture, puts_a_sheet_where_its_paper_has_it) {
    const test::folder folder;
    const auto out = folder / "out.svg";
    const auto run =
        zefhost({"--no-module", "-c",
                 "LAYOUT Set Layout1\\nLINE 0,0 100,0 \\nPICTURE " + out.string() + " Current\\n\\n\\n\\n"});
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    const std::string svg = test::read(out);
    // The origin lies within the margins of an A3, 7.5 mm from the left and 20 from below; a unit is a
    // millimetre.
    EXPECT_TRUE(svg.find("M 7.50") != svg.npos && svg.find(" 276.99") != svg.npos &&
                svg.find("L 107.49") != svg.npos)
        << svg.substr(0, 1500);
}

TEST(Picture, survives_what_nobody_should_draw) {
    const test::folder folder;
    const std::string odd =
        line("0", "", 1e15, -1e15, 1e15) + line("0", group(48, "1e-12") + group(6, "DASHES"), 30.0) +
        group(0, "TEXT") + group(8, "0") + group(10, "0.0") + group(20, "40.0") + group(40, "0.0") +
        group(1, "nothing") + group(0, "INSERT") + group(8, "0") + group(2, "OUTER") + group(10, "0.0") +
        group(20, "50.0") + group(70, "1000") + group(71, "1000") + group(44, "1e-9") + group(45, "1e-9");
    const std::string svg = svg_of(folder, looks(odd), "Window 0,0 100,60 A4 Fit Colors\\n");
    EXPECT_TRUE(svg.find("</svg>") != svg.npos);
    EXPECT_EQ(svg.find("nan"), svg.npos);
    EXPECT_LT(svg.size(), 200'000u);
}

TEST(Picture, refuses_with_a_word_and_leaves_files_alone) {
    const test::folder folder;
    const auto file = folder.write("drawing.dxf", looks());
    const auto old = folder.write("old.png", "as it was");
    const auto run = zefhost(
        {file.string(), "--no-module", "-c", "PICTURE " + old.string() + " Current 9999x9999 Fit Colors\\n"});
    EXPECT_EQ(run.status, 6);
    EXPECT_NE(run.err.find("79992 dots a side is too large"), std::string::npos) << run.err;
    EXPECT_EQ(test::read(old), "as it was");
    const auto wrong = zefhost({file.string(), "--no-module", "--picture", (folder / "a.bmp").string()});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_NE(wrong.err.find("pictures end with .png, .svg or .pdf"), std::string::npos) << wrong.err;
}

TEST(Picture, has_sheets_behind_each_other_in_a_pdf) {
    const test::folder folder;
    const auto out = folder / "all.pdf";
    const auto run =
        zefhost({test::drawing("../../samples/storey.dxf").string(), "--no-module", "--readonly", "-c",
                 "LAYOUT New A\\nLAYOUT New B\\nPICTURE " + out.string() + " Sheets\\n\\n\\n\\n"});
    EXPECT_EQ(run.status, 0) << run.err;
    const std::string pdf = test::read(out);
    EXPECT_EQ(times(pdf, "/Type/Page/"), 3u) << "its own and two that were made";
}

TEST(Picture, understands_papers_and_scales) {
    struct row {
        const wchar_t* text;
        double width;
        double height;
    };
    for (const row& paper :
         {row{L"a3", 420.0, 297.0}, row{L"A4V", 210.0, 297.0}, row{L"600x400", 600.0, 400.0},
          row{L"A9", 0.0, 0.0}, row{L"600", 0.0, 0.0}, row{L"0x5", 0.0, 0.0}, row{L"1e9x5", 0.0, 0.0}})
        EXPECT_EQ(picture::paper_named(paper.text).value_or(std::pair(0.0, 0.0)),
                  std::pair(paper.width, paper.height))
            << std::string(paper.text, paper.text + std::char_traits<wchar_t>::length(paper.text));
    EXPECT_EQ(picture::scale_named(L"1:100"), 0.01);
    EXPECT_EQ(picture::scale_named(L"2"), 2.0);
    for (const wchar_t* const none : {L"1:0", L"-1:2", L"fit", L":", L""})
        EXPECT_FALSE(picture::scale_named(none));
}

TEST(LinePattern, begins_and_ends_with_dashes) {
    picture::line_pattern pattern;
    pattern.dashes = {4.0, -1.0, 0.0, -1.0};
    pattern.length = 6.0;
    const AcGePoint3d corner[] = {{0.0, 0.0, 0.0}, {10.0, 0.0, 0.0}, {10.0, 10.0, 0.0}};
    const picture::patterned_line drawn = picture::patterned(corner, pattern, 1.0);
    double shown = 0.0;
    std::size_t dots = 0;
    for (const auto& dash : drawn.dashes) {
        double length = 0.0;
        for (std::size_t i = 0; i + 1 < dash.size(); ++i)
            length += (dash[i + 1] - dash[i]).length();
        dots += length == 0.0 ? 1 : 0;
        shown += length;
    }
    EXPECT_EQ(dots, 3u);
    EXPECT_NEAR(shown, 20.0 - 3 * 2.0, 1e-9) << "all but the gaps of three repeats";
    EXPECT_EQ(drawn.dashes.front().front(), corner[0]);
    EXPECT_TRUE(drawn.dashes.back().back().isEqualTo(corner[2]));
    EXPECT_EQ(picture::patterned(corner, pattern, 10.0).dashes.size(), 1u) << "too short for the pattern";
    EXPECT_EQ(picture::patterned(corner, pattern, 1e-9).dashes.size(), 1u) << "more dashes than anybody sees";
}

TEST(SheetView, cuts_off_what_lies_far_outside) {
    const picture::sheet_box box{0.0, 0.0, 200.0, 100.0};
    const picture::sheet_view view = picture::sheet_view::from_above({0.0, 0.0, 0.0}, 400.0, box);
    EXPECT_EQ(view.at({0.0, 0.0, 0.0}), (sys::sheet_point{100.0, 50.0}));
    EXPECT_EQ(view.at({200.0, 100.0, 7.0}), (sys::sheet_point{200.0, 0.0}));
    const auto through = view.near_lines({{-1e12, 50.0}, {1e12, 50.0}, {1e12, 1e12}});
    ASSERT_EQ(through.size(), 1u);
    EXPECT_LT(std::fabs(through[0].front().x), 1000.0);
    EXPECT_NEAR(through[0].back().y, 50.0, 1e-3);
    EXPECT_EQ(view.near_lines({{-1e9, -1e9}, {-2e9, 5.0}}).size(), 0u);
    EXPECT_EQ(view.near_lines({{std::numeric_limits<double>::quiet_NaN(), 0.0}, {1.0, 1.0}}).size(), 0u);
    for (const auto& corner : view.near_area({{-1e9, -1e9}, {1e9, -1e9}, {1e9, 1e9}, {-1e9, 1e9}}))
        EXPECT_LT(std::fabs(corner.x) + std::fabs(corner.y), 1000.0);
}

TEST(Picture, draws_lines_under_and_over_texts) {
    struct ruled final : gi::canvas {
        std::vector<AcGePoint3d> ends;
        void lines(std::span<const AcGePoint3d> points) override {
            ends.insert(ends.end(), points.begin(), points.end());
        }
        void area(std::span<const AcGePoint3d>) override {}
        void curve(const gi::arc&) override {}
        bool text(const gi::text_line&) override { return true; }
    };
    const double one = gi::measure_text(L"A", gi::font(), 10.0).width;
    const double two = gi::measure_text(L"AB", gi::font(), 10.0).width;
    struct row {
        const wchar_t* text;
        std::vector<AcGePoint3d> ends;
    };
    for (const row& wanted :
         {row{L"AB", {}}, row{L"%%uAB", {{0.0, -2.0, 0.0}, {two, -2.0, 0.0}}},
          row{L"A%%OB", {{one, 12.0, 0.0}, {two, 12.0, 0.0}}},
          row{L"%%kA%%kB%%u", {{0.0, 5.0, 0.0}, {one, 5.0, 0.0}}}, row{L"%%%AB%%c", {}}}) {
        AcDbText text;
        text.setTextString(wanted.text);
        text.setHeight(10.0);
        ruled seen;
        gi::tracer(seen).draw(text);
        ASSERT_EQ(seen.ends.size(), wanted.ends.size()) << base::narrow(wanted.text);
        for (std::size_t i = 0; i < wanted.ends.size(); ++i)
            EXPECT_TRUE(seen.ends[i].isEqualTo(wanted.ends[i])) << base::narrow(wanted.text);
    }
}

TEST(Picture, shades_gradients_in_every_format) {
    struct row {
        std::string_view kind;
        std::string_view groups; // one colour, shift, tint
        std::string_view svg;
        std::string_view pdf;
    };
    for (const row& wanted : {
             row{"LINEAR", "452|0|461|0|462|0", "<linearGradient", "/ShadingType 2"},
             row{"INVCYLINDER", "452|0|461|1|462|0", "<linearGradient", "/FunctionType 3"},
             row{"SPHERICAL", "452|1|461|0|462|1", "<radialGradient", "/ShadingType 3"},
         }) {
        std::string hatch =
            "0|HATCH|8|0|62|6|10|0|20|0|30|0|210|0|220|0|230|1|2|SOLID|70|1|71|0|91|1|92|2|72|0|73|1|"
            "93|4|10|0|20|32|10|60|20|32|10|60|20|62|10|0|20|62|97|0|75|0|76|1|98|0|450|1|451|0|460|"
            "0|453|2|" +
            std::string(wanted.groups) + "|463|0|63|5|421|255|463|1|63|2|421|16776960|470|" +
            std::string(wanted.kind) + "|";
        std::replace(hatch.begin(), hatch.end(), '|', '\n');
        const test::folder folder;
        std::string svg = svg_of(folder, looks(hatch), "Window 0,30 60,64 A4 Fit Colors\\n");
        EXPECT_NE(svg.find(wanted.svg), svg.npos) << wanted.kind;
        EXPECT_NE(svg.find("rgb(0%,0%,100%)"), svg.npos) << "the first colour: " << wanted.kind;
        const bool tinted = wanted.kind == "SPHERICAL";
        EXPECT_NE(svg.find(tinted ? "rgb(100%,100%,100%)" : "rgb(100%,100%,0%)"), svg.npos) << wanted.kind;
        const auto out = folder / "out.pdf";
        EXPECT_EQ(
            zefhost({(folder / "drawing.dxf").string(), "--no-module", "-c", "", "--picture", out.string()})
                .status,
            0);
        EXPECT_NE(test::read(out).find(wanted.pdf), std::string::npos) << wanted.kind;
    }
}

// An image of two dots, red and green, on a square of 60 by 30 that is cut to its left half; one of too many
// dots; a path that leads nowhere; and an area that covers what lies below.
TEST(Picture, shows_images_in_their_clips_and_covers_with_wipeouts) {
    const test::folder folder;
    const auto low_first = [](std::uint64_t number, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text += static_cast<char>(number >> (8 * i) & 0xFF);
        return text;
    };
    const auto bmp = [&](std::uint32_t width, std::uint32_t height, std::string_view dots) {
        return "BM" + low_first(0, 8) + low_first(54, 4) + low_first(40, 4) + low_first(width, 4) +
               low_first(height, 4) + low_first(1, 2) + low_first(24, 2) + std::string(24, '\0') +
               std::string(dots);
    };
    folder.write("two.bmp", bmp(2, 1, std::string_view("\x00\x00\xFF\x00\xFF\x00\x00\x00", 8)));
    folder.write("bomb.bmp", bmp(60'000, 60'000, ""));
    const auto image = [](std::string_view type, std::string_view marker, std::string_view definition,
                          int x) {
        std::string text = "0|" + std::string(type) + "|8|0|62|6|100|AcDbEntity|100|" + std::string(marker) +
                           "|10|" + std::to_string(x) +
                           "|20|30|30|0|11|30|21|0|31|0|12|0|22|30|32|0|13|2|23|1|340|" +
                           std::string(definition) +
                           "|70|7|280|1|281|50|282|50|283|0|71|1|91|2|14|-0.5|24|-0.5|14|0.5|"
                           "24|0.5|";
        std::replace(text.begin(), text.end(), '|', '\n');
        return text;
    };
    std::string drawing =
        looks(line("0", "", 40.0, 200.0, 230.0) + image("IMAGE", "AcDbRasterImage", "F1", 0) +
              image("IMAGE", "AcDbRasterImage", "F2", 100) + image("IMAGE", "AcDbRasterImage", "F3", 150) +
              image("WIPEOUT", "AcDbWipeout", "0", 200));
    const std::string end = group(0, "EOF");
    drawing.resize(drawing.size() - end.size());
    drawing += group(0, "SECTION") + group(2, "OBJECTS");
    for (const auto& [handle, path] :
         {std::pair("F1", "C:\\pictures\\two.bmp"), {"F2", "bomb.bmp"}, {"F3", "../lost.png"}})
        drawing +=
            group(0, "IMAGEDEF") + group(5, handle) + group(100, "AcDbRasterImageDef") + group(1, path);
    drawing += group(0, "ENDSEC") + end;
    const auto file = folder.write("drawing.dxf", drawing);
    for (const std::string_view form : {"svg", "pdf", "png"}) {
        const auto out = folder / ("out." + std::string(form));
        const auto run = zefhost({file.string(), "--no-module", "-c", "", "--picture", out.string()});
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_NE(run.out.find(
                      "Images that are not shown: ../lost.png: it is not here; bomb.bmp: its 60000 x 60000 "
                      "dots are too many."),
                  run.out.npos)
            << run.out;
        const std::string bytes = test::read(out);
        if (form == "svg") {
            EXPECT_EQ(times(bytes, "<image"), 1u);
            EXPECT_GE(times(bytes, "<clipPath"), 1u);
        } else if (form == "pdf") {
            EXPECT_EQ(times(bytes, "/Subtype/Image"), 1u);
        }
    }
}

// Of two forms of a drawing: one line stays, one goes, one comes, one moves, and one's layer is turned off.
TEST(Picture, shows_what_changed_since_another_drawing) {
    const test::folder folder;
    const auto named = [&](std::string_view handle, std::string_view on, double y) {
        return line(on, group(5, handle), y);
    };
    std::string before = looks(named("A1", "0", 30.0) + named("A2", "RED", 32.0) + named("A3", "BLUE", 34.0) +
                               named("A4", "DASHED", 36.0));
    std::string now = looks(named("A1", "0", 30.0) + named("A3", "BLUE", 35.0) + named("A5", "RED", 38.0) +
                            named("A4", "DASHED", 36.0));
    const std::string dashed = layer("DASHED", "30", "0", "DASHES");
    now.replace(now.find(dashed), dashed.size(), layer("DASHED", "-30", "0", "DASHES"));
    const auto old = folder.write("before.dxf", before);
    const auto file = folder.write("now.dxf", now);
    const auto out = folder / "out.svg";
    const auto run =
        zefhost({file.string(), "--no-module", "-c", "", "--picture", out.string(), "--since", old.string()});
    EXPECT_EQ(run.status, 0) << run.err;
    std::string svg = test::read(out);
    std::erase(svg, ' ');
    EXPECT_GE(times(svg, "stroke:rgb(74.50"), 1u) << "what stayed";
    EXPECT_GE(times(svg, "stroke:rgb(87.8"), 1u) << "what went";
    EXPECT_GE(times(svg, "stroke:rgb(0%,58.8"), 1u) << "what came";
    EXPECT_GE(times(svg, "stroke:rgb(0%,35.2"), 1u) << "what moved";
    EXPECT_EQ(times(svg, "rgb(100%,0%,0%)"), 0u);
    EXPECT_EQ(
        zefhost({file.string(), "--no-module", "-c", "", "--picture", out.string(), "--since", "none.dxf"})
            .status,
        6);
}

// What texts hand over: where each part begins and how long it is, and the lines of fractions.
TEST(Picture, sets_texts_in_columns_and_fractions_with_their_lines) {
    struct written final : gi::canvas {
        std::string all;
        static std::string at(const AcGePoint3d& p) {
            return std::to_string(std::lround(p.x)) + "," + std::to_string(std::lround(p.y));
        }
        void lines(std::span<const AcGePoint3d> points) override {
            all += at(points[0]) + "-" + at(points[1]) + " ";
        }
        void area(std::span<const AcGePoint3d>) override {}
        void curve(const gi::arc&) override {}
        bool text(const gi::text_line& line) override {
            all += base::narrow(line.text) + "@" + at(line.position) + " ";
            return true;
        }
    };
    constexpr std::string_view styles =
        "0 STYLE|5 300|100 AcDbSymbolTableRecord|100 AcDbTextStyleTableRecord|"
        "2 DOWN|70 4|40 0|41 1|3 txt|0 STYLE|5 301|100 AcDbSymbolTableRecord|"
        "100 AcDbTextStyleTableRecord|2 SONG|70 4|40 0|41 1|3 simsun.ttf";
    struct row {
        std::string_view entity;
        std::string_view seen;
        test::box extents;
    };
    // Signs are 6 wide and high, 9 below each other; base lines of paragraphs 10.
    for (const row& wanted : {
             row{"0 TEXT|7 DOWN|1 AB", "A@98,44 B@98,35 ", {98, 35, 102, 50}},
             row{"0 TEXT|7 DOWN|72 2|11 100|21 50|1 AB", "A@98,59 B@98,50 ", {98, 50, 102, 65}},
             row{"0 TEXT|7 DOWN|72 4|11 100|21 50|1 AB", "A@98,52 B@98,43 ", {98, 42.5, 102, 57.5}},
             row{"0 TEXT|7 SONG|1 A", "A@100,50 ", {100, 50, 100.0 + 6.0 * 667.0 / 716.0, 56}},
             row{"0 MTEXT|7 DOWN|71 1|72 5|1 AB\\PC", "A@111,44 B@111,35 C@101,44 ", {101, 35, 115, 50}},
             row{"0 MTEXT|7 DOWN|71 9|72 5|1 AB", "A@95,59 B@95,50 ", {95, 50, 99, 65}},
             row{"0 MTEXT|7 DOWN|71 1|72 1|1 AB", "AB@100,44 ", {100, 44, 110, 50}},
             row{"0 MTEXT|71 1|1 \\SA/B;", "A@100,44 B@100,34 100,42-104,42 ", {100, 34, 104, 50}},
             row{"0 MTEXT|71 1|1 \\KAB\\k", "AB@100,44 100,47-110,47 ", {100, 44, 110, 50}},
             row{"0 MTEXT|71 1|1 \\pi-2,l2,t2,5;A\tB\tC", "A@100,44 B@112,44 C@130,44 ", {100, 44, 134, 50}},
             row{"0 MTEXT|71 1|1 A\\P\\psm2;B\\P\\pse3,b1;C",
                 "A@100,44 B@100,24 C@100,0 ",
                 {100, 0, 104, 50}},
             row{"0 MTEXT|71 1|41 20|1 A\\NB|75 1|76 2|48 20|49 5", "A@100,44 B@125,44 ", {100, 44, 129, 50}},
         }) {
        const bool one_line = wanted.entity.starts_with("0 TEXT");
        const std::size_t end = wanted.entity.find('|');
        const auto database = test::database_of(test::modern_drawing(
            std::string(wanted.entity.substr(0, end)) + "|5 100|330 1F|100 AcDbEntity|8 0|100 AcDb" +
                (one_line ? "Text" : "MText") + "|10 100|20 50|30 0|40 6" +
                std::string(wanted.entity.substr(end)),
            {}, {}, styles));
        const test::seen<AcDbEntity> entity(*database, 0x100);
        written seen;
        gi::tracer(seen).draw(*entity);
        EXPECT_EQ(seen.all, wanted.seen) << wanted.entity;
        EXPECT_EQ(test::box_of(*entity), wanted.extents) << wanted.entity;
    }
}

// A sheet with a viewport that a circle clips, in which the layer RED is blue.
TEST(Picture, follows_what_a_viewport_says) {
    const test::folder folder;
    std::string drawing =
        looks(line("RED", "", 30.0) + group(0, "CIRCLE") + group(5, "A2") + group(8, "DASHED") +
              group(67, "1") + group(10, "100.0") + group(20, "100.0") + group(40, "50.0"));
    const auto viewport = [](std::string_view handle, std::string_view number, std::string_view more) {
        return group(0, "VIEWPORT") + group(5, handle) + group(67, "1") + group(8, "0") +
               group(100, "AcDbViewport") + group(10, "100.0") + group(20, "100.0") + group(40, "100.0") +
               group(41, "100.0") + group(68, number) + group(69, number) + group(12, "50.0") +
               group(22, "30.0") + group(16, "0.0") + group(26, "0.0") + group(36, "1.0") +
               group(45, "100.0") + std::string(more);
    };
    const std::string end = group(0, "ENDSEC") + group(0, "EOF");
    drawing.resize(drawing.size() - end.size());
    drawing += viewport("A0", "1", "") + viewport("A1", "2", group(90, "65536") + group(340, "A2"));
    drawing += group(0, "ENDSEC") + group(0, "SECTION") + group(2, "OBJECTS") + group(0, "DICTIONARY") +
               group(5, "B1") + group(3, "ADSK_XREC_LAYER_COLOR_OVR") + group(360, "B2") +
               group(0, "XRECORD") + group(5, "B2") + group(100, "AcDbXrecord") +
               group(102, "{ADSK_LYR_COLOR_OVERRIDE") + group(335, "A1") + group(420, "-1023410171") +
               group(102, "}") + end;
    const std::string red = layer("RED", "1", "0");
    drawing.insert(drawing.find(red) + red.size(),
                   group(102, "{ACAD_XDICTIONARY") + group(360, "B1") + group(102, "}"));
    drawing = group(0, "SECTION") + group(2, "HEADER") + group(9, "$TILEMODE") + group(70, "0") +
              group(0, "ENDSEC") + drawing;
    const std::string svg = svg_of(folder, drawing, "Current A4 Fit Colors\\n");
    EXPECT_EQ(times(svg, "rgb(100%,0%,0%)"), 0u) << "red is blue here";
    EXPECT_GE(times(svg, "rgb(0%,0%,100%)"), 1u);
    // One of the clips is the circle: its path has more corners than a rectangle.
    std::size_t corners = 0;
    for (std::size_t clip = svg.find("<clipPath"); clip != svg.npos; clip = svg.find("<clipPath", clip + 1))
        corners = std::max(corners, times(svg.substr(clip, svg.find("</clipPath>", clip) - clip), "L"));
    EXPECT_GT(corners, 10u);
}

// What a canvas gets through a square of 10 around the origin.
TEST(Clip, ShowsTextsWholeOrNotAtAll) {
    struct counting final : gi::canvas {
        int texts = 0;
        int areas = 0;
        void lines(std::span<const AcGePoint3d>) override {}
        void area(std::span<const AcGePoint3d>) override { ++areas; }
        void curve(const gi::arc&) override {}
        bool text(const gi::text_line&) override { return ++texts > 0; }
    } seen;
    gi::clip_boundary square;
    square.polygon = {{-5.0, -5.0}, {5.0, -5.0}, {5.0, 5.0}, {-5.0, 5.0}};
    gi::clipped_canvas clipped(seen, square);
    gi::text_line line;
    line.x = {1.0, 0.0, 0.0};
    line.y = {0.0, 1.0, 0.0};
    line.length = 4.0;
    int shown = 0;
    for (const double x : {-20.0, -7.0, 0.0, 4.0, 6.0}) {
        line.position = {x, 0.0, 0.0};
        EXPECT_TRUE(clipped.text(line)) << x;
        shown += x > -9.0 && x < 5.0 ? 1 : 0; // the second one's last letter is within
        EXPECT_EQ(seen.texts, shown) << x;
    }
    EXPECT_EQ(seen.areas, 0);
}

// Two letters as the file has them: a blank, and a mark of two strokes.
TEST(StrokeLetters, are_read_with_broken_ends) {
    const auto letters = picture::read_stroke_letters("  699  1JZ\n  714  6MWRFRT RRYQ\nZ");
    EXPECT_NEAR(letters[0].advance, 16.0 / 21.0, 1e-9);
    ASSERT_EQ(letters[1].strokes.size(), 2u);
    EXPECT_NEAR(letters[1].strokes[0][0].y, 1.0, 1e-9) << "capitals are 1 high";
    EXPECT_TRUE(picture::read_stroke_letters("  699 99JZ")[0].strokes.empty());
}

} // namespace
