// Sheets that figures are drawn on, and the file that they become: a PNG, an SVG or a PDF.
//
// Coordinates are millimetres on the sheet, from its upper left corner, y downwards. What lies outside of a
// sheet is cut off.
#pragma once

#include "base/result.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sys {

struct sheet_point {
    double x = 0.0;
    double y = 0.0;
    friend bool operator==(const sheet_point&, const sheet_point&) = default;
};

struct ink {
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
    double opacity = 1.0;
    friend bool operator==(const ink&, const ink&) = default;
};

struct pen {
    ink color;
    double width = 0.25; // millimetres; never thinner than what can be seen
    friend bool operator==(const pen&, const pen&) = default;
};

// What a line of text is written with: the first of these faces that the system has, by one of its names.
// Signs that it lacks come from a font that has them.
struct sheet_font {
    std::vector<std::wstring> faces;
    bool bold = false;
    bool italic = false;
    friend bool operator==(const sheet_font&, const sheet_font&) = default;
};

// A line of text from where it begins on its base line. Along x the text runs, along y its letters rise; both
// are as long as its capitals are high, x longer or shorter where letters are wide or narrow.
struct sheet_text {
    std::wstring_view text;
    sheet_point start;
    sheet_point x;
    sheet_point y;
    double length =
        0.0; // how long it has to be, in capitals' heights along x; 0: as long as the font makes it
    ink color;
};

// Colours that change across an area, beyond their ends as they are there: along a line, or from a point
// outwards to a circle.
struct shading {
    bool round = false;
    sheet_point from;                          // the middle of a round one
    sheet_point to;                            // a point of its circle
    std::vector<std::pair<double, ink>> stops; // from 0 through 1, in their order; two at least
};

enum class paper_format { png, svg, pdf };

struct paper_setup {
    paper_format format = paper_format::png;
    double width = 420.0; // of a sheet
    double height = 297.0;
    double dots_per_mm = 8.0; // of a PNG
    ink background{255, 255, 255};
};

struct image_dots;

// Where an image lies: its upper left corner, and its whole sides from there.
struct image_place {
    sheet_point corner;
    sheet_point right;
    sheet_point down;
};

class paper {
public:
    virtual ~paper() = default;

    // Figures lie one above the other in the order of their calls.
    virtual void stroke(std::span<const sheet_point> points, const pen& pen) = 0;
    // Several rims: what lies within an odd number of them is filled.
    virtual void fill(std::span<const std::vector<sheet_point>> rims, const ink& color) = 0;
    virtual void fill_shaded(std::span<const std::vector<sheet_point>> rims, const shading& colors) = 0;
    virtual void text(const sheet_text& line, const sheet_font& font) = 0;
    virtual void image(const std::shared_ptr<const image_dots>& dots, const image_place& place) = 0;
    // The face that the system has for a font; empty when it is the one of that name.
    virtual std::wstring stand_in(const sheet_font& font, std::wstring_view wanted) = 0;
    // What follows is drawn within an area only, and within those around it.
    virtual void push_clip(std::span<const sheet_point> rim) = 0;
    virtual void pop_clip() = 0;
    // What follows stands on a layer, which readers of a PDF can switch off; other files have none.
    virtual void on_layer(std::wstring_view /*name*/) {}
    // Another sheet; only a PDF has more than one.
    virtual void next_sheet(double width, double height) = 0;
    // The bytes of the file; nothing can be drawn after that. Fails when there is no memory for it.
    virtual base::result<std::string> finish() = 0;
};

// A paper to draw on. Fails when the library that draws is missing, and for more dots than a picture can
// have.
base::result<std::unique_ptr<paper>> make_paper(const paper_setup& setup);

} // namespace sys
