// Text files that tell no encoding: scripts, linetypes, settings, lists that people write by hand with
// whatever editor. A byte-order mark decides; without one the bytes are UTF-8 when they can be, and otherwise
// in the page that programs write texts in (ansi_code_page()).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sys {

// How a file writes its text.
struct text_form {
    static constexpr int utf8 = 65001;

    int page = utf8;  // as text_stream has it
    std::string mark; // the byte-order mark; empty without one
};

// The text of a whole file, to be looked at. Bytes that are no character become U+DC80..U+DCFF, in UTF-16
// U+FFFD.
std::wstring plain_text(std::string_view bytes);

// The next line of a text from `at` on, without its end, LF or CRLF; `at` goes behind it. Nothing at the end.
bool next_line(std::wstring_view text, std::size_t& at, std::wstring_view& line);

// The text of a file that is written back, in UTF-8 and without its mark; `form` tells how. Nothing when
// there are bytes that are no characters in its encoding.
std::optional<std::string> utf8_of(std::string_view bytes, text_form& form);

// The bytes of a file in that form; nothing when its encoding lacks one of the characters.
std::optional<std::string> bytes_of(std::string_view utf8, const text_form& form);

} // namespace sys
