#include "host/ed/console_dialogs.h"

#include "base/case_fold.h"
#include "base/display_width.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "base/wildcard.h"
#include "host/ed/console_bars.h"
#include "host/ed/editor.h"
#include "host/ed/expected.h"

#include <algorithm>
#include <optional>

namespace ed {

namespace {

constexpr std::wstring_view accept = L"OK";
constexpr std::wstring_view cancel = L"CANCEL";

std::vector<ui::line*> lines_of(ui::dialog& dialog) {
    std::vector<ui::line*> lines;
    for (ui::check_list& list : dialog.lists)
        for (ui::line& line : list.lines)
            lines.push_back(&line);
    return lines;
}

// ---- showing

// A row of a list, its columns as wide as what they hold.
std::wstring row_text(std::wstring_view before, const std::vector<std::wstring>& cells,
                      const std::vector<std::size_t>& widths) {
    std::wstring text(before);
    for (std::size_t i = 0; i < cells.size() && i < widths.size(); ++i)
        text += L' ' + base::padded(cells[i], widths[i]);
    text.erase(text.find_last_not_of(L' ') + 1);
    return text + L'\n';
}

// What a column shows of a line: in the first one, lines of a tree stand to the right of what they belong to.
std::wstring cell_text(const ui::line& line, std::size_t column) {
    std::wstring text = column < line.cells.size() ? line.cells[column] : std::wstring();
    return column == 0 ? std::wstring(2 * static_cast<std::size_t>(line.depth), L' ') + text : text;
}

std::wstring list_text(const ui::check_list& list, std::size_t first, std::size_t digits) {
    std::vector<std::wstring> names;
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < list.columns.size(); ++i) {
        names.push_back(list.columns[i].name);
        std::size_t width = base::display_width(names.back());
        for (const ui::line& line : list.lines)
            width = std::max(width, base::display_width(cell_text(line, i)));
        widths.push_back(width);
    }
    std::wstring text = row_text(std::wstring(digits + 4, L' '), names, widths);
    for (const ui::line& line : list.lines) {
        const std::wstring number = std::to_wstring(first++);
        std::vector<std::wstring> cells;
        for (std::size_t i = 0; i < line.cells.size(); ++i)
            cells.push_back(cell_text(line, i));
        text +=
            row_text(std::wstring(digits - number.size(), L' ') + number + (line.checked ? L" [x]" : L" [ ]"),
                     cells, widths);
    }
    return text;
}

void print(ui::dialog& dialog) {
    const std::size_t digits = std::to_wstring(lines_of(dialog).size()).size();
    std::wstring text = dialog.title + L'\n';
    for (const ui::field& field : dialog.fields)
        text += field.name + L'=' + field.value + L'\n';
    std::size_t first = 1;
    for (const ui::check_list& list : dialog.lists) {
        text += list_text(list, first, digits);
        first += list.lines.size();
    }
    command_line& line = command_line::instance();
    line.fresh_line();
    line.print(text.substr(0, text.size() - 1)); // a prompt begins with its line feed
}

// What may be answered.
std::wstring expectation(ui::dialog& dialog) {
    std::wstring text;
    for (const ui::field& field : dialog.fields)
        text += field.name + L"=VALUE, ";
    if (const std::size_t count = lines_of(dialog).size(); count != 0)
        text += L"lines 1 to " + std::to_wstring(count) +
                L" or their names to check (1,3 2-5 * A* \"A B\") or behind - to uncheck, ";
    return text + L"OK or CANCEL";
}

// ---- answers

// A number of a line, counted from 1.
std::optional<std::size_t> line_number(std::wstring_view text, std::size_t count) {
    const bool digits = !text.empty() && text.find_first_not_of(L"0123456789") == text.npos;
    const auto number = digits ? base::parse_integer(base::narrow(text)) : std::nullopt;
    if (!number || *number < 1 || static_cast<std::uint64_t>(*number) > count)
        return std::nullopt;
    return static_cast<std::size_t>(*number);
}

std::wstring_view name_of(const ui::line& line) {
    return line.cells.empty() ? std::wstring_view() : line.cells.front();
}

// The lines of a number, "2-5" or "*"; none when it says none of these.
std::vector<ui::line*> lines_by_number(const std::vector<ui::line*>& lines, std::wstring_view part) {
    if (part == L"*")
        return lines;
    const std::size_t dash = part.find(L'-');
    const auto first = line_number(part.substr(0, dash), lines.size());
    const auto last = dash == part.npos ? first : line_number(part.substr(dash + 1), lines.size());
    if (!first || !last || *first > *last)
        return {};
    return {lines.begin() + static_cast<std::ptrdiff_t>(*first - 1),
            lines.begin() + static_cast<std::ptrdiff_t>(*last)};
}

// The lines whose first column is a name, or is fitted by a pattern when none has that very name.
std::vector<ui::line*> lines_by_name(const std::vector<ui::line*>& lines, const std::wstring& part) {
    std::vector<ui::line*> found;
    for (const bool exact : {true, false}) {
        for (ui::line* const line : lines)
            if (exact ? base::equal_no_case(name_of(*line), part)
                      : base::wildcard_match(name_of(*line), part, true))
                found.push_back(line);
        if (!found.empty())
            break;
    }
    return found;
}

// Checks or unchecks the lines that an answer names, in quotation marks by names alone. When it names none,
// says so, and nothing is changed.
std::wstring mark(const std::vector<ui::line*>& lines, const answer& given) {
    const bool checks = given.quoted || given.text.front() != L'-';
    std::wstring_view rest = std::wstring_view(given.text).substr(checks ? 0 : 1);
    std::vector<ui::line*> named;
    for (bool more = true; more;) {
        const std::size_t comma = rest.find(L',');
        const std::wstring_view part = rest.substr(0, comma);
        more = comma != rest.npos;
        rest.remove_prefix(more ? comma + 1 : rest.size());
        std::vector<ui::line*> some;
        if (!given.quoted)
            some = lines_by_number(lines, part);
        if (some.empty())
            some = lines_by_name(lines, std::wstring(part));
        if (some.empty() && part != L"*")
            return L"There is no line \"" + std::wstring(part) + L"\". ";
        named.insert(named.end(), some.begin(), some.end());
    }
    for (ui::line* const line : named)
        line->checked = checks;
    const auto checked =
        std::count_if(lines.begin(), lines.end(), [](const ui::line* l) { return l->checked; });
    command_line::instance().print(L"\n" + std::to_wstring(checked) + L" of " +
                                   std::to_wstring(lines.size()) + L" checked");
    return {};
}

// Fills a field; the reason when it can not be done.
std::wstring fill(std::vector<ui::field>& fields, const std::wstring& name, const std::wstring& value) {
    const auto named = std::find_if(fields.begin(), fields.end(), [&](const ui::field& field) {
        return base::equal_no_case(field.name, name);
    });
    if (named == fields.end())
        return L"There is no field \"" + name + L"\".";
    std::wstring reason = named->refusal ? named->refusal(value) : std::wstring();
    if (reason.empty())
        named->value = value;
    return reason;
}

// What an answer does to the dialog; the reason when it is none.
std::wstring take(ui::dialog& dialog, const answer& given) {
    const std::size_t equals = given.text.find(L'=');
    if (!given.expression && equals != given.text.npos && !dialog.fields.empty())
        return fill(dialog.fields, given.text.substr(0, equals), given.text.substr(equals + 1));
    std::wstring why;
    if (!given.expression && !given.text.empty() && !dialog.lists.empty()) {
        why = mark(lines_of(dialog), given);
        if (why.empty())
            return {};
    }
    return why + L"Expects " + expectation(dialog) + L'.';
}

} // namespace

