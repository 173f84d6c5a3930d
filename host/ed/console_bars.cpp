#include "host/ed/console_bars.h"

#include "base/case_fold.h"
#include "base/display_width.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "host/ed/output.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace ed {

namespace {

// In the order in which they were shown.
std::vector<ui::bar*>& shown_bars() {
    static std::vector<ui::bar*> bars;
    return bars;
}

std::wstring_view trimmed(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(L" \t\"");
    const std::size_t last = text.find_last_not_of(L" \t\"");
    return first == text.npos ? std::wstring_view() : text.substr(first, last - first + 1);
}

// ---- showing

// How wide a column of texts is.
class width {
public:
    explicit width(std::size_t least = 0) : columns_(least) {}
    void take(std::wstring_view text) { columns_ = std::max(columns_, base::display_width(text)); }
    std::wstring fill(std::wstring_view text) const { return base::padded(text, columns_) + gap; }

private:
    static constexpr const wchar_t* gap = L"  ";
    std::size_t columns_;
};

void end_line(std::wstring& text) {
    text.erase(text.find_last_not_of(L' ') + 1);
    text += L'\n';
}

std::wstring numbered(const ui::bar_button& button) {
    return std::to_wstring(button.id) + L' ' + std::wstring(trimmed(button.label));
}

std::wstring buttons_text(const ui::bar_content& content) {
    width labels;
    width states;
    for (const auto& group : content.groups)
        for (const ui::bar_button& button : group) {
            labels.take(numbered(button));
            states.take(button.state);
        }
    std::wstring text;
    for (const auto& group : content.groups) {
        for (const ui::bar_button& button : group)
            text += labels.fill(numbered(button)) + states.fill(button.state);
        end_line(text);
    }
    return text;
}

std::wstring rows_text(const ui::bar_content& content) {
    const std::size_t end = std::min(content.first_row + content.rows_shown, content.rows.size());
    if (content.first_row >= end)
        return {};
    width names;
    std::vector<width> states(content.columns.size());
    names.take(content.row_names.name);
    for (std::size_t c = 0; c < content.columns.size(); ++c)
        states[c].take(content.columns[c].name);
    for (std::size_t r = content.first_row; r < end; ++r) {
        names.take(numbered(content.rows[r].name));
        for (std::size_t c = 0; c < states.size() && c < content.rows[r].buttons.size(); ++c)
            states[c].take(content.rows[r].buttons[c].state);
    }
    std::wstring text = L"\n" + names.fill(content.row_names.name);
    for (std::size_t c = 0; c < states.size(); ++c)
        text += states[c].fill(content.columns[c].name);
    end_line(text);
    for (std::size_t r = content.first_row; r < end; ++r) {
        text += names.fill(numbered(content.rows[r].name));
        for (std::size_t c = 0; c < states.size() && c < content.rows[r].buttons.size(); ++c)
            text += states[c].fill(content.rows[r].buttons[c].state);
        end_line(text);
    }
    return text;
}

void print(const ui::bar_content& content) {
    command_line::instance().fresh_line();
    command_line::instance().print(bar_text(content));
}

// ---- pressing

struct found_button {
    ui::bar* bar = nullptr;
    ui::bar_button button;
    const ui::bar_row* row = nullptr; // null for a button that is in none
};

bool is_named(const ui::bar_button& button, std::wstring_view label) {
    return base::equal_no_case(trimmed(button.label), label);
}

// Fits all buttons of a bar until one is the wanted one. `test` is told the column of a row's button, too.
template<class Test>
std::optional<found_button> find(ui::bar* bar, const ui::bar_content& content, Test test) {
    for (const auto& group : content.groups)
        for (const ui::bar_button& button : group)
            if (test(button, nullptr, ui::bar_column()))
                return found_button{bar, button};
    for (const ui::bar_button& button : content.paging)
        if (test(button, nullptr, ui::bar_column()))
            return found_button{bar, button};
    for (const ui::bar_row& row : content.rows) {
        if (test(row.name, &row, content.row_names))
            return found_button{bar, row.name, &row};
        for (std::size_t c = 0; c < row.buttons.size() && c < content.columns.size(); ++c)
            if (test(row.buttons[c], &row, content.columns[c]))
                return found_button{bar, row.buttons[c], &row};
    }
    return std::nullopt;
}

std::optional<found_button> find(ui::bar* bar, const ui::bar_content& content, std::wstring_view said) {
    const auto number = base::parse_integer(base::narrow(said));
    if (auto found = find(bar, content, [&](const ui::bar_button& button, const ui::bar_row* row, auto) {
            return (number && *number == button.id) ||
                   ((row == nullptr || &row->name == &button) && is_named(button, said));
        }))
        return found;
    const std::size_t split = said.find_last_of(L" \t/");
    if (split == said.npos)
        return std::nullopt;
    const std::wstring_view name = trimmed(said.substr(0, split));
    const std::wstring_view word = trimmed(said.substr(split + 1));
    return find(bar, content,
                [&](const ui::bar_button&, const ui::bar_row* row, const ui::bar_column& column) {
                    return row != nullptr && is_named(row->name, name) &&
                           (base::equal_no_case(column.word, word) || base::equal_no_case(column.name, word));
                });
}

// What U says when it takes a press back.
std::wstring step_name(const found_button& pressed, const ui::bar_content& content) {
    std::wstring name(trimmed(pressed.row != nullptr ? pressed.row->name.label : pressed.button.label));
    for (std::size_t c = 0; pressed.row != nullptr && c < content.columns.size(); ++c)
        if (c < pressed.row->buttons.size() && pressed.row->buttons[c].id == pressed.button.id)
            name += L' ' + content.columns[c].name;
    return name;
}

// What the user sees of a press: the bar when other rows are on it now, else the button's new state.
void tell_outcome(const found_button& pressed, const ui::bar_content& before) {
    const auto& bars = shown_bars();
    if (std::find(bars.begin(), bars.end(), pressed.bar) == bars.end())
        return;
    const ui::bar_content now = pressed.bar->content();
    if (now.first_row != before.first_row || now.rows_shown != before.rows_shown ||
        now.rows.size() != before.rows.size()) {
        print(now);
        return;
    }
    const auto found = find(pressed.bar, now, [&](const ui::bar_button& button, auto, auto) {
        return button.id == pressed.button.id;
    });
    if (!found || found->button.state.empty())
        return;
    std::wstring text = step_name(*found, now) + L": " + found->button.state;
    command_line::instance().fresh_line();
    command_line::instance().print(text + L"\n");
}

} // namespace

