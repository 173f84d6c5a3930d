// The font of a text style.
#pragma once

#include "PAL/api/FontFamily.h"
#include "PAL/api/FontPitch.h"
#include "PAL/api/charset.h"
#include "host/gi/shape_font.h"
#include "host/gi/text_metrics.h"

#include <memory>
#include <string>

namespace gi {

struct font {
    std::wstring file = L"txt";
    std::wstring big_font;
    std::wstring typeface; // of the system's fonts; empty for the file's
    bool bold = false;
    bool italic = false;
    Charset charset = kAnsiCharset;
    Autodesk::AutoCAD::PAL::FontUtils::FontPitch pitch =
        Autodesk::AutoCAD::PAL::FontUtils::FontPitch::kDefault;
    Autodesk::AutoCAD::PAL::FontUtils::FontFamily family =
        Autodesk::AutoCAD::PAL::FontUtils::FontFamily::kDoNotCare;
    font_hand hand = font_hand::txt; // which of the widths are its
    // The files, where this machine has them: then letters are as wide as these say.
    std::shared_ptr<const shape_font> shapes;
    std::shared_ptr<const shape_font> big_shapes;
    int big_page = 936; // the code page of the big one's numbers
};

// A letter as a file of the font draws it, for capitals of height 1.
struct drawn_letter {
    const shape* strokes = nullptr; // in the file's units; null when no file has it
    double unit = 0.0;
};
drawn_letter letter_of(const font& font, wchar_t sign);

} // namespace gi
