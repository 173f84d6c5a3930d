// The letters that a PDF shows, as figures of its own (fonts of type 3) with what they mean, so that its
// texts can be searched and copied whatever fonts its reader has.
#pragma once

#include "sys/posix/paper/glyph_fonts.h"
#include "sys/posix/paper/pdf_file.h"

#include <cairo.h>
#include <map>
#include <string>
#include <vector>

namespace sys {

class pdf_fonts {
public:
    pdf_fonts();
    pdf_fonts(const pdf_fonts&) = delete;
    pdf_fonts& operator=(const pdf_fonts&) = delete;
    ~pdf_fonts();

    // A letter's font (number) and its code there.
    struct place {
        int font = 0;
        int code = 0;
    };
    // `meaning` is what the glyph stands for where it comes first.
    place of(cairo_font_face_t* face, unsigned long glyph, wchar_t meaning);
    // Writes all fonts; gives their entry in the dictionary of what pages use, "/F0 7 0 R ...".
    std::string write(pdf_file& file) const;

private:
    struct letter {
        std::string figure;
        double advance = 0.0; // thousandths
        wchar_t meaning = 0;
    };
    static constexpr std::size_t most_letters = 256; // of a font

    letter drawn(cairo_font_face_t* face, unsigned long glyph) const;
    static void write_font(pdf_file& file, int number, const std::vector<letter>& letters);

    cairo_surface_t* surface_; // nothing is seen on it: outlines are asked for
    cairo_t* context_;
    std::map<std::pair<cairo_font_face_t*, unsigned long>, place> known_;
    std::vector<std::vector<letter>> fonts_;
};

} // namespace sys