void show_bar(ui::bar& shown) {
    auto& bars = shown_bars();
    if (std::find(bars.begin(), bars.end(), &shown) == bars.end())
        bars.push_back(&shown);
    print(shown.content());
}

void hide_bar(ui::bar& shown) {
    std::erase(shown_bars(), &shown);
}

std::wstring bar_text(const ui::bar_content& content) {
    std::wstring text = content.title + (content.enabled ? L"\n" : L" (disabled)\n");
    text += buttons_text(content) + rows_text(content);
    if (content.pages > 1)
        for (std::size_t i = 0; i < content.paging.size(); ++i) {
            text += (i == 0 ? L"\n" : L"  ") + numbered(content.paging[i]);
            if (i + 1 == content.paging.size() / 2)
                text += L"  " + std::to_wstring(content.page) + L"/" + std::to_wstring(content.pages);
        }
    end_line(text);
    return text;
}

bool is_bar(std::wstring_view name) {
    return base::equal_no_case(name, bar_name);
}

std::optional<std::wstring> behind_bar(std::wstring_view line) {
    const std::size_t end = std::min(line.find_first_of(L" \t"), line.size());
    return is_bar(line.substr(0, end)) ? std::optional<std::wstring>(line.substr(end)) : std::nullopt;
}

std::wstring use_bars(std::wstring_view said, const press_runner& run) {
    const std::vector<ui::bar*> bars = shown_bars();
    said = trimmed(said);
    if (bars.empty())
        return L"No bar is shown.";
    for (ui::bar* const bar : bars) {
        const ui::bar_content content = bar->content();
        if (said.empty()) {
            print(content);
            continue;
        }
        const auto found = find(bar, content, said);
        if (!found)
            continue;
        if (!content.enabled)
            return L"The bar " + content.title + L" can not be used now.";
        run(step_name(*found, content), [&] { bar->press(found->button.id); });
        tell_outcome(*found, content);
        return {};
    }
    return said.empty() ? L"" : L"There is no button \"" + std::wstring(said) + L"\". BAR shows them all.";
}

} // namespace ed
