// The encoding of a text file that does not tell it: of settings, lists of aliases, whatever editors on
// Windows write. A byte-order mark decides; without one the bytes are UTF-8 when they can be, and otherwise
// in the page that programs write texts in (ansi_code_page()).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sys {

struct text_form {
    static constexpr int utf8 = 65001;

    int page = utf8;  // as text_stream has it
    std::string mark; // the byte-order mark; empty without one
};

// The text of a file, in UTF-8 and without its mark; `form` tells how to write it back. Nothing when there
// are bytes that are no characters in its encoding.
std::optional<std::string> utf8_of(std::string_view bytes, text_form& form);

// The bytes of a file in that form; nothing when its encoding lacks one of the characters.
std::optional<std::string> bytes_of(std::string_view utf8, const text_form& form);

} // namespace sys
