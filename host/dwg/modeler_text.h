// The text form of a solid's body, made of its binary form.
#pragma once

#include "host/dwg/bits.h"

#include <string>

namespace dwg {

// Reads a body in binary form, from its first bytes to its end mark, and gives the lines that the editor
// writes for it, each ended by '\n'. Makes the reader bad when the body holds what is not known here: kinds
// of values, or a yes or no for which the text has words that are not known.
std::string modeler_text(bit_reader& in);

} // namespace dwg
