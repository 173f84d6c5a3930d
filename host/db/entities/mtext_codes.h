// What the codes in a paragraph text mean: \P, \H, \S and the rest taken apart into words and how each is
// written.
#pragma once

#include "acgi.h"

#include <string>
#include <string_view>
#include <vector>

namespace db {

// How words are written.
struct mtext_format {
    AcGiTextStyle style;     // size, width, slant, spacing and lines included
    Adesk::UInt32 color = 0; // 0: the entity's; 1 to 256: an index; true_color and above: blue, green, red
    int up_and_down = 0;     // where fractions stand: 0 on the base line, 1 in the middle, 2 at the top

    static constexpr Adesk::UInt32 true_color = 0x1000000;
};

// How paragraphs stand, lengths in heights of the text.
struct mtext_paragraph {
    double first_indent = 0.0; // of its first line, added to the left one
    double left_indent = 0.0;
    double right_indent = 0.0;
    std::vector<double> tabs; // from the left edge; behind the last one they stand evenly
    enum class spacing { as_text, times, at_least, exactly };
    spacing spaced = spacing::as_text;
    double line_spacing = 1.0; // of `times` a factor, else a length
    double before = 0.0;       // room above the paragraph, and below it
    double after = 0.0;
    wchar_t alignment = 0; // l, c, r, j, d; 0 for the one of the whole text
};

struct mtext_token {
    enum class kind { word, space, tab, stack, paragraph_end, column_end };
    kind what = kind::word;
    std::size_t format = 0;    // among the formats
    std::size_t paragraph = 0; // among the paragraphs' ways to stand
    std::wstring text;         // of a word; what stands above in a stack
    std::wstring below;        // in a stack
    wchar_t mark = 0;          // of a stack: / with a line, # slanted, ^ without a line
};

struct mtext_codes {
    std::vector<mtext_token> tokens;
    std::vector<mtext_format> formats;
    std::vector<mtext_paragraph> paragraphs;
};

// Takes contents apart; the style is that of the whole text, with its height. What is no code stands for
// itself.
mtext_codes read_mtext(std::wstring_view contents, const AcGiTextStyle& style);

// The text without its codes; paragraphs end with CR and LF.
std::wstring plain_mtext(std::wstring_view contents);

} // namespace db
