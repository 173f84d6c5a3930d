// Lines of text on a sheet: letters of strokes for shape fonts, fonts of the system for the rest.
#pragma once

#include "host/gi/canvas.h"
#include "host/gi/font.h"
#include "host/picture/lacking_fonts.h"
#include "host/picture/sheet_view.h"
#include "sys/paper.h"

#include <map>
#include <set>
#include <string>

namespace picture {

class text_painter {
public:
    text_painter(sys::paper& paper, lacking_fonts& lacking);
    // With what another one knows of fonts.
    text_painter(sys::paper& paper, const text_painter& other)
        : paper_(paper), stand_ins_(other.stand_ins_), fonts_(other.fonts_), lacking_(other.lacking_) {}

    // Draws a line of the world. It is as long as it was measured, whatever font draws it.
    void draw(const gi::text_line& line, const sheet_view& view, const sys::pen& pen);
    // Draws a shape where a text would begin, with the units of its file along the text's axes.
    void draw_shape(const gi::shape& shape, const gi::text_line& where, const sheet_view& view,
                    const sys::pen& pen);

    // A file of shapes that was wanted is not here.
    void lacks_shapes(const std::wstring& file);

private:
    void draw_strokes(std::wstring_view letters, const sys::sheet_text& where, const sys::pen& pen);
    void draw_letters(std::wstring_view letters, const gi::font& font, const sys::sheet_text& where,
                      const sys::pen& pen);
    void stroke_shape(const gi::shape& shape, const AcGePoint2d& from, double wide, double unit,
                      const sys::sheet_text& where, const sys::pen& pen);
    // Signs of a font were not drawn by its own file.
    void lacks(const gi::font& font, bool wide, bool stroked);
    // The faces that stand for a font: what the user's table "fonts.fmp" names, then its own; for strokes,
    // what has the signs that strokes lack.
    const sys::sheet_font& font_for(const gi::font& font);

    sys::paper& paper_;
    std::multimap<std::wstring, std::wstring> stand_ins_; // by folded names
    std::map<std::wstring, sys::sheet_font> fonts_;       // by what is known of them
    lacking_fonts& lacking_;
    std::set<std::wstring> told_; // to it
};

} // namespace picture
