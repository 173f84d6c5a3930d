// Whether the signs of a font are of one width.
#pragma once

namespace Autodesk::AutoCAD::PAL::FontUtils {

enum class FontPitch { kDefault = 0, kFixed = 1, kVariable = 2 };

} // namespace Autodesk::AutoCAD::PAL::FontUtils
