// Lines of text on a sheet: letters of strokes for shape fonts, fonts of the system for the rest.
#pragma once

#include "host/gi/canvas.h"
#include "host/picture/sheet_view.h"
#include "sys/paper.h"

#include <map>
#include <string>

namespace picture {

class text_painter {
public:
    explicit text_painter(sys::paper& paper);
    // With what another one knows of fonts.
    text_painter(sys::paper& paper, const text_painter& other)
        : paper_(paper), stand_ins_(other.stand_ins_), fonts_(other.fonts_) {}

    // Draws a line of the world. It is as long as it was measured, whatever font draws it.
    void draw(const gi::text_line& line, const sheet_view& view, const sys::pen& pen);

private:
    void draw_strokes(std::wstring_view letters, const sys::sheet_text& where, const sys::pen& pen);
    // The faces that stand for a font: what the user's table "fonts.fmp" names, then its own; for strokes,
    // what has the signs that strokes lack.
    const sys::sheet_font& font_for(const gi::font& font);

    sys::paper& paper_;
    std::multimap<std::wstring, std::wstring> stand_ins_; // by folded names
    std::map<std::wstring, sys::sheet_font> fonts_;       // by what is known of them
};

} // namespace picture
