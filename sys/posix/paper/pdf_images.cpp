#include "sys/posix/paper/pdf_images.h"

#include <algorithm>

namespace sys {

int pdf_images::of(pdf_file& file, const std::shared_ptr<const image_dots>& dots) {
    const auto [at, fresh] = numbers_.try_emplace(dots, static_cast<int>(numbers_.size()));
    if (!fresh)
        return at->second;
    std::string colors;
    std::string opacities;
    const std::size_t count = dots->bytes.size() / 4;
    colors.reserve(count * 3);
    bool opaque = true;
    for (std::size_t i = 0; i < dots->bytes.size(); i += 4) {
        for (std::size_t part = 0; part < 3; ++part)
            colors += static_cast<char>(dots->bytes[i + part]);
        opaque = opaque && dots->bytes[i + 3] == 255;
    }
    std::string head = "/Type/XObject/Subtype/Image/BitsPerComponent 8/Width " + std::to_string(dots->width) +
                       "/Height " + std::to_string(dots->height);
    int mask = 0;
    if (!opaque) {
        opacities.reserve(count);
        for (std::size_t i = 3; i < dots->bytes.size(); i += 4)
            opacities += static_cast<char>(dots->bytes[i]);
        mask = file.reserve();
        file.write_stream(mask, head + "/ColorSpace/DeviceGray", opacities);
    }
    head += "/ColorSpace/DeviceRGB";
    if (mask != 0)
        head += "/SMask " + std::to_string(mask) + " 0 R";
    const int object = file.reserve();
    file.write_stream(object, head, colors);
    names_ += "/I" + std::to_string(at->second) + ' ' + std::to_string(object) + " 0 R";
    return at->second;
}

} // namespace sys
