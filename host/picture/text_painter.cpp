#include "host/picture/text_painter.h"

#include "base/case_fold.h"
#include "base/display_width.h"
#include "host/gi/font.h"
#include "host/picture/stroke_letters.h"
#include "sys/folders.h"
#include "sys/font_names.h"

#include <algorithm>
#include <cmath>

namespace picture {

namespace {

bool is_stroked(wchar_t sign) {
    return sign >= L' ' && sign <= L'~';
}

// In front of a face's name: text that runs down, whose East Asian signs lie on their left side.
constexpr wchar_t turned_mark = L'@';

bool is_turned(const gi::font& font) {
    return (font.typeface.empty() ? font.file : font.typeface).starts_with(turned_mark);
}

// The name of a font's file without folder and ending, as faces are called that come as files ("simhei.ttf").
std::wstring file_stem(const std::wstring& file) {
    const std::size_t folder = file.find_last_of(L"/\\");
    const std::wstring name = file.substr(folder == std::wstring::npos ? 0 : folder + 1);
    return name.substr(0, name.rfind(L'.'));
}

} // namespace

text_painter::text_painter(sys::paper& paper, lacking_fonts& lacking) : paper_(paper), lacking_(lacking) {
    for (const auto& [name, face] : sys::font_names(sys::system_folder() / "fonts.fmp"))
        stand_ins_.emplace(base::folded(name), face);
}

const sys::sheet_font& text_painter::font_for(const gi::font& font) {
    std::wstring own = font.typeface.empty() ? file_stem(font.file) : font.typeface;
    if (own.starts_with(turned_mark))
        own.erase(0, 1);
    const std::wstring key = own + (font.bold ? L"\nb" : L"\n") + (font.italic ? L"i" : L"");
    const auto [at, fresh] = fonts_.try_emplace(key);
    if (!fresh)
        return at->second;
    sys::sheet_font& found = at->second;
    found.bold = font.bold;
    found.italic = font.italic;
    // Big fonts of strokes look most like Song.
    const bool strokes = font.hand != gi::font_hand::outline;
    const auto [first, last] = stand_ins_.equal_range(base::folded(strokes ? std::wstring(L"宋体") : own));
    for (auto entry = first; entry != last; ++entry)
        found.faces.push_back(entry->second);
    if (!strokes)
        found.faces.push_back(own);
    found.faces.emplace_back(L"sans-serif");
    if (!strokes)
        lacking_.add(own, found, true);
    return at->second;
}

void text_painter::draw_strokes(std::wstring_view letters, const sys::sheet_text& where,
                                const sys::pen& pen) {
    const stroke_letters& all = *installed_stroke_letters();
    double natural = 0.0;
    for (const wchar_t sign : letters)
        natural += all[static_cast<std::size_t>(sign - L' ')].advance;
    constexpr double gap = 6.0 / 21.0; // behind the last letter
    const double wide = where.length > 0.0 && natural > gap ? where.length / (natural - gap) : 1.0;
    double at = 0.0;
    std::vector<sys::sheet_point> points;
    for (const wchar_t sign : letters) {
        const stroke_letter& letter = all[static_cast<std::size_t>(sign - L' ')];
        for (const auto& stroke : letter.strokes) {
            points.clear();
            for (const stroke_point& point : stroke) {
                const double x = (at + point.x) * wide;
                points.push_back({where.start.x + where.x.x * x + where.y.x * point.y,
                                  where.start.y + where.x.y * x + where.y.y * point.y});
            }
            paper_.stroke(points, pen);
        }
        at += letter.advance;
    }
}

void text_painter::draw(const gi::text_line& line, const sheet_view& view, const sys::pen& pen) {
    static const gi::font plain;
    const gi::font& font = line.written_with != nullptr ? *line.written_with : plain;
    const double width = line.x.length();
    const double height = line.y.length();
    if (!(width > 0.0) || !(height > 0.0))
        return;
    sys::sheet_text drawn;
    drawn.start = view.at(line.position);
    drawn.x = view.along(line.x);
    drawn.y = view.along(line.y + line.x * (height / width * std::tan(line.oblique)));
    drawn.color = pen.color;
    const sys::sheet_point start = drawn.start;
    enum class way { letters, strokes, outlines };
    const auto draw_run = [&](std::wstring_view signs, double from, double length, way how) {
        drawn.text = signs;
        drawn.length = length;
        drawn.start = {start.x + drawn.x.x * from, start.y + drawn.x.y * from};
        if (how == way::letters)
            draw_letters(signs, font, drawn, pen);
        else if (how == way::strokes)
            draw_strokes(signs, drawn, pen);
        else
            paper_.text(drawn, font_for(font));
    };
    const bool turned = is_turned(font);
    if (font.hand == gi::font_hand::outline && !turned) {
        draw_run(line.text, 0.0, line.length, way::outlines);
        return;
    }
    const auto draw_on_side = [&](std::wstring_view sign, double from, double length) {
        const sys::sheet_text upright = drawn;
        drawn.x = upright.y;
        constexpr double squeezed = 0.75; // signs are higher than capitals, but not than their place is long
        drawn.y = {-upright.x.x * squeezed, -upright.x.y * squeezed};
        drawn.text = sign;
        drawn.length = length;
        const double along = from + (length + squeezed) / 2.0; // around the middle of its place
        const double up = (1.0 - length) / 2.0;
        drawn.start = {start.x + upright.x.x * along + upright.y.x * up,
                       start.y + upright.x.y * along + upright.y.y * up};
        paper_.text(drawn, font_for(font));
        drawn = upright;
    };
    // Letters of strokes (or those that are not turned) and others take turns; each run is as long as it was
    // measured.
    const auto way_of = [&](wchar_t sign) {
        if (!turned && gi::letter_of(font, sign).strokes != nullptr)
            return way::letters;
        return !turned && is_stroked(sign) && installed_stroke_letters() != nullptr ? way::strokes
                                                                                    : way::outlines;
    };
    const auto measured = [&](std::wstring_view signs) { return gi::measure_text(signs, font, 1.0).width; };
    const double all = measured(line.text);
    const double wide = all > 0.0 && line.length > 0.0 ? line.length / all : 1.0;
    for (std::size_t at = 0; at < line.text.size();) {
        const way how = way_of(line.text[at]);
        const auto rest = line.text.substr(at);
        const auto end =
            std::find_if(rest.begin(), rest.end(), [&](wchar_t sign) { return way_of(sign) != how; });
        auto run = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
        const bool on_side = turned && base::is_wide(static_cast<char32_t>(run[0]));
        if (on_side)
            run = run.substr(0, 1);
        const double from = (measured(line.text.substr(0, at + run.size())) - measured(run)) * wide;
        if (how != way::letters && !turned)
            lacks(font, how == way::outlines && base::is_wide(static_cast<char32_t>(run[0])),
                  how == way::strokes);
        if (on_side)
            draw_on_side(run, from, measured(run) * wide);
        else
            draw_run(run, from, measured(run) * wide, how);
        at += run.size();
    }
}

void text_painter::stroke_shape(const gi::shape& shape, const AcGePoint2d& from, double wide, double unit,
                                const sys::sheet_text& where, const sys::pen& pen) {
    std::vector<sys::sheet_point> points;
    for (const std::vector<AcGePoint2d>& stroke : shape.strokes) {
        points.clear();
        for (const AcGePoint2d& point : stroke) {
            const double x = (from.x + point.x * unit) * wide;
            const double y = from.y + point.y * unit;
            points.push_back({where.start.x + where.x.x * x + where.y.x * y,
                              where.start.y + where.x.y * x + where.y.y * y});
        }
        paper_.stroke(points, pen);
    }
}

void text_painter::draw_letters(std::wstring_view letters, const gi::font& font, const sys::sheet_text& where,
                                const sys::pen& pen) {
    const double natural = gi::measure_text(letters, font, 1.0).width;
    const double wide = where.length > 0.0 && natural > 0.0 ? where.length / natural : 1.0;
    double at = 0.0;
    for (const wchar_t sign : letters) {
        const gi::drawn_letter letter = gi::letter_of(font, sign);
        if (letter.strokes == nullptr)
            continue;
        stroke_shape(*letter.strokes, {at, 0.0}, wide, letter.unit, where, pen);
        at += letter.strokes->end.x * letter.unit;
    }
}

void text_painter::draw_shape(const gi::shape& shape, const gi::text_line& where, const sheet_view& view,
                              const sys::pen& pen) {
    sys::sheet_text drawn;
    drawn.start = view.at(where.position);
    drawn.x = view.along(where.x);
    drawn.y = view.along(where.y);
    stroke_shape(shape, {}, 1.0, 1.0, drawn, pen);
}

void text_painter::lacks(const gi::font& font, bool wide, bool stroked) {
    const bool in_big = wide && !font.big_font.empty();
    const std::wstring& file = in_big ? font.big_font : font.file;
    if ((in_big ? font.big_shapes : font.shapes) != nullptr || !told_.insert(file).second)
        return;
    if (stroked)
        lacking_.add(file, L"Hershey's simplex letters");
    else
        lacking_.add(file, font_for(font), false);
}

void text_painter::lacks_shapes(const std::wstring& file) {
    if (told_.insert(file).second)
        lacking_.add(file.empty() ? L"a file of shapes" : file, L"");
}

} // namespace picture
