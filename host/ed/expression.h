// The expressions that scripts answer picks with: (handent "2F"), (ssget "X" '((8 . "LAYER"))), and points.
#pragma once

#include "adsdef.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ed {

// "x,y" or "x,y,z"; nothing when the text is no point.
std::optional<std::array<double, 3>> parse_point(std::wstring_view text);

// What an expression says.
struct expression {
    enum class function { handent, ssget } what = function::handent;
    std::wstring text; // the handle, or the mode
    // The filter of ssget as a chain that lives with the expression; null when there is none.
    std::shared_ptr<resbuf> filter;
};

// Reads an expression; `reason` says why it is none.
std::optional<expression> parse_expression(std::wstring_view text, std::wstring& reason);

} // namespace ed
