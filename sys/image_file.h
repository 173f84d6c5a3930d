// Images in files: what drawings show of them.
#pragma once

#include "base/result.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace sys {

// Rows of dots from the top, each red, green, blue and opacity.
struct image_dots {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;
};

// Reads a PNG, a JPEG or a BMP. Fails with words for the user: for a file that is none of these, is damaged
// at its beginning or has more dots than pictures need, and where the library that reads is missing. What is
// cut off later is black.
base::result<std::shared_ptr<const image_dots>> read_image(const std::filesystem::path& file);

} // namespace sys
