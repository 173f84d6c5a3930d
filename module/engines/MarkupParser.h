// Reads a text once and fills the index with its elements.
#pragma once

#include "module/engines/MarkupIndex.h"
#include "module/engines/MarkupInput.h"
#include "module/engines/MarkupResult.h"
#include "module/engines/WideText.h"

#include <cstddef>
#include <cstdint>
#include <limits>

// Where offsets in the index end: they have 32 bits, and a scanner looks a little further than the text.
constexpr std::size_t longestMarkup = std::numeric_limits<std::uint32_t>::max() - WideText::padding;

// Reads the text, and what the input adds to it, into an empty index; what is wrong with it goes to the
// result, which is empty before. Without an input, which may be null, the text is whole. Tells how many
// elements lie inside one another, at most. Throws std::bad_alloc, also when the text is too long.
std::uint32_t ParseMarkup(WideText& text, MarkupInput* input, MarkupIndex& index, MarkupResult& result);
