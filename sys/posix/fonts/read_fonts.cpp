// fontconfig knows which fonts there are and all their names, FreeType what their files say of scripts.
#include "base/utf.h"
#include "sys/installed_fonts.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <memory>
#include <set>
#include <string_view>
#include <tuple>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H

namespace sys {

namespace {

struct script_row {
    int bit; // among the code pages of the table OS/2
    int character_set;
    const wchar_t* name;
    bool east_asian;
};

// Bits by the OpenType specification (OS/2, ulCodePageRange1), character sets as Windows numbers them, names
// as it gives them to programs that enumerate fonts. It passes over the code pages of the Macintosh and of
// DOS (bits 29, 30 and those behind 31).
constexpr script_row scripts[] = {
    {0, 0, L"Western", false},  {1, 238, L"Central European", false}, {2, 204, L"Cyrillic", false},
    {3, 161, L"Greek", false},  {4, 162, L"Turkish", false},          {5, 177, L"Hebrew", false},
    {6, 178, L"Arabic", false}, {7, 186, L"Baltic", false},           {8, 163, L"Vietnamese", false},
    {16, 222, L"Thai", false},  {17, 128, L"Japanese", true},         {18, 134, L"CHINESE_GB2312", true},
    {19, 129, L"Hangul", true}, {20, 136, L"CHINESE_BIG5", true},     {21, 130, L"Hangul(Johab)", true},
    {31, 2, L"Symbol", false},
};

constexpr std::uint32_t bit_mask(int bit) {
    return std::uint32_t{1} << bit;
}

struct library_closer {
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
};
struct face_closer {
    void operator()(FT_Face face) const { FT_Done_Face(face); }
};
struct pattern_closer {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
struct object_set_closer {
    void operator()(FcObjectSet* set) const { FcObjectSetDestroy(set); }
};
struct font_set_closer {
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
};
struct config_closer {
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
using library_owner = std::unique_ptr<std::remove_pointer_t<FT_Library>, library_closer>;
using face_owner = std::unique_ptr<std::remove_pointer_t<FT_Face>, face_closer>;

std::vector<std::wstring> texts_of(const FcPattern* pattern, const char* object) {
    std::vector<std::wstring> texts;
    FcChar8* text = nullptr;
    for (int i = 0; FcPatternGetString(pattern, object, i, &text) == FcResultMatch; ++i)
        texts.push_back(base::widen(reinterpret_cast<const char*>(text)));
    return texts;
}

std::wstring first_text(const FcPattern* pattern, const char* object) {
    const std::vector<std::wstring> texts = texts_of(pattern, object);
    return texts.empty() ? std::wstring() : texts.front();
}

// A font without a table OS/2, or with one of the first version, names no code pages: it is a font of symbols
// or of Western text.
std::uint32_t code_pages_of(FT_Face face, const TT_OS2* table) {
    if (table != nullptr && table->version > 0 && table->ulCodePageRange1 != 0)
        return static_cast<std::uint32_t>(table->ulCodePageRange1);
    for (int i = 0; i < face->num_charmaps; ++i)
        if (face->charmaps[i]->encoding == FT_ENCODING_MS_SYMBOL)
            return bit_mask(31);
    return bit_mask(0);
}

// The kind of hand by the PANOSE figures in the table OS/2: of text (2) by its serifs, script (3), decorative
// (4). Signs of one width count as modern.
int family_of(FT_Face face, const TT_OS2* table) {
    constexpr int fixed_pitch = 0x01;
    constexpr int variable_pitch = 0x02;
    constexpr int roman = 0x10;
    constexpr int swiss = 0x20;
    constexpr int modern = 0x30;
    constexpr int script = 0x40;
    constexpr int decorative = 0x50;
    if (FT_IS_FIXED_WIDTH(face))
        return fixed_pitch | modern;
    const int kind = table != nullptr ? table->panose[0] : 0;
    const int serifs = table != nullptr ? table->panose[1] : 0;
    if (kind == 2 && serifs >= 2)
        return variable_pitch | (serifs <= 10 ? roman : swiss);
    return variable_pitch | (kind == 3 ? script : kind == 4 ? decorative : 0);
}

// One font file's face, with all its names, before its scripts are told apart.
struct found_font {
    std::vector<std::wstring> faces;
    installed_font font;
    std::uint32_t code_pages = 0;
    bool east_asian = false;

