// Where the answers come from that the editor asks for: from the input, or from what a program gave.
#include "host/ap/documents.h"
#include "host/ed/command_stack.h"
#include "host/ed/console_bars.h"
#include "host/ed/editor.h"
#include "host/ed/typed_names.h"
#include "host/rx/editor_reactors.h"

#include <utility>

namespace ed {

bool editor::may_ask() {
    return rx::reactors_running() == 0;
}

answer editor::ask(std::wstring_view prompt, answer_rule rule) {
    for (;;) {
        answer given = next_answer(prompt, rule);
        if (running_.empty())
            return given;
        running_.back().cancelled = given.kind == answer_kind::escape || given.kind == answer_kind::end;
        if (rule != answer_rule::word || given.kind != answer_kind::text || given.quoted ||
            given.text.front() != L'\'')
            return given;
        const std::wstring name(without_prefixes(given.text));
        if (const auto said = behind_bar(name)) {
            const std::wstring reason = use_bars(
                *said, [this](std::wstring_view step, const auto& press) { run_press(step, press); });
            if (stopped_ || (!reason.empty() && !refuse(prompt, given, reason)))
                return {};
            command_line::instance().fresh_line();
            command_line::instance().line_ended(); // the prompt brings a line feed of its own
            continue;
        }
        const AcEdCommand* const command = find_command(is_typed_variable(name) ? L"SETVAR" : name);
        if (command == nullptr)
            return given;
        if ((command->commandFlags() & ACRX_CMD_TRANSPARENT) == 0) {
            if (!refuse(prompt, given, L"** That command may not be invoked transparently **"))
                return {};
            continue;
        }
        const std::wstring resumed = running_.back().name;
        run_command(given.text);
        command_line::instance().print(L"\nResuming " + resumed + L" command.");
        running_.back().cancelled = false;
    }
}

// What a program gave is shown as if it had been typed.
answer editor::next_given(std::wstring_view prompt) {
    given_answers& given = *given_.back();
    command_line& line = command_line::instance();
    if (given.left.empty()) {
        given.ended = true;
        return {};
    }
    answer next = std::move(given.left.front());
    given.left.pop_front();
    line.print(prompt);
    if (next.kind == answer_kind::escape)
        line.print(L"*Cancel*");
    line.echo(next.text);
    return next;
}

// A press of a bar is one answer with all that stands behind it on its line.
answer editor::read_answer(answer_rule rule, std::wstring_view prompt) {
    answer given = input.next(rule, prompt);
    const bool may_press = rule == answer_rule::word && given.kind == answer_kind::text && !given.quoted &&
                           (running_.empty() || given.text.front() == L'\'');
    if (may_press && is_bar(without_prefixes(given.text)))
        if (const std::wstring rest = input.take_rest_of_line(); !rest.empty())
            given.text += L' ' + rest;
    return given;
}

answer editor::next_answer(std::wstring_view prompt, answer_rule rule) {
    if (stopped_ || !may_ask())
        return {};
    if (!given_.empty())
        return next_given(prompt);
    ap::documents::instance().save_automatically();
    command_line& line = command_line::instance();
    line.end_pages();
    if (input.next_is_silent()) {
        line.fresh_line();
        line.line_ended(); // as the Enter of an answer that is seen
        return read_answer(rule, {});
    }
    const bool terminal = input.at_terminal() && !input.typed_ahead();
    const std::size_t feed = prompt.rfind(L'\n');
    const std::wstring_view last = feed == prompt.npos ? prompt : prompt.substr(feed + 1);
    // A terminal shows the last line of the prompt itself, so that it can redraw it.
    line.print(terminal ? prompt.substr(0, prompt.size() - last.size()) : prompt);
    answer given = read_answer(rule, last);
    switch (given.kind) {
    case answer_kind::end:
        line.fresh_line();
        if (!running_.empty()) {
            fail(run_status::ended_inside, L"the input ended (" + input.place() + L") inside command " +
                                               running_.back().shown + L", at the prompt '" +
                                               as_one_line(prompt) + L"'");
            stopped_ = true;
        }
        break;
    case answer_kind::escape:
        line.print(L"*Cancel*");
        line.echo({});
        break;
    case answer_kind::enter:
    case answer_kind::text:
        if (!terminal) {
            line.echo(given.text);
            break;
        }
        line.line_ended();
        line.begin_page();
        break;
    }
    return given;
}

bool editor::refuse(std::wstring_view prompt, const answer& answer, std::wstring_view reason) {
    command_line& line = command_line::instance();
    line.fresh_line();
    line.echo(reason);
    if (!given_.empty()) {
        given_.back()->refused = true;
        return !given_.back()->left.empty();
    }
    if (input.at_terminal()) {
        input.drop_typed_ahead(); // it was meant for questions that do not come now
        return true;
    }
    std::wstring said = answer.kind == answer_kind::enter ? L"Enter" : L"'" + answer.text + L"'";
    fail(run_status::refused, input.place() + L": at the prompt '" + as_one_line(prompt) + L"' the answer " +
                                  said + L" was refused: " + std::wstring(reason));
    return !stopped_;
}

} // namespace ed
