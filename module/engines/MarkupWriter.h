// Writes a file of markup in the encoding that its text declares.
#pragma once

#include "module/engines/MarkupEncoding.h"
#include "module/engines/MarkupResult.h"

#include <string_view>

// Writes the text to a file, whole or not at all; false when it cannot be. What happened goes to the result.
// Behind the text can be read as far as scanReach tells. Throws std::bad_alloc.
bool WriteMarkupFile(std::wstring_view path, std::wstring_view text, MarkupFileForm form,
                     MarkupResult& result);
