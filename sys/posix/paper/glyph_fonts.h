// The glyphs of a line of text, from the system's fonts.
#pragma once

#include "sys/paper.h"

#include <cairo-ft.h>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sys {

// Neighbouring signs from one font, placed one behind the other for capitals of height 1.
struct glyph_run {
    cairo_font_face_t* face = nullptr; // kept by the fonts
    double size = 1.0;                 // at which its capitals are 1 high
    std::wstring signs;                // a glyph for each
    std::string utf8;
    std::vector<cairo_glyph_t> glyphs;
    std::vector<cairo_text_cluster_t> clusters; // one a sign
};

class glyph_fonts {
public:
    glyph_fonts() = default;
    glyph_fonts(const glyph_fonts&) = delete;
    glyph_fonts& operator=(const glyph_fonts&) = delete;
    ~glyph_fonts();

    // The runs of a line and how long it is. Signs that no font has are shown by what the first font has for
    // them.
    std::vector<glyph_run> runs(std::wstring_view text, const sheet_font& font, double& length);

    // The face that is found for a font; empty when it has the wanted name.
    std::wstring stand_in(const sheet_font& font, std::wstring_view wanted);

private:
    struct loaded {
        cairo_font_face_t* face = nullptr;
        cairo_scaled_font_t* scaled = nullptr; // for its glyphs' numbers and widths
        double size = 1.0;
    };
    // A sign's glyph in the first font that has it.
    struct known_sign {
        std::size_t font = 0;
        unsigned long glyph = 0;
        double advance = 0.0;
        bool drawn = false;
        std::string utf8;
    };
    struct choice {
        FcPattern* wanted = nullptr;
        FcFontSet* fonts = nullptr; // the best one first
        std::vector<loaded> opened; // as far as they were needed
        std::unordered_map<wchar_t, known_sign> signs;
    };

    choice& choice_of(const sheet_font& font);
    static loaded& open(choice& chosen, std::size_t at);
    static std::size_t font_of(const choice& chosen, wchar_t sign);
    static const known_sign& look_up(choice& chosen, wchar_t sign);

    std::map<std::wstring, choice> choices_;
};

} // namespace sys
