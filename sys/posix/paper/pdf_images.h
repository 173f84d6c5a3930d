// Images in a PDF.
#pragma once

#include "sys/image_file.h"
#include "sys/posix/paper/pdf_file.h"

#include <map>
#include <memory>

namespace sys {

class pdf_images {
public:
    // The number in an image's name, "I0"; written once.
    int of(pdf_file& file, const std::shared_ptr<const image_dots>& dots);
    // All of them, as a dictionary of resources has them.
    const std::string& names() const { return names_; }

private:
    std::map<std::shared_ptr<const image_dots>, int> numbers_;
    std::string names_;
};

} // namespace sys
