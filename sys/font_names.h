// Names of fonts for which others stand in: what Windows brings and this machine has under another name.
#pragma once

#include "sys/installed_fonts.h"

#include <filesystem>

namespace sys {

// Adds a face for each line "name;face" of a file whose name no installed font has and whose face one has:
// the records of that font once more, under the name. The first line that fits decides. The file is UTF-8;
// lines without a semicolon, and a file that is not there, change nothing.
void add_font_names(std::vector<installed_font>& fonts, const std::filesystem::path& file);

} // namespace sys
