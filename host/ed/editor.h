// The editor: asks for commands, runs them, and knows how the run stands.
#pragma once

#include "accmd.h"
#include "host/ed/input.h"
#include "host/ed/output.h"

#include <string>
#include <string_view>

namespace ed {

// What went wrong first; the program's exit status.
enum class run_status {
    well = 0,
    found = 1,        // a command that checks found something
    unreadable = 3,   // a drawing could not be read
    refused = 4,      // an unknown command, a refused answer, a command that failed
    ended_inside = 5, // the input ended inside a command
    not_saved = 6,
    not_loaded = 7, // an application
};

class ACCORE_PORT editor {
public:
    // The one that the process has. Making it registers the editor's services and the host's own commands.
    static editor& instance();

    editor(const editor&) = delete;
    editor& operator=(const editor&) = delete;

    ed::input input;
    // Whether a run without a person goes on behind a refused answer.
    bool keep_going = false;
    // Whether the drawing is saved when the run is over, so that leaving loses nothing.
    bool saves_at_end = false;

    // Runs commands until the input ends or QUIT.
    void run();
    // Runs one command by its name as typed. False when there is none.
    bool run_command(std::wstring_view typed);

    run_status status() const { return status_; }
    // Notes a failure; the first one is the run's status. Without a person, and unless it is to go on, it
    // stops the run.
    void fail(run_status status, std::wstring_view message);
    // The command under way failed.
    void fail_command(std::wstring_view message);
    // Whether the run is over: no answer comes any more.
    bool stopped() const { return stopped_; }
    void quit() { stopped_ = true; }
    // Whether the run stopped before its input was read to the end.
    bool broke_off() const { return broke_off_; }

    // The command under way, by its global name; null at the command prompt.
    const AcEdCommand* command() const { return command_; }

    // ---- prompts

    // Shows a prompt and reads the answer to it, and echoes it where no terminal did.
    answer ask(std::wstring_view prompt, answer_rule rule);
    // An answer is refused: the reason is shown. True when the prompt is to ask again, false when the run
    // stops.
    bool refuse(std::wstring_view prompt, const answer& answer, std::wstring_view reason);

    // A text that runs when the command under way has ended.
    void send_when_ended(std::wstring_view text) { waiting_ += text; }

private:
    editor();

    run_status status_ = run_status::well;
    bool stopped_ = false;
    bool broke_off_ = false;
    const AcEdCommand* command_ = nullptr;
    std::wstring last_command_; // as typed, for Enter
    std::wstring waiting_;      // sent while a command runs
};

} // namespace ed
