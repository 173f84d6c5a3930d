#include "host/gi/text_metrics.h"

#include "base/case_fold.h"
#include "base/display_width.h"
#include "host/gi/font.h"

#include <algorithm>
#include <array>

namespace gi {

namespace {

constexpr std::size_t first_sign = 32; // the tables hold the signs of ASCII
constexpr std::size_t signs = 95;

struct hand {
    std::array<unsigned short, signs> advance; // in units of the font
    unsigned short other;                      // of signs that the table does not hold
    unsigned short gap;                        // behind each sign, which the last one does not need
    double height;                             // of capitals
    double tail;                               // how deep letters like g reach
    double bracket_top;                        // how high brackets and slashes reach, and how deep
    double bracket_tail;
};

// Units of txt are sixths of its height. Source: widths of justified texts in drawings that the editor saved.
constexpr hand txt = {{6, 2, 4, 6, 6, 6, 6, 2, 4, 4, 6, 6, 2, 6, 2, 6, 5, 4, 6, 6, 6, 6, 6, 6,
                       6, 6, 2, 2, 5, 6, 5, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 4, 6, 6, 6, 6, 6, 6,
                       6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 4, 6, 4, 6, 6, 3, 6, 6, 6, 6, 6, 5, 6,
                       6, 2, 4, 6, 3, 6, 6, 6, 6, 6, 6, 6, 5, 6, 6, 6, 6, 6, 6, 5, 2, 5, 6},
                      6,
                      2,
                      6.0,
                      2.0,
                      6.0,
                      0.0};

// Source: A. V. Hershey's simplex Roman letters (1967), of which simplex is made.
constexpr hand simplex = {{16, 10, 16, 21, 20, 24, 26, 10, 14, 14, 16, 26, 10, 26, 10, 22, 20, 20, 20,
                           20, 20, 20, 20, 20, 20, 20, 10, 10, 24, 26, 24, 18, 27, 18, 21, 21, 21, 19,
                           18, 21, 22, 8,  16, 21, 17, 24, 22, 22, 21, 22, 21, 20, 16, 22, 18, 24, 20,
                           18, 20, 14, 14, 14, 16, 16, 10, 19, 19, 18, 19, 18, 12, 19, 19, 8,  10, 17,
                           8,  30, 19, 19, 19, 19, 13, 17, 12, 19, 16, 22, 17, 16, 17, 14, 8,  14, 24},
                          20,
                          6,
                          21.0,
                          7.0,
                          25.0,
                          7.0};

// As wide as seven tenths of those: letters of ISO 3098 are six tenths of their height wide.
constexpr hand iso = [] {
    hand narrow = simplex;
    for (double* upright : {&narrow.height, &narrow.tail, &narrow.bracket_top, &narrow.bracket_tail})
        *upright /= 0.7;
    return narrow;
}();

// Source: the metrics file of Helvetica (the printer fonts' core set), with which Arial agrees.
constexpr hand outline = {{278,  278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278, 278,
                           556,  556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556,
                           1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556, 833, 722, 778,
                           667,  778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278, 278, 278, 469, 556,
                           333,  556, 556, 500, 556, 556, 278, 556, 556, 222, 222, 500, 222, 833, 556, 556,
                           556,  556, 333, 500, 278, 556, 500, 722, 500, 500, 500, 334, 260, 334, 584},
                          556,
                          0,
                          716.0,
                          207.0,
                          737.0,
                          207.0};

const hand& hand_of(font_hand which) {
    switch (which) {
    case font_hand::txt:
        return txt;
    case font_hand::iso:
        return iso;
    case font_hand::outline:
        return outline;
    case font_hand::simplex:
        break;
    }
    return simplex;
}

// East Asian signs fill squares with a little room between them, measured at 1.13 heights in drawings.
constexpr double square = 1.13;

constexpr double small_letter = 2.0 / 3.0; // the height of letters like x
constexpr double comma_tail = 4.0 / 21.0;

bool is_one_of(std::wstring_view wanted, wchar_t c) {
    return wanted.find(c) != wanted.npos;
}

text_box measure_by_hand(std::wstring_view shown, const hand& hand, double height, double width_factor,
                         double tracking) {
    double units = 0.0;
    double squares = 0.0;
    double top = small_letter;
    double tail = 0.0;
    bool ends_in_gap = false;
    for (const wchar_t c : shown) {
        const auto number = static_cast<char32_t>(c);
        ends_in_gap = true;
        if (number >= first_sign && number < first_sign + signs) {
            units += hand.advance[number - first_sign];
            if (is_one_of(L"()[]{}/\\|", c)) {
                top = std::max(top, hand.bracket_top / hand.height);
                tail = std::max(tail, hand.bracket_tail / hand.height);
            } else if (is_one_of(L"gjpqy", c)) {
                tail = std::max(tail, hand.tail / hand.height);
            } else if (is_one_of(L",;", c)) {
                tail = std::max(tail, comma_tail);
            } else if (!is_one_of(L" acemnorsuvwxz.:-_~", c)) {
                top = std::max(top, 1.0);
            }
        } else {
            top = std::max(top, 1.0);
            ends_in_gap = !base::is_wide(static_cast<char32_t>(c));
            if (ends_in_gap)
                units += hand.other;
            else
                squares += square;
        }
    }
    text_box box;
    if (shown.empty())
        return box;
    const double gap = ends_in_gap ? hand.gap : 0.0;
    box.width = std::max(units * tracking - gap, 0.0) / hand.height * height + squares * tracking * height;
    box.width *= width_factor;
    box.top = top * height;
    box.bottom = tail > 0.0 ? -tail * height : 0.0;
    return box;
}

// By the letters of the font's files; what they lack is measured without them.
text_box measure_letters(std::wstring_view shown, const font& font, double height, double width_factor,
                         double tracking) {
    text_box box;
    double end = 0.0; // of the last letter
    double at = 0.0;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const drawn_letter letter = letter_of(font, shown[i]);
        if (letter.strokes == nullptr) {
            const text_box other = measure_by_hand(shown.substr(i, 1), hand_of(font.hand), 1.0, 1.0, 1.0);
            end = at + other.width;
            at = end;
            box.top = std::max(box.top, other.top);
            box.bottom = std::min(box.bottom, other.bottom);
            continue;
        }
        end = at + letter.strokes->most.x * letter.unit;
        at += letter.strokes->end.x * letter.unit * tracking;
        box.top = std::max(box.top, letter.strokes->most.y * letter.unit);
        box.bottom = std::min(box.bottom, letter.strokes->least.y * letter.unit);
    }
    const bool ends_in_room = !shown.empty() && shown.back() == L' ';
    box.width = std::max(ends_in_room ? at : end, 0.0) * height * width_factor;
    box.top *= height;
    box.bottom *= height;
    return box;
}

} // namespace

