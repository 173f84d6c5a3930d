// Numbers as text in files: the same in every locale, and reals with as many digits as give them back.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace base {

// The shortest text that parse_real() reads back exactly, always with a point or an exponent: "1.0", "-0.0",
// "1e-07"; an exponent is used below 0.0001 and from 1e15 on. Not-a-number gives "nan", infinities "inf" and
// "-inf", which parse_real() refuses: no file of ours can hold them as numbers.
std::string real_text(double value);

// The number that is the whole text, blanks around it allowed, a plus sign too; nothing when it is no decimal
// number or too large for a double. One that is too small gives zero.
std::optional<double> parse_real(std::string_view text);

// The same for whole numbers; nothing when the text has a fraction or the number needs more than 64 bits.
std::optional<std::int64_t> parse_integer(std::string_view text);

} // namespace base
