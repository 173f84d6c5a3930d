#include "host/db/entities/mtext_layout.h"

#include "base/display_width.h"
#include "host/gi/set_text.h"

#include <algorithm>
#include <cmath>

namespace db {

namespace {

// From one base line to the next one, in heights. Source: the DXF reference's line spacing factor, of which
// 1.0 is three lines on five.
constexpr double line_step = 5.0 / 3.0;
// From what is below in a fraction to what is above, in heights: as from line to line.
constexpr double stack_step = line_step;
constexpr double tab_step = 4.0; // heights between tabulators

struct span_of_line {
    double x = 0.0; // from the line's begin
    double y = 0.0; // above the base line
    std::size_t format = 0;
    std::wstring text;
    bool fraction = false;
};

struct rule_of_line {
    double from = 0.0;
    double to = 0.0;
    double y = 0.0;
    std::size_t format = 0;
};

struct line {
    std::vector<span_of_line> spans;
    std::vector<rule_of_line> rules;
    double width = 0.0;  // to the end of the last word
    double ascent = 0.0; // of the highest letter or fraction
    std::size_t paragraph = 0;
    bool first = false; // of its paragraph
    bool ends_column = false;
};

class setter {
public:
    setter(const mtext_codes& codes, const mtext_frame& frame) : codes_(codes), frame_(frame) {}

    mtext_layout set() {
        break_lines();
        place_lines();
        return std::move(layout_);
    }

private:
    const mtext_format& format(std::size_t index) const { return codes_.formats[index]; }
    double size(std::size_t index) const { return format(index).style.textSize(); }

    gi::text_box box_of(std::wstring_view text, std::size_t index) const {
        const AcGiTextStyle& style = format(index).style;
        gi::text_box box = gi::box_of_text(text, style, style.textSize(), style.xScale());
        if (frame_.downwards && gi::runs_down(style) && !text.empty()) {
            // A column lies here as the row that it becomes when it is turned.
            const double down = box.top - box.bottom;
            box = {0.0, down, 0.0, style.textSize()};
        }
        return box;
    }
    double width_of(std::wstring_view text, std::size_t index) const { return box_of(text, index).width; }
    // How far the next word is pushed by one: with the gap behind it.
    double step_of(std::wstring_view text, std::size_t index) const {
        return width_of(std::wstring(text) + L'n', index) - width_of(L"n", index);
    }

    double indent(std::size_t paragraph, bool first) const {
        const mtext_paragraph& how = codes_.paragraphs[paragraph];
        return (how.left_indent + (first ? how.first_indent : 0.0)) * frame_.height;
    }
    double room(std::size_t paragraph, bool first) const {
        const double width = frame_.columns > 1 ? frame_.column_width : frame_.width;
        if (!(width > 0.0))
            return 0.0; // lines do not break
        return std::max(width - indent(paragraph, first) -
                            codes_.paragraphs[paragraph].right_indent * frame_.height,
                        frame_.height);
    }

    void break_lines();
    void add(std::size_t first, std::size_t last);
    void put(const mtext_token& token);
    void go_to_tab(const mtext_token& token);
    void put_stack(const mtext_token& token);
    void begin_line(const mtext_token& token, bool first);
    void end_line(const mtext_token& token, bool ends_column);
    void place_lines();
    double aligned(const line& line, double width) const;
    double step_to(const line& next, const line& before) const;
    void turn_down(double whole, double deepest);

