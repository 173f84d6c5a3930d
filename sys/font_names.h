// Names of fonts for which others stand in: what Windows brings and this machine has under another name.
#pragma once

#include "sys/installed_fonts.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace sys {

// The lines "name;face" of a file, in their order. The file is UTF-8; lines without a semicolon are passed
// over, and a file that is not there has none.
std::vector<std::pair<std::wstring, std::wstring>> font_names(const std::filesystem::path& file);

// Adds a face for each line "name;face" of a file whose name no installed font has and whose face one has:
// the records of that font once more, under the name. The first line that fits decides.
void add_font_names(std::vector<installed_font>& fonts, const std::filesystem::path& file);

} // namespace sys
