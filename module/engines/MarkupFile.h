// Files of markup: their bytes to text and back, in the encoding that they tell.
#pragma once

#include "module/engines/MarkupResult.h"
#include "module/engines/WideText.h"

#include <optional>
#include <string_view>

// How a file is written, where its encoding leaves that open.
struct MarkupFileForm {
    bool hasMark = false; // a byte-order mark
    bool isBigEndian = false;
};

// The text of a file, and how it was written; nothing when it cannot be read. What happened goes to the
// result. Throws std::bad_alloc.
std::optional<WideText> ReadMarkupFile(std::wstring_view path, MarkupFileForm& form, MarkupResult& result);

// Writes the text to a file, whole or not at all; false when it cannot be. Throws std::bad_alloc.
bool WriteMarkupFile(std::wstring_view path, std::wstring_view text, MarkupFileForm form,
                     MarkupResult& result);
