// Names without case, as symbol tables, commands and registry keys compare them: simple case folding over the
// whole character set, one code point to one, the same in every locale.
#pragma once

#include <string>
#include <string_view>

namespace base {

// The folded form of a code point: the code point itself when it has no case.
char32_t fold_code_point(char32_t c);

// The same for one unit of wide text; where wchar_t has 16 bits a surrogate stays as it is.
wchar_t fold_case(wchar_t c);

// Negative, 0 or positive as `a` stands before, with or behind `b`, by folded code points.
int compare_no_case(std::wstring_view a, std::wstring_view b);

// True when the two differ in case only.
bool equal_no_case(std::wstring_view a, std::wstring_view b);

// The text with every code point folded: equal for two texts exactly when equal_no_case() is true.
std::wstring folded(std::wstring_view text);

} // namespace base
