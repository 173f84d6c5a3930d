// Where the signs of a line of text stand: in a row, or below each other.
#pragma once

#include "host/gi/text_metrics.h"

#include <string>
#include <string_view>
#include <vector>

class AcGiTextStyle;

namespace gi {

// Signs in a row, from where they begin on their base line.
struct text_part {
    double along = 0.0; // from where the whole text begins
    double up = 0.0;
    std::size_t first = 0; // of the signs that are shown
    std::size_t count = 0;
    double length = 0.0;
};

// A line under, through or over signs.
struct text_rule {
    double from = 0.0;
    double to = 0.0;
    double up = 0.0;
};

struct set_text {
    std::wstring shown;
    std::vector<text_part> parts;
    std::vector<text_rule> rules;
    text_box box;

    std::wstring_view signs_of(const text_part& part) const {
        return std::wstring_view(shown).substr(part.first, part.count);
    }
};

// Whether signs stand below each other in a style. Fonts of the system always run along their lines.
ACGI_PORT bool runs_down(const AcGiTextStyle& style);

// From sign to sign in a column, in heights. Source: the example of a vertical font in the editor's manual of
// shapes, whose letters are 6 units high and stand 9 apart.
inline constexpr double column_step = 1.5;

// The box of a line as it is shown. A column hangs from the middle of its top.
ACGI_PORT text_box box_of_text(std::wstring_view shown, const AcGiTextStyle& style, double height,
                               double width_factor);

// Sets a line in a style; `raw` when codes like %%c are to be shown as they stand.
ACGI_PORT set_text set_line(std::wstring_view text, bool raw, const AcGiTextStyle& style);

} // namespace gi
