// The editor: asks for commands, runs them, and knows how the run stands.
#pragma once

#include "host/ed/input.h"
#include "host/ed/output.h"
#include "host/ed/run_status.h"
#include "host/ed/running_commands.h"

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ed {

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
    // Runs one command by its name as typed, inside the one under way when there is one. False when there is
    // none of that name.
    bool run_command(std::wstring_view typed);
    // Runs commands inside the one under way with the answers that a program gives; the codes of acedCmdS.
    int run_given(std::deque<answer> answers);
    // Runs what a press of a button does, outside of any command's context: no command starts or ends. At the
    // command prompt it is a step of undo of that name, inside a command a part of its step.
    void run_press(std::wstring_view name, const std::function<void()>& press);

    // Notes a failure (host/ed/run_status.h). Without a person, and unless it is to go on, it
    // stops the run.
    void fail(run_status status, std::wstring_view message);
    // The command under way failed.
    void fail_command(std::wstring_view message);
    void quit();
    // Whether the run stopped before its input was read to the end.
    bool broke_off() const { return broke_off_; }

    // ---- prompts

    // Whether somebody may be asked at all: not by whoever is being told of something.
    static bool may_ask();
    // Shows a prompt and reads the answer to it, and echoes it where no terminal did. An answer that is a
    // transparent command, with ' in front, runs it and asks again.
    answer ask(std::wstring_view prompt, answer_rule rule);
    // An answer is refused: the reason is shown. True when the prompt is to ask again, false when the run
    // stops.
    bool refuse(std::wstring_view prompt, const answer& answer, std::wstring_view reason);

private:
    editor();

    // What a program gives for the commands that it runs.
    struct given_answers {
        std::deque<answer> left;
        bool refused = false;
        bool ended = false; // they did not suffice
    };
    enum class outcome { ended, cancelled, failed };

    void run_outermost(const running_command& command, const std::function<void()>& function);
    void run_inside(const running_command& command, const std::function<void()>& function);
    void run_calls();
    void close_left_open(const std::wstring& name);
    answer read_answer(answer_rule rule, std::wstring_view prompt);
    answer next_answer(std::wstring_view prompt, answer_rule rule);
    answer next_given(std::wstring_view prompt);

    bool stopped_ = false;
    bool broke_off_ = false;
    std::vector<running_command>& running_ = running_commands();
    std::vector<given_answers*> given_; // the innermost last
    outcome last_outcome_ = outcome::ended;
    std::wstring last_command_; // as typed, for Enter
};

} // namespace ed
