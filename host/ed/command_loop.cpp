// Asks for commands until the input ends, and runs what was to run between them.
#include "host/ap/documents.h"
#include "host/ed/console_bars.h"
#include "host/ed/editor.h"
#include "host/ed/pick_first.h"
#include "host/ed/typed_names.h"

#include <optional>

namespace ed {

namespace {

constexpr std::wstring_view command_prompt = L"Command: ";

} // namespace

void editor::run() {
    while (!stopped_) {
        ap::documents::instance().be_idle();
        run_calls();
        for (const auto& typed : ap::documents::instance().take_typed())
            input.send(typed.text, typed.echo);
        command_line::instance().fresh_line();
        const answer typed = ask(command_prompt, answer_rule::word);
        switch (typed.kind) {
        case answer_kind::end:
            if (!ap::documents::instance().has_typed() && ap::documents::instance().calls.empty())
                return;
            break;
        case answer_kind::escape:
            drop_picks();
            break;
        case answer_kind::enter:
            if (!last_command_.empty())
                run_command(std::wstring(last_command_));
            break;
        case answer_kind::text:
            if (const auto said = behind_bar(without_prefixes(typed.text))) {
                if (const std::wstring reason = use_bars(
                        *said, [this](std::wstring_view step, const auto& press) { run_press(step, press); });
                    !reason.empty())
                    refuse(command_prompt, typed, reason);
                break;
            }
            if (const auto reason = pick_before_command(typed)) {
                if (!reason->empty())
                    refuse(command_prompt, typed, *reason);
                break;
            }
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

// What was to run between commands.
void editor::run_calls() {
    ap::documents& documents = ap::documents::instance();
    while (!documents.calls.empty() && !stopped_) {
        const ap::documents::call call = documents.calls.front();
        documents.calls.pop_front();
        running_command as;
        as.name = as.shown = L"EXECUTEFUNCTION"; // as the editor calls it
        as.flags =
            call.context == ap::document::owner::command ? 0 : ACRX_CMD_SESSION | ACRX_CMD_NO_UNDO_MARKER;
        if (documents.current() != nullptr || (as.flags & ACRX_CMD_SESSION) != 0)
            run_outermost(as, [&] { call.function(call.data); });
    }
}

} // namespace ed
