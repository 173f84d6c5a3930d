// Wildcard patterns of the editor, as filters, layer names and name lists take them:
//
//   #  a digit             ?      any character               [a-c]  one of a range
//   @  a letter            *      any characters, or none     [~ab]  none of these
//   .  neither of the two  [ab]   one of these                `c     the character c itself
//
// Alternatives stand between commas; `~` in front of one turns it round: it matches what the rest does not.
#pragma once

#include <string_view>

namespace base {

// True when the whole text matches one of the alternatives. However many stars there are, time grows with the
// product of the two lengths. Inside brackets a comma is a character, and so is a hyphen that stands first or
// last; a bracket that is never closed is a character, and a backquote at the very end too.
bool wildcard_match(std::wstring_view text, std::wstring_view pattern, bool ignore_case);

} // namespace base
