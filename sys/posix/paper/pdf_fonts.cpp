#include "sys/posix/paper/pdf_fonts.h"

#include <algorithm>
#include <cmath>

namespace sys {

namespace {

constexpr double em = 1000.0; // of a figure, in its own units

} // namespace

pdf_fonts::pdf_fonts()
    : surface_(cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1)), context_(cairo_create(surface_)) {
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(context_, options);
    cairo_font_options_destroy(options);
}

pdf_fonts::~pdf_fonts() {
    cairo_destroy(context_);
    cairo_surface_destroy(surface_);
}

pdf_fonts::letter pdf_fonts::drawn(cairo_font_face_t* face, unsigned long glyph) const {
    letter made;
    cairo_set_font_face(context_, face);
    cairo_set_font_size(context_, em);
    const cairo_glyph_t placed{glyph, 0.0, 0.0};
    cairo_text_extents_t extents;
    cairo_glyph_extents(context_, &placed, 1, &extents);
    made.advance = extents.x_advance;
    std::string& figure = made.figure;
    const auto number = [&](double value) {
        append_whole(figure, std::lround(value));
        figure += ' ';
    };
    // The room that it takes, upwards; readers keep what is drawn without colours of its own.
    for (const double value :
         {extents.x_advance, 0.0, extents.x_bearing - 1.0, -extents.y_bearing - extents.height - 1.0,
          extents.x_bearing + extents.width + 1.0, -extents.y_bearing + 1.0})
        number(value);
    figure += "d1\n";
    cairo_new_path(context_);
    cairo_glyph_path(context_, &placed, 1);
    cairo_path_t* const path = cairo_copy_path(context_);
    bool any = false;
    for (int i = 0; path->status == CAIRO_STATUS_SUCCESS && i < path->num_data;
         i += path->data[i].header.length) {
        const cairo_path_data_t* const part = path->data + i;
        for (int point = 1; point < part->header.length; ++point) {
            number(part[point].point.x);
            number(-part[point].point.y);
        }
        static constexpr std::string_view acts[] = {"m\n", "l\n", "c\n", "h\n"};
        figure += acts[part->header.type];
        any = true;
    }
    cairo_path_destroy(path);
    cairo_new_path(context_);
    if (any)
        figure += "f";
    return made;
}

pdf_fonts::place pdf_fonts::of(cairo_font_face_t* face, unsigned long glyph, wchar_t meaning) {
    const auto [at, fresh] = known_.try_emplace({face, glyph});
    if (!fresh)
        return at->second;
    if (fonts_.empty() || fonts_.back().size() == most_letters)
        fonts_.emplace_back();
    at->second = {static_cast<int>(fonts_.size()) - 1, static_cast<int>(fonts_.back().size())};
    fonts_.back().push_back(drawn(face, glyph));
    fonts_.back().back().meaning = meaning;
    return at->second;
}

void pdf_fonts::write_font(pdf_file& file, int number, const std::vector<letter>& letters) {
    std::string figures;
    std::string names;
    std::string widths;
    std::string meanings = "/CIDInit/ProcSet findresource begin 12 dict begin begincmap\n"
                           "/CMapName/Letters def/CMapType 2 def\n"
                           "1 begincodespacerange<00><FF>endcodespacerange\n";
    constexpr std::size_t most_in_a_row = 100; // as the format allows
    for (std::size_t i = 0; i < letters.size(); ++i) {
        const int figure = file.reserve();
        file.write_stream(figure, "", letters[i].figure);
        const std::string name = "/g" + std::to_string(i);
        figures += name + ' ' + std::to_string(figure) + " 0 R";
        names += name;
        append_whole(widths, std::lround(letters[i].advance));
        widths += ' ';
        if (i % most_in_a_row == 0)
            meanings += (i == 0 ? "" : "endbfchar\n") +
                        std::to_string(std::min(letters.size() - i, most_in_a_row)) + " beginbfchar\n";
        std::string meant = pdf_text({&letters[i].meaning, 1});
        meant.erase(1, 4); // the mark of the byte order
        constexpr std::string_view digits = "0123456789ABCDEF";
        meanings += std::string("<") + digits[i / 16] + digits[i % 16] + '>' + meant + '\n';
    }
    meanings += "endbfchar endcmap CMapName currentdict/CMap defineresource pop end end";
    const int meaning = file.reserve();
    file.write_stream(meaning, "", meanings);
    file.write(number, "<</Type/Font/Subtype/Type3/FontBBox[0 0 0 0]/FontMatrix[.001 0 0 .001 0 0]"
                       "/FirstChar 0/LastChar " +
                           std::to_string(letters.size() - 1) + "/Widths[" + widths +
                           "]/Encoding<</Type/Encoding/Differences[0" + names + "]>>/CharProcs<<" + figures +
                           ">>/Resources<<>>/ToUnicode " + std::to_string(meaning) + " 0 R>>");
}

std::string pdf_fonts::write(pdf_file& file) const {
    std::string entries;
    for (std::size_t i = 0; i < fonts_.size(); ++i) {
        const int number = file.reserve();
        write_font(file, number, fonts_[i]);
        entries += "/F" + std::to_string(i) + ' ' + std::to_string(number) + " 0 R";
    }
    return entries;
}

} // namespace sys
