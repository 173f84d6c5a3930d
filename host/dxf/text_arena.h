// Keeps texts that were written anew for as long as the drawing lives: undo and redo go back to them, so none
// is ever freed or moved.
#pragma once

#include "host/dxf/padded_text.h"

#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace dxf {

class text_arena {
public:
    // A copy of `text` that stays where it is.
    padded_text keep(std::string_view text) {
        constexpr std::size_t padding = padded_text::padding;
        if (left_ < text.size() + padding) {
            const std::size_t size = text.size() + padding > chunk ? text.size() + padding : chunk;
            chunks_.push_back(std::make_unique<char[]>(size));
            next_ = chunks_.back().get();
            left_ = size;
        }
        char* const at = next_;
        if (!text.empty())
            std::memcpy(at, text.data(), text.size());
        next_ += text.size();
        left_ -= text.size();
        return padded_text::promised({at, text.size()});
    }

private:
    static constexpr std::size_t chunk = 256 * 1024;
    std::vector<std::unique_ptr<char[]>> chunks_;
    char* next_ = nullptr;
    std::size_t left_ = 0;
};

} // namespace dxf