    const mtext_codes& codes_;
    const mtext_frame& frame_;
    std::vector<line> lines_;
    double pen_ = 0.0;    // in the last line, behind blanks too
    std::wstring blanks_; // behind its last word
    bool tabbed_ = false; // whether there are tabulators among them
    mtext_layout layout_;
};

void setter::begin_line(const mtext_token& token, bool first) {
    line fresh;
    fresh.paragraph = token.paragraph;
    fresh.first = first;
    lines_.push_back(std::move(fresh));
    pen_ = 0.0;
    blanks_.clear();
    tabbed_ = false;
}

void setter::end_line(const mtext_token& token, bool ends_column) {
    line& last = lines_.back();
    last.ends_column = ends_column;
    if (last.ascent == 0.0) // an empty line is as high as it would be
        last.ascent = size(token.format);
    begin_line(token, true);
}

void setter::put(const mtext_token& token) {
    line& last = lines_.back();
    last.ascent = std::max(last.ascent, size(token.format));
    if (!last.spans.empty() && !tabbed_ && !last.spans.back().fraction &&
        last.spans.back().format == token.format)
        last.spans.back().text += blanks_ + token.text;
    else
        last.spans.push_back({pen_, 0.0, token.format, token.text});
    blanks_.clear();
    tabbed_ = false;
    last.width = pen_ + width_of(token.text, token.format);
    pen_ += step_of(token.text, token.format);
}

void setter::put_stack(const mtext_token& token) {
    line& last = lines_.back();
    const double high = size(token.format);
    const double above = width_of(token.text, token.format);
    const double below = width_of(token.below, token.format);
    if (token.mark == L'#') {
        const double slash = width_of(L"/", token.format);
        last.spans.push_back({pen_, high / 2.0, token.format, token.text, true});
        last.spans.push_back({pen_ + above, 0.0, token.format, L"/", true});
        last.spans.push_back({pen_ + above + slash, 0.0, token.format, token.below, true});
        last.width = pen_ + above + slash + below;
        last.ascent = std::max(last.ascent, high * 1.5);
    } else {
        // How letters around it are high is not told; a fraction stands around the middle of letters of its
        // own height.
        const double both = high * (1.0 + stack_step);
        const int where = format(token.format).up_and_down;
        const double bottom = where == 0 ? 0.0 : where == 1 ? (high - both) / 2.0 : high - both;
        const double wide = std::max(above, below);
        last.spans.push_back(
            {pen_ + (wide - above) / 2.0, bottom + high * stack_step, token.format, token.text, true});
        last.spans.push_back({pen_ + (wide - below) / 2.0, bottom, token.format, token.below, true});
        if (token.mark == L'/') // in the middle between the two
            last.rules.push_back(
                {pen_, pen_ + wide, bottom + (high + high * stack_step) / 2.0, token.format});
        last.width = pen_ + wide;
        last.ascent = std::max(last.ascent, bottom + both);
    }
    pen_ = last.width + (step_of(L"n", token.format) - width_of(L"n", token.format));
}

void setter::go_to_tab(const mtext_token& token) {
    line& here = lines_.back();
    if (here.spans.empty())
        here.paragraph = token.paragraph;
    const double begin = indent(here.paragraph, here.first); // tabulators count from the edge
    for (const double tab : codes_.paragraphs[here.paragraph].tabs)
        if (const double place = tab * frame_.height - begin; place > pen_) {
            pen_ = place;
            return;
        }
    const double step = tab_step * frame_.height;
    pen_ = (std::floor(pen_ / step) + 1.0) * step;
}

// Puts tokens that stand together without a blank, on a new line when they do not fit.
void setter::add(std::size_t first, std::size_t last) {
    const double wanted = room(lines_.back().paragraph, lines_.back().first);
    double width = 0.0;
    for (std::size_t i = first; i < last; ++i) {
        const mtext_token& token = codes_.tokens[i];
        if (token.what == mtext_token::kind::stack)
            width += std::max(width_of(token.text, token.format), width_of(token.below, token.format));
        else
            width += i + 1 < last ? step_of(token.text, token.format) : width_of(token.text, token.format);
    }
    constexpr double slack = 1e-9;
    if (wanted > 0.0 && !lines_.back().spans.empty() && pen_ + width > wanted * (1.0 + slack))
        begin_line(codes_.tokens[first], false);
    for (std::size_t i = first; i < last; ++i) {
        const mtext_token& token = codes_.tokens[i];
        if (token.what == mtext_token::kind::stack)
            put_stack(token);
        else
            put(token);
    }
}

bool is_wide_word(const mtext_token& token) {
    return token.text.size() == 1 && base::is_wide(static_cast<char32_t>(token.text[0]));
}

void setter::break_lines() {
    if (codes_.tokens.empty())
        return;
    begin_line(codes_.tokens.front(), true);
    for (std::size_t i = 0; i < codes_.tokens.size();) {
        const mtext_token& token = codes_.tokens[i];
        switch (token.what) {
        case mtext_token::kind::space:
            pen_ += step_of(L" ", token.format);
            blanks_ += L' ';
            ++i;
            break;
        case mtext_token::kind::tab:
            go_to_tab(token);
            tabbed_ = true;
            ++i;
            break;
        case mtext_token::kind::paragraph_end:
        case mtext_token::kind::column_end:
            end_line(token, token.what == mtext_token::kind::column_end);
            ++i;
            break;
        case mtext_token::kind::word:
        case mtext_token::kind::stack: {
            if (lines_.back().spans.empty()) // a way to stand that is told at a paragraph's begin
                lines_.back().paragraph = token.paragraph;
            std::size_t last = i + 1;
            while (last < codes_.tokens.size() && !is_wide_word(codes_.tokens[last - 1]) &&
                   !is_wide_word(codes_.tokens[last]) &&
                   (codes_.tokens[last].what == mtext_token::kind::word ||
                    codes_.tokens[last].what == mtext_token::kind::stack))
                ++last;
            add(i, last);
            i = last;
            break;
        }
        }
    }
    if (lines_.back().spans.empty()) // what ends the last line begins no other one
        lines_.pop_back();
}

// Where a line begins, in a box that begins at nought.
double setter::aligned(const line& line, double width) const {
    wchar_t how = codes_.paragraphs[line.paragraph].alignment;
    if (how == 0)
        how = std::wstring_view(L"lcr")[static_cast<std::size_t>(
            frame_.downwards ? (frame_.attachment - 1) / 3 : (frame_.attachment - 1) % 3)];
    const double from = indent(line.paragraph, line.first);
    const double to = width - codes_.paragraphs[line.paragraph].right_indent * frame_.height;
    switch (how) {
    case L'c':
        return (from + to - line.width) / 2.0;
    case L'r':
        return to - line.width;
    default:
        return from;
    }
}

void setter::place_lines() {
    if (lines_.empty())
        return;
    double widest = 0.0;
    for (const line& line : lines_)
        widest = std::max(widest, line.width + indent(line.paragraph, line.first) +
                                      codes_.paragraphs[line.paragraph].right_indent * frame_.height);
    const bool in_columns = frame_.columns > 1 && frame_.column_width > 0.0;
    const double column = in_columns ? frame_.column_width : frame_.width > 0.0 ? frame_.width : widest;
    const auto height_of = [&](int index) {
        if (frame_.column_heights.empty())
            return 0.0;
        const auto last = frame_.column_heights.size() - 1;
        return frame_.column_heights[std::min(static_cast<std::size_t>(index), last)];
    };

    int in_column = 0;
    double depth = 0.0; // of the base line below the top
    double deepest = 0.0;
    double highest = 0.0; // of what is drawn
    double lowest = 0.0;
    double least = 1e300;
    double most = -1e300;
    bool top = true; // of a column
    for (const line& line : lines_) {
        double next = top ? line.ascent : depth + step_to(line, (&line)[-1]);
        constexpr double slack = 1.0 + 1e-9;
        if (in_columns && !top && in_column + 1 < frame_.columns && height_of(in_column) > 0.0 &&
            next > height_of(in_column) * slack) {
            ++in_column;
            next = line.ascent;
        }
        depth = next;
        deepest = std::max(deepest, depth);
        const int from_left = frame_.from_right && in_columns ? frame_.columns - 1 - in_column : in_column;
        const double x = aligned(line, column) + (in_columns ? from_left * (column + frame_.gutter) : 0.0);
        for (const rule_of_line& rule : line.rules)
            layout_.rules.push_back(
                {{x + rule.from, rule.y - depth}, {x + rule.to, rule.y - depth}, format(rule.format).color});
        for (const span_of_line& span : line.spans) {
            const mtext_format& how = format(span.format);
            layout_.pieces.push_back({{x + span.x, span.y - depth}, span.text, how.style, how.color});
            const gi::text_box box = box_of(span.text, span.format);
            highest = std::max(highest, span.y + box.top - depth);
            lowest = std::min(lowest, span.y + box.bottom - depth);
        }
        if (!line.spans.empty()) {
            least = std::min(least, x);
            most = std::max(most, x + line.width);
        }
        top = false;
        if (line.ends_column && in_columns && in_column + 1 < frame_.columns) {
            ++in_column;
            top = true;
        }
    }

    layout_.width = most > least ? most - least : 0.0;
    layout_.height = highest - std::min(lowest, -deepest);
    const double whole = in_columns ? frame_.columns * column + (frame_.columns - 1) * frame_.gutter : column;
    if (frame_.downwards) {
        turn_down(whole, deepest);
        return;
    }
    const int across = (frame_.attachment - 1) % 3; // 0 left, 1 in the middle, 2 right
    const int down = (frame_.attachment - 1) / 3;
    const double left = across * -whole / 2.0;
    const double up = down * deepest / 2.0;
    for (mtext_piece& piece : layout_.pieces)
        piece.start = {piece.start.x + left, piece.start.y + up};
    for (mtext_rule& rule : layout_.rules) {
        rule.start = {rule.start.x + left, rule.start.y + up};
        rule.end = {rule.end.x + left, rule.end.y + up};
    }
}

// From base line to base line.
double setter::step_to(const line& next, const line& before) const {
    const mtext_paragraph& how = codes_.paragraphs[next.paragraph];
    double step = (frame_.exact_spacing ? frame_.height : next.ascent) * line_step * frame_.spacing;
    switch (how.spaced) {
    case mtext_paragraph::spacing::as_text:
        break;
    case mtext_paragraph::spacing::times:
        step = next.ascent * line_step * how.line_spacing;
        break;
    case mtext_paragraph::spacing::at_least:
        step = std::max(next.ascent * line_step, frame_.height * how.line_spacing);
        break;
    case mtext_paragraph::spacing::exactly:
        step = frame_.height * how.line_spacing;
        break;
    }
    if (next.first)
        step += (how.before + codes_.paragraphs[before.paragraph].after) * frame_.height;
    return step;
}

// Lines that were set in rows become columns, the first one on the right. What letters rise above their base
// line is then how wide a column is, in the middle of which its letters hang.
void setter::turn_down(double whole, double deepest) {
    const int across = (frame_.attachment - 1) % 3;
    const int down = (frame_.attachment - 1) / 3;
    const auto turned = [&](const AcGePoint2d& at, double middle) {
        return AcGePoint2d(deepest * (2 - across) / 2.0 + at.y + middle, down * whole / 2.0 - at.x);
    };
    for (mtext_piece& piece : layout_.pieces)
        piece.start = turned(piece.start, piece.style.textSize() / 2.0);
    for (mtext_rule& rule : layout_.rules) {
        rule.start = turned(rule.start, 0.0);
        rule.end = turned(rule.end, 0.0);
    }
    std::swap(layout_.width, layout_.height);
}

} // namespace

mtext_layout lay_out(const mtext_codes& codes, const mtext_frame& frame) {
    return setter(codes, frame).set();
}

} // namespace db
