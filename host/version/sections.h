// The writers of whole drawings.
#pragma once

#include "host/version/conversion.h"

namespace version {

// Writes the drawing as files of R2000 and later have it, whatever the source lacks of such a file.
void write_modern(conversion& job);
// Writes it as files of R12 have it, with all that they can hold.
void write_r12(conversion& job);

// The variables of the source's header that the version knows, but for those that tell of the file itself
// (its version, encoding and handles), which are written anew. `edit` may write a variable in another way: it
// gets name, code and value, and answers true when it did.
using variable_editor = std::function<bool(std::string_view, int, std::string_view)>;
void put_header(conversion& job, const variable_editor& edit);

} // namespace version
