// Reads a text once and fills the index with its elements.
#pragma once

#include "module/engines/MarkupIndex.h"
#include "module/engines/MarkupResult.h"
#include "module/engines/WideText.h"

// Fills an empty index; what is wrong with the text goes to the result. Offsets in the index have 32 bits: a
// longer text must not be given. Tells how many elements lie inside one another, at most. Throws
// std::bad_alloc.
std::uint32_t ParseMarkup(const WideText& text, MarkupIndex& index, MarkupResult& result);
