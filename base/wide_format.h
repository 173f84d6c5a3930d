// printf for wide text by the rules of Microsoft's library, which programs for this interface are written to:
// %s and %c are wide in a wide format. The same in every locale.
//
//   %s %ls %ws      wide text          %S %hs          UTF-8 text         (null pointers print "(null)")
//   %c %lc %wc      wide character     %C %hc          single byte
//   %d %i %u %o %x %X, after hh h l ll I32 I64 I z t j; `long` is as long as the compiler has it
//   %f %F %e %E %g %G %a %A, also after l and L        %p  all hexadecimal digits, upper case
//
// Flags, width and precision as in C, also by `*`. Any other conversion is printed as it stands and takes no
// argument.
#pragma once

#include <cstdarg>
#include <string>

namespace base {

// The formatted text. The arguments must fit the format; a null format gives an empty text. `args` is left
// as it was.
std::wstring format_wide(const wchar_t* format, va_list args);

// The same with the arguments themselves. A template, because an argument 0 would fit a va_list better than
// an ellipsis.
std::wstring format_wide_arguments(const wchar_t* format, ...);

template<class... Arguments>
std::wstring format_wide(const wchar_t* format, Arguments... arguments) {
    return format_wide_arguments(format, arguments...);
}

} // namespace base
