// A person at a terminal: zefhost on a pseudo-terminal, keys that are pressed, and what the screen says.
#pragma once

#include "tests/screen.h"

#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace test {

class terminal {
public:
    // Starts zefhost with a profile of its own.
    terminal(const std::vector<std::string>& arguments, const std::string& profile);
    terminal(const terminal&) = delete;
    terminal& operator=(const terminal&) = delete;
    ~terminal();

    void type(std::string_view keys);
    // Waits until the screen shows a text behind what was waited for last. False, and everything that was
    // shown since on standard error, when it never comes.
    bool shows(std::string_view text);
    // Waits for the program's end: its exit status, -1 when it goes on.
    int ends();
    // The window is closed.
    void hang_up();
    // It has another size; the program gets a signal.
    void resize(std::size_t columns, std::size_t rows);
    void send_signal(int number);
    // What it shows now, as far as it was read.
    const screen& seen() const { return screen_; }

private:
    bool read_more(); // false when nothing came for long, or nothing can come any more

    int window_ = -1;
    screen screen_{200, 50};
    pid_t program_ = -1;
    std::string shown_; // control sequences left out
    std::size_t seen_ = 0;
    bool in_sequence_ = false;
};

// The keys.
inline constexpr std::string_view key_escape = "\x1b";
inline constexpr std::string_view key_interrupt = "\x03"; // Ctrl-C
inline constexpr std::string_view key_end = "\x04";       // Ctrl-D
inline constexpr std::string_view key_up = "\x1b[A";
inline constexpr std::string_view key_left = "\x1b[D";
inline constexpr std::string_view key_tab = "\t";
inline constexpr std::string_view key_enter = "\r";

} // namespace test
