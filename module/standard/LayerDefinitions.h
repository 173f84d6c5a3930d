// "LAYERDEF.DAT": the layers of all systems as the add-on's older programs read them, one line each: system,
// layer type, colour index, layer name, linetype, with a blank between; blanks in a name are "_", a name that
// is empty too. In GBK.
#pragma once

#include "module/standard/PipeStandard.h"

#include <filesystem>

// Brings the file in line with the standard: writes it anew, or, to be kept, changes the lines of layers that
// the standard has, adds those that are missing and leaves the others. A file that is so already is not
// touched. False when it can not be written.
bool WriteLayerDefinitions(const std::filesystem::path& path, const PipeStandard& standard, bool keep);
