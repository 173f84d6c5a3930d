#include "host/db/entities/mtext_codes.h"

#include "base/display_width.h"
#include "base/utf.h"
#include "host/db/core/geometry_groups.h"
#include "host/dxf/group_list.h"
#include "host/gi/text_metrics.h"

#include <cmath>

namespace db {

namespace {

constexpr wchar_t hard_space = 0xA0;

double number(std::wstring_view text, double missing) {
    return dxf::leading_real(base::narrow(text)).value_or(missing);
}

class reader {
public:
    reader(std::wstring_view contents, const AcGiTextStyle& style) : text_(contents) {
        codes_.formats.push_back({style});
        codes_.paragraphs.emplace_back();
    }

    mtext_codes read() {
        while (at_ < text_.size()) {
            const wchar_t c = text_[at_++];
            switch (c) {
            case L'\\':
                code();
                break;
            case L'{':
                saved_.push_back(format_);
                break;
            case L'}':
                end_word();
                if (!saved_.empty()) {
                    format_ = saved_.back();
                    saved_.pop_back();
                }
                break;
            case L'\r':
                break;
            case L'\n':
                put(mtext_token::kind::paragraph_end);
                break;
            case L'\t':
                put(mtext_token::kind::tab);
                break;
            case L' ':
                put(mtext_token::kind::space);
                break;
            default:
                letter(c);
            }
        }
        end_word();
        return std::move(codes_);
    }

private:
    // A line may break before and behind East Asian signs.
    void letter(wchar_t c) {
        const bool wide = base::is_wide(static_cast<char32_t>(c));
        if (wide)
            end_word();
        word_ += c;
        if (wide)
            end_word();
    }

    void end_word() {
        if (word_.empty())
            return;
        mtext_token token = made(mtext_token::kind::word);
        token.text = gi::shown_text(word_);
        codes_.tokens.push_back(std::move(token));
        word_.clear();
    }

    mtext_token made(mtext_token::kind what) const {
        mtext_token token;
        token.what = what;
        token.format = format_;
        token.paragraph = codes_.paragraphs.size() - 1;
        return token;
    }

    void put(mtext_token::kind what) {
        end_word();
        codes_.tokens.push_back(made(what));
    }

    // Up to the semicolon that ends a code, which is passed.
    std::wstring_view argument() {
        const std::size_t end = std::min(text_.find(L';', at_), text_.size());
        const std::wstring_view found = text_.substr(at_, end - at_);
        at_ = std::min(end + 1, text_.size());
        return found;
    }

    // A format like the present one, with a change.
    template<class Change>
    void change(Change changed) {
        end_word();
        mtext_format format = codes_.formats[format_];
        changed(format);
        format_ = codes_.formats.size();
        codes_.formats.push_back(std::move(format));
    }

    // A value, or with an x behind it a factor of what there is.
    static double scaled(std::wstring_view value, double before) {
        const double given = number(value, 0.0);
        if (!(given > 0.0))
            return before;
        return !value.empty() && (value.back() == L'x' || value.back() == L'X') ? given * before : given;
    }

    void code();
    void font(bool of_system);
    void stack();
    void paragraph();

