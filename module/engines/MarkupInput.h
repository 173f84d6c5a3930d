// A text that arrives piece by piece, so that it can be read while each piece is still at hand.
#pragma once

#include "module/engines/WideText.h"

#include <cstddef>

class MarkupInput {
public:
    virtual ~MarkupInput() = default;

    // How long the text will be at most, as far as that is known.
    virtual std::size_t GetExpectedSize() const = 0;

    // Adds the next piece to the text; false when there is none. Throws std::bad_alloc.
    virtual bool Read(WideText& text) = 0;
};
