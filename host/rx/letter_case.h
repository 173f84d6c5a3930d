// Case and blanks of single characters, in all scripts and the same in every locale.
#pragma once

namespace rx {

// The capital of a letter, and the small letter of a capital; the character itself where there is none.
wchar_t to_upper(wchar_t c);
wchar_t to_lower(wchar_t c);

// Blanks, tabulators and line ends, also the ideographic space and its kin.
bool is_blank(wchar_t c);

} // namespace rx
