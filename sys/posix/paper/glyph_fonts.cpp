#include "sys/posix/paper/glyph_fonts.h"

#include "base/case_fold.h"
#include "base/utf.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H

namespace sys {

namespace {

// The height of capitals as a share of the size of a font that does not tell it: that of Helvetica.
constexpr double usual_capitals = 0.716;

double capitals_of(FT_Face face) {
    if (face == nullptr || face->units_per_EM == 0)
        return usual_capitals;
    const auto* const os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, ft_sfnt_os2));
    constexpr int knows_capitals = 2; // the version of the table
    if (os2 != nullptr && os2->version != 0xFFFF && os2->version >= knows_capitals && os2->sCapHeight > 0)
        return static_cast<double>(os2->sCapHeight) / face->units_per_EM;
    if (FT_Load_Char(face, 'H', FT_LOAD_NO_SCALE) == 0 && face->glyph->metrics.height > 0)
        return static_cast<double>(face->glyph->metrics.height) / face->units_per_EM;
    return usual_capitals;
}

} // namespace

glyph_fonts::~glyph_fonts() {
    for (auto& [name, chosen] : choices_) {
        for (loaded& font : chosen.opened) {
            cairo_scaled_font_destroy(font.scaled);
            cairo_font_face_destroy(font.face);
        }
        if (chosen.fonts != nullptr)
            FcFontSetDestroy(chosen.fonts);
        FcPatternDestroy(chosen.wanted);
    }
}

glyph_fonts::choice& glyph_fonts::choice_of(const sheet_font& font) {
    std::wstring name = std::wstring(font.bold ? L"b" : L"") + (font.italic ? L"i" : L"");
    for (const std::wstring& face : font.faces)
        name += L'\n' + face;
    auto [at, fresh] = choices_.try_emplace(name);
    if (!fresh)
        return at->second;
    FcPattern* const wanted = FcPatternCreate();
    for (const std::wstring& face : font.faces)
        FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>(base::narrow(face).c_str()));
    FcPatternAddInteger(wanted, FC_WEIGHT, font.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(wanted, FC_SLANT, font.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(wanted, FC_SCALABLE, FcTrue);
    FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result = FcResultMatch;
    at->second.fonts = FcFontSort(nullptr, wanted, FcTrue, nullptr, &result);
    at->second.wanted = wanted;
    if (at->second.fonts != nullptr)
        at->second.opened.resize(static_cast<std::size_t>(at->second.fonts->nfont));
    return at->second;
}

glyph_fonts::loaded& glyph_fonts::open(choice& chosen, std::size_t at) {
    loaded& font = chosen.opened[at];
    if (font.scaled != nullptr)
        return font;
    FcPattern* const prepared = FcFontRenderPrepare(nullptr, chosen.wanted, chosen.fonts->fonts[at]);
    font.face = cairo_ft_font_face_create_for_pattern(prepared);
    FcPatternDestroy(prepared);
    cairo_matrix_t one;
    cairo_matrix_init_identity(&one);
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_matrix_t large;
    constexpr double fine = 1000.0; // widths are asked for at a size at which they are not rounded
    cairo_matrix_init_scale(&large, fine, fine);
    font.scaled = cairo_scaled_font_create(font.face, &large, &one, options);
    cairo_font_options_destroy(options);
    auto* const face = cairo_ft_scaled_font_lock_face(font.scaled);
    font.size = 1.0 / capitals_of(face);
    if (face != nullptr)
        cairo_ft_scaled_font_unlock_face(font.scaled);
    return font;
}

std::size_t glyph_fonts::font_of(const choice& chosen, wchar_t sign) {
    for (std::size_t i = 0; i < chosen.opened.size(); ++i) {
        FcCharSet* signs = nullptr;
        if (FcPatternGetCharSet(chosen.fonts->fonts[i], FC_CHARSET, 0, &signs) == FcResultMatch &&
            FcCharSetHasChar(signs, static_cast<FcChar32>(sign)) == FcTrue)
            return i;
    }
    return 0;
}

const glyph_fonts::known_sign& glyph_fonts::look_up(choice& chosen, wchar_t sign) {
    const auto [at, fresh] = chosen.signs.try_emplace(sign);
    known_sign& found = at->second;
    if (!fresh)
        return found;
    found.font = font_of(chosen, sign);
    found.utf8 = base::narrow(std::wstring_view(&sign, 1));
    const loaded& from = open(chosen, found.font);
    cairo_glyph_t* glyphs = nullptr;
    int count = 0;
    if (cairo_scaled_font_text_to_glyphs(from.scaled, 0.0, 0.0, found.utf8.data(),
                                         static_cast<int>(found.utf8.size()), &glyphs, &count, nullptr,
                                         nullptr, nullptr) != CAIRO_STATUS_SUCCESS)
        return found;
    if (count > 0) {
        cairo_text_extents_t extents;
        cairo_scaled_font_glyph_extents(from.scaled, glyphs, 1, &extents);
        constexpr double asked_at = 1000.0;
        found.advance = extents.x_advance / asked_at * from.size;
        found.glyph = glyphs->index;
        found.drawn = true;
    }
    cairo_glyph_free(glyphs);
    return found;
}

std::wstring glyph_fonts::stand_in(const sheet_font& font, std::wstring_view wanted) {
    const choice& chosen = choice_of(font);
    std::wstring first;
    if (chosen.opened.empty())
        return first;
    FcChar8* name = nullptr;
    for (int i = 0;
         FcPatternGetString(chosen.fonts->fonts[0], FC_FAMILY, i, &name) == FcResultMatch && name != nullptr;
         ++i) {
        const std::wstring face = base::widen(reinterpret_cast<const char*>(name));
        if (base::equal_no_case(face, wanted))
            return {};
        first = i == 0 ? face : first;
    }
    return first;
}

std::vector<glyph_run> glyph_fonts::runs(std::wstring_view text, const sheet_font& font, double& length) {
    std::vector<glyph_run> made;
    length = 0.0;
    choice& chosen = choice_of(font);
    if (chosen.opened.empty())
        return made;
    std::size_t last = chosen.opened.size();
    for (const wchar_t sign : text) {
        const known_sign& known = look_up(chosen, sign);
        if (!known.drawn)
            continue;
        if (known.font != last) {
            const loaded& from = open(chosen, known.font);
            made.emplace_back();
            made.back().face = from.face;
            made.back().size = from.size;
            last = known.font;
        }
        glyph_run& run = made.back();
        run.signs += sign;
        run.utf8 += known.utf8;
        run.glyphs.push_back({known.glyph, length, 0.0});
        run.clusters.push_back({static_cast<int>(known.utf8.size()), 1});
        length += known.advance;
    }
    return made;
}

} // namespace sys
