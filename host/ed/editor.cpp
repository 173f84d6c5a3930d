#include "host/ed/editor.h"

#include "acedads.h"
#include "base/case_fold.h"
#include "base/utf.h"
#include "dbmain.h"
#include "host/ap/documents.h"
#include "host/db/core/history.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/transactions.h"
#include "host/ed/host_commands.h"
#include "host/ed/profile_variables.h"
#include "host/ed/system_variables.h"
#include "host/ed/typed_names.h"
#include "host/rx/editor_reactors.h"
#include "host/rx/letter_case.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

namespace ed {

namespace {

std::wstring in_capitals(std::wstring_view text) {
    std::wstring capitals(text);
    std::transform(capitals.begin(), capitals.end(), capitals.begin(), rx::to_upper);
    return capitals;
}

} // namespace

void editor::run_press(std::wstring_view name, const std::function<void()>& press) {
    running_command as;
    as.name = as.shown = name;
    as.flags = ACRX_CMD_SESSION;
    as.is_press = true;
    if (running_.empty()) {
        run_outermost(as, press);
        return;
    }
    const bool cancelled = running_.back().cancelled;
    const ap::documents::in_context context(ap::document::owner::application);
    run_inside(as, press);
    running_.back().cancelled = cancelled;
}

void editor::quit() {
    rx::tell_editor([](AcEditorReactor& reactor) { reactor.beginQuit(); });
    rx::tell_editor([](AcEditorReactor& reactor) { reactor.quitWillStart(); });
    stopped_ = true;
}

// ---- commands

bool editor::run_command(std::wstring_view typed) {
    const std::wstring name(without_prefixes(typed));
    const AcEdCommand* command = find_command(name);
    // The name of a system variable sets it, or shows it.
    const bool is_variable = command == nullptr && is_typed_variable(name);
    if (is_variable)
        command = find_command(L"SETVAR");
    if (command == nullptr) {
        AcDbVoidPtrArray none;
        rx::tell_editor([&](AcEditorReactor& reactor) { reactor.unknownCommand(name.c_str(), &none); });
        return false;
    }
    if (ap::documents::instance().current() == nullptr && (command->commandFlags() & ACRX_CMD_SESSION) == 0) {
        fail_command(L"No drawing is open; " + name + L" needs one.");
        command_line::instance().print(L"\nNo drawing is open. NEW begins one, OPEN opens a file.\n");
        return true;
    }
    const running_command as{command, in_capitals(without_prefixes(command->globalName())),
                             std::wstring(without_prefixes(command->globalName())), command->commandFlags()};
    const auto function = [&] { is_variable ? change_variable(name) : command->functionAddr()(); };
    if (running_.empty())
        run_outermost(as, function);
    else
        run_inside(as, function);
    return true;
}

// The document is locked for its command, and what the command changes is one step of undo.
void editor::run_outermost(const running_command& command, const std::function<void()>& function) {
    ap::documents& documents = ap::documents::instance();
    ap::document* const document = documents.current();
    const bool session = (command.flags & ACRX_CMD_SESSION) != 0;
    const ap::documents::in_context context(session ? ap::document::owner::application
                                                    : ap::document::owner::command);
    const bool locks = !session && (command.flags & ACRX_CMD_NOINTERNALLOCK) == 0;
    const AcAp::DocLockMode mode = (command.flags & ACRX_CMD_DOCEXCLUSIVELOCK) != 0 ? AcAp::kXWrite
                                   : (command.flags & ACRX_CMD_DOCREADLOCK) != 0    ? AcAp::kRead
                                                                                    : AcAp::kWrite;
    if (locks)
        if (const Acad::ErrorStatus status = documents.lock(*document, mode, command.name);
            status != Acad::eOk) {
            fail_command(L"The document could not be locked for " + command.shown + L": " +
                         acadErrorStatusText(status));
            return;
        }
    acedUsrBrk(); // an Escape at the prompt, or of the command before, is not this one's
    const bool is_step = (command.flags & ACRX_CMD_NO_UNDO_MARKER) == 0;
    if (is_step)
        for (const auto& one : documents.all()) { // it may go to the others
            one->layer_history.command_begins();
            one->database()->imp().history().begin_step(base::narrow(command.shown));
        }
    if (!session)
        ++document->commands;
    run_inside(command, function);
    if (is_step)
        for (const auto& one : documents.all())
            one->layer_history.command_ended(!is_host_command(command.command));
    close_left_open(command.shown); // by who was told of its end
    write_profile_variables();
    if (!session)
        --document->commands;
    if (locks)
        documents.unlock(*document);
}

void editor::run_inside(const running_command& command, const std::function<void()>& function) {
    running_.push_back(command);
    const std::wstring name = command.name;
    if (!command.is_press)
        rx::tell_editor([&](AcEditorReactor& reactor) { reactor.commandWillStart(name.c_str()); });
    // Nothing that a command throws may end the program: the drawing is still there.
    try {
        function();
    } catch (const std::exception& error) {
        command_line::instance().fresh_line();
        fail_command(L"Command " + command.shown + L" was ended: " + base::widen(error.what()));
    } catch (...) {
        command_line::instance().fresh_line();
        fail_command(L"Command " + command.shown + L" was ended by an unknown exception");
    }
    if (running_.size() == 1)
        close_left_open(command.shown);
    last_outcome_ = running_.back().failed      ? outcome::failed
                    : running_.back().cancelled ? outcome::cancelled
                                                : outcome::ended;
    const outcome became = last_outcome_;
    rx::tell_editor([&](AcEditorReactor& reactor) {
        if (command.is_press)
            return;
        if (became == outcome::failed)
            reactor.commandFailed(name.c_str());
        else if (became == outcome::cancelled)
            reactor.commandCancelled(name.c_str());
        else
            reactor.commandEnded(name.c_str());
    });
    running_.pop_back();
    last_outcome_ = became;
}

// What a command leaves open is its fault; the next one shall not stumble over it.
void editor::close_left_open(const std::wstring& name) {
    const auto tell = [&](std::size_t left, const wchar_t* what) {
        if (left == 0)
            return;
        command_line::instance().fresh_line();
        command_line::instance().error(L"zefhost: command " + name + L" left " + std::to_wstring(left) +
                                       what);
    };
    tell(db::transactions::instance().abort_all(), L" transactions open; they were aborted");
    for (AcDbDatabase* const database : ap::documents::instance().databases())
        tell(database->imp().objects().close_all(), L" objects open; they were closed");
}

int editor::run_given(std::deque<answer> answers) {
    if (running_.empty() || ap::documents::instance().context() == ap::document::owner::application ||
        !may_ask())
        return RTERROR;
    std::optional<command_line::mute> muted;
    if (variable<int>(L"NOMUTT") != 0)
        muted.emplace();
    given_answers given{std::move(answers)};
    given_.push_back(&given);
    int became = RTNORM;
    while (became == RTNORM && !given.left.empty() && !stopped_) {
        const answer name = given.left.front();
        given.left.pop_front();
        if (name.kind != answer_kind::text)
            continue; // Escape and Enter between commands do nothing
        if (!run_command(name.text)) {
            command_line::instance().fresh_line();
            command_line::instance().echo(L"Unknown command \"" + name.text + L"\".");
            became = RTERROR;
        } else if (given.refused || given.ended || last_outcome_ == outcome::failed) {
            became = RTERROR;
        } else if (last_outcome_ == outcome::cancelled) {
            became = RTCAN;
        }
    }
    given_.pop_back();
    return became;
}

void editor::fail(run_status status, std::wstring_view message) {
    command_line::instance().fresh_line();
    command_line::instance().error(L"zefhost: " + as_one_line(message));
    note_failure(status);
    // After a refused answer a command may go on to a good end.
    if (!running_.empty() && status != run_status::refused && status != run_status::ended_inside)
        running_.back().failed = true;
    // Who called a script from a terminal sees what went wrong and goes on himself.
    if (!keep_going && !input.at_terminal() && !input.return_to_person()) {
        stopped_ = true;
        broke_off_ = true;
    }
}

void editor::fail_command(std::wstring_view message) {
    if (!running_.empty())
        running_.back().failed = true;
    if (!given_.empty()) { // whoever runs it is told by a code
        command_line::instance().fresh_line();
        command_line::instance().echo(message);
        return;
    }
    if (input.at_terminal()) { // who typed it has just read why
        note_failure(run_status::refused);
        return;
    }
    if (running_.empty() && input.place().empty()) { // nothing was asked for yet that could break off
        command_line::instance().error(L"zefhost: " + as_one_line(message));
        note_findings();
        return;
    }
    std::wstring text = input.place() + L": ";
    if (!running_.empty())
        text += L"command " + running_.back().shown + L" failed: ";
    fail(run_status::refused, text + as_one_line(message));
}

} // namespace ed
