// The font of a text style.
#pragma once

#include "PAL/api/FontFamily.h"
#include "PAL/api/FontPitch.h"
#include "PAL/api/charset.h"
#include "host/gi/text_metrics.h"

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
};

} // namespace gi
