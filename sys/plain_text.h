// Text files that name no encoding: scripts, linetypes, lists that people write by hand.
#pragma once

#include <string>
#include <string_view>

namespace sys {

// The text of a whole file: UTF-16 or UTF-8 when it begins with such a mark, UTF-8 when its bytes are, else
// the system's code page (ansi_code_page). Bytes that are no character become U+DC80..U+DCFF.
std::wstring plain_text(std::string_view bytes);

// The next line of a text from `at` on, without its end, LF or CRLF; `at` goes behind it. Nothing at the end.
bool next_line(std::wstring_view text, std::size_t& at, std::wstring_view& line);

} // namespace sys
