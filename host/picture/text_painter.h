// Lines of text on a sheet: letters of strokes for shape fonts, fonts of the system for the rest.
#pragma once

#include "host/gi/canvas.h"
#include "host/gi/font.h"
#include "host/picture/sheet_view.h"
#include "sys/paper.h"

#include <map>
#include <string>
#include <vector>

namespace picture {

class text_painter {
public:
    explicit text_painter(sys::paper& paper);
    // With what another one knows of fonts.
    text_painter(sys::paper& paper, const text_painter& other)
        : paper_(paper), stand_ins_(other.stand_ins_), fonts_(other.fonts_) {}

    // Draws a line of the world. It is as long as it was measured, whatever font draws it.
    void draw(const gi::text_line& line, const sheet_view& view, const sys::pen& pen);
    // Draws a shape where a text would begin, with the units of its file along the text's axes.
    void draw_shape(const gi::shape& shape, const gi::text_line& where, const sheet_view& view,
                    const sys::pen& pen);

    // A file of shapes that was wanted is not here.
    void lacks_shapes(const std::wstring& file);
    // What was drawn without its font, for each the font, a colon and what stood in.
    std::vector<std::wstring> lacking() const;

private:
    void draw_strokes(std::wstring_view letters, const sys::sheet_text& where, const sys::pen& pen);
    void draw_letters(std::wstring_view letters, const gi::font& font, const sys::sheet_text& where,
                      const sys::pen& pen);
    void stroke_shape(const gi::shape& shape, const AcGePoint2d& from, double wide, double unit,
                      const sys::sheet_text& where, const sys::pen& pen);
    void lacks(const std::wstring& font, const std::wstring& stands_in);
    // The faces that stand for a font: what the user's table "fonts.fmp" names, then its own; for strokes,
    // what has the signs that strokes lack.
    struct chosen_font {
        sys::sheet_font font;
        std::wstring face; // that the system has for it
    };
    const chosen_font& font_for(const gi::font& font);

    sys::paper& paper_;
    std::multimap<std::wstring, std::wstring> stand_ins_; // by folded names
    std::map<std::wstring, chosen_font> fonts_;           // by what is known of them
    std::map<std::wstring, std::wstring> lacking_;        // what stands in, by the font's name
};

} // namespace picture
