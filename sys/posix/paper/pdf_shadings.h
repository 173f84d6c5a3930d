// Changing colours as a PDF describes them.
#pragma once

#include "sys/paper.h"
#include "sys/posix/paper/pdf_file.h"

namespace sys {

class pdf_shadings {
public:
    // Writes one, whose coordinates are `scale` times as large there. The number in its name, "S0".
    int add(pdf_file& file, const shading& colors, double scale);
    // All of them, as a dictionary of resources has them.
    const std::string& names() const { return names_; }

private:
    std::string names_;
    int count_ = 0;
};

} // namespace sys
