#include "host/picture/text_painter.h"

#include "base/case_fold.h"
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

// The name of a font's file without folder and ending, as faces are called that come as files ("simhei.ttf").
std::wstring file_stem(const std::wstring& file) {
    const std::size_t folder = file.find_last_of(L"/\\");
    const std::wstring name = file.substr(folder == std::wstring::npos ? 0 : folder + 1);
    return name.substr(0, name.rfind(L'.'));
}

} // namespace

text_painter::text_painter(sys::paper& paper) : paper_(paper) {
    for (const auto& [name, face] : sys::font_names(sys::system_folder() / "fonts.fmp"))
        stand_ins_.emplace(base::folded(name), face);
}

const sys::sheet_font& text_painter::font_for(const gi::font& font) {
    const std::wstring own = font.typeface.empty() ? file_stem(font.file) : font.typeface;
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
    return found;
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
    const auto draw_from = [&](std::wstring_view signs, double from, double length, bool strokes) {
        drawn.text = signs;
        drawn.length = length;
        drawn.start = {start.x + drawn.x.x * from, start.y + drawn.x.y * from};
        if (strokes)
            draw_strokes(signs, drawn, pen);
        else
            paper_.text(drawn, font_for(font));
    };
    if (font.hand == gi::font_hand::outline || installed_stroke_letters() == nullptr) {
        draw_from(line.text, 0.0, line.length, false);
        return;
    }
    // Letters of strokes and others take turns; each run is as long as it was measured.
    const auto measured = [&](std::wstring_view signs) {
        return gi::measure_text(signs, font.hand, 1.0).width;
    };
    const double all = measured(line.text);
    const double wide = all > 0.0 && line.length > 0.0 ? line.length / all : 1.0;
    for (std::size_t at = 0; at < line.text.size();) {
        const bool strokes = is_stroked(line.text[at]);
        const auto rest = line.text.substr(at);
        const auto end =
            std::find_if(rest.begin(), rest.end(), [&](wchar_t sign) { return is_stroked(sign) != strokes; });
        const auto run = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
        const double from = measured(line.text.substr(0, at + run.size())) - measured(run);
        draw_from(run, from * wide, measured(run) * wide, strokes);
        at += run.size();
    }
}

} // namespace picture