font_hand hand_of_font(std::wstring_view file, std::wstring_view typeface) {
    const std::wstring name = base::folded(file);
    if (!typeface.empty() || name.ends_with(L".ttf") || name.ends_with(L".ttc") || name.ends_with(L".otf"))
        return font_hand::outline;
    const std::size_t folder = name.find_last_of(L"/\\");
    const std::wstring_view alone =
        std::wstring_view(name).substr(folder == std::wstring::npos ? 0 : folder + 1);
    if (alone.starts_with(L"iso") || alone.starts_with(L"gbe"))
        return font_hand::iso;
    return alone == L"txt" || alone == L"txt.shx" || alone == L"monotxt" || alone == L"monotxt.shx"
               ? font_hand::txt
               : font_hand::simplex;
}

text_box measure_text(std::wstring_view shown, const font& font, double height, double width_factor,
                      double tracking) {
    if (font.shapes != nullptr || font.big_shapes != nullptr)
        return measure_letters(shown, font, height, width_factor, tracking);
    return measure_by_hand(shown, hand_of(font.hand), height, width_factor, tracking);
}

std::wstring shown_text(std::wstring_view text) {
    std::wstring shown;
    shown.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != L'%' || i + 2 >= text.size() || text[i + 1] != L'%') {
            shown += text[i];
            continue;
        }
        const wchar_t code = text[i + 2];
        const auto digit = [&](std::size_t at) {
            return at < text.size() && text[at] >= L'0' && text[at] <= L'9' ? text[at] - L'0' : -1;
        };
        i += 2;
        switch (code) {
        case L'c':
        case L'C':
            shown += L'\x00D8';
            break;
        case L'd':
        case L'D':
            shown += L'\x00B0';
            break;
        case L'p':
        case L'P':
            shown += L'\x00B1';
            break;
        case L'u':
        case L'U':
        case L'o':
        case L'O':
        case L'k':
        case L'K':
            break;
        case L'%':
            shown += L'%';
            break;
        default:
            if (digit(i) >= 0 && digit(i + 1) >= 0 && digit(i + 2) >= 0) {
                shown += static_cast<wchar_t>(digit(i) * 100 + digit(i + 1) * 10 + digit(i + 2));
                i += 2;
            } else { // no code: the signs themselves
                shown += L"%%";
                shown += code;
            }
        }
    }
    return shown;
}

} // namespace gi
