// Images from files, as a drawing shows them.
#pragma once

#include "dbwipe.h"
#include "sys/image_file.h"

#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

class AcDbImpDatabase;

namespace picture {

class drawn_images {
public:
    // The image of an entity with its brightness, contrast and fading (towards the background); null when its
    // file is not here or can not be read. Read once for all who show it so.
    std::shared_ptr<const sys::image_dots> of(const AcDbRasterImage& image, unsigned char background);

    // The path that an entity's definition has for its file.
    static std::wstring path_of(const AcDbRasterImage& image);
    // For each file that is not shown its path, a colon and why.
    std::vector<std::wstring> told() const;

private:
    std::shared_ptr<const sys::image_dots> read(AcDbImpDatabase& drawing, const std::wstring& path);

    using look =
        std::tuple<const void*, std::wstring, int, int, int, int>; // drawing, path, and how it is shown
    std::map<look, std::shared_ptr<const sys::image_dots>> known_;
    std::map<std::wstring, std::wstring> lacking_;
};

} // namespace picture
