#include "host/ed/editor.h"

#include "acedads.h"
#include "base/utf.h"
#include "dbmain.h"
#include "host/ap/documents.h"
#include "host/db/imp_database.h"
#include "host/ed/command_stack.h"
#include "host/ed/host_commands.h"

#include <algorithm>
#include <exception>

namespace ed {

namespace {

constexpr std::wstring_view command_prompt = L"Command: ";

// "_" the global name, "." the host's own command, "'" transparent: in front of a name they change nothing
// here.
std::wstring_view without_prefixes(std::wstring_view typed) {
    while (typed.size() > 1 && (typed.front() == L'_' || typed.front() == L'.' || typed.front() == L'\''))
        typed.remove_prefix(1);
    return typed;
}

std::wstring as_one_line(std::wstring_view text) {
    std::wstring line(text);
    std::replace(line.begin(), line.end(), L'\n', L' ');
    const auto first = line.find_first_not_of(L' ');
    const auto last = line.find_last_not_of(L' ');
    return first == line.npos ? std::wstring() : line.substr(first, last - first + 1);
}

} // namespace

editor& editor::instance() {
    static editor the_editor;
    return the_editor;
}

editor::editor() {
    register_command_stack();
    register_host_commands();
}

void editor::run() {
    while (!stopped_) {
        if (!waiting_.empty())
            input.send(std::exchange(waiting_, {}));
        command_line::instance().fresh_line();
        const answer typed = ask(command_prompt, answer_rule::word);
        switch (typed.kind) {
        case answer_kind::end:
            if (waiting_.empty())
                return;
            break;
        case answer_kind::escape:
            break;
        case answer_kind::enter:
            if (!last_command_.empty())
                run_command(std::wstring(last_command_));
            break;
        case answer_kind::text:
            // Enter repeats what the user asked for, not what a program sent behind it.
            if (!typed.sent)
                last_command_ = typed.text;
            if (!run_command(typed.text))
                refuse(command_prompt, typed,
                       L"Unknown command \"" + typed.text + L"\". Type HELP for a list.");
            break;
        }
    }
}

bool editor::run_command(std::wstring_view typed) {
    const std::wstring name(without_prefixes(typed));
    AcEdCommandStack* const stack = acedRegCmds;
    const AcEdCommand* command = stack->lookupLocalCmd(name.c_str());
    if (command == nullptr)
        command = stack->lookupGlobalCmd(name.c_str());
    if (command == nullptr)
        return false;
    command_ = command;
    acedUsrBrk(); // an Escape at the prompt, or of the command before, is not this one's

    const bool marks_undo = (command->commandFlags() & ACRX_CMD_NO_UNDO_MARKER) == 0;
    if (AcDbDatabase* const database = ap::documents::instance().current_database();
        database != nullptr && marks_undo)
        database->imp().begin_step(base::narrow(command->globalName()));
    // Nothing that a command throws may end the program: the drawing is still there.
    try {
        command->functionAddr()();
    } catch (const std::exception& error) {
        command_line::instance().fresh_line();
        fail_command(L"Command " + std::wstring(command->globalName()) + L" was ended: " +
                     base::widen(error.what()));
    } catch (...) {
        command_line::instance().fresh_line();
        fail_command(L"Command " + std::wstring(command->globalName()) +
                     L" was ended by an unknown exception");
    }
    command_ = nullptr;
    for (AcDbDatabase* const database : ap::documents::instance().databases())
        if (const std::size_t left = database->imp().close_all(); left != 0) {
            command_line::instance().fresh_line();
            command_line::instance().error(L"zefhost: command " + name + L" left " + std::to_wstring(left) +
                                           L" objects open; they were closed");
        }
    return true;
}

void editor::fail(run_status status, std::wstring_view message) {
    command_line::instance().fresh_line();
    command_line::instance().error(L"zefhost: " + as_one_line(message));
    if (status_ == run_status::well)
        status_ = status;
    if (!keep_going && !input.at_terminal()) {
        stopped_ = true;
        broke_off_ = true;
    }
}

void editor::fail_command(std::wstring_view message) {
    if (input.at_terminal()) { // who typed it has just read why
        if (status_ == run_status::well)
            status_ = run_status::refused;
        return;
    }
    std::wstring text = input.place() + L": ";
    if (command_ != nullptr)
        text += L"command " + std::wstring(command_->globalName()) + L" failed: ";
    fail(run_status::refused, text + as_one_line(message));
}

answer editor::ask(std::wstring_view prompt, answer_rule rule) {
    if (stopped_)
        return {};
    command_line& line = command_line::instance();
    const bool terminal = input.at_terminal();
    const std::size_t feed = prompt.rfind(L'\n');
    const std::wstring_view last = feed == prompt.npos ? prompt : prompt.substr(feed + 1);
    // A terminal shows the last line of the prompt itself, so that it can redraw it.
    line.print(terminal ? prompt.substr(0, prompt.size() - last.size()) : prompt);
    answer given = input.next(rule, last);
    switch (given.kind) {
    case answer_kind::end:
        line.fresh_line();
        if (command_ != nullptr) {
            fail(run_status::ended_inside, L"the input ended (" + input.place() + L") inside command " +
                                               command_->globalName() + L", at the prompt '" +
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
        if (terminal)
            line.line_ended();
        else
            line.echo(given.text);
        break;
    }
    return given;
}

bool editor::refuse(std::wstring_view prompt, const answer& answer, std::wstring_view reason) {
    command_line& line = command_line::instance();
    line.fresh_line();
    line.echo(reason);
    if (input.at_terminal())
        return true;
    std::wstring said = answer.kind == answer_kind::enter ? L"Enter" : L"'" + answer.text + L"'";
    fail(run_status::refused, input.place() + L": at the prompt '" + as_one_line(prompt) + L"' the answer " +
                                  said + L" was refused: " + std::wstring(reason));
    return !stopped_;
}

} // namespace ed