    std::wstring_view text_;
    std::size_t at_ = 0;
    mtext_codes codes_;
    std::size_t format_ = 0;
    std::vector<std::size_t> saved_; // formats in front of the braces that are open
    std::wstring word_;
};

void reader::code() {
    if (at_ == text_.size()) {
        letter(L'\\');
        return;
    }
    const wchar_t c = text_[at_++];
    switch (c) {
    case L'\\':
    case L'{':
    case L'}':
        letter(c);
        break;
    case L'~':
        letter(hard_space);
        break;
    case L'P':
    case L'X':
        put(mtext_token::kind::paragraph_end);
        break;
    case L'N':
        put(mtext_token::kind::column_end);
        break;
    case L'L':
    case L'l':
        change([&](mtext_format& format) { format.style.setUnderlined(c == L'L'); });
        break;
    case L'O':
    case L'o':
        change([&](mtext_format& format) { format.style.setOverlined(c == L'O'); });
        break;
    case L'K':
    case L'k':
        change([&](mtext_format& format) { format.style.setStrikethrough(c == L'K'); });
        break;
    case L'f':
        font(true);
        break;
    case L'F':
        font(false);
        break;
    case L'H':
        change([value = argument()](mtext_format& format) {
            format.style.setTextSize(scaled(value, format.style.textSize()));
        });
        break;
    case L'W':
        change([value = argument()](mtext_format& format) {
            format.style.setXScale(scaled(value, format.style.xScale()));
        });
        break;
    case L'T':
        change([value = argument()](mtext_format& format) {
            format.style.setTrackingPercent(scaled(value, format.style.trackingPercent()));
        });
        break;
    case L'Q':
        change([value = argument()](mtext_format& format) {
            format.style.setObliquingAngle(radians(number(value, 0.0)));
        });
        break;
    case L'A':
        change([value = argument()](mtext_format& format) {
            format.up_and_down = static_cast<int>(std::clamp(number(value, 0.0), 0.0, 2.0));
        });
        break;
    case L'C':
        change([value = argument()](mtext_format& format) {
            format.color = static_cast<Adesk::UInt32>(std::clamp(number(value, 0.0), 0.0, 256.0));
        });
        break;
    case L'c':
        change([value = argument()](mtext_format& format) {
            constexpr double white = 0xFFFFFF;
            format.color = mtext_format::true_color |
                           static_cast<Adesk::UInt32>(std::clamp(number(value, 0.0), 0.0, white));
        });
        break;
    case L'S':
        stack();
        break;
    case L'p':
        paragraph();
        break;
    default: // no code
        letter(L'\\');
        letter(c);
    }
}

// \fArial|b0|i1|c134|p34; and \Fgbenor,gbcbig;
void reader::font(bool of_system) {
    const std::wstring_view value = argument();
    const std::size_t end = std::min(value.find_first_of(of_system ? L"|" : L"|,"), value.size());
    const std::wstring name(value.substr(0, end));
    if (name.empty())
        return;
    const auto option = [&](wchar_t letter) {
        constexpr double most = 255.0;
        const std::size_t found = value.find(std::wstring{L'|', letter}, end);
        return found == value.npos
                   ? 0
                   : static_cast<int>(std::clamp(number(value.substr(found + 2), 0.0), 0.0, most));
    };
    change([&](mtext_format& format) {
        if (of_system) {
            const int pitch_and_family = option(L'p');
            using namespace Autodesk::AutoCAD::PAL::FontUtils;
            format.style.setFont(name.c_str(), option(L'b') != 0, option(L'i') != 0,
                                 static_cast<Charset>(option(L'c') & 0xFF),
                                 static_cast<FontPitch>(pitch_and_family & 0x3),
                                 static_cast<FontFamily>(pitch_and_family & 0x70));
            return;
        }
        format.style.setFont(L"", false, false, kAnsiCharset, {}, {});
        format.style.setFileName(name.c_str());
        if (end < value.size() && value[end] == L',')
            format.style.setBigFontFileName(std::wstring(value.substr(end + 1)).c_str());
    });
}

// \S1/2; with / # or ^ between the two; a backslash in front of a sign takes its meaning from it.
void reader::stack() {
    end_word();
    mtext_token token = made(mtext_token::kind::stack);
    std::wstring* part = &token.text;
    for (bool ended = false; at_ < text_.size() && !ended;) {
        wchar_t c = text_[at_++];
        if (c == L';') {
            ended = true;
        } else if (part == &token.text && (c == L'/' || c == L'#' || c == L'^')) {
            token.mark = c;
            part = &token.below;
            if (c == L'^' && at_ < text_.size() && text_[at_] == L' ')
                ++at_; // the blank that keeps a caret from being half of a control character
        } else {
            if (c == L'\\' && at_ < text_.size())
                c = text_[at_++];
            *part += c;
        }
    }
    token.text = gi::shown_text(token.text);
    token.below = gi::shown_text(token.below);
    if (token.mark == 0) // no fraction after all
        token.what = mtext_token::kind::word;
    codes_.tokens.push_back(std::move(token));
}

// \pi-2,l3,qc,t4; a star takes a value back.
void reader::paragraph() {
    end_word();
    std::wstring_view value = argument();
    mtext_paragraph changed = codes_.paragraphs.back();
    bool in_tabs = false; // whose list goes on to the end
    while (!value.empty()) {
        const std::size_t comma = std::min(value.find(L','), value.size());
        const std::wstring_view item = value.substr(0, comma);
        value.remove_prefix(std::min(comma + 1, value.size()));
        // An x in front belongs to the value before it.
        const std::size_t begin = item.find_first_not_of(L'x');
        if (begin == item.npos)
            continue;
        // Tabulators in the middle (c) and to the right (r) are taken for left ones.
        const std::size_t place = item.find_first_of(L"0123456789*", begin);
        if (in_tabs || item[begin] == L't') {
            if (!in_tabs || place == item.npos)
                changed.tabs.clear();
            in_tabs = true;
            if (place != item.npos && item[place] != L'*')
                changed.tabs.push_back(number(item.substr(place), 0.0));
            continue;
        }
        const std::wstring_view rest = item.substr(begin + 1);
        switch (item[begin]) {
        case L'i':
            changed.first_indent = number(rest, 0.0);
            break;
        case L'l':
            changed.left_indent = number(rest, 0.0);
            break;
        case L'r':
            changed.right_indent = number(rest, 0.0);
            break;
        case L'q':
            changed.alignment = rest.empty() || rest[0] == L'*' ? L'\0' : rest[0];
            break;
        case L's': {
            const std::size_t how =
                rest.empty() ? std::wstring_view::npos : std::wstring_view(L"mae").find(rest[0]);
            using spacing = mtext_paragraph::spacing;
            constexpr spacing kinds[] = {spacing::times, spacing::at_least, spacing::exactly};
            const double factor = how < 3 ? number(rest.substr(1), 0.0) : 0.0;
            changed.spaced = factor > 0.0 ? kinds[how] : spacing::as_text;
            changed.line_spacing = factor > 0.0 ? factor : 1.0;
            break;
        }
        case L'b':
            changed.before = number(rest, 0.0);
            break;
        case L'a':
            changed.after = number(rest, 0.0);
            break;
        default:
            break;
        }
    }
    codes_.paragraphs.push_back(changed);
}

} // namespace

mtext_codes read_mtext(std::wstring_view contents, const AcGiTextStyle& style) {
    return reader(contents, style).read();
}

std::wstring plain_mtext(std::wstring_view contents) {
    std::wstring plain;
    for (const mtext_token& token : read_mtext(contents, AcGiTextStyle()).tokens) {
        switch (token.what) {
        case mtext_token::kind::word:
            for (const wchar_t c : token.text)
                plain += c == hard_space ? L' ' : c;
            break;
        case mtext_token::kind::space:
            plain += L' ';
            break;
        case mtext_token::kind::tab:
            plain += L'\t';
            break;
        case mtext_token::kind::stack:
            plain += token.text + (token.mark == L'^' ? L'^' : L'/') + token.below;
            break;
        case mtext_token::kind::paragraph_end:
        case mtext_token::kind::column_end:
            plain += L"\r\n";
        }
    }
    return plain;
}

} // namespace db
