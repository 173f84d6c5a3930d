// The drawing that a session without a file begins with.
#pragma once

#include "host/dxf/drawing.h"

#include <memory>

namespace db {

// Complete as the format wants it (R2018, UTF-8, millimetres): the nine tables with their standard records,
// model space, one sheet, the dictionaries.
std::unique_ptr<dxf::drawing> new_drawing();

} // namespace db