    // The more regular one stands for its face.
    auto strangeness() const { return std::tuple(font.italic, std::abs(font.weight - 400), font.full_name); }
};

// False when the file is not what fontconfig remembers of it.
bool read_font(FT_Library library, const FcPattern* pattern, found_font& found) {
    FcChar8* file = nullptr;
    FcChar8* format = nullptr;
    int index = 0;
    FT_Face opened = nullptr;
    if (FcPatternGetString(pattern, FC_FILE, 0, &file) != FcResultMatch ||
        FcPatternGetInteger(pattern, FC_INDEX, 0, &index) != FcResultMatch ||
        FT_New_Face(library, reinterpret_cast<const char*>(file), index, &opened) != 0)
        return false;
    const face_owner owner(opened);
    const auto* const table = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(opened, FT_SFNT_OS2));
    constexpr int regular = 400;
    constexpr int bold = 700;
    constexpr int underscored_bit = 0x02;
    constexpr int struck_out_bit = 0x10;
    const int style_bits = table != nullptr ? table->fsSelection : 0;
    found.faces = texts_of(pattern, FC_FAMILY);
    installed_font& font = found.font;
    font.full_name = first_text(pattern, FC_FULLNAME);
    font.style = first_text(pattern, FC_STYLE);
    font.pitch_and_family = family_of(opened, table);
    font.weight = table != nullptr ? table->usWeightClass
                                   : ((opened->style_flags & FT_STYLE_FLAG_BOLD) != 0 ? bold : regular);
    font.italic = (opened->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
    font.underlined = (style_bits & underscored_bit) != 0;
    font.struck_out = (style_bits & struck_out_bit) != 0;
    font.true_type = FcPatternGetString(pattern, FC_FONTFORMAT, 0, &format) == FcResultMatch &&
                     std::string_view(reinterpret_cast<const char*>(format)) == "TrueType";
    found.code_pages = code_pages_of(opened, table);
    found.east_asian = std::ranges::any_of(scripts, [&](const script_row& script) {
        return script.east_asian && (found.code_pages & bit_mask(script.bit)) != 0;
    });
    return true;
}

std::vector<found_font> read_fonts() {
    std::vector<found_font> fonts;
    // Its own configuration each time, so that a font that was installed meanwhile is seen.
    const std::unique_ptr<FcConfig, config_closer> config(FcInitLoadConfigAndFonts());
    FT_Library started = nullptr;
    if (config == nullptr || FT_Init_FreeType(&started) != 0)
        return fonts;
    const library_owner library(started);
    const std::unique_ptr<FcPattern, pattern_closer> all(FcPatternCreate());
    const std::unique_ptr<FcObjectSet, object_set_closer> wanted(FcObjectSetBuild(
        FC_FAMILY, FC_STYLE, FC_FULLNAME, FC_FILE, FC_INDEX, FC_FONTFORMAT, static_cast<char*>(nullptr)));
    const std::unique_ptr<FcFontSet, font_set_closer> set(
        all != nullptr && wanted != nullptr ? FcFontList(config.get(), all.get(), wanted.get()) : nullptr);
    for (int i = 0; set != nullptr && i < set->nfont; ++i)
        if (found_font font; read_font(started, set->fonts[i], font))
            fonts.push_back(std::move(font));
    return fonts;
}

} // namespace

} // namespace sys

// What sys/posix/installed_fonts.cpp asks this library for.
extern "C" void zef_list_fonts(std::vector<sys::installed_font>& listed) {
    using namespace sys;
    std::vector<found_font> fonts = read_fonts();
    std::ranges::sort(fonts, {}, &found_font::strangeness);
    std::set<std::tuple<std::wstring, int, int>> seen; // face, character set, pitch and family
    const auto add = [&](const found_font& found, const std::wstring& face) {
        for (const script_row& script : scripts) {
            if ((found.code_pages & bit_mask(script.bit)) == 0 ||
                !seen.emplace(face, script.character_set, found.font.pitch_and_family).second)
                continue;
            installed_font& font = listed.emplace_back(found.font);
            font.face = face;
            font.script = script.name;
            font.character_set = script.character_set;
        }
    };
    for (const found_font& found : fonts)
        for (const std::wstring& face : found.faces) {
            add(found, face);
            if (found.east_asian)
                add(found, L"@" + face);
        }
}
