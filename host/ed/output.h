// The command line's output: what the editor would show there, as wide text, line by line.
#pragma once

#include "adesk.h"

#include <functional>
#include <string>
#include <string_view>

namespace ed {

class ACCORE_PORT command_line {
public:
    // The one that the process has.
    static command_line& instance();

    // Where the text goes, in UTF-8; without it nothing is shown.
    void set_sink(std::function<void(std::string_view)> sink) { sink_ = std::move(sink); }
    // Where the host's own errors go, a line each.
    void set_error_sink(std::function<void(std::string_view)> sink) { error_sink_ = std::move(sink); }

    // Shows a text as it stands. A line feed in front begins a new line, which an answer's Enter has done
    // already: then it is swallowed once.
    void print(std::wstring_view text);
    // Who shows the command line to a person: how many columns and lines there are, and the wait for Enter
    // between two screenfuls; false when the user has seen enough.
    struct screen {
        std::function<std::pair<std::size_t, std::size_t>()> size;
        std::function<bool()> go_on;
    };
    void set_screen(screen shown) { screen_ = std::move(shown); }
    // What is printed from now on stops at a terminal after each screenful, until the next question, or until
    // the user has seen enough, which acedUsrBrk tells of.
    void begin_page();
    void end_pages() { rows_left_ = 0; }
    // What the user answered, in batch: it ends the line of its prompt.
    void echo(std::wstring_view answer);
    // The user pressed Enter at a terminal, which ended the line there.
    void line_ended();
    // Begins a new line, if the present one holds anything.
    void fresh_line();
    // An error of the host itself.
    void error(std::wstring_view message);

    // While one lives nothing is shown but errors.
    class mute {
    public:
        mute() { ++instance().mutes_; }
        ~mute() { --instance().mutes_; }
        mute(const mute&) = delete;
        mute& operator=(const mute&) = delete;
    };

private:
    void put(std::wstring_view text);
    void put_paged(std::wstring_view text);

    std::function<void(std::string_view)> sink_;
    std::function<void(std::string_view)> error_sink_;
    std::wstring line_; // what stands on the present line
    screen screen_;
    std::size_t columns_ = 0;
    std::size_t rows_left_ = 0; // on the screen; 0: nothing stops
    int mutes_ = 0;
    bool after_answer_ = false; // an answer ended the line: a line feed that follows would be one too many
};

} // namespace ed
