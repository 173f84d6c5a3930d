// What kind of hand a font is of.
#pragma once

namespace Autodesk::AutoCAD::PAL::FontUtils {

enum class FontFamily {
    kDoNotCare = 0,
    kRoman = 0x10,
    kSwiss = 0x20,
    kModern = 0x30,
    kScript = 0x40,
    kDecorative = 0x50
};

} // namespace Autodesk::AutoCAD::PAL::FontUtils