bool console_dialogs::run(ui::dialog& shown) {
    editor& editor = editor::instance();
    if (!editor::may_ask())
        return false;
    ui::dialog changed = shown;
    print(changed);
    const std::wstring prompt = L"\n" + expectation(changed) + L" <OK>: ";
    std::vector<std::wstring> words = {std::wstring(accept), std::wstring(cancel)};
    for (const ui::field& field : changed.fields)
        words.push_back(field.name + L'=');
    const expecting hint({words, {}, {}, [&changed] {
                              std::vector<std::wstring> names;
                              for (const ui::line* const line : lines_of(changed))
                                  names.emplace_back(name_of(*line));
                              return names;
                          }});
    for (;;) {
        const answer given = editor.ask(prompt, answer_rule::word);
        if (given.kind == answer_kind::end || given.kind == answer_kind::escape ||
            base::equal_no_case(given.text, cancel))
            return false;
        if (given.kind == answer_kind::enter || base::equal_no_case(given.text, accept)) {
            shown = std::move(changed);
            return true;
        }
        if (const std::wstring reason = take(changed, given);
            !reason.empty() && !editor.refuse(prompt, given, reason))
            return false;
    }
}

void console_dialogs::show(ui::bar& shown) {
    show_bar(shown);
}

void console_dialogs::hide(ui::bar& shown) {
    hide_bar(shown);
}

void console_dialogs::tell(std::wstring_view message) {
    command_line::instance().fresh_line();
    command_line::instance().print(std::wstring(message) + L"\n");
}

} // namespace ed
